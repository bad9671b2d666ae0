#!/usr/bin/env python3
"""An independent loader: the tables that a load program has to make, cell by cell, from the dictionary and the data.

It reads the layout as `vanlayout show --format json` prints it, and shares nothing else with the programs. Numbers are
exact. A test compares what an engine made with what this makes.

    reference.py TOOL TARGET DICTIONARY DATA [OPTION...]     prints the tables; the options are those of `vanlayout load`

As a module:

    load(tool, target, dictionary, data, options=())     a Result. `target` is the word of `--to`: names, and what
                                                          becomes of special values, follow it.
    load_layout(layout, target, data, options=())         likewise, from a layout in the JSON form
Result
    tables     name -> Table, in the order of the dictionary; item tables of `--occurrences long` follow
    codes      rows of the table `codes`: (table_name, column_name, code_from, code_to, label, special), None for NULL
    counts     lines that the program prints: "TABLE: N rows" ...
    renames    (name in the dictionary, name in the target), such as ("PERSON.OCC", "OCC_2")
    parsed     the settings: .occurrences .specials .records .language .encoding

Table          name, original, label, columns (of Column), rows (lists of cells, in the order of the file), is_item_table
Column         name, original, label, role ("id", "occ", "item_occ", "item"), kind ("integer", "decimal", "text"), length,
               decimals, values: the first value set, as in the JSON form; None for a made column or if there is none
Cell           None: missing. Fraction: a number. str: a text. Missing("m"), Missing("r"): missing with a reason, only
               for numbers in targets that know it (r, stata, sas).

Special values by target, for `--specials missing`. sqlite, postgresql, duckdb, pandas, dask: None. r: Missing for
numbers, None for texts. stata, sas: Missing for numbers; texts stay. spss: codes of "missing" and "refused" stay, since
the file declares them missing; so do texts.

Helper for labels: text_of(labels, language), one_line(text).
"""

import argparse
import json
import re
import subprocess
import sys
from collections import Counter, namedtuple
from fractions import Fraction

Missing = namedtuple("Missing", "tag")

NUMBER = re.compile(r" *([+-]?)([0-9]+|[0-9]+[.,][0-9]*|[.,][0-9]+) *")
CONTROLS = re.compile("[\x00-\x1f\x7f-\x9f\u2028\u2029]+")

TAGGED = ("r", "stata", "sas")
TEXTS_STAY = ("spss", "stata", "sas")

# How names are compared and what they may be. Length: (limit, whether in bytes).
Rules = namedtuple("Rules", "fold plain first length columns tables")
SPSS_WORDS = "all and by eq ge gt le lt ne not or to with".split()
STATA_WORDS = ("_all _b byte _coef _cons double float if in int long _n _N _pi _pred _rc _skip strL using with").split()
POSTGRESQL_WORDS = "tableoid xmin cmin xmax cmax ctid".split()
EXACT = Rules(None, False, "any", None, [], [])
QUOTED = Rules("ignored", False, "any", None, [], [])
RULES = {
    "sqlite": QUOTED._replace(tables=[re.compile("sqlite_.*")]),
    "postgresql": QUOTED._replace(fold="lower", length=(63, True), columns=POSTGRESQL_WORDS),
    "duckdb": QUOTED,
    "dask": EXACT,
    "pandas": EXACT,
    "r": EXACT,
    "spss": Rules("ignored", True, "letter", (64, True), SPSS_WORDS, []),
    "stata": Rules(None, True, "letter or _", (32, False), STATA_WORDS + [re.compile("str[0-9]+")], []),
    "sas": Rules("ignored", True, "letter or _", (32, False), "_n_ _error_ _numeric_ _character_ _all_".split(),
                 "_null_ _data_ _last_".split()),
}


class Table:
    def __init__(self, original, record, columns, label, occurrence=None):
        self.name = original
        self.original = original
        self.record = record
        self.columns = columns
        self.label = label
        self.occurrence = occurrence  # (start, step, length, times) of an item table
        self.rows = []
        self.no_numbers = Counter()

    @property
    def is_item_table(self):
        return self.occurrence is not None


