#!/usr/bin/env bash
# Reads names of changed files, one per line, and prints a regular expression for the labels of the tests that they
# concern (ctest -L). Each test is labelled with its directory in tests/. A file that the table below does not list
# concerns all tests.
set -euo pipefail

all=.
labels=""
while read -r file; do
    case $file in
    "") continue ;;
    src/util/*) labels="$all" && break ;;
    src/*/*)
        directory=${file#src/}
        labels+=" ${directory%%/*} formats report session tool corpus readme symbols layout package structure"
        ;;
    layout/*) labels+=" layout load bindings convert check tool session package readme symbols structure" ;;
    tools/*) labels+=" tool session corpus layout load structure bindings" ;;
    python/* | r/*) labels+=" bindings" ;;
    tests/support/* | tests/data/*) labels="$all" && break ;;
    tests/*/*)
        directory=${file#tests/}
        labels+=" ${directory%%/*}"
        ;;
    bench/* | fuzz/* | CHANGELOG.md | CONTRIBUTING.md | .clang-* | .editorconfig | .gitignore) ;;
    docs/bindings.md) labels+=" bindings" ;;
    docs/*) labels+=" report tool layout" ;;
    README.md) labels+=" readme tool bindings" ;;
    check | run | .ci/* | cmake/*.sh | desktop/*) labels+=" package" ;;
    *) labels="$all" && break ;;
    esac
done

case $labels in
"$all" | "") echo "$labels" ;;
*) echo "^($(tr ' ' '\n' <<<"$labels" | sed '/^$/d' | sort -u | paste -sd '|'))\$" ;;
esac
