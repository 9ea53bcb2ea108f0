"""End-to-end tests of `qstd station`: command lines in, texts, files and exit codes out."""
import json
import math
import os
import pathlib
import random
import re
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree

from case import DONE, EXAMPLES, NOT_COMPUTED, PROGRAM, UNREADABLE, WRONG_USE, Case

TOWN = EXAMPLES / "town"
POINTS = str(TOWN / "points.csv")
FREE_STATION = str(TOWN / "free_station.csv")
FIELD_BOOK = str(TOWN / "sights.csv")
TABLES = ["--points", POINTS, "--sights", FREE_STATION]

# Four targets 100 m around the origin, seen from there with the circle's zero at azimuth 0.
CROSS_POINTS = "id,n,e\nN,100,0\nE,0,100\nS,-100,0\nW,0,-100\n"
CROSS_SIGHTS = "station,target,hz\nA,N,0d\nA,E,90d\nA,S,180d\nA,W,270d\n"


class StationCase(Case):
    def compute(self, points, sights, *arguments, code=DONE):
        return self.expect(code, "station", "--points", self.put("points.csv", points), "--sights",
                           self.put("sights.csv", sights), *arguments)

    def stations(self, *arguments, code=DONE):
        return [json.loads(line) for line in self.expect(code, "station", *arguments, "--json").stdout.splitlines()]

    def compute_stations(self, points, sights, *arguments, code=DONE):
        return [json.loads(line) for line in self.compute(points, sights, "--json", *arguments, code=code)
                .stdout.splitlines()]


class CommandLine(StationCase):
    def test_help_and_version_are_no_errors(self):
        self.assertIn(b"station", self.expect(DONE, "--help").stdout)
        self.assertIn(b"--points", self.expect(DONE, "station", "--help").stdout)
        self.assertRegex(self.expect(DONE, "--version").stdout, rb"^qstd \d+\.\d+\.\d+\n$")

    def test_wrong_use_is_told_and_gives_2(self):
        for arguments in ([], ["survey"], ["station"], ["station", "--points", POINTS],
                          ["station", *TABLES, "--nonsense"], ["station", *TABLES, "--csv", "--json"],
                          ["station", *TABLES, "--angle", "mils"], ["station", *TABLES, "--decimals", "10"],
                          ["station", *TABLES, "--decimals", "-1"], ["station", *TABLES, "--decimals", "many"],
                          ["station", *TABLES, "--svg"], ["station", *TABLES, "--svg", "-"],
                          ["station", "--points", "-", "--sights", "-"]):
            done = self.expect(WRONG_USE, *arguments)
            self.assertEqual(done.stdout, b"", arguments)
            self.assertNotEqual(done.stderr, b"", arguments)
        for arguments in (["none"], ["--columns", "hz"], ["--svg", "-"], ["--targets", "none"], ["--line-azimuth", "x"],
                          ["--method", "known-line", "--line-azimuth", "x"], ["--output", POINTS]):
            done = self.expect(WRONG_USE, "station", *arguments, *TABLES)
            self.assertTrue(done.stderr.decode().startswith("qstd: station: "), done.stderr)

    def test_an_unknown_station_is_answered_with_the_nearest_names(self):
        done = self.expect(WRONG_USE, "station", "5002", *TABLES)
        self.assertEqual(done.stderr.decode(),
                         f'qstd: station: "5002": no set-up in {FREE_STATION}; did you mean 5001, 5003?\n')
        self.assertEqual(done.stdout, b"")

    def test_named_stations_come_once_and_in_the_order_named(self):
        names = [station["station"] for station in self.stations("5003", "5001", "5003", *TABLES)]
        self.assertEqual(names, ["5003", "5001"])

    def test_known_points_are_computed_only_when_named(self):
        points = CROSS_POINTS + "A,0,0\n"
        done = self.compute(points, CROSS_SIGHTS, code=WRONG_USE)
        self.assertIn(b"every station in", done.stderr)
        self.assertIn(b"computed less known point: n 0.0 mm, e 0.0 mm", self.compute(points, CROSS_SIGHTS, "A").stdout)

    def test_standard_input_may_be_either_table(self):
        expected = self.expect(DONE, "station", *TABLES, "--json").stdout
        for option, path in (("--points", POINTS), ("--sights", FREE_STATION)):
            arguments = ["-" if argument == path else argument for argument in TABLES]
            with open(path, "rb") as file:
                self.assertEqual(self.expect(DONE, "station", *arguments, "--json", stdin=file).stdout, expected)
        done = self.expect(UNREADABLE, "station", "--points", "-", "--sights", FREE_STATION, input=b"id,n\n")
        self.assertTrue(done.stderr.startswith(b"<standard input>:1: "), done.stderr)


