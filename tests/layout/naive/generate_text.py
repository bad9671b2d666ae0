"""Writes a random survey in the text form, with dirt."""

from dataclasses import dataclass

KINDS = {
    # Another spelling of the same dictionary
    "blanks": "harmless",
    "tabs": "harmless",
    "comments": "harmless",
    "continuation": "harmless",
    "lowerCaseKeys": "harmless",
    "lineEnds": "harmless",
    "emptyLines": "harmless",
    "doubleQuotes": "harmless",
    "colonsBetweenCodes": "harmless",
    "textOfInt": "harmless",
    "withoutMark": "harmless",
    "windows1252": "harmless",
    "utf16": "harmless",
    "noEditFirst": "harmless",
    "tildes": "harmless",
    # Another dictionary
    "invalidBytes": "harmful",
    "rangeBlanks": "harmful",
    "brokenCodes": "harmful",
    "labelParts": "harmful",
    "labelOfValue": "harmful",
    "notePieces": "harmful",
    "repeatedKeys": "harmful",
    "unknownKeys": "harmful",
    "linesWithoutKey": "harmful",
    "unknownSections": "harmful",
    "misplacedSections": "harmful",
    "secondLanguages": "harmful",
    "secondDictionary": "harmful",
    "missingKeys": "harmful",
    "wrongNumbers": "harmful",
    "emptyValues": "harmful",
    "specialWords": "harmful",
    "captureWords": "harmful",
    "occurrenceLabels": "harmful",
    "relationParts": "harmful",
    "subitemsWithoutItem": "harmful",
    "dataTypes": "harmful",
    "decimalsOfAlpha": "harmful",
    "valueSetImages": "harmful",
    "noDictionary": "harmful",
    "cutFile": "harmful",
    "changedBytes": "harmful",
}

INT_KEYS = {"RecordTypeStart", "RecordTypeLen", "MaxRecords", "RecordLen", "Start", "Len", "Occurrences", "Decimal"}

# A second one of these keys would be more than a repeated key: lists, and keys that change the meaning of others.
NOT_REPEATED = {
    "Note",
    "Alias",
    "OccurrenceLabel",
    "Value",
    "CaptureType",
    "CaptureDateFormat",
    "PrimaryLink",
    "Secondary",
    "SecondaryLink",
}


@dataclass
class Line:
    section: str
    key: str  # the section itself if it begins with [
    value: str = ""
    bare: bool = False  # without =


