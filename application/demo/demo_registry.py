"""The desk of the demo recording: a Mac, a five-bay and a two-bay enclosure, as registry entries.

The Mac runs a system whose ioreg prints no class chains, which also keeps the files small.
"""

import re

MAC_PCI = "IOService:/AppleACPIPlatformExpert/PCI0@0/AppleACPIPCI/PEG1@1,1/IOPP/UPSB@0/IOPP"
EFI_PARTITION = "C12A7328-F81F-11D2-BA4B-00A0C93EC93B"
HFS_PARTITION = "48465300-0000-11AA-AA11-00306543ECAC"
RAID_PARTITION = "52414944-0000-11AA-AA11-00306543ECAC"
PCIE_DOWN, PCIE_UP = 0x100101, 0x100102
LANE, NATIVE_HOST, DISPLAY_IN, DISPLAY_OUT = 1, 2, 0x0E0101, 0x0E0102

UNREGISTERED = re.compile("IOGUIDPartitionScheme|AppleRAIDMember|.*UserClient")


class Entry:
    """`key` tells the entry from all others, over all times."""

    def __init__(self, key, className, name=None, location=None, **properties):
        self.key = key
        self.className = className
        self.name = name or className
        self.location = location
        self.properties = properties
        self.children = []

    def add(self, key, className, name=None, location=None, **properties):
        child = Entry(f"{self.key}/{key}", className, name, location, **properties)
        self.children.append(child)
        return child

    def dictionary(self, identifiers):
        result = {
            **self.properties,
            "IOObjectClass": self.className,
            "IORegistryEntryID": identifiers.setdefault(self.key, 0x100000100 + len(identifiers)),
            "IORegistryEntryName": self.name,
        }
        if self.className != "IORegistryEntry":
            result["IOServiceState"] = 0 if UNREGISTERED.fullmatch(self.className) else 30
        if self.location is not None:
            result["IORegistryEntryLocation"] = self.location
        if self.children:
            result["IORegistryEntryChildren"] = [child.dictionary(identifiers) for child in self.children]
        return result


# --- the Mac


def pciDevice(parent, name, location, ioName, **properties):
    return parent.add(name + location, "IOPCIDevice", name, location, IOName=ioName, **properties)


def pciBridge(parent, name, location, **properties):
    device = pciDevice(parent, name, location, "pci-bridge", **properties)
    return device.add("bridge", "IOPCI2PCIBridge", "IOPP")


def port(parent, number, adapterType, **properties):
    return parent.add(f"port{number}", "IOThunderboltPort", location=f"{number:X}",
                      **{"Adapter Type": adapterType, "Port Number": number}, **properties)


class Mac:
    """`lanes` and `slots` are where enclosures are plugged in, by number from 1."""

    def __init__(self, userClients):
        self.root = Entry("root", "IORegistryEntry", "Root", IOKitBuildVersion="Darwin Kernel Version 15.0.0")
        model = self.root.add("mac", "IOPlatformExpertDevice", "MacPro6,1", IOPlatformSerialNumber="C02EXAMPLE00")
        expert = model.add("expert", "AppleACPIPlatformExpert")
        expert.add("cpu", "IOACPIPlatformDevice", "CPU0", "0").add("cpu", "AppleACPICPU")
        domain = expert.add("power", "IOPMrootDomain")
        for number in userClients:
            domain.add(f"client{number}", "RootDomainUserClient")
        pci = expert.add("pci", "IOACPIPlatformDevice", "PCI0", "0").add("bridge", "AppleACPIPCI")
        pciDevice(pci, "XHC1", "14", "pci8086,1e31").add("usb", "AppleUSBXHCI")
        self._internalDisk(pciDevice(pci, "SATA", "1F,2", "pci8086,1d02"))
        hub = pciBridge(pciBridge(pci, "PEG1", "1,1"), "UPSB", "0")
        host = pciDevice(pciBridge(hub, "DSB0", "0"), "NHI0", "0", "pci8086,156c")
        self.slots = {n: pciBridge(hub, f"DSB{n}", str(n + 2)) for n in (1, 2)}
        self.lanes = self._thunderbolt(host)
        resources = model.add("resources", "IOResources")
        for name in ("AppleRAID", "IODisplayWrangler"):
            resources.add(name, name)

    @staticmethod
    def _thunderbolt(host):
        nhi = host.add("hal", "AppleThunderboltHAL").add("nhi", "AppleThunderboltNHIType2")
        controller = nhi.add("controller", "IOThunderboltController")
        switch = port(controller, 5, NATIVE_HOST).add(
            "switch", "IOThunderboltSwitchType2", UID=0x0001000B0C2A5D00, Depth=0, **{"Device Vendor ID": 1})
        lanes = {n: port(switch, n, LANE, **{"Socket ID": str(n)}) for n in (1, 2)}
        for number in (1, 2):
            down = port(switch, number + 5, PCIE_DOWN, **{"PCI Path": f"{MAC_PCI}/DSB{number}@{number + 2}", "PCI Device": number + 2})
            down.add("adapter", "AppleThunderboltPCIDownAdapter")
        port(switch, 11, DISPLAY_IN)
        return lanes

    @staticmethod
    def _internalDisk(function):
        ahci = function.add("ahci", "AppleIntelPchSeriesAHCI")
        socket = ahci.add("port", "AppleIntelPchSeriesAHCIPort", "PRT0", "0")
        disk(socket, "ssd", "INTERNAL SSD SM0512F", "disk0", 500107862016, [("Macintosh HD", HFS_PARTITION)])


# --- disks


