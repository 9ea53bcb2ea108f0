#!/bin/sh
# source_files.sh SOURCE_DIR PATTERN...: the project's files whose names match, a line each. In a checkout git knows them;
# in an unpacked archive it is whatever lies there, build trees aside.
set -eu
cd "$1"
shift
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    git ls-files --cached --others --exclude-standard -- "$@"
else
    for pattern; do
        find . -name build -prune -o -name out -prune -o -type f -name "$pattern" -print
    done | sed 's|^\./||'
fi | LC_ALL=C sort -u | while read -r file; do
    # A file that is deleted but not yet committed is still listed by git.
    [ ! -f "$file" ] || printf '%s\n' "$file"
done
