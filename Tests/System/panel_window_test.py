"""Tests that the status item's panel follows the size of its content while open, under a window manager that enforces size
hints.
"""

import re
import time
import unittest

import stage
from desktop import Desktop, run

PADDING = 16  # between the last button and the panel's lower edge


class PanelWindow(unittest.TestCase):
    def open_panel(self, desktop):
        desktop.click_item()
        desktop.wait_for_panel_window()

    def close_panel(self, desktop):
        stage.wait_until(lambda: desktop.has_focus(desktop.panel_window()), "the panel has the keyboard")
        desktop.key("Escape")
        stage.wait_until(lambda: not desktop.panel_window(), "the panel closes")
        closed = time.monotonic()
        # Shortly after the panel has closed, the program mistakes a click for the one that closed it.
        stage.wait_until(lambda: time.monotonic() - closed > 0.4, "a click opens it again")

    @staticmethod
    def measure(desktop, last):
        """Returns the window's size, the sizes that its hints allow, and the space below the last button."""
        window = desktop.panel_window()
        button = desktop.screen.find(last)
        if not window or not button:
            return None
        hints = run("xprop", "-id", window[0], "WM_NORMAL_HINTS")
        limits = [tuple(int(number) for number in pair)
                  for pair in re.findall(r"(?:minimum|maximum) size: (\d+) by (\d+)", hints)]
        place = button.place(on_screen=True)
        return {"size": window[3:], "limits": limits, "below": window[2] + window[4] - place.y - place.height}

    def wait_for_fit(self, desktop, last="Quitter"):
        """Waits until the window ends just below its last button and its hints allow no other size; returns its height."""
        def fits():
            found = self.measure(desktop, last)
            return found and found["below"] == PADDING and found["limits"] == [found["size"]] * 2 and found["size"][1]
        return stage.wait_until(fits, lambda: f"a window that fits; there is {self.measure(desktop, last)}")

    def assert_it_grows_and_still_fits_when_opened_again(self, manager):
        stage.require_command(manager, "the window manager of this test")
        with Desktop(window_manager=manager) as desktop:
            desktop.start_panel()
            desktop.start()
            self.open_panel(desktop)
            before = self.wait_for_fit(desktop)
            # Without a helper, choosing the preset adds a button.
            desktop.screen.press("Max")
            desktop.screen.wait_for("Activer le contrôle des ventilateurs")
            self.assertEqual(self.wait_for_fit(desktop), before + 34 + 8)
            self.close_panel(desktop)
            self.open_panel(desktop)
            self.assertEqual(self.wait_for_fit(desktop), before + 34 + 8)
            desktop.screen.press("Auto", "radio button")
            desktop.screen.wait_until_gone("Activer le contrôle des ventilateurs")
            self.assertEqual(self.wait_for_fit(desktop), before)
            self.close_panel(desktop)
            self.open_panel(desktop)
            self.assertEqual(self.wait_for_fit(desktop), before)

    def test_it_grows_with_its_content_and_still_fits_when_it_is_opened_again(self):
        self.assert_it_grows_and_still_fits_when_opened_again("openbox")

    def test_it_grows_with_its_content_under_icewm(self):
        self.assert_it_grows_and_still_fits_when_opened_again("icewm")

    def test_it_grows_with_its_content_under_jwm(self):
        self.assert_it_grows_and_still_fits_when_opened_again("jwm")

    def test_it_grows_with_the_line_of_a_refused_change(self):
        with Desktop(helper=True) as desktop:
            desktop.start_panel()
            desktop.start()
            self.open_panel(desktop)
            before = self.wait_for_fit(desktop)
            desktop.mac.tell("refuse all")
            desktop.screen.press("Max")
            desktop.screen.wait_for("Ce Mac n'a pas accepté le changement de vitesse du ventilateur.")
            with_error = self.wait_for_fit(desktop)
            self.assertGreater(with_error, before + 24)
            self.close_panel(desktop)
            self.open_panel(desktop)
            self.assertEqual(self.wait_for_fit(desktop), with_error)
            desktop.screen.press("Fermer")
            stage.wait_until(lambda: self.wait_for_fit(desktop) == before, "the line goes")

    def test_it_follows_fans_and_sensors_that_come_and_go(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            self.open_panel(desktop)
            with_fans = self.wait_for_fit(desktop)
            for _ in range(2):
                desktop.mac.tell("set FNum 0")
                desktop.screen.wait_until_gone(lambda text: text.startswith("Ventilateur "), "slider")
                without_fans = self.wait_for_fit(desktop)
                self.assertLess(without_fans, with_fans - 50)
                desktop.mac.tell("unpin FNum")
                desktop.screen.wait_for(lambda text: text.startswith("Ventilateur "), "slider")
                self.assertEqual(self.wait_for_fit(desktop), with_fans)

    def test_it_fits_when_its_content_changed_while_it_was_closed(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            self.open_panel(desktop)
            with_fans = self.wait_for_fit(desktop)
            self.close_panel(desktop)
            desktop.mac.tell("set FNum 0")
            desktop.polls()
            self.open_panel(desktop)
            self.assertLess(self.wait_for_fit(desktop), with_fans - 50)
            self.close_panel(desktop)
            desktop.mac.tell("unpin FNum")
            desktop.polls()
            self.open_panel(desktop)
            self.assertEqual(self.wait_for_fit(desktop), with_fans)

    def test_it_follows_a_language_with_longer_words(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()
            desktop.screen.press("Réglages", "page tab")
            self.open_panel(desktop)
            french = self.wait_for_fit(desktop)
            desktop.screen.press("Langue", "combo box")
            desktop.screen.press("Русский", "menu item")
            desktop.screen.wait_for("Завершить")
            self.assertGreater(self.wait_for_fit(desktop, "Завершить"), french)


if __name__ == "__main__":
    unittest.main()
