"""Naive reader of the JSON form of a CSPro dictionary."""

import json
import re
import sys
from dataclasses import dataclass
from decimal import Decimal
from typing import Any

from naive_common import (
    BINARY_TYPES,
    CAPTURE_WORDS,
    SPECIAL_WORDS,
    Extra,
    Item,
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
    without_surrogates,
)

sys.setrecursionlimit(100000)

INT_MAX = 2**31 - 1
INT_MIN = -(2**31)

DIGITS = re.compile("-?[0-9]+")  # texts that are converted to a number, in addition to the spellings of a JSON number
NUMBER = re.compile(r"-?(?:0|[1-9][0-9]*)(?:\.[0-9]+)?(?:[eE][+-]?[0-9]+)?")
SPACE = re.compile(r"(?:[ \t\r\n]|//[^\n]*|/\*.*?\*/)*", re.DOTALL)
PLAIN_CHARACTERS = re.compile(r'[^"\\\x00-\x1f]*')
ESCAPES = {'"': '"', "\\": "\\", "/": "/", "b": "\b", "f": "\f", "n": "\n", "r": "\r", "t": "\t"}


# --- JSON -------------------------------------------------------------------------------------------------------------


@dataclass
class Number:
    """A number in the spelling of the file."""

    spelling: str


@dataclass
class Object:
    """The members in the order of the file, including repeated ones."""

    pairs: list


class JsonParser:
    """JSON with comments, as a tree of Object, list, str, Number, bool and None."""

    def __init__(self, text):
        self.text = text
        self.position = 0

    def parse(self):
        value = self.value()
        if self.peek():
            raise Refused("text after the end of the JSON document")
        return value

    def peek(self):
        """The next character after white space and comments; "" at the end."""
        self.position = SPACE.match(self.text, self.position).end()
        return self.text[self.position : self.position + 1]

    def take(self, wanted):
        if self.peek() != wanted:
            raise Refused("%s is missing at character %d" % (wanted, self.position))
        self.position += 1

    def value(self):
        character = self.peek()
        if character == "{":
            return Object(self.sequence("{", "}", self.member))
        if character == "[":
            return self.sequence("[", "]", self.value)
        if character == '"':
            return self.string()
        for word, value in (("true", True), ("false", False), ("null", None)):
            if self.text.startswith(word, self.position):
                self.position += len(word)
                return value
        return self.number()

    def sequence(self, begin, end, element):
        elements = []
        self.take(begin)
        if self.peek() != end:
            elements.append(element())
            while self.peek() == ",":
                self.position += 1
                elements.append(element())
        self.take(end)
        return elements

    def member(self):
        self.peek()
        key = self.string()
        self.take(":")
        return key, self.value()

    def number(self):
        match = NUMBER.match(self.text, self.position)
        if not match:
            raise Refused("no JSON value at character %d" % self.position)
        self.position = match.end()
        return Number(match.group())

    def string(self):
        self.take('"')
        pieces = []
        while True:
            plain = PLAIN_CHARACTERS.match(self.text, self.position)
            pieces.append(plain.group())
            self.position = plain.end()
            character = self.text[self.position : self.position + 1]
            if character not in ('"', "\\"):
                raise Refused("a text is not closed at character %d" % self.position)
            self.position += 1
            if character == '"':
                return joined("".join(pieces))
            pieces.append(self.escape())

    def escape(self):
        character = self.text[self.position : self.position + 1]
        self.position += 1
        if character in ESCAPES:
            return ESCAPES[character]
        digits = self.text[self.position : self.position + 4]
        if character != "u" or not re.fullmatch("[0-9A-Fa-f]{4}", digits):
            raise Refused("bad escape at character %d" % self.position)
        self.position += 4
        return chr(int(digits, 16))


def joined(text):
    """Surrogate pairs become one character, half a pair becomes U+FFFD."""
    if not re.search("[\ud800-\udfff]", text):
        return text
    pair = re.compile("([\ud800-\udbff])([\udc00-\udfff])")
    whole = pair.sub(lambda m: chr(0x10000 + ((ord(m[1]) - 0xD800) << 10) + ord(m[2]) - 0xDC00), text)
    return without_surrogates(whole)


