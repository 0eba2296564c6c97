"""Tests that no fan stays manual unattended and that heat is always answered, whatever fails.

Each test injects a fault and waits for the state that the machine must reach. Only that final state counts: which process sent
what, and how often, does not matter.
"""

import signal
import time
import unittest

import stage
from driven_mac import END_SECONDS, GAME, GUARD, LOW_RPM, NEWER_MAC, OLDER_MAC, REACTION_SECONDS, SLOW, DrivenMac, constant


class FansLeftManual(unittest.TestCase):
    """Fans that are already manual when the program starts, because its previous run had no time to hand them back."""

    def check(self, machine, celsius, settings):
        with DrivenMac(machine, SLOW) as driven:
            driven.drive().kill_everything()
            driven.settings = settings
            driven.save()
            driven.heat(celsius)
            self.assertEqual({mode for _, mode in driven.fans().values()}, {"manual"}, "nobody has handed them back")
            driven.start()
            driven.wait_for("automatic", f"handed back at {celsius} °C", END_SECONDS)

    def test_on_an_older_mac_at_93_degrees(self):
        self.check(OLDER_MAC, 93, SLOW)

    def test_on_an_older_mac_at_98_degrees_with_lost_settings(self):
        self.check(OLDER_MAC, 98, {})

    def test_on_an_older_mac_at_85_degrees_with_lost_settings(self):
        self.check(OLDER_MAC, 85, {})

    def test_on_a_newer_mac_at_93_degrees(self):
        self.check(NEWER_MAC, 93, SLOW)

    def test_on_a_newer_mac_at_85_degrees_with_lost_settings(self):
        self.check(NEWER_MAC, 85, {})

    def test_without_any_temperature(self):
        with DrivenMac(OLDER_MAC, SLOW) as driven:
            driven.drive().kill_everything()
            driven.remove_temperatures()
            driven.start()
            driven.wait_for("automatic", "handed back without a temperature", END_SECONDS)


class RefusedWrites(unittest.TestCase):
    """A controller that refuses every write for a while, and then accepts them again."""

    def refuse_the_first_hand_back(self, driven, cause):
        """Lets the controller refuse what the program does about `cause`. What follows is awaited for less than the ten seconds
        after which any refused command is repeated.
        """
        driven.polls(1)
        stage.wait_until(lambda: not driven.running("FenwhirlHelper"), "every speed is sent")
        since = driven.last_write()
        driven.tell("refuse all")
        cause()
        driven.tell(f"await write any since {since} within {stage.PATIENCE_SECONDS}")
        stage.wait_until(lambda: not driven.running("FenwhirlHelper"), "the helper gives up", interval_seconds=0.01)
        self.assertEqual({mode for _, mode in driven.fans().values()}, {"manual"})
        driven.tell("accept all")

    def check_at_95_degrees(self, machine):
        with DrivenMac(machine, GAME) as driven:
            driven.drive()
            self.refuse_the_first_hand_back(driven, lambda: driven.heat(95))
            driven.wait_for("automatic", "handed back at 95 °C", REACTION_SECONDS)

    def test_on_an_older_mac_at_95_degrees(self):
        self.check_at_95_degrees(OLDER_MAC)

    def test_on_a_newer_mac_at_95_degrees(self):
        self.check_at_95_degrees(NEWER_MAC)

    def test_without_any_temperature(self):
        with DrivenMac(OLDER_MAC, GAME) as driven:
            driven.drive()
            self.refuse_the_first_hand_back(driven, driven.remove_temperatures)
            driven.wait_for("automatic", "handed back without a temperature", REACTION_SECONDS)

    def check_that_a_quit_leaves_it_in_order(self, machine):
        with DrivenMac(machine, GAME) as driven:
            driven.drive()
            driven.tell("refuse all")
            driven.application.stop(signal.SIGTERM, seconds=60)
            driven.tell("accept all")
            driven.wait_for("automatic", "handed back after the end", END_SECONDS)

    def test_while_the_program_quits_on_an_older_mac(self):
        self.check_that_a_quit_leaves_it_in_order(OLDER_MAC)

    def test_while_the_program_quits_on_a_newer_mac(self):
        self.check_that_a_quit_leaves_it_in_order(NEWER_MAC)

    def check_a_kill(self, machine):
        with DrivenMac(machine, GAME) as driven:
            driven.drive()
            driven.tell("refuse all")
            driven.application.stop(signal.SIGKILL)
            time.sleep(8)
            driven.tell("accept all")
            driven.wait_for("automatic", "handed back after the kill", END_SECONDS)

    def test_for_eight_seconds_after_a_kill_on_an_older_mac(self):
        self.check_a_kill(OLDER_MAC)

    def test_for_eight_seconds_after_a_kill_on_a_newer_mac(self):
        self.check_a_kill(NEWER_MAC)

    def test_while_a_fan_is_set_to_automatic(self):
        with DrivenMac(OLDER_MAC, {0: constant(LOW_RPM)}, celsius=91) as driven:
            driven.drive()  # drives both fans: the automatic one because of the heat
            driven.tell("refuse all")
            driven.heat(70)
            driven.polls(1)
            driven.tell("accept all")
            # The program repeats a failed command after ten seconds.
            driven.wait_for("automatic", "the automatic fan is handed back", END_SECONDS, fans=[1])


