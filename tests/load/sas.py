#!/usr/bin/env python3
"""An interpreter of the part of SAS that load programs use, written from the rules of the manual of SAS.

    run(program, data=None)     an Outcome; raises SasError where SAS reports an error. `data` replaces the value of %let data.

The session is one in UTF-8: SUBSTR counts bytes, KSUBSTR characters. Statements: %let; data _null_, data with one data
set; set, merge, by; length, infile, input, link, return, if/else, do, end, output, keep, drop, label, format, put, stop,
abort; assignments and sums; proc format with value; proc sort. Anything else is refused, and so is what SAS refuses:
names that are too long, a variable without a length or a type, ranges of a format that overlap, a format that is not
defined or ends with a digit, labels above their limits.

Outcome      log: lines that `put` wrote; tables: name -> DataSet, of the library of the program; formats: name -> entries
DataSet      names; types ("num", or the bytes of a text); rows; labels; formats; label
Cell         bytes: a text without the blanks at its end. float: a number. Missing(""), Missing("M") ...
Entry        (low, low_is_included, high, high_is_included, label), low and high numbers, Missing or bytes
"""

import functools
import math
import os
import re
import sys

from missing import DOT, Missing

MAX_NAME = 32
MAX_TEXT = 32767
OPERATORS = set("and or not eq ne gt lt ge le in min max".split())  # as words


class SasError(Exception):
    pass


def order(cell):
    if isinstance(cell, bytes):
        return (0, cell)
    return (0, ord(cell.tag) if cell.tag else 1) if isinstance(cell, Missing) else (1, cell)


class DataSet:
    def __init__(self):
        self.names = []
        self.types = {}
        self.rows = []
        self.labels = {}
        self.formats = {}
        self.label = ""


class Outcome:
    def __init__(self):
        self.log = []
        self.tables = {}
        self.formats = {}


# ------------------------------------------------------------------------------------------------------ tokens

TOKEN = re.compile(r"""\s+ | /\*.*?\*/ | (?P<hex>'[0-9A-Fa-f]*'x) | (?P<text>'(?:[^']|'')*')
    | (?P<informat>\$char[0-9]+\.) | (?P<number>[0-9]+\.?[0-9]*(?:e[+-]?[0-9]+)?|\.[0-9]+)
    | (?P<missing>\.[A-Z_]?(?![A-Za-z0-9_])) | (?P<name>[A-Za-z_][A-Za-z0-9_]*)
    | (?P<operator>\*\*|<=|>=|[-+*/=<>(),;:@$.&%])""", re.VERBOSE | re.DOTALL)


def tokens_of(source):
    """(kind, text) of each token. A text in quotes may have several lines, which are one."""
    tokens, i = [], 0
    while i < len(source):
        match = TOKEN.match(source, i)
        if not match:
            raise SasError(f"unknown text: {source[i:i + 40]!r}")
        if match.lastgroup == "text":
            tokens.append(("text", match.group()[1:-1].replace("''", "'").replace("\n", "")))
            if len(tokens[-1][1].encode("utf-8")) > MAX_TEXT:
                raise SasError(f"a text of more than {MAX_TEXT} bytes")
        elif match.lastgroup == "missing" and tokens and re.match("[A-Za-z0-9_]", source[i - 1]):
            # The point after a library, `first` or a format.
            tokens += [("operator", ".")] + ([("name", match.group()[1:])] if len(match.group()) > 1 else [])
        elif match.lastgroup:
            tokens.append((match.lastgroup, match.group()))
        i = match.end()
    return tokens


def statements_of(source):
    """The statements of a program, each a list of tokens. `%let` takes its text as it is written."""
    statements, i = [], 0
    while i < len(source):
        let = re.compile(r"(?:\s|/\*.*?\*/)*%let\s+(\w+)\s*=([^;]*);", re.DOTALL).match(source, i)
        if let:
            statements.append([("let", (let.group(1), let.group(2).strip()))])
            i = let.end()
            continue
        end = end_of_statement(source, i)
        tokens = tokens_of(source[i:end + (source[end:end + 1] == ":")])
        if tokens:
            statements.append(tokens)
        i = end + 1
    return statements


