#!/usr/bin/env python3
"""Runs the DuckDB programs, and compares the tables and the Parquet files with those of the reference loader.

    run_duckdb.py TOOL NODE MODULES     MODULES: a directory that has the package @duckdb/node-api in node_modules
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile

import compare
import survey

NUMBERS = ("INTEGER", "BIGINT", "DOUBLE")
POLICY = compare.Policy(compare.NEAREST)
TABLES = ("SELECT table_name FROM duckdb_tables() WHERE database_name = current_database() AND schema_name = 'main' "
          "AND NOT temporary ORDER BY 1")


class Engine:
    """One process that runs jobs. Use it in `with`."""

    def __init__(self, node, modules):
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "duckdb.mjs")
        self.process = subprocess.Popen([node, script, modules], stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()

    def run(self, **job):
        self.process.stdin.write(json.dumps(job).encode() + b"\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline().decode("utf-8", "surrogatepass"))


def quoted(text, mark):
    return mark + text.replace(mark, mark + mark) + mark


def cell(value, kind):
    if value is None or kind not in NUMBERS:
        return value
    return int(value) if kind == "BIGINT" else float(value) if value == "-0" else value


def table_of(answer):
    return {"columns": answer["columns"],
            "rows": [[cell(value, kind) for value, kind in zip(row, answer["types"])] for row in answer["rows"]]}


def loaded(engine, names, **job):
    """Runs a program; the result, and the tables with these names as they are in the order of the engine."""
    queries = [f"SELECT * FROM {quoted(name, chr(34))}" for name in names]
    result = engine.run(queries=queries, **job)
    if len(result["answers"]) != len(names):
        raise compare.Difference(f"{result['errors']}")
    return result, {name: table_of(answer) for name, answer in zip(names, result["answers"])}


def program_of(files):
    return next(path for path in files.values() if path.endswith(".sql"))


def check_result(result, wanted):
    if result["errors"]:
        raise compare.Difference(f"errors: {result['errors']}")
    if result["counts"] != wanted.counts:
        compare.counts(wanted, "\n".join(result["counts"]))
        raise compare.Difference(f"counts in another order: {result['counts']}")


# ------------------------------------------------------------------------------------------------------- the tests

def compare_variant(engine, tool, variant, directory):
    program = program_of(compare.make_program(tool, "duckdb", variant, os.path.join(directory, variant.name)))
    wanted = compare.expected(tool, "duckdb", variant)
    names = list(wanted.tables) + ["codes"]
    database = os.path.join(directory, variant.name + ' "x".db')
    result, made = loaded(engine, names, database=database, script=program)
    check_result(result, wanted)
    compare.tables(wanted, made, POLICY)
    compare.codes(wanted, made["codes"]["rows"])
    compare_comments(engine, database, wanted)
    compare_second_run(engine, database, program, names, made, result["counts"])
    compare_parquet(engine, program, wanted, names, made, os.path.join(directory, variant.name))


def compare_comments(engine, database, wanted):
    answers = engine.run(database=database, queries=[
        "SELECT table_name, NULL, comment FROM duckdb_tables() WHERE database_name = current_database()",
        "SELECT table_name, column_name, comment FROM duckdb_columns() WHERE database_name = current_database()"])["answers"]
    got = {(table, column): comment or "" for answer in answers for table, column, comment in answer["rows"]}
    for table in wanted.tables.values():
        for column, label in [(None, table.label)] + [(c.name, c.label) for c in table.columns if c.item]:
            if got[table.name, column] != label:
                raise compare.Difference(f"{table.name}.{column}: expected the comment {label!r}, got {got[table.name, column]!r}")


def compare_second_run(engine, database, program, names, made, counts):
    """A second run replaces what the first made. A run without data leaves it, whether the client stops or goes on."""
    other = "INSERT INTO codes VALUES ('OTHER TABLE', 'X', '1', NULL, 'One', NULL)"
    result, again = loaded(engine, names, database=database, before=other, script=program)
    # The codes of other programs stay.
    codes = [["OTHER TABLE", "X", "1", None, "One", None]] + made["codes"]["rows"]
    made = made | {"codes": {"columns": made["codes"]["columns"], "rows": codes}}
    if again != made or result["counts"] != counts:
        raise compare.Difference("the second run made other tables")
    for stops in (False, True):
        result = engine.run(database=database, before="SET VARIABLE data = 'no such file.dat'", script=program, stops=stops)
        if not result["errors"] or "no such file.dat" not in result["errors"][0] or result["counts"]:
            raise compare.Difference(f"a run without data: {result}")
        result, kept = loaded(engine, names, database=database)
        if kept != made:
            raise compare.Difference("a run without data changed the tables")
    left = engine.run(database=database, queries=[TABLES])["answers"][0]["rows"]
    if sorted(name for name, in left) != sorted(names):
        raise compare.Difference(f"tables: {left}")


def compare_parquet(engine, program, wanted, names, made, directory):
    """Files with the same content, and no tables."""
    before = f"SET VARIABLE parquet = {quoted(directory, chr(39))}"
    result = engine.run(before=before, script=program, queries=[
        TABLES, "SELECT database_name FROM duckdb_databases() WHERE NOT internal",
        *[f"SELECT * FROM read_parquet({quoted(os.path.join(directory, name + '.parquet'), chr(39))})" for name in names]])
    check_result(result, wanted)
    if result["answers"][0]["rows"] or len(result["answers"][1]["rows"]) != 1:
        raise compare.Difference(f"tables next to the files: {result['answers'][:2]}")
    if {name: table_of(answer) for name, answer in zip(names, result["answers"][2:])} != made:
        raise compare.Difference("the Parquet files differ from the tables")


def compare_bad_bytes(engine, tool, variant, directory):
    """A file that is not UTF-8 stops the program, and the message names the line."""
    data = survey.write(os.path.join(directory, "bad [1] *.dat"), b"HH 1  1\nR  1\nHH 2 \xe9\nHH \xff\n")
    survey.write(os.path.join(directory, "bad [1] x.dat"), b"HH 1  1\n")
    program = program_of(compare.make_program(tool, "duckdb", variant, os.path.join(directory, "bad")))
    for stops in (False, True):
        result = engine.run(before=f"SET VARIABLE data = {quoted(data, chr(39))}", script=program, stops=stops, queries=[TABLES])
        if "Line 3 is not valid UTF-8" not in result["errors"][0] or "--encoding windows-1252" not in result["errors"][0]:
            raise compare.Difference(f"{result['errors']}")
        if result["counts"] or (not stops and result["answers"][0]["rows"]):
            raise compare.Difference(f"a failed run left tables or counts: {result}")


def compare_name_of_packed_file(engine, tool, variant, directory):
    """A file is not unpacked because of its name."""
    data = os.path.join(directory, "lines.gz")
    shutil.copyfile(variant.data, data)
    compare_variant(engine, tool, variant._replace(name="packed", data=data), directory)


def compare_blocks(engine, tool, variant, directory):
    """The same lines many times, read in blocks of 4,096 bytes, with little memory."""
    with open(variant.data, "rb") as file:
        lines = [line for line in file.read()[3:].split(b"\n") if line.strip(b" \r")]
    times = 1200000 // sum(len(line) + 1 for line in lines) + 1
    data = survey.write(os.path.join(directory, "large.dat"), b"\n".join(lines * times))
    program = program_of(compare.make_program(tool, "duckdb", variant, os.path.join(directory, "blocks")))
    with open(program, encoding="utf-8") as file:
        text = file.read()
    assert text.count("max_line_size = 2000000") == 1
    survey.write(program, text.replace("max_line_size = 2000000", "max_line_size = 2000, buffer_size = 4096").encode())
    wanted = compare.expected(tool, "duckdb", variant)
    before = f"SET memory_limit = '100MB'; SET threads = 2; SET temp_directory = {quoted(directory, chr(39))}; " \
             f"SET VARIABLE data = {quoted(data, chr(39))}"
    result, made = loaded(engine, list(wanted.tables), before=before, script=program)
    wanted.counts = [compare.times(line, times) for line in wanted.counts if not line.endswith("blank lines")]
    check_result(result, wanted)
    compare.repeated_tables(wanted, made, times, POLICY)


def main(tool, node, modules):
    with tempfile.TemporaryDirectory() as directory, Engine(node, modules) as engine:
        made = [*survey.variants(directory), survey.long_codes(directory, neighbours=False)]
        for variant in made:
            compare.check(f"duckdb {variant.name}", compare_variant, engine, tool, variant, directory)
        compare.check("bad bytes", compare_bad_bytes, engine, tool, made[0], directory)
        compare.check("name of a packed file", compare_name_of_packed_file, engine, tool, made[4], directory)
        compare.check("blocks", compare_blocks, engine, tool, made[0], directory)
    compare.finish()


if __name__ == "__main__":
    main(*sys.argv[1:])