class ASilentController(unittest.TestCase):
    def test_while_the_program_quits(self):
        with DrivenMac(OLDER_MAC, GAME) as driven:
            driven.drive()
            driven.tell("silence")
            driven.application.stop(signal.SIGTERM, seconds=90)
            driven.tell("answer")
            driven.wait_for("automatic", "handed back after the end", END_SECONDS)


class TheFirstPoll(unittest.TestCase):
    """The program is killed while its first poll is sending speeds, before that poll has published any result."""

    def kill_in_the_first_poll(self, driven):
        since = driven.last_write()
        driven.tell("fault delay 1500 times 1 key F1Tg command write")
        driven.start()
        first = driven.await_write("F0Tg", since)
        driven.await_write("FS!" if driven.machine == OLDER_MAC else "F1Md", first)

    def check_the_guard(self, machine, settings):
        with DrivenMac(machine, settings, celsius=91) as driven:
            self.kill_in_the_first_poll(driven)
            driven.application.stop(signal.SIGKILL)
            # Wait for the running helper first: it may still finish the command that was under way at the kill.
            stage.wait_until(lambda: not driven.running("FenwhirlHelper"), "the helper ends")
            driven.wait_until_left_in_order()

    def test_on_an_older_mac_with_automatic_fans(self):
        self.check_the_guard(OLDER_MAC, {})

    def test_on_an_older_mac_with_a_constant_fan(self):
        self.check_the_guard(OLDER_MAC, {0: constant(LOW_RPM)})

    def test_on_a_newer_mac_with_a_constant_fan(self):
        self.check_the_guard(NEWER_MAC, {0: constant(LOW_RPM)})

    def test_the_next_start_hands_back_what_it_finds(self):
        with DrivenMac(OLDER_MAC, {}, celsius=91) as driven:
            self.kill_in_the_first_poll(driven)
            driven.kill_everything()
            stage.wait_until(lambda: not driven.running("FenwhirlHelper"), "the helper ends")
            self.assertIn("manual", {mode for _, mode in driven.fans().values()})
            driven.heat(60)
            driven.start()
            driven.wait_for("automatic", "handed back by the next start", END_SECONDS)


