#!/usr/bin/env python3
"""Compares the layouts of statistical files with those that a plain ReadStat program reads.

    compare_plain.py PRINT_LAYOUT PLAIN_READSTAT PATH...

A path is a file or a directory. The status is 0 where every file gives the same layout, or none, in both programs.
"""

import json
import pathlib
import subprocess
import sys

NOT_COMPARED = {"file", "extras", "problems"}


def output_of(command):
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    return result.stdout.decode("utf-8", "replace")


def layout_of(program, path):
    """The layout that a program prints; None if the file has none."""
    text = output_of([program, str(path)])
    layout = json.loads(text, strict=False) if text else {"error": None}
    return None if "error" in layout else {key: value for key, value in layout.items() if key not in NOT_COMPARED}


def differences(left, right, path=""):
    if isinstance(left, dict) and isinstance(right, dict):
        if list(left) != list(right):
            yield f"{path}: keys {list(left)} / {list(right)}"
        for key in left.keys() & right.keys():
            yield from differences(left[key], right[key], f"{path}/{key}")
    elif isinstance(left, list) and isinstance(right, list):
        if len(left) != len(right):
            yield f"{path}: {len(left)} / {len(right)} elements"
        for index, (one, other) in enumerate(zip(left, right)):
            yield from differences(one, other, f"{path}/{index}")
    elif left != right:
        yield f"{path}: {left!r} / {right!r}"


def files_of(paths):
    for path in map(pathlib.Path, paths):
        yield from sorted(path.iterdir()) if path.is_dir() else [path]


def main():
    print_layout, plain_readstat, *paths = sys.argv[1:]
    compared = 0
    differing = 0
    for file in files_of(paths):
        compared += 1
        found = list(differences(layout_of(print_layout, file), layout_of(plain_readstat, file)))
        differing += bool(found)
        for difference in found[:5]:
            print(f"{file.name}: {difference}")
    print(f"{compared} files, {differing} differ")
    return 1 if differing or not compared else 0


if __name__ == "__main__":
    sys.exit(main())
