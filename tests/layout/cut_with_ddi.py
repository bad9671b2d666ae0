#!/usr/bin/env python3
"""Reads DDI documents as readers of fixed-width extracts do, and cuts data lines with them.

    cut_with_ddi.py EXPORT_LAYOUT PATH...    (a directory stands for all files in it)

EXPORT_LAYOUT prints the document of a dictionary, plain or for readers of IPUMS extracts. Lines of data are made from what
the naive readers read of the same dictionary; what is cut from them with the document has to be what was put in, for
each variable of each record. The status is 1 where anything differs, or where too little was compared.
"""

import decimal
import pathlib
import random
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, str(pathlib.Path(__file__).parent / "naive"))
import naive
from naive_common import Refused

DDI = {"d": "ddi:codebook:2_5"}
LINES_A_RECORD = 10
FEWEST_VALUES = 1000
LONGEST_LINE = 100000
WIDEST_RECORD = 5000  # columns of variables that are compared


# --- Reading a document -----------------------------------------------------------------------------------------------


class Variable:
    """A `var` in the form in which a reader of extracts keeps it. The first column is 0-based."""

    def __init__(self, element):
        self.id = element.attrib["ID"]
        self.name = element.attrib["name"]
        self.record_types = element.attrib.get("rectype", "").split(" ")
        self.decimals = element.attrib.get("dcml")
        location = element.find("d:location", DDI)
        self.start = int(location.attrib["StartPos"]) - 1
        self.end = int(location.attrib["EndPos"])
        if self.end - self.start != int(location.attrib["width"]):
            raise ValueError("%s: the width is not that of the columns" % self.name)
        self.label = element.findtext("d:labl", "", DDI)
        self.kind = element.find("d:varFormat", DDI).attrib["type"]
        self.codes = [
            (category.findtext("d:catValu", None, DDI), category.findtext("d:labl", "", DDI), category.get("missing"))
            for category in element.findall("d:catgry", DDI)
        ]


def is_readable(element):
    """Whether a `var` has the columns to cut it; documents and items without columns do not."""
    return element.find("d:location", DDI) is not None and element.find("d:varFormat", DDI) is not None


class Document:
    """The parts of a document that a reader of extracts needs."""

    def __init__(self, text):
        root = ElementTree.fromstring(text)
        self.file = root.find("d:fileDscr/d:fileTxt", DDI)
        structure = self.file.find("d:fileStrc", DDI)
        self.is_hierarchical = structure.attrib["type"] == "hierarchical"
        self.groups = structure.findall("d:recGrp", DDI)
        elements = root.findall("d:dataDscr/d:var", DDI)
        self.variables = [Variable(one) for one in elements if is_readable(one)]
        self.ids = {one.attrib["ID"] for one in elements}

    def of_record(self, record_type):
        return [variable for variable in self.variables if record_type in variable.record_types]


class ExtractReader:
    """A reader of IPUMS extracts: decimals are always implied, the type of a line is in the variable that the record
    groups name."""

    form = "ddi-ipums"

    def __init__(self, document):
        self.document = document

    def record_type(self, line):
        group = self.document.groups[0]
        identifier = group.attrib["recidvar"]
        variable = next(variable for variable in self.document.variables if variable.name == identifier)
        return line[variable.start : variable.end]

    @staticmethod
    def number(text, decimals):
        return decimal.Decimal(text).scaleb(-int(decimals))

    def is_type(self, variable):
        return variable.name == self.document.groups[0].attrib.get("recidvar")


class ArchiveReader(ExtractReader):
    """A reader of plain documents: a decimal mark in the data is used, the type of a line is at the columns that the
    record groups state."""

    form = "ddi"

    def record_type(self, line):
        group = self.document.groups[0].attrib
        start = int(group["rtypeloc"]) - 1
        return line[start : start + int(group["rtypewidth"])]

    @staticmethod
    def number(text, decimals):
        return decimal.Decimal(text) if "." in text else decimal.Decimal(text).scaleb(-int(decimals))

    def is_type(self, variable):
        return False


def cut(reader, variables, line):
    """The values of a line by the names of their variables; None for blanks."""
    values = {}
    for variable in variables:
        text = line[variable.start : variable.end]
        if variable.kind == "character":
            values[variable.name] = text.rstrip(" ")
        else:
            values[variable.name] = reader.number(text.strip(), variable.decimals) if text.strip() else None
    return values


# --- Making data ------------------------------------------------------------------------------------------------------


