#!/usr/bin/env python3
"""Runs every command of the documents: run_commands.py DOCUMENT...

The commands are the lines of ```sh blocks; a ```text block behind one is what its last command says on
standard output, to the letter. They run in a copy of the project's scripts and examples, in order, and
each must succeed.

This test runs inside a build, and what builds the project would build it within itself. So a `cmake`
and a `ctest` of the test's own stand before the real ones: they check what they are asked for, presets
above all, against the real tools, and take the build that is there. What only a Mac has, and what takes
hours, is stood in for as well. See stand_in.py.

A command that is no line of such a block would not be run: code that is only indented, or in a block of a
kind that is not known, is an error.
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

BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.DOTALL | re.MULTILINE)
INDENTED = re.compile(r"(?:^|\n\n)((?: {4}|\t)\S.*)")
# Besides commands: what they say, and what is written into files.
KINDS = {"sh", "text", "cmake", "cpp", "toml"}
# Folders that the documents name and no test may touch: each is one of the sandbox's.
MOVED = {"/tmp/": "tmp/", "/Library/LaunchDaemons/": "daemons/", "/usr/local/": "local/",
         "/path/to/MacOSX.sdk": "MacOSX.sdk"}
# What takes hours, and what asks it for no more than to understand its options and to find what it is to do.
SHORT = {"scripts/mutate": " --list"}


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
    for preset in ("dev", "release", "coverage"):
        (tree / "build").mkdir(exist_ok=True)
        (tree / "build" / preset).symlink_to(BUILD)
    fuzz = tree / "build" / "asan" / "tests" / "fuzz"
    fuzz.mkdir(parents=True)
    for target in ("archive", "monitor", "text"):
        (fuzz / f"{target}_fuzz").symlink_to(HERE / "stand_in.py")
    tools = folder / "tools"
    tools.mkdir()
    for tool in ("chown", "cmake", "cpack", "ctest", "dpkg-query", "gcovr", "git", "launchctl"):
        (tools / tool).symlink_to(HERE / "stand_in.py")
    make_system(folder)
    (tools / "raidmonitor").symlink_to(BUILD / "application" / "raidmonitor")
    return tree, tools


def make_system(folder):
    """The machine around the tree: its folders, with the program installed, and a person's home."""
    for moved in ("tmp", "daemons", "local/etc", "home/Desktop", "home/.config/fish"):
        (folder / moved).mkdir(parents=True)
    (folder / "MacOSX.sdk").symlink_to(SOURCES / "tests" / "package" / "fake-sdk")
    subprocess.run(["cmake", "--install", BUILD, "--prefix", folder / "local", "--component", "application"],
                   check=True, capture_output=True)


def environment(tools):
    values = dict(os.environ)
    values["PATH"] = f"{tools}:{values['PATH']}"
    values["LC_ALL"] = "C.UTF-8"
    values["HOME"] = str(tools.parent / "home")
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


def not_run(document):
    """What looks like code, and would not be run as it stands."""
    text = document.read_text(encoding="utf-8")
    yield from (f"a block of the kind '{kind}'" for kind, _ in BLOCK.findall(text) if kind not in KINDS)
    # Beneath an item of a list, what is indented is a paragraph of it.
    plain = re.sub(r"^( *[-*] |[0-9]+\. ).*(\n\n? +.*)*", "", BLOCK.sub("", text), flags=re.MULTILINE)
    yield from (f"'{line.strip()}', which is only indented" for line in INDENTED.findall(plain))


def commands_of(block):
    joined = block.replace("\\\n", " ")
    for line in joined.splitlines():
        command = re.sub(r"\s+#.*", "", line).strip()
        if command and not command.startswith("#"):
            yield command


def run(command, tree, values):
    # Other builds of this project run the same commands, perhaps at the same time.
    command = re.sub("|".join(MOVED), lambda path: f"{tree.parent}/{MOVED[path[0]]}", command)
    if command.startswith(tuple(SHORT)):
        command += SHORT[command.split()[0]]
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
        for reason in not_run(document):
            total_failures += 1
            print(f"{document.name}: {reason}")
        for block, answer in blocks_of(document):
            ran, failures = check_block(document, block, answer, tree, values)
            total_ran += ran
            total_failures += failures
    print(f"{total_ran} commands, {total_failures} failures")
    return 0 if total_failures == 0 and total_ran > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
