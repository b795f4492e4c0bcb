"""What a presenter does to a take before it is filed."""
import os
import time

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


ROADS = (fit_to_intro,)
