"""What the presenter hears around a take, measured on what the output really played."""
import array
import math
import os
import subprocess
import sys
import time
import wave

from road import RECORD, STOP
from waiting import wait_for

RATE = 44100
OUTRO = 3.41  # seconds, of the item before the slot "Link 1" of ochtend-0700.mdb
LINK, PREVIOUS, NEXT = "OCH01.wav", "0001.mp3", "0002.mp3"


def loop(road):
    """Loudspeakers whose sound is what the chosen microphone hears, without two seconds of their own ahead."""
    desk = road.desk
    desk.run("pactl", "load-module", "module-null-sink", "sink_name=lus",
             *([] if "pipewire" in road.name else ["norewinds=1"]))
    desk.sound.wait_for_device("sinks", "lus")
    desk.run("pactl", "set-default-sink", "lus")
    desk.run("pactl", "load-module", "module-remap-source", "source_name=lusmic", "master=lus.monitor",
             "source_properties=device.description=Lus")
    desk.sound.wait_for_device("sources", "lusmic")


def noise(road, name, seconds):
    """Noise that is like no other, as an item of the station; its samples as an outside tool decodes them."""
    wav = os.path.join(road.desk.folder, name + ".wav")
    road.desk.run("sox", "-n", "-r", str(RATE), "-c", "2", "-b", "16", wav, "synth", str(seconds), "pinknoise", "gain",
                  "-14", "lowpass", "6000")
    mp3 = road.path("audio", "muziek", name)
    road.desk.run("ffmpeg", "-y", "-v", "error", "-i", wav, "-b:a", "192k", mp3)
    return decoded(road, mp3)


def decoded(road, path):
    """Mono samples at 44100 Hz."""
    raw = subprocess.run(["ffmpeg", "-v", "error", "-i", path, "-ac", "1", "-ar", str(RATE), "-f", "s16le", "-"],
                         check=True, env=road.desk.env, stdout=subprocess.PIPE).stdout
    return array.array("h", raw)


def lag(piece, sound, expected, around=0.15):
    """Milliseconds by which a piece of a known sound comes later in another one than expected (in seconds)."""
    start = round((expected - around) * RATE)
    assert start >= 0 and start + 2 * around * RATE + len(piece) <= len(sound), "not in there"
    best, found = 0.0, None
    # Every sixth sample, then each around the best: Python is slow.
    def likeness(at):
        other = sound[at:at + len(piece)]
        energy = math.sqrt(sum(b * b for b in other)) or 1.0
        return sum(a * b for a, b in zip(piece, other)) / energy
    for step, span in ((3, range(start, start + round(2 * around * RATE), 3)), (1, None)):
        for at in span or range(found - 3, found + 4):
            like = likeness(at)
            if like > best:
                best, found = like, at
    return (found / RATE - expected) * 1000


def piece_of(samples, second, length=2048):
    at = round(second * RATE)
    return samples[at:at + length]


def open_slot(road):
    road.start()
    road.desk.find(RECORD, "push button", 30)
    road.desk.click(road.desk.find("Opname en kaart", "page tab"))  # folded away on a screen this small
    road.desk.choose("Opnamekaart", "Lus")
    road.desk.open_playlist("ochtend-0700.mdb")
    road.desk.select_step("Link 1")


def heard_along(road):
    """Records a take with Meeluisteren; milliseconds by which the outro and the next item come late in it."""
    previous, following = noise(road, PREVIOUS, 8), noise(road, NEXT, 8)
    road.desk.press("Meeluisteren", "check box")
    road.picture("switched-on")
    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    time.sleep(OUTRO + 2)
    road.desk.press(STOP)
    road.desk.find(RECORD, "push button")
    take = decoded(road, road.path("temp", LINK))
    length = len(previous) / RATE
    outro = lag(piece_of(previous, length - OUTRO + 1), take, 1)
    intro = lag(piece_of(following, 0.8), take, OUTRO + 0.8)
    print(f"{road.name}: outro {outro:.2f} ms, next item {intro:.2f} ms", file=sys.stderr)
    return outro, intro


