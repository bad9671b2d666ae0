#!/usr/bin/env bash
# Builds with counters, runs the tests of the library, and prints how much of src/ they reach, file by file. Fails below
# the bounds. build/coverage/report/index.html shows the lines. docs/coverage.md lists the exclusions.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/setup.sh"
cd "$root"

min_lines=97
min_branches=90
counted=build/coverage/coverage.json
report=build/coverage/report

install_packages $build_packages gcovr
build_preset coverage
# Counters accumulate from one run to the next, so those of an earlier run are removed.
find build/coverage -name '*.gcda' -delete
ctest --preset coverage --quiet --output-log build/coverage/tests.log \
    || { tail -n 40 build/coverage/tests.log >&2; exit 1; }

# The branches of calls that may throw, and of clean-ups made by the compiler, are not counted.
gcovr --root . --object-directory build/coverage --filter src/ --exclude '.*/moc_.*' \
    --exclude-throw-branches --exclude-unreachable-branches --json "$counted" build/coverage/src
mkdir -p "$report"
gcovr --root . --add-tracefile "$counted" --html-details "$report/index.html"
gcovr --root . --add-tracefile "$counted" --branches
gcovr --root . --add-tracefile "$counted" --print-summary \
    --fail-under-line "$min_lines" --fail-under-branch "$min_branches"
