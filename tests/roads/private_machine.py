"""Programs of our own, with a folder and an environment that lead to nothing of who runs them."""
import os
import shutil
import signal
import subprocess
import tempfile

DIES_TOO = ("setpriv", "--pdeathsig", "TERM")
# What would lead programs to the sound or the settings of who runs them.
FOREIGN = ("DBUS_SESSION_BUS_ADDRESS", "PIPEWIRE_REMOTE", "PIPEWIRE_RUNTIME_DIR", "PULSE_COOKIE",
           "PULSE_RUNTIME_PATH", "PULSE_SERVER", "PULSE_SINK", "PULSE_SOURCE", "PULSE_STATE_PATH", "WAYLAND_DISPLAY",
           "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME")


class PrivateMachine:
    """close() ends the programs and removes the folder."""

    def __init__(self, **variables):
        self.folder = tempfile.mkdtemp(prefix="orvel-desk-")
        self.processes = []
        runtime = os.path.join(self.folder, "run")
        os.makedirs(runtime, mode=0o700)
        self.env = dict(os.environ, XDG_RUNTIME_DIR=runtime, HOME=self.folder, LC_ALL="C.UTF-8", **variables)
        for name in FOREIGN:
            self.env.pop(name, None)
        # Where PulseAudio is installed a client would start one, on the machine's own sound cards.
        self.env["PULSE_CLIENTCONFIG"] = os.path.join(self.folder, "client.conf")
        with open(self.env["PULSE_CLIENTCONFIG"], "w", encoding="utf-8") as file:
            file.write("autospawn = no\n")

    def spawn(self, *command, **options):
        """A program that goes with this one, however that ends."""
        process = subprocess.Popen(DIES_TOO + command, env=self.env, stdout=options.pop("stdout", subprocess.DEVNULL),
                                   stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    def run(self, *command, check=True):
        """What an outside tool prints."""
        return subprocess.run(command, env=self.env, check=check, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              stdin=subprocess.DEVNULL, text=True, timeout=60).stdout

    def dead(self):
        """The commands of programs that have ended."""
        return [" ".join(process.args) for process in self.processes if process.poll() is not None]

    def close(self):
        for process in reversed(self.processes):
            process.send_signal(signal.SIGTERM)
        for process in self.processes:
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
        shutil.rmtree(self.folder, ignore_errors=True)
