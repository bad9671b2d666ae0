#!/usr/bin/env python3
"""Compares what an engine made with what reference.py makes, and runs `vanlayout load` for the tests of all targets.

The canonical form of what an engine made:

    {name of the table: {"columns": [names], "rows": [[cell, ...], ...]}}

A cell is None (missing), a number (int, float, Decimal or Fraction), a str, or reference.Missing("m") or ("r").

    make_program(tool, target, variant, directory, *more)   runs `vanlayout load -o directory`; the paths of the files
    expected(tool, target, variant)                      the Result of reference.load() for a variant of survey.py
    tables(result, made, policy)                         compares all tables with the Result; raises Difference
    codes(result, rows)                                  compares the rows of the table `codes`, in any order
    counts(result, printed, prefixes)                    compares the lines with the counts in what a program printed
    times(line, number)                                  a count for a file that holds all lines so many times
    repeated_tables(result, made, number, policy)        the tables of such a file; changes the Result
    same(description, wanted, got)                       compares two values
    files_of(directory)                                  the files of a directory and their bytes
    check(description, function)                         runs a comparison; prints what differs and counts failures
    stops(message, function)                             runs a program that has to stop with a message
    finish()                                             ends the test: status 1 if a comparison failed

Policy(numbers, ordered, tabs_are_blanks)
    numbers   EXACT     a number is the exact one (decimal types)
              NEAREST   a number is the double that is nearest to the exact one
              ULP       likewise, or one of its neighbours
              In the last two, a number with more than 15 significant digits may differ by 1e-15 of itself.
    ordered   whether rows are in the order of the file; else they are sorted on both sides
    tabs_are_blanks   whether a tab may be a blank
"""

import math
import os
import re
import subprocess
import sys
from collections import Counter, namedtuple
from decimal import Decimal
from fractions import Fraction

import reference
from reference import Missing

Policy = namedtuple("Policy", "numbers ordered tabs_are_blanks", defaults=("exact", True, False))
EXACT, NEAREST, ULP = "exact", "nearest", "ulp"
SHOWN = 10

failures = []


class Difference(AssertionError):
    """What differs, one line each."""


# ----------------------------------------------------------------------------------------------------- programs

