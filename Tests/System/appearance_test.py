"""Tests of the program's appearance: it follows the desktop's colour scheme and text scale when set to automatic, and does not
animate where the desktop has switched animations off.
"""

import pathlib
import re
import subprocess
import time
import unittest

import stage
from hidden_window_test import FRAMES
from desktop import Desktop, run

DARK, LIGHT, SIDEBAR = "#16181D", "#F3F4F7", "#1B1E24"  # background of the page, and of the dark sidebar
EMPTY_PART_OF_PAGE = "+1030+8"  # a point of the page's background where no control is drawn
PORTAL = pathlib.Path(__file__).with_name("fake_portal.py")


class Portals:
    """What both test classes share: the fake portal, and reading colours from the screen."""

    def portal(self, desktop, *words):
        portal = desktop.stack.enter_context(stage.Process(
            ["/usr/bin/python3", "-B", PORTAL, *words], stdin=subprocess.PIPE, stdout=subprocess.PIPE))
        self.assertEqual(stage.Lines(portal.child.stdout).next(), "READY")
        return portal

    def color(self, window, place=EMPTY_PART_OF_PAGE):
        text = run("import", "-window", window[0], "-crop", f"1x1{place}", "-depth", "8", "txt:-")
        return re.findall(r"#[0-9A-F]{6}", text)[-1]

    def wait_for_color(self, window, color, place=EMPTY_PART_OF_PAGE):
        stage.wait_until(lambda: self.color(window, place) == color, lambda: f"{color}; it is {self.color(window, place)}")


class Appearance(Portals, unittest.TestCase):
    def change(self, portal, scheme, animations="true"):
        portal.child.stdin.write(f"{scheme} {animations}\n".encode())
        portal.child.stdin.flush()

    def show(self, desktop, **environment):
        desktop.start(**environment)
        self.assertEqual(desktop.start_again(), 0)
        return desktop.wait_for_main_window()

    def test_automatic_follows_the_desktop(self):
        with Desktop(preferences={"theme": "auto"}) as desktop:
            portal = self.portal(desktop, "1", "true")
            window = self.show(desktop)
            self.wait_for_color(window, DARK)
            self.change(portal, 2)
            self.wait_for_color(window, LIGHT)
            self.change(portal, 1)
            self.wait_for_color(window, DARK)

    def test_automatic_is_light_without_a_portal(self):
        with Desktop(preferences={"theme": "auto"}) as desktop:
            self.wait_for_color(self.show(desktop), LIGHT)

    def test_a_chosen_appearance_does_not_follow(self):
        with Desktop(preferences={"theme": "dark"}) as desktop:
            portal = self.portal(desktop, "2", "true")
            window = self.show(desktop)
            self.wait_for_color(window, DARK)
            self.change(portal, 0)
            desktop.polls()
            self.assertEqual(self.color(window), DARK)

    def test_the_text_scale_is_applied_once(self):
        # Under X11 a desktop announces the text scale twice: as the font resolution (Xft.dpi), and through its portal.
        with Desktop(preferences={"theme": "dark"}) as desktop:
            run("xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER", "Xft.dpi:\t120\n")
            self.portal(desktop, "1", "true", "1.25")
            window = self.show(desktop)
            self.assertEqual(window[3:], (1300, 850))
            # The page begins to the right of the sidebar, which widens with its texts.
            self.wait_for_color(window, SIDEBAR, "+252+640")
            self.wait_for_color(window, DARK, "+268+640")

    def frames_of_page_changes(self, animations, is_enough):
        """Counts the frames that are drawn for each page change, up to forty, until `is_enough` says so of the counts."""
        with Desktop() as desktop:
            self.portal(desktop, "1", animations)
            self.show(desktop, **FRAMES)
            counts = []
            for page in ("Alertes", "Préréglages") * 20:
                before = desktop.log().count("qt.scenegraph.time.renderloop")
                desktop.screen.press(page, "page tab")
                desktop.screen.wait_for(page, "heading")
                time.sleep(0.4)  # longer than any animation; without one there is no event to wait for
                counts.append(desktop.log().count("qt.scenegraph.time.renderloop") - before)
                if is_enough(counts):
                    break
            return counts

    def test_a_page_fades_in(self):
        # A busy computer draws only some frames of an animation, which is over after 140 ms.
        counts = self.frames_of_page_changes("true", lambda counts: counts[-1] >= 5)
        self.assertGreaterEqual(max(counts), 5, counts)

    def test_pages_do_not_fade_in_without_animations(self):
        counts = self.frames_of_page_changes("false", lambda counts: len(counts) == 5)
        self.assertLessEqual(min(counts), 3, counts)


class ASilentPortal(Portals, unittest.TestCase):
    def test_does_not_delay_the_start(self):
        with Desktop(onboarded=False, preferences={"theme": "auto"}) as desktop:
            self.portal(desktop, "silent")
            began = time.monotonic()
            desktop.launch()
            window = desktop.wait_for_main_window()
            # A start that waits for an answer takes 25 seconds.
            self.assertLess(time.monotonic() - began, 20)
            # The page is light, although the introduction dims it.
            stage.wait_until(lambda: self.color(window) > "#90", lambda: f"a light page; it is {self.color(window)}")


if __name__ == "__main__":
    unittest.main()