def spelling(node):
    """The JSON spelling of a value, without white space."""
    if isinstance(node, Object):
        return "{" + ",".join(spelling(key) + ":" + spelling(value) for key, value in node.pairs) + "}"
    if isinstance(node, list):
        return "[" + ",".join(map(spelling, node)) + "]"
    if isinstance(node, Number):
        return node.spelling
    return json.dumps(node, ensure_ascii=False)


# --- Values of members ------------------------------------------------------------------------------------------------


class WrongType(Exception):
    pass


def to_text(node):
    if isinstance(node, str):
        return node
    if isinstance(node, Number):
        return node.spelling
    raise WrongType


def to_number(node):
    spelled = node.spelling if isinstance(node, Number) else node
    if not isinstance(spelled, str) or not (NUMBER.fullmatch(spelled) or DIGITS.fullmatch(spelled)):
        raise WrongType
    return Decimal(spelled)


def to_int(node):
    number = to_number(node)
    if not INT_MIN <= number <= INT_MAX or number != int(number):
        raise WrongType
    return int(number)


def to_bool(node):
    if isinstance(node, bool):
        return node
    if node in ("true", "false"):
        return node == "true"
    raise WrongType


def to_list(node):
    if not isinstance(node, list):
        raise WrongType
    return node


def to_object(node):
    if not isinstance(node, Object):
        raise WrongType
    return node


def to_version(node):
    """The number with one decimal at least."""
    plain = "{:f}".format(Decimal(repr(float(to_number(node)) + 0.0)))  # -0 is 0
    return plain if "." in plain else plain + ".0"


class Members:
    """The known members of one JSON object, with everything else put into the extras of the layout.

    `element` is the named element that holds the object, `prefix` leads from it to the object.
    """

    def __init__(self, layout, element, node, known, prefix=""):
        self.layout = layout
        self.element = element
        self.prefix = prefix
        self.values = {}
        seen = set()
        for key, value in node.pairs:
            if key in seen:  # the first one is used
                self.layout.extras.append(Extra(element, "repeated " + prefix + key, spelling(value)))
            elif key not in known:
                self.keep(key, value)
            elif value is not None:  # null counts as absent
                self.values[key] = value
            seen.add(key)

    def keep(self, key, node):
        self.layout.extras.append(Extra(self.element, self.prefix + key, spelling(node)))

    def get(self, key, convert, default):
        node = self.values.get(key)
        if node is None:
            return default
        try:
            return convert(node)
        except WrongType:
            self.keep(key, node)
            return default

    def list_of(self, key, convert):
        """The elements of a list; those of a wrong type are extras."""
        elements = []
        for node in self.get(key, to_list, []):
            try:
                elements.append(convert(node))
            except WrongType:
                self.keep(key, node)
        return elements

    def inside(self, node, known, name):
        """The members of an object without a name within this one."""
        return Members(self.layout, self.element, node, known, self.prefix + name + ".")

    def object(self, key, known):
        """The members of the object at `key`, None if there is none."""
        node = self.get(key, to_object, None)
        return None if node is None else self.inside(node, known, key)

    def labels(self, key="labels"):
        parts = []
        for node in self.list_of(key, to_object):
            part = self.inside(node, ("text", "language"), key)
            parts.append(Part(text=part.get("text", to_text, ""), language=part.get("language", to_text, "")))
        return parts

    def aliases(self):
        return self.list_of("aliases", to_text)


# --- Parts of the dictionary ------------------------------------------------------------------------------------------

NAMED = ("name", "aliases", "labels", "note")


