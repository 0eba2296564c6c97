"""Tests that an invisible window costs nothing: no frames are rendered and no texts are formatted for it."""

import pathlib
import re
import subprocess
import unittest

import stage
from desktop import Desktop

# Makes Qt log every frame of the scene graph, whatever the renderer.
FRAMES = {"QT_LOGGING_RULES": "qt.scenegraph.time.renderloop.debug=true"}


class HiddenWindow(unittest.TestCase):
    def frames(self, desktop):
        return len(re.findall(r"qt\.scenegraph\.time\.renderloop", desktop.log()))

    def of_process(self, desktop, file):
        return (pathlib.Path("/proc") / str(desktop.application.child.pid) / file).read_text()

    def kilobytes_from_files(self, desktop):
        """Resident memory that is mapped from files: the code of the program and its libraries."""
        return int(re.search(r"RssFile:\s+(\d+)", self.of_process(desktop, "status")).group(1))

    def count_while(self, desktop, celsius):
        """Counts the frames drawn while the temperature, and with it the content of every page, changes twice."""
        before = self.frames(desktop)
        for step in range(2):
            desktop.mac.tell(f"set TCXC {celsius + 4 * step}")
            desktop.polls()
        return self.frames(desktop) - before

    def wait_until_at_rest(self, desktop):
        """Waits until what was still under way is drawn: until no frame is drawn during a poll."""
        def rests():
            before = self.frames(desktop)
            desktop.polls()
            return self.frames(desktop) == before
        stage.wait_until(rests, "nothing is drawn any more", seconds=2 * stage.PATIENCE_SECONDS)

    def wait_for_a_frame(self, desktop, celsius):
        """Changes the temperature and waits until that is drawn."""
        before = self.frames(desktop)
        desktop.mac.tell(f"set TCXC {celsius}")
        stage.wait_until(lambda: self.frames(desktop) > before, "an open window shows what changes")

    def check(self, hide, show_again):
        with Desktop() as desktop:
            desktop.start_panel()  # without a place for the status item the program would show its window again
            desktop.start(**FRAMES)
            self.assertEqual(desktop.start_again(), 0)
            window = desktop.wait_for_main_window()
            desktop.screen.wait_for("Mac en bonne santé")
            self.wait_for_a_frame(desktop, 50)
            hide(desktop, window)
            stage.wait_until(lambda: not desktop.windows(), "the window is out of sight")
            self.wait_until_at_rest(desktop)
            self.assertEqual(self.count_while(desktop, 60), 0)
            show_again(desktop, window)
            desktop.wait_for_main_window()
            desktop.screen.wait_for(lambda text: re.fullmatch(r"64\s°C", text))

    def test_closed(self):
        self.check(lambda desktop, window: desktop.close(window), lambda desktop, _: desktop.start_again())

    def test_minimised(self):
        self.check(lambda _, window: subprocess.run(["xdotool", "windowminimize", window[0]], check=True),
                   lambda desktop, _: desktop.start_again())

    def test_from_the_start(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start(**FRAMES)
            desktop.wait_for_item()
            self.assertEqual(self.count_while(desktop, 50), 0)
            self.assertNotIn("JSGCHeap", self.of_process(desktop, "maps"), "there is no engine yet")
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()
            self.assertIn("JSGCHeap", self.of_process(desktop, "maps"), "that is how one is known")

    def test_what_only_the_start_needed_does_not_stay_in_memory(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.launch()
            most = 0  # soon after the launch; ten seconds later the program gives memory back

            def has_shrunk():
                nonlocal most
                now = self.kilobytes_from_files(desktop)
                most = max(most, now)
                return now < most / 2

            stage.wait_until(has_shrunk, lambda: f"less than half of {most} kB; there are {self.kilobytes_from_files(desktop)}",
                             seconds=2 * stage.PATIENCE_SECONDS)
            desktop.polls()
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()
            desktop.screen.wait_for("Mac en bonne santé")

    def test_without_a_graphics_processor_it_uses_the_software_renderer(self):
        if any(pathlib.Path("/dev/dri").glob("renderD*")):
            self.skipTest("this computer has a graphics processor")
        with Desktop(onboarded=False) as desktop:
            desktop.start(**FRAMES)
            desktop.wait_for_main_window()
            stage.wait_until(lambda: "'software' renderloop" in desktop.log(), "a frame of the software renderer")

    def test_the_closed_panel(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start(**FRAMES)
            desktop.click_item()
            desktop.wait_for_panel_window()
            self.wait_for_a_frame(desktop, 50)
            stage.wait_until(lambda: desktop.has_focus(desktop.panel_window()), "the panel has the keyboard")
            desktop.key("Escape")
            stage.wait_until(lambda: not desktop.windows(), "the panel closes")
            self.wait_until_at_rest(desktop)
            self.assertEqual(self.count_while(desktop, 60), 0)


if __name__ == "__main__":
    unittest.main()
