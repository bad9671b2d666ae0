#!/usr/bin/env python3
"""Uses the page of `vanlayout diff` in a browser, as a person does.

    diff-browser.py TOOL     ends in 77 where no Chromium runs
"""

import json
import os
import subprocess
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import chromium  # noqa: E402
from chromium import expect  # noqa: E402

HOSTILE = "</main><script>document.title = 'taken'</script><b onclick=x>"


def item(name, label, start, values=()):
    """An item of one column, with its value set."""
    lines = ["", "[Item]", "Label=" + label, "Name=" + name, "Start=%d" % start, "Len=1", "DataType=Numeric"]
    if values:
        lines += ["", "[ValueSet]", "Label=" + name, "Name=" + name + "_VS1"]
        lines += ["Value=%s;%s" % value for value in values]
    return "\n".join(lines) + "\n"


def dictionary(person, house):
    """A dictionary of two records."""
    text = ("[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n"
            "Positions=Absolute\n\n[Level]\nLabel=L\nName=L\n\n[IdItems]\n" + item("ID", "Id", 90))
    for name, kind, items in (("PERSON", 1, person), ("HOUSE", 2, house)):
        text += "\n[Record]\nLabel=%s\nName=%s\nRecordTypeValue='%d'\n" % (name, name, kind) + "".join(items)
    return text


BEFORE = dictionary(
    [item("SEX", "Sex", 5, [("1", "Male"), ("2", "Female")]), item("AGE", "Age", 6), item("GONE", "École", 7)],
    [item("ROOF", "Roof", 5, [("1", "Straw")])])
AFTER = dictionary(
    [item("SEX", "Sex", 5, [("1", "Man"), ("2", "Woman"), ("3", HOSTILE)]), item("YEARS", "Age", 6)],
    [item("ROOF", "Roof of the house", 5, [("1", "Straw")]), item("WALL", HOSTILE, 6)])


class Page:
    """The page of a comparison in a browser."""

    def __init__(self, tool, browser, directory):
        self.tool = tool
        self.browser = browser
        self.directory = directory

    def begin(self):
        self.open(BEFORE, AFTER)

    def open(self, before, after):
        for name, text in (("before.dcf", before), ("after.dcf", after)):
            with open(os.path.join(self.directory, name), "w", encoding="utf-8-sig") as file:
                file.write(text)
        status = subprocess.run([self.tool, "diff", "--format", "html", "-o", "page.html", "before.dcf", "after.dcf"],
                                cwd=self.directory, check=False).returncode
        expect(status, 0 if before == after else 1)
        self.browser.open("file://" + os.path.join(self.directory, "page.html"))

    def shown(self, selector):
        """The texts of the visible elements."""
        return self.browser.run("[...document.querySelectorAll(%s)].filter(e => e.getClientRects().length > 0)"
                                ".map(e => e.textContent.trim())" % json.dumps(selector))

    def headings(self):
        return self.shown("section.record h2")

    def items(self):
        return self.shown(".changed-item h3")

    def search(self, text):
        self.browser.run("(() => { const field = document.getElementById('page-search'); field.value = %s;"
                         "field.dispatchEvent(new Event('input')); })()" % json.dumps(text))

    def choose(self, kind):
        self.browser.run("(() => { const list = document.getElementById('page-kind'); list.value = %s;"
                         "list.dispatchEvent(new Event('change')); })()" % json.dumps(kind))

    def found(self):
        return self.browser.run("document.getElementById('page-found').textContent")


ALL_ITEMS = ["SEX", "AGE → YEARS", "−GONE", "ROOF", "+WALL"]


class Tests:
    """Each test begins with the page in its initial state."""

    def __init__(self, page):
        self.page = page
        self.browser = page.browser

    def everything_is_shown_at_first(self):
        expect(self.page.headings(), ["PERSON", "HOUSE"])
        expect(self.page.items(), ALL_ITEMS)
        expect(self.page.found(), "")

    def texts_of_the_file_stay_texts(self):
        expect(self.browser.run("document.title"), "before.dcf → after.dcf – differences")
        expect(self.page.shown(".changed-item p")[-1], HOSTILE)

    def kinds_are_in_the_list(self):
        expect(self.browser.run("[...document.getElementById('page-kind').options].map(o => o.text)"),
               ["all", "item-added (1)", "item-removed (1)", "item-renamed (1)", "item-label (1)", "value-added (1)",
                "value-label (2)"])

    def kind_narrows_the_list(self):
        self.page.choose("value-label")
        expect(self.page.headings(), ["PERSON"])
        expect(self.page.items(), ["SEX"])
        expect(self.page.shown(".changed-item .code"), ["SEX_VS1", "1", "2"])
        expect(self.page.found(), "2 differences found")
        self.page.choose("item-renamed")
        expect(self.page.items(), ["AGE → YEARS"])
        expect(self.page.found(), "1 difference found")
        self.page.choose("")
        expect(self.page.items(), ALL_ITEMS)

    def heading_of_a_set_needs_one_of_its_lines(self):
        self.page.choose("item-label")
        expect(self.page.items(), ["ROOF"])
        expect(self.page.shown(".of-set"), [])

    def search_finds_names_and_texts(self):
        self.page.search("roof")
        expect(self.page.items(), ["ROOF"])
        self.page.search("woman")
        expect(self.page.items(), ["SEX"])
        expect(self.page.shown("[data-kind] .code"), ["2"])
        self.page.search("ecole")
        expect(self.page.items(), ["−GONE"])
        self.page.search("house wall")
        expect(self.page.items(), ["+WALL"])
        self.page.search("years")
        expect(self.page.items(), ["AGE → YEARS"])
        self.page.search("nowhere")
        expect(self.page.headings(), [])
        expect(self.page.found(), "0 differences found")

    def keys_reach_the_search(self):
        self.browser.press("/")
        self.browser.type("roof")
        expect(self.page.items(), ["ROOF"])
        self.browser.press("Escape", 27)
        expect(self.page.items(), ALL_ITEMS)

    def page_fits_a_phone(self):
        self.browser.look(390, 844)
        try:
            expect(self.browser.run("document.documentElement.scrollWidth"), 390)
            expect(self.page.items(), ALL_ITEMS)
            expect(len(self.page.shown("#page-kind")), 1)
        finally:
            self.browser.look(1280, 900)

    def page_can_be_printed(self):
        expect(self.browser.print()[:5], b"%PDF-")

    def same_layouts_have_no_search(self):
        self.page.open(BEFORE, BEFORE)
        expect(self.page.headings(), [])
        expect(self.page.shown("#page-bar"), [])
        expect(self.page.shown(".counts li"), ["The layouts are the same"])


if __name__ == "__main__":
    sys.exit(chromium.run_tests(Tests, lambda browser, directory: Page(sys.argv[1], browser, directory)))
