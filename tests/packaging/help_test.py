#!/usr/bin/python3
"""`./run --help`, `./test --help` and a room that there is not: told at once, nothing is installed or built for it.

usage: help_test.py CASE
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
# Whoever calls one of them does more than tell.
DOERS = ("apt-get", "cmake", "ctest", "dpkg-query", "git", "pactl", "sudo")


def test_programs():
    """(room, the names of its test programs), by the folders of this source tree."""
    for folder, _, files in os.walk(os.path.join(ROOT, "tests")):
        if "CMakeLists.txt" in files:
            with open(os.path.join(folder, "CMakeLists.txt"), encoding="utf-8") as file:
                names = re.findall(r"^orvel_test\((\w+)", file.read(), re.MULTILINE)
            if names:
                yield os.path.basename(folder), names


class Clone:
    """The two scripts and what they look at, where nothing may be written and every doer leaves a note."""

    def __init__(self, folder):
        self.folder = os.path.join(folder, "orvel hier")
        self.notes = os.path.join(folder, "notes")
        self.tools = os.path.join(folder, "tools")
        os.makedirs(self.tools)
        for part in ("packaging", "tests"):
            shutil.copytree(os.path.join(ROOT, part), os.path.join(self.folder, part), symlinks=True)
        for script in ("run", "test"):
            shutil.copy(os.path.join(ROOT, script), self.folder)
        for doer in DOERS:
            self.write(os.path.join(self.tools, doer), f"echo {doer} \"$@\" >> '{self.notes}'")

    @staticmethod
    def write(path, text):
        with open(path, "w", encoding="utf-8") as file:
            file.write(f"#!/bin/bash\n{text}\n")
        os.chmod(path, 0o755)

    def run(self, *command):
        """(exit code, what was printed, what was complained of)."""
        environment = dict(os.environ, PATH=f"{self.tools}:{os.environ['PATH']}")
        done = subprocess.run([os.path.join(self.folder, command[0]), *command[1:]], env=environment, cwd="/",
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False, timeout=30)
        return done.returncode, done.stdout, done.stderr

    def done(self):
        """What the doers were called for."""
        if not os.path.exists(self.notes):
            return []
        with open(self.notes, encoding="utf-8") as file:
            return file.read().splitlines()


def run_tells(clone):
    for word in ("--help", "-h"):
        code, said, complained = clone.run("run", word)
        assert code == 0 and not complained, complained
        assert "./run -RECORDER" in said and "demo" in said, said
    assert clone.done() == [] and sorted(os.listdir(clone.folder)) == ["packaging", "run", "test", "tests"]


def test_tells(clone):
    for word in ("--help", "-h"):
        code, said, complained = clone.run("test", word)
        assert code == 0 and not complained, complained
        told = next(line for line in said.splitlines() if line.startswith("rooms: ")).split()[1:]
        assert told == sorted({room for room, _ in test_programs()}), told
        assert {"dsp", "windows", "jet"} <= set(told), told
    assert clone.done() == [] and sorted(os.listdir(clone.folder)) == ["packaging", "run", "test", "tests"]


def no_such_room(clone):
    code, said, complained = clone.run("test", "kitchen")
    assert code == 2 and not said, (code, said)
    assert "kitchen" in complained and " dsp " in complained, complained
    assert clone.done() == []


def one_room(clone):
    """Its programs are built, and nothing else; one that fails makes the whole fail, after the others have run."""
    programs = os.path.join(clone.folder, "build", "work", "tests")
    os.makedirs(programs)
    names = dict(test_programs())["audio"]
    assert len(names) > 1, names
    ran = os.path.join(os.path.dirname(clone.folder), "ran")
    for number, name in enumerate(names):
        clone.write(os.path.join(programs, name),
                    f"echo {name} \"$@\" \"$QT_QPA_PLATFORM\" \"$PULSE_SERVER\" >> '{ran}'; exit {1 if number == 0 else 0}")
    code, _, _ = clone.run("test", "audio", "*.Ring*")
    assert code == 1, code
    assert clone.done() == ["cmake --preset work", f"cmake --build --preset work --target {' '.join(names)}"], clone.done()
    with open(ran, encoding="utf-8") as file:
        assert file.read().splitlines() == [
            f"{name} --gtest_brief=1 --gtest_filter=*.Ring* offscreen unix:/nonexistent" for name in names]
    clone.write(os.path.join(programs, names[0]), "exit 0")
    assert clone.run("test", "audio")[0] == 0


CASES = {case.__name__: case for case in (run_tells, test_tells, no_such_room, one_room)}

if __name__ == "__main__":
    with tempfile.TemporaryDirectory(prefix="orvel-help-") as where:
        CASES[sys.argv[1]](Clone(where))
    print(f"{sys.argv[1]}: as it should be")
