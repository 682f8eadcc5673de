"""A made-up Mac with Thunderbolt enclosures, drawn as registry archives.

A `Machine` is changed freely between two drawings. Every entry has a key; the same key
keeps its entry ID from one drawing to the next, a new generation of a disk or enclosure
has new keys and so new IDs, and so has what was away for a while.
"""

import plistlib

import classes

MAC = "IOService:/AppleACPIPlatformExpert/PCI0@0/AppleACPIPCI/PEG1@1,1/IOPP/UPSB@0/IOPP"
RAID_CONTENT = "52414944-0000-11AA-AA11-00306543ECAC"
SET_CLASS = {"Mirror": "AppleRAIDMirrorSet", "Stripe": "AppleRAIDStripeSet", "Concat": "AppleRAIDConcatSet"}
# (bridges above the controllers, [(bridge of a controller or None, controller's name, port locations)])
TWO_BAY = (("3",), [(None, "pci1b21,612", ("0", "1"))])
FIVE_BAY = (("3", "0"), [(b, "pci1b4b,9182", ("0", "1")) for b in ("5", "7", "9")])


class Node:
    def __init__(self, key, className, name=None, location=None, state=30, **properties):
        self.key = key
        self.className = className
        self.name = name or className
        self.location = location
        self.state = state
        self.properties = properties
        self.children = []

    def add(self, *children):
        self.children += children
        return children[-1]

    def below(self, key, className, *arguments, **properties):
        return self.add(Node(key, className, *arguments, **properties))


class Disk:
    def __init__(self, generation, uuid=None, status="Online", label="Disk"):
        self.generation = generation
        self.uuid = uuid
        self.status = status
        self.label = label
        self.partitioned = True
        self.present = True
        self.extra = {}


class RaidSet:
    """`parents` are member UUIDs or identities of inner sets, in order of attachment."""

    def __init__(self, identity, uuid, level, name, members):
        self.identity = identity
        self.uuid = uuid
        self.level = level
        self.name = name
        self.status = "Online"
        self.memberStatus = "Online"
        self.listed = list(members)
        self.parents = list(members)
        self.outer = None
        self.media = True
        self.mediaGeneration = 0
        self.boot = None


class Enclosure:
    """`stage`: 0 absent, 1 switch, 2 PCI path, 3 its bridge, 4 controllers, 5 disks, 6 RAID."""

    def __init__(self, index, uid, modelID, layout, bays):
        self.index = index
        self.generation = 0
        self.uid = uid
        self.depth = 1
        self.vendorID = 3
        self.vendor = "Example Storage"
        self.modelID = modelID
        self.model = {1: "Two Bay", 2: "Two Bay", 6: "Five Bay"}.get(modelID, f"Model {modelID}")
        self.layout = layout
        self.stage = 6
        self.pciDevice = 0
        self.disks = {bay: None for bay in range(bays)}

    def key(self, *rest):
        return ("enclosure", self.index, self.generation, *rest)

    def root(self):
        return f"{MAC}/DSB{self.index + 1}@{self.index + 3}/IOPP/UPS0@0"


