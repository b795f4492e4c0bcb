"""A file server's share, as the station's computer has it mounted; it can stall and go away."""
import os
import signal
import subprocess

from waiting import wait_for


class Skipped(Exception):
    """This machine cannot do what the road needs; says what."""


class Share:
    """`folder` is what the station sees, `server` what lies on the server's own disk, whatever the share does."""

    def __init__(self, folder, server):
        self.folder, self.server = folder, server
        self._daemon = None
        for path in (folder, server):
            os.makedirs(path, exist_ok=True)
        try:
            os.close(os.open("/dev/fuse", os.O_RDWR))
        except OSError as error:
            raise Skipped(f"no network share without a usable /dev/fuse: {error.strerror}") from error
        self.mount()

    def mount(self):
        # KILL: a program that waits for the share cannot end before the share answers or is gone.
        command = ["setpriv", "--pdeathsig", "KILL", "bindfs", "-f", "--no-allow-other", self.server, self.folder]
        self._daemon = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        wait_for("the share", lambda: os.path.ismount(self.folder) or self._daemon.poll() is not None)
        assert self._daemon.poll() is None, "the share could not be mounted"

    def stall(self):
        """From now on whoever asks the share for something waits."""
        self._daemon.send_signal(signal.SIGSTOP)

    def resume(self):
        self._daemon.send_signal(signal.SIGCONT)

    def take_away(self):
        """Whoever asks, or waits, gets an error, until come_back()."""
        self._daemon.kill()
        self._daemon.wait()

    def come_back(self):
        self._unmount()
        self.mount()

    def close(self):
        if self._daemon is None:
            return
        self.resume()
        self._unmount()
        self.take_away()

    def _unmount(self):
        # -z: also while a program has a file open on it.
        subprocess.run(["fusermount", "-u", "-z", self.folder], check=False, stdin=subprocess.DEVNULL)
