#!/usr/bin/env python3
"""Stands before cmake, ctest and others while run_commands.py runs, under their names.

Presets must exist; a folder that is to be configured is configured with exactly what is asked for, but
out of the way; building, installing and packing take the build that this test is part of. No test
installs packages: all are said to be there. A coverage report of nothing is none. The mutants are listed,
and none is tried; a fuzz target looks at what it is to fuzz, and says that it has. launchctl does what it can
without launchd: it reads the job, and knows which ones it was given.
"""

import os
import pathlib
import plistlib
import re
import stat
import subprocess
import sys
import tempfile

SOURCES = os.environ["SOURCES"]
BUILD = os.environ["BUILD"]


def real(tool, *arguments):
    return subprocess.run([os.environ["REAL_" + tool.upper()], *arguments], check=False).returncode


def known_presets(tool, *kind):
    command = [os.environ["REAL_" + tool.upper()], *kind, "--list-presets"]
    listed = subprocess.run(command, cwd=SOURCES, text=True, capture_output=True, check=True).stdout
    return re.findall(r'^ +"([^"]+)"', listed, re.MULTILINE)


def check_preset(name, tool, *kind):
    if name in known_presets(tool, *kind):
        return 0
    print(f"no such preset: {name}", file=sys.stderr)
    return 1


def configure_elsewhere(arguments):
    """-S . of the sandbox is the project itself; -B goes to a folder that is thrown away."""
    with tempfile.TemporaryDirectory() as scratch:
        wanted = list(arguments)
        wanted[wanted.index("-S") + 1] = SOURCES
        wanted[wanted.index("-B") + 1] = scratch
        return real("cmake", *wanted)


def cmake(arguments):
    if arguments[:1] == ["--preset"]:
        return check_preset(arguments[1], "cmake")
    if arguments[:1] == ["--workflow"]:
        return check_preset(arguments[2], "cmake", "--workflow")
    if arguments[:2] == ["--build", "--preset"]:
        return check_preset(arguments[2], "cmake", "--build")
    if arguments[:2] == ["--build", "build"]:
        return 0 if pathlib.Path(BUILD, "CMakeCache.txt").exists() else 1
    if arguments[:2] == ["--install", "build"]:
        return real("cmake", "--install", BUILD, *arguments[2:])
    if "-S" in arguments and arguments[arguments.index("-S") + 1] == ".":
        return configure_elsewhere(arguments)
    return real("cmake", *arguments)


def ctest(arguments):
    preset = arguments[arguments.index("--preset") + 1]
    status = check_preset(preset, "ctest")
    if status == 0:
        # In the words that scripts/test counts by.
        print("100% tests passed, 0 tests failed out of 1")
    return status


def cpack(arguments):
    wanted = [f"{BUILD}/CPackConfig.cmake" if word == "build/CPackConfig.cmake" else word for word in arguments]
    return real("cpack", *wanted)


def dpkg_query(_):
    print("install ok installed")
    return 0


def gcovr(arguments):
    return 0 if "--fail-under-line" in arguments and "--fail-under-branch" in arguments else 1


def git(arguments):
    """The files of the sources, which need not be under git's control here."""
    places = arguments[arguments.index("--") + 1:]
    assert arguments[0] == "-C" and arguments[2] == "ls-files" and places
    for place in places:
        for file in sorted(pathlib.Path(SOURCES, place).rglob("*.*")):
            print(file.relative_to(SOURCES))
    return 0


def fuzz(arguments):
    places = [word for word in arguments if not word.startswith("-")]
    seconds = [word for word in arguments if re.fullmatch(r"-max_total_time=[1-9][0-9]*", word)]
    dictionary = [word for word in arguments if word.startswith("-dict=")]
    if len(seconds) != 1 or not os.path.isfile(dictionary[0][6:]) or not all(map(os.path.isdir, places)):
        return 1
    inputs = sum(len(os.listdir(place)) for place in places)
    print(f"#{inputs} INITED cov: 1 ft: 1\nstat::number_of_executed_units: {inputs}", file=sys.stderr)
    return 0 if inputs else 1


def chown(arguments):
    """To root, as launchd wants it; in the group that root has there."""
    return 0 if arguments[0] == "root:wheel" and all(map(os.path.isfile, arguments[1:])) else 1


def problem_of_job(file):
    """Why launchd would not take the job that the file describes, or None."""
    job = plistlib.loads(file.read_bytes())
    if job["Label"] != file.stem:
        return f"the label is {job['Label']}"
    if stat.S_IMODE(file.stat().st_mode) & 0o022:
        return "others may write to it"
    for path in (word for word in job["ProgramArguments"] if word.startswith("/usr/local/")):
        if not pathlib.Path(os.environ["HOME"], "..", "local", path[len("/usr/local/"):]).exists():
            return f"there is no {path}"
    return None


def launchctl(arguments):
    loaded = pathlib.Path(os.environ["HOME"], "loaded-jobs")
    jobs = loaded.read_text(encoding="utf-8").split() if loaded.exists() else []
    if arguments[:2] == ["bootstrap", "system"]:
        problem = problem_of_job(pathlib.Path(arguments[2]))
        loaded.write_text("\n".join([*jobs, f"system/{pathlib.Path(arguments[2]).stem}"]), encoding="utf-8")
    elif arguments[0] in ("print", "bootout") or arguments[:2] == ["kickstart", "-k"]:
        problem = None if arguments[-1] in jobs else f"there is no job {arguments[-1]}"
        if arguments[0] == "bootout":
            loaded.write_text("\n".join(job for job in jobs if job != arguments[-1]), encoding="utf-8")
    else:
        problem = f"unknown: {arguments}"
    print(problem or "", file=sys.stderr)
    return 1 if problem else 0


archive_fuzz = monitor_fuzz = text_fuzz = fuzz


if __name__ == "__main__":
    tool = pathlib.Path(sys.argv[0]).name.replace("-", "_")
    sys.exit(globals()[tool](sys.argv[1:]))