class TextWriter:
    def __init__(self, rng, kinds):
        self.rng = rng
        self.kinds = kinds
        self.lines = []
        self.section = ""

    def has(self, kind, probability=1.0):
        return kind in self.kinds and self.rng.random() < probability

    def write(self, survey):
        self.write_survey(survey)
        self.add_dirt()
        return self.damaged(self.encoded(self.joined()))

    # --- The survey -----------------------------------------------------------------------------------------------

    def begin(self, section):
        self.section = section
        self.lines.append(Line(section, "[%s]" % section, bare=True))

    def put(self, key, value):
        self.lines.append(Line(self.section, key, str(value)))

    def put_labels(self, labels):
        self.put("Label", "|".join(labels))

    def put_named(self, element):
        self.put_labels(element["labels"])
        self.put("Name", element["name"])
        for alias in element["aliases"]:
            self.put("Alias", alias)
        self.put_note(element["note"])

    def put_note(self, note):
        """The lines of a note, cut at a blank here and there."""
        lines = note.split("\n") if note else []
        for number, line in enumerate(lines):
            pieces = self.pieces(line)
            for piece in pieces[:-1]:
                self.put("Note", self.begun(piece))
            self.put("Note", self.begun(pieces[-1]) + ("\\r\\n" if number < len(lines) - 1 else ""))

    def pieces(self, line):
        """Parts of a line; the blank where it is cut is in none of them."""
        blanks = [i for i, c in enumerate(line) if c == " " and 0 < i < len(line) - 1 and line[i - 1] not in " &"]
        if not blanks or self.rng.random() < 0.5:
            return [line]
        at = self.rng.choice(blanks)
        return [line[:at], line[at + 1 :]]

    @staticmethod
    def begun(piece):
        return "~" + piece[1:] if piece.startswith(" ") else piece

    def write_survey(self, survey):
        if not survey["editable"] and self.has("noEditFirst"):
            self.begin("NoEdit")
        self.begin("Dictionary")
        self.put("Version", "CSPro " + survey["version"])
        self.put_named(survey)
        self.put("RecordTypeStart", survey["record_type"][0])
        self.put("RecordTypeLen", survey["record_type"][1])
        self.put("Positions", "Relative" if survey["relative"] else "Absolute")
        self.put("ZeroFill", yes(survey["zero_fill"]))
        self.put("DecimalChar", yes(survey["decimal_mark"]))
        if self.rng.random() < 0.3:
            self.put("SecurityOptions", "0A1B2C3D" * 8)
        if not survey["editable"] and "noEditFirst" not in self.kinds:
            self.begin("NoEdit")
        if survey["languages"]:
            self.begin("Languages")
            for code, label in survey["languages"]:
                self.put(code, label)
        for level in survey["levels"]:
            self.write_level(level)
        for relation in survey["relations"]:
            self.write_relation(relation)

    def write_level(self, level):
        self.begin("Level")
        self.put_named(level)
        self.begin("IdItems")
        for item in level["ids"]:
            self.write_item(item)
        for record in level["records"]:
            self.write_record(record)

    def write_record(self, record):
        self.begin("Record")
        self.put_named(record)
        quote = '"' if "'" in record["type"] or self.has("doubleQuotes") else "'"
        self.put("RecordTypeValue", quote + record["type"] + quote)
        if not record["required"]:
            self.put("Required", "No")
        if record["maximum"] != 1:
            self.put("MaxRecords", record["maximum"])
        self.put("RecordLen", self.rng.randint(1, 200))
        self.put_occurrence_labels(record["labelled"])
        for item in record["items"]:
            self.write_item(item)

    def put_occurrence_labels(self, labels):
        for number, parts in labels:
            self.put("OccurrenceLabel", "%d,%s" % (number, "|".join(parts)))

    def write_item(self, item):
        self.begin("Item")
        self.put_named(item)
        self.put("Start", item["start"])
        self.put("Len", item["length"])
        if item["subitem"]:
            self.put("ItemType", "SubItem")
        if item["type"] == "alpha" or self.rng.random() < 0.5:
            self.put("DataType", item["type"].capitalize())
        if item["occurrences"] != 1:
            self.put("Occurrences", item["occurrences"])
        if item["decimals"]:
            self.put("Decimal", item["decimals"])
            if item["decimal_mark"]:
                self.put("DecimalChar", "Yes")
        if item["zero_fill"]:
            self.put("ZeroFill", "Yes")
        if item["capture"]:
            self.put("CaptureType", item["capture"][0])
            if item["capture"][1]:
                self.put("CaptureDateFormat", item["capture"][1])
        self.put_occurrence_labels(item["labelled"])
        for value_set in item["value_sets"]:
            self.write_value_set(item, value_set)

    def write_value_set(self, item, value_set):
        self.begin("ValueSet")
        self.put_named(value_set)
        if value_set["link"]:
            self.put("Link", value_set["link"])
        for value in value_set["values"]:
            self.write_value(item, value)

    def write_value(self, item, value):
        codes = " ".join(self.code(item, low, high) for low, high in value["ranges"])
        label = "|".join(value["labels"])
        self.put("Value", codes + (";" + label if label or self.rng.random() < 0.1 else ""))
        self.put_note(value["note"])
        if value["image"]:
            self.put("Image", ".\\" + value["image"].replace("/", "\\") if self.rng.random() < 0.5 else value["image"])
        if value["color"]:
            self.put("TextColor", value["color"])
        if value["special"]:
            self.put("Name", value["special"] + ",Special")

    def code(self, item, low, high):
        if high:
            return low + ":" + high
        is_number = low.strip("0123456789.,-") == ""
        if item["type"] == "alpha" and is_number and len(low) == item["length"] and self.rng.random() < 0.5:
            return low
        if item["type"] == "alpha" or not is_number:
            quote = '"' if "'" in low or self.has("doubleQuotes", 0.5) else "'"
            return quote + low + quote
        return low

    def write_relation(self, relation):
        self.begin("Relation")
        self.put("Name", relation["name"])
        for alias in relation["aliases"]:
            self.put("Alias", alias)
        self.put("Primary", relation["primary"])
        for link in relation["links"]:
            if link["primary"]:
                self.put("PrimaryLink", link["primary"])
            self.put("Secondary", link["secondary"])
            if link["secondary_link"]:
                self.put("SecondaryLink", link["secondary_link"])

    # --- Dirt in lines --------------------------------------------------------------------------------------------

    def add_dirt(self):
        for kind in KINDS:  # in this order, which is the same for every run
            change = getattr(self, "dirt_" + kind, None)
            if change and kind in self.kinds:
                change()

    def some(self, wanted, probability=0.1):
        """Lines to change: each that is wanted with a probability, at least one if there is any."""
        candidates = [line for line in self.lines if wanted(line)]
        some = [line for line in candidates if self.rng.random() < probability]
        return some or ([self.rng.choice(candidates)] if candidates else [])

    def insert(self, at, *lines):
        self.lines[at:at] = lines

    def index(self, line):
        return next(i for i, other in enumerate(self.lines) if other is line)

    def places(self, count):
        """Indexes at which a line can be inserted: after the line of the first section."""
        return sorted((self.rng.randint(1, len(self.lines)) for _ in range(count)), reverse=True)

    def section_starts(self):
        return [i for i, line in enumerate(self.lines) if i and line.key.startswith("[")] + [len(self.lines)]

    def dirt_lowerCaseKeys(self):
        for line in self.some(lambda line: line.section != "Languages" or line.key.startswith("["), 0.4):
            line.key = self.rng.choice([line.key.lower(), line.key.upper(), line.key.swapcase()])

    def dirt_textOfInt(self):
        for line in self.some(lambda line: line.key in INT_KEYS, 0.2):
            line.value = self.rng.choice(["%sx", "%s 5", "0%s", "+%s", "%s.9", "%s,"]) % line.value

    def dirt_colonsBetweenCodes(self):
        for line in self.some(lambda line: line.key == "Value" and line.value[:1] not in ("'", '"', ""), 0.2):
            line.value = self.rng.choice([": ", "::", " "]) + line.value

    def dirt_rangeBlanks(self):
        for line in self.some(lambda line: line.key == "Value" and ":" in line.value, 0.5):
            line.value = line.value.replace(":", self.rng.choice([" : ", ": ", " :", "::", ":  "]), 1)

    def dirt_brokenCodes(self):
        odd = [
            "''",
            "'A",
            '"A B',
            "'A':'C'",
            "'A':5",
            "1:'9'",
            "'A'B",
            "1:2:3",
            "1:",
            ":1",
            ":",
            "' ' '  '",
            "'a\"b'",
            "1;2;3",
            '"it\'s":"x y"',
            "''''",
            "1  2",
            "'a;b'",
            "-",
            "1:-1",
            "'A': 'B'",
            '""1',
            "5''",
            "'x':;y",
        ]
        for line in self.some(lambda line: line.key == "Value", 0.3):
            codes, mark, label = line.value.partition(";")
            line.value = self.rng.choice([self.rng.choice(odd), codes + " " + self.rng.choice(odd)]) + mark + label

    def dirt_labelParts(self):
        for line in self.some(lambda line: line.key == "Label" or (line.key == "Value" and ";" in line.value), 0.2):
            line.value += self.rng.choice(["|", "||", "|x|y|z|w|v|u", " | x", "|x||", "|\u00a0"])

    def dirt_labelOfValue(self):
        for line in self.some(lambda line: line.key == "Value", 0.1):
            self.insert(self.index(line) + 1, Line(line.section, "Label", "another"))

    def dirt_notePieces(self):
        pieces = [
            "",
            "~",
            "~~x",
            "\\r\\n",
            "\\r\\n\\r\\n",
            "a\\r\\nb",
            "\\r",
            "x\\n",
            "a \\r\\n",
            "~\\r\\n",
            "~ y",
            "'",
            "x~",
        ]
        for line in self.some(lambda line: line.section in ("Dictionary", "Level", "Record", "Item", "ValueSet"), 0.05):
            notes = [Line(line.section, "Note", self.rng.choice(pieces)) for _ in range(self.rng.randint(1, 4))]
            self.insert(self.index(line) + 1, *notes)

    def dirt_repeatedKeys(self):
        def repeatable(line):
            return not line.key.startswith("[") and line.key not in NOT_REPEATED and line.section != "Languages"

        for line in self.some(repeatable, 0.05):
            values = [line.value, "1", "Yes", "No", "", "Alpha", "MISSING,Special", "Relative", "x|y"]
            again = Line(line.section, line.key, self.rng.choice(values))
            if line.key == "DataType":
                again.value = self.rng.choice(["Alpha", "Numeric"])
            last = self.index(line) + 1
            while (
                last < len(self.lines) and not self.lines[last].key.startswith("[") and self.lines[last].key != "Value"
            ):
                last += 1
            self.insert(self.rng.randint(self.index(line) + 1, last), again)

    def dirt_unknownKeys(self):
        keys = [
            "Foo",
            "ItemLabel",
            "Label.FR",
            "# note",
            "; remark",
            "Länge",
            "Link",
            "Alias",
            "Required",
            "Value",
            "Start",
            "ValueSetImages",
            "CaptureDateFormat",
            "Special",
            "TextColor",
        ]
        for at in self.places(self.rng.randint(1, 4)):
            section = self.lines[at - 1].section
            key = self.rng.choice(keys)
            if section == "Languages" or (key == "Alias" and section != "IdItems"):
                continue
            self.insert(at, Line(section, key, self.rng.choice(["", "1", "some text", "a=b", "'q'"])))

    def dirt_linesWithoutKey(self):
        for at in self.places(self.rng.randint(1, 3)):
            texts = ["<<<<<<< HEAD", ">>>>>>> main", "just text", "Label", "Name", "&", "ZeroFill", "Value"]
            self.insert(at, Line(self.lines[at - 1].section, self.rng.choice(texts), bare=True))
        if self.rng.random() < 0.3:
            for at in self.places(1):
                self.insert(at, Line(self.lines[at - 1].section, "", self.rng.choice(["", "======", "x"])))

    def dirt_unknownSections(self):
        for _ in range(self.rng.randint(1, 2)):
            name = self.rng.choice(["Foo", "Items", "Item] x", "Range", "", "Level 2"])
            keys = [("Name", "N"), ("Label", "L"), ("Foo", "1"), ("Start", "5"), ("x", "")]
            lines = [Line("?", "[%s]" % name, bare=True)]
            lines += [Line("?", *self.rng.choice(keys)) for _ in range(self.rng.randint(0, 3))]
            self.insert(self.rng.choice(self.section_starts()), *lines)

    def dirt_misplacedSections(self):
        """A section that is moved, removed or repeated."""
        starts = self.section_starts()
        at = self.rng.randrange(len(starts) - 1)
        block = self.lines[starts[at] : starts[at + 1]]
        if self.rng.random() < 0.6:
            del self.lines[starts[at] : starts[at + 1]]
        if self.rng.random() < 0.7:
            copied = [Line(line.section, line.key, line.value, line.bare) for line in block]
            self.insert(self.rng.choice(self.section_starts()), *copied)

    def dirt_secondLanguages(self):
        lines = [
            Line("Languages", "[Languages]", bare=True),
            Line("Languages", "XX", "Other"),
            Line("Languages", "YY", "a=b"),
        ]
        if self.rng.random() < 0.3:
            lines.append(Line("Languages", "ZZ", bare=True))
        self.insert(self.rng.choice(self.section_starts()), *lines)

    def dirt_secondDictionary(self):
        lines = [Line("Dictionary", "[Dictionary]", bare=True), Line("Dictionary", "Name", "AGAIN")]
        lines += [Line("Dictionary", "ZeroFill", "Yes"), Line("Dictionary", "Note", "more")]
        self.insert(self.rng.choice(self.section_starts()), *lines)

    def dirt_missingKeys(self):
        keys = (
            "Name",
            "Len",
            "Start",
            "Label",
            "Positions",
            "RecordTypeValue",
            "RecordTypeStart",
            "Version",
            "Secondary",
        )
        for line in self.some(lambda line: line.key in keys, 0.1):
            del self.lines[self.index(line)]

    def dirt_wrongNumbers(self):
        numbers = [
            "abc",
            "",
            "12abc",
            "-3",
            "+4",
            "007",
            "1.5",
            "1,5",
            "0",
            "--2",
            "+",
            "- 1",
            "99999",
            "0x10",
            "1e3",
            "٣",
        ]
        for line in self.some(lambda line: line.key in INT_KEYS, 0.15):
            line.value = self.rng.choice(numbers)

    def dirt_emptyValues(self):
        for line in self.some(lambda line: line.value and line.key not in ("DataType", "CaptureType", "Alias"), 0.05):
            line.value = ""

    def dirt_specialWords(self):
        words = [
            "MISSING",
            "missing,special",
            "NotAppl",
            "REFUSED Special",
            "DEFAULT,",
            "OTHER,Special",
            "",
            "'MISSING',Special",
            ", MISSING",
            '"REFUSED" x',
            "MISSINGX,Special",
            "SPECIAL,MISSING",
        ]
        for line in self.some(lambda line: line.key == "Value", 0.15):
            marks = [Line(line.section, "Name", self.rng.choice(words)) for _ in range(self.rng.choice([1, 1, 1, 2]))]
            self.insert(self.index(line) + 1, *marks)

    def dirt_captureWords(self):
        for line in self.some(lambda line: line.key == "Len", 0.15):
            word = self.rng.choice(["Date", "DATE", "date", "TextBox", "textbox", "Foo", "Unspecified", "NUMBERPAD"])
            lines = [Line(line.section, "CaptureType", word)]
            if self.rng.random() < 0.6:
                lines.append(Line(line.section, "CaptureDateFormat", self.rng.choice(["ddmmyyyy", "YYMM", "", "x"])))
            if self.rng.random() < 0.2:
                lines.reverse()
            at = self.index(line)
            item_end = next(
                (i for i in range(at, len(self.lines)) if self.lines[i].key.startswith("[")), len(self.lines)
            )
            if not any(self.lines[i].key == "CaptureType" for i in range(at, item_end)):
                self.insert(at + 1, *lines)

    def dirt_occurrenceLabels(self):
        texts = [
            "1,One",
            "2:Two|Deux",
            "0,Zero",
            "99,Far",
            "x,y",
            ",1,y",
            "3",
            "",
            "1,",
            "2, b",
            "-1,c",
            "1,a,b:c",
            "1x,d",
            ":2:e",
        ]
        for line in self.some(lambda line: line.key in ("Len", "RecordTypeValue"), 0.2):
            key = self.rng.choice(["OccurrenceLabel", "OccurenceLabel", "occurrencelabel"])
            self.insert(self.index(line) + 1, Line(line.section, key, self.rng.choice(texts)))

    def dirt_relationParts(self):
        keys = ["Primary", "PrimaryLink", "Secondary", "SecondaryLink", "Secondary", "Label", "Note", "Name", "Alias"]
        lines = [Line("Relation", "[Relation]", bare=True)]
        for _ in range(self.rng.randint(0, 8)):
            value = self.rng.choice(["A", "B", "(occurrence)", "C_D"])
            lines.append(Line("Relation", self.rng.choice(keys), value))
        self.insert(self.rng.choice(self.section_starts()), *lines)

    def dirt_subitemsWithoutItem(self):
        for line in self.some(lambda line: line.key == "Len", 0.2):
            at = self.index(line)
            if at + 1 == len(self.lines) or self.lines[at + 1].key != "ItemType":
                self.insert(
                    at + 1, Line(line.section, "ItemType", self.rng.choice(["SubItem", "subitem", "Item", "Sub"]))
                )

    def dirt_dataTypes(self):
        for line in self.some(lambda line: line.key == "DataType", 0.3):
            line.value = self.rng.choice(["NUMERIC", "alpha", "Text", "Foo Bar", "aLPHA"])

    def dirt_decimalsOfAlpha(self):
        for line in self.some(lambda line: line.key == "DataType", 0.3):
            pairs = [
                ("Decimal", "2"),
                ("DecimalChar", "Yes"),
                ("DecimalChar", "No"),
                ("ZeroFill", "yep"),
                ("ZeroFill", "x"),
            ]
            key, value = self.rng.choice(pairs)
            at = self.index(line)
            near = self.lines[at : at + 5]
            if not any(other.key == key for other in near):
                self.insert(at + 1, Line(line.section, key, value))

    def dirt_valueSetImages(self):
        line = Line("Dictionary", "ValueSetImages", self.rng.choice(["Yes", "", "x.png"]))
        name = next((l for l in self.lines if l.section == "Dictionary" and l.key == "Positions"), self.lines[0])
        self.insert(self.index(name) + 1, line)

    def dirt_noDictionary(self):
        line = next((l for l in self.lines if l.key.lower() == "[dictionary]"), None)
        if line:
            line.key = "[Dictionari]"

    # --- Dirt in characters ---------------------------------------------------------------------------------------

    def joined(self):
        return "".join(text + self.line_end() for line in self.lines for text in self.physical(line))

    def line_end(self):
        return self.rng.choice(["\n", "\r\n"]) if "lineEnds" in self.kinds else "\n"

    def physical(self, line):
        """The physical lines of a logical one, with comments and empty lines before them."""
        if line is not self.lines[0]:
            if self.has("comments", 0.1):
                yield self.rng.choice([".comment", " . [Item]", ".Label=x", "."])
            if line.key.startswith("[") or self.has("emptyLines", 0.1):
                yield self.rng.choice(["", "", "  ", "\t"]) if "emptyLines" in self.kinds else ""
        yield from self.continued(self.spelled(line))

    def spelled(self, line):
        around = " \t" if "tabs" in self.kinds else " "
        pads = [self.pad(around) for _ in range(4)]
        if line.bare:
            return pads[0] + line.key + pads[1]
        return pads[0] + line.key + pads[1] + "=" + pads[2] + line.value + pads[3]

    def pad(self, around):
        if not self.kinds & {"blanks", "tabs"} or self.rng.random() < 0.7:
            return ""
        return "".join(self.rng.choice(around) for _ in range(self.rng.randint(1, 3)))

    def continued(self, text):
        while self.has("continuation", 0.15) and len(text) > 3 and not text.endswith("&"):
            first = len(text) - len(text.lstrip()) + 1  # the file must begin with [
            at = self.rng.randint(first, len(text) - 1) if first < len(text) else len(text)
            if text[at:].strip() in ("", "&"):
                break
            yield text[:at] + "&"
            text = text[at:]
        yield text

    # --- Bytes ----------------------------------------------------------------------------------------------------

    def encoded(self, text):
        if "windows1252" in self.kinds:
            return text.encode("cp1252", "replace")
        if "utf16" in self.kinds:
            return ("\ufeff" + text).encode(self.rng.choice(["utf-16le", "utf-16be"]))
        return ("" if "withoutMark" in self.kinds else "\ufeff").encode("utf-8") + text.encode("utf-8")

    def damaged(self, data):
        if "invalidBytes" in self.kinds:
            bad = [
                b"\xff",
                b"\xc3",
                b"\xe2\x82",
                b"\xf0\x9f\x98",
                b"\xc0\xaf",
                b"\xed\xa0\x80",
                b"\xf5",
                b"\x80",
                b"\xe0\x80\x80",
            ]
            for _ in range(self.rng.randint(1, 3)):
                at = self.rng.randint(15, len(data))
                data = data[:at] + self.rng.choice(bad) + data[at:]
        if "cutFile" in self.kinds:
            data = data[: self.rng.randint(20, len(data))]
        if "changedBytes" in self.kinds:
            for _ in range(self.rng.randint(1, 3)):
                at = self.rng.randrange(15, len(data))
                change = self.rng.choice(
                    [b"", b"=", b"\n", b"&\n", b"|", b"'", b"[", b" ", bytes([self.rng.randint(32, 126)])]
                )
                data = data[:at] + change + data[at + self.rng.randint(0, 2) :]
        return data


def yes(value):
    return "Yes" if value else "No"
