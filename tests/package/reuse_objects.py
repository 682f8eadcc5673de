#!/usr/bin/env python3
"""A compiler launcher that takes an object from another build of the same sources: instead of compiling
what has been compiled already.

REUSE_HERE and REUSE_THERE are the library's folders in this build and in the other, REUSE_COMMANDS the
compile_commands.json of the other. An object is taken when it was made by the same command there, those
folders apart, and lies beneath REUSE_BENEATH if that is given. Everything else is compiled; what
REUSE_ELSE says ("-O0 -g0", say) is added then.
"""

import json
import os
import shlex
import shutil
import subprocess
import sys

FOR_DEPENDENCIES = {"-MD": 1, "-MMD": 1, "-MT": 2, "-MF": 2, "-MQ": 2}


def normalised(command, folder, home):
    """The words behind the compiler, without what asks for dependencies, paths as seen from `home`."""
    words = []
    left = list(command)
    while left:
        skipped = FOR_DEPENDENCIES.get(left[0], 0)
        if skipped:
            del left[:skipped]
            continue
        word = left.pop(0)
        if words and words[-1] == "-o":
            word = os.path.join(folder, word)
        words.append(word.replace(home, "<build>"))
    return words


def object_there(command, source):
    """The object that the other build has made of the source by this command, or None."""
    if not command[command.index("-o") + 1].startswith(os.environ.get("REUSE_BENEATH", "")):
        return None
    there = os.environ["REUSE_THERE"]
    wanted = normalised(command[1:], os.getcwd(), os.environ["REUSE_HERE"])
    try:
        with open(os.environ["REUSE_COMMANDS"], encoding="utf-8") as file:
            entries = [entry for entry in json.load(file) if entry["file"] == source]
    except OSError:
        return None
    for entry in entries:
        words = shlex.split(entry["command"])
        # Perhaps behind a launcher of its own.
        words = words[words.index(command[0]) + 1:] if command[0] in words else words[1:]
        if normalised(words, entry["directory"], there) == wanted:
            return os.path.join(entry["directory"], words[words.index("-o") + 1])
    return None


def main():
    command = sys.argv[1:]
    if "-c" in command:
        found = object_there(command, command[command.index("-c") + 1])
        if found and os.path.exists(found):
            shutil.copyfile(found, command[command.index("-o") + 1])
            return 0
        command += shlex.split(os.environ.get("REUSE_ELSE", ""))
    return subprocess.run(command, check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