class Column:
    def __init__(self, original, role, item=None, start=0, label=""):
        self.name = original
        self.original = original
        self.role = role
        self.item = item
        self.start = start
        self.label = label
        self.length = item["length"] if item else 0
        self.decimals = item.get("decimals", 0) if item else 0
        self.kind = kind_of(item)
        sets = (item or {}).get("valueSets", [])
        self.values = sets[0]["values"] if sets else None


class Result:
    def __init__(self, parsed):
        self.parsed = parsed
        self.tables = {}
        self.codes = []
        self.counts = []
        self.renames = []


def kind_of(item):
    if item is not None and item["type"] == "alpha":
        return "text"
    return "decimal" if item and item.get("decimals", 0) > 0 else "integer"


# ------------------------------------------------------------------------------------------------------- labels

def one_line(text):
    """The text with each run of line ends and control characters as one blank."""
    return CONTROLS.sub(" ", text)


def text_of(labels, language):
    """The text in the language, else that of the first part."""
    texts = [part["text"] for part in labels or [] if part.get("language", "").lower() == language.lower() and part["text"]]
    return one_line((texts or [part["text"] for part in labels or []][:1] or [""])[0])


def occurrence_text(item, k, language):
    """The label of an occurrence, or its number."""
    texts = [text_of(entry.get("labels"), language) for entry in item.get("occurrenceLabels", []) if entry["occurrence"] == k]
    return next((text for text in texts if text), str(k))


def occurrence_label(item, *occurrences, language):
    """The label of an item, with those of (item, occurrence) in parentheses."""
    label = text_of(item.get("labels"), language)
    texts = [occurrence_text(of, k, language) for of, k in occurrences]
    return f"{label} ({', '.join(texts)})" if label else ""


# ------------------------------------------------------------------------------------------- tables and columns

def numbered(name, k, times):
    return f"{name}_{str(k).zfill(len(str(times)))}"


def is_binary(item):
    return item["type"] not in ("numeric", "alpha")


def groups(items):
    """Each item with its subitems."""
    made = []
    for item in items:
        if item.get("subitemOf") and made:
            made[-1][1].append(item)
        else:
            made.append((item, []))
    return [(item, parts) for item, parts in made if not is_binary(item)]


def times_of(item):
    return item.get("occurrences", 1)


def column_of(item, start, language, k=0):
    name = numbered(item["name"], k, times_of(item)) if k else item["name"]
    label = occurrence_label(item, (item, k), language=language) if k else text_of(item.get("labels"), language)
    return Column(name, "item", item, start, label)


def part_columns(item, part, k, language):
    """The columns of a subitem in the k-th occurrence of its item; k is 0 for an item that does not repeat."""
    start = part["start"] + max(k - 1, 0) * item["length"]
    if times_of(part) == 1:
        column = column_of(part, start, language)
        if k:
            column.original = column.name = numbered(part["name"], k, times_of(item))
            column.label = occurrence_label(part, (item, k), language=language)
        return [column]
    columns = [column_of(part, start + (j - 1) * part["length"], language, j) for j in range(1, times_of(part) + 1)]
    for j, column in enumerate(columns, 1):
        if k:
            column.original = column.name = numbered(numbered(part["name"], k, times_of(item)), j, times_of(part))
            column.label = occurrence_label(part, (item, k), (part, j), language=language)
    return columns


def wide_columns(item, parts, language):
    columns = []
    for k in range(1, times_of(item) + 1):
        place = k if times_of(item) > 1 else 0
        columns.append(column_of(item, item["start"] + (k - 1) * item["length"], language, place))
        for part in parts:
            columns += part_columns(item, part, place, language)
    return columns


def item_table(record, ids, head, repeated, columns, language):
    occurrence = (repeated["start"], repeated["length"], times_of(repeated))
    columns = ids() + head + [Column("item_occ", "item_occ")] + columns
    return Table(f"{record['name']}_{repeated['name']}", record, columns, text_of(repeated.get("labels"), language), occurrence)


