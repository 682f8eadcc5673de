"""A scratch copy of the project in which one mutant at a time is built and tested."""

import os
import resource
import shutil
import signal
import subprocess
import time

CONFIGURATION = [
    "-DRAIDMONITORING_TESTS=ON",
    "-DCMAKE_BUILD_TYPE=Debug",
    "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g0",
    # Else each link would run what it has linked, and a mutant that ends at once would not "build".
    "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",
]
QUICK_LINKER = "-fuse-ld=lld -Wl,--strip-debug"

# What a test program may use. Processor time, because the machine may be busy. The clock is for those
# that wait for something that never comes: so much, and ten times what the test takes without a mutant.
PROCESSOR_SECONDS = 120
WALL_SECONDS = 20
ADDRESS_SPACE = 6 << 30
FILE_SIZE = 1 << 30  # one of the tests makes a file of 512 MiB, with nothing in it

OWN = {  # the tests that a folder's mutants meet first
    "platform/pelago": ["pelago", "monitor"],
    "platform/registry/memory/archive": ["archive"],
    "platform/registry/memory": ["registry", "registry memory"],
    "platform/registry": ["registry", "model"],
    "model": ["model", "model memory"],
    "thunderbolt": ["thunderbolt", "monitor"],
    "monitor": ["monitor", "monitor memory"],
}
ALL = [
    "pelago", "registry", "registry memory", "archive", "model", "model memory", "thunderbolt", "monitor",
    "monitor memory", "support", "archive limits",
    "operations", "layers", "slots", "recordings", "program parts", "program", "oracle", "properties", "faults",
]


class Test:
    """A program of the build: what it is built as, how it is run."""

    def __init__(self, target, command=None, environment=None, needs=()):
        self.targets = [target, *needs]
        self.command = command
        self.environment = environment or {}


def gtest(folder, target, environment=None, filter=None):
    options = ["--gtest_brief=1", "--gtest_fail_fast"] + ([f"--gtest_filter={filter}"] if filter else [])
    return Test(target, [f"tests/{folder}/{target}", *options], environment)


# Of archives of many megabytes: seconds, where all the others take as long together.
LARGE_ARCHIVES = "ArchiveCost.*:Limits.WhatWouldTakeMore*:Gzip.OneThatTakesTooMuch*"

TESTS = {
    "pelago": gtest("pelago", "pelago_tests"),
    "registry": gtest("registry", "registry_tests"),
    "registry memory": gtest("registry", "registry_memory_tests"),
    "archive": gtest("archive", "archive_tests", filter="-" + LARGE_ARCHIVES),
    "archive limits": gtest("archive", "archive_tests", filter=LARGE_ARCHIVES),
    "model": gtest("model", "model_tests"),
    "model memory": gtest("model", "model_memory_tests"),
    "thunderbolt": gtest("thunderbolt", "thunderbolt_tests"),
    "monitor": gtest("monitor", "monitor_tests"),
    "monitor memory": gtest("monitor", "monitor_memory_tests"),
    "support": gtest("support", "support_tests"),
    "operations": gtest("operations", "operations_tests"),
    "layers": gtest("layers", "layers_tests"),
    "slots": gtest("slots", "slots_tests"),
    "recordings": gtest("recordings", "recording_tests"),
    "program parts": gtest("application", "program_part_tests"),
    "program": gtest("application", "program_tests"),
    "oracle": Test("raidmonitor", ["python3", "@/tests/oracle/compare.py", "application/raidmonitor", "--seeds", "0-4",
                                   "--strict"]),
    "properties": gtest("properties", "property_tests", {"PROPERTY_CASES": "60", "RC_PARAMS": "seed=1"}),
    "faults": gtest("faults", "fault_tests", {"FAULT_STRIDE": "97"}),
}


def own_tests(path):
    return next(tests for folder, tests in OWN.items() if path.startswith(folder + "/"))


def other_tests(path):
    return [test for test in ALL if test not in own_tests(path)]


