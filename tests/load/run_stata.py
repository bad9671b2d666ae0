#!/usr/bin/env python3
"""Runs the Stata programs of the generated survey in the interpreter stata.py, and compares all cells and labels.

    run_stata.py TOOL PROJECT
"""

import os
import re
import sys
import tempfile
from fractions import Fraction

import compare
import longlines
import reference
import run_docs
import stata
import survey
from missing import Missing

POLICY = compare.Policy(compare.ULP, True, False)


def cell_of(cell):
    if isinstance(cell, bytes):
        return cell.decode("utf-8")
    if isinstance(cell, Missing):
        return reference.Missing(cell.tag) if cell.tag else None
    return Fraction(cell)


def tables_of(outcome):
    return {name[:-4]: {"columns": data.names, "rows": [[cell_of(cell) for cell in row] for row in data.rows]}
            for name, data in outcome.files.items()}


# -------------------------------------------------------------------------------------------------------- labels

def written(label, limit=None):
    """A label as Stata can hold it: no backquote before a quote or at the end, no quote before an apostrophe. With a limit,
    as much of it as has that many characters then."""
    if limit is not None:
        return next(made for made in (written(label[:end]) for end in range(limit, -1, -1)) if len(made) <= limit)
    label = label.replace('`"', "'\"")
    label = label[:-1] + "'" if label.endswith("`") else label
    return label.replace("\"'", "\" '")


def is_plain_missing(value, parsed):
    return value.get("special") == "notApplicable" or (value.get("special") == "default" and parsed.specials != "keep")


def codes_of(value, parsed):
    """What a label stands at: whole numbers, or the reason of a missing value."""
    if value.get("special") in ("missing", "refused") and parsed.specials != "keep":
        return [Missing(value["special"][0])] if keys_of(value) else []
    return [key for key in keys_of(value) if key == int(key) and abs(key) <= 2147483620]


def keys_of(value):
    keys = []
    for pair in value["ranges"]:
        low = reference.number_of(pair["from"], 0, True)
        high = reference.number_of(pair.get("to", pair["from"]), 0, True)
        if low is None or high is None:
            continue
        if low == high:
            keys.append(low)
        elif low.denominator == high.denominator == 1 and low < high < low + 100:
            keys += range(int(low), int(high) + 1)
    return keys


def expected_labels(column, parsed):
    """Label by code; a special takes the label of its code from other values."""
    if column.kind == "text":
        return {}
    labels = {}
    values = column.values or []
    reserved = {key for value in values if value.get("special") for key in keys_of(value)}
    for value in sorted(values, key=lambda each: not each.get("special")):
        text = written(reference.text_of(value.get("labels"), parsed.language))
        for code in codes_of(value, parsed):
            if text and (value.get("special") or code not in reserved):
                labels.setdefault(code, None if is_plain_missing(value, parsed) else text)
    return {code: text for code, text in labels.items() if text is not None}


def compare_labels(result, outcome):
    differences = []
    for name, table in result.tables.items():
        data = outcome.files[table.name + ".dta"]
        if data.label != written(table.label, 80):
            differences.append(f"{name}: the label is {table.label!r}, got {data.label!r}")
        for column in table.columns:
            if column.item:
                label, got = written(column.label, 80), data.variable_labels.get(column.name, "")
                differences += [f"{name}.{column.name}, label: expected {label!r}, got {got!r}"] if label != got else []
            labels, got = expected_labels(column, result.parsed), data.value_labels.get(column.name, {})
            differences += [f"{name}.{column.name}, value labels: expected {labels}, got {got}"] if labels != got else []
    compare.raise_if(differences)


# ------------------------------------------------------------------------------------------------------- the run

def run_program(tool, variant, directory, arguments, takes_blanks_off, release=17):
    files = compare.make_program(tool, "stata", variant, directory)
    program = next(path for name, path in files.items() if name.endswith(".do"))
    try:
        return stata.run(program, arguments, release, takes_blanks_off)
    except stata.StataError as error:
        raise compare.Difference(f"Stata stops: {error}") from error


def run(tool, variant, directory, takes_blanks_off, release):
    result = compare.expected(tool, "stata", variant)
    outcome = run_program(tool, variant, directory, [variant.data], takes_blanks_off, release)
    compare.counts(result, "\n".join(outcome.printed))
    compare.tables(result, tables_of(outcome), POLICY)
    compare_labels(result, outcome)


def page(tool, project, directory):
    """The example of the page, which states the frequencies of a variable and the mean of another."""
    section = run_docs.section_of(project, "Stata")
    commands = dict(re.findall(r"(\w+) (.*)", run_docs.interpreted_block(section, "stata")))
    source, made = re.match(r"convertfile (\S+) (\S+), dstencoding\(windows-1252\)", commands["unicode"]).groups()
    with open(os.path.join(project, "examples", source), "rb") as file:
        text = file.read().decode("utf-8")
    with open(os.path.join(directory, made), "wb") as file:
        file.write(text.encode("windows-1252"))
    example = survey.Variant("page", os.path.join(project, "examples", "census.dcf"), made, ["--encoding", "windows-1252"], "latin", False)
    files = compare.make_program(tool, "stata", example, directory)
    program, data = commands["do"].split()
    outcome = stata.run(files[program], [data])
    table = outcome.files[commands["use"].split(",")[0]]
    labels = table.value_labels[commands["tabulate"]]
    compare.raise_if(run_docs.states_results(section, [labels[cell] for cell in table.columns[commands["tabulate"]]],
                                             table.columns[commands["summarize"]]))


def keeps_blanks(variant):
    """Whether no text begins with a blank: without record types nothing precedes a text at the begin of a line, and the
    first of long lines, which has a byte-order mark, would be put together of several texts."""
    return not variant.name.startswith(("plain", "long lines"))


def main(tool, project):
    with tempfile.TemporaryDirectory() as directory:
        for variant in survey.variants(directory) + longlines.variants(directory):
            place = os.path.join(directory, "stata " + variant.name)
            if variant.characters == "full":
                compare.check(f"stata, {variant.name}", compare.stops, "lines are not ASCII", run_program, tool, variant, place, [],
                              True)
                continue
            for takes_blanks_off in [True, False] if keeps_blanks(variant) else [False]:
                way = "blanks off" if takes_blanks_off else "blanks kept"
                compare.check(f"stata, {variant.name}, {way}", run, tool, variant, place, takes_blanks_off, 17)
        compare.check("stata without its data file", compare.stops, "not found, r(601)", run_program, tool,
                      survey.variant(directory, "ascii"), os.path.join(directory, "absent"), [os.path.join(directory, "absent.dat")], True)
        ascii_variant = survey.variant(directory, "ascii")
        broken = survey.broken(os.path.join(directory, "broken.dat"), ascii_variant, 7, b"\xe9")
        compare.check("stata, a byte that is not ASCII", compare.stops, "1 lines are not ASCII; the first is line 7.", run_program,
                      tool, ascii_variant, os.path.join(directory, "broken"), [broken], True)
        compare.check("stata, a byte-order mark before a long line", compare.stops, "Remove the mark", run_program, tool,
                      longlines.variants(directory)[0], os.path.join(directory, "mark"), [], True)
        compare.check("stata, the page", page, tool, project, directory)
    compare.finish()


if __name__ == "__main__":
    main(*sys.argv[1:])
