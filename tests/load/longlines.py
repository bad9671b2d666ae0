#!/usr/bin/env python3
"""Makes a small dictionary and its data with lines of more than 40,000 characters, which some programs read in pieces.

    longlines.py DIRECTORY      DIRECTORY/long-lines.dcf and DIRECTORY/long-lines.dat

As a module: variants(directory), as in survey.py: wide and long occurrences.
"""

import json
import os
import random
import sys

import survey

# Items at the begin and the end of the line, and over the columns at which a piece of the line may end.
ITEMS = [("FIRST", "numeric", 6, 4, 1), ("NAME", "alpha", 15990, 20, 1), ("AMOUNT", "numeric", 15995, 10, 1),
         ("AREA", "numeric", 16000, 4, 600), ("LAST", "alpha", 40000, 12, 1), ("NUMBER", "numeric", 40012, 3, 1),
         ("HUGE", "numeric", 40015, 40, 1)]


def label(text):
    return [{"text": text}]


def item(name, kind, start, length, times):
    element = {"name": name, "labels": label(name.capitalize()), "contentType": kind, "start": start, "length": length}
    if kind == "numeric":
        element["zeroFill"] = False
    if times > 1:
        element["occurrences"] = {"maximum": times}
    return element | ({"decimals": 2, "decimalMark": False} if name in ("AMOUNT", "HUGE") else {})


def dictionary():
    record = {"name": "FARM", "labels": label("Farm"), "recordType": "F", "occurrences": {"required": True, "maximum": 2},
              "items": [item(*each) for each in ITEMS]}
    ids = [item("ID", "numeric", 2, 4, 1)]
    return {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "LONG_DICT", "labels": label("Long lines"),
            "recordType": {"start": 1, "length": 1}, "relativePositions": False,
            "levels": [{"name": "FARM_LEVEL", "labels": label("Farm"), "ids": {"items": ids}, "records": [record]}]}


def cells(draw):
    made = {}
    for name, kind, start, length, times in ITEMS:
        for k in range(times):
            if times == 1 or draw.random() < 0.05:
                text = "x%d" % draw.randrange(9999) if kind == "alpha" else str(draw.randrange(10 ** (length - 1)))
                made[start + k * length] = text[:length].rjust(length) if draw.random() < 0.8 else "-".ljust(length)
    return made


def line(number, draw):
    text = bytearray(b" " * 40060)
    text[0:5] = b"F" + b"%4d" % (number // 2)
    # An item may lie over another one: the later is written over it.
    for start, cell in sorted(cells(draw).items()):
        text[start - 1:start - 1 + len(cell)] = cell.encode("ascii")
    return bytes(text).rstrip(b" ") if number % 3 else bytes(text)


def make(directory):
    draw = random.Random(7)
    paths = [os.path.join(directory, "long-lines" + extension) for extension in (".dcf", ".dat")]
    with open(paths[0], "w", encoding="utf-8") as file:
        json.dump(dictionary(), file, indent=1)
    lines = [line(number, draw) for number in range(6)] + [b"", b"F   9", b"X unknown"]
    with open(paths[1], "wb") as file:
        file.write(b"\xef\xbb\xbf" + b"\r\n".join(lines) + b"\r\n")
    return paths


def variants(directory):
    paths = make(directory)
    return [survey.Variant("long lines, " + form, *paths, ["--occurrences", form], "ascii", False) for form in ("wide", "long")]


if __name__ == "__main__":
    make(sys.argv[1])
