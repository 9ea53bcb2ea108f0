#!/bin/sh
# check_digest.sh DIGEST LIST: the program runs to its end, names each exported function on LIST but the one that
# connects an instrument, reaches success and failure of each that can fail, and prints the same a second time.
set -u
digest=$1 list=$2
failed=0

complain()
{
    echo "$*" >&2
    failed=1
}

once=$("$digest" --divide 10) || complain "$digest ends with $?"
again=$("$digest" --divide 10)
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
