"""Tests of what hands the fans back when the application cannot: the guard after a kill or during silence, and the emergency
hand-back in a crash.
"""

import contextlib
import os
import random
import resource
import shutil
import signal
import subprocess
import time
import unittest

from helper_stage import BUILD, HELPER, NOBODY, HelperTest, Probe, is_running, processes, require_tracing
from stage import PATIENCE_SECONDS, rounds, wait_until

SILENCE_SECONDS = 10
# From the end of the silence to the hand-back; includes the last sign of life and the guard's own steps.
REACTION_SECONDS = 4
LONGEST_REACTION_SECONDS = 10  # the same on a busy computer
# Only the guard's first run can hand a fan back within this time: the second one follows five seconds after the end.
AT_ONCE_SECONDS = 4.5


class GuardTest(HelperTest):
    """Base class: starts a probe that drives both fans and has a guard, and inspects the machine."""

    def setUp(self):
        super().setUp()
        self.probe = self.start_probe()

    def start_probe(self, **options):
        probe = Probe(NOBODY, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CORE, (0, 0)), **options)
        self.addCleanup(probe.__exit__)
        return probe

    def watch(self, fans="0 =1"):
        self.assertEqual(self.probe.tell("watch"), "yes")
        self.assertEqual(self.probe.tell(f"fans {fans}"), "yes")
        for fan in "01":
            self.assertEqual(self.probe.tell(f"run set {fan} 3000"), "yes")
        self.seen = self.last_write()
        return wait_until(self.probe.guard, "the guard runs")

    def mode(self, fan):
        state = self.mac.tell("state")[-1]
        return state.split(f"fan{fan}=")[1].split()[0].rsplit("/", 1)[1]

    def wait_for_hand_back(self, seconds=PATIENCE_SECONDS, fans="0"):
        wait_until(lambda: all(self.mode(fan) == "automatic" for fan in fans), "the fans are handed back", seconds, 0.01)

    @staticmethod
    def running_helper():
        return next((number for number, _, name in processes() if name == "FenwhirlHelper"), None)

    def wait_until_gone(self, guard):
        wait_until(lambda: not is_running(guard), "the guard ends")

    def wait_for_silence_to_end(self, fans="01"):
        self.wait_for_hand_back(SILENCE_SECONDS + LONGEST_REACTION_SECONDS, fans)

    def refused(self):
        """The number of writes that the machine has refused since `seen`."""
        return sum(entry["result"] != "00" for entry in self.log(self.seen))

    def refuse(self):
        self.mac.tell("refuse all")
        self.addCleanup(self.accept)

    def accept(self):
        self.mac.tell("accept all")

    def wait_for_refusals(self, count, seconds=30):
        wait_until(lambda: self.refused() >= count, f"{count} refused writes", seconds)


