"""The measurement verbs of qstd: rem, distance, rod, slope, corner, edge, column."""
import csv
import io
import json
import math
import unittest
import xml.etree.ElementTree as ElementTree

from case import DONE, NOT_COMPUTED, UNREADABLE, WRONG_USE, Case

POINTS = "id n e h\nA 0 0 15\nB 10 0 20\nP 3 4 -\nH - - 12\n"

# Of an angle that the library rounds to its unit of 1/16 arc-second.
ROUNDING = 0.5 / 16 / 3600


class Family(Case):
    def record(self, *arguments, code=DONE, **options):
        """The only object that the program prints with --json."""
        objects = self.objects(*arguments, code=code, **options)
        self.assertEqual(len(objects), 1)
        return objects[0]

    def rows(self, *arguments, code=DONE, **options):
        return list(csv.DictReader(io.StringIO(self.text(*arguments, "--csv", code=code, **options))))

    def refusal(self, *arguments):
        done = self.expect(WRONG_USE, *arguments)
        self.assertEqual(done.stdout, b"")
        return done.stderr.decode()


class Measure(Family):
    # --- remote elevation

    def test_height_above_the_base_is_taken_at_the_distance_of_the_base(self):
        # Level base at 40 m; a sight 10 degrees up is 40 tan 10 = 7.0531 above the reflector, 1.6 more above ground.
        found = self.record("rem", "10-00-00,90-00-00,40", "10-00-00,80-00-00", "--target-height", "1.6")
        self.assertAlmostEqual(found["height_above_base"], 40 * math.tan(math.radians(10)) + 1.6, delta=1e-6)
        self.assertEqual(found["offset"], 0.0)
        self.assertIsNone(found["height"])

    def test_sights_beside_the_base_have_their_offset_and_side(self):
        # 40 tan 1 degree = 0.6982 to the right, the same to the left.
        right, left = self.rows("rem", "10-00-00,90-00-00,40", "11-00-00,80-00-00", "9-00-00,80-00-00")
        self.assertEqual((right["offset"], left["offset"]), ("0.6982", "-0.6982"))
        self.assertIn("to the left of the base", self.text("rem", "10-00-00,90-00-00,40", "9-00-00,80-00-00"))

    def test_a_height_beside_the_base_says_by_how_much_it_misses_the_plane_there(self):
        # 40 tan 30 = 23.0940 at the base; turned by 10 degrees the plane is 40 / cos 10 away: 0.3563 more.
        found = self.record("rem", "10-00-00,90-00-00,40", "20-00-00,60-00-00")
        self.assertAlmostEqual(found["height_above_base"], 40 * math.tan(math.radians(30)), delta=1e-6)
        self.assertEqual(len(found["warnings"]), 1)
        self.assertIn("the sight is 0.3563 m higher", found["warnings"][0])

    def test_a_rod_of_another_spacing_is_questioned(self):
        # The prisms lie sqrt 0.5 apart, 57 mm more than nominal.
        found = self.record("rod", "100,200,11.5", "100.3,200.4,11", "--extension", "0.5", "--spacing", "0.65")
        self.assertIn("measured 0.0571 m farther apart", found["warnings"][0])
        close = self.record("rod", "100,200,11.5", "100.3,200.4,11", "--extension", "0.5", "--spacing", "0.7")
        self.assertEqual(close["warnings"], [])

    def test_heights_follow_from_the_station(self):
        # Axis at 101.5; base 40 m away, 60 degrees from the vertical: 20 m higher, 40 sin 60 = 34.6410 m off; the sight
        # at 45 degrees is 34.6410 above the axis.
        found = self.record("rem", "0-00-00,60-00-00,40", "0-00-00,45-00-00", "--station", "0,0,100",
                            "--instrument-height", "1.5")
        off = 40 * math.sin(math.radians(60))
        self.assertAlmostEqual(found["height"], 101.5 + off, delta=1e-6)
        self.assertAlmostEqual(found["height_above_base"], off - 20, delta=1e-6)

    def test_base_may_be_a_point_seen_from_the_station(self):
        # 30 m north of the station and level with the axis; circle zero points east, so that it is read at 270.
        found = self.record("rem", "30,0,11.5", "270-00-00,45-00-00", "--station", "0,0,10", "--orientation",
                            "90-00-00", "--instrument-height", "1.5")
        self.assertAlmostEqual(found["height_above_base"], 30.0, delta=1e-6)
        self.assertAlmostEqual(found["offset"], 0.0, delta=1e-6)
        self.assertAlmostEqual(found["height"], 41.5, delta=1e-6)

    def test_base_in_the_other_face_is_the_same_base(self):
        one = self.record("rem", "10-00-00,85-00-00,40", "12-00-00,80-00-00")
        two = self.record("rem", "190-00-00,275-00-00,40", "12-00-00,80-00-00")
        self.assertAlmostEqual(one["height_above_base"], two["height_above_base"], delta=1e-6)
        self.assertAlmostEqual(one["offset"], two["offset"], delta=1e-6)

    def test_refused_sights_do_not_keep_others_from_being_computed(self):
        vertical, turned, good = self.rows("rem", "10-00-00,90-00-00,40", "10-00-00,0-00-00", "120-00-00,80-00-00",
                                           "10-00-00,45-00-00", code=NOT_COMPUTED)
        self.assertEqual((vertical["status"], vertical["height_above_base"]), ("QSTD_VERTICAL_SIGHT", ""))
        self.assertEqual((turned["status"], turned["height_above_base"]), ("QSTD_SIGHT_TURNED_AWAY", ""))
        self.assertEqual((good["status"], good["height_above_base"]), ("QSTD_OK", "40.0000"))

    def test_vertical_base_is_refused(self):
        found = self.record("rem", "10-00-00,0-00-00,40", "10-00-00,45-00-00", code=NOT_COMPUTED)
        self.assertEqual(found["status_name"], "QSTD_VERTICAL_SIGHT")
        self.assertIn("base", found["remark"])

    def test_table_of_sights(self):
        table = self.put("sights", "target hz v\ncable 10-00-00 45-00-00\nroof 10-00-00 135-00-00\n")
        cable, roof = self.rows("rem", "10-00-00,90-00-00,40", "--sights", table)
        self.assertEqual((cable["target"], cable["height_above_base"]), ("cable", "40.0000"))
        self.assertEqual((roof["target"], roof["height_above_base"]), ("roof", "-40.0000"))

    def test_tables_without_rows_are_told(self):
        sights, points = self.put("sights.csv", "target,hz,v\n"), self.put("points.csv", "id,n,e,h\n")
        for arguments in (["rem", "10-00-00,90-00-00,40", "--sights", sights],
                          ["edge", "0,0,15", "10,0,20", "--station", "5,10,10", "--sights", sights],
                          ["slope", "0,0", "--design", "0,10", "4,8", "--list", points]):
            done = self.expect(DONE, *arguments)
            self.assertEqual(done.stderr.decode(),
                             f"{arguments[-1]}: warning: no rows; each line below the column names is one\n")

    def test_table_of_sights_with_a_bad_row_gives_nothing(self):
        table = self.put("sights", "target hz v\ncable 10-00-00 45-00-00\nroof 10-00-00 -\n")
        done = self.expect(UNREADABLE, "rem", "10-00-00,90-00-00,40", "--sights", table)
        self.assertEqual(done.stdout, b"")
        self.assertIn(":3: v", done.stderr.decode())

    def test_sights_of_another_station_are_told(self):
        table = self.put("sights", "station target hz v\n7 cable 10-00-00 45-00-00\n")
        self.assertIn("--station", self.refusal("rem", "10-00-00,90-00-00,40", "--sights", table))

    def test_rem_wrong_use(self):
        self.assertIn("nothing is sighted", self.refusal("rem", "10-00-00,90-00-00,40"))
        self.assertIn("HZ,V,SD", self.refusal("rem", "10-00-00,90-00-00", "10-00-00,45-00-00"))
        self.assertIn("not above 0", self.refusal("rem", "10-00-00,90-00-00,-4", "10-00-00,45-00-00"))
        self.assertIn("--station", self.refusal("rem", "30,0,11.5", "10-00-00,45-00-00"))
        self.assertIn("stands there", self.refusal("rem", "3,4,5", "10-00-00,45-00-00", "--station", "3,4,5"))
        self.assertIn("height", self.refusal("rem", "3,4", "10-00-00,45-00-00", "--station", "0,0,0"))

    # --- remote distance

    def test_distance_from_each_point_to_the_next(self):
        # (30, 40): 50 m; then 60 m east and 2.5 m up.
        first, second = self.objects("distance", "0,0,5", "30,40,5", "30,100,7.5")
        self.assertEqual(first["horizontal_distance"], 50.0)
        self.assertAlmostEqual(first["azimuth_degrees"], math.degrees(math.atan2(40, 30)), delta=ROUNDING)
        self.assertEqual((second["from"], second["to"]), ("30,40,5", "30,100,7.5"))
        self.assertEqual(second["height_difference"], 2.5)
        self.assertAlmostEqual(second["slope_distance"], math.hypot(60, 2.5), delta=1e-9)

    def test_radial_distances_count_from_the_first_point(self):
        first, second = self.rows("distance", "0,0", "3,4", "6,8", "--radial")
        self.assertEqual((first["from"], second["from"]), ("0,0", "0,0"))
        self.assertEqual((first["horizontal_distance"], second["horizontal_distance"]), ("5.0000", "10.0000"))

    def test_distance_without_a_height_is_plane(self):
        found = self.record("distance", "0,0,5", "3,4")
        self.assertEqual(found["horizontal_distance"], 5.0)
        self.assertIsNone(found["slope_distance"])
        self.assertIsNone(found["height_difference"])

    def test_distance_between_sights_from_a_station(self):
        # Right angle at the station between 30 m and 40 m; the second reflector is read in face two.
        found = self.record("distance", "0-00-00,90-00-00,30", "270-00-00,270-00-00,40", "--station", "100,200,10",
                            "--orientation", "45-00-00")
        self.assertAlmostEqual(found["horizontal_distance"], 50.0, delta=1e-6)
        self.assertAlmostEqual(found["height_difference"], 0.0, delta=1e-6)

    def test_reflector_and_instrument_height_of_a_sighted_point(self):
        # From 10 + 1.5, 20 m at 60 degrees from the vertical: + 10; the reflector is 2 above the point: 19.5.
        found = self.record("distance", "0,0,10", "0-00-00,60-00-00,20", "--station", "0,0,10",
                            "--instrument-height", "1.5", "--target-height", "2")
        self.assertAlmostEqual(found["height_difference"], 9.5, delta=1e-6)

    def test_points_above_each_other_have_distances_without_azimuth(self):
        found = self.record("distance", "1,2,3", "1,2,7")
        self.assertEqual((found["horizontal_distance"], found["slope_distance"]), (0.0, 4.0))
        self.assertIsNone(found["azimuth_units"])
        self.assertEqual(found["status_name"], "QSTD_COINCIDENT_POINTS")

    def test_distance_to_a_point_without_coordinates_is_refused_and_others_computed(self):
        points = self.put("points", POINTS)
        rows = self.rows("distance", "A", "P", "H", "--radial", "--points", points, code=NOT_COMPUTED)
        self.assertEqual([row["status"] for row in rows], ["QSTD_OK", "QSTD_MISSING_COORDINATES"])
        self.assertEqual(rows[0]["horizontal_distance"], "5.0000")

    def test_south_azimuth_turns_the_azimuth(self):
        self.assertEqual(self.record("distance", "0,0", "0,5", "--south-azimuth")["azimuth_degrees"], 270.0)

    def test_south_azimuth_leaves_sighted_points_where_they_are_read(self):
        # Circle zero at south, reading 0: the point lies 10 m south, at azimuth 0 from there.
        found = self.record("distance", "0,0,0", "0-00-00,90-00-00,10", "--station", "0,0,0", "--south-azimuth")
        self.assertEqual(found["azimuth_degrees"], 0.0)
        self.assertAlmostEqual(found["horizontal_distance"], 10.0, delta=1e-9)

    def test_distance_wrong_use(self):
        self.assertIn("two points", self.refusal("distance", "0,0"))
        self.assertIn("--station", self.refusal("distance", "0,0", "0-00-00,90-00-00,10"))
        self.assertIn("--orientation", self.refusal("distance", "0,0", "1,1", "--orientation", "0-00-00"))
        self.assertIn("HZ,V,SD", self.refusal("distance", "0,0", "0-00-00,90-00-00", "--station", "0,0"))
        self.assertIn("--target-height", self.refusal("distance", "0,0", "1,1", "--target-height", "nan"))

    def test_bare_numbers_of_a_sight_or_of_coordinates_are_refused(self):
        for verb in (["distance", "0,0,0", "100,90,10"], ["corner", "100,90,10", "12,99,31", "20,99,35"],
                     ["rod", "100,90,10", "1,2,3", "--extension", "1"], ["edge", "100,90,10", "0,0,0", "50,50"],
                     ["slope", "0,0,0", "100,90,10", "--design", "0,10", "4,8"], ["rem", "100,90,10", "50,50"]):
            message = self.refusal(*verb, "--station", "0,0,0", "--angle", "gon")
            if verb[0] not in ("distance", "slope"):
                self.assertIn("write 100g,90g,10 for the sight, or N=100,E=90,H=10 for the coordinates", message)
            self.assertIn("a sight HZ,V,SD as well as coordinates N,E,H", message)

    def test_both_ways_to_write_bare_numbers_are_taken(self):
        # 100 gon east, 10 from it in space under 90 gon: 10 sin 81 degrees in plan.
        sight = self.record("distance", "N=0,E=0,H=0", "100g,90g,10", "--station", "0,0,0", "--angle", "gon")
        self.assertAlmostEqual(sight["horizontal_distance"], 10 * math.sin(math.radians(81)), delta=1e-6)
        place = self.record("distance", "N=0,E=0,H=0", "N=100,E=90,H=10", "--station", "0,0,0", "--angle", "gon")
        self.assertAlmostEqual(place["horizontal_distance"], math.hypot(100, 90), delta=1e-9)

    def test_bare_numbers_of_one_meaning_are_coordinates(self):
        # No sight without a station, without a form of angles, off the circle, or without a distance above 0.
        for place, *more in (("100,100,10", "--angle", "gon"), ("100,100,10", "--station", "N=0,E=0,H=0"),
                             ("500,100,10", "--station", "0,0,0", "--angle", "gon"),
                             ("100,100,-10", "--station", "0,0,0", "--angle", "gon")):
            found = self.record("distance", "700,0,0", place, *more)
            north, east, _ = map(float, place.split(","))
            self.assertAlmostEqual(found["horizontal_distance"], math.hypot(north - 700, east), delta=1e-9)

    # --- rod

    def test_hidden_point_lies_on_the_prolongation_of_the_rod(self):
        # (0.3, 0.4, -0.5) over 0.70711: 0.5 beyond is near + (0.3, 0.4, -0.5) * 0.70711.
        found = self.record("rod", "100,200,11.5", "100.3,200.4,11", "--extension", "0.5")
        share = 0.5 / math.sqrt(0.5)
        self.assertAlmostEqual(found["northing"], 100.3 + 0.3 * share, delta=1e-9)
        self.assertAlmostEqual(found["easting"], 200.4 + 0.4 * share, delta=1e-9)
        self.assertAlmostEqual(found["height"], 11 - 0.5 * share, delta=1e-9)
        self.assertAlmostEqual(found["measured_spacing"], math.sqrt(0.5), delta=1e-9)
        self.assertIsNone(found["spacing_difference"])

    def test_nominal_spacing_stretches_the_prolongation(self):
        # Measured 1.002 for 1.000: 1 m becomes 1.002 m, downwards from 8.998.
        found = self.record("rod", "0,0,10", "0,0,8.998", "--extension", "1", "--spacing", "1")
        self.assertAlmostEqual(found["height"], 8.998 - 1.002, delta=1e-9)
        self.assertAlmostEqual(found["spacing_difference"], 0.002, delta=1e-9)
        self.assertIn("+2.0  mm", self.text("rod", "0,0,10", "0,0,8.998", "--extension", "1", "--spacing", "1"))

    def test_rod_refusals(self):
        same = self.record("rod", "0,0,10", "0,0,10", "--extension", "1", code=NOT_COMPUTED)
        self.assertEqual(same["status_name"], "QSTD_COINCIDENT_POINTS")
        flat = self.record("rod", "0,0", "0,1", "--extension", "1", code=NOT_COMPUTED)
        self.assertEqual(flat["status_name"], "QSTD_MISSING_COORDINATES")
        negative = self.record("rod", "0,0,1", "0,0,0", "--extension", "-1", code=NOT_COMPUTED)
        self.assertEqual(negative["status_name"], "QSTD_REJECTED")
        self.assertIn("negative", negative["remark"])
        self.assertIn("--extension", self.refusal("rod", "0,0,1", "0,0,0"))
        self.assertIn("--spacing", self.refusal("rod", "0,0,1", "0,0,0", "--extension", "1", "--spacing", "1e400"))

    # --- slope

    def test_point_beyond_and_above_a_slope(self):
        # Height 10 falling 1 in 2: at 2 m it is 9, and 9.5 is reached at 1 m.
        found = self.record("slope", "100,200", "100,202,9.5", "--design", "0,10", "4,8")
        self.assertEqual((found["distance"], found["beyond_slope"], found["above_slope"]), (2.0, 1.0, 0.5))

    def test_only_the_distance_of_a_point_counts_on_the_other_side(self):
        rows = self.rows("slope", "0,0", "0,2,9.5", "0,-2,9.5", "--design", "0,10", "-4,8")
        self.assertEqual([(row["beyond_slope"], row["above_slope"]) for row in rows], [("1.0000", "0.5000")] * 2)

    def test_slope_in_words(self):
        text = self.text("slope", "0,0", "0,2,8", "--design", "0,10", "4,8")
        self.assertIn("-1.0000  m  fill up to the slope", text)
        self.assertIn("-2.0000  m  towards the base", text)

    def test_level_and_vertical_slopes_give_the_half_that_they_can(self):
        level = self.record("slope", "0,0", "0,2,9.5", "--design", "1,5", "3,5")
        self.assertEqual((level["computed"], level["beyond_slope"], level["above_slope"]), (True, None, 4.5))
        self.assertEqual(level["status_name"], "QSTD_DISTANCE_UNDETERMINED")
        vertical = self.record("slope", "0,0", "0,2,9.5", "--design", "3,5", "3,8")
        self.assertEqual((vertical["computed"], vertical["beyond_slope"], vertical["above_slope"]), (True, -1.0, None))

    def test_slope_refusals_leave_other_points_computed(self):
        points = self.put("list", "id n e h\na 0 2 9.5\nb 0 0 9\nc 0 2 -\n")
        rows = self.rows("slope", "0,0", "--list", points, "--design", "0,10", "4,8", code=NOT_COMPUTED)
        self.assertEqual([row["status"] for row in rows],
                         ["QSTD_OK", "QSTD_COINCIDENT_POINTS", "QSTD_MISSING_COORDINATES"])
        self.assertEqual(rows[0]["above_slope"], "0.5000")

    def test_slope_on_both_sides_of_the_base_is_refused(self):
        found = self.record("slope", "0,0", "0,2,9.5", "--design", "1,10", "-1,8", code=NOT_COMPUTED)
        self.assertEqual(found["status_name"], "QSTD_REJECTED")
        self.assertIn("opposite sides", found["remark"])

    def test_list_of_points_from_standard_input(self):
        rows = self.rows("slope", "0,0", "--list", "-", "--design", "0,10", "4,8", input=b"id n e h\na 0 2 9.5\n")
        self.assertEqual(rows[0]["id"], "a")

    def test_slope_wrong_use(self):
        self.assertIn("no point", self.refusal("slope", "0,0", "--design", "0,10", "4,8"))
        self.assertIn("DISTANCE,HEIGHT", self.refusal("slope", "0,0", "0,2,9.5", "--design", "0", "4,8"))

    # --- corner

    def test_corner_at_a_right_angle(self):
        # The foot of (4, 7) on the line east of the origin along north; the height is that of the third point.
        found = self.record("corner", "0,0", "10,0", "4,7,2")
        self.assertEqual((found["northing"], found["easting"], found["height"]), (4.0, 0.0, 2.0))
        self.assertIsNone(found["circle_reading_units"])
        self.assertIsNone(found["slope_distance"])

    def test_corner_at_any_angle(self):
        # Wall one along north through the origin; wall two through (5, 5) and (5, 8): they meet at (5, 0).
        found = self.record("corner", "0,0", "10,0", "5,5", "5,8,3")
        self.assertAlmostEqual(found["northing"], 5.0, delta=1e-9)
        self.assertAlmostEqual(found["easting"], 0.0, delta=1e-9)
        self.assertEqual(found["height"], 3.0)

    def test_corner_without_station_says_what_is_missing(self):
        self.assertIn("No --station", self.text("corner", "0,0", "10,0", "4,7,2"))
        done = self.expect(DONE, "corner", "0,0", "10,0", "4,7,2", "--csv")
        self.assertIn(b"No --station", done.stderr)

    def test_expected_sight_to_the_corner(self):
        # From (4, -30) at axis 2 the corner (4, 0, 2) lies 30 m east and level; circle zero at 40 degrees.
        found = self.record("corner", "0,0", "10,0", "4,7,2", "--station", "4,-30,0.5", "--instrument-height", "1.5",
                            "--orientation", "40-00-00")
        self.assertEqual((found["circle_reading_degrees"], found["zenith_degrees"], found["slope_distance"]),
                         (50.0, 90.0, 30.0))

    def test_expected_sight_in_face_two_and_to_a_reflector(self):
        # A reflector 30 m above the corner is seen 45 degrees up: 315 degrees in face two, the circle half a turn on.
        found = self.record("corner", "0,0", "10,0", "4,7,2", "--station", "4,-30,2", "--face-two", "--target-height",
                            "30")
        self.assertEqual((found["circle_reading_degrees"], found["zenith_degrees"]), (270.0, 315.0))
        self.assertAlmostEqual(found["slope_distance"], math.hypot(30, 30), delta=1e-9)
        self.assertEqual(found["height"], 2.0)

    def test_corner_from_sights(self):
        # A house seen from its yard: wall points (10, 0) and (10, 10) from the station, second wall (20, 20): the walls
        # meet at (10, 20), 22.3607 m off.
        found = self.record("corner", "0-00-00,90-00-00,10", f"45-00-00,90-00-00,{math.hypot(10, 10)}",
                            f"45-00-00,90-00-00,{math.hypot(20, 20)}", "--station", "100,200,10")
        self.assertAlmostEqual(found["northing"], 110.0, delta=1e-9)
        self.assertAlmostEqual(found["easting"], 220.0, delta=1e-9)
        self.assertAlmostEqual(found["slope_distance"], math.hypot(10, 20), delta=1e-9)
        self.assertAlmostEqual(found["circle_reading_degrees"], math.degrees(math.atan2(20, 10)), delta=ROUNDING)

    def test_instrument_that_stands_in_the_corner_reads_nothing(self):
        found = self.record("corner", "0,0", "10,0", "4,7,2", "--station", "4,0,2")
        self.assertEqual((found["northing"], found["easting"], found["height"]), (4.0, 0.0, 2.0))
        self.assertIsNone(found["slope_distance"])

    def test_station_without_height_gives_the_circle_reading_alone(self):
        found = self.record("corner", "0,0", "10,0", "4,7,2", "--station", "4,-30")
        self.assertEqual(found["circle_reading_degrees"], 90.0)
        self.assertIsNone(found["zenith_units"])
        self.assertIsNone(found["slope_distance"])

    def test_corner_refusals(self):
        points = self.put("points", POINTS)
        for arguments, status, words in [
                (["0,0", "0,0", "4,7,2"], "QSTD_COINCIDENT_POINTS", "same place"),
                (["0,0", "10,0", "4,7"], "QSTD_MISSING_COORDINATES", "4,7"),
                (["0,0", "10,0", "0,5", "10,5,2"], "QSTD_DEGENERATE", "parallel"),
                (["H", "10,0", "4,7,2", "--points", points], "QSTD_MISSING_COORDINATES", "H has no northing"),
                (["0,0", "10,0", "4,7", "--station", "9,9,9"], "QSTD_MISSING_COORDINATES", "height")]:
            with self.subTest(arguments):
                found = self.record("corner", *arguments, code=NOT_COMPUTED)
                self.assertEqual(found["status_name"], status)
                self.assertIn(words, found["remark"])
                self.assertIsNone(found["northing"])

    def test_corner_wrong_use(self):
        self.assertIn("right angle", self.refusal("corner", "0,0", "10,0"))
        self.assertIn("right angle", self.refusal("corner", "0,0", "10,0", "1,1", "2,2", "3,3"))
        self.assertIn("has no northing", self.refusal("corner", "0,0", "10,0", "1,1,1", "--station", "H", "--points",
                                                      self.put("points", POINTS)))
        self.assertIn("--instrument-height", self.refusal("corner", "0,0", "10,0", "1,1,1", "--station", "1,5,1",
                                                          "--instrument-height", "1e30"))

    # --- edge

    def test_point_of_an_edge_under_a_sight(self):
        # From (5, 10) west to the edge along north: (5, 0), half-way up from 15 to 20.
        found = self.record("edge", "0,0,15", "10,0,20", "270-00-00,60-00-00", "--station", "5,10,10")
        for key, value in [("northing", 5.0), ("easting", 0.0), ("height", 17.5)]:
            self.assertAlmostEqual(found[key], value, delta=1e-6)
        self.assertAlmostEqual(found["slope_distance"], math.hypot(10, 7.5), delta=1e-6)
        self.assertAlmostEqual(found["zenith_degrees"], math.degrees(math.atan2(10, 7.5)), delta=2 * ROUNDING)

    def test_edge_goes_on_beyond_its_points(self):
        # North-west from (5, 10): (15, 0); 15 plus half of 15. South-west: (-5, 0); 15 less 2.5.
        beyond, before = self.objects("edge", "0,0,15", "10,0,20", "315-00-00,60-00-00", "225-00-00,60-00-00",
                                      "--station", "5,10,10")
        for found, northing, height in [(beyond, 15.0, 22.5), (before, -5.0, 12.5)]:
            self.assertAlmostEqual(found["northing"], northing, delta=1e-5)
            self.assertAlmostEqual(found["height"], height, delta=1e-5)

    def test_orientation_and_face_of_sights_to_an_edge(self):
        # Azimuth 270 as reading 230 with circle zero at 40; in face two 50 and 300.
        one, two = self.rows("edge", "0,0,15", "10,0,20", "230-00-00,60-00-00", "50-00-00,300-00-00", "--station",
                             "5,10,10", "--orientation", "40-00-00")
        self.assertEqual(one["northing"], two["northing"])
        self.assertEqual(one["circle_reading"], "230-00-00.0")

    def test_table_of_sights_to_an_edge(self):
        table = self.put("sights", "station target hz v\nS mid 270-00-00 60-00-00\nT other 0-00-00 60-00-00\n")
        points = self.put("points", "id n e h\nS 5 10 10\n")
        rows = self.rows("edge", "0,0,15", "10,0,20", "--station", "S", "--points", points, "--sights", table)
        self.assertEqual([(row["target"], row["northing"]) for row in rows], [("mid", "5.0000")])

    def test_sights_that_miss_the_edge_are_refused_and_others_computed(self):
        parallel, vertical, good = self.rows("edge", "0,0,15", "10,0,20", "0-00-00,60-00-00", "270-00-00,0-00-00",
                                             "270-00-00,60-00-00", "--station", "5,10,10", code=NOT_COMPUTED)
        for row in (parallel, vertical):
            self.assertEqual((row["status"], row["northing"]), ("QSTD_DEGENERATE", ""))
            self.assertIn("nowhere", row["remark"])
        self.assertEqual(good["height"], "17.5000")

    def test_edge_behind_the_instrument_is_told(self):
        found = self.record("edge", "0,0,15", "10,0,20", "90-00-00,60-00-00", "--station", "5,10,10")
        self.assertIn("behind", found["remark"])
        self.assertTrue(found["computed"])

    def test_edge_refusals(self):
        for arguments, status in [(["0,0", "10,0,20"], "QSTD_MISSING_COORDINATES"),
                                  (["0,0,15", "10,0"], "QSTD_MISSING_COORDINATES"),
                                  (["0,0,15", "0,0,20"], "QSTD_COINCIDENT_POINTS"),
                                  (["0,10,15", "10,10,20"], "QSTD_DEGENERATE")]:
            with self.subTest(arguments):
                found = self.record("edge", *arguments, "270-00-00,60-00-00", "--station", "5,10,10", code=NOT_COMPUTED)
                self.assertEqual(found["status_name"], status)
                self.assertIsNotNone(found["remark"])

    def test_edge_wrong_use(self):
        self.assertIn("--station", self.refusal("edge", "0,0,1", "1,0,1", "0-00-00,60-00-00"))
        self.assertIn("nothing is sighted", self.refusal("edge", "0,0,1", "1,0,1", "--station", "5,5,5"))

    # --- column

    # Of a circle of radius 1 whose centre is 11 m off, the edges are asin(1/11) to both sides.
    OPENING = math.degrees(math.asin(1 / 11))

    def edges(self, middle=0.0):
        return [f"{(middle + side * self.OPENING) % 360:.9f}d,90-00-00" for side in (-1, 1)]

    def test_centre_and_radius_of_a_column(self):
        found = self.record("column", "0-00-00,90-00-00,10", *self.edges(), "--station", "100,200,5",
                            "--instrument-height", "1.5")
        # An edge off by half a unit, 1.5e-7 rad, at 11 m: some micrometres.
        self.assertAlmostEqual(found["northing"], 111.0, delta=2e-5)
        self.assertAlmostEqual(found["easting"], 200.0, delta=2e-5)
        self.assertAlmostEqual(found["radius"], 1.0, delta=2e-5)
        self.assertAlmostEqual(found["height"], 6.5, delta=1e-9)
        self.assertAlmostEqual(found["slope_distance"], 11.0, delta=2e-5)
        self.assertAlmostEqual(found["zenith_degrees"], 90.0, delta=ROUNDING)

    def test_edges_in_any_order_and_face(self):
        left, right = self.edges()
        face_two = f"{180 + self.OPENING:.9f}d,270-00-00"
        expected = self.record("column", "0-00-00,90-00-00,10", left, right)["radius"]
        for edges in [(right, left), (left, face_two), (left.split(",")[0], right.split(",")[0])]:
            with self.subTest(edges):
                self.assertAlmostEqual(self.record("column", "0-00-00,90-00-00,10", *edges)["radius"], expected,
                                       delta=2e-5)

    def test_slope_distance_to_the_face_is_reduced(self):
        # 10 m in the plan at 30 degrees up is 10 / cos 30; the face is read in face two: 300 for 60.
        found = self.record("column", f"180-00-00,300-00-00,{10 / math.cos(math.radians(30))}", *self.edges(),
                            "--station", "0,0,0")
        self.assertAlmostEqual(found["radius"], 1.0, delta=2e-5)
        self.assertAlmostEqual(found["height"], 10 * math.tan(math.radians(30)), delta=1e-6)

    def test_orientation_and_south_azimuth_turn_the_centre(self):
        east = self.record("column", "0-00-00,90-00-00,10", *self.edges(), "--station", "0,0,0", "--orientation",
                           "90-00-00")
        self.assertAlmostEqual(east["easting"], 11.0, delta=2e-5)
        south = self.record("column", "0-00-00,90-00-00,10", *self.edges(), "--station", "0,0,0", "--south-azimuth")
        self.assertAlmostEqual(south["northing"], -11.0, delta=2e-5)
        degrees = south["circle_reading_degrees"]
        self.assertAlmostEqual(min(degrees, 360.0 - degrees), 0.0, delta=3 * ROUNDING)

    def test_column_without_station_gives_the_radius_alone(self):
        found = self.record("column", "0-00-00,90-00-00,10", *self.edges())
        self.assertAlmostEqual(found["radius"], 1.0, delta=2e-5)
        for key in ("northing", "easting", "height", "circle_reading_units", "zenith_units", "slope_distance"):
            self.assertIsNone(found[key])
        self.assertIn("No --station", self.text("column", "0-00-00,90-00-00,10", *self.edges()))

    def test_column_above_a_station_without_height(self):
        found = self.record("column", "0-00-00,90-00-00,10", *self.edges(), "--station", "0,0")
        self.assertIsNone(found["height"])
        self.assertAlmostEqual(found["slope_distance"], 11.0, delta=2e-5)

    def test_column_refusals(self):
        for sights, status in [(["0-00-00,90-00-00,10", "5-00-00", "5-00-00"], "QSTD_DEGENERATE"),
                               (["0-00-00,90-00-00,10", "5-00-00", "185-00-00"], "QSTD_DEGENERATE"),
                               (["9-00-00,90-00-00,10", "355-00-00", "5-00-00"], "QSTD_MISSING_COORDINATES"),
                               (["0-00-00,0-00-00,10", "355-00-00", "5-00-00"], "QSTD_MISSING_COORDINATES")]:
            with self.subTest(sights):
                found = self.record("column", *sights, "--station", "0,0,0", code=NOT_COMPUTED)
                self.assertEqual(found["status_name"], status)
                self.assertIsNone(found["radius"])

    def test_column_wrong_use(self):
        self.assertIn("HZ,V,SD", self.refusal("column", "0-00-00,90-00-00", "5-00-00", "355-00-00"))
        self.assertIn("left edge", self.refusal("column", "0-00-00,90-00-00,10", "5", "355-00-00"))

    # --- what all share

    def test_instrument_heights_that_are_no_lengths_are_wrong_use(self):
        for arguments in (("rem", "0d,90d,40", "0d,80d"), ("distance", "0d,90d,30", "90d,90d,40"),
                          ("corner", "0,0", "10,0", "4,7,2")):
            for value in ("nan", "inf", "1e300", "1,5"):
                with self.subTest(arguments[0], value=value):
                    said = self.refusal(*arguments, "--station", "0,0,10", "--instrument-height", value)
                    self.assertIn(f'{arguments[0]}: --instrument-height "{value}": ', said)

    def test_every_verb_has_help_with_its_example(self):
        for verb in ("rem", "distance", "rod", "slope", "corner", "edge", "column"):
            with self.subTest(verb):
                self.assertIn(f"qstd {verb} ", self.text(verb, "--help"))

    def test_unit_is_a_name_for_lengths(self):
        metres = self.rows("corner", "0,0", "10,0", "4,7,2", "--station", "4,-30,0.5")
        feet = self.rows("corner", "0,0", "10,0", "4,7,2", "--station", "4,-30,0.5", "--unit", "ft")
        self.assertEqual(metres, feet)
        self.assertIn("  ft", self.text("corner", "0,0", "10,0", "4,7,2", "--unit", "ft"))

    def test_angles_in_other_forms(self):
        rows = self.rows("rem", "100,100,40", "100,50", "--angle", "gon")
        self.assertEqual((rows[0]["height_above_base"], rows[0]["zenith"]), ("40.0000", "50.0000g"))

    def test_columns_are_picked(self):
        self.assertEqual(self.text("corner", "0,0", "10,0", "4,7,2", "--csv", "--columns", "height,northing"),
                         "height,northing\n2.0000,4.0000\n")
        self.assertIn("no column", self.refusal("corner", "0,0", "10,0", "4,7,2", "--columns", "radius"))

    def test_no_negative_zero(self):
        # Everything here lies west or below by less than is printed.
        for arguments in [("corner", "0,0", "10,-1e-9", "4,7,-1e-9"),
                          ("slope", "0,0", "0,2,9.0000000001", "--design", "0,10", "4,8"),
                          ("distance", "0,0,1e-9", "5,0,0"),
                          ("rod", "-1e-9,0,1", "-1e-9,0,0.5", "--extension", "0.5"),
                          ("rem", "10-00-00,90-00-00,40", "9-59-59.99,90-00-00", "--decimals", "2"),
                          ("edge", "0,0,0", "10,-1e-9,0", "270-00-00,90-00-00", "--station", "5,10,1e-9"),
                          ("column", "0-00-00,90-00-00,10", "355-00-00", "5-00-00", "--station", "0,0,-1e-9")]:
            with self.subTest(arguments):
                self.assertNotRegex(self.text(*arguments), r"-0\.0*(\s|$)")
                self.assertNotRegex(self.text(*arguments, "--csv"), r"(^|,)-0\.0*(,|$)")
                self.assertNotRegex(self.text(*arguments, "--json"), r":-0\.0[,}]")

    def test_unknown_points_are_told(self):
        points = self.put("points", POINTS)
        self.assertIn("not in", self.refusal("corner", "A", "B", "Q", "--points", points))
        self.assertIn("no table of points", self.refusal("corner", "A", "B", "Q"))

    def test_figures_are_drawn(self):
        for name, arguments in [
                ("corner", ("0,0", "10,0", "4,7,2", "--station", "-20,20,0")),
                ("column", ("0-00-00,90-00-00,10", *self.edges(), "--station", "100,200,5")),
                ("edge", ("0,0,15", "10,0,20", "270-00-00,60-00-00", "315-00-00,60-00-00", "--station", "5,10,10")),
                ("rod", ("100,200,11.5", "100.3,200.4,11", "--extension", "0.5")),
                ("distance", ("0,0,5", "30,40,5", "30,100,7.5")),
                ("slope", ("100,200,10", "100,202,9.5", "100,203,8", "--design", "0,10", "4,8"))]:
            with self.subTest(name):
                self.expect(DONE, name, *arguments, "--svg", self.path(name + ".svg"))
                with open(self.path(name + ".svg"), "rb") as file:
                    sheet = ElementTree.fromstring(file.read())
                texts = " ".join("".join(part.itertext()) for part in sheet.iter() if part.tag.endswith("text"))
                self.assertIn({"corner": "corner", "column": "radius 1.0000", "edge": "edge", "rod": "0.5000",
                               "distance": "60.0000", "slope": "design slope"}[name], texts)

    def test_no_line_of_sight_goes_to_a_point_without_plan_coordinates(self):
        points = self.put("points", "id n e h\nX - - 9\nA 30 40 5\nB 50 60 7\n")
        self.expect(NOT_COMPUTED, "distance", "A", "X", "B", "--points", points, "--station", "1000,2000,1",
                    "--geojson", self.path("plan.json"))
        with open(self.path("plan.json"), encoding="utf-8") as file:
            features = json.load(file)["features"]
        ends = [each["geometry"]["coordinates"] for each in features if each["properties"]["role"] == "sight"]
        self.assertEqual(ends, [[[2000, 1000, 1], [40, 30, 5]], [[2000, 1000, 1], [60, 50, 7]]])

    def test_a_hidden_point_off_the_earth_is_refused(self):
        # The extension is stretched by measured over nominal spacing: 1 / 1e-300, 1e8 / 1e-305 (above every number) and
        # 1 / 1e-9, which is 1e9 m; or it starts from a prism 1e8 m off.
        for arguments in (("0,0,1", "0,0,0", "--spacing", "1e-300", "--extension", "1"),
                          ("0,0,0", "1e8,0,1", "--spacing", "1e-305", "--extension", "1e8"),
                          ("0,0,1", "0,0,0", "--spacing", "1e-9", "--extension", "1"),
                          ("0,0,0", "1e8,0,0", "--extension", "1")):
            found = self.record("rod", *arguments, code=NOT_COMPUTED)
            self.assertFalse(found["computed"], arguments)
            self.assertIn("beyond 100 000 km", found["remark"])
            self.assertIsNone(found["height"])
        # 1 / 2e-8 = 5e7 m down is still computed.
        found = self.record("rod", "0,0,1", "0,0,0", "--spacing", "2e-8", "--extension", "1")
        self.assertAlmostEqual(found["height"], -5e7, delta=1e-3)

    def test_slope_takes_the_table_before_typed_points(self):
        table = self.put("list", "id n e h\nb 0 2 9.5\na 0 2 9\n")
        rows = self.rows("slope", "0,0", "0,3,8", "0,1,8", "--list", table, "--design", "0,10", "4,8")
        self.assertEqual([row["id"] for row in rows], ["b", "a", "0,3,8", "0,1,8"])

    def test_a_column_whose_face_lies_behind_the_edges_is_refused(self):
        # The edges lie around north, the face was sighted to the south.
        text = self.text("column", "180d,90d,10", "355d", "5d", code=NOT_COMPUTED)
        self.assertIn("outside the two edges", text)
        self.assertNotIn("radius", text)