def end_of_statement(source, i):
    """The place of the semicolon, which is not within quotes or a comment; a label ends at its colon."""
    while i < len(source):
        skipped = re.compile(r"/\*.*?\*/|'(?:[^']|'')*'", re.DOTALL).match(source, i)
        if skipped:
            i = skipped.end()
        elif source[i] == ";" or (source[i] == ":" and source[i + 1:i + 2] == "\n"):
            return i
        else:
            i += 1
    return len(source)


def check_name(name, limit=MAX_NAME):
    if not re.fullmatch("[A-Za-z_][A-Za-z0-9_]*", name) or len(name) > limit:
        raise SasError(f"the name {name} is not valid")


# -------------------------------------------------------------------------------------------------- expressions

class Parser:
    """Parses the tokens of one statement; an expression becomes a function of a step."""

    def __init__(self, tokens):
        self.tokens = tokens
        self.place = 0

    def peek(self, ahead=0):
        place = self.place + ahead
        return self.tokens[place] if place < len(self.tokens) else (None, None)

    def word(self):
        kind, token = self.peek()
        return token.lower() if kind == "name" else None

    def take(self, wanted=None):
        kind, token = self.peek()
        if kind is None or (wanted is not None and token.lower() != wanted):
            raise SasError(f"{wanted or 'more'} expected in {self.tokens}")
        self.place += 1
        return token

    def whole(self, what):
        token = self.take()
        if not re.fullmatch("[0-9]+", token):
            raise SasError(f"{what} is {token}")
        return int(token)

    def accept(self, wanted):
        kind, token = self.peek()
        if kind in ("name", "operator") and token.lower() == wanted:
            self.place += 1
            return True
        return False

    def at_end(self):
        return self.place >= len(self.tokens)

    def expression(self):
        left = self.conjunction()
        while self.accept("or"):
            left = self.joined("or", left, self.conjunction())
        return left

    def conjunction(self):
        left = self.negation()
        while self.accept("and"):
            left = self.joined("and", left, self.negation())
        return left

    @staticmethod
    def joined(operator, left, right):
        if operator == "or":
            return lambda step: float(is_true(left(step)) or is_true(right(step)))
        return lambda step: float(is_true(left(step)) and is_true(right(step)))

    def negation(self):
        """NOT binds the comparison after it in the way that load programs write it: with parentheses, or `not in`."""
        if self.accept("not"):
            if self.peek()[1] != "(" and not (self.peek(1)[1] == "("):
                raise SasError("NOT without parentheses")
            operand = self.operand()
            return lambda step: float(not is_true(operand(step)))
        return self.comparison()

    COMPARISONS = {"=": "=", "ne": "ne", "<": "<", "<=": "<=", ">": ">", ">=": ">="}

    def comparison(self):
        """a < b <= c is a < b and b <= c."""
        left = self.sum()
        if self.peek()[1] and str(self.peek()[1]).lower() in ("in", "not"):
            return self.membership(left)
        parts = []
        while self.peek()[0] in ("operator", "name") and self.peek()[1].lower() in self.COMPARISONS:
            operator = self.take().lower()
            right = self.sum()
            parts.append((operator, left, right))
            left = right
        if not parts:
            return left
        return lambda step: float(all(compared(operator, a(step), b(step)) for operator, a, b in parts))

    def membership(self, left):
        is_not = self.accept("not")
        self.take("in")
        self.take("(")
        values = [self.sum()]
        while self.accept(","):
            values.append(self.sum())
        self.take(")")
        return lambda step: float(any(compared("=", left(step), value(step)) for value in values) != is_not)

    def sum(self):
        left = self.product()
        while self.peek()[1] in ("+", "-"):
            operator = self.take()
            left = self.binary(operator, left, self.product())
        return left

    def product(self):
        left = self.power()
        while self.peek()[1] in ("*", "/"):
            operator = self.take()
            left = self.binary(operator, left, self.power())
        return left

    def power(self):
        if self.accept("-"):
            operand = self.power()
            return self.binary("*", lambda step: -1.0, operand)
        left = self.operand()
        if self.accept("**"):
            return self.binary("**", left, self.power())
        return left

    @staticmethod
    def binary(operator, left, right):
        return lambda step: calculated(operator, left(step), right(step))

    def operand(self):
        kind, token = self.peek()
        self.place += 1
        if kind == "number":
            return lambda step, value=float(token): value
        if kind == "missing":
            return lambda step, value=Missing(token[1:]): value
        if kind == "text":
            return lambda step, value=token.encode("utf-8"): value
        if kind == "hex":
            return lambda step, value=bytes.fromhex(token[1:-2]): value
        if token == "(":
            inner = self.expression()
            self.take(")")
            return inner
        if kind != "name":
            raise SasError(f"an operand expected in {self.tokens}")
        if token.lower() in OPERATORS and self.peek()[1] != "(":
            raise SasError(f"{token} is no operand")
        if self.peek()[1] == "(":
            return self.call(token.lower())
        if self.peek()[1] == "." and token.lower() in ("first", "last"):
            self.take(".")
            name = token.lower() + "." + self.take().lower()
            return lambda step: step.value(name)
        return lambda step, name=token.lower(): step.value(name)

    def call(self, name):
        self.take("(")
        operands = []
        while self.peek()[1] != ")":
            if name == "input" and operands:
                operands.append(lambda step, informat=self.informat(): informat)
            else:
                operands.append(self.expression())
            if self.peek()[1] != ")":
                self.take(",")
        self.take(")")
        if name in STEP_FUNCTIONS:
            return lambda step: STEP_FUNCTIONS[name](step, *(operand(step) for operand in operands))
        if name not in FUNCTIONS:
            raise SasError(f"the function {name} is not known here")
        return lambda step: FUNCTIONS[name](*(operand(step) for operand in operands))

    def informat(self):
        token = self.take()
        if not re.fullmatch(r"[0-9]+\.", token) or not 1 <= int(token[:-1]) <= 32:
            raise SasError(f"the informat {token} is not known here")
        return int(token[:-1])


