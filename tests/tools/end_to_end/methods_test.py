"""End-to-end tests of `qstd station --method` and `qstd benchmark`: the closed solutions, warnings, published cases."""
import csv
import io
import json
import math
import os
import pathlib
import unittest

from case import DONE, EXAMPLES, NOT_COMPUTED, UNREADABLE, WRONG_USE, Case

TOWN = ["--points", str(EXAMPLES / "town" / "points.csv"), "--sights", str(EXAMPLES / "town" / "free_station.csv")]
BOOK = ["--points", str(EXAMPLES / "town" / "points.csv"), "--sights", str(EXAMPLES / "town" / "sights.csv")]
SECOND = math.pi / 648000
FOOT = 0.3048

# A right angle between two targets 5 m apart, seen from 3 m and 4 m: the station is the foot of the height, 2.4 m off
# the line and 1.8 m along it. The circle reads 0 at A, whose azimuth is atan2(-1.8, 2.4) = 323-07-48.4.
TRIANGLE = "id,n,e\nA,0,0\nB,0,5\n"
TRIANGLE_ORIENTATION = 360 + math.degrees(math.atan2(-1.8, 2.4))

# Four targets 100 m around the origin, seen from there with the circle's zero at azimuth 0.
CROSS = "id,n,e\nN,100,0\nE,0,100\nS,-100,0\nW,0,-100\n"
CROSS_SIGHTS = "station,target,hz\nA,N,0d\nA,E,90d\nA,S,180d\nA,W,270d\n"


def degrees_text(radians):
    return f"{math.degrees(radians) % 360:.7f}d"


def exact_sights(targets, north, east):
    """Points and directions of the targets (name: north, east) as seen from a place, circle zero at north."""
    points, sights = "id,n,e\n", "station,target,hz\n"
    for name, (target_north, target_east) in targets.items():
        points += f"{name},{target_north:.9f},{target_east:.9f}\n"
        sights += f"A,{name},{degrees_text(math.atan2(target_east - east, target_north - north))}\n"
    return points, sights


class MethodCase(Case):
    def run_station(self, points, sights, *arguments, code=DONE):
        return self.expect(code, "station", "--points", self.put("points.csv", points), "--sights",
                           self.put("sights.csv", sights), *arguments)

    def station(self, points, sights, *arguments, code=DONE):
        """The one set-up, as an object."""
        line, = self.run_station(points, sights, "--json", *arguments, code=code).stdout.splitlines()
        return json.loads(line)

    def assert_near(self, got, wanted, tolerance):
        self.assertIsNotNone(got)
        self.assertLessEqual(abs(got - wanted), tolerance, (got, wanted))

    def assert_station(self, station, north, east, tolerance):
        self.assertTrue(station["solved"], station)
        self.assert_near(station["result"]["northing"], north, tolerance)
        self.assert_near(station["result"]["easting"], east, tolerance)

    def assert_orientation(self, station, wanted, seconds=0.1):
        difference = (station["result"]["orientation_degrees"] - wanted + 180) % 360 - 180
        self.assertLessEqual(abs(difference) * 3600, seconds)


