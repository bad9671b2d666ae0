#!/usr/bin/env python3
"""Runs the PostgreSQL programs in a server of their own, and compares the tables with those of the reference loader.

    run_postgresql.py TOOL BIN              BIN: directory of initdb and pg_ctl
    run_postgresql.py TOOL BIN PROJECT      the examples of docs/load.md

The server listens on a socket in a temporary directory only. PostgreSQL does not run as root, so root runs it as the
user `postgres` or `nobody`. The server is stopped at the end, also after a failure.
"""

import csv
import io
import os
import pwd
import shutil
import subprocess
import sys
import tempfile
from collections import Counter
from decimal import Decimal

import compare
import run_docs
import survey

NULL = "\\null\\"
NUMBERS = ("integer", "bigint", "numeric")
POLICY = compare.Policy(compare.EXACT, ordered=False)  # a short row can go to an earlier page that is not full


def unprivileged_user():
    """The user to run as; None if this is not root."""
    if os.geteuid() != 0:
        return None
    names = [user.pw_name for user in pwd.getpwall()]
    return next(name for name in ("postgres", "nobody") if name in names)


class Server:
    """A private server. Use it in `with`."""

    def __init__(self, binaries):
        self.binaries = binaries
        self.user = unprivileged_user()
        self.directory = tempfile.mkdtemp(prefix="pg", dir="/tmp")  # the path of a socket has at most 107 bytes
        if self.user:
            shutil.chown(self.directory, self.user)

    def command(self, arguments):
        own = os.path.join(self.binaries, arguments[0])
        arguments = [own if os.path.exists(own) else arguments[0], *arguments[1:]]
        if not self.user:
            return arguments
        user = pwd.getpwnam(self.user)
        return ["setpriv", f"--reuid={user.pw_uid}", f"--regid={user.pw_gid}", "--clear-groups", *arguments]

    def run(self, *arguments, cwd=None, input=None):
        return subprocess.run(self.command(arguments), stdout=subprocess.PIPE, stderr=subprocess.PIPE, input=input,
                              cwd=cwd or self.directory, env={"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8"})

    def __enter__(self):
        data = os.path.join(self.directory, "data")
        try:
            self.checked("initdb", "-D", data, "-U", "owner", "-A", "trust", "-E", "UTF8", "--locale=C", "-N")
            self.checked("pg_ctl", "-D", data, "-w", "-s", "-l", os.path.join(self.directory, "log"), "-o",
                         f"-c listen_addresses='' -c fsync=off -k {self.directory}", "start")
            self.query("CREATE ROLE analyst LOGIN", "postgres", "owner")
        except BaseException:
            self.__exit__()
            raise
        return self

    def checked(self, *arguments):
        run = self.run(*arguments)
        if run.returncode:
            raise RuntimeError(f"{arguments}: {run.stderr.decode()}")

    def __exit__(self, *_):
        data = os.path.join(self.directory, "data")
        if os.path.exists(os.path.join(data, "postmaster.pid")):
            self.run("pg_ctl", "-D", data, "-w", "-m", "immediate", "stop")
        shutil.rmtree(self.directory, ignore_errors=True)

    def psql(self, database, *arguments, user="analyst", cwd=None, input=None):
        return self.run("psql", "-X", "-h", self.directory, "-U", user, "-d", database, *arguments, cwd=cwd, input=input)

    def query(self, sql, database, user="analyst"):
        """The rows of a query, with the names of the columns first. psql prints some characters as nothing; COPY does not."""
        if sql.startswith("SELECT"):
            sql = f"COPY ({sql}) TO STDOUT (FORMAT csv, HEADER, NULL '{NULL}')"
        run = self.psql(database, "-v", "ON_ERROR_STOP=1", "-c", sql, user=user)
        if run.returncode:
            raise RuntimeError(run.stderr.decode("utf-8", "replace"))
        return list(csv.reader(io.StringIO(run.stdout.decode("utf-8"), newline="")))

    def new_database(self, name):
        """An empty database of a user who is no superuser."""
        self.query(f'DROP DATABASE IF EXISTS "{name}"', "postgres", "owner")
        self.query(f'CREATE DATABASE "{name}" OWNER analyst', "postgres", "owner")
        return name


