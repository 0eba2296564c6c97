"""Tests of the guard beside the running program: what it does while the program is stopped, and its scope in a session that
systemd manages. guard_test.py tests the guard in detail.
"""

import os
import pathlib
import signal
import subprocess
import unittest

import stage
from desktop import Desktop
from helper_stage import is_running, processes
from scene import Scene

SERVICE = pathlib.Path(__file__).with_name("fake_systemd.py")
SILENCE_SECONDS = 25  # the guard's ten seconds, plus time for the last poll and the guard's own steps on a busy computer


class WhileTheProgramIsStopped(unittest.TestCase):
    def test_its_fans_are_automatic_and_afterwards_driven_again(self):
        with Scene() as scene:
            scene.mac.tell("set TCXC 70")
            scene.choose_preset("Jeu")
            scene.wait_for_modes("manual", "fans under manual control")
            scene.application.child.send_signal(signal.SIGSTOP)
            scene.wait_for_modes("automatic", "the guard hands the fans back", SILENCE_SECONDS)
            scene.application.child.send_signal(signal.SIGCONT)
            scene.wait_for_modes("manual", "the program drives them again")


class InASessionOfSystemd(unittest.TestCase):
    def serve(self, desktop, *words):
        service = desktop.stack.enter_context(stage.Process(["/usr/bin/python3", "-B", SERVICE, *words], stdout=subprocess.PIPE))
        lines = stage.Lines(service.child.stdout)
        self.assertEqual(lines.next(), "READY")
        return lines

    @staticmethod
    def guard(desktop):
        return stage.wait_until(lambda: next((number for number, parent, name in processes() if name == "fenwhirl-guard"
                                              and parent == desktop.application.child.pid), None), "the guard runs")

    def check_scope_requests(self, desktop, requests):
        desktop.start()
        guard = self.guard(desktop)
        self.assertEqual(requests.next(), f"app-fenwhirl-guard-{guard}.scope fail {guard}")
        os.kill(guard, signal.SIGKILL)
        stage.wait_until(lambda: not is_running(guard), "the guard is gone")
        successor = self.guard(desktop)
        self.assertNotEqual(successor, guard)
        self.assertEqual(requests.next(), f"app-fenwhirl-guard-{successor}.scope fail {successor}")

    def test_each_guard_gets_a_scope(self):
        with Desktop() as desktop:
            self.check_scope_requests(desktop, self.serve(desktop))

    def test_a_refusal_changes_nothing(self):
        with Desktop() as desktop:
            self.check_scope_requests(desktop, self.serve(desktop, "refuses"))


if __name__ == "__main__":
    unittest.main()
