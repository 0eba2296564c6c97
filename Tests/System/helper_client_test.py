"""Tests of HelperClient, the application's side of the helper: over a long time, and while system calls fail."""

import os
import re
import signal
import tempfile
import unittest

from helper_stage import HELPER, NOBODY, HelperTest, Probe, processes
from stage import StageError, rounds, wait_until

FAULTS = ("EIO", "ENOMEM", "EMFILE", "EINTR")


class TheClient(HelperTest):
    def probe(self, **options):
        probe = Probe(NOBODY, **options)
        self.addCleanup(probe.__exit__)
        return probe

    @staticmethod
    def resident_kilobytes(pid):
        with open(f"/proc/{pid}/status", encoding="ascii", errors="replace") as file:
            return int(re.search(r"VmRSS:\s+(\d+)", file.read()).group(1))

    def test_a_day_of_helper_runs_costs_neither_memory_nor_descriptors_nor_children(self):
        """A day with two fans, each of them sent every ten seconds: 17 280 runs."""
        probe = self.probe()
        at_first = None
        for number in range(rounds(300, 17280)):
            speed = 2200 + number // 2 % 20 * 100
            self.assertEqual(probe.tell(f"run set {number % 2} {speed}"), "yes")
            if number == 100:
                at_first = self.resident_kilobytes(probe.pid), set(os.listdir(f"/proc/{probe.pid}/fd"))
        self.assertLess(self.resident_kilobytes(probe.pid), at_first[0] + 1024)
        self.assertEqual(set(os.listdir(f"/proc/{probe.pid}/fd")), at_first[1])
        self.assertEqual([name for _, parent, name in processes(zombies=True) if parent == probe.pid], [])
        self.assertEqual(self.value("FS!"), 3)

    def test_a_helper_that_was_kept_hands_back_after_its_file_is_gone(self):
        probe = self.probe()
        self.assertEqual(probe.tell("run set 0 3000"), "yes")
        self.assertEqual(probe.tell("keep"), "yes")
        os.unlink(HELPER)
        self.assertEqual(self.value("FS!"), 1)
        self.assertEqual(probe.tell("run-kept auto 0"), "yes")
        self.assertEqual(self.value("FS!"), 0)

    def traced(self, trace, *injection):
        options = [f"--inject={each}" for each in injection]
        return self.probe(launcher=["strace", "-o", trace, *options], env={})

    def test_each_system_call_of_a_run_may_fail(self):
        self.inject_faults("run set 0 2400", r"yes|no")

    def test_each_system_call_of_a_run_for_its_output_may_fail(self):
        # The answer is the number of bytes: none, the version's two, or a message that it could not be started.
        self.inject_faults("output version", r"0|2|\d\d")

    def inject_faults(self, request, answers):
        with tempfile.NamedTemporaryFile() as trace:
            os.chmod(trace.name, 0o666)
            probe = self.traced(trace.name)
            answer = probe.tell(request)
            probe.end()
            lines = trace.read().decode("utf-8", "replace").splitlines()
        names = [found.group(1) if (found := re.match(r"([a-z_0-9]+)\(", line)) else "" for line in lines]
        ready = next(index for index, line in enumerate(lines) if line.startswith('write(1, "ready '))
        first = next(index for index, line in enumerate(lines) if index > ready and line.startswith("read(0, "))
        last = next(index for index, line in enumerate(lines) if index > first and line.startswith(f'write(1, "{answer}'))
        tried = set()
        for position in range(first + 1, last):
            name = names[position]
            # These two are left out. The real brk cannot return an error. The real close always closes the descriptor, even
            # when it fails, but an injected failure does not, so that waiting for the end of that pipe would rightly not end.
            if not name or name in ("brk", "close"):
                continue
            when = names[:position + 1].count(name)
            tried.add(name)
            for error in FAULTS:
                with self.subTest(call=name, when=when, error=error):
                    probe = self.traced("/dev/null", f"{name}:error={error}:when={when}")
                    try:
                        said = probe.tell(request)
                    except StageError:
                        self.fail("the application did not survive")
                    self.assertRegex(said, rf"\A({answers})\Z")
                    # A client whose wait failed has left its helper running, which may still be setting a speed.
                    wait_until(lambda: not any(name == "FenwhirlHelper" for _, _, name in processes()), "no helper runs")
                    self.assertEqual(probe.tell("run auto"), "yes")
                    self.assert_automatic()
                    self.assertEqual(probe.end(), 0)
        self.assertTrue({"wait4", "waitid"} & tried, tried)
        self.assertTrue({"clone3", "clone", "vfork"} & tried, tried)

    def test_a_run_survives_every_signal_that_is_meant_for_others(self):
        probe = self.probe()
        self.mac.tell("delay 20")
        probe.child.stdin.write(b"run set 0 2400\n")
        probe.child.stdin.flush()
        for _ in range(50):
            os.kill(probe.pid, signal.SIGCHLD)
            os.kill(probe.pid, signal.SIGWINCH)
        self.assertEqual(probe.lines.next(), "yes")


if __name__ == "__main__":
    unittest.main()
