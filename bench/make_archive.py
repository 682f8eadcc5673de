#!/usr/bin/env python3
"""Writes an archive of about so many bytes, made of a real computer's:

    bench/make_archive.py BYTES FILE

The computer's devices are repeated, with new entry IDs, or left out until the size is reached.
"""

import copy
import gzip
import pathlib
import plistlib
import sys

SOURCE = (pathlib.Path(__file__).resolve().parent.parent /
          "tests/recordings/data/macmini6,2-osx10.8.2.converted-archive-i.plist.gz")
CHILDREN = "IORegistryEntryChildren"


def size_of(entry):
    return len(plistlib.dumps(entry, sort_keys=False))


def renumber(entry, next_id):
    known = {}

    def visit(node):
        old = node["IORegistryEntryID"]
        if old not in known:
            known[old] = next_id + len(known)
        node["IORegistryEntryID"] = known[old]
        for child in node.get(CHILDREN, []):
            visit(child)

    visit(entry)
    return next_id + len(known)


def main(wanted, path):
    root = plistlib.loads(gzip.decompress(SOURCE.read_bytes()))
    computer = root[CHILDREN][0]
    rest = dict(root)
    rest[CHILDREN] = []
    platform = max(computer[CHILDREN], key=size_of)
    parts = sorted(platform[CHILDREN], key=size_of)
    parts = [(size_of(part), part) for part in parts if size_of(part) < 400_000]
    shell = dict(computer)
    inner = dict(platform)
    inner[CHILDREN] = []
    shell[CHILDREN] = [inner]
    rest[CHILDREN] = [shell]
    size = size_of(rest)
    next_id = 0x200000000
    while size < wanted:
        fitting = [entry for entry in reversed(parts) if entry[0] <= wanted - size]
        if not fitting:
            break
        for bytes_of_part, part in fitting:
            if size + bytes_of_part > wanted:
                continue
            again = copy.deepcopy(part)
            next_id = renumber(again, next_id)
            inner[CHILDREN].append(again)
            size += bytes_of_part
    with open(path, "wb") as file:
        plistlib.dump(rest, file, sort_keys=False)


main(int(sys.argv[1]), sys.argv[2])