class StationMethods(MethodCase):
    # --- two targets -----------------------------------------------------------------------------------------------

    def test_two_targets_and_one_distance(self):
        for sights in ("S,A,0d,3\nS,B,90d,\n", "S,A,0d,\nS,B,90d,4\n"):
            station = self.station(TRIANGLE, "station,target,hz,hd\n" + sights, "--method", "two-point")
            self.assert_station(station, -2.4, 1.8, 1e-6)
            self.assert_orientation(station, TRIANGLE_ORIENTATION)
            self.assertEqual(station["redundancy"], 0)
            self.assertIsNone(station["checks"]["baseline"])

    def test_two_targets_and_two_distances_leave_the_baseline_to_compare(self):
        # Both distances 1 % long: the fit takes the scale out, and the baseline is 5 - 5.05.
        station = self.station(TRIANGLE, "station,target,hz,hd\nS,A,0d,3.03\nS,B,90d,4.04\n", "--method", "two-point")
        self.assert_station(station, -2.4, 1.8, 1e-6)
        self.assert_near(station["checks"]["baseline"], -0.05, 1e-9)
        # Adjusted less observed: 3 - 3.03 and 4 - 4.04.
        for sight, residual in zip(station["sights"], (-0.03, -0.04)):
            self.assert_near(sight["distance_residual"], residual, 1e-6)
        text = self.run_station(TRIANGLE, "station,target,hz,hd\nS,A,0d,3.03\nS,B,90d,4.04\n", "--method",
                                "two-point").stdout.decode()
        self.assertRegex(text, r"\n  baseline +-50\.0  mm  known less measured\n")
        # The closed solution has no precision; that the sights do not fit is said.
        self.assertNotIn("m  ±", text)
        self.assertIn("Warning:      the sights fit badly", text)
        self.assertIn("two targets only: with their names exchanged", station["warnings"][-1])

    def test_two_targets_give_the_mean_height(self):
        # 10 + 1.5 - 3 / tan 80d = 10.9710; 10.745 + 1.3 - 4 / tan 75d = 10.9732. Mean 10.9721, ground mark 1.6 below.
        heights = [10 + 1.5 - 3 / math.tan(math.radians(80)), 10.745 + 1.3 - 4 / math.tan(math.radians(75))]
        station = self.station("id,n,e,h\nA,0,0,10\nB,0,5,10.745\n", "station,target,hz,v,hd,th,ih\n"
                               "S,A,0d,80d,3,1.5,1.6\nS,B,90d,75d,4,1.3,\n", "--method", "two-point")
        self.assert_near(station["result"]["height"], sum(heights) / 2, 1e-9)
        self.assert_near(station["result"]["mark_height"], sum(heights) / 2 - 1.6, 1e-9)
        self.assert_near(station["result"]["height_spread"], abs(heights[0] - heights[1]), 1e-9)
        self.assertEqual(station["result"]["height_targets"], 2)

    def test_face_two_gives_the_same_station(self):
        one = self.station(TRIANGLE, "station,target,hz,v,sd\nS,A,0d,80d,3\nS,B,90d,90d,\n", "--method", "two-point")
        two = self.station(TRIANGLE, "station,target,hz,v,sd\nS,A,180d,280d,3\nS,B,270d,270d,\n", "--method",
                           "two-point")
        self.assertEqual(one["result"], two["result"])
        self.assertEqual(two["reduced_from_face_two"], 2)

    def test_a_distance_longer_than_the_baseline_is_refused(self):
        sights = "station,target,hz,hd\nS,A,0d,6\nS,B,90d,\n"
        station = self.station(TRIANGLE, sights, "--method", "two-point", code=NOT_COMPUTED)
        self.assertEqual((station["status"], station["status_name"]), (-1205, "QSTD_DEGENERATE"))
        self.assertIn("longer than the line between the two targets", station["reason"])
        text = self.run_station(TRIANGLE, sights, "--method", "two-point", code=NOT_COMPUTED).stdout.decode()
        self.assertIn("NOT SOLVED:   the measured distance is longer", text)

    def test_two_targets_without_distance_are_refused(self):
        station = self.station(TRIANGLE, "station,target,hz\nS,A,0d\nS,B,90d\n", "--method", "two-point",
                               code=NOT_COMPUTED)
        self.assertEqual(station["status_name"], "QSTD_NO_DISTANCE")

    # --- three directions ------------------------------------------------------------------------------------------

    def test_three_directions_give_the_place_back(self):
        targets = {"P": (100, 0), "Q": (-20, 90), "R": (-50, -60)}
        station = self.station(*exact_sights(targets, 10, 5), "--method", "three-point")
        self.assert_station(station, 10, 5, 2e-5)  # readings to 1/32", over some 100 m
        self.assert_orientation(station, 0)
        self.assertEqual(station["method"], "three-point")

    def test_the_distance_to_the_danger_circle_is_told(self):
        # The circle through three points 100 m from the origin has that radius; the station is 60 m inside it.
        targets = {name: (100 * math.cos(azimuth), 100 * math.sin(azimuth))
                   for name, azimuth in (("P", 0.2), ("Q", 2.1), ("R", 4.4))}
        points, sights = exact_sights(targets, 24, 32)
        station = self.station(points, sights, "--method", "three-point")
        self.assert_near(station["checks"]["danger_circle_distance"], 60, 1e-3)
        self.assertIn("danger circle        60.000  m  away; 1\" in a direction moves the station by up to",
                      self.run_station(points, sights, "--method", "three-point").stdout.decode())

    def test_equal_directions_are_refused(self):
        points = "id,n,e\nP,100,0\nQ,100,100\nR,0,100\n"
        station = self.station(points, "station,target,hz\nA,P,0d\nA,Q,0d\nA,R,90d\n", "--method", "three-point",
                               code=NOT_COMPUTED)
        self.assertEqual(station["status_name"], "QSTD_EQUAL_DIRECTIONS")

    def test_too_few_sights_for_a_method(self):
        two = "station,target,hz\nA,N,0d\nA,E,90d\nA,nowhere,10d\n"
        for method, sights in (("three-point", two), ("two-point", "station,target,hz\nA,N,0d\nA,N,90d\n"),
                               ("known-line", two)):
            station = self.station(CROSS, sights, "--method", method, code=NOT_COMPUTED)
            self.assertEqual(station["status_name"], "TOO_FEW_SIGHTS", method)
            for key in ("reason", "usual_cause", "remedy"):
                self.assertNotEqual(station[key], "")

    # --- known line ------------------------------------------------------------------------------------------------

    # A is sighted at 3 m with the circle at 0, the second point at 4 m with the circle at 90 degrees: the line has 5 m
    # and the circle's azimuth atan2(4, -3) = 126.87 degrees. Where it runs east, azimuth 90, the circle's zero points to
    # 90 - 126.87 = 323.13 degrees, and the station is A less (3 cos, 3 sin) of that: (100 - 2.4, 200 + 1.8).
    LINE_SIGHTS = "station,target,hz,v,hd,th\nS,A,0d,90d,3,1.5\nS,B,90d,90d,4,1.5\n"

    def test_a_known_line_by_azimuth(self):
        station = self.station("id,n,e,h\nA,100,200,10\n", self.LINE_SIGHTS, "--method", "known-line",
                               "--line-azimuth", "90d")
        self.assert_station(station, 97.6, 201.8, 1e-6)
        self.assert_orientation(station, TRIANGLE_ORIENTATION)
        self.assert_near(station["result"]["height"], 11.5, 1e-9)
        self.assertEqual([sight["used"] for sight in station["sights"]], [True, True])
        self.assertEqual(station["sights"][1]["remark"], "placed on the line")
        self.assertEqual(station["redundancy"], 0)

    def test_a_known_line_between_known_points_compares_its_length_and_rise(self):
        # The line is 5.002 m long and rises by 0.003 in the table, 5 m and 0 as measured.
        station = self.station("id,n,e,h\nA,100,200,10\nB,100,205.002,10.003\n", self.LINE_SIGHTS, "--method",
                               "known-line")
        self.assert_station(station, 97.6, 201.8, 1e-6)
        self.assert_near(station["checks"]["line_length"], -0.002, 1e-9)
        self.assert_near(station["checks"]["line_rise"], -0.003, 1e-9)

    def test_a_known_line_without_height(self):
        station = self.station("id,n,e\nA,100,200\n", self.LINE_SIGHTS, "--method", "known-line", "--line-azimuth",
                               "90d")
        self.assertIsNone(station["result"]["height"])
        self.assertIn("height                 none",
                      self.run_station("id,n,e\nA,100,200\n", self.LINE_SIGHTS, "--method", "known-line",
                                       "--line-azimuth", "90d").stdout.decode())

    def test_the_order_of_targets_is_the_direction_of_the_line(self):
        # From B to A the line runs west: with its azimuth 270 degrees the station is the same.
        station = self.station("id,n,e\nB,100,205\n", self.LINE_SIGHTS, "--method", "known-line", "--line-azimuth",
                               "270d", "--targets", "B,A")
        self.assert_station(station, 97.6, 201.8, 1e-6)

    # --- azimuths from south ---------------------------------------------------------------------------------------

    def test_only_orientations_of_closed_resections_count_from_south(self):
        heading = "station,target,hz,hd\n"
        for method, sights, isTurned in (("two-point", "A,N,10d,100\nA,E,100d,\n", True),
                                         ("two-point", "A,N,10d,100\nA,E,100d,100\n", True),
                                         ("three-point", "A,N,10d,\nA,E,100d,\nA,W,280d,\n", True),
                                         ("multi", "A,N,10d,\nA,E,100d,\nA,W,280d,\n", False),
                                         ("known-line", "A,N,10d,100\nA,E,100d,100\n", False)):
            options = ["--method", method, "--south-azimuth"]
            station = self.station(CROSS, heading + sights, *options)
            self.assert_station(station, 0, 0, 1e-5)
            # The circle reads 10 degrees to the north: its zero points 10 degrees before it.
            self.assert_orientation(station, 170 if isTurned else 350)
            self.assertEqual(station["result"]["orientation_from"], "south" if isTurned else "north")
            for sight in station["sights"]:
                self.assert_near(sight["across_residual"], 0, 1e-3)
            text = self.run_station(CROSS, heading + sights, *options).stdout.decode()
            self.assertRegex(text, r"\n  orientation .* from south\n" if isTurned else
                             r"\n  orientation .* from north \(adjusted\)\n")

    def test_the_azimuth_of_a_known_line_counts_from_south(self):
        # To the east is 270 degrees there. The second point, which is not known, is placed as from north.
        south = self.station("id,n,e\nA,100,200\n", self.LINE_SIGHTS, "--method", "known-line", "--line-azimuth",
                             "270d", "--south-azimuth")
        north = self.station("id,n,e\nA,100,200\n", self.LINE_SIGHTS, "--method", "known-line", "--line-azimuth", "90d")
        self.assert_station(south, 97.6, 201.8, 1e-6)
        for one, other in zip(south["sights"], north["sights"]):
            self.assert_near(one["across_residual"], other["across_residual"], 1e-6)
        self.assertEqual(south["result"]["orientation_degrees"], north["result"]["orientation_degrees"])

    # --- the choice of sights and method ---------------------------------------------------------------------------

    def test_auto_takes_what_the_set_up_holds(self):
        heading = "station,target,hz,hd\n"
        # A closed solution only where nothing is redundant; repeated sights count for one target.
        for sights, method in (("A,N,0d,100\nA,E,90d,\n", "two-point"), ("A,N,0d,100\nA,E,90d,100\n", "multi"),
                               ("A,N,0d,100\nA,E,90d,\nA,N,0d,\nA,E,90d,\n", "multi"),
                               ("A,N,0d,\nA,E,90d,\nA,W,270d,\n", "three-point"),
                               ("A,N,0d,100\nA,E,90d,\nA,W,270d,\n", "multi"),
                               ("A,N,0d,\nA,E,90d,\nA,W,270d,\nA,S,180d,\n", "multi"),
                               ("A,N,0d,100\nA,E,90d,100\nA,N,0d,100\n", "multi")):
            station = self.station(CROSS, heading + sights, "--method", "auto")
            self.assertEqual(station["method"], method, sights)
            # 1" off in 100 m would be half a millimetre.
            self.assert_station(station, 0, 0, 1e-5)
        text = self.run_station(CROSS, heading + "A,N,0d,100\nA,E,90d,\n", "--method", "auto").stdout.decode()
        self.assertIn("\n  two-point resection from N, E; chosen for 2 directions and 1 distance to 2 targets\n", text)

    def test_auto_takes_the_known_line_only_where_nothing_else_fits(self):
        for points, method in (("id,n,e\nA,100,200\n", "known-line"),
                               ("id,n,e\nA,100,200\nB,100,205\n", "multi")):
            station = self.station(points, self.LINE_SIGHTS, "--method", "auto", "--line-azimuth", "90d")
            self.assertEqual(station["method"], method)
            self.assert_station(station, 97.6, 201.8, 1e-6)
        station = self.station("id,n,e\nA,100,200\n", self.LINE_SIGHTS, "--method", "auto", code=NOT_COMPUTED)
        self.assertEqual(station["method"], "multi")

    def test_targets_are_picked_and_the_others_check(self):
        station, = self.objects("station", "5003", *BOOK, "--method", "three-point", "--targets", "13,14,12")
        used = {sight["target"] for sight in station["sights"] if sight["used"]}
        self.assertEqual(used, {"12", "13", "14"})
        spare = next(sight for sight in station["sights"] if sight["target"] == "11")
        self.assertEqual(spare["remark"], "not among the targets named")
        self.assertIsNotNone(spare["direction_residual_degrees"])
        every, = self.objects("station", "5001", *TOWN, "--method", "two-point")
        self.assertEqual([sight["target"] for sight in every["sights"] if sight["used"]], ["14", "11"])
        self.assertEqual({sight["remark"] for sight in every["sights"] if not sight["used"]}, {"not needed"})

    def test_auto_is_what_happens_without_a_method(self):
        for method in ("auto", "multi"):
            self.assertEqual(self.text("station", *TOWN), self.text("station", *TOWN, "--method", method))

    # --- corrections -----------------------------------------------------------------------------------------------

    # The height of T, 1000 m east of the station and 100 m high, by zenith angle alone; N and W have no height.
    CORRECTED = "id,n,e,h\nN,1000,0,\nT,0,1000,100\nW,0,-1000,\nS,-1000,0,\n"

    def height(self, zenith, *arguments):
        sights = f"station,target,hz,v\nA,N,0d,\nA,T,90d,{zenith}\nA,W,270d,\n"
        heights = [self.station(self.CORRECTED, sights, "--method", method, *arguments)["result"]["height"]
                   for method in ("three-point", "multi")]
        self.assert_near(heights[0], heights[1], 1e-6)
        return heights[0]

    def test_corrections_of_a_height_by_zenith_angle(self):
        level = math.tan(math.radians(80))
        self.assert_near(self.height("80d"), 100 - 1000 / level, 1e-5)
        self.assert_near(self.height("80d", "--scale", "0.9996"), 100 - 1000 / 0.9996 / level, 1e-5)
        # A mean elevation of 637 m is a ten-thousandth of the radius 6370 km.
        self.assert_near(self.height("80d", "--sea-level", "637"), 100 - 1000.1 / level, 1e-5)
        # Level: 1000^2 (1 - k) / (2 * 6370000) is the drop.
        for index, k in (("0.132", 0.132), ("0.133", 0.133), ("0.2", 0.20), ("0.20", 0.20)):
            self.assert_near(self.height("90d", "--refraction", index), 100 - 1e6 * (1 - k) / 12740000, 1e-5)

    def test_height_residuals_are_corrected_alike(self):
        # Two level sights of 1 km to points of one height agree, corrected or not.
        points = "id,n,e,h\nN,1000,0,100\nT,0,1000,100\nW,0,-1000,\n"
        sights = "station,target,hz,v\nA,N,0d,90d\nA,T,90d,90d\nA,W,270d,\n"
        for method in ("three-point", "multi"):
            station = self.station(points, sights, "--method", method, "--refraction", "0.2", "--sea-level", "500",
                                   "--scale", "0.9999")
            for sight in station["sights"][:2]:
                self.assert_near(sight["height_residual"], 0, 1e-6)

    # --- unit ------------------------------------------------------------------------------------------------------

    def in_feet(self, path, columns, foot=FOOT):
        lines = [line for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines()
                 if line and not line.startswith("#")]
        rows = list(csv.DictReader(lines))
        out = io.StringIO()
        writer = csv.DictWriter(out, rows[0].keys())
        writer.writeheader()
        for row in rows:
            writer.writerow({key: f"{float(value) / foot:.12f}" if key in columns and value else value
                             for key, value in row.items()})
        return out.getvalue()

    def test_feet_give_the_same_station_as_metres(self):
        for unit, foot in (("ft", FOOT), ("us-ft", 1200 / 3937)):
            points = self.in_feet(TOWN[1], ("n", "e", "h"), foot)
            sights = self.in_feet(TOWN[3], ("sd", "hd", "th", "ih"), foot)
            for method in ("multi", "two-point", "three-point", "known-line"):
                metric = self.objects("station", "5001", *TOWN, "--method", method, "--refraction", "0.132")[0]
                station = next(json.loads(line) for line in self.run_station(
                    points, sights, "5001", "--unit", unit, "--method", method, "--refraction", "0.132",
                    "--json").stdout.splitlines())
                self.assertEqual(station["unit"], unit)
                for name in ("northing", "easting", "height", "mark_height", "northing_precision", "height_spread"):
                    if metric["result"][name] is not None:
                        self.assert_near(station["result"][name] * foot, metric["result"][name], 2e-7)
                for sight, other in zip(station["sights"], metric["sights"]):
                    if other["distance_residual"] is not None:
                        self.assert_near(sight["distance_residual"] * foot, other["distance_residual"], 2e-7)
                if method == "multi":
                    self.assert_near(station["error_ellipse"]["semi_major"] * foot,
                                     metric["error_ellipse"]["semi_major"], 1e-8)

    def test_feet_are_printed_as_feet(self):
        points = self.in_feet(TOWN[1], ("n", "e", "h"))
        sights = self.in_feet(TOWN[3], ("sd", "hd", "th", "ih"))
        text = self.run_station(points, sights, "5001", "--unit", "ft").stdout.decode()
        # 3587.5209 m and 3.2 mm of the same station in metres: 11770.0817 ft and 0.0105 ft, to the last metric digit.
        self.assertRegex(text, r"northing +11770\.08\d\d  ft  ± 0\.010\d ft\n")
        self.assertIn("across ft", text)
        self.assertNotIn(" mm", text)
        titles = self.run_station(points, sights, "5001", "--unit", "us-ft", "--csv").stdout.decode().splitlines()[0]
        self.assertIn("across_residual_us_ft,distance_residual_us_ft", titles)
        self.assertNotIn("_mm", titles)

    # --- columns, files --------------------------------------------------------------------------------------------

    def test_columns_pick_and_order(self):
        text = self.text("station", "5001", *TOWN, "--csv", "--columns", "target,station,redundancy").splitlines()
        self.assertEqual(text[:2], ["target,station,redundancy", "14,5001,5"])
        for arguments, message in ((["--columns", "target"], "--columns picks the columns of CSV; give --csv"),
                                   (["--json", "--columns", "target"], "give --csv"),
                                   (["--csv", "--columns", "targt"], "no column \"targt\"; did you mean: target?")):
            done = self.expect(WRONG_USE, "station", *TOWN, *arguments)
            self.assertIn(message, done.stderr.decode())
            self.assertEqual(done.stdout, b"")

    def test_output_goes_to_a_file_with_the_plans(self):
        expected = self.text("station", *TOWN, "--csv")
        self.assertEqual(self.text("station", *TOWN, "--csv", "--output", "out.csv"), "")
        self.assertEqual(pathlib.Path(self.path("out.csv")).read_text(encoding="utf-8"), expected)
        done = self.expect(WRONG_USE, "station", "5001", *TOWN, "--output", "x", "--svg", "x")
        self.assertIn(b"is the file of --output, too", done.stderr)
        # The name of a plan is known when the stations are.
        done = self.expect(WRONG_USE, "station", *TOWN, "--output", "x-5003.svg", "--svg", "x.svg")
        self.assertIn(b"x-5003.svg: two outputs would go there", done.stderr)
        self.assertFalse(os.path.exists(self.path("x")))
        done = self.run_station(CROSS, CROSS_SIGHTS, "--output", "points.csv", code=WRONG_USE)
        self.assertIn(b"is the file of --points, too", done.stderr)
        self.assertEqual(pathlib.Path(self.path("points.csv")).read_text(encoding="utf-8"), CROSS)

    def test_drawings_hold_station_targets_and_sights(self):
        text = self.run_station(CROSS, CROSS_SIGHTS.replace("A,", "B,") + CROSS_SIGHTS.split("\n", 1)[1], "--dxf",
                                "a.dxf", "--geojson", "a.json").stdout.decode()
        self.assertIn("DXF of station B: a-B.dxf\n", text)
        self.assertIn("GeoJSON of station A: a-A.json\n", text)
        features = json.loads(pathlib.Path(self.path("a-A.json")).read_text(encoding="utf-8"))["features"]
        roles = [feature["properties"]["role"] for feature in features]
        self.assertEqual([roles.count(role) for role in ("station", "given", "sight")], [1, 4, 4])
        target, = [feature for feature in features if feature["properties"]["name"] == "E"]
        self.assertEqual(target["geometry"]["coordinates"], [100, 0])  # easting first
        dxf = pathlib.Path(self.path("a-A.dxf")).read_text(encoding="utf-8").splitlines()
        self.assertEqual(dxf.count("LINE"), 4)
        self.assertEqual(dxf.count("POINT"), 5)

    # --- a known station -------------------------------------------------------------------------------------------

    def test_computed_less_known_in_every_form(self):
        # The sights put the station at the origin; the table says 10 mm north and 20 mm west of it.
        points = CROSS + "A,0.010,-0.020\n"
        self.assertIn("computed less known point: n -10.0 mm, e +20.0 mm",
                      self.run_station(points, CROSS_SIGHTS, "A").stdout.decode())
        difference = self.station(points, CROSS_SIGHTS, "A")["computed_less_known"]
        self.assert_near(difference["northing"], -0.01, 1e-6)
        self.assert_near(difference["easting"], 0.02, 1e-6)
        self.assertIsNone(difference["height"])
        text = self.run_station(points, CROSS_SIGHTS, "A", "--csv").stdout.decode()
        for row in csv.DictReader(io.StringIO(text)):
            self.assertEqual((row["northing_less_known_mm"], row["easting_less_known_mm"], row["height_less_known_mm"]),
                             ("-10.0", "20.0", ""))
        self.assertNotIn("computed_less_known", self.station(CROSS, CROSS_SIGHTS))

    # --- one sight left out ----------------------------------------------------------------------------------------

    # Six targets around the origin, exact but for 60" in the direction to E: without it all fits there.
    SIX = {"N": (100, 0), "E": (10, 90), "S": (-110, 5), "W": (0, -95), "X": (60, 70), "Y": (-50, -80)}

    def spoilt(self):
        points, sights = exact_sights(self.SIX, 0, 0)
        reading = math.atan2(90, 10)
        return points, sights.replace(f"E,{degrees_text(reading)}", f"E,{degrees_text(reading + 60 * SECOND)}")

    def test_leave_one_out_finds_the_sight_that_does_not_fit(self):
        station = self.station(*self.spoilt(), "--leave-one-out")
        best, = [without for without in station["left_out"] if without["helps_most"]]
        self.assertEqual((best["target"], best["observation"]), ("E", "direction"))
        without = station["left_out"][1]
        result = station["result"]
        self.assertGreater(math.hypot(result["northing"], result["easting"]), 0.001)
        # The shift leads to the origin, but for readings to 1/32" over 100 m.
        self.assert_near(without["northing_shift"], -result["northing"], 3e-5)
        self.assert_near(without["easting_shift"], -result["easting"], 3e-5)
        self.assertLess(without["direction_sigma_degrees"] * 3600, 0.1)
        for without in station["left_out"]:
            if without["target"] != "E":
                self.assertGreater(without["direction_sigma_degrees"] * 3600, 5)

    def test_leave_one_out_in_text_and_csv(self):
        points, sights = self.spoilt()
        text = self.run_station(points, sights, "--leave-one-out").stdout.decode()
        self.assertRegex(text, r"\n  without +n mm +e mm +± n mm +± e mm +direction ± \" +remark\n")
        self.assertRegex(text, r"\n  E +direction .* helps most\n")
        self.assertEqual(text.count("helps most"), 1)
        rows = list(csv.DictReader(io.StringIO(
            self.run_station(points, sights, "--leave-one-out", "--csv").stdout.decode())))
        self.assertEqual([row["helps_most"] for row in rows], ["", "direction", "", "", "", ""])
        self.assertNotIn("helps_most", self.run_station(points, sights, "--csv").stdout.decode())

    def test_leave_one_out_without_redundancy_to_spare(self):
        text = self.run_station(CROSS, CROSS_SIGHTS, "--leave-one-out").stdout.decode()
        self.assertIn("Nothing would check the others", text)
        self.assertNotIn("helps most", text)
        text = self.run_station(CROSS, "station,target,hz\nA,N,0d\nA,E,90d\nA,W,270d\n", "--method", "multi",
                                "--leave-one-out").stdout
        self.assertIn("the set-up has no more than it needs", text.decode())

    def test_leave_one_out_of_sound_sights_names_none(self):
        text = self.text("station", *TOWN, "--leave-one-out")
        self.assertEqual(text.count("Nothing is wrong: no observation stands out."), 2)
        self.assertNotIn("helps most", text)

    # --- wrong use -------------------------------------------------------------------------------------------------

    def test_wrong_use_of_methods(self):
        for arguments, message in ((["--method", "four-point"], "four-point"),
                                   (["--method", "multi", "--line-azimuth", "10d"], "--method known-line"),
                                   (["--method", "known-line", "--line-azimuth", "10"], "no unit"),
                                   (["--method", "two-point", "--leave-one-out"], "--leave-one-out"),
                                   (["--targets", "14,15x"], "no sight to \"15x\""),
                                   (["--refraction", "3"], "takes a coefficient, 0.132, 0.133 or 0.20, or off\n"),
                                   (["--refraction", "1"], "for coefficient 1 write 0.133"), (["--dxf", "-"], "a figure goes to a file")):
            done = self.expect(WRONG_USE, "station", *TOWN, *arguments)
            self.assertIn(message, done.stderr.decode(), arguments)
            self.assertEqual(done.stdout, b"")

    def test_the_other_set_ups_are_computed_where_one_is_refused(self):
        stations = self.objects("station", *BOOK, "--method", "three-point", code=NOT_COMPUTED)
        self.assertEqual({station["solved"] for station in stations}, {True, False})

    def test_no_negative_zero(self):
        for form in ([], ["--csv"]):
            done = self.run_station(CROSS, CROSS_SIGHTS + "B,N,0d\nB,E,90d\nB,W,270d\n", "--method", "auto",
                                    "--decimals", "2", *form)
            self.assertNotRegex(done.stdout.decode(), r"-0\.0+(?![0-9])")

    # --- benchmark -------------------------------------------------------------------------------------------------

    def test_benchmark_forms(self):
        # 100 + 1.5 - 50 cos 88d = 99.7550; the mark 1.6 below.
        height = 100 + 1.5 - 50 * math.cos(math.radians(88))
        for benchmark in ("100", "1,2,100"):
            for zenith in ("88d", "272d"):
                row, = self.objects("benchmark", benchmark, zenith, "50", "--target-height", "1.5",
                                    "--instrument-height", "1.6")
                self.assert_near(row["height"], height, 1e-9)
                self.assert_near(row["mark_height"], height - 1.6, 1e-9)
                self.assertEqual(row["method"], "distance")
        row, = self.objects("benchmark", "100", "88d", "50", "--horizontal")
        self.assert_near(row["height"], 100 - 50 / math.tan(math.radians(88)), 1e-9)
        self.assertEqual(self.text("benchmark", "100", "90d", "50", "--csv", "--columns", "height,benchmark"),
                         "height,benchmark\n100.0000,100\n")

    def test_benchmark_by_zenith_angle_in_feet(self):
        # The drop of a level sight of 1000 m by 868000 / 12740000 = 0.0681319 m, in feet.
        kilometre = 1000 / FOOT
        row, = self.objects("benchmark", f"0,{kilometre:.9f},100", "90d", "--station", "0,0", "--refraction", "0.132",
                            "--unit", "ft")
        self.assert_near(row["height"], 100 - 1e6 * 0.868 / 12740000 / FOOT, 1e-6)
        self.assertEqual(row["method"], "zenith angle")

    def test_benchmarks_of_a_field_book(self):
        rows = self.objects("benchmark", "--points", TOWN[1], "--sights", TOWN[3], code=NOT_COMPUTED)
        heights = [row["height"] for row in rows if row["kind"] == "benchmark" and row["computed"]]
        expected = [130.0 + 1.5 - 1803.072 * math.cos(math.radians(89 + 2 / 60 + 48 / 3600)),
                    111.92 + 1.5 - 2100.139 * math.cos(math.radians(89 + 40 / 60 + 29 / 3600))]
        self.assertEqual(len(heights), 2)
        for height, wanted in zip(heights, expected):
            self.assert_near(height, wanted, 1e-6)
        mean, = [row for row in rows if row["kind"] == "station_height"]
        self.assert_near(mean["height"], sum(expected) / 2, 1e-6)
        self.assert_near(mean["height_spread"], expected[0] - expected[1], 1e-6)
        refused = [row["remark"] for row in rows if row["kind"] == "benchmark" and not row["computed"]]
        self.assertEqual(refused, 2 * ["no distance, and no coordinates of the station to take it from"])

    def test_a_vertical_sight_gives_no_height_by_zenith_angle(self):
        # Within a minute of arc of the vertical the library would take one minute, as it does for 0-01-00.
        for zenith in ("0d", "0-00-59", "179-59-30", "180d", "180-00-30", "359-59-01"):
            row, = self.objects("benchmark", "100,100,50", zenith, "--station", "0,0", code=NOT_COMPUTED)
            self.assertEqual((row["computed"], row["status_name"]), (False, "QSTD_VERTICAL_SIGHT"), zenith)
            self.assertIsNone(row["height"])
        row, = self.objects("benchmark", "100,100,50", "0-02-00", "--station", "0,0")
        # Two minutes are whole units of the library: nothing is rounded, though 1/32" would move the height by 63 m.
        self.assert_near(row["height"], 50 - 100 * math.sqrt(2) / math.tan(math.radians(2 / 60)), 0.01)

    def test_a_horizontal_distance_says_nothing_along_a_vertical_sight(self):
        for zenith in ("0d", "180d"):
            row, = self.objects("benchmark", "100", zenith, "10", "--horizontal", code=NOT_COMPUTED)
            self.assertEqual((row["status_name"], row["height"]), ("QSTD_VERTICAL_SIGHT", None))
            self.assertIn("horizontal distance", row["remark"])
        # The slope distance is the height difference: 100 - 10 and 100 + 10.
        for zenith, height in (("0d", 90), ("180d", 110)):
            row, = self.objects("benchmark", "100", zenith, "10")
            self.assert_near(row["height"], height, 1e-9)
        points = self.put("points.csv", "id,n,e,h\nA,0,0,\nB,100,100,50\nC,100,0,20\n")
        sights = self.put("sights.csv", "station,target,hz,v,hd\nA,B,0d,180d,10\nA,B,0d,0d,10\nA,B,0d,180d,\n"
                          "A,C,0d,45d,5\n")
        rows = self.objects("benchmark", "--points", points, "--sights", sights, code=NOT_COMPUTED)
        self.assertEqual([row["height"] is None for row in rows[:4]], [True, True, True, False])
        # 20 - 5 / tan 45d, and the mean over this height alone.
        self.assert_near(rows[3]["height"], 15, 1e-9)
        self.assertEqual((rows[4]["kind"], rows[4]["heights"]), ("station_height", 1))
        self.assert_near(rows[4]["height"], 15, 1e-9)

    def test_a_vertical_sight_with_a_horizontal_distance_takes_no_part_in_a_station(self):
        for zenith in ("0d", "180d"):
            station = self.station("id,n,e,h\nN,100,0,10\nE,0,100,10\nS,-100,0,10\n",
                                   f"station,target,hz,v,hd\nA,N,0d,90d,100\nA,E,90d,90d,100\nA,S,180d,{zenith},5\n")
            self.assert_station(station, 0, 0, 1e-6)
            self.assert_near(station["result"]["height"], 10, 1e-9)
            self.assertEqual((station["sights"][2]["used"], station["sights"][2]["remark"]),
                             (False, "vertical sight: no direction"))

    def test_numbers_that_are_no_lengths_or_factors_are_wrong_use(self):
        by_distance = ["benchmark", "100", "88d", "50"]
        by_zenith = ["benchmark", "0,1000,100", "90d", "--station", "0,0"]
        beyond = "beyond 100 000 km"
        for arguments, option in ((by_distance, "--target-height"), (by_distance, "--instrument-height"),
                                  (by_zenith, "--sea-level"), (["station", *TOWN], "--sea-level")):
            for value, message in (("nan", "write a number such as 1.55"), ("inf", "not a length"),
                                   ("-inf", "not a length"), ("1,5", "not a length"), ("1e300", beyond),
                                   ("-100000001", beyond)):
                done = self.expect(WRONG_USE, *arguments, f"{option}={value}")
                self.assertIn(f'{option} "{value}": ', done.stderr.decode())
                self.assertIn(message, done.stderr.decode())
                self.assertEqual(done.stdout, b"")
        for arguments in (by_zenith, ["station", *TOWN]):
            for value in ("nan", "inf", "1e300", "0", "-1", "1e-300", "x"):
                done = self.expect(WRONG_USE, *arguments, f"--scale={value}")
                self.assertIn(f'--scale "{value}": not a scale factor; write a number above 0', done.stderr.decode())
        row, = self.objects(*by_distance, "--target-height", "-1e8")
        self.assert_near(row["height"], 100 - 1e8 - 50 * math.cos(math.radians(88)), 1e-6)

    def test_the_checks_of_numbers_are_no_choices_in_the_help(self):
        text = self.text("benchmark", "--help")
        self.assertRegex(text, r"\n  --scale FACTOR +Scale factor of plan distances; 1 when not given\n  --sea-level")
        self.assertRegex(text, r"\n  --target-height HEIGHT +Reflector above the benchmark; 0 when not given\n  --inst")

    def test_wrong_use_of_benchmark(self):
        for arguments, message in ((["benchmark"], "which benchmark"),
                                   (["benchmark", "12x", "90d", "5"], "neither a point"),
                                   (["benchmark", "1,2", "90d", "5"], "has no height"),
                                   (["benchmark", "100", "90d"], "--station"),
                                   (["benchmark", "100", "90d", "-5"], "not above 0"),
                                   (["benchmark", "100", "90d", "5", "--scale", "0.9996"], "zenith angle alone"),
                                   (["benchmark", "100", "90", "5"], "no unit"),
                                   (["benchmark", "100", "90d", "5", "--sights", TOWN[3]], "give nothing else")):
            done = self.expect(WRONG_USE, *arguments)
            self.assertIn(message, done.stderr.decode(), arguments)
        self.expect(UNREADABLE, "benchmark", "--sights", "missing.csv")
        self.expect(NOT_COMPUTED, "benchmark", "100", "90d", "--station", "0,0")


