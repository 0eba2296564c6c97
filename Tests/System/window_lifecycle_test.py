"""Tests of the main window's life cycle: hidden and first starts, closing, coming back, and second starts of the program."""

import subprocess
import unittest

import stage
from desktop import Desktop


class Starting(unittest.TestCase):
    def test_the_first_launch_shows_the_introduction(self):
        with Desktop(onboarded=False) as desktop:
            desktop.start()
            desktop.wait_for_main_window()
            desktop.screen.wait_for("Bienvenue dans Fenwhirl")

    def test_ending_during_the_introduction_begins_it_again(self):
        with Desktop(onboarded=False) as desktop:
            application = desktop.start()
            desktop.screen.press("Suivant")
            desktop.screen.wait_for("Pilote tes ventilateurs")
            self.assertEqual(application.stop(), 0)
            desktop.start()
            desktop.screen.wait_for("Bienvenue dans Fenwhirl")

    def test_after_the_introduction_the_next_launch_is_hidden(self):
        with Desktop(onboarded=False) as desktop:
            desktop.start_panel()
            application = desktop.start()
            for button in ("Suivant", "Suivant", "Commencer"):
                desktop.screen.press(button)
            desktop.screen.wait_for("Mac en bonne santé")
            self.assertEqual(application.stop(), 0)
            desktop.start()
            desktop.wait_for_item()
            self.assertEqual(desktop.windows(), [])

    def test_a_later_launch_never_maps_a_window_and_still_drives_the_fans(self):
        with Desktop(helper=True, preferences={"preset": "max", **constant_fans(2, 3000)}) as desktop:
            desktop.start_panel()
            with desktop.watch_for_windows() as watched:
                desktop.start()
                stage.wait_until(lambda: "key=F0Tg" in "".join(desktop.mac.tell("log 1")), "the first fan is set")
                desktop.wait_for_item()
                desktop.polls()
                self.assertEqual(watched(), [])

    def test_a_window_that_is_shown_would_have_been_noticed(self):
        with Desktop(onboarded=False) as desktop:
            with desktop.watch_for_windows() as watched:
                desktop.start()
                desktop.wait_for_main_window()
                stage.wait_until(watched, "the window was noticed")


class ClosingAndComingBack(unittest.TestCase):
    def test_the_window_of_the_next_start_is_where_the_last_one_was(self):
        with Desktop() as desktop:
            application = desktop.start()
            self.assertEqual(desktop.start_again(), 0)
            window = desktop.wait_for_main_window()
            desktop.resize(window, 1000, 600)
            subprocess.run(["xdotool", "windowmove", window[0], "150", "90"], check=True)
            place = stage.wait_until(
                lambda: (desktop.main_window() or window)[1:3] != window[1:3] and desktop.main_window()[1:],
                "the window is moved")
            self.assertEqual(application.stop(), 0)
            desktop.start()
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()
            stage.wait_until(lambda: desktop.main_window()[1:] == place,
                             lambda: f"the window is at {place}; it is at {desktop.main_window()}")

    def test_a_closed_window_comes_back_on_the_same_page(self):
        with Desktop() as desktop:
            application = desktop.start()
            self.assertEqual(desktop.start_again(), 0)
            window = desktop.wait_for_main_window()
            desktop.screen.press("Alertes", "page tab")
            desktop.screen.wait_for("Sois prévenu avant que ton Mac ne souffre")
            desktop.close(window)
            stage.wait_until(lambda: not desktop.windows(), "the window closes")
            desktop.polls()
            self.assertTrue(application.running(), "closing is not quitting")
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()
            desktop.screen.wait_for("Sois prévenu avant que ton Mac ne souffre")
            self.assertEqual(len(desktop.windows()), 1)

    def test_a_second_start_raises_the_window_and_ends(self):
        with Desktop() as desktop:
            application = desktop.start()
            self.assertEqual(desktop.start_again(), 0)
            first = desktop.wait_for_main_window()
            desktop.cover()
            stage.wait_until(lambda: not desktop.has_focus(first), "another window is in front")
            self.assertEqual(desktop.start_again(), 0)
            stage.wait_until(lambda: desktop.has_focus(first), "the window comes to the front")
            self.assertEqual([window[0] for window in desktop.windows()], [first[0]], "and it is the only one")
            self.assertTrue(application.running())

    def test_a_minimised_window_is_brought_back_by_a_second_start(self):
        with Desktop() as desktop:
            desktop.start()
            self.assertEqual(desktop.start_again(), 0)
            first = desktop.wait_for_main_window()
            stage.wait_until(lambda: desktop.has_focus(first), "it is in front")  # being raised would bring it back
            subprocess.run(["xdotool", "windowminimize", first[0]], check=True)
            stage.wait_until(lambda: not desktop.windows(), "it is minimised")
            self.assertEqual(desktop.start_again(), 0)
            self.assertEqual(desktop.wait_for_main_window()[0], first[0])

    def test_without_a_session_bus_a_second_start_raises_it_too(self):
        with Desktop() as desktop:
            desktop.start(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()

    def test_a_start_from_outside_the_session_raises_it_too(self):
        with Desktop() as desktop:
            application = desktop.start()
            elsewhere = desktop.home / "elsewhere"
            elsewhere.mkdir(0o700)
            self.assertEqual(desktop.start_again(XDG_RUNTIME_DIR=str(elsewhere)), 0)
            desktop.wait_for_main_window()
            self.assertEqual(len(desktop.windows()), 1)
            self.assertTrue(application.running())

    def test_two_starts_at_once_leave_one_program(self):
        with Desktop() as desktop:
            starts = [desktop.stack.enter_context(stage.Application(desktop.build)) for _ in range(4)]
            stage.wait_until(lambda: sum(start.running() for start in starts) == 1, "all but one end")
            self.assertEqual([start.child.returncode for start in starts if not start.running()], [0, 0, 0])


class Size(unittest.TestCase):
    def test_it_opens_at_its_usual_size_and_never_gets_too_small(self):
        with Desktop(onboarded=False) as desktop:
            desktop.start()
            window = desktop.wait_for_main_window()
            self.assertEqual(window[3:], (1040, 680))
            run_size = ["xdotool", "windowsize", window[0], "300", "200"]
            subprocess.run(run_size, check=True)
            stage.wait_until(lambda: desktop.main_window()[3:] != (1040, 680), "the window manager resizes it")
            self.assertEqual(desktop.main_window()[3:], (920, 560))


def constant_fans(count, rpm):
    """Preferences with all fans at one constant speed."""
    import base64
    import json
    setting = {"mode": "constant", "constantRPM": rpm, "sensorKey": "", "startTemp": 50, "maxTemp": 90}
    text = json.dumps({str(index): setting for index in range(count)})
    return {"settings": {"data": base64.b64encode(text.encode()).decode()}}


if __name__ == "__main__":
    unittest.main()
