"""The deepest stack of each exported function: from the compiler's call graph, and as measured.

stack_depth.py --exports LIST --objects OBJECT... --measure COMMAND...

Beside each object lies the call graph that the compiler wrote. COMMAND prints lines of a name and the bytes measured: of
functions (NAME or NAME/VARIANT) and of the routines that the library calls of the C library and of the compiler's. A
connected instrument's operations come on top; those of the stand-alone library are in. Fails when a function takes more than its call graph allows, or the graph
holds a cycle, a frame without limit, or a routine that was not measured.
"""
import argparse
import re
import subprocess
import sys

NODE = re.compile(r'^node: \{ title: "([^"]*)" label: "([^"]*)"')
EDGE = re.compile(r'^edge: \{ sourcename: "([^"]*)" targetname: "([^"]*)"')
FRAME = re.compile(r"\\n(\d+) bytes \((\w+(?:,\w+)?)\)")

POINTER_CALL = "__indirect_call"


def compiled(name):
    """A constructor of a complete object is the same code as that of a base, which is the one that is compiled."""
    return name.replace("C1E", "C2E", 1) if name.startswith("_ZN") else name


class CallGraph:
    def __init__(self):
        self.frames = {}
        self.callees = {}
        self.depths = {}
        self.reached_by_pointer = []

    def read(self, path):
        with open(path, encoding="utf-8") as lines:
            for line in lines:
                node, edge = NODE.match(line), EDGE.match(line)
                if node and (frame := FRAME.search(node[2])):
                    if frame[2] != "static":
                        sys.exit(f"stack_depth: {node[1]} takes stack without a limit")
                    self.frames[node[1]] = int(frame[1])
                if edge:
                    self.callees.setdefault(edge[1], set()).add(compiled(edge[2]))

    def find_pointers(self, exported):
        """Whatever nobody calls by name and no program calls from outside is called through a pointer."""
        called = set().union(*self.callees.values())
        self.reached_by_pointer = [
            name for name in self.frames if name not in called and name not in exported and "AtLoad" not in name
            and "AtUnload" not in name]

    def depth(self, name, routines, above=()):
        """Bytes that a call takes; those of routines outside the library as given."""
        if name == POINTER_CALL:
            return max(self.depth(callee, routines, above) for callee in self.reached_by_pointer)
        if name not in self.frames:
            if name not in routines:
                sys.exit(f"stack_depth: {name} is neither in the library nor measured")
            return routines[name]
        if name in above:
            sys.exit(f"stack_depth: {name} calls itself")
        if name not in self.depths:
            below = (self.depth(callee, routines, (*above, name)) for callee in self.callees.get(name, ()))
            self.depths[name] = self.frames[name] + max(below, default=0)
        return self.depths[name]


def measure(command):
    """The greatest number of bytes by name, the variants of a function together."""
    measured = {}
    for line in subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines():
        name, size = line.split()
        name = name.split("/")[0]
        measured[name] = max(int(size), measured.get(name, 0))
    return measured


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--exports", required=True)
    parser.add_argument("--objects", nargs="+", required=True)
    parser.add_argument("--measure", nargs="+", required=True)
    options = parser.parse_args()
    with open(options.exports, encoding="utf-8") as exports:
        exported = sorted(set(exports.read().split()) - {"ConnectInstrumentSettings"})
    measured = measure(options.measure)
    routines = {name: size for name, size in measured.items() if name not in exported}

    graph = CallGraph()
    for path in options.objects:
        graph.read(re.sub(r"\.(o|obj)$", ".ci", path))
    graph.find_pointers({*exported, "ConnectInstrumentSettings"})

    failed = False
    print(f"{'function':<28} {'call graph':>10} {'measured':>10}")
    for name in exported:
        bound, used = graph.depth(name, routines), measured.get(name)
        print(f"{name:<28} {bound:10} {used if used is not None else 'none':>10}")
        failed = failed or used is None or not 0 < used <= bound
    print(f"{'routines called':<28} {'':>10} {'measured':>10}")
    for name, size in sorted(routines.items()):
        print(f"{name:<28} {'':>10} {size:10}")
    if failed:
        sys.exit("stack_depth: a function was not measured, or takes more than its call graph says")


if __name__ == "__main__":
    main()
