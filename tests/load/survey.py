#!/usr/bin/env python3
"""Makes the generated survey that all load programs are tested with: dictionaries and data files, from a seed.

    survey.py DIRECTORY [SEED]             all variants: DIRECTORY/VARIANT.dcf and DIRECTORY/VARIANT.dat
    survey.py --census FILE LINES       FILE.dcf, and FILE.dat with that many lines of 120 characters, for figures

As a module:

    variants(directory, seed=1, cases=40)  makes all files; a list of Variant. Several variants share one pair of files.
    variant(directory, name, ...)          the one with this name
    long_codes(directory)                  one with codes that are next to others, of more digits than a double holds
    broken(path, variant, line, bytes)  a copy of the data with these bytes at the end of a line, from 1; returns the path
    census(path, lines)                 as --census; returns the paths of the dictionary and of the data

A Variant has
    name         "mixed", "keep" ...: see SETTINGS and OPTIONS below
    dictionary   path of the dictionary
    data         path of the data
    options      arguments for `vanlayout load`, such as ["--specials", "keep"]
    characters   "ascii", "latin" or "full": what the data hold. "latin" is in windows-1252, "full" in UTF-8 with
                 characters beyond U+FFFF.
    controls     whether the data hold control characters, and tabs in numbers

Values are made so that each rule of reading occurs: numbers in every legal and illegal form, blanks, specials, short
lines, both line ends in one file, a byte-order mark, lines of no record type, blank lines, erased lines, lines that
have a meaning for some engine (`\\.`, `\\N`), ids that are equal as numbers and not as texts, cases that come twice.
"""

import json
import os
import random
import sys
from collections import namedtuple

Variant = namedtuple("Variant", "name dictionary data options characters controls")

# Files: what the data hold, and how lines are marked.
Setting = namedtuple("Setting", "characters controls type_columns one_record byte_order_mark crlf")
SETTINGS = {
    "full": Setting("full", True, (1, 2), False, True, "mixed"),
    "ascii": Setting("ascii", False, (1, 2), False, False, "lf"),
    "latin": Setting("latin", False, (1, 2), False, True, "crlf"),
    "inside": Setting("ascii", False, (3, 2), False, True, "mixed"),
    "plain": Setting("full", True, None, True, True, "mixed"),
    "plain-ascii": Setting("ascii", False, None, True, False, "lf"),
    "empty": Setting("ascii", False, (1, 2), False, False, "lf"),
}

# Variants: name, files, arguments of `vanlayout load`.
OPTIONS = [
    ("mixed", "full", []),
    ("keep", "full", ["--specials", "keep"]),
    ("long", "full", ["--occurrences", "long"]),
    ("records", "full", ["--records", "PERSON,CODES", "--language", "FR"]),
    ("ascii", "ascii", []),
    ("ascii-keep", "ascii", ["--specials", "keep", "--language", "fr"]),
    ("ascii-long", "ascii", ["--occurrences", "long"]),
    ("windows-1252", "latin", ["--encoding", "windows-1252"]),
    ("inside", "inside", ["--occurrences", "long", "--specials", "keep"]),
    ("plain", "plain", []),
    ("plain-long", "plain", ["--occurrences", "long"]),
    ("plain-ascii", "plain-ascii", []),
    ("empty", "empty", []),
]


class Item:
    """An item or subitem. `start` is that of the first occurrence, from 1."""

    def __init__(self, name, length, label=None, kind="numeric", decimals=0, mark=False, times=1, parts=(), offset=0,
                 values=None, times_labels=None, zero=False, more_values=None):
        self.name = name
        self.length = length
        self.label = label
        self.kind = kind
        self.decimals = decimals
        self.mark = mark
        self.times = times
        self.parts = list(parts)
        self.offset = offset
        self.values = values
        self.more_values = more_values
        self.times_labels = times_labels or {}
        self.zero = zero
        self.start = 0


class Record:
    def __init__(self, name, mark, maximum, level, items, label):
        self.name = name
        self.mark = mark
        self.maximum = maximum
        self.level = level
        self.items = items
        self.label = label


def value(label, *codes, special=None):
    """A value; a code is a text, or a pair of texts for a range; a label is a text, or a pair for two languages."""
    return {"label": label, "codes": codes, "special": special}


# ------------------------------------------------------------------------------------------------- the dictionary

