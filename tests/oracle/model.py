"""RAID volumes and their members, read from the registry beneath a host's bridge."""

import properties
from registry import release, retain

CROSS_DEVICE, FAILED, INITIALIZING, DEGRADED, OFFLINE = -2, 0, 2, 4, 5
VOLUME_STATUS = {"Failed": 0, "Terminating": 1, "Initializing": 2, "Online": 3, "Degraded": 4, "Offline": 5}
LEVEL_NAME = {"Stripe": 0, "Mirror": 1, "Concat": 2}
LEVEL_UNKNOWN = -1

MEMBER_NOT_FOUND, MEMBER_UNKNOWN = -2, -1
MEMBER_STATUS = {"Offline": 0, "Standby": 1, "Online": 2, "Failed": 3}

SET_UUID, MEMBER_UUID = "AppleRAID-SetUUID", "AppleRAID-MemberUUID"


class Member:
    def __init__(self, volume, uuid):
        self.volume = volume
        self.system = volume.system
        self.uuid = uuid
        self.state = MEMBER_UNKNOWN
        self.path = ""
        entry = self._findRegistryEntry()
        if entry is None:
            self.system.message("AppleRAIDMember::AppleRAIDMember - Cannot find registry entry for AppleRAID member")
            self.state = MEMBER_NOT_FOUND
            return
        self._readProperties(entry)
        release(entry)

    def refresh(self):
        entry = self._entryFromUUID()
        if entry is None:
            self.system.debug("AppleRAIDMember::refresh - Cannot find registry entry for AppleRAID member")
            self.state = MEMBER_NOT_FOUND
            return
        self._readProperties(entry)
        release(entry)

    def _findRegistryEntry(self):
        registry = self.system.registry
        bridge = registry.fromPath(self.volume.host.bridgePath)
        if bridge is None:
            self.system.message("AppleRAIDMember::findRegistryEntry - couldn't find PCI Bridge registry entry")
            return None
        found = self._search(bridge, setsToo=True)
        release(bridge)
        return found

    def _entryFromUUID(self):
        # The bridge is kept: every refresh of a member leaves one reference behind.
        bridge = self.system.registry.fromPath(self.volume.host.bridgePath)
        if bridge is None:
            self.system.message("AppleRAIDMember::entryFromUUID - Cannot find back the PCI Bridge object")
            return None
        return self._search(bridge, setsToo=False)

    def _search(self, bridge, setsToo):
        for entry in self.system.registry.walk(bridge):
            if not entry.conformsTo("AppleRAIDMember"):
                continue
            if not setsToo and entry.conformsTo("AppleRAIDSet"):
                continue
            if properties.string(entry, MEMBER_UUID) == self.uuid:
                return retain(entry)
        return None

    def _readProperties(self, entry):
        status = properties.string(entry, "AppleRAID-MemberStatus")
        self.state = MEMBER_STATUS.get(status, self.state)
        path = self.system.registry.path(entry)
        if path is not None:
            self.path = path
            return
        self.system.message(
            "AppleRAIDMember::readProperties - Unable to found AppleRAID-MemberStatus IORegustry entry path"
        )
        self.path = ""
        for ancestor in self.system.registry.walk(entry, upward=True):
            if ancestor.conformsTo("AppleAHCIPort"):
                self.path = (self.system.registry.path(ancestor) or "") + (ancestor.location() or "")
                return


class Volume:
    def __init__(self, host, uuid):
        self.host = host
        self.system = host.system
        self.serial = self.system.nextSerial()
        self.uuid = uuid
        self.name = ""
        self.level = LEVEL_UNKNOWN
        self.state = INITIALIZING
        self.membersByUUID = {}
        self.refresh()

    def members(self):
        return [self.membersByUUID[uuid] for uuid in sorted(self.membersByUUID)]

    def shown(self):
        members = [(member.uuid, member.state, member.path) for member in self.members()]
        return self.name, self.level, self.state, members

    def refresh(self):
        entry = self._entryFromUUID()
        if entry is None:
            self.system.message(f"RAIDVolume::refresh - Couldn't find the RAID Set entry for UUID '{self.uuid}'")
            self.state = FAILED
            return
        self._readProperties(entry)
        found = self._findMembers(entry)
        release(entry)
        seen = set()
        for member in found:
            self.membersByUUID.setdefault(member.uuid, member)
            seen.add(member.uuid)
        for uuid in [uuid for uuid in self.membersByUUID if uuid not in seen]:
            del self.membersByUUID[uuid]

    def _entryFromUUID(self):
        # The bridge is kept here as well.
        registry = self.system.registry
        bridge = registry.fromPath(self.host.bridgePath)
        if bridge is None:
            self.system.message("RAIDVolume::EntryFromUUID - Cannot find back the PCI Bridge object")
            return None
        for entry in registry.walk(bridge):
            if entry.conformsTo("AppleRAIDSet") and properties.string(entry, SET_UUID) == self.uuid:
                return retain(entry)
        return None

    def _readProperties(self, entry):
        self.uuid = properties.string(entry, SET_UUID)
        self.name = properties.string(entry, "AppleRAID-SetName")
        self.state = VOLUME_STATUS.get(properties.string(entry, "AppleRAID-SetStatus"), self.state)
        self.level = LEVEL_NAME.get(properties.string(entry, "AppleRAID-LevelName"), self.level)

    def _findMembers(self, entry):
        listed = entry.property("AppleRAID-Members")
        if not isinstance(listed, list):
            self.system.message("RAIDVolume::findMembers - cannot get set members")
            return []
        result = []
        for element in listed:
            uuid = properties.text(element)
            member = self.membersByUUID.get(uuid)
            if member is None:
                member = Member(self, uuid)
                if member.state >= 0 and not member.path.startswith(self.host.bridgePath):
                    self.state = CROSS_DEVICE
            else:
                member.refresh()
            result.append(member)
        return result
