#!/usr/bin/python3
"""Whoever runs ORVEL from source on a desktop keeps what is installed there.

`./run` once took PipeWire, and with it the sound of a GNOME desktop, away to install PulseAudio. Here apt is shown
Debian's desktops as installed and only tells what it would do.

usage: desktops_test.py DESKTOP
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

PACKAGING = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "packaging")
# What is installed there, what would push its sound server out, and the other server's program.
DESKTOPS = {
    "pipewire": (["gnome-core", "pipewire-audio", "pipewire-alsa", "pipewire-pulse", "wireplumber"], "pulseaudio",
                 "pulseaudio"),
    "pulseaudio": (["xfce4", "xfce4-pulseaudio-plugin", "pulseaudio", "pulseaudio-module-bluetooth"],
                   "pipewire-audio", "pipewire-pulse"),
}
# What an archive knows of a package and dpkg does not want to hear.
ARCHIVE_FIELDS = re.compile(r"^(Filename|Size|MD5sum|SHA\d+): .*\n", re.MULTILINE)


class Desktop:
    """The package lists of a machine that is not there, for apt and dpkg-query."""

    def __init__(self, folder, packages):
        self.folder = folder
        for path in ("lists/partial", "cache/archives/partial", "dpkg/info", "dpkg/updates"):
            os.makedirs(os.path.join(folder, path))
        self.env = dict(os.environ, LC_ALL="C", DPKG_ADMINDIR=os.path.join(folder, "dpkg"))
        self._write("dpkg/status", "")
        self._configure()
        if not self._run("apt-cache", "show", packages[0], check=False).stdout:
            print("this machine has no package lists: fetching them")
            self._configure(f'Dir::State::lists "{folder}/lists";\n')
            self._run("apt-get", "update", "-qq", env=self.connected())
        self._write("dpkg/status", self._installed(packages))
        self._run("apt-get", "check", "-qq")
        subprocess.run(["chmod", "-R", "a+rX", folder], check=True)

    def _write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
            file.write(text)

    def _configure(self, more=""):
        state = f'Dir::State::status "{self.folder}/dpkg/status";\nAPT::Sandbox::User "root";\n{more}'
        self._write("connected.conf", state)
        # The machine's own settings may forbid the cache that makes the second question a fast one.
        self._write("apt.conf", f'{state}Dir::Cache "{self.folder}/cache";\nDir::Etc::parts "/dev/null";\n')
        self.env["APT_CONFIG"] = os.path.join(self.folder, "apt.conf")

    def connected(self):
        """With the machine's own settings, which know the way to the packages."""
        return dict(self.env, APT_CONFIG=os.path.join(self.folder, "connected.conf"))

    def _run(self, *command, check=True, env=None):
        return subprocess.run(command, env=env or self.env, check=check, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True)

    def _installed(self, packages):
        """What dpkg would have written down, had the packages and all that they need been installed."""
        wanted = self._run("apt-get", "install", "--simulate", "--no-install-recommends", *packages).stdout
        exact = [f"{name}={version}" for name, version in re.findall(r"^Inst (\S+) \((\S+)", wanted, re.MULTILINE)]
        stanzas = {}
        for stanza in self._run("apt-cache", "show", *exact).stdout.split("\n\n"):
            if stanza.strip():
                first, *rest = ARCHIVE_FIELDS.sub("", stanza.strip() + "\n").split("\n", 1)
                stanzas.setdefault(first, "\n".join([first, "Status: install ok installed", *rest]))
        assert len(stanzas) == len(exact), (len(stanzas), len(exact))
        return "\n".join(stanzas.values())

    def is_installed(self, package):
        return self._run("dpkg-query", "-W", "-f=${db:Status-Status}", package, check=False).stdout == "installed"

    def install(self, packaging):
        """What the house's own script would do."""
        return self._run(os.path.join(packaging, "install-packages"), "--simulate", "run", "demo", "test", check=False)


def check_nothing_goes(desktop, packages):
    for package in packages:
        assert desktop.is_installed(package), package
    done = desktop.install(PACKAGING)
    assert done.returncode == 0, done.stderr
    assert re.search(r"^Inst cmake ", done.stdout, re.MULTILINE), done.stdout
    assert not re.search(r"^Remv", done.stdout, re.MULTILINE), done.stdout


def check_is_refused(desktop, intruder):
    """A list that asks for the other sound server: apt would remove this one, and may not."""
    packaging = os.path.join(desktop.folder, "with intruder")
    shutil.copytree(PACKAGING, packaging)
    with open(os.path.join(packaging, "packages-test.txt"), "a", encoding="utf-8") as file:
        file.write(intruder + "\n")
    done = desktop.install(packaging)
    assert done.returncode != 0 and "remove is disabled" in done.stderr, (done.returncode, done.stdout, done.stderr)


def check_fetches(desktop, program):
    """A program of the server that the desktop lacks is there afterwards, with no rights and nothing installed."""
    if shutil.which(program):
        print(f"{program} is installed on this machine: there is nothing to fetch")
        return
    server = program.split("-")[0]
    clone = os.path.join(desktop.folder, "clone")
    shutil.copytree(PACKAGING, os.path.join(clone, "packaging"))
    command = [os.path.join(clone, "packaging", "sound-server"), "--fetch", server]
    if os.geteuid() == 0:
        shutil.chown(clone, "nobody")
        command = ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", *command]
    subprocess.run(command, env=dict(desktop.connected(), HOME=clone), check=True)
    fetched = os.path.join(clone, "build", "servers", server, "usr", "bin", program)
    assert os.access(fetched, os.X_OK), fetched


def main():
    packages, intruder, program = DESKTOPS[sys.argv[1]]
    with tempfile.TemporaryDirectory(prefix="orvel-desktop-") as folder:
        os.chmod(folder, 0o755)
        desktop = Desktop(folder, packages)
        check_nothing_goes(desktop, packages)
        check_is_refused(desktop, intruder)
        check_fetches(desktop, program)
    print(f"{sys.argv[1]}: nothing that is installed would be removed")


if __name__ == "__main__":
    main()
