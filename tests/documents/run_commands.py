#!/usr/bin/env python3
"""Runs every command of the documents: run_commands.py DOCUMENT...

The commands are the lines of ```sh blocks; a ```text block behind one is what its last command says on
standard output, to the letter. They run in a copy of the project's scripts and examples, in order, and
each must succeed.

This test runs inside a build, and what builds the project would build it within itself. So a `cmake`
and a `ctest` of the test's own stand before the real ones: they check what they are asked for, presets
above all, against the real tools, and take the build that is there. See stand_in.py.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

SOURCES = pathlib.Path(os.environ["SOURCES"])
BUILD = pathlib.Path(os.environ["BUILD"])
WORK = pathlib.Path(os.environ["WORK"])
HERE = pathlib.Path(__file__).resolve().parent

BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.DOTALL | re.MULTILINE)


def make_sandbox(folder):
    """The project's tree, in which what is built lies where the documents say."""
    shutil.rmtree(folder, ignore_errors=True)
    tree = folder / "tree"
    tree.mkdir(parents=True)
    for entry in SOURCES.iterdir():
        if entry.name in ("build", ".git"):
            continue
        if entry.name == "scripts":
            shutil.copytree(entry, tree / entry.name)
        else:
            (tree / entry.name).symlink_to(entry)
    for preset in ("dev", "release", "asan", "coverage"):
        (tree / "build").mkdir(exist_ok=True)
        (tree / "build" / preset).symlink_to(BUILD)
    tools = folder / "tools"
    tools.mkdir()
    for tool in ("cmake", "ctest", "cpack", "dpkg-query", "gcovr"):
        (tools / tool).symlink_to(HERE / "stand_in.py")
    (folder / "tmp").mkdir()
    (tools / "raidmonitor").symlink_to(BUILD / "application" / "raidmonitor")
    return tree, tools


def environment(tools):
    values = dict(os.environ)
    values["PATH"] = f"{tools}:{values['PATH']}"
    values["LC_ALL"] = "C.UTF-8"
    for name in ("cmake", "ctest", "cpack"):
        values["REAL_" + name.upper()] = shutil.which(name)
    return values


def blocks_of(document):
    """The sh blocks, each with the text block that follows it, if one does."""
    found = list(BLOCK.finditer(document.read_text(encoding="utf-8")))
    for place, block in enumerate(found):
        if block[1] != "sh":
            continue
        answer = None
        if place + 1 < len(found) and found[place + 1][1] == "text":
            answer = found[place + 1][2]
        yield block[2], answer


def commands_of(block):
    joined = block.replace("\\\n", " ")
    for line in joined.splitlines():
        command = re.sub(r"\s+#.*", "", line).strip()
        if command and not command.startswith("#"):
            yield command


def run(command, tree, values):
    # Other builds of this project run the same commands, perhaps at the same time.
    command = command.replace("/tmp/", f"{tree.parent}/tmp/")
    return subprocess.run(["bash", "-c", command], cwd=tree, env=values, text=True,
                          capture_output=True, check=False, timeout=300)


def check_block(document, block, answer, tree, values):
    failures = 0
    ran = 0
    result = None
    for command in commands_of(block):
        result = run(command, tree, values)
        ran += 1
        if result.returncode != 0:
            failures += 1
            print(f"{document.name}: {command}\n  ends with {result.returncode}:\n{result.stdout}{result.stderr}")
    if answer is not None and result is not None and result.stdout != answer:
        failures += 1
        print(f"{document.name}: says\n{result.stdout}\ninstead of\n{answer}")
    return ran, failures


def main():
    tree, tools = make_sandbox(WORK / "commands")
    values = environment(tools)
    total_ran = 0
    total_failures = 0
    for document in map(pathlib.Path, sys.argv[1:]):
        for block, answer in blocks_of(document):
            ran, failures = check_block(document, block, answer, tree, values)
            total_ran += ran
            total_failures += failures
    print(f"{total_ran} commands, {total_failures} failures")
    return 0 if total_failures == 0 and total_ran > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