class UnreadableFans(unittest.TestCase):
    """A fan that was being driven, and that the last poll could not read."""

    def lose(self, driven, key):
        driven.tell(f"vanish {key}")
        driven.polls(1)

    def check_at_93_degrees(self, machine, key):
        with DrivenMac(machine, GAME) as driven:
            driven.drive()
            self.lose(driven, key)
            driven.heat(93)
            driven.wait_for("automatic", f"handed back at 93 °C without {key}", REACTION_SECONDS)

    def test_on_an_older_mac_at_93_degrees(self):
        self.check_at_93_degrees(OLDER_MAC, "F1Ac")

    def test_on_an_older_mac_at_93_degrees_without_the_number_of_fans(self):
        self.check_at_93_degrees(OLDER_MAC, "FNum")

    def test_on_a_newer_mac_at_93_degrees(self):
        self.check_at_93_degrees(NEWER_MAC, "F1Ac")

    def test_on_a_newer_mac_at_93_degrees_without_the_number_of_fans(self):
        self.check_at_93_degrees(NEWER_MAC, "FNum")

    def test_without_any_temperature(self):
        with DrivenMac(OLDER_MAC, GAME) as driven:
            driven.drive()
            self.lose(driven, "F1Ac")
            driven.remove_temperatures()
            driven.wait_for("automatic", "handed back without a temperature", REACTION_SECONDS)

    def check_a_quit(self, machine, key):
        with DrivenMac(machine, {}, celsius=91) as driven:  # heat protection drives the fans; no setting names them
            driven.drive()
            self.lose(driven, key)
            driven.application.stop(signal.SIGTERM, seconds=60)
            driven.wait_for("automatic", f"handed back at the end without {key}", END_SECONDS)

    def test_at_the_end_on_an_older_mac(self):
        self.check_a_quit(OLDER_MAC, "F1Ac")

    def test_at_the_end_on_a_newer_mac_without_the_number_of_fans(self):
        self.check_a_quit(NEWER_MAC, "FNum")

    def test_after_a_kill(self):
        with DrivenMac(OLDER_MAC, {}, celsius=91) as driven:
            driven.drive()
            self.lose(driven, "F1Ac")
            driven.application.stop(signal.SIGKILL)
            driven.wait_for("automatic", "handed back after the kill", END_SECONDS)


class Ends(unittest.TestCase):
    def check(self, machine, how):
        with DrivenMac(machine, {0: constant(LOW_RPM), 1: constant(LOW_RPM)}, celsius=91) as driven:
            driven.drive()
            driven.application.stop(how, seconds=60)
            driven.wait_for("automatic", "a fan that heat protection holds is handed back", END_SECONDS)

    def test_a_quit_during_heat_protection_on_an_older_mac(self):
        self.check(OLDER_MAC, signal.SIGTERM)

    def test_a_quit_during_heat_protection_on_a_newer_mac(self):
        self.check(NEWER_MAC, signal.SIGTERM)

    def test_a_kill_during_heat_protection(self):
        self.check(OLDER_MAC, signal.SIGKILL)

    def test_a_constant_speed_that_was_sent_stays(self):
        for machine, how in ((OLDER_MAC, signal.SIGTERM), (NEWER_MAC, signal.SIGKILL)):
            with DrivenMac(machine, SLOW) as driven:
                driven.drive().polls(1)
                driven.application.stop(how, seconds=60)
                stage.wait_until(lambda there=driven: not there.running(GUARD), "the guard ends")
                self.assertEqual(driven.fans(), {0: (LOW_RPM, "manual"), 1: (LOW_RPM, "manual")}, (machine, how))


class AnotherProgram(unittest.TestCase):
    """Another program takes a fan after it was handed back because of the heat."""

    def take(self, driven, fan):
        """Takes a fan while Fenwhirl is stopped, which might hand it back before that is seen."""
        driven.application.child.send_signal(signal.SIGSTOP)
        stage.wait_until(lambda: not driven.running("FenwhirlHelper"), "no helper runs")
        driven.take_manual_control(fan, LOW_RPM)
        self.assertEqual(driven.fans()[fan], (LOW_RPM, "manual"))
        driven.application.child.send_signal(signal.SIGCONT)

    def check(self, machine):
        with DrivenMac(machine, GAME) as driven:
            driven.drive()
            driven.heat(95)
            driven.wait_for("automatic", "handed back at 95 °C", REACTION_SECONDS)
            for fan in (1, 0):
                self.take(driven, fan)
                driven.wait_for("automatic", "and again", REACTION_SECONDS)

    def test_on_an_older_mac(self):
        self.check(OLDER_MAC)

    def test_on_a_newer_mac(self):
        self.check(NEWER_MAC)

    def test_on_fans_that_fenwhirl_never_drove(self):
        with DrivenMac(OLDER_MAC, {}, celsius=95) as driven:
            driven.start().settle()
            self.take(driven, 1)
            driven.wait_for("automatic", "handed back at 95 °C", REACTION_SECONDS)


