#!/usr/bin/env python3
"""Load programs of dictionaries whose texts try to end their string in the language of the program, and to run something.

    hostile.py MAKE_PROGRAMS COUNT TARGET [ENGINE...]
        sqlite      SQLITE3
        postgresql  BIN, the directory of initdb and pg_ctl
        duckdb      NODE MODULES, see run_duckdb.py
        pandas      none: runs in a Python that has pandas
        dask        none: runs in a Python that has dask and distributed
        r           RSCRIPT
        spss        MAKE_PROGRAMS PSPP
        stata, sas  none: the interpreters of the tests
        made        none: the programs of all targets are made, and not run

Each of the COUNT dictionaries has hostile names, labels, notes and codes, and its data file a hostile name. Each program is
run in its engine, from the working directory, many in one session where the engine can. The tables have to be those of the
reference loader, the labels those of the dictionary, and nothing else may be made: no file, no table.
"""

import contextlib
import io
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile

import compare
import reference

SEED = 17
PLAIN = ["Age", "Sex", "a b", "x", "été", "日本", "😀", ""]
# What may end a string, a comment or a name.
ENDS = ["'", '"', "''", '""', "'''", '"""', "\\'", '\\"', "\\", "\\\\'", "*/", "/*", "\n", "\r", "\r\n", "\u2028", "\u0085", "\x0b",
        "\x0c", "\x1a", "`", "``", "$", "%", "&", ";", ")", "]", "}", "-->", "#", "--", "||", "\"'", "`\"", "')", '")', "')]", "\"}",
        "$$", "$load$", "\x00", "\x1f", "\x1e", "<<", ">>", "<<data>>", "%s", "%(a)s", "{}", "{0}", "\\n", "\\u0027", "\\x27", "\\N",
        "'+'", "\".\"", "?", "*", "[", "~", "|", "=", "@", "!", ":", ":data", ":'data'", ".", ",", "\t"]
# What runs something there. Each makes a file or a table "canary".
ATTACKS = [
    "; CREATE TABLE canary (a text); --", "); CREATE TABLE canary (a text); --", "\n.shell touch canary\n", "\n.system touch canary\n",
    "\n.output canary\n", "\n.once canary\n", "\n\\! touch canary\n", "\n\\o canary\n", "`touch canary`", "$(touch canary)",
    "|touch canary", "; COPY (SELECT 1) TO PROGRAM 'touch canary'; --", "; COPY (SELECT 1) TO 'canary'; --",
    "; ATTACH 'canary' AS canary; --", "$$; CREATE TABLE canary (a text); --", "\n;\nCREATE TABLE canary (a text);\n",
    " + __import__('os').system('touch canary') + ", "\nimport os\nos.system('touch canary')\n", "{__import__('os').system('touch canary')}",
    "; __import__('os').system('touch canary') #", "]); open('canary', 'w') #", "\nopen('canary', 'w')\n",
    "); system('touch canary'); c(", "); file.create('canary'); c('", "\nfile.create('canary')\n", "\\\"); file.create('canary') #",
    ".\nHOST COMMAND=['touch canary'].\n", ".\nHOST COMMAND=['touch canary'].", ".\n\nSAVE OUTFILE='canary'.\n",
    "\nEND DATA.\nHOST COMMAND=['touch canary'].\n", "\n!touch canary\n", "\nshell touch canary\n", "`=1+1'", "$S_ADO", "`c(pwd)'",
    " */ shell touch canary /* ", "\nsave canary\n", "; x 'touch canary'; ", "%sysexec touch canary;", "&sysdate", "%put x;",
    "*/; data canary; run; /*", "; run; data canary; a = 1; run;", "' || load_extension('canary') || '", "'); .shell touch canary",
    "-x", "--help", "-init canary", "http://localhost:1/canary", "clipboard", "stdin", "pipe:touch canary",
]


def printed(make_programs, jobs):
    """The line for each job."""
    run = subprocess.run([make_programs], input="".join(json.dumps(job) + "\n" for job in jobs).encode(), stdout=subprocess.PIPE,
                         check=True)
    lines = run.stdout.decode("utf-8").split("\n")[:-1]
    assert len(lines) == len(jobs), len(lines)
    return lines


