"""A recording made by hand: a desk with enclosures, written archive by archive."""

import os
import shutil

import oracle
from machine import TWO_BAY, Disk, Enclosure, Machine, RaidSet

DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "recordings", "data")
MAXIMUM = 60000
UID = 0x000309CB902765D9
TOP_BIT_UID = 0x8003074B9E7D9F18 - 2**64


class Recording:
    def __init__(self, name):
        self.machine = Machine()
        self.machine.inheritance = False
        self.name = name
        self.folder = os.path.join(DATA, name)
        shutil.rmtree(self.folder, ignore_errors=True)
        os.makedirs(self.folder)

    def at(self, milliseconds):
        self.machine.write(os.path.join(self.folder, f"{milliseconds}.plist"))

    def finish(self):
        size = sum(os.path.getsize(os.path.join(self.folder, name)) for name in os.listdir(self.folder))
        texts, _ = oracle.answers(self.folder)
        assert size <= MAXIMUM, (self.name, size)
        assert all(oracle.answers(self.folder, order)[0] == texts for order in range(12)), self.name
        os.makedirs(os.path.join(DATA, "expected"), exist_ok=True)
        for suffix, text in texts.items():
            with open(os.path.join(DATA, "expected", f"{self.name}.{suffix}"), "w", encoding="utf-8") as file:
                file.write(text)
        print(f"{self.name}: {size} bytes, {texts['watch.jsonl'].count(chr(10))} lines")

    # --- furniture

    def enclosure(self, uid=UID, modelID=2, layout=TWO_BAY, uuids=(), **attributes):
        bays = sum(len(ports) for _, _, ports in layout[1])
        enclosure = Enclosure(len(self.machine.enclosures), uid, modelID, layout, bays)
        for bay, uuid in enumerate(uuids):
            if uuid is not None:
                enclosure.disks[bay] = Disk(0, uuid, label=f"EX4000A-26 {bay}")
        for name, value in attributes.items():
            setattr(enclosure, name, value)
        self.machine.enclosures.append(enclosure)
        return enclosure

    def raid(self, uuid, members, level="Mirror", name="Projects", **attributes):
        raid = RaidSet(uuid, uuid, level, name, members)
        for key, value in attributes.items():
            setattr(raid, key, value)
        self.machine.sets.append(raid)
        return raid

    def overlay(self, key, change):
        self.machine.overlays[key] = change
