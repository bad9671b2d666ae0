#!/usr/bin/env bash
# Tests which files count as changed (cmake/changed.sh), and which tests they concern (cmake/changed-tests.sh). The
# argument is the directory of the project.
set -euo pipefail

project=$1
directory=$(mktemp -d)
trap 'rm -r "$directory"' EXIT

# expect WHAT EXPECTED FOUND
expect() {
    [ "$2" = "$3" ] || { printf '%s\nexpected: %s\nfound: %s\n' "$1" "$2" "$3" >&2; exit 1; }
}

# concerns EXPECTED FILE...: the labels of the tests that these files concern.
concerns() {
    local expected=$1
    shift
    expect "tests of $*" "$expected" "$(printf '%s\n' "$@" | "$project/cmake/changed-tests.sh")"
}
concerns '' ''
concerns '' fuzz/cspro.dict bench/LookupBench.cpp CHANGELOG.md
concerns '^(lookup)$' tests/lookup/LookupTest.cpp
concerns '^(corpus|formats|layout|lookup|package|readme|report|session|structure|symbols|tool)$' src/lookup/Lookup.cpp
concerns '^(bindings|check|convert|layout|load|package|readme|session|structure|symbols|tool)$' layout/read/Reader.cpp tests/tool/VanlayoutTest.cpp
concerns '^(bindings|corpus|layout|load|session|structure|tool)$' tools/vanlayout/Show.cpp
concerns '^(layout|report|tool)$' docs/notes.md
concerns '^(bindings|readme|tool)$' README.md
concerns '^(bindings)$' python/vanlayout/__init__.py r/vanlayout/NAMESPACE docs/bindings.md
concerns '^(package)$' check cmake/setup.sh desktop/vanlayout-mime.xml
for file in src/util/Numbers.cpp src/CMakeLists.txt tests/support/ToolRun.h tests/data/cspro/census.dcf CMakePresets.json \
    cmake/VanTargets.cmake examples/census.dcf unknown; do
    concerns . tests/lookup/LookupTest.cpp "$file" fuzz/cspro.dict
done

# A project with a main branch and a branch that has one more commit.
git() { command git -c user.name=test -c user.email=test@localhost -c commit.gpgsign=false -C "$directory/project" "$@"; }
changed() { "$directory/project/cmake/changed.sh" | paste -sd ' '; }
mkdir -p "$directory/project/cmake"
cp "$project/cmake/changed.sh" "$directory/project/cmake"
command git init -q -b main "$directory/project"
touch "$directory/project"/{kept,edited,deleted}
echo moved >"$directory/project/former"
git add . && git commit -q -m first
expect "the only commit" "cmake/changed.sh deleted edited former kept" "$(changed)"
touch "$directory/project/on-main" && git add . && git commit -q -m second
expect "the last commit of the main branch" "on-main" "$(changed)"
git checkout -q -b work
touch "$directory/project/committed" && git add . && git commit -q -m third
echo edited >"$directory/project/edited"
touch "$directory/project/untracked"
rm "$directory/project/deleted"
git mv former later
expect "a branch" "committed deleted edited former later untracked" "$(changed)"
