"""The windows behind the toolbar and the buttons."""
import os
import shutil
import time

from presenter import set_key
from road import SAVE, read
from waiting import wait_for


def setup_survives_restart(road):
    """A change in the setup dialog is there after a restart, and the rest of the file as it was."""
    before = read(road.path("orvel.ini")).decode()
    road.start()
    road.desk.press("Instellingen")
    road.desk.click(road.desk.find("Algemeen", "page tab"))
    road.desk.choose("MP3-Bitrate", "128 Kbit/Sec")
    road.picture("changed")
    road.desk.press("Bewaren")
    road.desk.find("Start het programma opnieuw op")
    road.desk.press("OK")
    road.desk.press("Sluiten")
    road.desk.press("Afsluiten")
    assert road.desk.orvel.wait(10) == 0
    after = read(road.path("orvel.ini")).decode()
    assert "BitRate=0" in after and "BitRate=2" in before
    kept = [line for line in before.splitlines() if line.startswith((";", "M=", "TijdBack"))]
    assert all(line in after.splitlines() for line in kept), after
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.record(0.2)
    road.desk.press(SAVE)
    filed = road.path("ok", "OCH01.mp3")
    wait_for("the filed voice track", lambda: os.path.exists(filed))
    assert road.probe(filed, "stream=bit_rate") == ["128000"]


def printed_running_order(road):
    """The running order as a PDF file, saved from the print preview."""
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.press("Afdrukken")
    road.desk.find("Playlist ochtend-0700.mdb", seconds=20)
    time.sleep(1)
    road.picture("preview")
    target = os.path.join(road.desk.folder, "draaiorde.pdf")
    road.desk.press("PDF bewaren")
    road.desk.find("PDF bewaren", "dialog")
    road.picture("saving")
    road.desk.key("ctrl+a")
    road.desk.type(target)
    road.desk.key("Return")
    wait_for("the PDF file", lambda: os.path.exists(target) and os.path.getsize(target) > 1000)
    time.sleep(0.5)
    text = road.desk.run("pdftotext", "-layout", target, "-")
    for words in ("ochtend-0700", "Trio Waterland", "De laatste tram", "OCH01", "pagina 1 van", "Uitvoerder"):
        assert words in text, (words, text)


def import_playlists(road):
    """A folder with three playlists and one text file: three arrive, nothing else, and the sources go."""
    stick = os.path.join(road.desk.folder, "stick")
    os.makedirs(stick)
    for number, name in enumerate(sorted(os.listdir(road.path("new")))):
        shutil.copy(road.path("new", name), os.path.join(stick, f"nieuw-{number}.mdb"))
    with open(os.path.join(stick, "lees mij.txt"), "w", encoding="utf-8") as file:
        file.write("geen playlist")
    names = [name for name in sorted(os.listdir(stick)) if name.endswith(".mdb")]
    assert len(names) == 3, names
    set_key(road.station, "ImportPath", stick)
    road.start()
    road.desk.press("Importeren")
    road.picture("import")
    road.desk.press("Start Import")
    road.desk.find("Mogen de import-bestanden gewist worden ?")
    road.desk.press("Ja")
    for name in names:
        road.desk.find(name, "list item")
        assert os.path.exists(road.path("new", name))
    wait_for("the empty stick", lambda: os.listdir(stick) == ["lees mij.txt"])
    assert not os.path.exists(road.path("new", "lees mij.txt"))


def two_stations(road):
    """Two versions of one step: No after the first, Yes after the second."""
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    stations = [line.split(",") for line in
                road.desk.run("mdb-export", road.path("syncstations.mdb"), "Stations").splitlines()[1:]]
    codes = sorted((row[0].strip('"'), "".join(digit.strip('"') for digit in row[1:4])) for row in stations)
    # The general entry comes first in the list, then the stations by name; code 000 has no prefix.
    versions = [(place + 2, name, code) for place, (name, code) in enumerate(codes) if code != "000"][:2]
    road.desk.press("Multi - voice")
    for number, (place, name, code) in enumerate(versions):
        road.record(0.2, f"Dit is voor {name}.")
        road.desk.press(SAVE)
        road.desk.find("Selecteer een station", seconds=10)
        for _ in range(place):
            road.desk.key("Down")
        box = road.desk.find("Kies het station waarvoor deze presentatie bedoeld is", "combo box")
        wait_for(f"{name} in the box", lambda shown=box, wanted=name: road.desk.shown(shown) == wanted)
        road.picture(f"station-{number + 1}")
        road.desk.press("Presentatie bewaren voor het gekozen station")
        road.desk.find("Bent U klaar met deze inteksting ?", seconds=20)
        road.desk.press("Nee" if number == 0 else "Ja")
        wait_for(code, lambda prefix=code: os.path.exists(road.path("ok", prefix + "OCH01.mp3")))
    assert not os.path.exists(road.path("ok", "OCH01.mp3"))
    assert not [name for name in os.listdir(road.path("temp")) if name.startswith("OCH")]


def batch_import(road):
    """WAV and MP3 files become the playlist's voice tracks in their order."""
    sounds = os.path.join(road.desk.folder, "stemmen")
    os.makedirs(sounds)
    slots = [row["Atrack"] for row in road.steps(road.path("new", "ochtend-0700.mdb")) if row["type"] == "2"]
    tones = [500 + 150 * number for number in range(len(slots))]
    for number, tone in enumerate(tones):
        kind = "mp3" if number % 2 else "wav"
        road.desk.run("sox", "-n", "-r", "48000", "-c", "2", os.path.join(sounds, f"stem {number}.{kind}"), "synth",
                      "2", "sine", str(tone), "vol", "0.4")
    road.desk.env["HOME"] = sounds
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.press("Importeer")
    road.desk.find("stem 0.wav", "list item")
    road.picture("files")
    road.desk.press("Batch Import")
    for track in slots:
        wait_for(track, lambda name=track: os.path.exists(road.path("ok", name + ".mp3")), 30)
    wait_for("the marks", lambda: all(row["Imported"] == "1" for row in
                                      road.steps(road.path("new", "ochtend-0700.mdb"))))
    for number, track in enumerate(slots):
        text = road.desk.run("sox", road.path("ok", track + ".mp3"), "-n", "remix", "1", "stat")
        found = next(line for line in text.splitlines() if line.startswith("Rough   frequency:"))
        assert abs(int(found.split()[-1]) - tones[number]) < 25, (track, found, tones[number])
    assert read(road.path("ok", slots[1] + ".mp3")) == read(os.path.join(sounds, "stem 1.mp3"))


def preview(road):
    """A track and a jingle sound on the default output."""
    road.desk.add_output("speakers")
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    for title in ("De laatste tram", "Jingle 1"):
        road.desk.click(road.desk.find(title, "table cell"), double=True)
        road.desk.find("Voorbeluistering", seconds=10)
        heard = road.desk.listen("speakers")
        road.desk.press("Afspelen")
        time.sleep(3)
        road.picture(title.replace(" ", "-").lower())
        heard.stop()
        seconds = float(road.probe(heard.file, "format=duration")[0])
        assert road.level(heard.file, max(0.0, seconds - 2), 1.5) > -60
        road.desk.key("Escape")
        wait_for("the closed window", lambda: not road.desk.look("Voorbeluistering"))


ROADS = (setup_survives_restart, printed_running_order, import_playlists, two_stations, batch_import, preview)
