"""Tests of the built program's command line."""

import os
import pathlib
import re
import subprocess
import unittest

import stage
from helper_stage import BUILD, require_real_root
from scene import Scene

HELPER = "/Library/PrivilegedHelperTools/FenwhirlHelper"
WITHOUT_DISPLAY = {"PATH": "/usr/bin:/bin", "LC_ALL": "C"}
VERSION = re.search(r"project\(Fenwhirl VERSION ([\d.]+)", pathlib.Path(__file__).parents[2].joinpath("CMakeLists.txt")
                    .read_text(encoding="utf-8")).group(1)


def run(*arguments, program=BUILD / "bin/Fenwhirl", environment=None, **options):
    return subprocess.run([program, *arguments], env=environment or WITHOUT_DISPLAY, check=False, capture_output=True,
                          text=True, timeout=stage.PATIENCE_SECONDS, **options)


class WithoutADisplay(unittest.TestCase):
    def test_version_and_help_need_nothing(self):
        version = run("--version")
        self.assertEqual((version.returncode, version.stdout, version.stderr), (0, f"Fenwhirl {VERSION}\n", ""))
        usage = run("--help")
        self.assertEqual((usage.returncode, usage.stderr), (0, ""))
        self.assertIn("--preset NAME", usage.stdout)
        self.assertLessEqual(max(map(len, usage.stdout.splitlines())), 80)

    def test_what_cannot_be_printed_is_a_failure(self):
        with open("/dev/full", "wb") as full:
            self.assertEqual(subprocess.run([BUILD / "bin/Fenwhirl", "--version"], env=WITHOUT_DISPLAY, stdout=full,
                                            check=False).returncode, 1)

    def test_a_preset_that_does_not_exist_is_refused(self):
        for arguments in (("--preset", "turbo"), ("--preset",)):
            refused = run(*arguments)
            self.assertEqual((refused.returncode, refused.stdout), (64, ""))
            self.assertIn("auto, silent, balanced, game, max", refused.stderr)

    def test_the_entry_comes_first(self):
        require_real_root()
        stage.install_helper(BUILD)
        for arguments in (("--version",), ("--help",), ("--self-check",), ("--preset", "max")):
            self.assertEqual(run(*arguments, program=HELPER, user=65534).returncode, 77)
        self.assertEqual(run("--helper", "--version").returncode, 2, "the helper finds no controller")


class BesideARunningProgram(unittest.TestCase):
    def test_a_preset_is_chosen_there(self):
        with Scene() as scene:
            scene.mac.tell("set TCXC 70")
            chosen = run("--preset", "jeu", environment=dict(os.environ))
            self.assertEqual((chosen.returncode, chosen.stdout), (0, ""))
            scene.wait_for_modes("manual", "the curve drives the fans")
            self.assertEqual(run("--preset=auto", environment=dict(os.environ)).returncode, 0)
            scene.wait_for_modes("automatic", "the fans are automatic again")

    def test_without_a_bus_too(self):
        with Scene() as scene:
            scene.mac.tell("set TCXC 70")
            without = {**os.environ, "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
            self.assertEqual(run("--preset", "max", environment=without).returncode, 0)
            scene.wait_for_modes("manual", "the fans run at their maximum")


class AStart(unittest.TestCase):
    def start_again(self, scene, *arguments):
        self.assertEqual(scene.application.stop(), 0)
        return scene.stack.enter_context(stage.Application(BUILD, *arguments))

    def test_with_a_preset_it_is_hidden_and_drives_the_fans(self):
        with Scene() as scene:
            scene.mac.tell("set TCXC 70")
            application = self.start_again(scene, "--preset", "max")
            scene.wait_for_modes("manual", "the fans run at their maximum")
            self.assertIsNone(application.window_now())

    def test_an_unknown_option_starts_it_all_the_same(self):
        with Scene() as scene:
            scene.choose_preset("Jeu")
            scene.wait_for_modes("manual", "fans under manual control")
            self.start_again(scene, "--frobnicate")
            scene.wait_for_modes("manual", "it drives the fans again")


if __name__ == "__main__":
    unittest.main()
