"""The sound servers that stations have. A desk starts one of its own, with the devices that a road plugs in."""
import os

from waiting import wait_for

SOUND_SERVER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "packaging", "sound-server")


class PulseAudio:
    """As on Debian's older desktops."""

    def __init__(self, desk):
        self.desk = desk
        socket = os.path.join(desk.env["XDG_RUNTIME_DIR"], "pulse.sock")
        desk.env["PULSE_SERVER"] = f"unix:{socket}"
        desk.spawn(SOUND_SERVER, "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
                   "-L", f"module-native-protocol-unix socket={socket} auth-anonymous=1")
        self._wait()

    def _wait(self):
        wait_for("the sound server", lambda: "Server Name" in self.desk.run("pactl", "info", check=False))

    def load(self, module, *arguments):
        """Returns the module's number."""
        return self.desk.run("pactl", "load-module", module, *arguments).strip()

    def unload(self, module):
        self.desk.run("pactl", "unload-module", module)

    def wait_for_device(self, kind, name):
        """Until the server lists a device: 'sources' or 'sinks'."""
        def listed():
            rows = self.desk.run("pactl", "list", "short", kind).splitlines()
            return any(name == row.split("\t")[1] for row in rows)
        wait_for(f"{name} among the {kind}", listed)


class PipeWire(PulseAudio):
    """As on Debian 12's GNOME: its own service speaks PulseAudio's language. Without a device it makes up an output."""

    def __init__(self, desk):
        self.desk = desk
        desk.env["PULSE_SERVER"] = f"unix:{desk.env['XDG_RUNTIME_DIR']}/pulse/native"
        desk.spawn(SOUND_SERVER, "pipewire")
        wait_for("PipeWire", lambda: os.path.exists(os.path.join(desk.env["XDG_RUNTIME_DIR"], "pipewire-0")))
        desk.spawn(SOUND_SERVER, "wireplumber")
        desk.spawn(SOUND_SERVER, "pipewire-pulse")
        self._wait()
        # Made once the session's manager is at work: before it, what is plugged in may not be linked.
        self.wait_for_device("sinks", "auto_null")


SERVERS = {"pulseaudio": PulseAudio, "pipewire": PipeWire}
