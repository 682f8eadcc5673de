#!/usr/bin/env python3
"""Checks the links of the documents: check_links.py DOCUMENT...

What a relative link points to must exist, and a heading that it names too. So must every file or folder
of the project that is named in `code`. Addresses on the network are looked at for their form only.
"""

import os
import pathlib
import re
import sys

SOURCES = pathlib.Path(os.environ["SOURCES"]).resolve()

LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
CODE = re.compile(r"`([^`\n]+)`")
FENCED = re.compile(r"^```.*?^```$", re.DOTALL | re.MULTILINE)
PROJECT_FOLDERS = ("monitor", "thunderbolt", "model", "platform", "application", "tests", "docs", "cmake",
                   "scripts", "examples", "packaging", "bench")


def anchors_of(document):
    headings = re.findall(r"^#+ +(.*)$", FENCED.sub("", document.read_text(encoding="utf-8")), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).strip().replace(" ", "-") for heading in headings}


def broken_link(document, target):
    if re.match(r"https?://[\w.-]+\.[a-z]+(/\S*)?$", target):
        return None
    path, _, anchor = target.partition("#")
    file = (document.parent / path).resolve() if path else document
    if not file.exists():
        return f"{target}: there is no such file"
    if not file.is_relative_to(SOURCES):
        return f"{target}: outside the project"
    if anchor and anchor not in anchors_of(file):
        return f"{target}: there is no such heading"
    return None


def broken_name(name):
    """A path of the project, as the documents write it: `model/`, `cmake/Layer.cmake`."""
    name = name.split(":")[0]
    if not re.fullmatch(r"[\w./-]+", name) or name.split("/")[0] not in PROJECT_FOLDERS or "/" not in name:
        return None
    return None if (SOURCES / name).exists() else f"`{name}`: there is no such file"


def check(document):
    text = FENCED.sub("", document.read_text(encoding="utf-8"))
    wrong = [broken_link(document, target) for target in LINK.findall(text)]
    wrong += [broken_name(name) for name in CODE.findall(text)]
    return [f"{document.relative_to(SOURCES)}: {reason}" for reason in wrong if reason], len(LINK.findall(text))


def main():
    links = 0
    wrong = []
    for document in sys.argv[1:]:
        reasons, count = check(pathlib.Path(document).resolve())
        wrong += reasons
        links += count
    print("\n".join(wrong + [f"{links} links, {len(wrong)} broken"]))
    return 1 if wrong or links == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
