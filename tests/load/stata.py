#!/usr/bin/env python3
"""An interpreter of the part of Stata that load programs use, written from the rules of Stata's manual.

    run(do_file, arguments=(), release=17, takes_blanks_off=True)     an Outcome; raises StataError as Stata stops

`takes_blanks_off`: whether `infix` takes blanks at the begin of a text off. The manual does not say it, so that a
program has to be right with both. Blanks at the end are always taken off.

Commands: version, clear, args, local, scalar, quietly, if, infix, generate, replace, keep, drop, rename, expand, sort, bysort,
count, display, label, tempfile, save, use, set maxvar, exit. Anything else is refused, and so is what Stata refuses: names
that are too long or reserved, a variable that exists, values that a storage type does not hold, texts in numeric
expressions, a label of a code that is no whole number, and labels above their limits.

Outcome      printed: lines of the results window; files: name -> Data, of the files that were saved
Data         names; types ("byte" ... "double", "str12", "strL"); rows; variable_labels; value_labels: name of a variable ->
             {code or Missing: text}; label
Cell         bytes: a text. float: a number. Missing(""), Missing("m") ...: missing
"""

import math
import os
import re
import struct
import sys

from missing import DOT, Missing

RESERVED = set("_all _b byte _coef _cons double float if in int long _n _N _pi _pred _rc _skip strL using with".split())
LIMITS = {"byte": (-127, 100), "int": (-32767, 32740), "long": (-2147483647, 2147483620)}
MAX_DOUBLE = 8.9884656743e307
MAX_TEXT = 2045
# Of an expression, of a data set before `set maxvar`, and of the bytes of its rows.
MAX_OPERATORS, MAX_NUMBERS, MAX_LITERALS = 800, 300, 512
MAX_VARIABLES = 2048
MAX_WIDTH = 1048576


class StataError(Exception):
    pass


def order(cell):
    """The key of Stata's order: numbers, then `.`, then `.a` to `.z`; texts by their bytes."""
    if isinstance(cell, bytes):
        return (0, cell)
    return (1, 0.0, cell.tag) if isinstance(cell, Missing) else (0, cell, "")


def check_name(name):
    if not re.fullmatch("[A-Za-z_][A-Za-z0-9_]{0,31}", name) or name in RESERVED or re.fullmatch(r"str[0-9]+", name):
        raise StataError(f"{name} invalid name, r(198)")


class Data:
    def __init__(self):
        self.names = []
        self.types = {}
        self.columns = {}
        self.count = 0
        self.variable_labels = {}
        self.attached = {}
        self.labels = {}
        self.label = ""
        self.maxvar = MAX_VARIABLES

    def copy(self):
        made = Data()
        made.maxvar = self.maxvar
        made.names, made.types, made.count, made.label = list(self.names), dict(self.types), self.count, self.label
        made.columns = {name: list(cells) for name, cells in self.columns.items()}
        made.variable_labels, made.attached = dict(self.variable_labels), dict(self.attached)
        made.labels = {name: dict(labels) for name, labels in self.labels.items()}
        return made

    @property
    def rows(self):
        return [list(row) for row in zip(*(self.columns[name] for name in self.names))]

    @property
    def value_labels(self):
        return {name: self.labels.get(of, {}) for name, of in self.attached.items()}

    def add(self, name, kind, cells):
        check_name(name)
        if name in self.columns:
            raise StataError(f"variable {name} already defined, r(110)")
        if len(self.names) >= self.maxvar:
            raise StataError("no room to add more variables, r(900)")
        self.names.append(name)
        self.types[name] = kind
        self.columns[name] = cells

    def drop(self, name):
        self.names.remove(name)
        del self.types[name], self.columns[name]
        self.variable_labels.pop(name, None)
        self.attached.pop(name, None)

    def keep_rows(self, kept):
        for name in self.names:
            self.columns[name] = [cell for cell, is_kept in zip(self.columns[name], kept) if is_kept]
        self.count = sum(map(bool, kept))

    def permute(self, places):
        for name in self.names:
            self.columns[name] = [self.columns[name][place] for place in places]
        self.count = len(places)