def cell(text, kind):
    if text == NULL:
        return None
    return Decimal(text) if kind in NUMBERS else text


def table_of(server, database, name):
    quoted = name.replace('"', '""')
    literal = name.replace("'", "''")
    kinds = server.query(f"SELECT column_name, data_type FROM information_schema.columns WHERE table_name = "
                         f"'{literal}' AND table_schema = 'public' ORDER BY ordinal_position", database)[1:]
    rows = server.query(f'SELECT * FROM public."{quoted}"', database)[1:]
    return {"columns": [column for column, _ in kinds],
            "rows": [[cell(text, kind) for text, (_, kind) in zip(row, kinds)] for row in rows]}


def tables_of(server, database):
    names = server.query("SELECT table_name FROM information_schema.tables WHERE table_schema = 'public'", database)[1:]
    return {name: table_of(server, database, name) for name, in names}


def objects_of(server, database):
    """The numbers of large objects, and of objects other than tables, that are left on the server."""
    return server.query("SELECT (SELECT count(*) FROM pg_largeobject_metadata), (SELECT count(*) FROM pg_class WHERE "
                        "relnamespace = 'public'::regnamespace AND relkind <> 'r')", database)[1:]


# ------------------------------------------------------------------------------------------------------- the tests

def load(server, database, files, *arguments, cwd=None):
    program = next(path for path in files.values() if path.endswith(".sql"))
    run = server.psql(database, *arguments, "-f", program, cwd=cwd)
    return run.returncode, run.stdout.decode("utf-8"), run.stderr.decode("utf-8", "replace")


def compare_variant(server, tool, variant, directory):
    files = compare.make_program(tool, "postgresql", variant, os.path.join(directory, variant.name))
    result = compare.expected(tool, "postgresql", variant)
    database = server.new_database("survey")
    status, printed, errors = load(server, database, files)
    if status or errors:
        raise compare.Difference(f"status {status}: {errors}")
    made = tables_of(server, database)
    compare.tables(result, made, POLICY)
    compare.codes(result, made["codes"]["rows"])
    compare.counts(result, printed)
    if sorted(printed.splitlines()) != sorted(result.counts):
        raise compare.Difference(f"printed: {printed}")
    if objects_of(server, database) != [["0", "0"]]:
        raise compare.Difference(f"left on the server: {objects_of(server, database)}")
    compare_comments(server, database, result)
    compare_second_run(server, database, files, made)


def compare_comments(server, database, result):
    comments = server.query("SELECT c.relname, a.attname, d.description FROM pg_description d JOIN pg_class c ON c.oid = d.objoid "
                            "LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum = d.objsubid AND d.objsubid > 0 "
                            "WHERE relnamespace = 'public'::regnamespace", database)[1:]
    got = {(table, None if column == NULL else column): text for table, column, text in comments}
    for table in result.tables.values():
        for column, label in [(None, table.label)] + [(c.name, c.label) for c in table.columns if c.item]:
            if got.get((table.name, column), "") != label:
                raise compare.Difference(f"{table.name}.{column}: expected the comment {label!r}, got {got.get((table.name, column))!r}")


def without_order(made):
    """The tables with their rows counted: PostgreSQL does not keep an order."""
    return {name: (table["columns"], Counter(map(tuple, table["rows"]))) for name, table in made.items()}


def compare_second_run(server, database, files, made):
    """A second run replaces what the first made, and a run without data leaves it."""
    server.query("INSERT INTO codes VALUES ('other table', 'x', '1', NULL, 'One', NULL)", database)
    load(server, database, files)
    made["codes"]["rows"].append(["other table", "x", "1", None, "One", None])  # the codes of other programs stay
    if without_order(tables_of(server, database)) != without_order(made):
        raise compare.Difference("the second run made other tables")
    made = tables_of(server, database)
    status, printed, errors = load(server, database, files, "-v", "data=no such file.dat")
    if status != 3 or printed or "no such file.dat" not in errors or tables_of(server, database) != made:
        raise compare.Difference(f"a run without data: status {status}, {printed!r}, {errors!r}")


