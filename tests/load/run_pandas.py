#!/usr/bin/env python3
"""Runs the programs for pandas on the generated survey and compares every table with the loader of the tests.

    run_pandas.py TOOL        in a Python that has pandas
"""

import os
import re
import shutil
import sys
import tempfile

import pandas as pd

import compare
import frames
import survey


def labels_are(result, made):
    """The labels of tables and columns, and the labels of single codes that `codes` has."""
    for name, table in result.tables.items():
        attrs = made[name].attrs
        compare.same(f"{name}: label", table.label, attrs["label"])
        compare.same(f"{name}: labels", {column.name: column.label for column in table.columns if column.label},
                    attrs["labels"])
        for column, values in attrs["values"].items():
            labels = {row[4] for row in result.codes if row[:2] == (name, column)}
            compare.same(f"{name}.{column}: labels of codes that are not in the table codes", set(),
                        set(values.values()) - labels)


def types_are(result, made):
    for name, table in result.tables.items():
        for column in table.columns:
            is_text = column.item is not None and column.kind == "text"
            wanted = "string" if is_text else "Float64" if column.decimals or column.length > 18 else "Int64"
            compare.same(f"{name}.{column.name}: type", wanted, str(made[name][column.name].dtype))


def files_are(result, made, directory):
    """The CSV files have the cells of the DataFrames. Empty texts and missing cells are both empty there."""
    for name in os.listdir(directory):
        if not name.endswith(".pkl"):
            continue
        frame = pd.read_pickle(os.path.join(directory, name))
        compare.same(f"{name}: cells of the CSV", frames.empty_texts_as_missing(frames.canonical(frame)),
                    frames.from_csv(os.path.join(directory, name[:-4] + ".csv"), frame))


def pickles(directory, module):
    names = {table.name: table.file for table in module.TABLES}
    names["codes"] = "codes"
    return {name: pd.read_pickle(os.path.join(directory, file + ".pkl")) for name, file in names.items()}


def variant_agrees(tool, variant, directory):
    files = compare.make_program(tool, "pandas", variant, directory)
    program = frames.file_of(files, ".py")
    out = os.path.join(directory, "out")
    printed = frames.run([program, variant.data, out])
    result = compare.expected(tool, "pandas", variant)
    made = pickles(out, frames.module(program))
    compare.tables(result, {name: frames.canonical(frame) for name, frame in made.items()}, frames.POLICY)
    compare.codes(result, frames.canonical(made["codes"])["rows"])
    compare.counts(result, printed)
    labels_are(result, made)
    types_are(result, made)
    files_are(result, made, out)


def program_of(tool, directory, *more):
    variant = survey.variant(directory, "ascii")
    return variant, frames.file_of(compare.make_program(tool, "pandas", variant, directory, *more), ".py")


def failures_leave_nothing(tool, directory):
    """A file that is absent or not in UTF-8 ends the run, and the tables of an earlier run stay."""
    variant, program = program_of(tool, os.path.join(directory, "p"))
    out = os.path.join(directory, "out")
    frames.run([program, variant.data, out])
    before = compare.files_of(out)
    frames.run([program, os.path.join(directory, "absent.dat"), out], status=1)
    for wrong in survey.WRONG_BYTES:
        broken = survey.broken(os.path.join(directory, "broken.dat"), variant, 7, wrong)
        printed = frames.run([program, broken, out], status=1)
        if "line 7 " not in printed or "--encoding windows-1252" not in printed:
            raise compare.Difference(f"message for {wrong}, which is not UTF-8: {printed!r}")
    compare.same("files after failed runs", before, compare.files_of(out))


def data_is_read_in_the_working_directory(tool, directory):
    """Without arguments the program reads the path that it was made with, and writes into the working directory."""
    variant, _ = program_of(tool, directory)
    name = os.path.basename(variant.data)
    program = frames.file_of(compare.make_program(tool, "pandas", variant._replace(data=name), directory), ".py")
    frames.run([program], directory=directory)
    if "codes.csv" not in os.listdir(directory):
        raise compare.Difference("no codes.csv in the working directory")


def blocks_do_not_matter(tool, directory):
    """Tables do not depend on how much of the file is read at once."""
    variant = survey.variant(directory, "long")
    program = frames.file_of(compare.make_program(tool, "pandas", variant, directory), ".py")
    module = frames.module(program)
    whole = module.load(variant.data)
    module.BLOCK = 700
    module.MATRIX = 1500
    for name, frame in module.load(variant.data).items():
        pd.testing.assert_frame_equal(whole[name], frame)


def any_number_of_decimals_is_exact(tool, directory):
    module = frames.module(program_of(tool, directory)[1])
    for decimals in (1, 22, 23, 100):
        for text in ("  7", "123", "-45", "1.5"):
            field = module.np.array([[ord(character)] for character in text], module.np.uint8)
            cells, bad = module.cells_of(field, module.Column("X", "item", "Float64", 1, 3, decimals))
            wanted = float(text) if "." in text else float(f"{text.strip()}e-{decimals}")
            compare.same(f"{text} with {decimals} decimals", (wanted, False, 0),
                         (cells.values[0], bool(cells.missing[0]), bad))


def progress_is_reported(tool, directory):
    variant, program = program_of(tool, directory)
    script = (f"import {os.path.basename(program)[:-3]} as program; program.PROGRESS = 0; program.BLOCK = 2000; "
              f"program.load({variant.data!r})")
    printed = frames.run(["-c", script], directory)
    if not re.search(r"ascii\.dat: \d+ % read\n", printed) or f"{variant.data}: 100 % read\n" not in printed:
        raise compare.Difference(f"no progress in {printed!r}")


def other_arguments_print_the_usage(tool, directory):
    variant, program = program_of(tool, directory)
    for arguments in (["--help"], ["-h"], [variant.data, "out", "more"]):
        printed = frames.run([program, *arguments], directory, status=2)
        compare.same("message", f"Usage: python3 {os.path.basename(program)} [DATA [OUT]]\n", printed)


def import_runs_nothing(tool, directory):
    variant, program = program_of(tool, directory)
    before = sorted(os.listdir(directory))
    compare.same("printed by an import", "", frames.run(["-c", f"import {os.path.basename(program)[:-3]}"], directory))
    compare.same("files after an import", before, sorted(os.listdir(directory)))


def main(tool):
    directory = tempfile.mkdtemp(prefix="van-pandas-")
    try:
        for variant in [*survey.variants(directory), survey.long_codes(directory)]:
            compare.check(f"pandas, {variant.name}", variant_agrees, tool, variant, os.path.join(directory, variant.name))
        for test in (failures_leave_nothing, data_is_read_in_the_working_directory, blocks_do_not_matter,
                     any_number_of_decimals_is_exact, progress_is_reported, import_runs_nothing,
                     other_arguments_print_the_usage):
            place = os.path.join(directory, test.__name__)
            os.makedirs(os.path.join(place, "p"))
            compare.check(test.__name__, test, tool, place)
    finally:
        shutil.rmtree(directory)
    compare.finish()


if __name__ == "__main__":
    main(sys.argv[1])
