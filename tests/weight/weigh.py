"""Weighs the library's compiled objects: text with constants, and static data, in total and by function.

weigh.py --nm NM --readelf READELF --exports LIST --soft-float [OBJECT...] --build LABEL LIMIT OBJECT... [--build ...]

Prints a table of bytes with a column for each build of the library: each exported function, and what the other routines
of a file take together; below, the arithmetic of doubles that is linked beside it, the same in each build. Fails when
both together pass a build's limit (0 for none), or their static data 1 KiB. What the compiler's run-time and the C
library add to a program is not the library's.
"""
import argparse
import collections
import os
import re
import subprocess
import sys

DATA_LIMIT = 1024


def sections(readelf, path):
    """Name and size of each section that takes memory, with whether it can be written."""
    listing = subprocess.run([readelf, "-S", "-W", path], check=True, capture_output=True, text=True).stdout
    row = re.compile(r"^ *\[ *\d+\] (\S+) +\S+ +[0-9a-f]+ [0-9a-f]+ ([0-9a-f]+) [0-9a-f]+ +([A-Zop]*) ", re.MULTILINE)
    return [(name, int(size, 16), "W" in flags) for name, size, flags in row.findall(listing) if "A" in flags]


def functions(nm, path):
    """Name and size of each function."""
    listing = subprocess.run([nm, "-S", "--size-sort", path], check=True, capture_output=True, text=True).stdout
    symbols = (line.split() for line in listing.splitlines())
    return [(name, int(size, 16)) for _, size, kind, name in symbols if kind in "tTwW"]


def file_of(path):
    """The source of an object, as FOLDER/FILE.cpp."""
    folder, name = os.path.split(path)
    return os.path.join(os.path.basename(folder), re.sub(r"\.(o|obj)$", "", name))


class Build:
    def __init__(self, options, label, limit, *objects):
        self.label, self.limit = label, int(limit)
        self.rows = collections.Counter()
        self.text = self.data = 0
        for path in objects:
            self.add(options, path)
        self.library = self.text
        for path in options.soft_float:
            self.add_sizes(options, path)

    def add_sizes(self, options, path):
        fixed = sum(size for _, size, writable in sections(options.readelf, path) if not writable)
        self.data += sum(size for _, size, writable in sections(options.readelf, path) if writable)
        self.text += fixed
        return fixed

    def add(self, options, path):
        fixed = self.add_sizes(options, path)
        for name, size in functions(options.nm, path):
            if name in options.exported:
                self.rows[file_of(path), name] += size
                fixed -= size
        self.rows[file_of(path), "(internal routines and constants)"] += fixed

    def is_too_heavy(self):
        return self.data >= DATA_LIMIT or 0 < self.limit <= self.text


def print_table(builds):
    def line(first, second, numbers):
        print(f"{first:<30} {second:<34}" + "".join(f"{number:>12}" for number in numbers))

    line("file", "function", (build.label for build in builds))
    for file, name in sorted(set().union(*(build.rows for build in builds))):
        sizes = [build.rows[file, name] for build in builds]
        if any(sizes):
            line(file, name, sizes)
    line("text and constants", "", (build.library for build in builds))
    line("platform/soft_float", "", (build.text - build.library for build in builds))
    line("together", "", (build.text for build in builds))
    line("limit", "", (build.limit or "none" for build in builds))
    line("static data, limit 1024", "", (build.data for build in builds))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--nm", required=True)
    parser.add_argument("--readelf", required=True)
    parser.add_argument("--exports", required=True)
    parser.add_argument("--soft-float", nargs="*", required=True)
    parser.add_argument("--build", nargs="+", action="append", required=True)
    options = parser.parse_args()
    with open(options.exports, encoding="utf-8") as exports:
        options.exported = set(exports.read().split())

    builds = [Build(options, *arguments) for arguments in options.build]
    print_table(builds)
    for build in builds:
        missing = options.exported - {name for _, name in build.rows}
        if missing:
            sys.exit(f"weigh: {build.label}: no object defines {' '.join(sorted(missing))}")
        if build.is_too_heavy():
            sys.exit(f"weigh: {build.label}: the library is too heavy")


if __name__ == "__main__":
    main()