class TownSurvey(StationCase):
    """Published figures: 5001 N 3587.526 E 89562.497, orientation about 247-05-35; 5003 N 2775.231 E 89398.521."""

    def check_5001(self, result, metres):
        self.assertLessEqual(math.hypot(result["northing"] - 3587.526, result["easting"] - 89562.497), metres)
        self.assertLessEqual(abs(result["orientation_degrees"] - (247 + 5 / 60 + 35 / 3600)), 3 / 3600)

    def test_stations_agree_with_the_published_ones(self):
        first, second = self.stations(*TABLES)
        self.assertEqual([first["station"], second["station"]], ["5001", "5003"])
        self.check_5001(first["result"], 0.01)
        self.assertLessEqual(math.hypot(second["result"]["northing"] - 2775.231,
                                        second["result"]["easting"] - 89398.521), 0.06)
        self.assertEqual((first["redundancy"], second["redundancy"]), (5, 3))

    def test_the_text_shows_the_same_stations(self):
        text = self.expect(DONE, "station", *TABLES).stdout.decode()
        for station in self.stations(*TABLES):
            result = station["result"]
            self.assertIn(f"{result['northing']:.4f}  m  ± {result['northing_precision'] * 1000:.1f} mm", text)
            self.assertIn(f"{result['easting']:.4f}  m  ± {result['easting_precision'] * 1000:.1f} mm", text)
            for sight in station["sights"]:
                seconds = sight["direction_residual_degrees"] * 3600
                self.assertRegex(text, rf"\n  {sight['target']} .*yes +{re.escape(f'{seconds:+.1f}')} "
                                 if abs(seconds) >= 0.05 else rf"\n  {sight['target']} .*yes +0\.0 ")
        self.assertIn("175-34-56.1", text)

    def test_heights_are_those_of_the_two_sights(self):
        # 14: 130.00 + 1.5 - 1803.072 cos(89-02-48) = 101.5004; 11: 111.92 + 1.5 - 2100.139 cos(89-40-29) = 101.4972.
        result = self.stations(*TABLES)[0]["result"]
        heights = [130.0 + 1.5 - 1803.072 * math.cos(math.radians(89 + 2 / 60 + 48 / 3600)),
                   111.92 + 1.5 - 2100.139 * math.cos(math.radians(89 + 40 / 60 + 29 / 3600))]
        self.assertAlmostEqual(result["height"], sum(heights) / 2, delta=1e-6)
        self.assertAlmostEqual(result["mark_height"], sum(heights) / 2 - 1.5, delta=1e-6)
        self.assertAlmostEqual(result["height_spread"], max(heights) - min(heights), delta=1e-6)

    def test_residuals_follow_from_the_station(self):
        with open(POINTS, encoding="utf-8") as file:
            lines = [line.strip().split(",") for line in file if not line.startswith(("#", "id"))]
        known = {line[0]: (float(line[1]), float(line[2])) for line in lines}
        for station in self.stations(*TABLES):
            result = station["result"]
            for sight in station["sights"]:
                north = known[sight["target"]][0] - result["northing"]
                east = known[sight["target"]][1] - result["easting"]
                residual = math.degrees(math.atan2(east, north)) - result["orientation_degrees"] - sight["hz_degrees"]
                residual -= 360 * round(residual / 360)
                # Orientation and residual are whole sixteenths of a second, both cut off.
                self.assertLessEqual(abs(residual - sight["direction_residual_degrees"]), 0.14 / 3600)
                if sight["distance_residual"] is not None:
                    self.assertLessEqual(abs(math.hypot(north, east) - sight["horizontal_distance"]
                                             - sight["distance_residual"]), 1e-4)

    def test_the_whole_field_book_computes_what_can_be_computed(self):
        stations = self.stations("--points", POINTS, "--sights", FIELD_BOOK, code=NOT_COMPUTED)
        self.assertEqual([(station["station"], station["setup"], station["solved"]) for station in stations],
                         [("5001", 1, True), ("5003", 1, True), ("5001", 2, False), ("1_sp", 1, False),
                          ("2_sp", 1, False), ("3_sp", 1, False), ("5002", 1, False)])
        self.check_5001(stations[0]["result"], 0.02)  # without the two distances
        failed = stations[2]
        self.assertEqual((failed["status"], failed["status_name"]), (-1, "TOO_FEW_SIGHTS"))
        self.assertEqual(failed["reason"],
                         "2 directions and 0 distances to 2 places: two targets fix a station only with a distance")
        self.assertEqual(failed["usual_cause"], "targets without coordinates in the points table: 1_sp")
        self.assertNotIn("result", failed)
        text = self.expect(NOT_COMPUTED, "station", "--points", POINTS, "--sights", FIELD_BOOK).stdout.decode()
        self.assertIn("Station 5001 (2 of 2)", text)
        self.assertEqual(text.count("NOT SOLVED:   "), 5)
        self.assertEqual(text.count("  usual cause: "), 5)
        self.assertEqual(text.count("  what to do: "), 5)
        self.assertRegex(text, r"\n  1_sp +179-59-52\.0 +87-18-08\.0 +no +not a known point\n")


