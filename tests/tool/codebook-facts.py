#!/usr/bin/env python3
"""Compares the page of `vanlayout codebook` with `vanlayout show --format json`, key by key: each has all that the
other has, and nothing else.

    codebook-facts.py TOOL DIRECTORY...    all files of the directories that are layouts; a directory that is absent is left out
"""

import html
import json
import os
import re
import subprocess
import sys
import tempfile


class Page:
    """The data of a page, in the form of `show`."""

    def __init__(self, text):
        self.text = text
        self.data = json.loads(re.search('<script type="application/json" id="page-data">(.*?)</script>', text,
                                         re.DOTALL).group(1))
        self.languages = [language for language, _ in self.data.get("languages", [])]
        self.is_statistical = self.data.get("isStatistical", False)
        self.facts = {term: html.unescape(value) for term, value in re.findall(
            '<dt>(.*?)</dt><dd dir="auto">(.*?)</dd>', text, re.DOTALL)}

    def layout(self):
        data = self.data
        layout = self.head(data) | self.copied(data, {"weight": "weight"})
        if "recordType" in data:
            layout["recordType"] = dict(zip(("start", "length"), data["recordType"]))
        layout["levels"] = [self.level(level) for level in data.get("levels", [])]
        if "relations" in data:
            layout["relations"] = [self.relation(relation) for relation in data["relations"]]
        if "problems" in data:
            layout["problems"] = [self.problem(problem) for problem in data["problems"]]
        return layout

    @staticmethod
    def copied(element, names):
        return {name: element[key] for key, name in names.items() if key in element}

    def head(self, element):
        head = self.copied(element, {"name": "name", "note": "note", "aliases": "aliases"})
        if "label" in element:
            head["labels"] = self.labels(element["label"])
        return head

    def labels(self, label):
        """Language and text of each part; the page has no language for a single part."""
        if isinstance(label, str):
            return [label]
        pairs = [part if isinstance(part, list) else (place, part) for place, part in enumerate(label)]
        return [(self.languages[number].lower(), text) for number, text in pairs]

    def level(self, level):
        return self.head(level) | {"ids": [self.item(item) for item in level.get("ids", [])],
                                   "records": [self.record(record) for record in level.get("records", [])]}

    def record(self, record):
        made = self.head(record) | self.copied(record, {"type": "recordType", "maximum": "maximum", "length": "length"})
        if record.get("isOptional"):
            made["required"] = False
        return made | self.occurrence_labels(record) | {"items": [self.item(item) for item in record.get("items", [])]}

    def occurrence_labels(self, element):
        if "occurrenceLabels" not in element:
            return {}
        return {"occurrenceLabels": [(occurrence, self.labels(label))
                                     for occurrence, label in element["occurrenceLabels"]]}

    def item(self, item):
        made = self.head(item) | self.occurrence_labels(item)
        made |= {"type": item.get("type", "numeric"), "length": item.get("length", 0)}
        made |= self.copied(item, {"start": "start", "occurrences": "occurrences", "subitemOf": "subitemOf",
                                   "decimals": "decimals", "hasMark": "decimalMark", "isZeroFilled": "zeroFill",
                                   "storage": "storage", "measure": "measure", "alignment": "alignment",
                                   "displayWidth": "displayWidth"})
        if self.is_statistical:
            made["format"] = item.get("format", item.get("form"))
        if "capture" in item or "dateFormat" in item:
            made["capture"] = self.copied(item, {"capture": "type", "dateFormat": "dateFormat"})
        if "missing" in item:
            made["missing"] = self.ranges(item["missing"])
        if "sets" in item:
            made["valueSets"] = [self.value_set(value_set) for value_set in item["sets"]]
        return made

    def value_set(self, value_set):
        return self.head(value_set) | self.copied(value_set, {"link": "link"}) | {
            "values": [self.value(*value) for value in self.data["lists"][value_set["list"]]]}

    def value(self, codes, label=None, more=None):
        more = dict(more or {})
        if more.get("special") == "not applicable":
            more["special"] = "notApplicable"
        made = {"ranges": self.ranges(codes)} | more
        return made if label is None else made | {"labels": self.labels(label)}

    @staticmethod
    def ranges(codes):
        codes = [codes] if isinstance(codes, str) else codes
        return [{"from": code} if isinstance(code, str) else {"from": code[0], "to": code[1]} for code in codes]

    def relation(self, relation):
        links = [{key: text for key, text in zip(("primaryLink", "secondary", "secondaryLink"), link)
                  if text or key == "secondary"} for link in relation.get("links", [])]
        return {"primary": ""} | self.copied(relation, {"name": "name", "primary": "primary",
                                                                    "aliases": "aliases"}) | {"links": links}

    @staticmethod
    def problem(problem):
        severity, name, line, path, message = problem
        return {"severity": severity, "id": name, "message": message} | ({"line": line} if line else {}) \
            | ({"path": path} if path else {})


