#!/usr/bin/env bash
# Static analysis of src/, layout/ and tools/: level 1 of clazy and clang-tidy on every file. With a commit as argument,
# clang-tidy examines only the files that changed since that commit. Uses the compiler commands of the preset `clang`.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/setup.sh"
cd "$root"

# A source counts as changed if it or its header has changed.
changed_since() {
    git diff --name-only "$1" -- 'src/*.cpp' 'src/*.h' 'layout/*.cpp' 'layout/*.h' 'tools/*.cpp' 'tools/*.h' | sed -E 's/(_p)?\.(cpp|h)$/.cpp/' | sort -u | while read -r file; do
        [ ! -f "$file" ] || echo "$file"
    done
}

# Runs a tool on each of the files, with one process per core. Prints the findings and returns 1 if there are any.
on_each() {
    local found
    found=$(tr '\n' '\0' | xargs -0 -r -n 1 -P "$(nproc)" "$@" 2>&1 | grep -E '(warning|error):' || true)
    [ -z "$found" ] || { echo "$found" | sort -u; return 1; }
}

install_packages $analysis_packages
all=$(find src layout tools -name '*.cpp' | sort)
files=$all
[ $# -eq 0 ] || files=$(changed_since "$1")
build_preset clang van_objects_autogen # generated sources are needed
echo "$all" | on_each clazy-standalone -checks=level1 -p build/clang
[ -z "$files" ] || echo "$files" | on_each clang-tidy -quiet -p build/clang
