#!/usr/bin/env python3
"""Uses the page of `vanlayout codebook` in a browser, as a person does.

    codebook-browser.py TOOL EXAMPLES MADE_DATA          the tests; ends in 77 where no Chromium runs
    codebook-browser.py TOOL EXAMPLES --screenshot PNG   a picture of the codebook of census.dcf, 1200 pixels wide

MADE_DATA is the directory of the Stata and SPSS files that are made for the tests.
"""

import json
import os
import sqlite3
import struct
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import chromium  # noqa: E402

SKIPPED = 77

DICTIONARY = """[Dictionary]
Version=CSPro 7.7
Label=D
Name=D
RecordTypeStart=0
RecordTypeLen=0
Positions=Absolute
ZeroFill=Yes
DecimalChar=No

[Level]
Label=L
Name=L

[IdItems]

[Record]
Label=Record
Name=REC
RecordTypeValue=''
"""


def item(name, label, start, length, value_labels=(), kind="Numeric", more=()):
    """An item of a dictionary, with further lines and its value set."""
    lines = ["", "[Item]", "Label=" + label, "Name=" + name, "Start=%d" % start, "Len=%d" % length,
             "DataType=" + kind, *more]
    if value_labels:
        lines += ["", "[ValueSet]", "Label=V", "Name=" + name + "_VS"]
        lines += ["Value=%s;%s" % value for value in value_labels]
    return "\n".join(lines) + "\n"


def records(count):
    """A dictionary with a number of records of one item each."""
    return "[Dictionary]\nName=D\nRecordTypeStart=1\nRecordTypeLen=5\n\n" + "".join(
        "[Record]\nName=REC%05d\nRecordTypeValue='%05d'\n\n" % (i, i) + item("V%05d" % i, "Question", 6, 2)
        for i in range(count))