# Keys that are in the head of a page or on no page: settings of the programs that maintain a dictionary.
HEAD_KEYS = {"name": "Name", "encoding": "Encoding", "weight": "Weight"}
KEYS_OF_NO_DATA = {"layoutVersion", "file", "format", "container", "formatVersion", "encoding", "languages", "aliases",
                   "relativePositions", "rows", "created", "modified", "decimalMark", "zeroFill", "editable", "security",
                   "readOptimization", "enableBinaryItems", "valueSetImages", "extras"}


def plain(element):
    """An element of `show` as the page can have it: labels in short, and no empty names."""
    if isinstance(element, list):
        return [plain(entry) for entry in element]
    if not isinstance(element, dict):
        return element
    made = {key: plain(value) for key, value in element.items() if key != "name" or value != ""}
    for key in {"labels", "occurrenceLabels"} & made.keys():
        made[key] = plain_labels(element[key]) if key == "labels" else \
            [(entry["occurrence"], plain_labels(entry.get("labels", []))) for entry in element[key]]
    return made


def plain_labels(labels):
    if len(labels) == 1:
        return [labels[0]["text"]]
    return [(part.get("language", "").lower(), part["text"]) for part in labels]


def with_formats(shown):
    """Each item of a statistical file with its format, stated or not."""
    for level in shown["levels"]:
        for record in level["records"]:
            for item in record["items"]:
                item.setdefault("format", "")
    return shown


def differences(page, shown, path=""):
    if isinstance(page, dict) and isinstance(shown, dict):
        for key in sorted(page.keys() | shown.keys()):
            yield from differences(page.get(key), shown.get(key), path + "/" + key)
    elif isinstance(page, list) and isinstance(shown, list) and len(page) == len(shown):
        for number, (one, other) in enumerate(zip(page, shown)):
            yield from differences(one, other, path + "/" + str(number))
    elif page != shown:
        yield "%s: %.200r on the page, %.200r shown" % (path, page, shown)


def head_differences(page, shown):
    for key, term in HEAD_KEYS.items():
        yield from differences(page.facts.get(term), shown.get(key), "head/" + key)
    yield from differences(page.facts.get("File"), os.path.basename(shown["file"]), "head/file")
    for key, term in (("created", "Created"), ("modified", "Modified")):
        yield from differences(page.facts.get(term), shown[key].replace("T", " ") if key in shown else None,
                               "head/" + key)
    yield from differences(page.facts.get("Rows"), format(shown["rows"], ",") if "rows" in shown else None, "head/rows")
    names = ", ".join(language.get("label") or language["name"] for language in shown.get("languages", []))
    yield from differences(page.facts.get("Languages", ""), names, "head/languages")
    yield from differences(page.facts.get("Aliases", ""), ", ".join(shown.get("aliases", [])), "head/aliases")
    positions = {None: None, True: "relative", False: "absolute"}[shown.get("relativePositions")]
    yield from differences(page.facts.get("Positions"), positions, "head/positions")
    declared = [[language["name"], language.get("label", "")] for language in shown.get("languages", [])]
    yield from differences(page.data.get("languages", [])[:len(declared)], declared, "languages")


def compare(tool, file, directory):
    """The differences; None if the file has no layout."""
    answer = subprocess.run([tool, "show", "--format", "json", file], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                            check=False)
    if answer.returncode != 0:
        return None
    output = os.path.join(directory, "page.html")
    subprocess.run([tool, "codebook", file, "-o", output], stderr=subprocess.DEVNULL, check=True)
    with open(output, encoding="utf-8") as text:
        page = Page(text.read())
    shown = json.loads(answer.stdout)
    found = list(head_differences(page, shown))
    if page.is_statistical:
        shown = with_formats(shown)
    shown = plain({key: value for key, value in shown.items() if key not in KEYS_OF_NO_DATA})
    made = page.layout()
    made.pop("aliases", None)
    return found + list(differences(made, shown))


def main(arguments):
    tool, *directories = arguments
    files = [os.path.join(place, name) for directory in directories for place, _, names in os.walk(directory)
             for name in sorted(names)]
    compared = failures = 0
    with tempfile.TemporaryDirectory() as directory:
        for file in files:
            found = compare(tool, file, directory)
            compared += found is not None
            if found:
                failures += 1
                print("FAIL  ", file, *found[:10], sep="\n       ")
    print(compared, "pages compared,", failures, "failed")
    return 1 if failures or compared == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
