#!/usr/bin/env python3
"""Writes the demo recording next to itself, the same files every time.

A five-bay enclosure is at work when a two-bay one is plugged in. One disk of the new
mirror fails, is pulled and comes back; later a disk of the five-bay's stripe is pulled.
"""

import glob
import os
import plistlib
import re

from demo_registry import Disk, Enclosure, Mac, RaidSet

FOLDER = os.path.dirname(os.path.abspath(__file__))
ARCHIVE = "6B2D61C4-8F0E-4B7A-9C53-0A41D7E2F610"
SCRATCH = "C95E10F7-2A64-4D18-B3C0-7F38A25D9E41"
PROJECTS = "2F7A93D8-51CE-4E06-8D7B-94B6E0C3A125"


class Demo:
    def __init__(self):
        self.identifiers = {}
        self.clients = [1, 2]
        archive = [
            Disk(2, "EX4000A-26 73WQ", "0D4B7C11-6E92-4C35-A1F8-5B20E79D3A64", ARCHIVE),
            Disk(3, "EX4000A-26 AG5H", "9A63E2F5-1B70-4D8C-86E4-C3D51F0A7B92", ARCHIVE),
        ]
        scratch = [
            Disk(4, "EX4000A-26 6LU2", "41F8A0B6-D725-4E93-9B1C-2E607C5D8F3A", SCRATCH),
            Disk(5, "EX4000A-26 69KW", "7C29D5E3-804F-4A61-B5D7-F1930B6E4C28", SCRATCH),
            Disk(6, "EX4000A-26 N47P", "E6105B9F-3C8A-4772-A0E3-68D4F27B915C", SCRATCH),
        ]
        projects = [
            Disk(9, "EX8000A-30 W6X1", "38E7C6A2-F419-4B05-92D8-0C6B5A1E73D4", PROJECTS),
            Disk(10, "EX8000A-30 8MAB", "B15D0F84-7A3E-4C69-8E27-D94F60C2A7B5", PROJECTS),
        ]
        self.scratch = RaidSet(SCRATCH, "Scratch", "Stripe", scratch, "disk8")
        self.projects = RaidSet(PROJECTS, "Projects", "Mirror", projects, "disk11")
        self.fiveBay = Enclosure(
            1, 0x0003074B9E7D9F18, "Five Bay", 6,
            [("5", "pci1b4b,9182", 2), ("7", "pci1b4b,9182", 2), ("9", "pci1b4b,9182", 2)],
            [scratch[2], None, scratch[0], scratch[1], archive[0], archive[1]],
            [RaidSet(ARCHIVE, "Archive", "Mirror", archive, "disk7"), self.scratch],
        )
        self.twoBay = Enclosure(
            2, 0x00030F1B7461E0A5, "Two Bay", 2, [(None, "pci1b21,612", 2)], projects, [self.projects])
        self.twoBay.stage = 0

    def write(self, milliseconds):
        mac = Mac(self.clients)
        self.fiveBay.plugInto(mac)
        self.twoBay.plugInto(mac)
        text = plistlib.dumps(mac.root.dictionary(self.identifiers)).decode()
        # Without indentation, and with a key and its value on one line, the files are half as large.
        text = re.sub(r"^\t+", "", text, flags=re.MULTILINE).replace("</key>\n", "</key>")
        with open(os.path.join(FOLDER, f"{milliseconds:05d}.plist"), "w", encoding="utf-8") as file:
            file.write(text)

    def plugIn(self):
        for milliseconds, stage in ((2600, 1), (3050, 2), (3400, 3), (3800, 5), (4700, 6)):
            self.twoBay.stage = stage
            self.write(milliseconds)

    def failAndRebuild(self, disk):
        disk.status, self.projects.status = "Failed", "Degraded"
        self.write(7000)
        disk.present = False
        self.write(9300)
        self.clients.append(3)
        disk.present, disk.insertions, disk.status = True, 2, "Standby"
        self.write(12500)
        disk.status, disk.progress = "Rebuilding", 1200236109004
        self.write(15000)
        disk.status, disk.progress, self.projects.status = "Online", None, "Online"
        self.write(21000)

    def pullAndReturn(self, disk):
        disk.present, self.scratch.status = False, "Offline"
        self.clients.remove(1)
        self.write(23500)
        disk.present, disk.insertions = True, 2
        self.scratch.status, self.scratch.starts = "Online", 2
        self.write(27000)

    def run(self):
        for old in glob.glob(os.path.join(FOLDER, "*.plist")):
            os.remove(old)
        self.write(0)
        self.plugIn()
        self.failAndRebuild(self.projects.disks[1])
        self.pullAndReturn(self.scratch.disks[1])


if __name__ == "__main__":
    Demo().run()
