"""Tests of the status item with real desktop panels: a host for status notifier items, and a classic tray."""

import contextlib
import time
import unittest

import stage
from desktop import PANEL_HEIGHT, Desktop, run
from status_host import StatusHost


class UnderAPanel(unittest.TestCase):
    def open_panel(self, desktop):
        point = desktop.click_item()
        return point, desktop.wait_for_panel_window()

    def check_that_it_is_at_the_item(self, point, window):
        _, left, top, width, _ = window
        self.assertLess(abs(top - PANEL_HEIGHT), PANEL_HEIGHT, "it hangs under the bar")
        self.assertLessEqual(left, point[0])
        self.assertGreaterEqual(left + width, point[0] - 1)
        self.assertLessEqual(left + width, 1280, "it stays on the screen")

    def test_the_item_appears_and_opens_the_panel_where_it_is(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            point, window = self.open_panel(desktop)
            self.check_that_it_is_at_the_item(point, window)
            desktop.screen.wait_for("Ouvrir Fenwhirl")
            self.assertIsNone(desktop.main_window(), "nothing else was shown")
            state = run("xprop", "-id", window[0], "_NET_WM_STATE")
            for wanted in ("SKIP_TASKBAR", "SKIP_PAGER", "ABOVE"):
                self.assertIn(f"_NET_WM_STATE_{wanted}", state)

    def test_the_panel_closes_on_escape(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            self.open_panel(desktop)
            stage.wait_until(lambda: desktop.has_focus(desktop.panel_window()), "the panel has the keyboard")
            desktop.key("Escape")
            stage.wait_until(lambda: not desktop.windows(), "the panel closes")

    def test_the_panel_closes_on_a_click_outside(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            self.open_panel(desktop)
            desktop.click(200, 600)
            stage.wait_until(lambda: not desktop.windows(), "the panel closes")

    def test_a_second_click_on_the_item_closes_the_panel(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            point, _ = self.open_panel(desktop)
            time.sleep(0.6)  # the program treats two clicks in quick succession as one
            desktop.click(*point)
            stage.wait_until(lambda: not desktop.windows(), "the panel closes")
            desktop.polls()
            self.assertEqual(desktop.windows(), [], "and stays closed")

    def test_opening_the_main_window_closes_the_panel_first(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            self.open_panel(desktop)
            desktop.screen.press("Ouvrir Fenwhirl")
            desktop.wait_for_main_window()
            self.assertIsNone(desktop.panel_window())

    def test_a_host_that_comes_three_seconds_late_gets_the_item(self):
        with Desktop() as desktop:
            desktop.see_the_empty_panel()
            began = time.monotonic()
            desktop.start()
            stage.wait_until(lambda: time.monotonic() - began > 3, "three seconds")
            desktop.start_panel()
            came = time.monotonic() - began
            desktop.wait_for_item()
            if came < 9:  # without a host the main window is shown after ten seconds
                self.assertIsNone(desktop.main_window())

    def test_a_host_that_was_lost_and_comes_back_gets_the_item_again(self):
        with Desktop() as desktop:
            panel = desktop.start_panel()
            desktop.start()
            desktop.wait_for_item()
            panel.stop()
            stage.wait_until(lambda: not desktop.has_host(), "the host is gone")
            desktop.start_panel()
            desktop.wait_for_item()
            self.check_that_it_is_at_the_item(*self.open_panel(desktop))

    def test_the_item_goes_with_the_program(self):
        with Desktop() as desktop:
            desktop.start_panel()
            application = desktop.start()
            desktop.wait_for_item()
            self.assertEqual(application.stop(), 0)
            desktop.wait_until_item_gone()


class ByKeyboard(unittest.TestCase):
    """The panel without the pointer. How the item itself is reached by keyboard depends on the desktop's panel, which then asks
    the item to open, often without a position."""

    def test_it_is_opened_used_and_left(self):
        with Desktop(helper=True) as desktop, StatusHost() as host:
            desktop.cover("600x400+100+100")
            desktop.start()
            stage.wait_until(lambda: host.item, "the host has the item")
            before = run("xdotool", "getwindowfocus").strip()
            host.press(0, 0)
            stage.wait_until(lambda: desktop.has_focus(desktop.panel_window()), "the panel has the keyboard")
            stage.wait_until(lambda: (node := desktop.screen.focused()) and node.name == "Auto", "its first control has it")
            desktop.key("Right")
            stage.wait_until(lambda: (node := desktop.screen.focused()) and node.name == "Silencieux"
                             and "checked" in node.states, "the next preset is chosen")
            desktop.key("Escape")
            stage.wait_until(lambda: not desktop.panel_window(), "the panel closes")
            stage.wait_until(lambda: run("xdotool", "getwindowfocus").strip() == before, "the focus goes back to where it was")

    def test_its_last_button_opens_the_window(self):
        with Desktop() as desktop, StatusHost() as host:
            desktop.start()
            stage.wait_until(lambda: host.item, "the host has the item")
            host.press(0, 0)
            stage.wait_until(lambda: desktop.has_focus(desktop.panel_window()), "the panel has the keyboard")
            stage.wait_until(lambda: desktop.screen.focused(), "something in it, too")

            def is_there():
                node = desktop.screen.focused()
                if node is not None and node.name == "Ouvrir Fenwhirl":
                    return True
                desktop.key("Tab")
                return False
            stage.wait_until(is_there, "Tab leads to the button", interval_seconds=0.3)
            desktop.key("Return")
            desktop.wait_for_main_window()
            self.assertIsNone(desktop.panel_window())


class MenuOfAHost(unittest.TestCase):
    """The menu that a host opens with the secondary button or the menu key: it draws the entries itself, or else asks the item."""

    @contextlib.contextmanager
    def hosted(self, **options):
        with Desktop(**options) as desktop, StatusHost() as host:
            desktop.start()
            stage.wait_until(lambda: host.item, "the host has the item")
            yield desktop, host

    def test_a_preset_that_is_chosen_is_applied_to_the_fans(self):
        with self.hosted(helper=True, user=65534) as (desktop, host):
            checked = [text for text, (_, properties) in host.menu().items() if properties.get("toggle-state") == 1]
            self.assertEqual(checked, [], "every fan is automatic by itself")
            host.choose("Max")
            desktop.mac.tell("await value F0Tg above 6100 within 20")
            stage.wait_until(lambda: host.menu()["Max"][1].get("toggle-state") == 1, "the menu says so")
            self.assertEqual(desktop.windows(), [], "no window was opened")

    def test_open_opens_the_window(self):
        with self.hosted() as (desktop, host):
            host.choose("Ouvrir Fenwhirl")
            stage.wait_until(lambda: desktop.has_focus(desktop.main_window()), "the window has the keyboard")

    def test_quit_ends_the_program(self):
        with self.hosted() as (desktop, host):
            host.choose("Quitter")
            self.assertEqual(desktop.application.child.wait(stage.PATIENCE_SECONDS), 0)

    def test_a_host_that_draws_no_menu_gets_the_panel(self):
        with self.hosted() as (desktop, host):
            host.press(0, 0, "ContextMenu")
            stage.wait_until(lambda: desktop.has_focus(desktop.panel_window()), "the panel has the keyboard")
            desktop.screen.wait_for("Quitter")


class UnderAClassicTray(unittest.TestCase):
    @staticmethod
    def is_wide(changed_area):
        return changed_area is not None and changed_area[2] > 1.5 * changed_area[3]

    def test_the_icon_appears_and_opens_the_panel_where_it_is(self):
        with Desktop() as desktop:
            desktop.start_tray()
            desktop.start()
            stage.wait_until(lambda: self.is_wide(desktop.changed_area()),
                             lambda: f"the temperature beside the symbol; there is {desktop.changed_area()}")
            x, _ = desktop.click_item()
            _, left, top, width, _ = desktop.wait_for_panel_window()
            self.assertLess(abs(top - PANEL_HEIGHT), PANEL_HEIGHT)
            self.assertTrue(left <= x <= left + width <= 1280, (x, left, width))
            stage.wait_until(lambda: desktop.has_focus(desktop.panel_window()), "the panel has the keyboard")
            desktop.key("Escape")
            stage.wait_until(lambda: not desktop.windows(), "the panel closes")

    def test_a_tray_that_comes_late_gets_the_icon(self):
        with Desktop() as desktop:
            desktop.start_tray().stop()
            desktop.start()
            desktop.start_tray()
            desktop.wait_for_item()
            desktop.click_item()
            desktop.wait_for_panel_window()


class ThePanelsEdge(unittest.TestCase):
    """The panel over a white window, in the light appearance: any dark pixel at its edge does not belong to it."""

    @contextlib.contextmanager
    def opened(self, compositor):
        with Desktop(preferences={"theme": "light"}) as desktop:
            if compositor:
                desktop.stack.enter_context(stage.Process(["xcompmgr"]))
                stage.wait_until(lambda: run("xdotool", "search", "--name", "^xcompmgr$"), "windows are composed")
            desktop.cover("1280x760+0+0")
            desktop.start_tray()
            desktop.start()
            desktop.click_item()
            yield desktop, desktop.wait_for_panel_window()

    @staticmethod
    def brightness(x, y, width=1, height=1):
        """The brightness of the darkest pixel in that rectangle of the screen, 0 to 255."""
        return int(float(run("import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-colorspace", "gray",
                             "-format", "%[fx:255*minima]", "info:") or -1))

    def test_without_a_compositor_its_corners_are_clean(self):
        with self.opened(compositor=False) as (_, (_, x, y, width, height)):
            self.assertEqual(width, 340)
            for corner in ((x, y + height - 14), (x + width - 14, y + height - 14)):
                stage.wait_until(lambda at=corner: self.brightness(*at, 14, 14) > 0xD0,
                                 lambda at=corner: f"a clean corner; its darkest is {self.brightness(*at, 14, 14)}")

    def test_with_a_compositor_it_has_a_shadow(self):
        with self.opened(compositor=True) as (desktop, (_, x, y, width, height)):
            self.assertEqual(width, 440)
            bottom = y + 32 + height - 100
            stage.wait_until(lambda: 0x80 < self.brightness(x + 220, bottom + 6) < 0xF0,
                             lambda: f"a shadow below; there is {self.brightness(x + 220, bottom + 6)}")
            self.assertGreater(self.brightness(x + 1, y + height - 2), 0xF8, "the shadow ends before its window does")
            # The panel itself is entirely on the screen, and a click on its shadow counts as a click outside.
            self.assertLessEqual(x + 50 + 340, 1280)
            self.assertIn("50, 50, 32, 68", run("xprop", "-id", desktop.panel_window()[0], "_GTK_FRAME_EXTENTS"))
            desktop.click(x + 20, y + 200)
            stage.wait_until(lambda: not desktop.panel_window(), "the panel closes")


class WithoutAPlace(unittest.TestCase):
    def test_the_main_window_is_shown_after_ten_seconds(self):
        with Desktop() as desktop:
            begin = time.monotonic()
            desktop.launch()
            stage.wait_until(desktop.screen.root, "it runs")
            desktop.wait_for_main_window()
            self.assertGreater(time.monotonic() - begin, 9.5, "a place may still come")
            desktop.close(desktop.main_window())
            stage.wait_until(lambda: not desktop.windows(), "it closes")
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()


if __name__ == "__main__":
    unittest.main()
