#!/usr/bin/env python3
"""Tests of the interpreters stata.py and sas.py: they refuse what Stata and SAS refuse, and what is not known to them."""

import os
import sys
import tempfile

import sas
import stata

DATA = b"1 ab\n2 cd\n"

# Commands after the data are read, and a part of the message.
STATA = [
    ("regress a b", "unrecognized command"),
    ("replace a = 1", "type mismatch"),
    ("generate byte n = 101", "does not fit"),
    ("generate int n = 32741", "does not fit"),
    ("generate long n = 2147483621", "does not fit"),
    ("generate byte n = 1.5", "does not fit"),
    ("generate byte using = 1", "invalid name"),
    ("generate byte str8 = 1", "invalid name"),
    ("generate byte " + "n" * 33 + " = 1", "invalid name"),
    ("generate byte a = 1", "already defined"),
    ("generate byte n = b", "not found"),
    ("generate str2046 n = a", "is not known"),
    ("generate byte n = log(1)", "unknown function"),
    ("generate byte n = a == 1", "type mismatch"),
    ('label variable a `"' + "x" * 81 + "\"'", "longer than 80"),
    ('label variable a `"x"\' y"\'', "invalid label"),
    ('label define l 1.5 `"x"\'', "may not be labelled"),
    ('label define l 2147483621 `"x"\'', "may not be labelled"),
    ('label define l 1 `"x"\'\nlabel define l 1 `"y"\', add', "already labelled"),
    ('label define l 1 `"x"\'\nlabel values a l', "may not label strings"),
    ('display as text "$S_ADO"', "global macro"),
    ('display as text "`=1+1\'"', "invalid macro name"),
    ('save "a.dta"', "already exists"),
    ("if 1 {", "does not end"),
    ('if 1 {\nlabel variable a `"{"\'\n}', "a brace within a block"),
    ("set maxvar 3000", "with data in memory"),
    ("clear\nset maxvar 120001", "is not known here"),
    ("\n".join(f"generate byte n{i} = 1" for i in range(2048)), "no room to add more variables"),
    ("generate double n = " + " + ".join(["1"] * 301), "expression too long"),
    ("generate str9 n = " + " + ".join(['"x"'] * 513), "expression too long"),
    ("generate double n = " + "-" * 801 + "1", "expression too long"),
    ("clear\ninfix " + " ".join(f"str n{i} 1-2000" for i in range(525)) + ' using "a.dat", clear', "the rows are too wide"),
]

SAS = [
    ("x 'ls'; run;", "not known"),
    ("data a.b; a = 1; run;", "not assigned"),
    ("data work.a; length a 8; a = 'x'; run;", "is assigned to"),
    ("data work.a; a = log(1); run;", "not known"),
    ("data work.a; a = b; run;", "has no value"),
    ("data work.a; set work.none; run;", "does not exist"),
    ("data work." + "a" * 33 + "; a = 1; run;", "is not valid"),
    ("data work.a; length a $ 32768; run;", "the length"),
    ("data work.a; length a 8; label a = '" + "x" * 257 + "'; run;", "the label"),
    ("data work.a; length a 8; format a none_.; run;", "the format"),
    ("data work.a; link b; run;", "is not defined"),
    ("data work.a; length a $ 2; b = substr(a, 1, 1); run;", "is assigned to"),
    ("data work.a; length a b $ 2; run;", "the length of a is b"),
    ("data work.a; length a $ 2; length b $ 2; b = substr(a, 2, 2); run;", "are not within"),
    ("proc format; value a1 1 = 'x'; run;", "the name of the format"),
    ("proc format; value a_ 1 - 5 = 'x' 5 = 'y'; run;", "overlap"),
    ("proc format; value a_ 1 - 5 = 'x' 5 -< 5 = 'y'; run;", "the range"),
    ("proc format; value a_ 5 - 1 = 'x'; run;", "the range"),
    ("proc format; value $a_ 1 = 'x'; run;", "with the code"),
    ("%let data = a&b;\ndata _null_; run;", "would be expanded"),
    ("proc print; run;", "not known"),
    ("data work.a; not = 1; b = not + 1; run;", "NOT without parentheses"),
    ("data work.a; length and 8; if and = 1 then and = 2; run;", "is no operand"),
    ("data work.a; length a $ 9; a = '" + "x" * 32768 + "'; run;", "a text of more than"),
    ('data work.a; length a $ 9; a = "x"; run;', "unknown text"),
]


def message_of(run, error):
    try:
        run()
    except error as refused:
        return str(refused)
    return "nothing was refused"


def stata_message(directory, commands):
    program = os.path.join(directory, "a.do")
    with open(program, "w", encoding="utf-8") as file:
        file.write('infix str a 1-1 using "a.dat", clear\n' + commands + "\n")
    return message_of(lambda: stata.run(program), stata.StataError)


def sas_message(directory, statements):
    program = os.path.join(directory, "a.sas")
    with open(program, "w", encoding="utf-8") as file:
        file.write(statements + "\n")
    return message_of(lambda: sas.run(program), sas.SasError)


def computes(directory):
    """What the commands of Stata compute, where it is not what other languages do."""
    program = os.path.join(directory, "a.do")
    values = {'real("1e2")': 100.0, 'real(".")': stata.DOT, 'real("1 2")': stata.DOT, "2 ^ 3 ^ 2": 64.0, "-2 ^ 2": -4.0,
              "(. > 5)": 1.0, "(.m > .)": 1.0, "1 / 0": stata.DOT, 'strpos("abc", "c")': 3.0, "max(., 1)": 1.0,
              'regexm("a", "^[+-]?[0-9]+$")': 0.0, "!0 & 0": 0.0, 'real(substr("abc12", -2, .))': 12.0, "1 + 2 * 3": 7.0}
    with open(program, "w", encoding="utf-8") as file:
        lines = [f"generate double n{i} = {expression}" for i, expression in enumerate(values)]
        file.write("\n".join(['infix str a 1-1 using "a.dat", clear', *lines, 'save "a.dta", replace', ""]))
    data = stata.run(program).files["a.dta"]
    return [f"{expression}: expected {wanted}, got {data.columns[f'n{i}'][0]}"
            for i, (expression, wanted) in enumerate(values.items()) if data.columns[f"n{i}"][0] != wanted]


def main():
    with tempfile.TemporaryDirectory() as directory:
        with open(os.path.join(directory, "a.dat"), "wb") as file:
            file.write(DATA)
        failures = computes(directory)
        for cases, message_for in ((STATA, stata_message), (SAS, sas_message)):
            for program, wanted in cases:
                got = message_for(directory, program)
                failures += [] if wanted in got else [f"{program[:70]}: expected {wanted!r}, got {got!r}"]
    print("\n".join(failures) or "the interpreters refuse what they have to")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