class JsonReader:
    def __init__(self, root):
        self.root = root
        self.layout = Layout(format="cspro-json", encoding="utf-8")

    def members(self, element, node, *known):
        return Members(self.layout, element, node, known)

    def read(self):
        self.read_dictionary(self.root)
        name_items_of_subitems(self.layout)
        place_items(self.layout)
        self.keep_unused_offsets()
        share_linked_values(self.layout)
        return self.layout

    def keep_unused_offsets(self):
        for level in self.layout.levels:
            for holder in (level.ids, *level.records):
                parent = None
                for item in holder.items:
                    if not item.is_subitem:
                        parent = item
                    elif parent and item.offset is not None and item.start != parent.start + item.offset:
                        self.layout.extras.append(Extra(item, "subitemOffset", str(item.offset)))

    @staticmethod
    def read_named(element, members):
        element.name = members.get("name", to_text, "")
        element.aliases = members.aliases()
        element.labels = members.labels()
        element.note = members.get("note", to_text, "")

    def read_dictionary(self, node):
        layout = self.layout
        members = self.members(
            layout,
            node,
            *NAMED,
            "software",
            "editable",
            "version",
            "fileType",
            "languages",
            "security",
            "readOptimization",
            "enableBinaryItems",
            "recordType",
            "defaults",
            "relativePositions",
            "levels",
            "relations",
        )
        self.read_file_type(members)
        self.read_named(layout, members)
        layout.editable = members.get("editable", to_bool, True)
        layout.format_version = members.get("version", to_version, "")
        layout.languages = [
            self.read_language(members, language) for language in members.list_of("languages", to_object)
        ]
        layout.security = self.read_security(members)
        layout.read_optimization = members.get("readOptimization", to_bool, None)
        layout.enable_binary_items = members.get("enableBinaryItems", to_bool, None)
        self.read_record_type(members)
        self.read_defaults(members)
        layout.relative_positions = members.get("relativePositions", to_bool, None)
        layout.levels = [self.read_level(level) for level in members.list_of("levels", to_object)]
        layout.relations = [self.read_relation(relation) for relation in members.list_of("relations", to_object)]

    @staticmethod
    def read_file_type(members):
        """The usual words are ignored; any other software is kept, a file of any other type is not a dictionary."""
        if members.get("software", to_text, "CSPro") != "CSPro":
            members.keep("software", members.values["software"])
        if members.get("fileType", to_text, "dictionary") != "dictionary":
            raise Refused("the file is no dictionary")

    @staticmethod
    def read_language(members, node):
        language = members.inside(node, ("name", "label"), "languages")
        return language.get("name", to_text, ""), language.get("label", to_text, "")

    @staticmethod
    def read_security(members):
        known = ("settings", "allowDataViewerModifications", "allowExport", "cachedPasswordMinutes")
        security = members.object("security", known)
        if security is None:
            return None
        return Security(
            security.get("settings", to_text, None),
            security.get("allowDataViewerModifications", to_bool, None),
            security.get("allowExport", to_bool, None),
            security.get("cachedPasswordMinutes", to_int, None),
        )

    def read_record_type(self, members):
        record_type = members.object("recordType", ("start", "length"))
        if record_type is not None:
            self.layout.record_type_start = record_type.get("start", to_int, 0)
            self.layout.record_type_length = record_type.get("length", to_int, 0)

    def read_defaults(self, members):
        defaults = members.object("defaults", ("decimalMark", "zeroFill"))
        if defaults is not None:
            self.layout.decimal_mark = defaults.get("decimalMark", to_bool, False)
            self.layout.zero_fill = defaults.get("zeroFill", to_bool, False)

    def read_level(self, node):
        level = Level(parent=self.layout)
        members = self.members(level, node, *NAMED, "ids", "records")
        self.read_named(level, members)
        ids = members.get("ids", to_object, None)
        if ids is not None:
            self.read_items(level.ids, self.members(level.ids, ids, "items"))
        level.records = [self.read_record(level, record) for record in members.list_of("records", to_object)]
        return level

    def read_record(self, level, node):
        record = Record(parent=level)
        members = self.members(record, node, *NAMED, "recordType", "occurrences", "items")
        self.read_named(record, members)
        record.record_type = members.get("recordType", to_text, "")
        occurrences = members.object("occurrences", ("required", "maximum", "labels"))
        if occurrences is not None:
            record.required = occurrences.get("required", to_bool, True)
            record.maximum = occurrences.get("maximum", to_int, 1)
            record.occurrence_labels = self.read_occurrence_labels(occurrences)
        self.read_items(record, members)
        return record

    @staticmethod
    def read_occurrence_labels(occurrences):
        labels = []
        for node in occurrences.list_of("labels", to_object):
            kept = len(occurrences.layout.extras)
            label = occurrences.inside(node, ("occurrence", "labels"), "labels")
            occurrence = label.get("occurrence", to_int, 0)
            parts = label.labels()
            if occurrence >= 1:
                labels.append(OccurrenceLabel(occurrence, parts))
            else:  # no occurrence that could have a label: the whole element is one extra
                del occurrences.layout.extras[kept:]
                occurrences.keep("labels", node)
        return labels

    def read_items(self, holder, members):
        for node in members.list_of("items", to_object):
            holder.items.append(self.read_item(holder, node))

    def read_item(self, holder, node):
        item = Item(parent=holder)
        members = self.members(
            item,
            node,
            *NAMED,
            "occurrences",
            "contentType",
            "subitem",
            "start",
            "subitemOffset",
            "length",
            "decimals",
            "decimalMark",
            "zeroFill",
            "capture",
            "valueSets",
        )
        self.read_named(item, members)
        occurrences = members.object("occurrences", ("maximum", "labels"))
        if occurrences is not None:
            item.occurrences = occurrences.get("maximum", to_int, 1)
            item.occurrence_labels = self.read_occurrence_labels(occurrences)
        item.type = ascii_lower(members.get("contentType", to_text, ""))
        self.read_place(holder, item, members)
        item.decimals = members.get("decimals", to_int, 0)
        item.decimal_mark = members.get("decimalMark", to_bool, False) and item.decimals > 0
        item.zero_fill = members.get("zeroFill", to_bool, self.layout.zero_fill)
        self.read_capture(item, members)
        item.value_sets = [
            self.read_value_set(item, value_set) for value_set in members.list_of("valueSets", to_object)
        ]
        return item

    @staticmethod
    def read_place(holder, item, members):
        item.is_subitem = members.get("subitem", to_bool, False)
        length = members.get("length", to_int, None)
        if item.type in BINARY_TYPES and length not in (None, 1):
            members.layout.extras.append(Extra(item, "length", str(length)))
        item.length = 1 if item.type in BINARY_TYPES else length or 0
        item.stored_start = members.get("start", to_int, None)
        item.offset = members.get("subitemOffset", to_int, None)
        has_parent = any(not before.is_subitem for before in holder.items)
        if item.offset is not None and not (item.is_subitem and has_parent):
            members.keep("subitemOffset", members.values["subitemOffset"])  # an offset from nothing

    @staticmethod
    def read_capture(item, members):
        capture = members.object("capture", ("type", "dateFormat"))
        if capture is None:
            return
        word = capture.get("type", to_text, "unspecified")
        item.capture_type = CAPTURE_WORDS.get(ascii_lower(word), "")
        item.capture_date_format = capture.get("dateFormat", to_text, "").upper()
        if not item.capture_type and ascii_lower(word) != "unspecified":
            capture.keep("type", capture.values["type"])
        if not item.capture_type and item.capture_date_format:
            capture.keep("dateFormat", capture.values["dateFormat"])

    def read_value_set(self, item, node):
        value_set = ValueSet(parent=item)
        members = self.members(value_set, node, *NAMED, "link", "values")
        self.read_named(value_set, members)
        value_set.link = members.get("link", to_text, "")
        for number, value in enumerate(members.list_of("values", to_object), 1):
            value_set.values.append(self.read_value(value_set, number, value))
        return value_set

    def read_value(self, value_set, number, node):
        value = Value(parent=value_set, number=number)
        members = self.members(value, node, "labels", "note", "image", "textColor", "special", "pairs")
        value.labels = members.labels()
        value.note = members.get("note", to_text, "")
        value.image = members.get("image", to_text, "")
        value.text_color = members.get("textColor", to_text, "")
        word = members.get("special", to_text, None)
        if word is not None:
            value.special = SPECIAL_WORDS.get(ascii_lower(word), "")
            if not value.special:
                members.keep("special", members.values["special"])
        for pair in members.list_of("pairs", to_object):
            self.read_pair(value, members, pair)
        return value

    @staticmethod
    def read_pair(value, members, node):
        """One code or a range. A pair that is neither is an extra as a whole."""
        kept = len(members.layout.extras)
        pair = members.inside(node, ("value", "range"), "pairs")
        code = pair.get("value", to_text, None)
        ends = pair.get("range", to_range, None)
        if code is not None:
            value.ranges.append((code, ""))
            if ends is not None:
                pair.keep("range", pair.values["range"])
        elif ends is not None:
            value.ranges.append(ends)
        else:
            del members.layout.extras[kept:]
            members.keep("pairs", node)

    def read_relation(self, node):
        relation = Relation()
        members = self.members(relation, node, "name", "aliases", "primary", "links")
        relation.name = members.get("name", to_text, "")
        relation.aliases = members.aliases()
        relation.primary = members.get("primary", to_text, "")
        for part in members.list_of("links", to_object):
            link = members.inside(part, ("primaryLink", "secondary", "secondaryLink"), "links")
            relation.links.append(
                Link(
                    link.get("primaryLink", to_text, ""),
                    link.get("secondary", to_text, ""),
                    link.get("secondaryLink", to_text, ""),
                )
            )
        return relation