class Scratch:
    def __init__(self, sources, place, sanitize=False):
        self.sources, self.place = sources, place
        self.tree, self.build = os.path.join(place, "tree"), os.path.join(place, "asan" if sanitize else "build")
        self.sanitize = sanitize

    def prepare(self, jobs):
        """Brings the copy up to date; the times of unchanged files stay."""
        self.jobs = jobs
        self.copy()
        options = list(CONFIGURATION)
        if shutil.which("ld.lld"):
            options += [f"-DCMAKE_{kind}_LINKER_FLAGS={QUICK_LINKER}" for kind in ("EXE", "SHARED")]
        if shutil.which("ccache"):
            options.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
        if shutil.which("clang++"):
            options.append("-DCMAKE_CXX_COMPILER=clang++")
            if self.sanitize:
                options.append("-DRAIDMONITORING_SANITIZE=address,undefined")
        if not os.path.exists(os.path.join(self.build, "build.ninja")):
            subprocess.run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", *options],
                           check=True, stdout=subprocess.DEVNULL)

    def copy(self):
        listed = subprocess.run(["git", "-C", self.sources, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                                check=True, capture_output=True).stdout.decode()
        wanted = {path for path in listed.split("\0") if path and os.path.isfile(os.path.join(self.sources, path))}
        for path in wanted:
            source, copy = os.path.join(self.sources, path), os.path.join(self.tree, path)
            if not os.path.exists(copy) or content(source) != content(copy):
                os.makedirs(os.path.dirname(copy), exist_ok=True)
                shutil.copy(source, copy)
        for folder, _, names in os.walk(self.tree):
            for name in names:
                copy = os.path.join(folder, name)
                if os.path.relpath(copy, self.tree) not in wanted:
                    os.remove(copy)

    def write(self, path, text):
        with open(os.path.join(self.tree, path), "w", encoding="utf-8", newline="") as file:
            file.write(text)

    def builds(self, targets, jobs):
        done = subprocess.run(["ninja", "-C", self.build, f"-j{jobs}", *targets], capture_output=True)
        return done.returncode == 0, done.stdout.decode(errors="replace")

    def run(self, test, log, seconds=900):
        """None when the test passes, else how it failed."""
        command = [part.replace("@", self.tree, 1) for part in test.command]
        if not command[0].startswith("python"):
            command[0] = os.path.join(self.build, command[0])
        environment = {**os.environ, **test.environment, "PYTHONDONTWRITEBYTECODE": "1",
                       "LSAN_OPTIONS": f"suppressions={self.tree}/tests/support/leaks.supp:print_suppressions=0"}
        with open(log, "wb") as output:
            process = subprocess.Popen(command, cwd=self.build, env=environment, stdin=subprocess.DEVNULL, stdout=output,
                                       stderr=subprocess.STDOUT, preexec_fn=self.limit, start_new_session=True)
            try:
                status = process.wait(seconds)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
                return "hangs"
            finally:
                end_group(process.pid)
        if status == 0:
            return None
        if status in (-signal.SIGXCPU, -signal.SIGKILL):
            return "hangs"
        return f"ends by signal {-status}" if status < 0 else "fails"

    def limit(self):
        scale = 4 if self.sanitize else 1
        resource.setrlimit(resource.RLIMIT_CPU, (PROCESSOR_SECONDS * scale, PROCESSOR_SECONDS * scale + 5))
        resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_SIZE, FILE_SIZE))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if not self.sanitize:  # the sanitizer reserves more than there is
            resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_SPACE, ADDRESS_SPACE))


def content(path):
    with open(path, "rb") as file:
        return file.read()


def end_group(group):
    """What a test has left running ends with it."""
    try:
        os.killpg(group, signal.SIGKILL)
    except ProcessLookupError:
        pass


def first_failure(log):
    """The name of the first test that failed, for the record."""
    with open(log, encoding="utf-8", errors="replace") as file:
        for line in file:
            if line.startswith("[  FAILED  ]"):
                return line.split("]", 1)[1].split()[0].rstrip(",")
    return ""


class Trials:
    """Tries mutants; the one before is taken back when another file's turn has come."""

    def __init__(self, scratch, originals):
        self.scratch, self.originals = scratch, originals
        self.changed = None
        self.sound = {}  # tests that pass without a mutant, and the seconds that they may take with one
        self.log = os.path.join(scratch.place, "output.txt")

    def restore(self):
        if self.changed:
            self.scratch.write(self.changed, self.originals[self.changed])
            self.changed = None

    def apply(self, mutant):
        if self.changed != mutant.path:
            self.restore()
        self.changed = mutant.path
        self.scratch.write(mutant.path, mutant.applied_to(self.originals[mutant.path]))

    def try_one(self, mutant, tests):
        """The outcome as a dictionary: `result` is caught, survived (these tests) or does not compile."""
        self.make_sure_of(tests)
        begun = time.monotonic()
        self.apply(mutant)
        outcome = self.judge(tests)
        outcome["seconds"] = round(time.monotonic() - begun, 1)
        return outcome

    def make_sure_of(self, tests):
        """A test that fails by itself would catch everything."""
        for name in [name for name in tests if name not in self.sound]:
            self.restore()
            built, output = self.scratch.builds(TESTS[name].targets, self.scratch.jobs)
            begun = time.monotonic()
            if not built or self.scratch.run(TESTS[name], self.log):
                raise SystemExit(f"{name}: fails without a mutant; see {self.log}\n{output[-2000:] if not built else ''}")
            seconds = time.monotonic() - begun
            print(f"{name}: passes without a mutant, in {seconds:.1f} s", flush=True)
            self.sound[name] = WALL_SECONDS + 10 * seconds

    def judge(self, tests):
        for name in tests:
            built, output = self.scratch.builds(TESTS[name].targets, self.scratch.jobs)
            if not built:
                error = next((line for line in output.splitlines() if "error:" in line), output[-200:])
                return {"result": "does not compile", "by": error.split("error:")[-1].strip()[:100]}
            failure = self.scratch.run(TESTS[name], self.log, self.sound[name])
            if failure:
                return {"result": "caught", "by": name, "how": failure, "test": first_failure(self.log)}
        return {"result": "survived"}
