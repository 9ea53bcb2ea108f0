#!/bin/sh
# hygiene.sh SOURCE_DIR: no stray blanks, no line of more than 120 characters, one version number, and a README that
# shows the examples as they are.
set -u
here=$(cd "$(dirname "$0")" && pwd)
cd "$1" || exit 2
failed=0

complain()
{
    echo "hygiene: $*" >&2
    failed=1
}

# Files of data and of expected output are as their source has them.
check_blanks()
{
    tab=$(printf '\t')
    "$here/source_files.sh" . '*.h' '*.c' '*.cpp' '*.cmake' '*.in' '*.sh' '*.md' '*.json' 'CMakeLists.txt' '.clang-*' \
        '.editorconfig' '.gitignore' 'run' 'test' '*/CMakeLists.txt' | grep -v -E '(^|/)(town|data|expected)/' |
        xargs grep -n -H -E "$tab|[[:blank:]]\$|$(printf '\r')\$" >&2 && complain "tabs or blanks at the end of a line"
}

# The formatter leaves comments as they are. Bytes that continue a character do not count.
check_width()
{
    "$here/source_files.sh" . '*.h' '*.c' '*.cpp' | while read -r file; do
        LC_ALL=C tr -d '\200-\277' <"$file" | LC_ALL=C awk -v file="$file" \
            'length > 120 { print file ":" NR ": " length " characters" }'
    done | grep . >&2 && complain "lines of more than 120 characters"
}

# The topmost section of the changelog that bears a number, as "1.2.3" or "Unreleased (1.2.3)", is about this version.
check_version()
{
    project=$(sed -n 's/^ *VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)
    newest=$(sed -n 's/^## [^0-9]*\([0-9][0-9.]*\).*/\1/p' CHANGELOG.md | head -n 1)
    [ -n "$project" ] || complain "CMakeLists.txt states no version"
    [ "$newest" = "$project" ] || complain "CMakeLists.txt has version $project, CHANGELOG.md is at ${newest:-none}"
}

# check_example FILE: one fenced block of the README is FILE, whole and to the letter.
check_example()
{
    awk -v file="$1" '
        BEGIN { while ((getline line < file) > 0) wanted = wanted line "\n" }
        /^```/ { if (inside && block == wanted) found = 1; inside = !inside; block = ""; next }
        inside { block = block $0 "\n" }
        END { exit !(found && wanted != "") }' README.md || complain "README.md does not show $1 as it is"
}

check_blanks
check_width
check_version
check_example examples/set_up_station.c
check_example examples/set_up_station.cpp
exit $failed