class Field:
    """An item, or one occurrence of it, with its columns on a line."""

    def __init__(self, item, name, start):
        self.item = item
        self.name = name
        self.start = start
        self.length = item["length"]
        self.is_number = item["type"] == "numeric"


def fields_of(items):
    """The fields of the items of a record: NAME, NAME_k, NAME_i_k; each occurrence of an item with its subitems."""
    fields = []
    index = 0
    while index < len(items):
        head = items[index]
        index += 1
        parts = []
        while index < len(items) and items[index].get("subitemOf") == head["name"]:
            parts.append(items[index])
            index += 1
        times = head.get("occurrences", 1)
        if not parts or times == 1:
            fields += occurrences_of(head, head["name"], head.get("start", 0))
            for part in parts:
                fields += occurrences_of(part, part["name"], part.get("start", 0))
            continue
        for time in range(times):
            shift = time * head["length"]
            fields.append(Field(head, "%s_%d" % (head["name"], time + 1), head.get("start", 0) + shift))
            for part in parts:
                fields += occurrences_of(part, "%s_%d" % (part["name"], time + 1), part.get("start", 0) + shift)
    return fields


def occurrences_of(item, name, start):
    times = item.get("occurrences", 1)
    if times == 1:
        return [Field(item, name, start)]
    return [Field(item, "%s_%d" % (name, k + 1), start + k * item["length"]) for k in range(times)]


class Line:
    """A line of data, filled field by field: subitems first, so that an item contains the values of its subitems."""

    def __init__(self, rng, size):
        self.rng = rng
        self.characters = [" "] * size

    def put(self, text, start):
        self.characters[start - 1 : start - 1 + len(text)] = text

    def columns(self, field):
        return slice(field.start - 1, field.start - 1 + field.length)

    def text(self, field):
        return "".join(self.characters[self.columns(field)])

    def fill(self, field):
        if any(character != " " for character in self.characters[self.columns(field)]):
            return  # its subitems have filled it
        kind = self.rng.random()
        if kind < 0.1:
            return
        if not field.is_number:
            self.put("".join(self.rng.choice("ABCXYZ") for _ in range(field.length)), field.start)
        elif field.item.get("decimalMark"):
            self.put(written(self.rng, field.length, field.item["decimals"]), field.start)
        else:
            self.put(whole(self.rng, field.length, kind), field.start)

    def value(self, field):
        text = self.text(field)
        if not field.is_number:
            return text.rstrip(" ")
        text = text.strip()
        if not text:
            return None
        if field.item.get("decimalMark"):
            return decimal.Decimal(text)
        return decimal.Decimal(int(text)) / 10 ** field.item.get("decimals", 0)


def whole(rng, length, kind):
    digits = "".join(rng.choice("0123456789") for _ in range(length))
    if length > 2 and kind < 0.2:
        return "-" + digits[1:]
    if length > 2 and kind < 0.3:
        return " " * (length - 2) + digits[:2]
    return digits


def written(rng, length, decimals):
    before = length - decimals - 1
    return whole(rng, before, 1) + "." + whole(rng, decimals, 1) if before > 0 else "." + whole(rng, length - 1, 1)


def has_overlaps(fields, record_type):
    """Whether columns belong to two items, or to an item and the record type; subitems are ignored."""
    taken = set(record_type)
    for field in fields:
        if field.item.get("subitemOf"):
            continue
        columns = range(field.start, field.start + field.length)
        if not taken.isdisjoint(columns):
            return True
        taken.update(columns)
    return False


def has_record_types(layout):
    columns = layout.get("recordType", {"start": 0, "length": 0})
    return columns["start"] > 0 and columns["length"] > 0


def is_usable(field):
    """Whether a field has columns and is not a document, image or similar item."""
    return field.start > 0 and field.length > 0 and field.item["type"] in ("numeric", "alpha")


# --- Comparing --------------------------------------------------------------------------------------------------------


