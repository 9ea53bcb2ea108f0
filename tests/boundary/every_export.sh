#!/bin/sh
# every_export.sh LIST HEADERS WHERE...: each exported function on LIST is declared in HEADERS, nothing else is, and each
# is called in every WHERE (a file or a folder).
set -u
list=$1 headers=$2
shift 2
failed=0

declared=$(cat "$headers"/*.h "$headers"/*/*.h | sed -n 's/^QSTD_API .* \**\([A-Za-z0-9]*\)(.*/\1/p' | LC_ALL=C sort)
if [ "$declared" != "$(cat "$list")" ]; then
    printf 'declared with QSTD_API:\n%s\nlisted:\n%s\n' "$declared" "$(cat "$list")" >&2
    failed=1
fi

while read -r name; do
    for where; do
        if ! grep -r -q "\<$name(" "$where"; then
            echo "$name is not called in $where" >&2
            failed=1
        fi
    done
done <"$list"
exit $failed
