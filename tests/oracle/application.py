"""Virtual time, discovery and the three answers in JSON."""

import json
import random

import properties
from monitor import Monitor
from registry import Registry, release

PERIOD, DELAY = 2000, 100
LEVELS = {0: "stripe", 1: "mirror", 2: "concat", -1: "unknown"}
VOLUME_STATES = {
    -2: "cross-device",
    -1: "unknown",
    0: "failed",
    1: "terminating",
    2: "initializing",
    3: "online",
    4: "degraded",
    5: "offline",
}
MEMBER_STATES = {-2: "not-found", -1: "unknown", 0: "offline", 1: "standby", 2: "online", 3: "failed"}


def hexadecimal(number):
    return f"0x{number:016x}"


class System:
    """What the library asks of its surroundings: registry, log, posting, the order of addresses."""

    def __init__(self, application, addresses):
        self.application = application
        self.registry = Registry()
        self.queue = []
        self.serials = 0
        self.addresses = addresses
        self.addressesMatter = False

    def nextSerial(self):
        self.serials += 1
        return self.serials

    def byAddress(self, objects):
        """Order of addresses: 0 as created, 1 reversed, above that a shuffle with that number."""
        if len(objects) < 2 or self.addresses == 0:
            return sorted(objects, key=lambda o: o.serial)
        if self.addresses == 1:
            return sorted(objects, key=lambda o: -o.serial)
        return sorted(objects, key=lambda o: random.Random(f"{self.addresses}/{o.serial}").random())

    def volumesByAddress(self, found):
        first = {}
        for volume in found:
            if first.setdefault(volume.uuid, volume.shown()) != volume.shown():
                self.addressesMatter = True
        return self.byAddress(found)

    def log(self, level, category, text):
        self.application.logged(level, category, text)

    def message(self, text, category="RAIDMonitor"):
        self.log("message", category, text)

    def debug(self, text, category="RAIDMonitor"):
        self.log("debug", category, text)

    def printed(self, text):
        self.application.errors.append(text)

    def post(self, target, kind, entry):
        self.queue.append((self.application.now + DELAY, target, kind, entry))

    def drop(self, target):
        """The target's queued events die with it and give their entries back."""
        for event in self.queue:
            if event[1] is target:
                release(event[3])
        self.queue = [event for event in self.queue if event[1] is not target]


class Application:
    def __init__(self, contents, log=False, handles=False, addresses=0):
        self.contents = contents
        self.withLog, self.withHandles = log, handles
        self.now = 0
        self.lines, self.errors = [], []
        self.devices = []
        self.lastDevice = {}
        self.system = System(self, addresses)
        self.monitor = Monitor(self.system, self)

    # --- time

    def run(self, until=None):
        last = self.contents[-1][0]
        end = (last + PERIOD - 1) // PERIOD * PERIOD + PERIOD if until is None else until
        contents = list(self.contents)
        timer = PERIOD
        while True:
            due = [timer] + [time for time, _ in contents[:1]] + [event[0] for event in self.system.queue[:1]]
            if min(due) > end:
                break
            self.now = min(due)
            if contents and contents[0][0] == self.now:
                self.system.registry.apply(contents.pop(0)[1])
                self._discover()
            while self.system.queue and self.system.queue[0][0] <= self.now:
                _, target, kind, entry = self.system.queue.pop(0)
                target.event(kind, entry)
            if timer == self.now:
                timer += PERIOD
                self.monitor.refresh()
        if self.withHandles:
            self._print("handles", kept=self._kept(), objects=0, values=0)

    def _discover(self):
        present = sorted({uid for uid in map(deviceUID, self.system.registry.entries.values()) if uid is not None})
        before = self.devices
        self.devices = present
        for uid in [uid for uid in before if uid not in present]:
            self._print("device-disappeared", device={"uid": hexadecimal(uid)})
            self.monitor.deviceDisappeared(uid)
        for uid in [uid for uid in present if uid not in before]:
            self._print("device-appeared", device={"uid": hexadecimal(uid)})
            self.monitor.deviceAppeared(uid)

    # --- lines

    def _print(self, event, **more):
        self.lines.append(json.dumps({"time": self.now, "event": event, **more}, ensure_ascii=False))

    def logged(self, level, category, text):
        if self.withLog:
            self._print("log", level=level, category=category, text=text)

    def _kept(self):
        return [{"id": hexadecimal(e.identifier), "references": e.references} for e in self.system.registry.kept()]

    def raidAppeared(self, volume):
        self._present("raid-appeared", volume)

    def raidUpdated(self, volume):
        self._present("raid-updated", volume)

    def _present(self, event, volume):
        self.lastDevice[volume.uuid] = hexadecimal(volume.host.uid)
        self._print(event, volume=volumeObject(volume))

    def raidDisappeared(self, volume):
        # The host may be gone already, so what was last said about this set is repeated.
        device = self.lastDevice[volume.uuid]
        self._print("raid-disappeared", volume=volumeObject(volume, device=device, slots=False))

    # --- answers about the end of a run

    def _hosts(self):
        return sorted(self.monitor.hosts, key=lambda host: host.uid)

    def listing(self):
        hosts = [dict(deviceObject(h), volumes=[volumeObject(v) for v in h.raidVolumes()]) for h in self._hosts()]
        return json.dumps({"devices": hosts}, ensure_ascii=False)

    def slots(self):
        hosts = []
        for host in self._hosts():
            members = [slotObject(host, v, m) for v in host.raidVolumes() for m in v.members()]
            bays = [{"bay": bay, "answer": host.locationOfNotMember(bay)} for bay in range(1, 7)]
            hosts.append(dict(deviceObject(host), members=members, bays=bays))
        return json.dumps({"devices": hosts}, ensure_ascii=False)


def deviceUID(entry):
    """The UID of an entry that discovery reports, or None."""
    uid = properties.wholeNumber(entry.property("UID"))
    if uid is None or not entry.conformsTo("IOThunderboltSwitch"):
        return None
    if properties.wholeNumber(entry.property("Depth")) == 0:
        return None
    return uid & 0xFFFFFFFFFFFFFFFF


def slotObject(host, volume, member):
    slot = host.locationOfMember(member, False)
    return {"uuid": member.uuid, "volume": volume.uuid, "slot": slot, "inferred": host.locationOfMember(member, True)}


def deviceObject(host):
    return {
        "uid": hexadecimal(host.uid),
        "vendor": host.vendorName,
        "vendor_id": host.vendorID,
        "model": host.modelName,
        "model_id": host.modelID,
        "status": host.status,
        "bay_count": host.bayCount,
        "bridge": host.bridgePath,
    }


def memberObject(volume, member, slots):
    result = {"uuid": member.uuid, "state": MEMBER_STATES[member.state], "path": member.path}
    if slots:
        result["slot"] = volume.host.locationOfMember(member, True)
    return result


def volumeObject(volume, device=None, slots=True):
    return {
        "uuid": volume.uuid,
        "name": volume.name,
        "level": LEVELS[volume.level],
        "state": VOLUME_STATES[volume.state],
        "device": device or hexadecimal(volume.host.uid),
        "members": [memberObject(volume, member, slots) for member in volume.members()],
    }
