#!/usr/bin/env python3
"""Makes the plain comments of a header ones that Doxygen reads: comments.py HEADER

A comment on lines of its own speaks of all that stands below it up to the next blank line or comment, one
behind code of that line. A line of dashes is a heading, no comment. Each line stays in its place, so
that warnings name the right one.
"""

import re
import sys

HEADING = re.compile(r"^ *// ----")
OWN_LINE = re.compile(r"^( *)//( .*|)$")
BEHIND = re.compile(r"^(.*[;,{)]) +// (.*)$")
CODE_MARK = {" \\code": True, " \\endcode": False}
# What opens a scope has its comment to itself.
SCOPE = re.compile(r"^ *(class|struct|enum|namespace|template)\b")
# What nobody asks of: an end.
UNASKED = re.compile(r"^ *(}|(virtual )?~)")


def as_text(comment):
    """Names as they stand: what Doxygen would take for a command or a tag is none."""
    return re.sub(r"<([A-Za-z]+)>", r"\\<\1\\>", re.sub(r"([#@\\])", r"\\\1", comment))


class Filter:
    def __init__(self):
        self.blank()

    def blank(self):
        self.comment = []          # the text above, line by line
        self.declarations = 0      # how many stand below it already
        self.brackets = 0          # open ones of the declaration that goes on
        self.unfinished = False
        self.in_code = False

    def of_comment(self, indent, text):
        if self.declarations:
            self.blank()
        mark = text in CODE_MARK
        self.in_code = CODE_MARK.get(text, self.in_code)
        line = text if mark or self.in_code else as_text(text)
        self.comment.append(line.strip())
        return f"{indent}///{line}"

    def of_code(self, line):
        behind = BEHIND.match(line)
        code = behind[1] if behind else line
        if not self.unfinished:
            self.declarations += 1
        repeated = self.declarations > 1 and self.comment and not (self.unfinished or behind or UNASKED.match(code))
        if SCOPE.match(code) and not code.rstrip().endswith(";"):
            self.comment = []
        self.brackets += len(re.findall(r"[({]", code)) - len(re.findall(r"[)}]", code))
        self.unfinished = self.brackets > 0 or not code.rstrip().endswith((";", "}", ","))
        if behind:
            return f"{code}  ///< {as_text(behind[2])}"
        return f"/** {' '.join(self.comment)} */ {line}" if repeated else line

    def line(self, line):
        if line == "#pragma once":
            return "/** \\file */"
        comment = OWN_LINE.match(line)
        if not line.strip() or HEADING.match(line):
            self.blank()
            return line
        return self.of_comment(comment[1], comment[2]) if comment else self.of_code(line)


def main():
    by_line = Filter()
    with open(sys.argv[1], encoding="utf-8") as header:
        for line in header:
            print(by_line.line(line.rstrip("\n")))


if __name__ == "__main__":
    main()