def record_tables(record, ids, parsed):
    """The table of a record, and its item tables."""
    language = parsed.language
    head = lambda: [Column("occ", "occ")] if record.get("maximum", 1) > 1 else []
    columns = []
    tables = []
    for item, parts in groups(record["items"]):
        if parsed.occurrences == "wide":
            columns += wide_columns(item, parts, language)
        elif times_of(item) > 1:
            single = [column_of(item, item["start"], language)]
            single += [column for part in parts for column in part_columns(item, part, 0, language)]
            tables.append(item_table(record, ids, head(), item, single, language))
        else:
            columns.append(column_of(item, item["start"], language))
            for part in parts:
                if times_of(part) > 1:
                    single = [column_of(part, part["start"], language)]
                    tables.append(item_table(record, ids, head(), part, single, language))
                else:
                    columns.append(column_of(part, part["start"], language))
    return [Table(record["name"], record, ids() + head() + columns, text_of(record.get("labels"), language))] + tables


def all_tables(layout, parsed):
    """Pairs of the table of a record and its item tables."""
    made = []
    level_ids = []
    for level in layout["levels"]:
        level_ids += level["ids"]
        items = list(level_ids)
        ids = lambda items=items: [Column(item["name"], "id", item, item["start"], text_of(item.get("labels"), parsed.language))
                                   for item in items]
        for record in level["records"]:
            if not parsed.records or record["name"] in parsed.records:
                made.append(record_tables(record, ids, parsed))
    return made


# -------------------------------------------------------------------------------------------------------- names

class Names:
    """Names that are legal and unique in a target."""

    def __init__(self, target, reserved, taken=()):
        self.rules = RULES[target]
        self.reserved = reserved
        self.taken = set()
        for name in taken:
            self.taken.add(self.key(name))

    def key(self, name):
        return name.lower() if self.rules.fold else name

    def is_reserved(self, name):
        name = self.key(name)
        return any(each.fullmatch(name) if isinstance(each, re.Pattern) else each == name for each in self.reserved)

    def cut(self, name, suffix=""):
        if self.rules.length:
            limit, in_bytes = self.rules.length
            while len((name + suffix).encode() if in_bytes else name + suffix) > limit:
                name = name[:-1]
        return name + suffix

    def legal(self, name):
        if self.rules.fold == "lower":
            name = name.lower()
        name = re.sub("[\x00-\x1f\x7f-\x9f\u2028\u2029]", "_", name)
        if self.rules.plain:
            name = re.sub("[^A-Za-z0-9_]", "_", name)
        illegal = {"any": "", "letter": "0123456789_", "letter or _": "0123456789"}[self.rules.first]
        return "V" + name if name[:1] and name[0] in illegal else name

    def unique(self, original):
        name = self.legal(original)
        if self.is_reserved(name) and self.is_reserved(name + "_2"):
            name = "V" + name
        made, number = self.cut(name), 1
        while self.key(made) in self.taken or self.is_reserved(made):
            number += 1
            made = self.cut(name, f"_{number}")
        self.taken.add(self.key(made))
        return made


def name_columns(table, target, result):
    made = [column.name for column in table.columns if column.role in ("occ", "item_occ")]
    names = Names(target, RULES[target].columns, made)
    for column in table.columns:
        if column.role in ("id", "item"):
            column.name = names.unique(column.original)
            if column.name != column.original:
                result.renames.append((f"{table.original}.{column.original}", column.name))


def name_tables(made, target, result):
    names = Names(target, RULES[target].tables, ["codes"])
    ordered = [tables[0] for tables in made] + [table for tables in made for table in tables[1:]]
    for table in ordered:
        # `CODES` is renamed in each target, because tables may become files.
        table.name = names.unique(table.original + ("_2" if table.original.lower() == "codes" else ""))
        if table.name != table.original:
            result.renames.append((table.original, table.name))
        name_columns(table, target, result)
        result.tables[table.name] = table


# -------------------------------------------------------------------------------------------------------- cells

