"""End-to-end tests of what `qstd station` does with sights that do not fit, do not determine a station, or do so in more
than one way."""
import json
import math
import unittest

from case import DONE, EXAMPLES, NOT_COMPUTED, Case

SECOND = math.pi / 648000.0

# Five points around a station, and where that stands; its circle's zero at azimuth 33.3 degrees.
POINTS = {"A": (1000.0, 2000.0, 50.0), "B": (1100.5, 2020.25, 51.0), "C": (1060.0, 2120.75, 52.0),
          "D": (950.0, 2100.1, 49.0), "E": (1010.6, 1990.2, 48.5)}
STATION = (1031.2, 2067.7, 51.5)
ORIENTATION = math.radians(33.3)


def exact(target, point=None):
    """Circle, zenith and slope distance from STATION to the reflector 1.5 above a point."""
    north, east, height = point or POINTS[target]
    north, east = north - STATION[0], east - STATION[1]
    rise = height + 1.5 - STATION[2]
    plan = math.hypot(north, east)
    return math.atan2(east, north) - ORIENTATION, math.atan2(plan, rise), math.hypot(plan, rise)


def row(target, circle, zenith, distance="", reflector=1.5, station="S"):
    circle, zenith = (math.degrees(angle % (2 * math.pi)) for angle in (circle, zenith))
    distance = f"{distance:.5f}" if distance else ""
    return f"{station},{target},{circle:.7f}d,{zenith:.7f}d,{distance},{reflector}\n"


def table(rows):
    return "station,target,hz,v,sd,th\n" + "".join(rows)


def points(places=None):
    return "id,n,e,h\n" + "".join(f"{name},{n},{e},{h}\n" for name, (n, e, h) in (places or POINTS).items())


class ProofCase(Case):
    def station(self, point_text, rows, *arguments, code=DONE):
        done = self.expect(code, "station", "--points", self.put("points.csv", point_text), "--sights",
                           self.put("sights.csv", table(rows)), "--json", *arguments)
        return json.loads(done.stdout)

    def assert_at_station(self, solved, tolerance=1e-3):
        self.assertTrue(solved["solved"], solved)
        self.assertLess(math.hypot(solved["result"]["northing"] - STATION[0],
                                   solved["result"]["easting"] - STATION[1]), tolerance)


