"""The real windows as a screen reader finds them: names, roles, states and values on the desktop's own bus."""
from presenter import Atspi
from road import RECORD, STOP
from waiting import wait_for

# What is operated or read, and so must be called something.
CONTROLS = {"push button", "toggle button", "check box", "combo box", "slider", "spin button", "dial", "list", "table",
            "text", "progress bar", "page tab", "page tab list", "tool bar"}
NUMBERS = {"slider", "spin button", "dial", "progress bar"}


def problems_of(node):
    """What is wrong with a control, in words."""
    role, name = node.get_role_name(), node.get_name()
    if role not in CONTROLS:
        return
    states = node.get_state_set()
    if not states.contains(Atspi.StateType.SHOWING):
        return
    if not name.strip():
        yield f"a {role} without a name in {node.get_parent().get_name()!r}"
    if role == "combo box" and name == Atspi.Text.get_text(node, 0, -1):
        yield f"{name!r} is called by its value"
    if role in NUMBERS:
        try:
            value = Atspi.Value.get_current_value(node)
            low, high = Atspi.Value.get_minimum_value(node), Atspi.Value.get_maximum_value(node)
        except Exception as error:  # whatever the bus says: there is no value
            yield f"the {role} {name!r} has no value: {error}"
            return
        if not low <= value <= high:
            yield f"the {role} {name!r} is {value}, outside {low} to {high}"


def check(road, window, least):
    """Looks at every control of the window of this name."""
    nodes = road.desk.walk(window)
    found = [problem for node in nodes for problem in problems_of(node)]
    assert not found, (window, found)
    controls = [node.get_name() for node in nodes if node.get_role_name() in CONTROLS]
    assert len(controls) >= least, (window, controls)


def windows_are_read(road):
    """The main window and every dialog that opens from it."""
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.enabled(RECORD)
    check(road, "ochtend-0700: 0 van 5 links klaar - ORVEL", 15)
    for button, title, least in (("Importeren", "Importeren van playlist(s)", 6),
                                 ("Exporteren", "Exporteren van playlists en voicetracks", 5),
                                 ("Instellingen", "Programma instellingen", 6),
                                 ("Importeer", "Geluidsbestanden importeren", 8),
                                 ("Herstellen...", "Herstellen", 3)):
        road.desk.press(button)
        road.desk.find(title)
        check(road, title, least)
        road.picture(title.split()[0].lower())
        road.desk.key("Escape")
        wait_for(f"the end of {title}", lambda shown=title: not road.desk.look(shown, "dialog"))
    road.desk.click(road.desk.find("De laatste tram", "table cell"), double=True)
    check(road, "Voorbeluistering", 5)
    road.picture("preview")
    road.desk.key("Escape")
    wait_for("the end of the preview", lambda: not road.desk.look("Voorbeluistering"))


def times_are_read(road):
    """The count-down and the time of the recording, as numbers and as text, while they run."""
    road.start()
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")
    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    clock, count = (next(node for node in road.desk.walk("ochtend-0700: 0 van 5 links klaar - ORVEL")
                         if node.get_name() == name and node.get_value_iface()) for name in ("Opnametijd", "Aftelling"))
    wait_for("a second of recording", lambda: Atspi.Value.get_current_value(clock) > 1.0)
    assert road.desk.shown(clock).startswith("0:00:0"), road.desk.shown(clock)
    assert Atspi.Value.get_current_value(count) == 0
    road.desk.press(STOP)
    road.desk.find(RECORD, "push button")


ROADS = (windows_are_read, times_are_read)
