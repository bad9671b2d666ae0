"""Checks the forms of all given files: each follows its standard, and a JSON Schema accepts and rejects what it must.

Usage: check_forms.py FORM EXPORT_LAYOUT PATH...    (FORM is csvw, frictionless or json-schema; a directory stands for
all files in it; a file without a layout, or without a table where the form wants one, is passed over)
Ends with status 77, a skip, where the library jsonschema is wanted and not installed.
"""
import importlib
import json
import pathlib
import subprocess
import sys

NO_LAYOUT = 2
TABLES = {"csvw": "tables", "frictionless": "resources"}  # a form that has this key requires at least one entry


def files_of(paths):
    for path in map(pathlib.Path, paths):
        yield from sorted(p for p in path.rglob("*") if p.is_file()) if path.is_dir() else [path]


def documents_of(program, form, files):
    """The document of each file that has a layout; None if it cannot be written."""
    run = subprocess.run([program, "--each", form, *map(str, files)], stdout=subprocess.PIPE, check=True)
    begin = 0
    for path in files:
        head = run.stdout.index(b"\n", begin) + 1
        status, size = map(int, run.stdout[begin:head].split())
        begin = head + size
        if status != NO_LAYOUT:
            yield path, json.loads(run.stdout[head:begin]) if status == 0 else None


def main():
    form, program, *paths = sys.argv[1:]
    try:
        checker = importlib.import_module(form.replace("-", "_"))
    except ImportError as error:
        print(error)
        return 77
    documents = wrong = 0
    for path, document in documents_of(program, form, list(files_of(paths))):
        if document and not document.get(TABLES.get(form), True):
            continue
        violations = checker.violations(document) if document else ["not written"]
        for violation in violations[:10]:
            print(f"{path}: {violation}")
        documents += 1
        wrong += bool(violations)
    print(f"{documents} documents, {wrong} with violations")
    return 1 if wrong or not documents else 0


if __name__ == "__main__":
    sys.exit(main())
