#!/usr/bin/env python3
"""Takes the public headers apart into what a compiler is to be asked: extract_examples.py INCLUDE OUT

Each header that is installed beneath INCLUDE becomes a source in OUT that includes it first, or, when there
are examples between \\code and \\endcode in its comments, one source for each of these. An example includes
what else it needs.
"""

import pathlib
import re
import sys

EXAMPLE = re.compile(r"^ *// \\code$(.*?)^ *// \\endcode$", re.DOTALL | re.MULTILINE)
COMMENT = re.compile(r"^ *//( |$)", re.MULTILINE)


def sources_of(header, name):
    """The texts: the header by itself, or before each of its examples."""
    text = header.read_text(encoding="utf-8")
    examples = [COMMENT.sub("", example) for example in EXAMPLE.findall(text)]
    if text.count("\\code") != len(examples) or text.count("\\endcode") != len(examples):
        sys.exit(f"{name}: an example that does not begin or end on a line of its own")
    for example in examples or [""]:
        yield f'#include "{name}"\n{example}'


def main():
    include, out = map(pathlib.Path, sys.argv[1:])
    for header in sorted(include.rglob("*.h")):
        name = header.relative_to(include)
        for number, source in enumerate(sources_of(header, name)):
            file = out / f"{'-'.join(name.with_suffix('').parts)}-{number}.cpp"
            file.write_text(source, encoding="utf-8")


if __name__ == "__main__":
    main()
