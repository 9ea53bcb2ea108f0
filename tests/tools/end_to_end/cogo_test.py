"""End-to-end tests of the verbs of coordinate geometry and of `qstd angle`."""
import csv
import io
import json
import math
import os
import unittest

from case import DONE, NOT_COMPUTED, UNREADABLE, WRONG_USE, EXAMPLES, Case

TOWN = str(EXAMPLES / "town" / "points.csv")
FULL_CIRCLE = 20736000


def degrees(degree, minute=0, second=0.0):
    return degree + minute / 60 + second / 3600


class CogoCase(Case):
    def one(self, *arguments, code=DONE, **options):
        """The only object that a verb prints."""
        found = self.objects(*arguments, code=code, **options)
        self.assertEqual(len(found), 1, found)
        return found[0]

    def rows(self, *arguments, code=DONE, **options):
        """The lines of CSV, by column."""
        return list(csv.DictReader(io.StringIO(self.text(*arguments, "--csv", code=code, **options))))

    def refused(self, status, *arguments):
        """The remark on a result that the library refuses."""
        found = self.one(*arguments, code=NOT_COMPUTED)
        self.assertFalse(found["computed"])
        self.assertEqual(found["status"], status)
        self.assertIn("NOT COMPUTED: " + found["remark"], self.text(*arguments, code=NOT_COMPUTED))
        return found["remark"]

    def wrong(self, *arguments):
        """What is said of a wrong command line; nothing is printed."""
        done = self.expect(WRONG_USE, *arguments)
        self.assertEqual(done.stdout, b"")
        return done.stderr.decode()

    def drawn(self, *arguments, code=DONE):
        """The features of the plan as GeoJSON; none where no plan is written."""
        self.expect(code, *arguments, "--geojson", "plan.json")
        if not os.path.exists(self.path("plan.json")):
            return []
        with open(self.path("plan.json"), encoding="utf-8") as file:
            return json.load(file)["features"]

    def assert_place(self, found, northing, easting, delta=1e-9, prefix=""):
        self.assertAlmostEqual(found[prefix + "northing"], northing, delta=delta)
        self.assertAlmostEqual(found[prefix + "easting"], easting, delta=delta)


