"""From the click on a playlist to the filed voice track, and what may come between."""
import os
import signal
import time

from presenter import set_key
from road import RECORD, SAVE, STOP, changed_bytes, read
from waiting import wait_for


def click_to_file(road):
    playlist = road.path("new", "ochtend-0700.mdb")
    before, rows = read(playlist), road.steps(playlist)
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.picture("playlist")
    begin, end = road.record()
    road.desk.press(SAVE)
    filed = road.path("ok", "OCH01.mp3")
    wait_for("the filed voice track", lambda: os.path.exists(filed))
    wait_for("the next slot", lambda: road.desk.look("OCH02", "label"))
    road.picture("saved")
    assert road.probe(filed, "stream=codec_name,sample_rate,channels,bit_rate") == ["mp3", "44100", "2", "256000"]
    road.check_words(filed, begin, end)
    assert not [name for name in os.listdir(road.path("temp")) if name.startswith("OCH")]
    expected = [dict(row, Imported="1") if row["Atrack"] == "OCH01" else row for row in rows]
    assert road.steps(playlist) == expected
    changes = changed_bytes(before, read(playlist))
    assert len(changes) == 1 and changes[0][1].bit_count() == 1, changes


def finish_playlist(road):
    playlist = road.path("new", "avond-2000.mdb")
    road.start()
    road.desk.open_playlist("avond-2000.mdb")
    for row in road.steps(playlist):
        if row["Imported"] == "0":
            # Steps of other kinds keep the playlist from being finished as well; only slots can be recorded.
            assert row["type"] == "2", row
    for number, row in enumerate([r for r in road.steps(playlist) if r["type"] == "2"], 1):
        if row["Imported"] == "0":
            road.desk.select_step(f"Link {number}")
            road.record(0.2, "Link.")
            road.desk.press(SAVE)
            wait_for(row["Atrack"], lambda track=row["Atrack"]: os.path.exists(road.path("ok", track + ".mp3")))
    # The station's own first link is marked, but its voice track is not there: that is told first.
    wait_for("the missing one", lambda: any(text and text.startswith("Van deze stappen staat de voicetrack niet")
                                            for text in road.desk.texts()))
    road.picture("missing")
    road.desk.press("OK")
    road.desk.find("Playlist Klaar ?", seconds=20)
    road.picture("question")
    road.desk.press("Ja")
    wait_for("the finished playlist", lambda: os.path.exists(road.path("ok", "avond-2000.mdb")))
    wait_for("the empty place", lambda: not os.path.exists(playlist))
    assert all(row["Imported"] == "1" for row in road.steps(road.path("ok", "avond-2000.mdb")))


def server_mode(road):
    set_key(road.station, "Server", "1")
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 2")
    road.record(0.3)
    road.desk.press(SAVE)
    filed = road.path("voicetracks", "OCH02.mp3")
    wait_for("the voice track on the server", lambda: os.path.exists(filed))
    assert not os.path.exists(road.path("ok", "OCH02.mp3"))
    assert not os.path.exists(road.path("temp", "OCH02.mp3"))


def recorder(road):
    road.start("-RECORDER")
    road.desk.press(RECORD)
    road.desk.find("Bestandsnaam")
    road.desk.type("mijn spot")
    road.desk.key("Return")
    road.desk.find(STOP, "push button", 30)
    spoken = road.desk.say("Dit is een reclamespot.")
    time.sleep(spoken + 0.5)
    road.picture("recording")
    road.desk.press(STOP)
    road.desk.press(SAVE)
    time.sleep(1.5)
    road.desk.key("ctrl+a")
    target = os.path.join(road.desk.folder, "bewaard.mp3")
    road.desk.type(target)
    road.desk.key("Return")
    wait_for("the saved file", lambda: os.path.exists(target))
    assert float(road.probe(target, "format=duration")[0]) > spoken
    assert not os.path.exists(road.path("temp", "mijn spot.wav"))


def no_sound_card(road):
    settings = read(road.path("orvel.ini"))
    road.start()
    road.desk.find("Geen geluidskaart gevonden !", seconds=30)
    road.picture("message")
    road.desk.press("OK")
    assert road.desk.orvel.wait(10) == 1
    assert read(road.path("orvel.ini")) == settings


def microphone_unplugged(road):
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    time.sleep(road.desk.say("Deze woorden blijven bewaard.") + 0.3)
    road.desk.unplug_microphone()
    road.desk.find("Foutmelding", seconds=10)
    road.picture("told")
    road.desk.press("OK")
    take = road.path("temp", "OCH01.wav")
    assert float(road.probe(take, "format=duration")[0]) > 1.0
    assert road.level(take, 0.2, 1.0) > -45
    road.desk.press(SAVE)
    wait_for("the filed voice track", lambda: os.path.exists(road.path("ok", "OCH01.mp3")))


def killed_while_recording(road):
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    road.desk.say("Zelfs als de stroom uitvalt, blijft dit bewaard.")
    time.sleep(4)
    road.desk.orvel.send_signal(signal.SIGKILL)
    road.desk.orvel.wait()
    take = road.path("temp", "OCH01.wav")
    assert float(road.probe(take, "format=duration")[0]) > 2.5
    assert road.level(take, 0.5, 1.5) > -45


def keyboard_alone(road):
    """A whole hour without a mouse, three keys a link: record, stop, save, and the next link is ready."""
    playlist = road.path("new", "ochtend-0700.mdb")
    names = [step["Atrack"] for step in road.steps(playlist) if step["type"] == "2" and step["Imported"] == "0"]
    assert len(names) == 5, names
    set_key(road.station, "Countdown", "0")
    road.start()
    road.desk.find("ochtend-0700.mdb", "list item", 30)
    road.desk.tab_to("Te bewerken playlists")
    road.desk.type("och")
    road.desk.key("Return")
    road.desk.find("Link 1", "table cell")
    road.desk.key("F6")
    pressed = []
    def press(key):
        pressed.append(key)
        road.desk.key(key)
    words = {}
    for name in names:
        press("F5")
        road.desk.find(STOP, "push button", 30)
        words[name] = road.desk.say("Zonder muis.")
        time.sleep(words[name] + 0.4)
        press("F5")
        road.desk.enabled(SAVE)
        press("F4")
        wait_for(f"the voice track {name}", lambda track=name: os.path.exists(road.path("ok", track + ".mp3")))
    assert pressed == ["F5", "F5", "F4"] * 5, pressed
    road.desk.find("Playlist Klaar ?", seconds=20)
    road.picture("question")
    road.desk.tab_to("Ja")
    road.desk.key("Return")
    finished = road.path("ok", "ochtend-0700.mdb")
    wait_for("the finished playlist", lambda: os.path.exists(finished) and not os.path.exists(playlist))
    road.picture("done")
    assert all(step["Imported"] == "1" for step in road.steps(finished) if step["Atrack"] in names)
    for name in names:
        assert float(road.probe(road.path("ok", name + ".mp3"), "format=duration")[0]) > words[name], name


ROADS = (click_to_file, keyboard_alone, finish_playlist, server_mode, recorder, no_sound_card, microphone_unplugged,
         killed_while_recording)
