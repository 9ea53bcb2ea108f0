#!/bin/sh
# check_install.sh CMAKE GENERATOR CC SOURCE_DIR BUILD_DIR WORK_DIR LIBRARY_DIR EXPECTED_OUTPUT
#
# Installs the build into a prefix below WORK_DIR and uses it from outside as others will: with find_package and both
# libraries, with pkg-config, and both again after the prefix was moved.
set -eu
cmake=$1 generator=$2 compiler=$3 source_dir=$4 build_dir=$5 work=$6 library_dir=$7 expected=$8
program=$source_dir/examples/set_up_station.c

# Nothing of the caller's surroundings may help to find the library.
unset CMAKE_PREFIX_PATH CPATH C_INCLUDE_PATH LIBRARY_PATH LD_LIBRARY_PATH PKG_CONFIG_PATH qstdlib_DIR CFLAGS LDFLAGS

fail()
{
    echo "check_install: $*" >&2
    exit 1
}

expect_output()
{
    output=$(LD_LIBRARY_PATH=${2-} "$1") || fail "$1 ends with $?"
    [ "$output" = "$expected" ] || fail "$1 prints '$output', expected '$expected'"
}

use_with_cmake()
{
    for library in qstdlib::qstdlib qstdlib::qstdlib_static; do
        echo "-- find_package, $library, $1"
        tree=$work/consumer
        rm -rf "$tree"
        "$cmake" -S "$source_dir/tests/boundary/install/consumer" -B "$tree" -G "$generator" \
            -D CMAKE_C_COMPILER="$compiler" -D CMAKE_PREFIX_PATH="$1" -D CONSUMER_SOURCE="$program" \
            -D CONSUMER_LIBRARY="$library" >"$work/configure.log" 2>&1 || { cat "$work/configure.log"; fail configure; }
        "$cmake" --build "$tree" >"$work/build.log" 2>&1 || { cat "$work/build.log"; fail build; }
        expect_output "$tree/consumer"
    done
}

use_with_pkg_config()
{
    echo "-- pkg-config, $1"
    flags=$(PKG_CONFIG_PATH=$1/$library_dir/pkgconfig pkg-config --cflags --libs qstdlib)
    # The flags are words without blanks inside, as pkg-config writes them.
    # shellcheck disable=SC2086
    "$compiler" -o "$work/with_pkg_config" "$program" $flags
    expect_output "$work/with_pkg_config" "$1/$library_dir"
}

rm -rf "$work"
mkdir -p "$work"

echo "-- without the library's flags the program must not build"
if "$compiler" -o "$work/without_flags" "$program" >"$work/without_flags.log" 2>&1; then
    fail "the program builds without any flags: an installed library hides what is tested here"
fi
grep -q 'qstdlib\.h' "$work/without_flags.log" || fail "it fails for another reason: $(cat "$work/without_flags.log")"

"$cmake" --install "$build_dir" --prefix "$work/prefix" >"$work/install.log" 2>&1 ||
    { cat "$work/install.log"; fail "cmake --install"; }
diff -r "$source_dir/include" "$work/prefix/include" || fail "the installed headers differ from include/"
if grep -r -l -F -e "$source_dir" -e "$build_dir" "$work/prefix/$library_dir/cmake" "$work/prefix/$library_dir/pkgconfig"
then
    fail "these package files hold a path of the source or build tree"
fi

use_with_cmake "$work/prefix"
use_with_pkg_config "$work/prefix"

mv "$work/prefix" "$work/moved"
use_with_cmake "$work/moved"
use_with_pkg_config "$work/moved"