class Misfits(ProofCase):
    def spoilt(self, target, change):
        return [row(name, *change(*exact(name))) if name == target else row(name, *exact(name)) for name in POINTS]

    def suspect(self, rows, target, observation, code=DONE):
        solved = self.station(points(), rows, code=code)
        first = solved["suspects"][0]
        self.assertEqual((first["target"], first["observation"]), (target, observation), solved["suspects"])
        self.assertIn(first["text"], solved["warnings"])
        return solved, first

    def test_sound_sights_are_left_alone(self):
        solved = self.station(points(), [row(name, *exact(name)) for name in POINTS])
        self.assert_at_station(solved)
        self.assertEqual((solved["fits"], solved["warnings"], solved["suspects"], solved["causes"]), (True, [], [], []))

    def test_a_gon_in_one_direction(self):
        solved, first = self.suspect(self.spoilt("C", lambda hz, v, sd: (hz + math.pi / 200, v, sd)), "C", "direction",
                                     NOT_COMPUTED)
        self.assertFalse(solved["fits"])
        self.assertAlmostEqual(first["error_degrees"], 0.9, delta=0.001)
        self.assertTrue(solved["causes"][0].startswith("with the direction to C 1 gon smaller the sights fit to 0."))

    def test_half_a_turn_in_one_direction(self):
        solved, _ = self.suspect(self.spoilt("A", lambda hz, v, sd: (hz + math.pi, v, sd)), "A", "direction",
                                 NOT_COMPUTED)
        self.assertIn("with the direction to A turned by 180 degrees", solved["causes"][0])

    def test_a_tenth_of_a_metre_in_one_distance(self):
        solved, first = self.suspect(self.spoilt("B", lambda hz, v, sd: (hz, v, sd + 0.1)), "B", "distance")
        self.assertAlmostEqual(first["error"], 0.1, delta=0.002)
        self.assertTrue(solved["sights"][1]["distance_check"]["marked"])

    def test_a_reflector_height(self):
        solved, first = self.suspect(self.spoilt("D", lambda hz, v, sd: (hz, v, sd, 1.6)), "D", "height")
        self.assertAlmostEqual(first["error"], 0.1, delta=0.001)
        self.assert_at_station(solved)

    def test_mistakes_of_the_whole_set(self):
        rows = [row(name, *exact(name)) for name in POINTS]
        exchanged = {name: (e, n, h) for name, (n, e, h) in POINTS.items()}
        swapped = dict(POINTS, A=POINTS["B"], B=POINTS["A"])
        anticlockwise = [row(name, -exact(name)[0], *exact(name)[1:]) for name in POINTS]
        feet = [row(name, *exact(name)[:2], exact(name)[2] / 0.3048) for name in POINTS]
        prism = [row(name, *exact(name)[:2], exact(name)[2] - 0.034) for name in POINTS]
        for places, sights, cause in ((exchanged, rows, "with north and east exchanged in the points"),
                                      (swapped, rows, "with A and B exchanged"),
                                      (POINTS, anticlockwise, "with the circle read anticlockwise"),
                                      (POINTS, feet, "with the distances taken as feet"),
                                      (POINTS, prism, "with a prism constant of +34.0 mm on all distances")):
            code = DONE if cause.startswith("with a prism") else NOT_COMPUTED
            told = self.station(points(places), sights, code=code)
            self.assertTrue(any(text.removeprefix("or ").startswith(cause + " the sights fit to ") for text in told["causes"]),
                            (cause, told["causes"]))

    def test_the_text_marks_and_names(self):
        text = self.text("station", "--points", str(EXAMPLES / "blunder" / "points.csv"), "--sights",
                         str(EXAMPLES / "blunder" / "sights.csv"))
        self.assertIn("FP-7: distance 47.8 mm too long; without it the sights fit to 1.5\"", text)
        marked = [line for line in text.splitlines() if line.endswith("*")]
        self.assertEqual([line.split()[:2] for line in marked], [["FP-7", "distance"]])

    def test_what_sights_are_judged_by_can_be_set(self):
        rows = self.spoilt("B", lambda hz, v, sd: (hz, v, sd + 0.03))
        self.assertEqual(self.station(points(), rows)["suspects"][0]["target"], "B")
        # 30 mm are less than three times 10 mm and 15".
        solved = self.station(points(), rows, "--sigma-distance", "0.010", "--sigma-direction", "15")
        self.assertEqual((solved["suspects"], solved["warnings"]), ([], []))
        # The weights stay, and the station with them.
        self.assertEqual(solved["result"], self.station(points(), rows)["result"])


class Determined(ProofCase):
    def test_one_prism_in_two_faces_with_spires(self):
        circle, zenith, distance = exact("A")
        rows = [row("A", circle, zenith, distance), row("A", circle + math.pi, 2 * math.pi - zenith, distance),
                row("B", *exact("B")[:2]), row("C", *exact("C")[:2])]
        self.assert_at_station(self.station(points(), rows))

    def test_two_targets_two_rounds_one_distance(self):
        places = {"A": (1000.0, 2000.0, 50.0), "C": (1060.0, 2120.75, 52.0)}
        rows = [row("A", *exact("A")), row("C", *exact("C")[:2]), row("A", *exact("A")[:2]), row("C", *exact("C")[:2])]
        solved = self.station(points(places), rows)
        self.assert_at_station(solved)
        self.assertEqual((solved["adjusted_by"], solved["method"], solved["targets"]), ("tool", "multi", ["A", "C"]))

    def test_a_backsight_at_the_start_and_the_end_of_the_round(self):
        rows = [row("A", *exact("A")), row("B", *exact("B")[:2]), row("A", *exact("A"))]
        self.assert_at_station(self.station(points(), rows))

    def test_the_first_distance_missing(self):
        rows = [row("A", *exact("A")[:2]), row("C", *exact("C")[:2]), row("A", *exact("A"))]
        self.assert_at_station(self.station(points(), rows))
        rows = [row("A", *exact("A")[:2]), row("C", *exact("C")[:2]), row("C", *exact("C"))]
        self.assert_at_station(self.station(points(), rows, "--method", "two-point"))

    def test_two_targets_5_mm_apart_handed_in_first(self):
        places = dict(POINTS, F=(1000.004, 2000.003, 50.0))
        rows = [row("A", *exact("A")), row("F", *exact("F", places["F"])), row("B", *exact("B")), row("C", *exact("C"))]
        self.assert_at_station(self.station(points(places), rows))

    def test_two_positions_are_not_one(self):
        # The distance to A is longer than the line from A to E: E is sighted nearer or beyond.
        places = {"A": POINTS["A"], "E": POINTS["E"]}
        flat = "id,n,e\n" + "".join(f"{name},{n},{e}\n" for name, (n, e, _) in places.items())
        rows = [row("A", *exact("A")), row("E", *exact("E")[:2])]
        told = self.station(flat, rows, code=NOT_COMPUTED)
        self.assertEqual((told["solved"], told["fits"], told["status_name"]), (False, False, "AMBIGUOUS"))
        self.assertEqual(len(told["candidates"]), 2)
        nearest = min(math.hypot(place["northing"] - STATION[0], place["easting"] - STATION[1])
                      for place in told["candidates"])
        self.assertLess(nearest, 1e-3)
        # The heights of both tell which one it is.
        self.assert_at_station(self.station(points(places), rows))

    def test_sights_to_one_target_are_told_as_that(self):
        told = self.station(points(), [row("A", *exact("A"))] * 8, code=NOT_COMPUTED)
        self.assertEqual(told["reason"], "all sights go to one target, A; a station needs two and a distance, or three")

    def test_a_name_that_is_almost_known(self):
        rows = [row("A", *exact("A")), row("b", *exact("B"))]
        told = self.station(points({"A": POINTS["A"], "B": POINTS["B"]}), rows, code=NOT_COMPUTED)
        self.assertEqual(told["sights"][1]["remark"], "not a known point; B?")