LONG_LABEL = ("How many hours did you usually spend on the main activity during the seven days before the interview, "
              "not counting the way to work, breaks of more than one hour, and days on which you were ill; écrire en "
              "chiffres, s'il vous plaît, et ne laissez pas de blancs: " + "ä" * 120)

YES_NO = [value(("Yes", "Oui"), "1"), value(("No", "Non"), "2"),
          value(("Not stated", "Non déclaré"), "9", special="MISSING"),
          value(("Refused", "Refus"), "8", special="REFUSED"),
          value(("Not asked", "Sans objet"), "", special="NOTAPPL")]


def level_ids():
    """The ids of the two levels."""
    return [
        [Item("PROVINCE", 2, ("Province", "Province"),
              values=[value(("North \"Upper\"", "Nord 'Haut'"), "1"), value("South", "2"), value("East; west", "3:9"),
                      value("Unknown", "99", special="MISSING"), value("Refused", "98", special="REFUSED")]),
         Item("CLUSTER", 3, ("Cluster", "Grappe"), zero=True)],
        [Item("LINE", 2, ("Line number", "Numéro d'ordre")),
         Item("PART", 2, "Part", kind="alpha", values=[value("Unknown", "99", special="MISSING"), value("First", "1")]),
         Item("SHARE", 3, "Share", decimals=1, values=[value("Unknown", "9.9", special="REFUSED")])],
    ]


def many_codes():
    """More than 100 codes with a label, a range that is short and one that is long."""
    values = [value(f"Commune {code}", str(code)) for code in range(300, 440)]
    return values + [value("Small", ("1", "40")), value("Large", ("500", "899")), value("Upside down", ("50", "45")),
                     value("Not given", ("990", "994"), "999", special="MISSING"),
                     value("Also in the range", "510", special="NOTAPPL")]


def house_items():
    return [
        Item("OCC", 2, ("Occupation", "Profession"), values=[value("Farmer", "61"), value("Default", "0", special="DEFAULT")]),
        Item("WALLS", 1, ("Outer walls", "Murs"), values=[
            value(("Brick", "Brique"), "1"), value(("Wood", ""), "2"), value("Same code again", "2"),
            value("", "3"), value(("Other, see note: 'x' \"y\" `z' $w %s &amp; \\n", "Autre"), "4", "5"),
            value("Missing 1", "6", special="MISSING"), value("Missing 2", "7", special="MISSING"),
            value("Refused 1", "8", special="REFUSED"), value("Refused 2", "9", special="REFUSED"),
            value("Default", "0", special="DEFAULT")],
            more_values=[value("Second list", "1")]),
        Item("RENT", 9, ("Monthly rent", "Loyer mensuel"), decimals=2, values=[
            value("Free", "0"), value("Some", ("0.01", "5000")), value("Unknown", "99999.98", special="MISSING"),
            value("Refused", "99999.99", special="REFUSED"), value("Owner", "88888.8", special="NOTAPPL")]),
        Item("PRICE", 10, ("Price", "Prix"), decimals=3, mark=True,
             values=[value("Not known", "9999,9", special="MISSING"), value("Cheap", "1.50")]),
        Item("TEMPERATURE", 5, "Temperature", decimals=1, values=[value("Frozen", ("-50.0", "-0.1")),
                                                                  value("Unread", "-99.9", special="MISSING")]),
        Item("BALANCE", 6, LONG_LABEL, values=[value("Debt", ("-99", "-1")), value(LONG_LABEL, "0"),
                                              value("?", "-999", special="REFUSED")]),
        Item("WEIGHT", 14, "Weight", decimals=12, mark=True),
        Item("RATE", 7, "Rate, whose mark can be a digit of its subitem", decimals=2, mark=True,
             parts=[Item("RATE_END", 3, "End of the rate", offset=4)]),
        Item("TINY", 3, "More decimals than digits", decimals=25),
        Item("PHOTO", 4, "Photo", kind="image", times=2),
        Item("BIG10", 10, "Ten digits"),
        Item("BIG18", 18, "Eighteen digits", values=[
            value("No whole number", "6771240.50095590505099590590005559", special="NOTAPPL"),
            value("Two to four", ("1.5", "4.5"), special="MISSING"), value("Minus two to minus four", ("-4.5", "-1.5"), special="NOTAPPL"),
            value("Five to nine", ("4.9", "9"), special="DEFAULT")]),
        Item("BIG20", 20, "Twenty digits", values=[value("All", "99999999999999999999", special="MISSING")]),
        Item("BIGDEC", 20, "Twenty digits, four of them decimals", decimals=4),
        Item("MANY", 3, "Many codes", values=many_codes()),
        Item("NAME", 20, ("Name of the head", "Nom du chef"), kind="alpha"),
        Item("LETTER", 3, "Letters", kind="alpha", values=[
            value("A", "A"), value("Blank before", " A"), value("It's \"quoted\"", "'\""), value("Missing", "ZZZ", special="MISSING"),
            value("Refused", "YY", special="REFUSED"), value("Not applicable", "XX", special="NOTAPPL"),
            value("Blank", "", special="NOTAPPL"), value("Default", "D", special="DEFAULT")]),
        Item("INTERVIEW", 8, "Date of the interview", parts=[
            Item("YEAR", 4, "Year", offset=0, values=[value("Unknown", "9999", special="MISSING")]),
            Item("MONTH", 2, "Month", offset=4), Item("DAY", 2, None, offset=6)]),
        Item("ASSET", 1, ("Asset", "Bien"), times=12, values=YES_NO,
             times_labels={1: ("Radio", "Radio FM"), 3: ("Bicycle\nor scooter", "")}),
        Item("CROP", 8, ("Crop", "Culture"), kind="alpha", times=3, parts=[
            Item("CROP_CODE", 2, "Code of the crop", offset=0), Item("CROP_AREA", 4, "Area", decimals=2, offset=2,
                                                                     values=[value("Large", "99.99", special="REFUSED")]),
            Item("CROP_UNIT", 2, "Unit", kind="alpha", offset=6)]),
        Item("TRIP", 6, ("Trip", "Trajet"), times=2, times_labels={2: ("Way back", "Retour")}, parts=[
            Item("STAGE", 2, ("Stage", "Étape"), times=3, offset=0, times_labels={1: ("First", "Première"), 3: ("Last", "")},
                 values=[value("Unknown", "99", special="MISSING")])]),
        Item("CARD", 12, "Card", kind="alpha", parts=[Item("GROUP", 3, "Group of digits", times=4, offset=0, values=[
            value("None", "000"), value("Unread", "999", special="MISSING")])]),
    ]


