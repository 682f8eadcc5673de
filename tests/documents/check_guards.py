#!/usr/bin/env python3
"""Checks that every test which a document names exists: check_guards.py DOCUMENT...

A test is named as `Suite.Name` in code. Documents that name none are an error: the table would be empty.
"""

import os
import pathlib
import re
import sys

NAME = re.compile(r"`([A-Z]\w+\.[A-Z]\w+)`")
TEST = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)", re.MULTILINE)


def known_tests():
    folder = pathlib.Path(os.environ["SOURCES"], "tests")
    return {f"{suite}.{name}" for file in folder.rglob("*.cpp") for suite, name in TEST.findall(file.read_text())}


def main():
    known = known_tests()
    named = [name for document in sys.argv[1:] for name in NAME.findall(pathlib.Path(document).read_text())
             if not re.search(r"\.(cpp|h|md|txt|cmake|json|plist|sh|py)$", name, re.IGNORECASE)]
    missing = [name for name in named if name not in known]
    for name in missing:
        print(f"there is no test {name}")
    print(f"{len(named)} tests named, {len(missing)} missing")
    return 1 if missing or not named else 0


if __name__ == "__main__":
    sys.exit(main())
