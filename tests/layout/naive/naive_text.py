"""Naive reader of the text form of a CSPro dictionary."""

import re

from naive_common import (
    CAPTURE_WORDS,
    SPECIAL_WORDS,
    WHITE_SPACE,
    Extra,
    Item,
    Labels,
    Layout,
    Level,
    Link,
    OccurrenceLabel,
    Part,
    Record,
    Refused,
    Relation,
    Security,
    Value,
    ValueSet,
    ascii_lower,
    first_character,
    layout_json,
    name_items_of_subitems,
    share_linked_values,
)

INT_MAX = 2**31 - 1
INT_MIN = -(2**31)

BLANKS = " \t"  # characters that separate tokens and codes in a line

# If a section has one of these keys several times, the last one is used; of all other keys, the first one.
LAST_COUNTS = {
    "version",
    "recordtypestart",
    "recordtypelen",
    "zerofill",
    "decimalchar",
    "required",
    "maxrecords",
    "datatype",
    "occurrences",
    "capturetype",
    "capturedateformat",
}

NO_SECTION = object()  # after a section that is unknown or misplaced


# --- Bytes to lines ---------------------------------------------------------------------------------------------------


def decode(data):
    """The text of the file and the name of its encoding."""
    if data.startswith(b"\xef\xbb\xbf"):
        return data[3:].decode("utf-8", "replace"), "utf-8"
    if data.startswith(b"\xff\xfe"):
        return data[2:].decode("utf-16le", "replace"), "utf-16le"
    if data.startswith(b"\xfe\xff"):
        return data[2:].decode("utf-16be", "replace"), "utf-16be"
    try:
        return data.decode("utf-8"), "utf-8"
    except UnicodeDecodeError:
        return data.decode("cp1252", "replace"), "windows-1252"


def physical_lines(text):
    """The lines without their ends. A carriage return before a line feed or the end of the file is part of the end."""
    if "\n" not in text:
        text = text.replace("\r", "\n")
    return [line[:-1] if line.endswith("\r") else line for line in text.split("\n")]


def logical_lines(text):
    """(number of the first physical line, stripped text) of each line, with the continued ones joined."""
    physical = physical_lines(text)
    position = 0
    while position < len(physical):
        number = position + 1
        joined = ""
        while True:
            line = physical[position]
            position += 1
            continued = len(line) >= 2 and line.endswith("&")
            joined += line[:-1] if continued else line
            if not continued or position == len(physical):
                break
        yield number, joined.strip(WHITE_SPACE)


def key_and_value(line):
    key, _, value = line.partition("=")
    return key.rstrip(WHITE_SPACE), value.lstrip(WHITE_SPACE)


# --- Types of values --------------------------------------------------------------------------------------------------


def to_int(text):
    """Leading digits with a sign, as C's atoi; 0 without digits."""
    match = re.match(r"[+-]?[0-9]+", text)
    return max(INT_MIN, min(INT_MAX, int(match.group()))) if match else 0


def to_yes(text):
    return text[:1] in ("y", "Y")


def to_token(text):
    text = text.lstrip(BLANKS + ",")
    if text[:1] in ("'", '"'):
        return text[1:].split(text[0], 1)[0]
    return re.split("[ \t,]", text, maxsplit=1)[0]


def to_labels(text) -> Labels:
    """The parts of a label; their languages are known only after the whole file was read."""
    return [Part(text=part) for part in text.split("|")]


def note_piece(piece):
    if not piece:
        return ""
    piece = piece.replace("\\r\\n", "\n")
    if not piece.endswith("\n"):
        piece += " "
    return " " + piece[1:] if piece.startswith("~") else piece


def to_ranges(text):
    """The codes of a value line: (from, to), with an empty "to" for one code."""
    ranges = []
    position = 0
    while True:
        while position < len(text) and text[position] in BLANKS + ":":
            position += 1
        if position == len(text):
            return ranges
        low, position = code(text, position, BLANKS + ":")
        high = ""
        if text[position : position + 1] == ":":
            high, position = code(text, position + 1, BLANKS)
        if low or high:
            ranges.append((low, high))


