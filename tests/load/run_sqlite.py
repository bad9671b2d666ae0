#!/usr/bin/env python3
"""Runs the SQLite programs, and compares the tables with those of the reference loader.

    run_sqlite.py TOOL SQLITE3
"""

import json
import os
import shutil
import sqlite3
import subprocess
import sys
import tempfile

import compare
import survey

POLICY = compare.Policy(compare.ULP)
NOT_COUNTED = ("blank lines",)  # empty lines are not imported


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


def tables_of(database):
    connection = sqlite3.connect(database)
    connection.execute("PRAGMA encoding")
    names = [name for name, in connection.execute("SELECT name FROM sqlite_master WHERE type = 'table'")]
    made = {}
    for name in names:
        cursor = connection.execute(f"SELECT * FROM {quoted(name)}")
        made[name] = {"columns": [column[0] for column in cursor.description], "rows": [list(row) for row in cursor]}
    connection.close()
    return made


def load(sqlite, database, program, cwd=None):
    with open(program, "rb") as script:
        run = subprocess.run([sqlite, "-init", os.devnull, database], stdin=script, stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=cwd)
    return run.returncode, run.stdout.decode("utf-8"), run.stderr.decode("utf-8", "replace")


def program_of(files):
    return next(path for path in files.values() if path.endswith(".sql"))


def compare_variant(sqlite, tool, variant, directory):
    program = program_of(compare.make_program(tool, "sqlite", variant, os.path.join(directory, variant.name)))
    result = compare.expected(tool, "sqlite", variant)
    database = os.path.join(directory, variant.name + ".db")
    status, printed, errors = load(sqlite, database, program)
    if status or errors:
        raise compare.Difference(f"status {status}: {errors}")
    made = tables_of(database)
    compare.tables(result, made, POLICY)
    compare.codes(result, made["codes"]["rows"])
    compare.counts(result, printed, NOT_COUNTED)
    compare_labels(database, result)
    compare_later_runs(sqlite, database, program, made)


def compare_labels(database, result):
    """The label of each column is a comment above it."""
    connection = sqlite3.connect(database)
    for table in result.tables.values():
        (statement,), = connection.execute("SELECT sql FROM sqlite_master WHERE name = ?", [table.name])
        words = " ".join(line.strip().removeprefix("-- ") for line in statement.split("\n"))
        for column in table.columns:
            label = " ".join(column.label.split()) if column.item else ""
            if label and label not in " ".join(words.split()):
                raise compare.Difference(f"{table.name}.{column.name}: no comment {label!r} in {statement}")
    connection.close()


def compare_later_runs(sqlite, database, program, made):
    """A second run replaces what the first made, and a run without data leaves it."""
    other = ("OTHER TABLE", "X", "1", None, "One", None)
    connection = sqlite3.connect(database)
    connection.execute("INSERT INTO codes VALUES (?, ?, ?, ?, ?, ?)", other)
    connection.commit()
    connection.close()
    load(sqlite, database, program)
    again = tables_of(database)
    made["codes"]["rows"] = [list(other)] + made["codes"]["rows"]  # the codes of other programs stay
    if again != made:
        raise compare.Difference("the second run made other tables")
    text = open(program, encoding="utf-8").read()
    changed = [line if not line.startswith(".import") else '.import "no such file.dat" load_lines' for line in text.split("\n")]
    other = program + ".changed"
    survey.write(other, "\n".join(changed).encode("utf-8"))
    status, printed, errors = load(sqlite, database, other)
    if status == 0 or printed or "no such file.dat" not in errors or tables_of(database) != made:
        raise compare.Difference(f"a run without data: status {status}, {printed!r}, {errors!r}")


def compare_bad_bytes(sqlite, tool, variant, directory):
    """A file that is not UTF-8 stops the program, and the message names the line."""
    data = os.path.join(directory, "bad bytes.dat")
    lines = [b"HH 2 x" + bad + b"y" for bad in (b"\xe9", b"\x80", b"\xc3\xa9\xa9", b"\xe9\x80", b"\xed\xa0\x80", b"\xff", b"\xc0\x80")]
    for number, bad in enumerate(lines + [b"\x80HH 2 y"]):
        survey.write(data, b"HH 1  1\nR  1 \xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\xef\xbf\xbd\n" + bad + b"\nHH \xff\n")
        changed = variant._replace(data=data)
        program = program_of(compare.make_program(tool, "sqlite", changed, os.path.join(directory, "bad")))
        database = os.path.join(directory, f"bad{number}.db")
        status, printed, errors = load(sqlite, database, program)
        if status == 0 or "Line 3 is not valid UTF-8" not in printed or "--encoding windows-1252" not in printed:
            raise compare.Difference(f"{bad}: status {status}, {printed!r}, {errors!r}")
        if "not valid UTF-8" not in errors or tables_of(database):
            raise compare.Difference(f"{bad}: a failed run left something behind: {errors!r}")


PATHS = ("|touch canary", "-x.dat", "~.dat", 'it\'s "a" \\n \\', "a\n.shell touch canary", "#", "a'); --", "\u20ac \U0001F600.dat")


def compare_paths(sqlite, tool, variant, directory):
    """The path of the data file is nothing but a path."""
    place = os.path.join(directory, "paths")
    os.mkdir(place)
    for number, path in enumerate(PATHS):
        shutil.copy(variant.data, os.path.join(place, path))
        program = program_of(compare.make_program(tool, "sqlite", variant._replace(data=path), os.path.join(directory, f"path{number}")))
        status, _, errors = load(sqlite, os.path.join(directory, f"path{number}.db"), program, cwd=place)
        if status or errors:
            raise compare.Difference(f"{path!r}: status {status}, {errors!r}")
        compare.tables(compare.expected(tool, "sqlite", variant), tables_of(os.path.join(directory, f"path{number}.db")), POLICY)
    if sorted(os.listdir(place)) != sorted(PATHS):
        raise compare.Difference(f"files: {os.listdir(place)}")