def person_items():
    return [
        Item("OCC", 2, "Occupation"),
        Item("occ_2", 1, "A name that is taken", kind="alpha"),
        Item("ITEM_OCC", 1, "Another", times=2),
        Item("AGE", 3, ("Age", "Âge"), values=[value("Years", ("0", "120")), value("Unknown", ("990", "995"), special="MISSING"),
                                              value("Refused", "996", "997", special="REFUSED"),
                                              value("Blank", "", special="NOTAPPL")]),
        Item("SELECT", 1, "Reserved in SQL", values=YES_NO), Item("CTID", 1), Item("XMIN", 1, kind="alpha"),
        Item("WITH", 1), Item("ALL", 1), Item("INT", 1), Item("IF", 1), Item("IN", 1), Item("USING", 1), Item("ROWID", 1),
        Item("_N", 1), Item("_N_", 1), Item("STR8", 1), Item("_ALL_", 1), Item("DOUBLE", 1, kind="alpha"),
        Item("FOR", 1), Item("CLASS", 1), Item("NULL", 1, kind="alpha"), Item("LINE_2", 1),
        Item("A_NAME_OF_MORE_THAN_THIRTY_TWO_BYTES", 2), Item("A_NAME_OF_MORE_THAN_THIRTY_TWO_BYTES_TOO", 2),
        Item("A_NAME_OF_MORE_THAN_SIXTY_FOUR_BYTES_THAT_NO_STATISTICAL_PROGRAM_TAKES_AS_IT_IS", 2),
        Item("A_NAME_OF_MORE_THAN_SIXTY_FOUR_BYTES_THAT_NO_STATISTICAL_PROGRAM_TAKES_EITHER", 2, kind="alpha"),
        Item("REMARK", 30, "Remark", kind="alpha"),
    ]


def records():
    return [
        Record("HOUSE", "HH", 1, 0, house_items(), ("House", "Maison")),
        Record("ROOM", "R", 20, 0, [Item("WIDTH", 4, "Width", decimals=2), Item("USE", 8, "Use", kind="alpha"),
                                    Item("DOOR", 2, "Door", times=10, values=YES_NO)], "Room -- '); \"x\""),
        Record("PERSON", "P", 30, 1, person_items(), ("Person", "Personne")),
        Record("CODES", "C", 1, 1, [Item("CODE", 4, "Code"), Item("TEXT", 10, None, kind="alpha")], "Codes"),
        Record("SQLITE_STAT1", "Q", 1, 1, [Item("FLAG", 1, "Flag", values=YES_NO)], None),
        Record("ERASED", "~E", 1, 0, [Item("FLAG", 1, "Flag")], "Its lines are erased ones"),
        Record("NONE", "HHH", 1, 0, [Item("FLAG", 1, "Flag")], "Its type is longer than the columns of the type"),
    ]


