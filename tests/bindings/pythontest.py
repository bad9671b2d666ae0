#!/usr/bin/env python3
"""Tests the installed Python package: every layout is the one that the command prints, and its codes are those of
`vanlayout show --codes`.

    pythontest.py TOOL PROJECT MADE_DATA CORPUS
"""

import csv
import glob
import io
import json
import os
import pickle
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

import numpy
import vanlayout
from vanlayout import VanlayoutError

TOOL, PROJECT, MADE_DATA, CORPUS = sys.argv[1:5]
GOLDEN = os.path.join(PROJECT, "tests", "data", "layout")
CENSUS = os.path.join(PROJECT, "examples", "census.dcf")
ABSENT = "cannot be opened: No such file or directory"

# The classes by the names of their objects in docs/layout.schema.json.
CLASSES = {"layout": vanlayout.Layout, "label": vanlayout.Label, "language": vanlayout.Language,
           "recordType": vanlayout.RecordType, "security": vanlayout.Security, "level": vanlayout.Level,
           "record": vanlayout.Record, "occurrenceLabel": vanlayout.OccurrenceLabel, "item": vanlayout.Item,
           "valueSet": vanlayout.ValueSet, "value": vanlayout.Value, "range": vanlayout.Range,
           "relation": vanlayout.Relation, "extra": vanlayout.Extra, "problem": vanlayout.Problem}


def files_of(*patterns):
    return [path for pattern in patterns for path in sorted(glob.glob(pattern))]


def files_of_tests():
    return files_of(f"{GOLDEN}/*.dcf", f"{GOLDEN}/*.xml", f"{PROJECT}/examples/*.dcf", f"{MADE_DATA}/*.*")


