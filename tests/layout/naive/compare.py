#!/usr/bin/env python3
"""Compares the layouts that a tool reads with those of the naive readers.

    compare.py TOOL [--corpus DIR [--mutated N]] [--random N] [--seed S] [--without KIND]... [--keep DIR]
    compare.py TOOL --corpus DIR --statistical PLAIN

TOOL is called as `TOOL show --format json FILE...`. With --corpus the dictionaries of DIR/cspro-text and DIR/cspro-json
are compared, with --random N dictionaries of generate.py, with --mutated N changed ones of DIR. With
--statistical the files of DIR/spss, DIR/stata and DIR/sas are compared with what the program PLAIN
(tests/layout/plain_readstat.c) prints of them. The status is 1 where anything differs; each difference is one line on
standard output.
"""

import argparse
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
from collections import Counter

import generate
import naive
import naive_json
from naive_common import Refused
from twins import normalised

FILES_A_CALL = 100
DIFFERENCES_A_FILE = 8
LARGEST_MUTATED = 100000  # bytes; larger files only take more time
SEVERITIES = ("error", "warning", "info")
PROBLEM_KEYS = ("severity", "id", "line", "path", "message")


# --- Two JSON values --------------------------------------------------------------------------------------------------


def without_twice(pairs):
    """An object of the tool's output; a key that occurs twice in it is a fault."""
    keys = Counter(key for key, _ in pairs)
    twice = [key for key, count in keys.items() if count > 1]
    if twice:
        raise ValueError("the output has the key %s twice" % twice[0])
    return dict(pairs)


def differences(naive_value, tool_value, path=""):
    """One text for each place where two JSON values differ, in value or in the order of keys."""
    if type(naive_value) is not type(tool_value):
        yield "%s: naive %s, tool %s" % (path, short(naive_value), short(tool_value))
    elif isinstance(naive_value, dict):
        yield from object_differences(naive_value, tool_value, path)
    elif isinstance(naive_value, list):
        yield from list_differences(naive_value, tool_value, path)
    elif naive_value != tool_value:
        yield "%s: naive %s, tool %s" % (path, short(naive_value), short(tool_value))


def object_differences(naive_value, tool_value, path):
    for key in naive_value:
        if key not in tool_value:
            yield "%s.%s: naive %s, not in the tool's" % (path, key, short(naive_value[key]))
        else:
            yield from differences(naive_value[key], tool_value[key], path + "." + key)
    for key in tool_value:
        if key not in naive_value:
            yield "%s.%s: tool %s, not in the naive one" % (path, key, short(tool_value[key]))
    shared = [key for key in naive_value if key in tool_value]
    order = [key for key in tool_value if key in naive_value]
    if shared != order:
        yield "%s: keys in the order %s, the tool has %s" % (path, " ".join(shared), " ".join(order))


def list_differences(naive_value, tool_value, path):
    if len(naive_value) != len(tool_value):
        yield "%s: naive %d elements, tool %d" % (path, len(naive_value), len(tool_value))
    for number, (one, other) in enumerate(zip(naive_value, tool_value)):
        name = one.get("name") if isinstance(one, dict) else None
        yield from differences(one, other, "%s[%s]" % (path, name or number))


def short(value):
    text = json.dumps(value, ensure_ascii=False)
    return text if len(text) <= 160 else text[:160] + "..."


# --- Layouts ----------------------------------------------------------------------------------------------------------


def comparable(layout):
    """A layout without its problems, because each reader has its own messages."""
    layout = dict(layout)
    layout.pop("problems", None)
    if not layout["format"].startswith("cspro-"):
        layout.pop("extras", None)  # the plain program has none
    return layout


def extras_differences(format, naive_extras, tool_extras):
    """The order of extras is ignored, because it is not defined."""
    comparable_extra = comparable_json_extra if format == "cspro-json" else dict
    naive_ones = Counter(json.dumps(comparable_extra(extra), ensure_ascii=False) for extra in naive_extras)
    tool_ones = Counter(json.dumps(comparable_extra(extra), ensure_ascii=False) for extra in tool_extras)
    for extra in naive_ones - tool_ones:
        yield ".extras: not in the tool's: %s" % extra
    for extra in tool_ones - naive_ones:
        yield ".extras: not in the naive ones: %s" % extra