class StationWarnings(MethodCase):
    # Targets 100 m around the origin, the station 99 m from it: 1 m inside their circle.
    CIRCLE = {name: (100 * math.cos(math.radians(azimuth)), 100 * math.sin(math.radians(azimuth)))
              for name, azimuth in (("P", 0), ("Q", 90), ("R", 200))}
    PLACE = (99 * math.cos(math.radians(300)), 99 * math.sin(math.radians(300)))

    def shifts(self, targets, place):
        """How far 1" in each direction moves the station: the linear equations of the three directions, solved by
        Cramer's rule for (north, east, orientation)."""
        rows = []
        for north, east in targets.values():
            north, east = north - place[0], east - place[1]
            square = north * north + east * east
            rows.append((east / square, -north / square, -1.0))

        def determinant(a):
            return (a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) - a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0])
                    + a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]))
        whole = determinant(rows)
        shifts = []
        for changed in range(3):
            moves = []
            for unknown in range(2):
                replaced = [tuple((SECOND if i == changed else 0.0) if j == unknown else rows[i][j] for j in range(3))
                            for i in range(3)]
                moves.append(determinant(replaced) / whole)
            shifts.append(math.hypot(*moves))
        return shifts

    def test_a_three_point_station_near_the_danger_circle(self):
        points, sights = exact_sights(self.CIRCLE, *self.PLACE)
        shifts = self.shifts(self.CIRCLE, self.PLACE)
        largest = max(shifts)
        name = list(self.CIRCLE)[shifts.index(largest)]
        station = self.station(points, sights, "--method", "three-point")
        # Readings to 1/32" move the station along by some millimetres.
        self.assert_near(station["checks"]["danger_circle_distance"], 1.0, 0.01)
        self.assert_near(station["checks"]["shift_for_one_second"], largest, 0.02 * largest)
        warning = station["warnings"][0]
        self.assertRegex(warning, r"^the station lies (0\.99|1\.00)\d m from the circle through its targets")
        self.assertIn(f"1\" in the direction to {name} moves the station by", warning)
        text = self.run_station(points, sights, "--method", "three-point").stdout.decode()
        self.assertRegex(text, r"\n  Warning:      the station lies \d\.\d+ m from the circle through its targets "
                               r"\(danger circle\): 1\" in\n {16}the direction to")

    def test_a_station_upon_the_danger_circle(self):
        # Four corners of a square: the station is any place on their circle, and the library does not notice.
        station = self.station("id,n,e\nP,100,0\nQ,100,100\nR,0,100\n", "station,target,hz\nA,P,0d\nA,Q,45d\n"
                               "A,R,90d\n", "--method", "three-point", code=NOT_COMPUTED)
        self.assertTrue(station["warnings"][0].startswith("the station lies 0.000 m from the circle"), station)
        self.assertGreater(station["checks"]["shift_for_one_second"], 10)

    def test_warnings_go_to_standard_error_beside_csv_and_json(self):
        points, sights = exact_sights(self.CIRCLE, *self.PLACE)
        for form in ("--csv", "--json"):
            done = self.run_station(points, sights, "--method", "three-point", form)
            self.assertIn("sights.csv:2: warning: station A: the station lies", done.stderr.decode())
            self.assertIn("no redundancy", done.stderr.decode())
        self.assertEqual(self.run_station(points, sights, "--method", "three-point").stderr, b"")

    def test_least_squares_of_directions_near_the_circle(self):
        # Five targets on the circle, the station 1 m inside: concyclic, whatever the redundancy.
        targets = dict(self.CIRCLE, T=(-100.0, 0.0), U=(60.0, 80.0))
        points, sights = exact_sights(targets, *self.PLACE)
        station = self.station(points, sights)
        self.assertEqual(station["redundancy"], 2)
        self.assertRegex(station["warnings"][0], r"^the station lies (0\.9|1\.0)\d\d m from the circle through its "
                                                 r"targets \(danger circle\): ± 1\" in every direction is ± ")
        # A distance to one of them takes the station off the circle.
        measured = "station,target,hz,hd\n" + "".join(
            line + (",%.6f\n" % math.dist(targets["P"], self.PLACE) if i == 0 else ",\n")
            for i, line in enumerate(sights.splitlines()[1:]))
        self.assertEqual(self.station(points, measured)["warnings"],
                         ["hardly anything checks the distance to P: an error there would not show"])

    def test_well_spread_targets_are_not_warned_of(self):
        for method in ("multi", "three-point"):
            station = self.station(*exact_sights(self.CIRCLE, 3, 4), "--method", method)
            self.assertEqual(station["warnings"], ["no redundancy: the sights fit exactly, and the precision is unknown"])
        for station in self.objects("station", *TOWN):
            self.assertEqual(station["warnings"], [])
        # Three targets on a line and the station off it: their circle has no radius, and no danger.
        row = {"P": (80.0, -50.0), "Q": (80.0, 0.0), "R": (80.0, 50.0)}
        station = self.station(*exact_sights(row, 130.0, -20.0), "--method", "three-point")
        self.assertEqual(len(station["warnings"]), 1)
        self.assert_near(station["checks"]["danger_circle_distance"], 50.0, 1e-3)

    def test_two_targets_in_line(self):
        # The fit through two points in the complex plane: factor = (K2 - K1) / (p2 - p1), station = K1 - factor p1.
        # 1 mm more in p1 moves the station by this much:
        known = [complex(100, 0), complex(200, 5)]
        local = [abs(place) * complex(math.cos(angle), math.sin(angle))
                 for place, angle in ((known[0], 0.0), (known[1], math.atan2(5, 200)))]

        def place(p):
            return known[0] - (known[1] - known[0]) / (p[1] - p[0]) * p[0]
        self.assertLess(abs(place(local)), 1e-9)
        changed = [[local[0] * (1 + 0.001 / abs(local[0])), local[1]], [local[0], local[1] * (1 + 0.001 / abs(local[1]))]]
        by_distance = max(abs(place(p)) for p in changed)
        turn = complex(math.cos(SECOND), math.sin(SECOND))
        by_direction = max(abs(place(p)) for p in ([local[0] * turn, local[1]], [local[0], local[1] * turn]))
        points = "id,n,e\nA,100,0\nB,200,5\n"
        sights = (f"station,target,hz,hd\nS,A,0d,100\nS,B,{degrees_text(math.atan2(5, 200))},{abs(known[1]):.9f}\n")
        warning = self.station(points, sights, "--method", "two-point")["warnings"][0]
        self.assertTrue(warning.startswith("targets A and B are nearly in line with the station, 1-25-55."), warning)
        self.assertIn(f" moves the station by {by_direction * 1000:.1f} mm, 1.0 mm in the distance to ", warning)
        self.assertTrue(warning.endswith(f" moves the station by {by_distance * 1000:.1f} mm"), warning)
        for method in ("multi", "known-line"):
            self.assertIn("nearly in line", self.station(points, sights, "--method", method)["warnings"][0])

    def test_two_targets_opposite(self):
        station = self.station("id,n,e\nA,100,0\nB,-50,1\n", "station,target,hz,hd\n"
                               f"S,A,0d,100\nS,B,{degrees_text(math.atan2(1, -50))},{math.hypot(50, 1):.9f}\n",
                               "--method", "two-point")
        self.assertIn("opposite but for 1-08-44.", station["warnings"][0])

    def test_the_limit_of_in_line_is_5_gon(self):
        for gon, count in (("4.99", 1), ("5.01", 0), ("194.99", 0), ("195.01", 1)):
            angle = math.radians(float(gon) * 0.9)
            points = f"id,n,e\nA,100,0\nB,{200 * math.cos(angle):.9f},{200 * math.sin(angle):.9f}\n"
            station = self.station(points, f"station,target,hz,hd\nS,A,0g,100\nS,B,{gon}g,200\n", "--method",
                                   "two-point")
            told = [warning for warning in station["warnings"] if "nearly in line" in warning]
            self.assertEqual(len(told), count, gon)

    def test_no_redundancy(self):
        words = "no redundancy: the sights fit exactly, and the precision is unknown"
        for sights, method in (("A,N,0d,\nA,E,90d,\nA,W,270d,\n", "three-point"),
                               ("A,N,0d,\nA,E,90d,\nA,W,270d,\n", "multi"), ("A,N,0d,100\nA,E,90d,\n", "two-point")):
            sights = "station,target,hz,hd\n" + sights
            self.assertEqual(self.station(CROSS, sights, "--method", method)["warnings"], [words])
            self.assertIn("  N" + words[1:] + ".\n",
                          self.run_station(CROSS, sights, "--method", method).stdout.decode())


