"""Sets that span enclosures, marks that come and go, members that are odd."""

import fuzz
from handmade_desk import Recording, TOP_BIT_UID
from machine import FIVE_BAY


def spanningSetLeavesThroughTheOther():
    recording = Recording("spanning-set-leaves-through-the-other")
    first = recording.enclosure(uuids=("M1", "M2"))
    second = recording.enclosure(TOP_BIT_UID, 6, FIVE_BAY, ("M3", "M4"), stage=0)
    recording.raid("S1", ("M1", "M3"))
    recording.raid("S2", ("M2", "M4"), "Concat", "Archive")
    recording.at(0)
    second.stage = 6
    recording.at(2300)
    # Gone before any cycle saw both: what leaves is the second enclosure's object.
    second.stage, second.generation = 0, 1
    recording.at(2750)
    second.stage = 6
    recording.at(4100)
    # Now the sets lie in the second enclosure alone, yet the first one's objects stay announced.
    first.disks[0].present = first.disks[1].present = False
    recording.at(4200)
    first.stage = 0
    recording.at(6500)
    second.disks[0].present = second.disks[1].present = False
    recording.at(8400)
    recording.finish()


def spanningSetOutlivesItsEnclosure():
    recording = Recording("spanning-set-outlives-its-enclosure")
    first = recording.enclosure(uuids=("M1",))
    second = recording.enclosure(12, 6, FIVE_BAY, (None, "M2"), stage=0)
    raid = recording.raid("S1", ("M1", "M2"), "Concat", "Archive")
    recording.at(0)
    second.stage = 6
    recording.at(5000)
    first.stage = 0
    recording.at(5001)
    raid.status = "Offline"
    recording.at(6000)
    first.stage, first.generation = 6, 1
    recording.at(6001)
    second.stage = 0
    recording.at(7999)
    recording.finish()


def crossDeviceMarks():
    recording = Recording("cross-device-marks")
    enclosure = recording.enclosure(modelID=6, layout=FIVE_BAY, uuids=("M1", "M2", "M3", "M4"))
    one, other = "pci1b21,612@0", "pci1b4b,9182@0"
    stripe = recording.raid("S1", ("M1", "M2"), "Stripe", "Scratch")
    mirror = recording.raid("S2", ("M3", "M4"), "Mirror", "Archive")

    def paths(*controllers):
        return [f"IODeviceTree:/PCI0@0/{controller}/PRT0@0/@0:2" for controller in controllers]

    stripe.boot, mirror.boot = paths(one, other), paths(one, other)
    recording.at(0)
    stripe.boot = paths(one, one)
    recording.at(2500)
    stripe.boot = paths(f"{one}/bridge/{other}")
    recording.at(4500)
    stripe.media = False
    recording.at(6500)
    stripe.status = "Rebuilding"
    stripe.media, stripe.boot = True, paths(one, other, "pci1B,1", "PCI1b")
    recording.at(8500)
    stripe.boot = paths("xpci1b21,612@0", "pci8086,1@0")
    recording.at(10500)
    enclosure.disks[1].status = "Failed"
    stripe.status = "Online"
    recording.overlay(("setmedia", "S1", 0), fuzz.setting("IOBootDevice", [5, {}, {"IOBootDevicePath": 7}, "pci1b1", {"IOBootDevicePath": "pci1b1/pci1b"}]))
    recording.at(12500)
    recording.finish()


def memberOutsideTheBridge():
    recording = Recording("member-outside-the-bridge")
    # The first enclosure is no device, so the inner set's path leads away from the only host.
    recording.enclosure(1, modelID=2, uuids=("M1",), depth=0)
    enclosure = recording.enclosure(modelID=6, layout=FIVE_BAY, uuids=("M3", "M2"))
    inner = recording.raid("I1", ("M1", "M2"), "Stripe", "", outer="S1", media=False)
    outer = recording.raid("S1", ("I1", "M3"), "Mirror", "Projects")
    outer.parents = ["I1", "M3"]
    recording.at(0)
    inner.memberStatus = "Failed"
    enclosure.disks[0].status = "Standby"
    recording.at(3000)
    # Exchanged bays: now the inner set is met first under the outer one's identity.
    enclosure.disks[0], enclosure.disks[1] = enclosure.disks[1], enclosure.disks[0]
    recording.at(4400)
    inner.outer = None
    outer.status = "Degraded"
    recording.at(6500)
    recording.finish()


def oddMembers():
    recording = Recording("odd-members")
    enclosure = recording.enclosure(uuids=("M1", "M2"))
    raid = recording.raid("S1", ("M1", "M2"), status="Offline")
    member = enclosure.key("disk", 0, 0, "member")
    raid.listed = ["M2", "M1", "M2", 5, "nobody"]
    recording.at(0)
    recording.overlay(member, fuzz.setting("AppleRAID-MemberUUID", 7))
    recording.at(2500)
    recording.overlay(("set", "S1"), fuzz.setting("AppleRAID-Members", "M1"))
    recording.at(4500)
    recording.overlay(("set", "S1"), fuzz.setting("AppleRAID-Members", []))
    raid.status = "online"
    recording.at(6500)
    recording.overlay(("set", "S1"), fuzz.setting("AppleRAID-SetUUID", fuzz.ABSENT))
    enclosure.disks[1].status = "FAILED"
    recording.at(8500)
    recording.machine.overlays.clear()
    raid.status, raid.level = "Terminating", "Concat"
    recording.at(10500)
    recording.finish()


ALL = (spanningSetLeavesThroughTheOther, spanningSetOutlivesItsEnclosure, crossDeviceMarks, memberOutsideTheBridge, oddMembers)
