#!/bin/sh
# exported_symbols.sh LIBRARY EXPORTED UNDEFINED NM READELF: what the shared library shows to, and wants from, the system.
# It shows just the names of the file EXPORTED, and wants none but those of the file UNDEFINED.
set -u
library=$1 list=$2 undefined=$3 nm=$4 readelf=$5
LC_ALL=C
export LC_ALL
failed=0

# expect WHAT EXPECTED GOT
expect()
{
    if [ "$2" != "$3" ]; then
        printf '%s\n expected: %s\n found: %s\n' "$1" "$2" "$3" >&2
        failed=1
    fi
}

expect "exported symbols" "$(cat "$list")" "$("$nm" -D --defined-only "$library" | awk '{ print $NF }' | sort)"

# Strong references are those listed, of the C library and its mathematics, recognised by their version. The compiler's
# run-time support, the arithmetic of a processor without a floating-point unit, is in the library. Weak references may
# stay unresolved: the host's hooks and what the compiler's start-up code asks for.
strong=$("$nm" -D --undefined-only "$library" | awk '$1 == "U" { print $2 }' | sort)
expect "references outside the C library" "" "$(printf '%s\n' "$strong" | grep -v '@GLIBC_')"
expect "references that are not listed" "" "$(printf '%s\n' "$strong" | sed 's/@.*//' | grep -v -x -F -f "$undefined")"
expect "weak references" "RegisterExtensionModule UnregisterExtensionModule" \
    "$("$nm" -D --undefined-only "$library" | awk '$1 == "w" { print $2 }' |
        grep -v -E '^(__gmon_start__|_ITM_(de)?registerTMCloneTable|__cxa_finalize(@GLIBC_.*)?)$' | sort | paste -s -d ' ')"

dynamic=$("$readelf" -d -W "$library")
expect "needed libraries" "" \
    "$(printf '%s\n' "$dynamic" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -v -E '^lib[cm]\.so\.[0-9]+$')"
expect "SONAME" "libqstdlib.so.1" "$(printf '%s\n' "$dynamic" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')"
expect "text relocations" "" "$(printf '%s\n' "$dynamic" | grep TEXTREL)"

segments=$("$readelf" -l -W "$library")
expect "segments both writable and executable" "" \
    "$(printf '%s\n' "$segments" | awk '$1 == "LOAD" || $1 == "GNU_STACK"' | grep 'RWE')"
expect "marks the stack" "1" "$(printf '%s\n' "$segments" | grep -c 'GNU_STACK')"

exit $failed