def disk(socket, key, model, bsdName, size, partitions):
    """The chain of one disk; returns the media of its partitions."""
    device = socket.add(key, "IOAHCIDevice", location="0")
    storage = device.add("driver", "AppleAHCIDiskDriver").add(
        "storage", "IOAHCIBlockStorageDevice")
    driver = storage.add("block", "IOBlockStorageDriver")
    whole = media(driver, "media", f"{model} Media", None, bsdName, size, "GUID_partition_scheme", True)
    scheme = whole.add("scheme", "IOGUIDPartitionScheme")
    return [
        media(scheme, f"part{number}", name, str(number), f"{bsdName}s{number}", size // 2, content, False)
        for number, (name, content) in enumerate(partitions, start=1)
    ]


def media(parent, key, name, location, bsdName, size, content, whole, **properties):
    result = parent.add(key, "IOMedia", name, location, Whole=whole, Size=size, Content=content, **{"BSD Name": bsdName}, **properties)
    result.add("bsd", "IOMediaBSDClient")
    return result


class Disk:
    def __init__(self, number, model, memberUUID, setUUID):
        self.number = number
        self.model = model
        self.memberUUID = memberUUID
        self.setUUID = setUUID
        self.status = "Online"
        self.progress = None
        self.present = True
        self.insertions = 1

    def plugInto(self, socket, withMember):
        """Adds the disk below its port; returns its RAID member, if that is there yet."""
        partitions = [("EFI System Partition", EFI_PARTITION), ("Untitled 2", RAID_PARTITION)]
        key = f"disk{self.number}.{self.insertions}"
        raid = disk(socket, key, self.model, f"disk{self.number}", 4000787030016, partitions)[1]
        if not withMember:
            return None
        properties = {
            "AppleRAID-MemberUUID": self.memberUUID,
            "AppleRAID-MemberStatus": self.status,
            "AppleRAID-SetUUID": self.setUUID,
        }
        if self.progress is not None:
            properties["AppleRAID-Rebuild-Progress"] = self.progress
        return raid.add("member", "AppleRAIDMember", **properties)


class RaidSet:
    def __init__(self, uuid, name, level, disks, bsdName):
        self.uuid = uuid
        self.name = name
        self.level = level
        self.disks = disks
        self.bsdName = bsdName
        self.status = "Online"
        self.starts = 1

    def attachTo(self, members):
        """Hangs the set below every member that is there."""
        key = f"set/{self.uuid}"
        result = Entry(key, f"AppleRAID{self.level}Set", **{
            "AppleRAID-SetUUID": self.uuid,
            "AppleRAID-MemberUUID": self.uuid,
            "AppleRAID-SetName": self.name,
            "AppleRAID-SetStatus": self.status,
            "AppleRAID-LevelName": self.level,
            "AppleRAID-Members": [disk.memberUUID for disk in self.disks],
            "AppleRAID-ContentHint": "Apple_HFS",
        })
        if self.status != "Offline":
            media(result, f"media{self.starts}", self.name, "0", self.bsdName, 8001566015488, "Apple_HFS", True, RAID=True, IOBootDevice=[])
        for member in members:
            member.children.append(result)


# --- enclosures


class Enclosure:
    """`stage` counts what has come up: 1 switch, 2 PCI path, 3 bridge, 4 controllers, 5 disks, 6 members and sets."""

    def __init__(self, slot, uid, model, modelID, branches, disks, sets):
        self.slot = slot
        self.uid = uid
        self.model = model
        self.modelID = modelID
        self.branches = branches
        self.disks = disks
        self.sets = sets
        self.stage = 6

    def plugInto(self, mac):
        if self.stage >= 1:
            self._addSwitch(mac.lanes[self.slot])
        if self.stage >= 3:
            bridge = pciBridge(mac.slots[self.slot], "UPS0", "0", IOPCITunnelled=True)
            if self.stage >= 4:
                self._addControllers(bridge)

    def _addSwitch(self, lane):
        switch = port(lane, 1, LANE).add("switch", "IOThunderboltSwitchType2", UID=self.uid, Depth=1, **{
            "Device Vendor ID": 3,
            "Device Vendor Name": "Example Storage",
            "Device Model ID": self.modelID,
            "Device Model Name": self.model,
            "Route String": self.slot,
        })
        port(switch, 2, LANE)
        port(switch, 7, PCIE_DOWN)
        up = port(switch, 10, PCIE_UP)
        if self.stage >= 2:
            path = f"{MAC_PCI}/DSB{self.slot}@{self.slot + 2}/IOPP/UPS0@0"
            up.properties.update({"PCI Path": path, "PCI Device": 0, "PCI Function": 0})
        up.add("adapter", "AppleThunderboltPCIUpAdapter")
        port(switch, 11, DISPLAY_OUT)

    def _addControllers(self, bridge):
        inner = pciBridge(bridge, "pci-bridge", "3", IOPCITunnelled=True)
        members = {}
        bays = iter(self.disks)
        if len(self.branches) > 1:
            inner = pciBridge(inner, "pci-bridge", "0", IOPCITunnelled=True)
        for location, chip, ports in self.branches:
            place = inner if location is None else pciBridge(inner, "pci-bridge", location, IOPCITunnelled=True)
            ahci = pciDevice(place, chip, "0", chip, IOPCITunnelled=True).add("ahci", "AppleAHCI")
            for number in range(ports):
                socket = ahci.add(f"port{number}", "AppleAHCIPort", f"PRT{number}", str(number))
                self._fill(socket, next(bays), members)
        for raid in self.sets:
            raid.attachTo([members[disk] for disk in raid.disks if disk in members])

    def _fill(self, socket, disk, members):
        if disk is not None and disk.present and self.stage >= 5:
            member = disk.plugInto(socket, self.stage >= 6)
            if member is not None:
                members[disk] = member
