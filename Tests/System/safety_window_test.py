"""Safety tests like those in safety_test.py, with a user at the window: presets, the reset, and the removal of the helper.

Only the machine's final state counts.
"""

import os
import signal
import subprocess
import unittest

import stage
from driven_mac import END_SECONDS, REACTION_SECONDS
from helper_stage import require_real_root
from scene import Scene

MAXIMA = (6156, 5700)
RESET = "Remettre les ventilateurs en automatique"
SHARED = stage.SCRATCH / "shared"  # a folder that every user may write to


def targets(scene):
    """The targets of both fans, as a reader of their keys sees them."""
    return tuple(float(scene.mac.tell(f"get F{fan}Tg")[-1].split("value=")[1].split()[0]) for fan in (0, 1))


def modes(scene):
    return tuple(scene.fan(fan)[2] for fan in (0, 1))


class APresetJustBeforeTheEnd(unittest.TestCase):
    def check(self, how):
        with Scene() as scene:
            scene.mac.tell("set TCXC 60")
            scene.choose_preset("Jeu")
            scene.wait_for_modes("manual", "fans under manual control")
            scene.choose_preset("Max")
            self.assertEqual(scene.application.stop(how, seconds=60), 0 if how == signal.SIGTERM else -how)
            # The chosen preset takes effect, whether or not a poll had the time to send it before the quit.
            stage.wait_until(lambda: modes(scene) == ("manual", "manual") and targets(scene) == MAXIMA,
                             lambda: f"the fans are at their maximum; they are {modes(scene)} at {targets(scene)}", END_SECONDS)

    def test_is_carried_out_when_it_quits(self):
        self.check(signal.SIGTERM)


class ASlowController(unittest.TestCase):
    """A controller so slow that a poll takes eight seconds, so that timer ticks come faster than polls end."""

    DELAY_MILLISECONDS = 85
    # Covers a poll that is under way, and a helper run, which such a controller slows down as well.
    LIMIT_SECONDS = 16

    def slow_down(self, scene):
        scene.mac.tell("set TCXC 60")
        scene.choose_preset("Max")
        scene.wait_for_modes("manual", "fans under manual control")
        scene.open_page("Réglages")
        scene.screen.wait_for(RESET)
        scene.mac.tell(f"delay {self.DELAY_MILLISECONDS}")
        before = scene.requests()
        scene.mac.tell(f"await requests {before + 130} within 60")  # by then several ticks have passed during the poll

    def test_a_reset_overtakes_queued_work(self):
        with Scene() as scene:
            self.slow_down(scene)
            scene.screen.press(RESET)
            scene.wait_for_modes("automatic", "handed back", self.LIMIT_SECONDS)

    def test_a_preset_is_applied_by_the_next_poll(self):
        with Scene() as scene:
            self.slow_down(scene)
            scene.open_page("Préréglages")
            scene.screen.press("Appliquer: Auto")
            # Two polls: the one under way, and the one that applies the preset.
            scene.wait_for_modes("automatic", "handed back", self.LIMIT_SECONDS + 10)


class WithoutTheNumberOfFans(unittest.TestCase):
    """Without FNum, a helper that is told to hand back all fans finds none, and succeeds without doing anything."""

    def drive(self, scene):
        scene.mac.tell("set TCXC 60")
        scene.choose_preset("Max")
        scene.wait_for_modes("manual", "fans under manual control")
        scene.open_page("Réglages")
        scene.screen.wait_for(RESET)
        scene.mac.tell("vanish FNum")

    def test_a_reset_hands_every_fan_back(self):
        with Scene() as scene:
            self.drive(scene)
            scene.screen.press(RESET)
            scene.wait_for_modes("automatic", "handed back", END_SECONDS)
            scene.polls(6)  # a speed that is still wanted would be sent again after ten seconds
            self.assertEqual(modes(scene), ("automatic", "automatic"), "for good")

    def test_the_removal_hands_every_fan_back_before_the_helper_goes(self):
        with Scene(user=None) as scene:  # as root of this private namespace, who needs no password
            self.drive(scene)
            scene.screen.press("Désactiver")
            stage.wait_until(lambda: not stage.HELPER.exists(), "the helper is removed")
            self.assertEqual(modes(scene), ("automatic", "automatic"))


