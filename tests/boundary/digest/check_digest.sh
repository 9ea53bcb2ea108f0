#!/bin/sh
# check_digest.sh LIST DIVISOR COMMAND...: the program runs to its end, names each exported function on LIST but the one
# that connects an instrument, reaches success and failure of each that can fail, and prints the same a second time. It
# makes one call of DIVISOR that it could make.
set -u
list=$1 divisor=$2
shift 2
failed=0

complain()
{
    echo "$*" >&2
    failed=1
}

once=$("$@" --divide "$divisor") || complain "$* ends with $?"
again=$("$@" --divide "$divisor")
[ "$once" = "$again" ] || complain "two runs differ"

names=$(printf '%s\n' "$once" | awk '{ print $1 }' | LC_ALL=C sort)
[ "$names" = "$(grep -v '^ConnectInstrumentSettings$' "$list")" ] || complain "not the exported functions: $names"

printf '%s\n' "$once" | while read -r name calls _ succeeded _ _; do
    case $name in
    QCogoCalcSlopeByDist | QCogoCalcArea | QREFGetArcParams | QSTNSeaLevelCalcByBM) [ "$succeeded" -eq "$calls" ] ;;
    *) [ "$succeeded" -gt $((calls / 4)) ] && [ "$succeeded" -lt "$calls" ] ;;
    esac || { echo "$name: $succeeded of $calls calls succeeded" >&2; exit 1; }
done || failed=1

exit $failed