class InputForms(StationCase):
    def forms(self, text):
        """The same table in every form that is accepted."""
        lines = [line for line in text.splitlines() if line]
        yield ",".join(lines[0].split(",")).upper() + "\n" + "\n".join(lines[1:]) + "\n"
        yield "\ufeff# comment\n\n" + "\r\n".join(lines) + "\r\n"
        yield "\n".join(lines).replace(",", ";")
        yield "\n".join(lines).replace(",", "\t")
        yield "\n".join("  " + "   ".join(line.split(",")) + "  # remark" for line in lines)
        yield "\n".join(",".join(f'"{cell}"' for cell in line.split(",")) for line in lines)
        yield "\n".join(",".join(reversed(line.split(","))) for line in lines)

    def test_every_form_of_a_table_gives_the_same(self):
        expected = None
        for points, sights in zip(self.forms(CROSS_POINTS), self.forms(CROSS_SIGHTS)):
            station, = self.compute_stations(points, sights)
            for sight in station["sights"]:
                del sight["line"]
            expected = expected or station
            self.assertEqual(station, expected)

    def test_every_form_of_an_angle_gives_the_same(self):
        sights = "station,target,hz\nA,N,0{}\nA,E,{}\nA,S,{}\nA,W,{}\n"
        expected, = self.compute_stations(CROSS_POINTS, CROSS_SIGHTS)
        for option, angles in (([], ("-00-00", "90-00-00", "180:00:00", "270d00'00\"")),
                               ([], ("d", "90.0d", "200g", "300.0000g")),
                               (["--angle", "deg"], ("", "90", "200g", "270-00")),
                               (["--angle", "gon"], ("", "100", "180d", "300.0")),
                               (["--angle", "dms"], ("", "89.596", "180.0000", "270")),
                               (["--angle", "rad"], ("", "1.570796327", "3.141592654", "4.71238898"))):
            if "89.596" in angles:
                angles = ("", "90.0", "180.0000", "270")
            station, = self.compute_stations(CROSS_POINTS, sights.format(*angles), *option)
            self.assertEqual(station, expected, angles)

    def test_the_angle_option_sets_the_form_of_the_output(self):
        for form, text in (("deg", "90.0000d"), ("gon", "100.0000g"), ("rad", "1.570796rad"), ("dms", "90-00-00.0")):
            self.assertIn(text, self.compute(CROSS_POINTS, CROSS_SIGHTS, "--angle", form).stdout.decode())

    def test_names_are_text(self):
        points = CROSS_POINTS.replace("N,", "04-1057/1,").replace("E,", "1_sp,").replace("S,", "007,")
        sights = CROSS_SIGHTS.replace("N,", "04-1057/1,").replace("E,", "1_sp,").replace("S,", "7,")
        station, = self.compute_stations(points, sights)
        self.assertEqual([sight["used"] for sight in station["sights"]], [True, True, False, True])
        self.assertEqual(station["sights"][2]["remark"], "not a known point")

    def test_face_two_gives_the_station_of_face_one(self):
        one, = self.compute_stations(CROSS_POINTS, "station,target,hz,v\nA,N,0-00-03,88d\nA,E,90d,91d\nA,S,180d,\n"
                                     "A,W,270d,90d\n")
        two, = self.compute_stations(CROSS_POINTS, "station,target,hz,v\nA,N,180-00-03,272d\nA,E,270d,269d\nA,S,180d,\n"
                                     "A,W,90d,270d\n")
        self.assertEqual(two["result"], one["result"])
        self.assertEqual((one["reduced_from_face_two"], two["reduced_from_face_two"]), (0, 3))
        text = self.compute(CROSS_POINTS, "station,target,hz,v\nA,N,180d,272d\nA,E,90d\nA,S,180d\n").stdout
        self.assertIn(b"; 1 reduced from face two", text)

    def test_two_faces_to_one_target_are_two_sights(self):
        station, = self.compute_stations(CROSS_POINTS, "station,target,hz,v\nA,N,0d,88d\nA,N,180d,272d\nA,E,90d\n"
                                         "A,S,180d\n")
        self.assertEqual(station["directions"], 4)
        self.assertEqual(station["redundancy"], 1)

    def test_use_0_keeps_a_sight_out_but_lists_it(self):
        station, = self.compute_stations(CROSS_POINTS, "station,target,hz,use\nA,N,0d\nA,E,90d,1\nA,S,180d,\n"
                                         "A,W,271d,0\n")
        self.assertEqual(station["directions"], 3)
        self.assertAlmostEqual(station["sights"][3]["direction_residual_degrees"], -1.0, delta=0.001)
        self.assertEqual(station["sights"][3]["remark"], "kept out (use 0)")

    def test_no_redundancy_means_no_precision(self):
        station, = self.compute_stations(CROSS_POINTS, "station,target,hz\nA,N,0d\nA,E,90d\nA,S,180d\n")
        self.assertEqual(station["redundancy"], 0)
        self.assertIsNone(station["result"]["northing_precision"])
        self.assertNotIn("error_ellipse", station)
        text = self.compute(CROSS_POINTS, "station,target,hz\nA,N,0d\nA,E,90d\nA,S,180d\n").stdout
        self.assertIn(b"No redundancy", text)


