#!/usr/bin/env python3
"""Figures of `vanlayout load`, and of the load program for SQLite on a generated census of lines of 120 characters.

    load_sqlite.py TOOL [LINES]        LINES is 1,000,000 by default

Each figure is that of a process of its own: CPU time (user and system), and the largest memory.
    vanlayout load   the programs of all targets for a dictionary of 10,000 items with value labels, ten records
    bare .import     sqlite3 imports the lines into a table of one column
    cut              the lines are imported, and cut into the columns of the tables, without any check of the cells
    program          the whole load program
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile

import load_scripts

TARGETS = ("sqlite", "postgresql", "duckdb", "dask", "r", "pandas", "spss", "stata", "sas")
IMPORT = '.mode ascii\n.separator "\\376" "\\n"\nCREATE {}TABLE load_lines (l TEXT);\n.import {} load_lines\n'


def large_dictionary(records, items):
    """A dictionary in the text form; each item has two characters and four values."""
    lines = ["[Dictionary]", "Version=CSPro 7.7", "Name=LARGE", "RecordTypeStart=1", "RecordTypeLen=2", "[Level]", "Name=L", "[IdItems]",
             "[Item]", "Name=ID", "Start=3", "Len=5"]
    for record in range(records):
        lines += ["[Record]", f"Name=RECORD{record}", f"RecordTypeValue='R{record}'"]
        for item in range(items // records):
            name = f"Q{record}_{item:04}"
            lines += ["[Item]", f"Label=Question {item} of part {record}", f"Name={name}", f"Start={8 + 2 * item}", "Len=2", "[ValueSet]",
                      f"Name={name}_VS1", "Value=1;Yes", "Value=2;No", "Value=3:9;Other", "Value=99;Not stated",
                      "Name=MISSING,Special"]
    return "\n".join(lines) + "\n"


def cut_statements(dictionary, tool):
    """Statements that fill the tables of the census with the characters of their columns."""
    layout = json.loads(subprocess.run([tool, "show", "--format", "json", dictionary], check=True, stdout=subprocess.PIPE).stdout)
    statements = []
    for level in layout["levels"]:
        for record in level["records"]:
            columns = []
            for item in level["ids"] + record["items"]:
                for k in range(item.get("occurrences", 1)):
                    columns.append((f"{item['name']}_{k}", item["start"] + k * item["length"], item["length"], item["type"]))
            types = ", ".join(name + (" TEXT" if kind == "alpha" else " INTEGER") for name, _, _, kind in columns)
            cells = ", ".join(f"substr(l, {start}, {length})" for _, start, length, _ in columns)
            statements.append(f"CREATE TABLE {record['name']} ({types});\nINSERT INTO {record['name']} SELECT {cells} FROM load_lines "
                              f"WHERE substr(l, 1, 1) = '{record['recordType']}';\n")
    return "".join(statements)


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    return path


def sqlite(name, script, directory):
    database = os.path.join(directory, "data.db")
    cpu = load_scripts.measured(name, ["sqlite3", "-init", os.devnull, database, f".read {script}"], directory)
    os.remove(database)
    return cpu


def measure_tool(tool, directory):
    large = write(os.path.join(directory, "large.dcf"), large_dictionary(10, 10000))
    for target in TARGETS:
        load_scripts.measured(f"vanlayout load --to {target}", [tool, "load", "--to", target, "-o", "large", large], directory)


def measure_sqlite(tool, lines, directory):
    dictionary, data = load_scripts.survey.census(os.path.join(directory, "census"), lines)
    subprocess.run([tool, "load", "--to", "sqlite", "--data", data, "-o", directory, dictionary], check=True)
    bare = sqlite("bare .import", write(os.path.join(directory, "bare.sql"), IMPORT.format("", data)), directory)
    cut = IMPORT.format("TEMP ", data) + "BEGIN;\n" + cut_statements(dictionary, tool) + "COMMIT;\n"
    cut = sqlite("cut without checks", write(os.path.join(directory, "cut.sql"), cut), directory)
    program = sqlite("program", os.path.join(directory, "SURVEY_DICT.sql"), directory)
    print(f"{'':32} {cut / bare:7.2f} (cut) and {program / bare:.2f} (program) times the bare .import")


def main(tool, lines):
    directory = tempfile.mkdtemp(prefix="van-load-")
    try:
        measure_tool(tool, directory)
        measure_sqlite(tool, lines, directory)
    finally:
        shutil.rmtree(directory)


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]), int(sys.argv[2]) if len(sys.argv) > 2 else 1000000)
