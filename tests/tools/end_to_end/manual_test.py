"""Help, manual pages and completion of qstd: they are made of one description, and their examples are true."""
import json
import os
import pathlib
import re
import shutil
import subprocess
import unittest

from case import DONE, EXAMPLES, PROGRAM, WRONG_USE, Case

TOOLS = pathlib.Path(PROGRAM).resolve().parent
MANUAL_PROGRAM = str(TOOLS / "qstd_manual")

WIDEST_LINE = 100
OPTION = re.compile(r"(?<![\w-])--[a-z][a-z-]*")


class Manual(Case):
    def help_of(self, *verb):
        return self.text(*verb, "--help")

    def verbs(self):
        """The verbs in the order of the list that --help prints."""
        listed = self.help_of().split("\nOptions:")[0]
        return re.findall(r"^  ([a-z-]+)  ", listed, re.MULTILINE)

    def examples(self):
        return json.loads(subprocess.check_output([MANUAL_PROGRAM, "--examples"]))

    def pages(self):
        """The manual pages by name, as troff reads them."""
        folder = self.path("man1")
        os.mkdir(folder)
        subprocess.run([MANUAL_PROGRAM, "--man", folder], check=True)
        return {path.name: path.read_text(encoding="utf-8") for path in pathlib.Path(folder).iterdir()}

    @staticmethod
    def plain(page):
        """What a page says, without fonts and escapes."""
        for escape, letter in ((r"\-", "-"), (r"\fB", ""), (r"\fI", ""), (r"\fR", ""), (r"\&", ""), (r"\(aq", "'"),
                               (r"\(dq", '"'), (r"\(rs", "\\")):
            page = page.replace(escape, letter)
        return page

    @staticmethod
    def unfolded(text):
        """Commands that are continued on further lines, on one."""
        return re.sub(r" \\\n +", " ", text)

    def options_listed(self, *verb):
        """The options that stand in the first column of a help."""
        text = self.help_of(*verb)
        return {name for line in re.findall(r"^  (-.*?)(?:  |$)", text, re.MULTILINE) for name in OPTION.findall(line)}

    def shell(self, script, **options):
        environment = {"PATH": f"{TOOLS}:/usr/bin:/bin", "LC_ALL": "C.UTF-8"}
        return subprocess.run(["bash", "-c", script], capture_output=True, cwd=self.folder.name, check=False,
                              env=environment, timeout=60, **options)

    def complete(self, *words):
        """What bash offers for the last word."""
        script = self.path("completion")
        if not os.path.exists(script):
            subprocess.run([MANUAL_PROGRAM, "--completion", script], check=True)
        quoted = " ".join(f"'{word}'" for word in ("qstd", *words))
        done = self.shell(f"set -u; . ./completion; COMP_WORDS=({quoted}); COMP_CWORD={len(words)}; _qstd; "
                          "printf '%s\\n' ${COMPREPLY[@]+\"${COMPREPLY[@]}\"}")
        self.assertEqual(done.stderr, b"", words)
        return done.stdout.decode().split()

    def test_every_example_prints_what_the_manual_shows(self):
        for example in self.examples():
            with self.subTest(verb=example["verb"], command=example["command"]):
                folder = self.path("empty")
                os.mkdir(folder)
                done = subprocess.run(["bash", "-o", "pipefail", "-c", "exec 2>&1\n" + example["command"]],
                                      stdout=subprocess.PIPE, cwd=folder, check=False, timeout=60,
                                      env={"PATH": f"{TOOLS}:/usr/bin:/bin"})
                shutil.rmtree(folder)
                self.assertEqual(done.stdout.decode(), example["output"])

    def test_every_verb_has_an_example_that_calls_it(self):
        examples = self.examples()
        for verb in self.verbs():
            with self.subTest(verb=verb):
                calls = [example["command"] for example in examples if example["verb"] == verb]
                self.assertTrue(any(re.search(rf"\bqstd {verb}\b", command) for command in calls), calls)

    def test_the_list_has_a_line_for_each_verb(self):
        verbs = self.verbs()
        self.assertEqual(len(verbs), len(set(verbs)))
        for verb in ("inverse", "forward", "offset", "grade", "area", "intersect", "foot", "transfer", "rem", "distance",
                     "rod", "slope", "corner", "edge", "column", "line", "arc", "plane", "station", "benchmark", "angle",
                     "replay"):
            self.assertIn(verb, verbs)

    def test_help_fits_the_screen_and_says_what_is_needed(self):
        for verb in [[], *([verb] for verb in self.verbs())]:
            with self.subTest(verb=verb):
                text = self.help_of(*verb)
                self.assertEqual([line for line in text.split("\n") if len(line) > WIDEST_LINE], [])
                self.assertEqual([line for line in text.split("\n") if line != line.rstrip()], [])
                self.assertTrue(text.startswith("Usage: qstd " + " ".join(verb)), text[:80])
                self.assertIn("\nExit status:\n  0  ", text)
                self.assertNotRegex(text, r"[A-Z]:\{|TEXT|\bINT\b|FLOAT|\[OPTIONS\]|REQUIRED|Excludes")

    def test_help_shows_the_commands_of_the_examples(self):
        for example in self.examples():
            text = self.unfolded(self.help_of(example["verb"]))
            self.assertIn(f"    {example['command']}\n", text)

    def test_help_may_be_asked_for_in_two_ways(self):
        self.assertEqual(self.text("help"), self.help_of())
        self.assertEqual(self.text("-h"), self.help_of())
        for verb in self.verbs():
            self.assertEqual(self.text("help", verb), self.help_of(verb))
            self.assertEqual(self.text(verb, "-h"), self.help_of(verb))

    def test_help_that_cannot_be_printed_gives_2(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "--help"], stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual((done.returncode, done.stderr), (WRONG_USE, b"qstd: standard output cannot be written\n"))

    def test_every_verb_and_option_stands_in_the_pages(self):
        pages = self.pages()
        self.assertEqual(set(pages), {"qstd.1"} | {f"qstd-{verb}.1" for verb in self.verbs()})
        for verb in self.verbs():
            with self.subTest(verb=verb):
                self.assertIn(f"qstd-{verb}(1)", self.plain(pages["qstd.1"]))
                page = self.plain(pages[f"qstd-{verb}.1"])
                options = self.options_listed(verb)
                self.assertIn("--help", options)
                terms = set(OPTION.findall("\n".join(re.findall(r"^\.TP\n(.*)$", page, re.MULTILINE))))
                self.assertEqual(options - terms, set())
                for heading in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXAMPLES", '"EXIT STATUS"', '"SEE ALSO"'):
                    self.assertIn(f".SH {heading}\n", page.replace(f'"{heading}"', heading))

    def test_pages_show_the_examples_and_what_they_print(self):
        pages = self.pages()
        for example in self.examples():
            page = self.plain(pages[f"qstd-{example['verb']}.1"])
            self.assertIn(f".EX\n$ {example['command']}\n", self.unfolded(page))

    def test_pages_are_the_same_every_time(self):
        first = self.pages()
        shutil.rmtree(self.path("man1"))
        self.assertEqual(self.pages(), first)

    @unittest.skipUnless(shutil.which("groff"), "groff is not installed")
    def test_troff_finds_nothing_to_warn_of(self):
        for name in self.pages():
            done = self.shell(f"groff -ww -man -Tutf8 -z man1/{name}")
            self.assertEqual((done.returncode, done.stderr), (0, b""), name)

    @unittest.skipUnless(shutil.which("groff"), "groff is not installed")
    def test_a_page_shows_its_examples_letter_by_letter(self):
        pages = self.pages()
        for example in self.examples():
            name = f"qstd-{example['verb']}.1"
            self.assertIn(name, pages)
            done = self.shell(f"groff -man -Tutf8 -P-cbou -rLL=200n man1/{name}")
            lines = [line.strip() for line in self.unfolded(done.stdout.decode()).split("\n")]
            for line in ("$ " + example["command"] + "\n" + example["output"]).rstrip("\n").split("\n"):
                self.assertIn(line.strip(), lines)

    def test_completion_offers_verbs_options_and_values(self):
        verbs = self.verbs()
        self.assertEqual(set(self.complete("")), {*verbs, "help", "-h", "--help", "--version"})
        self.assertEqual(self.complete("inv"), ["inverse"])
        self.assertEqual(set(self.complete("help", "")), set(verbs))
        for verb in verbs:
            self.assertEqual(set(self.complete(verb, "--")), self.options_listed(verb), verb)
        self.assertEqual(self.complete("inverse", "--angle", ""), ["dms", "deg", "gon", "rad"])
        self.assertEqual(self.complete("inverse", "--angle", "=", "g"), ["gon"])
        self.assertEqual(self.complete("inverse", "--angle", "="), ["dms", "deg", "gon", "rad"])
        self.assertEqual(self.complete("line", "--unit", ""), ["m", "ft", "us-ft"])
        self.assertEqual(self.complete("line", "--decimals", ""), [])
        self.assertIn("three-point", self.complete("station", "--method", ""))
        self.assertEqual(self.complete("nonsense", ""), [])

    def test_completion_offers_files_where_files_are_taken(self):
        self.put("points.csv", "")
        os.mkdir(self.path("points"))
        self.assertEqual(set(self.complete("inverse", "--points", "poi")), {"points.csv", "points"})
        self.assertEqual(set(self.complete("replay", "poi")), {"points.csv", "points"})
        self.assertEqual(self.complete("inverse", "poi"), [])

    def check_refusal(self, message, *arguments):
        done = self.expect(WRONG_USE, *arguments)
        self.assertEqual(done.stdout, b"")
        self.assertEqual(done.stderr.decode(), message)

    def test_wrong_use_is_one_line_and_where_to_read_on(self):
        on_verb, on_program = "\nTry qstd inverse --help\n", "\nTry qstd --help\n"
        for problem, arguments in {
            'no option "--decimal"; did you mean --decimals?': ["1,2", "3,4", "--decimal", "3"],
            'no option "--anlge"; did you mean --angle?': ["1,2", "--anlge=dms"],
            "A and B are missing": [],
            "B is missing": ["1,2"],
            '"5,6" is one argument too many': ["1,2", "3,4", "5,6"],
            '--decimals "10": not in range 0 to 9': ["1,2", "3,4", "--decimals", "10"],
            '--angle "mils": not one of dms, deg, gon, rad': ["1,2", "3,4", "--angle", "mils"],
            "--csv cannot be given with --json": ["1,2", "3,4", "--csv", "--json"],
            "--csv takes no value": ["1,2", "3,4", "--csv=yes"],
            "--output: a value is missing; write --output FILE": ["1,2", "3,4", "--output"],
            "--output is given more than once": ["1,2", "3,4", "--output", "a", "--output", "b"],
        }.items():
            self.check_refusal(f"qstd: inverse: {problem}{on_verb}", "inverse", *arguments)
        self.check_refusal(f"qstd: a verb is missing{on_program}")
        self.check_refusal(f'qstd: no option "--nonsense"{on_program}', "--nonsense")
        self.check_refusal(f"qstd: --csv stands before the verb; write qstd VERB --csv{on_program}", "--csv", "inverse")
        self.check_refusal(f'qstd: no verb "invrese"; did you mean inverse?{on_program}', "help", "invrese")

    def test_a_verb_is_not_abbreviated(self):
        self.check_refusal('qstd: no verb "inver"; did you mean inverse?\nTry qstd --help\n', "inver", "1,2", "3,4")

    def test_a_point_may_be_named_as_a_verb_is(self):
        points = self.put("points.csv", "id,n,e\nline,0,0\nhelp,3,4\n")
        result = self.objects("inverse", "line", "help", "--points", points)[0]
        self.assertEqual(result["horizontal_distance"], 5)  # 3-4-5

    def test_negative_coordinates_are_no_options(self):
        result = self.objects("inverse", "-3,0", "0,-4")[0]
        self.assertEqual(result["horizontal_distance"], 5)  # 3-4-5


