"""What the end-to-end tests of qstd share: running the program in a folder of its own.

QSTD names the program, QSTD_EXAMPLES the folder of the example surveys, QSTD_SOURCES the project's folder.
"""
import json
import os
import pathlib
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["QSTD"]
EXAMPLES = pathlib.Path(os.environ["QSTD_EXAMPLES"])
SOURCES = pathlib.Path(os.environ["QSTD_SOURCES"])

DONE, NOT_COMPUTED, WRONG_USE, UNREADABLE = 0, 1, 2, 3


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
        done = subprocess.run([PROGRAM, *arguments], capture_output=True, env=environment, cwd=self.folder.name,
                              timeout=120, check=False, **options)
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