def stored(cell, kind):
    """The cell as a variable of this type holds it. A number that does not fit becomes missing with `generate`."""
    if kind.startswith("str"):
        if not isinstance(cell, bytes):
            raise StataError("type mismatch, r(109)")
        return cell if kind == "strL" else cell[:int(kind[3:])]
    if isinstance(cell, bytes):
        raise StataError("type mismatch, r(109)")
    if isinstance(cell, Missing) or kind == "double":
        return cell
    if cell != math.trunc(cell) or not LIMITS[kind][0] <= cell <= LIMITS[kind][1]:
        raise StataError(f"{cell} does not fit into a variable of type {kind}")
    return cell


# -------------------------------------------------------------------------------------------------------- lines

def logical_lines(text):
    """Lines of a do-file without comments, joined at `///`. Within quotes nothing is a comment."""
    text = without_blocks(text)
    lines, pending = [], ""
    for line in text.split("\n"):
        line, is_continued = without_line_comment(line)
        pending += line + (" " if is_continued else "")
        if not is_continued:
            lines.append(pending)
            pending = ""
    return lines


def without_blocks(text):
    """Without /* */, which also begin within a comment of a line."""
    made, i, depth, quotes = [], 0, 0, 0
    while i < len(text):
        pair = text[i:i + 2]
        if depth == 0 and pair == '`"':
            quotes += 1
        elif depth == 0 and quotes and pair == "\"'":
            quotes -= 1
        if text[i] == "\n":
            quotes = 0
        if not quotes and pair == "/*":
            depth += 1
            i += 2
            continue
        if depth and pair == "*/":
            depth -= 1
            i += 2
            continue
        if not depth:
            made.append(text[i])
        i += 1
    if depth:
        raise StataError("a comment /* does not end")
    return "".join(made)


def without_line_comment(line):
    if line.lstrip().startswith("*"):
        return "", bool(re.search(r"(^|\s)///", line))
    for match in re.finditer(r"(?:^|(?<=\s))//", line):
        if not is_quoted(line[:match.start()]):
            return line[:match.start()], line[match.start():].startswith("///")
    return line, False


def is_quoted(before):
    """Whether the end of the text lies within quotes."""
    depth, plain, i = 0, False, 0
    while i < len(before):
        if not plain and before[i:i + 2] == '`"':
            depth, i = depth + 1, i + 1
        elif depth and before[i:i + 2] == "\"'":
            depth, i = depth - 1, i + 1
        elif not depth and before[i] == '"':
            plain = not plain
        i += 1
    return plain or depth > 0


# -------------------------------------------------------------------------------------------------- expressions

TOKEN = re.compile(r"""\s*(?:(?P<number>[0-9]+\.?[0-9]*(?:[eE][+-]?[0-9]+)?|\.[0-9]+(?:[eE][+-]?[0-9]+)?)
    |(?P<missing>\.[a-z]?(?![A-Za-z0-9_]))|(?P<name>[A-Za-z_][A-Za-z0-9_]*)
    |(?P<operator>==|!=|<=|>=|[-+*/^&|!<>(),\[\]]))""", re.VERBOSE)


def text_at(text, i):
    """The text in quotes at a place, and the place after it; None if there is none."""
    if text.startswith('`"', i):
        depth, k = 1, i + 2
        while k < len(text):
            if text.startswith('`"', k):
                depth, k = depth + 1, k + 1
            elif text.startswith("\"'", k):
                depth -= 1
                if depth == 0:
                    return text[i + 2:k], k + 2
                k += 1
            k += 1
        raise StataError("too few quotes, r(132)")
    if text.startswith('"', i):
        end = text.find('"', i + 1)
        if end < 0:
            raise StataError("too few quotes, r(132)")
        return text[i + 1:end], end + 1
    return None


def tokens_of(text):
    tokens, i = [], 0
    while text[i:].strip():
        while text[i].isspace():
            i += 1
        quoted = text_at(text, i)
        if quoted:
            tokens.append(("text", quoted[0]))
            i = quoted[1]
            continue
        match = TOKEN.match(text, i)
        if not match:
            raise StataError(f"invalid syntax at {text[i:i + 20]!r}, r(198)")
        tokens.append((match.lastgroup, match.group(match.lastgroup)))
        i = match.end()
    return tokens


