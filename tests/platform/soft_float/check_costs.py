#!/usr/bin/env python3
"""Compares the tables of a README with what is measured.

check_costs.py --readme FILE --readelf READELF --objects OBJECT... --measure COMMAND...

COMMAND prints lines of a name and three counts of instructions. The README has a table row for each: the name in
backquotes, the three counts, other columns. It also has a row of name and bytes for each section .text.soft_float.NAME
of the objects; what the compiler made of C++ stands there as `rare.cpp`, the sum as `all`. Fails when a row is missing
or says anything else.
"""
import argparse
import re
import subprocess
import sys


def rows(path):
    """The cells of each table row by what its first one has in backquotes; numbers only."""
    found = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
            if line.startswith("| `"):
                name = re.match(r"`([^`]+)`", cells[0])[1]
                numbers = [int(cell.replace(",", "")) for cell in cells[1:] if re.fullmatch(r"[\d,]+", cell)]
                found.setdefault(name, []).append(numbers)
    return found


def section_sizes(readelf, objects):
    sizes = {}
    row = re.compile(r"\] \.text\.(\S+) +PROGBITS +[0-9a-f]+ [0-9a-f]+ ([0-9a-f]+) ")
    for path in objects:
        listing = subprocess.run([readelf, "-S", "-W", path], check=True, capture_output=True, text=True).stdout
        for name, size in row.findall(listing):
            key = name.removeprefix("soft_float.") if name.startswith("soft_float.") else "rare.cpp"
            sizes[key] = sizes.get(key, 0) + int(size, 16)
    return sizes


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--readme", required=True)
    parser.add_argument("--readelf", required=True)
    parser.add_argument("--objects", nargs="+", required=True)
    parser.add_argument("--measure", nargs="+", required=True)
    options = parser.parse_args()
    stated = rows(options.readme)
    measured = {}
    for line in subprocess.run(options.measure, check=True, capture_output=True, text=True).stdout.splitlines():
        name, *counts = line.split()
        measured[name] = [int(count) for count in counts]
    measured.update({name: [size] for name, size in section_sizes(options.readelf, options.objects).items()})
    measured["all"] = [sum(counts[0] for counts in measured.values() if len(counts) == 1)]

    failed = len(measured) < 20
    for name, counts in measured.items():
        if not any(row[: len(counts)] == counts for row in stated.get(name, [])):
            print(f"{name}: {counts}, the README says {stated.get(name, 'nothing')}")
            failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
