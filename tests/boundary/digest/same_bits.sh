#!/bin/sh
# same_bits.sh SOURCE_DIR WORK_DIR LIBRARY_SOURCE...: compiles library and digest with both compilers at three levels of
# optimisation; all six programs must print the same. At -O0 they may not: there pow(x, 2.0) is a call of the library.
set -eu
source_dir=$1 work=$2
shift 2

for compiler in g++ clang++; do
    command -v "$compiler" >/dev/null || { echo "same_bits: $compiler is missing" >&2; exit 1; }
done

rm -rf "$work"
mkdir -p "$work"
cd "$source_dir"

for level in -O1 -O2 -O3; do
    for compiler in g++ clang++; do
        "$compiler" -std=c++17 "$level" -ffp-contract=off -fno-exceptions -fno-rtti -I . -I include -DQSTDLIB_STATIC \
            -o "$work/$compiler$level" "$@" tests/boundary/digest/*.cpp \
            -Wl,--wrap=sin,--wrap=cos,--wrap=tan,--wrap=atan2,--wrap=hypot &
    done
    wait
done

reference=$work/g++-O1
[ -x "$reference" ] || { echo "same_bits: $reference was not built" >&2; exit 1; }
"$reference" >"$reference.txt"
cat "$reference.txt"

failed=0
for level in -O1 -O2 -O3; do
    for compiler in g++ clang++; do
        program=$work/$compiler$level
        "$program" >"$program.txt" || { echo "same_bits: $compiler $level ends with $?" >&2; failed=1; }
        if ! diff "$reference.txt" "$program.txt" >&2; then
            echo "same_bits: $compiler $level differs from g++ -O1" >&2
            failed=1
        fi
    done
done
exit $failed
