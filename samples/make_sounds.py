#!/usr/bin/env python3
"""Makes the demo station's sound files: our own music, synthesised with the standard library, encoded with lame.

usage: make_sounds.py [FOLDER]        (default: the demo station's audio/)

Each track has an intro (chords, bass, light drums), a body (a melody joins with a cymbal, so that the end of the intro
can be heard) and an outtro (the melody stops, the last chord fades). Intro and outtro are as long as the playlists of
the demo station say. The same call gives the same files.
"""
import array
import dataclasses
import math
import pathlib
import random
import subprocess
import sys
import tempfile
import wave

RATE = 44100
TABLE = 4096
MAJOR = (0, 2, 4, 5, 7, 9, 11)
MINOR = (0, 2, 3, 5, 7, 8, 10)


@dataclasses.dataclass(frozen=True)
class Piece:
    """A piece of music. Times in milliseconds; key is the MIDI number of the tonic below middle C."""

    name: str
    key: int
    scale: tuple
    tempo: float  # beats a minute, before the intro is made a whole number of beats
    chords: tuple  # scale degrees, one a bar of four beats
    intro: int
    body: int
    outtro: int
    lead: str  # timbre of the melody


# Intro and outtro are those of the steps that play these files.
TRACKS = (
    Piece("muziek/0001", 48, MAJOR, 98, (0, 5, 3, 4), 4870, 12000, 3410, "flute"),
    Piece("muziek/0002", 45, MINOR, 116, (0, 5, 2, 6), 6240, 12000, 4320, "organ"),
    Piece("muziek/0003", 50, MAJOR, 84, (0, 3, 0, 4), 7610, 12000, 5230, "reed"),
    Piece("muziek/0004", 43, MINOR, 128, (0, 3, 6, 2), 8980, 12000, 6140, "flute"),
    Piece("muziek/0005", 53, MAJOR, 76, (0, 4, 5, 3), 10350, 10000, 7050, "organ"),
    Piece("muziek/0006", 46, MAJOR, 104, (0, 2, 3, 4), 11720, 10000, 7960, "reed"),
    Piece("muziek/0007", 51, MINOR, 92, (0, 6, 5, 6), 13090, 10000, 8870, "flute"),
    Piece("muziek/0008", 47, MINOR, 122, (0, 5, 3, 4), 14460, 10000, 9780, "organ"),
)
JINGLES = (
    Piece("jingles/001", 52, MAJOR, 132, (0, 3, 4, 0), 1820, 12600, 800, "flute"),
    Piece("jingles/002", 49, MAJOR, 140, (0, 4, 3, 0), 1720, 12900, 800, "organ"),
    Piece("jingles/003", 54, MAJOR, 120, (0, 5, 4, 0), 2000, 12400, 800, "reed"),
    Piece("jingles/004", 44, MAJOR, 150, (0, 3, 0, 4), 1600, 12800, 800, "flute"),
)

HARMONICS = {
    "pad": (1.0, 0.45, 0.2, 0.1, 0.05),
    "bass": (1.0, 0.5, 0.12, 0.05),
    "flute": (1.0, 0.18, 0.06),
    "organ": (1.0, 0.7, 0.5, 0.1, 0.3, 0.0, 0.0, 0.2),
    "reed": (1.0, 0.2, 0.6, 0.12, 0.35, 0.08, 0.2),
}


def table(harmonics):
    """One period of a tone with these harmonics, peak 1."""
    raw = [
        sum(a * math.sin(2 * math.pi * n * i / TABLE) for n, a in enumerate(harmonics, 1)) for i in range(TABLE)
    ]
    peak = max(map(abs, raw))
    return [v / peak for v in raw]


TIMBRES = {name: table(h) for name, h in HARMONICS.items()}


class Track:
    """Two channels of floating-point samples to mix notes into."""

    def __init__(self, milliseconds):
        self.frames = milliseconds * RATE // 1000
        self.left = array.array("d", bytes(8 * self.frames))
        self.right = array.array("d", bytes(8 * self.frames))

    def tone(self, timbre, start, length, note, gain, pan=0.0, attack=0.01, decay=0.0):
        """Mixes a tone in: start and length in seconds, pan -1 left to 1 right, decay the time to 1/e (0: none)."""
        wave_table = TIMBRES[timbre]
        step = 440.0 * 2 ** ((note - 69) / 12) * TABLE / RATE
        first = int(start * RATE)
        count = min(int(length * RATE), self.frames - first)
        release = min(0.06, length / 3) * RATE
        fall = math.exp(-1.0 / (decay * RATE)) if decay else 1.0
        level, phase = gain, 0.0
        left, right = (1 - pan) / 2 + 0.5 * (1 - abs(pan)), (1 + pan) / 2 + 0.5 * (1 - abs(pan))
        rise = attack * RATE
        for i in range(count):
            value = wave_table[int(phase) % TABLE] * level * min(1.0, i / rise, (count - i) / release)
            self.left[first + i] += value * left
            self.right[first + i] += value * right
            phase += step
            level *= fall

    def noise(self, generator, start, length, gain, decay, smooth=0.0):
        """Mixes a burst of noise in (snare, hat, cymbal); smooth 0..1 takes the highs away."""
        first = int(start * RATE)
        count = min(int(length * RATE), self.frames - first)
        fall = math.exp(-1.0 / (decay * RATE))
        level, held = gain, 0.0
        for i in range(count):
            held = smooth * held + (1 - smooth) * generator.uniform(-1, 1)
            self.left[first + i] += held * level
            self.right[first + i] += held * level
            level *= fall

    def kick(self, start, gain):
        first = int(start * RATE)
        count = min(int(0.22 * RATE), self.frames - first)
        phase = 0.0
        for i in range(count):
            t = i / RATE
            phase += 2 * math.pi * (48 + 90 * math.exp(-t * 35)) / RATE
            value = math.sin(phase) * gain * math.exp(-t * 16)
            self.left[first + i] += value
            self.right[first + i] += value

    def fade_out(self, milliseconds):
        count = milliseconds * RATE // 1000
        first = self.frames - count
        for i in range(count):
            gain = 0.5 + 0.5 * math.cos(math.pi * i / count)
            self.left[first + i] *= gain
            self.right[first + i] *= gain

    def write(self, path, peak=0.7):
        scale = 32767 * peak / max(max(map(abs, self.left)), max(map(abs, self.right)))
        samples = array.array("h", bytes(4 * self.frames))
        samples[0::2] = array.array("h", [round(v * scale) for v in self.left])
        samples[1::2] = array.array("h", [round(v * scale) for v in self.right])
        with wave.open(str(path), "wb") as out:
            out.setnchannels(2)
            out.setsampwidth(2)
            out.setframerate(RATE)
            out.writeframes(samples.tobytes())