def spss(labels, more=b""):
    """An SPSS file with the numeric variable AGE: 97 to 99 and -1 are user-missing, and codes have these labels. Further
    records are at its end."""
    f8 = 5 << 16 | 8 << 8
    head = struct.pack("<4s60siiiiid9s8s64s3s", b"$FL2", b"@(#) SPSS DATA FILE".ljust(60), 2, 1, 0, 0, 0, 100,
                       b"01 Jan 20", b"10:11:12", b"Ages".ljust(64), b"   ")
    variable = struct.pack("<iiiiii8s3d", 2, 0, 0, -3, f8, f8, b"AGE     ", 97, 99, -1)
    values = struct.pack("<ii", 3, len(labels))
    for code, label in labels:
        text = bytes([len(label)]) + label.encode()
        values += struct.pack("<d", code) + text.ljust(-(-len(text) // 8) * 8)
    return head + variable + values + struct.pack("<iii", 4, 1, 1) + more + struct.pack("<ii", 999, 0)


def expect(value, expected):
    if value != expected:
        raise AssertionError("%r, not %r" % (value, expected))


class Codebook:
    """Pages that the tool writes, in a browser."""

    def __init__(self, tool, examples, browser, directory):
        self.tool = tool
        self.examples = examples
        self.browser = browser
        self.directory = directory

    def open(self, file, fragment="", options=()):
        page = os.path.join(self.directory, "page.html")
        subprocess.run([self.tool, "codebook", file, "-o", page, *options], check=True)
        self.browser.open("about:blank")
        self.browser.open("file://" + page + fragment)
        self.browser.wait_for("document.querySelector('article.variable') !== null")

    def open_example(self, name="census.dcf", fragment="", options=()):
        self.open(os.path.join(self.examples, name), fragment, options)

    def open_made(self, text, fragment="", options=()):
        file = os.path.join(self.directory, "made.dcf")
        with open(file, "w", encoding="utf-8") as out:
            out.write(text)
        self.open(file, fragment, options)

    def choose(self, select, text):
        """Selects the entry of a list whose text begins with a text."""
        self.browser.run("(() => { const e = document.getElementById('page-%s'); e.value = [...e.options].find(o => "
                         "o.textContent.startsWith(%s)).value; e.dispatchEvent(new Event('change')); })()"
                         % (select, json.dumps(text)))

    def check(self, box):
        self.browser.click("document.getElementById('page-%s')" % box)

    # visible contents
    def names(self):
        self.browser.run("new Promise(done => requestAnimationFrame(() => setTimeout(done, 50)))")
        self.browser.wait_for("[...document.querySelectorAll('.chunk')].filter(e => e.getBoundingClientRect().top < "
                              "innerHeight).every(e => e.classList.contains('drawn'))")
        return self.browser.run("[...document.querySelectorAll('article button.name')].map(e => e.textContent)")

    def found(self):
        return self.browser.run("document.getElementById('page-found').textContent")

    def details(self, name):
        """The text of a variable that is open, or null."""
        return self.browser.run(self.row(name) + "?.querySelector('.details')?.innerText ?? null")

    def current(self):
        """The name of the variable that was reached by a link and is visible."""
        return self.browser.run(
            "(() => { const e = document.querySelector('article.current'); if (!e) return null; const r = "
            "e.querySelector('button.name').getBoundingClientRect(); const bar = "
            "document.getElementById('page-bar').getBoundingClientRect(); return r.top >= bar.bottom - 1 && r.bottom <= "
            "innerHeight ? e.querySelector('button.name').textContent : 'out of sight'; })()")

    def focused(self):
        return self.browser.run("document.activeElement.textContent")

    @staticmethod
    def row(name):
        return "[...document.querySelectorAll('article.variable')].find(e => e.querySelector('button.name')" \
               ".textContent === %s)" % json.dumps(name)

    def button(self, name):
        return self.row(name) + ".querySelector('button.name')"

    def search(self, text):
        self.browser.run("document.getElementById('page-search').select()")
        self.browser.click("document.getElementById('page-search')")
        self.browser.run("document.getElementById('page-search').select()")
        self.browser.type(text)

    def wait_for_found(self, text):
        self.browser.wait_for("document.getElementById('page-found').textContent === %s" % json.dumps(text))


class Tests:
    def __init__(self, book, made_data):
        self.book = book
        self.browser = book.browser
        self.made_data = made_data

    # ---------------------------------------------------------------------------------------------- search
    def typing_narrows_the_list(self):
        self.book.open_example()
        expect(self.book.found(), "56 variables")
        self.book.search("dwelling")
        self.book.wait_for_found("2 of 56 variables")  # one by its name, one by a value label
        expect(self.book.names(), ["H01_DWELLING", "H08_WATER"])
        expect(self.browser.run("document.querySelector('.found').innerText"), "11 Piped into the dwelling")

    def search_goes_by_name_label_and_value_label(self):
        self.book.open_example()
        for text, names in (("p06_age", ["P06_AGE"]), ("MARITAL status", ["P07_MARITAL"]),
                            ("fishers nets", []), ("fishers net", ["P16_OCCUPATION"])):
            self.book.search(text)
            self.book.wait_for_found("%d of 56 variables" % len(names) if names else "No variable matches")
            expect(self.book.names(), names)

    def escape_brings_back_every_variable(self):
        self.book.open_example()
        self.browser.press("/")
        expect(self.browser.run("document.activeElement.id"), "page-search")
        self.browser.type("roof")
        self.book.wait_for_found("1 of 56 variables")
        self.browser.press("Escape", 27)
        self.book.wait_for_found("56 variables")

    def typography_and_accents_do_not_hinder_the_search(self):
        self.book.open_made(DICTIONARY + item("A", "L\u2019\u00e9cole du m\u00e9nage", 1, 1)
                            + item("B", "Na\u00efve \u2013 Stra\u00dfe \u0141\u00f3d\u017a", 2, 1, [("1", "d\u02bceau")])
                            + item("C", "nai\u0308f", 3, 1))
        for text, name, mark in (("l'ecole", "A", "L\u2019\u00e9cole"), ("l\u2018\u00c9COLE", "A", "L\u2019\u00e9cole"),
                                 ("strasse", "B", "Stra\u00dfe"), ("lodz", "B", "\u0141\u00f3d\u017a"),
                                 ("naive - ", "B", "Na\u00efve"), ("d\u2019eau", "B", "d\u02bceau"),
                                 ("naif", "C", "nai\u0308f")):
            self.book.search(text)
            self.book.wait_for_found("1 of 3 variables")
            expect(self.book.names(), [name])
            expect(self.browser.run("document.querySelector('article mark').textContent"), mark)

    def quotes_and_vowel_signs_do_not_hinder_the_search(self):
        self.book.open_made(DICTIONARY + item("A", "The \u201cmain\u201d \u00abhouse\u00bb", 1, 1)
                            + item("B", "\u05e9\u05b8\u05c1\u05dc\u05d5\u05b9\u05dd", 2, 1)
                            + item("C", "\u0645\u064f\u062d\u064e\u0645\u0651\u064e\u062f", 3, 1))
        for text, name in (("\"main\" \"house\"", "A"), ("\u05e9\u05dc\u05d5\u05dd", "B"),
                           ("\u0645\u062d\u0645\u062f", "C")):
            self.book.search(text)
            self.book.wait_for_found("1 of 3 variables")
            expect(self.book.names(), [name])

    def search_finds_aliases_notes_and_value_sets(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1, more=["Note=Ask the oldest person.", "Alias=FORMER"])
                            + item("B", "Two", 2, 1) + "\n[ValueSet]\nLabel=Kinds of roof\nName=B_VS\nValue=1;x\n")
        for text, name, shown in (("oldest", "A", "Ask the oldest person."), ("b_vs", "B", "B_VS"),
                                  ("former", "A", "FORMER"), ("roof", "B", "Kinds of roof")):
            self.book.search(text)
            self.book.wait_for_found("1 of 2 variables")
            expect(self.book.names(), [name])
            expect(self.browser.run("document.querySelector('.found').textContent"), shown)

    def signs_of_several_letters_are_found_by_them(self):
        self.book.open_made(DICTIONARY + item("A", "Plot \u2116 5", 1, 1) + item("B", "Brand\u2122", 2, 1))
        for text, name in (("plot no 5", "A"), ("brandtm", "B"), ("\u2116", "A")):
            self.book.search(text)
            self.book.wait_for_found("1 of 2 variables")
            expect(self.book.names(), [name])

    def long_note_is_found_by_an_excerpt(self):
        note = "x " * 300 + "the ELDEST\\r\\nchild " + "y " * 300
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1, more=["Note=" + note]))
        self.book.search("eldest child")
        self.book.wait_for_found("1 variable")
        self.book.names()
        found = self.browser.run("document.querySelector('.found').textContent")
        expect((len(found) < 200, found.startswith("\u2026x"), found.endswith("y \u2026") or found.endswith("y\u2026")),
               (True, True, True))
        expect(self.browser.run("[...document.querySelectorAll('.found mark')].map(e => e.textContent)"),
               ["ELDEST", "child"])

    # ---------------------------------------------------------------------------------------------- filters
    def record_and_type_narrow_the_list(self):
        self.book.open_example()
        expect(self.browser.run("[...document.getElementById('page-record').options].map(e => e.textContent)"),
               ["all", "Id items", "HOUSING \u2013 Housing", "POPULATION \u2013 Population",
                "MORTALITY \u2013 Deaths in the last twelve months"])
        self.book.choose("record", "MORTALITY")
        self.book.wait_for_found("9 of 56 variables")
        expect(self.browser.run("document.querySelectorAll('section.record:not([hidden])').length"), 1)
        expect(self.browser.run("document.querySelector('section.record:not([hidden]) .ruler').hidden"), False)
        self.book.choose("record", "all")
        self.book.choose("type", "alpha")
        names = self.book.names()
        expect(self.book.found(), "%d of 56 variables" % len(names))
        expect(self.browser.run("[...document.querySelectorAll('article .type')].every(e => "
                                "e.textContent.startsWith('A('))"), True)

    def variables_without_labels_can_be_shown(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1, [("1", "x")]) + item("B", "", 2, 1, [("1", "x")])
                            + item("C", "Three", 3, 1, [("1:9", "")]))
        self.book.check("unlabelled")
        self.book.wait_for_found("1 of 3 variables")
        expect(self.book.names(), ["B"])
        self.book.check("unlabelled")
        self.book.check("uncoded")
        self.book.wait_for_found("1 of 3 variables")
        expect(self.book.names(), ["C"])

    def filters_that_narrow_nothing_are_not_there(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1))
        expect(self.browser.run("['record', 'type', 'troubled'].map(name => document.getElementById('page-' + name + "
                                "'-label').hidden)"), [True, True, True])
        self.book.open_example()
        expect(self.browser.run("['record', 'type', 'troubled'].map(name => document.getElementById('page-' + name + "
                                "'-label').hidden)"), [False, False, True])

    def variables_with_problems_can_be_shown(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1) + item("B", "Two", 2, 1, more=["Colour=red"]))
        expect(self.book.names(), ["A", "B"])
        self.book.check("troubled")
        self.book.wait_for_found("1 of 2 variables")
        expect(self.book.names(), ["B"])

    def going_to_a_variable_ends_filters(self):
        self.book.open_example()
        self.book.choose("record", "MORTALITY")
        self.book.wait_for_found("9 of 56 variables")
        self.browser.run("location.hash = '#EA'")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.book.current(), "EA")
        expect(self.book.found(), "56 variables")

    def open_all_opens_what_is_shown(self):
        self.book.open_example()
        self.book.choose("record", "MORTALITY")
        self.book.wait_for_found("9 of 56 variables")
        self.book.names()
        button = "document.getElementById('page-open-all')"
        self.browser.click(button)
        expect(self.browser.run(button + ".textContent"), "Close all")
        self.book.names()
        expect(self.browser.run("document.querySelectorAll('section:not([hidden]) article .details').length"), 9)
        self.browser.click(button)
        expect(self.browser.run(button + ".textContent"), "Open all")
        self.book.names()
        expect(self.browser.run("document.querySelectorAll('article .details').length"), 0)

    def open_all_leaves_what_is_not_shown(self):
        self.book.open_example()
        self.book.choose("record", "MORTALITY")
        self.book.wait_for_found("9 of 56 variables")
        self.browser.click("document.getElementById('page-open-all')")
        self.book.choose("record", "all")
        self.book.wait_for_found("56 variables")
        self.book.names()
        expect(self.book.details("EA"), None)
        expect(self.browser.run("document.getElementById('page-open-all').textContent"), "Open all")

    def button_closes_all_when_all_are_open(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1))
        for text in ("Close all", "Open all"):
            self.browser.click(self.book.button("A"))
            expect(self.browser.run("document.getElementById('page-open-all').textContent"), text)

    # ------------------------------------------------------------------------------------ opening a variable
    def click_opens_and_closes_a_variable(self):
        self.book.open_example()
        expect(self.book.details("DISTRICT"), None)
        self.browser.click(self.book.button("DISTRICT"))
        details = self.book.details("DISTRICT")
        for text in ("Type\nnumeric", "Format\n9(2)", "Record\nall (id item)", "Columns\n4–5", "Length\n2 characters", "Zero fill\nyes",
                     "DISTRICT_VS1 District 3 values", "1 to 8\tRural districts", "21\tCapital"):
            if text not in details:
                raise AssertionError("%r is not in %r" % (text, details))
        expect(self.browser.run(self.book.button("DISTRICT") + ".getAttribute('aria-expanded')"), "true")
        expect(self.browser.run("location.hash"), "#DISTRICT")
        self.browser.click(self.book.button("DISTRICT"))
        expect(self.book.details("DISTRICT"), None)
        expect(self.browser.run(self.book.button("DISTRICT") + ".getAttribute('aria-expanded')"), "false")

    def keys_open_and_move(self):
        self.book.open_example()
        self.browser.run(self.book.button("PROVINCE") + ".focus()")
        self.browser.press("ArrowDown", 40)
        expect(self.book.focused(), "DISTRICT")
        self.browser.press("Enter", 13)
        if self.book.details("DISTRICT") is None:
            raise AssertionError("not opened")
        self.browser.press("ArrowUp", 38)
        expect(self.book.focused(), "PROVINCE")
        self.browser.press("/")
        self.browser.press("ArrowDown", 40)
        expect(self.book.focused(), "PROVINCE")

    def fragment_opens_a_variable(self):
        self.book.open_example(fragment="#P20_CHILDREN_BORN")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.book.current(), "P20_CHILDREN_BORN")
        special = self.browser.run("[...document.querySelectorAll('article.current .is-special')].map(e => e.innerText)")
        expect(special, ["98\tMen and girls under 12 not applicable"])
        self.browser.run("location.hash = '#EA'")
        self.browser.wait_for("document.querySelector('article.current').dataset.index === '2'")
        expect(self.book.current(), "EA")

    def further_variable_of_a_name_has_its_own_fragment(self):
        self.book.open_made(DICTIONARY + item("A", "First", 1, 1) + item("A", "Second", 2, 1), "#A~2")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.browser.run("document.querySelector('article.current .label').textContent"), "Second")

    def case_of_a_fragment_does_not_matter(self):
        self.book.open_example(fragment="#p06_Age")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.book.current(), "P06_AGE")
        self.book.open_made(DICTIONARY + item("Ab", "First", 1, 1) + item("aB", "Second", 2, 1), "#aB")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.browser.run("document.querySelector('article.current .label').textContent"), "Second")
        self.browser.run("location.hash = '#ab'")  # the first of both
        self.browser.wait_for("document.querySelector('article.current').dataset.index === '0'")

    def fragment_of_a_record_leads_to_it(self):
        self.book.open_example(fragment="#population")
        self.browser.wait_for("(() => { const top = document.getElementById('page-group-2').getBoundingClientRect().top - "
                              "document.getElementById('page-bar').offsetHeight; return top > -1 && top < 40; })()")
        expect(self.browser.run("document.getElementById('page-unknown').hidden"), True)

    def variable_can_have_a_name_of_the_page(self):
        names = ["notes", "search", "error", "page-problems", "page-info"]
        text = DICTIONARY + item("FIRST", "First", 1, 1)
        text += "".join(item("FILL%d" % i, "Filler", 2 + i, 1) for i in range(60))
        text += "".join(item(name, "Label of " + name, 70 + i, 1, more=["Colour=red"]) for i, name in enumerate(names))
        for name in names:
            self.book.open_made(text, "#" + ("~" if name.startswith("page-") else "") + name)
            self.browser.wait_for("document.querySelector('article.current') !== null")
            self.browser.wait_for("document.readyState === 'complete'")
            self.browser.run("new Promise(done => setTimeout(done, 100))")
            expect(self.book.current(), name)

    def fragments_of_like_names_differ(self):
        self.book.open_made(DICTIONARY + item("A~2", "First", 1, 1) + item("A", "Second", 2, 1) + item("A", "Third", 3, 1)
                            + item("", "Fourth", 4, 1) + item("__proto__", "Fifth", 5, 1))
        for fragment, label in (("#A~2", "First"), ("#a", "Second"), ("#A~3", "Third"), ("#~", "Fourth"),
                                ("#__PROTO__", "Fifth")):
            self.browser.run("location.hash = %s" % json.dumps(fragment))
            self.browser.wait_for("document.querySelector('article.current .label')?.textContent === %s"
                                  % json.dumps(label))
            expect(self.browser.run("document.querySelector('article.current .details') !== null"), True)
            expect(self.browser.run("document.activeElement.closest('article').classList.contains('current')"), True)

    def unknown_fragment_is_named(self):
        unknown = "document.getElementById('page-unknown')"
        for fragment, shown in (("#%E0%A4%A", "%E0%A4%A"), ("#constructor", "constructor"),
                                ("#<b>x", "<b>x"), ("#NO%20SUCH", "NO SUCH"),
                                ("#ORVANDIA_CENSUS_QUEST", "ORVANDIA_CENSUS_QUEST")):
            self.book.open_example(fragment=fragment)
            expect(self.book.current(), None)
            expect(self.browser.run(unknown + ".hidden"), False)
            expect(self.browser.run(unknown + ".querySelector('code').textContent"), shown)
        self.browser.run("location.hash = ''")
        self.browser.wait_for(unknown + ".hidden")
        self.browser.run("location.hash = '#NONE'")
        self.browser.wait_for("!%s.hidden" % unknown)
        self.browser.run("location.hash = '#EA'")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.browser.run(unknown + ".hidden"), True)
        self.book.open_example(fragment="#page-error")  # an absent element of the page
        expect(self.book.current(), None)
        expect(self.browser.run(unknown + ".hidden"), True)

    # ---------------------------------------------------------------------------------- contents of the page
    def head_has_title_and_facts(self):
        self.book.open_example()
        expect(self.browser.run("document.querySelector('h1').textContent"), "Population and Housing Census of Orvandia")
        head = self.browser.run("document.querySelector('header.page').innerText")
        for text in ("CSPro dictionary, text form 7.7", "56 variables", "3 records", "Name\nORVANDIA_CENSUS_DICT",
                     "File\ncensus.dcf", "Record type\ncolumn 1"):
            if text not in head:
                raise AssertionError("%r is not in %r" % (text, head))

    def head_has_the_note_of_the_dictionary(self):
        note = "Fieldwork\\r\\n\u05e9\u05dc\u05d5\u05dd <b>"
        self.book.open_made(DICTIONARY.replace("Name=D\n", "Name=D\nNote=%s\n" % note) + item("A", "One", 1, 1))
        expect(self.browser.run("document.querySelector('#page-about .note').textContent"),
               "Fieldwork\n\u05e9\u05dc\u05d5\u05dd <b>")
        # Each line has its own direction.
        expect(self.browser.run("getComputedStyle(document.querySelector('.note')).unicodeBidi"), "plaintext")

    def record_without_a_name_shows_its_facts(self):
        record = "\n[Record]\nRecordTypeValue='%d'\nRequired=No\nMaxRecords=4\n"
        self.book.open_made(DICTIONARY.split("[Record]")[0].replace("Len=0", "Len=1").replace("Start=0", "Start=1")
                            + record % 1 + item("A", "One", 2, 1) + record % 2 + item("B", "Two", 2, 1))
        expect(self.browser.run("document.querySelector('section.record > header').innerText.replace(/\\s+/g, ' ')"),
               "(no name) type 1 \u00b7 optional \u00b7 at most 4 records per case \u00b7 1 variable")

    def level_with_a_note_alone_shows_it(self):
        self.book.open_made(DICTIONARY.replace("[Level]\nLabel=L\nName=L", "[Level]\nNote=Urban alone.")
                            + item("A", "One", 1, 1))
        expect(self.browser.run("document.querySelector('.level .note').textContent"), "Urban alone.")

    def variable_without_a_format_shows_none(self):
        self.book.open(os.path.join(self.made_data, "survey.sas7bdat"), "#AGE")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.browser.run("document.querySelector('article.current .type').textContent"), "double")
        expect(("Format" in self.book.details("AGE"), "Storage\ndouble" in self.book.details("AGE")), (False, True))

    def records_show_their_facts(self):
        self.book.open_example()
        expect(self.browser.run("document.querySelector('#page-group-2 > header').innerText.replace(/\\s+/g, ' ')"),
               "POPULATION Population type P \u00b7 optional \u00b7 at most 30 records per case \u00b7 length 99 \u00b7 "
               "24 variables")
        expect(self.browser.run("document.querySelector('.level').innerText"),
               "Level ORVANDIA_CENSUS_QUEST Census questionnaire")

    def items_show_what_the_file_says(self):
        text = DICTIONARY + item("A", "One", 1, 6, more=["Decimal=2", "DecimalChar=Yes", "ZeroFill=Yes"]) \
            + item("B", "Two", 7, 4, more=["Occurrences=3", "OccurrenceLabel=1,North", "OccurrenceLabel=3,South"]) \
            + item("C", "Part", 7, 2, more=["ItemType=SubItem", "Decimal=1"])
        self.book.open_made(text)
        for name, parts in (
                ("A", ("Format\n9(6).2", "Decimals\n2, mark written", "Zero fill\nyes")),
                ("B", ("Columns\n7\u201310", "Occurrences\n3, the last in 15\u201318", "Subitems\nC", "North", "South")),
                ("C", ("Format\n9(2)v1", "Decimals\n1, mark implied", "Subitem of\nB"))):
            self.browser.click(self.book.button(name))
            for part in parts:
                if part not in self.book.details(name):
                    raise AssertionError("%r is not in %r" % (part, self.book.details(name)))
        expect(self.browser.run("[...document.querySelectorAll('.occurrences li')].map(e => e.value)"), [1, 3])

    def opened_variable_shows_capture_aliases_and_notes(self):
        text = DICTIONARY.replace("RecordTypeStart=0\nRecordTypeLen=0", "RecordTypeStart=1\nRecordTypeLen=1").replace(
            "RecordTypeValue=''\n", "RecordTypeValue='1'\nNote=On persons.\nAlias=OLD_REC\nMaxRecords=3\n"
            "OccurrenceLabel=2,Second\n").replace("Name=L\n", "Name=L\nAlias=OLD_L\n")
        text += item("A", "One", 2, 6, more=["Alias=OLD_A", "Note=A note.", "CaptureType=Date", "CaptureDateFormat=YYYYMM"])
        text += item("B", "Two", 8, 1, more=["CaptureType=DropDown"])
        self.book.open_made(text)
        self.browser.click(self.book.button("A"))
        for part in ("Aliases\nOLD_A", "Capture\ndate, YYYYMM", "\nA note.\n"):
            expect((part, part in self.book.details("A")), (part, True))
        self.browser.click(self.book.button("B"))
        expect("Capture\ndrop down" in self.book.details("B"), True)
        expect(self.browser.run("[...document.querySelectorAll('.level .hint, section.record > :is(.note, .hint, "
                                ".occurrence-labels)')].map(e => e.innerText.replace(/\\s+/g, ' '))"),
               ["Also named OLD_L", "On persons.", "Also named OLD_REC", "Occurrences Second"])
        expect(self.browser.run("document.querySelector('section.record > .occurrence-labels li').value"), 2)

    def subitem_repeats_with_its_item(self):
        self.book.open_made(DICTIONARY + item("P", "Item", 1, 4, more=["Occurrences=3"])
                            + item("S", "Part", 1, 2, more=["ItemType=SubItem"])
                            + item("T", "Pair", 1, 1, more=["ItemType=SubItem", "Occurrences=4"]))
        for name, occurrences in (("S", "3 of its item"), ("T", "4 in each of the 3 of its item")):
            self.browser.click(self.book.button(name))
            expect("Occurrences\n%s\n" % occurrences in self.book.details(name), True)

    def subitem_of_no_item_says_so(self):
        self.book.open_made(DICTIONARY + item("S", "Part", 1, 2, more=["ItemType=SubItem"]))
        self.browser.click(self.book.button("S"))
        expect("Subitem of\nno item" in self.book.details("S"), True)

    def value_set_shows_its_note_aliases_and_link(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 2) + """
[ValueSet]
Label=Ages
Name=A_VS
Link=SHARED
Note=In years.
Alias=OLD_VS
Value=;No code
Value='';Empty
Value='   ';Three
""" + item("B", "Two", 3, 2) + "\n[ValueSet]\nName=B_VS\nLink=SHARED\n", "#A")
        self.browser.wait_for("document.querySelector('article.current .value-labels') !== null")
        expect(self.browser.run("[...document.querySelector('.value-labels').children].map(e => e.localName === 'table' ? "
                                "e.caption.innerText : e.innerText)"),
               ["A_VS Ages 3 values, linked", "In years.", "Also named OLD_VS"])
        expect(self.browser.run("[...document.querySelectorAll('tbody .code')].map(e => e.textContent)"),
               ["no code", "no code", "3 blanks"])
        expect(self.browser.run("[...document.querySelectorAll('.values')].map(e => e.textContent)"),
               ["3 value labels", "3 value labels"])

    def values_without_labels_are_in_short(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 2, [("1:9", ""), ("11", "")])
                            + item("B", "Two", 3, 1, [(str(i), "") for i in range(4)]))
        expect(self.browser.run("[...document.querySelectorAll('.values')].map(e => e.textContent)"),
               ["1 to 9, 11", "4 values"])

    def measure_storage_and_weight_are_shown(self):
        file = os.path.join(self.book.directory, "ages.sav")
        with open(file, "wb") as out:
            made = spss([(1, "One")], struct.pack("<iiiiiii", 7, 11, 4, 3, 2, 9, 1))
            out.write(made[:76] + struct.pack("<i", 1) + made[80:])  # weighted by the first variable
        self.book.open(file, "#AGE")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        for part in ("Measure\nordinal", "Storage\ndouble", "Display\nwidth 9", "Format\nF8.0", "Role\nweight of the file"):
            expect((part, part in self.book.details("AGE")), (part, True))
        for part in ("Length", "Columns", "labels0"):
            expect((part, part in self.book.details("AGE")), (part, False))
        expect("Weight\nAGE" in self.browser.run("document.querySelector('header.page').innerText"), True)
        self.book.open(os.path.join(self.made_data, "survey.dta"), "#name")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        for part in ("Length\n20 bytes", "Display\nwidth 9, left"):
            expect((part, part in self.book.details("NAME")), (part, True))
        self.book.open(os.path.join(self.made_data, "types.sav"), "#F82")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(("Decimals\n2\n" in self.book.details("F82"), "mark" in self.book.details("F82")), (True, False))

    def extended_missing_values_are_marked_where_the_format_has_them(self):
        codes = struct.pack("<4i", -1, 0, 9, 30000)
        with open(os.path.join(self.made_data, "types-118.dta"), "rb") as made:
            data = made.read()
        expect(data.count(codes), 1)
        file = os.path.join(self.book.directory, "missing.dta")
        with open(file, "wb") as out:
            out.write(data.replace(codes, struct.pack("<4i", 0x7fffffe6, 0, 9, 30000)))  # .a
        special = "[...document.querySelectorAll('article.current tbody tr')].filter(e => " \
                  "e.classList.contains('is-special')).map(e => e.innerText)"
        self.book.open(file, "#odd")
        self.browser.wait_for("document.querySelector('article.current tbody') !== null")
        expect(self.browser.run(special), [".a\tMinus one missing"])
        self.book.open_made(DICTIONARY + item("A", "One", 1, 2, [("'.a'", "Text")]), "#A")
        self.browser.wait_for("document.querySelector('article.current tbody') !== null")
        expect(self.browser.run(special), [])

    def database_and_json_form_open(self):
        made = {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "HOMES",
                "labels": [{"text": "Homes"}], "relativePositions": False, "levels": [{"name": "L", "ids": {"items": []},
                "records": [{"name": "R", "recordType": "", "occurrences": {"required": True, "maximum": 7}, "items": [
                    {"name": "A", "contentType": "numeric", "start": 3, "length": 2, "labels": [{"text": "One"}]}]}]}]}
        database = os.path.join(self.book.directory, "homes.csdb")
        with sqlite3.connect(database) as store:
            store.execute("CREATE TABLE meta (dictionary TEXT)")
            store.execute("INSERT INTO meta VALUES (?)", (json.dumps(made),))
        store.close()
        form = "document.querySelector('.format').textContent"
        self.book.open(database, "#A")
        expect(self.browser.run(form), "CSPro data file with a CSPro dictionary, JSON form 8.0")
        self.book.open_made(json.dumps(made), "#A")
        expect(self.browser.run(form), "CSPro dictionary, JSON form 8.0")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect("Columns\n3\u20134" in self.book.details("A"), True)
        expect(self.browser.run("document.querySelector('section.record > header .facts').textContent"),
               "required \u00b7 at most 7 records per case \u00b7 1 variable")

    def catalog_gives_the_values_of_a_sas_data_set(self):
        directory = self.made_data
        self.book.open(os.path.join(directory, "survey.sas7bdat"), "#married",
                       ("--catalog", os.path.join(directory, "formats.sas7bcat")))
        self.browser.wait_for("document.querySelector('article.current tbody') !== null")
        expect(self.browser.run("document.querySelector('article.current table').innerText.split('\\n').slice(-2)"),
               ["1\tYes", "2\tNo"])

    def values_show_ranges_specials_and_images(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 2) + """
[ValueSet]
Label=Ages
Name=A_VS1
Value=0:14 99;Young
Image=child.png
Note=Not grown.
Value=98;Refused
Name=REFUSED,Special
Value=' ';Blank
Value='7  ';Seven

[ValueSet]
Label=Others
Name=A_VS2
Value=1;One
""", "#A")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.browser.run("[...document.querySelectorAll('caption')].map(e => e.innerText)"),
               ["A_VS1 Ages 4 values", "A_VS2 Others 1 value"])
        rows = self.browser.run("[...document.querySelectorAll('tbody tr')].map(e => e.innerText.replace(/\\n+/g, ' '))")
        expect(rows, ["0 to 14, 99\tYoung image child.png Not grown.", "98\tRefused refused", "1 blank\tBlank", "7\tSeven",
                      "1\tOne"])
        expect(self.browser.run("document.querySelectorAll('tbody .code')[3].textContent"), "7")
        expect(self.browser.run("document.querySelector('article .values').textContent"), "5 value labels in 2 sets")

    def missing_values_of_statistical_files_are_marked(self):
        file = os.path.join(self.book.directory, "ages.sav")
        with open(file, "wb") as out:
            out.write(spss([(1, "One"), (97, "Refused"), (98, "Unknown"), (-1, "Not asked"), (100, "Old")]))
        self.book.open(file, "#age")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        if "Missing values\n97 to 99, -1" not in self.book.details("AGE"):
            raise AssertionError(self.book.details("AGE"))
        expect(self.browser.run("[...document.querySelectorAll('tbody tr')].map(e => e.innerText)"),
               ["1\tOne", "97\tRefused missing", "98\tUnknown missing", "-1\tNot asked missing", "100\tOld"])
        expect(self.browser.run("document.querySelector('h1').textContent"), "Ages")

    def bounds_of_missing_ranges_are_in_words(self):
        file = os.path.join(self.book.directory, "ages.sav")
        with open(file, "wb") as out:
            out.write(spss([(-5, "Low"), (5, "High")]).replace(
                struct.pack("<3d", 97, 99, -1), struct.pack("<Qdd", 0xFFEFFFFFFFFFFFFE, 0, 99)))
        self.book.open(file, "#AGE")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        if "Missing values\nlowest to 0, 99" not in self.book.details("AGE"):
            raise AssertionError(self.book.details("AGE"))
        expect(self.browser.run("[...document.querySelectorAll('tbody tr')].map(e => e.innerText)"),
               ["-5\tLow missing", "5\tHigh"])

    def text_color_of_a_value_is_a_swatch(self):
        values = [{"labels": [{"text": "Red"}], "pairs": [{"value": 1}], "textColor": "#FF0000"},
                  {"labels": [{"text": "None"}], "pairs": [{"value": 2}], "textColor": "url(x)"}]
        made = {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "D", "labels": [{"text": "D"}],
                "levels": [{"name": "L", "ids": {"items": []}, "records": [{"name": "R", "recordType": "", "items": [
                    {"name": "A", "contentType": "numeric", "start": 1, "length": 1, "valueSets": [
                        {"name": "VS", "values": values}]}]}]}]}
        self.book.open_made(json.dumps(made), "#A")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.browser.run("[...document.querySelectorAll('.color')].map(e => [e.textContent, "
                                "e.querySelector('.swatch').style.backgroundColor])"),
               [[" #FF0000", "rgb(255, 0, 0)"], [" url(x)", ""]])

    def relations_lead_to_their_records(self):
        self.book.open_made(DICTIONARY.replace("RecordTypeStart=0\nRecordTypeLen=0", "RecordTypeStart=1\nRecordTypeLen=1")
                            .replace("RecordTypeValue=''", "RecordTypeValue='1'") + item("A", "One", 2, 1) + """
[Record]
Label=Other
Name=OTHER
RecordTypeValue='2'
""" + item("B", "Two", 2, 1) + "\n[Relation]\nName=PAIR\nPrimary=REC\nPrimaryLink=A\nSecondary=OTHER\nSecondaryLink=B\n")
        expect(self.browser.run("document.getElementById('page-relations').innerText.replace(/\\s+/g, ' ')"),
               "Relations PAIR REC and OTHER, where A equals B")
        expect(self.browser.run("[...document.querySelectorAll('#page-relations a')].map(e => decodeURIComponent(e.hash))"),
               ["#page-group-0", "#page-group-1", "#A", "#B"])

    def link_to_a_record_ends_filters(self):
        self.book.open_made(DICTIONARY.replace("RecordTypeStart=0\nRecordTypeLen=0", "RecordTypeStart=1\nRecordTypeLen=1")
                            .replace("RecordTypeValue=''", "RecordTypeValue='1'") + item("A", "One", 2, 1) + """
[Record]
Label=Other
Name=OTHER
RecordTypeValue='2'
""" + item("B", "Two", 2, 1) + "\n[Relation]\nName=PAIR\nPrimary=REC\nSecondary=OTHER\n")
        for step in ("document.querySelectorAll('#page-relations a')[1].click()", "history.back()",
                     "location.hash = '#page-group-1'", "document.querySelectorAll('#page-relations a')[1].click()"):
            self.book.choose("record", "REC")
            self.book.wait_for_found("1 of 2 variables")
            self.browser.run(step)
            if step != "history.back()":
                self.book.wait_for_found("2 variables")
                self.browser.wait_for("document.activeElement.id === 'page-heading-1'")

    # ---------------------------------------------------------------------------------------------- languages
    @staticmethod
    def _languages():
        return DICTIONARY.replace("Label=D\n", "Label=Survey|Enqu\u00eate\n").replace(
            "[Level]", "[Languages]\nEN=English\nFR=Fran\u00e7ais\n\n[Level]") \
            + item("A", "House|Maison", 1, 1, [("1", "Yes|Oui")]) + item("B", "Only", 2, 1)

    def page_switches_its_language(self):
        self.book.open_made(self._languages())
        labels = "[...document.querySelectorAll('article .label')].map(e => e.textContent)"
        self.book.search("house")
        self.book.wait_for_found("1 of 2 variables")
        self.browser.press("Escape", 27)
        self.book.wait_for_found("2 variables")
        expect(self.browser.run(labels), ["House", "Only"])
        expect(self.browser.run("[...document.getElementById('page-language').options].map(e => e.textContent)"),
               ["English", "Fran\u00e7ais"])
        self.browser.click(self.book.button("A"))
        self.book.choose("language", "Fran")
        self.book.names()
        expect(self.browser.run(labels), ["Maison", "Only"])
        expect(self.browser.run("document.querySelector('h1').textContent"), "Enqu\u00eate")
        expect(self.browser.run("document.querySelector('article .label').lang"), "fr")
        expect(self.browser.run("document.title"), "Enqu\u00eate \u2013 codebook")
        if "Oui" not in self.book.details("A"):
            raise AssertionError(self.book.details("A"))
        self.book.search("maison oui")
        self.book.wait_for_found("1 of 2 variables")
        self.book.search("house")
        self.book.wait_for_found("No variable matches")

    def label_without_a_text_in_the_language_shows_its_first(self):
        made = {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "D",
                "languages": [{"name": code, "label": code} for code in ("EN", "FR", "SW")], "levels": [
                    {"name": "L", "ids": {"items": []}, "records": [{"name": "R", "recordType": "", "items": [
                        {"name": "A", "contentType": "numeric", "start": 1, "length": 1, "labels": [
                            {"language": "FR", "text": "Maison"}, {"language": "EN", "text": "House"},
                            {"language": "SW", "text": ""}]},
                        {"name": "B", "contentType": "numeric", "start": 2, "length": 1, "labels": [
                            {"language": "FR", "text": "Toit"}, {"language": "EN", "text": "Roof"}]}]}]}]}
        self.book.open_made(json.dumps(made))
        labels = "[...document.querySelectorAll('article .label')].map(e => [e.textContent, e.lang])"
        for language, expected in (("EN", [["House", "en"], ["Roof", "en"]]), ("FR", [["Maison", "fr"], ["Toit", "fr"]]),
                                   ("SW", [["Maison", "fr"], ["Toit", "fr"]])):
            self.book.choose("language", language)
            self.book.names()
            expect(self.browser.run(labels), expected)

    def filters_stay_when_the_language_changes(self):
        self.book.open_made(self._languages() + item("C", "Text|Texte", 3, 1, kind="Alpha") + "\n[Record]\nName=OTHER\n"
                            + item("E", "Text|Texte", 4, 1, kind="Alpha"))
        self.book.choose("record", "REC")
        self.book.choose("type", "alpha")
        self.book.wait_for_found("1 of 4 variables")
        self.book.choose("language", "Fran")
        self.book.wait_for_found("1 of 4 variables")
        expect(self.book.names(), ["C"])
        expect(self.browser.run("document.querySelector('article .label').textContent"), "Texte")

    def page_opens_in_the_language_that_is_asked_for(self):
        self.book.open_made(self._languages(), options=("--language", "fr"))
        expect(self.browser.run("document.querySelector('article .label').textContent"), "Maison")
        expect(self.browser.run("document.title"), "Enqu\u00eate \u2013 codebook")
        expect(self.browser.run("document.getElementById('page-language').selectedOptions[0].textContent"),
               "Fran\u00e7ais")

    def page_of_one_language_has_no_switch(self):
        self.book.open_example()
        expect(self.browser.run("document.getElementById('page-language-row').hidden"), True)

    # ----------------------------------------------------------------------------------------------- problems
    @staticmethod
    def _problems():
        return DICTIONARY + item("A", "One", 1, 1) + item("B", "Two", 2, 1, more=["Colour=red", "Size=9"]) \
            + "\n[Strange]\nKey=1\n"

    def problem_leads_to_its_variable(self):
        self.book.open_made(self._problems())
        self.browser.run("document.querySelectorAll('#page-problems details').forEach(e => e.open = true)")
        link = "document.querySelector('#page-problems .places a')"
        self.browser.wait_for(link + " !== null")
        expect(self.browser.run(link + ".textContent"), "B")
        line, message = self.browser.run("['.where', '.problem-message'].map(part => %s.parentElement.querySelector(part)"
                                         ".textContent)" % link)
        self.browser.click(link)
        self.browser.wait_for("document.querySelector('article.current') !== null")
        self.browser.run("new Promise(requestAnimationFrame)")
        expect(self.book.current(), "B")
        beside = self.browser.run("document.querySelector('article.current .local-problems').innerText")
        for part in (line, message):
            if part not in beside:
                raise AssertionError("%r is not in %r" % (part, beside))
        expect(self.browser.run("[...document.querySelectorAll('article .badges')].map(e => e.children.length > 0)"),
               [False, True])

    def problem_of_a_long_name_is_beside_its_variable(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1) + item("B/" * 300, "Two", 2, 1, more=["Colour=red"]))
        expect(self.browser.run("[...document.querySelectorAll('article .badges')].map(e => e.children.length)"), [0, 1])

    def very_many_problems_of_a_variable_are_counted(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1, more=["Strange%d=1" % i for i in range(103)]), "#A")
        self.browser.wait_for("document.querySelector('article.current .local-problems') !== null")
        expect(self.browser.run("[...document.querySelectorAll('article.current .local-problems li')].map(e => "
                                "e.textContent).slice(100)"), ["3 further problems are in the list at the top."])
        self.browser.run("document.querySelectorAll('#page-problems details').forEach(e => e.open = true)")
        longest = "Math.max(...[...document.querySelectorAll('#page-problems .places')].map(e => e.childElementCount))"
        self.browser.wait_for(longest + " === 25")
        self.browser.run("document.querySelector('#page-problems .more:not([hidden])').click()")
        expect(self.browser.run(longest), 103)

    def every_problem_is_listed(self):
        self.book.open_made(self._problems())
        self.browser.run("document.querySelectorAll('#page-problems details').forEach(e => e.open = true)")
        self.browser.wait_for("[...document.querySelectorAll('.kind')].every(e => e.childElementCount > 1)")
        expect(self.browser.run("document.querySelectorAll('#page-problems .places li').length"),
               self.browser.run("JSON.parse(document.getElementById('page-data').textContent).problems.length"))

    def problems_can_be_left_out(self):
        self.book.open_made(self._problems(), options=("--no-problems",))
        expect(self.browser.run("document.getElementById('page-problems').hidden"), True)
        expect(self.browser.run("document.querySelectorAll('.severity').length"), 0)
        expect(self.browser.run("document.getElementById('page-troubled-label').hidden"), True)
        self.book.open_example()
        expect(self.browser.run("document.getElementById('page-problems').hidden"), True)

    def problems_are_not_printed(self):
        self.book.open_made(self._problems(), "#B")
        self.browser.wait_for("document.querySelector('article.current .local-problems') !== null")
        shown = "[...document.querySelectorAll('#page-problems, .local-problems, .badges')].map(e => " \
                "getComputedStyle(e).display === 'none')"
        expect(any(self.browser.run(shown)), False)
        self.browser.call("Emulation.setEmulatedMedia", media="print")
        hidden = self.browser.run(shown)
        self.browser.call("Emulation.setEmulatedMedia", media="")
        expect(all(hidden), True)

    def back_leads_back(self):
        self.book.open_example(fragment="#EA")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        self.browser.run("document.querySelector('.lines a[aria-label^=DISTRICT]').click()")
        expect(self.book.current(), "DISTRICT")
        self.browser.run("history.back()")
        self.browser.wait_for("document.querySelector('article.current').dataset.index === '2'")

    # ---------------------------------------------------------------------------------------------- rulers
    def block_leads_to_its_variable(self):
        self.book.open_example()
        block = "document.querySelector('#page-group-0 .block[aria-label^=HOUSEHOLD]')"
        self.browser.wait_for(block + " !== null")
        expect(self.browser.run(block + ".getAttribute('aria-label')"), "HOUSEHOLD, columns 9–11")
        self.browser.click(block)
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.book.current(), "HOUSEHOLD")

    def blocks_stand_on_their_columns(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 10) + item("B", "Two", 11, 5))
        self.browser.wait_for("document.querySelectorAll('.block').length === 2")
        left, width, right = self.browser.run(
            "(() => { const [a, b] = [...document.querySelectorAll('.block')].map(e => e.getBoundingClientRect()); "
            "return [b.left - a.left, a.width, b.width]; })()")
        expect(round(left), round(width))
        expect(round(width / right, 1), 2.0)

    def variables_on_the_same_columns_are_below_each_other(self):
        self.book.open_made(DICTIONARY + item("DATE", "Date", 1, 8) + item("YEAR", "Year", 1, 4)
                            + item("MONTH", "Month", 5, 2) + item("NEXT", "Next", 9, 1))
        self.browser.wait_for("document.querySelectorAll('.block').length === 4")
        tops = self.browser.run("[...document.querySelectorAll('.block')].map(e => [e.ariaLabel.split(',')[0], "
                                "e.getBoundingClientRect().top])")
        tops = dict(tops)
        expect(tops["DATE"], tops["NEXT"])
        expect(tops["YEAR"], tops["MONTH"])
        if tops["YEAR"] <= tops["DATE"]:
            raise AssertionError(tops)
        self.browser.click(self.book.button("DATE"))
        if "Shares columns with\nYEAR MONTH" not in " ".join(self.book.details("DATE").split(" ")):
            raise AssertionError(self.book.details("DATE"))

    def ruler_says_what_it_leaves_out(self):
        self.book.open_made(DICTIONARY + "".join(item("V%d" % i, "One", 1, 3) for i in range(15))
                            + item("FAR", "Far", 999999, 5) + item("BEYOND", "Beyond", 1000001, 5))
        hints = "[...document.querySelectorAll('.ruler > .hint')].map(e => e.textContent)"
        self.browser.wait_for("document.querySelectorAll('.block').length > 11")
        expect(self.browser.run("document.querySelectorAll('.block').length"), 12)
        expect(self.browser.run(hints), ["3 variables are not drawn: more than 12 are on the same columns.",
                                         "Columns after 1,000,000 are not drawn."])
        self.browser.click(self.book.button("V14"))
        expect(" and more" in self.book.details("V14").split("Shares columns with")[1], True)

    def _blocks(self):
        """Label, left edge, whether it is below the first, and width of each block; in widths of the first."""
        return self.browser.run(
            "(() => { const blocks = [...document.querySelectorAll('.block')]; const first = "
            "blocks[0].getBoundingClientRect(); return blocks.map(e => { const r = e.getBoundingClientRect(); return "
            "[e.ariaLabel, Math.round(10 * (r.left - first.left) / first.width) / 10, r.top > first.top ? 1 : 0, "
            "Math.round(10 * r.width / first.width) / 10]; }); })()")

    def subitems_are_inside_their_item(self):
        self.book.open_made(DICTIONARY + item("DATE", "Date", 1, 8) + item("YEAR", "Year", 1, 4, more=["ItemType=SubItem"])
                            + item("DAY", "Day", 5, 4, more=["ItemType=SubItem"]) + item("NEXT", "Next", 9, 8))
        self.browser.wait_for("document.querySelectorAll('.block').length === 4")
        expect(self._blocks(), [["DATE, columns 1\u20138", 0, 0, 1], ["YEAR, columns 1\u20134", 0, 1, 0.5],
                                ["DAY, columns 5\u20138", 0.5, 1, 0.5], ["NEXT, columns 9\u201316", 1, 0, 1]])
        self.browser.click(self.book.button("DATE"))
        expect("Shares columns" in self.book.details("DATE"), False)

    def occurrences_are_on_their_columns(self):
        self.book.open_made(DICTIONARY + item("PAIR", "Pair", 1, 4, more=["Occurrences=2"])
                            + item("LEFT", "Left", 1, 2, more=["ItemType=SubItem"])
                            + item("TIMES", "Times", 9, 2, more=["Occurrences=3", "OccurrenceLabel=2,Second"]))
        self.browser.wait_for("document.querySelectorAll('.block').length === 7")
        expect(self._blocks(), [
            ["PAIR, occurrence 1, columns 1\u20134", 0, 0, 1], ["LEFT, occurrence 1, columns 1\u20132", 0, 1, 0.5],
            ["PAIR, occurrence 2, columns 5\u20138", 1, 0, 1], ["LEFT, occurrence 2, columns 5\u20136", 1, 1, 0.5],
            ["TIMES, occurrence 1, columns 9\u201310", 2, 0, 0.5], ["TIMES, occurrence 2, columns 11\u201312", 2.5, 0, 0.5],
            ["TIMES, occurrence 3, columns 13\u201314", 3, 0, 0.5]])
        self.browser.run("document.querySelector('.block[aria-label^=\"TIMES, occurrence 2\"]').focus()")
        expect(self.browser.run("document.querySelector('.readout').textContent.replace(/\\s+/g, ' ')"),
               "TIMES occurrence 2 Second columns 11\u201312 Times")

    def ids_and_record_type_are_on_each_ruler(self):
        self.book.open_example()
        self.browser.wait_for("document.querySelectorAll('#page-group-1 .block').length > 6")
        expect(self.browser.run("[...document.querySelectorAll('#page-group-1 .block')].slice(0, 5).map(e => "
                                "[e.className, e.ariaLabel])"),
               [["block record-type", None], ["block common", "PROVINCE, columns 2\u20133"],
                ["block common", "DISTRICT, columns 4\u20135"], ["block common", "EA, columns 6\u20138"],
                ["block common", "HOUSEHOLD, columns 9\u201311"]])

    def record_without_a_type_has_none_on_its_ruler(self):
        self.book.open_made(DICTIONARY.replace("RecordTypeStart=0\nRecordTypeLen=0", "RecordTypeStart=1\nRecordTypeLen=1")
                            + item("A", "One", 2, 1))
        self.browser.wait_for("document.querySelector('.block') !== null")
        expect(self.browser.run("[...document.querySelectorAll('.block')].map(e => e.ariaLabel)"), ["A, column 2"])

    def ruler_is_one_stop_and_arrows_move_in_it(self):
        self.book.open_example()
        stops = "[...document.querySelectorAll('#page-group-0 .block')].filter(e => e.tabIndex === 0).length"
        self.browser.wait_for("document.querySelectorAll('#page-group-0 .block').length === 4")
        expect(self.browser.run(stops), 1)
        self.browser.run("document.querySelector('#page-group-0 .block[tabindex=\"0\"]').focus()")
        self.browser.press("ArrowRight", 39)
        expect(self.browser.run("document.activeElement.getAttribute('aria-label')"), "DISTRICT, columns 4–5")
        expect(self.browser.run(stops), 1)

    def ids_of_outer_levels_are_on_each_ruler(self):
        self.book.open_made("[Dictionary]\nVersion=CSPro 7.7\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\n\n[Level]\nName=ONE"
                            "\n\n[IdItems]\n" + item("OUTER", "Outer", 1, 4) + "\n[Record]\nName=A\nRecordTypeValue=''\n"
                            + item("X", "X", 9, 4) + "\n[Level]\nName=TWO\n\n[IdItems]\n" + item("INNER", "Inner", 5, 4)
                            + "\n[Record]\nName=B\nRecordTypeValue=''\n" + item("Y", "Y", 9, 4))
        self.browser.wait_for("document.querySelectorAll('#page-group-3 .block').length > 0")
        rulers = self.browser.run("[0, 1, 2, 3].map(g => [...document.querySelectorAll('#page-group-' + g + ' .block')].map("
                                  "e => e.ariaLabel.split(',')[0] + (e.classList.contains('common') ? '*' : '')))")
        expect(rulers, [["OUTER"], ["OUTER*", "X"], ["OUTER*", "INNER"], ["OUTER*", "INNER*", "Y"]])
        expect(self.browser.run("[...document.querySelectorAll('.level-title')].map(e => e.innerText)"),
               ["Level 1 ONE", "Level 2 TWO"])
        expect(self.browser.run("[...document.querySelectorAll('section.record h2')].map(e => e.textContent.trim())"),
               ["Id items of level 1", "A", "Id items of level 2", "B"])
        self.book.choose("record", "A")
        self.book.wait_for_found("1 of 4 variables")
        expect(self.browser.run("[...document.querySelectorAll('.level')].map(e => e.hidden)"), [False, True])

    def only_record_has_its_variables(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1) + item("B", "Two", 2, 1))
        expect(self.browser.run("[...document.querySelectorAll('section.record > header')].map(e => "
                                "[...e.children].map(child => child.textContent))"),
               [["REC Record", "required \u00b7 at most 1 record per case \u00b7 2 variables"]])
        expect(self.browser.run("document.getElementById('page-groups').hidden"), True)
        expect(self.browser.run("document.querySelectorAll('.ruler').length"), 1)

    def columns_are_where_there_are_some(self):
        widths = "[...document.querySelectorAll('article .columns')].map(e => e.textContent)"
        self.book.open_made(DICTIONARY + item("PLACED", "One", 1, 3) + item("WIDE", "Two", 0, 3)
                            + item("AGAIN", "Three", 4, 2, more=["Occurrences=1200"]))
        expect(self.browser.run(widths), ["1\u20133", "", "4\u20135 \u00d7 1,200"])
        for name in ("types.sav", "types-118.dta"):
            self.book.open(os.path.join(self.made_data, name))
            expect(self.browser.run("%s.filter(text => text !== '')" % widths), [])

    def layout_without_positions_has_no_ruler(self):
        self.book.open(os.path.join(self.made_data, "types-118.dta"))
        expect(self.browser.run("document.querySelectorAll('.ruler').length"), 0)
        expect(self.browser.run("document.querySelector('section.record > header').innerText.replace(/\\s+/g, ' ')"),
               "Variables 9 variables")

    # ----------------------------------------------------------------------------------------------- texts
    def label_with_script_shows_as_text(self):
        attack = "<script>window.attacked = 1</script><img src=x onerror=\"window.attacked = 1\">"
        self.book.open_made(DICTIONARY + item("ODD", attack, 1, 1, [("1", attack)]), "#ODD")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        shown = self.browser.run("document.querySelector('.value-labels td:last-child').textContent")
        if not shown.startswith("<script>window.attacked"):
            raise AssertionError(shown)
        expect(self.browser.run("typeof window.attacked"), "undefined")
        expect(self.browser.run("document.querySelectorAll('img').length"), 0)
        expect(self.browser.run("document.scripts.length"), 2)

    def variable_label_with_script_shows_as_text(self):
        label = "<script>attack()</script> & </script> \"<b>\""
        self.book.open_made(DICTIONARY + item("ODD", label, 1, 1))
        expect(self.browser.run("document.querySelector('.variable .label').textContent"), label)
        self.book.search("</script>")
        self.book.wait_for_found("1 variable")
        self.book.names()
        expect(self.browser.run("document.querySelector('.variable .label').textContent"), label)
        expect(self.browser.run("document.querySelector('.variable mark').textContent"), "</script>")

    def script_of_another_does_not_run(self):
        self.book.open_example()
        self.browser.run("(() => { const script = document.createElement('script'); script.textContent = "
                         "'window.attacked = 1'; document.body.append(script); })()")
        expect(self.browser.run("typeof window.attacked"), "undefined")
        if not any("Content Security Policy" in text for text in self.browser.complaints()):
            raise AssertionError("nothing was forbidden")
        self.browser.events.clear()

    def control_characters_show_as_escapes(self):
        self.book.open_made(DICTIONARY + item("A\x01", "a\x02b", 1, 1))
        expect(self.book.names(), ["A\\u0001"])
        expect(self.browser.run("document.querySelector('article .label').textContent"), "a\\u0002b")
        self.browser.click(self.book.button("A\\u0001"))
        expect(self.browser.run("decodeURIComponent(location.hash)"), "#A\\u0001")

    def right_to_left_label_runs_from_the_right(self):
        self.book.open_made(DICTIONARY + item("RTL", "\u05e9\u05dc\u05d5\u05dd", 1, 1) + item("LTR", "Peace", 2, 1))
        expect(self.browser.run("[...document.querySelectorAll('.variable .label')].map(e => "
                                "getComputedStyle(e).direction)"), ["rtl", "ltr"])
        expect(self.browser.run("[...document.querySelectorAll('.variable .label')].every(e => e.dir === 'auto' && "
                                "e.getAttribute('lang') === '')"), True)

    # ----------------------------------------------------------------------------- sizes, print, no script
    def large_layout_is_drawn_as_far_as_it_is_seen(self):
        count = 10000
        self.book.open_made(DICTIONARY + "".join(
            item("V%05d" % i, "Question %d" % i, 1 + 2 * i, 2, [("1", "Answer of %d" % i)]) for i in range(count)))
        expect(self.book.found(), "10,000 variables")
        drawn = self.browser.run("document.querySelectorAll('article.variable').length")
        if not 0 < drawn < count / 10:
            raise AssertionError(drawn)
        self.browser.run("location.hash = '#V09876'")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        self.browser.run("new Promise(requestAnimationFrame)")
        self.browser.run("new Promise(requestAnimationFrame)")
        expect(self.book.current(), "V09876")
        self.book.search("answer 4321")
        self.book.wait_for_found("1 of 10,000 variables")
        expect(self.book.names(), ["V04321"])

    def records_are_drawn_as_far_as_they_are_seen(self):
        count = 10000
        self.book.open_made(records(count))
        expect(self.book.found(), "10,000 variables")
        headings = "document.querySelectorAll('section.record > header').length"
        if not 0 < self.browser.run(headings) < count / 10:
            raise AssertionError(self.browser.run(headings))
        elements = self.browser.run("document.getElementsByTagName('*').length")
        if elements > 2 * count:
            raise AssertionError(elements)
        links = "document.querySelectorAll('#page-groups a').length"
        expect(self.browser.run(links), 100)
        self.browser.run("document.querySelector('#page-groups .more').click()")
        expect(self.browser.run(links), 600)
        self.browser.run("location.hash = '#V09876'")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.book.current(), "V09876")
        self.book.search("V0432")
        self.book.wait_for_found("10 of 10,000 variables")
        expect(self.browser.run(links), 10)
        expect(self.browser.run("document.querySelectorAll('section.record:not([hidden])').length"), 10)
        self.browser.wait_for("document.querySelectorAll('section.record.drawn:not([hidden]) article').length === 10")

    def paper_has_every_record(self):
        count = 300
        self.book.open_made(records(count))
        headings = "document.querySelectorAll('section.record > header').length"
        if self.browser.run(headings) == count:
            raise AssertionError("all were drawn before")
        self.browser.run("dispatchEvent(new Event('beforeprint'))")
        expect(self.browser.run(headings), count)
        expect(self.browser.run("document.querySelectorAll('article .details').length"), count)
        self.browser.run("dispatchEvent(new Event('afterprint'))")

    def paper_has_every_variable_with_its_details(self):
        self.book.open_example()
        # The browser prints the page in the state after the event was handled.
        variables, articles, undrawn = self.browser.run(
            "(() => { dispatchEvent(new Event('beforeprint')); const count = what => "
            "document.querySelectorAll(what).length; return [count('article .details'), count('article'), "
            "count('.ruler:not(:has(.block))')]; })()")
        expect((variables, articles, undrawn), (56, 56, 0))
        expect(self.browser.run("document.getElementById('page-brief').hidden"), True)
        self.browser.run("dispatchEvent(new Event('afterprint'))")
        expect(self.browser.run("document.querySelectorAll('article .details').length"), 0)
        if not self.browser.print().startswith(b"%PDF"):
            raise AssertionError("no PDF")

    def paper_has_a_long_list_alone(self):
        self.book.open_made(DICTIONARY + "".join(item("V%04d" % i, "One", 1 + i, 1) for i in range(2001)))
        count = "[document.querySelectorAll('article').length, document.querySelectorAll('.details').length, " \
                "document.getElementById('page-brief').hidden]"
        self.browser.run("dispatchEvent(new Event('beforeprint'))")
        expect(self.browser.run(count), [2001, 0, False])
        self.browser.run("dispatchEvent(new Event('afterprint'))")
        self.book.search("V000")
        self.book.wait_for_found("10 of 2,001 variables")
        self.browser.run("dispatchEvent(new Event('beforeprint'))")
        expect(self.browser.run(count), [10, 10, True])
        self.browser.run("dispatchEvent(new Event('afterprint'))")

    def paper_has_the_first_labels_of_very_many(self):
        self.book.open_made(DICTIONARY + item("LONG", "Many", 1, 5, [(str(i), "Place") for i in range(50001)]))
        self.browser.run("dispatchEvent(new Event('beforeprint'))")
        expect(self.browser.run("document.querySelectorAll('.value-labels tbody tr').length"), 200)
        expect(self.browser.run("document.querySelector('.value-labels .more').textContent"), "and 49,801 more")
        self.browser.run("dispatchEvent(new Event('afterprint'))")

    def paper_has_all_labels_of_a_long_set(self):
        self.book.open_made(DICTIONARY + item("LONG", "Many", 1, 3, [(str(i), "Place %d" % i) for i in range(1, 701)]))
        self.browser.click(self.book.button("LONG"))
        rows = "document.querySelectorAll('.value-labels tbody tr').length"
        expect(self.browser.run(rows), 200)
        expect(self.browser.run("document.querySelector('.value-labels .more').textContent"), "and 500 more")
        self.browser.run("dispatchEvent(new Event('beforeprint'))")
        expect(self.browser.run(rows), 700)
        self.browser.run("dispatchEvent(new Event('afterprint'))")
        self.browser.click("document.querySelector('.value-labels .more')")
        expect(self.browser.run(rows), 700)
        expect(self.browser.run("document.querySelector('.value-labels .more').hidden"), True)

    def paper_has_the_first_lines_of_a_long_ruler(self):
        self.book.open_made(DICTIONARY + item("LONG", "Long", 1, 100000))
        lines = "document.querySelectorAll('.ruler .line').length"
        self.browser.wait_for(lines + " > 0")
        self.browser.run("dispatchEvent(new Event('beforeprint'))")
        expect(self.browser.run(lines), 400)
        expect(self.browser.run("document.querySelector('.lines').lastChild.textContent"),
               "Columns after %s are not printed." % format(400 * self.browser.run(
                   "Number([...document.querySelectorAll('.line')][0].lastChild.previousSibling.textContent)"), ","))
        self.browser.run("dispatchEvent(new Event('afterprint'))")
        expect(self.browser.run(lines + " < 100"), True)

    def many_value_sets_are_shown_in_steps(self):
        sets = "".join("\n[ValueSet]\nName=S%d\nValue=1;One\nValue=2;Two\n" % i for i in range(150))
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1) + sets)
        tables = "document.querySelectorAll('.value-sets table').length"
        self.browser.click(self.book.button("A"))
        expect(self.browser.run(tables), 20)
        self.browser.click("document.querySelector('.value-sets + .more')")
        expect(self.browser.run(tables), 120)
        expect(self.browser.run("document.querySelector('.value-sets + .more').textContent"), "and 30 more")
        self.browser.run("dispatchEvent(new Event('beforeprint'))")
        expect(self.browser.run(tables), 150)
        self.browser.run("dispatchEvent(new Event('afterprint'))")

    def long_texts_of_a_variable_fit_a_phone(self):
        text = "x" * 500
        self.browser.look(390, 844)
        try:
            self.book.open_made(DICTIONARY + item("A", text, 1, 1, more=["Note=" + text, "Alias=" + text.upper()]) + """
[ValueSet]
Name=%s
Label=%s
Note=%s
Value='%s';%s
""" % (text.upper(), text, text, text, text), "#A")
            self.browser.wait_for("document.querySelector('article.current .value-labels') !== null")
            expect(self.browser.run("document.documentElement.scrollWidth"), 390)
        finally:
            self.browser.look(1200, 900)

    def narrow_window_needs_no_sideways_scrolling(self):
        self.browser.look(390, 844)
        try:
            self.book.open_example(fragment="#H14_VISIT_DATE")
            self.browser.wait_for("document.querySelector('article.current') !== null")
            expect(self.browser.run("document.documentElement.scrollWidth"), 390)
        finally:
            self.browser.look(1200, 900)

    def long_name_of_a_record_fits_a_phone(self):
        record = "[Record]\nName=%s\nRecordTypeValue='1'\n" % ("LONG" * 40)
        text = DICTIONARY.replace("RecordTypeStart=0\nRecordTypeLen=0", "RecordTypeStart=1\nRecordTypeLen=1")
        self.browser.look(360, 740)
        try:
            self.book.open_made(text + record + item("A", "One", 2, 1))
            expect(self.browser.run("[...document.querySelectorAll('h2 span')].some(e => e.textContent.length > 150)"),
                   True)
            expect(self.browser.run("document.documentElement.scrollWidth"), 360)
        finally:
            self.browser.look(1200, 900)

    def filters_of_a_phone_are_behind_a_button(self):
        self.browser.look(390, 844)
        try:
            self.book.open_example()
            filters = "getComputedStyle(document.getElementById('page-filters')).display"
            expect(self.browser.run(filters), "none")
            self.browser.click("document.getElementById('page-filter-button')")
            expect(self.browser.run(filters), "flex")
            expect(self.browser.run("document.getElementById('page-filter-button').getAttribute('aria-expanded')"), "true")
            self.book.choose("record", "MORTALITY")
            self.book.wait_for_found("9 of 56 variables")
            expect(self.browser.run("document.documentElement.scrollWidth"), 390)
        finally:
            self.browser.look(1200, 900)

    def dark_scheme_is_dark(self):
        self.book.open_example()
        light = self.browser.run("getComputedStyle(document.body).backgroundColor")
        self.browser.look(1200, 900, "dark")
        dark = self.browser.run("getComputedStyle(document.body).backgroundColor")
        self.browser.look(1200, 900)
        brightness = [sum(int(part) for part in colour[4:-1].split(",")) for colour in (light, dark)]
        if not brightness[0] > 700 or not brightness[1] < 120:
            raise AssertionError((light, dark))

    def page_without_script_says_so(self):
        self.browser.call("Emulation.setScriptExecutionDisabled", value=True)
        try:
            page = os.path.join(self.book.directory, "page.html")
            subprocess.run([self.book.tool, "codebook", os.path.join(self.book.examples, "census.dcf"), "-o", page],
                           check=True)
            self.browser.open("about:blank")
            self.browser.open("file://" + page)
            text = self.browser.run("document.body.innerText")
            for part in ("Orvandia", "census.dcf", "56 variables", "JavaScript"):
                if part not in text:
                    raise AssertionError("%r is not in %r" % (part, text))
        finally:
            self.browser.call("Emulation.setScriptExecutionDisabled", value=False)

    # -------------------------------------------------------------------------------------------------- index
    def _open_index(self):
        directory = os.path.join(self.book.directory, "pages")
        files = [os.path.join(self.book.examples, "census.dcf"), os.path.join(self.made_data, "types-118.dta")]
        made = os.path.join(self.book.directory, "a#b.dcf")
        with open(made, "w", encoding="utf-8") as out:
            out.write(self._languages() + item("A", "L\u2019eau <b>", 3, 1))
        subprocess.run([self.book.tool, "codebook", *files, made, "-o", directory + "/"], check=True)
        self.browser.open("about:blank")
        self.browser.open("file://" + os.path.join(directory, "index.html"))
        self.browser.wait_for("document.querySelector('.book') !== null")

    def index_lists_the_codebooks(self):
        self._open_index()
        expect(self.book.found(), "3 codebooks")
        books = self.browser.run("[...document.querySelectorAll('.book')].map(e => e.innerText.replace(/\\s+/g, ' '))")
        expect([books[0], books[2]],
               ["Population and Housing Census of Orvandia ORVANDIA_CENSUS_DICT \u00b7 census.dcf \u00b7 CSPro "
                "dictionary, text form 7.7 \u00b7 3 records \u00b7 56 variables",
                "Survey D \u00b7 a#b.dcf \u00b7 CSPro dictionary, text form 7.7 \u00b7 1 record \u00b7 3 variables"])

    def index_searches_all_codebooks(self):
        self._open_index()
        for text, found, names in (("l'eau", "1 variable in 1 codebook", ["A"]),
                                   ("maison", "1 variable in 1 codebook", ["A"]),
                                   ("fishers net", "1 variable in 1 codebook", ["P16_OCCUPATION"]),
                                   ("oui", "1 variable in 1 codebook", ["A"]),
                                   ("orvandia_census_dict", "0 variables in 1 codebook", []),
                                   ("no such thing", "Nothing matches", []),
                                   ("census.dcf", "0 variables in 1 codebook", [])):
            self.book.search(text)
            self.browser.wait_for("JSON.stringify([...document.querySelectorAll('.found-list a')].map(e => e.textContent))"
                                  " === %s" % json.dumps(json.dumps(names, separators=(",", ":"))))
            self.book.wait_for_found(found)
        self.book.search("p06_age")
        self.book.wait_for_found("1 variable in 1 codebook")
        self.browser.press("Escape", 27)
        self.book.wait_for_found("3 codebooks")

    def index_shows_variables_in_steps(self):
        self._open_index()
        self.book.search("p")
        found = "document.querySelector('.found-list')"
        self.browser.wait_for(found + " !== null")
        expect(self.browser.run(found + ".childElementCount"), 20)
        more = int(self.browser.run(found + ".nextElementSibling.textContent").split()[1])
        self.browser.click(found + ".nextElementSibling")
        expect(self.browser.run(found + ".childElementCount"), 20 + more)

    def index_leads_to_the_variable(self):
        self._open_index()
        self.book.search("l'eau")
        self.book.wait_for_found("1 variable in 1 codebook")
        self.browser.click("document.querySelector('.found-list a')")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.browser.run("decodeURIComponent(location.hash)"), "#A~2")
        expect(self.browser.run("document.querySelector('article.current .label').textContent"), "L\u2019eau <b>")

    def index_fits_a_phone(self):
        self.browser.look(390, 844)
        try:
            self._open_index()
            self.book.search("a")
            self.browser.wait_for("document.querySelectorAll('.found-list a').length > 20")
            expect(self.browser.run("document.documentElement.scrollWidth"), 390)
        finally:
            self.browser.look(1200, 900)


