"""Enclosures that come, go and half come."""

import fuzz
from handmade_desk import Recording, TOP_BIT_UID
from machine import FIVE_BAY, MAC


def enclosureGoneAndBack():
    recording = Recording("enclosure-gone-and-back")
    enclosure = recording.enclosure(uuids=("M1", "M2"))
    recording.raid("S1", ("M1", "M2"))
    recording.at(0)
    enclosure.stage, enclosure.generation = 0, 1
    recording.at(2500)
    enclosure.stage = 3
    recording.at(3333)
    enclosure.stage = 6
    recording.at(3733)
    # Exchanged at one instant: the UID never leaves, every entry is new at its old path.
    enclosure.generation = 2
    recording.at(4500)
    # The same in the middle of a bring-up leaves the device polling a dead switch.
    enclosure.stage, enclosure.generation = 0, 3
    recording.at(6500)
    enclosure.stage = 1
    recording.at(6700)
    enclosure.generation, enclosure.stage = 4, 6
    recording.at(6950)
    recording.finish()


def bridgeLostWhileTheSwitchStays():
    recording = Recording("bridge-lost-while-the-switch-stays")
    enclosure = recording.enclosure(uuids=("M1", "M2"), pciDevice=0x33)
    recording.raid("S1", ("M1", "M2"))
    recording.at(0)
    enclosure.stage = 2
    recording.at(3000)
    enclosure.stage = 6
    recording.at(5100)
    recording.overlay(enclosure.key("bridge", 0), fuzz.attribute("location", "4"))
    recording.at(7000)
    recording.machine.overlays.clear()
    recording.at(9000)
    recording.finish()


def portsAndPaths():
    recording = Recording("ports-and-paths")
    enclosure = recording.enclosure(uuids=("M1", "M2"), pciDevice=0x70)
    raid = recording.raid("S1", ("M1", "M2"))
    up, first = enclosure.key("up"), enclosure.key("down")
    recording.overlay(first, lambda node: node.properties.update({"Adapter Type": 1048834.0}) or node.properties.pop("PCI Path"))
    recording.overlay(up, fuzz.setting("PCI Path", 5))
    recording.at(0)
    recording.overlay(up, fuzz.setting("PCI Device", 3.5))
    recording.at(250)
    recording.overlay(up, fuzz.setting("PCI Path", enclosure.root() + "/"))
    recording.at(400)
    recording.overlay(up, lambda node: node.properties.update({"PCI Device": 0x12F, "PCI Path": enclosure.root() + "/IOPP/pci-bridge"}))
    recording.overlay(enclosure.key("function", 0), fuzz.attribute("location", "-1"))
    recording.at(600)
    recording.overlay(up, fuzz.setting("PCI Device", 0x78))
    recording.at(1000)
    recording.overlay(enclosure.key("function", 0), fuzz.attribute("name", "with/slash@7"))
    raid.status = "Degraded"
    recording.at(2150)
    recording.finish()


def bridgePathTooLong():
    recording = Recording("bridge-path-too-long")
    enclosure = recording.enclosure(uuids=("M1", "M2"), pciDevice=0x41)
    raid = recording.raid("S1", ("M1", "M2"))
    for key in (("dsb", 0), ("dsbpp", 0), enclosure.key("ups")):
        recording.overlay(key, fuzz.attribute("name", fuzz.LONG))
    path = f"{MAC}/{fuzz.LONG}@3/{fuzz.LONG}/{fuzz.LONG}@0"
    recording.overlay(enclosure.key("up"), fuzz.setting("PCI Path", path))
    room = 509 - len(path + "/IOPP/@3")

    def name(length):
        recording.overlay(enclosure.key("bridge", 0), fuzz.attribute("name", "b" * (length - 1) + "A"))

    name(room + 1)
    recording.at(0)
    name(room)
    recording.at(450)
    # One character more makes the known bridge's path lead nowhere.
    name(room + 1)
    recording.at(2050)
    name(room)
    raid.status = "Degraded"
    recording.at(4050)
    recording.finish()


def oddSwitches():
    recording = Recording("odd-switches")
    first = recording.enclosure(7, uuids=("M1",), depth=3)
    second = recording.enclosure(7, 6, FIVE_BAY, ("M2",))
    recording.raid("S1", ("M1",), "Concat", "Archive")
    recording.raid("S2", ("M2",), "Concat", "Scratch")
    recording.overlay(first.key("switch"), fuzz.attribute("state", 31))
    recording.at(0)
    second.stage = 0
    recording.at(2200)
    first.stage = 0
    recording.at(4200)
    first.stage, first.generation = 6, 1
    recording.overlay(first.key("switch"), fuzz.attribute("state", 0))
    recording.at(6100)
    first.stage, first.generation = 0, 2
    recording.at(6200)
    first.stage, first.uid = 6, TOP_BIT_UID
    recording.overlay(first.key("switch"), lambda node: node.properties.update({"Device Vendor ID": -(2**40)}) or node.properties.pop("Depth"))
    recording.at(6300)
    recording.finish()


ALL = (enclosureGoneAndBack, bridgeLostWhileTheSwitchStays, portsAndPaths, bridgePathTooLong, oddSwitches)
