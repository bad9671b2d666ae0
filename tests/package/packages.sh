#!/usr/bin/env bash
# Tests how ./run and ./check install the packages that they need, on a system that only records the calls: all packages
# are installed before the first step, and always waiting for the lock. The argument is the directory of the project.
set -euo pipefail

project=$1
directory=$(mktemp -d)
trap 'rm -r "$directory"' EXIT
log="$directory/log"
mkdir -p "$directory/bin" "$directory/project/cmake" "$directory/project"/{src,layout,tools,tests/load,bench,examples,fuzz}
cp "$project/tests/load/package.json" "$directory/project/tests/load"
cp "$project/run" "$project/check" "$directory/project"
cp "$project"/cmake/*.sh "$directory/project/cmake"

# stub NAME: a program that records its call, then runs the commands of this function's standard input.
stub() {
    { echo '#!/bin/sh'; echo "echo \"$1 \$*\" >>'$log'"; cat; } >"$directory/bin/$1"
    chmod +x "$directory/bin/$1"
}
for name in cmake ctest clang-format clazy-standalone clang-tidy git npm; do
    stub $name </dev/null
done
stub sudo <<<'exec "$@"'
stub apt-get <<END
case "\$*" in *chromium*) [ ! -e '$directory/broken' ] || exit 1 ;; esac
for word; do echo "\$word" >>'$directory/installed'; done
END
stub dpkg-query <<<"for package; do :; done; grep -qx -- \"\$package\" '$directory/installed' && echo 'ii '"

fail() {
    echo "$*" >&2
    cat "$log" >&2
    exit 1
}

# installs_first COMMAND CALLS PACKAGE...: the command makes CALLS calls of apt-get, before all steps, which install the
# packages.
installs_first() {
    local command calls=$2 package
    read -r -a command <<<"$1" # with its options
    shift 2
    : >"$log"
    : >"$directory/installed"
    PATH="$directory/bin:$PATH" VAN_HAVE_PACKAGES= "$directory/project/${command[0]}" "${command[@]:1}" >/dev/null 2>&1 </dev/null || true # no build follows
    sed -i '/^\(dpkg-query\|sudo\|git\) /d' "$log"
    [ "$(grep -c '^apt-get ' "$log")" = "$calls" ] || fail "${command[*]}: not $calls calls of apt-get"
    grep -q '^cmake ' "$log" || fail "${command[*]}: no step"
    [ "$(head -n "$calls" "$log" | grep -c '^apt-get ')" = "$calls" ] || fail "${command[*]}: a step in front of a package"
    ! grep '^apt-get ' "$log" | grep -vq '^apt-get -o DPkg::Lock::Timeout=600 ' || fail "${command[*]}: does not wait for the lock"
    for package in "$@"; do
        grep -qx -- "$package" "$directory/installed" || fail "${command[*]}: no $package"
    done
}

installs_first run 2 cmake g++ libreadstat-dev
installs_first check 2 cmake clang-format clang-tidy clazy qt6-base-dev qt6-5compat-dev chromium postgresql pspp r-cran-haven r-cran-jsonlite python3-pip
grep -q '^npm install --prefix .*/project/build/duckdb ' "$log" || fail "check: DuckDB is not installed"
installs_first 'check --quick' 2 cmake clang-format sqlite3
touch "$directory/broken" # no browser can be installed
installs_first check 8 cmake clang-format clang-tidy clazy qt6-base-dev qt6-5compat-dev

# No step is made for arguments other than the options.
for arguments in --help --slow 'quick' '--quick --slow'; do
    : >"$log"
    status=0
    PATH="$directory/bin:$PATH" "$directory/project/check" $arguments >"$directory/printed" 2>"$directory/problem" </dev/null || status=$?
    [ ! -s "$log" ] || fail "check $arguments: made a step"
    if [ "$arguments" = --help ]; then
        [ "$status" = 0 ] && grep -q -- '^  --quick ' "$directory/printed" || fail "check --help: status $status"
    else
        [ "$status" = 2 ] && [ "$(cat "$directory/problem")" = "Unknown arguments: $arguments. Run ./check --help." ] \
            || fail "check $arguments: status $status"
    fi
done