class HeightsAndSettings(ProofCase):
    def test_a_benchmark_serves_the_height_only(self):
        flat = "id,n,e,h\n" + "".join(f"{name},{n},{e},\n" for name, (n, e, _) in POINTS.items()) + "BM,,,53.2\n"
        circle, zenith, distance = exact("BM", (1040.0, 2030.0, 53.2))
        rows = [row(name, *exact(name)) for name in "ABC"] + [row("BM", circle, zenith, distance)]
        solved = self.station(flat, rows)
        self.assert_at_station(solved)
        self.assertAlmostEqual(solved["result"]["height"], STATION[2], delta=1e-4)
        self.assertEqual((solved["directions"], solved["result"]["height_targets"]), (3, 1))
        self.assertEqual(solved["sights"][3]["remark"], "for the height only")
        self.assertIn("nothing checks the height: it rests on one target, BM", solved["warnings"])

    def test_what_curvature_does_to_a_height_is_said(self):
        # The longer of the two sights that give the height has 2100.1 m: 0.868 * 2100.1^2 / 12740000 = 0.30049.
        town = ["station", "5001", "--points", str(EXAMPLES / "town" / "points.csv"), "--sights",
                str(EXAMPLES / "town" / "free_station.csv")]
        solved, = (json.loads(line) for line in self.text(*town, "--json").splitlines())
        self.assertAlmostEqual(solved["result"]["uncorrected_curvature"], 0.30049, delta=1e-5)
        self.assertIn("up to 300.5 mm too high unless the instrument corrects", self.text(*town))
        corrected = self.text(*town, "--refraction", "0.132")
        self.assertNotIn("too high unless", corrected)

    def test_measured_distances_are_reduced(self):
        # By hand: D = 1300 sin 88d = 1299.2080751, V = 1300 cos 88d = 45.3693457; D - 0.934 D V / R = 1299.1994324,
        # V + 0.868 D^2 / 2R = 45.4843483; less sea level and scale 1299.1994324 / 1.0000706436 * 0.9996 = 1298.5880157.
        rows = [row("A", 0.1, math.radians(88), 1300.0), row("B", 1.0, math.radians(88), 1300.0)]
        options = ["--refraction", "0.132", "--sea-level", "450", "--scale", "0.9996"]
        places = {"A": (0.0, 0.0, 50.0), "B": (0.0, 1131.0, 50.0)}
        sight = self.station(points(places), rows, *options, code=NOT_COMPUTED)["sights"][0]
        self.assertAlmostEqual(sight["horizontal_distance"], 1298.5880157, delta=1e-6)
        self.assertAlmostEqual(sight["vertical_difference"], 45.4843483, delta=1e-6)
        plain = self.station(points(places), rows, "--refraction", "off", code=NOT_COMPUTED)["sights"][0]
        self.assertAlmostEqual(plain["horizontal_distance"], 1299.2080751, delta=1e-6)


if __name__ == "__main__":
    unittest.main()