def is_true(cell):
    if isinstance(cell, bytes):
        raise StataError("type mismatch, r(109)")
    return isinstance(cell, Missing) or cell != 0


def number(cell):
    if isinstance(cell, bytes):
        raise StataError("type mismatch, r(109)")
    return cell


def text(cell):
    if not isinstance(cell, bytes):
        raise StataError("type mismatch, r(109)")
    return cell


def real(cell):
    """The number that a text is; missing if it is none. `1e2`, `1d2` and `.` are read as Stata reads them."""
    made = text(cell).strip(b" ").decode("latin-1")
    if re.fullmatch(r"\.[a-z]?", made):
        return Missing(made[1:])
    if not re.fullmatch(r"[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eEdD][+-]?[0-9]+)?", made):
        return DOT
    made = float(re.sub("[dD]", "e", made))
    return made if abs(made) < MAX_DOUBLE else DOT


def substr(cell, start, length):
    """Bytes from a 1-based place; a negative one counts from the end. Missing length: to the end."""
    cell, start = text(cell), int(number(start))
    if start == 0 or abs(start) > len(cell):
        return b""
    first = start - 1 if start > 0 else len(cell) + start
    return cell[first:] if isinstance(length, Missing) else cell[first:first + max(0, int(length))]


def regexm(cell, pattern):
    """Stata's own expressions: `*`, `+`, `?`, `.`, `^`, `$`, `|`, brackets and groups, on bytes."""
    pattern = text(pattern)
    if re.search(rb"[{}\\]", pattern):
        raise StataError("regexm: unknown in Stata 13")
    return float(bool(re.search(re.sub(rb"\$(?=$|\))", rb"\\Z", pattern), text(cell), re.DOTALL)))


def from_windows_1252(cell, encoding, mode):
    if encoding != b"windows-1252" or mode != 1:
        raise StataError("ustrfrom: not known here")
    free = b"\x81\x8d\x8f\x90\x9d"
    return "".join(chr(byte) if byte in free else bytes([byte]).decode("cp1252") for byte in text(cell)).encode("utf-8")


def power(base, exponent):
    return float(base) ** float(exponent)


FUNCTIONS = {
    "real": real, "substr": substr, "regexm": regexm, "ustrfrom": from_windows_1252,
    "trim": lambda cell: text(cell).strip(b" "), "rtrim": lambda cell: text(cell).rstrip(b" "),
    "strpos": lambda cell, part: float(text(cell).find(text(part)) + 1),
    "char": lambda code: bytes([int(code)]) if code else b"\0",
    "max": lambda *cells: max((cell for cell in cells if not isinstance(cell, Missing)), default=DOT),
}


