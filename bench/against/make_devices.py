#!/usr/bin/env python3
"""Writes so many devices twice: for raidmonitor, two-bay enclosures in an archive (as a text of ioreg, as
XML and as a binary list), and for umockdev, block devices with a few attributes each:

    bench/against/make_devices.py COUNT FOLDER
"""

import itertools
import pathlib
import plistlib
import sys

IDS = itertools.count(0x100000100)


def entry(class_name, name="", location="", children=(), **properties):
    made = {"IORegistryEntryID": next(IDS), "IOObjectClass": class_name,
            "IORegistryEntryName": name or class_name}
    if location:
        made["IORegistryEntryLocation"] = location
    made.update(properties)
    if children:
        made["IORegistryEntryChildren"] = list(children)
    return made


def media(name, location="", children=()):
    return entry("IOMedia", name, location, [entry("IOMediaBSDClient"), *children])


def disk(number, uid, shared):
    member = entry("AppleRAIDMember", **{
        "AppleRAID-MemberUUID": f"MEMBER-{uid}-{number}", "AppleRAID-MemberStatus": "Online",
        "AppleRAID-SetUUID": f"SET-{uid}"}, children=[shared])
    scheme = entry("IOGUIDPartitionScheme", children=[media("EFI", "1"), media("RAID", "2", [member])])
    block = entry("IOBlockStorageDriver", children=[media("Disk", "", [scheme])])
    return entry("AppleAHCIPort", f"PRT{number}", str(number), [entry("IOAHCIDevice", "", "0", [block])])


def bridge(name, location, children):
    return entry("IOPCIDevice", name, location, [entry("IOPCI2PCIBridge", "IOPP", "", children)])


def enclosure(number):
    shared = entry("AppleRAIDMirrorSet", children=[media("Projects", "0")], **{
        "AppleRAID-SetUUID": f"SET-{number}", "AppleRAID-SetName": "Projects",
        "AppleRAID-SetStatus": "Online", "AppleRAID-LevelName": "Mirror",
        "AppleRAID-MemberUUID": f"SET-{number}", "AppleRAID-MemberStatus": "Online",
        "AppleRAID-Members": [f"MEMBER-{number}-0", f"MEMBER-{number}-1"]})
    disks = [disk(place, number, shared) for place in range(2)]
    controller = entry("IOPCIDevice", "pci1b0a,10", "0", [entry("AppleAHCI", children=disks)])
    return bridge("UPS0", "0", [bridge("pci-bridge", "3", [controller])])


def archive(count):
    tunnels, switches = [], []
    for group in range(0, count, 10):
        places = range(group, min(group + 10, count))
        tunnels.append(bridge(f"PEG{group:x}", f"{group:x}", [
            bridge(f"DSB{n - group}", str(n - group), [enclosure(n)]) for n in places]))
        for n in places:
            path = f"IOService:/Platform/PEG{group:x}@{group:x}/IOPP/DSB{n - group}@{n - group}/IOPP/UPS0@0"
            port = entry("IOThunderboltPort", "", "A", **{
                "Adapter Type": 0x100102, "PCI Path": path, "PCI Device": 3})
            switches.append(entry("IOThunderboltSwitchType2", children=[port], **{
                "UID": 0x100000 + n, "Depth": 1, "Device Vendor ID": 3, "Device Model ID": 2,
                "Device Vendor Name": "Example Storage", "Device Model Name": "Two Bay"}))
    platform = entry("AppleACPIPlatformExpert", "Platform", "", tunnels + switches)
    computer = entry("IOPlatformExpertDevice", "Host1,1", "", [platform])
    return entry("IORegistryEntry", "Root", "", [computer])


def printed(value):
    if isinstance(value, list):
        return "(" + ",".join(printed(part) for part in value) + ")"
    return f'"{value}"' if isinstance(value, str) else str(value)


# The lines of an entry and of what is beneath it, as `ioreg -l -w0` prints them.
def text_of(made, indentation="", is_last=True):
    location = made.get("IORegistryEntryLocation")
    name = made["IORegistryEntryName"] + (f"@{location}" if location else "")
    yield f'{indentation}+-o {name}  <class {made["IOObjectClass"]}, id {made["IORegistryEntryID"]:#x}, retain 5>'
    children = made.get("IORegistryEntryChildren", [])
    below = indentation + ("  " if is_last else "| ")
    inner = below + ("| " if children else "  ")
    yield inner + "{"
    for key, value in made.items():
        if not key.startswith(("IORegistryEntry", "IOObject")):
            yield f'{inner}  "{key}" = {printed(value)}'
    yield inner + "}"
    yield inner
    for place, child in enumerate(children):
        yield from text_of(child, below, place + 1 == len(children))


def mock(count):
    lines = []
    for n in range(count):
        lines += [f"P: /devices/pci0000:00/0000:00:{n // 32:02x}.{n % 8}/host{n}/block/sd{n}", f"N: sd{n}",
                  "E: SUBSYSTEM=block", f"E: DEVNAME=/dev/sd{n}", "E: DEVTYPE=disk",
                  "A: size=7814037168\\n", "A: ro=0\\n", "A: removable=0\\n", f"A: dev=8:{n}\\n", ""]
    return "\n".join(lines)


def main(count, folder):
    folder = pathlib.Path(folder)
    (folder / "devices.umockdev").write_text(mock(count))
    content = archive(count)
    (folder / "text").write_text("\n".join(text_of(content)) + "\n")
    for name, form in (("xml", plistlib.FMT_XML), ("binary", plistlib.FMT_BINARY)):
        with open(folder / name, "wb") as file:
            plistlib.dump(content, file, fmt=form, sort_keys=False)


main(int(sys.argv[1]), sys.argv[2])