class MeasureCases(Family):
    """Published surveys, with the figures that were printed."""

    def test_distance_231_13_of_the_step_by_step_guide(self):
        # zsiki/GeoEasy at 7b3baf6, doc/step_by_step.rst "Whole circle bearing and distance"; coordinates
        # src/demodata/test1.coo. Printed: 293-08-21, 4029.889; tolerances 0.6", 0.0011.
        found = self.record("distance", "2281.76,88568.24", "3865.36,84862.54")
        self.assertAlmostEqual(found["azimuth_degrees"], 293 + 8 / 60 + 21 / 3600, delta=0.6 / 3600)
        self.assertAlmostEqual(found["horizontal_distance"], 4029.889, delta=0.0011)

    def test_distances_between_two_points_in_space(self):
        # zsiki/ls at 6c33a6d, calculation.py module test. Printed: 45 and 225 degrees, 70.7107, 71.4143; tolerances
        # 0.1", 0.00006.
        there, back = self.objects("distance", "200,100,20", "250,150,30", "200,100,20")
        for found, azimuth in [(there, 45.0), (back, 225.0)]:
            self.assertAlmostEqual(found["azimuth_degrees"], azimuth, delta=0.1 / 3600)
            self.assertAlmostEqual(found["horizontal_distance"], 70.7107, delta=6e-5)
            self.assertAlmostEqual(found["slope_distance"], 71.4143, delta=6e-5)

    def test_remote_elevation_over_detail_point_102(self):
        # zsiki/GeoEasy at 7b3baf6, doc/step_by_step.rst "Detail points"; readings src/demodata/test1.geo: detail point
        # 102 as base. A level sight gives minus its height difference by the published heights,
        # 123.932 + 1.64 - (126.819 + 1.2) = -2.447; tolerance 0.0016.
        found = self.record("rem", "244-18-26,89-01-24,143.526", "244-18-26,90-00-00")
        self.assertAlmostEqual(found["height_above_base"], -2.447, delta=0.0016)
        self.assertAlmostEqual(found["offset"], 0.0, delta=0.0016)


if __name__ == "__main__":
    unittest.main()
