"""End-to-end tests of `qstd replay`: files of calls in, recordings and comparisons out."""
import json
import math
import os
import subprocess
import sys
import unittest

from case import DONE, EXAMPLES, NOT_COMPUTED, PROGRAM, SOURCES, UNREADABLE, WRONG_USE, Case, peak_memory

CALLS = EXAMPLES / "replay" / "calls.jsonl"
RESULTS = EXAMPLES / "replay" / "results.jsonl"

CIRCLE = 360 * 3600 * 16
UNIT = math.pi / (CIRCLE / 2)

HEIGHT = '{"call":"QSTNSeaLevelCalcByBM","benchmarkHeight":1,"reflectorHeight":2,"verticalDifference":0.5}\n'
HEIGHT_RESULT = '{"call":"QSTNSeaLevelCalcByBM","value":2.5}\n'  # 1 + 2 - 0.5

# The known points of the town that the examples use, and the station of the simulated instrument.
P11, P12, P14, P15, P16 = ((2815.22, 91515.44), (1475.28, 90661.58), (4415.08, 91164.16), (347.66, 86808.18),
                           (3525.12, 90050.24))
P231, P13 = (2281.76, 88568.24), (3865.36, 84862.54)
STATION = (3587.521, 89562.498, 99.999)
AXIS = STATION[2] + 1.5
ORIENTATION = (247 * 3600 + 5 * 60 + 34.4) * 16


def lines_of(path):
    """The values of a file of JSON lines."""
    text = path.read_text(encoding="utf-8")
    return [json.loads(line) for line in text.splitlines() if line and not line.startswith("#")]


def degrees(whole, minutes=0, seconds=0.0):
    return whole + minutes / 60 + seconds / 3600


def azimuth(start, end):
    return math.atan2(end[1] - start[1], end[0] - start[0])


def polar(start, direction, distance):
    return start[0] + distance * math.cos(direction), start[1] + distance * math.sin(direction)


def plan(point):
    return point["northing"], point["easting"]


def along_and_offset(start, end, point):
    """By rotation into the direction of the line; the offset to the right is positive."""
    direction = azimuth(start, end)
    north, east = point[0] - start[0], point[1] - start[1]
    return (north * math.cos(direction) + east * math.sin(direction),
            east * math.cos(direction) - north * math.sin(direction))


class CommandLine(Case):
    def test_a_recording_has_a_line_for_each_call(self):
        calls = self.put("calls.jsonl", "# two heights\n\n" + HEIGHT + HEIGHT)
        self.assertEqual(self.text("replay", calls), 2 * HEIGHT_RESULT)

    def test_calls_come_from_standard_input_too(self):
        done = self.expect(DONE, "replay", "-", input=HEIGHT.encode())
        self.assertEqual(done.stdout.decode(), HEIGHT_RESULT)

    def test_output_goes_to_a_file(self):
        calls = self.put("calls.jsonl", HEIGHT)
        self.assertEqual(self.text("replay", calls, "--output", self.path("out.jsonl")), "")
        with open(self.path("out.jsonl"), encoding="utf-8") as file:
            self.assertEqual(file.read(), HEIGHT_RESULT)

    def test_a_recording_is_found_equal(self):
        calls, recording = self.put("calls.jsonl", HEIGHT), self.put("recording.jsonl", HEIGHT_RESULT)
        done = self.expect(DONE, "replay", calls, "--expect", recording)
        self.assertEqual(done.stdout.decode(), f"1 result compared with {recording}: all equal\n")
        self.assertEqual(done.stderr, b"")

    def test_a_difference_is_told_and_gives_1(self):
        calls = self.put("calls.jsonl", "\n" + HEIGHT)
        recording = self.put("recording.jsonl", HEIGHT_RESULT.replace("2.5", "2.5000000000000004"))
        done = self.expect(NOT_COMPUTED, "replay", calls, "--expect", recording)
        self.assertEqual(done.stderr.decode(),
                         f"{recording}:1: value: expected 2.5000000000000004, got 2.5, 1 unit in the last place apart "
                         f"({calls}:2: QSTNSeaLevelCalcByBM)\n")
        self.expect(DONE, "replay", calls, "--expect", recording, "--ulp", "1")

    def test_lines_that_are_no_calls_give_3_and_nothing_is_written(self):
        calls = self.put("calls.jsonl", HEIGHT + '{"call":"QSTNSeaLevelCalcByBm"}\n')
        done = self.expect(UNREADABLE, "replay", calls, "--output", self.path("out.jsonl"))
        self.assertEqual(done.stderr.decode(),
                         f'{calls}:2: no call is named "QSTNSeaLevelCalcByBm"; did you mean "QSTNSeaLevelCalcByBM"?\n')
        self.assertEqual(os.listdir(self.folder.name), ["calls.jsonl"])

    def test_a_file_without_calls_is_told_and_is_no_failure(self):
        done = self.expect(DONE, "replay", "/dev/null")
        self.assertEqual((done.stdout, done.stderr),
                         (b"", b"/dev/null: warning: no calls; each line is one, as a JSON object\n"))

    def test_bytes_that_are_no_text_are_told_once(self):
        calls = self.put("calls", b"# calls\n" + 30 * b"\0\1\n")
        done = self.expect(UNREADABLE, "replay", calls)
        self.assertEqual(done.stderr.decode(), f"{calls}:2: column 1: not JSON: a zero byte\n")

    def test_wrong_use_is_told_and_gives_2(self):
        calls = self.put("calls.jsonl", HEIGHT)
        for arguments in (["replay"], ["replay", calls, "--ulp", "-1"], ["replay", calls, "--ulp", "x"],
                          ["replay", "-", "--expect", "-"], ["replay", calls, "--nonsense"],
                          ["replay", calls, "--output", self.path("none/out")]):
            done = self.expect(WRONG_USE, *arguments, input=b"")
            self.assertEqual(done.stdout, b"", arguments)
            self.assertNotEqual(done.stderr, b"", arguments)

    def test_locale_does_not_matter(self):
        calls = self.put("calls.jsonl", HEIGHT)
        for locale in ("C", "de_DE.UTF-8", "tr_TR.UTF-8"):
            self.assertEqual(self.text("replay", calls, environment={"LC_ALL": locale}), HEIGHT_RESULT)


