#!/usr/bin/env bash
# same_arithmetic.sh FIRST COUNT OPERATIONS REFERENCE PROGRAM...: the program, started by the words PROGRAM, gives the
# results of the program REFERENCE on COUNT blocks of 4096 pairs of operands from block FIRST on, for each of
# OPERATIONS, a list with commas between. Where one differs its operands are shown, with both results.
set -euo pipefail
first=$1 count=$2 reference=$4
IFS=, read -r -a operations <<<"$3"
shift 4

failed=0
failures=0
compared=0
while read -r name block hash other_name other_block other_hash; do
    compared=$((compared + 1))
    [ "$name $block $hash" != "$other_name $other_block $other_hash" ] || continue
    failed=1
    echo "$name, block $block: operands, expected and found" >&2
    paste -d ' ' <("$reference" --show "$block" "$name") <("$@" --show "$block" "$name") |
        awk '$3 != $6 && ++shown <= 5 { print $1, $2, $3, $6 }' >&2
    [ $((failures += 1)) -lt 5 ] || break
done < <(paste -d ' ' <("$reference" "$first" "$count" "${operations[@]}") <("$@" "$first" "$count" "${operations[@]}"))

# A program that printed nothing would agree with another one.
if [ $failed -eq 0 ] && [ $compared -ne $((count * ${#operations[@]})) ]; then
    echo "compared $compared blocks, expected $count of each of ${#operations[@]} operations" >&2
    failed=1
fi
exit $failed