# id, northing, easting, height, circle, zenith, slope and horizontal distance
TUNNEL_4901 = """
201 1051.15941 4999.08993 103.08118 0.0g 96.16561g 51.26049 -
202 1051.09031 4996.91162 102.58478 397.28851g 96.78342g 51.24892 -
203 1050.55859 4996.21424 99.50755 396.37479g 100.61302g 50.70257 -
204 1048.2313 5000.91037 99.77245 2.33413g 100.29496g 48.24038 -
31 1012.47183 5002.5014 100.18288 13.73349g 99.06476g 12.72098 -
32 1012.44949 5001.74214 102.43138 9.98389g 87.81799g 12.8037 -
33 1012.35488 4999.54239 103.21545 398.77473g 83.7827g 12.7753 -
34 1012.3173 4998.14941 102.74197 391.63869g 86.18632g 12.75503 -
35 1012.30867 4997.23802 99.41023 387.07994g 102.95438g 12.62843 -
41 987.68002 5002.78768 99.21827 186.96572g 103.91522g 12.65583 -
42 987.69348 5002.07012 102.14109 190.5229g 89.16311g 12.66255 -
43 987.60958 5000.311 102.6635 199.53475g 86.50446g 12.67868 -
44 987.56028 4998.92296 102.20029 206.63067g 88.87612g 12.67938 -
45 987.55836 4998.28029 98.95333 209.87679g 105.27303g 12.6034 -
211 961.51311 5003.65739 98.67328 195.10078g 102.17735g 38.68282 -
212 961.48821 5002.63233 101.69244 196.78798g 97.20409g 38.63902 -
213 961.32155 4999.75477 101.55822 201.53623g 97.43047g 38.71084 -
214 961.49394 4999.01741 98.4872 202.75657g 102.49266g 38.54817 -
"""

