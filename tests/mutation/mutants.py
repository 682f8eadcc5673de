"""Small changes to C++ source that a test should notice.

A mutant is one change at one place: a comparison turned round, a constant changed, a call left out, a
condition negated, a log level swapped, a text changed by one letter, a reference taken or dropped once
more. Comments, preprocessor lines (but for texts that they define), static assertions and template
heads are left alone.
"""

import dataclasses
import re

TOKEN = re.compile(
    r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<raw>R"(?P<delimiter>[^()\\\s]*)\(.*?\)(?P=delimiter)")
  | (?P<text>(?:u8|[uUL])?"(?:[^"\\\n]|\\.)*")
  | (?P<character>(?:u8|[uUL])?'(?:[^'\\\n]|\\.)+')
  | (?P<number>\b(?:0[xX][0-9a-fA-F']+|[0-9][0-9']*(?:\.[0-9]+)?)[uUlL]*\b)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<space>\s+)
  | (?P<operator><<=|>>=|->|\+\+|--|::|==|!=|<=|>=|&&|\|\||\+=|-=|[-+*/%&|^!~<>=?:;,.(){}\[\]\#\\])
  | (?P<other>.)
    """,
    re.VERBOSE | re.DOTALL,
)
PREPROCESSOR = re.compile(r"^[ \t]*#(?:[^\n\\]|\\.|\\\n)*", re.MULTILINE)
DEFINED_TEXT = re.compile(r'^[ \t]*#[ \t]*define[ \t]+\w+[ \t]+("(?:[^"\\\n]|\\.)*")', re.MULTILINE)
SPACED = {  # only with a blank on both sides: else `<` belongs to a template, `-` to a number
    "==": ["!="],
    "!=": ["=="],
    "<": ["<=", ">"],
    "<=": ["<", ">"],
    ">": [">=", "<"],
    ">=": [">", "<"],
}
JOINED = {"&&": ["||"], "||": ["&&"]}
CALCULATED = {"+": ["-"], "-": ["+"], "+=": ["-="], "-=": ["+="], "%": ["/"], "&": ["|"], "|": ["&"]}
COUNTED = {"++": ["--"], "--": ["++"]}
LEVELS = {"Message": ["Debug", "Info"], "Debug": ["Message", "Info"], "Info": ["Message", "Debug"]}
NOT_A_CALL = {
    "return", "if", "while", "for", "switch", "else", "do", "case", "default", "throw", "delete", "new",
    "using", "typedef", "static_assert", "public", "private", "protected", "friend", "goto", "break",
    "continue", "template", "operator", "sizeof", "catch", "namespace", "explicit", "extern", "enum",
    "struct", "class", "union", "static", "const", "constexpr", "inline", "virtual", "auto", "co_return",
}


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str
    kind: str
    start: int
    end: int
    old: str
    new: str
    line: int
    column: int

    def applied_to(self, source):
        assert source[self.start : self.end] == self.old, f"{self.name()}: the source has changed"
        return source[: self.start] + self.new + source[self.end :]

    def name(self):
        """Says which mutant it is, and tells it from all others."""
        old, new = around_difference(self.old, self.new)
        return f"{self.path}:{self.line}:{self.column} {self.kind}: {old} -> {new}"


def around_difference(old, new):
    """Both texts, shortened to where they differ."""
    same = 0
    while same < min(len(old), len(new)) and old[same] == new[same]:
        same += 1
    begin = max(0, same - 20) if max(len(old), len(new)) > 60 else 0
    return shortened(old, begin), shortened(new, begin)


def shortened(text, begin):
    end = begin + 60
    shown = ("..." if begin else "") + text[begin:end] + ("..." if end < len(text) else "")
    return " ".join(shown.split()) or "nothing"


@dataclasses.dataclass
class Token:
    kind: str
    text: str
    start: int

    @property
    def end(self):
        return self.start + len(self.text)


def tokens_of(source):
    """Everything but blanks, comments and preprocessor lines."""
    hidden = [(match.start(), match.end()) for match in PREPROCESSOR.finditer(source)]
    tokens, at = [], 0
    while at < len(source):
        while hidden and hidden[0][1] <= at:
            hidden.pop(0)
        if hidden and hidden[0][0] <= at:
            at = hidden[0][1]
            continue
        match = TOKEN.match(source, at)
        if match.lastgroup not in ("space", "comment", "delimiter"):
            kind = "raw" if match.group("raw") else match.lastgroup
            tokens.append(Token(kind, match.group(), at))
        at = match.end()
    return tokens


class Finder:
    """All mutants of one file."""

    def __init__(self, path, source):
        self.path, self.source = path, source
        self.tokens = tokens_of(source)
        self.mutants = []
        self.closing = self.matched()
        self.excluded = self.exclusions()

    def matched(self):
        closing, open_ones = {}, []
        for index, token in enumerate(self.tokens):
            if token.text in ("(", "{", "["):
                open_ones.append(index)
            elif token.text in (")", "}", "]") and open_ones:
                closing[open_ones.pop()] = index
        return closing

    def exclusions(self):
        """Token ranges in which a change can't compile, or is checked by the compiler itself."""
        ranges = []
        for index, token in enumerate(self.tokens):
            if token.text == "static_assert" and index + 1 in self.closing:
                ranges.append((index, self.closing[index + 1]))
            if token.text == "template" and self.text(index + 1) == "<":
                depth, at = 0, index + 1
                while at < len(self.tokens):
                    depth += {"<": 1, ">": -1}.get(self.text(at), 0)
                    if depth == 0:
                        break
                    at += 1
                ranges.append((index, at))
            if token.text == "operator":
                ranges.append((index, index + 1))
            if token.text == "=" and self.text(index + 1) == "0" and self.text(index + 2) == ";":
                if self.text(index - 1) in (")", "const", "noexcept"):  # a pure virtual operation
                    ranges.append((index, index + 1))
        return ranges

    def text(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def add(self, kind, start, end, new):
        line = self.source.count("\n", 0, start) + 1
        column = start - (self.source.rfind("\n", 0, start) + 1) + 1
        mutant = Mutant(self.path, kind, start, end, self.source[start:end], new, line, column)
        if mutant.old != mutant.new:
            self.mutants.append(mutant)

    def find(self):
        for match in DEFINED_TEXT.finditer(self.source):
            self.change_text(match.start(1), match.group(1))
        for index, token in enumerate(self.tokens):
            if any(first <= index <= last for first, last in self.excluded):
                continue
            if token.kind == "operator":
                self.change_operator(token)
            elif token.kind == "number":
                self.change_number(token)
            elif token.kind == "text":
                self.change_text(token.start, token.text)
            elif token.kind == "character":
                self.change_character(token)
            elif token.kind == "word":
                self.change_word(index, token)
        return self.mutants

    def change_operator(self, token):
        spaced = self.source[token.start - 1] in " \n" and self.source[token.end : token.end + 1] in (" ", "\n")
        kinds = [("comparison", SPACED, spaced), ("condition", JOINED, spaced), ("arithmetic", CALCULATED, spaced),
                 ("arithmetic", COUNTED, True)]
        for kind, table, allowed in kinds:
            if allowed:
                for new in table.get(token.text, []):
                    self.add(kind, token.start, token.end, new)
        if token.text == "!":
            self.add("condition", token.start, token.end, "")

    def change_number(self, token):
        digits = re.match(r"(0[xX][0-9a-fA-F']+|[0-9']+)([uUlL]*)$", token.text)
        if not digits:
            return
        value, suffix = int(digits[1].replace("'", ""), 0 if digits[1][:2] in ("0x", "0X") else 10), digits[2]
        for new in [1] if value == 0 else [value + 1, value - 1]:
            text = hex(new) if digits[1][:2] in ("0x", "0X") else str(new)
            self.add("constant", token.start, token.end, text + suffix)

    def change_text(self, start, literal):
        inner = literal.index('"') + 1
        for at in letter_places(literal[inner:-1]):
            letter = literal[inner + at]
            self.add("text", start, start + len(literal),
                     literal[: inner + at] + next_letter(letter) + literal[inner + at + 1 :])
        if literal == '""':
            self.add("text", start, start + 2, '"x"')

    def change_character(self, token):
        if re.match(r"'[^'\\]'$", token.text):
            self.add("constant", token.start, token.end, f"'{next_letter(token.text[1])}'")
        elif token.text not in ("'\\''", "'\\\\'"):
            self.add("constant", token.start, token.end, "'#'")

    def change_word(self, index, token):
        before, after = self.text(index - 1), self.text(index + 1)
        if token.text in ("true", "false"):
            self.add("constant", token.start, token.end, "false" if token.text == "true" else "true")
        if before == "::" and self.text(index - 2) == "Logger":
            for new in LEVELS.get(token.text, []):
                self.add("log level", token.start, token.end, new)
        if token.text in ("if", "while"):
            self.negate(index)
        if before in (".", "->") and after == "(" and self.text(index + 2) == ")":
            if token.text in ("get", "release"):
                self.add("reference", token.start, token.end, "release" if token.text == "get" else "get")
        if before in ("", ";", "{", "}", ")", "else", "do", ":") and token.text not in NOT_A_CALL:
            self.leave_out(index)

    def negate(self, index):
        opening = index + 2 if self.text(index + 1) == "constexpr" else index + 1
        if self.text(opening) != "(" or opening not in self.closing:
            return
        first, last = self.tokens[opening + 1], self.tokens[self.closing[opening] - 1]
        inside = self.tokens[opening + 1 : self.closing[opening]]
        if any(token.text == "=" for token in inside) and not any(token.text == ";" for token in inside):
            return  # it declares what it tests
        for at, token in enumerate(inside):
            if token.text == ";":
                first = inside[at + 1]
        condition = self.source[first.start : last.end]
        if re.search(r" (?:==|!=) ", condition) and not re.search(r"&&|\|\|", condition):
            return  # the comparison turned round is the same
        if re.match(r"![\w.>()-]*$", condition):
            return  # the `!` left out is the same
        self.add("condition", first.start, last.end, f"!({condition})")

    def leave_out(self, index):
        """A statement that is one call: a name or a chain of names, arguments, a semicolon."""
        at, called = index, False
        while at < len(self.tokens) and self.text(at) != ";":
            text = self.text(at)
            if text in ("(", "["):
                called = called or text == "("
                at = self.closing.get(at, len(self.tokens))
            elif self.tokens[at].kind != "word" and text not in (".", "->", "::"):
                return
            elif self.tokens[at].kind == "word" and self.tokens[at - 1].kind == "word" and at != index:
                return  # a declaration
            at += 1
        if not called or self.text(at - 1) != ")" or at >= len(self.tokens):
            return
        start, end = self.tokens[index].start, self.tokens[at].start
        call = self.source[start:end]
        if self.text(index - 1) == ")" and not self.after_condition(index - 1):
            return
        self.add("call", start, end, "static_cast<void>(0)")  # an empty body would be a warning
        if re.search(r"\b(ref|deref|CFRetain|CFRelease|IOObjectRetain|IOObjectRelease|hold|drop|add|remove)\([^()]*\)$", call):
            self.add("reference", start, end, f"{call}; {call}")

    def after_condition(self, closing):
        for opening, last in self.closing.items():
            if last == closing:
                return self.text(opening - 1) in ("if", "while", "for", "switch", "constexpr")
        return False


def letter_places(text):
    """The first and the middle letter that are no part of an escape or of a conversion."""
    places = []
    for match in re.finditer(r"\\.|%[-0-9.*lzhjt]*[a-zA-Z%]|([A-Za-z0-9])", text):
        if match.group(1):
            places.append(match.start())
    return sorted({places[0], places[len(places) // 2]}) if places else []


def next_letter(letter):
    if letter in "zZ9":
        return {"z": "a", "Z": "A", "9": "0"}[letter]
    if letter in ("&", "["):
        return "#"  # the next one would be a quote or an escape
    return chr(ord(letter) + 1)


def mutants_of(path, source):
    return Finder(path, source).find()
