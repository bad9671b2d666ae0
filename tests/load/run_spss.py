#!/usr/bin/env python3
"""Runs the SPSS programs of the generated survey in PSPP, and compares all cells, labels and missing values.

    run_spss.py TOOL PSPP
"""

import json
import os
import struct
import subprocess
import sys
import tempfile
from fractions import Fraction

import compare
import longlines
import reference
import survey

POLICY = compare.Policy(compare.ULP, True, True)
TEXT_BYTES = {"utf-8": 4, "windows-1252": 3}


def run_pspp(pspp, program, directory):
    """Runs a program in a directory, in the locale C. Returns what it printed."""
    run = subprocess.run([pspp, program], cwd=directory, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                         env={"LC_ALL": "C", "PATH": os.environ["PATH"]}, timeout=300)
    printed = run.stdout.decode("utf-8", "replace")
    if run.returncode or "warning:" in printed or "error:" in printed:
        odd = [line for line in printed.split("\n") if line.strip() and not compare.COUNT.fullmatch(line.strip())]
        raise compare.Difference(f"{program}: status {run.returncode}\n" + "\n".join(odd[:20]))
    return printed


# ---------------------------------------------------------------------------------------------- files of SPSS

def layout_of(tool, path):
    """Variables, labels and missing values of a file, as `vanlayout show` has them."""
    run = subprocess.run([tool, "show", "--format", "json", path], stdout=subprocess.PIPE, check=True)
    return json.loads(run.stdout.decode("utf-8"))["levels"][0]["records"][0]


def is_text(variable):
    return variable["type"] == "alpha"


def rows_of(pspp, path, variables):
    """All cells, exactly: PSPP writes each as the hexadecimal bytes that it has in memory."""
    directory, name = os.path.split(path)
    formats = [f"{each['name']} (AHEX{2 * each['length']})" if is_text(each) else f"{each['name']} (RBHEX16)" for each in variables]
    with open(os.path.join(directory, "dump.sps"), "w", encoding="ascii") as file:
        file.write(f"GET FILE='{name}'.\nWRITE OUTFILE='dump.txt' /" + "\n ".join(formats) + ".\nEXECUTE.\n")
    run_pspp(pspp, "dump.sps", directory)
    with open(os.path.join(directory, "dump.txt"), encoding="ascii") as file:
        return [row_of(line.rstrip("\n"), variables) for line in file]


def row_of(line, variables):
    row = []
    for variable in variables:
        width = 2 * variable["length"] if is_text(variable) else 16
        text, line = line[:width], line[width:]
        cell = bytes.fromhex(text)
        row.append(cell.decode("utf-8").rstrip(" ") if is_text(variable) else number_of(cell))
    return row


def number_of(cell):
    """PSPP writes blanks for a cell that is system-missing."""
    return Fraction(struct.unpack("=d", cell)[0]) if cell else None


# --------------------------------------------------------------------------------------------------- comparisons

def cut(text, limit):
    """The text, cut to a number of bytes at a character."""
    return text.encode("utf-8")[:limit].decode("utf-8", "ignore")


def code_key(column, code):
    return code.rstrip(" ") if column.kind == "text" else reference.number_of(code, 0, True)


def expected_labels(column, language):
    """Label by code. Ranges of at most 100 whole numbers have it at each; specials come first."""
    labels = {}
    entries = sorted(column.values or [], key=lambda value: not value.get("special"))
    reserved = {key for value in entries if value.get("special") for key in keys_of(column, value)}
    for value in entries:
        text = cut(reference.text_of(value.get("labels"), language), 120)
        for key in keys_of(column, value):
            if text and (value.get("special") or key not in reserved):
                labels.setdefault(key, text)
    return labels


def keys_of(column, value):
    keys = []
    for pair in value["ranges"]:
        low, high = code_key(column, pair["from"]), code_key(column, pair.get("to", pair["from"]))
        if low is None or high is None or (column.kind == "text" and len(low) > column.length):
            continue
        if low == high:
            keys.append(low)
        elif column.kind != "text" and low.denominator == high.denominator == 1 and low < high < low + 100:
            keys += [Fraction(number) for number in range(int(low), int(high) + 1)]
    return keys


def made_key(column, code):
    """A code as the file has it; large numbers are written with an exponent."""
    return code.rstrip(" ") if column.kind == "text" else Fraction(code)


def made_labels(column, variable):
    values = [value for each in variable.get("valueSets", []) for value in each["values"]]
    return {made_key(column, pair["from"]): value["labels"][0]["text"] for value in values for pair in value["ranges"]}