def make_program(tool, target, variant, directory, *more):
    """Writes the load program into the directory; returns the paths of its files by name."""
    os.makedirs(directory, exist_ok=True)
    arguments = [tool, "load", "--to", target, "--data", variant.data, *variant.options, *more, "-o", directory, variant.dictionary]
    run = subprocess.run(arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if run.returncode:
        raise Difference(f"status {run.returncode} of {' '.join(arguments)}: {run.stderr.decode('utf-8', 'replace')}")
    made = {name: os.path.join(directory, name) for name in sorted(os.listdir(directory))}
    for name, path in made.items():
        if name.endswith((".sql", ".py", ".R", ".sps", ".do", ".dct", ".sas")):
            check_lines(name, path)
    return made


def check_lines(name, path):
    """No line of a program has more than 1,000 bytes: R breaks longer ones. SPSS has at most 256 for a command."""
    limit = 256 if name.endswith(".sps") else 1000
    with open(path, "rb") as file:
        lines = file.read().split(b"\n")
    longest = max((line for line in lines if limit > 256 or not line.startswith(b"/*")), key=len)
    if len(longest) > limit:
        raise Difference(f"{name}: a line of {len(longest)} bytes: {longest[:200]}")


def expected(tool, target, variant):
    return reference.load(tool, target, variant.dictionary, variant.data, variant.options)


# -------------------------------------------------------------------------------------------------------- cells

def significant_digits(number):
    """Digits of a finite decimal fraction, without zeros at its ends."""
    numerator, denominator = abs(number.numerator), number.denominator
    while denominator % 10 == 0:
        denominator //= 10
    power = 0
    while numerator % 1 == 0 and (numerator * 10 ** power) % denominator:
        power += 1
    return len(str(numerator * 10 ** power // denominator).strip("0"))


def number_is(wanted, got, numbers):
    """Whether a number is the exact one, or near enough to it. -0 is no number."""
    if isinstance(got, float) and (not math.isfinite(got) or str(got) == "-0.0"):
        return False
    if numbers == EXACT or Fraction(got) == wanted:
        return Fraction(got) == wanted
    nearest = float(wanted)
    if float(got) == nearest:
        return True
    if significant_digits(wanted) > 15 and abs(Fraction(got) - wanted) <= abs(wanted) / 10 ** 15:
        return True
    return numbers == ULP and abs(float(got) - nearest) <= math.ulp(nearest)


def is_number(cell):
    return isinstance(cell, (int, float, Decimal, Fraction)) and not isinstance(cell, bool)


def text_with_blanks(text):
    return text.replace("\t", " ").rstrip(" ")


def cell_is(wanted, got, policy):
    if is_number(wanted):
        return is_number(got) and number_is(wanted, got, policy.numbers)
    if isinstance(wanted, str) and isinstance(got, str) and policy.tabs_are_blanks:
        return text_with_blanks(wanted) == text_with_blanks(got)
    return type(wanted) is type(got) and wanted == got


def sort_key(row):
    """A key that is equal for rows that are equal within the tolerance."""
    def of(cell):
        if cell is None:
            return (0, 0, "")
        if isinstance(cell, Missing):
            return (1, 0, cell.tag)
        return (2, float(f"{float(cell):.12g}"), "") if is_number(cell) else (3, 0, text_with_blanks(cell))
    return [of(cell) for cell in row]


def shown(cell):
    if isinstance(cell, Fraction):
        return f"{cell} ({float(cell)!r})" if cell.denominator > 1 else str(cell)
    return repr(cell)


# ------------------------------------------------------------------------------------------------------- tables

def raise_if(differences):
    if differences:
        more = [f"... and {len(differences) - SHOWN} more"] if len(differences) > SHOWN else []
        raise Difference("\n".join(differences[:SHOWN] + more))


def rows_differ(name, columns, wanted, got, policy):
    """A line for each cell that differs."""
    if len(wanted) != len(got):
        return [f"{name}: expected {len(wanted)} rows, got {len(got)}"]
    if not policy.ordered:
        wanted, got = sorted(wanted, key=sort_key), sorted(got, key=sort_key)
    differences = []
    for number, (wanted_row, got_row) in enumerate(zip(wanted, got), 1):
        if len(wanted_row) != len(got_row):
            differences.append(f"{name}, row {number}: expected {len(wanted_row)} cells, got {len(got_row)}")
        differences += [f"{name}, row {number}, {column}: expected {shown(a)}, got {shown(b)}"
                        for column, a, b in zip(columns, wanted_row, got_row) if not cell_is(a, b, policy)]
    return differences


def tables(result, made, policy=Policy()):
    """Compares all tables but `codes`. Raises Difference."""
    differences = []
    if set(result.tables) != set(made) - {"codes"}:
        differences.append(f"tables: expected {sorted(result.tables)}, got {sorted(set(made) - {'codes'})}")
    for name, table in result.tables.items():
        if name not in made:
            continue
        columns = [column.name for column in table.columns]
        if columns != list(made[name]["columns"]):
            differences.append(f"{name}: expected the columns {columns}, got {list(made[name]['columns'])}")
            continue
        differences += rows_differ(name, columns, table.rows, made[name]["rows"], policy)
    raise_if(differences)


def codes(result, rows):
    """Compares the rows of `codes`: six texts each, None for NULL. The order does not count."""
    wanted, got = Counter(result.codes), Counter(tuple(row) for row in rows)
    differences = [f"codes: absent row {row}" for row in (wanted - got).elements()]
    raise_if(differences + [f"codes: row that should not be there {row}" for row in (got - wanted).elements()])


COUNT = re.compile(r"(?:[^:]+: \d+ rows|[^:]+: \d+ values are no numbers|\d+ lines of no known record type|\d+ blank lines)")


def counts(result, printed, ignored=()):
    """Compares the lines with counts, in any order. `ignored`: ends of lines that the target does not have to print."""
    got = [line.strip() for line in printed.replace("\r", "").split("\n") if COUNT.fullmatch(line.strip())]
    is_kept = lambda line: not any(line.endswith(end) for end in ignored)
    wanted, got = Counter(filter(is_kept, result.counts)), Counter(filter(is_kept, got))
    differences = [f"counts: absent line {line!r}" for line in (wanted - got).elements()]
    raise_if(differences + [f"counts: line that should not be there {line!r}" for line in (got - wanted).elements()])


def times(line, number):
    """A line with a count, for a file that holds all lines so many times."""
    return re.sub(r"\d+(?= (?:rows|values are|lines of))", lambda match: str(int(match[0]) * number), line)


def repeated_tables(result, made, number, policy=Policy()):
    """Compares the tables of a file that holds all lines so many times: `occ` counts on from one time to the next."""
    raise_if([f"{name}: expected {len(table.rows) * number} rows, got {len(made[name]['rows'])}"
              for name, table in result.tables.items() if len(made[name]["rows"]) != len(table.rows) * number])
    for name, table in result.tables.items():
        table.rows = repeated_rows(table, number)
    tables(result, made, policy)


def repeated_rows(table, number):
    roles = [column.role for column in table.columns]
    place = roles.index("occ") if "occ" in roles else None
    if place is None:
        return table.rows * number
    keys = [tuple(None if isinstance(cell, Missing) else cell for cell in row[:place]) for row in table.rows]
    sizes = Counter()
    for key, row in zip(keys, table.rows):
        sizes[key] = max(sizes[key], row[place])
    return [row[:place] + [row[place] + k * sizes[key]] + row[place + 1:]
            for k in range(number) for key, row in zip(keys, table.rows)]


# ------------------------------------------------------------------------------------------------- running a test

def same(description, wanted, got):
    if wanted != got:
        raise Difference(f"{description}: expected {wanted!r}, got {got!r}")


def files_of(directory):
    contents = {}
    for name in sorted(os.listdir(directory)):
        with open(os.path.join(directory, name), "rb") as file:
            contents[name] = file.read()
    return contents


def check(description, function, *arguments):
    """Runs one comparison and prints what differs."""
    try:
        function(*arguments)
        return True
    except Difference as difference:
        failures.append(description)
        print(f"FAIL {description}\n{difference}", flush=True)
        return False


def stops(message, function, *arguments):
    """Runs a program that has to stop with a message that holds this text."""
    try:
        function(*arguments)
    except Difference as difference:
        if message in str(difference):
            return
        raise
    raise Difference(f"the program did not stop with {message!r}")


def finish():
    print(f"{len(failures)} comparisons failed" if failures else "all tables agree")
    sys.exit(1 if failures else 0)
