#!/usr/bin/python3
"""Whole journeys through the real program, judged by outside tools.

usage: roads.py [--sound pulseaudio|pipewire] ROAD BINARY SAMPLE_STATION PICTURES
"""
import argparse
import os
import sys

import edit_roads
import guard_roads
import join_roads
import reader_roads
import recording_roads
import share_roads
import sound_roads
import take_roads
import window_roads
from road import Road
from share import Skipped
from sound_servers import SERVERS

ROADS = {road.__name__: road for road in edit_roads.ROADS + guard_roads.ROADS + join_roads.ROADS + reader_roads.ROADS +
         recording_roads.ROADS + share_roads.ROADS +
         sound_roads.ROADS + take_roads.ROADS + window_roads.ROADS}
SKIPPED = 77  # CTest's agreed exit code


def arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("--sound", choices=SERVERS, default="pulseaudio")
    parser.add_argument("road", choices=ROADS)
    for name in ("binary", "sample", "pictures"):
        parser.add_argument(name)
    return parser.parse_args()


def main():
    given = arguments()
    if not os.path.exists(given.binary):
        sys.exit(f"there is no program at {given.binary}")
    name = given.road if given.sound == "pulseaudio" else f"{given.road}-{given.sound}"
    road = Road(name, given.binary, given.sample, given.pictures, microphone=given.road != "no_sound_card",
                sound=given.sound)
    try:
        ROADS[given.road](road)
    except Skipped as reason:
        print(f"{name}: skipped: {reason}")
        sys.exit(SKIPPED)
    except BaseException:
        road.picture("failed")
        sys.stderr.write(road.desk.log())
        sys.stderr.write("on the screen: " + ", ".join(filter(None, road.desk.texts())) + "\n")
        if road.desk.orvel:
            sys.stderr.write(f"the program ended with: {road.desk.orvel.poll()}\n")
        sys.stderr.write("ended by now: " + "; ".join(road.desk.dead()) + "\n")
        raise
    finally:
        road.desk.close()
    print(f"{name}: arrived")


if __name__ == "__main__":
    main()