class Figures(Case):
    """The figure of a verb in the files that are asked of it."""

    LINE = ["inverse", "0,0", "30,40"]

    def paths(self):
        return {kind: self.path(f"figure.{kind}") for kind in ("svg", "dxf", "geojson")}

    def test_all_forms_are_written_at_once(self):
        paths = self.paths()
        options = [word for kind, path in paths.items() for word in (f"--{kind}", path)]
        text = self.text(*self.LINE, *options)
        self.assertRegex(text, rf"\n\nPlan: {re.escape(paths['svg'])}, scale 1:\d+\n$")
        self.assertEqual(sorted(os.listdir(self.folder.name)), ["figure.dxf", "figure.geojson", "figure.svg"])
        content = {kind: pathlib.Path(path).read_text(encoding="utf-8") for kind, path in paths.items()}
        self.assertTrue(content["svg"].rstrip().endswith("</svg>"))
        self.assertTrue(content["dxf"].rstrip().endswith("EOF"))
        places = [feature["geometry"]["coordinates"] for feature in json.loads(content["geojson"])["features"]
                  if feature["geometry"]["type"] == "Point"]
        self.assertEqual(sorted(places), [[0, 0], [40, 30]])  # easting first

    def test_figures_do_not_change_the_results(self):
        done = self.expect(DONE, *self.LINE, "--csv", "--svg", self.path("plan.svg"))
        self.assertEqual(done.stdout, self.expect(DONE, *self.LINE, "--csv").stdout)
        self.assertRegex(done.stderr.decode(), r"^Plan: .*plan\.svg, scale 1:\d+\n$")

    def test_nothing_computed_draws_nothing(self):
        for option, note in (("--svg", "No plan: nothing was computed\n"),
                             ("--dxf", "No drawing: nothing was computed\n")):
            done = self.expect(1, "inverse", "1,2", "1,2", "--csv", option, self.path("none"))
            self.assertEqual(done.stderr.decode(), note)
            self.assertEqual(os.listdir(self.folder.name), [])

    def test_a_figure_needs_a_file_of_its_own(self):
        points = self.put("points.csv", "id,n,e\nA,0,0\nB,3,4\n")
        os.symlink(points, self.path("link"))
        for arguments, part in ((["--svg", "-"], "a figure goes to a file; give --svg a name"),
                                (["--dxf", "-"], "a figure goes to a file; give --dxf a name"),
                                (["--svg", points], "is the file of --points"), (["--dxf", "link"], "--points"),
                                (["--output", "./points.csv"], "--points"),
                                (["--svg", "new", "--geojson", "./new"], "--geojson \"./new\" is the file of --svg"),
                                (["--output", "new", "--dxf", "new"], "is the file of --output")):
            done = self.expect(WRONG_USE, "inverse", "A", "B", "--points", points, *arguments)
            self.assertIn(part, done.stderr.decode())
            self.assertEqual(done.stdout, b"")
            self.assertEqual(sorted(os.listdir(self.folder.name)), ["link", "points.csv"])

    def test_a_file_without_a_name_is_told(self):
        for arguments, name in (([*self.LINE, "--svg", ""], "inverse: --svg"),
                                ([*self.LINE, "--output", ""], "inverse: --output"),
                                ([*self.LINE, "--points", ""], "inverse: --points"),
                                (["line", "0,0", "1,1", ""], "line: TABLE"), (["replay", ""], "replay: CALLS"),
                                (["station", "--points", "a", "--sights", "b", "--dxf", ""], "station: --dxf")):
            done = self.expect(WRONG_USE, *arguments)
            self.assertEqual(done.stderr.decode(), f"qstd: {name}: the name of the file is empty\n")

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs a device that is always full")
    def test_results_that_cannot_be_written_leave_no_figure(self):
        before = self.put("plan.svg", "before")
        station = ["station", "5001", "--points", EXAMPLES / "town/points.csv", "--sights",
                   EXAMPLES / "town/free_station.csv"]
        for verb in (self.LINE, station):
            with open("/dev/full", "wb") as full:
                done = subprocess.run([PROGRAM, *verb, "--svg", before, "--dxf", self.path("plan.dxf")], stdout=full,
                                      stderr=subprocess.PIPE, check=False)
            self.assertEqual((done.returncode, done.stderr), (WRONG_USE, b"qstd: standard output cannot be written\n"))
            self.assertEqual(os.listdir(self.folder.name), ["plan.svg"])
            self.assertEqual(pathlib.Path(before).read_text(encoding="utf-8"), "before")

    def test_a_figure_that_cannot_be_written_leaves_nothing(self):
        done = self.expect(WRONG_USE, *self.LINE, "--svg", self.path("plan.svg"), "--dxf", self.path("none/a.dxf"),
                           "--output", self.path("result"))
        self.assertIn(b"none/a.dxf", done.stderr)
        self.assertEqual(os.listdir(self.folder.name), [])

    def many(self, count):
        return self.put("many.csv", "id,n,e\n" + "".join(f"{i},{i % 7},{i % 1000}\n" for i in range(count)))

    def test_a_plan_too_full_is_refused_before_anything_is_written(self):
        table = self.many(5000)
        done = self.expect(WRONG_USE, "line", "0,0", "0,1000", table, "--svg", self.path("plan.svg"), "--dxf",
                           self.path("plan.dxf"))
        self.assertEqual(done.stdout, b"")
        self.assertRegex(done.stderr.decode(), r"^qstd: line: --svg: a plan holds 2000 .* --dxf or --geojson\n$")
        self.assertEqual(os.listdir(self.folder.name), ["many.csv"])

    def test_a_drawing_holds_any_number(self):
        table = self.many(5000)
        self.text("line", "0,0", "0,1000", table, "--geojson", self.path("plan.json"))
        with open(self.path("plan.json"), encoding="utf-8") as file:
            features = json.load(file)["features"]
        self.assertGreaterEqual(len(features), 5000)


if __name__ == "__main__":
    unittest.main()
