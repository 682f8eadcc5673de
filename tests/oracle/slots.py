"""Where a disk sits in its enclosure."""

import re

import properties
from registry import release, retain

NUMBER = re.compile(r"[ \t\n\v\f\r]*([+-]?[0-9]+)")
OFFSETS = {7: 3, 9: 1, 5: 5}
TWO_BAY, FIVE_BAY = (1, 2), (6,)
NO_MEMBER = "ThunderboltDevice::locationOfMember - cannot find member registry entry"


def parseLocation(entry, previous):
    match = NUMBER.match(entry.location() or "")
    if match is None:
        return previous
    number = int(match.group(1))
    return number if -2147483648 <= number <= 2147483642 else previous


def withOffset(result, bridge):
    return result + OFFSETS[bridge] if bridge in OFFSETS else -1


def isBridge(entry):
    return entry.conformsTo("IOPCIDevice") and properties.string(entry, "IOName") == "pci-bridge"


def locationOfMember(host, member, infer):
    if host.vendorID != 3 or host.modelID not in TWO_BAY + FIVE_BAY:
        return -1
    entry = host.system.registry.fromPath(member.path)
    if host.modelID in FIVE_BAY:
        return fiveBayMember(host, entry)
    result = -1
    if entry is None:
        host.system.debug(NO_MEMBER)
    else:
        for ancestor in host.system.registry.walk(entry, upward=True):
            if ancestor.conformsTo("AppleAHCIPort"):
                result = parseLocation(ancestor, result)
            if result >= 0:
                break
        result += 1
        release(entry)
    if result != -1 or not infer:
        return result
    return inferred(host, member)


def inferred(host, member):
    members = member.volume.members()
    for position, other in enumerate(members, start=1):
        if other.uuid != member.uuid:
            slot = host.locationOfMember(other, False)
            # Two lost disks: the position is that of the other one.
            return position if slot <= 0 else slot ^ 3
    return -1


def fiveBayMember(host, entry):
    result = bridge = -1
    if entry is None:
        host.system.message(NO_MEMBER)
        return withOffset(result, bridge)
    for ancestor in host.system.registry.walk(entry, upward=True):
        if ancestor.conformsTo("AppleAHCIPort"):
            result = parseLocation(ancestor, result)
        elif isBridge(ancestor):
            bridge = parseLocation(ancestor, bridge)
        if result >= 0 and bridge > 4:
            break
    release(entry)
    return withOffset(result, bridge)


def locationOfNotMember(host, slot):
    if host.vendorID != 3 or host.modelID not in TWO_BAY + FIVE_BAY:
        return -1
    registry = host.system.registry
    # The bridge is kept, and so is every entry of the two-bay walk.
    top = registry.fromPath(host.bridgePath)
    if top is None:
        host.system.message(NO_MEMBER)
        host.system.message("ThunderboltDevice::entryFromUUID - couldn't create iterator on PCI Bridge")
        return -1
    fiveBay = host.modelID in FIVE_BAY
    result = bridge = -1
    for entry in registry.walk(top):
        if not fiveBay:
            retain(entry)
        if entry.conformsTo("IOAHCIDevice"):
            port = registry.firstParent(entry)
            result = parseLocation(port, result)
            release(port)
            result = withOffset(result, bridge) if fiveBay else result + 1
        elif fiveBay and isBridge(entry):
            bridge = parseLocation(entry, bridge)
        if result == slot:
            break
    return result
