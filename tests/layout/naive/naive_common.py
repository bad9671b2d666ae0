"""The layout model of the naive readers, and its JSON form.

The naive readers are a second reading of the CSPro forms, written from the description of the forms alone. They value
clarity above speed: everything is held in plain Python objects, and the whole file is in memory.
"""

from dataclasses import dataclass, field
from typing import Any, List, Optional, Tuple

# White space of the CSPro forms. Other white space of Unicode (the no-break space, for example) is text.
WHITE_SPACE = " \t\r\n\v\f"

SPECIAL_WORDS = {"missing": "missing", "notappl": "notApplicable", "refused": "refused", "default": "default"}

CAPTURE_WORDS = {
    word.lower(): word
    for word in (
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
    )
}

BINARY_TYPES = ("document", "audio", "image", "geometry")


class Refused(Exception):
    """The file gives no layout at all."""


@dataclass
class Part:
    """One part of a label."""

    text: str
    language: str = ""


Labels = List[Part]


@dataclass
class OccurrenceLabel:
    occurrence: int
    labels: Labels


@dataclass
class Named:
    """The common members of dictionary, level, record, item and value set."""

    parent: Any = None
    name: str = ""
    labels: Labels = field(default_factory=list)
    note: str = ""
    aliases: List[str] = field(default_factory=list)


@dataclass
class Value:
    parent: Any = None
    number: int = 0  # from 1, in its value set
    labels: Labels = field(default_factory=list)
    note: str = ""
    special: str = ""
    image: str = ""
    text_color: str = ""
    ranges: List[Tuple[str, str]] = field(default_factory=list)


@dataclass
class ValueSet(Named):
    link: str = ""
    values: List[Value] = field(default_factory=list)


@dataclass
class Item(Named):
    type: str = "numeric"
    start: int = 0
    stored_start: Optional[int] = None  # JSON form: as written in the file
    offset: Optional[int] = None  # JSON form: of a subitem, from the start of its item
    length: int = 0
    occurrences: int = 1
    occurrence_labels: List[OccurrenceLabel] = field(default_factory=list)
    is_subitem: bool = False
    is_first: bool = False  # of its section; a level can have several [IdItems]
    subitem_of: str = ""
    decimals: int = 0
    decimal_mark: bool = False
    zero_fill: bool = False
    capture_type: str = ""
    capture_date_format: str = ""
    value_sets: List[ValueSet] = field(default_factory=list)


@dataclass
class Record(Named):
    record_type: str = ""
    required: bool = True
    maximum: int = 1
    length: Optional[int] = None
    occurrence_labels: List[OccurrenceLabel] = field(default_factory=list)
    items: List[Item] = field(default_factory=list)


@dataclass
class Ids:
    """The id record of a level."""

    parent: Any = None
    items: List[Item] = field(default_factory=list)


@dataclass
class Level(Named):
    ids: Ids = field(default_factory=Ids)
    records: List[Record] = field(default_factory=list)

    def __post_init__(self):
        self.ids.parent = self


@dataclass
class Link:
    primary_link: str = ""
    secondary: Optional[str] = None
    secondary_link: str = ""


@dataclass
class Relation:
    name: str = ""
    aliases: List[str] = field(default_factory=list)
    primary: str = ""
    links: List[Link] = field(default_factory=list)


@dataclass
class Extra:
    """A statement of the file for which the model has no member."""

    element: Any  # the element that holds the key
    key: str
    value: str
    line: Optional[int] = None


@dataclass
class Security:
    settings: Optional[str] = None
    allow_data_viewer_modifications: Optional[bool] = None
    allow_export: Optional[bool] = None
    cached_password_minutes: Optional[int] = None


@dataclass
class Layout(Named):
    file: str = ""
    format: str = ""
    format_version: str = ""
    encoding: str = ""
    languages: List[Tuple[str, str]] = field(default_factory=list)
    record_type_start: int = 0
    record_type_length: int = 0
    relative_positions: Optional[bool] = None
    decimal_mark: bool = False
    zero_fill: bool = False
    editable: bool = True
    security: Optional[Security] = None
    read_optimization: Optional[bool] = None
    enable_binary_items: Optional[bool] = None
    value_set_images: Optional[str] = None
    levels: List[Level] = field(default_factory=list)
    relations: List[Relation] = field(default_factory=list)
    extras: List[Extra] = field(default_factory=list)


