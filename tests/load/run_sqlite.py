#!/usr/bin/env python3
"""Runs the SQLite programs, and compares the tables with those of the reference loader.

    run_sqlite.py TOOL SQLITE3
"""

import os
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
    load(sqlite, database, program)
    if tables_of(database) != made:
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
    for number, bad in enumerate((b"\xe9", b"\x80", b"\xc3\xa9\xa9", b"\xe9\x80", b"\xed\xa0\x80", b"\xff", b"\xc0\x80")):
        survey.write(data, b"HH 1  1\nR  1 \xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\xef\xbf\xbd\nHH 2 x" + bad + b"y\nHH \xff\n")
        changed = variant._replace(data=data)
        program = program_of(compare.make_program(tool, "sqlite", changed, os.path.join(directory, "bad")))
        database = os.path.join(directory, f"bad{number}.db")
        status, printed, errors = load(sqlite, database, program)
        if status == 0 or "Line 3 is not valid UTF-8" not in printed or "--encoding windows-1252" not in printed:
            raise compare.Difference(f"{bad}: status {status}, {printed!r}, {errors!r}")
        if "not valid UTF-8" not in errors or tables_of(database):
            raise compare.Difference(f"{bad}: a failed run left something behind: {errors!r}")


def main(tool, sqlite):
    with tempfile.TemporaryDirectory() as directory:
        made = survey.variants(directory)
        for variant in made:
            compare.check(f"sqlite {variant.name}", compare_variant, sqlite, tool, variant, directory)
        compare.check("bad bytes", compare_bad_bytes, sqlite, tool, made[0], directory)
    compare.finish()


if __name__ == "__main__":
    main(*sys.argv[1:])
