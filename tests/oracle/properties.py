"""Typed property reads with a neutral answer for what is missing or of another type."""


def string(entry, key):
    return text(entry.property(key))


def text(value):
    return value if isinstance(value, str) else ""


def wholeNumber(value):
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        return None
    if isinstance(value, float) and not value.is_integer():
        return None
    return int(value)


def int32(entry, key):
    value = wholeNumber(entry.property(key))
    return value if value is not None and -(2**31) <= value < 2**31 else -1


def uint64(entry, key):
    value = wholeNumber(entry.property(key))
    return 0 if value is None else value & 0xFFFFFFFFFFFFFFFF


def array(entry, key):
    value = entry.property(key)
    return value if isinstance(value, list) else []
