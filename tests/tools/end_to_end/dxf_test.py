"""The drawings of every verb, read by a library for DXF and compared with what GeoJSON says of the same figure."""
import json
import math
import os
import pathlib
import subprocess
import unittest

from case import DONE, EXAMPLES, NOT_COMPUTED, PROGRAM, Case

try:
    import ezdxf
except ImportError:
    ezdxf = None

TOOLS = pathlib.Path(PROGRAM).resolve().parent

SITE = f"--points {EXAMPLES}/site/points.csv"
TOWN = f"--points {EXAMPLES}/town/points.csv --sights {EXAMPLES}/town/free_station.csv"

# Besides the examples of the manual: no solution, a full circle, a long list, several stations, names beyond ASCII.
COMMANDS = [
    "qstd intersect --line 6,0 90d --circle 0,0 5",
    "qstd arc --from 0,0 --tangent 0d --radius -10 --length 62.8318530718",
    f"qstd arc {SITE} --from PC --tangent 62d --radius 120 --deflection 50d {EXAMPLES}/site/kerb.csv",
    f"qstd station 5001 {TOWN}",
    "printf 'id,n,e\\n\u00e4^%%%%,0,0\\nb,1,1\\n' | qstd inverse \u00e4^%% b --points -",
]


@unittest.skipUnless(ezdxf, "ezdxf is not installed")
class Drawings(Case):
    def commands(self):
        """All that draw, of the examples of the manual and those above."""
        examples = json.loads(subprocess.check_output([str(TOOLS / "qstd_manual"), "--examples"]))
        drawing = {verb for verb in {example["verb"] for example in examples}
                   if "--dxf" in self.text(verb, "--help")}
        return [example["command"] for example in examples if example["verb"] in drawing] + COMMANDS

    def figures(self):
        """Of each command the DXF document and the features of GeoJSON."""
        for number, command in enumerate(self.commands()):
            folder = self.path(str(number))
            os.mkdir(folder)
            done = subprocess.run(["bash", "-c", command + " --dxf figure.dxf --geojson figure.json"], cwd=folder,
                                  env={"PATH": f"{TOOLS}:/usr/bin:/bin", "LC_ALL": "C.UTF-8"}, check=False,
                                  capture_output=True)
            self.assertIn(done.returncode, (DONE, NOT_COMPUTED), (command, done.stderr))
            with open(os.path.join(folder, "figure.json"), encoding="utf-8") as file:
                features = json.load(file)["features"]
            yield command, ezdxf.readfile(os.path.join(folder, "figure.dxf")), features

    @staticmethod
    def places(points):
        return sorted((round(point[0], 6), round(point[1], 6)) for point in points)

    @staticmethod
    def distance(one, other):
        return math.hypot(one[0] - other[0], one[1] - other[1])

    def test_an_audit_finds_nothing(self):
        count = 0
        for command, document, _ in self.figures():
            count += 1
            audit = document.audit()
            self.assertEqual([error.message for error in [*audit.errors, *audit.fixes]], [], command)
            self.assertEqual(document.dxfversion, "AC1009")
            layers = {layer.dxf.name for layer in document.layers}
            self.assertEqual({entity.dxf.layer for entity in document.modelspace()} - layers, set(), command)
        self.assertGreaterEqual(count, 20)

    def test_points_stand_where_geojson_has_them(self):
        count = 0
        for command, document, features in self.figures():
            drawn = [entity.dxf.location for entity in document.modelspace().query("POINT")]
            told = [each["geometry"]["coordinates"] for each in features if each["properties"]["kind"] == "point"]
            self.assertEqual(self.places(drawn), self.places(told), command)
            count += len(drawn)
        self.assertGreater(count, 50)

    def test_arcs_run_where_geojson_has_them(self):
        count = 0
        for command, document, features in self.figures():
            told = [each for each in features if each["properties"]["kind"] in ("arc", "circle")]
            drawn = list(document.modelspace().query("ARC CIRCLE"))
            self.assertEqual([entity.dxftype().lower() for entity in drawn],
                             [each["properties"]["kind"] for each in told], command)
            for entity, feature in zip(drawn, told):
                count += 1
                self.assertAlmostEqual(entity.dxf.radius, feature["properties"]["radius"], delta=1e-9)
                if entity.dxftype() == "ARC":
                    self.check_arc(entity, feature["geometry"]["coordinates"])
        self.assertGreaterEqual(count, 8)

    def check_arc(self, arc, line):
        """An arc of DXF runs counter-clockwise, so it may begin at either end of the line."""
        apart = [max(self.distance(arc.start_point, line[end]), self.distance(arc.end_point, line[-1 - end]))
                 for end in (0, -1)]
        self.assertLess(min(apart), 1e-6)
        # The middle tells an arc from the rest of its circle: it lies between two places of the line.
        half = (arc.dxf.end_angle - arc.dxf.start_angle) % 360 / 2
        middle, = arc.vertices([arc.dxf.start_angle + half])
        step = max(self.distance(one, other) for one, other in zip(line, line[1:]))
        self.assertLess(min(self.distance(middle, place) for place in line), step)


if __name__ == "__main__":
    unittest.main()
