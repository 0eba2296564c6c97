"""Tests that only its title bar drags the main window, under window managers that draw one."""

import re
import subprocess
import unittest

import stage
from desktop import Desktop, run


class Dragging:
    """The main window on a desktop, and drags of it."""

    def __init__(self, desktop):
        self.desktop = desktop
        desktop.start()
        if desktop.start_again() != 0:
            raise stage.StageError("the window is not shown")
        desktop.wait_for_main_window()
        desktop.screen.wait_for("Tableau de bord")
        stage.wait_until(lambda: desktop.has_focus(desktop.main_window()), "the window has the keyboard")

    def place(self):
        return self.desktop.main_window()[1:3]

    def pointer(self, *arguments):
        subprocess.run(["xdotool", *(str(argument) for argument in arguments)], env=self.desktop.of_pointer, check=True)

    def move(self, x, y):
        """Moves the pointer and waits until it is there, which on a nested screen takes a moment."""
        self.pointer("mousemove", x, y)
        stage.wait_until(lambda: f"X={x}\nY={y}\n" in run("xdotool", "getmouselocation", "--shell"),
                         "the pointer is there", interval_seconds=0.01)

    def settle(self):
        """Waits until the window manager has handled all that happened: it answers a request of a window in its turn."""
        window = self.desktop.main_window()
        self.desktop.resize(window, window[3] ^ 1, window[4])

    def drag(self, x, y, dx, dy):
        """Presses at that point, moves in steps as a user does, and releases."""
        self.move(x, y)
        self.pointer("mousedown", 1)
        for step in range(1, 9):
            self.move(x + dx * step // 8, y + dy * step // 8)
        self.pointer("mouseup", 1)
        self.move(x + dx + 1, y + dy)  # arrives after the release
        self.settle()

    def drag_background(self):
        """Drags the part of the sidebar below its pages."""
        x, y = self.place()
        self.drag(x + 100, y + 560, 60, 30)

    def drag_title_bar(self):
        window = self.desktop.main_window()
        extents = re.findall(r"\d+", run("xprop", "-id", window[0], "_NET_FRAME_EXTENTS"))
        height = int(extents[2])
        if height <= 10:
            raise stage.StageError(f"there is no title bar: {extents}")
        # The top of the content on the screen; the title bar is above it.
        top = int(re.search(r"Absolute upper-left Y:\s+(-?\d+)", run("xwininfo", "-id", window[0])).group(1))
        self.drag(window[1] + 300, top - height // 2, 40, 30)
        stage.wait_until(lambda: self.place() != window[1:3], "the window moves")

    def rests(self):
        """Moves the pointer about; returns whether the window stays where it is all the time."""
        place = self.place()
        for x, y in ((900, 500), (400, 300)):
            self.move(x, y)
            self.settle()
            if self.place() != place:
                return False
        return True


class DraggingTheWindow(unittest.TestCase):
    def test_after_a_drag_on_its_background_it_stays_where_it_is(self):
        with Desktop() as desktop:
            dragging = Dragging(desktop)
            for _ in range(3):
                before = dragging.place()
                dragging.drag_background()
                self.assertTrue(dragging.rests(), "it sticks to the pointer")
                self.assertEqual(dragging.place(), before)

    def test_its_title_bar_moves_it(self):
        with Desktop() as desktop:
            dragging = Dragging(desktop)
            dragging.drag_title_bar()
            self.assertTrue(dragging.rests(), "it sticks to the pointer")


class DraggingTheWindowWithADevice(unittest.TestCase):
    """The same on a nested screen, whose pointer is a device to the window manager: a grab of the pointer, and a release
    during it, are what they are on a desk. Events that a test makes on the screen itself (XTest) are not.
    """

    def assert_only_the_title_bar_moves_it(self, manager):
        stage.require_command("Xephyr", "the display server whose pointer is a device")
        stage.require_command(manager, "the window manager of this test")
        with Desktop(window_manager=manager, nested=True) as desktop:
            dragging = Dragging(desktop)
            before = dragging.place()
            dragging.drag_background()
            self.assertTrue(dragging.rests(), "it sticks to the pointer after a drag on its background")
            self.assertEqual(dragging.place(), before)
            dragging.drag_title_bar()
            self.assertTrue(dragging.rests(), "it sticks to the pointer after a drag on its title bar")

    def test_only_its_title_bar_moves_it_under_openbox(self):
        self.assert_only_the_title_bar_moves_it("openbox")

    def test_only_its_title_bar_moves_it_under_icewm(self):
        self.assert_only_the_title_bar_moves_it("icewm")

    def test_only_its_title_bar_moves_it_under_jwm(self):
        self.assert_only_the_title_bar_moves_it("jwm")


if __name__ == "__main__":
    unittest.main()