def is_true(cell):
    if isinstance(cell, bytes):
        raise SasError("a text as a condition")
    return not isinstance(cell, Missing) and cell != 0


def compared(operator, left, right):
    if isinstance(left, bytes) != isinstance(right, bytes):
        raise SasError(f"{left!r} is compared with {right!r}")
    if isinstance(left, bytes):
        width = max(len(left), len(right))
        left, right = left.ljust(width), right.ljust(width)
    a, b = order(left), order(right)
    return {"=": a == b, "ne": a != b, "<": a < b, "<=": a <= b, ">": a > b, ">=": a >= b}[operator]


def calculated(operator, left, right):
    if isinstance(left, bytes) or isinstance(right, bytes):
        raise SasError("a text in a calculation")
    if isinstance(left, Missing) or isinstance(right, Missing):
        return DOT
    if operator == "/" and right == 0:
        raise SasError("division by zero")
    return {"+": lambda: left + right, "-": lambda: left - right, "*": lambda: left * right, "/": lambda: left / right,
            "**": lambda: float(left) ** float(right)}[operator]()


def substr(cell, start, length=None):
    """Bytes of a text, whose blanks at the end count up to the length of the variable."""
    start = int(start)
    if not 1 <= start <= len(cell) or (length is not None and not 1 <= length <= len(cell) - start + 1):
        raise SasError(f"SUBSTR: {start} and {length} are not within {len(cell)} bytes")
    return cell[start - 1:] if length is None else cell[start - 1:start - 1 + int(length)]


@functools.lru_cache(maxsize=2)
def characters_of(cell):
    return cell.decode("utf-8", "surrogateescape")


def ksubstr(cell, start, length):
    return characters_of(cell)[int(start) - 1:int(start) - 1 + int(length)].encode("utf-8", "surrogateescape")


def prxmatch(pattern, cell):
    pattern = pattern.decode("ascii")
    if not re.fullmatch(r"/[^/]*/", pattern):
        raise SasError(f"the pattern {pattern}")
    found = re.search(pattern[1:-1].encode("ascii"), cell)
    return float(found.start() + 1 if found else 0)


def read_number(cell, width):
    """The informat w.: digits with a sign and a mark, blanks around them; it reads w bytes."""
    read = cell[:width].strip(b" ")
    if not re.fullmatch(rb"[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)", read):
        raise SasError(f"invalid argument of INPUT: {cell!r}")
    return float(read)


def place_of_first(cell, wanted):
    return float(min((i for i, byte in enumerate(cell) if byte in wanted), default=-1) + 1)