class AfterAKill(GuardTest):
    def test_the_fans_are_handed_back_but_those_that_are_pinned(self):
        guard = self.watch()
        self.probe.stop(signal.SIGKILL)
        self.wait_for_hand_back(AT_ONCE_SECONDS)
        self.assertEqual(self.mode(1), "manual")
        self.wait_until_gone(guard)
        # Immediately, and once more in case a command was still under way.
        self.assertEqual(self.writes(), ["FS!=0002", "FS!=0002"])

    def test_all_fans_are_handed_back_when_none_is_known(self):
        self.watch("")
        self.probe.stop(signal.SIGKILL)
        self.wait_for_hand_back(AT_ONCE_SECONDS, fans="01")  # a single helper run, which hands back one fan after the other

    def test_a_set_that_outlives_the_application_does_not_have_the_last_word(self):
        guard = self.watch()
        # Delays the first write of the "set" by 2.4 seconds; the guard's first run is over long before that.
        self.mac.tell("fault delay 1200 times 2 key F0Mn")
        self.probe.tell("background set 0 3500")
        helper = wait_until(self.running_helper, "the helper runs")
        self.probe.stop(signal.SIGKILL)
        wait_until(lambda: "FS!=0002" in self.writes(), "the guard's first run", interval_seconds=0.01)
        os.kill(guard, signal.SIGSTOP)  # its second run waits until the "set" has been judged
        wait_until(lambda: not is_running(helper), "the set ends")
        self.assertEqual(self.writes(), ["FS!=0002", "FS!=0003", "F0Tg=36B0"])
        self.assertEqual(self.mode(0), "manual")
        os.kill(guard, signal.SIGCONT)
        self.wait_until_gone(guard)
        self.assertEqual(self.mode(0), "automatic")

    def check_that_nothing_is_run(self, replace):
        guard = self.watch()
        kept = str(HELPER) + ".kept"
        os.rename(HELPER, kept)
        replace(kept)
        self.probe.stop(signal.SIGKILL)
        self.wait_until_gone(guard)
        self.assertEqual(self.writes(), [])

    def test_nothing_is_run_without_a_helper(self):
        self.check_that_nothing_is_run(lambda kept: None)

    def test_nothing_is_run_by_a_link_to_a_helper(self):
        self.check_that_nothing_is_run(lambda kept: os.symlink(kept, HELPER))

    def test_nothing_is_run_by_a_helper_without_its_bit(self):
        def without_the_bit(kept):
            shutil.copyfile(kept, HELPER)
            os.chmod(HELPER, 0o755)

        self.check_that_nothing_is_run(without_the_bit)

    def test_a_refused_hand_back_is_tried_until_it_succeeds(self):
        guard = self.watch()
        self.refuse()
        begin = time.monotonic()
        self.probe.stop(signal.SIGKILL)
        # Immediately, after one, three and five seconds: the second run is refused as well.
        self.wait_for_refusals(4)
        self.assertGreater(time.monotonic() - begin, 4.5)
        self.assertTrue(is_running(guard))
        self.accept()
        self.wait_for_hand_back()
        self.assertEqual(self.mode(1), "manual")
        self.wait_until_gone(guard)

    def test_only_the_fans_that_were_refused_are_tried_again(self):
        guard = self.watch("0 1")
        # The first write takes effect, but its answer says that it was refused.
        self.mac.tell("fault result 84 command write times 1")
        self.probe.stop(signal.SIGKILL)
        self.wait_until_gone(guard)
        # Both fans, then the first one again; finally both, in case a command was still under way.
        self.assertEqual(self.writes(), ["FS!=0002", "FS!=0000", "FS!=0000", "FS!=0000", "FS!=0000"])

    def test_retries_stop_when_the_helper_is_removed(self):
        guard = self.watch()
        self.refuse()
        self.probe.stop(signal.SIGKILL)
        self.wait_for_refusals(2)
        os.remove(HELPER)
        self.wait_until_gone(guard)
        self.assertEqual(self.mode(0), "manual")

    def test_kills_at_random_moments(self):
        chance = random.Random(20)
        for _ in range(rounds(50, 500)):
            guard = self.watch()
            self.probe.tell(f"background set 0 {chance.randrange(2200, 5000)}")
            time.sleep(chance.random() * 0.02)
            self.probe.stop(signal.SIGKILL)
            # Only the guard's second run makes the hand-back final. To save time, the test kills the guard and runs "auto"
            # itself instead.
            self.wait_for_hand_back()
            with contextlib.suppress(ProcessLookupError):  # on a slow machine the guard may have ended already
                os.kill(guard, signal.SIGKILL)
            wait_until(lambda: not self.running_helper(), "helpers end")
            self.assertEqual(self.helper("auto").returncode, 0)
            self.probe = self.start_probe()


