"""Tests of ./run and ./test in an ordinary container: as root, but without the right to create a namespace or mount anything.

Each test gives up these rights inside a private namespace, and inspects what is left there afterwards.
"""

import os
import pathlib
import re
import signal
import subprocess
import unittest

import run_test
import stage
from helper_stage import BUILD, NOBODY, require_real_root

AS_IN_CONTAINER = stage.ROOT / "Packaging/Linux/as-in-container"
PRIVATE_NAMESPACE = stage.ROOT / "Packaging/Linux/private-namespace"
IN_PLACE = "No private world can be made here, so this container's own /run/fenwhirl and /Library are used."
UNAVAILABLE = 69
MUST_RUN = ("end_to_end_test.Presets.test_the_game_preset_drives_the_fans_and_the_window_follows",
            "end_to_end_test.Safety.test_at_92_degrees_every_fan_is_handed_back",
            "end_to_end_test.Safety.test_at_the_alert_threshold_automatic_fans_run_at_their_maximum",
            "end_to_end_test.Safety.test_without_any_temperature_manual_control_is_suspended",
            "guard_test.WhileTheApplicationLives.test_a_killed_guard_is_replaced_and_knows_everything",
            "run_test.TheWalk.test_ctrl_c_ends_every_process")
MUST_BE_SKIPPED = "helper_drivers_test.WithDrivers.test_fans_are_driven_and_handed_back"


def require_full_isolation():
    require_real_root()
    for what in ("mounts", "network", "processes"):
        stage.require_own(what, "a computer that looks like a container")


class ContainerMixin:
    """Mix-in that runs the command under a container's restrictions: as root, without a private namespace."""

    launcher = (AS_IN_CONTAINER,)

    def setUp(self):
        require_full_isolation()
        super().setUp()

    @staticmethod
    def can_be_an_ordinary_user():
        return False


class TheWalk(ContainerMixin, run_test.Walk):
    """The walk as root, without a private namespace. run_test.py describes what its tests check."""

    def test_the_whole_walk_is_printed_and_nothing_is_left_behind(self):
        said = self.walk()
        self.assertEqual(said.count(IN_PLACE), 1, said)
        self.assertLess(said.index(IN_PLACE), [run_test.FIRST_LINE in line for line in said].index(True))

    def test_ctrl_c_ends_every_process(self):
        self.interrupt(os.killpg, signal.SIGINT)

    def test_sigterm_ends_every_process(self):
        self.interrupt(os.kill, signal.SIGTERM)

    def test_the_end_of_the_terminal_ends_it_too(self):
        self.interrupt(os.killpg, signal.SIGHUP)

    def test_a_kill_ends_every_process(self):
        self.kill()
        stage.wait_until(lambda: not os.listdir("/Library") and not os.path.exists("/run/fenwhirl"), "the places are cleared")


class TheDemonstration(ContainerMixin, run_test.TheDemonstration):
    """The demonstration on a display, without a private namespace."""

    def test_ctrl_c_ends_it_and_the_places_are_cleared(self):
        self.check_end(os.killpg, signal.SIGINT)
        self.assertEqual(os.listdir("/Library"), [])
        self.assertFalse(os.path.exists("/run/fenwhirl"))


class SharedFolders(unittest.TestCase):
    def setUp(self):
        require_full_isolation()

    def start(self, *command, options=()):
        return subprocess.run([AS_IN_CONTAINER, *options, PRIVATE_NAMESPACE, *command], check=False, capture_output=True,
                              text=True, timeout=60)

    def test_what_lies_there_already_is_left_alone_and_nothing_is_run(self):
        for place in ("/Library/Fonts", "/run/fenwhirl/somebody.else"):
            pathlib.Path(place).mkdir(parents=True)
            done = self.start("echo", "run")
            self.assertEqual((done.returncode, done.stdout), (UNAVAILABLE, ""))
            self.assertRegex(done.stderr, f"something lies in {os.path.dirname(place)} already")
            self.assertTrue(os.path.isdir(place))
            os.removedirs(place)
            os.makedirs("/Library", exist_ok=True)

    def test_whatever_a_command_leaves_there_or_running_is_removed(self):
        before = {place: set(os.listdir(place)) for place in ("/", "/run")}
        done = self.start("sh", "-c", "mkdir -p /run/fenwhirl /Library/a/b && touch /Library/c /run/fenwhirl/d && "
                                      "(setsid sleep 1000 & setsid sh -c 'sleep 1000 & sleep 1000' &) && exit 7")
        self.assertEqual(done.returncode, 7, done.stderr)
        self.assertEqual({place: set(os.listdir(place)) for place in before}, before)
        self.assertEqual(os.listdir("/Library"), [])
        self.assertEqual(subprocess.run(["pgrep", "-x", "sleep"], check=False, capture_output=True).stdout, b"")

    def test_an_ordinary_user_is_told_what_is_missing_and_how_to_get_it(self):
        done = self.start("echo", "run", options=("--user", str(NOBODY)))
        self.assertEqual((done.returncode, done.stdout), (UNAVAILABLE, ""))
        for text in ("no namespaces", "sudo", "kernel.unprivileged_userns_clone",
                     "kernel.apparmor_restrict_unprivileged_userns", "In a container"):
            self.assertIn(text, done.stderr)

    def test_one_after_the_other(self):
        order, release = stage.SCRATCH / "order", stage.SCRATCH / "release"
        command = [AS_IN_CONTAINER, PRIVATE_NAMESPACE, "sh", "-c",
                   f"echo begin >>{order}; touch /Library/x; until [ -e {release} ]; do sleep 0.05; done; rm /Library/x; "
                   f"echo end >>{order}"]
        with stage.Process(command, stderr=subprocess.PIPE) as first:
            stage.wait_until(order.exists, "the first one runs")
            with stage.Process(command, stderr=subprocess.PIPE) as second:
                said = stage.Lines(second.child.stderr)
                while "Waiting until" not in said.next():
                    pass
                self.assertEqual(order.read_text(encoding="ascii").split(), ["begin"])
                release.touch()
                self.assertEqual([each.child.wait(60) for each in (first, second)], [0, 0])
            self.assertNotIn(b"Waiting until", first.child.stderr.read())
        self.assertEqual(order.read_text(encoding="ascii").split(), ["begin", "end", "begin", "end"])