FUNCTIONS = {
    "substr": substr, "ksubstr": ksubstr, "prxmatch": prxmatch, "input": read_number,
    "left": lambda cell: cell.lstrip(b" "), "lengthn": lambda cell: float(len(cell.rstrip(b" "))),
    "indexc": place_of_first, "compress": lambda cell, removed: bytes(byte for byte in cell if byte not in removed),
    "verify": lambda cell, allowed: float(min((i for i, byte in enumerate(cell) if byte not in allowed), default=-1) + 1),
    "rank": lambda cell: float(cell[0]),
    "floor": lambda number: float(math.floor(number)),
}
STEP_FUNCTIONS = {
    "symget": lambda step, name: step.sas.macros[name.decode()].encode("utf-8"),
    "filename": lambda step, reference, path: step.sas.set_file(reference.decode(), path.decode("utf-8").rstrip()),
    "fexist": lambda step, reference: float(os.path.exists(step.sas.files[reference.decode()])),
    "libname": lambda step, library, path: step.sas.set_library(library.decode(), path.decode("utf-8").rstrip()),
    "pathname": lambda step, library: b"/work",
}


# ------------------------------------------------------------------------------------------------- the data step

class Return(Exception):
    """Ends a routine that LINK called, or one turn of the step."""


class NextTurn(Exception):
    """Ends a turn without a row."""


class Stop(Exception):
    pass


class Variable:
    def __init__(self, name, length):
        self.name = name
        self.length = length  # of a text; None for a number