def comparable_json_extra(extra):
    """White space and escapes in a JSON spelling are ignored, as is the path of a repeated key."""
    extra = dict(extra)
    try:
        extra["value"] = naive_json.spelling(naive_json.JsonParser(extra["value"]).parse())
    except Refused:
        pass
    if extra["key"].startswith("repeated "):
        extra["path"] = ""
        extra["key"] = "repeated " + extra["key"].split(" ", 1)[1].rsplit(".", 1)[-1]
    return extra


def unsound_problems(layout):
    """One text for each fault in the problems of a layout."""
    problems = layout.get("problems", [])
    for number, problem in enumerate(problems):
        where = ".problems[%d]" % number
        if [key for key in PROBLEM_KEYS if key in problem] != list(problem):
            yield "%s: keys %s" % (where, " ".join(problem))
        if problem.get("severity") not in SEVERITIES:
            yield "%s.severity: %s" % (where, short(problem.get("severity")))
        if not re.fullmatch("[a-z0-9-]+", problem.get("id", "")):
            yield "%s.id: %s" % (where, short(problem.get("id")))
        if not problem.get("message") or "\n" in problem["message"]:
            yield "%s.message: %s" % (where, short(problem.get("message")))
    if layout["format"].startswith("cspro-") and layout.get("extras") and not problems:
        yield ".problems: none, though there are extras"


def naive_layout(path):
    try:
        return naive.read(path.read_bytes(), str(path))
    except Refused as reason:
        return {"file": str(path), "error": str(reason)}


def compare_layouts(naive_one, tool_one):
    if "error" in naive_one or "error" in tool_one:
        if ("error" in naive_one) != ("error" in tool_one):
            yield "naive %s, tool %s" % tuple(short(one.get("error", "a layout")) for one in (naive_one, tool_one))
        return
    yield from unsound_problems(tool_one)
    naive_one, tool_one = comparable(naive_one), comparable(tool_one)
    yield from extras_differences(naive_one["format"], naive_one.pop("extras", []), tool_one.pop("extras", []))
    yield from differences(naive_one, tool_one)


# --- The tool ---------------------------------------------------------------------------------------------------------


