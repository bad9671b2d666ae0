#!/usr/bin/env python3
"""Random dictionaries, each in the text form and in the JSON form.

A case is made of a random survey that both forms can hold, and of dirt of several kinds. HARMLESS kinds change the
spelling of the file alone: a case that has no other is a pair of twins, and both forms must give the same layout. The
same seed and number always make the same case.

    generate.py SEED NUMBER DIRECTORY    writes the two files of one case, for a look at it
"""

import pathlib
import random
import sys
from dataclasses import dataclass, field

import generate_json
import generate_text

KINDS = {**generate_text.KINDS, **generate_json.KINDS}

LANGUAGES = [("EN", "English"), ("FR", "Français"), ("ES", "Español"), ("SW", "Kiswahili"), ("TIG", "ትግርኛ")]

LATIN_LANGUAGES = LANGUAGES[:4]

ASCII_WORDS = (
    'age sex household number of persons main water source roof yes no other don\'t know; a,b = : "so" 10% [x] (y) '
    "#1 .5 / & | ~x"
).split(" ")
LATIN_WORDS = "été Île Straße niño €5 «oui» Ærø naïve Ÿ".split(" ")
WIDE_WORDS = "ዕድሜ ٣٤ возраст 年齢 😀 e\u0301 a\u00a0b \u2028x ﬁ".split(" ")


def tail_safe(text):
    """Without an end or a beginning that the text form cannot hold."""
    return text.strip(" \t&")


