#!/usr/bin/python3
"""What a package holds: what is installed by the build's rules, whether desktops and manuals can read it, and that
nothing of the tests is among it.

usage: install_test.py BUILD CASE    BUILD: a folder that CMake has configured
"""
import configparser
import gzip
import os
import re
import subprocess
import sys
import tempfile

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
LINUX = os.path.join(ROOT, "packaging", "linux")

MUST_HOLD = {
    "bin/orvel", "share/applications/orvel.desktop", "share/metainfo/orvel.metainfo.xml",
    "share/icons/hicolor/scalable/apps/orvel.svg", "share/man/man1/orvel.1.gz", "share/man/nl/man1/orvel.1.gz",
    "share/doc/orvel/copyright", "share/doc/orvel/changelog.gz", "share/doc/orvel/printen.md",
    "share/orvel/voorbeeld/orvel.ini", "share/orvel/voorbeeld/rep/play0.rpt",
    "share/orvel/voorbeeld/new/ochtend-0700.mdb", "share/orvel/voorbeeld/ok/nacht-0000.mdb",
} | {f"share/icons/hicolor/{size}x{size}/apps/orvel.png" for size in (16, 22, 24, 32, 48, 64, 128, 256)}


def run(*command, **more):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **more)
    assert done.returncode == 0, f"{' '.join(command)}: {done.returncode}\n{done.stdout}"
    return done.stdout


def install(build, prefix):
    """What lies below the prefix then. A program that was not built is a file that stands in for it."""
    run("cmake", "--build", build, "--target", "orvel_packaged")
    program = os.path.join(build, "app", "orvel")
    stands_in = not os.path.exists(program)
    if stands_in:
        with open(program, "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\n")
    try:
        run("cmake", "--install", build, "--prefix", prefix)
    finally:
        if stands_in:
            os.remove(program)
    return {os.path.relpath(os.path.join(folder, name), prefix)
            for folder, _, names in os.walk(prefix) for name in names}


def tree(build):
    with tempfile.TemporaryDirectory() as prefix:
        found = install(build, prefix)
        assert MUST_HOLD <= found, f"missing: {sorted(MUST_HOLD - found)}"
        sample = {os.path.join("share/orvel/voorbeeld", os.path.relpath(os.path.join(folder, name),
                                                                        os.path.join(ROOT, "samples/station")))
                  for folder, _, names in os.walk(os.path.join(ROOT, "samples/station")) for name in names}
        foreign = found - MUST_HOLD - sample - {"share/doc/orvel/" + name for name in os.listdir(f"{ROOT}/docs")}
        assert not foreign, f"nobody has asked for {sorted(foreign)}"
        assert not [name for name in found if re.search(r"test|bench|fake", name)]
        for size in (16, 256):
            with open(f"{prefix}/share/icons/hicolor/{size}x{size}/apps/orvel.png", "rb") as file:
                head = file.read(24)
            assert head[1:4] == b"PNG" and int.from_bytes(head[16:20], "big") == size, head
        for name in ("share/man/man1/orvel.1.gz", "share/doc/orvel/changelog.gz"):
            with open(os.path.join(prefix, name), "rb") as file:
                assert file.read(8)[4:8] == bytes(4), "the time at which it was compressed is in it"
        with gzip.open(f"{prefix}/share/man/nl/man1/orvel.1.gz", "rt", encoding="utf-8") as file:
            assert ".SH BESCHRIJVING" in file.read()


def desktop(_build):
    said = run("desktop-file-validate", os.path.join(LINUX, "orvel.desktop"))
    assert not said.strip(), said
    entry = configparser.ConfigParser(interpolation=None, strict=True)
    entry.optionxform = str
    entry.read(os.path.join(LINUX, "orvel.desktop"), encoding="utf-8")
    assert entry["Desktop Entry"]["Comment[nl]"]
    assert entry["Desktop Action recorder"]["Exec"] == "orvel -RECORDER"


def metainfo(_build):
    path = os.path.join(LINUX, "orvel.metainfo.xml")
    run("appstreamcli", "validate", "--no-net", path)
    with open(path, encoding="utf-8") as file:
        text = file.read()
    with open(os.path.join(ROOT, "CMakeLists.txt"), encoding="utf-8") as file:
        version = re.search(r"project\(orvel VERSION (\S+)", file.read())[1]
    assert f'<release version="{version}"' in text, f"the release {version} is not told"
    with open(os.path.join(LINUX, "changelog"), encoding="utf-8") as file:
        assert file.readline().startswith(f"orvel ({version})")
    for manual in ("orvel.1", "orvel.nl.1"):
        with open(os.path.join(LINUX, manual), encoding="utf-8") as file:
            assert f"ORVEL {version}" in file.readline(), manual


def manuals(_build):
    for manual in ("orvel.1", "orvel.nl.1"):
        said = run("groff", "-man", "-Kutf8", "-Tutf8", "-wall", "-z", "-rCHECKSTYLE=0", os.path.join(LINUX, manual))
        assert not said.strip(), f"{manual}: {said}"
        text = run("groff", "-man", "-Kutf8", "-Tascii", "-P-cbou", os.path.join(LINUX, manual))
        for word in ("-RECORDER", "ORVEL_HOME", "werkmap"):
            assert word in text, f"{manual} does not tell of {word}"


def parts(build):
    """A build for packages has no target of the tests, and needs none of their libraries."""
    with tempfile.TemporaryDirectory() as tree_of_package:
        run("cmake", "-S", ROOT, "--preset", "release", "-B", tree_of_package, "-D", "CMAKE_DISABLE_FIND_PACKAGE_GTest=ON",
            cwd=ROOT)
        targets = run("ninja", "-C", tree_of_package, "-t", "targets", "all")
        assert "app/orvel:" in targets
        names = {line.split(":")[0] for line in targets.splitlines()}
        wrong = [name for name in names if re.match(r"(tests|bench)/|platform/fake/.*\.o$|.*_test$|bench_", name)]
        assert not wrong, wrong[:10]


CASES = {case.__name__: case for case in (tree, desktop, metainfo, manuals, parts)}

if __name__ == "__main__":
    CASES[sys.argv[2]](sys.argv[1])
    print(f"{sys.argv[2]}: as it should be")
