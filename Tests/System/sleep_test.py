"""Tests of sleep, as announced by the login manager: the fans are handed back before it, and taken over again afterwards."""

import unittest

from shared_computer import FIRST, Computer

# The program gives up its lock after one and a half seconds at most; the fake login manager waits five seconds for a lock that is
# never released.
GIVEN_UP_SECONDS, LONGEST_DELAY_SECONDS = 1.5, 4.5
# So slow that handing both fans back takes longer than the login manager waits, but not silent.
SLOW_MILLISECONDS = 1500


class Sleep(unittest.TestCase):
    def test_the_fans_go_back_before_each_sleep_and_are_taken_again_after_it(self):
        with Computer() as computer:
            computer.start_logind(f"{FIRST}=1")
            computer.switch_to("1")
            computer.log_in(FIRST, 3000)
            for _ in range(2):
                computer.wait_for("manual", 3000)
                delay = computer.sleep()
                self.assertLess(delay, LONGEST_DELAY_SECONDS)
                if delay < GIVEN_UP_SECONDS - 0.1:  # the lock was released because the fans are back, not because the time was up
                    self.assertEqual(computer.fans(), [("automatic", None)] * 2)
                computer.wait_for("automatic")
                computer.let_poll()
                self.assertEqual(computer.fans(), [("automatic", None)] * 2)
                computer.wake()
            computer.wait_for("manual", 3000)

    def test_a_controller_that_is_slow_delays_no_sleep_for_long(self):
        with Computer() as computer:
            computer.start_logind(f"{FIRST}=1")
            computer.switch_to("1")
            computer.log_in(FIRST, 3000)
            computer.wait_for("manual", 3000)
            computer.mac.tell(f"delay {SLOW_MILLISECONDS}")
            self.assertLess(computer.sleep(), LONGEST_DELAY_SECONDS)
            computer.mac.tell("delay 0")
            computer.wait_for("automatic")
            computer.wake()
            computer.wait_for("manual", 3000)

    def test_a_program_in_a_background_session_touches_no_fan(self):
        with Computer() as computer:
            computer.start_logind(f"{FIRST}=1")
            computer.log_in(FIRST, 3000)
            computer.let_poll()
            self.assertLess(computer.sleep(), LONGEST_DELAY_SECONDS)
            computer.wake()
            computer.let_poll()
            self.assertEqual(computer.writes(), [])

    def test_an_end_during_the_sleep_leaves_no_fan_behind(self):
        with Computer() as computer:
            computer.start_logind(f"{FIRST}=1")
            computer.switch_to("1")
            application = computer.log_in(FIRST, 3000)
            computer.wait_for("manual", 3000)
            computer.sleep()
            self.assertEqual(application.stop(), 0)
            self.assertEqual(computer.fans(), [("automatic", None)] * 2)


if __name__ == "__main__":
    unittest.main()
