"""Tests the program over hours with its window open: memory, descriptors and child processes do not grow."""

import os
import re
import time
import unittest

import stage
from helper_stage import processes
from scene import Scene

SLOWEST_STEP_SECONDS = 2.5  # slightly more than the interval of polls


class Endurance(unittest.TestCase):
    @staticmethod
    def own_kilobytes(pid):
        """The program's anonymous memory. Its mapped code is not counted, because a resting program gives that back."""
        with open(f"/proc/{pid}/status", encoding="ascii", errors="replace") as file:
            return int(re.search(r"RssAnon:\s+(\d+)", file.read()).group(1))

    @staticmethod
    def descriptors(pid):
        return len(os.listdir(f"/proc/{pid}/fd"))

    @staticmethod
    def ended_children(pid):
        living = {number for number, _, _ in processes()}
        return [name for number, parent, name in processes(zombies=True) if parent == pid and number not in living]

    def test_hours_of_heat_helpers_and_samples_leave_no_trace(self):
        """The applications page is open, so that processes are sampled every four seconds beside the polls. The temperature keeps
        changing, so that most polls run the helper.
        """
        seconds = stage.rounds(24, 7200)
        # The chart's history is full after ten minutes. Until then memory grows as intended.
        warm_up_seconds = stage.rounds(8, 900)
        bearable_kilobytes = stage.rounds(4096, 1024)
        with Scene() as scene:
            scene.choose_preset("Jeu")
            scene.open_page("Applications")
            pid = scene.application.child.pid
            begin = time.monotonic()
            at_first, descriptors, most_ended, step = None, set(), 0, 0
            while time.monotonic() - begin < seconds:
                step += 1
                scene.mac.tell(f"set TCXC {45 + step * 7 % 46}")
                time.sleep(SLOWEST_STEP_SECONDS)
                most_ended = max(most_ended, len(self.ended_children(pid)))
                if time.monotonic() - begin > warm_up_seconds:
                    at_first = at_first or self.own_kilobytes(pid)
                    descriptors.add(self.descriptors(pid))
            grown = self.own_kilobytes(pid) - at_first
            sent = sum(key == "F0Tg" for key, _, _ in scene.writes())
            print(f"{step} steps, {sent} targets, {grown:+} KiB, {sorted(descriptors)} descriptors, {most_ended} ended children")
            self.assertGreater(sent, step // 3)
            self.assertLess(grown, bearable_kilobytes)
            self.assertLessEqual(most_ended, 1, "ended children that nobody has waited for yet")
            # Starting a child or reading from it takes a few descriptors for a moment.
            self.assertLessEqual(max(descriptors) - min(descriptors), 6)
            self.assertLessEqual(self.settled_descriptors(pid), min(descriptors))
            self.assertEqual(scene.application.stop(), 0)

    def settled_descriptors(self, pid):
        return min(self.descriptors(pid) for _ in range(200) if time.sleep(0.02) is None)


if __name__ == "__main__":
    unittest.main()
