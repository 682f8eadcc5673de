#!/usr/bin/env python3
"""Checks the workflow of the hosted builds: check_workflow.py WORKFLOW PRESETS

It is YAML, its commands are shell, the presets and scripts that it names exist, every system builds and
tests through a preset, and an action is named by a full commit hash.
"""

import json
import pathlib
import re
import subprocess
import sys

import yaml


def presets_of(job, command):
    """The presets that a command is run with, one per entry of the matrix."""
    for name in re.findall(r"--preset (\$\{\{ matrix\.preset \}\}|\S+)", command):
        yield from job["strategy"]["matrix"]["preset"] if name.startswith("$") else [name]


def problems_of(name, job, workflows, root):
    used = set()
    for step in job["steps"]:
        if "uses" in step and not re.search(r"@[0-9a-f]{40}$", step["uses"]):
            yield f"{name}: not pinned by its hash: {step['uses']}"
        command = step.get("run", "")
        # What the service fills in is a word to the shell.
        shell = subprocess.run(["bash", "-n"], input=re.sub(r"\$\{\{.*?\}\}", "word", command), text=True,
                               capture_output=True, check=False)
        if shell.returncode != 0:
            yield f"{name}: no shell command: {shell.stderr}"
        for script in re.findall(r"\bscripts/\w+", command):
            if not (root / script).exists():
                yield f"{name}: there is no {script}"
        used.update(presets_of(job, command))
    for preset in sorted(used - workflows):
        yield f"{name}: there is no workflow preset {preset}"
    if not used and not any("scripts/run" in step.get("run", "") for step in job["steps"]):
        yield f"{name}: builds by no preset"


def main():
    workflow = pathlib.Path(sys.argv[1])
    presets = json.loads(pathlib.Path(sys.argv[2]).read_text(encoding="utf-8"))
    workflows = {preset["name"] for preset in presets["workflowPresets"]}
    jobs = yaml.safe_load(workflow.read_text(encoding="utf-8"))["jobs"]
    root = pathlib.Path(sys.argv[2]).parent
    problems = [problem for name, job in jobs.items() for problem in problems_of(name, job, workflows, root)]
    print("\n".join(problems) or f"{len(jobs)} jobs")
    return 1 if problems or not jobs else 0


if __name__ == "__main__":
    sys.exit(main())
