#!/usr/bin/env python3
"""Runs the examples of one section of a page: each block of commands or of a program, and compares what it prints
with the block of text that follows it.

    run_docs.py TOOL PROJECT SECTION [COMMAND ...]      e.g. run_docs.py vanlayout . R /usr/bin/Rscript

SECTION is that of docs/load.md, or PAGE:SECTION for a page of the project.

The blocks run one after the other in a directory that has the files of the examples. The commands are found by the names
of their files, without digits and dots at the end of the name of Python, before those of PATH. Of a block of commands
standard output and standard error count, of a program standard output.
"""

import difflib
import os
import re
import shutil
import subprocess
import sys
import tempfile
from collections import Counter

# What runs a block in this language, and the name of its file.
RUN = {"sh": (["bash", "-e"], "block.sh"), "r": (["Rscript"], "block.R"), "python": (["python3"], "block.py"),
       "spss": (["pspp"], "block.sps")}

# Blocks that the interpreters of run_stata.py and run_sas.py run.
INTERPRETED = ("stata", "sas")


def section_of(project, name):
    page, _, title = name.rpartition(":")
    page = page or "docs/load.md"
    with open(os.path.join(project, page), encoding="utf-8") as file:
        sections = dict(re.findall(r"^##+ ([^\n]+)\n(.*?)(?=^##+ |\Z)", file.read(), re.MULTILINE | re.DOTALL))
    if title not in sections:
        sys.exit(f"{page} has no section {title}")
    return sections[title]


def blocks_of(section):
    """Language and content of each block."""
    return re.findall(r"^```(\w+)\n(.*?)^```$", section, re.MULTILINE | re.DOTALL)


def interpreted_block(section, language):
    """The block that the interpreter of a language runs."""
    return dict(blocks_of(section))[language]


def states_results(section, labels, cells):
    """Compares the frequencies and the mean in the text of a section with the labels and the numbers of two columns."""
    numbers = [cell for cell in cells if isinstance(cell, float)]
    wanted = [f"{count} for `{label}`" for label, count in sorted(Counter(labels).items())]
    wanted.append(f"the mean is {sum(numbers) / len(numbers):.2f}")
    return [f"the page does not state: {text}" for text in wanted if text not in section]


def link(directory, name, path):
    os.makedirs(directory, exist_ok=True)
    os.symlink(os.path.abspath(path), os.path.join(directory, name))


def prepared(tool, project, commands):
    """A directory with the examples; its directory bin has the commands."""
    directory = tempfile.mkdtemp(prefix="van-docs-")
    for name in ("census.dcf", "census8.dcf", "census.dat"):
        shutil.copy(os.path.join(project, "examples", name), directory)
    link(os.path.join(directory, "bin"), "vanlayout", tool)
    for command in commands:
        name = os.path.basename(command)
        link(os.path.join(directory, "bin"), "python3" if name.startswith("python") else name, command)
    return directory


def printed_by(language, code, directory):
    command, name = RUN[language]
    with open(os.path.join(directory, name), "w", encoding="utf-8") as file:
        file.write(code)
    path = os.path.join(directory, "bin") + os.pathsep + os.environ["PATH"]
    run = subprocess.run(command + [name], cwd=directory, stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT if language == "sh" else subprocess.PIPE,
                         env=dict(os.environ, PATH=path, LC_ALL="C.UTF-8", PYTHONDONTWRITEBYTECODE="1"))
    if run.returncode:
        sys.exit(f"status {run.returncode} of:\n{code}\n{run.stdout.decode()}{(run.stderr or b'').decode()}")
    os.remove(os.path.join(directory, name))
    return run.stdout.decode("utf-8")


def run_section(section, directory):
    blocks = blocks_of(section)
    compared = 0
    for (language, code), (next_language, wanted) in zip(blocks, blocks[1:] + [("", "")]):
        if language == "text" or language in INTERPRETED:
            continue
        got = printed_by(language, code, directory)
        if next_language == "text":
            compared += 1
            if got != wanted:
                lines = difflib.unified_diff(wanted.split("\n"), got.split("\n"), "page", "program", lineterm="")
                sys.exit(f"{code}\nprints something else than the page says:\n" + "\n".join(lines))
    if not compared:
        sys.exit("the section has no block with its text")


def main(tool, project, title, *commands):
    section = section_of(project, title)
    directory = prepared(tool, project, commands)
    try:
        run_section(section, directory)
    finally:
        shutil.rmtree(directory)


if __name__ == "__main__":
    main(*sys.argv[1:])
