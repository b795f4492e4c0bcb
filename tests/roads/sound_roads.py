"""What the presenter hears and what goes on air."""
import os
import re

from presenter import set_key
from road import RECORD, SAVE
from waiting import wait_for

STAGES = {"UseAmp": 1, "Amp": 6, "UseNorm": 1, "Norm": 80, "UseTrim": 1, "Trim": -45, "UseComp": 1, "CompTresh": -18,
          "CompRate": 50, "UseReverb": 1, "RevDelay": 20, "RevDepth": 5, "RevDecay": 5, "RevRate": 30}


def loudness(road, file):
    """Integrated loudness in LUFS."""
    text = road.desk.run("ffmpeg", "-nostats", "-i", file, "-af", "ebur128", "-f", "null", "-")
    return float(re.findall(r"I:\s+(-?[0-9.]+) LUFS", text)[-1])


def silences(road, file):
    """(start, end) of every stretch of at least 0.3 s below -50 dB."""
    text = road.desk.run("ffmpeg", "-nostats", "-i", file, "-af", "silencedetect=n=-50dB:d=0.3", "-f", "null", "-")
    starts = [float(value) for value in re.findall(r"silence_start: (-?[0-9.]+)", text)]
    ends = [float(value) for value in re.findall(r"silence_end: ([0-9.]+)", text)]
    return list(zip(starts, ends))


def length(road, file):
    return float(road.probe(file, "format=duration")[0])


def all_stages(road):
    """The second of two cards, every stage on: what is filed is trimmed, level and as long as the words."""
    road.desk.add_card("table", "Mengtafel")
    for key, value in STAGES.items():
        set_key(road.station, key, str(value))
    road.start()
    road.desk.find(RECORD, "push button", 20)
    road.desk.click(road.desk.find("Opname en kaart", "page tab"))  # folded away on a screen this small
    road.desk.choose("Opnamekaart", "Mengtafel")
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    begin, end = road.record(silence=2.0, card="table")
    road.picture("processed")
    road.desk.press(SAVE)
    filed = road.path("ok", "OCH01.mp3")
    wait_for("the filed voice track", lambda: os.path.exists(filed))
    spoken, filed_length = end - begin, length(road, filed)
    # Two seconds of silence at both ends are gone; the words and the room's short echo are not.
    assert spoken - 0.8 < filed_length < spoken + 0.8, (spoken, filed_length)
    edges = [pair for pair in silences(road, filed) if pair[0] < 0.1 or pair[1] > filed_length - 0.1]
    assert not edges, edges
    assert -26 < loudness(road, filed) < -8, loudness(road, filed)
    peak = next(row for row in road.desk.run("sox", filed, "-n", "stats").splitlines() if row.startswith("Pk lev dB"))
    assert -12 < float(peak.split()[3]) <= 0, peak
    assert not os.listdir(road.path("temp2"))


def listen_to_take(road):
    """The take is heard on the default output, and the button comes back by itself at its end."""
    road.desk.add_output("speakers")
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.record(0.3)
    heard = road.desk.listen("speakers")
    road.desk.press("Beluister Opname")
    road.desk.find("Stop Weergave", "push button")
    road.picture("playing")
    road.desk.find("Beluister Opname", "push button", 60)
    heard.stop()
    assert road.level(heard.file, 0, length(road, heard.file)) > -45


def card_comes_back(road):
    """The chosen card is pulled out and comes back: it is chosen again, and records."""
    road.desk.add_card("table", "Mengtafel")
    road.start()
    road.desk.find(RECORD, "push button", 20)
    road.desk.click(road.desk.find("Opname en kaart", "page tab"))  # folded away on a screen this small
    road.desk.choose("Opnamekaart", "Mengtafel")
    road.desk.remove_card("table")
    wait_for("the news", lambda: road.desk.look("De gekozen opnamekaart is losgekoppeld."))
    road.picture("unplugged")
    road.desk.add_card("table", "Mengtafel")
    wait_for("the card", lambda: road.desk.look("De opnamekaart Mengtafel is er weer."))
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    begin, end = road.record(1.0, card="table")
    road.check_words(road.path("temp", "OCH01.wav"), begin, end)


ROADS = (all_stages, listen_to_take, card_comes_back)
