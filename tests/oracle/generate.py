#!/usr/bin/env python3
"""Writes a random recording: generate.py SEED DIR. The same seed gives the same files."""

import os
import random as randomness
import sys

import fuzz
from machine import FIVE_BAY, TWO_BAY, Disk, Enclosure, Machine, RaidSet, collect

UIDS = (0x00030F1B7461E0A5, 0x8003F11B7461E0A5 - 2**64, 0x00030F1B7461E0A6, 0xFFFF000000000001 - 2**64, 7, 0x0003000000000000, 12, 2**62, -5)
STEPS = (1, 37, 50, 99, 100, 101, 150, 350, 700, 900, 1000, 1250, 1900, 1999, 2000, 2001, 2100, 3000)
ODD_LAYOUTS = (
    (("3", "0"), [("0", "pci1b4b,9182", ("0", "1")), ("3", "pci1b4b,9182", ("0",)), ("7", "pci1b4b,9182", ("1",))]),
    (("9",), [(None, "pci1b4b,9182", ("0", "1")), ("5", "pci1b4b,9182", ("0", "1"))]),
    ((), [("5", "pci1b21,612", ("0", "1", "2", "3"))]),
)


class Story:
    def __init__(self, seed):
        self.random = randomness.Random(f"recording/{seed}")
        self.machine = Machine()
        self.machine.inheritance = self.random.random() < 0.8
        # No system does so; an entry that returns under its old ID is a new one all the same.
        self.machine.reusesIDs = self.random.random() < 0.06
        self.theme = self.random.choice(("any",) * 5 + ("spanning", "bays", "bays", "length"))
        self.machine.repeats = self.random.choice(("full",) * 8 + ("bare", "changed"))
        self.calm = self.random.random() < 0.4
        self.names = 0
        self.staged = self.random.random() < (0.3 if self.theme == "any" else 0.05)
        counts = {"spanning": (2, 2, 3), "bays": (1, 1, 2), "length": (1, 2)}.get(self.theme, (0,) + (1,) * 9 + (2,) * 7 + (3,) * 3)
        for index in range(self.random.choice(counts)):
            self._enclosure(index)
        for _ in range(self.random.choice((1, 1, 2, 2, 3, 4))):
            self._raidSet()
        if not self.calm:
            for _ in range(self.random.randrange(3)):
                self._disturb()
            if self.theme == "length":
                self._lengthen()

    # --- beginnings

    def _uuid(self, letter):
        self.names += 1
        return f"{letter}{self.random.randrange(2**32):08X}-{self.names:04d}"

    def _enclosure(self, index):
        random = self.random
        modelID = random.choice((1, 2, 2, 2, 6, 6, 6) + ((0, 3, 4, 5, 7) if self.theme == "any" else ()))
        layout = random.choice((TWO_BAY, TWO_BAY, FIVE_BAY) if modelID <= 2 else (FIVE_BAY, FIVE_BAY, FIVE_BAY, TWO_BAY))
        if random.random() < 0.12:
            layout = random.choice(ODD_LAYOUTS)
        bays = sum(len(ports) for _, _, ports in layout[1])
        taken = [enclosure.uid for enclosure in self.machine.enclosures]
        uid = random.choice([uid for uid in UIDS if uid not in taken] if random.random() < 0.95 or not taken else taken)
        enclosure = Enclosure(index, uid, modelID, layout, bays)
        if random.random() < 0.1:
            enclosure.vendorID, enclosure.vendor = random.choice(((4, "Other Maker"), (0, ""), (1, "Example Storage")))
        enclosure.stage = random.randrange(7) if self.staged else 6
        enclosure.pciDevice = random.choice((0, 0, 3, 0x33, 0x30, 0x70, 0x7A, 9))
        enclosure.depth = random.choice((1, 1, 1, 1, 2, 3))
        for bay in range(bays):
            if random.random() < 0.8:
                enclosure.disks[bay] = self._disk(0)
        self.machine.enclosures.append(enclosure)

    def _disk(self, generation, uuid=None):
        disk = Disk(generation, uuid, label=f"EX4000A-26 {self.random.randrange(2**16):04X}")
        disk.partitioned = self.random.random() < 0.95
        return disk

    def _disks(self):
        return [d for e in self.machine.enclosures for d in e.disks.values() if d is not None]

    def _raidSet(self):
        random = self.random
        homes = random.sample(self.machine.enclosures, min(len(self.machine.enclosures), random.choice((1, 1, 1, 2) if self.theme != "spanning" else (1, 2, 2, 3))))
        free = [d for e in homes for d in e.disks.values() if d is not None and d.uuid is None]
        free = random.sample(free, min(len(free), random.choice((1, 2, 2, 2, 3))))
        level = random.choice(("Mirror", "Mirror", "Stripe", "Stripe", "Concat"))
        name = random.choice(("Projects", "Archive", "Scratch", "Media", "Backup"))
        if not free:
            return
        for disk in free:
            disk.uuid = self._uuid("M")
        members = [disk.uuid for disk in free]
        raid = RaidSet(self._uuid("I"), self._uuid("S"), level, name, members)
        raid.status = random.choice(("Online", "Online", "Online", "Degraded", "Offline"))
        if len(members) > 2 and random.random() < 0.5:
            # A spare carries the set without being one of its members.
            raid.listed.pop()
        if level == "Stripe" and random.random() < 0.7:
            controllers = random.choice((("pci1b21,612@0",), ("pci1b21,612@0", "pci1b4b,9182@0"), ("pci8086,1@0",)))
            raid.boot = [f"IODeviceTree:/PCI0@0/{random.choice(controllers)}/PRT{i}@{i}/@0:2" for i in range(len(members))]
        self.machine.sets.append(raid)
        if random.random() < 0.15 and len(self.machine.sets) > 1:
            self._nest(raid, random.choice(self.machine.sets[:-1]))

    def _nest(self, outer, inner):
        if inner.outer is not None:
            return
        inner.outer, inner.media = outer.uuid, False
        outer.listed.append(inner.uuid)
        outer.parents.append(inner.identity)

    # --- what may happen between two archives

    def _advance(self):
        enclosure = self._anyEnclosure(lambda e: e.stage < 6)
        if enclosure:
            enclosure.stage += self.random.choice((1, 1, 1, 2, 6))
            enclosure.stage = min(enclosure.stage, 6)

    def _unplug(self):
        enclosure = self._anyEnclosure(lambda e: e.stage > 0)
        if enclosure:
            enclosure.generation += 1
            enclosure.stage = 0

    def _replug(self):
        enclosure = self._anyEnclosure(lambda e: e.stage == 0)
        if enclosure:
            enclosure.stage = self.random.choice((1, 6, 6))

    def _swap(self):
        enclosure = self._anyEnclosure(lambda e: e.stage > 0)
        if enclosure:
            enclosure.generation += 1
            enclosure.stage = self.random.choice((1, 3, 6, 6))

    def _anyEnclosure(self, wanted):
        fitting = [e for e in self.machine.enclosures if wanted(e)]
        return self.random.choice(fitting) if fitting else None

    def _pullOrReturn(self):
        enclosure = self._anyEnclosure(lambda e: True)
        if not enclosure:
            return
        bay = self.random.choice(list(enclosure.disks))
        disk = enclosure.disks[bay]
        if disk is None:
            enclosure.disks[bay] = self._disk(self.names, None)
            self.names += 1
        elif not disk.present:
            disk.present = True
            disk.generation += 1
            disk.status = self.random.choice(("Online", "Standby", "Rebuilding"))
        else:
            disk.present = False

    def _moveDisk(self):
        enclosure, other = self._anyEnclosure(lambda e: True), self._anyEnclosure(lambda e: True)
        if enclosure:
            one, two = self.random.choice(list(enclosure.disks)), self.random.choice(list(other.disks))
            enclosure.disks[one], other.disks[two] = other.disks[two], enclosure.disks[one]

    def _memberStatus(self):
        disks = [d for d in self._disks() if d.uuid is not None]
        if disks:
            self.random.choice(disks).status = self.random.choice(("Online", "Failed", "Offline", "Standby", "Rebuilding", "online"))

    def _setStatus(self):
        if self.machine.sets:
            raid = self.random.choice(self.machine.sets)
            raid.status = self.random.choice(("Online", "Degraded", "Degraded", "Offline", "Offline", "Failed", "Initializing", "Odd"))
            raid.media = raid.outer is None and raid.status in ("Online", "Degraded")
            raid.mediaGeneration += self.random.randrange(2)

    def _reorder(self):
        if self.machine.sets:
            raid = self.random.choice(self.machine.sets)
            self.random.shuffle(raid.parents)
            if len(raid.parents) > 1 and self.random.random() < 0.3:
                raid.parents.pop()

    def _disturb(self):
        nodes = {}
        collect(self.machine.draw(), nodes)
        keys = [k for k, n in nodes.items() if n.className in fuzz.INTERESTING and k != "hostswitch"]
        wanted = [k for k in keys if isinstance(k, tuple) and k[0] in ("enclosure", "set", "setmedia")]
        key = self.random.choice(wanted if wanted and self.random.random() < 0.95 else keys)
        uuids = [d.uuid for d in self._disks() if d.uuid] + [s.uuid for s in self.machine.sets] + ["M-nobody"]
        paths = [e.root() for e in self.machine.enclosures] or ["IOService:/nowhere"]
        self.machine.overlays[key] = fuzz.oddity(self.random, nodes[key], uuids, paths)

    def _calmDown(self):
        if self.machine.overlays:
            del self.machine.overlays[self.random.choice(list(self.machine.overlays))]

    def _place(self):
        """Moves a port's or bridge's location; a changed status makes the bays show."""
        nodes = {}
        collect(self.machine.draw(), nodes)
        keys = [k for k, n in nodes.items() if k[0] == "enclosure" and n.className in ("AppleAHCIPort", "IOPCIDevice")]
        ports = [k for k in keys if k[3] == "prt"]
        if ports:
            key = self.random.choice(ports * 3 + keys)
            self.machine.overlays[key] = fuzz.attribute("location", self.random.choice(fuzz.LOCATIONS))
        self._setStatus()

    def _stretch(self):
        """Brings the path of one member close to the longest that there can be."""
        root = self.machine.draw()
        nodes = {}
        collect(root, nodes)
        keys = [k for k, n in nodes.items() if n.className == "AppleRAIDMember"]
        if not keys:
            return
        key = self.random.choice(keys)
        block = nodes[key[:-1] + ("block",)]
        room = 509 - len(pathTo(root, nodes[key])) + len(block.name.encode()) + self.random.randrange(-2, 4)
        if 0 < room < 120:
            self.machine.overlays[block.key] = fuzz.attribute("name", "b" * room)
        self._memberStatus()
        self._setStatus()

    def _lengthen(self):
        nodes = {}
        collect(self.machine.draw(), nodes)
        names = self.random.choice((("media", "scheme"), ("media", "scheme", "member"), ("storage", "block", "partition")))
        for key in nodes:
            if isinstance(key, tuple) and key[0] == "enclosure" and key[-1] in names:
                self.machine.overlays[key] = fuzz.attribute("name", fuzz.LONG)

    def _link(self):
        nodes = {}
        collect(self.machine.draw(), nodes)
        keys = [k for k in nodes if isinstance(k, tuple) and k[0] in ("enclosure", "set", "setmedia")]
        if keys:
            self.machine.links.append((self.random.choice(keys), self.random.choice(keys)))

    def _noise(self):
        self.machine.extras = self.random.randrange(4)

    def step(self):
        actions = [self._advance] * 8 + [self._memberStatus] * 8 + [self._setStatus] * 7 + [self._pullOrReturn] * 6
        actions += [self._unplug] * 2 + [self._replug] * 3 + [self._swap, self._moveDisk, self._reorder, self._noise]
        if self.theme == "bays":
            actions += [self._place] * 25 + [self._pullOrReturn] * 8
        if self.theme == "length":
            actions += [self._stretch] * 25
        if self.theme == "spanning":
            actions += [self._unplug, self._replug, self._pullOrReturn, self._pullOrReturn] * 4
        if not self.calm:
            actions += [self._disturb] * 10 + [self._calmDown] * 5 + [self._link]
        for _ in range(self.random.choice((1, 1, 2, 3, 5))):
            self.random.choice(actions)()

    def write(self, folder):
        os.makedirs(folder, exist_ok=True)
        time = 0
        for number in range(self.random.randrange(1, 11)):
            digits = f"{time:0{self.random.choice((1, 1, 6))}d}"
            self.machine.write(os.path.join(folder, f"{digits}.plist"), binary=self.random.random() < 0.8)
            time += self.random.choice(STEPS) if self.random.random() < 0.8 else self.random.randrange(1, 2600)
            self.step()


def pathTo(root, target):
    """The path of an entry through first parents, in bytes."""

    def search(node, above):
        own = above + "/" + node.name + ("@" + node.location if node.location else "")
        if node is target:
            return own
        return next((found for found in (search(child, own) for child in node.children) if found), None)

    return ("IOService:" + search(root.children[0], "")[1 + len(root.children[0].name):]).encode()


if __name__ == "__main__":
    Story(int(sys.argv[1])).write(sys.argv[2])
