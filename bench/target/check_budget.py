#!/usr/bin/env python3
"""Runs the image that counts instructions, prints its table, and compares it with the budget.

Usage: check_budget.py --budget FILE --exports FILE COMMAND...

A line of the budget: function, median and maximum of the instructions, and the greatest ratio to the floor ("-" for none).
The check fails where a count or a ratio is exceeded, where a function is missing on either side, or where the image fails.
Counts below the budget are reported; the file is then changed by hand, on purpose.
"""

import argparse
import subprocess
import sys
from typing import Dict, List, NamedTuple, Optional


# What is measured beside the library, for comparison, has no budget.
COMPARISON = "Eigen"


class Count(NamedTuple):
    inputs: int
    minimum: int
    median: int
    maximum: int
    functions: Optional[int]
    floor: Optional[int]
    ratio: Optional[float]


class Budget(NamedTuple):
    median: int
    maximum: int
    ratio: Optional[float]


def read_counts(text: str) -> Dict[str, Count]:
    counts = {}
    for line in text.splitlines():
        words = line.split()
        numbers: List[Optional[int]] = [int(word) for word in words[1:7]]
        numbers += [None] * (6 - len(numbers))
        counts[words[0]] = Count(*numbers, float(words[7]) if len(words) > 7 else None)
    return counts


def read_budget(path: str) -> Dict[str, Budget]:
    budget = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            words = line.split("#")[0].split()
            if words:
                budget[words[0]] = Budget(int(words[1]), int(words[2]), None if words[3] == "-" else float(words[3]))
    return budget


def print_table(counts: Dict[str, Count]) -> None:
    print(f"{'':26} inputs  minimum   median  maximum   maths    floor  ratio")
    for name, count in counts.items():
        line = f"{name:26} {count.inputs:6} {count.minimum:8,} {count.median:8,} {count.maximum:8,}"
        if count.floor is not None:
            line += f" {count.functions:7,} {count.floor:8,}"
        if count.ratio is not None:
            line += f" {count.ratio:6.3f}"
        print(line)


def complaints(counts: Dict[str, Count], budget: Dict[str, Budget], exports: List[str]) -> List[str]:
    found = []
    measured = {name.split("/")[0] for name in counts}
    found += [f"{name}: not measured" for name in exports if name not in measured]
    ours = {name for name in counts if not name.startswith(COMPARISON)}
    for name in sorted(ours ^ budget.keys()):
        found.append(f"{name}: {'no budget' if name in counts else 'a budget, but no measurement'}")
    for name in counts.keys() & budget.keys():
        count, limit = counts[name], budget[name]
        if count.inputs < 50:
            found.append(f"{name}: {count.inputs} inputs only")
        if count.median > limit.median:
            found.append(f"{name}: median {count.median:,}, budget {limit.median:,}")
        if count.maximum > limit.maximum:
            found.append(f"{name}: maximum {count.maximum:,}, budget {limit.maximum:,}")
        if limit.ratio is not None and (count.ratio is None or count.ratio > limit.ratio):
            found.append(f"{name}: ratio to the floor {count.ratio}, budget {limit.ratio}")
        if count.median < 0.99 * limit.median:
            print(f"{name}: median {count.median:,} is below its budget of {limit.median:,}", file=sys.stderr)
    return sorted(found)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--budget", required=True)
    parser.add_argument("--exports", required=True)
    parser.add_argument("command", nargs=argparse.REMAINDER)
    arguments = parser.parse_args()
    run = subprocess.run(arguments.command, stdout=subprocess.PIPE, text=True, check=False)
    if run.returncode != 0:
        print(run.stdout, end="")
        print(f"the image ended with status {run.returncode}")
        return 1
    counts = read_counts(run.stdout)
    print_table(counts)
    with open(arguments.exports, encoding="utf-8") as file:
        exports = [name for name in file.read().split() if name.startswith("Q")]
    found = complaints(counts, read_budget(arguments.budget), exports)
    print("\n".join(found) or "within the budget", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
