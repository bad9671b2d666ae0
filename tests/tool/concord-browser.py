#!/usr/bin/env python3
"""Uses the page of `vanlayout concord` in a browser, as a person does.

    concord-browser.py TOOL     ends in 77 where no Chromium runs
"""

import json
import os
import subprocess
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import chromium  # noqa: E402
from chromium import expect  # noqa: E402

HOSTILE = "</script><script>document.title = 'taken'</script><b onclick=x>"


def item(name, label, start, values=()):
    """An item of one column, with its value set."""
    lines = ["", "[Item]", "Label=" + label, "Name=" + name, "Start=%d" % start, "Len=1", "DataType=Numeric"]
    if values:
        lines += ["", "[ValueSet]", "Label=" + name, "Name=" + name + "_VS1"]
        lines += ["Value=%s;%s" % value for value in values]
    return "\n".join(lines) + "\n"


def dictionary(items):
    return ("[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n"
            "Positions=Absolute\n\n[Level]\nLabel=L\nName=L\n\n[IdItems]\n" + item("ID", "Id", 90)
            + "\n[Record]\nLabel=R\nName=R\nRecordTypeValue='1'\n" + "".join(items))


SEX = item("SEX", "Sex", 5, [("1", "Male"), ("2", "Female")])
ROUNDS = [
    dictionary([SEX, item("ROOF", "Roof", 6, [("1", "Straw"), ("2", "Tiles")])]),
    dictionary([SEX, item("ROOF", "Roof", 6, [("1", "Straw"), ("2", "Electricity")]), item("WALL", HOSTILE, 7)]),
    dictionary([SEX, item("ROOF", "Roof", 6, [("1", "straw"), ("2", "Electricity")]), item("WALL", HOSTILE, 7)]),
]


class Page:
    """The page of a concordance in a browser."""

    def __init__(self, tool, browser, directory):
        self.tool = tool
        self.browser = browser
        self.directory = directory

    def begin(self):
        self.open()

    def open(self, rounds=None):
        names = []
        for number, text in enumerate(rounds or ROUNDS, 1):
            names.append("round%d.dcf" % number)
            with open(os.path.join(self.directory, names[-1]), "w", encoding="utf-8-sig") as file:
                file.write(text)
        subprocess.run([self.tool, "concord", "--format", "html", "-o", "page.html"] + names, cwd=self.directory,
                       check=True)
        self.browser.open("file://" + os.path.join(self.directory, "page.html"))
        self.browser.wait_for("document.querySelector('.variable-row') !== null")

    def wait(self):
        """Waits until the rows that are near the window are drawn."""
        self.browser.run("new Promise(done => requestAnimationFrame(() => setTimeout(done, 100)))")

    def shown(self, selector):
        """The texts of the visible elements."""
        return self.browser.run("[...document.querySelectorAll(%s)].filter(e => e.getClientRects().length > 0)"
                                ".map(e => e.textContent.trim())" % json.dumps(selector))

    def variables(self):
        return self.shown(".variable-row button.name")

    def codes(self):
        return self.shown(".code-row .first")

    def set(self, element, value, event):
        self.browser.run("(() => { const field = document.getElementById('page-%s'); field.value = %s;"
                         "field.dispatchEvent(new Event('%s')); })()" % (element, json.dumps(value), event))
        self.wait()

    def search(self, text):
        self.set("search", text, "input")

    def choose(self, kind):
        self.set("kind", kind, "change")

    def found(self):
        return self.browser.run("document.getElementById('page-found').textContent")

    def box(self, selector):
        return self.browser.run("(() => { const r = document.querySelector(%s).getBoundingClientRect();"
                                "return [r.left, r.top]; })()" % json.dumps(selector))


ALL = ["ID", "SEX", "ROOF", "WALL"]


