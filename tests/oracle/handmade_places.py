"""Members whose bay is hard to tell."""

import fuzz
from handmade_desk import Recording, TOP_BIT_UID
from machine import FIVE_BAY


def lengthen(recording, enclosure, bays):
    for bay in bays:
        for name in ("media", "scheme", "block"):
            recording.overlay(enclosure.key("disk", bay, 0, name), fuzz.attribute("name", fuzz.LONG))


def longMemberPathInTwoBays():
    recording = Recording("long-member-path-two-bay")
    enclosure = recording.enclosure(uuids=("M1", "M2"))
    mirror = recording.raid("S1", ("M1", "M2"))
    lengthen(recording, enclosure, (0, 1))
    recording.at(0)
    recording.overlay(enclosure.key("prt", 0), fuzz.attribute("location", None))
    recording.overlay(enclosure.key("prt", 1), fuzz.attribute("location", "a"))
    mirror.status = "Offline"
    recording.at(2050)
    recording.overlay(enclosure.key("disk", 1, 0, "scheme"), fuzz.attribute("name", "Short"))
    recording.overlay(enclosure.key("prt", 1), fuzz.attribute("location", "0"))
    mirror.status = "Degraded"
    recording.at(4050)
    recording.finish()


def longMemberPathInFiveBays():
    recording = Recording("long-member-path-five-bay")
    enclosure = recording.enclosure(TOP_BIT_UID, 6, FIVE_BAY, ("M3", "M4", "M5"))
    raid = recording.raid("S2", ("M3", "M4", "M5"), "Concat", "Archive")
    lengthen(recording, enclosure, (0, 1, 2))
    recording.at(0)
    for name in ("scheme", "block"):
        recording.overlay(enclosure.key("disk", 0, 0, name), fuzz.attribute("name", "Short"))
    # A port that is none by class: the text for the path ends empty.
    recording.overlay(enclosure.key("prt", 1), fuzz.attribute("className", "IOService"))
    raid.status = "Offline"
    recording.at(2050)
    recording.finish()


def comeBack(disk):
    disk.present = True
    disk.generation += 1


def twoBayBothMissing():
    recording = Recording("two-bay-both-missing")
    enclosure = recording.enclosure(layout=FIVE_BAY, uuids=("M2", "M1", "M9", "M5"))
    recording.raid("S1", ("M2", "M1"), parents=["M2", "M1", "M9"], status="Degraded")
    recording.raid("S2", ("M5",), "Concat", "Archive", parents=["M5", "M9"])
    disks = enclosure.disks
    recording.at(0)
    disks[0].present = False
    recording.at(2500)
    disks[1].present = disks[3].present = False
    recording.at(4500)
    comeBack(disks[0])
    disks[0].status = "Standby"
    recording.overlay(enclosure.key("prt", 0), fuzz.attribute("location", "-3"))
    recording.at(6500)
    recording.overlay(enclosure.key("prt", 0), fuzz.attribute("location", "-2"))
    recording.at(8500)
    comeBack(disks[1])
    recording.overlay(enclosure.key("prt", 0), fuzz.attribute("location", "7,0"))
    recording.overlay(enclosure.key("prt", 1), fuzz.attribute("location", "99999999999"))
    recording.at(10500)
    recording.finish()


def fiveBayBridges():
    recording = Recording("five-bay-bridges")
    layout = (("3", "0"), [(b, "pci1b4b,9182", ("0", "1")) for b in ("0", "3", "5", "7", "9")])
    uuids = [f"M{bay}" for bay in range(10)]
    enclosure = recording.enclosure(TOP_BIT_UID, 6, layout, uuids)
    first = recording.raid("S1", uuids[:5], "Concat", "Archive", status="Offline")
    second = recording.raid("S2", uuids[5:], "Concat", "Scratch", status="Degraded")
    recording.at(0)
    for bay in (4, 6, 8):
        recording.overlay(enclosure.key("prt", bay), fuzz.attribute("className", "IOService"))
    first.status, second.status = "Degraded", "Offline"
    # No other bridge counts, so the offset of the branch is added to -1.
    above = ("peg", "upsb", ("dsb", 0), enclosure.key("ups"), enclosure.key("bridge", 0), enclosure.key("bridge", 1))
    for key in above:
        recording.overlay(key, fuzz.setting("IOName", "bridge"))
    recording.at(2300)
    recording.machine.overlays.clear()
    recording.overlay(enclosure.key("branch", 3), fuzz.setting("IOName", "pci-bridges"))
    recording.overlay(enclosure.key("branch", 4), fuzz.attribute("location", "9,1"))
    recording.overlay(enclosure.key("prt", 5), fuzz.attribute("location", "a"))
    enclosure.disks[7].present = False
    recording.at(4300)
    recording.finish()


ALL = (longMemberPathInTwoBays, longMemberPathInFiveBays, twoBayBothMissing, fiveBayBridges)
