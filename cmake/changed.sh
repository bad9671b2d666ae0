#!/usr/bin/env bash
# Prints the files of the working tree that differ from the main branch, committed or not, one per line. The main branch
# is origin/main or main; on the main branch itself, the files of the last commit are printed too. Deleted files and the
# former names of renamed files are printed as well.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

base_commit() {
    local branch base
    for branch in origin/main main; do
        base=$(git merge-base HEAD "$branch" 2>/dev/null) || continue
        [ "$base" = "$(git rev-parse HEAD)" ] || { echo "$base"; return; }
    done
    git rev-parse -q --verify HEAD~1 || git hash-object -t tree /dev/null
}

base=$(base_commit)
{
    git diff --name-only --no-renames "$base"
    git ls-files --others --exclude-standard
} | sort -u
