#!/usr/bin/env python3
"""What the tests of the programs for pandas and Dask have in common: DataFrames in the form of compare.py, and runs."""

import csv
import importlib.util
import os
import subprocess
import sys

import pandas as pd

import compare

POLICY = compare.Policy(numbers=compare.NEAREST)


def canonical(frame):
    """Columns and rows; a missing value is None."""
    columns = [[None if value is pd.NA else value for value in frame[name].astype(object)] for name in frame.columns]
    return {"columns": list(frame.columns), "rows": [list(row) for row in zip(*columns)]}


def from_csv(path, like):
    """The table of a CSV file. Its empty fields are missing; texts have no missing values there."""
    with open(path, encoding="utf-8", newline="") as file:
        rows = list(csv.reader(file))
    types = [str(like[name].dtype) for name in like.columns]
    convert = {"string": str, "Int64": int, "Float64": float}
    return {"columns": rows[0],
            "rows": [[None if cell == "" else convert[kind](cell) for kind, cell in zip(types, row)] for row in rows[1:]]}


def empty_texts_as_missing(table):
    return {"columns": table["columns"], "rows": [[None if cell == "" else cell for cell in row] for row in table["rows"]]}


def run(command, directory=None, status=0):
    """Runs a program; returns what it printed. Raises Difference if its status is another."""
    made = subprocess.run([sys.executable, "-B"] + command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=directory)
    printed = (made.stdout + made.stderr).decode("utf-8")
    if made.returncode != status:
        raise compare.Difference(f"status {made.returncode} of {command}, expected {status}:\n{printed}")
    return printed


def module(path):
    """A program as a module."""
    name = os.path.splitext(os.path.basename(path))[0]
    specification = importlib.util.spec_from_file_location(name, path)
    made = importlib.util.module_from_spec(specification)
    sys.modules[name] = made
    specification.loader.exec_module(made)
    return made


def file_of(files, ending):
    return next(path for name, path in files.items() if name.endswith(ending))
