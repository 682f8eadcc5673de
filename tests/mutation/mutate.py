#!/usr/bin/env python3
"""Changes the product at one place at a time, and looks whether a test notices.

Mutants are drawn evenly over the files: one of each file, another of each, and so on until COUNT of them
have compiled. Which ones follows from the seed. Each is built in a scratch copy and meets the tests of its
folder; those that pass them meet all the others. Outcomes are kept as lines of JSON, one per mutant.
"""

import argparse
import collections
import datetime
import fcntl
import json
import os
import random
import signal
import subprocess
import sys

import mutants
from trial import Scratch, Trials, own_tests, other_tests

FOLDERS = ["monitor", "model", "thunderbolt", "platform"]
# The first rounds are tried together, a file's mutants one after the other, which spares building it again.
FIRST_ROUNDS = 4
# A header is drawn from this often and no more: for each of its mutants much is built.
ROUNDS_FOR_HEADERS = 2


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/mutate", description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=400, help="mutants that compile (default 400)")
    parser.add_argument("--seed", type=int, default=1, help="which mutants are drawn (default 1)")
    parser.add_argument("--files", nargs="+", default=FOLDERS, metavar="PATH", help="only these files or folders")
    parser.add_argument("--list", action="store_true", help="print all mutants there are, and try none")
    parser.add_argument("--resume", action="store_true", help="go on with the run that was interrupted")
    parser.add_argument("--again", action="store_true", help="try the survivors of the last run once more")
    parser.add_argument("--only", metavar="NAME", help="with --again: survivors whose name has this in it")
    parser.add_argument("--own", action="store_true", help="with --again: the tests of the mutant's folder alone")
    parser.add_argument("--sanitize", action="store_true", help="build the mutants with sanitizers")
    parser.add_argument("--report", action="store_true", help="print the table of the last run, and try none")
    parser.add_argument("--place", default="build/mutation", help="the scratch folder (default build/mutation)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="for the first build")
    options = parser.parse_args()
    if options.count < 1:
        parser.error("--count is 1 or more")
    return options


def all_mutants(root, places):
    listed = subprocess.run(["git", "-C", root, "ls-files", "--", *places], check=True, capture_output=True, text=True)
    sources = {}
    for path in sorted(listed.stdout.split("\n")):
        if path.endswith((".cpp", ".h")) and path.startswith(tuple(folder + "/" for folder in FOLDERS)):
            with open(os.path.join(root, path), encoding="utf-8", newline="") as file:
                sources[path] = file.read()
    return sources, {path: mutants.mutants_of(path, source) for path, source in sources.items()}


def drawn(by_file, seed):
    """Rounds of mutants, one of each file that has any left. A file's kinds of change take turns."""
    order = {}
    for path, found in by_file.items():
        chance = random.Random(f"{seed} {path}")
        kinds = collections.defaultdict(list)
        for mutant in found:
            kinds[mutant.kind].append(mutant)
        for of_kind in kinds.values():
            chance.shuffle(of_kind)
        order[path] = []
        while kinds:
            for kind in chance.sample(sorted(kinds), len(kinds)):
                order[path].append(kinds[kind].pop())
                if not kinds[kind]:
                    del kinds[kind]
    while any(order.values()):
        files = sorted(path for path in order if order[path])
        random.Random(f"{seed} {len(files)}").shuffle(files)
        yield [order[path].pop(0) for path in files]


class Record:
    """The outcomes so far, in a file that survives an interruption."""

    def __init__(self, path, keep):
        self.path, self.outcomes = path, {}
        if keep and os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                for line in file:
                    entry = json.loads(line)
                    self.outcomes[entry["mutant"]] = entry
        elif os.path.exists(path):
            os.replace(path, path + ".before")

    def put(self, mutant, outcome):
        entry = {"mutant": mutant.name(), "path": mutant.path, "kind": mutant.kind, **outcome}
        self.outcomes[entry["mutant"]] = entry
        with open(self.path, "a", encoding="utf-8") as file:
            file.write(json.dumps(entry) + "\n")
        how = " ".join(str(outcome.get(key, "")) for key in ("by", "how", "test"))
        stamp = datetime.datetime.now().strftime("%H:%M:%S")
        print(f"{stamp} {len(self.outcomes):4} {outcome['seconds']:6}s {outcome['result']:16} {entry['mutant']}  {how}", flush=True)

    def of(self, mutant):
        return self.outcomes.get(mutant.name())

    def compiled(self):
        return [entry for entry in self.outcomes.values() if entry["result"] != "does not compile"]


def batches(by_file, seed):
    """The rounds in the order in which they are tried: headers last, because much is built for each mutant."""
    batch = []
    for number, of_round in enumerate(drawn(by_file, seed)):
        batch += [mutant for mutant in of_round if number < ROUNDS_FOR_HEADERS or not mutant.path.endswith(".h")]
        if number + 1 >= FIRST_ROUNDS:
            yield sorted(batch, key=lambda mutant: (mutant.path.endswith(".h"), mutant.path, mutant.start))
            batch = []
    yield batch


def run(options, by_file, record, trials):
    """Draws and tries until enough have compiled. Those that pass their own tests wait for the others."""
    for batch in batches(by_file, options.seed):
        for mutant in batch:
            if len(record.compiled()) >= options.count:
                break
            if record.of(mutant):
                continue
            outcome = trials.try_one(mutant, own_tests(mutant.path))
            if outcome["result"] == "survived":
                outcome["result"] = "waiting"
            record.put(mutant, outcome)
    for mutant in with_result(by_file, record, "waiting"):
        record.put(mutant, trials.try_one(mutant, other_tests(mutant.path)))


def with_result(by_file, record, *results):
    found = [mutant for of_file in by_file.values() for mutant in of_file]
    return [mutant for mutant in found if record.of(mutant) and record.of(mutant)["result"] in results]


def again(options, by_file, record, trials):
    for mutant in with_result(by_file, record, "survived", "waiting"):
        if not options.only or options.only in mutant.name():
            others = [] if options.own else other_tests(mutant.path)
            outcome = trials.try_one(mutant, own_tests(mutant.path) + others)
            if options.own and outcome["result"] == "survived":
                outcome["result"] = "waiting"
            record.put(mutant, outcome)


def folder_of(path):
    parts = path.split("/")[:-1]
    return "/".join(parts[:3]) if parts[0] == "platform" else parts[0]


def report(record):
    table = collections.defaultdict(collections.Counter)
    for entry in record.outcomes.values():
        for row in (folder_of(entry["path"]), "all"):
            table[row][entry["result"]] += 1
    print("| folder | did not compile | compiled | caught | survived | % caught |")
    print("|---|---|---|---|---|---|")
    for row in sorted(table, key=lambda row: (row == "all", row)):
        counts = table[row]
        open_ones = counts["survived"] + counts["waiting"]
        compiled = counts["caught"] + open_ones
        share = f"{100 * counts['caught'] / compiled:.1f}" if compiled else "-"
        print(f"| {row} | {counts['does not compile']} | {compiled} | {counts['caught']} | {open_ones} | {share} |")
    for entry in record.outcomes.values():
        if entry["result"] in ("survived", "waiting"):
            print(f"{entry['result']}: {entry['mutant']}")


def lock(place):
    """One run in a scratch folder at a time."""
    file = open(os.path.join(place, "lock"), "w")
    try:
        fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        raise SystemExit(f"another run is at work in {place}") from None
    return file


def end(*_):
    raise SystemExit("interrupted; --resume goes on")


def main():
    options = arguments()
    root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    sources, by_file = all_mutants(root, options.files)
    if options.list:
        for found in by_file.values():
            for mutant in found:
                print(mutant.name())
        print(f"{sum(map(len, by_file.values()))} mutants in {sum(map(bool, by_file.values()))} files", file=sys.stderr)
        return
    place = os.path.join(root, options.place)
    os.makedirs(place, exist_ok=True)
    locked = lock(place) if not options.report else None
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, end)
    record = Record(os.path.join(place, "outcomes.jsonl"), options.resume or options.again or options.report)
    if not options.report:
        print(f"seed {options.seed}", flush=True)
        scratch = Scratch(root, place, options.sanitize)
        scratch.prepare(options.jobs)
        trials = Trials(scratch, sources)
        try:
            (again if options.again else run)(options, by_file, record, trials)
        finally:
            trials.restore()
            locked.close()
    report(record)


if __name__ == "__main__":
    main()