def expected_missing(column, parsed):
    """The missing values that SPSS has room for: three codes, or a range and a code; one of a text of more than 8 bytes."""
    chosen = []
    keep = parsed.specials == "keep"
    places = 1 if column.kind == "text" and column.length * TEXT_BYTES[parsed.encoding] > 8 else 3
    for low, high, word in reference.specials_of(column):
        # A text that is not applicable, or has the default code, has no other way to be missing.
        is_declared = word == "notApplicable" or not keep
        if column.kind != "text":
            is_declared = word in ("missing", "refused") and not keep and low <= high
        if not is_declared or (low, high) in chosen or (column.kind == "text" and len(low.encode("utf-8")) > 8):
            continue
        ranges = sum(a != b for a, b in chosen + [(low, high)])
        if len(chosen) < (places if ranges == 0 else 2) and ranges <= 1:
            chosen.append((low, high))
    return sorted(chosen, key=str)


def made_missing(column, variable):
    pairs = [(pair["from"], pair.get("to", pair["from"])) for pair in variable.get("missing", [])]
    return sorted(((made_key(column, low), made_key(column, high)) for low, high in pairs), key=str)


def is_near(number):
    return float(number) if isinstance(number, Fraction) else number


def compare_variable(table, column, variable, parsed):
    """Name of what differs, expected, and got."""
    label = cut(column.label, 255) if column.item else variable.get("labels", [{"text": ""}])[0]["text"]
    got = variable.get("labels", [{"text": ""}])[0]["text"]
    near = lambda labels: {is_near(code): text.rstrip(" ") for code, text in labels.items()}
    pairs = lambda ranges: [(is_near(low), is_near(high)) for low, high in ranges]
    facts = [("label", label.rstrip(" "), got.rstrip(" ")),
             ("value labels", near(expected_labels(column, parsed.language)), near(made_labels(column, variable))),
             ("missing values", pairs(expected_missing(column, parsed)), pairs(made_missing(column, variable)))]
    return [f"{table.name}.{column.name}, {what}: expected {wanted}, got {made}" for what, wanted, made in facts if wanted != made]


def compare_labels(result, layouts):
    differences = []
    for table in result.tables.values():
        for column, variable in zip(table.columns, layouts[table.name]["items"]):
            differences += compare_variable(table, column, variable, result.parsed)
    compare.raise_if(differences)


def run(tool, pspp, variant, directory):
    result = compare.expected(tool, "spss", variant)
    files = compare.make_program(tool, "spss", variant, directory)
    printed = run_pspp(pspp, os.path.basename(next(iter(files))), directory)
    compare.counts(result, printed)
    made, layouts = {}, {}
    for name in os.listdir(directory):
        table, extension = os.path.splitext(name)
        if extension == ".sav":
            layouts[table] = layout_of(tool, os.path.join(directory, name))
            variables = layouts[table]["items"]
            made[table] = {"columns": [each["name"] for each in variables],
                           "rows": rows_of(pspp, os.path.join(directory, name), variables)}
        elif extension not in (".sps", ".txt"):
            raise compare.Difference(f"{name} was left in the directory")
    compare.tables(result, made, POLICY)
    compare_labels(result, layouts)


def keeps_tables_without_data(tool, pspp, variant, directory):
    """A data file that does not exist: PSPP ends with status 1, and the tables of the run before are left."""
    files = compare.make_program(tool, "spss", variant, directory)
    program = next(iter(files))
    run_pspp(pspp, program, directory)
    before = contents_of(directory)
    os.rename(variant.data, variant.data + ".away")
    run = subprocess.run([pspp, program], cwd=directory, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    os.rename(variant.data + ".away", variant.data)
    if run.returncode != 1 or contents_of(directory) != before:
        raise compare.Difference(f"status {run.returncode}; files before and after: {sorted(before)}, {sorted(contents_of(directory))}")


def contents_of(directory):
    contents = {}
    for name in os.listdir(directory):
        with open(os.path.join(directory, name), "rb") as file:
            contents[name] = file.read()
    return contents


def main(tool, pspp):
    with tempfile.TemporaryDirectory() as directory:
        for variant in survey.variants(directory) + longlines.variants(directory):
            compare.check(f"spss, {variant.name}", run, tool, pspp, variant, os.path.join(directory, "spss " + variant.name))
        compare.check("spss without its data file", keeps_tables_without_data, tool, pspp, survey.variant(directory, "ascii-long"),
                      os.path.join(directory, "absent"))
    compare.finish()


if __name__ == "__main__":
    main(*sys.argv[1:])
