#!/usr/bin/env python3
"""Uses the page of `vanlayout codebook` in a browser, as a person does.

    codebook-browser.py TOOL EXAMPLES MADE_DATA          the tests; ends in 77 where no Chromium runs
    codebook-browser.py TOOL EXAMPLES --screenshot PNG   a picture of the codebook of census.dcf, 1200 pixels wide

MADE_DATA is the folder of the Stata and SPSS files that are made for the tests.
"""

import json
import os
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
"""


def item(name, label, start, length, value_labels=(), kind="Numeric"):
    """An item of a dictionary, with its value set."""
    lines = ["", "[Item]", "Label=" + label, "Name=" + name, "Start=%d" % start, "Len=%d" % length,
             "DataType=" + kind]
    if value_labels:
        lines += ["", "[ValueSet]", "Label=V", "Name=" + name + "_VS"]
        lines += ["Value=%s;%s" % value for value in value_labels]
    return "\n".join(lines) + "\n"


def records(count):
    """A dictionary of so many records of one item each."""
    return "[Dictionary]\nName=D\nRecordTypeStart=1\nRecordTypeLen=5\n\n" + "".join(
        "[Record]\nName=REC%05d\nRecordTypeValue='%05d'\n\n" % (i, i) + item("V%05d" % i, "Question", 6, 2)
        for i in range(count))


def expect(value, expected):
    if value != expected:
        raise AssertionError("%r, not %r" % (value, expected))


class Codebook:
    """Pages that the tool writes, in a browser."""

    def __init__(self, tool, examples, browser, folder):
        self.tool = tool
        self.examples = examples
        self.browser = browser
        self.folder = folder

    def open(self, file, fragment=""):
        page = os.path.join(self.folder, "page.html")
        subprocess.run([self.tool, "codebook", file, "-o", page], check=True)
        self.browser.open("about:blank")
        self.browser.open("file://" + page + fragment)
        self.browser.wait_for("document.querySelector('article.variable') !== null")

    def open_example(self, name="census.dcf", fragment=""):
        self.open(os.path.join(self.examples, name), fragment)

    def open_made(self, text, fragment=""):
        file = os.path.join(self.folder, "made.dcf")
        with open(file, "w", encoding="utf-8") as out:
            out.write(text)
        self.open(file, fragment)

    # what a person sees
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
        """The name of the variable that was gone to and can be seen."""
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
        expect(self.book.found(), "63 variables")
        self.book.search("dwelling")
        self.book.wait_for_found("2 of 63 variables")  # one by its name, one by a value label
        expect(self.book.names(), ["H01_DWELLING", "H08_WATER"])
        expect(self.browser.run("document.querySelector('.found').innerText"), "11 Piped into the dwelling")

    def search_goes_by_name_label_and_value_label(self):
        self.book.open_example()
        for text, names in (("p06_age", ["P06_AGE"]), ("MARITAL status", ["P07_MARITAL"]),
                            ("fishers nets", []), ("fishers net", ["P16_OCCUPATION"])):
            self.book.search(text)
            self.book.wait_for_found("%d of 63 variables" % len(names) if names else "No variable matches")
            expect(self.book.names(), names)

    def escape_brings_back_every_variable(self):
        self.book.open_example()
        self.browser.press("/")
        expect(self.browser.run("document.activeElement.id"), "page-search")
        self.browser.type("roof")
        self.book.wait_for_found("1 of 63 variables")
        self.browser.press("Escape", 27)
        self.book.wait_for_found("63 variables")

    def only_variables_with_notes_can_be_shown(self):
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1, [("1", "x")]) + item("B", "Two", 2, 1, [("1", "x"), ("1", "y")]))
        expect(self.book.names(), ["A", "B"])
        self.browser.click("document.getElementById('page-noted')")
        self.book.wait_for_found("1 of 2 variables")
        expect(self.book.names(), ["B"])

    # ------------------------------------------------------------------------------------ opening a variable
    def click_opens_and_closes_a_variable(self):
        self.book.open_example()
        expect(self.book.details("DISTRICT"), None)
        self.browser.click(self.book.button("DISTRICT"))
        details = self.book.details("DISTRICT")
        for text in ("integer", "Start\n4", "Length\n2", "Minimum\n1", "Maximum\n21", "Rural districts", "Capital"):
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

    def fragment_opens_a_variable(self):
        self.book.open_example(fragment="#P20_CHILDREN_BORN")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.book.current(), "P20_CHILDREN_BORN")
        if "Not applicable\n98" not in self.book.details("P20_CHILDREN_BORN"):
            raise AssertionError(self.book.details("P20_CHILDREN_BORN"))
        self.browser.run("location.hash = '#EA'")
        self.browser.wait_for("document.querySelector('article.current').dataset.index === '2'")
        expect(self.book.current(), "EA")

    def further_variable_of_a_name_has_its_own_fragment(self):
        self.book.open_made(DICTIONARY + item("A", "First", 1, 1) + item("A", "Second", 2, 1), "#A~2")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        expect(self.browser.run("document.querySelector('article.current .label').textContent"), "Second")

    def variable_can_have_a_name_of_the_page(self):
        names = ["notes", "search", "lost", "page-notes", "page-lost"]
        text = DICTIONARY + item("FIRST", "First", 1, 1)
        text += "".join(item("FILL%d" % i, "Filler", 2 + i, 1) for i in range(60))
        text += "".join(item(name, "Label of " + name, 70 + i, 1, [("1", "x"), ("1", "y")])
                        for i, name in enumerate(names))
        for name in names:
            self.book.open_made(text, "#" + ("~" if name.startswith("page-") else "") + name)
            self.browser.wait_for("document.querySelector('article.current') !== null")
            self.browser.wait_for("document.readyState === 'complete'")
            self.browser.run("new Promise(done => setTimeout(done, 100))")
            expect(self.book.current(), name)

    def fragment_of_no_variable_opens_nothing(self):
        self.book.open_example(fragment="#%E0%A4%A")
        expect(self.book.current(), None)
        self.book.open_made(DICTIONARY + item("A", "One", 1, 1), "#page-lost")  # there is no note
        expect(self.book.current(), None)
        self.book.open_example(fragment="#constructor")
        expect(self.book.current(), None)

    # ----------------------------------------------------------------------------------------------- notes
    def note_leads_to_its_variable(self):
        self.book.open_example()
        self.browser.click("document.querySelector('header a[href=\"#page-lost\"]')")
        self.browser.wait_for("document.getElementById('page-lost').open")
        self.browser.click("document.querySelector('#page-lost .kind:has(.sentence) summary')")
        kind = "document.querySelector('#page-lost .kind')"
        self.browser.wait_for(kind + ".querySelector('.places a') !== null")
        expect(self.browser.run(kind + ".querySelector('.id').textContent"), "decimals-lost")
        sentence = self.browser.run(kind + ".querySelector('.sentence').textContent")
        name = self.browser.run(kind + ".querySelector('.places a').textContent")
        self.browser.click(kind + ".querySelector('.places a')")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        self.browser.run("new Promise(requestAnimationFrame)")
        expect(self.book.current(), name)
        beside = self.browser.run("document.querySelector('article.current .notes-beside').innerText")
        for part in (sentence, "lost", "decimals-lost"):
            if part not in beside:
                raise AssertionError("%r is not in %r" % (part, beside))

    def every_note_is_listed_under_its_gravity(self):
        self.book.open_example()
        for gravity in ("lost", "changed", "curious"):
            count = self.browser.run("Number(document.querySelector('header a[href=\"#page-%s\"] b')?.textContent ?? 0)"
                                     % gravity)
            self.browser.run("document.querySelectorAll('#page-%s .kind').forEach(e => e.open = true)" % gravity)
            self.browser.wait_for("[...document.querySelectorAll('#page-%s .kind')].every(e => e.childElementCount > 1)"
                                  % gravity)
            while self.browser.run("(() => { const more = document.querySelector('#page-%s .more:not([hidden])'); "
                                   "more?.click(); return more !== null; })()" % gravity):
                pass
            expect(self.browser.run("document.querySelectorAll('#page-%s .places li').length" % gravity), count)

    def note_without_a_variable_is_of_none(self):
        # One variable has no name, and the key that is not read belongs to the dictionary.
        self.book.open_made(DICTIONARY.replace("Name=D\n", "Name=D\nColour=red\n") + item("", "First", 1, 1)
                            + item("A", "One", 2, 1))
        self.browser.run("document.querySelectorAll('#page-notes details').forEach(e => e.open = true)")
        place = "[...document.querySelectorAll('.kind')].find(e => e.querySelector('.id').textContent === " \
                "'unknown-key')?.querySelector('.places li')"
        self.browser.wait_for("(%s ?? null) !== null" % place)
        expect(self.browser.run(place + ".querySelector('a')"), None)
        expect(self.browser.run(place + ".textContent.includes('no name')"), False)
        expect(self.browser.run("document.querySelectorAll('article .badges .gravity').length"), 0)

    def note_of_a_name_that_comes_twice_says_so(self):
        text = DICTIONARY + item("A", "First", 1, 1) + item("A", "Second", 2, 1, [("1", "x"), ("1", "y")]) \
            + item("B", "Third", 3, 1, [("1", "x"), ("1", "y")])
        self.book.open_made(text, "#A~2")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        said = "of a variable of this name"
        expect(self.browser.run("[...document.querySelectorAll('article.variable')].map(e => e.querySelector('.badges')"
                                ".textContent.includes('%s'))" % said), [True, True, False])
        expect(self.browser.run("document.querySelector('article.current .notes-beside').firstChild.textContent"),
               "Several variables have this name; each note is %s." % said)
        self.browser.click(self.book.button("B"))
        expect(said in self.book.details("B"), False)
        self.browser.run("document.querySelectorAll('#page-notes details').forEach(e => e.open = true)")
        places = "[...document.querySelectorAll('.places li')]"
        self.browser.wait_for(places + ".length > 2")
        for name, is_said in (("A", True), ("B", False)):
            of_name = "%s.filter(e => e.querySelector('a').textContent === '%s')" % (places, name)
            expect(self.browser.run(of_name + ".length > 0"), True)
            expect(self.browser.run(of_name + ".every(e => e.textContent.includes('%s') === %s)"
                                    % (said, json.dumps(is_said))), True)

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

    def variables_on_the_same_columns_stand_below_each_other(self):
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

    def ruler_is_one_stop_and_arrows_move_in_it(self):
        self.book.open_example()
        stops = "[...document.querySelectorAll('#page-group-0 .block')].filter(e => e.tabIndex === 0).length"
        self.browser.wait_for("document.querySelectorAll('#page-group-0 .block').length === 4")
        expect(self.browser.run(stops), 1)
        self.browser.run("document.querySelector('#page-group-0 .block[tabindex=\"0\"]').focus()")
        self.browser.press("ArrowRight", 39)
        expect(self.browser.run("document.activeElement.getAttribute('aria-label')"), "DISTRICT, columns 4–5")
        expect(self.browser.run(stops), 1)

    def only_record_has_its_variables(self):
        self.book.open_made(DICTIONARY.replace("[IdItems]\n", "[Record]\nName=ONE\nRecordTypeValue=\n")
                            + item("A", "One", 1, 1) + item("B", "Two", 2, 1))
        expect(self.browser.run("[...document.querySelectorAll('section.record > header')].map(e => "
                                "[...e.children].map(child => child.textContent))"), [["ONE", "2 variables"]])
        expect(self.browser.run("document.getElementById('page-groups').hidden"), True)
        expect(self.browser.run("document.querySelectorAll('.ruler').length"), 1)

    def width_in_characters_stands_where_one_is_meant(self):
        widths = "[...document.querySelectorAll('article .columns')].map(e => e.textContent)"
        self.book.open_made(DICTIONARY + item("PLACED", "One", 1, 3) + item("WIDE", "Two", 0, 3)
                            + item("ODD", "Three", 0, -2))
        expect(self.browser.run(widths), ["1–3", "3 characters", ""])
        for name in ("types.sav", "types-118.dta"):
            self.book.open(os.path.join(self.made_data, name))
            expect(self.browser.run("%s.filter(text => text !== '')" % widths), [])

    def layout_without_positions_has_no_ruler(self):
        self.book.open(os.path.join(self.made_data, "types-118.dta"))
        expect(self.browser.run("document.querySelectorAll('.ruler').length"), 0)

    # ----------------------------------------------------------------------------------------------- texts
    def label_with_script_shows_as_text(self):
        attack = "<script>window.attacked = 1</script><img src=x onerror=\"window.attacked = 1\">"
        self.book.open_made(DICTIONARY + item("ODD", attack, 1, 1, [("1", attack)]), "#ODD")
        self.browser.wait_for("document.querySelector('article.current') !== null")
        # The reader takes a value with a second "=" as empty: the label is left in the value label alone.
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
        self.book.open_example("occurrences.dcf")
        expect(self.book.names()[1], "BARLEY_\\u0001")
        expect(self.browser.run("document.body.innerText.includes('\\u0001')"), False)
        self.browser.click(self.book.button("BARLEY_\\u0001"))
        expect(self.browser.run("decodeURIComponent(location.hash)"), "#BARLEY_\\u0001")

    def half_of_a_surrogate_pair_shows_as_an_escape(self):
        text = (DICTIONARY + item("HALF", "a\ud83db", 1, 1)).encode("utf-16-le", "surrogatepass")
        file = os.path.join(self.book.folder, "half.dcf")
        with open(file, "wb") as out:
            out.write(b"\xff\xfe" + text)
        self.book.open(file)
        expect(self.browser.run("document.querySelector('.variable .label').textContent"), "a\\ud83db")

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
        # The browser takes the page as it is when the event has been handled.
        variables, closed, undrawn = self.browser.run(
            "(() => { dispatchEvent(new Event('beforeprint')); const count = what => "
            "document.querySelectorAll(what).length; return [count('article .details'), count('details:not([open])'), "
            "count('.kind:not(:has(.places li))')]; })()")
        expect((variables, closed, undrawn), (63, 0, 0))
        self.browser.run("dispatchEvent(new Event('afterprint'))")
        expect(self.browser.run("document.querySelectorAll('article .details').length"), 0)
        if not self.browser.print().startswith(b"%PDF"):
            raise AssertionError("no PDF")

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
            page = os.path.join(self.book.folder, "page.html")
            subprocess.run([self.book.tool, "codebook", os.path.join(self.book.examples, "census.dcf"), "-o", page],
                           check=True)
            self.browser.open("about:blank")
            self.browser.open("file://" + page)
            text = self.browser.run("document.body.innerText")
            for part in ("census.dcf", "63 variables", "JavaScript"):
                if part not in text:
                    raise AssertionError("%r is not in %r" % (part, text))
        finally:
            self.browser.call("Emulation.setScriptExecutionDisabled", value=False)


def run_tests(book, made_data):
    tests = Tests(book, made_data)
    failures = 0
    for name in [name for name in vars(Tests) if not name.startswith("_")]:
        try:
            getattr(tests, name)()
            expect(book.browser.complaints(), [])
            print("PASS  ", name)
        except Exception as failure:  # the other tests go on
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
        with tempfile.TemporaryDirectory() as folder, chromium.Browser(program) as browser:
            browser.look(1200, 900)
            book = Codebook(tool, examples, browser, folder)
            if rest[0] == "--screenshot":
                return take_screenshot(book, rest[1])
            return run_tests(book, rest[0])
    except chromium.NotStarted as error:
        print(program, "does not run here:", error)
        return SKIPPED


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
