"""Tests that gauge, chart, symbols and shadows look the same with the software renderer and with OpenGL, at several scales."""

import os
import pathlib
import re
import subprocess
import unittest

import stage


class Renderers(unittest.TestCase):
    # Root mean square over all pixels, as a fraction of the whole range. The renderers differ only slightly, in antialiased edges.
    LARGEST_DIFFERENCE = 0.01

    def draw(self, name, theme, scale, **environment):
        picture = stage.SCRATCH / f"{name}.png"
        gallery = pathlib.Path(os.environ["FENWHIRL_BUILD"]) / "tests/ComponentGallery"
        subprocess.run([gallery, picture, theme, "Shapes"], check=True, timeout=stage.PATIENCE_SECONDS * 3,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                       env={**os.environ, "QT_SCALE_FACTOR": str(scale), **environment})
        return picture

    def by_processor(self, theme, scale):
        return self.draw("processor", theme, scale, QT_QUICK_BACKEND="software")

    def by_opengl(self, theme, scale):
        return self.draw("opengl", theme, scale, QT_QUICK_BACKEND="rhi", QSG_RHI_BACKEND="opengl",
                         LIBGL_ALWAYS_SOFTWARE="1")

    def compare(self, theme, scale):
        with stage.Display(1440, 960) as display:
            os.environ.update(display.environment())
            drawn = self.by_processor(theme, scale), self.by_opengl(theme, scale)
            sizes = {self.ask("identify", "-format", "%wx%h", picture) for picture in drawn}
            self.assertEqual(sizes, {f"{round(460 * scale)}x{round(400 * scale)}"})
            for picture in drawn:
                # Few colours would mean hard edges. The shapes have a dozen colours, each with the shades of its antialiasing.
                self.assertGreater(int(self.ask("identify", "-format", "%k", picture)), 400, picture)
            answer = subprocess.run(["compare", "-metric", "RMSE", *drawn, "null:"], capture_output=True, text=True,
                                    check=False).stderr
            difference = float(re.search(r"\(([\d.e-]+)\)", answer).group(1))
            self.assertLess(difference, self.LARGEST_DIFFERENCE, f"{theme} at {scale}: {answer}")

    @staticmethod
    def ask(*command):
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout

    def test_they_agree_on_an_ordinary_screen(self):
        self.compare("dark", 1)

    def test_they_agree_between_two_whole_scales(self):
        self.compare("dark", 1.5)

    def test_they_agree_on_a_fine_screen(self):
        self.compare("dark", 2)

    def test_they_agree_on_light_ground(self):
        self.compare("light", 1)


if __name__ == "__main__":
    unittest.main()
