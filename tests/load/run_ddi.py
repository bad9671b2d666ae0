#!/usr/bin/env python3
"""Loads the data of a hierarchical extract with the DDI document of another program, and compares the rows.

    run_ddi.py TOOL DOCUMENT [sqlite SQLITE3] [pandas PYTHON] [r RSCRIPT]

DOCUMENT is tests/data/layout/ddi-hierarchical.xml: its record type, its id, and its persons, several of one household.
"""

import csv
import os
import sqlite3
import subprocess
import sys
import tempfile

LINES = ["H201000010001234", "P20100001035", "P20100001999", "H20100002", "P20100002000", "P20100002007"]
ROWS = {"H": [(1, 2010, 12.34), (2, 2010, None)],
        "P": [(1, 2010, 35), (1, 2010, None), (2, 2010, 0), (2, 2010, 7)]}
COLUMNS = {"H": ["SERIAL", "YEAR", "HHWT"], "P": ["SERIAL", "YEAR", "AGE"]}


def run(command, **options):
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, **options)


def number(text):
    return float(text) if text not in (None, "", "NA") else None


def rows_of_csv(directory):
    for table, columns in COLUMNS.items():
        with open(os.path.join(directory, table + ".csv"), newline="", encoding="utf-8") as file:
            yield table, [tuple(number(row[column]) for column in columns) for row in csv.DictReader(file)]


def sqlite_rows(sqlite, program, _data, directory):
    database = os.path.join(directory, "extract.db")
    with open(program, "rb") as script:
        run([sqlite, "-init", os.devnull, database], stdin=script, cwd=directory)
    connection = sqlite3.connect(database)
    for table, columns in COLUMNS.items():
        yield table, connection.execute(f"SELECT {', '.join(columns)} FROM {table}").fetchall()
    connection.close()


def pandas_rows(python, program, data, directory):
    run([python, program, data, directory], stderr=subprocess.DEVNULL)
    return rows_of_csv(directory)


def r_rows(rscript, program, data, directory):
    run([rscript, program, data, directory], stderr=subprocess.DEVNULL)
    export = "for (t in c('H', 'P')) write.csv(lapply(readRDS(paste0(t, '.rds')), as.numeric), paste0(t, '.csv'))"
    run([rscript, "-e", export], cwd=directory)
    return rows_of_csv(directory)


ENGINES = {"sqlite": sqlite_rows, "pandas": pandas_rows, "r": r_rows}


def check(tool, document, target, engine):
    with tempfile.TemporaryDirectory() as directory:
        data = os.path.join(directory, "extract.dat")
        with open(data, "w", encoding="ascii") as file:
            file.write("\n".join(LINES) + "\n")
        program = os.path.join(directory, "program")
        with open(program, "wb") as file:
            subprocess.run([tool, "load", "--to", target, "--data", data, document], check=True, stdout=file)
        made = {table: list(rows) for table, rows in ENGINES[target](engine, program, data, directory)}
    if made != ROWS:
        sys.exit(f"{target}: {made} instead of {ROWS}")


def main():
    tool, document, *engines = sys.argv[1:]
    for target, engine in zip(engines[::2], engines[1::2]):
        check(tool, os.path.abspath(document), target, engine)


main()
