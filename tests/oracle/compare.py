#!/usr/bin/env python3
"""Compares a built `raidmonitor` with the oracle on random or given recordings.

    compare.py RAIDMONITOR [--seeds A-B] [--keep DIR] [--recordings PATH ...]

Hosts, and twins of one set, are visited in the order of their addresses, which no one
promises. Where that can matter a difference counts only when no tried order of addresses
explains it; lines of one instant may then come in any order.
"""

import argparse
import collections
import json
import os
import shutil
import subprocess
import sys
import tempfile

import oracle
from generate import Story

ORDERS = 24
ARGUMENTS = {
    "watch.jsonl": ("watch", "--json", "--log", "--handles"),
    "list.json": ("list", "--json"),
    "slots.json": ("slots", "--json"),
}


def run(program, path, until):
    """The program's four texts, or a line that says how it failed."""
    texts = {}
    for name, arguments in ARGUMENTS.items():
        if until is not None:
            arguments += ("--until", str(until))
        done = subprocess.run([program, *arguments, "--registry", path], capture_output=True, timeout=300)
        if done.returncode != 0:
            tail = done.stderr.decode(errors="replace")[-3000:]
            return None, f"{arguments[0]} ended with {done.returncode}\n{tail}"
        texts[name] = done.stdout.decode()
        errors = done.stderr.decode()
        if texts.setdefault("stderr.txt", errors) != errors:
            return None, f"standard error of {arguments[0]} is not that of watch"
    return texts, None


def ordered(line):
    try:
        return json.loads(line, object_pairs_hook=tuple)
    except ValueError:
        return line


def same(first, second):
    # Escapes of characters outside ASCII are the writer's choice.
    if first == second:
        return True
    return not (first + second).isascii() and ordered(first) == ordered(second)


def difference(expected, actual):
    """Text around the first line that differs, or None."""
    for name, text in expected.items():
        wanted, got = text.split("\n"), actual[name].split("\n")
        for number in range(max(len(wanted), len(got))):
            left = wanted[number] if number < len(wanted) else "(no line)"
            right = got[number] if number < len(got) else "(no line)"
            if not same(left, right):
                before = "".join(f"    = {shortened(line)}\n" for line in wanted[max(0, number - 3):number])
                return f"  {name} line {number + 1}\n{before}    expected {left}\n    actual   {right}"
    return None


def shortened(line):
    return line if len(line) < 200 else line[:150] + " ... " + line[-40:]


def instants(text):
    groups = collections.defaultdict(collections.Counter)
    for line in text.splitlines():
        content = ordered(line)
        time = content[0][1] if isinstance(content, tuple) else None
        groups[time][repr(content)] += 1
    return groups


def equivalent(expected, actual):
    """Equal but for the order of the lines of one instant."""
    if instants(expected["watch.jsonl"]) != instants(actual["watch.jsonl"]):
        return False
    if sorted(expected["stderr.txt"].split("\n")) != sorted(actual["stderr.txt"].split("\n")):
        return False
    return all(same(expected[name].strip(), actual[name].strip()) for name in ("list.json", "slots.json"))


def judge(program, path, until):
    """("equal" | "reordered" | "different", explanation)"""
    actual, failure = run(program, path, until)
    if failure:
        return "different", failure
    expected, addressesMatter = oracle.answers(path, until=until)
    found = difference(expected, actual)
    if found is None:
        return "equal", None
    if addressesMatter:
        for order in range(ORDERS):
            if equivalent(oracle.answers(path, order, until)[0], actual):
                return "reordered", found
    return "different", found


def recordings(options):
    """Pairs (name, path) to compare; a random recording lives until the next is asked for."""
    for path in options.recordings:
        yield os.path.basename(path.rstrip("/")), path
    if options.seeds:
        first, _, last = options.seeds.partition("-")
        with tempfile.TemporaryDirectory() as folder:
            for seed in range(int(first), int(last or first) + 1):
                path = os.path.join(folder, f"seed-{seed}")
                Story(seed).write(path)
                yield f"seed {seed}", path
                shutil.rmtree(path)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("raidmonitor")
    parser.add_argument("--seeds")
    parser.add_argument("--keep", help="folder for the recordings that differ")
    parser.add_argument("--recordings", nargs="*", default=[])
    parser.add_argument("--until", type=int)
    parser.add_argument("--strict", action="store_true", help="no other order of addresses is accepted")
    parser.add_argument("--shown", type=int, default=5, help="how many differences are printed")
    options = parser.parse_args()
    if not options.seeds and not options.recordings:
        options.seeds = "0-199"
    tally = collections.Counter()
    for name, path in recordings(options):
        verdict, explanation = judge(options.raidmonitor, path, options.until)
        if verdict == "reordered" and options.strict:
            verdict = "different"
        tally[verdict] += 1
        if verdict == "different":
            if tally[verdict] <= options.shown:
                print(f"{name}: {explanation}", flush=True)
            else:
                print(f"{name}: different", flush=True)
            if options.keep:
                shutil.copytree(path, os.path.join(options.keep, os.path.basename(path)), dirs_exist_ok=True)
    print(", ".join(f"{tally[verdict]} {verdict}" for verdict in ("equal", "reordered", "different")))
    return 1 if tally["different"] else 0


if __name__ == "__main__":
    sys.setrecursionlimit(10000)
    sys.exit(main())
