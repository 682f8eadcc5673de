"""A Thunderbolt enclosure: identity, bring-up and search for RAID sets."""

import model
import properties
import slots
from registry import release, retain

PCIE_UP = 0x100102
POLL_PORT, POLL_BRIDGE = 3, 4


class Device:
    def __init__(self, system, uid):
        self.system = system
        self.serial = system.nextSerial()
        self.uid = uid
        self.bridgePath = ""
        self.modelName = self.vendorName = "invalid"
        self.modelID = self.vendorID = 0
        self.status = -1
        self.bayCount = 0
        self.volumes = {}
        switch = system.registry.matching("IOThunderboltSwitch", "UID", uid)
        if switch is None:
            system.message(
                f"ThunderboltDevice::findRegistryEntry() - Thunderbolt device with UUID '0x{uid:016x}' was not found."
            )
            # The format has no conversion, so the number never shows.
            system.message("Cannot find IOThunderboltSwitch with UUID 0x016llx", "RAIDMonitor-ThunderboltDevice")
            return
        self._setBasicProperties(switch)
        self._waitForUpstreamPort(switch)

    def raidVolumes(self):
        return [self.volumes[uuid] for uuid in sorted(self.volumes)]

    def _setBasicProperties(self, switch):
        self.modelName = properties.string(switch, "Device Model Name")
        self.modelID = properties.uint64(switch, "Device Model ID")
        self.vendorName = properties.string(switch, "Device Vendor Name")
        self.vendorID = properties.uint64(switch, "Device Vendor ID")
        self.status = 0
        if self.vendorID == 3:
            self.bayCount = {1: 2, 2: 2, 6: 5}.get(self.modelID, self.bayCount)

    # --- bring-up; each stage owns the reference to the entry that it is given

    def event(self, kind, entry):
        {POLL_PORT: self._waitForUpstreamPort, POLL_BRIDGE: self._waitForPCIBridge}[kind](entry)

    def _waitForUpstreamPort(self, switch):
        self.system.debug(f"ThunderboltDevice - Trying to find upstream port for device '{self.uid:016x}'")
        port = self._upstreamPort(switch)
        if port is None:
            self.system.post(self, POLL_PORT, switch)
            return
        release(switch)
        self._waitForPCIBridge(port)

    def _upstreamPort(self, switch):
        children = self.system.registry.children(switch)
        if children is None:
            self.system.message("ThunderboltDevice::waitForUpstreamPort - could not create iterator for ports")
            return None
        for child in children:
            if properties.int32(child, "Adapter Type") != PCIE_UP:
                continue
            if child.property("PCI Path") is not None:
                return retain(child)
            self.system.debug("ThunderboltDevice::waitForUpstreamPort - PCI Path is not available yet. Waiting...")
        return None

    def _waitForPCIBridge(self, port):
        self.system.debug(f"ThunderboltDevice - Trying to find PCI Bridge for device '{self.uid:016x}'")
        bridge = self._bridge(port)
        if bridge is None:
            self.system.post(self, POLL_BRIDGE, port)
            return
        release(port)
        self._waitForDisks(bridge)

    def _bridge(self, port):
        system, registry = self.system, self.system.registry
        pciPath = properties.string(port, "PCI Path")
        if pciPath == "":
            system.message("ThunderboltDevice::waitForPCIBridge - can't read back the upstream port's PCI Path property")
            return None
        number = properties.int32(port, "PCI Device")
        if number < 0:
            system.message(
                "ThunderboltDevice::waitForPCIBridge - can't read back the upstream port's PCI Device property"
            )
            return None
        top = registry.fromPath(pciPath)
        if top is None:
            system.message("ThunderboltDevice:: Cannot create entry")
            return None
        path = self._pathOfFirstPCIDevice(top, number & 0xFF)
        release(top)
        system.printed(f"the Complete Path is {path}\n\n")
        bridge = registry.fromPath(path)
        if bridge is not None:
            self.bridgePath = path
            system.debug(f"The _pciBridgePath  path is  {path}", "Thunderbolt device")
        return bridge

    def _pathOfFirstPCIDevice(self, top, character):
        for entry in self.system.registry.walk(top):
            if not entry.conformsTo("IOPCIDevice"):
                continue
            path = self.system.registry.path(entry) or ""
            last = path[path.rfind("/"):].encode() if path else b""
            # The reference stays when the number's character is not in the last component.
            if character == 0 or character not in last:
                retain(entry)
            return path
        return ""

    def _waitForDisks(self, bridge):
        self.system.message("ThunderboltDevice::waitForDisks")
        if not self._diskBelow(bridge):
            # Nothing follows, and the bridge's reference stays.
            return
        release(bridge)
        for volume in self.system.volumesByAddress(self._findRAIDs()):
            self.volumes.setdefault(volume.uuid, volume)

    def _diskBelow(self, bridge):
        walk = self.system.registry.walk
        return any(
            inner.conformsTo("IOMediaBSDClient")
            for entry in walk(bridge)
            if entry.conformsTo("IOPartitionScheme")
            for inner in walk(entry)
        )

    # --- RAID sets

    def _findRAIDs(self):
        registry = self.system.registry
        # The bridge is kept.
        bridge = registry.fromPath(self.bridgePath)
        if bridge is None:
            self.system.message("ThunderboltDevice::findRAIDs - Cannot find back the PCI Bridge object")
            return []
        found = []
        for entry in registry.walk(bridge):
            if not entry.conformsTo("AppleRAIDSet"):
                continue
            uuid = properties.string(entry, model.SET_UUID)
            volume = self.volumes.get(uuid)
            if volume is None:
                volume = model.Volume(self, uuid)
            else:
                volume.refresh()
            if volume not in found:
                found.append(volume)
            if entry.conformsTo("AppleRAIDStripeSet") and self._spansControllers(entry):
                volume.state = model.CROSS_DEVICE
        return found

    def _spansControllers(self, entry):
        # The child is kept.
        media = self.system.registry.firstChild(entry)
        if media is None:
            return False
        names = []
        for device in properties.array(media, "IOBootDevice"):
            path = device.get("IOBootDevicePath") if isinstance(device, dict) else None
            if isinstance(path, str):
                names += [part for part in path.split("/") if part.startswith("pci1b")]
        return any(name != names[0] for name in names)

    def refresh(self):
        found = self.system.volumesByAddress(self._findRAIDs())
        for volume in found:
            self.volumes.setdefault(volume.uuid, volume)
        seen = {volume.uuid for volume in found}
        for uuid in [uuid for uuid in self.volumes if uuid not in seen]:
            del self.volumes[uuid]

    # --- slots

    def locationOfMember(self, member, infer):
        return slots.locationOfMember(self, member, infer)

    def locationOfNotMember(self, slot):
        return slots.locationOfNotMember(self, slot)