def to_range(node) -> Any:
    if len(to_list(node)) != 2:
        raise WrongType
    return to_text(node[0]), to_text(node[1])


# --- Columns ----------------------------------------------------------------------------------------------------------


def place_items(layout):
    """Sets the first column of each item; a stored one has precedence."""
    next_column = place_ids(layout) if layout.relative_positions else None
    for level in layout.levels:
        if next_column is None:
            place_in_record(level.ids.items, None)
        for record in level.records:
            place_in_record(record.items, next_column)


def place_ids(layout):
    """Lays out the ids of all levels around the record type. Returns the column after all of them."""
    type_start, type_length = layout.record_type_start, layout.record_type_length
    type_is_placed = type_start <= 0
    next_column = 1
    end = 1  # after the last stored id
    for level in layout.levels:
        parent = None
        for item in level.ids.items:
            if not type_is_placed and type_start <= next_column:
                next_column += type_length
                type_is_placed = True
            place(item, parent, next_column)
            if not item.is_subitem:
                parent = item
                next_column += width(item)
                end = max(end, item.start + width(item))
    return max(end, next_column if type_is_placed else next_column + type_length)


def place_in_record(items, next_column):
    """Lays out items one after another from `next_column`; if it is None, only stored columns are set."""
    parent = None
    for item in items:
        place(item, parent, next_column)
        if not item.is_subitem:
            parent = item
            next_column = next_column and next_column + width(item)


def place(item, parent, next_column):
    """The stored column, else for a subitem its distance from its item, else the next one."""
    if item.stored_start is not None:
        item.start = item.stored_start
    elif not item.is_subitem:
        item.start = next_column or 0
    elif parent and parent.start and item.offset is not None:
        item.start = parent.start + item.offset


def width(item):
    return item.length * item.occurrences


def read_json(data, file):
    """The JSON form of the JSON dictionary `data`, without problems. Raises Refused if there is no layout."""
    if first_character(data) != "{":
        raise Refused("no dictionary in JSON form")
    text = (data[3:] if data.startswith(b"\xef\xbb\xbf") else data).decode("utf-8", "replace")
    layout = JsonReader(JsonParser(text).parse()).read()
    layout.file = file
    return layout_json(layout)
