#!/bin/sh
# check_board.sh RUN IMAGE: what an image prints arrives, and its exit status, however it ends.
set -u
run=$1 image=$2
failed=0

# check STATUS PATTERN ARGUMENT...: the image ends with STATUS and prints, as its last line, what matches PATTERN.
check()
{
    status=$1 pattern=$2
    shift 2
    printed=$("$run" "$image" "$@" 2>&1)
    ended=$?
    last=$(printf '%s\n' "$printed" | tail -n 1)
    if [ "$ended" -ne "$status" ] || ! printf '%s\n' "$last" | grep -q -x -e "$pattern"; then
        echo "$*: ends with $ended, expected $status; prints '$last', expected '$pattern'" >&2
        failed=1
    fi
}

check 3 '4 c,d=e' return a c,d=e
check 4 '' exit
check 5 '' leave
check 126 'Ended by a signal to itself' abort
check 125 'Fault: data abort at 0x[0-9a-f]*' null
check 125 'Fault: data abort at 0x[0-9a-f]*' wild
check 125 'Fault: prefetch abort at 0x00000000' jump
check 125 'Fault: undefined instruction at 0x[0-9a-f]*' undefined
check 0 '200' count
check 0 'caught' throw
QSTD_IMAGE_SECONDS=1
export QSTD_IMAGE_SECONDS
check 124 '.*terminating on signal 15.*' hang
exit $failed
