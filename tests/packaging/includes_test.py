#!/usr/bin/python3
"""Whether packaging/includes finds what may not be included, and lets pass what may."""
import os
import subprocess
import sys
import tempfile

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))

ALLOWED = {
    "app/main.cpp": '#include "platform/pulse/pulse_sound_card.h"\n#include "windows/frm_main.h"\n',
    "windows/panel.cpp": '#include "playlist/playlist.h"\n#include "widgets/lamp.h"\n#include <QLabel>\n'
                         "on(button, signal, this, handler);\ndisconnect(button);\n",
    "windows/on.h": "return QObject::connect(sender, signal, receiver, handler);\n",
    "recording/take.cpp": '#include "dsp/gain.h"\n#include <QDateTime>\n#include <algorithm>\n',
    "playlist/list.h": '#  include "settings/settings.h"\n#include <QtCore/QString>\n',
    "platform/qt/prompts.cpp": "#include <QMessageBox>\n#include <fcntl.h>\n",
    "platform/pulse/server.cpp": '#include "platform/sndfile/take_writer.h"\n#include <pulse/pulseaudio.h>\n',
    "platform/sndfile/reader.h": '#include "dsp/resampler.h"\n',
    "dsp/denormals.cpp": "#include <xmmintrin.h>\n",
}

FORBIDDEN = {
    "windows/panel.cpp": ['#include "app/main.h"', '#include "platform/qt/qt_prompts.h"', '#include "dsp/gain.h"',
                          "#include <sndfile.h>", "connect(button, &QPushButton::clicked, this, &Panel::click);",
                          "    QObject::connect(a, b, c, d);"],
    "recording/take.cpp": ['#include "windows/frm_main.h"', '#include "production/stages.h"', "#include <QLabel>",
                           "#include <QColor>", '#include "widgets/lamp.h"', "#include <QtWidgets>"],
    "production/stages.cpp": ['#include "windows/processor_panel.h"', "#include <QGuiApplication>"],
    "playlist/list.cpp": ['#include "recording/take.h"', '#include "lists.h"', "#include <QPrinter>"],
    "settings/settings.cpp": ['#include "playlist/playlist.h"', '#include "production/stages.h"'],
    "station/paths.cpp": ['#include "settings/settings.h"', "#include <unistd.h>"],
    "widgets/lamp.cpp": ['#include "platform/timers.h"', '#include "settings/settings.h"'],
    "dsp/gain.cpp": ["#include <QString>", '#include "platform/samples.h"'],
    "platform/audio.h": ["#include <QWidget>", "#include <pulse/pulseaudio.h>", '#include "platform/qt/qt_timers.h"'],
    "platform/pulse/server.h": ["#include <pulse/pulseaudio.h>"],
    "platform/query.cpp": ['#include "dsp/gain.h"', '#include "station/paths.h"'],
}


def check(files):
    """The exit code and what is said of sources like these."""
    with tempfile.TemporaryDirectory() as root:
        for path, text in files.items():
            os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
            with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                file.write(text)
        done = subprocess.run([os.path.join(ROOT, "packaging", "includes"), root], capture_output=True, text=True)
        return done.returncode, done.stdout + done.stderr


def main():
    failures = []
    code, said = check(ALLOWED)
    if code != 0:
        failures.append(f"refused what may be: {said}")
    for path, lines in FORBIDDEN.items():
        for line in lines:
            code, said = check({**ALLOWED, path: "// a comment\n" + line + "\n"})
            if code != 1 or f"{path}:2: " not in said or len(said.splitlines()) != 1:
                failures.append(f"{path} with {line}: exit code {code}, {said!r}")
    code, said = check({"README": ""})
    if code == 0:
        failures.append("no sources at all, and all is well")
    print("\n".join(failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
