#!/usr/bin/env python3
"""Who computes doubles in what was linked, and what platform/soft_float brings with it.

check_links.py --nm NM --readelf READELF --libgcc ARCHIVE --libm ARCHIVE --map FILE [--map FILE ...] --objects OBJECT...

Fails when
- an object of the compiler's library that defines one of the component's names was linked (each --map is the linker's);
- such an object defines a double-precision routine that the component lacks: then both might be needed;
- an object of the mathematics library's archive that defines the square root was linked;
- the component was not linked, or asks for anything that it does not define itself;
- it has writable data, or its code a reference that would be a text relocation in a shared library.
ARCHIVE may be "none".
"""
import argparse
import collections
import re
import subprocess
import sys


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def names_by_member(nm, archive):
    """The global names that each member of an archive defines."""
    members = collections.defaultdict(set)
    for line in run(nm, "-A", "-g", "--defined-only", archive).splitlines():
        path, symbol = line.rsplit(maxsplit=1)
        member = re.search(r":([^:]+\.o):", path)
        members[member[1]].add(symbol)
    return members


def defined(nm, objects):
    lines = (line.split() for line in run(nm, "-g", "--defined-only", *objects).splitlines())
    return {words[-1] for words in lines if len(words) == 3}


def undefined(nm, objects):
    return {line.split()[-1] for line in run(nm, "-u", *objects).splitlines() if line.strip().startswith("U ")}


def linked_members(text, archive):
    """Members of an archive that the linker's map names."""
    return set(re.findall(re.escape(archive.rsplit("/", 1)[-1]) + r"\(([^)]+)\)", text))


def writable_sections(readelf, path):
    row = re.compile(r"^ *\[ *\d+\] (\S+) +\S+ +[0-9a-f]+ [0-9a-f]+ ([0-9a-f]+) [0-9a-f]+ +([A-Zop]*) ", re.MULTILINE)
    return [name for name, size, flags in row.findall(run(readelf, "-S", "-W", path)) if "W" in flags and int(size, 16)]


def absolute_references(readelf, path):
    lines = run(readelf, "-r", "-W", path).splitlines()
    return [line for line in lines if "R_ARM_ABS32" in line or "R_ARM_MOV" in line]


def main():
    parser = argparse.ArgumentParser()
    for option in ("--nm", "--readelf", "--libgcc", "--libm"):
        parser.add_argument(option, required=True)
    parser.add_argument("--map", action="append", required=True)
    parser.add_argument("--objects", nargs="+", required=True)
    options = parser.parse_args()
    found = []

    ours = defined(options.nm, options.objects)
    found += [f"{name} is asked for and not there" for name in sorted(undefined(options.nm, options.objects) - ours)]
    replaced = {member: names for member, names in names_by_member(options.nm, options.libgcc).items() if names & ours}
    if len(replaced) < 10:
        found.append(f"{options.libgcc} has only {len(replaced)} objects that could be replaced")
    for member, names in replaced.items():
        found += [f"{member} defines {name}, too, which is missing" for name in sorted(names - ours)]
    roots = {}
    if options.libm != "none":
        roots = {member for member, names in names_by_member(options.nm, options.libm).items() if names & ours}
        if not roots:
            found.append(f"{options.libm} has no square root")

    for path in options.map:
        with open(path, encoding="utf-8") as file:
            text = file.read()
        for archive, members in ((options.libgcc, replaced), (options.libm, roots)):
            linked = linked_members(text, archive) & set(members)
            found += [f"{path}: {member} was linked" for member in sorted(linked)]
        if "add.S.o" not in text:
            found.append(f"{path}: the component was not linked")

    for path in options.objects:
        found += [f"{path}: {section} can be written" for section in writable_sections(options.readelf, path)]
        found += [f"{path}: {line}" for line in absolute_references(options.readelf, path)]
    print("\n".join(found) if found else f"{len(ours)} names, in place of {' '.join(sorted(replaced))}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