def number_of(text, decimals, is_code=False):
    """The number that a field or a code is; None if it is none. A code without a mark is not divided."""
    match = NUMBER.fullmatch(text)
    if not match:
        return None
    sign, digits = match.groups()
    whole, mark, decimal_digits = digits.replace(",", ".").partition(".")
    if mark and not decimals and not is_code:
        return None
    number = Fraction(int((whole + decimal_digits) or "0"), 10 ** len(decimal_digits))
    number = -number if sign == "-" else number
    return number if mark or is_code else number / 10 ** decimals


def specials_of(column):
    """Special codes of a column in their order: (from, to, word). Numbers as Fraction."""
    made = []
    for value in column.values or []:
        for pair in value["ranges"] if value.get("special") else []:
            texts = [pair["from"], pair.get("to", pair["from"])]
            if column.kind == "text":
                ends = [text.rstrip(" ") for text in texts]
            else:
                ends = [number_of(text, 0, True) for text in texts]
            if None not in ends and ends[0] != "":
                made.append((ends[0], ends[1], value["special"]))
    return made


def special_cell(cell, word, target, keep):
    """What becomes of a cell with a special code."""
    is_text = isinstance(cell, str)
    if is_text and target in TEXTS_STAY:
        return cell
    if word == "notApplicable":
        return None
    if keep:
        return cell
    if word == "default":
        return None
    if target == "spss":
        return cell
    if target in TAGGED and not is_text:
        return Missing("m" if word == "missing" else "r")
    return None


class Reader:
    """Makes the cell of a column from a line."""

    def __init__(self, column, target, keep):
        self.column = column
        self.target = target
        self.keep = keep
        self.specials = specials_of(column)

    def cell(self, line, offset=0):
        """The cell, and whether the field is text that is no number."""
        first = self.column.start - 1 + offset
        text = line[first:first + self.column.length]
        if self.column.kind == "text":
            return self.mapped(text.rstrip(" ")), False
        if not text.strip(" "):
            return None, False
        number = number_of(text, self.column.decimals)
        return (None, True) if number is None else (self.mapped(number), False)

    def mapped(self, cell):
        for low, high, word in self.specials:
            if cell == low if isinstance(cell, str) else low <= cell <= high:
                return special_cell(cell, word, self.target, self.keep)
        return cell


# -------------------------------------------------------------------------------------------------------- lines

def windows_1252(data):
    return "".join(bytes([byte]).decode("cp1252") if byte not in b"\x81\x8d\x8f\x90\x9d" else chr(byte) for byte in data)


def lines_of(path, encoding):
    with open(path, "rb") as file:
        data = file.read()
    data = data[3:] if data.startswith(b"\xef\xbb\xbf") else data
    text = windows_1252(data) if encoding == "windows-1252" else data.decode("utf-8", "strict")
    lines = text.split("\n")
    if lines[-1] == "":
        lines.pop()
    return [line[:-1] if line.endswith("\r") else line for line in lines]


def known_marks(layout):
    """Record types of all records, padded; None if lines have no type."""
    if "recordType" not in layout:
        return None
    length = layout["recordType"]["length"]
    return {record.get("recordType", "").ljust(length) for level in layout["levels"] for record in level["records"]}