@dataclass
class Maker:
    """Makes the parts of one random survey."""

    rng: random.Random
    wide: bool
    languages: list
    counter: int = 0
    links: list = field(default_factory=list)

    def chance(self, probability):
        return self.rng.random() < probability

    def name(self, stem):
        self.counter += 1
        return "%s_%d" % (stem, self.counter)

    def text(self, most=4):
        words = ASCII_WORDS + LATIN_WORDS + (WIDE_WORDS if self.wide else [])
        chosen = [self.rng.choice(words) for _ in range(self.rng.randint(1, most))]
        return tail_safe(" ".join(chosen).replace("|", "/")) or "x"

    def labels(self):
        """One text for each of the first languages; the first is not empty if others follow."""
        if self.chance(0.08):
            return [""]
        count = self.rng.randint(1, max(1, len(self.languages))) if self.chance(0.5) else 1
        labels = [self.text()] + [self.text() for _ in range(count - 1)]
        if count > 2 and self.chance(0.2):
            labels[1] = self.rng.choice(["", labels[0]])
        return labels

    def note(self):
        if self.chance(0.85):
            return ""
        lines = [self.text(12).replace("~", "-") for _ in range(self.rng.randint(1, 3))]
        return "\n".join(lines)

    def aliases(self):
        return [self.name("AKA") for _ in range(self.rng.randint(1, 2))] if self.chance(0.07) else []

    def named(self, stem):
        return {"name": self.name(stem), "labels": self.labels(), "note": self.note(), "aliases": self.aliases()}

    def occurrence_labels(self, maximum):
        if maximum < 2 or self.chance(0.7):
            return []
        numbers = sorted(self.rng.sample(range(1, maximum + 1), self.rng.randint(1, min(3, maximum))))
        return [(number, [tail_safe(self.text(2)) or "x"]) for number in numbers]

    # --- Items ----------------------------------------------------------------------------------------------------

    def item(self, is_id=False):
        item = self.named("ID" if is_id else "Q")
        numeric = self.chance(0.75)
        item.update(
            type="numeric" if numeric else "alpha",
            length=self.rng.randint(1, 8),
            occurrences=1,
            labelled=[],
            decimals=0,
            decimal_mark=False,
            zero_fill=numeric and self.chance(0.4),
            capture=None,
            subitem=False,
            value_sets=[],
        )
        if not is_id and self.chance(0.15):
            item["occurrences"] = self.rng.randint(2, 5)
            item["labelled"] = self.occurrence_labels(item["occurrences"])
        if numeric and not is_id and self.chance(0.2):
            item["length"] += 3
            item["decimals"] = self.rng.randint(1, 3)
            item["decimal_mark"] = self.chance(0.5)
        item["capture"] = self.capture()
        item["value_sets"] = [self.value_set(item, n) for n in range(1, self.rng.choice([1, 1, 2, 2, 3, 4]))]
        return item

    def capture(self):
        if self.chance(0.85):
            return None
        word = self.rng.choice(
            [
                "textBox",
                "radioButton",
                "checkBox",
                "dropDown",
                "comboBox",
                "date",
                "numberPad",
                "barcode",
                "slider",
                "toggleButton",
                "photo",
                "signature",
                "audio",
            ]
        )
        return word, self.rng.choice(["", "DDMMYYYY", "YYMM"]) if word == "date" else ""

    def subitems(self, item):
        """Parts of an item, which may overlap."""
        if item["length"] < 2 or self.chance(0.85):
            return []
        subitems = []
        for _ in range(self.rng.randint(1, 3)):
            subitem = self.item()
            subitem.update(subitem=True, occurrences=1, labelled=[], decimals=0, decimal_mark=False)
            subitem["offset"] = self.rng.randint(0, item["length"] - 1)
            subitem["length"] = self.rng.randint(1, item["length"] - subitem["offset"])
            subitems.append(subitem)
        return subitems

    def items(self, count):
        items = []
        for _ in range(count):
            item = self.item()
            items += [item, *self.subitems(item)]
        return items

    # --- Value sets -----------------------------------------------------------------------------------------------

    def value_set(self, item, number):
        value_set = {
            "name": "%s_VS%d" % (item["name"], number),
            "labels": self.labels(),
            "note": self.note(),
            "aliases": self.aliases(),
            "link": "",
            "values": [],
        }
        if self.chance(0.15):
            value_set["link"] = self.link()
        if not value_set["link"] or self.chance(0.4):
            value_set["values"] = [self.value(item) for _ in range(self.rng.randint(0, 5))]
        return value_set

    def link(self):
        """Often the link of an earlier value set, so that the set with the values comes before or after it."""
        if not self.links or self.chance(0.4):
            self.links.append(str(self.rng.randint(1, 10**9)))
        return self.rng.choice(self.links)

    def value(self, item):
        value = {"labels": self.labels(), "note": self.note(), "image": "", "color": "", "special": "", "ranges": []}
        if self.chance(0.05):
            value["image"] = self.rng.choice(["Images/a.jpg", "../b c.png", "x.gif"])
        if self.chance(0.05):
            value["color"] = self.rng.choice(["#ff0000", "#0F0", "rgb(1,2,3)", "Red"])
        if item["type"] == "alpha":
            value["ranges"] = [(self.alpha_code(item), "") for _ in range(self.rng.choice([1, 1, 1, 2]))]
            return value
        if self.chance(0.15):
            value["special"] = self.rng.choice(["MISSING", "NOTAPPL", "REFUSED", "DEFAULT"])
        if value["special"] in ("NOTAPPL", "DEFAULT"):
            value["ranges"] = [(" " * item["length"], "")]
        else:
            count = 1 if value["special"] else self.rng.choice([1, 1, 1, 1, 2, 3])
            value["ranges"] = [self.numeric_code(item) for _ in range(count)]
        return value

    def alpha_code(self, item):
        letters = "ABCxyz019 -'" + ("é" if self.chance(0.2) else "")
        code = "".join(self.rng.choice(letters) for _ in range(self.rng.randint(1, item["length"])))
        return code.ljust(item["length"])

    def numeric_code(self, item):
        def number():
            sign = "-" if self.chance(0.1) else ""
            digits = str(self.rng.randint(0, 10 ** min(item["length"], 6) - 1))
            fraction = (
                "%s%0*d" % (self.rng.choice(".,"), item["decimals"], self.rng.randint(0, 9)) if item["decimals"] else ""
            )
            return sign + digits + fraction

        return (number(), number()) if self.chance(0.3) else (number(), "")

    # --- Records, levels, the whole -------------------------------------------------------------------------------

    def record(self):
        record = self.named("REC")
        record.update(
            type=self.rng.choice(["1", "A", "", "12", " 1", "h h", "it's"]), required=self.chance(0.6), maximum=1
        )
        if self.chance(0.4):
            record["maximum"] = self.rng.randint(2, 30)
        record["labelled"] = self.occurrence_labels(record["maximum"])
        record["items"] = self.items(self.rng.randint(0, 4))
        return record

    def level(self):
        level = self.named("LEVEL")
        level["ids"] = [self.item(is_id=True) for _ in range(self.rng.randint(1, 3))]
        level["records"] = [self.record() for _ in range(self.rng.randint(0, 3))]
        return level

    def relation(self):
        relation = {"name": self.name("REL"), "aliases": self.aliases(), "primary": self.name("P"), "links": []}
        for _ in range(self.rng.choice([1, 1, 2, 3])):
            relation["links"].append(
                {
                    "primary": self.rng.choice(["", "PLINK"]),
                    "secondary": self.name("S"),
                    "secondary_link": self.rng.choice(["", "SLINK"]),
                }
            )
        return relation

    def survey(self):
        survey = self.named("DICT")
        survey.update(
            languages=self.languages,
            relative=self.chance(0.75),
            decimal_mark=self.chance(0.5),
            zero_fill=self.chance(0.5),
            editable=not self.chance(0.1),
            version=self.rng.choice(["7.7", "6.3", "2.6", "8.0"]),
            levels=[self.level() for _ in range(self.rng.choice([1, 1, 1, 2, 3]))],
            relations=[],
        )
        if self.chance(0.15):
            survey["relations"] = [self.relation() for _ in range(self.rng.randint(1, 2))]
        survey["note"] = tail_safe(survey["note"])
        place_all(self, survey)
        return survey