class Diagnostics(StationCase):
    def message(self, points, sights, *arguments, code=UNREADABLE):
        done = self.compute(points, sights, "--svg", self.path("plan.svg"), *arguments, code=code)
        self.assertEqual(done.stdout, b"")
        self.assertFalse(os.path.exists(self.path("plan.svg")))
        return done.stderr.decode().replace(self.folder.name + "/", "")

    def test_a_number_without_unit(self):
        self.assertEqual(self.message(CROSS_POINTS, "station,target,hz\n\nA,N,99.1024\n"),
                         'sights.csv:3: hz "99.1024": no unit; write 99-10-24, 99.1733d or 110.19g, or give --angle\n')

    def test_several_faults_of_both_tables_at_once(self):
        self.assertEqual(self.message("id,n,e\nN,x,0\nN,1,1\nN,1,1\n", "station,target,hz\nA,N\n,N,1d\n"),
                         'points.csv:2: n "x": not a number; write one such as 123.456\n'
                         'points.csv:4: id "N": given in line 3 already; keep one\n'
                         'sights.csv:2: hz "": empty; a sight needs a circle reading, such as 99-10-24\n'
                         'sights.csv:3: station "": empty; every line needs a name here\n')

    def test_columns(self):
        self.assertEqual(self.message("P,100,0\nQ,0,100\n", CROSS_SIGHTS).count('no column "'), 3)
        self.assertIn('column "n": named twice', self.message("id,n,n,e\nN,1,1,1\n", CROSS_SIGHTS))
        done = self.compute("id,n,e,remark\nN,100,0,old\nE,0,100\nS,-100,0\n", CROSS_SIGHTS)
        self.assertIn(b'points.csv:1: warning: column "remark": not known, ignored', done.stderr)

    def test_files_that_cannot_be_read(self):
        for path, problem in ((self.path("none.csv"), "No such file or directory"), (self.folder.name, "Is a directory")):
            done = self.expect(UNREADABLE, "station", "--points", path, "--sights", FREE_STATION)
            self.assertEqual(done.stderr.decode(), f"{path}: cannot be read: {problem}\n")
            self.assertEqual(done.stdout, b"")

    def test_tables_without_content(self):
        self.assertEqual(self.message("", CROSS_SIGHTS), "points.csv: empty; the first line must name the columns\n")
        self.assertEqual(self.message(CROSS_POINTS, "station,target,hz\n"),
                         "sights.csv: no sights; each line below the column names is one\n")

    def test_a_long_list_is_cut(self):
        lines = self.message(CROSS_POINTS, "station,target,hz\n" + 100 * "A,N,x\n").splitlines()
        self.assertEqual(len(lines), 21)
        self.assertEqual(lines[-1], "qstd: 80 more errors not shown")