class Dictionaries:
    """The dictionaries, with their data, in DIRECTORY/NUMBER."""

    def __init__(self, make_programs, target, count):
        self.directory = tempfile.mkdtemp(prefix="hostile-")
        self.random = random.Random(SEED)
        self.target = target
        jobs = [self.job(number) for number in range(count)]
        lines = printed(make_programs, jobs)
        self.all = [Dictionary(job, line, target) for job, line in zip(jobs, lines)]

    def job(self, number):
        directory = os.path.join(self.directory, str(number))
        os.mkdir(directory)
        dictionary = os.path.join(directory, "dictionary.dcf")
        with open(dictionary, "w", encoding="utf-8") as file:
            json.dump(self.dictionary(), file)
        name = self.path()
        with open(os.path.join(directory, name), "wb") as file:
            file.write(b"1101 ab\n1202xcd\nother\n")
        # PSPP runs in the directory of the program, and so do the interpreters.
        data = name if self.target in ("spss", "stata", "sas") else os.path.join(str(number), name)
        return {"target": self.target, "dictionary": dictionary, "data": data, "directory": directory}

    def text(self):
        parts = [self.random.choice(PLAIN), self.random.choice(ENDS)]
        while self.random.random() < 0.4:
            parts.append(self.random.choice(ENDS))
        parts += [self.random.choice(ATTACKS), self.random.choice(ENDS), self.random.choice(PLAIN)]
        return "".join(parts)

    def name(self, kind):
        return kind + self.text()[:60]

    def path(self):
        """The name of a file: not every engine can open one with a line end or another control character in its name, or with
        a blank at the end."""
        name = self.text().replace("/", "!").encode("utf-8")[:200].decode("utf-8", "ignore")
        name = "".join(" " if ord(c) < 32 or c in "\x7f\u0085\u2028" else c for c in name)
        # PSPP would run a path with a bar at its end: there is no program.
        name = name.rstrip("| ") if self.target == "spss" else name
        # Stata cannot open a file with quotation marks in its name, or a backquote at its end: the program stops.
        name = name.replace('"', "'").rstrip("`") if self.target == "stata" else name
        return name.strip(" ") if name.strip(" .") else name + "x"

    def labels(self):
        return [{"text": self.text()}]

    def code(self, length):
        text = "".join(self.random.choice(["'", '"', "\\", "`", "$", "%", "&", ";", "a", "b"]) for _ in range(length))
        return text.rstrip(" ")

    def values(self, codes):
        values = [{"labels": self.labels(), "note": self.text(), "pairs": [{"value": code}]} for code in codes]
        return [{"name": self.name("S"), "labels": self.labels(), "note": self.text(), "values": values}]

    def item(self, name, kind, start, length, **more):
        return {"name": self.name(name), "labels": self.labels(), "note": self.text(), "contentType": kind, "start": start,
                "length": length, **more}

    def dictionary(self):
        items = [self.item("N", "numeric", 3, 1, valueSets=self.values(["1", "2", "3"])),
                 self.item("M", "numeric", 4, 1, occurrences={"maximum": 2, "labels": [{"occurrence": 1, "labels": self.labels()}]}),
                 self.item("T", "alpha", 6, 2, valueSets=self.values([self.code(2), self.code(2), "ab"]))]
        record = {"name": self.name("R"), "labels": self.labels(), "note": self.text(), "recordType": "1",
                  "occurrences": {"required": False, "maximum": 5}, "items": items}
        level = {"name": self.name("L"), "labels": self.labels(), "ids": {"items": [self.item("I", "numeric", 2, 1)]}, "records": [record]}
        return {"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": self.name("D"), "labels": self.labels(),
                "note": self.text(), "recordType": {"start": 1, "length": 1}, "defaults": {"decimalMark": False, "zeroFill": False},
                "relativePositions": False, "levels": [level]}


class Dictionary:
    def __init__(self, job, line, target):
        if not line.startswith("{"):
            raise AssertionError(f"{job['dictionary']}: {line}")
        self.data = os.path.join(job["directory"], os.path.basename(job["data"]))
        self.directory = job["directory"]
        self.number = os.path.basename(self.directory)
        self.result = reference.load_layout(json.loads(line), target, self.data)

    def program(self, extension):
        return next(os.path.join(self.directory, name) for name in sorted(os.listdir(self.directory))
                    if name.endswith(extension) and name != os.path.basename(self.data) and name != "dictionary.dcf")

    def labels_by_table(self, cut):
        """Names of tables, with the labels of their columns, cut."""
        return [(table.name, {column.name: cut(column.label) for column in table.columns if column.item}) for table in self.result.tables.values()]

    def labels(self):
        return {(table.name, column.name): column.label for table in self.result.tables.values() for column in table.columns
                if column.item}


