"""Tests that the program hands the fans back however it ends: by its own button, at the end of the session, or when the display
goes away.

Signals are tested in end_to_end_test.py, kills and crashes in guard_test.py.
"""

import contextlib
import os
import subprocess
import unittest
import unittest.mock

import stage
from helper_stage import processes
from notification_area import NotificationArea
from scene import Scene


class SessionManager(stage.Process):
    """Runs the test session manager, which logs programs out as a desktop does."""

    def __init__(self, build):
        # Authenticating only the session's owner would need xauth and a home folder, so the test manager accepts everyone.
        super().__init__([build / "tests/SessionManager"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.lines = stage.Lines(self.child.stdout)
        self.address = self.lines.next()

    def tell(self, command):
        self.child.stdin.write((command + "\n").encode())
        self.child.stdin.flush()

    def expect(self, *words):
        for word in words:
            found = self.lines.next()
            if found != word:
                raise stage.StageError(f"the session manager said {found!r} instead of {word!r}")


class Ends(unittest.TestCase):
    def drive(self, scene):
        """Brings both fans under manual control."""
        scene.mac.tell("set TCXC 70")
        scene.choose_preset("Jeu")
        scene.wait_for_modes("manual", "fans under manual control")

    def assert_handed_back(self, scene, since):
        self.assertEqual((scene.fan(0)[2], scene.fan(1)[2]), ("automatic", "automatic"))
        # A guard that was not dismissed would run the helper as well, twice within five seconds, and then end.
        stage.wait_until(lambda: not any(name == "fenwhirl-guard" for _, _, name in processes()), "the guard ends")
        self.assertEqual(scene.writes(since + 1)[-2:], [("FS! ", 2.0, 0), ("FS! ", 0.0, 0)], "each fan in its turn, and last")

    @staticmethod
    def is_setting_the_first_speed():
        """Whether a helper is setting the first fan. It may also run for the second one, or only to print its version."""
        for process in (number for number, _, name in processes() if name == "FenwhirlHelper"):
            with contextlib.suppress(OSError), open(f"/proc/{process}/cmdline", "rb") as file:
                if file.read().split(b"\0")[2:4] == [b"set", b"0"]:
                    return True
        return False

    @contextlib.contextmanager
    def session(self, scene):
        """Drives the fans, then restarts Fenwhirl as part of a session and waits until it has joined and saved its state."""
        self.drive(scene)
        scene.application.stop()
        with SessionManager(scene.build) as session:
            os.environ["SESSION_MANAGER"] = session.address
            scene.application = scene.stack.enter_context(stage.Application(scene.build))
            session.expect("joined", "saved")
            yield session

    def ends(self, scene):
        return stage.wait_until(lambda: not scene.application.running(), "the program ends", 40)

    def test_by_the_button_of_the_status_items_panel(self):
        with Scene() as scene:
            self.drive(scene)
            area = NotificationArea()
            area.wait_for_item()
            since = len(scene.writes())
            area.click()
            scene.screen.press("Quitter")
            self.ends(scene)
            self.assertEqual(scene.application.child.returncode, 0)
            self.assert_handed_back(scene, since)

    def test_while_a_slow_helper_is_setting_a_speed(self):
        with Scene() as scene:
            self.drive(scene)
            since = len(scene.writes())
            scene.mac.tell("fault delay 3000 times 1 key F0Tg command write")
            scene.mac.tell("set TCXC 50")
            stage.wait_until(self.is_setting_the_first_speed, "a helper sets a speed")
            self.assertEqual(scene.application.stop(seconds=40), 0)
            self.assertIn("F0Tg", [key for key, _, _ in scene.writes(since + 1)], "what was under way came to its end")
            self.assert_handed_back(scene, since)

    def test_at_the_end_of_the_session(self):
        with Scene() as scene:
            with self.session(scene) as session:
                scene.wait_for_modes("manual", "driven again")
                since = len(scene.writes())
                session.tell("end")
                session.expect("saved")
                session.tell("die")
                session.expect("left")
                self.ends(scene)
            self.assertEqual(scene.application.child.returncode, 0)
            self.assert_handed_back(scene, since)

    def test_a_log_out_that_is_cancelled_changes_nothing(self):
        with Scene() as scene, self.session(scene) as session:
            session.tell("end")
            session.expect("saved")
            session.tell("cancel")
            scene.wait_for_modes("manual", "driven again")
            scene.mac.tell("set TCXC 92")
            scene.wait_for_modes("automatic", "and watched over")
            self.assertTrue(scene.application.running())

    def test_when_the_display_goes_away(self):
        # Qt then ends the process where it is, so that a sanitizer would report everything as leaked.
        no_leaks = {"ASAN_OPTIONS": ":".join(filter(None, (os.environ.get("ASAN_OPTIONS"), "detect_leaks=0")))}
        with unittest.mock.patch.dict(os.environ, no_leaks), Scene() as scene:
            self.drive(scene)
            scene.display.stop()
            self.ends(scene)
            scene.wait_for_modes("automatic", "handed back", 10)


if __name__ == "__main__":
    unittest.main()
