"""Tests that the walks with pictures reach their ends: each in one of its smallest parts."""

import json
import os
import pathlib
import subprocess
import unittest

import stage
import tour_pages

SYSTEM = pathlib.Path(__file__).parent


class TheTours(unittest.TestCase):
    def walk(self, name, *options):
        """Takes a walk; returns the folder with its pictures."""
        stage.require_command("xcompmgr", "with which the pictures are taken")
        pictures = stage.SCRATCH / "pictures"
        done = subprocess.run(["/usr/bin/python3", "-B", SYSTEM / name, "--build", os.environ["FENWHIRL_BUILD"],
                               "--pictures", pictures, *options], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return pictures

    def assert_pictures(self, folder, sizes):
        """`sizes` has the width and height of each picture in pixels, or None where the content decides."""
        files = {str(file.relative_to(folder)): file for file in folder.rglob("*.png")}
        self.assertEqual(sorted(files), sorted(sizes))
        for name, size in sizes.items():
            shown = subprocess.run(["identify", "-format", "%w %h %k", files[name]], capture_output=True, text=True, check=True)
            width, height, colors = map(int, shown.stdout.split())
            self.assertIn(size, (None, (width, height)), name)
            self.assertGreater(colors, 200, name)  # otherwise it shows next to nothing

    def test_pages_have_their_usual_size_whatever_was_remembered(self):
        tour_pages.STATE.mkdir(parents=True)
        (tour_pages.STATE / "window.json").write_text(
            json.dumps({"x": 10, "y": 10, "width": 1600, "height": 900}), encoding="utf-8")
        pictures = self.walk("tour_pages.py", "--only", "no_controller", "--theme", "light")
        usual = (2080, 1360)
        self.assert_pictures(pictures, {"states/dashboard-no-smc-light.png": usual, "states/sensors-no-smc-light.png": usual,
                                        "states/panel-no-smc-light.png": None})

    def test_the_drawings_are_pictured_with_what_is_held(self):
        pictures = self.walk("tour_scales.py", "--scale", "1", "--language", "ru", "--theme", "dark")
        usual = (1040, 680)
        self.assert_pictures(pictures / "1x/ru", {
            "dashboard-dark.png": usual, "sensors-dark.png": usual, "states/fans-handle-dragged-dark.png": usual,
            "states/fans-knob-dragged-dark.png": usual, "panel-dark.png": None,
            "panel/symbol-hovered-dark.png": None, "panel/knob-dragged-dark.png": None})


if __name__ == "__main__":
    unittest.main()