class Outputs(StationCase):
    def test_the_same_bytes_in_every_locale(self):
        for form in ([], ["--csv"], ["--json"]):
            outputs = set()
            for locale in ("C", "C.UTF-8", "de_DE.UTF-8", "tr_TR.UTF-8", "hi_IN"):
                done = self.expect(DONE, "station", *TABLES, *form, "--svg", self.path("plan.svg"),
                                   environment={"LC_ALL": locale, "LANG": locale})
                plans = b"".join(pathlib.Path(self.path(f"plan-{name}.svg")).read_bytes() for name in ("5001", "5003"))
                outputs.add((done.stdout, plans))
            self.assertEqual(len(outputs), 1)

    def test_json_is_one_object_a_line_in_full_precision(self):
        for station in self.stations("--points", POINTS, "--sights", FIELD_BOOK, code=NOT_COMPUTED):
            self.assertEqual(station["format"], "qstd/1")
            for sight in station["sights"]:
                self.assertEqual(sight["hz_degrees"], sight["hz_units"] / 57600)
            if station["solved"]:
                self.assertEqual(station["status_name"], "QSTD_OK")
                result = station["result"]
                self.assertEqual(result["orientation_degrees"], result["orientation_units"] / 57600)
                self.assertTrue(0 <= result["orientation_units"] < 20736000)
                ellipse = station["error_ellipse"]
                self.assertAlmostEqual(math.hypot(ellipse["semi_major"], ellipse["semi_minor"]),
                                       math.hypot(result["northing_precision"], result["easting_precision"]), delta=1e-9)

    def test_csv_has_a_line_for_each_sight(self):
        import csv
        import io
        text = self.expect(NOT_COMPUTED, "station", "--points", POINTS, "--sights", FIELD_BOOK, "--csv").stdout
        rows = list(csv.DictReader(io.StringIO(text.decode())))
        self.assertEqual(len(rows), 35)  # the lines of the stations that are not known points
        self.assertTrue(all(None not in row and None not in row.values() for row in rows))
        first = self.stations(*TABLES)[1]["result"]
        row = next(row for row in rows if row["station"] == "5003")
        self.assertAlmostEqual(float(row["northing"]), first["northing"], delta=0.0001)
        self.assertEqual(row["target"], "14")
        self.assertEqual(row["hz"], "99-10-24.0")

    def test_csv_quotes_names(self):
        import csv
        import io
        points = CROSS_POINTS.replace("N,", '"a ""b"", c",')
        text = self.compute(points, CROSS_SIGHTS.replace("N,", '"a ""b"", c",'), "--csv").stdout.decode()
        self.assertEqual(next(csv.DictReader(io.StringIO(text)))["target"], 'a "b", c')

    def test_decimals(self):
        for decimals, figure in (("0", " 0  m"), ("2", " 0.00  m"), ("9", " 0.000000000  m")):
            self.assertIn(figure, self.compute(CROSS_POINTS, CROSS_SIGHTS, "--decimals", decimals).stdout.decode()
                          .replace("0.000000001", "0.000000000"))

    def test_plans_are_named_in_the_text(self):
        text = self.expect(DONE, "station", *TABLES, "--svg", "plan.svg").stdout.decode()
        self.assertIn("Plan of station 5001: plan-5001.svg, scale 1:", text)
        self.assertEqual(sorted(os.listdir(self.folder.name)), ["plan-5001.svg", "plan-5003.svg"])
        done = self.expect(DONE, "station", "5001", *TABLES, "--svg", "one.svg", "--json")
        self.assertEqual(len(done.stdout.splitlines()), 1)
        self.assertIn(b"Plan of station 5001: one.svg", done.stderr)

    def test_a_failed_station_has_no_plan(self):
        text = self.expect(NOT_COMPUTED, "station", "5002", "--points", POINTS, "--sights", FIELD_BOOK, "--svg",
                           "plan.svg").stdout.decode()
        self.assertIn("No plan of station 5002: not solved", text)
        self.assertEqual(os.listdir(self.folder.name), [])

    def test_plans_are_written_whole_or_not_at_all(self):
        done = self.expect(WRONG_USE, "station", *TABLES, "--svg", "missing/plan.svg")
        self.assertIn(b"missing/plan-5001.svg: cannot be written: No such file or directory", done.stderr)
        self.assertEqual(done.stdout, b"")
        # The second plan cannot be written: the first one is not written either.
        self.put("plan-5001.svg", "before")
        os.mkdir(self.path("plan-5003.svg"))
        self.expect(WRONG_USE, "station", *TABLES, "--svg", "plan.svg")
        self.assertEqual(pathlib.Path(self.path("plan-5001.svg")).read_text(encoding="utf-8"), "before")
        self.assertEqual(sorted(os.listdir(self.folder.name)), ["plan-5001.svg", "plan-5003.svg"])

    def test_an_input_is_never_overwritten(self):
        self.put("points.csv", CROSS_POINTS)
        done = self.compute(CROSS_POINTS, CROSS_SIGHTS, "--svg", "./points.csv", code=WRONG_USE)
        self.assertIn(b"is the file of --points, too", done.stderr)
        self.assertEqual(pathlib.Path(self.path("points.csv")).read_text(encoding="utf-8"), CROSS_POINTS)

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs a device that is always full")
    def test_a_full_device_is_noticed(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "station", *TABLES], stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, WRONG_USE)
        self.assertIn(b"standard output cannot be written", done.stderr)


