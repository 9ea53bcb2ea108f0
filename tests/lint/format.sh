#!/bin/sh
# format.sh SOURCE_DIR: every C and C++ file is formatted as .clang-format says.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
cd "$1"
files=$("$here/source_files.sh" . '*.h' '*.c' '*.cpp')
[ -n "$files" ] || { echo "format: found no file" >&2; exit 1; }
# shellcheck disable=SC2086
clang-format --dry-run -Werror $files