TUNNEL_4905 = """
11 2019.36994 9998.22616 199.65363 394.36163g 101.08883g 19.44957 -
12 2019.08892 9998.84725 202.34594 396.34017g 92.18345g 19.26657 -
13 2019.02931 10000.70693 203.05199 2.5444g 89.8406g 19.29207 -
14 2018.92067 10002.36827 202.29929 8.10504g 92.32027g 19.2193 -
15 2018.93988 10002.8423 199.39822 9.65908g 101.95263g 19.17365 -
21 1992.07174 9997.13402 199.48878 221.51886g 103.76389g 8.41982 -
22 1992.23179 9997.74389 202.11768 217.39695g 83.55615g 8.34387 -
23 1992.11828 9999.71575 202.86319 201.65793g 77.72077g 8.39145 -
24 1992.03434 10001.25005 202.08809 189.47027g 83.78409g 8.34162 -
25 1991.88534 10001.82778 199.30439 185.29887g 105.19819g 8.35975 -
101 2076.93129 9999.99869 199.95627 0.0g 100.02619g 76.93397 -
102 2076.70859 10001.2879 203.0105 1.06923g 97.49277g 76.7824 -
103 2076.52049 10004.07777 203.0017 3.38961g 97.4971g 76.69465 -
104 2076.62737 10004.95937 199.78831 4.11407g 100.16425g 76.7947 -
111 1968.66514 9996.25816 198.98916 207.36675g 102.01052g 31.56323 -
112 1968.7451 9997.36431 202.00938 205.15284g 95.89773g 31.42371 -
113 1968.70387 9999.87391 202.03317 200.05148g 95.84192g 31.36138 -
114 1968.38677 10000.95554 198.82093 197.87285g 102.34404g 31.6493 -
"""

