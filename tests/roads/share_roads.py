"""Server mode, with a file server that is slow, stalls or goes away."""
import os
import time

from gi.repository import GLib

from presenter import set_key
from road import RECORD, SAVE
from waiting import wait_for

TRACK, STEP, PLAYLIST = "OCH02", "Link 2", "ochtend-0700.mdb"
SHARE = "stemmenserver"
ANSWERED = 0.5  # s; a window that waits with the share takes as long as the share does


def take_for_the_share(road):
    """ORVEL in server mode with a take to be saved; returns the share."""
    share = road.desk.mount_share(SHARE)
    set_key(road.station, "Server", "1")
    set_key(road.station, "Network", "1")
    set_key(road.station, "VoiceTrackPath", share.folder)
    road.start()
    road.desk.open_playlist(PLAYLIST)
    road.desk.select_step(STEP)
    road.record(0.3)
    return share


def is_marked(road):
    return next(row["Imported"] for row in road.steps(road.path("new", PLAYLIST)) if row["Atrack"] == TRACK) == "1"


def said(road, *words):
    """Whether a text on the screen has all the words."""
    return any(all(word.lower() in text.lower() for word in words) for text in road.desk.texts() if text)


def slowest_answer(road, control, seconds):
    """How long the window at most takes to answer a question about a control, in seconds; asked over and over."""
    slowest, end = 0.0, time.monotonic() + seconds
    while time.monotonic() < end:
        asked = time.monotonic()
        try:
            road.desk.area(control)
        except GLib.Error:
            pass  # no answer for so long that it is not waited for any more
        slowest = max(slowest, time.monotonic() - asked)
        time.sleep(0.02)
    return slowest


def check_filed(road, share):
    filed = os.path.join(share.server, TRACK + ".mp3")
    wait_for("the voice track on the server", lambda: os.path.exists(filed))
    wait_for("the mark", lambda: is_marked(road))
    wait_for("the take to be gone", lambda: not os.path.exists(road.path("temp", TRACK + ".wav")))
    assert os.listdir(share.server) == [TRACK + ".mp3"], os.listdir(share.server)
    assert road.level(filed, 0.5, 1.0) > -40
    assert not os.path.exists(road.path("ok", TRACK + ".mp3"))


def check_kept(road, share):
    """The news names the folder, the take is whole, the step is not marked and the server has nothing half-filed."""
    wait_for("news that names the folder", lambda: said(road, SHARE))
    road.picture("told")
    # News in a box, or the question whether to make the folder anew.
    for answer in ("Nee", "OK"):
        if road.desk.look(answer, "push button"):
            road.desk.press(answer)
    take = road.path("temp", TRACK + ".wav")
    wait_for("the step without a mark", lambda: not is_marked(road))
    assert float(road.probe(take, "format=duration")[0]) > 1.0
    assert road.level(take, 0.5, 1.0) > -45
    assert not os.listdir(share.server), os.listdir(share.server)


def share_files(road):
    """A share that does what it should: the take is filed there, and nowhere else."""
    share = take_for_the_share(road)
    road.desk.press(SAVE)
    check_filed(road, share)


def share_stalls(road):
    """While the share stalls the window answers and says what it waits for; then the take is filed after all."""
    share = take_for_the_share(road)
    control = road.desk.find(RECORD, "push button")
    share.stall()
    road.desk.press(SAVE)
    slowest = slowest_answer(road, control, 1.0)
    assert slowest < ANSWERED, f"the window took {slowest:.2f} s to answer"
    assert said(road, "wacht", "server"), "no text tells that the server is waited for"
    road.picture("waits")
    slowest = slowest_answer(road, control, 2.0)
    assert slowest < ANSWERED, f"the window took {slowest:.2f} s to answer"
    assert not os.listdir(share.server)
    share.resume()
    check_filed(road, share)
    wait_for("the end of the waiting", lambda: not said(road, "wacht", "server"))


def share_is_not_waited_for(road):
    """The share stalls and the presenter does not wait: the take is kept, work goes on, and later it is filed."""
    share = take_for_the_share(road)
    share.stall()
    road.desk.press(SAVE)
    road.desk.press("Niet langer wachten")
    check_kept(road, share)
    road.desk.click(road.desk.find("Processor", "page tab"))
    road.desk.find("Trimmen", "panel", 2)
    # The next try fails at once: nobody waits for the same call twice.
    road.desk.press(SAVE)
    road.desk.find("OK", "push button", 2)
    road.desk.press("OK")
    share.resume()
    wait_for("the call to come back", lambda: os.path.isdir(share.folder))
    time.sleep(0.5)
    road.desk.press(SAVE)
    check_filed(road, share)


def share_goes(road):
    """The share is gone when the take is saved: told, kept, and filed once the share is back."""
    share = take_for_the_share(road)
    share.take_away()
    road.desk.press(SAVE)
    check_kept(road, share)
    share.come_back()
    road.desk.press(SAVE)
    check_filed(road, share)


def share_goes_while_waiting(road):
    """The share stalls while the take is saved and never comes back."""
    share = take_for_the_share(road)
    share.stall()
    road.desk.press(SAVE)
    time.sleep(1.5)
    share.take_away()
    check_kept(road, share)
    share.come_back()
    assert not os.listdir(share.server), os.listdir(share.server)


ROADS = (share_files, share_stalls, share_is_not_waited_for, share_goes, share_goes_while_waiting)
