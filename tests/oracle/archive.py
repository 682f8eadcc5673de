"""Archives and recordings, read into plain records."""

import os
import plistlib

import classes

SYNTHETIC = {
    "IORegistryEntryName",
    "IORegistryEntryLocation",
    "IORegistryEntryID",
    "IORegistryEntryChildren",
    "IOObjectClass",
    "IOObjectInheritance",
    "IOServiceState",
}


class Refused(Exception):
    """A file or folder that is not understood."""


class Record:
    """One entry as an archive shows it; links are entry IDs in print order."""

    def __init__(self, identifier, node):
        state = node.get("IOServiceState")
        self.identifier = identifier
        self.className = text(node, "IOObjectClass")
        if self.className is None:
            raise Refused("entry without a class")
        self.name = text(node, "IORegistryEntryName")
        if self.name is None:
            self.name = self.className
        self.location = text(node, "IORegistryEntryLocation")
        self.chain = classes.chain(self.className, inheritance(node), state is not None)
        if state is not None and not whole(state):
            raise Refused("state is no integer")
        self.state = state
        self.properties = {k: v for k, v in node.items() if k not in SYNTHETIC}
        self.children = []
        self.parents = []


def whole(value):
    return isinstance(value, int) and not isinstance(value, bool)


def text(node, key):
    value = node.get(key)
    if value is not None and not isinstance(value, str):
        raise Refused(f"{key} is no string")
    return value


def inheritance(node):
    value = node.get("IOObjectInheritance")
    if value is None:
        return None
    if not isinstance(value, list) or not all(isinstance(v, str) for v in value):
        raise Refused("inheritance is no array of strings")
    return value


class Content:
    """Everything that one archive shows."""

    def __init__(self, top):
        self.records = {}
        self.root = self._add(top, None, ())

    def _add(self, node, parent, above):
        if not isinstance(node, dict):
            raise Refused("entry is no dictionary")
        identifier = node.get("IORegistryEntryID")
        if not whole(identifier) or identifier == 0:
            raise Refused("entry without an ID")
        if identifier in above:
            raise Refused("entry beneath itself")
        record = self.records.get(identifier)
        if record is None:
            record = self.records[identifier] = Record(identifier, node)
        if parent is not None and parent.identifier not in record.parents:
            record.parents.append(parent.identifier)
            parent.children.append(identifier)
        children = node.get("IORegistryEntryChildren", [])
        if not isinstance(children, list):
            raise Refused("children are no array")
        for child in children:
            self._add(child, record, above + (identifier,))
        return identifier


def load(path):
    try:
        with open(path, "rb") as file:
            return Content(plistlib.load(file))
    except Refused as problem:
        raise Refused(f"{path}: {problem}") from problem
    except Exception as problem:
        raise Refused(f"{path}: {problem}") from problem


def schedule(path):
    """Pairs (milliseconds, content), ascending; a single archive counts as time 0."""
    if not os.path.isdir(path):
        return [(0, load(path))]
    times = {}
    for name in os.listdir(path):
        stem, extension = os.path.splitext(name)
        if extension == ".plist" and stem.isascii() and stem.isdigit():
            if int(stem) in times:
                raise Refused(f"{path}: two archives for {int(stem)}")
            times[int(stem)] = os.path.join(path, name)
    if 0 not in times:
        raise Refused(f"{path}: no archive for time 0")
    return [(time, load(times[time])) for time in sorted(times)]
