#!/usr/bin/env python3
"""Writes the recordings of rare situations into ../recordings/data, with their answers.

No answer may depend on the order of addresses; that is checked while writing.
"""

import sys

import handmade_bring_up
import handmade_places
import handmade_sets

if __name__ == "__main__":
    sys.setrecursionlimit(10000)
    for write in handmade_bring_up.ALL + handmade_places.ALL + handmade_sets.ALL:
        write()