def files_below(directory):
    return {os.path.relpath(os.path.join(place, name), directory) for place, _, names in os.walk(directory) for name in names}


def same(description, wanted, got):
    if wanted != got:
        raise compare.Difference(f"{description}: expected {wanted!r}, got {got!r}")


# ------------------------------------------------------------------------------------------------------ the targets
#
# Each function runs the programs of all dictionaries in a directory and yields (dictionary, tables, codes) with the
# tables in the form of compare.py.

def sqlite_tables(dictionaries, directory, sqlite):
    import run_sqlite
    for dictionary in dictionaries:
        database = os.path.join(dictionary.directory, "made.db")
        status, _, errors = run_sqlite.load(sqlite, database, dictionary.program(".sql"), cwd=directory)
        same(f"{dictionary.number}: status and errors", (0, ""), (status, errors))
        made = run_sqlite.tables_of(database)
        os.remove(database)
        yield dictionary, made, made["codes"]["rows"]


def postgresql_tables(dictionaries, directory, binaries):
    import run_postgresql
    with run_postgresql.Server(binaries) as server:
        os.chmod(directory, 0o777)
        for dictionary in dictionaries:
            os.chmod(dictionary.directory, 0o755)
        database = server.new_database("hostile")
        for start in range(0, len(dictionaries), 100):
            part = dictionaries[start:start + 100]
            script = "".join(f"CREATE SCHEMA made{d.number}; SET search_path = made{d.number};\n\\unset data\n"
                             f"\\i '{d.program('.sql')}'\n" for d in part)
            run = server.psql(database, "-q", "-v", "ON_ERROR_STOP=1", "-f", "-", cwd=directory, input=script.encode())
            same(f"{start}: status and errors", (0, b""), (run.returncode, run.stderr))
        yield from postgresql_dump(server, database, dictionaries)


def postgresql_dump(server, database, dictionaries):
    names = server.query("SELECT table_schema, table_name, column_name, data_type FROM information_schema.columns WHERE table_schema "
                         "NOT IN ('pg_catalog', 'information_schema') ORDER BY 1, 2, ordinal_position", database)[1:]
    columns = {}
    for schema, table, column, kind in names:
        columns.setdefault(schema, {}).setdefault(table, []).append((column, kind))
    same("schemas", {f"made{d.number}" for d in dictionaries}, set(columns))
    rows = postgresql_rows(server, database, columns)
    for dictionary in dictionaries:
        schema = f"made{dictionary.number}"
        made = {table: {"columns": [column for column, _ in of], "rows": rows[schema, table]} for table, of in columns[schema].items()}
        yield dictionary, made, made["codes"]["rows"]


def postgresql_rows(server, database, columns):
    """All rows of all tables, in one session: each row is one line of JSON."""
    import run_postgresql
    quoted = lambda name: '"' + name.replace('"', '""') + '"'
    script = ["\\pset format unaligned\n\\pset tuples_only on\n"]
    keys = [(schema, table) for schema, of in columns.items() for table in of]
    for number, (schema, table) in enumerate(keys):
        script.append(f"SELECT json_build_array({number}, array_to_json(ARRAY[" +
                      ", ".join(f"{quoted(column)}::text" for column, _ in columns[schema][table]) + f"])) FROM {schema}.{quoted(table)};\n")
    run = server.psql(database, "-q", "-v", "ON_ERROR_STOP=1", "-f", "-", input="".join(script).encode())
    same("errors", b"", run.stderr)
    rows = {key: [] for key in keys}
    for line in run.stdout.decode("utf-8").split("\n")[:-1]:
        number, cells = json.loads(line)
        kinds = [kind for _, kind in columns[keys[number][0]][keys[number][1]]]
        rows[keys[number]].append([None if text is None else run_postgresql.cell(text, kind) for text, kind in zip(cells, kinds)])
    return rows


