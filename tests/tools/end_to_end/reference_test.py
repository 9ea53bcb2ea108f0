"""End-to-end tests of `qstd line`, `qstd arc` and `qstd plane`: command lines in, texts, files and exit codes out."""
import csv
import io
import json
import math
import random
import subprocess
import sys
import unittest

from case import DONE, NOT_COMPUTED, PROGRAM, UNREADABLE, WRONG_USE, Case, peak_memory

# The line from (0, 0) to (30, 40) has length 50 and runs along (0.6, 0.8); right of it is (-0.8, 0.6).
LINE = ["line", "0,0,50", "30,40,52"]

# Right of the start (0, 0) with tangent north and radius 100 lies the centre (0, 100).
RIGHT_ARC = ["arc", "--from", "0,0,10", "--tangent", "0d", "--radius", "100"]
LEFT_ARC = ["arc", "--from", "0,0,10", "--tangent", "0d", "--radius", "-100"]


def rows(text):
    return list(csv.DictReader(io.StringIO(text)))


class ReferenceCase(Case):
    def points(self, *arguments, **options):
        """The objects of the points, without those of the reference."""
        return [each for each in self.objects(*arguments, **options) if each["kind"] == "point"]

    def near(self, expected, actual, tolerance=1e-9):
        self.assertIsNotNone(actual)
        self.assertLessEqual(abs(expected - actual), tolerance, f"{actual} is not {expected}")

    def refuse(self, *arguments, saying, **options):
        done = self.expect(WRONG_USE, *arguments, **options)
        self.assertEqual(done.stdout, b"")
        self.assertIn(saying, done.stderr.decode())