class Step:
    """One data step: its statements, and the values of one turn."""

    def __init__(self, sas, statements):
        self.sas = sas
        self.variables = {}
        self.values = {}
        self.retained = set()
        self.automatic = {"_n_"}
        self.kept = self.dropped = None
        self.labels, self.formats = {}, {}
        self.by, self.sources, self.is_merge = [], [], False
        self.infile = None
        self.lines = self.pending = None
        self.rows = []
        head = Parser(statements[0])
        head.take("data")
        self.target, self.label = self.target_of(head)
        self.body, self.routines = self.compiled(statements[1:])

    @staticmethod
    def target_of(head):
        """The data set that the step makes, and its label; none for _null_."""
        name = head.take()
        if name.lower() == "_null_":
            return None, ""
        head.take(".")
        target, label = (name.lower(), head.take()), ""
        check_name(target[1])
        if head.accept("("):
            head.take("label")
            head.take("=")
            label = head.take()
            head.take(")")
        return target, label

    # --- compiling

    def compiled(self, statements):
        """The statements before the first label, and those after each."""
        routines, body, current = {}, [], []
        body = current
        places = list(statements)
        while places:
            tokens = places.pop(0)
            if len(tokens) > 1 and tokens[1] == ("operator", ":") and tokens[0][0] == "name":
                current = routines.setdefault(tokens[0][1].lower(), [])
                if tokens[2:]:
                    places.insert(0, tokens[2:])
                continue
            self.compile(Parser(tokens), places, current)
        return body, routines

    def compile(self, parser, places, into):
        """Appends the operation of one statement. A declaration takes effect at once."""
        word = parser.word()
        if word is None:
            raise SasError(f"a statement that begins with {parser.peek()[1]}")
        if word == "substr" and parser.peek(1)[1] == "(":
            into.append(self.substr_assignment(parser))
        elif parser.peek(1)[1] == "=" :
            into.append(self.assignment(parser))
        elif parser.peek(1)[1] == "+":
            into.append(self.sum_statement(parser))
        else:
            method = getattr(self, "statement_" + word, None)
            if not method:
                raise SasError(f"the statement {word} is not known here")
            parser.take()
            operation = method(parser, places)
            if operation:
                into.append(operation)
        if not parser.at_end():
            raise SasError(f"unexpected text in a statement: {parser.tokens[parser.place:]}")

    def block(self, places):
        """The operations up to END."""
        operations = []
        while True:
            if not places:
                raise SasError("DO without END")
            tokens = places.pop(0)
            if tokens[0][1] == "end" and len(tokens) == 1:
                return operations
            self.compile(Parser(tokens), places, operations)

    def assignment(self, parser):
        name = parser.take().lower()
        parser.take("=")
        value = parser.expression()
        self.see(name)
        return lambda: self.assign(name, value(self))

    def sum_statement(self, parser):
        name = parser.take().lower()
        parser.take("+")
        value = parser.expression()
        self.see(name)
        self.retained.add(name)
        self.values[name] = 0.0

        def add():
            added = value(self)
            self.values[name] += 0.0 if isinstance(added, Missing) else added
        return add

    def substr_assignment(self, parser):
        parser.take("substr")
        parser.take("(")
        name = parser.take().lower()
        parser.take(",")
        start = parser.expression()
        parser.take(",")
        length = parser.expression()
        parser.take(")")
        parser.take("=")
        value = parser.expression()

        def assign():
            first, width = int(start(self)) - 1, int(length(self))
            text = self.padded(name)
            self.assign(name, text[:first] + value(self)[:width].ljust(width) + text[first + width:])
        return assign

    def statement_if(self, parser, places):
        condition = parser.expression()
        if parser.at_end():
            return lambda: self.without_row() if not is_true(condition(self)) else None
        parser.take("then")
        then = self.branch(parser, places)
        otherwise = []
        if places and places[0][0] == ("name", "else"):
            following = Parser(places.pop(0))
            following.take("else")
            otherwise = self.branch(following, places)
        return lambda: self.execute(then if is_true(condition(self)) else otherwise)

    def branch(self, parser, places):
        operations = []
        rest = parser.tokens[parser.place:]
        parser.place = len(parser.tokens)
        self.compile(Parser(rest), places, operations)
        return operations

    def statement_do(self, parser, places):
        if parser.at_end():
            operations = self.block(places)
            return lambda: self.execute(operations)
        name = parser.take().lower()
        parser.take("=")
        first = parser.expression()
        parser.take("to")
        last = parser.expression()
        self.see(name)
        operations = self.block(places)

        def loop():
            self.values[name] = first(self)
            while self.values[name] <= last(self):
                self.execute(operations)
                self.values[name] += 1
        return loop

    def statement_length(self, parser, places):
        while not parser.at_end():
            name = parser.take()
            check_name(name)
            is_text = parser.accept("$")
            length = parser.whole(f"the length of {name}")
            if name.lower() in self.variables or not (1 <= length <= MAX_TEXT if is_text else length == 8):
                raise SasError(f"the length of {name}")
            self.add(name, length if is_text else None)

    def statement_infile(self, parser, places):
        self.infile = {"file": parser.take().lower()}
        while not parser.at_end():
            name = parser.take().lower()
            self.infile[name] = parser.take() if parser.accept("=") else True
        if set(self.infile) != {"file", "lrecl", "truncover", "termstr", "encoding", "end"} or self.infile["termstr"] != "lf":
            raise SasError("options of INFILE that are not known here")
        self.automatic.add(self.infile["end"].lower())

    def statement_input(self, parser, places):
        fields = []
        while not parser.at_end():
            parser.take("@")
            start, name, informat = int(parser.take()), parser.take().lower(), parser.take()
            width = int(re.fullmatch(r"\$char([0-9]+)\.", informat).group(1))
            if name not in self.variables or self.variables[name].length < width or start + width - 1 > int(self.infile["lrecl"]):
                raise SasError(f"INPUT: the columns of {name}")
            fields.append((start, name, width))
        return lambda: self.read(fields)

    def statement_link(self, parser, places):
        name = parser.take().lower()

        def call():
            if name not in self.routines:
                raise SasError(f"the label {name} is not defined")
            try:
                self.execute(self.routines[name])
            except Return:
                return
            raise SasError(f"the routine {name} does not end with RETURN")
        return call

    def statement_return(self, parser, places):
        return self.next_turn

    @staticmethod
    def next_turn():
        raise Return()

    @staticmethod
    def without_row():
        raise NextTurn()

    def statement_output(self, parser, places):
        self.has_output = True
        return self.output

    has_output = False

    def statement_stop(self, parser, places):
        def stop():
            raise Stop()
        return stop

    def statement_abort(self, parser, places):
        parser.take("cancel")

        def abort():
            raise SasError("\n".join(self.sas.outcome.log))
        return abort

    def names(self, parser):
        names = []
        while not parser.at_end():
            name = parser.take().lower()
            names.append(name + (":" if parser.accept(":") else ""))
        return names

    def statement_keep(self, parser, places):
        self.kept = self.names(parser)

    def statement_drop(self, parser, places):
        self.dropped = self.names(parser)

    def statement_by(self, parser, places):
        self.by = self.names(parser)
        self.automatic |= {f"{end}.{name}" for name in self.by for end in ("first", "last")}

    def statement_label(self, parser, places):
        name = parser.take().lower()
        parser.take("=")
        self.labels[name] = parser.take()
        if name not in self.variables or len(self.labels[name]) > 256:
            raise SasError(f"the label of {name}")

    def statement_format(self, parser, places):
        name = parser.take().lower()
        is_text = parser.accept("$")
        made = ("$" if is_text else "") + parser.take().lower()
        parser.take(".")
        if name not in self.variables or made not in self.sas.outcome.formats or is_text == (self.variables[name].length is None):
            raise SasError(f"the format {made} of {name}")
        self.formats[name] = made

    def statement_put(self, parser, places):
        parts = []
        while not parser.at_end():
            kind, token = parser.peek()
            parser.place += 1
            if kind == "text":
                parts.append(lambda token=token: token)
            else:
                parts.append(lambda name=token.lower(): self.printed(name) + " ")
        return lambda: self.sas.outcome.log.append("".join(part() for part in parts).rstrip())

    def printed(self, name):
        value = self.value(name)
        return value.decode("utf-8").rstrip() if isinstance(value, bytes) else repr(value) if isinstance(value, Missing) else "%.12g" % value

    def statement_set(self, parser, places):
        return self.source_statement(parser)

    def statement_merge(self, parser, places):
        self.is_merge = True
        return self.source_statement(parser)

    def source_statement(self, parser):
        while not parser.at_end():
            if parser.word() == "nobs":
                parser.take()
                parser.take("=")
                name = parser.take().lower()
                self.values[name] = float(len(self.sources[0][0].rows))
                self.automatic.add(name)
                self.retained.add(name)
                continue
            self.sources.append(self.source(parser))
        for data, renamed, kept, _ in self.sources:
            for name in kept:
                if renamed.get(name.lower(), name).lower() not in self.variables:
                    self.add(renamed.get(name.lower(), name), data.types[name])
            new_names = {name.lower(): renamed.get(name.lower(), name).lower() for name in kept}
            self.labels = {new_names[name]: text for name, text in data.labels.items() if name in new_names} | self.labels
            self.formats = {new_names[name]: made for name, made in data.formats.items() if name in new_names} | self.formats
        return self.read_source

    def source(self, parser):
        """(data set, new names, names that are kept, the variable of IN=)."""
        library, _, name = parser.take().lower(), parser.take("."), parser.take()
        data = self.sas.data_set(library, name)
        kept, renamed, flag = list(data.names), {}, None
        if parser.accept("("):
            while not parser.accept(")"):
                option = parser.take().lower()
                parser.take("=")
                if option == "in":
                    flag = parser.take().lower()
                    self.automatic.add(flag)
                elif option == "keep":
                    kept = []
                    while parser.peek()[1] not in (")", "rename"):
                        kept.append(next(each for each in data.names if each.lower() == parser.peek()[1].lower()))
                        parser.place += 1
                elif option == "rename":
                    parser.take("(")
                    old = parser.take().lower()
                    parser.take("=")
                    renamed[old] = parser.take()
                    parser.take(")")
                else:
                    raise SasError(f"the option {option} of a data set is not known here")
        return data, renamed, kept, flag

    # --- variables

    def add(self, name, length):
        self.variables[name.lower()] = Variable(name, length)
        self.values.setdefault(name.lower(), DOT if length is None else b"")

    def see(self, name):
        """A variable that a statement mentions first is a number; texts have a length before."""
        if name not in self.variables:
            check_name(name)
            self.add(name, None)

    def value(self, name):
        if name not in self.values and name not in self.automatic:
            raise SasError(f"{name} has no value")
        if name in self.variables and self.variables[name].length is not None:
            return self.padded(name)
        return self.values.get(name, 0.0)

    def padded(self, name):
        return self.values[name].ljust(self.variables[name].length)

    def assign(self, name, value):
        length = self.variables[name].length
        if isinstance(value, bytes) != (length is not None):
            raise SasError(f"{value!r} is assigned to {name}")
        self.values[name] = value if length is None else value[:length].rstrip(b" ")

    # --- running

    def execute(self, operations):
        for operation in operations:
            operation()

    def run(self):
        turn = 0
        while True:
            turn += 1
            self.reset()
            self.values["_n_"] = float(turn)
            try:
                self.execute(self.body)
                self.implied_output()
            except Return:
                self.implied_output()
            except NextTurn:
                continue
            except Stop:
                break
            if not (self.infile or self.sources):
                break
        if self.target:
            self.sas.save(self.target, self.result())

    def implied_output(self):
        if self.target and not self.has_output:
            self.output()

    def reset(self):
        of_sources = {name.lower() for _, renamed, kept, _ in self.sources for name in (renamed.get(each.lower(), each) for each in kept)}
        for name, variable in self.variables.items():
            if name not in self.retained and name not in of_sources:
                self.values[name] = DOT if variable.length is None else b""

    def output(self):
        self.rows.append([self.values[name] for name in self.variables])

    def read(self, fields):
        if self.lines is None:
            self.lines = self.sas.lines(self.infile)
            self.place = 0
        if self.place >= len(self.lines):
            raise Stop()
        line = self.lines[self.place]
        self.place += 1
        self.values[self.infile["end"].lower()] = float(self.place == len(self.lines))
        for start, name, width in fields:
            self.assign(name, line[start - 1:start - 1 + width])

    def read_source(self):
        if self.pending is None:
            self.pending = self.merged() if self.is_merge else self.plain()
            self.place = 0
        if self.place >= len(self.pending):
            raise Stop()
        self.values.update(self.pending[self.place])
        self.place += 1

    def plain(self):
        data, _, kept, _ = self.sources[0]
        rows = [{name.lower(): cell for name, cell in zip(data.names, row)} for row in data.rows]
        keys = [[order(row[name]) for name in self.by] for row in rows]
        if keys != sorted(keys):
            raise SasError("BY variables are not properly sorted")
        for i, row in enumerate(rows):
            for depth, name in enumerate(self.by, 1):
                row["first." + name] = float(i == 0 or keys[i][:depth] != keys[i - 1][:depth])
        return rows

    def merged(self):
        """One row of the second data set goes to all rows of the first with its key, as load programs need it."""
        (first, _, first_kept, flag), (second, renamed, second_kept, _) = self.sources
        key = self.by[0]
        by_key = {}
        for row in second.rows:
            cells = {renamed.get(name.lower(), name).lower(): cell for name, cell in zip(second.names, row) if name in second_kept}
            if cells[key] in by_key:
                raise SasError("MERGE: more than one row for a key in both data sets")
            by_key[cells[key]] = cells
        rows = []
        for row in first.rows:
            cells = {name.lower(): cell for name, cell in zip(first.names, row)}
            rows.append(cells | by_key[cells[key]] | {flag: 1.0})
        if [row[key] for row in rows] != sorted(row[key] for row in rows):
            raise SasError("BY variables are not properly sorted")
        return rows

    def result(self):
        """The data set without what is dropped. Automatic variables are in none."""
        data = DataSet()
        data.label = self.label
        names = list(self.variables)
        is_listed = lambda name, listed: any(name == each or (each[-1] == ":" and name.startswith(each[:-1])) for each in listed)
        chosen = [i for i, name in enumerate(names) if name not in self.automatic
                  and (self.kept is None or is_listed(name, self.kept)) and not is_listed(name, self.dropped or [])]
        for i in chosen:
            variable = self.variables[names[i]]
            data.names.append(variable.name)
            data.types[variable.name] = variable.length
        data.rows = [[row[i] for i in chosen] for row in self.rows]
        data.labels = {name: text for name, text in self.labels.items() if name in (each.lower() for each in data.names)}
        data.formats = {name: made for name, made in self.formats.items() if name in (each.lower() for each in data.names)}
        return data