class Tests:
    """Each test begins with the page in its initial state."""

    def __init__(self, page):
        self.page = page
        self.browser = page.browser

    def all_variables_and_rounds_are_shown_at_first(self):
        expect(self.page.variables(), ALL)
        expect(self.page.shown(".head > *"), ["Variable", "round1.dcf", "round2.dcf", "round3.dcf"])
        expect(self.page.codes(), [])
        expect(self.page.found(), "4 variables")

    def texts_of_the_file_stay_texts(self):
        expect(self.browser.run("document.title"), "round1.dcf … round3.dcf – concordance")
        expect(self.page.shown(".variable-row .first .label")[-1], HOSTILE)

    def variable_opens_its_codes(self):
        self.browser.click("document.querySelectorAll('button.name')[1]")
        expect(self.page.codes(), ["1", "2"])
        expect(self.page.shown(".code-row .cell"), ["Male", "=", "=", "Female", "=", "="])
        expect(self.browser.run("document.activeElement.textContent"), "SEX")
        self.browser.press("Enter", 13)
        expect(self.page.codes(), [])

    def all_codes_are_opened(self):
        self.browser.click("document.getElementById('page-open-all')")
        self.page.wait()
        expect(len(self.page.codes()), 4)
        expect(self.page.shown("#page-open-all"), ["Close all codes"])

    def meaning_changed_is_a_filter(self):
        self.page.choose("code-meaning")
        expect(self.page.variables(), ["ROOF"])
        expect(self.page.codes(), ["meaning2"])
        expect(self.page.shown(".code-row .cell"), ["Tiles", "Electricity", "="])
        expect(self.page.found(), "1 of 4 variables")
        self.page.choose("")
        expect(self.page.variables(), ALL)

    def kinds_that_occur_are_in_the_list(self):
        expect(self.browser.run("[...document.getElementById('page-kind').options].map(o => o.text)"),
               ["all", "differs (2)", "values (1)", "absent in a round (1)", "spelling changed (1)",
                "meaning changed (1)"])
        self.page.choose("absent")
        expect(self.page.variables(), ["WALL"])
        expect(self.page.shown(".variable-row .cell")[0], "–")
        self.page.choose("differs")
        expect(self.page.variables(), ["ROOF", "WALL"])

    def search_finds_names_labels_and_codes(self):
        self.page.search("sex")
        expect(self.page.variables(), ["SEX"])
        expect(self.page.codes(), [])
        self.page.search("tiles")
        expect(self.page.variables(), ["ROOF"])
        expect(self.page.codes(), ["meaning2"])
        expect(self.page.shown("mark"), ["Tiles"])
        self.page.search("nowhere")
        expect(self.page.found(), "No variable matches")

    def keys_reach_the_search(self):
        self.browser.press("/")
        self.browser.type("roof")
        self.page.wait()
        expect(self.page.variables(), ["ROOF"])
        self.browser.press("Escape", 27)
        self.page.wait()
        expect(self.page.variables(), ALL)

    def page_fits_a_phone(self):
        self.browser.look(390, 844)
        try:
            expect(self.browser.run("document.documentElement.scrollWidth"), 390)
            expect(self.page.variables(), ALL)
        finally:
            self.browser.look(1280, 900)

    def names_and_rounds_stay_in_view(self):
        self.page.open([dictionary([item("ITEM%d" % i, "Item %d" % i, i) for i in range(1, 301)])] * 5)
        self.browser.look(390, 844)
        try:
            first, head = self.page.box(".variable-row .first"), self.page.box(".head .cell, .head > :nth-child(2)")
            self.browser.run("document.getElementById('page-table').scrollTo(100, 300)")
            self.page.wait()
            expect(self.page.box(".variable-row .first")[0], first[0])
            expect(self.page.box(".head > :nth-child(2)"), [head[0] - 100, head[1]])
        finally:
            self.browser.look(1280, 900)

    def rows_far_away_are_drawn_when_they_come_near(self):
        self.page.open([dictionary([item("ITEM%d" % i, "Item %d" % i, i) for i in range(1, 301)])] * 2)
        self.page.wait()
        drawn = len(self.page.variables())
        if not 0 < drawn < 301:
            raise AssertionError("%d rows are drawn" % drawn)
        for _ in range(10):
            self.browser.run("document.getElementById('page-table').scrollTo(0, 1e6)")
            self.page.wait()
        expect(self.page.variables()[-1], "ITEM300")

    def page_can_be_printed(self):
        expect(self.browser.print()[:5], b"%PDF-")


if __name__ == "__main__":
    sys.exit(chromium.run_tests(Tests, lambda browser, directory: Page(sys.argv[1], browser, directory)))
