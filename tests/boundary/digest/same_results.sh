#!/usr/bin/env bash
# same_results.sh WORK_DIR platform|plain DIVISOR REFERENCE DIGEST...: the digest, started by the words DIGEST, gives the
# results of the program REFERENCE, so far as its mathematics functions give theirs. The listings and what differs in
# them stay in WORK_DIR; the table of it is printed.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cd "$1"
math=$2 divisor=$3 reference=$4
shift 4

options=(--full --divide "$divisor")
[ "$math" = platform ] || options+=(--plain-math)

"$reference" "${options[@]}" >"reference_$math.txt"
"$@" "${options[@]}" >"this_$math.txt"

# What the last bit of the mathematics functions decides shows in so many shaken listings; they are read as they come.
shakes=32
shaken=()
for ((seed = 1; seed <= shakes; ++seed)); do
    exec {listing}< <("$reference" "${options[@]}" --shake "$seed")
    shaken+=(--shaken "/dev/fd/$listing")
done
"$here/compare_results.py" "${shaken[@]}" --list "differences_$math.txt" "reference_$math.txt" "this_$math.txt"
