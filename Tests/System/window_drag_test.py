"""Tests that only its title bar drags the main window, under a window manager that draws one."""

import re
import unittest

import stage
from desktop import Desktop, run


class DraggingTheWindow(unittest.TestCase):
    def start(self, desktop):
        desktop.start()
        self.assertEqual(desktop.start_again(), 0)
        window = desktop.wait_for_main_window()
        desktop.screen.wait_for("Tableau de bord")
        stage.wait_until(lambda: desktop.has_focus(desktop.main_window()), "the window has the keyboard")
        return desktop.main_window() or window

    @staticmethod
    def drag(x, y, dx, dy):
        """Presses at that point, moves in steps as a user does, and releases."""
        run("xdotool", "mousemove", x, y, "mousedown", 1)
        for step in range(1, 9):
            run("xdotool", "mousemove", x + dx * step // 8, y + dy * step // 8)
        run("xdotool", "mouseup", 1)

    def rests(self, desktop, window):
        """Moves the pointer about; returns whether the window stays where it is all the time."""
        place = desktop.main_window()[1:3]
        for x, y in ((900, 500), (400, 300), (1000, 700)):
            run("xdotool", "mousemove", "--sync", x, y)
            if desktop.main_window()[1:3] != place:
                return False
        desktop.polls()  # gives a window that follows the pointer time to move
        return desktop.main_window()[1:3] == place

    def test_after_a_drag_on_its_background_it_stays_where_it_is(self):
        with Desktop() as desktop:
            window = self.start(desktop)
            for _ in range(3):
                before = desktop.main_window()
                self.drag(before[1] + 100, before[2] + 560, 60, 30)  # under the sidebar's pages
                self.assertTrue(self.rests(desktop, window), "it sticks to the pointer")
                self.assertEqual(desktop.main_window()[1:3], before[1:3])

    def test_its_title_bar_moves_it(self):
        with Desktop() as desktop:
            window = self.start(desktop)
            before = desktop.main_window()
            extents = run("xprop", "-id", window[0], "_NET_FRAME_EXTENTS")
            title = int(re.findall(r"\d+", extents)[2])
            self.assertGreater(title, 10)
            # The top of the content on the screen; the title bar is above it.
            top = int(re.search(r"Absolute upper-left Y:\s+(-?\d+)", run("xwininfo", "-id", window[0])).group(1))
            self.drag(before[1] + 300, top - title // 2, -40, 30)
            stage.wait_until(lambda: desktop.main_window()[1:3] != before[1:3], "the window moves")
            self.assertTrue(self.rests(desktop, window), "it sticks to the pointer")


if __name__ == "__main__":
    unittest.main()
