"""A presenter at a desk of their own: a screen, a sound server with a microphone that speaks, and ORVEL on it.

Controls are found by the names that ORVEL gives to assistive technology and worked with the real mouse and keyboard.
"""
import os
import shutil
import signal
import subprocess
import time
import wave

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

from private_machine import DIES_TOO, PrivateMachine  # noqa: E402
from share import Share  # noqa: E402
from sound_servers import SERVERS  # noqa: E402
from waiting import wait_for  # noqa: E402

Atspi.set_timeout(3000, 15000)


class Desk(PrivateMachine):
    """Screen, window manager, accessibility bus and sound server, all private, in a temporary folder."""

    def __init__(self, microphone=True, sound="pulseaudio"):
        super().__init__(QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", ORVEL_THEME="dark")
        self.orvel = None
        self._log = os.path.join(self.folder, "orvel.log")
        self._rooms = {}
        self._shares = []
        try:
            self._start_screen()
            self._start_bus()
            self.sound = SERVERS[sound](self)
            if microphone:
                self._plug_in("room", "Studio", "microphone", "Studiomicrofoon")
        except BaseException:
            self.close()
            raise

    def _start_screen(self):
        # A number of its own: a screen that is still closing takes the socket of the next one with its number along.
        display = f":{100 + os.getpid() % 30000}"
        read, write = os.pipe()
        # -noreset: when the first program that asks the screen something is done, the others stay.
        self.spawn("Xvfb", display, "-noreset", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten",
                   "tcp", pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as numbers:
            assert numbers.readline().strip(), "no screen"
        self.env["DISPLAY"] = display
        self.spawn("openbox")
        # It answers once there is a window manager: windows that come before it are moved by it later.
        wait_for("the window manager", lambda: self.run("xdotool", "get_num_desktops", check=False).strip().isdigit())

    def _start_bus(self):
        bus = self.spawn("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        os.environ.update({key: self.env[key] for key in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR")})
        Atspi.init()

    def _plug_in(self, room, room_description, microphone, description):
        """A microphone in a room: what is played into the room is what it hears."""
        self._rooms[room] = [self.sound.load("module-null-sink", f"sink_name={room}",
                                             f"sink_properties=device.description={room_description}")]
        self.sound.wait_for_device("sources", f"{room}.monitor")
        self._rooms[room].append(self.sound.load("module-remap-source", f"source_name={microphone}",
                                                 f"master={room}.monitor",
                                                 f"source_properties=device.description={description}"))
        self.sound.wait_for_device("sources", microphone)

    def add_card(self, name, description):
        """Plugs in another microphone, with a room of its own to speak into."""
        self._plug_in(name, f"{description}kamer", f"{name}-mic", description)

    def unplug_microphone(self, room="room"):
        self.sound.unload(self._rooms[room].pop())

    def remove_card(self, name):
        """Takes away a microphone and its room."""
        for module in reversed(self._rooms.pop(name)):
            self.sound.unload(module)

    def mount_share(self, name):
        """A file server's share, mounted in this desk's folder; raises Skipped where that cannot be."""
        self._shares.append(Share(os.path.join(self.folder, name), os.path.join(self.folder, f"{name}-schijf")))
        return self._shares[-1]

    def add_output(self, name):
        """Loudspeakers, which become the default output."""
        self.sound.load("module-null-sink", f"sink_name={name}")
        self.sound.wait_for_device("sinks", name)
        self.run("pactl", "set-default-sink", name)

    def listen(self, output):
        """Records what an output plays until stop(); then `file` has it."""
        return Listener(self, output)

    def say(self, text, card="room"):
        """Speaks into a microphone's room; returns at once."""
        words = os.path.join(self.folder, f"words-{time.monotonic_ns()}.wav")
        subprocess.run(["espeak-ng", "-v", "nl", "-w", words, text], check=True, env=self.env)
        self.spawn("paplay", f"--device={card}", words)
        with wave.open(words) as spoken:
            return spoken.getnframes() / spoken.getframerate()

    def start_orvel(self, binary, station, *arguments):
        """station: None for one that is chosen in the program."""
        self.env.pop("ORVEL_HOME", None)
        if station:
            self.env["ORVEL_HOME"] = station
        with open(self._log, "w", encoding="utf-8") as log:
            self.orvel = subprocess.Popen([*DIES_TOO, binary, *arguments], env=self.env, stdout=log, stderr=log,
                                          stdin=subprocess.DEVNULL)

    def log(self):
        """What ORVEL has printed."""
        if not self.orvel:
            return ""
        with open(self._log, encoding="utf-8", errors="replace") as log:
            return log.read()

    # What is on the screen

    @staticmethod
    def _walk(node, cells, depth=0):
        if node is None or depth > 14:
            return
        yield node
        try:
            if node.get_role_name() == "table" and not cells:
                return
            # Nothing that is hidden has anything to show inside: most of the tree is spared.
            if depth > 1 and not node.get_state_set().contains(Atspi.StateType.SHOWING):
                return
            for index in range(min(node.get_child_count(), 400)):
                yield from Desk._walk(node.get_child_at_index(index), cells, depth + 1)
        except gi.repository.GLib.Error:
            return

    def _nodes(self, cells):
        """Everything on the screen; a table's hundreds of cells only when they are wanted."""
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            yield from self._walk(desktop.get_child_at_index(index), cells)

    def look(self, name, role=None):
        """A visible control with this name (and role), or None."""
        for node in self._nodes(cells=role == "table cell"):
            try:
                if node.get_name() != name or (role and node.get_role_name() != role):
                    continue
                if node.get_state_set().contains(Atspi.StateType.SHOWING):
                    return node
            except gi.repository.GLib.Error:
                continue
        return None

    def find(self, name, role=None, seconds=15.0):
        return wait_for(f"{role or 'control'} {name!r}", lambda: self.look(name, role), seconds)

    def texts(self):
        """All texts on the screen."""
        found = []
        for node in self._nodes(cells=True):
            try:
                found.append(node.get_name())
            except gi.repository.GLib.Error:
                continue
        return found

    @staticmethod
    def area(node):
        """Where a control is on the screen, asked of the program itself."""
        return node.get_extents(Atspi.CoordType.SCREEN)

    def _resting_place(self, node):
        """Where a control is once its window is up: before that a click would miss it. None while it is not."""
        window = node
        while window.get_parent() and window.get_parent().get_role() != Atspi.Role.APPLICATION:
            window = window.get_parent()
        up = window.get_state_set().contains(Atspi.StateType.ACTIVE)
        # What drops down is never active.
        if not up and window.get_role() in (Atspi.Role.FRAME, Atspi.Role.DIALOG, Atspi.Role.ALERT):
            return None
        before = self.area(node)
        time.sleep(0.05)
        after = self.area(node)
        same = all(getattr(before, side) == getattr(after, side) for side in ("x", "y", "width", "height"))
        return after if same else None

    def click(self, node, double=False):
        area = wait_for("the control to be in its place", lambda: self._resting_place(node))
        self.run("xdotool", "mousemove", str(area.x + min(area.width // 2, 300)),
                 str(area.y + area.height // 2), "click", "--repeat", "2" if double else "1", "1")

    def enabled(self, name, role="push button", seconds=15.0):
        """The control, once it can be used."""
        node = self.find(name, role, seconds)
        wait_for(f"{name!r} to be enabled", lambda: node.get_state_set().contains(Atspi.StateType.ENABLED), seconds)
        return node

    def press(self, name, role="push button", seconds=15.0):
        self.click(self.enabled(name, role, seconds))

    def tab_to(self, name):
        """Moves the focus by the tab key until it is on a control of this name."""
        def is_there():
            node = self.look(name)
            if node and node.get_state_set().contains(Atspi.StateType.FOCUSED):
                return True
            self.key("Tab")
            time.sleep(0.2)
            return False
        wait_for(f"the focus on {name!r}", is_there)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "30", text)

    def key(self, name):
        self.run("xdotool", "key", name)

    def choose(self, box, text):
        """Chooses an entry of the drop-down list that is called `box`."""
        self.click(self.find(box, "combo box"))
        self.click(self.find(text, "list item"))

    @staticmethod
    def shown(node):
        """The text that a control shows."""
        return Atspi.Text.get_text(node, 0, -1)

    def walk(self, window):
        """Everything in the window of this name, but the cells of its tables."""
        return list(self._walk(self.find(window), cells=False))

    def open_playlist(self, name):
        self.click(self.find(name, "list item"))

    def select_step(self, text):
        self.click(self.find(text, "table cell"))

    def screenshot(self, path):
        self.run("import", "-window", "root", path)

    def close(self):
        for share in self._shares:
            share.close()  # first: a program that waits for it cannot end
        if self.orvel and self.orvel.poll() is None:
            self.orvel.terminate()
            try:
                self.orvel.wait(10)
            except subprocess.TimeoutExpired:
                self.orvel.kill()
        super().close()


class Listener:
    """What an output plays, as a WAV file."""

    def __init__(self, desk, output):
        self.file = os.path.join(desk.folder, f"heard-{time.monotonic_ns()}.wav")
        self._process = subprocess.Popen(["parec", f"--device={output}.monitor", "--file-format=wav", self.file],
                                         env=desk.env, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for("the listener", lambda: os.path.exists(self.file))

    def stop(self):
        self._process.send_signal(signal.SIGINT)
        self._process.wait(10)


def copy_station(sample, target):
    """A station of its own, made from the sample, which stays as it is."""
    shutil.copytree(sample, target, copy_function=shutil.copyfile)
    for folder in ("temp", "temp2", "voicetracks"):
        os.makedirs(os.path.join(target, folder), exist_ok=True)
    settings = os.path.join(target, "orvel.ini")
    with open(settings, encoding="utf-8", newline="") as file:
        text = file.read()
    with open(settings, "w", encoding="utf-8", newline="") as file:
        file.write(text.replace("@STATION@", target))


def set_key(station, key, value):
    """Changes a line of a station's settings file."""
    settings = os.path.join(station, "orvel.ini")
    with open(settings, encoding="utf-8", newline="") as file:
        lines = file.read().split("\n")
    changed = [f"{key}={value}" if line.split("=")[0].strip().lower() == key.lower() else line for line in lines]
    assert changed != lines or f"{key}={value}" in lines, key
    with open(settings, "w", encoding="utf-8", newline="") as file:
        file.write("\n".join(changed))
