"""Tests of the helper when something fails midway: kills between two writes, failing system calls, a controller that is silent,
slow or gone, and two helpers at once. Whatever happens, one more "auto" makes every fan automatic.
"""

import random
import re
import signal
import subprocess
import time
import unittest

from helper_stage import STATUSES, HelperTest, require_tracing
from stage import PATIENCE_SECONDS, rounds

FAULTS = ("EIO", "ENOMEM", "EMFILE", "EINTR")


class Faults(HelperTest):
    def cost(self, *arguments):
        """The number of requests that a command sends when nothing goes wrong."""
        before = self.mac.requests()
        self.assertEqual(self.helper(*arguments).returncode, 0)
        return self.mac.requests() - before

    def assert_repairable(self, what):
        self.mac.tell("answer")
        self.assertEqual(self.helper("auto").returncode, 0, what)
        self.assert_automatic()

    def kill_at_each_request(self, *arguments, step=1):
        self.helper("set", "0", "2400")
        count = self.cost(*arguments)
        self.assertGreater(count, 3)
        missed = 0
        for number in range(0, count, step):
            self.assert_repairable(number)
            self.helper("set", "0", "2400")
            before = self.mac.requests()
            self.mac.tell(f"fault silence after {number} times 1")
            child = self.start(*arguments)
            self.mac.tell(f"await requests {before + number + 1} within {PATIENCE_SECONDS}")
            child.send_signal(signal.SIGKILL)
            # It gives up after two seconds of silence. On a busy computer the kill may come later than that.
            status = child.wait(10)
            self.assertIn(status, (-signal.SIGKILL, 1, 2), number)
            missed += status != -signal.SIGKILL
            self.assert_repairable((arguments, number))
        self.assertLess(missed, count / step / 3)


