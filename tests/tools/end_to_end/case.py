"""What the end-to-end tests of qstd share: running the program in a folder of its own.

QSTD names the program, QSTD_EXAMPLES the folder of the example surveys, QSTD_SOURCES the project's folder.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = os.environ["QSTD"]
EXAMPLES = pathlib.Path(os.environ["QSTD_EXAMPLES"])
SOURCES = pathlib.Path(os.environ["QSTD_SOURCES"])

DONE, NOT_COMPUTED, WRONG_USE, UNREADABLE = 0, 1, 2, 3


# Under the address sanitizer, freed memory is to be used again at once: the peak is then that of the program.
NO_QUARANTINE = {"ASAN_OPTIONS": "quarantine_size_mb=0:thread_local_quarantine_size_kb=0"}


def peak_memory(*arguments):
    """The most memory that the program held, in units of 1024 bytes on Linux."""
    script = ("import resource, subprocess, sys; subprocess.run(sys.argv[1:], check=True, stdout=subprocess.DEVNULL); "
              "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)")
    return int(subprocess.check_output([sys.executable, "-c", script, PROGRAM, *arguments],
                                       env=dict(os.environ, **NO_QUARANTINE)))


class Case(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="qstd-test-")
        self.addCleanup(self.folder.cleanup)

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def put(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())
        return self.path(name)

    def run_tool(self, *arguments, **options):
        environment = dict(os.environ, **options.pop("environment", {}))
        done = subprocess.run([PROGRAM, *arguments], capture_output=True, env=environment,
                              cwd=options.pop("cwd", self.folder.name), timeout=120, check=False, **options)
        self.assertGreaterEqual(done.returncode, 0, f"killed by a signal: {done.stderr.decode(errors='replace')}")
        return done

    def expect(self, code, *arguments, **options):
        done = self.run_tool(*arguments, **options)
        self.assertEqual(done.returncode, code, done.stderr.decode(errors="replace"))
        return done

    def text(self, *arguments, code=DONE, **options):
        """What the program prints."""
        return self.expect(code, *arguments, **options).stdout.decode()

    def objects(self, *arguments, code=DONE, **options):
        """The objects that the program prints with --json."""
        return [json.loads(line) for line in self.expect(code, *arguments, "--json", **options).stdout.splitlines()]