class Robustness(Case):
    def test_any_bytes_are_answered(self):
        for content in (b"\0", b"\xff\xfe{\0}\0", b"[" * 1000000, b'{"call":' * 100000, b'"' * 1000, b"{}" * 1000,
                        b'{"call":"QSTNMultiResect","observations":[' + b"1," * 100000 + b"1]}",
                        b'{"call":"QREFCalc","point":{"northing":1' + b"0" * 400 + b"}}", b"a" * (1 << 21)):
            done = self.expect(UNREADABLE, "replay", self.put("calls.jsonl", content))
            self.assertEqual(done.stdout, b"")
            self.assertLess(len(done.stderr), 2000)
            done.stderr.decode()

    def test_memory_does_not_grow_with_the_calls(self):
        def peak(count):
            return peak_memory("replay", self.put("calls.jsonl", HEIGHT * count))

        self.assertLess(peak(100000), peak(100) + 2048)


class Examples(Case):
    """The recording of the example calls against what was published, or worked out here by other formulas."""

    @classmethod
    def setUpClass(cls):
        cls.calls = lines_of(CALLS)
        cls.results = lines_of(RESULTS)

    def result(self, call, identifier=None):
        found = [line for line in self.results if line["call"] == call and line.get("id") == identifier]
        self.assertGreaterEqual(len(found), 1, (call, identifier))
        return found[0]

    def arguments(self, call, identifier=None):
        return next(line for line in self.calls if line["call"] == call and line.get("id") == identifier)

    def assert_point(self, expected, point, tolerance):
        for one, other in zip(expected, (point["northing"], point["easting"], point["height"])):
            self.assertLessEqual(abs(one - other), tolerance, (expected, point))

    def assert_angle(self, expected_degrees, units, tolerance_units=1):
        turned = (units - expected_degrees * 57600 + CIRCLE / 2) % CIRCLE - CIRCLE / 2
        self.assertLessEqual(abs(turned), tolerance_units, (expected_degrees, units / 57600))

    def assert_near(self, expected, value, tolerance):
        self.assertLessEqual(abs(expected - value), tolerance, (expected, value))

    def test_every_function_is_called(self):
        exported = (SOURCES / "tests" / "boundary" / "exported_symbols.txt").read_text(encoding="utf-8").split()
        self.assertEqual({line["call"] for line in self.calls}, set(exported))

    def test_the_recording_is_what_the_program_gives(self):
        self.assertEqual(self.text("replay", str(CALLS)).encode(), RESULTS.read_bytes())
        self.expect(DONE, "replay", str(CALLS), "--expect", str(RESULTS))

    def test_every_call_succeeds(self):
        for line in self.results:
            counts = line["call"] in ("QCogoCalcCrossCircle", "QCogoCalcCrossLineCircle")
            self.assertEqual(line.get("status", 0), 2 if counts else 0, line)

    def test_directions_and_points(self):
        # Published by the program that the survey comes from: 293-08-21, 4029.889 m.
        inverse = self.result("QCogoCoordToAngDist", "231 to 13")["result"]
        self.assert_angle(degrees(293, 8, 21), inverse["azimuth"], 16)
        self.assert_near(4029.889, inverse["horizontalDistance"], 0.001)
        # Published: 3249.963, 89929.843.
        self.assert_point((3249.963, 89929.843), self.result("QCogoAngDistToCoord", "1_sp from 5001")["result"], 0.001)
        # Published chainage and offset, to the centimetre, of point 16.
        offset = self.result("QCogoOffsetToCoord", "16 from the line 14-15")["result"]
        self.assert_point((*P16, 130.0), offset, 0.01)
        slope = self.result("QCogoCalcSlopeByDist", "2_sp to 3_sp")["slope"]
        self.assert_near(100 * 12.22 / 468.46, slope["grade"], 1e-12)
        self.assert_near(468.46 / 12.22, slope["ratio"], 1e-12)
        # Published: 618595.7984.
        self.assert_near(618595.7984, self.result("QCogoCalcArea", "16, 231, 232")["value"], 0.0001)

    def test_intersections(self):
        # Published: 5004 at 2195.193, 90246.207 from several sights; the two directions alone are within millimetres.
        crossing = self.result("QCogoCalcCrossLine", "5004 from 11 and 12")["result"]
        self.assert_point((2195.193, 90246.207), crossing, 0.003)
        self.assert_angle(degrees(243, 57, 51), azimuth(P11, plan(crossing)) / UNIT, 1)
        # Published: 5002 at 2590.11, 90587.628, to the right.
        circles = self.result("QCogoCalcCrossCircle", "5002 from 11 and 12")["pair"]
        self.assert_point((2590.11, 90587.628), circles[0], 0.001)
        for point in circles:
            self.assert_near(954.73, math.dist(plan(point), P11), 1e-6)
            self.assert_near(1117.28, math.dist(plan(point), P12), 1e-6)
        ring = self.result("QCogoCalcCrossLineCircle", "500 m around 16 on the line 14-15")["pair"]
        self.assertLess(ring[0]["northing"], ring[1]["northing"])
        for point in ring:
            self.assert_near(500.0, math.dist(plan(point), P16), 1e-6)
            self.assert_near(0.0, along_and_offset(P14, P15, plan(point))[1], 1e-6)

    def test_foot_and_transferred_line(self):
        foot = self.result("QCogoCalcPtLine", "16 onto the line 14-15")["foot"]
        along, _ = along_and_offset(P14, P15, P16)
        self.assert_point((*polar(P14, azimuth(P14, P15), along), 130.0), foot, 1e-6)
        moved = self.result("QCogoCalcTransLine", "at right angles to 14-15, 10 m to its right")["result"]
        direction = azimuth(P14, P15) + math.pi / 2
        first = polar(P14, direction + math.pi / 2, 10.0)
        self.assert_point(first, moved["first"], 1e-6)
        self.assert_point(polar(first, direction, math.dist(P14, P15)), moved["second"], 1e-6)

    def test_remote_measurements(self):
        # Published: -2.447, between rounded heights.
        level = self.result("QREMCalc", "level with the axis above 102")["result"]
        self.assert_near(-143.526 * math.cos(math.radians(degrees(89, 1, 24))), level["height"], 1e-9)
        self.assert_near(-2.447, level["height"], 0.001)
        distance = self.result("QRDMCalcByCoord", "11 to 14")["result"]
        self.assert_near(math.dist(P11, P14), distance["horizontalDistance"], 1e-9)
        self.assert_near(math.dist((*P11, 111.92), (*P14, 130.0)), distance["slopeDistance"], 1e-9)
        self.assert_angle(math.degrees(azimuth(P11, P14)), distance["azimuth"])
        # 0.3, 0.4 and -1.2 along a rod of 1.3; half of that beyond.
        rod = self.result("QCalc2PtTarget", "end of the rod")
        self.assert_near(1.3, rod["measuredSpacing"], 1e-9)
        self.assert_point((3250.45, 89930.6, 96.2), rod["target"], 1e-9)
        # At 8 the embankment is 102 high, and 103 high at 9.5.
        slope = self.result("QBRCalc", "8 m off the axis")["result"]
        self.assert_near(1.0, slope["heightAboveSlope"], 1e-9)
        self.assert_near(-1.5, slope["offsetBeyondSlope"], 1e-9)
        self.assert_near(8.0, slope["distanceFromBase"], 1e-9)

    def assert_sight(self, sight, point):
        """What the simulated instrument reads to a point."""
        distance = math.dist(plan(point), STATION[:2])
        rise = point["height"] - AXIS
        self.assert_angle(math.degrees(azimuth(STATION, plan(point))) - ORIENTATION / 57600, sight["horizontalAngle"])
        self.assert_angle(math.degrees(math.atan2(distance, rise)), sight["zenithAngle"])
        self.assert_near(math.hypot(distance, rise), sight["distance"], 1e-9)

    def test_corners(self):
        # The face runs 6 north and 8 east. From its start to the third point it is 13 and 9: 15 along, so 9 and 12.
        square = self.result("QCalcOfsCorner3Pt", "corner of two walls at a right angle")
        self.assert_point((3629.0, 89612.0, 101.5), square["corner"], 1e-9)
        self.assert_sight(square["observation"], square["corner"])
        # (3620 + 6 s, 89600 + 8 s) = (3640 - 4 t, 89600 + 12 t): s = 30 / 13.
        oblique = self.result("QCalcOfsCorner4Pt", "corner of any angle")
        self.assert_point((3620 + 180 / 13, 89600 + 240 / 13, 101.5), oblique["corner"], 1e-9)
        self.assert_sight(oblique["observation"], oblique["corner"])

    def test_edge_and_column(self):
        edge = self.result("QCalcOfsLineHA", "roof edge")
        self.assert_angle(degrees(49, 28), azimuth(STATION, plan(edge["target"])) / UNIT, 1)
        along, offset = along_and_offset((3620.0, 89600.0), (3626.0, 89608.0), plan(edge["target"]))
        self.assert_near(0.0, offset, 1e-6)
        self.assertTrue(0.0 < along < 10.0, along)
        self.assert_near(107.0 + along / 10.0, edge["target"]["height"], 1e-6)  # 1 in 10
        self.assert_sight(edge["observation"], edge["target"])
        # A radius of 1 shows at 20 from the centre as asin(1 / 20) = 2-51-57.6 to either side; the edges are read as
        # 2-51-58.3.
        column = self.result("QCalcOfsCircle", "column 20 m to the east")
        self.assert_near(1.0, column["radius"], 0.0002)
        self.assert_point((STATION[0], STATION[1] + 20.0, 101.499), column["centre"], 0.0002)
        self.assert_sight(column["observation"], column["centre"])

    def test_reference_line(self):
        # Published: 2373.7 and -1805.7 for 12, 1421.55 and 109.76 for 16.
        for identifier, point, published in (("12", P12, (2373.7, -1805.7)), ("16", P16, (1421.55, 109.76))):
            result = self.result("QREFCalc", identifier)["result"]
            along, offset = along_and_offset(P14, P15, point)
            self.assert_near(along, result["station"], 1e-6)
            self.assert_near(offset, result["offset"], 1e-6)
            self.assert_near(published[0], result["station"], 0.005)
            self.assert_near(published[1], result["offset"], 0.005)

    def test_arcs(self):
        # Published: radius 500, length 1251.108; the middle of the arc at 625.554.
        by_ends = self.result("QREFGetArcParams", "500 m, 143-21-59")["params"]
        self.assert_near(500.0, by_ends["radius"], 0.001)
        self.assert_near(1251.108, by_ends["length"], 0.001)
        self.assert_angle(degrees(143, 21, 59), by_ends["centralAngle"], 2)
        middle = self.result("QREFCalcArc", "middle of the arc")["result"]
        self.assert_near(625.554, middle["along"], 0.001)
        self.assert_near(0.0, middle["offset"], 0.001)
        # Published: 500 m and 55 degrees are 479.965 m; one unit of the angle is 0.15 mm.
        right = self.result("QREFGetArcParams", "500 m, 55 degrees")["params"]
        self.assert_near(479.965, right["length"], 0.001)
        left = self.result("QREFGetArcParams", "the same to the left")["params"]
        self.assertEqual(left["radius"], -500.0)
        self.assert_angle(-55.0, left["centralAngle"], 5)

    def test_planes(self):
        # A sight of azimuth 60 degrees and zenith angle 80 degrees, as a vector.
        toward = (math.cos(math.radians(60)), math.sin(math.radians(60)), 1 / math.tan(math.radians(80)))
        far = (89600.0 - STATION[1]) / toward[1]
        wall = self.result("QREFCalc2PtPlane", "window")
        point = (STATION[0] + far * toward[0], 89600.0, AXIS + far * toward[2])
        self.assert_point(point, wall["point"], 1e-6)
        self.assert_near(point[0] - 3600.0, wall["alongPlane"], 1e-6)
        self.assert_near(point[2] - 101.0, wall["heightAboveFirst"], 1e-6)
        # The roof rises as much as it goes east from 106 at 89600.
        far = (89600.0 - 106.0 - STATION[1] + AXIS) / (toward[1] - toward[2])
        roof = self.result("QREFCalc3PtPlane", "tile")
        point = (STATION[0] + far * toward[0], STATION[1] + far * toward[1], AXIS + far * toward[2])
        self.assert_point(point, roof["point"], 1e-6)
        self.assert_near(point[0] - 3600.0, roof["alongBaseline"], 1e-6)
        self.assert_near(abs(point[1] - 89600.0) * math.sqrt(2), abs(roof["acrossBaseline"]), 1e-6)

    def test_stations(self):
        # Published: 756.31 + 5.64 - 11.15046.
        self.assert_near(750.80, self.result("QSTNSeaLevelCalcByBM")["value"], 0.001)
        # Published: 3587.52655, 89562.4969; height of the axis from 14: 130 + 1.5 - 29.989, from 11 10 mm less.
        two = self.result("QSTN2PtResect", "5001")["station"]
        self.assert_point((3587.52655, 89562.4969, 101.506), two["station"], 0.001)
        self.assert_angle(degrees(247, 5, 35.12), two["orientation"], 16)
        self.assert_near((130.0 - 29.98922) - (111.92 - 11.91931), two["heightDifference"], 1e-9)
        # Published: 2775.210, 89398.550, axis at 118.414 + 1.34.
        three = self.result("QSTN3PtResect", "5003")["station"]
        self.assert_point((2775.21, 89398.55, 119.754), three["station"], 0.001)
        self.assertEqual(three["baselineCheck"], "untouched")

    def test_adjusted_stations(self):
        # Published 3587.526, 89562.497 from 14 and 11; all six sights give 3587.521. Of the axis: 101.505.
        many = self.result("QSTNMultiResect", "5001")
        self.assert_point((3587.521, 89562.498, 101.505), many["station"]["position"], 0.001)
        self.assertEqual(len(many["residuals"]), 6)
        known_line = self.result("QSTNKnownLine", "5001")
        self.assert_point((3587.526, 89562.497, 101.511), known_line["station"]["position"], 0.002)
        # Measured less known length of the line: by the cosine rule from both distances and the angle between.
        sights = [self.arguments("QSTNKnownLine", "5001")[name] for name in ("startObservation",
                                                                             "directionObservation")]
        first, second = (sight["horizontalDistance"] for sight in sights)
        angle = (sights[1]["horizontalAngle"] - sights[0]["horizontalAngle"]) * UNIT
        measured = math.sqrt(first**2 + second**2 - 2 * first * second * math.cos(angle))
        self.assert_near(measured - math.dist(P14, P11), known_line["residuals"][0]["distanceResidual"], 1e-6)

    def test_settings(self):
        north, south = (line["result"] for line in self.results if line["call"] == "QCogoCoordToAngDist")
        self.assertEqual((north["azimuth"] - south["azimuth"]) % CIRCLE, CIRCLE // 2)


if __name__ == "__main__":
    unittest.main()
