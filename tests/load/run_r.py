#!/usr/bin/env python3
"""Runs the programs for R on the generated survey and compares every table with the loader of the tests.

    run_r.py TOOL RSCRIPT
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile

import compare
import survey
from reference import Missing

POLICY = compare.Policy(numbers=compare.ULP)

# Writes all files DIRECTORY/*.rds as one text: a line for each value, in UTF-8 in every locale.
DUMP = r"""
cells <- function(values) {
  if (is.character(values)) {
    return(ifelse(is.na(values), "NA", paste0("s", enc2utf8(as.vector(values)))))
  }
  tags <- haven::na_tag(values)
  ifelse(!is.na(tags), paste0("t", tags), ifelse(is.na(values), "NA", sprintf("n%.17g", as.vector(values))))
}
label_of <- function(x) {
  label <- attr(x, "label", exact = TRUE)
  if (is.null(label)) "" else enc2utf8(label)
}
labels_of <- function(column) {
  labels <- attr(column, "labels")
  if (is.null(labels)) 0 else c(length(labels), rbind(cells(labels), names(labels)))
}
arguments <- commandArgs(trailingOnly = TRUE)
output <- file(arguments[2], "wb")
for (path in list.files(arguments[1], "[.]rds$", full.names = TRUE)) {
  frame <- readRDS(path)
  lines <- c(sub("[.]rds$", "", basename(path)), label_of(frame), length(frame), nrow(frame))
  for (number in seq_along(frame)) {
    column <- frame[[number]]
    lines <- c(lines, names(frame)[number], typeof(column), label_of(column), labels_of(column), cells(column))
  }
  writeLines(enc2utf8(lines), output, useBytes = TRUE)
}
close(output)
"""


def run(command, directory=None, status=0, locale="C.UTF-8"):
    """Runs a program; returns what it printed. Raises Difference if its status is another."""
    made = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=directory,
                          env=dict(os.environ, LC_ALL=locale))
    printed = (made.stdout + made.stderr).decode("utf-8", "replace")
    if (made.returncode != 0) != (status != 0):
        raise compare.Difference(f"status {made.returncode} of {command}:\n{printed}")
    return printed


def cell_of(text):
    if text[0] == "n":
        return float(text[1:])
    return text[1:] if text[0] == "s" else Missing(text[1:]) if text[0] == "t" else None


class Dump:
    """The tables of a directory by the names of their files: label, columns, labels of columns and codes, types, rows."""

    def __init__(self, rscript, directory):
        dump, out = os.path.join(directory, "dump.R"), os.path.join(directory, "dump.txt")
        with open(dump, "w", encoding="utf-8") as file:
            file.write(DUMP)
        run([rscript, dump, directory, out])
        with open(out, encoding="utf-8", newline="\n") as file:
            self.lines = iter(file.read().split("\n")[:-1])
        self.tables = {}
        for name in self.lines:
            self.tables[name] = self.table()

    def take(self, count):
        return [next(self.lines) for _ in range(count)]

    def table(self):
        label, width, rows = next(self.lines), int(next(self.lines)), int(next(self.lines))
        made = {"label": label, "columns": [], "labels": [], "types": [], "values": {}}
        cells = []
        for _ in range(width):
            name, kind, column_label = self.take(3)
            made["columns"].append(name)
            made["types"].append(kind)
            made["labels"].append(column_label)
            values = self.take(2 * int(next(self.lines)))
            made["values"][name] = {text: cell_of(code) for code, text in zip(values[::2], values[1::2])}
            cells.append([cell_of(text) for text in self.take(rows)])
        made["rows"] = [list(row) for row in zip(*cells)]
        return made


def labels_are(result, made):
    for name, table in result.tables.items():
        compare.same(f"{name}: label", table.label, made[name]["label"])
        compare.same(f"{name}: labels", [column.label for column in table.columns], made[name]["labels"])
        types = ["character" if column.item is not None and column.kind == "text" else "double"
                 for column in table.columns]
        compare.same(f"{name}: types", types, made[name]["types"])
        for column, values in made[name]["values"].items():
            labels = {row[4] for row in result.codes if row[:2] == (name, column)}
            compare.same(f"{name}.{column}: labels of codes that are not in the table codes", set(), set(values) - labels)


def tags_are_labelled(made):
    """Some code "missing" is labelled as the tagged value "m", and some code "refused" as "r"."""
    tags = {cell.tag for table in made.values() for values in table["values"].values() for cell in values.values()
            if isinstance(cell, Missing)}
    compare.same("tags that have labels", {"m", "r"}, tags)


def make(tool, variant, directory, *more):
    files = compare.make_program(tool, "r", variant, directory, *more)
    return next(path for name, path in files.items() if name.endswith(".R"))


def variant_agrees(tool, rscript, variant, directory, locale="C.UTF-8"):
    program = make(tool, variant, directory)
    out = os.path.join(directory, "out")
    printed = run([rscript, program, variant.data, out], locale=locale)
    result = compare.expected(tool, "r", variant)
    made = Dump(rscript, out).tables
    compare.tables(result, made, POLICY)
    compare.codes(result, made["codes"]["rows"])
    compare.counts(result, printed)
    labels_are(result, made)
    if variant.name == "mixed":
        tags_are_labelled(made)


def locale_does_not_matter(tool, rscript, directory):
    """Texts are UTF-8 also if the locale is not."""
    variant_agrees(tool, rscript, survey.variant(directory, "mixed"), directory, locale="C")
    variant_agrees(tool, rscript, survey.variant(directory, "windows-1252"), directory, locale="C")


def failures_leave_nothing(tool, rscript, directory):
    """A file that is absent or not in UTF-8 ends the run, and the tables of an earlier run stay."""
    variant = survey.variant(directory, "ascii")
    program = make(tool, variant, os.path.join(directory, "p"))
    out = os.path.join(directory, "out")
    run([rscript, program, variant.data, out])
    before = compare.files_of(out)
    run([rscript, program, os.path.join(directory, "absent.dat"), out], status=1)
    for wrong in survey.WRONG_BYTES:
        broken = survey.broken(os.path.join(directory, "broken.dat"), variant, 7, wrong)
        printed = run([rscript, program, broken, out], status=1)
        if "line 7 " not in printed or "--encoding windows-1252" not in printed:
            raise compare.Difference(f"message for {wrong}, which is not UTF-8: {printed!r}")
    compare.same("files after failed runs", before, compare.files_of(out))


def data_is_read_in_the_working_directory(tool, rscript, directory):
    """Without arguments the program reads the path that it was made with, also one that file() takes for something
    else, and writes into the working directory."""
    variant = survey.variant(directory, "ascii")
    os.rename(variant.data, os.path.join(directory, "stdin"))
    run([rscript, make(tool, variant._replace(data="stdin"), directory)], directory)
    rows = Dump(rscript, directory).tables["HOUSE"]["rows"]
    result = compare.expected(tool, "r", variant._replace(data=os.path.join(directory, "stdin")))
    compare.same("rows of HOUSE", len(result.tables["HOUSE"].rows), len(rows))


def parts_do_not_matter(tool, rscript, directory):
    """Tables do not depend on how many lines are read at once."""
    variant = survey.variant(directory, "long")
    program = make(tool, variant, directory)
    script = (f'source("{program}"); whole <- load_data("{variant.data}"); CHUNK <- 7; '
              f'stopifnot(identical(whole, load_data("{variant.data}")))')
    run([rscript, "-e", script])


def progress_is_reported(tool, rscript, directory):
    variant = survey.variant(directory, "ascii")
    script = f'source("{make(tool, variant, directory)}"); PROGRESS <- 0; CHUNK <- 20; load_data("{variant.data}")'
    printed = run([rscript, "-e", script])
    if f"{variant.data}: 100 % read\n" not in printed:
        raise compare.Difference(f"no progress in {printed!r}")


def source_runs_nothing(tool, rscript, directory):
    program = make(tool, survey.variant(directory, "ascii"), directory)
    before = sorted(os.listdir(directory))
    compare.same("printed by source()", "", run([rscript, "-e", f'source("{program}")'], directory))
    compare.same("files after source()", before, sorted(os.listdir(directory)))


def codes_that_are_one_number_have_the_first_label(tool, rscript, directory):
    """A double does not distinguish 999999999999999998 from 999999999999999999, and haven takes each label once."""
    codes = [survey.value("Nearly", "999999999999999998"), survey.value("All", "999999999999999999")]
    made = survey.Survey(survey.SETTINGS["plain-ascii"])
    made.records = [survey.Record("R", "", 1, 0, [survey.Item("BIG", 18, values=codes)], None)]
    made.place()
    dictionary = survey.write(os.path.join(directory, "big.dcf"), json.dumps(made.element()).encode("utf-8"))
    data = survey.write(os.path.join(directory, "big.dat"), b" 1  1999999999999999998\n")
    program = make(tool, survey.Variant("big", dictionary, data, [], "ascii", False), directory)
    printed = run([rscript, "-e", f'source("{program}"); print(names(attr(load_data("{data}")$R$BIG, "labels")))'], directory)
    if '[1] "Nearly"\n' not in printed:
        raise compare.Difference(f"labels: {printed!r}")


def main(tool, rscript):
    directory = tempfile.mkdtemp(prefix="van-r-")
    try:
        for variant in [*survey.variants(directory), survey.long_codes(directory)]:
            compare.check(f"R, {variant.name}", variant_agrees, tool, rscript, variant,
                          os.path.join(directory, variant.name))
        for test in (locale_does_not_matter, failures_leave_nothing, data_is_read_in_the_working_directory,
                     parts_do_not_matter, progress_is_reported, source_runs_nothing,
                     codes_that_are_one_number_have_the_first_label):
            place = os.path.join(directory, test.__name__)
            os.makedirs(os.path.join(place, "p"))
            compare.check(test.__name__, test, tool, rscript, place)
    finally:
        shutil.rmtree(directory)
    compare.finish()


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
