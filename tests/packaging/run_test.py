#!/usr/bin/python3
"""What `./run` says to who may not build or install, and which sound it gives to who has no microphone.

The clone is a copy whose compiler and program are stand-ins: nothing is built.

usage: run_test.py CASE
"""
import os
import pty
import shutil
import signal
import subprocess
import sys

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "roads"))
from private_machine import PrivateMachine  # noqa: E402
from sound_servers import SERVERS  # noqa: E402
from waiting import wait_for  # noqa: E402

SKIPPED = 77  # CTest's agreed exit code
ON_WITH_IT = "on with it"


class Clone:
    """`tools` come before the machine's own programs."""

    def __init__(self, machine):
        self.machine = machine
        os.chmod(machine.folder, 0o755)
        self.folder = self.make("orvel hier")  # a space: what is to be typed must know of it
        self.tools = self.make("tools")
        shutil.copy(os.path.join(ROOT, "run"), self.folder)
        for part in ("packaging", "samples"):
            shutil.copytree(os.path.join(ROOT, part), os.path.join(self.folder, part))
        self.script(os.path.join(self.tools, "cmake"), f"touch '{machine.folder}/built'")
        machine.env.update(PATH=f"{self.tools}:{os.environ['PATH']}", DISPLAY=":no-screen")

    def make(self, name, owner=None):
        path = os.path.join(self.machine.folder, name)
        os.makedirs(path)
        if owner:
            shutil.chown(path, owner)
        return path

    @staticmethod
    def script(path, text):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(f"#!/bin/bash\n{text}\n")
        os.chmod(path, 0o755)

    def install_nothing(self, then="exit 0"):
        self.script(os.path.join(self.folder, "packaging", "install-packages"), then)

    def run(self, command, user=None, **variables):
        """(exit code, what was said)."""
        before = ["setpriv", f"--reuid={user}", "--regid=nogroup", "--clear-groups"] if user else []
        done = subprocess.run(before + command, env=dict(self.machine.env, **variables), stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, cwd="/", check=False,
                              timeout=60)
        return done.returncode, done.stdout

    def start(self, user=None, **variables):
        return self.run([os.path.join(self.folder, "run")], user, **variables)

    def check_nothing_was_built(self):
        assert not os.path.exists(os.path.join(self.machine.folder, "built"))


def to_type(said):
    """The command that somebody is told to type: the one line that is indented."""
    lines = [line.strip() for line in said.splitlines() if line.startswith("  ")]
    assert len(lines) == 1, said
    return lines[0]


def somebody_elses_clone(clone):
    """The command makes a copy of one's own, and goes on there."""
    clone.install_nothing(f"echo {ON_WITH_IT}; exit 5")
    os.makedirs(os.path.join(clone.folder, "build", "dev"))
    home = clone.make("home", "nobody")
    code, said = clone.start("nobody", HOME=home)
    assert code == 1 and "mag u niet schrijven" in said and ON_WITH_IT not in said, said
    clone.check_nothing_was_built()
    code, said = clone.run(["bash", "-c", to_type(said)], "nobody", HOME=home)
    assert code == 5 and ON_WITH_IT in said, said
    assert not os.path.exists(os.path.join(home, "orvel", "build")), "somebody else's build was copied"


def built_as_root(clone):
    """The command gives back what a start as root has taken."""
    clone.install_nothing(f"echo {ON_WITH_IT}; exit 5")
    shutil.chown(clone.folder, "nobody")
    os.makedirs(os.path.join(clone.folder, "build", "dev", "app"))
    clone.script(os.path.join(clone.tools, "sudo"), 'exec "$@"')
    code, said = clone.start("nobody")
    assert code == 1 and "mag u niet schrijven" in said and ON_WITH_IT not in said, said
    assert "nobody:" in to_type(said), said
    code, said = clone.run(["bash", "-c", to_type(said)])
    assert code == 0, said
    code, said = clone.start("nobody")
    assert code == 5 and ON_WITH_IT in said, said


def nothing_installed(clone, **more):
    """A machine that lacks every package, for who may not install."""
    clone.make("dpkg/info")
    clone.make("dpkg/updates")
    with open(os.path.join(clone.machine.folder, "dpkg", "status"), "w", encoding="utf-8"):
        pass
    shutil.chown(clone.folder, "nobody")
    return dict(more, DPKG_ADMINDIR=os.path.join(clone.machine.folder, "dpkg"))


def packages_missing(clone):
    """Whoever may install gets the command; nothing else is tried."""
    clone.script(os.path.join(clone.tools, "sudo"), "echo sudo speaks >&2; exit 1")
    code, said = clone.start("nobody", **nothing_installed(clone))
    assert code == 1 and "qt6-base-dev" in said and "beheerder" in said and "sudo speaks" not in said, said
    assert "install-packages run" in to_type(said), said
    assert "xvfb" not in said, "with a screen there is no demonstration to prepare for"
    # It can be typed as it stands.
    clone.install_nothing(f'echo {ON_WITH_IT} "$@"')
    clone.script(os.path.join(clone.tools, "sudo"), 'exec "$@"')
    assert clone.run(["bash", "-c", to_type(said)]) == (0, f"{ON_WITH_IT} run\n")
    clone.check_nothing_was_built()


