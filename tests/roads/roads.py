#!/usr/bin/python3
"""Whole journeys through the real program, judged by outside tools.

usage: roads.py ROAD BINARY SAMPLE_STATION PICTURES
"""
import csv
import io
import os
import signal
import sys
import time

from presenter import Desk, copy_station, set_key, wait_for

RECORD, STOP, SAVE = "START OPNAME", "STOP OPNAME", "Bewaar opname"


class Road:
    def __init__(self, name, binary, sample, pictures, microphone=True):
        self.name, self.binary, self.pictures = name, binary, pictures
        self.desk = Desk(microphone)
        self.station = os.path.join(self.desk.folder, "mijn station")
        copy_station(sample, self.station)
        set_key(self.station, "Countdown", "1")

    def path(self, *parts):
        return os.path.join(self.station, *parts)

    def start(self, *arguments):
        self.desk.start_orvel(self.binary, self.station, *arguments)

    def picture(self, what):
        os.makedirs(self.pictures, exist_ok=True)
        self.desk.screenshot(os.path.join(self.pictures, f"{self.name}-{what}.png"))

    def steps(self, playlist):
        table = self.desk.run("mdb-export", playlist, "Steps")
        return list(csv.DictReader(io.StringIO(table)))

    def record(self, silence=1.0, words="Goedemorgen, dit is een link over het weer van morgen."):
        """Records silence, spoken words and silence again; where the words were, in seconds from the start."""
        self.desk.press(RECORD)
        self.desk.find(STOP, "push button", 30)
        start = time.monotonic()
        time.sleep(silence)
        begin = time.monotonic() - start
        spoken = self.desk.say(words)
        time.sleep(spoken / 2)
        self.picture("recording")
        time.sleep(max(0.0, begin + spoken + silence - (time.monotonic() - start)))
        self.desk.press(STOP)
        self.desk.find(RECORD, "push button")
        return begin, begin + spoken

    def level(self, file, start, seconds):
        """RMS level of a piece of a sound file, in dB."""
        text = self.desk.run("sox", file, "-n", "trim", str(start), str(seconds), "stats")
        line = next(row for row in text.splitlines() if row.startswith("RMS lev dB"))
        value = line.split()[3]
        return -120.0 if "inf" in value else float(value)

    def probe(self, file, entries):
        return self.desk.run("ffprobe", "-v", "error", "-show_entries", entries, "-of", "default=nw=1:nk=1",
                             file).split()

    def check_words(self, file, begin, end):
        silence, words = self.level(file, 0.1, begin - 0.3), self.level(file, begin + 0.5, end - begin - 0.8)
        assert words > -40 and words > silence + 20, (silence, words)


def changed_bytes(before, after):
    assert len(before) == len(after)
    return [(i, a ^ b) for i, (a, b) in enumerate(zip(before, after)) if a != b]


def read(path):
    with open(path, "rb") as file:
        return file.read()


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
    road.desk.run("pactl", "unload-module", "module-remap-source")
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


ROADS = {road.__name__: road for road in (click_to_file, finish_playlist, server_mode, recorder, no_sound_card,
                                          microphone_unplugged, killed_while_recording)}


def main():
    name, binary, sample, pictures = sys.argv[1:5]
    if not os.path.exists(binary):
        sys.exit(f"there is no program at {binary}")
    road = Road(name, binary, sample, pictures, microphone=name != "no_sound_card")
    try:
        ROADS[name](road)
    except BaseException:
        road.picture("failed")
        with open(os.path.join(road.desk.folder, "orvel.log"), encoding="utf-8", errors="replace") as log:
            sys.stderr.write(log.read())
        sys.stderr.write("on the screen: " + ", ".join(filter(None, road.desk.texts())) + "\n")
        raise
    finally:
        road.desk.close()
    print(f"{name}: arrived")


if __name__ == "__main__":
    main()