SVG = "{http://www.w3.org/2000/svg}"


class PlanDrawing(StationCase):
    def boxes(self, root):
        """Estimated boxes of all texts: a character of a sans-serif face is rarely wider than 0.62 of its size."""
        for text in root.iter(SVG + "text"):
            size = float(text.get("font-size"))
            length = len(" ".join(text.text.split())) * size * 0.62
            x, y = float(text.get("x")), float(text.get("y"))
            start = {"middle": -length / 2, "end": -length}.get(text.get("text-anchor"), 0.0)
            if text.get("transform"):  # turned to be read from the right
                yield text.text, (x - size * 0.75, y - start - length, x, y - start)
            else:
                yield text.text, (x + start, y - size * 0.75, x + start + length, y)

    def check(self, svg):
        root = ElementTree.fromstring(svg)
        width, height = (float(value) for value in root.get("viewBox").split()[2:])
        self.assertEqual(sorted((width, height)), [210.0, 297.0])
        boxes = list(self.boxes(root))
        for text, box in boxes:
            self.assertTrue(5 <= box[0] and 5 <= box[1] and box[2] <= width - 5 and box[3] <= height - 5, (text, box))
        for i, (one, a) in enumerate(boxes):
            for other, b in boxes[:i]:
                apart = a[0] >= b[2] or b[0] >= a[2] or a[1] >= b[3] or b[1] >= a[3]
                self.assertTrue(apart, (one, a, other, b))
        for line in root.iter(SVG + "line"):
            self.assertTrue(all(0 <= float(line.get(name)) <= width for name in ("x1", "x2")))
            self.assertTrue(all(0 <= float(line.get(name)) <= height for name in ("y1", "y2")))
        return root, [text for text, _ in boxes]

    def plan(self, points, sights):
        self.compute(points, sights, "--svg", self.path("plan.svg"))
        return self.check(pathlib.Path(self.path("plan.svg")).read_bytes())

    def test_the_town_survey(self):
        self.expect(DONE, "station", *TABLES, "--svg", "plan.svg")
        for name in ("5001", "5003"):
            root, texts = self.check(pathlib.Path(self.path(f"plan-{name}.svg")).read_bytes())
            for wanted in (f"Station {name}", name, "11", "12", "13", "14", "231", "232", "1:50 000", "2 km", "N",
                           "84000", "90000", "2000", "Legend"):
                self.assertIn(wanted, texts)
            self.assertEqual(sum("residual × " in text for text in texts), 1)
            self.assertEqual(sum("error ellipse × " in text for text in texts), 1)
            self.assertEqual(len(list(root.iter(SVG + "ellipse"))), 2)  # at the station, and in the legend
            self.assertNotIn("left out", " ".join(texts))

    def test_targets_stand_where_their_coordinates_say(self):
        root, _ = self.plan(CROSS_POINTS, CROSS_SIGHTS)
        triangles = [polygon.get("points").split() for polygon in root.iter(SVG + "polygon")]
        tops = [tuple(float(value) for value in triangle[0].split(",")) for triangle in triangles[:4]]
        north, east, south, west = tops
        # 1:2500 takes 100 m to 40 mm, 1:2000 to 50 mm; what counts is the same scale in all four directions.
        reach = (south[1] - north[1]) / 2
        self.assertAlmostEqual((east[0] - west[0]) / 2, reach, delta=0.02)
        self.assertAlmostEqual(north[0], south[0], delta=0.02)
        self.assertGreater(reach, 20)

    def survey(self, targets, every=lambda index: True):
        """Exact sights from the origin, 3" and 4 mm of noise, with the distance to some."""
        noise = random.Random(7)
        points, sights = "id,n,e\n", "station,target,hz,hd,use\n"
        for index, (name, north, east) in enumerate(targets):
            degrees = (math.degrees(math.atan2(east, north)) + noise.gauss(0, 3 / 3600)) % 360
            distance = f"{math.hypot(north, east) + noise.gauss(0, 0.004):.4f}" if every(index) else ""
            points += f'"{name}",{north},{east}\n'
            sights += f'S1,"{name}",{degrees:.7f}d,{distance},{0 if index % 7 == 6 else 1}\n'
        return points, sights

    def test_a_narrow_sector(self):
        self.plan(*self.survey([(f"P{i}", 300 * math.cos(0.7 + i / 40), 300 * math.sin(0.7 + i / 40))
                                for i in range(9)]))

    def test_far_and_near_targets(self):
        self.plan(*self.survey([("far", 25000, 3000), ("mid", 800, -900), ("n1", 20, 10), ("n2", -15, 12),
                                ("n3", 5, -30)]))

    def test_thirty_targets(self):
        place = random.Random(3)
        _, texts = self.plan(*self.survey([(str(1000 + i), place.uniform(-400, 400), place.uniform(-400, 400))
                                           for i in range(30)], lambda index: index % 2))
        self.assertTrue({str(1000 + i) for i in range(30)} <= set(texts))

    def test_long_and_strange_names(self):
        _, texts = self.plan(*self.survey([(f"Árvíztűrő <tükörfúrógép> & Söhne, Pfeiler Nummer {i}", 80 * math.cos(i),
                                            80 * math.sin(i)) for i in range(6)]))
        self.assertEqual(sum("…" in text for text in texts), 6)

    def test_targets_in_a_line_and_on_one_spot(self):
        self.plan(*self.survey([(f"K{i}", i * 100.0 - 300, (i % 2) * 9.0 - 4) for i in range(8)]))
        self.plan(*self.survey([(f"Q{i}", 50 + i / 100, 60.0) for i in range(10)] + [("R", -40, 10), ("T", 10, -60)]))

    def test_very_small_and_very_large_surveys(self):
        for size in (0.05, 3.0, 1e5, 3e7):
            self.plan(*self.survey([("A", size, 0.0), ("B", 0.0, size), ("C", -size, size / 3), ("D", -size, -size)],
                                   lambda index: False))

    def test_no_redundancy(self):
        root, texts = self.plan(CROSS_POINTS, "station,target,hz\nA,N,0d\nA,E,90d\nA,S,180d\n")
        self.assertIn("no redundancy: precision unknown", texts)
        self.assertEqual(list(root.iter(SVG + "ellipse")), [])


