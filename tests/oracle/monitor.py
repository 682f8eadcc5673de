"""The monitor: hosts, announced volumes and the periodic comparison."""

from device import Device
from model import CROSS_DEVICE, DEGRADED, OFFLINE

NEW_ERROR = " RAIDMonitor::refresh() - New error detected on RAID."


class Monitor:
    """`client` has raidAppeared, raidDisappeared and raidUpdated."""

    def __init__(self, system, client):
        self.system = system
        self.client = client
        self.hosts = []
        self.volumes = {}

    def deviceAppeared(self, uid):
        host = Device(self.system, uid)
        self.hosts.append(host)
        for volume in host.raidVolumes():
            if volume.uuid not in self.volumes:
                self._announce(volume)

    def deviceDisappeared(self, uid):
        for host in self.system.byAddress(self.hosts):
            if host.uid == uid:
                break
        else:
            return
        for volume in host.raidVolumes():
            if volume.uuid in self.volumes:
                self._withdraw(volume)
        self.hosts.remove(host)
        self.system.drop(host)

    def _announce(self, volume):
        self.volumes[volume.uuid] = volume
        self.client.raidAppeared(volume)

    def _withdraw(self, volume):
        self.client.raidDisappeared(volume)
        self.volumes.pop(volume.uuid, None)

    def refresh(self):
        seen, updated = {}, {}
        self.system.addressesMatter |= len(self.hosts) > 1
        for host in self.system.byAddress(self.hosts):
            self._refreshHost(host, seen, updated)
        for uuid in sorted(updated):
            self.client.raidUpdated(updated[uuid])
        gone = [self.volumes[uuid] for uuid in sorted(self.volumes) if uuid not in seen]
        for volume in gone:
            self._withdraw(volume)

    def _refreshHost(self, host, seen, updated):
        before = host.raidVolumes()
        oldStates = {volume.uuid: volume.state for volume in before}
        oldMembers = memberStates(before)
        host.refresh()
        after = host.raidVolumes()
        newMembers = memberStates(after)
        for volume in after:
            if volume.uuid in self.volumes:
                old = oldStates.get(volume.uuid, 0)
                if old != volume.state:
                    updated[volume.uuid] = volume
                    # Told now and once more at the end of the cycle.
                    self.client.raidUpdated(volume)
                elif old in (DEGRADED, OFFLINE):
                    self._compareMembers(volume, oldMembers, newMembers, updated)
            else:
                self._announce(volume)
            if volume.uuid in seen:
                volume.state = CROSS_DEVICE
                updated[volume.uuid] = volume
            else:
                seen[volume.uuid] = volume

    def _compareMembers(self, volume, old, new, updated):
        for uuid in sorted(new):
            if uuid in old and old[uuid] != new[uuid]:
                self.system.log("info", "Quovex Raid Monitor", NEW_ERROR)
                updated[volume.uuid] = volume


def memberStates(volumes):
    return {member.uuid: member.state for volume in volumes for member in volume.members()}