def duckdb_tables(dictionaries, directory, node, modules):
    import run_duckdb
    here = os.getcwd()
    os.chdir(directory)
    with run_duckdb.Engine(node, modules) as engine:
        os.chdir(here)
        for dictionary in dictionaries:
            names = list(dictionary.result.tables) + ["codes"]
            quoted = [name.replace('"', '""') for name in names]
            result = engine.run(script=dictionary.program(".sql"), queries=[run_duckdb.TABLES] + [f'SELECT * FROM "{n}"' for n in quoted])
            same(f"{dictionary.number}: errors", [], result["errors"])
            same(f"{dictionary.number}: tables", sorted(names), sorted(name for name, in result["answers"][0]["rows"]))
            made = {name: run_duckdb.table_of(answer) for name, answer in zip(names, result["answers"][1:])}
            yield dictionary, made, made["codes"]["rows"]


def loaded_frames(dictionary, load):
    """The tables as DataFrames, with the labels that the dictionary has."""
    with contextlib.redirect_stderr(io.StringIO()):
        loaded = load()
    for name, table in dictionary.result.tables.items():
        labels = {column.name: column.label for column in table.columns if column.item and column.label}
        attrs = loaded[name].attrs["labels"]
        same(f"{dictionary.number}: labels", labels, {column: label for column, label in attrs.items() if column in labels})
    return loaded


def pandas_tables(dictionaries, directory):
    import frames
    here = os.getcwd()
    os.chdir(directory)
    for dictionary in dictionaries:
        loaded = loaded_frames(dictionary, frames.module(dictionary.program(".py")).load)
        made = {name: frames.canonical(frame) for name, frame in loaded.items()}
        yield dictionary, made, made["codes"]["rows"]
    os.chdir(here)


def dask_tables(dictionaries, directory):
    """All programs are imported by the workers of one cluster. A block of the data file has one line or two."""
    import dask
    import frames
    import run_dask
    here = os.getcwd()
    with tempfile.TemporaryDirectory() as place, run_dask.Cluster(place):
        os.chdir(directory)
        for dictionary in dictionaries:
            path = dictionary.program("_dask.py")
            frames.module(path.replace("_dask.py", ".py"))
            module = frames.module(path)
            loaded = loaded_frames(dictionary, lambda: dict(zip(lazy := module.load(blocksize=10), dask.compute(*lazy.values()))))
            made = {name: frames.canonical(frame) for name, frame in loaded.items()}
            yield dictionary, made, made["codes"]["rows"]
        os.chdir(here)


R_SCRIPT = r"""
shown <- function(x) gsub("\n", "\\n", gsub("\\", "\\\\", enc2utf8(x), fixed = TRUE), fixed = TRUE)
cells <- function(x) {
  if (is.character(x)) ifelse(is.na(x), "NA", paste0("s", shown(as.vector(x)))) else ifelse(is.na(x), "NA", sprintf("n%.17g", as.vector(x)))
}
arguments <- readLines(commandArgs(trailingOnly = TRUE)[1], encoding = "UTF-8")
output <- file(commandArgs(trailingOnly = TRUE)[2], "wb")
say <- function(...) writeLines(enc2utf8(c(...)), output, useBytes = TRUE)
for (program in arguments) {
  environment <- new.env()
  source(program, local = environment, encoding = "UTF-8")
  frames <- suppressMessages(environment$load_data())
  say(as.character(length(frames)))
  for (name in names(frames)) {
    frame <- frames[[name]]
    say(shown(name), as.character(length(frame)), as.character(nrow(frame)))
    for (place in seq_along(frame)) {
      label <- attr(frame[[place]], "label", exact = TRUE)
      say(shown(names(frame)[place]), if (is.null(label)) "" else shown(label), cells(frame[[place]]))
    }
  }
}
close(output)
"""


def unescaped(text):
    return text.replace("\\\\", "\0").replace("\\n", "\n").replace("\0", "\\")


def r_cell(text):
    return None if text == "NA" else float(text[1:]) if text[0] == "n" else unescaped(text[1:])


def r_tables(dictionaries, directory, rscript):
    with tempfile.TemporaryDirectory() as place:
        script, programs, out = (os.path.join(place, name) for name in ("run.R", "programs.txt", "out.txt"))
        with open(script, "w", encoding="utf-8") as file:
            file.write(R_SCRIPT)
        with open(programs, "w", encoding="utf-8") as file:
            file.write("".join(dictionary.program(".R") + "\n" for dictionary in dictionaries))
        run = subprocess.run([rscript, script, programs, out], cwd=directory, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                             env=dict(os.environ, LC_ALL="C.UTF-8"))
        same("status and output of R", (0, b""), (run.returncode, run.stdout))
        with open(out, encoding="utf-8", newline="\n") as file:
            lines = iter(file.read().split("\n"))
    for dictionary in dictionaries:
        made = dict(r_table(lines, dictionary) for _ in range(int(next(lines))))
        yield dictionary, made, made["codes"]["rows"]


