#!/usr/bin/env python3
"""Installs a package of the bindings for the tests, as its users do, without a network.

    packages.py python PROJECT DIRECTORY VERSION          with pip into DIRECTORY
    packages.py r PROJECT DIRECTORY VERSION TOOL R        into DIRECTORY/vanlayout.Rcheck, after R CMD check
"""

import os
import re
import shutil
import subprocess
import sys


def run(command, **options):
    ended = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, encoding="utf-8",
                           **options)
    if ended.returncode:
        sys.exit(f"status {ended.returncode} of {' '.join(command)}\n{ended.stdout}")
    return ended.stdout


def copy_of(project, package, directory):
    """A copy of the package in an empty directory, since pip and R write into the directory of the package."""
    shutil.rmtree(directory, ignore_errors=True)
    source = os.path.join(directory, "source", "vanlayout")
    shutil.copytree(os.path.join(project, package), source, ignore=shutil.ignore_patterns("__pycache__", "build"))
    return source


def expect(description, wanted, got):
    if wanted != got:
        sys.exit(f"{description}\nexpected: {wanted}\nfound: {got}")


def python_package(project, directory, version):
    source = copy_of(project, "python/vanlayout", directory)
    environment = dict(os.environ, PIP_CONFIG_FILE=os.devnull, PIP_ROOT_USER_ACTION="ignore")
    run([sys.executable, "-m", "pip", "install", "--quiet", "--no-build-isolation", "--no-deps", "--no-index",
         "--target", directory, source], env=environment)
    shutil.rmtree(os.path.dirname(source))
    expect("installed files", ["__init__.py", "py.typed"],
           sorted(set(os.listdir(os.path.join(directory, "vanlayout"))) - {"__pycache__"}))
    metadata = os.path.join(directory, f"vanlayout-{version}.dist-info", "METADATA")
    expect(f"{metadata} exists, so the version is that of the command", True, os.path.exists(metadata))


def without_repositories(directory):
    """The environment in which R knows an empty repository only."""
    os.makedirs(os.path.join(directory, "src", "contrib"))
    open(os.path.join(directory, "src", "contrib", "PACKAGES"), "w").close()
    profile = os.path.join(directory, "profile.R")
    with open(profile, "w", encoding="utf-8") as file:
        file.write(f'options(repos = c(CRAN = "file://{directory}"))\n')
    return {"R_PROFILE_USER": profile, "_R_CHECK_CRAN_INCOMING_": "false"}


def r_package(project, directory, version, tool, r):
    source = copy_of(project, "r/vanlayout", directory)
    commands = os.path.join(directory, "bin")
    os.makedirs(commands)
    os.symlink(tool, os.path.join(commands, "vanlayout"))
    run([r, "CMD", "build", source], cwd=directory)
    environment = dict(os.environ, PATH=commands + os.pathsep + os.environ["PATH"])
    environment.update(without_repositories(os.path.join(directory, "repository")))
    printed = run([r, "CMD", "check", "--no-manual", f"vanlayout_{version}.tar.gz"], cwd=directory, env=environment)
    expect(printed, ["OK"], re.findall("^Status: (.*)$", printed, re.MULTILINE))


if __name__ == "__main__":
    {"python": python_package, "r": r_package}[sys.argv[1]](*sys.argv[2:])
