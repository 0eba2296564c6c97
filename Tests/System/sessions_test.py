"""Tests with several users logged in at once: only the user of the active session, as reported by the login manager, drives the
fans.
"""

import unittest

from shared_computer import FIRST, SECOND, Computer


class OneUser(unittest.TestCase):
    def test_nothing_is_driven_before_the_session_comes_to_the_front(self):
        with Computer() as computer:
            computer.start_logind(f"{FIRST}=1", "slow")  # so that the controller is read before the answer arrives
            computer.log_in(FIRST, 3000)
            computer.let_poll()
            self.assertEqual(computer.writes(), [])
            computer.switch_to("1")
            computer.wait_for("manual", 3000)
            computer.switch_to("-")
            computer.wait_for("automatic")
            computer.let_poll()
            computer.wait_for("automatic")
            self.assertEqual(computer.speeds(), [3000])

    def test_without_an_answer_the_session_is_in_front(self):
        with Computer() as computer:
            computer.start_logind("silent")
            computer.log_in(FIRST, 3000)
            computer.wait_for("manual", 3000)

    def test_without_a_login_manager_the_session_is_in_front(self):
        with Computer() as computer:
            computer.start_bus()
            computer.log_in(FIRST, 3000)
            computer.wait_for("manual", 3000)

    def test_without_a_system_bus_the_session_is_in_front(self):
        with Computer() as computer:
            computer.log_in(FIRST, 3000)
            computer.wait_for("manual", 3000)

    def test_when_the_login_manager_is_lost_the_session_is_in_front(self):
        with Computer() as computer:
            computer.start_logind(f"{FIRST}=1")
            computer.log_in(FIRST, 3000)
            computer.let_poll()
            self.assertEqual(computer.writes(), [])
            computer.logind.stop()
            computer.wait_for("manual", 3000)


class TwoUsers(unittest.TestCase):
    def test_the_machine_follows_the_active_session_only(self):
        with Computer() as computer:
            computer.start_logind(f"{FIRST}=1", f"{SECOND}=2")
            computer.switch_to("1")
            computer.log_in(FIRST, 3000)
            computer.wait_for("manual", 3000)
            computer.log_in(SECOND, 4000)
            computer.let_poll()
            computer.wait_for("manual", 3000)
            computer.switch_to("2")
            computer.wait_for("manual", 4000)
            computer.let_poll()
            computer.wait_for("manual", 4000)
            computer.switch_to("1")
            computer.wait_for("manual", 3000)
            computer.let_poll()
            self.assertEqual(computer.speeds(), [3000, 4000, 3000])

    def test_a_background_session_touches_nothing_when_it_starts_and_quits(self):
        with Computer() as computer:
            computer.start_logind(f"{FIRST}=1", f"{SECOND}=2")
            computer.switch_to("1")
            computer.log_in(FIRST, 3000)
            computer.wait_for("manual", 3000)
            second = computer.log_in(SECOND)  # with a curve, for which a quitting program would hand the fans back
            computer.let_poll()
            self.assertEqual(second.stop(), 0)
            self.assertEqual(computer.fans(), [("manual", 3000)] * 2)
            self.assertEqual(computer.speeds(), [3000])
            self.assertEqual(computer.hand_backs(), [])


if __name__ == "__main__":
    unittest.main()