class Cogo(CogoCase):
    # --- inverse ---

    def test_inverse_gives_direction_and_distances_in_space(self):
        # 30 north, 40 east: 50 in plan; as much up: 45 degrees from the zenith, 50 sqrt 2.
        found = self.one("inverse", "100,200,10", "130,240,60")
        self.assertAlmostEqual(found["azimuth_degrees"], math.degrees(math.atan2(40, 30)), delta=1 / 57600)
        self.assertEqual(found["zenith_degrees"], 45.0)
        self.assertEqual(found["horizontal_distance"], 50.0)
        self.assertAlmostEqual(found["slope_distance"], 50 * math.sqrt(2), delta=1e-12)
        self.assertEqual(found["height_difference"], 50.0)

    def test_inverse_without_both_heights_shows_nothing_in_space(self):
        for ends in (("0,0,10", "0,5"), ("0,0", "0,5,10"), ("0,0", "0,5")):
            found = self.one("inverse", *ends)
            self.assertEqual((found["azimuth_degrees"], found["horizontal_distance"]), (90.0, 5.0))
            self.assertIsNone(found["zenith_degrees"])
            self.assertIsNone(found["slope_distance"])
            self.assertIsNone(found["height_difference"])
            self.assertNotIn("slope", self.text("inverse", *ends))

    def test_inverse_counts_azimuths_from_south_where_wanted(self):
        self.assertEqual(self.one("inverse", "0,0", "0,5", "--south-azimuth")["azimuth_degrees"], 270.0)

    def test_inverse_refuses_points_that_coincide_in_plan(self):
        self.assertIn("coincide", self.refused(-1200, "inverse", "1,2,3", "1,2,9"))

    def test_a_point_without_plan_coordinates_is_refused_by_name(self):
        table = self.put("points.csv", "id,n,e,h\nBM,,,7\nA,0,0,\nB,0,9,\n")
        for verb in (["inverse", "A", "BM"], ["forward", "BM", "0d", "1"], ["offset", "A", "BM", "1", "1"],
                     ["foot", "BM", "--line", "A", "B"], ["foot", "A", "--line", "B", "BM"],
                     ["transfer", "--line", "BM", "0d"], ["intersect", "--circle", "BM", "1", "--circle", "A", "1"],
                     ["intersect", "--line", "A", "B", "--line", "BM", "0d"]):
            self.assertEqual(self.refused(-1201, *verb, "--points", table), "point BM has no northing and easting")

    # --- forward ---

    def test_forward_reaches_the_point(self):
        # A distance of 10 to the east and 3 up.
        found = self.one("forward", "100,200,50", "90d", "10", "3")
        self.assert_place(found, 100, 210)
        self.assertEqual(found["height"], 53.0)

    def test_forward_takes_a_negative_distance_the_opposite_way(self):
        self.assert_place(self.one("forward", "0,0", "90d", "-10"), 0, -10)

    def test_forward_has_a_height_only_with_height_and_difference(self):
        self.assertIsNone(self.one("forward", "0,0,50", "90d", "10")["height"])
        found = self.one("forward", "0,0", "90d", "10", "3")
        self.assertIsNone(found["height"])
        self.assertIn("no height", found["remark"])

    def test_forward_and_inverse_return_to_each_other(self):
        for azimuth in ("12-34-56", "171.5g", "3.5rad", "359.9d"):
            for south in ([], ["--south-azimuth"]):
                there = self.one("forward", "500,700,30", azimuth, "123.456", "-7.8", *south)
                place = f"{there['northing']!r},{there['easting']!r},{there['height']!r}"
                back = self.one("inverse", "500,700,30", place, *south)
                self.assertLessEqual(abs(back["azimuth_units"] - there["azimuth_units"]), 1)
                self.assertAlmostEqual(back["horizontal_distance"], 123.456, delta=1e-9)
                self.assertAlmostEqual(back["height_difference"], -7.8, delta=1e-9)

    # --- offset ---

    def test_offset_goes_along_and_to_the_right(self):
        # The line runs east, so its right-hand side is south; half-way up from 10 to 20.
        found = self.one("offset", "0,0,10", "0,100,20", "50", "5")
        self.assert_place(found, -5, 50)
        self.assertAlmostEqual(found["height"], 15, delta=1e-12)
        self.assertIn("offset 5.0000 to the right", self.text("offset", "0,0", "0,100", "50", "5"))

    def test_offset_takes_negative_values_as_they_are_typed(self):
        self.assert_place(self.one("offset", "0,0", "0,100", "-5", "-2"), 2, -5)
        self.assertIn("offset 2.0000 to the left", self.text("offset", "0,0", "0,100", "-5", "-2"))

    def test_offset_refuses_a_line_without_direction(self):
        self.assertIn("coincide", self.refused(-1200, "offset", "1,1", "1,1", "5", "5"))

    # --- grade ---

    def test_grade_gives_percent_and_ratio(self):
        # 2.5 / 50 = 5 percent, 50 / 2.5 = 20; signs carry into both.
        found = self.one("grade", "50", "-2.5")
        self.assertEqual((found["grade"], found["ratio"]), (-5.0, -20.0))

    def test_grade_leaves_out_what_divides_by_zero(self):
        level = self.one("grade", "50", "0")
        self.assertEqual((level["grade"], level["ratio"]), (0.0, None))
        upright = self.one("grade", "0", "50")
        self.assertEqual((upright["grade"], upright["ratio"]), (None, 0.0))
        self.refused(0, "grade", "0", "0")

    # --- area ---

    def test_area_takes_corners_either_way_round(self):
        # A right triangle of 30 and 40: 600 square metres, 30 + 40 + 50 around.
        for corners in (["0,0", "0,40", "30,0"], ["30,0", "0,40", "0,0"], ["0,0", "0,40", "30,0", "0,0"]):
            found = self.one("area", *corners)
            self.assertEqual((found["area"], found["perimeter"]), (600.0, 120.0))
            self.assertEqual(found["corners"], len(corners))

    def test_area_takes_all_points_of_a_table_in_its_order(self):
        # In the order of the names the sides would cross and the area be 0.
        table = "id,n,e\nd,0,0\na,0,10\nc,10,10\nb,10,0\n"
        self.assertEqual(self.one("area", "--points", self.put("points.csv", table))["area"], 100.0)
        self.assertEqual(self.one("area", "--points", "-", input=table.encode())["area"], 100.0)

    def test_area_leaves_out_points_without_plan_coordinates_and_says_so(self):
        table = self.put("points.csv", "id,n,e,h\nd,0,0,\nx,,,5\na,0,10,\nc,10,10,\nb,10,0,\n")
        found = self.one("area", "--points", table)
        self.assertEqual((found["area"], found["corners"]), (100.0, 4))
        self.assertEqual(found["remark"], "1 point without northing and easting left out")
        # Who names a corner wants it in.
        refused, = self.objects("area", "d", "a", "x", "c", "--points", table, code=NOT_COMPUTED)
        self.assertEqual((refused["status_name"], refused["remark"], refused["area"]),
                         ("QSTD_MISSING_COORDINATES", "point x has no northing and easting", None))

    def test_area_needs_three_corners(self):
        self.assertIn("2 corners", self.refused(0, "area", "0,0", "0,1"))
        self.assertIn("1 corner ", self.refused(0, "area", "0,0"))
        self.assertIn("--points", self.wrong("area"))

    def test_area_takes_as_many_corners_as_the_library(self):
        # Corners on a rectangle of 1 by n / 2: up one side, down the other.
        def table(corners):
            half = corners // 2
            up = [f"u{i},{i},0" for i in range(half)]
            down = [f"d{i},{i},1" for i in reversed(range(corners - half))]
            return self.put("points.csv", "id,n,e\n" + "\n".join(up + down) + "\n")

        # 16383 corners up to 16382, 16384 down from 16383: a trapezium, (16382 + 16383) / 2.
        self.assertEqual(self.one("area", "--points", table(32767))["area"], 16382.5)
        self.assertIn("32768 corners", self.refused(0, "area", "--points", table(32768)))

    def test_area_of_a_boundary_that_crosses_itself_names_the_sides(self):
        # A bow tie: half-way at (6, 10).
        bow = ["0,0", "12,20", "0,20", "12,0"]
        found = self.one("area", *bow, code=NOT_COMPUTED)
        self.assertEqual((found["computed"], found["area"], found["corners"]), (False, None, 4))
        self.assertIn("side 0,0 - 12,20 crosses side 0,20 - 12,0 at 6.0000, 10.0000", found["remark"])
        self.assertIn("NOT COMPUTED: the boundary crosses itself", self.text("area", *bow, code=NOT_COMPUTED))
        row, = self.rows("area", *bow, code=NOT_COMPUTED)
        self.assertEqual((row["area"], row["status"]), ("", "NOT_COMPUTED"))
        # The crossing is drawn.
        features = self.drawn("area", *bow, code=NOT_COMPUTED)
        self.assertIn([10.0, 6.0], [each["geometry"]["coordinates"] for each in features])
        # A table in no order: the first three crossings, and how many more.
        places = "".join(f"{i},{i * 7919 % 1009},{i * 104729 % 1013}\n" for i in range(300))
        table = self.put("points.csv", "id,n,e\n" + places)
        self.assertRegex(self.one("area", "--points", table, code=NOT_COMPUTED)["remark"],
                         r"; .* crosses .*; .* crosses .*; and at least 97 more; give the corners in the order")

    def test_area_takes_a_boundary_that_touches_itself(self):
        # A square of 20 with a hole of 10 and a bridge to it: 400 - 100.
        found = self.one("area", "0,0", "0,20", "20,20", "20,0", "0,0", "5,5", "15,5", "15,15", "5,15", "5,5")
        self.assertEqual((found["area"], found["remark"]), (300.0, None))

    def test_area_at_large_coordinates_loses_nothing(self):
        # A parcel of 8.5 by 8.5 less a corner of half 0.3 by 0.4; of coordinates of millions the library's products keep
        # 0.0005.
        north, east = 6600000, 600000
        corners = [f"{north + n!r},{east + e!r}" for n, e in ((0.3, 0), (8.5, 0), (8.5, 8.5), (0, 8.5), (0, 0.4))]
        found = self.one("area", *corners)
        self.assertAlmostEqual(found["area"], 8.5 * 8.5 - 0.06, delta=2e-7)
        self.assertIn("with coordinates from the first corner", found["remark"])

    def test_area_reports_lines_that_cannot_be_read(self):
        table = self.put("points.csv", "id,n,e\na,0,0\nb,x,0\nc,1,1\nd,1,2\n")
        done = self.expect(UNREADABLE, "area", "--points", table)
        self.assertEqual(done.stdout, b"")
        self.assertIn(b"points.csv:3: n \"x\"", done.stderr)

    # --- intersect ---

    def test_intersect_takes_two_of_line_and_circle(self):
        for arguments in ([], ["--line", "0,0", "1,1"], ["--circle", "0,0", "5"],
                          ["--line", "0,0", "1,1", "--line", "0,1", "0d", "--circle", "0,0", "5"]):
            self.assertIn("takes two of --line", self.wrong("intersect", *arguments))

    def test_two_lines_meet_once(self):
        # The diagonal through the origin and the parallel to the north through easting 5.
        for second in (["0,5", "0d"], ["0,5", "200g"], ["-3,5", "8,5"]):
            found = self.one("intersect", "--line", "0,0", "1,1", "--line", *second)
            self.assert_place(found, 5, 5)
            self.assertEqual(found["solution"], 1)
            self.assertIsNone(found["position"])

    def test_lines_by_azimuth_follow_the_azimuth_reference(self):
        # From south, 45 degrees point south-west: the same line.
        for south in ([], ["--south-azimuth"]):
            self.assert_place(self.one("intersect", "--line", "0,0", "45d", "--line", "0,5", "0d", *south), 5, 5)

    def test_parallel_lines_do_not_meet(self):
        self.assertIn("parallel", self.refused(-1206, "intersect", "--line", "0,0", "1,1", "--line", "0,1", "1,2"))
        self.assertIn("parallel", self.refused(-1206, "intersect", "--line", "0,0", "90d", "--line", "1,1", "270d"))
        self.assertIn("coincide", self.refused(-1200, "intersect", "--line", "0,0", "0,0", "--line", "0,1", "1,2"))

    def test_a_line_meets_a_circle_smaller_northing_first(self):
        # The diagonal and the circle of radius sqrt 2.
        radius = repr(math.sqrt(2))
        first, second = self.objects("intersect", "--circle", "0,0", radius, "--line", "5,5", "7,7")
        self.assert_place(first, -1, -1, 1e-7)
        self.assert_place(second, 1, 1, 1e-7)
        self.assertEqual([first["position"], second["position"]], ["smaller northing", "larger northing"])

    def test_a_line_to_the_east_meets_a_circle_smaller_easting_first(self):
        for line in (["3,0", "3,10"], ["3,0", "90d"], ["3,0", "270d"]):
            first, second = self.objects("intersect", "--line", *line, "--circle", "0,0", "5")
            self.assert_place(first, 3, -4)
            self.assert_place(second, 3, 4)
            self.assertEqual([first["position"], second["position"]], ["smaller easting", "larger easting"])

    def test_a_line_touches_or_misses_a_circle(self):
        found = self.one("intersect", "--line", "5,0", "5,10", "--circle", "0,0", "5")
        self.assert_place(found, 5, 0)
        self.assertEqual((found["position"], found["remark"]), (None, "touches"))
        # From (5, 5) to the south-east, at a right angle to the radius: rounding makes two of one place.
        for found in self.objects("intersect", "--line", "5,5", "135d", "--circle", "0,0", "7.0710678118654755"):
            self.assert_place(found, 5, 5, 1e-6)
            self.assertEqual(found["remark"], "touches")
        self.assertIn("passes 6.0000 from the centre",
                      self.refused(0, "intersect", "--line", "6,0", "6,10", "--circle", "0,0", "5"))
        self.refused(-1, "intersect", "--line", "6,0", "6,10", "--circle", "0,0", "-5")

    def test_two_circles_meet_right_of_the_centres_first(self):
        # 3-4-5 triangles on either side of the line between the centres, which runs east: right is south.
        first, second = self.objects("intersect", "--circle", "0,0", "5", "--circle", "0,8", "5")
        self.assert_place(first, -3, 4)
        self.assert_place(second, 3, 4)
        self.assertEqual([first["position"], second["position"]], ["right of 0,0 - 0,8", "left of 0,0 - 0,8"])
        swapped, _ = self.objects("intersect", "--circle", "0,8", "5", "--circle", "0,0", "5")
        self.assert_place(swapped, 3, 4)

    def test_circles_that_do_not_meet_say_why(self):
        for status, remark, second in ((0, "centres 20.0000 apart", ["0,20", "5"]), (0, "same centre", ["0,0", "6"]),
                                       (-1, "the same", ["0,0", "5"]), (-1, "above 0", ["0,20", "0"]),
                                       (0, "too close", ["0,1e-200", "5"])):
            self.assertIn(remark, self.refused(status, "intersect", "--circle", "0,0", "5", "--circle", *second))
        touching = self.one("intersect", "--circle", "0,0", "5", "--circle", "0,10", "5")
        self.assert_place(touching, 0, 5)

    # --- foot ---

    def test_foot_of_a_point_beside_a_line(self):
        # Along (0.8, 0.6): 30 * 0.8 + 45 * 0.6 = 51; to the right 45 * 0.8 - 30 * 0.6 = 18; height 10 + 40.8 / 40 * 10.
        found = self.one("foot", "30,45", "--line", "0,0,10", "40,30,20")
        self.assert_place(found, 51 * 0.8, 51 * 0.6)
        self.assertAlmostEqual(found["height"], 20.2, delta=1e-9)
        self.assertAlmostEqual(found["chainage"], 51, delta=1e-9)
        self.assertAlmostEqual(found["offset"], 18, delta=1e-9)
        self.assertAlmostEqual(found["distance"], 18, delta=1e-9)
        # The foot lies to the left of the line seen from the point: its direction less a quarter circle.
        self.assertAlmostEqual(found["azimuth_degrees"], math.degrees(math.atan2(0.6, 0.8)) + 270, delta=1 / 57600)
        self.assertRegex(self.text("foot", "30,45", "--line", "0,0", "40,30"), r"offset +18\.0000  m  to the right\n")
        self.assertRegex(self.text("foot", "30,45", "--line", "40,30", "0,0"), r"offset +-18\.0000  m  to the left\n")

    def test_foot_on_a_line_by_azimuth(self):
        found = self.one("foot", "7,3", "--line", "0,0,12", "90d")
        self.assert_place(found, 0, 3)
        self.assertEqual(found["height"], 12.0)
        self.assertAlmostEqual(found["chainage"], 3, delta=1e-9)
        self.assertAlmostEqual(found["offset"], -7, delta=1e-9)
        # From south, 90 degrees run west.
        south = self.one("foot", "7,3", "--line", "0,0", "90d", "--south-azimuth")
        self.assert_place(south, 0, 3)
        self.assertAlmostEqual(south["chainage"], -3, delta=1e-9)
        self.assertAlmostEqual(south["offset"], 7, delta=1e-9)

    def test_foot_of_a_point_on_the_line_has_no_azimuth(self):
        found = self.one("foot", "5,0", "--line", "0,0", "10,0")
        self.assertIsNone(found["azimuth_degrees"])
        self.assertIn("on the line", self.text("foot", "5,0", "--line", "0,0", "10,0"))
        # Points of the line but for rounding: the direction of what is left would be noise.
        for tenths in range(1, 30):
            place = f"{1000 + tenths * 0.3!r},{2000 + tenths * 0.1!r}"
            self.assertIsNone(self.one("foot", place, "--line", "1000,2000", "1030,2010")["azimuth_degrees"], place)

    def test_foot_on_a_line_to_the_east_takes_its_height_in_other_axes(self):
        # Half-way from 1 to 2; the library interpolates along the northing, which gives no number there.
        found = self.one("foot", "5,5", "--line", "0,0,1", "0,10,2")
        self.assertAlmostEqual(found["height"], 1.5, delta=1e-12)
        self.assertIn("computed in axes along the line", found["remark"])
        self.assertEqual(found["warnings"], [])
        # A millimetre off to the north at large coordinates, half-way along: 3 cm would be lost.
        found = self.one("foot", "6600007,600015", "--line", "6600000,600000,10", "6600000.001,600030,20")
        self.assertAlmostEqual(found["height"], 15 + 7 * 0.001 / 30 * 10 / 30, delta=1e-6)

    # --- transfer ---

    def test_transfer_turns_then_shifts(self):
        # North turned to east, then 2 to its right, which is south.
        found = self.one("transfer", "--line", "0,0", "10,0", "--rotate", "90d", "--offset", "2")
        self.assert_place(found, -2, 0, prefix="first_")
        self.assert_place(found, -2, 10, prefix="second_")
        self.assertEqual(found["azimuth_degrees"], 90.0)

    def test_transfer_turns_and_shifts_the_other_way(self):
        found = self.one("transfer", "--line", "0,0", "10,0", "--rotate", "-100g", "--offset", "-2")
        self.assert_place(found, -2, 0, prefix="first_")
        self.assert_place(found, -2, -10, prefix="second_")
        self.assertEqual(found["azimuth_degrees"], 270.0)

    def test_transfer_without_rotation_or_offset_is_the_line_itself(self):
        found = self.one("transfer", "--line", "1,2,3", "11,2,4")
        self.assert_place(found, 1, 2, prefix="first_")
        self.assert_place(found, 11, 2, prefix="second_")
        self.assertEqual((found["first_height"], found["second_height"]), (3.0, 4.0))

    def test_transfer_shows_the_integer_of_the_library_as_it_stands(self):
        # What the library makes of a direction d within the circle: d + 2^32 less a multiple of the full circle.
        for turn, direction in (("10d", 10.0), ("-10d", 350.0)):
            for line in (["0,0", "0d"], ["0,0", "10,0"]):
                found = self.one("transfer", "--line", *line, "--rotate", turn)
                self.assertEqual(found["azimuth_degrees"], direction)
                self.assertGreater(found["library_azimuth"], 2**31 - FULL_CIRCLE)
                self.assertEqual((found["library_azimuth"] - 2**32) % FULL_CIRCLE, direction * 57600)

    def test_transfer_shifts_a_line_by_azimuth_at_right_angles(self):
        # The library shifts 2 m along 90 degrees + 2^32 units, which lies 45.4 degrees off: 2 sin 45.4 before it.
        off = 2 * math.pi * (2**32 % FULL_CIRCLE) / FULL_CIRCLE
        found = self.one("transfer", "--line", "0,0", "0d", "--offset", "2")
        self.assert_place(found, 0, 2, prefix="first_")
        self.assertIsNone(found["second_northing"])
        self.assertIn("computed by a second point instead of the azimuth", found["remark"])
        self.assertIn(f"{2 * math.sin(off):.4f} m", found["remark"])
        self.assertEqual(found["warnings"], [])
        # 3 m to the left of 45 degrees: 3 / sqrt 2 up and back.
        found = self.one("transfer", "--line", "1000,2000,7", "50g", "--rotate", "0d", "--offset", "-3")
        self.assert_place(found, 1000 + 3 / math.sqrt(2), 2000 - 3 / math.sqrt(2), prefix="first_")
        self.assertEqual((found["azimuth_degrees"], found["first_height"]), (45.0, 7.0))
        # Azimuths from south, turned back by 20 degrees: the line goes at 210 degrees, its left is 120.
        found = self.one("transfer", "--line", "1000,2000", "50d", "--rotate", "-20d", "--offset", "-3",
                         "--south-azimuth")
        self.assert_place(found, 1000 + 3 * math.cos(math.radians(120)), 2000 + 3 * math.sin(math.radians(120)),
                          prefix="first_")
        self.assertEqual(found["azimuth_degrees"], 30.0)
        # To the east the sum wraps and the shift is at right angles.
        found = self.one("transfer", "--line", "0,0", "90d", "--offset", "2")
        self.assert_place(found, -2, 0, prefix="first_")
        self.assertIsNone(found["remark"])

    def test_transfer_refuses_a_line_without_direction(self):
        self.assertIn("coincide", self.refused(-1200, "transfer", "--line", "1,1", "1,1", "--offset", "1"))

    # --- angle ---

    def test_angle_shows_every_form(self):
        # (99 * 3600 + 10 * 60 + 24.5) * 16 units; / 57600 degrees; / 51840 gon.
        units = 5712392
        for text in ("99-10-24.5", "5712392u", "99.173472d", "110.192747g", "1.73090362rad"):
            row, = self.rows("angle", text)
            self.assertEqual(row["angle"], text)
            self.assertEqual(row["dms"], "99-10-24.5000")
            self.assertEqual(row["deg"], f"{units / 57600:.6f}d")
            self.assertEqual(row["gon"], f"{units / 51840:.6f}g")
            self.assertEqual(row["rad"], f"{2 * math.pi * units / FULL_CIRCLE:.8f}rad")
            self.assertEqual(row["units"], str(units))

    def test_each_form_reads_back_to_the_same_unit(self):
        units = [0, 1, 2, 7, 15, 16, 5183999, 5184001, 10367999, 10368001, FULL_CIRCLE - 1]
        units += range(123, FULL_CIRCLE, 999983)
        rows = self.rows("angle", *(f"{each}u" for each in units))
        self.assertEqual([int(row["units"]) for row in rows], units)
        for form in ("dms", "deg", "gon", "rad"):
            again = self.rows("angle", *(row[form] for row in rows))
            self.assertEqual([int(row["units"]) for row in again], units, form)

    def test_integers_beyond_the_circle_are_brought_there_as_the_library_does(self):
        # Above 2^31 - full circle the library's sum wraps: the direction is that of 2^32 less.
        for text, direction in (("-1u", FULL_CIRCLE - 1), ("20736005u", 5), ("2126747647u", 2126747647 % FULL_CIRCLE),
                                ("2126747648u", (2126747648 - 2**32) % FULL_CIRCLE), ("2138423301u", 5),
                                ("-2147483648u", -2**31 % FULL_CIRCLE)):
            row, = self.rows("angle", text)
            self.assertEqual(int(row["units"]), direction, text)
            self.assertEqual(row["remark"], "brought within the circle")

    def test_the_mark_of_an_angle_without_value_is_not_converted(self):
        rows = self.rows("angle", "134217728u", "90d", code=NOT_COMPUTED)
        self.assertEqual([row["units"] for row in rows], ["", "5184000"])

    def test_texts_that_are_no_angle_are_wrong_use(self):
        for text in ("foo", "1.5u", "u", "2147483648u", "12", "400d", "90u5", "0x10u", "+5u"):
            self.assertIn("angle", self.wrong("angle", text))

    # --- all of them ---

    def test_numbers_and_lines_that_are_none_are_wrong_use(self):
        for arguments, message in ((["forward", "0,0", "0d", "nan"], 'distance "nan"'),
                                   (["forward", "0,0", "0d", "5", "1,5"], 'height difference "1,5"'),
                                   (["forward", "0,0", "12", "5"], 'azimuth "12"'),
                                   (["offset", "0,0", "1,0", "1e9", "5"], "beyond 100 000 km"),
                                   (["grade", "x", "5"], 'horizontal distance "x"'),
                                   (["intersect", "--circle", "0,0", "r", "--circle", "1,1", "2"], 'radius "r"'),
                                   (["foot", "1,1", "--line", "0,0", "77"], '"77"'),
                                   (["foot", "1,1", "--line", "0,0", "B"], 'point "B"'),
                                   (["transfer", "--line", "0,0", "0d", "--rotate", "x"], 'rotation "x"'),
                                   (["inverse", "0,0", "1,2,3,4"], "1,2,3,4")):
            self.assertIn(message, self.wrong(*arguments))
        for arguments in (["inverse", "0,0"], ["forward", "0,0", "0d"], ["foot", "0,0"], ["transfer"],
                          ["foot", "0,0", "--line", "1,1"], ["grade", "1"], ["angle"]):
            self.assertNotEqual(self.wrong(*arguments), "")

    def test_coordinates_off_the_earth_are_told_from_what_is_no_number(self):
        for point in ("1e9,5", "5,-100000001", "0,0,2e8"):
            done = self.expect(WRONG_USE, "inverse", "1,1", point)
            self.assertEqual(done.stderr.decode(), f'qstd: inverse: point "{point}": beyond 100 000 km; no coordinate '
                                                   "on the earth is larger\n")
        done = self.expect(WRONG_USE, "inverse", "1,1", "1e9,x")
        self.assertIn(b"not two or three numbers", done.stderr)

    def test_a_rotation_is_told_with_its_sign(self):
        done = self.expect(WRONG_USE, "transfer", "--line", "0,0", "1,1", "--rotate", "-90")
        self.assertEqual(done.stderr.decode(), 'qstd: transfer: rotation "-90": no unit; write 99-10-24, 99.1733d or '
                                               "110.19g, or give --angle\n")

    def test_an_unknown_point_proposes_its_neighbours(self):
        table = self.put("points.csv", "id,n,e\nP101,0,0\nP102,5,5\n")
        for verb in (["inverse", "P101", "P103"], ["foot", "P101", "--line", "P102", "P103"]):
            self.assertIn("did you mean P10", self.wrong(*verb, "--points", table))

    def test_a_name_of_the_table_comes_before_an_azimuth(self):
        # 90d is the name of a point due north.
        table = self.put("points.csv", "id,n,e\nA,0,0\n90d,10,0\n")
        self.assert_place(self.one("foot", "4,4", "--line", "A", "90d", "--points", table), 4, 0)
        self.assert_place(self.one("foot", "4,4", "--line", "A", "90-00", "--points", table), 0, 4)

    def test_columns_pick_and_order(self):
        self.assertEqual(self.text("forward", "0,0,1", "90d", "5", "2", "--csv", "--columns", "height,easting"),
                         "height,easting\n3.0000,5.0000\n")
        self.assertIn("did you mean", self.wrong("foot", "1,1", "--line", "0,0", "5,5", "--columns", "chainag"))

    def test_units_name_lengths_and_areas_and_change_no_figure(self):
        for unit, length, area in (("m", "m", "m2"), ("ft", "ft", "sq ft"), ("us-ft", "us-ft", "sq us-ft")):
            text = self.text("area", "0,0", "0,40", "30,0", "--unit", unit)
            self.assertRegex(text, rf"area +600\.0000  {area}\n")
            self.assertRegex(text, rf"perimeter +120\.0000  {length}\n")
            self.assertEqual(self.text("inverse", "0.1,0.2,0.3", "7,8,9", "--json", "--unit", unit),
                             self.text("inverse", "0.1,0.2,0.3", "7,8,9", "--json"))

    def test_the_form_of_angles_holds_in_and_out(self):
        row, = self.rows("forward", "0,0", "50", "10", "--angle", "gon")
        self.assertEqual(row["azimuth"], "50.0000g")
        self.assertEqual(row["northing"], f"{10 / math.sqrt(2):.4f}")
        self.assertIn("at 45-00-00.0", self.text("foot", "1,1", "--line", "0,0", "45", "--angle", "dms"))

    def test_no_zero_is_negative(self):
        for arguments in (["forward", "0,0,0", "180d", "0", "-0.0"], ["forward", "0,0", "90d", "-1e-9"],
                          ["offset", "0,0", "0,9", "-0.0", "-0.0"], ["grade", "5", "-0.0"], ["grade", "-5", "0"],
                          ["transfer", "--line", "0,0", "10,0", "--rotate", "90d", "--offset", "-0.00001"],
                          ["intersect", "--line", "0,0", "180d", "--line", "0,0", "90d"],
                          ["foot", "0,-0.0", "--line", "0,0", "10,0"], ["inverse", "0,0,-0.0", "0,5,-0.0"]):
            for form in ([], ["--csv"], ["--json"]):
                text = self.text(*arguments, *form)
                # Figures of the input stand in the names of literal points.
                results = text.split("\n", 1)[1] if not form else text.replace("-0.0\"", "\"").replace(",-0.0", "")
                self.assertNotRegex(results, r"(?<![\d.])-0(\.0*)?(?![\d.])", (arguments, form))

    def test_figures_are_drawn(self):
        for arguments, parts in ((["inverse", "0,0", "30,40"], ["50.0000", "azimuth 53-07-48.4"]),
                                 (["forward", "0,0", "90d", "25"], ["25.0000", "new"]),
                                 (["offset", "0,0", "0,100", "40", "-30"], ["40.0000", "30.0000", "to the left"]),
                                 (["area", "0,0", "0,40", "30,0"], ["area 600.0000 m2", "perimeter 120.0000 m"]),
                                 (["intersect", "--circle", "0,0", "5", "--circle", "0,8", "4"],
                                  ["5.0000", "4.0000", ">1<", ">2<"]),
                                 (["intersect", "--line", "0,0", "45d", "--circle", "5,5", "5"], [">1<", ">2<"]),
                                 (["intersect", "--line", "0,0", "45d", "--line", "0,9", "0d"], [">1<"]),
                                 (["foot", "30,45", "--line", "0,0", "40,30"], ["foot", "18.0000", "chainage 51.0000"]),
                                 (["transfer", "--line", "0,0", "10,0", "--rotate", "30d", "--offset", "3"],
                                  ["turned 30-00-00.0 clockwise", "shifted 3.0000 to the right"])):
            self.text(*arguments, "--svg", self.path("plan.svg"))
            with open(self.path("plan.svg"), encoding="utf-8") as file:
                plan = file.read()
            for part in parts:
                self.assertIn(part, plan, arguments)

    def test_circles_that_do_not_meet_are_drawn_all_the_same(self):
        self.text("intersect", "--circle", "0,0", "5", "--circle", "0,20", "6", "--svg", self.path("plan.svg"),
                  code=NOT_COMPUTED)
        with open(self.path("plan.svg"), encoding="utf-8") as file:
            plan = file.read()
        self.assertIn("5.0000", plan)
        self.assertNotIn(">1<", plan)
        self.assertIn(">no intersection: the circles", plan)

    def test_a_line_that_passes_a_circle_is_drawn_past_all_of_it(self):
        # The line runs east along northing 6, the circle from easting -5 to 5.
        for line in (["6,0", "90d"], ["6,0", "6,1"]):
            features = self.drawn("intersect", "--line", *line, "--circle", "0,0", "5", code=NOT_COMPUTED)
            ends, = [each["geometry"]["coordinates"] for each in features
                     if each["geometry"]["type"] == "LineString" and "radius" not in each["properties"]]
            self.assertLessEqual(min(east for east, _ in ends), -5.0)
            self.assertGreaterEqual(max(east for east, _ in ends), 5.0)

    def test_parallel_lines_are_drawn_beside_each_other(self):
        # Eastwards, 6 apart: each is seen 6 to either side of its point.
        for line in (["6,0", "90d"], ["6,0", "6,1"]):
            features = self.drawn("intersect", "--line", "0,0", "90d", "--line", *line, code=NOT_COMPUTED)
            lines = [each["geometry"]["coordinates"] for each in features if each["geometry"]["type"] == "LineString"]
            self.assertEqual(len(lines), 2)
            for ends in lines:
                self.assertLessEqual(min(east for east, _ in ends), -6.0)
                self.assertGreaterEqual(max(east for east, _ in ends), 6.0)

    def test_a_circle_that_is_none_gives_no_plan(self):
        for others in (["--circle", "0,20", "0"], ["--circle", "0,20", "-3"], ["--line", "1,0", "1,9"]):
            radius = "-5" if "--line" in others else "5"
            features = self.drawn("intersect", "--circle", "0,0", radius, *others, code=NOT_COMPUTED)
            self.assertEqual(features, [], others)

    def test_a_line_and_a_circle_at_large_coordinates_meet_where_they_meet(self):
        # Along (0.6, 0.8) through the centre: 20 before and behind it. The library's quadratic loses a millimetre.
        north, east = 6600010, 600005
        first, second = self.objects("intersect", "--line", f"{north - 30},{east - 40}", f"{north - 27},{east - 36}",
                                     "--circle", f"{north},{east}", "20")
        self.assert_place(first, north - 12, east - 16, 1e-7)
        self.assert_place(second, north + 12, east + 16, 1e-7)
        for found in (first, second):
            self.assertIn("computed in axes along the line", found["remark"])
            self.assertEqual(found["warnings"], [])
        # Across, with the northings of both but for rounding the same: the smaller easting stays first.
        first, second = self.objects("intersect", "--line", f"{north + 12},{east - 40}", "90d", "--circle",
                                     f"{north},{east}", "20")
        self.assert_place(first, north + 12, east - 16, 1e-7)
        self.assert_place(second, north + 12, east + 16, 1e-7)

    def test_lines_at_large_coordinates_meet_on_both(self):
        # 0.01 m along (0.6, 0.8) gives the line; 500 further it meets the one that runs north.
        north, east = 6600000, 600000
        found = self.one("intersect", "--line", f"{north},{east}", f"{north + 0.006!r},{east + 0.008!r}", "--line",
                         f"{north},{east + 400}", "0d")
        # The coordinates of so short a line round its direction by 1e-9 / 0.01.
        self.assert_place(found, north + 300, east + 400, 1e-4)
        self.assertIn("computed in axes between the lines", found["remark"])

    def test_a_result_far_outside_its_input_is_questioned(self):
        # Lines 9 apart that close by 0.0002 in 10 m meet 450 km away.
        far = ["intersect", "--line", "0,0", "10,0", "--line", "0,9", "10,9.0002"]
        found = self.one(*far)
        self.assertEqual(len(found["warnings"]), 1)
        self.assertIn("450000.0000 m away", found["warnings"][0])
        self.assertIn("Warning: the intersection lies 450000.0000 m away", self.text(*far))
        done = self.expect(DONE, *far, "--csv")
        self.assertIn(b"Warning: the intersection lies", done.stdout)
        self.assertIn(b"qstd: intersect: warning: the intersection lies", done.stderr)

    def test_a_bare_number_that_is_a_point_and_an_azimuth_is_refused(self):
        table = self.put("points.csv", "id,n,e\nA,0,0\n50,10,0\n")
        self.assertEqual(self.wrong("foot", "5,5", "--line", "A", "50", "--points", table, "--angle", "gon"),
                         'qstd: foot: line to "50": the name of a point and, with --angle, an azimuth; write 50g for '
                         "the azimuth, or id=50 for the point\n")
        self.assert_place(self.one("foot", "5,5", "--line", "A", "id=50", "--points", table, "--angle", "gon"), 5, 0)
        self.assert_place(self.one("foot", "5,0", "--line", "A", "50g", "--points", table, "--angle", "gon"), 2.5, 2.5)
        self.assert_place(self.one("foot", "5,5", "--line", "A", "50", "--points", table), 5, 0)
        self.assertIn('"id=7": not in', self.wrong("inverse", "A", "id=7", "--points", table))

    def test_coordinates_may_say_which_is_which(self):
        self.assertEqual(self.one("inverse", "N=1, E=2, H=3", "n=1,e=7,h=3")["horizontal_distance"], 5.0)
        self.assertIn("not two or three numbers", self.wrong("inverse", "E=2,N=1", "0,0"))

    def test_lines_that_meet_off_the_earth_are_refused(self):
        # Eastings n and 20000 + 0.0001 n more: equal where n = -20000 / 0.0001 = -2e8, twice the longest length.
        far = self.refused(0, "intersect", "--line", "0,0", "1000,0", "--line", "0,20000", "10000,20001")
        self.assertIn("no intersection within 100 000 km", far)
        self.assertNotIn("centre", far)
        # Half as far apart less a little: n = -9e7.
        near = self.one("intersect", "--line", "0,0", "1000,0", "--line", "0,9000", "10000,9001")
        self.assert_place(near, -9e7, 0, 1)

    def test_foot_without_a_height_is_drawn_in_the_plan(self):
        # The line runs east along northing 0; [easting, northing] of the foot is [5, 0], 5 below the point.
        features = self.drawn("foot", "5,5", "--line", "0,0", "0,10")
        foot, = [each for each in features if each["properties"]["name"] == "foot"]
        self.assertEqual(len(foot["geometry"]["coordinates"]), 2)
        self.assertAlmostEqual(foot["geometry"]["coordinates"][0], 5, delta=1e-9)
        self.assertAlmostEqual(foot["geometry"]["coordinates"][1], 0, delta=1e-9)
        perpendicular, = [each for each in features if each["properties"]["role"] == "offset"]
        self.assertEqual(perpendicular["properties"]["label"], "5.0000")
        self.assertEqual(perpendicular["geometry"]["coordinates"][1], [5, 5])


