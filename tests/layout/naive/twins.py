"""Removes from a layout what the two forms of one dictionary cannot have in common, so that they can be compared."""

import copy


def normalised(layout):
    """A copy of a layout's JSON form that is equal for the text form and the JSON form of one dictionary."""
    layout = copy.deepcopy(layout)
    # These keys describe the file itself. CSPro encrypts the settings of `security` anew, and the forms have different
    # other members of it; `readOptimization` and `enableBinaryItems` exist in the JSON form, `valueSetImages` in the
    # text form. An extra statement of one form is not in the other.
    for key in (
        "format",
        "formatVersion",
        "file",
        "encoding",
        "security",
        "readOptimization",
        "enableBinaryItems",
        "valueSetImages",
        "extras",
        "problems",
    ):
        layout.pop(key, None)
    # The JSON form has no languages if English is the only one.
    if layout.get("languages") == [{"name": "EN", "label": "English"}]:
        del layout["languages"]
    normalise_named(layout)
    for level in layout["levels"]:
        normalise_level(level)
    drop_lonely_links(layout)
    return layout


def normalise_level(level):
    normalise_named(level)
    for item in level["ids"]:
        normalise_item(item)
    for record in level["records"]:
        normalise_named(record)
        record.pop("length", None)  # the JSON form has no record length
        for item in record["items"]:
            normalise_item(item)


def normalise_named(element):
    """Labels and occurrence labels of an element."""
    if "labels" in element:
        element["labels"] = normalised_labels(element["labels"])
        if not element["labels"]:
            del element["labels"]
    for label in element.get("occurrenceLabels", []):
        label["labels"] = normalised_labels(label["labels"])


def normalised_labels(labels):
    """The JSON form omits texts that fall back to the first part, and the language of a label that has one part."""
    if not labels:
        return []
    first = next((part["text"] for part in labels if part["text"]), "")  # CSPro fills an empty first part
    rest = [part for part in labels[1:] if part["text"] not in ("", first)]
    if not rest:
        return [{"text": first}] if first else []
    return [dict(labels[0], text=first), *rest]


def normalise_item(item):
    normalise_named(item)
    for value_set in item.get("valueSets", []):
        normalise_named(value_set)
        for value in value_set["values"]:
            normalise_value(value)


def normalise_value(value):
    normalise_named(value)
    # The JSON form cuts blanks at the end of codes and writes paths with slashes.
    for one in value["ranges"]:
        for end in one:
            one[end] = one[end].rstrip(" ")
    if "image" in value:
        value["image"] = value["image"].replace("\\", "/").removeprefix("./")


def drop_lonely_links(layout):
    """The JSON form has no link of a value set that is linked with no other."""
    members = {}
    for level in layout["levels"]:
        for holder in (level["ids"], *(record["items"] for record in level["records"])):
            for item in holder:
                for value_set in item.get("valueSets", []):
                    members.setdefault(value_set.get("link"), []).append(value_set)
    for group in members.values():
        if len(group) == 1:
            group[0].pop("link", None)