class WhileTheApplicationIsSilent(GuardTest):
    def stop_probe(self):
        self.probe.child.send_signal(signal.SIGSTOP)
        self.addCleanup(self.continue_probe)

    def continue_probe(self):
        self.probe.child.send_signal(signal.SIGCONT)

    def test_a_stopped_application_loses_its_fans_even_those_that_are_pinned(self):
        guard = self.watch()
        stopped = time.monotonic()
        self.assertEqual(self.probe.tell("alive"), "yes")  # the silence begins after this
        self.stop_probe()
        self.wait_for_silence_to_end()
        self.assertGreater(time.monotonic() - stopped, SILENCE_SECONDS - 0.5)
        self.assertEqual(self.writes(), ["FS!=0002", "FS!=0000"])
        # The application continues, drives its fans again, and is killed: a pinned fan then keeps its speed as usual.
        self.continue_probe()
        for fan in "01":
            self.assertEqual(self.probe.tell(f"run set {fan} 3000"), "yes")
        self.assertEqual(self.probe.guard(), guard)
        self.probe.stop(signal.SIGKILL)
        self.wait_for_hand_back(AT_ONCE_SECONDS)
        self.assertEqual(self.mode(1), "manual")
        self.wait_until_gone(guard)

    def test_a_stopped_application_that_is_killed_is_handed_back_in_full(self):
        guard = self.watch("")
        self.stop_probe()
        self.wait_for_silence_to_end()
        self.seen = self.last_write()
        self.check_that_nothing_is_run()  # one hand-back is enough for one silence
        self.probe.child.kill()
        self.wait_until_gone(guard)
        self.assert_automatic()
        self.assertNotEqual(self.writes(), [])

    def test_a_refused_hand_back_is_tried_until_it_succeeds(self):
        guard = self.watch()
        self.refuse()
        self.stop_probe()
        self.wait_for_refusals(4)  # two fans, twice
        self.accept()
        self.wait_for_hand_back(fans="01")
        self.assertTrue(is_running(guard))

    def test_a_record_replaces_the_fans(self):
        self.watch()
        self.probe.tell("mute")
        self.refuse()
        self.wait_for_refusals(2)
        self.probe.tell("fans 1")
        self.accept()
        self.wait_for_hand_back(fans="1")
        self.assertEqual(self.mode(0), "manual")
        # The command that the record announced arrives only now. The application is still silent, so the guard hands back again.
        self.assertEqual(self.probe.tell("run set 1 3000"), "yes")
        self.wait_for_silence_to_end("1")

    def test_a_sign_of_life_ends_the_tries(self):
        guard = self.watch()
        self.probe.tell("mute")
        self.refuse()
        self.wait_for_refusals(2)
        self.probe.tell("alive")
        wait_until(lambda: not self.running_helper(), "a try that may be under way ends")
        self.accept()
        self.seen = self.last_write()
        time.sleep(3)  # longer than the guard's pause before its next try
        self.assertEqual(self.writes(), [])
        self.assertEqual(self.probe.guard(), guard)
        self.wait_for_silence_to_end()

    def test_it_can_dismiss_the_guard_while_it_acts(self):
        guard = self.watch()
        self.probe.tell("mute")
        self.refuse()
        self.wait_for_refusals(2)
        self.probe.tell("finish")
        self.wait_until_gone(guard)
        self.assertEqual((self.mode(0), self.mode(1)), ("manual", "manual"))

    def test_the_guard_goes_on_watching_without_a_helper(self):
        guard = self.watch()
        os.rename(HELPER, str(HELPER) + ".kept")
        self.stop_probe()
        time.sleep(SILENCE_SECONDS + REACTION_SECONDS)
        self.assertTrue(is_running(guard))
        self.assertEqual(self.writes(), [])
        os.rename(str(HELPER) + ".kept", HELPER)
        self.probe.child.kill()
        self.wait_for_hand_back(AT_ONCE_SECONDS)

    def check_that_nothing_is_run(self):
        time.sleep(SILENCE_SECONDS + REACTION_SECONDS)
        self.assertEqual(self.writes(), [])

    def test_a_guard_that_was_stopped_with_it_notices_no_silence(self):
        # As when the whole session, or the whole machine, is frozen.
        guard = self.watch()
        self.stop_probe()
        os.kill(guard, signal.SIGSTOP)
        time.sleep(SILENCE_SECONDS + REACTION_SECONDS)
        os.kill(guard, signal.SIGCONT)
        self.continue_probe()
        time.sleep(3)
        self.assertEqual(self.writes(), [])
        self.assertEqual(self.probe.guard(), guard)

    def test_nothing_is_run_when_no_fan_is_named(self):
        self.watch("none")
        self.stop_probe()
        self.check_that_nothing_is_run()

    def test_nothing_is_run_before_the_first_record(self):
        self.assertEqual(self.probe.tell("watch"), "yes")
        self.assertEqual(self.helper("set", "0", "3000").returncode, 0)
        self.seen = self.last_write()
        self.stop_probe()
        self.check_that_nothing_is_run()