def r_table(lines, dictionary):
    name, width, height = unescaped(next(lines)), int(next(lines)), int(next(lines))
    columns, cells, labels = [], [], dictionary.labels()
    for _ in range(width):
        columns.append(unescaped(next(lines)))
        label = unescaped(next(lines))
        if (name, columns[-1]) in labels:
            same(f"{dictionary.number}: label of {columns[-1]}", labels[name, columns[-1]], label)
        cells.append([r_cell(next(lines)) for _ in range(height)])
    return name, {"columns": columns, "rows": [list(row) for row in zip(*cells)]}


def spss_tables(dictionaries, directory, make_programs, pspp):
    import run_spss
    for dictionary in dictionaries:
        before = files_below(dictionary.directory)
        run_spss.run_pspp(pspp, dictionary.program(".sps"), dictionary.directory)
        made = sorted(files_below(dictionary.directory) - before)
        same(f"{dictionary.number}: number of files", 1, len(made))
        (_, variables), = dictionary.labels_by_table(lambda label: run_spss.cut(label, 255).rstrip(" "))
        file = os.path.join(dictionary.directory, made[0])
        got = json.loads(printed(make_programs, [{"dictionary": file}])[0])["levels"][0]["records"][0]["items"]
        same(f"{dictionary.number}: labels", variables, {item["name"]: reference.text_of(item.get("labels"), "").rstrip(" ") for item in got
                                                             if item["name"] in variables})
        os.remove(file)
        yield dictionary, None, None


def stata_tables(dictionaries, directory):
    import run_stata
    import stata
    for dictionary in dictionaries:
        outcome = stata.run(dictionary.program(".do"), [], 17, True)
        run_stata.compare_labels(dictionary.result, outcome)
        yield dictionary, run_stata.tables_of(outcome), None


def sas_tables(dictionaries, directory):
    import run_sas
    import sas
    for dictionary in dictionaries:
        outcome = sas.run(dictionary.program(".sas"))
        run_sas.compare_labels(dictionary.result, outcome)
        yield dictionary, run_sas.tables_of(outcome), None


TARGETS = {"sqlite": sqlite_tables, "postgresql": postgresql_tables, "duckdb": duckdb_tables, "pandas": pandas_tables, "dask": dask_tables,
           "r": r_tables, "spss": spss_tables, "stata": stata_tables, "sas": sas_tables}
POLICY = compare.Policy(compare.ULP, ordered=False)


def compare_all(dictionaries, target, engine):
    before = files_below(dictionaries.directory)
    count = 0
    for dictionary, made, codes in TARGETS[target](dictionaries.all, dictionaries.directory, *engine):
        if made is not None:
            compare.tables(dictionary.result, made, POLICY)
        if codes is not None:
            compare.codes(dictionary.result, codes)
        count += 1
    same("programs", len(dictionaries.all), count)
    made = {name for name in files_below(dictionaries.directory) - before if "__pycache__" not in name}
    same("files that the programs made", set(), made)


def make_all(make_programs, count):
    """Each dictionary has a program for each target."""
    for target in TARGETS:
        dictionaries = Dictionaries(make_programs, target, count)
        for dictionary in dictionaries.all:
            sizes = [os.path.getsize(os.path.join(dictionary.directory, name)) for name in os.listdir(dictionary.directory)]
            assert len(sizes) > 2 and min(sizes) > 0, f"{target}, {dictionary.directory}: files of {sizes} bytes"
        shutil.rmtree(dictionaries.directory)


def main(make_programs, count, target, *engine):
    if target == "made":
        compare.check(f"programs of {count} hostile dictionaries", make_all, make_programs, int(count))
        compare.finish()
        return
    dictionaries = Dictionaries(make_programs, target, int(count))
    if compare.check(f"{target}, {count} hostile dictionaries in {dictionaries.directory}", compare_all, dictionaries, target, engine):
        shutil.rmtree(dictionaries.directory)
    compare.finish()


if __name__ == "__main__":
    main(*sys.argv[1:])