class Expression:
    """A parsed expression; value(row) computes it. Precedence as in the manual: ! and unary minus, ^, * /, + -, comparisons, &, |."""

    LEVELS = [["|"], ["&"], ["==", "!=", "<", "<=", ">", ">="], ["+", "-"], ["*", "/"]]

    def __init__(self, source, stata):
        self.stata = stata
        self.tokens = tokens_of(source)
        kinds = [kind for kind, _ in self.tokens]
        limits = (("operator", MAX_OPERATORS), ("number", MAX_NUMBERS), ("text", MAX_LITERALS))
        if any(kinds.count(kind) > limit for kind, limit in limits):
            raise StataError("expression too long, r(130)")
        self.place = 0
        self.value = self.level(0)
        if self.place < len(self.tokens):
            raise StataError(f"invalid syntax: {source}, r(198)")

    def peek(self):
        return self.tokens[self.place] if self.place < len(self.tokens) else (None, None)

    def take(self, wanted=None):
        kind, token = self.peek()
        if kind is None or (wanted and token != wanted):
            raise StataError(f"invalid syntax: {wanted or 'an operand'} expected, r(198)")
        self.place += 1
        return kind, token

    def level(self, depth):
        if depth == len(self.LEVELS):
            return self.raised()
        left = self.level(depth + 1)
        while self.peek()[0] == "operator" and self.peek()[1] in self.LEVELS[depth]:
            operator = self.take()[1]
            left = self.binary(operator, left, self.level(depth + 1))
        return left

    def raised(self):
        left = self.unary()
        while self.peek() == ("operator", "^"):
            self.take()
            left = self.binary("^", left, self.unary())
        return left

    def unary(self):
        if self.peek() == ("operator", "!"):
            self.take()
            operand = self.unary()
            return lambda row: float(not is_true(operand(row)))
        if self.peek() == ("operator", "-"):
            self.take()
            operand = self.raised()
            return lambda row: negated(number(operand(row)))
        return self.operand()

    def operand(self):
        kind, token = self.take()
        if kind == "number":
            return lambda row, made=float(token): made
        if kind == "missing":
            return lambda row, made=Missing(token[1:]): made
        if kind == "text":
            return lambda row, made=token.encode("utf-8"): made
        if token == "(":
            inner = self.level(0)
            self.take(")")
            return inner
        if kind != "name":
            raise StataError(f"invalid syntax at {token}, r(198)")
        if self.peek() == ("operator", "("):
            return self.call(token)
        if self.peek() == ("operator", "["):
            self.take()
            place = self.level(0)
            self.take("]")
            return lambda row: self.stata.cell(token, int(place(row)) - 1)
        return lambda row: self.stata.name_value(token, row)

    def call(self, name):
        self.take("(")
        if name in ("scalar", "r", "c"):
            inner = self.take()[1]
            self.take(")")
            return lambda row: self.stata.result(name, inner)
        if name not in FUNCTIONS:
            raise StataError(f"unknown function {name}(), r(133)")
        operands = [self.level(0)]
        while self.peek() == ("operator", ","):
            self.take()
            operands.append(self.level(0))
        self.take(")")
        return lambda row: FUNCTIONS[name](*(operand(row) for operand in operands))

    @staticmethod
    def binary(operator, left, right):
        return lambda row: computed(operator, left(row), right(row))


def negated(cell):
    return cell if isinstance(cell, Missing) else -cell


def computed(operator, left, right):
    if operator in ("&", "|"):
        return float((is_true(left) and is_true(right)) if operator == "&" else (is_true(left) or is_true(right)))
    if operator == "*" and isinstance(left, float) and isinstance(right, bytes):
        return right * int(left)
    if isinstance(left, bytes) != isinstance(right, bytes):
        raise StataError("type mismatch, r(109)")
    if operator in ("==", "!=", "<", "<=", ">", ">="):
        a, b = order(left), order(right)
        return float({"==": a == b, "!=": a != b, "<": a < b, "<=": a <= b, ">": a > b, ">=": a >= b}[operator])
    if isinstance(left, bytes):
        if operator != "+":
            raise StataError("type mismatch, r(109)")
        return left + right
    if isinstance(left, Missing) or isinstance(right, Missing):
        return DOT
    if operator == "/" and right == 0:
        return DOT
    return {"+": lambda: left + right, "-": lambda: left - right, "*": lambda: left * right, "/": lambda: left / right,
            "^": lambda: power(left, right)}[operator]()


# ----------------------------------------------------------------------------------------------------- commands

class Exit(Exception):
    pass


class Outcome:
    def __init__(self):
        self.printed = []
        self.files = {}