class Reference(ReferenceCase):
    # --- line ---

    def test_a_point_is_referred_to_the_line(self):
        # (10, 13): along 10 * 0.6 + 13 * 0.8 = 16.4, right -10 * 0.8 + 13 * 0.6 = -0.2; foot 16.4 * (0.6, 0.8);
        # grade height 50 + 2 / 50 * 16.4 = 50.656, the point 0.156 below.
        table = self.put("points.csv", "id,n,e,h\n1,10,13,50.5\n")
        point, = self.points(*LINE, table)
        self.near(16.4, point["chainage"])
        self.near(-0.2, point["offset"])
        self.assertEqual(point["side"], "to the left")
        self.near(9.84, point["foot_northing"])
        self.near(13.12, point["foot_easting"])
        self.near(50.656, point["foot_height"])
        self.near(-0.156, point["height_difference"])
        self.assertEqual((point["computed"], point["status"]), (True, 0))

    def test_length_and_grade_of_the_line_come_first(self):
        line = self.objects(*LINE, "--point", "1,1")[0]
        self.assertEqual(line["kind"], "line")
        self.near(50.0, line["length"])
        self.near(4.0, line["grade"])
        self.assertIsNone(line["start_chainage"])

    def test_chainage_is_added_to_stations(self):
        first, second = self.objects(*LINE, "--chainage", "1200.5", "--point", "10,13")
        self.near(1200.5, first["start_chainage"])
        self.near(1250.5, first["end_chainage"])
        self.near(1216.9, second["chainage"])
        self.near(9.84, second["foot_northing"])

    def test_without_heights_there_is_no_height_difference(self):
        point, = self.points("line", "0,0", "30,40", "--point", "10,13,7")
        self.assertIsNone(point["height_difference"])
        self.assertIsNone(point["foot_height"])
        point, = self.points(*LINE, "--point", "10,13")
        self.assertIsNone(point["height_difference"])
        self.assertNotIn("grade", self.text("line", "0,0", "30,40", "--point", "10,13,7"))

    def test_grade_is_level_where_one_end_has_a_height(self):
        point, = self.points("line", "0,0", "30,40,100", "--point", "10,13,101")
        self.near(1.0, point["height_difference"])

    def test_table_and_typed_points_come_in_order(self):
        table = self.put("points.csv", "id n e\nb 1 1\na 2 2\n")
        known = self.put("known.csv", "id,n,e\nA,0,0\nB,30,40\nC,3,4\n")
        objects = self.points("line", "A", "B", table, "--point", "C", "--point", "6,8", "--points", known)
        self.assertEqual([each["id"] for each in objects], ["b", "a", "C", "6,8"])

    def test_standard_input_is_a_table(self):
        printed = self.text("line", "0,0", "30,40", "-", "--csv", input=b"id;n;e\n1;6;8\n")
        self.assertEqual(rows(printed)[0]["chainage"], "10.0000")

    def test_a_point_without_coordinates_fails_and_the_others_are_there(self):
        table = self.put("points.csv", "id,n,e,h\n1,,,5\n2,6,8,50.4\n")
        first, second = rows(self.text(*LINE, table, "--csv", code=NOT_COMPUTED))
        self.assertEqual(first["status"], "QSTD_MISSING_COORDINATES")
        self.assertEqual(first["chainage"], "")
        self.assertIn("no northing and easting", first["remark"])
        self.assertEqual(second["status"], "QSTD_OK")
        self.assertEqual(second["height_difference"], "0.0000")

    def test_coincident_ends_are_told_and_nothing_is_computed(self):
        text = self.text("line", "1,1", "1,1,5", "--point", "2,2", code=NOT_COMPUTED)
        self.assertIn("NOT COMPUTED: 1,1 and 1,1,5 coincide in plan", text)
        row, = rows(self.text("line", "1,1", "1,1", "--point", "2,2", "--csv", "--columns", "id,chainage,status",
                              code=NOT_COMPUTED))
        self.assertEqual(row, {"id": "", "chainage": "", "status": "QSTD_COINCIDENT_POINTS"})

    def test_columns_are_picked_and_ordered(self):
        text = self.text(*LINE, "--point", "10,13", "--csv", "--columns", "offset,id", "--decimals", "1")
        self.assertEqual(text, 'offset,id\n-0.2,"10,13"\n')

    def test_no_negative_zero(self):
        # A point of the line itself, computed with coordinates that are not exact in binary.
        for form in ([], ["--csv"], ["--json"]):
            text = self.text("line", "0,0", "0.3,-0.1", "--point", "0.9,-0.3", "--point", "0,0", *form)
            self.assertNotRegex(text, r"-0\.0000(\D|$)")
            self.assertNotIn("-0.0,", text)
        self.assertIn("on the line", self.text("line", "0,0", "0.3,-0.1", "--point", "0.9,-0.3"))

    def test_unit_changes_no_coordinate(self):
        metres = self.text(*LINE, "--point", "10,13", "--csv")
        self.assertEqual(self.text(*LINE, "--point", "10,13", "--csv", "--unit", "us-ft"), metres)
        self.assertRegex(self.text(*LINE, "--point", "10,13", "--unit", "ft"), r"length +50\.0000  ft\n")

    def test_wrong_use_of_line(self):
        self.refuse(*LINE, saying="no points to stake out")
        self.refuse(*LINE, "--point", "A", saying='point "A"')
        self.refuse(*LINE, "--point", "1,1", "--chainage", "ten", saying="chainage")
        self.refuse(*LINE, "--point", "1,1", "--columns", "station", saying="no column")
        self.refuse("line", "A", "0,1", "-", "--points", "-", saying="standard input", input=b"id,n,e\nA,0,0\n")

    def test_tables_that_cannot_be_used(self):
        done = self.expect(UNREADABLE, *LINE, self.put("points.csv", "id,n\n1,2\n"))
        self.assertIn("points.csv", done.stderr.decode())
        done = self.expect(UNREADABLE, *LINE, self.put("points.csv", "id,n,e\n1,2,3\n2,x,3\n"))
        self.assertIn(':3: n "x"', done.stderr.decode())
        self.assertEqual(done.stdout, b"")

    def test_a_table_without_rows_is_told_and_is_no_failure(self):
        for heading, verb in (("id,n,e", LINE), ("id,n,e", [*RIGHT_ARC, "--length", "50"]),
                              ("target,hz,v", ["plane", "0,0", "1,0", "--station", "5,5,0", "--sights"])):
            table = self.put("none.csv", heading + "\n# nothing\n")
            for form in ([], ["--csv"], ["--json"]):
                done = self.expect(DONE, *verb, table, *form)
                self.assertEqual(done.stderr.decode(),
                                 f"{table}: warning: no rows; each line below the column names is one\n")

    def test_stations_and_offsets_lead_back_to_the_points(self):
        numbers = random.Random(5)
        points = [(numbers.uniform(-200, 200), numbers.uniform(-200, 200)) for _ in range(200)]
        table = self.put("points.csv", "id,n,e\n" + "".join(f"{i},{n!r},{e!r}\n" for i, (n, e) in enumerate(points)))
        for (northing, easting), point in zip(points, self.points("line", "7,-3", "37,37", table)):
            along, right = point["chainage"], point["offset"]
            self.near(northing, 7 + 0.6 * along - 0.8 * right, 1e-9)
            self.near(easting, -3 + 0.8 * along + 0.6 * right, 1e-9)

    # --- arc ---

    def test_parameters_of_an_arc_by_radius_and_deflection(self):
        # Turned by 90 degrees: length 50 pi, tangents of length R, end at (100, 100), chord 100 * sqrt 2.
        arc, = self.objects(*RIGHT_ARC, "--deflection", "90d")
        self.assertEqual((arc["kind"], arc["turn"]), ("arc", "right"))
        self.near(100.0, arc["radius"])
        self.near(50.0 * math.pi, arc["length"])
        self.near(100.0, arc["tangent_length"], 1e-6)
        self.near(100.0 * math.sqrt(2.0), arc["chord"], 1e-6)
        self.near(0.0, arc["centre_northing"], 1e-6)
        self.near(100.0, arc["centre_easting"], 1e-6)
        self.near(100.0, arc["end_northing"], 1e-6)
        self.near(100.0, arc["end_easting"], 1e-6)
        self.near(100.0, arc["tangent_point_northing"], 1e-6)
        self.near(0.0, arc["tangent_point_easting"], 1e-6)
        self.assertEqual(arc["end_azimuth_units"], 5184000)

    def test_three_definitions_give_one_arc(self):
        length = repr(50.0 * math.pi)
        definitions = [[*RIGHT_ARC, "--deflection", "90d"], [*RIGHT_ARC, "--end-tangent", "90d"],
                       [*RIGHT_ARC, "--length", length],
                       ["arc", "--from", "0,0,10", "--to", "100,100", "--via", "100,0"],
                       ["arc", "--from", "0,0,10", "--to", "100,100", "--tangent", "0d", "--end-tangent", "90d"]]
        for definition in definitions:
            arc, point = self.objects(*definition, "--point", "60,50,12")
            self.near(100.0, arc["radius"], 1e-6)
            self.near(50.0 * math.pi, arc["length"], 1e-3)
            # (60, 50) lies 50 to the west and 60 to the north of the centre: atan(60 / 50) from the start radial,
            # at a distance of 10 * sqrt 61 from the centre. One unit of angle is 0.5 mm on this arc.
            self.near(100.0 * math.atan2(60.0, 50.0), point["along"], 1e-3)
            self.near(100.0 - 10.0 * math.sqrt(61.0), point["offset"], 1e-6)
            self.near(2.0, point["height_difference"])

    def test_an_arc_to_the_left_is_the_mirror_image(self):
        right = self.points(*RIGHT_ARC, "--deflection", "70d", "--point", "60,50", "--point", "-5,2", "--point",
                            "110,70")
        left = self.points(*LEFT_ARC, "--deflection", "70d", "--point", "60,-50", "--point", "-5,-2", "--point",
                           "110,-70")
        for one, other in zip(right, left):
            self.near(one["along"], other["along"], 1e-3)
            self.near(one["offset"], -other["offset"], 1e-3)
        arc = self.objects(*LEFT_ARC, "--deflection", "70d")[0]
        self.assertEqual((arc["turn"], arc["radius"]), ("left", -100.0))
        self.near(290.0, arc["end_azimuth_degrees"])
        self.near(70.0, arc["central_angle_degrees"], 1e-4)

    def test_before_the_start_and_beyond_the_end_the_tangents_count(self):
        # Quarter circle: the end tangent runs east from (100, 100).
        before, beyond = self.points(*RIGHT_ARC, "--deflection", "90d", "--point", "-20,3", "--point", "96,130")
        self.near(-20.0, before["along"], 1e-3)
        self.near(3.0, before["offset"], 1e-3)
        self.near(50.0 * math.pi + 30.0, beyond["along"], 1e-3)
        self.near(4.0, beyond["offset"], 1e-3)

    def test_design_height_runs_to_an_end_that_closes(self):
        closed = ["arc", "--from", "0,0,10", "--to", "100,100,20", "--via", "100,0", "--point", "100,100,21"]
        arc, point = self.objects(*closed)
        self.assertEqual(arc["design_height"], "from 10.0000 to 20.0000")
        self.near(0.0, arc["misclosure"], 1e-6)
        self.near(1.0, point["height_difference"], 1e-3)
        arc, point = self.objects("arc", "--from", "0,0,10", "--to", "100,100", "--via", "100,0", "--point", "100,100,21")
        self.assertEqual(arc["design_height"], "10.0000 all along")
        self.near(11.0, point["height_difference"], 1e-9)

    def test_an_end_off_the_arc_is_told(self):
        # From (0, 0) north, tangent point (50, 0): the arc of radius 50 ends in (50, 50), 10 m before the end given.
        arc, = self.objects("arc", "--from", "0,0", "--to", "50,60", "--tangent", "0d", "--end-tangent", "90d",
                            code=NOT_COMPUTED)
        self.near(10.0, arc["misclosure"], 1e-6)
        self.assertIn("does not end in 50,60, by 10.0000 m", arc["warnings"][0])
        self.assertTrue(arc["computed"])

    def test_south_azimuths_turn_both_ways(self):
        north, = self.objects(*RIGHT_ARC, "--deflection", "90d")
        south, = self.objects("arc", "--from", "0,0,10", "--tangent", "180d", "--radius", "100", "--deflection", "90d",
                              "--south-azimuth")
        self.near(180.0, south["start_azimuth_degrees"])
        self.near(270.0, south["end_azimuth_degrees"])
        for column in ("centre_northing", "centre_easting", "end_northing", "end_easting"):
            self.near(north[column], south[column], 1e-6)

    def test_arcs_that_cannot_be_formed(self):
        for arguments, status in ((["--tangent", "0d", "--radius", "0", "--length", "5"], "QSTD_REJECTED"),
                                  (["--tangent", "0d", "--radius", "5", "--length", "-5"], "QSTD_REJECTED"),
                                  (["--tangent", "0d", "--radius", "5", "--deflection", "0d"], "QSTD_DEGENERATE"),
                                  (["--to", "0,0", "--tangent", "0d", "--end-tangent", "9d"], "QSTD_COINCIDENT_POINTS"),
                                  (["--to", "9,9", "--via", "0,0"], "QSTD_COINCIDENT_POINTS"),
                                  (["--to", "9,9", "--via", "3,3"], "QSTD_DEGENERATE"),
                                  (["--to", "9,0", "--tangent", "0d", "--end-tangent", "180d"], "QSTD_OK")):
            for point in ([], ["--point", "1,1"]):
                one, = self.objects("arc", "--from", "0,0", *arguments, *point, code=NOT_COMPUTED)
                self.assertEqual((one["computed"], one["status_name"]), (False, status), arguments)
                self.assertIsNotNone(one["remark"])
                self.assertEqual(one["kind"], "point" if point else "arc")

    def test_an_arc_that_is_none_says_what_to_look_at(self):
        # Over a point beyond the end the way leads back: no circle touches both tangents. Tangents that meet in the
        # start leave no length for one. A radius of 0.05 mm is below the least, 0.1 mm.
        for arguments, words in ((["--via", "20,0", "--to", "10,0"], "the coordinates of 20,0"),
                                 (["--to", "0,10", "--tangent", "0d", "--end-tangent", "90d"], "the two azimuths"),
                                 (["--tangent", "0d", "--radius", "5e-5", "--deflection", "9d"],
                                  "a radius below 0.0001")):
            text = self.text("arc", "--from", "0,0", *arguments, code=NOT_COMPUTED)
            self.assertIn(words, text)
            self.assertEqual(text.count("azimuths"), 1 if "azimuths" in words else 0)

    def test_wrong_use_of_arc(self):
        start = ["arc", "--from", "0,0"]
        self.refuse(*start, saying="--tangent")
        self.refuse(*start, "--tangent", "0d", saying="radius is missing")
        self.refuse(*start, "--tangent", "0d", "--radius", "5", saying="where the arc ends is missing")
        self.refuse(*start, "--tangent", "0d", "--radius", "5", "--length", "5", "--deflection", "9d", saying="one of")
        self.refuse(*start, "--to", "5,5", saying="no direction")
        self.refuse(*start, "--to", "5,5", "--tangent", "0d", saying="no direction")
        self.refuse(*start, "--to", "5,5", "--via", "5,0", "--tangent", "0d", saying="--via gives both tangents")
        self.refuse(*start, "--to", "5,5", "--via", "5,0", "--radius", "3", saying="no --radius")
        self.refuse(*start, "--via", "5,0", "--tangent", "0d", "--radius", "3", "--length", "1", saying="--to")
        self.refuse(*start, "--tangent", "10", "--radius", "3", "--length", "1", saying="no unit")

    def test_bare_angles_take_the_form_of_the_option(self):
        arc, = self.objects("arc", "--from", "0,0", "--tangent", "100", "--radius", "5", "--deflection", "50", "--angle",
                            "gon")
        self.near(90.0, arc["start_azimuth_degrees"])
        self.near(135.0, arc["end_azimuth_degrees"])
        self.assertIn("150.0000g", self.text("arc", "--from", "0,0", "--tangent", "100", "--radius", "5",
                                             "--deflection", "50", "--angle", "gon"))

    def test_a_full_circle_is_named(self):
        # 2 pi 10 = 62.83185 is the circumference; typed with four decimals it is a full circle, too.
        for length in ("62.8318530718", "62.8319"):
            arc, = self.objects("arc", "--from", "0,0", "--tangent", "0d", "--radius", "-10", "--length", length)
            self.near(20.0 * math.pi, arc["length"])
            self.assertEqual(arc["remark"], "a full circle")

    def test_a_length_beyond_the_full_circle_is_refused(self):
        # The library would cut it; 62.834 is 2 mm too long.
        for radius in ("10", "-10"):
            self.refuse("arc", "--from", "0,0", "--tangent", "0d", "--radius", radius, "--length", "62.834",
                        saying='length "62.834": more than the full circle, 62.832')

    def test_points_far_behind_an_arc_are_taken_on_the_reversed_one(self):
        # The start tangent runs north along easting 0: distance along and offset are northing and easting. Either way
        # the library takes the point for one beyond the end, over the back of the arc.
        for turn, east in (("-100", -150), ("100", 150)):
            point, = self.points("arc", "--from", "0,0,5", "--tangent", "0d", "--radius", turn, "--deflection", "60d",
                                 "--point", f"-200,{east},9")
            self.near(-200.0, point["along"], 1e-3)
            self.near(east, point["offset"], 1e-3)
            self.near(4.0, point["height_difference"])
            self.assertIn("computed on the reversed arc", point["remark"])

    def test_points_of_the_second_half_of_an_arc_are_on_it(self):
        # To the left about (0, -100), and its mirror image: 240 degrees on, 7 inside, of 300.
        turn = math.radians(240)
        for sign in (1, -1):
            place = f"{93 * math.sin(turn)!r},{sign * (-100 + 93 * math.cos(turn))!r}"
            point, = self.points("arc", "--from", "0,0", "--tangent", "0d", "--radius", str(-100 * sign),
                                 "--deflection", "300d", "--point", place)
            self.near(-7.0 * sign, point["offset"], 1e-3)
            self.near(100 * turn, point["along"], 1e-3)

    def test_an_arc_at_large_coordinates_ends_on_its_tangent(self):
        # Tangents of 50 m, by 3-4-5 directions, that meet in the middle: the arc ends where they do.
        north, east = 6600000, 600000
        arc, = self.objects("arc", "--from", f"{north - 30},{east - 40}", "--via", f"{north},{east}", "--to",
                            f"{north - 30},{east + 40}")
        self.assertLess(arc["misclosure"], 2e-4)
        self.assertIn("computed in axes from the start of the arc", arc["remark"] or "")
        self.assertEqual(arc["warnings"], [])

    # --- plane ---

    WALL = ["plane", "10,0,0", "10,10,0", "--station", "0,0,0", "--instrument-height", "1.5"]

    def test_a_sight_onto_a_wall(self):
        # At azimuth 45 degrees the wall 10 m north is met 10 m along it; at zenith 45 degrees hypot(10, 10) higher.
        level, rising = self.points(*self.WALL, "--sight", "45d,90d", "--sight", "45d,45d")
        for point in (level, rising):
            self.near(10.0, point["northing"], 1e-6)
            self.near(10.0, point["easting"], 1e-6)
            self.near(10.0, point["along"], 1e-6)
        self.near(1.5, level["height"])
        self.near(1.5 + math.hypot(10.0, 10.0), rising["height_above_first"], 1e-6)
        self.near(20.0, rising["slope_distance"], 1e-6)

    def test_either_face_and_the_orientation_of_the_circle(self):
        point, = self.points(*self.WALL, "--sight", "205d,315d", "--orientation", "20d")
        self.near(10.0, point["along"], 1e-6)
        self.near(1.5 + math.hypot(10.0, 10.0), point["height"], 1e-6)
        point, = self.points(*self.WALL, "--sight", "225d,90d", "--south-azimuth")
        self.near(10.0, point["along"], 1e-6)
        self.assertIsNone(point["remark"])

    def test_measured_distance_tells_how_far_behind_the_wall_a_point_lies(self):
        point, = self.points(*self.WALL, "--sight", "45d,45d,20.25")
        self.near(0.25, point["beyond_plane"], 1e-6)

    def test_sights_that_meet_no_wall(self):
        parallel, vertical, behind = self.points(*self.WALL, "--sight", "90d,80d", "--sight", "5d,180d", "--sight",
                                                 "180d,90d", code=NOT_COMPUTED)
        self.assertEqual((parallel["computed"], parallel["northing"]), (False, None))
        self.assertIn("parallel", parallel["remark"])
        self.assertIn("vertical", vertical["remark"])
        self.assertTrue(behind["computed"])
        self.assertIn("behind the instrument", behind["remark"])
        self.assertIsNone(behind["slope_distance"])

    def test_heights_that_are_not_known(self):
        point, = self.points("plane", "10,0", "10,10", "--station", "0,0,5", "--sight", "45d,90d")
        self.assertEqual(point["status_name"], "QSTD_HEIGHT_UNDETERMINED")
        self.near(5.0, point["height"])
        self.assertIsNone(point["height_above_first"])
        point, = self.points("plane", "10,0,5", "10,10,5", "--station", "0,0", "--sight", "45d,90d")
        self.assertIsNone(point["height"])
        self.assertIsNone(point["slope_distance"])
        self.near(10.0, point["along"], 1e-6)

    def test_a_plane_in_space(self):
        # The vertical plane N = 0 from the south: what lies above the baseline has a negative offset, from the north
        # a positive one.
        for station, azimuth, across in (("-10,5,0", "0d", -1.5), ("10,5,0", "180d", 1.5)):
            point, = self.points("plane", "0,0,0", "0,10,0", "--inclined", "--station", station,
                                 "--instrument-height", "1.5", "--sight", azimuth + ",90d")
            self.near(5.0, point["along"], 1e-6)
            self.near(across, point["across"], 1e-6)
            self.assertEqual(point["side"], "above")
        # A floor seen from 10 m above at 45 degrees is met 10 m away; upwards it is not met.
        floor = ["plane", "0,0,0", "0,10,0", "10,0,0", "--station", "0,0,10"]
        met, missed = self.points(*floor, "--sight", "0d,135d", "--sight", "0d,45d", code=NOT_COMPUTED)
        self.near(10.0, met["northing"], 1e-6)
        self.assertEqual(met["side"], "to the left")
        self.assertIn("does not run towards", missed["remark"])

    def test_planes_that_cannot_be_formed(self):
        sight = ["--station", "0,0,0", "--sight", "45d,90d"]
        for arguments, status in ((["1,1,1", "1,1,5"], "QSTD_COINCIDENT_POINTS"),
                                  (["1,1,1", "1,1,5", "--inclined"], "QSTD_DEGENERATE"),
                                  (["1,1,1", "2,2,2", "3,3,3"], "QSTD_DEGENERATE"),
                                  (["1,1,1", "2,2,2", "2,2,2"], "QSTD_COINCIDENT_POINTS"),
                                  (["1,1,1", "2,2", "--inclined"], "QSTD_MISSING_COORDINATES")):
            one, = self.objects("plane", *arguments, *sight, code=NOT_COMPUTED)
            self.assertEqual((one["computed"], one["status_name"]), (False, status), arguments)
        one, = self.objects("plane", "10,0", "10,10", "--station", "10,3", "--sight", "0d,90d", code=NOT_COMPUTED)
        self.assertEqual(one["status_name"], "QSTD_DEGENERATE")

    def test_sights_of_a_table(self):
        table = self.put("sights.csv", "station,target,hz,v,sd\nS,a,45d,90d,\nT,b,45d,90d,\nS,c,225d,270d,15\n")
        points = self.put("points.csv", "id,n,e,h\nS,0,0,0\nA,10,0,0\nB,10,10,0\n")
        wall = ["plane", "A", "B", "--points", points, "--sights", table]
        objects = self.points(*wall, "--station", "S")
        self.assertEqual([each["target"] for each in objects], ["a", "c"])
        self.near(15.0 - math.hypot(10.0, 10.0), objects[1]["beyond_plane"], 1e-6)
        self.refuse(*wall, "--station", "0,0,0", saying="--sights")
        done = self.expect(UNREADABLE, "plane", "A", "B", "--points", points, "--station", "S", "--sights",
                           self.put("bad.csv", "target,hz,v\na,45d,\n"))
        self.assertIn("bad.csv:2: v", done.stderr.decode())

    def test_wrong_use_of_plane(self):
        self.refuse("plane", "10,0", "10,10", "--sight", "45d,90d", saying="--station")
        self.refuse("plane", "10,0", "10,10", "--station", "0,0", saying="no sights")
        self.refuse("plane", "10,0", "10,10", "--station", "0,0", "--sight", "45d", saying="HZ,V")
        self.refuse("plane", "1,0,0", "1,9,0", "5,5,5", "--inclined", "--station", "0,0,0", "--sight", "45d,90d",
                    saying="--inclined")

    def test_instrument_heights_that_are_no_lengths_are_wrong_use(self):
        for value, saying in (("nan", "not a length; write a number such as 1.55"), ("inf", "not a length"),
                              ("-inf", "not a length"), ("1e300", "beyond 100 000 km")):
            self.refuse("plane", "10,0,100", "10,20,100", "--station", "0,5,100", "--sight", "0d,80d",
                        f"--instrument-height={value}", saying=f'--instrument-height "{value}": {saying}')

    # --- figures, length ---

    def test_figures_are_drawn(self):
        table = self.put("points.csv", "id,n,e\n" + "".join(f"{i},{i * 6 + 1},{i * 8}\n" for i in range(8)))
        # One foot each, [easting, northing]. Point 3 is (19, 24): along the line 19 * 0.6 + 24 * 0.8 = 30.6, its foot
        # 30.6 * (0.6, 0.8). From the centre (0, 100) of the arc it lies (19, -76) away, its foot a radius that way.
        # The wall 10 m north is met at azimuth 45 degrees 10 m along it; its baseline has height 0.
        share = 100.0 / math.hypot(19.0, 76.0)
        for arguments, expected in (([*LINE, table], [30.6 * 0.8, 30.6 * 0.6]),
                                    ([*RIGHT_ARC, "--deflection", "90d", table], [100.0 - 76.0 * share, 19.0 * share]),
                                    ([*self.WALL, "--sight", "45d,60d"], [10.0, 10.0, 0.0])):
            self.expect(DONE, *arguments, "--svg", "plan.svg", "--dxf", "plan.dxf", "--geojson", "plan.json")
            with open(self.path("plan.svg"), encoding="utf-8") as file:
                svg = file.read()
            self.assertIn("<svg", svg)
            self.assertIn(">stationing<", svg)
            self.assertIn(">offset<", svg)
            with open(self.path("plan.dxf"), encoding="ascii") as file:
                self.assertIn("STATIONING", file.read())
            with open(self.path("plan.json"), encoding="utf-8") as file:
                features = json.load(file)["features"]
            feet = [each["geometry"]["coordinates"] for each in features if each["properties"]["role"] == "foot"]
            self.assertTrue(any(math.dist(expected, foot[:len(expected)]) < 1e-3 for foot in feet), (expected, feet))

    def test_offsets_are_drawn_to_the_true_side(self):
        # East of a line that runs north is its right; X in the drawing is the easting.
        self.expect(DONE, "line", "0,0", "100,0", "--point", "50,7", "--dxf", "plan.dxf")
        with open(self.path("plan.dxf"), encoding="ascii") as file:
            words = file.read().split("\n")
        codes = list(zip(words[0::2], words[1::2]))
        layer = next(i for i, (code, value) in enumerate(codes)
                     if value == "OFFSET" and code.strip() == "8" and codes[i - 1][1] == "LINE")
        ends = {code.strip(): float(value) for code, value in codes[layer + 1:layer + 5]}
        self.assertEqual((ends["10"], ends["20"], ends["11"], ends["21"]), (0.0, 50.0, 7.0, 50.0))

    @unittest.skipUnless(sys.platform == "linux", "reads the peak memory as Linux tells it")
    def test_memory_does_not_grow_with_the_list(self):
        line = "".join(f"{i},{i % 997}.5,{i % 1013}.25,{i % 7}\n" for i in range(1000))
        peaks = [peak_memory(*LINE, self.put(f"points{count}.csv", "id,n,e,h\n" + line * count)) for count in (1, 100)]
        # 100 000 points are 2 MB of text and would be more as records.
        self.assertLess(peaks[1] - peaks[0], 1024)

    def test_no_offset_is_drawn_from_a_height_that_is_not_known(self):
        # The line of sight at azimuth 90 degrees from (5, -10) meets the plane E = 0 in (5, 0), whatever its height;
        # from height 4 it meets it 3 below the first point, at height 7.
        plane = ["plane", "0,0,7", "10,0,9", "--sight", "90d,90d", "--geojson", "plan.json", "--station"]
        for station, offsets in (("5,-10", []), ("5,-10,4", ["3.000"])):
            self.expect(DONE, *plane, station, "--decimals", "3")
            with open(self.path("plan.json"), encoding="utf-8") as file:
                features = json.load(file)["features"]
            labels = [each["properties"]["label"] for each in features if each["properties"]["role"] == "offset"]
            self.assertEqual(labels, offsets)
            sighted, = [each for each in features if each["properties"]["role"] == "sighted"]
            self.near(0.0, sighted["geometry"]["coordinates"][0], 1e-6)
            self.near(5.0, sighted["geometry"]["coordinates"][1], 1e-6)


