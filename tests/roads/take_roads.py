"""A take knows its step: whatever is selected meanwhile, after a kill, and beside another program."""
import os
import shutil
import signal
import time

from gi.repository import Atspi

from road import RECORD, SAVE, STOP
from waiting import wait_for

SAVE_FOR_STEP = "Bewaar voor deze stap"


def save_the_first(road):
    """Record one step, select another, go back and save: only the first is marked and filed."""
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    begin, end = road.record()
    road.desk.select_step("Link 2")
    road.picture("other-step")
    road.desk.select_step("Link 1")
    road.desk.press(SAVE)
    filed = road.path("ok", "OCH01.mp3")
    wait_for("the filed voice track", lambda: os.path.exists(filed))
    road.check_words(filed, begin, end)
    marks = {row["Atrack"]: row["Imported"] for row in road.steps(road.path("new", "ochtend-0700.mdb"))}
    assert marks["OCH01"] == "1" and marks["OCH02"] == "0", marks
    assert not os.path.exists(road.path("ok", "OCH02.mp3"))


def kill_and_file(road):
    """Kill the program while it records; the next start offers the take, repaired, and files it for its step."""
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    road.desk.say("Zelfs als de stroom uitvalt, blijft dit bewaard.")
    time.sleep(4)
    size = os.path.getsize(road.path("temp", "OCH01.wav"))
    road.desk.orvel.send_signal(signal.SIGKILL)
    road.desk.orvel.wait()
    road.start()
    road.desk.find(SAVE_FOR_STEP, "push button", 30)
    road.picture("offered")
    road.desk.press(SAVE_FOR_STEP)
    filed = road.path("ok", "OCH01.mp3")
    wait_for("the filed voice track", lambda: os.path.exists(filed))
    # Everything that was on the disk when the power went is heard.
    assert float(road.probe(filed, "format=duration")[0]) > size / 2 / 44100 - 0.05
    assert road.level(filed, 0.5, 1.5) > -45
    marks = {row["Atrack"]: row["Imported"] for row in road.steps(road.path("new", "ochtend-0700.mdb"))}
    assert marks["OCH01"] == "1", marks
    assert not os.path.exists(road.path("temp", "OCH01.wav"))


def ended_while_recording(road):
    """The system ends the program while it records: the take is closed whole, and offered at the next start."""
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    began = time.monotonic()
    time.sleep(3)
    road.desk.orvel.send_signal(signal.SIGTERM)
    spoken = time.monotonic() - began
    assert road.desk.orvel.wait(20) == 0
    assert float(road.probe(road.path("temp", "OCH01.wav"), "format=duration")[0]) > spoken - 0.3
    road.start()
    road.desk.find(SAVE_FOR_STEP, "push button", 30)


def step_without_a_name(road):
    """A step whose name is null is told, and is then a step without a file: nothing can be recorded there."""
    fixtures = os.path.join(os.path.dirname(__file__), "..", "data", "databases")
    shutil.copy(os.path.join(fixtures, "null-atrack.mdb"), road.path("new", "leeg.mdb"))
    os.chmod(road.path("new", "leeg.mdb"), 0o644)
    rows = road.steps(road.path("new", "leeg.mdb"))
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    wait_for("the first slot", lambda: road.desk.look("OCH01", "label"))
    road.desk.open_playlist("leeg.mdb")
    road.desk.select_step("2")
    wait_for("the report", lambda: any(text and text.startswith("Fout 13 ") for text in road.desk.texts()))
    road.desk.press("OK")
    road.picture("nameless")
    road.desk.find("geen bestand", "label")
    button = road.desk.find(RECORD, "push button")
    assert not button.get_state_set().contains(Atspi.StateType.ENABLED)
    assert road.steps(road.path("new", "leeg.mdb")) == rows


def two_programs(road):
    """A second program on the station tells whose it is, changes nothing, and goes on when the first one is gone."""
    road.start()
    road.desk.find(RECORD, "push button", 30)
    first = road.desk.orvel
    before = sorted(os.listdir(road.station))
    road.start()
    road.desk.find("Niet langer wachten", "push button", 30)
    road.picture("in-use")
    assert sorted(os.listdir(road.station)) == before
    first.send_signal(signal.SIGKILL)
    first.wait()
    wait_for("the second one's window", lambda: not road.desk.look("Niet langer wachten", "push button"))
    road.desk.open_playlist("ochtend-0700.mdb")


ROADS = (save_the_first, kill_and_file, ended_while_recording, step_without_a_name, two_programs)