def sudo_refuses(clone):
    """At a terminal the password is asked; who is refused is told what a technician has to type."""
    clone.script(os.path.join(clone.tools, "sudo"), "exit 1")
    env = dict(clone.machine.env, **nothing_installed(clone))
    terminal, end = pty.openpty()
    started = subprocess.Popen(["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups",
                                os.path.join(clone.folder, "run")], env=env, stdin=end, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, text=True, cwd="/")
    said = started.communicate(timeout=60)[0]
    os.close(end)
    os.close(terminal)
    assert started.returncode == 1 and "install-packages run" in to_type(said), said
    clone.check_nothing_was_built()


def sources(machine):
    return [line.split("\t")[1] for line in machine.run("pactl", "list", "short", "sources").splitlines()]


def start_with_sound(clone, **variables):
    """`./run` with a program that tells what it hears and stays; the process and what it has told."""
    clone.install_nothing()
    told = os.path.join(clone.machine.folder, "told")
    clone.script(os.path.join(clone.folder, "build", "dev", "app", "orvel"),
                 f"{{ pactl list short sources; echo \"server $PULSE_SERVER\"; }} > '{told}.new'\n"
                 f"mv '{told}.new' '{told}'\nexec sleep 100")
    env = dict(clone.machine.env, **variables)
    orvel = subprocess.Popen([os.path.join(clone.folder, "run")], stdin=subprocess.DEVNULL,
                             env={name: value for name, value in env.items() if value is not None},
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    clone.machine.processes.append(orvel)
    wait_for("the program", lambda: os.path.exists(told), 60)
    with open(told, encoding="utf-8") as file:
        return orvel, file.read()


def running(words):
    """Whether a program runs that has the words on its command line."""
    for number in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{number}/cmdline", "rb") as file:
                if words.encode() in file.read():
                    return True
        except OSError:
            continue  # it has just ended
    return False


def own_server(clone):
    """No server runs: ORVEL gets one, even without a folder for such things, and takes it along when it is killed."""
    clone.script(os.path.join(clone.folder, "packaging", "sound-server"),
                 f"exec '{ROOT}/packaging/sound-server' \"$@\"")
    orvel, told = start_with_sound(clone, XDG_RUNTIME_DIR=None)
    assert "orvel_mic" in told, told
    server = next(line.split()[1] for line in told.splitlines() if line.startswith("server "))
    socket = server.removeprefix("unix:")
    assert running(socket) and os.path.exists(socket)
    orvel.send_signal(signal.SIGKILL)
    orvel.wait()
    wait_for("the end of the server", lambda: not running(socket))
    wait_for("the end of its folder", lambda: not os.path.exists(os.path.dirname(socket)))


def only_a_made_up_output(clone):
    """PipeWire makes up an output where there is no card: what it plays is no microphone, and afterwards all is as
    it was."""
    SERVERS["pipewire"](clone.machine)
    assert sources(clone.machine) == ["auto_null.monitor"], sources(clone.machine)
    orvel, told = start_with_sound(clone)
    assert "orvel_mic" in told, told
    orvel.terminate()
    orvel.wait()
    wait_for("what there was", lambda: sources(clone.machine) == ["auto_null.monitor"])


def a_microphone_among_many(clone):
    """A long list whose first line is a microphone: it once went unseen, because the list's writer was cut short."""
    calls = os.path.join(clone.machine.folder, "calls")
    clone.script(os.path.join(clone.tools, "pactl"), f"echo $* >> '{calls}'\n"
                 r'[ "$1" != list ] || { printf "1\tmicrophone\tm\n"; '
                 r'for i in {1..20000}; do printf "%s\toutput-%s.monitor\tm\n" $i $i; done; }')
    start_with_sound(clone)
    with open(calls, encoding="utf-8") as file:
        asked = set(file.read().splitlines())
    assert asked == {"list short sources"}, asked


FOR_ROOT = (somebody_elses_clone, built_as_root, packages_missing, sudo_refuses)
CASES = {case.__name__: case for case in (*FOR_ROOT, own_server, only_a_made_up_output, a_microphone_among_many)}


def main():
    case = CASES[sys.argv[1]]
    if case in FOR_ROOT and os.geteuid() != 0:
        print(f"{sys.argv[1]}: skipped: only root can be another user")
        sys.exit(SKIPPED)
    machine = PrivateMachine()
    try:
        case(Clone(machine))
    finally:
        machine.close()
    print(f"{sys.argv[1]}: as it should be")


if __name__ == "__main__":
    main()