def labels(label):
    if label is None:
        return [{"text": ""}]
    if isinstance(label, str):
        return [{"text": label}]
    return [{"text": text, "language": language} for text, language in zip(label, ("EN", "FR"))]


def pair_element(code):
    return {"range": list(code)} if isinstance(code, tuple) else {"value": code}


def value_element(entry):
    element = {"labels": labels(entry["label"])}
    if entry["special"]:
        element["special"] = entry["special"]
    return element | {"pairs": [pair_element(code) for code in entry["codes"]]}


def value_set_elements(item):
    sets = [values for values in (item.values, item.more_values) if values]
    return [{"name": f"{item.name}_VS{number}", "labels": labels(item.label), "values": [value_element(v) for v in values]}
            for number, values in enumerate(sets, 1)]


def occurrences_element(item):
    named = [{"occurrence": k, "labels": labels(label)} for k, label in sorted(item.times_labels.items())]
    return {"maximum": item.times} | ({"labels": named} if named else {})


def item_element(item, is_part=False):
    element = {"name": item.name, "labels": labels(item.label)}
    if item.times > 1:
        element["occurrences"] = occurrences_element(item)
    element["contentType"] = item.kind
    if is_part:
        element |= {"subitem": True}
    element |= {"start": item.start, "length": item.length}
    if item.decimals:
        element |= {"decimals": item.decimals, "decimalMark": item.mark}
    if item.kind == "numeric":
        element["zeroFill"] = item.zero
    sets = value_set_elements(item)
    return element | ({"valueSets": sets} if sets else {})


def item_elements(items):
    elements = []
    for item in items:
        elements.append(item_element(item))
        elements += [item_element(part, True) for part in item.parts]
    return elements


def record_element(record, has_types):
    element = {"name": record.name, "labels": labels(record.label)}
    if has_types:
        element["recordType"] = record.mark
    return element | {"occurrences": {"required": False, "maximum": record.maximum}, "items": item_elements(record.items)}


class Survey:
    """The dictionary: ids by level, records, and their columns."""

    def __init__(self, setting):
        self.type_columns = setting.type_columns
        if setting.one_record:
            self.ids = level_ids()[:1]
            self.records = [Record("PERSON", "", 9, 0, house_items(), ("House", "Maison"))]
        else:
            self.ids = level_ids()
            self.records = records()
        self.place()

    def place(self):
        """Gives each item its start: ids and record type first, then the items of the record."""
        column = 1
        ends = []
        for ids in self.ids:
            for item in ids:
                column = self.after_type(column)
                item.start = column
                column += item.length
            ends.append(self.after_type(column))
        for record in self.records:
            self.place_items(record.items, ends[record.level])

    def after_type(self, column):
        if self.type_columns and column == self.type_columns[0]:
            return column + self.type_columns[1]
        return column

    @staticmethod
    def place_items(items, column):
        for item in items:
            item.start = column
            for part in item.parts:
                part.start = column + part.offset
            column += item.length * item.times

    def element(self):
        """The dictionary in the form of CSPro 8."""
        element = {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "SURVEY_DICT",
                   "languages": [{"name": "EN", "label": "English"}, {"name": "FR", "label": "Français"}],
                   "labels": labels(("Survey of households", "Enquête auprès des ménages"))}
        start, length = self.type_columns or (0, 0)
        element |= {"recordType": {"start": start, "length": length}, "defaults": {"decimalMark": False, "zeroFill": False},
                    "relativePositions": False}
        return element | {"levels": [self.level_element(number) for number in range(len(self.ids))]}

    def level_element(self, number):
        return {"name": f"LEVEL_{number + 1}", "labels": labels(f"Level {number + 1}"),
                "ids": {"items": item_elements(self.ids[number])},
                "records": [record_element(record, bool(self.type_columns)) for record in self.records if
                            record.level == number]}


# ------------------------------------------------------------------------------------------------------- the data