def degree(piece, index):
    """MIDI note of a scale degree, counted from the tonic; negative degrees and those past 6 are in other octaves."""
    octave, step = divmod(index, 7)
    return piece.key + 12 * octave + piece.scale[step]


def compose(piece):
    """The piece as samples."""
    dice = random.Random(piece.name)
    intro, end_of_body = piece.intro / 1000, (piece.intro + piece.body) / 1000
    total = end_of_body + piece.outtro / 1000
    # The melody must enter on a beat.
    beat = intro / max(1, round(intro * piece.tempo / 60))
    track = Track(piece.intro + piece.body + piece.outtro)
    bars = math.ceil(total / (4 * beat))
    for bar in range(bars):
        start = bar * 4 * beat
        root = piece.chords[bar % len(piece.chords)]
        if start >= end_of_body:
            break
        for voice, (offset, pan) in enumerate(((0, -0.5), (2, 0.0), (4, 0.5))):
            track.tone("pad", start, 4.2 * beat, degree(piece, root + offset) + 12, 0.10, pan, attack=0.08 + 0.02 * voice)
        for count in range(4):
            at = start + count * beat
            if at >= end_of_body:
                break
            track.tone("bass", at, beat * 0.9, degree(piece, root + (4 if count == 3 else 0)) - 12, 0.30, decay=0.5)
            body = at >= intro - 0.001
            if count % 2 == 0:
                track.kick(at, 0.5 if body else 0.3)
            elif body:
                track.noise(dice, at, 0.2, 0.25, 0.05, 0.3)
            for half in (0, 0.5):
                track.noise(dice, at + half * beat, 0.06, 0.08, 0.012)
    track.noise(dice, intro, 1.6, 0.22, 0.4)  # the cymbal that tells that the intro is over
    melody(piece, track, dice, beat, end_of_body)
    for offset, pan in ((0, -0.5), (2, 0.5), (4, 0.0), (7, 0.0)):  # the last chord rings through the outtro
        track.tone("pad", end_of_body, total - end_of_body, degree(piece, offset) + 12, 0.13, pan)
    track.tone("bass", end_of_body, total - end_of_body, degree(piece, 0) - 12, 0.3, decay=1.5)
    track.fade_out(piece.outtro)
    return track


def melody(piece, track, dice, beat, end):
    """A tune that keeps near the chord: steps of the scale, chord notes on the first and third beat."""
    at, place = piece.intro / 1000, 4
    while at < end - 0.05:
        bar, count = divmod(round(at / beat), 4)
        root = piece.chords[bar % len(piece.chords)]
        place += dice.choice((-2, -1, -1, 1, 1, 2))
        if count % 2 == 0:
            place = min((root + n for n in (0, 2, 4, 7, 9, -3)), key=lambda n: abs(n - place))
        place = max(0, min(11, place))
        length = dice.choice((0.5, 0.5, 1, 1, 1.5)) * beat
        length = min(length, end - at)
        track.tone(piece.lead, at, length * 0.92, degree(piece, place) + 24, 0.24, 0.15, attack=0.02, decay=0.9)
        at += length


def main():
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent / "station" / "audio"
    for piece in TRACKS + JINGLES:
        target = folder / (piece.name + ".mp3")
        target.parent.mkdir(parents=True, exist_ok=True)
        with tempfile.TemporaryDirectory() as work:
            sound = pathlib.Path(work) / "sound.wav"
            compose(piece).write(sound)
            command = ["lame", "--quiet", "--cbr", "-b", "80", "-m", "j", "--resample", "44.1", "-q", "2"]
            subprocess.run(command + ["--noreplaygain", str(sound), str(target)], check=True)
        print(f"{target}: {piece.intro + piece.body + piece.outtro} ms, intro {piece.intro}, outtro {piece.outtro}")


if __name__ == "__main__":
    main()