class ReferenceCases(ReferenceCase):
    def test_setting_out_along_a_line_of_the_town_network(self):
        # zsiki/GeoEasy at 7b3baf6, doc/reference_guide.rst, "Setting out": local N there is positive to the left.
        known = self.put("points.csv", "id,n,e,h\n14,4415.08,91164.16,130.0\n15,347.66,86808.18,\n"
                                       "12,1475.28,90661.58,\n16,3525.12,90050.24,\n")
        points = self.points("line", "14", "15", "--point", "12", "--point", "16", "--points", known)
        for point, station, offset in zip(points, (2373.70, 1421.55), (-1805.70, 109.76)):
            self.near(station, point["chainage"], 0.0051)
            self.near(offset, point["offset"], 0.0051)

    def test_arc_between_tangents_of_the_town_network(self):
        # zsiki/GeoEasy at 7b3baf6, doc/reference_guide.rst, "Arc setting out": tangents 13-11-15, radius 500, tangent
        # length 1510.37, alpha 143-21-59; main points ie, ik (middle), iv.
        arc, middle, end = self.objects("arc", "--from", "3050.712,90023.538", "--to", "2113.983,90177.72", "--tangent",
                                        "98-58-11.84", "--end-tangent", "242-20-10.81", "--point", "2638.032,90438.941",
                                        "--point", "2113.983,90177.72")
        self.near(500.0, arc["radius"], 0.01)
        self.near(1251.108, arc["length"], 0.01)
        self.near(143 + 21 / 60 + 59 / 3600, arc["central_angle_degrees"], 2 / 3600)
        self.near(1510.37, arc["tangent_length"], 0.01)
        self.near(625.554, middle["along"], 0.01)
        self.near(0.0, middle["offset"], 0.01)
        self.near(1251.108, end["along"], 0.01)
        self.near(0.0, end["offset"], 0.01)

    def test_horizontal_curve_of_a_textbook(self):
        # J. Mahun, Open Access Surveying Library, "Curves and Coordinates": jerrymahun.com,
        # open-access/19-vii-curves/55-chapter-c-horizontal-curves: R 500.00 ft, central angle 55 degrees, L 479.965,
        # T 260.284, long chord 461.749.
        start = ["arc", "--from", "0,0", "--tangent", "0-00-00", "--radius", "500", "--unit", "ft"]
        for end in (["--end-tangent", "55-00-00"], ["--deflection", "55-00-00"], ["--length", "479.965544"]):
            arc, = self.objects(*start, *end)
            self.near(479.965, arc["length"], 0.0011)
            self.near(260.284, arc["tangent_length"], 0.0011)
            self.near(461.749, arc["chord"], 0.0011)
            self.near(55.0, arc["central_angle_degrees"], 1.01 / 3600 / 16)
        self.assertRegex(self.text(*start, "--deflection", "55d"), r"arc length +479\.9655  ft\n")


if __name__ == "__main__":
    unittest.main()