# --- Texts ------------------------------------------------------------------------------------------------------------


def ascii_lower(text):
    """Keys and words are compared ignoring the case of the letters A to Z."""
    return "".join(chr(ord(c) + 32) if "A" <= c <= "Z" else c for c in text)


def cut_end(text):
    return text.rstrip(WHITE_SPACE)


def without_surrogates(text):
    """Half a surrogate pair is not a character and is replaced by U+FFFD."""
    return "".join("\N{REPLACEMENT CHARACTER}" if "\ud800" <= c <= "\udfff" else c for c in text)


def first_character(data):
    """The first character of the file after a mark and white space; None if there is none."""
    for mark, codec in ((b"\xef\xbb\xbf", "utf-8"), (b"\xff\xfe", "utf-16le"), (b"\xfe\xff", "utf-16be")):
        if data.startswith(mark):
            text = data[len(mark) :].decode(codec, "replace")
            break
    else:
        text = data.decode("latin-1")
    text = text.lstrip(WHITE_SPACE)
    return text[0] if text else None


# --- Rules for the whole layout ---------------------------------------------------------------------------------------


def records_and_ids(layout):
    """All lists of items, in the order of the file."""
    for level in layout.levels:
        yield level.ids
        yield from level.records


def all_items(layout):
    for holder in records_and_ids(layout):
        yield from holder.items


def name_items_of_subitems(layout):
    """A subitem belongs to the nearest item before it in its record that is not a subitem."""
    for holder in records_and_ids(layout):
        parent = None
        for item in holder.items:
            if item.is_first:
                parent = None
            if not item.is_subitem:
                parent = item
            elif parent is not None:
                item.subitem_of = parent.name


def share_linked_values(layout):
    """A linked value set without values has those of the linked set with the most values, the first of equals."""
    groups = {}
    for item in all_items(layout):
        for value_set in item.value_sets:
            if value_set.link:
                groups.setdefault(value_set.link, []).append(value_set)
    for group in groups.values():
        fullest = max(group, key=lambda value_set: len(value_set.values))  # max() takes the first of equals
        for value_set in group:
            if not value_set.values:
                value_set.values = fullest.values


LONGEST_NAME_IN_PATHS = 200  # in UTF-16 code units


def name_in_path(element):
    return element.name.encode("utf-16-le")[: 2 * LONGEST_NAME_IN_PATHS].decode("utf-16-le", "ignore")


def path_of(element):
    """LEVEL/RECORD/ITEM/VALUESET/#value. Long names are cut."""
    if isinstance(element, Layout):
        return ""
    if isinstance(element, Relation):
        return "relations/" + name_in_path(element)
    if isinstance(element, Level):
        return name_in_path(element)
    if isinstance(element, Ids):
        own = "(ids)"
    else:
        own = "#%d" % element.number if isinstance(element, Value) else name_in_path(element)
    return path_of(element.parent) + "/" + own


# --- JSON form --------------------------------------------------------------------------------------------------------


def members(*triples):
    """An object of (key, value, default) without values that equal their default. ALWAYS equals no value."""
    return {key: value for key, value, default in triples if value != default or type(value) is not type(default)}


ALWAYS = object()


def labels_json(labels):
    if len(labels) == 1 and not labels[0].text:
        return []
    return [members(("language", part.language, ""), ("text", part.text, ALWAYS)) for part in labels]


def named_json(element):
    return [
        ("name", element.name, ALWAYS),
        ("labels", labels_json(element.labels), []),
        ("note", cut_end(element.note), ""),
        ("aliases", element.aliases, []),
    ]


def occurrence_labels_json(labels):
    return [{"occurrence": label.occurrence, "labels": labels_json(label.labels)} for label in labels]


def value_json(value):
    return members(
        ("labels", labels_json(value.labels), []),
        ("note", cut_end(value.note), ""),
        ("special", value.special, ""),
        ("image", value.image, ""),
        ("textColor", value.text_color, ""),
        ("ranges", [members(("from", low, ALWAYS), ("to", high, "")) for low, high in value.ranges], ALWAYS),
    )