class OnAnOlderMac(Faults):
    def test_killed_at_any_request_of_set(self):
        self.kill_at_each_request("set", "1", "3000")

    def test_killed_at_any_request_of_auto(self):
        self.kill_at_each_request("auto")

    def test_killed_in_the_first_half_second_of_the_test(self):
        for step in range(8):
            self.kill_the_test_after(0.1 + step * 0.05)

    def test_killed_in_any_second_of_the_test(self):
        for second in rounds((3, 6), range(1, 8)):
            self.kill_the_test_after(second + 0.5)

    def kill_the_test_after(self, seconds):
        child = self.start("test")
        time.sleep(seconds)
        child.kill()
        # The command takes eight seconds. On a busy computer the last kill may come too late.
        self.assertIn(child.wait(), (-signal.SIGKILL, 0) if seconds > 7 else (-signal.SIGKILL,))
        self.assert_repairable(seconds)

    def test_killed_at_random_moments(self):
        chance = random.Random(1)
        for number in range(rounds(200, 2000)):
            for arguments in (("set", str(number % 2), "3000"), ("auto",), ("test",)):
                self.helper("set", "0", "2400")
                child = self.start(*arguments)
                time.sleep(chance.random() * 0.003)
                child.kill()
                child.wait()
                self.assert_repairable((arguments, number))

    def test_each_system_call_of_set_may_fail(self):
        require_tracing()
        self.inject_faults("set", "0", "2400")

    def test_each_system_call_of_auto_may_fail(self):
        require_tracing()
        self.inject_faults("auto")

    def test_each_system_call_of_version_may_fail(self):
        require_tracing()
        self.inject_faults("version")

    def test_each_system_call_of_test_may_fail(self):
        require_tracing()
        # The command waits for eight seconds; a wait that fails takes as long, so waits fail in long runs only.
        self.inject_faults("test", errors=rounds(("EIO",), FAULTS), skipped=rounds(("clock_nanosleep",), ()),
                     others=("clock_nanosleep:retval=0",))

    def run_with_faults(self, faults, *arguments):
        # The process stops at calls of these names only, which takes a fifth of the processor time of stopping at all.
        names = ",".join(fault.partition(":")[0] for fault in faults)
        return subprocess.run(["strace", "-u", "nobody", "-f", "--seccomp-bpf", "-o", "/dev/null", "-e", f"trace={names}",
                               *(f"--inject={fault}" for fault in faults), *self.command_line(*arguments)],
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=False)

    def inject_faults(self, *arguments, errors=FAULTS, skipped=(), others=()):
        """Runs a command once for each of its system calls and each error that this call then returns.

        `others` are what strace injects besides, `skipped` the names of calls that never fail.
        """
        besides = [f"--inject={fault}" for fault in others]
        plain = subprocess.run(["strace", "-u", "nobody", *besides, *self.command_line(*arguments)], capture_output=True, text=True,
                               check=False)
        self.assertEqual(plain.returncode, 0, plain.stderr)
        self.assertEqual(self.run_with_faults(("read:error=EIO:when=9999", *others), *arguments).returncode, 0)
        self.assertNotEqual(self.run_with_faults(("read:error=EIO:when=1", *others), *arguments).returncode, 0)
        names = re.findall(r"^([a-z_0-9]+)\(", plain.stderr, re.MULTILINE)
        self.assertGreater(len(names), 30)
        # With this call the loader unmaps its cache of libraries. Everything up to it belongs to the loader, which may end the
        # process in its own way when it fails.
        of_loader = names.index("munmap")
        seen = {}
        faults = []
        for position, name in enumerate(names):
            seen[name] = seen.get(name, 0) + 1
            if name in ("execve", "exit_group", "brk", *skipped):
                continue  # the kernel's brk has no error to return, so no made-up one either
            for error in errors:
                run = self.run_with_faults((f"{name}:error={error}:when={seen[name]}", *others), *arguments)
                # When prctl fails the process stays traceable by others, for which the helper aborts on purpose.
                expected = (run.returncode in STATUSES or (position <= of_loader)
                            or (name == "prctl" and run.returncode == -signal.SIGABRT))
                if not expected:
                    faults.append((name, seen[name], error, run.returncode, run.stderr[-200:]))
            self.assert_repairable((name, seen[name]))
        self.assertEqual(faults, [])

    def test_a_controller_that_falls_silent_fails_the_command(self):
        self.mac.tell("silence")
        begin = time.monotonic()
        self.assertEqual(self.helper("set", "0", "2400").returncode, 1)
        self.assertLess(time.monotonic() - begin, 31)
        self.assert_repairable("silence")

    def test_a_controller_that_hangs_up_fails_the_command(self):
        for arguments in (("set", "0", "2400"), ("auto",), ("auto", "1")):
            for number in range(self.cost(*arguments)):
                self.mac.tell(f"fault hangup after {number} times 1")
                self.assertIn(self.helper(*arguments).returncode, (1, 2), (arguments, number))
                self.assert_repairable((arguments, number))

    def test_answers_of_a_wrong_length_fail_the_command(self):
        for length in (0, 1, 79, 80, 83, 85, 164):
            self.mac.tell(f"fault length {length}")
            self.assertEqual(self.helper("set", "0", "2400").returncode, 1, length)
            self.assert_repairable(length)

    def test_a_helper_lives_thirty_seconds_at_most(self):
        # So many fans and such late answers that the command would take hours.
        self.mac.tell("define FNum ui8 1 80 FF")
        self.mac.tell("delay 1500")
        begin = time.monotonic()
        child = self.start("auto")
        self.assertEqual(child.wait(40), -signal.SIGALRM)
        lasted = time.monotonic() - begin
        self.assertGreater(lasted, 29.5)
        self.assertLess(lasted, 36)
        self.mac.tell("define FNum ui8 1 80 02")
        self.assert_repairable("alarm")

    def test_two_at_once_are_set_right_by_the_next_pair(self):
        for _ in range(rounds(40, 200)):
            pair = [self.start("set", str(fan), "3000") for fan in (0, 1)]
            self.assertEqual([child.wait(10) for child in pair], [0, 0])
            # Each helper reads the mask and writes it back, so that the slower one may have erased the other's bit. The
            # application soon sends both again, as this loop does.
            for fan in (0, 1):
                self.assertEqual(self.helper("set", str(fan), "3000").returncode, 0)
            self.assertEqual(self.value("FS!"), 3.0)
            self.helper("auto")
        self.assert_automatic()


class OnAMacThatMustBeUnlocked(Faults):
    machine = "AppleSilicon"

    def test_killed_at_any_request_of_set(self):
        self.mac.tell("unlock 300")
        self.kill_at_each_request("set", "1", "3000")

    def test_killed_at_any_request_of_auto(self):
        self.mac.tell("unlock 20")
        self.kill_at_each_request("auto")

    def test_set_waits_for_the_unlock(self):
        self.mac.tell("unlock 700")
        begin = time.monotonic()
        self.assertEqual(self.helper("set", "0", "3000").returncode, 0)
        self.assertGreater(time.monotonic() - begin, 0.6)
        self.assertEqual(self.helper("auto").returncode, 0)
        self.assert_automatic()

    def test_an_unlock_that_is_never_honoured_fails_in_about_four_seconds(self):
        self.mac.tell("unlock never")
        begin = time.monotonic()
        self.assertEqual(self.helper("set", "0", "3000").returncode, 1)
        self.assertTrue(3.5 < time.monotonic() - begin < 15)  # a busy computer takes longer
        self.mac.tell("unlock 500")
        self.assertEqual(self.helper("auto").returncode, 0)
        self.assert_automatic()


if __name__ == "__main__":
    unittest.main()