class Loader:
    def __init__(self, layout, made, target, parsed):
        self.type = layout.get("recordType")
        self.marks = known_marks(layout)
        self.unknown = self.blank = 0
        self.by_mark = {}
        keep = parsed.specials == "keep"
        for tables in made:
            mark = tables[0].record.get("recordType", "").ljust(self.type["length"]) if self.type else None
            assert mark not in self.by_mark
            self.by_mark[mark] = (tables, [self.readers(table, target, keep) for table in tables], Counter())

    @staticmethod
    def readers(table, target, keep):
        return [Reader(column, target, keep) if column.item else None for column in table.columns]

    def mark_of(self, line):
        if not self.type:
            return None
        start, length = self.type["start"] - 1, self.type["length"]
        return line[start:start + length].ljust(length)

    def add(self, line):
        if not line.strip(" "):
            self.blank += 1
        elif line[0] == "~" or (self.type and self.mark_of(line) not in self.marks):
            self.unknown += 1
        elif self.mark_of(line) in self.by_mark:
            self.add_rows(line, *self.by_mark[self.mark_of(line)])

    def add_rows(self, line, tables, readers, cases):
        ids = [reader.cell(line)[0] for reader in readers[0] if reader and reader.column.role == "id"]
        case = tuple(None if isinstance(cell, Missing) else cell for cell in ids)
        cases[case] += 1
        for table, of_table in zip(tables, readers):
            if not table.is_item_table:
                self.add_row(table, of_table, line, cases[case], 0, 0)
                continue
            start, length, times = table.occurrence
            for k in range(times):
                first = start - 1 + k * length
                if line[first:first + length].strip(" "):
                    self.add_row(table, of_table, line, cases[case], k + 1, k * length)

    @staticmethod
    def add_row(table, readers, line, occ, item_occ, offset):
        row = []
        for column, reader in zip(table.columns, readers):
            if not reader:
                row.append(Fraction(occ if column.role == "occ" else item_occ))
                continue
            cell, is_wrong = reader.cell(line, 0 if column.role == "id" else offset)
            row.append(cell)
            if is_wrong and not (table.is_item_table and column.role == "id"):
                table.no_numbers[column.name] += 1
        table.rows.append(row)


# ------------------------------------------------------------------------------------------------------ the whole

def code_rows(table, language):
    for column in table.columns:
        for value in column.values or []:
            for pair in value["ranges"]:
                trim = (lambda text: text.rstrip(" ")) if column.kind == "text" else (lambda text: text.strip(" "))
                to = trim(pair["to"]) if pair.get("to") and pair["to"] != pair["from"] else None
                yield (table.name, column.name, trim(pair["from"]), to, text_of(value.get("labels"), language), value.get("special"))


def count_lines(result, loader):
    lines = []
    for table in result.tables.values():
        lines.append(f"{table.name}: {len(table.rows)} rows")
        lines += [f"{table.name}.{column.name}: {table.no_numbers[column.name]} values are no numbers"
                  for column in table.columns if table.no_numbers[column.name]]
    lines += [f"{loader.unknown} lines of no known record type"] if loader.unknown else []
    return lines + ([f"{loader.blank} blank lines"] if loader.blank else [])


def parse(options):
    parser = argparse.ArgumentParser()
    parser.add_argument("--encoding", default="utf-8")
    parser.add_argument("--occurrences", default="wide")
    parser.add_argument("--specials", default="missing")
    parser.add_argument("--language", default="")
    parser.add_argument("--records", type=lambda text: text.split(","), default=[])
    return parser.parse_args(list(options))


def layout_of(tool, dictionary):
    run = subprocess.run([tool, "show", "--format", "json", dictionary], stdout=subprocess.PIPE, check=True)
    return json.loads(run.stdout.decode("utf-8"))


def load(tool, target, dictionary, data, options=()):
    """The tables of a data file, as the load program for the target has to make them."""
    return load_layout(layout_of(tool, dictionary), target, data, options)


def load_layout(layout, target, data, options=()):
    """Likewise, from a layout in the JSON form."""
    parsed = parse(options)
    if not parsed.language and layout.get("languages"):
        parsed.language = layout["languages"][0]["name"]
    result = Result(parsed)
    made = all_tables(layout, parsed)
    name_tables(made, target, result)
    loader = Loader(layout, made, target, parsed)
    for line in lines_of(data, parsed.encoding):
        loader.add(line)
    result.codes = [row for table in result.tables.values() for row in code_rows(table, parsed.language)]
    result.counts = count_lines(result, loader)
    return result


def main(arguments):
    result = load(arguments[0], arguments[1], arguments[2], arguments[3], arguments[4:])
    for table in result.tables.values():
        print(f"== {table.name}")
        print(*[column.name for column in table.columns], sep="\t")
        for row in table.rows:
            print(*["" if cell is None else ascii(cell) if isinstance(cell, str) else str(cell) for cell in row], sep="\t")
    print(*[f"{old}\t{new}" for old, new in result.renames], sep="\n")
    print(*result.counts, sep="\n")


if __name__ == "__main__":
    main(sys.argv[1:])