def code(text, position, ends):
    """One code that begins at `position`, and the position after it."""
    quote = text[position : position + 1]
    if quote in ("'", '"') and quote:
        end = text.find(quote, position + 1)
        return (text[position + 1 :], len(text)) if end < 0 else (text[position + 1 : end], end + 1)
    end = position
    while end < len(text) and text[end] not in ends:
        end += 1
    return text[position:end], end


# --- Sections ---------------------------------------------------------------------------------------------------------


class TextReader:
    def __init__(self, text):
        self.text = text
        self.layout = Layout(format="cspro-text")
        self.saw_dictionary = False
        self.date_formats = {}  # of an item: the statement that is used
        self.saw_languages = False
        self.element = NO_SECTION  # the element to which the next keys belong
        self.set_key = None  # function for a key of the section: (key, value, line) -> whether it knows the key
        self.level = None
        self.holder = None  # the record or the ids that take the next item
        self.begins_ids = False  # no item since [IdItems]
        self.item = None
        self.seen = {}  # (element, key) -> (key as written, value, line) of the key that is used so far

    def read(self):
        for number, line in logical_lines(self.text):
            if not line or line.startswith("."):
                continue
            key, value = key_and_value(line)
            if key.startswith("["):
                self.begin_section(key, value, number)
            elif not self.set_key(key, value, number):
                self.add_extra(key, value, number)
        if not self.saw_dictionary:
            raise Refused("no [Dictionary] section")
        self.finish()
        return self.layout

    def finish(self):
        self.give_languages_to_labels()
        name_items_of_subitems(self.layout)
        share_linked_values(self.layout)
        for item, key, value, line in self.date_formats.values():
            if not item.capture_type:
                self.add_extra(key, value, line, item)
        self.layout.extras.sort(key=lambda extra: extra.line)

    def add_extra(self, key, value, line, element=None):
        element = element or self.element
        self.layout.extras.append(Extra(self.layout if element is NO_SECTION else element, key, value, line))

    def begin_section(self, key, value, line):
        known = {
            "[noedit]": self.begin_no_edit,
            "[dictionary]": self.begin_dictionary,
            "[languages]": self.begin_languages,
            "[level]": self.begin_level,
            "[iditems]": self.begin_ids,
            "[record]": self.begin_record,
            "[item]": self.begin_item,
            "[valueset]": self.begin_value_set,
            "[relation]": self.begin_relation,
        }
        begin = known.get(ascii_lower(key))
        if begin is None or not begin():
            self.keep_section(key, value, line)
        elif value:
            self.add_extra(key, value, line)

    def keep_section(self, key, value, line):
        """A section that is unknown or misplaced: its line and its keys are extras of the dictionary."""
        self.element = NO_SECTION
        self.set_key = lambda *_: False
        self.add_extra(key, value, line)

    def open(self, element, set_key):
        self.element = element
        self.set_key = set_key
        return True

    def begin_no_edit(self):
        self.layout.editable = False
        return self.open(self.layout, lambda *_: False)

    def begin_dictionary(self):
        self.saw_dictionary = True
        return self.open(self.layout, self.set_in_dictionary)

    def begin_languages(self):
        if self.saw_languages:
            return False
        self.saw_languages = True
        return self.open(self.layout, self.set_in_languages)

    def begin_level(self):
        self.level = Level(parent=self.layout)
        self.layout.levels.append(self.level)
        self.holder = self.level.ids
        return self.open(self.level, self.set_in_level)

    def need_level(self):
        """Ids, records and items before the first level are in a level without a name."""
        if self.level is None:
            self.begin_level()

    def begin_ids(self):
        self.need_level()
        self.holder = self.level.ids
        self.begins_ids = True
        return self.open(self.level.ids, lambda *_: False)

    def begin_record(self):
        self.need_level()
        self.holder = Record(parent=self.level)
        self.level.records.append(self.holder)
        return self.open(self.holder, self.set_in_record)

    def begin_item(self):
        self.need_level()
        self.item = Item(parent=self.holder, is_first=self.begins_ids)
        self.begins_ids = False
        self.holder.items.append(self.item)
        return self.open(self.item, self.set_in_item)

    def begin_value_set(self):
        if self.item is None:
            return False
        value_set = ValueSet(parent=self.item)
        self.item.value_sets.append(value_set)
        return self.open(value_set, self.set_in_value_set)

    def begin_relation(self):
        relation = Relation()
        self.layout.relations.append(relation)
        return self.open(relation, self.set_in_relation)

    # --- Keys -----------------------------------------------------------------------------------------------------

    def counts(self, key, value, line):
        """Whether this key is used, if it occurs twice. The other one is an extra."""
        word = ascii_lower(key)
        place = (id(self.element), word)
        before = self.seen.get(place)
        if before is None or word in LAST_COUNTS:
            self.seen[place] = (key, value, line)
        if before is None:
            return True
        key, value, line = before if word in LAST_COUNTS else (key, value, line)
        self.add_extra("repeated " + key, value, line)
        return word in LAST_COUNTS

    def set_named(self, key, value, line):
        """Label, Name, Alias and Note, which most sections have."""
        word = ascii_lower(key)
        if word == "alias":
            self.element.aliases.append(value)
        elif word == "note":
            self.element.note += note_piece(value)
        elif word == "name":
            if self.counts(key, value, line):
                self.element.name = value
        elif word == "label":
            if self.counts(key, value, line):
                self.element.labels = to_labels(value)
        else:
            return False
        return True

    def set_member(self, table, key, value, line):
        """A key of `table`: key -> function that takes the value."""
        put = table.get(ascii_lower(key))
        if put is None:
            return False
        if self.counts(key, value, line):
            put(value)
        return True

    def put(self, name, convert=str):
        """A function that puts a value into the member `name` of the section's element."""
        element = self.element
        return lambda value: setattr(element, name, convert(value))

    def set_in_dictionary(self, key, value, line):
        table = {
            "version": self.put("format_version", version),
            "recordtypestart": self.put("record_type_start", to_int),
            "recordtypelen": self.put("record_type_length", to_int),
            "positions": self.put("relative_positions", lambda text: ascii_lower(text) == "relative"),
            "zerofill": self.put("zero_fill", to_yes),
            "decimalchar": self.put("decimal_mark", to_yes),
            "securityoptions": self.put("security", lambda text: Security(settings=text)),
            "valuesetimages": self.put("value_set_images"),
        }
        return self.set_named(key, value, line) or self.set_member(table, key, value, line)

    def set_in_languages(self, key, value, line):
        self.layout.languages.append((key, value))
        return True

    def set_in_level(self, key, value, line):
        return self.set_named(key, value, line)

    def set_in_record(self, key, value, line):
        table = {
            "recordtypevalue": self.put("record_type", to_token),
            "required": self.put("required", to_yes),
            "maxrecords": self.put("maximum", to_int),
            "recordlen": self.put("length", to_int),
        }
        return (
            self.set_named(key, value, line)
            or self.set_occurrence_label(key, value, line)
            or self.set_member(table, key, value, line)
        )

    def set_in_item(self, key, value, line):
        table = {
            "start": self.put("start", to_int),
            "len": self.put("length", to_int),
            "itemtype": self.put("is_subitem", lambda text: ascii_lower(text) == "subitem"),
            "datatype": self.put("type", ascii_lower),
            "occurrences": self.put("occurrences", to_int),
            "decimal": self.put("decimals", to_int),
            "decimalchar": self.put("decimal_mark", to_yes),
            "zerofill": self.put("zero_fill", to_yes),
        }
        return (
            self.set_named(key, value, line)
            or self.set_occurrence_label(key, value, line)
            or self.set_capture(key, value, line)
            or self.set_member(table, key, value, line)
        )

    def set_occurrence_label(self, key, value, line):
        if ascii_lower(key) not in ("occurrencelabel", "occurencelabel"):  # the second one is an old misspelling
            return False
        match = re.match("(?s)(.[^,:]*)[,:](.*)", value)
        occurrence = to_int(match.group(1)) if match else 0
        if occurrence < 1:
            return False  # no occurrence that could have a label
        label = OccurrenceLabel(occurrence, to_labels(match.group(2)))
        self.element.occurrence_labels.append(label)
        return True

    def set_capture(self, key, value, line):
        word = ascii_lower(key)
        if word == "capturetype":
            if self.counts(key, value, line):
                self.element.capture_type = CAPTURE_WORDS.get(ascii_lower(value), "")
                if not self.element.capture_type and ascii_lower(value) != "unspecified":
                    self.add_extra(key, value, line)
            return True
        if word == "capturedateformat" and self.element.capture_type == "date":
            if self.counts(key, value, line):
                self.element.capture_date_format = value.upper()
                self.date_formats[id(self.element)] = (self.element, key, value, line)
            return True
        return False

    def set_in_value_set(self, key, value, line):
        word = ascii_lower(key)
        if word == "value":
            self.begin_value(value)
            return True
        if isinstance(self.element, Value):
            return self.set_in_value(key, value, line)
        return self.set_named(key, value, line) or self.set_member({"link": self.put("link")}, key, value, line)

    def begin_value(self, text):
        value_set = self.item.value_sets[-1]
        codes, _, label = text.partition(";")
        self.element = Value(parent=value_set, number=len(value_set.values) + 1)
        self.element.ranges = to_ranges(codes)
        self.element.labels = to_labels(label)
        value_set.values.append(self.element)

    def set_in_value(self, key, value, line):
        word = ascii_lower(key)
        if word == "note":
            self.element.note += note_piece(value)
            return True
        if word == "label":  # the label of the value line came first
            self.add_extra("repeated " + key, value, line)
            return True
        if word == "name":
            if self.counts(key, value, line):
                self.set_special(key, value, line)
            return True
        table = {"image": self.put("image"), "textcolor": self.put("text_color")}
        return self.set_member(table, key, value, line)

    def set_special(self, key, value, line):
        self.element.special = SPECIAL_WORDS.get(ascii_lower(to_token(value)), "")
        if not self.element.special:
            self.add_extra(key, value, line)

    def set_in_relation(self, key, value, line):
        word = ascii_lower(key)
        relation = self.layout.relations[-1]
        if word == "alias":
            relation.aliases.append(value)
            return True
        if word in ("name", "primary"):
            return self.set_member({"name": self.put("name"), "primary": self.put("primary")}, key, value, line)
        if word not in ("primarylink", "secondary", "secondarylink"):
            return False
        self.set_in_part(self.part_of_relation(relation, word), key, value, line)
        return True

    @staticmethod
    def part_of_relation(relation, word):
        """A new part begins at PrimaryLink or Secondary once the current one has its Secondary."""
        complete = relation.links and relation.links[-1].secondary is not None
        if not relation.links or (complete and word != "secondarylink"):
            relation.links.append(Link())
        return relation.links[-1]

    def set_in_part(self, part, key, value, line):
        members = {"primarylink": "primary_link", "secondary": "secondary", "secondarylink": "secondary_link"}
        place = (id(part), ascii_lower(key))
        if place in self.seen:
            self.add_extra("repeated " + key, value, line)
        else:
            self.seen[place] = (key, value, line)
            setattr(part, members[ascii_lower(key)], value)

    # --- At the end of the file ------------------------------------------------------------------------------------

    def give_languages_to_labels(self):
        for labels in self.all_labels():
            for part, (language, _) in zip(labels, self.layout.languages):
                part.language = language

    def all_labels(self):
        yield self.layout.labels
        for level in self.layout.levels:
            yield level.labels
            for item in level.ids.items:
                yield from labels_of_item(item)
            for record in level.records:
                yield record.labels
                yield from (label.labels for label in record.occurrence_labels)
                for item in record.items:
                    yield from labels_of_item(item)


def labels_of_item(item):
    yield item.labels
    yield from (label.labels for label in item.occurrence_labels)
    for value_set in item.value_sets:
        yield value_set.labels
        yield from (value.labels for value in value_set.values)


def version(text):
    """The text after "CSPro "; any other text is kept unchanged."""
    return text[len("CSPro ") :].strip(WHITE_SPACE) if text.startswith("CSPro ") else text


def read_text(data, file):
    """The JSON form of the text dictionary `data`, without problems. Raises Refused if there is no layout."""
    if first_character(data) != "[":
        raise Refused("no dictionary in text form")
    text, encoding = decode(data)
    layout = TextReader(text).read()
    layout.file = file
    layout.encoding = encoding
    return layout_json(layout)