def run_tool(tool, files):
    """The output of the tool for each file: an object, or a text with the reason why there is none."""
    # Nothing is printed for a single file without a layout, so there are always two files.
    alone = len(files) == 1
    call = [tool, "show", "--format", "json", *map(str, files * 2 if alone else files)]
    run = subprocess.run(call, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    lines = run.stdout.split(b"\n")[:-1]
    lines = lines[:1] if alone else lines
    if run.returncode not in (0, 2) or len(lines) != len(files):
        if alone:
            return [
                "status %d, %d lines: %s" % (run.returncode, len(lines), run.stderr.decode(errors="replace")[-500:])
            ]
        return [answer for file in files for answer in run_tool(tool, [file])]
    return [parsed(line) for line in lines]


def parsed(line):
    try:
        return json.loads(line.decode("utf-8"), object_pairs_hook=without_twice)
    except ValueError as reason:
        return "the output is no JSON: %s" % reason


def answers(tool, files):
    for begin in range(0, len(files), FILES_A_CALL):
        part = files[begin : begin + FILES_A_CALL]
        yield from zip(part, run_tool(tool, part))


class Comparison:
    def __init__(self, tool, keep):
        self.tool = tool
        self.keep = keep
        self.counts = Counter()
        self.kinds = {}  # kinds of dirt of a random file

    def report(self, what, file, found):
        self.counts["%s compared" % what] += 1
        if not found:
            return
        self.counts["%s different" % what] += 1
        self.counts.update("different with %s" % kind for kind in self.kinds.get(file, ()))
        for text in found[:DIFFERENCES_A_FILE]:
            print("%s: %s" % (file, text))
        if len(found) > DIFFERENCES_A_FILE:
            print("%s: and %d more" % (file, len(found) - DIFFERENCES_A_FILE))
        if self.keep:
            self.keep.mkdir(parents=True, exist_ok=True)
            shutil.copy(file, self.keep)

    def compare_files(self, what, files, expected=naive_layout):
        """Compares the layouts of the tool, by file, with the expected ones."""
        layouts = {}
        for file, answer in answers(self.tool, files):
            if isinstance(answer, str):
                self.report(what, file, [answer])
                continue
            layouts[file] = answer
            self.report(what, file, list(compare_layouts(expected(file), answer)))
        return layouts

    def compare_twins(self, what, layouts, pairs):
        for text, twin in pairs:
            one, other = layouts.get(text), layouts.get(twin)
            if one is None or other is None or "error" in one or "error" in other:
                self.report(what, text, ["no layouts of both forms"])
            else:
                self.report(what, text, list(differences(normalised(one), normalised(other))))

    def compare_corpus(self, corpus):
        text = sorted((corpus / "cspro-text").glob("*.dcf"))
        twins = sorted((corpus / "cspro-json").glob("*.dcf"))
        layouts = self.compare_files("corpus files", text + twins)
        pairs = [(file, corpus / "cspro-json" / file.name) for file in text]
        self.compare_twins("corpus twins", layouts, [pair for pair in pairs if pair[1] in layouts])

    def compare_random(self, options):
        with tempfile.TemporaryDirectory() as directory:
            for begin in range(0, options.random, FILES_A_CALL):
                numbers = range(begin, min(begin + FILES_A_CALL, options.random))
                self.compare_random_part(pathlib.Path(directory), options, numbers)

    def compare_random_part(self, directory, options, numbers):
        files, pairs = [], []
        for number in numbers:
            case = generate.Case(options.seed, number, options.without)
            text, twin = directory / ("%d-text.dcf" % number), directory / ("%d-json.dcf" % number)
            text.write_bytes(case.text)
            twin.write_bytes(case.json)
            files += [text, twin]
            self.kinds.update({text: sorted(case.text_kinds), twin: sorted(case.json_kinds)})
            if case.are_twins:
                pairs.append((text, twin))
        layouts = self.compare_files("random files", files)
        self.compare_twins("random twins", layouts, pairs)
        self.kinds.clear()
        for file in files:
            file.unlink()

    def compare_mutated(self, options):
        originals = sorted((options.corpus).glob("cspro-*/*.dcf"))
        originals = [file for file in originals if file.stat().st_size < LARGEST_MUTATED]
        with tempfile.TemporaryDirectory() as directory:
            for begin in range(0, options.mutated, FILES_A_CALL):
                files = []
                for number in range(begin, min(begin + FILES_A_CALL, options.mutated)):
                    original = originals[number % len(originals)]
                    files.append(pathlib.Path(directory) / ("mutated-%d-%s" % (number, original.name)))
                    files[-1].write_bytes(generate.mutated(original.read_bytes(), options.seed, number))
                self.compare_files("mutated files", files)
                for file in files:
                    file.unlink()

    def compare_statistical(self, corpus, plain):
        files = sorted(file for directory in ("spss", "stata", "sas") for file in (corpus / directory).glob("*"))
        self.compare_files("statistical files", files, lambda file: plain_layout(plain, file))


def plain_layout(plain, file):
    """The output of the plain program, which has no extras."""
    run = subprocess.run([plain, str(file)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    if run.returncode != 0:
        return {"file": str(file), "error": run.stderr.decode(errors="replace").strip()}
    return json.loads(run.stdout.decode("utf-8", "replace"), object_pairs_hook=without_twice)


def options_of(arguments):
    parser = argparse.ArgumentParser(description="Compares what a tool reads with what the naive readers read.")
    parser.add_argument("tool", metavar="TOOL")
    parser.add_argument("--corpus", type=pathlib.Path, metavar="DIR")
    parser.add_argument("--random", type=int, default=0, metavar="N")
    parser.add_argument("--mutated", type=int, default=0, metavar="N", help="N dictionaries of DIR with changes")
    parser.add_argument("--seed", type=int, default=1, metavar="S")
    parser.add_argument("--without", action="append", default=[], choices=sorted(generate.KINDS), metavar="KIND")
    parser.add_argument("--keep", type=pathlib.Path, metavar="DIR", help="directory for the files that differ")
    parser.add_argument("--statistical", metavar="PLAIN")
    options = parser.parse_args(arguments)
    if not options.corpus and not options.random:
        parser.error("there is nothing to compare: give --corpus or --random")
    if (options.statistical or options.mutated) and not options.corpus:
        parser.error("--statistical and --mutated need --corpus")
    return options


def main():
    options = options_of(sys.argv[1:])
    comparison = Comparison(options.tool, options.keep)
    if options.statistical:
        comparison.compare_statistical(options.corpus, options.statistical)
    elif options.corpus:
        comparison.compare_corpus(options.corpus)
    if options.random:
        comparison.compare_random(options)
    if options.mutated:
        comparison.compare_mutated(options)
    for what, count in comparison.counts.items():
        print("%s: %d" % (what, count))
    return 1 if any(what.endswith("different") for what in comparison.counts) else 0


if __name__ == "__main__":
    sys.exit(main())
