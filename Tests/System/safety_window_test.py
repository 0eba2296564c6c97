"""The same as in safety_test.py where a person is at the window: presets, the reset, the removal of the helper.

Judged by the machine's own end state alone.
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
SHARED = stage.SCRATCH / "shared"  # for files of anybody


def targets(scene):
    """What the fans are asked for, as readers see it."""
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
            # Chosen is chosen, whether the poll had the time or not.
            stage.wait_until(lambda: modes(scene) == ("manual", "manual") and targets(scene) == MAXIMA,
                             lambda: f"the fans are at their maximum; they are {modes(scene)} at {targets(scene)}", END_SECONDS)

    def test_is_carried_out_when_it_quits(self):
        self.check(signal.SIGTERM)


class ASlowController(unittest.TestCase):
    """One that needs eight seconds for a poll, so that ticks come faster than polls end."""

    DELAY_MILLISECONDS = 85
    # One poll may be under way, and a helper needs its time with such a controller, too.
    LIMIT_SECONDS = 16

    def slow_down(self, scene):
        scene.mac.tell("set TCXC 60")
        scene.choose_preset("Max")
        scene.wait_for_modes("manual", "fans under manual control")
        scene.open_page("Réglages")
        scene.screen.wait_for(RESET)
        scene.mac.tell(f"delay {self.DELAY_MILLISECONDS}")
        before = scene.requests()
        scene.mac.tell(f"await requests {before + 130} within 60")  # by then several ticks have come in vain

    def test_a_reset_overtakes_what_waits(self):
        with Scene() as scene:
            self.slow_down(scene)
            scene.screen.press(RESET)
            scene.wait_for_modes("automatic", "handed back", self.LIMIT_SECONDS)

    def test_a_preset_is_taken_by_the_next_poll(self):
        with Scene() as scene:
            self.slow_down(scene)
            scene.open_page("Préréglages")
            scene.screen.press("Appliquer: Auto")
            # The poll that is under way, and the one that takes it.
            scene.wait_for_modes("automatic", "handed back", self.LIMIT_SECONDS + 10)


class WithoutTheNumberOfFans(unittest.TestCase):
    """A helper that is told to hand back all fans knows of none then, and ends with success."""

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
            scene.mac.tell("await requests 300 within 30")
            self.assertEqual(modes(scene), ("automatic", "automatic"), "for good")

    def test_the_removal_hands_every_fan_back_before_the_helper_goes(self):
        with Scene(user=None) as scene:  # root of this private world, who needs nobody's consent
            self.drive(scene)
            scene.screen.press("Désactiver")
            stage.wait_until(lambda: not stage.HELPER.exists(), "the helper is removed")
            self.assertEqual(modes(scene), ("automatic", "automatic"))


class TheRemovalsPrompt(unittest.TestCase):
    """While somebody is asked for the password, which may take as long as it likes."""

    def offer_prompt(self):
        """Puts a program in the place of the one that asks: whoever made the file "agreed" has typed the password."""
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
        # The part of root, for when it is agreed to: the command itself.
        root = stage.Process(["/bin/sh", "-c", f"until [ -e {SHARED}/agreed ]; do sleep 0.05; done; rm -f '{stage.HELPER}'; "
                                               f"touch {SHARED}/done"])
        self.addCleanup(lambda: root.child.wait(stage.PATIENCE_SECONDS))
        self.addCleanup((SHARED / "agreed").touch)  # then it ends, also where this test may not end it any more

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
        self.offer_prompt()
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
        self.offer_prompt()
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
