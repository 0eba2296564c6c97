"""Tests with machines that claim more keys and fans than any real one has: requests end in time, and the window stays
responsive.
"""

import time
import unittest

import stage
from helper_stage import HelperTest
from scene import Scene


class TheWindow(unittest.TestCase):
    def processor_seconds_for(self, scene, count):
        """The application's processor time from its next request to the controller until `count` requests have been sent.
        Unlike the time on the clock it does not grow with what else the computer does.
        """
        begin = scene.requests()
        stage.wait_until(lambda: scene.requests() > begin, "it is asked something", interval_seconds=0.01)
        before = scene.application.processor_seconds()
        scene.mac.tell(f"await requests {begin + count} within 60")
        return scene.application.processor_seconds() - before

    def test_sixty_five_thousand_keys_are_walked_in_five_seconds(self):
        with Scene(speed=0) as scene:
            scene.application.stop()
            scene.mac.tell("pin #KEY 0000FFFF")
            scene.start_again()
            self.assertLess(self.processor_seconds_for(scene, 65535), 5)

    def test_an_endless_key_walk_blocks_neither_window_nor_quit(self):
        with Scene(speed=0) as scene:
            scene.mac.tell("pin #KEY FFFFFFFF")
            scene.mac.tell("delay 1")  # leaves the processor to other tests
            scene.application.stop()
            scene.start_again(showing=True)
            before = scene.requests()
            stage.wait_until(lambda: scene.requests() > before + 2000, "the walk is under way")
            self.assertFalse(scene.shown_speeds())
            # The walk has no end, so nothing of this happens if it has to wait for it.
            scene.open_page("Alertes")
            scene.screen.wait_for("Alertes", "heading")
            self.assertEqual(scene.application.stop(), 0)

    def test_sixty_five_thousand_fans_are_read_in_five_seconds(self):
        with Scene(speed=0) as scene:
            scene.mac.tell("define FNum ui32 4 80 0000FFFF")
            stage.wait_until(lambda: len(scene.shown_speeds()) >= 2, "the two that there are stay on the screen")
            self.assertLess(self.processor_seconds_for(scene, 65535), 5)


class TheHelper(HelperTest):
    machine = "AppleSilicon"

    def timed(self, *arguments):
        begin = time.monotonic()
        self.assertEqual(self.helper(*arguments).returncode, 0)
        return time.monotonic() - begin

    def test_hands_two_hundred_and_fifty_five_fans_back_in_thirty_seconds(self):
        self.mac.tell("define FNum ui8 1 80 FF")
        self.assertLess(self.timed("auto"), 30)
        self.mac.tell("define FNum ui8 1 80 02")
        self.assertEqual(self.helper("set", "1", "3000").returncode, 0)
        self.mac.tell("define FNum ui8 1 80 FF")
        self.assertLess(self.timed("auto"), 30)
        self.mac.tell("define FNum ui8 1 80 02")
        self.assert_automatic()

    def test_sets_a_fan_as_quickly_however_many_keys_there_are(self):
        self.mac.tell("pin #KEY FFFFFFFF")
        for arguments in (("set", "0", "3000"), ("auto",)):
            before = self.mac.requests()
            self.assertEqual(self.helper(*arguments).returncode, 0)
            self.assertLess(self.mac.requests() - before, 500)


if __name__ == "__main__":
    unittest.main()