def talk_along(road):
    """Meeluisteren: what is heard at the take's first frame is the begin of the outro, and the next item follows it."""
    loop(road)
    open_slot(road)
    outro, intro = heard_along(road)
    assert abs(outro) < 20 and abs(intro) < 20, (outro, intro)


def measured_delay(road):
    """A card's delay is measured and kept, and a take with Meeluisteren lies on what is heard. Not among the tests: on a
    machine that is busy the server's figures spread more than a measurement may."""
    loop(road)
    open_slot(road)
    road.desk.find("vertraging niet gemeten", "label")
    road.desk.press("Vertraging meten...")
    road.desk.press("Meten")
    road.desk.find("Meting 2 van 5...", "label", 20)
    road.picture("measuring")
    wait_for("the result", lambda: any(text and text.startswith("De vertraging is ") for text in road.desk.texts()), 60)
    road.picture("measured")
    road.desk.press("Sluiten")
    shown = wait_for("the figure beside the card",
                     lambda: next((text for text in road.desk.texts() if text and text.endswith(" ms, gemeten")), None))
    with open(road.path("orvel.ini"), encoding="utf-8") as settings:
        kept = next(line for line in settings if line.startswith("1=") and line.endswith(" Lus\n"))
    print(f"measured_delay: {shown}; {kept.strip()}", file=sys.stderr)
    assert abs(float(kept[2:].split()[0])) < 20, "a loop without a way of its own"
    outro, intro = heard_along(road)
    assert abs(outro) < 20 and abs(intro) < 20, (outro, intro)


def cost_of_recording(road):
    """What a processor core pays for a take with everything live on: Meeluisteren, outline, guard, meters, verdict. Not
    among the tests: measure it on a machine that does nothing else."""
    noise(road, PREVIOUS, 20), noise(road, NEXT, 30)
    loop(road)
    open_slot(road)
    road.desk.press("Meeluisteren", "check box")
    def ticks():
        with open(f"/proc/{road.desk.orvel.pid}/stat", encoding="ascii") as stat:
            return sum(int(field) for field in stat.read().rsplit(")", 1)[1].split()[11:13])  # utime, stime
    def cost(what, seconds):
        begin, before = time.monotonic(), ticks()
        time.sleep(seconds)
        used = (ticks() - before) / os.sysconf("SC_CLK_TCK")
        print(f"{what}: {100 * used / (time.monotonic() - begin):.1f} % of a core", file=sys.stderr)
        return used / seconds
    time.sleep(2)
    cost("listening to the microphone", 10)
    road.desk.press(RECORD)
    road.desk.find(STOP, "push button", 30)
    assert cost("recording", 20) < 0.1
    road.picture("recording")
    road.desk.press(STOP)


def in_context(road):
    """In verband: the output plays the previous item's end, the take over outro and intro, and the next item's begin."""
    previous, following = noise(road, PREVIOUS, 12), noise(road, NEXT, 16)
    loop(road)
    open_slot(road)
    road.record(0.3, card="lus")
    take = decoded(road, road.path("temp", LINK))
    heard = road.desk.listen("lus")
    road.desk.press("In verband")
    road.desk.find("Stop", "push button")
    road.picture("in-context")
    road.desk.find("In verband", "push button", 60)
    heard.stop()
    sound = decoded(road, heard.file)
    length = len(previous) / RATE
    # Where the outro begins in what was heard: by the previous item, wherever the listener began.
    begin = next(at for at, sample in enumerate(sound) if abs(sample) > 200) / RATE + 5
    begin += lag(piece_of(previous, length - OUTRO - 2), sound, begin - 2, 0.3) / 1000
    after = lag(piece_of(following, 1), sound, begin + OUTRO + 1)
    loud = max(range(round(0.5 * RATE), len(take) - 2048, 1024), key=lambda at: sum(map(abs, take[at:at + 2048])))
    words = lag(take[loud:loud + 2048], sound, begin + loud / RATE)
    print(f"in_context: take {words:.2f} ms, next item {after:.2f} ms from where they belong", file=sys.stderr)
    assert abs(words) < 2 and abs(after) < 2, (words, after)
    wait_for("the desk to be free", lambda: road.desk.look(RECORD, "push button"))


ROADS = (talk_along, measured_delay, in_context, cost_of_recording)