def printed(*arguments):
    return subprocess.run([TOOL, "show", "--quiet", *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          check=False).stdout.decode("utf-8")


def default_of(form, definitions):
    """The value of a member that the JSON form omits: the value that this part of the schema excludes, or None."""
    form = definitions[form["$ref"].rpartition("/")[2]] if "$ref" in form else form
    if "const" in form and isinstance(form["const"], bool):
        return not form["const"]
    if form.get("minItems"):
        return []
    if form.get("minimum"):
        return form["minimum"] - 1
    return "" if form.get("minLength") or "enum" in form or "const" in form else form.get("not", {}).get("const")


def readable(paths):
    """The layouts of the files that have one."""
    try:
        return vanlayout.read_all(paths)
    except VanlayoutError as error:
        return error.layouts


def fake(test, script, head="#!/bin/sh"):
    """A command that runs this script of the shell, for the time of a test."""
    directory = tempfile.TemporaryDirectory(prefix="van fake-")
    test.addCleanup(directory.cleanup)
    path = os.path.join(directory.name, "a command")
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{head}\n{script}\n")
    os.chmod(path, 0o755)
    return path


class Layouts(unittest.TestCase):
    maxDiff = 2000

    def test_golden_layouts_are_read(self):
        os.chdir(GOLDEN)
        names = files_of("*.dcf", "*.xml")
        self.assertGreater(len(names), 50)
        for name, layout in zip(names, vanlayout.read_all(names)):
            with open(os.path.splitext(name)[0] + ".json", encoding="utf-8") as file:
                self.assertEqual(json.load(file), layout.to_dict())

    def test_to_dict_is_what_the_command_prints_with_the_keys_in_its_order(self):
        paths = files_of_tests() + files_of(f"{CORPUS}/*/*")
        lines = [json.loads(line) for line in printed("--format", "json", *paths).splitlines()]
        wanted = [line for line in lines if "error" not in line]
        self.assertGreater(len(wanted), 80)
        layouts = readable(paths)
        self.assertEqual(len(wanted), len(layouts))
        for line, layout in zip(wanted, layouts):
            self.assertEqual(json.dumps(line), json.dumps(layout.to_dict()))

    def test_classes_have_the_members_of_the_schema(self):
        with open(os.path.join(PROJECT, "docs", "layout.schema.json"), encoding="utf-8") as file:
            definitions = json.load(file)["$defs"]
        shapes = [(kind, definitions[name]) for name, kind in CLASSES.items()]
        shapes += [(vanlayout.Capture, definitions["item"]["properties"]["capture"]),
                   (vanlayout.Link, definitions["relation"]["properties"]["links"]["items"])]
        for kind, form in shapes:
            self.assertEqual(list(form["properties"]), [member.key for member in vanlayout._members(kind)], kind)
            self.assertLessEqual(set(form.get("required", [])), set(kind().to_dict()), kind)
            for member in vanlayout._members(kind):
                if member.key not in kind().to_dict():
                    self.assertEqual((member.key, default_of(form["properties"][member.key], definitions)),
                                     (member.key, member.default()), kind)

    def test_codes_are_those_of_the_command_in_each_language(self):
        compared = 0
        for layout in readable(files_of_tests()):
            rows = list(csv.DictReader(io.StringIO(printed("--format", "csv", "--codes", layout.file), newline="")))
            for column in [key for key in (rows[0] if rows else []) if key.startswith("label")]:
                codes = layout.codes(column[len("label_"):])
                self.assertEqual(len(rows), len(codes), layout)
                for row, code in zip(rows, codes):
                    # Only the column of the first language has the primary label if its own is empty.
                    label = {"label": row[column]} if row[column] or column == "label" else {}
                    wanted = {key: row[key] for key in ("item", "valueSet", "from", "to", "special")}
                    self.assertEqual({**wanted, **label}, {key: code[key] for key in [*wanted, *label]}, layout)
                compared += len(rows)
        self.assertGreater(compared, 500)


class Census(unittest.TestCase):
    def setUp(self):
        self.layout = vanlayout.read(CENSUS)

    def test_members_and_helpers(self):
        self.assertEqual([record.name for record in self.layout.records], ["HOUSING", "POPULATION", "MORTALITY"])
        self.assertEqual(len(self.layout.items), 56)
        self.assertEqual(self.layout.items[0].name, "PROVINCE")
        item = self.layout.item("H07_RENT")
        self.assertEqual((item.label, item.start, item.length, item.decimals, item.decimal_mark),
                         ("Monthly rent in crowns", 20, 9, 2, True))
        self.assertRaises(KeyError, self.layout.item, "NOTHING")
        self.assertEqual(repr(self.layout), f"<Layout of {CENSUS!r}: cspro-text, 56 items>")

    def test_codes_of_a_value_set_of_an_item_and_of_the_layout(self):
        item = self.layout.item("P06_AGE")
        row = {"from": "999", "to": "", "label": "Not stated", "special": "missing"}
        self.assertEqual(item.value_sets[0].codes()[1], row)
        row = {"valueSet": "P06_AGE_VS1", **row}
        self.assertEqual(item.codes()[1], row)
        self.assertIn({"level": "ORVANDIA_CENSUS_QUEST", "record": "POPULATION", "item": "P06_AGE", **row},
                      self.layout.codes())
        self.assertEqual(self.layout.codes()[0]["record"], "(ids)")

    def test_frames_have_the_rows_of_the_codes_as_texts(self):
        for holder in (self.layout, self.layout.item("P06_AGE"), self.layout.item("P06_AGE").value_sets[0]):
            frame = holder.to_pandas()
            self.assertEqual(frame.to_dict("records"), holder.codes())
            self.assertEqual(list(frame.columns), list(holder.codes()[0]))
            self.assertEqual(set(frame.dtypes), {numpy.dtype(object)})
        self.assertEqual(self.layout.item("H07_RENT").to_pandas().shape, (0, 5))
        self.assertEqual(list(self.layout.to_pandas().columns),
                         ["level", "record", "item", "valueSet", "from", "to", "label", "special"])

    def test_a_language_falls_back_to_the_primary_one(self):
        layout = vanlayout.read(os.path.join(GOLDEN, "languages.dcf"))
        labels = [vanlayout.Label("EN", "House"), vanlayout.Label("FR", "Maison"), vanlayout.Label("ES", "")]
        value = vanlayout.Value(labels=labels, ranges=[vanlayout.Range("1")])
        self.assertEqual([value.label_in(code) for code in ("", "fr", "ES", "DE")],
                         ["House", "Maison", "House", "House"])
        self.assertEqual(vanlayout.ValueSet(values=[value]).to_pandas(language="FR")["label"].tolist(), ["Maison"])
        self.assertGreater(len(layout.languages), 1)

    def test_a_value_without_a_code_has_one_row(self):
        value_set = vanlayout.ValueSet(values=[vanlayout.Value(labels=[vanlayout.Label("", "None")])])
        self.assertEqual(value_set.codes(), [{"from": "", "to": "", "label": "None", "special": ""}])

    def test_pandas_is_needed_for_frames_only(self):
        with mock.patch.dict(sys.modules, {"pandas": None}):
            with self.assertRaisesRegex(ImportError, r"needs pandas; install pandas, or use codes\(\)"):
                self.layout.to_pandas()


class Files(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="van-python-")
        self.addCleanup(directory.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(directory.name)
        with open(CENSUS, "rb") as file:
            self.content = file.read()

    def write(self, name, content=None):
        with open(name, "wb") as file:
            file.write(self.content if content is None else content)
        return name

    def test_paths_with_odd_characters(self):
        for name in ("-o.dcf", "--help", "a b.dcf", "it's \"q\" $HOME `x`!.dcf", "été 日本.dcf", "two\nlines.dcf"):
            self.write(name)
            self.assertEqual(vanlayout.read(name).file, name)
            self.assertEqual([layout.file for layout in vanlayout.read_all([name, os.fsencode(name)])], [name, name])

    def test_file_objects_and_standard_input(self):
        with open(self.write("c.dcf"), "rb") as file:
            self.assertEqual(vanlayout.read(file).file, "-")
        self.assertEqual(len(vanlayout.read(io.BytesIO(self.content)).items), 56)
        with open("c.dcf", encoding="utf-8") as file:
            self.assertRaisesRegex(VanlayoutError, "open it in binary mode", vanlayout.read, file)
        for call in ("vanlayout.read('-')", "vanlayout.read_all(['-'])[0]"):
            code = f"import vanlayout; print({call})"
            self.assertEqual(subprocess.run([sys.executable, "-c", code], input=self.content, stdout=subprocess.PIPE,
                                            check=True).stdout, b"<Layout of '-': cspro-text, 56 items>\n")

    def test_no_other_call_reads_standard_input(self):
        code = "import sys, vanlayout; vanlayout.read(sys.argv[1], command=sys.argv[2]); print(sys.stdin.read())"
        command = fake(self, f"cat; exec '{TOOL}' \"$@\"")
        self.assertEqual(subprocess.run([sys.executable, "-c", code, CENSUS, command], input=b"kept",
                                        stdout=subprocess.PIPE, check=True).stdout, b"kept\n")

    def test_catalogs(self):
        data = os.path.join(MADE_DATA, "survey.sas7bdat")
        os.symlink(os.path.join(MADE_DATA, "formats.sas7bcat"), "-c d.sas7bcat")
        self.assertEqual(vanlayout.read(data).codes(), [])
        self.assertGreater(len(vanlayout.read(data, catalog="-c d.sas7bcat").codes()), 0)

    def test_warnings_are_problems_of_the_layout(self):
        self.write("w.dcf", self.content + b"\n[Nonsense]\nA=1\n")
        self.assertEqual([problem.severity for problem in vanlayout.read("w.dcf").problems], ["warning"])
        with self.assertRaises(VanlayoutError) as raised:
            vanlayout.read_all(["w.dcf", "absent"])
        self.assertEqual(str(raised.exception), f"absent: {ABSENT}")

    def test_texts_do_not_depend_on_the_locale(self):
        self.write("é.dcf", "[Dictionary]\r\nName=D\r\nLabel=été 日\r\n".encode())
        code = "import vanlayout; layout = vanlayout.read('\\u00e9.dcf'); print(ascii([layout.file, layout.label]))"
        for name in ("C", "C.UTF-8"):
            environment = dict(os.environ, LC_ALL=name)
            self.assertEqual(subprocess.run([sys.executable, "-c", code], env=environment, stdout=subprocess.PIPE,
                                            check=True).stdout.decode(), ascii(["é.dcf", "été 日"]) + "\n")

    def test_many_files_are_read_in_order(self):
        names = [self.write(f"{number:03}.dcf", b"[Dictionary]\nName=D\n[Level]\nName=L\n") for number in range(450)]
        names[250] = "absent"
        with mock.patch("subprocess.run", wraps=subprocess.run) as calls, self.assertRaises(VanlayoutError) as raised:
            vanlayout.read_all(names)
        self.assertEqual(calls.call_count, 3)
        self.assertEqual(str(raised.exception), f"absent: {ABSENT}")
        self.assertEqual([layout.file for layout in raised.exception.layouts], names[:250] + names[251:])
        self.assertEqual(vanlayout.read_all([]), [])
        self.assertRaisesRegex(TypeError, "use read", vanlayout.read_all, "000.dcf")


class Failures(unittest.TestCase):
    def failure(self, *arguments, call=vanlayout.read, **options):
        with self.assertRaises(VanlayoutError) as raised:
            call(*arguments, **options)
        return raised.exception

    def test_the_message_is_that_of_the_command(self):
        error = self.failure("/absent/a.dcf")
        self.assertEqual((str(error), error.status, error.layouts), (f"/absent/a.dcf: {ABSENT}", 2, []))
        self.assertEqual(str(self.failure("/absent/ö.dcf")), f"/absent/ö.dcf: {ABSENT}")
        error = self.failure(["/absent/a", CENSUS, "/absent/b"], call=vanlayout.read_all)
        self.assertEqual(str(error), f"/absent/a: {ABSENT}\n/absent/b: {ABSENT}")
        self.assertEqual([len(layout.items) for layout in error.layouts], [56])
        self.assertEqual(str(pickle.loads(pickle.dumps(error))), str(error))
        self.assertIn("null", str(self.failure("a\0b")))

    def test_the_command_is_the_argument_or_of_the_environment_or_of_the_path(self):
        for environment, options in (({"VANLAYOUT": "/absent/b"}, {"command": TOOL}),
                                     ({"VANLAYOUT": TOOL, "PATH": ""}, {}),
                                     ({"VANLAYOUT": "", "PATH": os.path.dirname(TOOL)}, {})):
            with mock.patch.dict(os.environ, environment):
                self.assertEqual(len(vanlayout.read(CENSUS, **options).items), 56)
        with mock.patch.dict(os.environ, {"VANLAYOUT": "", "PATH": "/absent"}):
            error = self.failure(CENSUS)
            self.assertEqual((str(error), error.status), (
                "vanlayout: no such command; install vanlayout, or set the environment variable VANLAYOUT to its path",
                None))
        self.assertIn("/absent/c: no such command", str(self.failure(CENSUS, command="/absent/c")))
        self.assertIn("cannot be run", str(self.failure(CENSUS, command=fake(self, "", "#!/absent/shell"))))

    def test_a_command_that_prints_no_layout(self):
        for script, status in (("exit 0", 0), ("echo text", 0), ("echo 5", 0), ("kill -9 $$", -9)):
            command = fake(self, script)
            error = self.failure(CENSUS, command=command)
            self.assertEqual(str(error), f"{command}: no layout was printed, and the exit status is {status}")
            self.assertEqual(error.status, status)
        command = fake(self, "echo 'vanlayout: --format: no such option of show' >&2; exit 2")
        error = self.failure(CENSUS, command=command)
        self.assertEqual(str(error), "--format: no such option of show")

    def test_keys_of_later_releases_are_ignored_and_another_version_is_an_error(self):
        made = {"layoutVersion": 1, "file": "f", "format": "new", "levels": [
            {"name": "L", "new": {"a": 1}, "ids": [], "records": [{"name": "R", "new": [], "items": [
                {"name": "I", "type": "alpha", "length": 3, "new": True, "missing": [{"from": "01", "new": 1}]}]}]}]}
        command = fake(self, f"echo '{json.dumps(dict(made, new=None))}'")
        layout = vanlayout.read("f", command=command)
        self.assertEqual((layout.format, layout.items[0].missing), ("new", [vanlayout.Range("01")]))
        self.assertNotIn("new", json.dumps(layout.to_dict()).replace('"new", "levels"', ""))
        command = fake(self, f"echo '{json.dumps(dict(made, layoutVersion=2))}'")
        self.assertIn("f: the layout has version 2, but this package reads version 1",
                      str(self.failure("f", command=command)))


if __name__ == "__main__":
    os.environ["VANLAYOUT"] = TOOL
    os.environ["PATH"] = os.environ["PATH"] + os.pathsep + os.path.dirname(TOOL)
    unittest.main(argv=sys.argv[:1])
