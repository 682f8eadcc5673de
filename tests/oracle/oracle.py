#!/usr/bin/env python3
"""Says what `raidmonitor` must answer for an archive or recording.

    oracle.py watch|list|slots PATH [--log] [--handles] [--until MS] [--addresses N]
    oracle.py expect PATH PREFIX     writes PREFIX.{watch.jsonl,list.json,slots.json,stderr.txt}
"""

import argparse
import sys

import archive
from application import Application

sys.setrecursionlimit(10000)


def answers(path, addresses=0, until=None):
    """The four texts: watch with log and handles, list, slots, standard error.

    Second result: whether another order of addresses might change them.
    """
    contents = archive.schedule(path)
    watch = Application(contents, log=True, handles=True, addresses=addresses)
    watch.run(until)
    asked = Application(contents, addresses=addresses)
    asked.run(until)
    listing = asked.listing()
    again = Application(contents, addresses=addresses)
    again.run(until)
    texts = {
        "watch.jsonl": "".join(line + "\n" for line in watch.lines),
        "list.json": listing + "\n",
        "slots.json": again.slots() + "\n",
        "stderr.txt": "".join(watch.errors),
    }
    return texts, watch.system.addressesMatter


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("command", choices=("watch", "list", "slots", "expect"))
    parser.add_argument("path")
    parser.add_argument("prefix", nargs="?")
    parser.add_argument("--log", action="store_true")
    parser.add_argument("--handles", action="store_true")
    parser.add_argument("--until", type=int)
    parser.add_argument("--addresses", type=int, default=0)
    options = parser.parse_args()
    try:
        if options.command == "expect":
            for suffix, text in answers(options.path)[0].items():
                with open(f"{options.prefix}.{suffix}", "w", encoding="utf-8") as file:
                    file.write(text)
            return 0
        contents = archive.schedule(options.path)
    except archive.Refused as problem:
        print(problem, file=sys.stderr)
        return 1
    application = Application(contents, options.log, options.handles, options.addresses)
    application.run(options.until)
    if options.command == "watch":
        sys.stdout.write("".join(line + "\n" for line in application.lines))
    else:
        print(application.listing() if options.command == "list" else application.slots())
    sys.stderr.write("".join(application.errors))
    return 0


if __name__ == "__main__":
    sys.exit(main())