class Stata:
    def __init__(self, directory, arguments, release, takes_blanks_off):
        self.directory = directory
        self.arguments = list(arguments)
        self.release = release
        self.takes_blanks_off = takes_blanks_off
        self.data = Data()
        self.locals = {}
        self.scalars = {}
        self.results = {}
        self.outcome = Outcome()
        self.temporary = {}

    # --- values

    def cell(self, name, row):
        if name not in self.data.columns:
            raise StataError(f"{name} not found, r(111)")
        if not 0 <= row < self.data.count:
            return b"" if self.data.types[name].startswith("str") else DOT
        return self.data.columns[name][row]

    def name_value(self, name, row):
        if name == "_n":
            return float(self.group_place[row] if self.group_place else row + 1)
        if name == "_N":
            return float(self.data.count)
        if name in self.data.columns:
            return self.cell(name, row)
        raise StataError(f"{name} not found, r(111)")

    group_place = None

    def result(self, of, name):
        if of == "scalar":
            if name not in self.scalars:
                raise StataError(f"scalar {name} not found, r(111)")
            return self.scalars[name]
        if of == "r":
            return self.results.get(name, DOT)
        if name == "stata_version":
            return float(self.release)
        raise StataError(f"c({name}) is not known here")

    # --- macros

    def expanded(self, line):
        """A line with its macros expanded, from the left; what a macro holds is expanded too, but not with macval()."""
        made, i = "", 0
        while i < len(line):
            if line[i] == "\\" and line[i + 1:i + 2] in ("`", "$"):
                made += line[i + 1]
                i += 2
            elif line[i] == "`" and line[i + 1:i + 2] != '"':
                i, part = self.local_at(line, i)
                made += part
            elif line[i] == "$" and re.match(r"[A-Za-z_{]", line[i + 1:i + 2]):
                raise StataError(f"the global macro at {line[i:i + 20]!r} is expanded")
            else:
                made += line[i]
                i += 1
        return made

    def local_at(self, line, i):
        end = line.find("'", i)
        name = line[i + 1:end]
        if end < 0 or "`" in name:
            raise StataError(f"a backquote without its end, or a macro within a macro: {line[i:i + 30]!r}")
        value = re.fullmatch(r"macval\((\w+)\)", name)
        if value:
            return end + 1, self.locals.get(value.group(1), "")
        if not re.fullmatch(r"\w+", name):
            raise StataError(f"invalid macro name {name!r}")
        return end + 1, self.expanded(self.locals.get(name, ""))

    # --- blocks

    def run(self, lines):
        """Runs lines; a block begins with a line that ends in `{`."""
        i = 0
        while i < len(lines):
            line = lines[i].strip()
            if line.endswith("{"):
                end = self.end_of_block(lines, i)
                self.block(line[:-1].strip(), lines[i + 1:end])
                i = end + 1
                continue
            if line:
                self.command(line)
            i += 1

    @staticmethod
    def end_of_block(lines, start):
        depth = 0
        for i in range(start, len(lines)):
            line = lines[i].strip()
            depth += line.endswith("{") - (line == "}")
            if depth == 0:
                return i
        raise StataError("a block does not end, r(198)")

    def block(self, head, lines):
        """The manual does not say that a brace within a text is no end of a block, so that there may be none."""
        for line in lines:
            if re.search("[{}]", line.strip()[:-1]):
                raise StataError(f"a brace within a block: {line[:60]}")
        if head == "quietly":
            self.run(lines)
        elif head.startswith("if "):
            if is_true(Expression(self.expanded(head[3:]), self).value(0)):
                self.run(lines)
        else:
            raise StataError(f"unrecognized block: {head}")

    def command(self, line):
        line = self.expanded(line).strip()
        while line.startswith(("quietly ", "noisily ")):
            line = line.split(" ", 1)[1].strip()
        name = re.match(r"\w+", line)
        method = getattr(self, "do_" + name.group(), None) if name else None
        if not method:
            raise StataError(f"unrecognized command: {line[:60]}, r(199)")
        method(line[name.end():].strip())

    # --- options and conditions

    @staticmethod
    def split_outside(line, pattern):
        """The parts before and after the first match that is not within quotes or parentheses."""
        i, depth = 0, 0
        while i < len(line):
            quoted = text_at(line, i)
            if quoted:
                i = quoted[1]
                continue
            match = re.match(pattern, line[i:]) if depth == 0 else None
            if match:
                return line[:i], line[i + match.end():]
            depth += (line[i] == "(") - (line[i] == ")")
            i += 1
        return line, None

    def rows_if(self, condition):
        if condition is None:
            return list(range(self.data.count))
        value = Expression(condition, self).value
        return [row for row in range(self.data.count) if is_true(value(row))]

    # --- commands that set up

    def do_version(self, rest):
        if float(rest) > self.release:
            raise StataError(f"this is version {self.release} of Stata, r(9)")

    maxvar = MAX_VARIABLES

    def do_clear(self, rest):
        self.data = Data()
        self.data.maxvar = self.maxvar

    def do_args(self, rest):
        for place, name in enumerate(rest.split()):
            self.locals[name] = self.arguments[place] if place < len(self.arguments) else ""

    def do_local(self, rest):
        name, expression = self.split_outside(rest, r"\s*=\s*")
        if expression is None:
            name, _, text_of_macro = rest.partition(" ")
            quoted = text_at(text_of_macro.strip(), 0)
            self.locals[name] = quoted[0] if quoted else text_of_macro.strip()
            return
        if len(name.strip()) > 31:
            raise StataError("the name of a macro is too long")
        value = Expression(expression, self).value(0)
        self.locals[name.strip()] = value.decode("utf-8") if isinstance(value, bytes) else "%.16g" % value

    def do_scalar(self, rest):
        name, expression = self.split_outside(rest, r"\s*=\s*")
        self.scalars[name] = Expression(expression, self).value(0)

    def do_tempfile(self, rest):
        for name in rest.split():
            self.locals[name] = "temporary/" + name

    def do_set(self, rest):
        match = re.fullmatch(r"maxvar ([0-9]+)", rest)
        if not match or not MAX_VARIABLES <= int(match.group(1)) <= 120000 or self.data.names:
            raise StataError(f"set {rest} is not known here, or not with data in memory")
        self.maxvar = self.data.maxvar = int(match.group(1))

    def do_exit(self, rest):
        raise Exit(int(rest or 0))

    def do_display(self, rest):
        made, rest = "", re.sub(r"^as (text|error)\s+", "", rest)
        while rest:
            quoted = text_at(rest, 0)
            if quoted:
                made, rest = made + quoted[0], rest[quoted[1]:].strip()
                continue
            match = re.match(r"%1\.0f\s+(r\(N\)|_N|\w+\[[0-9]+\])\s*", rest)
            if not match:
                raise StataError(f"display: {rest} is not known here")
            made += str(int(Expression(match.group(1), self).value(0)))
            rest = rest[match.end():]
        self.outcome.printed.append(made)

    # --- data

    def do_infix(self, rest):
        before, options = self.split_outside(rest, r"\s*,\s*")
        if before.startswith("using "):
            name = text_at(before[6:].strip(), 0)[0]
            path = text_at(re.fullmatch(r"using\((.*)\)", options, re.DOTALL).group(1), 0)[0]
            with open(os.path.join(self.directory, name), encoding="utf-8") as file:
                specifications = dictionary_of(file.read())
        else:
            listed, path = self.split_outside(before, r"\s+using\s+")
            specifications = specifications_of(listed)
            path = text_at(path, 0)[0]
            if options != "clear":
                raise StataError(f"infix: option {options} is not known here")
            self.do_clear("")
        if self.data.names:
            raise StataError("no; data in memory would be lost, r(4)")
        self.read(specifications, os.path.join(self.directory, path))

    def read(self, specifications, path):
        try:
            with open(path, "rb") as file:
                lines = file.read().split(b"\n")
        except OSError as error:
            raise StataError(f"file {path} not found, r(601)") from error
        if lines[-1] == b"":
            lines.pop()
        lines = [line[:-1] if line.endswith(b"\r") else line for line in lines]
        self.data.count = len(lines)
        if sum(last - first + 1 for _, first, last in specifications) > MAX_WIDTH:
            raise StataError("no room to add more variables: the rows are too wide, r(902)")
        for name, first, last in specifications:
            self.data.add(name, f"str{last - first + 1}", [self.field(line[first - 1:last]) for line in lines])

    def field(self, cell):
        return cell.strip(b" ") if self.takes_blanks_off else cell.rstrip(b" ")

    def do_generate(self, rest):
        self.generate(rest)

    def generate(self, rest):
        head, condition = self.split_outside(rest, r"\s+if\s+")
        target, expression = self.split_outside(head, r"\s*=(?!=)\s*")
        kind, name = target.split() if " " in target else ("float", target)
        if kind not in ("byte", "int", "long", "double", "strL"):
            if not re.fullmatch(r"str[1-9][0-9]*", kind) or int(kind[3:]) > MAX_TEXT:
                raise StataError(f"type {kind} is not known here, r(198)")
        empty = b"" if kind.startswith("str") else DOT
        cells = [empty] * self.data.count
        value = Expression(expression, self).value
        for row in self.rows_if(condition):
            cells[row] = stored(value(row), kind)
        self.data.add(name, kind, cells)

    def do_replace(self, rest):
        head, place = self.split_outside(rest, r"\s+in\s+(?=[0-9]+$)")
        head, condition = self.split_outside(head, r"\s+if\s+")
        name, expression = self.split_outside(head, r"\s*=(?!=)\s*")
        if name not in self.data.columns:
            raise StataError(f"{name} not found, r(111)")
        value = Expression(expression, self).value
        for row in [int(place) - 1] if place else self.rows_if(condition):
            self.set_cell(name, row, value(row))

    def set_cell(self, name, row, cell):
        """replace promotes the type of a text, and refuses another one."""
        kind = self.data.types[name]
        if kind.startswith("str") != isinstance(cell, bytes):
            raise StataError("type mismatch, r(109)")
        if isinstance(cell, bytes) and kind != "strL" and len(cell) > int(kind[3:]):
            self.data.types[name] = f"str{len(cell)}" if len(cell) <= MAX_TEXT else "strL"
        self.data.columns[name][row] = stored(cell, self.data.types[name])

    def do_keep(self, rest):
        kept = set(self.rows_if(self.condition_of(rest)))
        self.data.keep_rows([row in kept for row in range(self.data.count)])

    @staticmethod
    def condition_of(rest):
        if not rest.startswith("if "):
            raise StataError(f"{rest} is not known here")
        return rest[3:]

    def do_drop(self, rest):
        if rest.startswith("if "):
            dropped = set(self.rows_if(rest[3:]))
            self.data.keep_rows([row not in dropped for row in range(self.data.count)])
            return
        for pattern in rest.split():
            names = [name for name in self.data.names if re.fullmatch(pattern.replace("*", r"\w*"), name)]
            if not names:
                raise StataError(f"variable {pattern} not found, r(111)")
            for name in names:
                self.data.drop(name)

    def do_rename(self, rest):
        old, new = rest.split()
        if old not in self.data.columns:
            raise StataError(f"variable {old} not found, r(111)")
        kind, cells = self.data.types[old], self.data.columns[old]
        self.data.drop(old)
        self.data.add(new, kind, cells)

    def do_expand(self, rest):
        places = list(range(self.data.count))
        self.data.permute(places + [place for place in places for _ in range(int(rest) - 1)])

    def do_sort(self, rest):
        self.sort(rest.split())

    def sort(self, names):
        for name in names:
            self.cell(name, 0)
        key = lambda row: [order(self.data.columns[name][row]) for name in names]
        self.data.permute(sorted(range(self.data.count), key=key))

    def do_bysort(self, rest):
        head, command = rest.split(":", 1)
        match = re.fullmatch(r"([\w\s]+?)\s*(?:\((.*)\))?\s*", head)
        groups, within = match.group(1).split(), (match.group(2) or "").split()
        self.sort(groups + within)
        key = lambda row: [order(self.data.columns[name][row]) for name in groups]
        places = []
        for row in range(self.data.count):
            places.append(places[-1] + 1 if row and key(row) == key(row - 1) else 1)
        self.group_place = places
        name, _, rest = command.strip().partition(" ")
        if name != "generate" or not rest.endswith("= _n"):
            raise StataError(f"bysort: {command} is not known here")
        self.generate(rest)
        self.group_place = None

    def do_count(self, rest):
        self.results["N"] = float(len(self.rows_if(self.condition_of(rest))))

    # --- labels

    def do_label(self, rest):
        name, _, rest = rest.partition(" ")
        method = {"variable": self.label_variable, "define": self.label_define, "values": self.label_values, "data": self.label_data}.get(name)
        if not method:
            raise StataError(f"label {name} is not known here")
        method(rest.strip())

    def whole_text(self, rest):
        quoted = text_at(rest, 0)
        if not quoted or rest[quoted[1]:].strip():
            raise StataError(f"invalid label: {rest[:60]}, r(198)")
        return quoted[0]

    def label_variable(self, rest):
        name, _, label = rest.partition(" ")
        self.cell(name, 0)
        self.data.variable_labels[name] = self.whole_text(label)
        if len(self.data.variable_labels[name]) > 80:
            raise StataError(f"the label of {name} is longer than 80 characters")

    def label_data(self, rest):
        self.data.label = self.whole_text(rest)
        if len(self.data.label) > 80:
            raise StataError("the label of the data is longer than 80 characters")

    def label_define(self, rest):
        rest, option = self.split_outside(rest, r"\s*,\s*")
        name, code, label = rest.split(" ", 2)
        check_name(name)
        if (name in self.data.labels) != (option == "add"):
            raise StataError(f"label {name} already defined, or not defined, r(110)")
        code = self.code_of(code)
        labels = self.data.labels.setdefault(name, {})
        if code in labels:
            raise StataError(f"{code} already labelled, r(180)")
        labels[code] = self.whole_text(label)
        if len(labels[code]) > 32000 or len(labels) > 65536:
            raise StataError("too many labels, or a label that is too long")

    @staticmethod
    def code_of(code):
        if re.fullmatch(r"\.[a-z]", code):
            return Missing(code[1:])
        if not re.fullmatch(r"-?[0-9]+", code) or not LIMITS["long"][0] <= int(code) <= LIMITS["long"][1]:
            raise StataError(f"{code} may not be labelled, r(180)")
        return float(code)

    def label_values(self, rest):
        name, label = rest.split()
        if self.data.types.get(name, "str").startswith("str"):
            raise StataError(f"{name}: may not label strings, r(181)")
        if label not in self.data.labels:
            raise StataError(f"label {label} not found")
        self.data.attached[name] = label

    # --- files

    def do_save(self, rest):
        before, option = self.split_outside(rest, r"\s*,\s*")
        name = self.whole_text(before)
        if name.startswith("temporary/"):
            self.temporary[name] = self.data.copy()
        elif option == "replace":
            self.outcome.files[name] = self.data.copy()
        else:
            raise StataError(f"file {name} already exists, r(602)")

    def do_use(self, rest):
        before, option = self.split_outside(rest, r"\s*,\s*")
        name = self.whole_text(before)
        if option != "clear" or name not in self.temporary:
            raise StataError(f"file {name} not found, r(601)")
        self.data = self.temporary[name].copy()