class CogoCases(CogoCase):
    """Published figures, with the sources that they come from."""

    def assert_angle(self, found, expected, seconds):
        self.assertLessEqual(abs((found - expected + 180) % 360 - 180), seconds / 3600)

    def test_inverse_geoeasy_231_13(self):
        # zsiki/GeoEasy at 7b3baf6, doc/step_by_step.rst "Whole circle bearing and distance".
        found = self.one("inverse", "231", "13", "--points", TOWN)
        self.assert_angle(found["azimuth_degrees"], degrees(293, 8, 21), 0.6)
        self.assertAlmostEqual(found["horizontal_distance"], 4029.889, delta=0.0011)

    def test_inverse_plugin_3d(self):
        # zsiki/ls at 6c33a6d, calculation.py module test.
        for ends, azimuth in ((("200,100,20", "250,150,30"), 45), (("250,150,30", "200,100,20"), 225)):
            found = self.one("inverse", *ends)
            self.assert_angle(found["azimuth_degrees"], azimuth, 0.1)
            self.assertAlmostEqual(found["horizontal_distance"], 70.7107, delta=6e-5)
            self.assertAlmostEqual(found["slope_distance"], 71.4143, delta=6e-5)

    def test_forward_geoeasy_polar_1_sp(self):
        # zsiki/GeoEasy at 7b3baf6, doc/reference_guide.rst "Polar point".
        self.assert_place(self.one("forward", "3587.525,89562.497", "132-34-50", "498.89"), 3249.963, 89929.843, 0.0011)

    def test_forward_plugin_polar_10(self):
        # zsiki/ls at 6c33a6d, calculation.py module test "polar points".
        self.assert_place(self.one("forward", "12569.75,13456.25", "300-40-51.55", "219.38"), 12681.6903, 13267.5785,
                          0.0002)

    def check_polar(self, station, heights, orientation, sights, tolerance):
        """Sights as hz, v, sd and the published horizontal distance, northing, easting, height, azimuth."""
        instrument_height, target_height = heights
        for hz, v, sd, distance, northing, easting, height, azimuth in sights:
            horizontal = sd * math.sin(math.radians(v))
            rise = sd * math.cos(math.radians(v)) + instrument_height - target_height
            self.assertAlmostEqual(horizontal, distance, delta=tolerance)
            found = self.one("forward", station, f"{(orientation + hz) % 360!r}d", repr(horizontal), repr(rise))
            self.assert_place(found, northing, easting, tolerance)
            self.assertAlmostEqual(found["height"], height, delta=tolerance)
            self.assert_angle(found["azimuth_degrees"], azimuth, 1.1)

    def test_polar3d_geoeasy_1_sp(self):
        # zsiki/GeoEasy at 7b3baf6, doc/step_by_step.rst "Detail points"; readings src/demodata/test1.geo.
        self.check_polar("3250.011,89929.872,123.932", (1.64, 1.2), degrees(312, 34, 21), [
            (degrees(269, 12, 23), degrees(89, 41, 3), 168.471, 168.468, 3124.38, 89817.629, 125.301,
             degrees(221, 46, 44)),
            (degrees(244, 18, 26), degrees(89, 1, 24), 143.526, 143.505, 3112.688, 89888.203, 126.819,
             degrees(196, 52, 47)),
            (degrees(168, 35, 27), degrees(88, 52, 13), 132.657, 132.631, 3181.377, 90043.364, 126.988,
             degrees(121, 9, 48))], 0.0016)

    def test_polar3d_plugin_radial_10001(self):
        # zsiki/ls at 6c33a6d, sample/test1.job and doc/source/images/t027.png; azimuths printed there in gon.
        self.check_polar("2815.22,91515.44,111.92", (1.45, 1.5), degrees(276, 35, 48.28), [
            (degrees(12, 35, 44), degrees(89, 16, 55), 55.41, 55.406, 2833.434, 91463.114, 112.564, 321.3248 * 0.9),
            (degrees(40, 51, 13), degrees(90, 5, 20), 23.12, 23.12, 2832.252, 91499.806, 111.834, 352.7226 * 0.9),
            (degrees(162, 14, 2), degrees(89, 54, 12), 47.79, 47.79, 2824.477, 91562.325, 111.951, 87.5896 * 0.9),
            (degrees(225, 22, 4), degrees(91, 0, 14), 35.21, 35.205, 2787.492, 91537.131, 111.253, 157.7383 * 0.9)],
            0.0011)

    def test_area_geoeasy_16_231_232(self):
        # zsiki/GeoEasy at 7b3baf6, doc/reference_guide.rst "Area".
        self.assertAlmostEqual(self.one("area", "16", "231", "232", "--points", TOWN)["area"], 618595.7984, delta=2e-4)

    def test_line_line_geoeasy_5004(self):
        # zsiki/GeoEasy at 7b3baf6, doc/step_by_step.rst "Intersection"; bearings printed to 1 second.
        self.assert_place(self.one("intersect", "--line", "11", "243-57-51", "--line", "12", "330-00-58", "--points",
                                   TOWN), 2195.193, 90246.207, 0.003)

    def test_line_line_mahun_lr(self):
        # J. Mahun, Open Access Surveying Library, solution "COGO Intersect and Transformations", problem 1 (b); feet.
        self.assert_place(self.one("intersect", "--line", "1000,2000", "253-26-15", "--line", "480.951,1811.082",
                                   "314-33-26", "--unit", "ft"), 836.445, 1450.051, 0.0011)

    def test_line_line_plugin_simple_1(self):
        # zsiki/ls at 6c33a6d, calculation.py module test.
        self.assert_place(self.one("intersect", "--line", "200,100", "25-00", "--line", "250,150", "310-00"), 266.0939,
                          130.8201, 0.0001)

    def test_circle_circle_geoeasy_5002(self):
        # zsiki/GeoEasy at 7b3baf6, doc/step_by_step.rst "Arcsection", which prints the solution to the right.
        right, left = self.objects("intersect", "--circle", "11", "954.73", "--circle", "12", "1117.28", "--points",
                                   TOWN)
        self.assertEqual([right["position"], left["position"]], ["right of 11 - 12", "left of 11 - 12"])
        self.assert_place(right, 2590.11, 90587.628, 0.0011)

    def test_circle_circle_matheass(self):
        # MatheAss help, "Intersection of two circles" (x taken as easting).
        right, left = self.objects("intersect", "--circle", "5,5", "5", "--circle", "0,0", "5")
        self.assert_place(right, 5, 0, 1e-9)
        self.assert_place(left, 0, 5, 1e-9)

    def test_circle_circle_mahun_ab(self):
        # J. Mahun, Open Access Surveying Library, COGO chapter I, "Three point curve": the centre O; feet, to 0.01.
        _, left = self.objects("intersect", "--circle", "902.72,1751.91", "294.42", "--circle", "870.76,1237.76",
                               "294.42", "--unit", "ft")
        self.assert_place(left, 744.39, 1503.68, 0.02)

    def test_line_circle_matheass_secant(self):
        # MatheAss help, "Intersection of circle and line": circle (5|0) with radius 5, line x + y = 0.
        first, second = self.objects("intersect", "--line", "10,-10", "-10,10", "--circle", "0,5", "5")
        self.assert_place(first, -5, 5, 1e-9)
        self.assert_place(second, 0, 0, 1e-9)

    def test_line_circle_mahun_ab(self):
        # J. Mahun, as above: the line A-B meets the circle in A and B, B having the smaller northing.
        first, second = self.objects("intersect", "--line", "902.72,1751.91", "870.76,1237.76", "--circle",
                                     "744.39,1503.68", "294.42", "--unit", "ft")
        self.assert_place(first, 870.76, 1237.76, 0.02)
        self.assert_place(second, 902.72, 1751.91, 0.02)

    def test_reference_line_geoeasy_a(self):
        # zsiki/GeoEasy at 7b3baf6, doc/reference_guide.rst "Setting out": line 14 - 15, offset positive to the right.
        for name, chainage, offset in (("12", 2373.7, -1805.7), ("16", 1421.55, 109.76)):
            found = self.one("foot", name, "--line", "14", "15", "--points", TOWN)
            self.assertAlmostEqual(found["chainage"], chainage, delta=0.0051)
            self.assertAlmostEqual(found["offset"], offset, delta=0.0051)
            there = self.one("offset", "14", "15", repr(found["chainage"]), repr(found["offset"]), "--points", TOWN)
            back = self.one("inverse", f"{there['northing']!r},{there['easting']!r}", "14", "--points", TOWN)
            self.assertAlmostEqual(back["horizontal_distance"], math.hypot(chainage, offset), delta=0.0051)


if __name__ == "__main__":
    unittest.main()