# --- Columns ----------------------------------------------------------------------------------------------------------


def place_all(maker, survey):
    """Columns as the strict layout has them; absolute dictionaries have gaps."""
    ids = [item for level in survey["levels"] for item in level["ids"]]
    type_length = maker.rng.choice([0, 1, 1, 2])
    type_index = maker.rng.choice([0, 0, 0, len(ids), maker.rng.randint(0, len(ids))])
    survey["record_type"] = (0, 0)
    column = 1
    for index in range(len(ids) + 1):
        if index == type_index and type_length:
            survey["record_type"] = (column, type_length)
            column += type_length
        if index < len(ids):
            ids[index]["start"] = column
            column += ids[index]["length"]
    for level in survey["levels"]:
        for record in level["records"]:
            place_in_record(maker, survey, record["items"], column)


def place_in_record(maker, survey, items, column):
    start = column
    for item in items:
        if item["subitem"]:
            item["start"] = start + item["offset"]
            continue
        if not survey["relative"] and maker.chance(0.3):
            column += maker.rng.randint(1, 4)
        start = item["start"] = column
        column += item["length"] * item["occurrences"]


# --- Cases ------------------------------------------------------------------------------------------------------------


def chosen(rng, kinds, without, clean):
    """The kinds of dirt of one file."""
    allowed = [kind for kind in kinds if kind not in without]
    harmless = [kind for kind in allowed if kinds[kind] == "harmless" and rng.random() < 0.3]
    harmful = [kind for kind in allowed if kinds[kind] != "harmless"]
    if clean or not harmful:
        return set(harmless)
    return set(harmless + rng.sample(harmful, min(len(harmful), rng.randint(1, 3))))


class Case:
    """The two files of one random dictionary."""

    def __init__(self, seed, number, without=()):
        rng = random.Random("%d/%d" % (seed, number))
        clean = rng.random() < 0.35
        self.text_kinds = chosen(rng, generate_text.KINDS, without, clean)
        self.json_kinds = chosen(rng, generate_json.KINDS, without, clean)
        narrow = "windows1252" in self.text_kinds
        languages = LATIN_LANGUAGES if narrow else LANGUAGES
        count = rng.choice([0, 0, 1, 2, 3])
        survey = Maker(rng, not narrow, rng.sample(languages, count)).survey()
        self.text = generate_text.TextWriter(rng, self.text_kinds).write(survey)
        self.json = generate_json.JsonWriter(rng, self.json_kinds).write(survey)
        self.are_twins = all(KINDS[kind] == "harmless" for kind in self.text_kinds | self.json_kinds)


# --- Mutations --------------------------------------------------------------------------------------------------------


def mutated(data, seed, number):
    """A dictionary with a few lines or bytes removed, doubled, moved or changed; the first line is unchanged."""
    rng = random.Random("mutated/%d/%d" % (seed, number))
    lines = data.split(b"\n")
    for _ in range(rng.randint(1, 4)):
        if len(lines) > 2:
            mutate(rng, lines)
    return b"\n".join(lines)


def mutate(rng, lines):
    """One change, in place."""
    at = rng.randrange(1, len(lines))
    change = rng.choice(["leave out", "double", "move", "byte", "byte", "word", "cut"])
    if change == "leave out":
        del lines[at]
    elif change == "double":
        lines.insert(rng.randint(at, len(lines)), lines[at])
    elif change == "move":
        lines.insert(rng.randint(1, len(lines) - 1), lines.pop(at))
    elif change == "cut":
        lines[at] = lines[at][: rng.randint(0, len(lines[at]))]
    elif change == "word":
        lines[at] = lines[at].replace(b"=", rng.choice([b"=x ", b" ", b"=", b"=-"]), 1)
    else:
        place = rng.randint(0, len(lines[at]))
        byte = rng.choice([b"", b"=", b"|", b"'", b'"', b"[", b"\xe9", bytes([rng.randint(32, 126)])])
        lines[at] = lines[at][:place] + byte + lines[at][place + rng.randint(0, 1) :]


def main():
    seed, number, directory = int(sys.argv[1]), int(sys.argv[2]), pathlib.Path(sys.argv[3])
    case = Case(seed, number)
    (directory / ("%d-text.dcf" % number)).write_bytes(case.text)
    (directory / ("%d-json.dcf" % number)).write_bytes(case.json)
    print("text:", *sorted(case.text_kinds))
    print("JSON:", *sorted(case.json_kinds))


if __name__ == "__main__":
    main()