def specifications_of(listed):
    """(name, first column, last column) of each text that infix reads."""
    parts = re.findall(r"\s*str\s+(\w+)\s+([0-9]+)-([0-9]+)", listed)
    if re.sub(r"\s*str\s+\w+\s+[0-9]+-[0-9]+", "", listed).strip():
        raise StataError(f"infix: {listed[:60]} is not known here")
    made = [(name, int(first), int(last)) for name, first, last in parts]
    for name, first, last in made:
        if not 1 <= first <= last < first + MAX_TEXT:
            raise StataError(f"infix: the columns of {name} are invalid")
    return made


def dictionary_of(text):
    lines = [line for line in text.split("\n") if line.strip() and not line.lstrip().startswith("*")]
    if lines[0].strip() != "infix dictionary {" or lines[-1].strip() != "}":
        raise StataError("this is no dictionary of infix")
    return specifications_of(" ".join(lines[1:-1]))


def run(do_file, arguments=(), release=17, takes_blanks_off=True):
    """Runs a do-file in its directory. Nothing is written: what it saves is in the Outcome."""
    with open(do_file, encoding="utf-8") as file:
        lines = logical_lines(file.read())
    stata = Stata(os.path.dirname(os.path.abspath(do_file)), arguments, release, takes_blanks_off)
    try:
        stata.run(lines)
    except Exit as end:
        if end.args[0]:
            stata.outcome.printed.append(f"r({end.args[0]})")
            stata.outcome.files = {}
            raise StataError("\n".join(stata.outcome.printed)) from end
    return stata.outcome
