"""A road: one journey of a presenter through the real program, with what judges it."""
import csv
import io
import os
import time

from presenter import Desk, copy_station, set_key

RECORD, STOP, SAVE = "START OPNAME", "STOP OPNAME", "Bewaar opname"


class Road:
    def __init__(self, name, binary, sample, pictures, **desk):
        self.name, self.binary, self.pictures = name, binary, pictures
        self.desk = Desk(**desk)
        self.station = os.path.join(self.desk.folder, "mijn station")
        copy_station(sample, self.station)
        set_key(self.station, "Countdown", "1")

    def path(self, *parts):
        return os.path.join(self.station, *parts)

    def start(self, *arguments):
        self.desk.start_orvel(self.binary, self.station, *arguments)

    def picture(self, what):
        os.makedirs(self.pictures, exist_ok=True)
        self.desk.screenshot(os.path.join(self.pictures, f"{self.name}-{what}.png"))

    def steps(self, playlist):
        table = self.desk.run("mdb-export", playlist, "Steps")
        return list(csv.DictReader(io.StringIO(table)))

    def record(self, silence=1.0, words="Goedemorgen, dit is een link over het weer van morgen.", card="room"):
        """Records silence, spoken words and silence again; where the words were, in seconds from the start."""
        self.desk.press(RECORD)
        self.desk.find(STOP, "push button", 30)
        start = time.monotonic()
        time.sleep(silence)
        begin = time.monotonic() - start
        spoken = self.desk.say(words, card)
        time.sleep(spoken / 2)
        self.picture("recording")
        time.sleep(max(0.0, begin + spoken + silence - (time.monotonic() - start)))
        self.desk.press(STOP)
        self.desk.find(RECORD, "push button")
        return begin, begin + spoken

    def level(self, file, start, seconds):
        """RMS level of a piece of a sound file, in dB."""
        text = self.desk.run("sox", file, "-n", "trim", str(start), str(seconds), "stats")
        line = next(row for row in text.splitlines() if row.startswith("RMS lev dB"))
        value = line.split()[3]
        return -120.0 if "inf" in value else float(value)

    def probe(self, file, entries):
        return self.desk.run("ffprobe", "-v", "error", "-show_entries", entries, "-of", "default=nw=1:nk=1",
                             file).split()

    def check_words(self, file, begin, end):
        silence, words = self.level(file, 0.1, begin - 0.3), self.level(file, begin + 0.5, end - begin - 0.8)
        assert words > -40 and words > silence + 20, (silence, words)


def changed_bytes(before, after):
    assert len(before) == len(after)
    return [(i, a ^ b) for i, (a, b) in enumerate(zip(before, after)) if a != b]


def read(path):
    with open(path, "rb") as file:
        return file.read()