def run_tests(book, made_data):
    tests = Tests(book, made_data)
    failures = 0
    for name in [name for name in vars(Tests) if not name.startswith("_")]:
        try:
            getattr(tests, name)()
            expect(book.browser.complaints(), [])
            print("PASS  ", name)
        except Exception as failure:  # the other tests continue
            failures += 1
            print("FAIL  ", name, "\n       ", failure)
        book.browser.events.clear()
    print(failures, "failed")
    return 1 if failures else 0


def take_screenshot(book, file):
    book.browser.look(1200, 1500)
    book.open_example()
    book.browser.run(book.button("DISTRICT") + ".click()")
    book.browser.run("scrollTo(0, 0)")
    book.browser.run("new Promise(done => setTimeout(done, 300))")
    book.browser.screenshot(file)
    return 0


def main(arguments):
    program = chromium.find()
    if not program:
        print("there is no Chromium here")
        return SKIPPED
    tool, examples, *rest = arguments
    try:
        with tempfile.TemporaryDirectory() as directory, chromium.Browser(program) as browser:
            browser.look(1200, 900)
            book = Codebook(tool, examples, browser, directory)
            if rest[0] == "--screenshot":
                return take_screenshot(book, rest[1])
            return run_tests(book, rest[0])
    except chromium.NotStarted as error:
        print(program, "does not run here:", error)
        return SKIPPED


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