def compare_bad_bytes(server, tool, variant, directory):
    """A file that is not UTF-8 stops the program, and the message names the line."""
    data = os.path.join(directory, "bad bytes.dat")
    survey.write(data, b"HH 1  1\nR  1\nHH 2 \xe9\nHH \xff\n")
    files = compare.make_program(tool, "postgresql", variant, os.path.join(directory, "bad"))
    database = server.new_database("survey")
    status, printed, errors = load(server, database, files, "-v", f"data={data}")
    if status != 3 or "Line 3 is not valid UTF-8" not in errors or "--encoding windows-1252" not in errors or printed:
        raise compare.Difference(f"status {status}, {printed!r}, {errors!r}")
    if tables_of(server, database) or objects_of(server, database) != [["0", "0"]]:
        raise compare.Difference("a failed run left objects on the server")


def compare_pieces(server, tool, variant, directory):
    """A file of more than one piece: the same lines many times, with characters that a piece cuts."""
    lines = [line for line in open(variant.data, "rb").read()[3:].split(b"\n") if line.strip(b" \r")]
    data = os.path.join(directory, "large.dat")
    times = 1200000 // sum(len(line) + 1 for line in lines) + 1
    survey.write(data, b"\n".join(lines * times))
    files = compare.make_program(tool, "postgresql", variant, os.path.join(directory, "large"))
    database = server.new_database("survey")
    status, printed, errors = load(server, database, files, "-v", f"data={data}")
    result = compare.expected(tool, "postgresql", variant)
    result.counts = [compare.times(line, times) for line in result.counts if not line.endswith("blank lines")]
    compare.counts(result, printed)
    if status or errors:
        raise compare.Difference(errors)
    compare.repeated_tables(result, tables_of(server, database), times, POLICY)


def compare_other_schema(server, tool, variant, directory):
    """Tables are made in the first schema of search_path, also if a later schema has a table of that name."""
    files = compare.make_program(tool, "postgresql", variant, os.path.join(directory, "schema"))
    database = server.new_database("survey")
    server.query("CREATE SCHEMA own; CREATE TABLE public.house (kept integer); "
                 "ALTER ROLE analyst SET search_path = own, public", database)
    status, _, errors = load(server, database, files)
    columns = server.query("SELECT table_schema, column_name FROM information_schema.columns WHERE table_name = 'house' AND "
                           "ordinal_position = 1 ORDER BY 1", database)[1:]
    server.query("ALTER ROLE analyst RESET search_path", database)
    if status or columns != [["own", "province"], ["public", "kept"]]:
        raise compare.Difference(f"tables: {columns}, {errors}")


def run_examples(tool, binaries, project):
    """The examples connect to the server as the analyst."""
    with Server(binaries) as server:
        server.new_database("census")
        os.environ.update(PGHOST=server.directory, PGUSER="analyst")
        run_docs.main(tool, project, "PostgreSQL")


def main(tool, binaries, project=None):
    if project:
        run_examples(tool, binaries, project)
        return
    with tempfile.TemporaryDirectory() as directory, Server(binaries) as server:
        os.chmod(directory, 0o755)
        made = [*survey.variants(directory), survey.long_codes(directory)]
        for variant in made:
            compare.check(f"postgresql {variant.name}", compare_variant, server, tool, variant, directory)
        compare.check("bad bytes", compare_bad_bytes, server, tool, made[0], directory)
        compare.check("pieces", compare_pieces, server, tool, made[0], directory)
        compare.check("schema", compare_other_schema, server, tool, made[0], directory)
    compare.finish()


if __name__ == "__main__":
    main(*sys.argv[1:])