TUNNEL_4902 = """
201 1051.15941 4999.08993 103.08118 397.348g 95.7607g - -
202 1051.09031 4996.91162 102.58478 394.30315g 96.45201g - -
203 1050.55859 4996.21424 99.50755 393.27274g 100.75543g - -
204 1048.2313 5000.91037 99.77245 0.0g 100.40322g - -
31 1012.47183 5002.5014 100.18288 22.34512g 98.79028g - -
32 1012.44949 5001.74214 102.43138 16.09875g 79.39395g - -
33 1012.35488 4999.54239 103.21545 396.08803g 72.0412g - -
34 1012.3173 4998.14941 102.74197 383.15604g 76.28168g - -
35 1012.30867 4997.23802 99.41023 375.2526g 105.59979g - -
41 987.68002 5002.78768 99.21827 187.71968g 102.88459g - -
42 987.69348 5002.07012 102.14109 190.20708g 92.63437g - -
43 987.60958 5000.311 102.6635 196.42494g 90.79658g - -
44 987.56028 4998.92296 102.20029 201.32419g 92.43143g - -
45 987.55836 4998.28029 98.95333 203.58092g 103.82447g - -
212 961.48821 5002.63233 101.69244 194.19629g 97.62509g - -
213 961.32155 4999.75477 101.55822 198.34288g 97.82149g - -
214 961.49394 4999.01741 98.4872 199.40729g 102.24316g - -
"""

