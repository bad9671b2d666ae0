"""Checks that all output of `vanlayout COMMAND --format json` for the given files follows the JSON Schema.

Usage: validate-json.py TOOL COMMAND SCHEMA PATH...    (a directory stands for all files in it)
Ends with status 77, a skip, if the library jsonschema is not installed.
"""
import json
import pathlib
import subprocess
import sys

try:
    import jsonschema
except ImportError:
    print("python3-jsonschema is not installed")
    sys.exit(77)


def files_of(paths):
    for path in map(pathlib.Path, paths):
        yield from sorted(p for p in path.rglob("*") if p.is_file()) if path.is_dir() else [path]


def main():
    tool, command, schema_file, *paths = sys.argv[1:]
    schema = json.loads(pathlib.Path(schema_file).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    files = [str(path) for path in files_of(paths)]
    run = subprocess.run([tool, command, "--format", "json", *files], capture_output=True, check=False)
    lines = run.stdout.decode("utf-8").split("\n")[:-1]
    wrong = 0
    for line in lines:
        document = json.loads(line)
        for error in validator.iter_errors(document):
            wrong += 1
            best = jsonschema.exceptions.best_match([error])
            print(f"{document.get('file')}: {'/'.join(map(str, best.absolute_path))}: {best.message[:200]}")
    # A file without variables has no document of its fields.
    if command == "show" and len(files) > 1 and len(lines) != len(files):
        print(f"{len(lines)} lines for {len(files)} files")
        wrong += 1
    print(f"{len(lines)} documents, {wrong} violations")
    return 1 if wrong or not lines else 0


if __name__ == "__main__":
    sys.exit(main())