NO_NUMBERS = ["1E2", "0x1A", "1_0", "Inf", "NaN", "inf", "nan", "1d2", "5-", "- 5", ".", ",", "+", "-", "12ab", "--5", "1 2",
              "NA", ".m", "TRUE", "'", '"', "1;", "1'", '"1"', "\\N", "x", "1..2", "1.2.3", "-.", "+,", "1e", "1/2", "$1",
              "1%", "0b1", "1L", "1f", "0o7", "#", "NULL", "1,2,3", "1-1", "=", "=5", "==5", "= 5"]
NO_INTEGERS = ["1.0", "1,", "2.5", ",5", "0.", "-1,0"]
NO_NUMBERS_LATIN = ["\u00a05", "5\u00a0", "²", "½", "5é"]
NO_NUMBERS_FULL = ["\u0663", "\u2003" + "1", "１", "−5", "𝟙", "\u200b7", "\ufeff1"]
NO_NUMBERS_CONTROL = ["\t1", "1\t", "\t", "\x0b1", "1\x0c", "\x01"]

WORDS = ["Anna", "O'Neill", '"Bob"', "a\\b", "x|y", "back\\", "''", '""', "$HOME", "`ls`", "%d", "&amp;", ";", "--", "/*", "*/",
         "{}", "#", "NA", "NULL", "\\N", "\\.", "1", "007", "null", "%(s)s", "C:\\new", "a,b", "a;b", "<b>", "~", "@x"]
WORDS_LATIN = ["Zoë", "Müller", "naïve", "\u00a0", "Œuvre", "€5", "ÿ", "ñ", "\u0081", "\u008d", "\u009d", "ß"]
WORDS_FULL = ["Ünal", "日本", "العربية", "😀", "𝟙𝟚", "e\u0301", "\u2028", "\u0085", "\ufeff", "\U0010ffff", "Ω", "👩‍🌾"]
WORDS_CONTROL = ["\t", "a\tb", "\x01", "\x02", "\x0b", "\x0c", "\x07", "\x1b[0m", "\x7f", "\x08"]