class Robustness(StationCase):
    def test_spoilt_tables_never_crash(self):
        chance = random.Random(1)
        good = [CROSS_POINTS.encode(), b"station,target,hz,v,sd,hd,th,ih,use\nA,N,0d,90d,100,,1.5,1.6,1\n"
                b"A,E,90-00-00,88d,,100,,,\nA,S,200g,,,,,,0\nA,W,270:00:00\n"]
        pieces = [b"", b"\0", b"\xff", b",", b"\n", b"\"", b"#", b"nan", b"1e308", b"-1e308", b"9" * 400, b"-", b"d",
                  b"\xc3", b";", b"\t", b"A", b"0", b"1e-320", b"360d", b"180d", b"0-00-00"]
        for _ in range(150):
            tables = [bytearray(table) for table in good]
            for _ in range(chance.randrange(1, 6)):
                table = chance.choice(tables)
                at = chance.randrange(len(table))
                table[at:at + chance.randrange(8)] = chance.choice(pieces)
            done = self.run_tool("station", "--points", self.put("points.csv", bytes(tables[0])), "--sights",
                                 self.put("sights.csv", bytes(tables[1])), "--svg", self.path("plan.svg"),
                                 chance.choice(["--json", "--csv", "--angle=gon"]))
            self.assertIn(done.returncode, (DONE, NOT_COMPUTED, WRONG_USE, UNREADABLE), tables)
            if done.returncode in (WRONG_USE, UNREADABLE):
                self.assertEqual(done.stdout, b"")
                self.assertNotEqual(done.stderr, b"")

    def test_binary_input(self):
        for content in (b"\0" * 5000, bytes(range(256)) * 50, b"\xff\xfei\0d\0", b"\"" * 1001, b"," * 10000):
            done = self.compute(content, CROSS_SIGHTS, code=UNREADABLE)
            self.assertLessEqual(len(done.stderr.splitlines()), 41)
        # What is no text in the place of the header is told once.
        done = self.compute(50 * b"\0\xff\n", CROSS_SIGHTS, code=UNREADABLE)
        self.assertEqual(done.stderr.decode(), f"{self.path('points.csv')}:1: not UTF-8 text; save the file in UTF-8\n")

    def test_a_large_field_book(self):
        sights = CROSS_SIGHTS + "".join(f"A,detail{i},{i % 360}d\n" for i in range(100000))
        station, = self.compute_stations(CROSS_POINTS, sights)
        self.assertTrue(station["solved"])
        self.assertEqual(len(station["sights"]), 100004)

    def test_more_sights_than_the_library_counts(self):
        sights = ("station,target,hz\n" + 10000 * CROSS_SIGHTS.split("\n", 1)[1] + 40000 * "B,N,0d\n" +
                  CROSS_SIGHTS.replace("A,", "C,").split("\n", 1)[1])
        first, second, third = self.compute_stations(CROSS_POINTS, sights, code=NOT_COMPUTED)
        self.assertEqual((first["solved"], first["adjusted_by"], first["redundancy"]), (True, "tool", 39997))
        self.assertLess(math.hypot(first["result"]["northing"], first["result"]["easting"]), 1e-6)
        self.assertEqual((second["solved"], second["status_name"]), (False, "TOO_FEW_SIGHTS"))
        self.assertEqual((third["solved"], third["adjusted_by"]), (True, "library"))

    def test_geometry_without_a_solution(self):
        # On the danger circle; on one line; all targets in one place; the station upon a target.
        for points, sights in (
                ("id,n,e\nP,100,0\nQ,0,100\nR,-100,0\n", "station,target,hz\nA,P,0d\nA,Q,45d\nA,R,90d\n"),
                ("id,n,e\nP,1,0\nQ,2,0\nR,3,0\n", "station,target,hz\nA,P,0d\nA,Q,0d\nA,R,0d\n"),
                ("id,n,e\nP,1,1\nQ,1,1\nR,1,1\n", "station,target,hz\nA,P,0d\nA,Q,10d\nA,R,20d\n"),
                ("id,n,e\nP,0,0\nQ,0,9\nR,9,0\n", "station,target,hz,hd\nA,P,0d,1e-9\nA,Q,90d,9\nA,R,0d,9\n")):
            done = self.run_tool("station", "--points", self.put("points.csv", points), "--sights",
                                 self.put("sights.csv", sights), "--svg", self.path("plan.svg"))
            self.assertIn(done.returncode, (DONE, NOT_COMPUTED))
            self.assertNotIn(b"nan", done.stdout.lower().replace(b"nant", b""))


if __name__ == "__main__":
    unittest.main()
