#!/usr/bin/env python3
"""Tests the comparison itself: each kind of difference is found, and what a policy allows is not one. Then the
reference loader, on a small survey whose tables are written out here.

    comparetest.py TOOL
"""

import json
import math
import os
import sys
import tempfile
from fractions import Fraction

import compare
import reference
import survey
from reference import Missing

ONE_TENTH = Fraction(1, 10)


def differs(*arguments):
    """The lines on what differs; empty for nothing."""
    try:
        compare.tables(*arguments)
    except compare.Difference as difference:
        return str(difference)
    return ""


def result_of(rows):
    table = reference.Table("T", {}, [reference.Column("A", "item"), reference.Column("B", "item")], "")
    table.rows = rows
    result = reference.Result(None)
    result.tables["T"] = table
    return result


def made(rows, columns=("A", "B")):
    return {"T": {"columns": list(columns), "rows": rows}, "codes": {"columns": [], "rows": []}}


def test_tables():
    wanted = result_of([[Fraction(1), "x"], [None, ""]])
    assert differs(wanted, made([[1, "x"], [None, ""]])) == ""
    assert differs(wanted, made([[1, "x"], [None, None]])) == "T, row 2, B: expected '', got None"
    assert differs(wanted, made([[2, "x"], [None, ""]])) == "T, row 1, A: expected 1, got 2"
    assert differs(wanted, made([["1", "x"], [None, ""]])) == "T, row 1, A: expected 1, got '1'"
    assert differs(wanted, made([[1, "x"]])) == "T: expected 2 rows, got 1"
    assert differs(wanted, made([[1, "x"], [None, ""]], "BA")).startswith("T: expected the columns")
    assert differs(wanted, {}).startswith("tables: expected ['T'], got []")
    assert differs(wanted, made([[1, "x"], [None, ""]]) | {"U": {}}).startswith("tables:")
    assert differs(wanted, made([[None, ""], [1, "x"]]))
    assert differs(wanted, made([[None, ""], [1, "x"]]), compare.Policy(ordered=False)) == ""


def test_numbers():
    tenth = result_of([[ONE_TENTH, "a\tb\t"]])
    near = math.nextafter(0.1, 1)
    assert differs(tenth, made([[0.1, "a\tb\t"]]), compare.Policy("exact"))
    assert not differs(tenth, made([[0.1, "a\tb\t"]]), compare.Policy("nearest"))
    assert differs(tenth, made([[near, "a\tb\t"]]), compare.Policy("nearest"))
    assert not differs(tenth, made([[near, "a\tb\t"]]), compare.Policy("ulp"))
    assert differs(tenth, made([[near + 1e-16, "a\tb\t"]]), compare.Policy("ulp"))
    assert not differs(tenth, made([[0.1, "a b"]]), compare.Policy("ulp", True, True))
    assert differs(tenth, made([[0.1, "a b"]]), compare.Policy("ulp"))
    assert differs(tenth, made([[math.nan, ""]]), compare.Policy("ulp"))
    large = result_of([[Fraction(12345678901234567890), ""]])
    assert not differs(large, made([[12345678901234569999, ""]]), compare.Policy("nearest"))
    assert differs(large, made([[12345678901234599999, ""]]), compare.Policy("nearest"))
    assert differs(result_of([[Missing("m"), ""]]), made([[Missing("r"), ""]]))
    assert differs(result_of([[Missing("m"), ""]]), made([[None, ""]]))


def test_counts():
    result = result_of([])
    result.counts = ["T: 0 rows", "3 blank lines"]
    compare.counts(result, "note\nT: 0 rows\r\n3 blank lines\n")
    compare.counts(result, "T: 0 rows\n", ["blank lines"])
    for printed in ("T: 1 rows\n3 blank lines", "T: 0 rows", "T: 0 rows\n3 blank lines\n1 lines of no known record type"):
        try:
            compare.counts(result, printed)
        except compare.Difference:
            continue
        raise AssertionError(printed)


# A small survey, and what each target has to make of it.
def small_dictionary():
    survey_ = survey.Survey.__new__(survey.Survey)
    survey_.type_columns = (1, 1)
    survey_.ids = [[survey.Item("ID", 2, "Id")]]
    codes = [survey.value("Some", ("1", "9")), survey.value("Lost", "7", special="MISSING"),
             survey.value("No", "8", special="REFUSED"), survey.value("None", "6", special="NOTAPPL")]
    survey_.records = [survey.Record("CODES", "A", 9, 0, [
        survey.Item("OCC", 1, "Occ", values=codes), survey.Item("D", 4, "D", decimals=2), survey.Item("T", 2, None, "alpha", times=2)], "R")]
    survey_.place()
    return json.dumps(survey_.element()).encode()


SMALL_DATA = b"\xef\xbb\xbfA 17 150 a\r\nA018-1.5b\n\nZ\nA 16 1E2\n~A\nA1 9123456  cd"


def small(tool, directory, target, *options):
    dictionary = survey.write(os.path.join(directory, "small.dcf"), small_dictionary())
    data = survey.write(os.path.join(directory, "small.dat"), SMALL_DATA)
    return reference.load(tool, target, dictionary, data, options)


def test_reference(tool, directory):
    wide = small(tool, directory, "sqlite")
    table = wide.tables["CODES_2"]
    assert [column.name for column in table.columns] == ["ID", "occ", "OCC_2", "D", "T_1", "T_2"], table.columns
    assert table.rows == [[1, 1, None, Fraction("1.5"), " a", ""], [1, 2, None, Fraction("-1.5"), "b", ""],
                          [1, 3, None, None, "", ""], [1, 4, 9, Fraction("12.34"), "56", ""]], table.rows
    assert wide.counts == ["CODES_2: 4 rows", "CODES_2.D: 1 values are no numbers", "2 lines of no known record type",
                           "1 blank lines"], wide.counts
    assert wide.codes[0] == ("CODES_2", "OCC_2", "1", "9", "Some", None)
    assert wide.codes[3] == ("CODES_2", "OCC_2", "6", None, "None", "notApplicable")
    assert [row[2] for row in small(tool, directory, "stata").tables["CODES_2"].rows] == [Missing("m"), Missing("r"), None, 9]
    assert [row[2] for row in small(tool, directory, "spss").tables["CODES_2"].rows] == [7, 8, None, 9]
    assert [row[2] for row in small(tool, directory, "r", "--specials", "keep").tables["CODES_2"].rows] == [7, 8, None, 9]
    long = small(tool, directory, "pandas", "--occurrences", "long")
    assert long.tables["CODES_T"].rows == [[1, 1, 1, " a"], [1, 2, 1, "b"], [1, 4, 1, "56"]], long.tables["CODES_T"].rows


def main(tool):
    test_tables()
    test_numbers()
    test_counts()
    with tempfile.TemporaryDirectory() as directory:
        test_reference(tool, directory)
    print("the comparison finds what it has to find")


if __name__ == "__main__":
    main(*sys.argv[1:])
