"""A presenter at a desk of their own: a screen, a sound server with a microphone that speaks, and ORVEL on it.

Controls are found by the names that ORVEL gives to assistive technology and worked with the real mouse and keyboard.
"""
import os
import shutil
import signal
import subprocess
import tempfile
import time
import wave

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

Atspi.set_timeout(3000, 15000)
SOUND_SERVER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "packaging", "sound-server")


def wait_for(what, condition, seconds=15.0):
    """The first true value of condition(); fails after so many seconds."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"waited {seconds} s in vain for {what}")


class Desk:
    """Screen, window manager, accessibility bus and sound server, all private, in a temporary folder."""

    def __init__(self, microphone=True):
        self.folder = tempfile.mkdtemp(prefix="orvel-desk-")
        self.processes = []
        self.orvel = None
        runtime = os.path.join(self.folder, "run")
        os.makedirs(runtime, mode=0o700)
        self.env = dict(os.environ, XDG_RUNTIME_DIR=runtime, HOME=self.folder, LC_ALL="C.UTF-8",
                        QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", ORVEL_THEME="dark",
                        PULSE_SERVER=f"unix:{runtime}/pulse.sock")
        self.env.pop("WAYLAND_DISPLAY", None)
        self._start_screen()
        self._start_bus()
        self._start_sound(microphone)

    def _spawn(self, *command, **options):
        process = subprocess.Popen(command, env=self.env, stdout=options.pop("stdout", subprocess.DEVNULL),
                                   stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    def run(self, *command, check=True):
        """What an outside tool prints."""
        return subprocess.run(command, env=self.env, check=check, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              stdin=subprocess.DEVNULL, text=True, timeout=60).stdout

    def _start_screen(self):
        # A number of its own: a screen that is still closing takes the socket of the next one with its number along.
        display = f":{100 + os.getpid() % 30000}"
        read, write = os.pipe()
        self._spawn("Xvfb", display, "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp",
                    pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as numbers:
            assert numbers.readline().strip(), "no screen"
        self.env["DISPLAY"] = display
        self._spawn("openbox")

    def _start_bus(self):
        bus = self._spawn("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        os.environ.update({key: self.env[key] for key in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR")})
        Atspi.init()

    def _start_sound(self, microphone):
        modules = [f"module-native-protocol-unix socket={self.env['XDG_RUNTIME_DIR']}/pulse.sock auth-anonymous=1"]
        if microphone:
            modules += ["module-null-sink sink_name=room sink_properties=device.description=Studio",
                        "module-remap-source source_name=microphone master=room.monitor "
                        "source_properties=device.description=Studiomicrofoon"]
        command = [SOUND_SERVER, "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no"]
        for module in modules:
            command += ["-L", module]
        self._spawn(*command)
        wait_for("the sound server", lambda: "Server Name" in self.run("pactl", "info", check=False))

    def add_card(self, name, description):
        """Plugs in another microphone, with a room of its own to speak into."""
        self.run("pactl", "load-module", "module-null-sink", f"sink_name={name}",
                 f"sink_properties=device.description={description}kamer")
        self.run("pactl", "load-module", "module-remap-source", f"source_name={name}-mic", f"master={name}.monitor",
                 f"source_properties=device.description={description}")

    def remove_card(self, name):
        for line in self.run("pactl", "list", "short", "modules").splitlines():
            if f"sink_name={name}" in line.split():
                self.run("pactl", "unload-module", line.split()[0])  # the microphone goes with its room

    def add_output(self, name):
        """Loudspeakers, which become the default output."""
        self.run("pactl", "load-module", "module-null-sink", f"sink_name={name}")
        self.run("pactl", "set-default-sink", name)

    def listen(self, output):
        """Records what an output plays until stop(); then `file` has it."""
        return Listener(self, output)

    def say(self, text, card="room"):
        """Speaks into a microphone's room; returns at once."""
        words = os.path.join(self.folder, f"words-{time.monotonic_ns()}.wav")
        subprocess.run(["espeak-ng", "-v", "nl", "-w", words, text], check=True, env=self.env)
        self._spawn("paplay", f"--device={card}", words)
        with wave.open(words) as spoken:
            return spoken.getnframes() / spoken.getframerate()

    def start_orvel(self, binary, station, *arguments):
        self.env["ORVEL_HOME"] = station
        log = open(os.path.join(self.folder, "orvel.log"), "w", encoding="utf-8")
        self.orvel = subprocess.Popen([binary, *arguments], env=self.env, stdout=log, stderr=log,
                                      stdin=subprocess.DEVNULL)

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

    def click(self, node, double=False):
        area = node.get_extents(Atspi.CoordType.SCREEN)
        self.run("xdotool", "mousemove", str(area.x + min(area.width // 2, 300)),
                 str(area.y + area.height // 2), "click", "--repeat", "2" if double else "1", "1")

    def press(self, name, role="push button", seconds=15.0):
        node = self.find(name, role, seconds)
        wait_for(f"{name!r} to be enabled", lambda: node.get_state_set().contains(Atspi.StateType.ENABLED), seconds)
        self.click(node)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "30", text)

    def key(self, name):
        self.run("xdotool", "key", name)

    def choose(self, box, text):
        """Chooses an entry of the drop-down list that shows `box`."""
        self.click(self.find(box, "combo box"))
        self.click(self.find(text, "list item"))

    def open_playlist(self, name):
        self.click(self.find(name, "list item"))

    def select_step(self, text):
        self.click(self.find(text, "table cell"))

    def screenshot(self, path):
        self.run("import", "-window", "root", path)

    def close(self):
        if self.orvel and self.orvel.poll() is None:
            self.orvel.terminate()
            self.orvel.wait(10)
        for process in reversed(self.processes):
            process.send_signal(signal.SIGTERM)
        for process in self.processes:
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
        shutil.rmtree(self.folder, ignore_errors=True)


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