RAILWAY_1016 = """
04-1057/1 60221.49 585536.61 - 0-00-05 - - 66.1506
04-1062 56496.31 591667.35 - 103-49-15 - - -
04-1138 57508.33 584950.36 - 175-07-22 - - -
04-1121 60095.04 583805.48 - 250-56-20 - - -
"""

GHILANI_15_5 = """
P 1458.615 1303.599 - 0-00-00 - - -
Q 1310.468 1636.436 - 30-29-33 - - -
R 888.362 1503.395 - 69-00-04 - - -
S 785.061 1506.262 - 79-30-01 - - -
"""

CAROSIO_B = """
A 100.0 -1000.0 - 256.34476g - - 1421.273
P 0.0 100.0 - 199.99998g - - 1000.0098
C 100.0 1000.0 - 150.00034g - - 1272.7993
"""

TOWN_5001_TWO = """
10003 4415.08 91164.16 - 195.0914g - - 1802.8224
10001 2815.22 91515.44 - 249.4262g - - 2100.10516
"""

TOWN_5001_SECONDS = """
10003 4415.08 91164.16 - 175-34-56 - - 1802.82242
10001 2815.22 91515.44 - 224-29-01 - - 2100.10516
"""

TOWN_5001_GON = """
10001 2815.22 91515.44 - 249.4262g - - -
10002 1475.28 90661.58 - 294.908g - - -
10003 4415.08 91164.16 - 195.0914g - - -
"""

ON_A_LINE = """
101 80 -50 - 140-32-24 - - -
102 80 0 - 97-13-15 - - -
103 80 50 - 70-43-22 - - -
"""

TOWN_5003 = """
14 4415.08 91164.16 130.0 99-10-24 89-45-23 - -
12 1475.28 90661.58 - 187-53-01 - - -
13 3865.36 84862.54 - 335-34-21 - - -
"""


