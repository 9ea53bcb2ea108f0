#!/usr/bin/env python3
"""compare_results.py [--shaken LISTING]... [--list FILE] REFERENCE OTHER

Compares two full listings of the digest, of two platforms, and prints a table, a line a function.

Sums, products, quotients and roots are the same everywhere. So every result must be equal, to the last bit, where the
mathematics functions were asked the same and answered with the same bits. Where they were not, for no standard fixes the
last bit of these functions,
 - an angle may differ by one unit;
 - a real number may differ by 4 units in the last place of the leading term, the larger of the number itself and the
   largest length among the call's inputs;
 - beyond that the result must be one that amplifies: the listings of the reference platform whose mathematics functions
   were shaken in the last bit show how far it moves, and it may differ by 4 times the most they show, or at will where
   they move it farther than the leading term: then not one digit of it is determined;
 - a status, with the results that go with it, may differ only where shaking changes it too: the last bit decides.
Without shaken listings neither of the last two is excused. FILE receives a line for each result that differs.
"""
import argparse
import math
import struct
import sys

FULL_CIRCLE = 360 * 3600 * 16
MOST_UNITS = 4
MOST_AMPLIFIED = 4


class Function:
    """What was counted of one exported function."""

    def __init__(self):
        self.calls = 0
        self.same = 0
        self.same_math = 0
        self.angles = 0
        self.reals = 0
        self.most_units = 0.0
        self.amplified = 0
        self.decided = 0
        self.failures = 0


def real(word):
    return struct.unpack(">d", bytes.fromhex(word))[0]


def is_real(word):
    return len(word) == 16


def is_angle(word):
    return word[0] == "a" and not is_real(word)


def angle_distance(one, other):
    apart = (one - other) % FULL_CIRCLE
    return min(apart, FULL_CIRCLE - apart)


def moved(words, shaken_words, distance):
    """The farthest that shaking has moved a value; where it led to no number, it does not count."""
    moves = [distance(words, shaken) for shaken in shaken_words]
    return max((move for move in moves if math.isfinite(move)), default=0.0)


class Comparison:
    def __init__(self, listing):
        self.functions = {}
        self.listing = listing

    def note(self, function, place, kind, one, other, remark):
        print(f"{place}: {kind}: {one} {other} {remark}".rstrip(), file=self.listing or sys.stderr)
        if kind == "WRONG":
            function.failures += 1
            if self.listing:
                print(f"{place}: {one} {other} {remark}", file=sys.stderr)

    def angles(self, function, place, one, other, shaken):
        def distance(a, b):
            return angle_distance(int(a[1:]), int(b[1:]))

        apart = distance(one, other)
        if apart == 1:
            function.angles += 1
            self.note(function, place, "one unit", one, other, "")
        elif 0 < apart <= MOST_AMPLIFIED * moved(one, shaken, distance):
            function.amplified += 1
            self.note(function, place, "amplified", one, other, f"{apart} units")
        else:
            self.note(function, place, "WRONG", one, other, f"{apart} units apart")

    def reals(self, function, place, one, other, largest, shaken):
        def distance(a, b):
            return abs(real(a) - real(b))

        apart = distance(one, other)
        if not math.isfinite(apart):
            finite = {math.isfinite(real(word)) for word in (one, *shaken)}
            function.amplified += 1
            self.note(function, place, "amplified" if len(finite) > 1 else "WRONG", one, other, "finite or not")
            return
        leading = max(abs(real(one)), abs(real(other)), largest)
        units = apart / math.ulp(leading)
        most = moved(one, shaken, distance)
        if units <= MOST_UNITS:
            function.reals += 1
            function.most_units = max(function.most_units, units)
        elif apart <= MOST_AMPLIFIED * most or most >= max(abs(real(one)), largest):
            function.amplified += 1
            self.note(function, place, "amplified", real(one), real(other), f"{units:.4g} units in the last place")
        else:
            self.note(function, place, "WRONG", real(one), real(other), f"{units:.4g} units in the last place")

    def value(self, function, place, words, largest):
        one, other, *shaken = words
        if one == other:
            return
        if is_angle(one) and is_angle(other):
            self.angles(function, place, one, other, shaken)
        elif is_real(one) and is_real(other):
            self.reals(function, place, one, other, largest, shaken)
        else:
            self.note(function, place, "WRONG", one, other, "flags, or a status of the second rank")

    def results(self, function, one, other, largest, shaken):
        """The results of a call for which the platforms had different bits to go by."""
        place = f"{one[0]} call {one[1]}"
        statuses = {words[2] for words in shaken}
        if one[2] != other[2] and len(statuses | {one[2]}) > 1:
            function.decided += 1
            self.note(function, place, "status", one[2], other[2], "")
            return
        shaken = [words for words in shaken if words[2] == one[2]]
        for column, words in enumerate(zip(one, other, *shaken)):
            self.value(function, f"{place} value {column - 2}", words, largest)

    def call(self, lines):
        split = [line.split(" | ") for line in lines]
        one, other, *shaken = (values.split() for values, _ in split)
        (largest, *math_one), (other_largest, *math_other) = (tail.split() for _, tail in split[:2])
        if one[:2] != other[:2] or len(one) != len(other) or largest != other_largest:
            raise SystemExit(f"{one[0]} {one[1]}: the listings are not of the same calls")
        function = self.functions.setdefault(one[0], Function())
        function.calls += 1
        same_math = math_one == math_other
        function.same_math += same_math
        if one == other:
            function.same += 1
        elif same_math:
            self.note(function, f"{one[0]} call {one[1]}", "WRONG", one[2:], other[2:], "for no known reason")
        else:
            self.results(function, one, other, real(largest), shaken)

    def print_table(self):
        print("function                    calls  same maths  same results  angles   reals    most  amplified  statuses")
        total = Function()
        for name, function in self.functions.items():
            self.print_line(name, function)
            for count in vars(total):
                merge = max if count == "most_units" else lambda a, b: a + b
                setattr(total, count, merge(getattr(total, count), getattr(function, count)))
        self.print_line("all", total)
        return total

    @staticmethod
    def print_line(name, function):
        print(f"{name:24} {function.calls:8} {function.same_math:11} {function.same:13} {function.angles:7} "
              f"{function.reals:7} {function.most_units:7.2f} {function.amplified:10} {function.decided:9}")


def compare(reference, other, shaken, listing):
    comparison = Comparison(listing)
    files = [open(path, encoding="ascii") for path in (reference, other, *shaken)]
    for lines in zip(*files):
        if " | " in lines[0] and " | " in lines[1]:
            comparison.call(lines)
        elif lines[0].split()[:3] != lines[1].split()[:3]:
            raise SystemExit(f"the listings are not of the same calls: {lines[0]}{lines[1]}")
    if any(file.readline() for file in files) or not comparison.functions:
        raise SystemExit("the listings are not of the same calls: their numbers of lines differ")
    return comparison.print_table()


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--shaken", action="append", default=[])
    parser.add_argument("--list")
    parser.add_argument("reference")
    parser.add_argument("other")
    arguments = parser.parse_args()
    listing = open(arguments.list, "w", encoding="ascii") if arguments.list else None
    total = compare(arguments.reference, arguments.other, arguments.shaken, listing)
    if total.failures > 0:
        print(f"{total.failures} results differ that must not", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
