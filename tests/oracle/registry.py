"""The registry: entries, handles, walks, paths and matching.

A handle is the entry object itself. `references` counts what a program holds on it;
an entry that has left the registry is dead but its references stay on the books.
"""

import re

PLANE = "IOService:"
LONGEST_PATH = 509
LOCATION = re.compile(r"[0-9A-Fa-f]+(?:[,:][0-9A-Fa-f]+)*\Z")


class Entry:
    def __init__(self, identifier, serial):
        self.identifier = identifier
        self.serial = serial
        self.references = 0
        self.alive = True
        self.record = None
        self.children = []
        self.parents = []

    def conformsTo(self, className):
        if not self.alive:
            return False
        return className in self.record.chain or self.record.properties.get("IOClassNameOverride") == className

    def property(self, key):
        return self.record.properties.get(key) if self.alive else None

    def location(self):
        return (self.record.location or None) if self.alive else None


def retain(entry):
    if entry is not None:
        entry.references += 1
    return entry


def release(entry):
    if entry is not None and entry.references > 0:
        entry.references -= 1


class Registry:
    def __init__(self):
        self.entries = {}
        self.everything = []
        self.root = None

    def apply(self, content):
        """Makes the registry exactly what an archive shows; an ID that stays keeps its handles."""
        for identifier in [i for i in self.entries if i not in content.records]:
            gone = self.entries.pop(identifier)
            gone.alive = False
            gone.children, gone.parents = [], []
        for identifier, record in content.records.items():
            if identifier not in self.entries:
                entry = Entry(identifier, len(self.everything))
                self.entries[identifier] = entry
                self.everything.append(entry)
            self.entries[identifier].record = record
        for identifier, record in content.records.items():
            entry = self.entries[identifier]
            entry.children = [self.entries[i] for i in record.children]
            entry.parents = [self.entries[i] for i in record.parents]
        self.root = self.entries[content.root]

    def kept(self):
        held = [entry for entry in self.everything if entry.references > 0]
        return sorted(held, key=lambda entry: (entry.identifier, entry.serial))

    # --- walks: every encounter is reported, a subtree is entered at its first encounter only

    def walk(self, start, upward=False):
        """Unreferenced entries in the order of an iterator; None when it cannot be made."""
        if start is None or not start.alive:
            return None
        return self._steps(start, upward, set())

    def _steps(self, entry, upward, done):
        for near in entry.parents if upward else entry.children:
            fresh = near not in done
            done.add(near)
            yield near
            if fresh:
                yield from self._steps(near, upward, done)

    def children(self, entry):
        return list(entry.children) if entry is not None and entry.alive else None

    def firstChild(self, entry):
        if entry is None or not entry.alive or not entry.children:
            return None
        return retain(entry.children[0])

    def firstParent(self, entry):
        if entry is None or not entry.alive or not entry.parents:
            return None
        return retain(entry.parents[0])

    # --- paths

    def path(self, entry):
        """The path through first parents, or None when there is none or it is too long."""
        if entry is None or not entry.alive or not entry.parents:
            return None
        parts = []
        while entry is not self.root.children[0]:
            if not entry.parents:
                return None
            parts.append(component(entry))
            entry = entry.parents[0]
        result = PLANE + "/" + "/".join(reversed(parts))
        return result if len(result.encode()) <= LONGEST_PATH else None

    def fromPath(self, path):
        """The entry at a path, with a reference, or None."""
        if not path.startswith(PLANE + "/") or self.root is None or not self.root.children:
            return None
        entry, rest = self.root.children[0], path[len(PLANE):]
        if rest == "/":
            return retain(entry)
        while rest:
            if rest[0] != "/":
                return None
            entry, rest = child(entry, rest[1:])
            if entry is None:
                return None
        return retain(entry)

    # --- matching

    def matching(self, className, key, bits):
        """The lowest registered entry of a class whose number property has these 64 bits."""
        for identifier in sorted(self.entries):
            entry = self.entries[identifier]
            if className in entry.record.chain and published(entry) and numberBits(entry.property(key)) == bits:
                return retain(entry)
        return None


def component(entry):
    location = entry.location()
    return entry.record.name + ("@" + location if location is not None else "")


def child(parent, rest):
    """The first child that fits the beginning of a path, and what follows it."""
    for candidate in parent.children:
        remainder = rest
        if not rest.startswith("@"):
            if not rest.startswith(candidate.record.name):
                continue
            remainder = rest[len(candidate.record.name):]
            if remainder[:1] in ("", "/", ":"):
                return candidate, remainder
            if remainder[0] != "@":
                continue
        wanted, slash, after = remainder[1:].partition("/")
        if sameLocation(wanted, candidate.location()):
            return candidate, slash + after
    return None, ""


def sameLocation(first, second):
    if second is None or not LOCATION.match(first) or not LOCATION.match(second):
        return False
    left, right = numbers(first), numbers(second)
    length = max(len(left), len(right))
    return left + [0] * (length - len(left)) == right + [0] * (length - len(right))


def numbers(location):
    return [int(part, 16) for part in re.split("[,:]", location)]


def published(entry):
    state = entry.record.state
    if state is None:
        return "IOService" in entry.record.chain
    return state & 2 != 0 and state & 4 != 0 and state & 1 == 0


def numberBits(value):
    """64 bits of a number; a negative one counts as 64 bits wide."""
    if isinstance(value, bool) or not isinstance(value, (int, float)) or value != int(value):
        return None
    return int(value) & 0xFFFFFFFFFFFFFFFF
