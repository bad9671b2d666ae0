#!/usr/bin/env python3
"""Runs the programs for Dask on a cluster of two worker processes, in blocks smaller than the file, and compares every
table with that of the program for pandas and with the loader of the tests.

    run_dask.py TOOL        in a Python that has dask and distributed
"""

import contextlib
import inspect
import io
import os
import shutil
import signal
import subprocess
import sys
import tempfile

import dask
import distributed
import pandas as pd

import compare
import frames
import survey

BLOCKS = 5  # in which a file is read


class Cluster:
    """A scheduler and two worker processes on the loopback address. They end with the block in which they are used."""

    def __init__(self, directory):
        self.directory = directory
        self.file = os.path.join(directory, "scheduler.json")
        self.processes = []

    def start(self, name, *arguments):
        log = open(os.path.join(self.directory, f"{name}.log"), "wb")
        self.processes.append(subprocess.Popen(
            [sys.executable, "-m", f"distributed.cli.dask_{name}", "--host", "127.0.0.1", "--no-dashboard",
             "--scheduler-file", self.file, *arguments], stdout=log, stderr=log))
        log.close()

    def __enter__(self):
        self.start("scheduler", "--port", "0")
        for number in (1, 2):
            local = os.path.join(self.directory, f"worker{number}")
            os.makedirs(local)
            self.start("worker", "--no-nanny", "--nthreads", "1", "--local-directory", local)
        self.client = distributed.Client(scheduler_file=self.file, timeout=60)
        self.client.wait_for_workers(2, timeout=120)
        self.address = self.client.scheduler.address
        return self

    def __exit__(self, *reason):
        self.client.close()
        for process in reversed(self.processes):
            process.send_signal(signal.SIGTERM)
        for process in self.processes:
            try:
                process.wait(20)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()


def modules(tool, variant, directory):
    """The programs of a variant: that for pandas, that for Dask, and the path of the latter."""
    files = compare.make_program(tool, "dask", variant, directory)
    dask_program = frames.file_of(files, "_dask.py")
    plain = frames.module(dask_program.replace("_dask.py", ".py"))
    return plain, frames.module(dask_program), dask_program


def printed_by(function, *arguments):
    output = io.StringIO()
    with contextlib.redirect_stderr(output):
        made = function(*arguments)
    return made, output.getvalue()


def are_equal(description, wanted, got):
    try:
        pd.testing.assert_frame_equal(wanted, got)
        compare.same(f"{description}: attrs", wanted.attrs, got.attrs)
    except AssertionError as error:
        raise compare.Difference(f"{description}: {error}") from None


def parts_of(directory, table):
    """The rows of all CSV files of a table, in the order of their names."""
    rows = []
    for name in sorted(os.listdir(os.path.join(directory, table.file))):
        part = frames.from_csv(os.path.join(directory, table.file, name), empty_frame(table))
        compare.same(f"{table.name}/{name}: columns", [column.name for column in table.columns], part["columns"])
        rows += part["rows"]
    return {"columns": [column.name for column in table.columns], "rows": rows}


def empty_frame(table):
    return pd.DataFrame({column.name: pd.array([], column.type) for column in table.columns})


def files_agree(plain, whole, directory):
    for table in plain.TABLES:
        compare.same(f"{table.name}: cells of the CSV files",
                    frames.empty_texts_as_missing(frames.canonical(whole[table.name])), parts_of(directory, table))


def variant_agrees(tool, variant, directory, block=None):
    plain, program, _ = modules(tool, variant, directory)
    block = block or os.path.getsize(variant.data) // BLOCKS + 1
    result = compare.expected(tool, "dask", variant)
    whole, _ = printed_by(plain.load, variant.data)
    lazy, printed = printed_by(program.load, variant.data, block)
    compare.counts(result, printed)
    made = {name: frame.reset_index(drop=True) for name, frame in zip(lazy, dask.compute(*lazy.values()))}
    compare.same("tables", list(whole), list(made))
    for name, frame in whole.items():
        are_equal(name, frame, made[name])
    compare.tables(result, {name: frames.canonical(frame) for name, frame in made.items()}, frames.POLICY)
    compare.codes(result, frames.canonical(made["codes"])["rows"])
    out = os.path.join(directory, "out")
    _, printed = printed_by(program.write, variant.data, out, block)
    compare.counts(result, printed)
    files_agree(plain, whole, out)
    compare.same("files that are not tables", ["codes.csv"], [name for name in os.listdir(out) if "." in name])


def blocks_smaller_than_a_line(tool, directory):
    """Most blocks are empty then, and all tables are the same."""
    variant_agrees(tool, survey.variant(directory, "long", cases=6), os.path.join(directory, "p"), block=61)


