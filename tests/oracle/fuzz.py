"""Odd values for the entries of a machine: what a hostile or half-ready registry may show."""

ABSENT = object()
TEXTS = (ABSENT, "", 7, True, b"Online\0", ["Online"], "ONLINE", "Rebuilding", "Missing")
STATUS = ("Online", "Offline", "Degraded", "Failed", "Terminating", "Initializing", "online", "Rebuilding", "", ABSENT, 4)
MEMBER_STATUS = ("Online", "Failed", "Offline", "Standby", "Rebuilding", "online", "", ABSENT, 2, b"Online")
LOCATIONS = (None, "", "0", "1", "2", "3", "5", "7", "9", "7,0", "9,1", "a", "A", "0a", "-1", "-2", "-3", "-5", "+1", " 1",
             "1 ", "1:0", "01", "x", "99999999999", "2147483642", "2147483643", "-2147483648", "-2147483649", "6")
NUMBERS = (ABSENT, -1, 0, 1, 2, 3, 4, 6, 7, "3", 3.0, 3.5, 2.0, 6.0, True, b"\3\0\0\0", 2**31, 2**32, 2**40, -(2**40), 2**63 - 1)
DEVICES = (ABSENT, -1, 0, 3, 0x30, 0x33, 0x2F, 0x12F, 0x62, 0x40, 0x100, "3", 51.0, 3.5, 2**31, 2**31 - 1, True, -7)
STATES = (0, 1, 2, 4, 6, 7, 14, 30, 31)
LONG = "A Very Long Name That Somebody Gave To A Disk In The Belief That There Would Always Be Room Enough For It"
NAMES = ("with/slash", "with@at", "with@1", "with:colon", "pci-bridge", "IOPP", "x", "  blank ", "Gr\u00f6\u00dfe", 'quote"back\\slash',
         LONG, LONG, LONG + " Always")
CLASSES = ("IOService", "IOPCIDevice", "IOAHCIDevice", "AppleAHCIPort", "AppleIntelPchSeriesAHCIPort", "AppleRAIDMember",
           "AppleRAIDStripeSet", "AppleRAIDMirrorSet", "IOThunderboltPort", "IOMediaBSDClient", "IOFDiskPartitionScheme")
OVERRIDES = ("AppleAHCIPort", "IOPCIDevice", "AppleRAIDMember", "AppleRAIDSet", "IOAHCIDevice", "AppleRAIDStripeSet", 5)


def setting(key, value):
    def change(node):
        if value is ABSENT:
            node.properties.pop(key, None)
        else:
            node.properties[key] = value

    return change


def attribute(name, value):
    return lambda node: setattr(node, name, value)


def bootDevices(random):
    controllers = ("pci1b21,612@0", "pci1b4b,9182@0", "pci1b4b,9182@1", "PCI1B,1", "pci1b")
    result = []
    for _ in range(random.randrange(4)):
        parts = ["IODeviceTree:", "PCI0@0"] + [random.choice(controllers) for _ in range(random.randrange(3))]
        path = "/".join(parts + ["PRT0@0", "@0:2"])
        result.append(random.choice([{"IOBootDevicePath": path}] * 6 + [{}, 5, path, {"IOBootDevicePath": 5}]))
    return random.choice([result] * 6 + [ABSENT, "text", {}, []])


def memberList(random, uuids):
    if random.random() < 0.2:
        return random.choice((ABSENT, [], "M", 3, {}))
    result = [random.choice(uuids) for _ in range(random.randrange(1, 5))]
    if random.random() < 0.3:
        result.insert(random.randrange(len(result) + 1), random.choice((5, True, "", "nobody", b"x", result[0])))
    return result


def pciPath(random, paths):
    nowhere = paths[0] + "/nowhere"
    odd = (ABSENT, "", 5, b"IOService:/", "IOService:/", "IOService:", "IOService", "IODeviceTree:/PCI0@0", nowhere, paths[0] + "/")
    return random.choice(odd + tuple(paths) * 3)


def oddity(random, node, uuids, paths):
    """A change for one entry, fitting its kind."""
    name = node.className
    general = [
        lambda: attribute("location", random.choice(LOCATIONS)),
        lambda: attribute("name", random.choice(NAMES)),
    ]
    rare = [
        lambda: attribute("className", random.choice(CLASSES)),
        lambda: setting("IOClassNameOverride", random.choice(OVERRIDES)),
    ]
    special = {
        "IOThunderboltSwitchType2": [
            lambda: setting("Device Vendor ID", random.choice(NUMBERS)),
            lambda: setting("Device Model ID", random.choice(NUMBERS)),
            lambda: setting("Device Vendor Name", random.choice(TEXTS + NAMES)),
            lambda: setting("Device Model Name", random.choice(TEXTS + NAMES)),
            lambda: setting("Depth", random.choice((ABSENT, 0, 1, 2, "0", False, 2**33))),
            lambda: attribute("state", random.choice(STATES)),
        ],
        "IOThunderboltPort": [
            lambda: setting("PCI Path", pciPath(random, paths)),
            lambda: setting("PCI Device", random.choice(DEVICES)),
            lambda: setting("Adapter Type", random.choice((1048834, 1048834.0, 1048833, "1048834", ABSENT, 1048834 + 2**32))),
        ],
        "IOPCIDevice": general + [lambda: setting("IOName", random.choice(TEXTS + ("pci-bridge", "pci-bridges", "PCI-bridge")))],
        "AppleAHCIPort": general + [lambda: attribute("location", random.choice(LOCATIONS))] * 3,
        "AppleRAIDMember": general + [
            lambda: setting("AppleRAID-MemberUUID", random.choice(TEXTS + tuple(uuids))),
            lambda: setting("AppleRAID-MemberStatus", random.choice(MEMBER_STATUS)),
        ] * 3,
        "IOMedia": general + [lambda: setting("IOBootDevice", bootDevices(random))] * 2,
    }
    raid = [
        lambda: setting("AppleRAID-SetUUID", random.choice(TEXTS + tuple(uuids))),
        lambda: setting("AppleRAID-MemberUUID", random.choice(TEXTS + tuple(uuids))),
        lambda: setting("AppleRAID-SetStatus", random.choice(STATUS)),
        lambda: setting("AppleRAID-SetStatus", random.choice(STATUS)),
        lambda: setting("AppleRAID-SetName", random.choice(TEXTS + NAMES)),
        lambda: setting("AppleRAID-LevelName", random.choice(("Mirror", "Stripe", "Concat", "LVG", "stripe", ABSENT, 0))),
        lambda: setting("AppleRAID-Members", memberList(random, uuids)),
        lambda: setting("AppleRAID-Members", memberList(random, uuids)),
    ]
    if name.startswith("AppleRAID") and name.endswith("Set"):
        choices = raid
    else:
        choices = special.get(name, general)
    return random.choice(choices if random.random() < 0.93 else rare)()


INTERESTING = ("IOThunderboltSwitchType2", "IOThunderboltPort", "IOPCIDevice", "AppleAHCIPort", "AppleRAIDMember", "IOMedia",
               "AppleRAIDMirrorSet", "AppleRAIDStripeSet", "AppleRAIDConcatSet", "IOAHCIDevice", "IOGUIDPartitionScheme",
               "IOMediaBSDClient", "IOPCI2PCIBridge")
