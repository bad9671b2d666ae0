#!/usr/bin/env bash
# Builds with counters, runs the tests of the library, and says how much of src/ they reach, file by file. Fails below
# the bounds. What is left is explained in docs/coverage.md; build/coverage/report/index.html shows it line by line.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/setup.sh"
cd "$root"

least_lines=97
least_branches=90
counted=build/coverage/coverage.json
report=build/coverage/report

install_packages $build_packages gcovr
build_preset coverage
# Counters are added up from one run to the next, and those of a former build are none of this one.
find build/coverage -name '*.gcda' -delete
ctest --preset coverage --quiet --output-log build/coverage/tests.log \
    || { tail -n 40 build/coverage/tests.log >&2; exit 1; }

# A branch for each call that may throw, and one for each clean-up that nobody wrote, tell nothing.
gcovr --root . --object-directory build/coverage --filter src/ --exclude '.*/moc_.*' \
    --exclude-throw-branches --exclude-unreachable-branches --json "$counted" build/coverage/src
mkdir -p "$report"
gcovr --root . --add-tracefile "$counted" --html-details "$report/index.html"
gcovr --root . --add-tracefile "$counted" --branches
gcovr --root . --add-tracefile "$counted" --print-summary \
    --fail-under-line "$least_lines" --fail-under-branch "$least_branches"