class AStoppedProgram(unittest.TestCase):
    def check(self, machine, celsius, how=signal.SIGSTOP):
        with DrivenMac(machine, GAME) as driven:
            driven.drive()
            driven.application.child.send_signal(how)
            driven.heat(celsius)
            driven.wait_for("automatic", f"handed back at {celsius} °C", END_SECONDS)
            driven.heat(60)
            driven.application.child.send_signal(signal.SIGCONT)
            driven.wait_for("manual", "driven again once the program goes on", 24)

    def test_on_an_older_mac_at_98_degrees(self):
        self.check(OLDER_MAC, 98)

    def test_on_a_newer_mac_at_98_degrees(self):
        self.check(NEWER_MAC, 98)

    def test_by_the_terminals_suspend_key(self):
        self.check(OLDER_MAC, 60, signal.SIGTSTP)

    def test_that_is_killed_while_it_is_stopped(self):
        with DrivenMac(OLDER_MAC, GAME) as driven:
            driven.drive()
            driven.application.child.send_signal(signal.SIGSTOP)
            driven.application.stop(signal.SIGKILL)
            driven.wait_for("automatic", "handed back", END_SECONDS)


class AnUnreadableMaximum(unittest.TestCase):
    """Heat protection cannot run such a fan at its maximum, and leaves it to the firmware."""

    def check(self, machine, key, settings):
        with DrivenMac(machine, settings) as driven:
            driven.start().settle()
            driven.tell(f"unreadable {key}")
            driven.heat(91)
            driven.polls(2)
            self.assertTrue(driven.is_cooled(), driven.fans())

    def test_on_an_older_mac(self):
        self.check(OLDER_MAC, "F1Mx", {})

    def test_on_a_newer_mac(self):
        self.check(NEWER_MAC, "F0Mx", {})

    def test_of_a_fan_that_is_driven(self):
        self.check(OLDER_MAC, "F1Mx", SLOW)


class ARefusedTarget(unittest.TestCase):
    """The controller accepts the mode but not the target: the fan is manual at an old target."""

    def check(self, machine, how):
        with DrivenMac(machine, {0: constant(3000), 1: constant(3000)}) as driven:
            driven.tell("refuse F0Tg")
            driven.drive().polls(1)
            driven.application.stop(how, seconds=60)
            driven.wait_for("automatic", "a fan whose speed was never accepted is handed back", END_SECONDS, fans=[0])
            self.assertEqual(driven.fans()[1], (3000, "manual"), "the other one has the speed that was chosen")

    def test_before_a_quit_on_an_older_mac(self):
        self.check(OLDER_MAC, signal.SIGTERM)

    def test_before_a_quit_on_a_newer_mac(self):
        self.check(NEWER_MAC, signal.SIGTERM)

    def test_before_a_kill(self):
        self.check(OLDER_MAC, signal.SIGKILL)

    def test_before_the_emergency(self):
        with DrivenMac(OLDER_MAC, {}) as driven:
            driven.tell("refuse F0Tg")
            driven.heat(91)
            driven.start()
            driven.wait_for("manual", "heat protection tries", stage.PATIENCE_SECONDS)
            driven.heat(93)
            driven.wait_for("automatic", "handed back", REACTION_SECONDS)


if __name__ == "__main__":
    unittest.main()
