"""Tests of the graphs that the benchmarks draw."""

import pathlib
import sys
import unittest
import xml.etree.ElementTree

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "Benchmarks"))

import graphs  # noqa: E402

SVG = "{http://www.w3.org/2000/svg}"
CURVES = ("sensors\t10\t1.0\t0.5\n"
          "sensors\t1000\t90\t80\n"
          "sensors\t10\t2.0\t1.0\n"  # measured again
          "processes\t100\t4.5\t4.7\n"
          "fans\t100\t9\t8\nfans\t1\t0.1\t0.1\n")


class Graphs(unittest.TestCase):
    def setUp(self):
        self.root = xml.etree.ElementTree.fromstring(graphs.picture_of(graphs.read_curves(CURVES)))

    def lines(self, name):
        return [[tuple(map(float, place.split(","))) for place in line.get("points").split()]
                for line in self.root.iter(SVG + "polyline") if line.get("class") == name]

    def words(self):
        return [element.text for element in self.root.iter(SVG + "text")]

    def test_points_come_in_the_order_of_their_numbers_and_the_last_measurement_counts(self):
        self.assertEqual(graphs.read_curves(CURVES), {"sensors": [(10, 2.0, 1.0), (1000, 90.0, 80.0)],
                                                      "processes": [(100, 4.5, 4.7)],
                                                      "fans": [(1, 0.1, 0.1), (100, 9.0, 8.0)]})

    def test_each_thing_has_a_graph_with_both_costs(self):
        self.assertEqual([len(line) for line in self.lines("Fenwhirl")], [2, 2, 1])
        self.assertEqual([len(line) for line in self.lines("bare")], [2, 2, 1])
        for things in ("sensors", "fans", "processes"):
            self.assertIn(things, self.words())

    def test_a_cost_lies_where_its_scale_says(self):
        # The scales of the first graph end at 1000 sensors and at 100 ms.
        (at, height), (end, top) = self.lines("Fenwhirl")[0]
        self.assertAlmostEqual(at, graphs.LEFT + graphs.WIDTH * 10 / 1000, delta=0.1)
        self.assertAlmostEqual(height, graphs.TOP + graphs.HEIGHT * (1 - 2 / 100), delta=0.1)
        self.assertAlmostEqual(end, graphs.LEFT + graphs.WIDTH, delta=0.1)
        self.assertAlmostEqual(top, graphs.TOP + graphs.HEIGHT * (1 - 90 / 100), delta=0.1)

    def test_scales_have_round_lines_up_to_the_largest_value(self):
        for largest, expected in ((1, [0, 0.2, 0.4, 0.6, 0.8, 1.0]), (90, [0, 20, 40, 60, 80, 100]), (2000, [0, 500, 1000, 1500, 2000]),
                                  (100, [0, 20, 40, 60, 80, 100]), (0.03, [0, 0.005, 0.01, 0.015, 0.02, 0.025, 0.03]),
                                  (31, [0, 10, 20, 30, 40])):
            with self.subTest(largest):
                self.assertEqual([round(value, 6) for value in graphs.scale_of(largest)], expected)

    def test_what_was_not_measured_has_no_graph(self):
        root = xml.etree.ElementTree.fromstring(graphs.picture_of(graphs.read_curves("fans\t2\t1\t1\n")))
        self.assertEqual(len(list(root.iter(SVG + "polyline"))), 2)


if __name__ == "__main__":
    unittest.main()