class WhileTheApplicationLives(GuardTest):
    def test_the_guard_is_small_and_isolated(self):
        require_tracing()
        guard = self.watch()
        self.assertEqual(os.getpgid(guard), guard)
        with open(f"/proc/{guard}/status", encoding="ascii") as file:
            status = dict(line.split(":", 1) for line in file)
        self.assertLess(int(status["VmRSS"].split()[0]), 2048)
        self.assertEqual(status["Threads"].strip(), "1")
        links = {name: os.readlink(f"/proc/{guard}/fd/{name}") for name in os.listdir(f"/proc/{guard}/fd")}
        self.assertEqual(set(links), {"0", "1", "2"})
        self.assertTrue(links["0"].startswith("pipe:"))
        self.assertEqual((links["1"], links["2"]), ("/dev/null", "/dev/null"))
        with open(f"/proc/{guard}/environ", "rb") as file:
            self.assertEqual(file.read(), b"")

    def test_the_guard_outlives_the_signals_of_a_session(self):
        guard = self.watch()
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            os.kill(guard, number)
        time.sleep(0.1)
        self.assertTrue(is_running(guard))
        self.probe.stop(signal.SIGKILL)
        self.wait_for_hand_back(AT_ONCE_SECONDS)

    def test_a_killed_guard_is_replaced_and_knows_everything(self):
        guard = self.watch()
        os.kill(guard, signal.SIGKILL)
        wait_until(lambda: not is_running(guard), "the guard is gone")
        self.assertEqual(self.probe.tell("fans 0 =1"), "yes")
        self.assertEqual(self.probe.tell("alive"), "yes")
        self.assertNotIn(wait_until(self.probe.guard, "there is a new guard"), (None, guard))
        self.probe.stop(signal.SIGKILL)
        self.wait_for_hand_back(AT_ONCE_SECONDS)
        self.assertEqual(self.mode(1), "manual")

    def test_no_child_inherits_the_guards_pipe(self):
        require_tracing()
        guard = self.watch()
        pipe = os.readlink(f"/proc/{guard}/fd/0")
        self.mac.tell("delay 30")
        self.probe.tell("background test")
        helper = wait_until(self.running_helper, "the helper runs")
        holders = set()
        for process, _, _ in processes():
            try:
                if any(os.readlink(f"/proc/{process}/fd/{name}") == pipe for name in os.listdir(f"/proc/{process}/fd")):
                    holders.add(process)
            except OSError:
                continue
        self.assertEqual(holders, {guard, self.probe.pid})
        os.kill(helper, signal.SIGKILL)

    def test_a_normal_exit_runs_no_helper(self):
        for _ in range(rounds(20, 100)):
            guard = self.watch()
            self.assertEqual(self.probe.tell("finish"), "yes")
            self.assertEqual(self.probe.end(), 0)
            self.wait_until_gone(guard)
            self.assertEqual(self.writes(), [])
            self.probe = self.start_probe()

    def test_the_helper_has_no_guard(self):
        # Every answer from the sixth on is late, so that the helper is looked at while it works.
        before = self.mac.requests()
        self.mac.tell("fault delay 600 after 5")
        child = self.start("set", "0", "3000")
        wait_until(lambda: self.mac.requests() > before + 5, "the helper works")
        self.assertFalse([name for _, parent, name in processes() if parent == child.pid])
        self.assertIsNone(child.poll())
        self.mac.tell("answer")
        self.assertEqual(child.wait(30), 0)


class InACrash(GuardTest):
    def check(self, how, number):
        self.watch()
        self.probe.child.stdin.write(f"crash {how}\n".encode())
        self.probe.child.stdin.flush()
        self.assertEqual(self.probe.child.wait(20), -number, how)
        # The fans are handed back by the time the process has died, not some time afterwards.
        self.assertEqual(self.mode(0), "automatic", how)
        self.assertEqual(self.mode(1), "manual", how)

    def test_the_dying_process_hands_the_fans_back(self):
        for _ in range(rounds(10, 100)):
            for how, number in (("write", signal.SIGSEGV), ("overflow", signal.SIGSEGV), ("thread", signal.SIGSEGV),
                                ("abort", signal.SIGABRT), ("trap", signal.SIGTRAP)):
                self.check(how, number)
                self.probe = self.start_probe()

    def test_the_signal_from_outside_counts_too(self):
        for _ in range(rounds(1, 100)):
            for number in (signal.SIGSEGV, signal.SIGBUS, signal.SIGILL, signal.SIGFPE, signal.SIGABRT,
                           signal.SIGTRAP, signal.SIGSYS, signal.SIGXCPU):
                self.watch()
                self.assertEqual(self.probe.stop(number), -number)
                self.assertEqual((self.mode(0), self.mode(1)), ("automatic", "manual"), number)
                self.probe = self.start_probe()

    def test_a_set_of_another_thread_is_waited_for(self):
        self.watch()
        self.mac.tell("delay 20")
        self.probe.tell("background set 0 3500")
        wait_until(self.running_helper, "the helper runs")
        self.assertEqual(self.probe.stop(signal.SIGABRT), -signal.SIGABRT)
        self.assertEqual(self.mode(0), "automatic")


class TheProgram(unittest.TestCase):
    def test_needs_the_c_library_only(self):
        listing = subprocess.run(["readelf", "-dW", BUILD / "lib/fenwhirl/fenwhirl-guard"], check=True, capture_output=True,
                                 text=True).stdout
        needed = [line[line.index("[") + 1:line.rindex("]")] for line in listing.splitlines() if "(NEEDED)" in line]
        self.assertEqual(needed, ["libc.so.6"])
        self.assertNotRegex(listing, "RPATH|RUNPATH")


if __name__ == "__main__":
    unittest.main()
