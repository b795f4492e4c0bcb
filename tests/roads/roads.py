#!/usr/bin/python3
"""Whole journeys through the real program, judged by outside tools.

usage: roads.py ROAD BINARY SAMPLE_STATION PICTURES
"""
import os
import sys

import recording_roads
import sound_roads
import window_roads
from road import Road

ROADS = {road.__name__: road for road in recording_roads.ROADS + sound_roads.ROADS + window_roads.ROADS}


def main():
    name, binary, sample, pictures = sys.argv[1:5]
    if not os.path.exists(binary):
        sys.exit(f"there is no program at {binary}")
    road = Road(name, binary, sample, pictures, microphone=name != "no_sound_card")
    try:
        ROADS[name](road)
    except BaseException:
        road.picture("failed")
        with open(os.path.join(road.desk.folder, "orvel.log"), encoding="utf-8", errors="replace") as log:
            sys.stderr.write(log.read())
        sys.stderr.write("on the screen: " + ", ".join(filter(None, road.desk.texts())) + "\n")
        raise
    finally:
        road.desk.close()
    print(f"{name}: arrived")


if __name__ == "__main__":
    main()
