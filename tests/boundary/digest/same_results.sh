#!/usr/bin/env bash
# same_results.sh WORK_DIR platform|plain DIVISOR REFERENCE DIGEST...: the digest, started by the words DIGEST, gives the
# results of the program REFERENCE: with the digest's own plain mathematics the same listing, byte by byte; with the
# platform's, so far as its mathematics functions give theirs. The listings and what differs in them stay in WORK_DIR;
# the table of it is printed.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cd "$1"
math=$2 divisor=$3 reference=$4
shift 4

options=(--full --divide "$divisor")
[ "$math" = platform ] || options+=(--plain-math)

"$reference" "${options[@]}" >"reference_$math.txt"
"$@" "${options[@]}" >"this_$math.txt"

if [ "$math" = plain ]; then
    if ! cmp reference_plain.txt this_plain.txt; then
        diff reference_plain.txt this_plain.txt | head -n 20 >&2
        exit 1
    fi
    # None would be no listing: grep fails.
    calls=$(grep -c ' | ' this_plain.txt)
    echo "$calls calls, all lines the same"
    exit 0
fi

# What the last bit of the mathematics functions decides shows in so many shaken listings; they are read as they come.
shakes=32
shaken=()
for ((seed = 1; seed <= shakes; ++seed)); do
    exec {listing}< <("$reference" "${options[@]}" --shake "$seed")
    shaken+=(--shaken "/dev/fd/$listing")
done
"$here/compare_results.py" "${shaken[@]}" --list "differences_$math.txt" "reference_$math.txt" "this_$math.txt"