class Data:
    """The lines of one data file."""

    def __init__(self, survey, setting, seed):
        self.survey = survey
        self.setting = setting
        self.random = random.Random(seed)
        self.no_numbers = NO_NUMBERS + self.by_characters(NO_NUMBERS_LATIN, NO_NUMBERS_FULL, NO_NUMBERS_CONTROL)
        self.words = WORDS + self.by_characters(WORDS_LATIN, WORDS_FULL, WORDS_CONTROL)

    def by_characters(self, latin, full, control):
        more = [] if self.setting.characters == "ascii" else latin
        more = more + full if self.setting.characters == "full" else more
        return more + control if self.setting.controls else more

    def chance(self, percent):
        return self.random.random() * 100 < percent

    # --- one field

    def field(self, item):
        text = self.number(item) if item.kind == "numeric" else self.text(item)
        return text.ljust(item.length)

    def number(self, item):
        drawn = self.random.random()
        if drawn < 0.10:
            return ""
        if drawn < 0.25 and item.values:
            return self.coded(item)
        if drawn < 0.35:
            return self.no_number(item)
        return self.padded(item, self.written(item))

    def coded(self, item):
        """One of the codes of the item, as data hold it."""
        code = self.random.choice([code for entry in item.values for code in entry["codes"]])
        code = self.random.choice(code) if isinstance(code, tuple) else code
        whole, _, decimals = code.replace(",", ".").partition(".")
        if code and item.decimals and not (item.mark and self.chance(60)):
            code = (whole + decimals.ljust(item.decimals, "0")).replace("-0", "-")
        return code.rjust(item.length) if len(code) <= item.length else ""

    def no_number(self, item):
        texts = self.no_numbers + ([] if item.decimals else NO_INTEGERS)
        texts = [text for text in texts if len(text) <= item.length]
        if item.decimals:
            texts = [text for text in texts if text != "1,"]
        return self.padded(item, self.random.choice(texts), False)

    def digits(self, count):
        return "".join(self.random.choice("0123456789") for _ in range(count))

    def written(self, item):
        """A number: digits without a mark, or with one where the item has decimals."""
        if item.length > 1 and self.chance(2):
            return "-" + "0" * self.random.randint(1, item.length - 1)
        sign = self.random.choice(["", "", "", "", "-", "+"]) if item.length > 1 else ""
        space = item.length - len(sign)
        if not item.decimals or not self.chance(70 if item.mark else 10) or space < 2:
            return sign + self.digits(self.random.randint(1, space))
        count = self.random.randint(1, space - 1)
        before = self.random.randint(0, count)
        return sign + self.digits(before) + self.random.choice(".,") + self.digits(count - before)

    def padded(self, item, text, zeros=True):
        way = self.random.randrange(4)
        if way == 0:
            return text.rjust(item.length)
        if way == 1 and zeros and text[0] not in "+-":
            return text.rjust(item.length, "0")
        if way == 2:
            return text.center(item.length)
        return text

    def text(self, item):
        if self.chance(15):
            return ""
        if item.values and self.chance(60):
            return self.random.choice(self.random.choice(item.values)["codes"])[:item.length]
        words = [self.random.choice(self.words) for _ in range(self.random.randint(1, 4))]
        return (self.random.choice(["", "", " "]) + " ".join(words))[:item.length]

    # --- one line

    def line(self, record, ids):
        """A line of a record. `ids` are the texts of the ids of its levels."""
        cells = {}
        if self.survey.type_columns:
            start, length = self.survey.type_columns
            cells[start] = record.mark.ljust(length)
        items = [item for level in self.survey.ids[:record.level + 1] for item in level]
        cells |= {item.start: text for item, text in zip(items, ids)}
        for item in record.items:
            for k in range(item.times):
                self.fill(cells, item, k)
        return self.joined(cells)

    def fill(self, cells, item, k):
        """The k-th occurrence, from 0."""
        start = item.start + k * item.length
        if self.chance(20) and item.times > 1:
            return
        text = self.field(item)
        for part in item.parts:
            for j in range(part.times):
                place = part.offset + j * part.length
                text = text[:place] + self.field(part) + text[place + part.length:]
        cells[start] = text

    @staticmethod
    def joined(cells):
        text = ""
        for start in sorted(cells):
            text = text.ljust(start - 1) + cells[start]
        return text

    # --- all lines

    def id_text(self, item, number):
        if self.chance(4):
            return self.random.choice(["", "1x"[:item.length], "99"]).rjust(item.length)
        text = str(number)
        return self.random.choice([text.rjust(item.length, "0"), text.rjust(item.length), text.ljust(item.length)])

    def id_texts(self, numbers):
        items = [item for level in self.survey.ids for item in level]
        return [self.id_text(item, number) for item, number in zip(items, numbers)]

    def case(self, province, cluster):
        lines = []
        for record in self.survey.records:
            times = self.random.randint(0, 2 if record.maximum == 1 else 5)
            for k in range(times):
                line = self.random.randint(1, 3)
                lines.append(self.line(record, self.id_texts([province, cluster, line, line, line])))
        return lines

    def odd_lines(self):
        """Lines that are no record, or that mean something to an engine."""
        marked = [record.mark for record in self.survey.records]
        texts = ["\\.", "\\N", '"', "'", "~", "~HH0101", "HX 1", "hh 1", "ZZ0101", "COPY", ".quit", "BEGIN DATA.", "END DATA.",
                 ";;;;", "--", "", "   ", " ", "1", "\\copy", "!ls", '"HH', "1\\."]
        texts += marked + [mark + " 1  1" for mark in marked]
        if self.setting.controls:
            texts += ["\t", "P \t1"]
        if self.setting.characters == "full":
            texts += ["日本語", "HH 1\u2028 2", "😀😀", "\ufeffHH"]
        return texts

    def shortened(self, line):
        drawn = self.random.random()
        if drawn < 0.3:
            return line[:self.random.randint(1, max(1, len(line)))]
        if drawn < 0.4:
            return line.rstrip(" ")
        if drawn < 0.5:
            return line + self.random.choice(["   ", " behind the record", "x"])
        return line

    def lines(self, cases):
        lines = []
        numbers = [(self.random.randint(1, 3), self.random.randint(1, max(2, cases // 4))) for _ in range(cases)]
        for province, cluster in numbers + numbers[:5]:
            lines += [self.shortened(line) for line in self.case(province, cluster)]
        for line in self.odd_lines():
            lines.insert(self.random.randint(0, len(lines)), line)
        erased = [self.random.randrange(1, len(lines)) for _ in range(3)]
        for place in erased:
            lines[place] = "~" + lines[place][1:]
        return [line for line in lines if "\r" not in line]

    def encoded(self, lines):
        ends = {"lf": ["\n"], "crlf": ["\r\n"], "mixed": ["\n", "\r\n"]}[self.setting.crlf]
        parts = [line + self.random.choice(ends) for line in lines]
        if self.setting.crlf == "mixed":
            parts[-1] = lines[-1]
        mark = b"\xef\xbb\xbf" if self.setting.byte_order_mark else b""
        return mark + "".join(parts).encode("utf-8") if self.setting.characters != "latin" else mark + latin("".join(parts))


def latin(text):
    """The bytes in windows-1252, in which the five free bytes are U+0081, U+008D, U+008F, U+0090 and U+009D."""
    return b"".join(bytes([ord(c)]) if c in "\x81\x8d\x8f\x90\x9d" else c.encode("cp1252") for c in text)


# ------------------------------------------------------------------------------------------------------ the files

def write(path, data):
    with open(path, "wb") as file:
        file.write(data)
    return path


def make_files(directory, name, seed, cases):
    setting = SETTINGS[name]
    survey = Survey(setting)
    dictionary = os.path.join(directory, name + ".dcf")
    write(dictionary, json.dumps(survey.element(), ensure_ascii=False, indent=2).encode("utf-8"))
    data = Data(survey, setting, f"{name} {seed}")
    lines = [] if name == "empty" else data.lines(cases)
    return dictionary, write(os.path.join(directory, name + ".dat"), data.encoded(lines) if lines else b"")


def variants(directory, seed=1, cases=40):
    """All variants; makes their files in the directory."""
    files = {name: make_files(directory, name, seed, cases) for name in SETTINGS}
    return [Variant(name, *files[of], options, SETTINGS[of].characters, SETTINGS[of].controls)
            for name, of, options in OPTIONS]


def variant(directory, name, seed=1, cases=40):
    """One variant; makes its files only."""
    of, options = next((of, options) for each, of, options in OPTIONS if each == name)
    return Variant(name, *make_files(directory, of, seed, cases), options, SETTINGS[of].characters, SETTINGS[of].controls)


def long_codes(directory, neighbours=True):
    """Special codes of more digits than a double holds; in the data perhaps also the numbers next to them."""
    survey = Survey.__new__(Survey)
    survey.type_columns = None
    survey.ids = [[Item("LINE", 1)]]
    survey.records = [Record("R", "", 1, 0, [
        Item("WHOLE17", 17, values=[value("Not known", "99999999999999998", special="MISSING"),
                                    value("Two to four", ("1.5", "4.5"), special="NOTAPPL"),
                                    value("Minus two to minus four", ("-4.5", "-1.5"), special="NOTAPPL")]),
        Item("WHOLE20", 20, values=[value("Not known", "99999999999999999998", special="MISSING"),
                                    value("Kept", "-2", special="DEFAULT"), value("Negative", ("-9", "-1"), special="NOTAPPL")]),
        Item("DECIMAL", 20, decimals=4, values=[value("Not known", "9992325549739149.48", special="REFUSED"),
                                                value("Not asked", "00.5", special="NOTAPPL")]),
        Item("LINE_NO", 1, "A name that the programs in SQL use"), Item("line_text", 1, kind="alpha")], "Long codes")]
    survey.place()
    dictionary = write(os.path.join(directory, "long_codes.dcf"), json.dumps(survey.element()).encode())
    cells = [("99999999999999998", "99999999999999999998", "99923255497391494800"), ("0", "-9", "0.50"), ("-0", "-10", ",5"),
             ("", "-2", "5000"), ("1", "-0", "-0000"), ("-9999999999999998", "-9999999999999999998", "9992325549739149.48")]
    cells += [(number, "", "") for number in ("1", "2", "4", "5", "-1", "-2", "-4", "-5")]
    if neighbours:
        cells += [("99999999999999997", "99999999999999999997", "99923255497391494801"),
                  ("99999999999999999", "+9999999999999999999", "9992325549739149.47")]
    lines = [f"{number % 10}{first:17}{second:20}{third:20}\n" for number, (first, second, third) in enumerate(cells)]
    return Variant("long_codes", dictionary, write(os.path.join(directory, "long_codes.dat"), "".join(lines).encode()), [], "ascii", False)


def broken(path, variant, line, wrong):
    with open(variant.data, "rb") as file:
        lines = file.read().split(b"\n")
    lines[line - 1] += wrong
    return write(path, b"\n".join(lines))


# Bytes that are not UTF-8.
WRONG_BYTES = (b"\xe9", b"\x80", b"\xc3\xa9\xa9", b"\xe9\x80", b"\xed\xa0\x80", b"\xff", b"\xc0\x80",
               b"\xf4\x90\x80\x80")


def census_records():
    house = [Item("DWELLING", 1, "Type of dwelling", values=[value("House", "1"), value("Flat", "2"), value("Hut", "3"),
                                                              value("Not stated", "9", special="MISSING")]),
             Item("ROOMS", 2, "Rooms"), Item("RENT", 9, "Monthly rent", decimals=2), Item("WATER", 2, "Source of water"),
             Item("VILLAGE", 30, "Village", kind="alpha"), Item("HOUSE_FILLER", 61, "Remarks", kind="alpha")]
    person = [Item("RELATION", 1, "Relation to the head"), Item("SEX", 1, "Sex", values=[value("Male", "1"), value("Female", "2")]),
              Item("AGE", 3, "Age", values=[value("Years", ("0", "120")), value("Not stated", "999", special="MISSING")]),
              Item("SCHOOL", 2, "Years of schooling"), Item("WORK", 1, "Work"), Item("OCCUPATION", 4, "Occupation"),
              Item("INCOME", 9, "Income", decimals=2), Item("WEIGHT", 8, "Weight", decimals=4, mark=True),
              Item("BIRTH", 8, "Date of birth", parts=[Item("BIRTH_YEAR", 4, "Year", offset=0), Item("BIRTH_MONTH", 2, "Month", offset=4),
                                                       Item("BIRTH_DAY", 2, "Day", offset=6)]),
              Item("GIVEN_NAME", 20, "Given name", kind="alpha"), Item("FAMILY_NAME", 20, "Family name", kind="alpha"),
              Item("LANGUAGE", 2, "Language", times=4), Item("CHILDREN", 2, "Children"), Item("DISABILITY", 1, "Disability", times=6),
              Item("PERSON_FILLER", 12, "Remarks", kind="alpha")]
    return [Record("HOUSING", "H", 1, 0, house, "Housing"), Record("PERSON", "P", 30, 0, person, "Person")]


def census_survey():
    survey = Survey.__new__(Survey)
    survey.type_columns = (1, 1)
    survey.ids = [[Item("PROVINCE", 2, "Province"), Item("DISTRICT", 2, "District"), Item("AREA", 4, "Enumeration area"),
                   Item("HOUSEHOLD", 3, "Household")]]
    survey.records = census_records()
    survey.place()
    return survey


def census_line(draw, number):
    """Each fifth line is a house, the others are its persons; 120 characters."""
    household = number // 5
    ids = "%02d%02d%04d%03d" % (household // 4000000 + 1, household // 200000 % 20 + 1, household // 200 % 1000, household % 200)
    if number % 5 == 0:
        text = "H" + ids + "%d%2d%9d%2d" % (draw(4) + 1, draw(9), draw(200000), draw(40)) + "Village %d" % draw(5000)
    else:
        text = "P" + ids + "%d%d%3d%2d%d%4d%9d%8.4f" % (draw(9), draw(2) + 1, draw(100), draw(20), draw(5), draw(9999), draw(9999999),
                                                         draw(30000) / 10000)
        text += "%4d%02d%02d" % (1900 + draw(125), draw(12) + 1, draw(28) + 1) + ("Given%d" % draw(999)).ljust(20)
        text += ("Family%d" % draw(9999)).ljust(20) + "%2d%2d    %2d%06d" % (draw(90), draw(90), draw(12), draw(1000000))
    return text.ljust(120)[:120] + "\n"


def census(path, lines):
    """Writes path.dcf and path.dat, a census of that many lines of 120 characters; returns both paths."""
    write(path + ".dcf", json.dumps(census_survey().element(), indent=2).encode("utf-8"))
    source = random.Random(1)
    draw = lambda limit: int(source.random() * limit)
    with open(path + ".dat", "w", encoding="ascii", newline="\n") as file:
        for first in range(0, lines, 10000):
            file.write("".join(census_line(draw, number) for number in range(first, min(lines, first + 10000))))
    return path + ".dcf", path + ".dat"


def main(arguments):
    if arguments[:1] == ["--census"]:
        census(arguments[1], int(arguments[2]))
        return
    os.makedirs(arguments[0], exist_ok=True)
    for made in variants(arguments[0], *map(int, arguments[1:2])):
        print(made.name, made.dictionary, made.data, *made.options)


if __name__ == "__main__":
    main(sys.argv[1:])
