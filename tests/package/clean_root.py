#!/usr/bin/env python3
"""Makes a clean root to change into: clean_root.py ROOT PACKAGE...

It has Debian's essential packages, those that are named, and what they depend on, with dpkg's own
records of them, and nothing else of this machine. The packages' files are taken from where they are
installed, so that nothing is fetched.
"""

import os
import pathlib
import re
import subprocess
import sys

DPKG = pathlib.Path("/var/lib/dpkg")
# Not needed by any program.
LEFT_OUT = re.compile(r"/usr/share/(doc|man|info|locale|lintian|bug)/.")


class Installed:
    """The packages of this machine, as dpkg records them."""

    def __init__(self):
        self.stanzas = {}
        self.providers = {}
        for stanza in (DPKG / "status").read_text(encoding="utf-8").strip().split("\n\n"):
            fields = dict(re.findall(r"^([\w-]+):[ ]?(.*)$", stanza, re.MULTILINE))
            if fields["Status"] != "install ok installed":
                continue
            name = fields["Package"]
            self.stanzas[name] = (fields, stanza)
            for provided in [name, *names(fields.get("Provides", ""))]:
                self.providers.setdefault(provided, name)

    def depends(self, name):
        fields = self.stanzas[name][0]
        for group in (fields.get("Pre-Depends", "") + "," + fields.get("Depends", "")).split(","):
            if group.strip():
                yield self.first_of(names(group.replace("|", ",")), name)

    def first_of(self, alternatives, wanted_by):
        for name in alternatives:
            if name in self.providers:
                return name if name in self.stanzas else self.providers[name]
        sys.exit(f"{wanted_by} needs {' or '.join(alternatives)}, which is not installed here")

    def with_dependencies(self, wanted):
        found = set()
        left = [name for name, (fields, _) in self.stanzas.items() if fields.get("Essential") == "yes"]
        left += [self.first_of([name], "the clean root") for name in wanted]
        while left:
            name = left.pop()
            if name not in found:
                found.add(name)
                left.extend(self.depends(name))
        return sorted(found)

    def records(self, name):
        """The files of dpkg's that speak of the package; their names may bear its architecture."""
        architecture = self.stanzas[name][0]["Architecture"]
        own = DPKG / "info" / f"{name}:{architecture}.list"
        stem = own.stem if own.exists() else name
        return sorted((DPKG / "info").glob(f"{stem}.*"))


def names(relations):
    """The packages' names of "a (>= 1), b:any"."""
    return re.findall(r"(?:^|,)\s*([^\s,(:\[]+)", relations)


def copy(paths, root):
    """As they are here, links as links, folders without what is in them."""
    pack = ["tar", "-C", "/", "-c", "--no-recursion", "--null", "-T", "-"]
    unpack = ["tar", "-C", root, "-x", "--no-same-owner", "--keep-directory-symlink"]
    with subprocess.Popen(pack, stdin=subprocess.PIPE, stdout=subprocess.PIPE) as packer:
        with subprocess.Popen(unpack, stdin=packer.stdout) as unpacker:
            packer.stdin.write("\0".join(paths).encode())
            packer.stdin.close()
            packer.stdout.close()
        packer.wait()
    if packer.returncode != 0 or unpacker.returncode != 0:
        sys.exit("the packages' files were not copied")


def is_readable(path):
    return os.path.islink(path) or os.access(path, os.R_OK)


def files_of(installed, packages):
    """Of all packages, without the leading slash. Some are not to be had: documents that were never
    unpacked, and, for those who are not root, folders of root's own."""
    found = {}
    for name in packages:
        for record in installed.records(name):
            if record.suffix != ".list":
                continue
            for path in record.read_text(encoding="utf-8").splitlines():
                if path != "/." and not LEFT_OUT.match(path) and is_readable(path):
                    found[path.lstrip("/")] = True
    return list(found)


def write_records(installed, packages, root):
    folder = root / "var/lib/dpkg"
    for inner in ("info", "updates", "triggers"):
        (folder / inner).mkdir(parents=True, exist_ok=True)
    stanzas = [installed.stanzas[name][1] for name in packages]
    (folder / "status").write_text("\n\n".join(stanzas) + "\n\n", encoding="utf-8")
    records = [record for name in packages for record in installed.records(name)]
    for record in [DPKG / "info/format", *records]:
        (folder / "info" / record.name).write_bytes(record.read_bytes())
    # Who wants to be told of what: of those that are there.
    for record in (DPKG / "triggers").iterdir():
        if record.name in ("Lock", "Unincorp"):
            continue
        lines = [line for line in record.read_text(encoding="utf-8").splitlines()
                 if re.split(r"[:/]", line.split()[-1])[0] in packages]
        if lines:
            (folder / "triggers" / record.name).write_text("\n".join(lines) + "\n", encoding="utf-8")


def main():
    root = pathlib.Path(sys.argv[1])
    root.mkdir()
    installed = Installed()
    packages = installed.with_dependencies(sys.argv[2:])
    # First the links that stand for whole folders, /bin and the like, and what they lead to.
    for path in pathlib.Path("/").iterdir():
        if path.is_symlink() and path.resolve().is_dir():
            (root / os.readlink(path).lstrip("/")).mkdir(parents=True, exist_ok=True)
            (root / path.name).symlink_to(os.readlink(path))
    copy(files_of(installed, packages), root)
    write_records(installed, packages, root)
    for folder in ("dev", "etc", "tmp", "var/cache/ldconfig", "var/log"):
        (root / folder).mkdir(parents=True, exist_ok=True)
    (root / "etc/passwd").write_text("root:x:0:0:root:/root:/bin/sh\n", encoding="ascii")
    (root / "etc/group").write_text("root:x:0:\n", encoding="ascii")
    print(f"{len(packages)} packages")


if __name__ == "__main__":
    main()