# ---------------------------------------------------------------------------------------------------- programs

class Sas:
    def __init__(self, directory):
        self.directory = directory
        self.macros, self.files, self.libraries, self.sets = {}, {}, {}, {}
        self.outcome = Outcome()

    def set_file(self, reference, path):
        self.files[reference] = os.path.join(self.directory, path)
        return 0.0

    def set_library(self, library, path):
        self.libraries[library] = path
        return 0.0

    def data_set(self, library, name):
        if (library, name.lower()) not in self.sets:
            raise SasError(f"the data set {library}.{name} does not exist")
        return self.sets[library, name.lower()]

    def save(self, target, data):
        library, name = target
        if library != "work" and library not in self.libraries:
            raise SasError(f"the library {library} is not assigned")
        self.sets[library, name.lower()] = data
        if library != "work":
            self.outcome.tables[name] = data

    def lines(self, infile):
        with open(self.files[infile["file"]], "rb") as file:
            text = file.read()
        if infile["encoding"] == "wlatin1":
            free = b"\x81\x8d\x8f\x90\x9d"
            text = "".join(chr(byte) if byte in free else bytes([byte]).decode("cp1252") for byte in text).encode("utf-8")
        elif infile["encoding"] != "utf-8":
            raise SasError(f"the encoding {infile['encoding']}")
        lines = text.split(b"\n")
        if lines[-1] == b"":
            lines.pop()
        return lines

    # --- steps

    def run(self, statements):
        i = 0
        while i < len(statements):
            if statements[i][0][0] == "let":
                name, value = statements[i][0][1]
                if re.search("[&%'\"]", value):
                    raise SasError(f"%let {name}: {value} would be expanded or is not closed")
                self.macros.setdefault(name, value)
                i += 1
                continue
            end = next((k for k in range(i, len(statements)) if [token[1] for token in statements[k]] == ["run"]), None)
            if end is None:
                raise SasError("a step without RUN")
            self.step(statements[i:end])
            i = end + 1

    def step(self, statements):
        words = [token.lower() for kind, token in statements[0][:2] if isinstance(token, str)]
        if words[0] == "data":
            Step(self, statements).run()
        elif words == ["proc", "format"]:
            for statement in statements[1:]:
                self.add_format(Parser(statement))
        elif words == ["proc", "sort"]:
            self.sort(statements)
        else:
            raise SasError(f"the step {' '.join(words)} is not known here")

    def sort(self, statements):
        parser = Parser(statements[0][2:])
        parser.take("data")
        parser.take("=")
        library, _, name = parser.take(), parser.take("."), parser.take()
        data = self.data_set(library, name)
        by = [token.lower() for _, token in statements[1][1:]]
        places = [[each.lower() for each in data.names].index(name) for name in by]
        data.rows.sort(key=lambda row: [order(row[place]) for place in places])

    # --- formats

    def add_format(self, parser):
        parser.take("value")
        is_text = parser.accept("$")
        name = parser.take().lower()
        check_name(name, 31 if is_text else 32)
        if name[-1].isdigit() or ("$" if is_text else "") + name in self.outcome.formats:
            raise SasError(f"the name of the format {name}")
        entries = []
        while not parser.at_end():
            entries.append(self.entry(parser, is_text))
        self.check_entries(name, entries)
        self.outcome.formats[("$" if is_text else "") + name] = entries

    def entry(self, parser, is_text):
        low = self.code(parser, is_text)
        high, low_is_included, high_is_included = low, True, True
        if parser.peek()[1] in ("-", "<"):
            low_is_included = not parser.accept("<")
            parser.take("-")
            high_is_included = not parser.accept("<")
            high = self.code(parser, is_text)
        parser.take("=")
        kind, label = parser.peek()
        parser.place += 1
        if kind != "text" or len(label.encode("utf-8")) > MAX_TEXT:
            raise SasError("the label of a format")
        return low, low_is_included, high, high_is_included, label

    @staticmethod
    def code(parser, is_text):
        is_negative = not is_text and parser.accept("-")
        kind, token = parser.peek()
        parser.place += 1
        if is_text and kind == "text":
            return token.encode("utf-8").rstrip(b" ")
        if not is_text and kind == "missing" and not is_negative:
            return Missing(token[1:])
        if is_text or kind != "number":
            raise SasError(f"a format with the code {token}")
        return -float(token) if is_negative else float(token)

    @staticmethod
    def check_entries(name, entries):
        """Ranges do not overlap, and none is upside down."""
        previous = None
        for entry in sorted(entries, key=lambda each: (order(each[0]), not each[1])):
            low, low_is_included, high, high_is_included, _ = entry
            if order(low) > order(high) or (low == high and not (low_is_included and high_is_included)):
                raise SasError(f"the format {name}: the range from {low} to {high}")
            if previous:
                is_apart = order(previous[2]) < order(low) or (previous[2] == low and not (previous[3] and low_is_included))
                if not is_apart:
                    raise SasError(f"the format {name}: this range is repeated, or values overlap: {low} to {high}")
            previous = entry


def run(program, data=None):
    """Runs a program in its directory. Nothing is written: the tables are in the Outcome."""
    with open(program, encoding="utf-8") as file:
        source = file.read()
    sas = Sas(os.path.dirname(os.path.abspath(program)))
    if data is not None:
        sas.macros["data"] = data
    sas.run(statements_of(source))
    return sas.outcome