def value_set_json(value_set):
    return members(
        *named_json(value_set),
        ("link", value_set.link, ""),
        ("values", [value_json(value) for value in value_set.values], ALWAYS),
    )


def capture_json(item):
    if not item.capture_type:
        return None
    return members(("type", item.capture_type, ALWAYS), ("dateFormat", item.capture_date_format, ""))


def item_json(item):
    numeric = item.type == "numeric"
    return members(
        *named_json(item),
        ("type", item.type, ALWAYS),
        ("start", item.start, 0),
        ("length", item.length, ALWAYS),
        ("occurrences", item.occurrences, 1),
        ("occurrenceLabels", occurrence_labels_json(item.occurrence_labels), []),
        ("subitemOf", item.subitem_of, ""),
        ("decimals", item.decimals, 0),
        ("decimalMark", item.decimal_mark and numeric, False),
        ("zeroFill", item.zero_fill and numeric, False),
        ("capture", capture_json(item), None),
        ("valueSets", [value_set_json(value_set) for value_set in item.value_sets], []),
    )


def record_json(record):
    return members(
        *named_json(record),
        ("recordType", record.record_type, ""),
        ("required", record.required, True),
        ("maximum", record.maximum, 1),
        ("length", record.length, None),
        ("occurrenceLabels", occurrence_labels_json(record.occurrence_labels), []),
        ("items", [item_json(item) for item in record.items], ALWAYS),
    )


def level_json(level):
    return members(
        *named_json(level),
        ("ids", [item_json(item) for item in level.ids.items], ALWAYS),
        ("records", [record_json(record) for record in level.records], ALWAYS),
    )


def relation_link(name):
    """Both an absent link and the word of the JSON form mean "by occurrence"."""
    return "" if name == "(occurrence)" else name


def link_json(link):
    return members(
        ("primaryLink", relation_link(link.primary_link), ""),
        ("secondary", link.secondary or "", ALWAYS),
        ("secondaryLink", relation_link(link.secondary_link), ""),
    )


def relation_json(relation):
    return members(
        ("name", relation.name, ALWAYS),
        ("aliases", relation.aliases, []),
        ("primary", relation.primary, ALWAYS),
        ("links", [link_json(link) for link in relation.links], ALWAYS),
    )


def extra_json(extra):
    return members(
        ("path", path_of(extra.element), ALWAYS),
        ("key", extra.key, ALWAYS),
        ("value", extra.value, ALWAYS),
        ("line", extra.line, None),
    )


def security_json(security):
    if security is None:
        return None
    return members(
        ("settings", security.settings, None),
        ("allowDataViewerModifications", security.allow_data_viewer_modifications, None),
        ("allowExport", security.allow_export, None),
        ("cachedPasswordMinutes", security.cached_password_minutes, None),
    )


def record_type_json(layout):
    if not layout.record_type_start and not layout.record_type_length:
        return None
    return {"start": layout.record_type_start, "length": layout.record_type_length}


def layout_json(layout):
    """The JSON form of a layout without its problems."""
    return members(
        ("layoutVersion", 1, ALWAYS),
        ("file", layout.file, ALWAYS),
        ("format", layout.format, ALWAYS),
        ("formatVersion", layout.format_version, ""),
        ("encoding", layout.encoding, ""),
        ("name", layout.name, ""),
        *named_json(layout)[1:],
        ("languages", [{"name": name, "label": label} for name, label in layout.languages], []),
        ("recordType", record_type_json(layout), None),
        ("relativePositions", layout.relative_positions, None),
        ("decimalMark", layout.decimal_mark, False),
        ("zeroFill", layout.zero_fill, False),
        ("editable", layout.editable, True),
        ("security", security_json(layout.security), None),
        ("readOptimization", layout.read_optimization, None),
        ("enableBinaryItems", layout.enable_binary_items, None),
        ("valueSetImages", layout.value_set_images, None),
        ("levels", [level_json(level) for level in layout.levels], ALWAYS),
        ("relations", [relation_json(relation) for relation in layout.relations], []),
        ("extras", [extra_json(extra) for extra in layout.extras], []),
    )