class Machine:
    def __init__(self):
        self.enclosures = []
        self.sets = []
        self.overlays = {}
        self.links = []
        self.ids = {}
        self.extras = 0
        self.inheritance = True
        self.nextID = 0x100000100
        self.reusesIDs = False
        # How an entry is printed below its later parents: "full", "bare" or "changed".
        self.repeats = "full"

    def identifier(self, key):
        if key not in self.ids:
            self.ids[key] = self.nextID
            self.nextID += 1
        return self.ids[key]

    # --- drawing

    def draw(self):
        root = Node("root", "IORegistryEntry", "Root", state=None)
        mac = root.below("mac", "IOPlatformExpertDevice", "MacPro6,1")
        expert = mac.below("expert", "AppleACPIPlatformExpert")
        expert.below("cpu", "IOACPIPlatformDevice", "CPU0", "0")
        pci = expert.below("pci", "IOACPIPlatformDevice", "PCI0", "0").below("acpi", "AppleACPIPCI")
        self._internalDisk(pci)
        top = pci.below("peg", "IOPCIDevice", "PEG1", "1,1", IOName="pci-bridge")
        hub = top.below("pegpp", "IOPCI2PCIBridge", "IOPP")
        hub = hub.below("upsb", "IOPCIDevice", "UPSB", "0", IOName="pci-bridge").below("upsbpp", "IOPCI2PCIBridge", "IOPP")
        controller = hub.below("dsb0", "IOPCIDevice", "DSB0", "0", IOName="pci-bridge")
        controller = controller.below("dsb0pp", "IOPCI2PCIBridge", "IOPP").below("nhi", "IOPCIDevice", "NHI0", "0")
        controller = controller.below("controller", "IOThunderboltController")
        port = controller.below("nhiport", "IOThunderboltPort", location="5", **{"Adapter Type": 2})
        hostSwitch = port.below("hostswitch", "IOThunderboltSwitchType2", UID=0x000A27001122AA00, Depth=0)
        members, sets = {}, {}
        for enclosure in self.enclosures:
            lane = hostSwitch.below(("lane", enclosure.index), "IOThunderboltPort", None, str(enclosure.index + 1))
            slot = hub.below(("dsb", enclosure.index), "IOPCIDevice", f"DSB{enclosure.index + 1}",
                             str(enclosure.index + 3), IOName="pci-bridge")
            slot = slot.below(("dsbpp", enclosure.index), "IOPCI2PCIBridge", "IOPP")
            if enclosure.stage >= 1:
                self._switch(enclosure, lane)
            if enclosure.stage >= 3:
                self._bridges(enclosure, slot, members)
        for raid in self.sets:
            self._set(raid, members, sets)
        mac.below("resources", "IOResources").below("appleraid", "AppleRAID")
        for number in range(self.extras):
            expert.below(("extra", number), "RootDomainUserClient", state=0)
        self._disturb(root)
        return root

    def _internalDisk(self, pci):
        sata = pci.below("sata", "IOPCIDevice", "SATA", "1F,2", IOName="pci8086,1c02")
        port = sata.below("ahci", "AppleAHCI").below("prt", "AppleAHCIPort", "PRT0", "0")
        media = port.below("ahcidev", "IOAHCIDevice", None, "0").below("ssd", "IOMedia", "INTERNAL SSD Media")
        media.below("ssdbsd", "IOMediaBSDClient")

    def _switch(self, enclosure, lane):
        key = enclosure.key
        port = lane.below(key("port"), "IOThunderboltPort", None, "1", **{"Adapter Type": 1})
        properties = {
            "UID": enclosure.uid,
            "Depth": enclosure.depth,
            "Device Vendor ID": enclosure.vendorID,
            "Device Vendor Name": enclosure.vendor,
            "Device Model ID": enclosure.modelID,
            "Device Model Name": enclosure.model,
        }
        switch = port.below(key("switch"), "IOThunderboltSwitchType2", **properties)
        switch.below(key("down"), "IOThunderboltPort", None, "7", **{"Adapter Type": 1048833, "PCI Path": MAC})
        up = switch.below(key("up"), "IOThunderboltPort", None, "A", **{"Adapter Type": 1048834})
        if enclosure.stage >= 2:
            up.properties.update({"PCI Path": enclosure.root(), "PCI Device": enclosure.pciDevice})
        up.below(key("adapter"), "AppleThunderboltPCIUpAdapter")

    def _bridges(self, enclosure, slot, members):
        key = enclosure.key
        hub = slot.below(key("ups"), "IOPCIDevice", "UPS0", "0", IOName="pci-bridge")
        hub = hub.below(key("upspp"), "IOPCI2PCIBridge", "IOPP")
        if enclosure.stage < 4:
            return
        above, controllers = enclosure.layout
        for number, location in enumerate(above):
            hub = bridge(hub, key("bridge", number), location)
        bay = 0
        for number, (location, name, ports) in enumerate(controllers):
            place = hub if location is None else bridge(hub, key("branch", number), location)
            function = place.below(key("function", number), "IOPCIDevice", name, "0", IOName=name)
            ahci = function.below(key("ahci", number), "AppleAHCI")
            for index, location in enumerate(ports):
                port = ahci.below(key("prt", bay), "AppleAHCIPort", f"PRT{index}", location)
                disk = enclosure.disks.get(bay)
                if enclosure.stage >= 5 and disk and disk.present:
                    self._disk(enclosure, disk, bay, port, members)
                bay += 1

    def _disk(self, enclosure, disk, bay, port, members):
        def key(name):
            return enclosure.key("disk", bay, disk.generation, name)

        node = port.below(key("device"), "IOAHCIDevice", None, "0").below(key("driver"), "AppleAHCIDiskDriver")
        node = node.below(key("storage"), "IOAHCIBlockStorageDevice").below(key("block"), "IOBlockStorageDriver")
        media = node.below(key("media"), "IOMedia", f"{disk.label} Media", Whole=True)
        media.below(key("bsd"), "IOMediaBSDClient")
        if not disk.partitioned:
            return
        scheme = media.below(key("scheme"), "IOGUIDPartitionScheme", state=0)
        partition = scheme.below(key("partition"), "IOMedia", "Untitled 2", "2", Content=RAID_CONTENT)
        partition.below(key("partitionbsd"), "IOMediaBSDClient")
        if enclosure.stage >= 6 and disk.uuid is not None:
            properties = {"AppleRAID-MemberUUID": disk.uuid, "AppleRAID-MemberStatus": disk.status, **disk.extra}
            member = partition.below(key("member"), "AppleRAIDMember", state=0, **properties)
            members.setdefault(disk.uuid, []).append(member)

    def _set(self, raid, members, sets):
        above = [m for parent in raid.parents for m in members.get(parent, []) + sets.get(parent, [])]
        if not above:
            return
        properties = {
            "AppleRAID-SetUUID": raid.outer or raid.uuid,
            "AppleRAID-MemberUUID": raid.uuid,
            "AppleRAID-SetName": raid.name,
            "AppleRAID-SetStatus": raid.status,
            "AppleRAID-MemberStatus": raid.memberStatus,
            "AppleRAID-LevelName": raid.level,
            "AppleRAID-Members": list(raid.listed),
        }
        node = Node(("set", raid.identity), SET_CLASS[raid.level], **properties)
        sets[raid.identity] = [node]
        if raid.media:
            key = ("setmedia", raid.identity, raid.mediaGeneration)
            media = node.below(key, "IOMedia", raid.name, "0", Whole=True, RAID=True, UUID=raid.uuid)
            if raid.boot is not None:
                media.properties["IOBootDevice"] = [{"IOBootDevicePath": path} for path in raid.boot]
            media.below(key + ("bsd",), "IOMediaBSDClient")
        for parent in above:
            if node not in parent.children:
                parent.children.append(node)

    def _disturb(self, root):
        nodes = {}
        collect(root, nodes)
        for key, change in self.overlays.items():
            if key in nodes:
                change(nodes[key])
        for parent, child in self.links:
            if parent in nodes and child in nodes and not reaches(nodes[child], nodes[parent]):
                if nodes[child] not in nodes[parent].children:
                    nodes[parent].children.append(nodes[child])

    # --- output

    def plist(self, node, printed):
        again = node.key in printed and self.repeats != "full"
        printed.add(node.key)
        result = {} if again and self.repeats == "bare" else dict(node.properties)
        if again and self.repeats == "changed":
            result = {key: value for key, value in result.items() if not isinstance(value, str)}
        result["IORegistryEntryID"] = self.identifier(node.key)
        result["IORegistryEntryName"] = node.name
        result["IOObjectClass"] = node.className
        if self.inheritance:
            above = classes.PARENTS.get(node.className)
            if above is None:
                above = () if node.className == "IORegistryEntry" else classes.SERVICE
            result["IOObjectInheritance"] = list(above) + [node.className]
        if node.location is not None:
            result["IORegistryEntryLocation"] = node.location
        if node.state is not None:
            result["IOServiceState"] = node.state
        if node.children and not (again and self.repeats == "bare"):
            result["IORegistryEntryChildren"] = [self.plist(child, printed) for child in node.children]
        return result

    def write(self, path, binary=True):
        root = self.draw()
        nodes = {}
        collect(root, nodes)
        if not self.reusesIDs:
            self.ids = {key: number for key, number in self.ids.items() if key in nodes}
        form = plistlib.FMT_BINARY if binary else plistlib.FMT_XML
        with open(path, "wb") as file:
            plistlib.dump(self.plist(root, set()), file, fmt=form)


def bridge(parent, key, location):
    node = parent.below(key, "IOPCIDevice", "pci-bridge", location, IOName="pci-bridge")
    return node.below(key + ("pp",), "IOPCI2PCIBridge", "IOPP")


def collect(node, nodes):
    if node.key not in nodes:
        nodes[node.key] = node
        for child in node.children:
            collect(child, nodes)


def reaches(node, target):
    return node is target or any(reaches(child, target) for child in node.children)
