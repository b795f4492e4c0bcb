"""What a presenter does to a take before it is filed."""
import os
import time

from presenter import set_key
from road import RECORD, SAVE, STOP
from waiting import wait_for

FIT = "Past op de intro"
BEFORE_POST = 0.1  # s: where the last word is to end
TAIL = 0.05  # s of silence stay behind it


def fit_to_intro(road):
    """Begin late, talk into the vocals, fit the take and file it: the last word ends before the vocals."""
    rows = road.steps(road.path("new", "ochtend-0700.mdb"))
    link = next(i for i, row in enumerate(rows) if row["Atrack"] == "OCH01")
    post = (int(rows[link - 1]["Outtro"]) + int(rows[link + 1]["Intro"])) / 1000
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    time.sleep(post - 3)
    spoken = road.desk.say("Goedemorgen, dit is een link over het weer van morgen, en die is te lang.")
    assert 3.5 < spoken < post - 0.5, spoken
    time.sleep(spoken + 1)
    road.desk.press(STOP)
    road.desk.find(RECORD, "push button")
    wait_for("the sentence", lambda: any("over de intro" in text for text in road.desk.texts()))
    road.picture("too-long")
    take = road.path("temp", "OCH01.wav")
    recorded = float(road.probe(take, "format=duration")[0])
    road.desk.press(FIT)
    wait_for("the fit", lambda: any(text.startswith("Past op de intro: ") for text in road.desk.texts()))
    road.picture("fitted")
    road.desk.key("ctrl+z")
    wait_for("the recorded take", lambda: abs(float(road.probe(take, "format=duration")[0]) - recorded) < 0.001)
    road.desk.key("ctrl+y")
    wait_for("the fitted take", lambda: float(road.probe(take, "format=duration")[0]) < recorded - 0.5)
    road.desk.press(SAVE)
    filed = road.path("ok", "OCH01.mp3")
    wait_for("the filed voice track", lambda: os.path.exists(filed))
    # ffmpeg takes off what the encoder put before the sound.
    heard = road.path("gehoord.wav")
    road.desk.run("ffmpeg", "-v", "error", "-i", filed, heard)
    goal = post - BEFORE_POST
    assert abs(float(road.probe(heard, "format=duration")[0]) - goal - TAIL) < 0.03
    assert road.level(heard, goal - 0.2, 0.17) > -45, "the last word is there to its end"
    assert road.level(heard, goal + 0.03, TAIL - 0.04) < -50, "and ends where it should"
    assert road.level(heard, goal - spoken + 0.3, spoken - 0.6) > -40
    assert not [name for name in os.listdir(road.path("temp2")) if name.startswith("OCH01")]


def drag(road, node, start, end):
    """Drags over a control, from one part of its width to another."""
    area = road.desk.area(node)
    middle = str(area.y + area.height // 2)
    def place(part):
        return str(area.x + round(part * area.width))
    road.desk.run("xdotool", "mousemove", place(start), middle, "mousedown", "1", "mousemove", place((start + end) / 2),
                  middle, "mousemove", place(end), middle, "mouseup", "1")


def words_in(road, file):
    """Where the words of a sound file begin and end, seconds: between the silence before and the one behind them."""
    told = road.desk.run("ffmpeg", "-hide_banner", "-i", file, "-af", "silencedetect=noise=-45dB:d=0.3", "-f", "null",
                         "-")
    def moments(what):
        return [float(line.split(what + ":")[1].split()[0]) for line in told.splitlines() if what + ":" in line]
    return moments("silence_end")[0], moments("silence_start")[-1]


def second_of_three(road):
    """Of three takes the second one is chosen, its ends are cut in its outline, and that is what is filed."""
    rows = road.steps(road.path("new", "ochtend-0700.mdb"))
    link = next(i for i, row in enumerate(rows) if row["Atrack"] == "OCH01")
    axis = (int(rows[link - 1]["Outtro"]) + int(rows[link + 1]["Intro"])) / 1000
    take = road.path("temp", "OCH01.wav")
    def seconds():
        return float(road.probe(take, "format=duration")[0])
    set_key(road.station, "Countdown", "0")
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.record(0.3, "Een.")
    road.record(1.2, "Dit is de tweede, en die is de beste.")
    second = seconds()
    begin, end = words_in(road, take)
    assert begin > 0.8 and end < second - 0.8, (begin, end, second)
    road.record(0.3, "Drie is ook kort.")
    assert abs(seconds() - second) > 1, (seconds(), second)
    for _ in range(2):  # from the third to the first, and on
        before = seconds()
        road.desk.key("F2")
        wait_for("another take", lambda last=before: abs(seconds() - last) > 0.1)
    assert abs(seconds() - second) < 0.001, (seconds(), second)
    road.picture("chosen")
    outline = road.desk.find("Golfvorm van de opname")
    drag(road, outline, second / axis, (end + 0.3) / axis)
    wait_for("the end to be cut", lambda: seconds() < second - 0.5)
    shorter = seconds()
    drag(road, outline, 0, (begin - 0.3) / axis)
    wait_for("the begin to be cut", lambda: seconds() < shorter - 0.5)
    cut = seconds()
    road.picture("cut")
    road.desk.press(SAVE)
    filed = road.path("ok", "OCH01.mp3")
    wait_for("the filed voice track", lambda: os.path.exists(filed))
    # ffmpeg takes off what the encoder put before the sound.
    heard = road.path("gehoord.wav")
    road.desk.run("ffmpeg", "-v", "error", "-i", filed, heard)
    assert abs(float(road.probe(heard, "format=duration")[0]) - cut) < 0.03
    spoken = end - begin
    assert abs(cut - spoken - 0.6) < 0.15, (cut, spoken)
    assert road.level(heard, 0.05, 0.15) < -50 and road.level(heard, cut - 0.2, 0.15) < -50, "silence at both ends"
    assert road.level(heard, 0.5, spoken - 0.6) > -40, "and all the words between them"


ROADS = (fit_to_intro, second_of_three)
