#!/bin/sh
# tidy.sh SOURCE_DIR BUILD_DIR: clang-tidy finds nothing in any source that BUILD_DIR compiles from the tree.
set -eu
source_dir=$1 build_dir=$2
log=$build_dir/tidy.log

# Build trees within the source tree hold sources too (those of CMake's own checks); they are not the project's.
files=$(sed -n 's/^ *"file": "\(.*\)",*$/\1/p' "$build_dir/compile_commands.json" | grep -v -F "$build_dir/" |
    grep -F "$source_dir/" | LC_ALL=C sort -u)
[ -n "$files" ] || { echo "tidy: $build_dir/compile_commands.json names no source" >&2; exit 1; }

# tidy OPTION...: the sources named on the input, two at a time.
tidy()
{
    xargs -r -P 2 -n 1 clang-tidy --quiet -p "$build_dir" "$@" >>"$log" 2>&1
}

: >"$log"
failed=0
printf '%s\n' "$files" | { grep -v -F "$source_dir/tests/" || true; } | tidy || failed=1
# Left out for tests: the path-sensitive analyzer, which needs minutes for each file of GoogleTest assertions, and the
# rules of safe coding, which forbid the constant seeds that make a test repeatable.
printf '%s\n' "$files" | { grep -F "$source_dir/tests/" || true; } |
    tidy '--checks=-clang-analyzer-*,-cert-*' || failed=1

[ $failed -eq 0 ] || grep -v ' warnings generated\.$' "$log" >&2
exit $failed
