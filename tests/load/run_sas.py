#!/usr/bin/env python3
"""Runs the SAS programs of the generated survey in the interpreter sas.py, and compares all cells and labels.

    run_sas.py TOOL PROJECT
"""

import os
import re
import shutil
import sys
import tempfile
from fractions import Fraction

import compare
import longlines
import reference
import run_docs
import sas
import survey
from missing import Missing

POLICY = compare.Policy(compare.ULP, True, False)
REASONS = {"missing": "M", "refused": "R"}


def cell_of(cell):
    if isinstance(cell, bytes):
        return cell.decode("utf-8")
    if isinstance(cell, Missing):
        return reference.Missing(cell.tag.lower()) if cell.tag else None
    return Fraction(cell)


def tables_of(outcome):
    return {name: {"columns": data.names, "rows": [[cell_of(cell) for cell in row] for row in data.rows]}
            for name, data in outcome.tables.items()}


# -------------------------------------------------------------------------------------------------------- labels

def label_of(entries, cell):
    """The label that a format gives to a cell; "" if it has none."""
    for low, low_is_included, high, high_is_included, label in entries:
        if isinstance(cell, (bytes, Missing)) or isinstance(low, (bytes, Missing)):
            if type(low) is type(cell) and low == cell:
                return label
        elif (low < cell or low_is_included and low == cell) and (cell < high or high_is_included and cell == high):
            return label
    return ""


def pairs_of(column):
    """(low, high, special, label parts) of the codes that cells can have, specials first."""
    pairs = []
    for value in sorted(column.values or [], key=lambda each: not each.get("special")):
        for pair in value["ranges"]:
            texts = [pair["from"], pair.get("to") or pair["from"]]
            if column.kind == "text":
                ends = [text.rstrip(" ").encode("utf-8") for text in texts]
            else:
                ends = [reference.number_of(text, 0, True) for text in texts]
            if None not in ends and (column.kind != "text" or ends[0] == ends[1]):
                pairs.append((*ends, value.get("special"), value.get("labels")))
    return pairs


def is_missing(column, special, parsed):
    if column.kind == "text" or not special:
        return False
    return special == "notApplicable" or parsed.specials != "keep"


def expected_label(column, pairs, cell, parsed):
    """The label of a cell: that of the first special, else of the first value, with this code."""
    for low, high, special, labels in pairs:
        if not is_missing(column, special, parsed) and low <= cell <= high:
            return reference.text_of(labels, parsed.language)
    return ""


def expected_reason(column, pairs, tag, parsed):
    texts = [reference.text_of(labels, parsed.language) for _, _, special, labels in pairs
             if REASONS.get(special) == tag and is_missing(column, special, parsed)]
    return next((text for text in texts if text), "")


def cells_to_try(column, pairs):
    """All ends of ranges, and numbers within and next to them that a cell can hold exactly."""
    ends = [end for low, high, _, _ in pairs for end in (low, high)]
    if column.kind == "text":
        return ends + [b"no code"]
    middles = [(low + high) / 2 for low, high, _, _ in pairs]
    is_exact = lambda number: Fraction(float(number)) == number
    return ends + list(filter(is_exact, middles + [end + step for end in filter(is_exact, ends) for step in (1, -1)]))


def format_differs(table, column, entries, parsed):
    differences = []
    pairs = pairs_of(column)
    for cell in cells_to_try(column, pairs):
        wanted, got = expected_label(column, pairs, cell, parsed), label_of(entries, cell if column.kind == "text" else float(cell))
        if wanted != got:
            differences.append(f"{table.name}.{column.name}: the label of {cell} is {wanted!r}, got {got!r}")
    for tag in REASONS.values() if column.kind != "text" else []:
        wanted, got = expected_reason(column, pairs, tag, parsed), label_of(entries, Missing(tag))
        if wanted != got:
            differences.append(f"{table.name}.{column.name}: the label of .{tag} is {wanted!r}, got {got!r}")
    return differences


def compare_labels(result, outcome):
    differences = []
    compared = set()
    for name, table in result.tables.items():
        data = outcome.tables[name]
        label = table.label.encode("utf-8")[:256].decode("utf-8", "ignore")
        if data.label != label:
            differences.append(f"{name}: the label is {label!r}, got {data.label!r}")
        for column in table.columns:
            key = column.name.lower()
            if column.item and data.labels.get(key, "") != column.label[:256]:
                differences.append(f"{name}.{column.name}: the label is {column.label!r}, got {data.labels.get(key)!r}")
            # Occurrences share the value set of their item, and a format.
            pair = (id(column.values), data.formats.get(key))
            if pair not in compared:
                differences += format_differs(table, column, outcome.formats.get(pair[1], []), result.parsed)
            compared.add(pair)
    compare.raise_if(differences)


def run_program(tool, variant, directory, data):
    files = compare.make_program(tool, "sas", variant, directory)
    try:
        return sas.run(next(iter(files.values())), data)
    except sas.SasError as error:
        raise compare.Difference(f"SAS stops: {error}") from error


def run(tool, variant, directory):
    result = compare.expected(tool, "sas", variant)
    outcome = run_program(tool, variant, directory, variant.data)
    compare.counts(result, "\n".join(outcome.log))
    compare.tables(result, tables_of(outcome), POLICY)
    compare_labels(result, outcome)


def stops_at_wrong_bytes(tool, variant, directory):
    """The message names the first line of bytes that are no characters."""
    for wrong in survey.WRONG_BYTES:
        broken = survey.broken(os.path.join(directory, "broken.dat"), variant, 7, wrong)
        compare.stops("Line 7 is not valid UTF-8.", run_program, tool, variant, os.path.join(directory, "broken"), broken)


def page(tool, project, directory):
    """The example of the page, which states the frequencies of a variable and the mean of another."""
    section = run_docs.section_of(project, "SAS")
    code = run_docs.interpreted_block(section, "sas")
    shutil.copy(os.path.join(project, "examples", "census.dat"), directory)
    example = survey.Variant("page", os.path.join(project, "examples", "census.dcf"), "census.dat", [], "ascii", False)
    files = compare.make_program(tool, "sas", example, directory)
    program, table, counted, averaged = re.fullmatch(
        r"%include '(.*)';\nproc freq data=(\w+); tables (\w+); run;\nproc means data=\w+ mean maxdec=2; var (\w+); run;\n", code).groups()
    outcome = sas.run(files[program])
    data = outcome.tables[table]
    column = lambda name: [row[data.names.index(name)] for row in data.rows]
    entries = outcome.formats[data.formats[counted.lower()]]
    compare.raise_if(run_docs.states_results(section, [label_of(entries, cell) for cell in column(counted)], column(averaged)))


def main(tool, project):
    with tempfile.TemporaryDirectory() as directory:
        variants = survey.variants(directory) + longlines.variants(directory)
        for variant in variants:
            compare.check(f"sas, {variant.name}", run, tool, variant, os.path.join(directory, "sas " + variant.name))
        absent = os.path.join(directory, "absent")
        compare.check("sas without its data file", compare.stops, "cannot be opened", run_program, tool, variants[0], absent,
                      os.path.join(directory, "absent.dat"))
        compare.check("sas, bytes that are not UTF-8", stops_at_wrong_bytes, tool, survey.variant(directory, "mixed"), directory)
        compare.check("sas, the page", page, tool, project, directory)
    compare.finish()


if __name__ == "__main__":
    main(*sys.argv[1:])
