#!/usr/bin/env python3
"""Figures of the load programs for pandas, R and Dask on a generated census of lines of 120 characters.

    load_scripts.py TOOL [LINES]        in a Python that has pandas, dask and distributed; LINES is 1,000,000 by default

Each figure is that of a process of its own: CPU time (user and system), and the largest memory.
    pandas    load() of the module, next to read_fwf() of the same columns: lines are parted by their record type before,
              because read_fwf() has no record types
    R         the whole program, with the writing of its files
    Dask      the whole program on a scheduler and two worker processes with blocks of 64 MB, of LINES and of ten times as
              many; the memory is that of the larger worker. A worker grows a little with the first blocks that it reads,
              because freed memory is in pieces: 440 MB for 1,000,000 lines, 450 MB for the same file eight times in turn,
              485 MB for 10,000,000 lines
"""

import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

TESTS = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "tests", "load")
sys.path.insert(0, TESTS)

import survey

BY_HAND = r"""
import io, sys
import pandas as pd
import SURVEY_DICT as program
lines = {}
with open(sys.argv[1], encoding='utf-8', newline='\n') as file:
    for line in file:
        lines.setdefault(line[0], []).append(line)
for table in program.TABLES:
    columns = program.field_columns(table)
    texts = [column.name for column in columns if column.type == 'string']
    pd.read_fwf(io.StringIO(''.join(lines.pop(table.mark))), header=None, names=[column.name for column in columns],
                colspecs=[(column.first - 1, column.first - 1 + column.length) for column in columns],
                dtype={name: str for name in texts})
"""
MODULE = "import sys; import SURVEY_DICT; SURVEY_DICT.load(sys.argv[1])"


def measured(name, command, directory):
    """Runs a process and prints its figures; returns its CPU time in seconds."""
    start = time.monotonic()
    process = subprocess.Popen(command, cwd=directory, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode:
        sys.exit(f"{name}: status {process.returncode} of {command}")
    cpu = usage.ru_utime + usage.ru_stime
    print(f"{name:32} {cpu:7.2f} s CPU {time.monotonic() - start:7.2f} s elapsed {usage.ru_maxrss // 1024:6} MB", flush=True)
    return cpu


def memory_of(process):
    """The largest memory of a process so far, in MB."""
    with open(f"/proc/{process.pid}/status", encoding="ascii") as file:
        return next(int(line.split()[1]) // 1024 for line in file if line.startswith("VmHWM"))


def cpu_of(process):
    """User and system time of a process so far, in seconds."""
    with open(f"/proc/{process.pid}/stat", encoding="ascii") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def dask_process(name, scheduler, directory, *arguments):
    return subprocess.Popen([sys.executable, "-m", f"distributed.cli.dask_{name}", "--host", "127.0.0.1",
                             "--no-dashboard", "--scheduler-file", scheduler, *arguments],
                            cwd=directory, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def measured_with_dask(name, data, directory):
    import distributed
    place = tempfile.mkdtemp(dir=directory)
    scheduler = os.path.join(place, "scheduler.json")
    processes = [dask_process("scheduler", scheduler, place, "--port", "0")]
    processes += [dask_process("worker", scheduler, place, "--no-nanny", "--nthreads", "1") for _ in range(2)]
    try:
        with distributed.Client(scheduler_file=scheduler, timeout=60) as client:
            client.wait_for_workers(2, timeout=120)
            address = client.scheduler.address
        measured(f"{name}, client", [sys.executable, "SURVEY_DICT_dask.py", data, place, address], directory)
        print(f"{name + ', workers':32} {sum(cpu_of(process) for process in processes[1:]):7.1f} s CPU"
              f"{'':19}{max(memory_of(process) for process in processes[1:]):6} MB", flush=True)
    finally:
        for process in reversed(processes):
            process.send_signal(signal.SIGTERM)
            process.wait()
        shutil.rmtree(place)


def main(tool, lines):
    directory = tempfile.mkdtemp(prefix="van-load-")
    try:
        dictionary, data = survey.census(os.path.join(directory, "census"), lines)
        for target in ("pandas", "r", "dask"):
            subprocess.run([tool, "load", "--to", target, "-o", directory, dictionary], check=True)
        by_hand = measured("read_fwf by hand", [sys.executable, "-c", BY_HAND, data], directory)
        module = measured("pandas, load()", [sys.executable, "-c", MODULE, data], directory)
        print(f"{'':32} {module / by_hand:7.2f} times read_fwf")
        measured("pandas, with its files", [sys.executable, "SURVEY_DICT.py", data, "out"], directory)
        if shutil.which("Rscript"):
            measured("R, with its files", ["Rscript", "SURVEY_DICT.R", data, "out"], directory)
        measured_with_dask(f"Dask, {lines:,} lines", data, directory)
        _, data = survey.census(os.path.join(directory, "census"), 10 * lines)
        measured_with_dask(f"Dask, {10 * lines:,} lines", data, directory)
    finally:
        shutil.rmtree(directory)


if __name__ == "__main__":
    main(sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 1000000)