class TheRemovalsPrompt(unittest.TestCase):
    """Safety while the password prompt for the removal is open, which may take any time."""

    def replace_pkexec(self):
        """Replaces pkexec by a script that waits for the file "answered". The file "agreed" stands for the right password."""
        require_real_root()
        stage.require_own("mounts", "another program in the place of pkexec")
        for folder in ("upper", "work"):
            os.makedirs(stage.SCRATCH / folder)
        subprocess.run(["mount", "-t", "overlay", "overlay", "-o",
                        f"lowerdir=/usr/bin,upperdir={stage.SCRATCH}/upper,workdir={stage.SCRATCH}/work", "/usr/bin"], check=True)
        os.makedirs(SHARED)
        os.chmod(SHARED, 0o777)
        with open("/usr/bin/pkexec", "w", encoding="ascii") as file:
            file.write(f"#!/bin/sh\ntouch {SHARED}/asked\nuntil [ -e {SHARED}/answered ]; do sleep 0.05; done\n"
                       f"[ -e {SHARED}/agreed ] || exit 126\nuntil [ -e {SHARED}/done ]; do sleep 0.05; done\n")
        os.chmod("/usr/bin/pkexec", 0o755)
        # Once it is agreed to, this process carries out the removal as root in place of pkexec.
        root = stage.Process(["/bin/sh", "-c", f"until [ -e {SHARED}/agreed ]; do sleep 0.05; done; rm -f '{stage.HELPER}'; "
                                               f"touch {SHARED}/done"])
        self.addCleanup(lambda: root.child.wait(stage.PATIENCE_SECONDS))
        self.addCleanup((SHARED / "agreed").touch)  # ends that process: the test may have given up the right to kill it

    def open_prompt(self, scene):
        scene.mac.tell("set TCXC 60")
        scene.choose_preset("Jeu")
        scene.wait_for_modes("manual", "fans under manual control")
        scene.open_page("Réglages")
        scene.screen.press("Désactiver")
        stage.wait_until((SHARED / "asked").exists, "the password is asked for")
        scene.wait_for_modes("automatic", "the user's control is suspended")

    def wait_for_maximum(self, scene):
        stage.wait_until(lambda: modes(scene) == ("manual", "manual") and targets(scene) == MAXIMA,
                         lambda: f"the fans are at their maximum; they are {modes(scene)} at {targets(scene)}",
                         REACTION_SECONDS)

    def test_heat_protection_and_the_emergency_go_on(self):
        self.replace_pkexec()
        with Scene() as scene:
            self.open_prompt(scene)
            scene.mac.tell("set TCXC 91")
            self.wait_for_maximum(scene)
            scene.mac.tell("set TCXC 93")
            scene.wait_for_modes("automatic", "handed back at 93 °C", REACTION_SECONDS)
            scene.mac.tell("set TCXC 60")
            (SHARED / "answered").touch()
            scene.wait_for_modes("manual", "it was cancelled, and the user's settings count again", END_SECONDS)

    def test_a_helper_that_goes_leaves_no_fan_behind(self):
        self.replace_pkexec()
        with Scene() as scene:
            self.open_prompt(scene)
            scene.mac.tell("set TCXC 91")
            self.wait_for_maximum(scene)
            scene.mac.tell("set TCXC 60")
            (SHARED / "agreed").touch()
            (SHARED / "answered").touch()
            stage.wait_until(lambda: not stage.HELPER.exists(), "the helper is removed")
            scene.wait_for_modes("automatic", "no fan is left behind", END_SECONDS)


if __name__ == "__main__":
    unittest.main()
