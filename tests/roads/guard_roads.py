"""What the presenter is warned of while it can still be helped."""
import os

from road import RECORD, STOP
from waiting import wait_for

DEAD = "Er komt geen geluid uit de microfoon."
CLIPPED = "Te luid: het geluid vervormt."


def play(road, name, *effects):
    """Plays a tone into the microphone's room."""
    file = os.path.join(road.desk.folder, name)
    road.desk.run("sox", "-n", "-r", "44100", "-c", "1", "-b", "16", file, *effects)
    return road.desk.spawn("paplay", "--device=room", file)


def warned_in_time(road):
    """The input is heard before the take; a microphone that is dead and one that is too loud are told, and no more."""
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.find("\u25cb stil", "label")
    play(road, "fine.wav", "synth", "4", "sine", "300", "gain", "-14", "tremolo", "3", "95")
    road.desk.find("\u2713 goed", "label")
    road.picture("heard")
    road.desk.find("\u25cb stil", "label")
    assert not os.listdir(road.path("temp")), os.listdir(road.path("temp"))

    road.desk.press(RECORD)
    road.desk.find(DEAD, "alert")
    road.picture("dead")
    road.desk.find(STOP, "push button", 30)
    play(road, "fine.wav", "synth", "2", "sine", "300", "gain", "-14")
    wait_for("the warning to go", lambda: not road.desk.look(DEAD))
    play(road, "loud.wav", "synth", "1", "sine", "300", "gain", "12")
    road.desk.find(CLIPPED, "alert")
    road.picture("clipped")
    road.desk.press(STOP)
    road.desk.find(RECORD, "push button")
    wait_for("the warning to go", lambda: not road.desk.look(CLIPPED))
    assert road.desk.look("overstuurd", "label"), "the lamp stays on"
    road.picture("after")
    stats = road.desk.run("sox", road.path("temp", "OCH01.wav"), "-n", "stats")
    peak = next(row for row in stats.splitlines() if row.startswith("Pk lev dB"))
    assert float(peak.split()[3]) > -0.01, peak

    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    wait_for("the lamp to go out", lambda: not road.desk.look("overstuurd", "label"))
    road.desk.press(STOP)


ROADS = (warned_in_time,)