class Comparison:
    """Cuts lines of dictionaries with their documents, and counts the results."""

    def __init__(self, program):
        self.program = program
        self.rng = random.Random(1)
        self.faults = []
        self.values = 0
        self.files = 0

    def check_file(self, path):
        try:
            layout = naive.read(path.read_bytes(), str(path))
        except Refused:
            return
        self.files += 1
        for kind in (ExtractReader, ArchiveReader):
            run = subprocess.run([self.program, kind.form, str(path)], capture_output=True, check=False)
            if run.returncode != 0:
                self.faults.append("%s: there is no document" % path)
                return
            self.check_layout(path, layout, run.stdout, kind)

    def check_layout(self, path, layout, text, kind):
        reader = kind(Document(text))
        records = [record for level in layout["levels"] for record in level["records"]]
        types = [record.get("recordType", "") for record in records]
        has_types = has_record_types(layout)
        if len(reader.document.groups) != len(records):
            self.faults.append("%s: there is no group for each record" % path)
        if has_types and [group.attrib.get("rectype") for group in reader.document.groups] != types:
            self.faults.append("%s: record types are not those of the dictionary" % path)
        if len(set(types)) < len(types) or (has_types and any(" " in t or not t for t in types)):
            return  # no reader can distinguish the lines
        ids = []
        for level in layout["levels"]:
            ids += level["ids"]
            for record in level["records"]:
                self.check_record("%s: %s" % (path, record["name"]), layout, reader, ids, record)

    def check_record(self, where, layout, reader, ids, record):
        has_types = has_record_types(layout)
        fields = fields_of(ids) + fields_of(record["items"])
        end = max([field.start + field.length for field in fields] + [1])
        columns = layout["recordType"] if has_types else {"start": 1, "length": 0}
        record_type = record.get("recordType", "")
        type_columns = range(columns["start"], columns["start"] + columns["length"])
        names = [field.name for field in fields]
        if (
            not all(map(is_usable, fields))
            or end > LONGEST_LINE
            or len(fields) > WIDEST_RECORD
            or len(set(names)) != len(names)
            or "" in names
            or (has_types and len(record_type) != columns["length"])
            or has_overlaps(fields, type_columns)
        ):
            return  # a dictionary that is intentionally wrong
        size = max(end, type_columns.stop)
        for _ in range(LINES_A_RECORD):
            line = Line(self.rng, size)
            if has_types:
                line.put(record_type, columns["start"])
            for field in sorted(fields, key=lambda field: "subitemOf" not in field.item):
                line.fill(field)
            self.check_line(where, reader, has_types, fields, line)

    def check_line(self, where, reader, has_types, fields, line):
        text = "".join(line.characters)
        if has_types:
            variables = reader.document.of_record(reader.record_type(text))
        else:
            variables = reader.document.variables
        wanted = {}
        for field in fields:
            try:
                wanted[field.name] = line.value(field)
            except (ValueError, decimal.InvalidOperation):
                pass  # a part of a number that is not a number itself
        found = cut(reader, [v for v in variables if v.name in wanted], text)
        if list(found) != list(wanted):
            self.faults.append("%s: variables are %s, not %s" % (where, list(found)[:9], list(wanted)[:9]))
            return
        self.values += len(wanted)
        self.check_keys(where, reader, variables)
        for field in fields:
            self.check_codes(where, field, next(v for v in variables if v.name == field.name))
        for name, value in wanted.items():
            if found[name] != value:
                self.faults.append("%s: %s is %s, not %s" % (where, name, found[name], value))

    def check_keys(self, where, reader, variables):
        for group in reader.document.groups:
            for key in group.attrib.get("keyvar", "").split():
                if key not in reader.document.ids:
                    self.faults.append("%s: key %s is no variable" % (where, key))

    def check_codes(self, where, field, variable):
        """The codes of the first value set, with their labels; ranges have none."""
        wanted = [
            (one["from"], text_of(value), "Y" if value.get("special") else None)
            for value_set in field.item.get("valueSets", [])[:1]
            for value in value_set["values"]
            for one in value["ranges"]
            if one.get("to", "") in ("", one["from"])
        ]
        found = [code for code in variable.codes if code[0] is not None]
        if found != wanted:
            self.faults.append("%s: codes of %s are %s, not %s" % (where, field.name, found[:5], wanted[:5]))


def text_of(value):
    """The first label that is not empty."""
    return next((label["text"] for label in value.get("labels", []) if label["text"]), "")


def files_of(paths):
    for path in map(pathlib.Path, paths):
        yield from sorted(file for file in path.rglob("*") if file.is_file()) if path.is_dir() else [path]


def main():
    program, *paths = sys.argv[1:]
    comparison = Comparison(program)
    for file in files_of(paths):
        if file.suffix == ".dcf":
            comparison.check_file(file)
    for fault in comparison.faults[:50]:
        print(fault)
    print("%d files, %d values, %d faults" % (comparison.files, comparison.values, len(comparison.faults)))
    sys.exit(1 if comparison.faults or comparison.values < FEWEST_VALUES else 0)


if __name__ == "__main__":
    main()