def lines_belong_to_the_block_in_which_they_begin(tool, directory):
    _, program, _ = modules(tool, survey.variant(directory, "ascii"), os.path.join(directory, "p"))
    path = os.path.join(directory, "lines.dat")
    with open(path, "wb") as file:
        file.write(b"abc\n\ndefgh\r\ni\nlast")
    size = os.path.getsize(path)
    for step in range(1, size + 1):
        parts = [b"".join(program.read_range(path, first, min(first + step, size))) for first in range(0, size, step)]
        compare.same(f"blocks of {step} bytes", b"abc\n\ndefgh\r\ni\nlast", b"".join(parts))
        for first, part in zip(range(0, size, step), parts):
            with open(path, "rb") as file:
                text = file.read()
            starts = [place for place in range(first, min(first + step, size))
                      if place == 0 or text[place - 1:place] == b"\n"]
            compare.same(f"lines that begin in bytes {first} to {first + step}", len(starts),
                        len(part.split(b"\n")) - (part.endswith(b"\n") or not part))


def cases_across_blocks_count_on(tool, directory):
    """A case whose records are far apart in the file has one row of numbers."""
    variant = survey.variant(directory, "ascii")
    with open(variant.data, "rb") as file:
        lines = sorted(file.read().splitlines(True), key=lambda line: line[::-1])
    scattered = os.path.join(directory, "scattered.dat")
    with open(scattered, "wb") as file:
        file.writelines(line if line.endswith(b"\n") else line + b"\n" for line in lines)
    variant_agrees(tool, variant._replace(data=scattered), os.path.join(directory, "p"))


def defaults_are_the_data_file_and_large_blocks(tool, directory):
    """Of the functions that others call; the command needs the data file and the directory."""
    variant = survey.variant(directory, "ascii")
    _, program, path = modules(tool, variant, os.path.join(directory, "p"))
    compare.same("arguments of load()", {"path": variant.data, "blocksize": "64MB"},
                {name: each.default for name, each in inspect.signature(program.load).parameters.items()})
    for arguments in ([], [variant.data], [variant.data, "out", "tcp://127.0.0.1:1", "more"]):
        printed = frames.run([path, *arguments], status=2)
        compare.same("message", True, printed.startswith(f"Usage: python3 {os.path.basename(path)} DATA OUT [SCHEDULER]"))


def progress_is_reported(tool, directory):
    variant = survey.variant(directory, "ascii")
    plain, program, _ = modules(tool, variant, os.path.join(directory, "p"))
    plain.PROGRESS = 0
    _, printed = printed_by(program.write, variant.data, os.path.join(directory, "out"), 2000)
    for done in ("counted", "written"):
        if f"{variant.data}: 100 % {done}\n" not in printed:
            raise compare.Difference(f"no progress in {printed!r}")


def program_runs_on_the_cluster(tool, cluster, directory):
    """By its command line, with the address of the scheduler and with workers of its own; a second run replaces the
    files of the first."""
    variant = survey.variant(directory, "mixed")
    plain, program, path = modules(tool, variant, os.path.join(directory, "p"))
    out = os.path.join(directory, "out")
    whole, _ = printed_by(plain.load, variant.data)
    printed_by(program.write, variant.data, out, os.path.getsize(variant.data) // 3)
    result = compare.expected(tool, "dask", variant)
    for arguments in ([cluster.address], []):
        compare.counts(result, frames.run([path, variant.data, out, *arguments]))
        files_agree(plain, whole, out)
        compare.same("files of HOUSE", ["part-0000.csv"], os.listdir(os.path.join(out, "HOUSE")))


def failures_leave_nothing(tool, directory):
    """Bytes that are not UTF-8 end the run with the number of their line in the file, and earlier tables stay."""
    variant = survey.variant(directory, "ascii")
    _, program, path = modules(tool, variant, os.path.join(directory, "p"))
    out = os.path.join(directory, "out")
    printed_by(program.write, variant.data, out)
    before = parts_of(out, program.program.TABLES[0])
    broken = survey.broken(os.path.join(directory, "broken.dat"), variant, 61, b"\xff")
    try:
        printed_by(program.load, broken, 1000)
        raise compare.Difference("bytes that are not UTF-8 were loaded")
    except program.program.DataError as error:
        compare.same("line in the message", True, "line 61 " in str(error) and "--encoding windows-1252" in str(error))
    frames.run([path, os.path.join(directory, "absent.dat"), out], status=1)
    compare.same("rows after failed runs", before, parts_of(out, program.program.TABLES[0]))


def main(tool):
    directory = tempfile.mkdtemp(prefix="van-dask-")
    try:
        with Cluster(directory) as cluster:
            for variant in [*survey.variants(directory), survey.long_codes(directory)]:
                compare.check(f"Dask, {variant.name}", variant_agrees, tool, variant,
                              os.path.join(directory, variant.name))
            for test in (blocks_smaller_than_a_line, lines_belong_to_the_block_in_which_they_begin,
                         cases_across_blocks_count_on, failures_leave_nothing, progress_is_reported,
                         defaults_are_the_data_file_and_large_blocks):
                place = os.path.join(directory, test.__name__)
                os.makedirs(place)
                compare.check(test.__name__, test, tool, place)
            place = os.path.join(directory, "run")
            os.makedirs(place)
            compare.check("program_runs_on_the_cluster", program_runs_on_the_cluster, tool, cluster, place)
    finally:
        shutil.rmtree(directory)
    compare.finish()


if __name__ == "__main__":
    main(sys.argv[1])
