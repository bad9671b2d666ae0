#!/usr/bin/env python3
"""Figures of the load program for DuckDB on a generated census of lines of 120 characters, written to Parquet files with a
memory limit of 1 GB.

    load_duckdb.py TOOL NODE MODULES [LINES...]     MODULES: see tests/load/duckdb.mjs; LINES is 1,000,000 and 10,000,000 by
                                                    default

Each figure is that of a process of its own: CPU time (user and system) for each million lines, and the largest memory. The
engine may use more memory than its limit, for what it does not account for. Of the DuckDB release of tests/load/package.json,
on two processors that other work shared:

     1,000,000 lines      11.7 s CPU for each million    573 MB
    10,000,000 lines      11.4 s CPU for each million   1271 MB
"""

import json
import os
import subprocess
import sys
import tempfile

TESTS = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "tests", "load")
sys.path.insert(0, TESTS)

import survey


def figure(tool, node, modules, directory, lines):
    dictionary, data = survey.census(os.path.join(directory, "census"), lines)
    subprocess.run([tool, "load", "--to", "duckdb", "--data", data, "-o", directory, dictionary], check=True)
    before = f"SET memory_limit = '1GB'; SET temp_directory = '{directory}'; SET VARIABLE parquet = '{directory}'"
    job = {"before": before, "script": os.path.join(directory, "SURVEY_DICT.sql")}
    process = subprocess.Popen([node, os.path.join(TESTS, "duckdb.mjs"), os.path.abspath(modules)], stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE)
    process.stdin.write(json.dumps(job).encode() + b"\n")
    process.stdin.close()
    result = json.loads(process.stdout.read())
    _, _, usage = os.wait4(process.pid, 0)
    if result["errors"]:
        sys.exit("\n".join(result["errors"]))
    cpu = usage.ru_utime + usage.ru_stime
    print(f"{lines:12,} lines {cpu * 1000000 / lines:9.1f} s CPU for each million {usage.ru_maxrss // 1024:6} MB", flush=True)


def main(tool, node, modules, *lines):
    for count in map(int, lines or (1000000, 10000000)):
        with tempfile.TemporaryDirectory() as directory:
            figure(tool, node, modules, directory, count)


if __name__ == "__main__":
    main(*sys.argv[1:])