class StationCases(MethodCase):
    """Published surveys: targets as they are printed, stations within the tolerance of their source."""

    def solve(self, rows, *arguments, extra="", code=DONE):
        points, sights = "id n e h\n", "station target hz v sd hd ih\n"
        for row in rows.strip().splitlines():
            name, north, east, height, direction, zenith, slope, horizontal = row.split()
            points += f"{name} {north} {east} {height}\n"
            sights += f"here {name} {direction} {zenith} {slope} {horizontal} {extra or '-'}\n"
        return self.station(points, sights, *arguments, code=code)

    def check(self, station, published, tolerance, computed=None, orientation=None, sigmas=None):
        """Against the published station and, to 0.3 mm, against an adjustment of our own with the library's weights."""
        self.assert_station(station, *published, tolerance)
        if computed:
            self.assert_station(station, *computed, 0.0003)
        if orientation is not None:
            self.assert_orientation(station, orientation[0], orientation[1])
        if sigmas:
            for name, sigma in zip(("northing_precision", "easting_precision"), sigmas):
                self.assert_near(station["result"][name], sigma, 0.02 * sigma)

    # zsiki/GeoEasy, doc/step_by_step.rst "Resection" and "Elevation": 2775.210 89398.550, height 118.414.
    def test_three_points_geoeasy_5003(self):
        for method in ("three-point", "auto"):
            station = self.solve(TOWN_5003, "--method", method, extra="1.34")
            self.assertEqual(station["method"], "three-point")
            self.check(station, (2775.21, 89398.55), 0.003, (2775.21013, 89398.54963), (307.941237334, 0.1))
            self.assert_near(station["result"]["height"], 119.754, 0.0021)
            self.assert_near(station["result"]["mark_height"], 118.414, 0.0021)

    # zsiki/ls, calculation.py module test.
    def test_three_points_on_a_line(self):
        station = self.solve(ON_A_LINE, "--method", "three-point")
        self.check(station, (142.6576, -29.6182), 0.0002, (142.65763, -29.61816), (57.479137232, 0.1))

    # zsiki/ls, screens t022 and u18.
    def test_three_points_5001_gon(self):
        station = self.solve(TOWN_5001_GON, "--method", "three-point")
        self.check(station, (3587.523, 89562.494), 0.002, None, (247.093013569, 0.15))
        # Readings in gon are rounded to 1/32", and 1" moves this station by some 15 mm.
        self.assert_station(station, 3587.52316, 89562.49433, 0.001)

    # zsiki/ls, sample/test1.job; the adjusted station of u19, and the closed solution.
    def test_two_points_5001(self):
        station = self.solve(TOWN_5001_SECONDS, "--method", "two-point")
        self.assertEqual(station["method"], "two-point")
        self.check(station, (3587.52655, 89562.4969), 0.003, None, (247.093088273, 0.1))
        self.assert_station(station, 3587.52609, 89562.49747, 0.001)
        self.assert_near(station["checks"]["baseline"], -8.5e-05, 1e-5)
        # Published measured less computed; the tool reports adjusted less observed.
        for sight, residual in zip(station["sights"], (9.3e-05, 0.000108)):
            self.assert_near(sight["distance_residual"], -residual, 1e-5)
        # One distance more than needed: least squares makes use of it.
        self.assertEqual(self.solve(TOWN_5001_SECONDS)["method"], "multi")

    def test_free_station_5001(self):
        self.check(self.solve(TOWN_5001_TWO), (3587.52655, 89562.4969), 0.0015, (3587.52616, 89562.49733),
                   (247.093087081, 0.15), (0.000626, 0.000289))

    # A. Carosio (1983), ETH Zurich, IGP Mitteilungen 35, pp. 65-71. Its directions fit to hundredths of a second, so
    # that their rounding to 1/16" changes the precisions.
    def test_free_station_carosio(self):
        self.check(self.solve(CAROSIO_B), (1000.0098, 99.9997), 0.0005, (1000.00978, 99.99972), (359.999998376, 0.15))

    # C. Ghilani (2010), Adjustment Computations, 5th ed., example 15.5, p. 277; feet. Directions weigh alike in any unit.
    def test_free_station_ghilani(self):
        station = self.solve(GHILANI_15_5, "--unit", "ft")
        self.check(station, (1000.0253, 999.9989), 0.02, (1000.03956, 999.98976), (33.507064804, 0.1),
                   (0.0451, 0.0177))
        # The published standard deviations, 0.04268 and 0.02057 with s0 of angles: the same weakness.
        self.assertIn("directions alone fix this station weakly", station["warnings"][0])

    # GNU Gama 2.24, tests/gama-local/input/zoltan-test_2d_dms.
    def test_free_station_railway(self):
        self.check(self.solve(RAILWAY_1016), (60158.2115, 585517.3192), 0.006, (60158.21253, 585517.3221),
                   (16.950552269, 0.1), (0.0111, 0.00532))

    # A. Barta, CTU Prague thesis (dspace.cvut.cz/handle/10467/88808), in GNU Gama 2.24; adjusted with the whole network.
    def test_free_stations_in_a_tunnel(self):
        station = self.solve(TUNNEL_4901)
        self.check(station, (999.99992, 5000.00001), 0.0002, (999.99998, 5000.00001), (358.9808076, 1.0),
                   (7.6e-05, 1.28e-05))
        self.assertEqual(station["redundancy"], 33)
        self.assert_near(station["result"]["height"], 99.99604, 0.0003)
        # Zenith angles are rounded to 1/32", 12 micrometres over 77 m.
        self.assert_near(station["result"]["height_spread"], 0.00088, 3e-5)
        station = self.solve(TUNNEL_4905)
        self.check(station, (1999.99779, 9999.9283), 0.0002, (1999.99778, 9999.9283), (0.0529434, 1.0),
                   (0.000115, 2.69e-05))
        self.assert_near(station["result"]["height"], 199.98625, 0.0003)
        self.assert_near(station["result"]["height_spread"], 0.00212, 3e-5)

    def test_a_free_station_in_a_tunnel_from_directions_only(self):
        station = self.solve(TUNNEL_4902)
        self.check(station, (1005.60474, 4999.77808), 0.0006, (1005.60472, 4999.77808), (1.5214176, 3.0),
                   (4.15e-05, 1.15e-05))
        self.assertEqual((station["redundancy"], station["distances"]), (14, 0))

    # J. Mahun, Open Access Surveying Library, "Trig Leveling", problem 1, read backwards: 145.25 ft at 4-24-10.
    def test_benchmark_mahun(self):
        row, = self.objects("benchmark", "756.31", "85-35-50", "145.25", "--target-height", "5.64",
                            "--instrument-height", "5.41", "--unit", "ft")
        self.assert_near(row["height_difference"], 11.15046, 1e-5)
        self.assert_near(row["height"], 750.8, 0.0051)
        self.assert_near(row["mark_height"], 745.39, 0.0051)

    # zsiki/GeoEasy, doc/step_by_step.rst "Elevation".
    def test_height_by_zenith_geoeasy(self):
        row, = self.objects("benchmark", "4415.08,91164.16,130", "89-45-23", "--station", "2775.21,89398.55",
                            "--instrument-height", "1.34")
        self.assert_near(row["height"], 119.754, 0.0011)
        self.assert_near(row["mark_height"], 118.414, 0.0011)

    # H. Fuchs, BOKU Vienna, "Trigonometrische Hoehenmessung" (2010), p. 183: 1 km, 7.8 cm less 1.0 cm.
    def test_curvature_and_refraction(self):
        row, = self.objects("benchmark", "0,1000,100", "90-00-00", "--station", "0,0", "--refraction", "0.132")
        self.assert_near(row["height"], 99.932, 0.0006)
        station = self.solve("N 1000 0 - 0d - - -\nT 0 1000 100 90d 90d - -\nW 0 -1000 - 270d - - -\n", "--method",
                             "three-point", "--refraction", "0.132")
        self.assert_near(station["result"]["height"], 99.932, 0.0006)


if __name__ == "__main__":
    unittest.main()