class TheTests(unittest.TestCase):
    def setUp(self):
        require_full_isolation()

    def run_tests(self, names, options=(), script='exec "$@"'):
        """Runs these tests in a container as `./test` does. Returns the names of those that passed, and the summary's lines."""
        stage.cover_temporary_files(stage.ROOT, BUILD)
        # Hides the results folder of the test run that this test itself belongs to, so that neither overwrites the other's.
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", BUILD / "Testing"], check=True)
        results = BUILD / "Testing/results.xml"
        pattern = "^System\\.(" + "|".join(map(re.escape, names)) + ")$"
        done = subprocess.run([AS_IN_CONTAINER, *options, "sh", "-c", script, "sh", "ctest", "--test-dir", BUILD,
                               "-R", pattern, "--parallel", "3", "--no-tests=error", "--output-on-failure",
                               "--output-junit", results],
                              check=False, capture_output=True, text=True, stdin=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        passed = re.findall(r"Test +#\d+: System\.(\S+) \.* +Passed", done.stdout)
        closing = subprocess.run(["/usr/bin/python3", "-B", stage.ROOT / "Tests/Support/summarize.py", results], check=True,
                                 capture_output=True, text=True).stdout.splitlines()
        return passed, closing

    def test_those_that_matter_run_there_and_others_are_skipped_by_name(self):
        passed, closing = self.run_tests([*MUST_RUN, MUST_BE_SKIPPED])
        self.assertEqual(sorted(passed), sorted(MUST_RUN))
        self.assertEqual(closing, ["Skipped:", "  needs mounts of its own: a /sys made of files",
                                   f"    System.{MUST_BE_SKIPPED}", f"{len(MUST_RUN)} passed, 0 failed, 1 skipped"])
        self.assertEqual(os.listdir("/Library"), [])
        self.assertFalse(os.path.exists("/run/fenwhirl"))

    def check_part(self, refused, kind, **how):
        options = ["--refuse", refused]
        said = subprocess.run([AS_IN_CONTAINER, *options, PRIVATE_NAMESPACE, "--kind"], check=True, capture_output=True,
                              text=True)
        self.assertEqual(said.stdout, f"{kind}\n", said.stderr)
        passed, closing = self.run_tests(MUST_RUN[:2], options, **how)
        self.assertEqual(sorted(passed), sorted(MUST_RUN[:2]))
        self.assertEqual(closing, ["2 passed, 0 failed, 0 skipped"])

    def test_they_run_where_only_the_network_is_refused(self):
        self.check_part("network", "shared")

    def test_they_run_where_only_process_numbers_are_refused(self):
        self.check_part("processes", "shared")

    def test_they_run_where_only_a_new_proc_is_refused(self):
        self.check_part("proc-mount", "shared")

    def test_they_run_with_little_shared_memory(self):
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k,mode=1777", "tmpfs", "/dev/shm"], check=True)
        self.check_part("all", "in place")

    def test_they_run_without_shared_memory_and_without_a_terminal(self):
        names = ("null", "zero", "full", "random", "urandom", "tty")
        kept = [(name, os.open(f"/dev/{name}", os.O_PATH)) for name in names]
        subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=0755", "tmpfs", "/dev"], check=True)
        for name, descriptor in kept:
            pathlib.Path("/dev", name).touch()
            subprocess.run(["mount", "--no-canonicalize", "--bind", f"/proc/self/fd/{descriptor}", f"/dev/{name}"], check=True,
                           pass_fds=[descriptor])
        self.check_part("all", "in place", script='exec setsid --wait "$@" <&-')


if __name__ == "__main__":
    unittest.main()