NAMES = ("sqlite_master", "load_lines", "load_rows_1", 'a"; DROP TABLE x; --', "select", "temp", "a\nb", "main.x")
ITEMS = ("rowid", "oid", "_rowid_", "row", "c1", "l", 'a" INTEGER); --', "occ", "select", "it's")


def compare_names(sqlite, tool, variant, directory):
    """Names of records and items that mean something to SQLite, or to the program itself."""
    with open(variant.dictionary, encoding="utf-8") as file:
        dictionary = json.load(file)
    records = [record for level in dictionary["levels"] for record in level["records"]]
    for record, name in zip(records, NAMES):
        record["name"] = name
        for item, name in zip(record["items"], ITEMS):
            item["name"] = name
    path = survey.write(os.path.join(directory, "names.dcf"), json.dumps(dictionary).encode("utf-8"))
    for options in ([], ["--occurrences", "long"]):
        compare_variant(sqlite, tool, variant._replace(name="names" + "-".join(options), dictionary=path, options=options), directory)


def compare_directory(sqlite, tool, variant, directory):
    """A directory in place of the data file is no empty file."""
    database = os.path.join(directory, "directory.db")
    program = program_of(compare.make_program(tool, "sqlite", variant._replace(data=directory), os.path.join(directory, "directory")))
    status, printed, errors = load(sqlite, database, program)
    if status == 0 or printed or "is a directory" not in errors or tables_of(database):
        raise compare.Difference(f"status {status}, {printed!r}, {errors!r}")


def compare_wide(sqlite, tool, _, directory):
    """As many columns as a table of the target can have, all with odd texts."""
    lines = ["[Dictionary]", "Version=CSPro 7.7", "Name=WIDE", "RecordTypeStart=0", "RecordTypeLen=0", "[Level]", "Name=L", "[IdItems]",
             "[Item]", "Name=ID", "Start=1", "Len=3", "[Record]", "Name=R", "[Item]", "Name=X", "Start=4", "Len=2", "Occurrences=1899"]
    dictionary = survey.write(os.path.join(directory, "wide.dcf"), "\n".join(lines).encode())
    data = survey.write(os.path.join(directory, "wide.dat"), b"  1" + b"5.+7 x-3" * 475 + b"\n  2\n  3 12\n")
    variant = survey.Variant("wide", dictionary, data, [], "ascii", False)
    compare_variant(sqlite, tool, variant, directory)
    compare_variant(sqlite, tool, variant._replace(name="wide-long", options=["--occurrences", "long"]), directory)


NUMBERS = ("1234.5678", "  34,5678", "1e.2345", "1e.+234", "12E.3456", "  e.1234", "5.", "1.5", ".5", "1e2", "1E+2", "1e-1", "\t5", "5\v", "\f5",
           "1\r2", "\x01", " \x01", "0x1A", "1 2", "- 5", "-5", "+5", "5-", "1e", "e", ".", "12.  34", "     .34", "12.3 ", "Inf")


def compare_numbers(sqlite, tool, _, directory):
    """Texts that SQLite takes for numbers, alone in a line and next to a column with decimal marks."""
    lines = ["[Dictionary]", "Version=CSPro 7.7", "Name=NUMBERS", "RecordTypeStart=0", "RecordTypeLen=0", "[Level]", "Name=L", "[IdItems]",
             "[Item]", "Name=ID", "Start=1", "Len=3", "[Record]", "Name=R", "[Item]", "Name=WHOLE", "Start=4", "Len=9",
             "[Item]", "Name=MARKED", "Start=13", "Len=9", "Decimal=4", "DecimalChar=Yes", "[Item]", "Name=IMPLIED", "Start=22", "Len=5",
             "Decimal=2", "[Item]", "Name=TEXT", "Start=27", "Len=9", "DataType=Alpha"]
    dictionary = survey.write(os.path.join(directory, "numbers.dcf"), "\n".join(lines).encode())
    fields = []
    for number in NUMBERS:
        for text in ("", "St. Eve 1e5"):
            fields += [number.ljust(9) + " " * 14 + text, " " * 9 + number.rjust(9) + "     " + text,
                       "       12 123.4567" + number[:5].rjust(5) + text, number.rjust(9) + "   1.2345   12" + text]
    data = "".join(f"{i:3}{field}\n" for i, field in enumerate(fields))
    data = survey.write(os.path.join(directory, "numbers.dat"), data.encode("ascii"))
    compare_variant(sqlite, tool, survey.Variant("numbers", dictionary, data, [], "ascii", False), directory)


def main(tool, sqlite):
    with tempfile.TemporaryDirectory() as directory:
        made = [*survey.variants(directory), survey.long_codes(directory, neighbours=False)]
        for variant in made:
            compare.check(f"sqlite {variant.name}", compare_variant, sqlite, tool, variant, directory)
        compare.check("bad bytes", compare_bad_bytes, sqlite, tool, made[0], directory)
        compare.check("paths", compare_paths, sqlite, tool, made[4], directory)
        compare.check("names", compare_names, sqlite, tool, made[0], directory)
        compare.check("directory", compare_directory, sqlite, tool, made[4], directory)
        compare.check("numbers", compare_numbers, sqlite, tool, made[0], directory)
        compare.check("wide", compare_wide, sqlite, tool, made[0], directory)
    compare.finish()


if __name__ == "__main__":
    main(*sys.argv[1:])
