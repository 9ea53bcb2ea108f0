"""What the documents show is what the program does."""
import pathlib
import re
import shlex
import subprocess
import unittest

from case import PROGRAM, SOURCES, Case

SHELL = ["bash", "-o", "pipefail", "-c"]


class Documents(Case):
    def examples(self, document):
        """Commands and what they print: blocks that begin with a prompt and call the program."""
        text = (SOURCES / document).read_text(encoding="utf-8")
        blocks = re.findall(r"^```console\n\$ (.*?)^```$", text, re.MULTILINE | re.DOTALL)
        for block in blocks:
            for example in re.split(r"^\$ ", block, flags=re.MULTILINE):
                command, _, output = example.partition("\n")
                while command.endswith("\\"):
                    more, _, output = output.partition("\n")
                    command = command[:-1] + more.strip()
                yield command, output

    def check(self, document, at_least):
        examples = list(self.examples(document))
        self.assertGreaterEqual(len(examples), at_least)
        path = str(pathlib.Path(PROGRAM).parent) + ":/usr/bin:/bin"
        for command, output in examples:
            done = subprocess.run([*SHELL, command], capture_output=True, cwd=SOURCES, check=False, env={"PATH": path})
            self.assertEqual(output, (done.stdout + done.stderr).decode(), command)

    def test_the_manual(self):
        self.check("docs/tool.md", 0)
        self.check("docs/verbs/coordinate-geometry.md", 9)
        self.check("docs/verbs/measurement.md", 7)
        self.check("docs/verbs/references.md", 3)
        self.check("docs/verbs/station.md", 4)
        self.check("docs/verbs/replay.md", 1)

    def test_the_readme(self):
        self.check("README.md", 2)

    def test_the_pictures_of_the_readme(self):
        drawn = [command for command, _ in self.examples("README.md")]
        drawn.append("qstd station 5001 --points examples/town/points.csv --sights examples/town/free_station.csv")
        for verb, image in (("arc", "arc.svg"), ("corner", "corner.svg"), ("station", "plan-5001.svg")):
            command = next(command for command in drawn if command.startswith(f"qstd {verb} "))
            self.expect(0, *shlex.split(command)[1:], "--svg", self.path(image), cwd=SOURCES)
            shown = (SOURCES / "docs" / "images" / image).read_bytes()
            self.assertEqual(pathlib.Path(self.path(image)).read_bytes(), shown, image)

    def test_every_function_has_its_verb(self):
        functions = (SOURCES / "tests/boundary/exported_symbols.txt").read_text(encoding="utf-8").split()
        table = (SOURCES / "docs/tool.md").read_text(encoding="utf-8").partition("## Which function is where")[2]
        self.assertEqual(len(functions), 37)
        for function in functions:
            self.assertIn(f"`{function}`", table)


if __name__ == "__main__":
    unittest.main()
