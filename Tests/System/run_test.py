"""Tests of ./run, the command that a new user tries first: as an ordinary user, to its end and interrupted.

Where an ordinary user cannot have a private namespace, it runs as root without one.
"""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

import stage
from helper_stage import BUILD, processes

# An account that exists everywhere and owns nothing but its copy of the project.
ORDINARY_USER = 65534
WALK_SECONDS = 160
ALWAYS_THERE = {".X11-unix"}  # in /tmp of every computer with a display server
FIRST_LINE = "first start: Fenwhirl introduces itself"


class Run(unittest.TestCase):
    def setUp(self):
        # Not below /run, which the command's private namespace replaces by its own. The checkout has a name as users choose them,
        # with spaces and accents.
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="fenwhirl-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.folder.chmod(0o755)
        self.checkout = self.folder / "Téléchargements de Zoë"
        self.checkout.mkdir()
        shutil.copy(stage.ROOT / "run", self.checkout)
        for part in ("Packaging/Linux", "Tests/System"):
            shutil.copytree(stage.ROOT / part, self.checkout / part, ignore=shutil.ignore_patterns("__pycache__"))
        self.identity = {}
        if self.can_be_an_ordinary_user():
            self.identity = {"user": ORDINARY_USER, "group": ORDINARY_USER, "extra_groups": []}
            for folder, _, files in os.walk(self.checkout):
                for name in (".", *files):
                    os.chown(pathlib.Path(folder) / name, ORDINARY_USER, ORDINARY_USER)
        self.before = self.running()

    @staticmethod
    def can_be_an_ordinary_user():
        """Whether the command can run as an ordinary user in a private namespace here."""
        return stage.can_become(ORDINARY_USER) and stage.has_own("mounts")

    launcher = ()  # a command prefix that starts ./run

    def start(self, *arguments, **environment):
        """Starts ./run in its own session and process group, as a terminal does."""
        settings = {name: value for name, value in os.environ.items()
                    if name not in ("DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS")}
        run = stage.Process([*self.launcher, self.checkout / "run", "--built", BUILD, *arguments], start_new_session=True,
                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            env={**settings, "HOME": "/nonexistent", **environment}, **self.identity)
        self.addCleanup(run.__exit__)
        run.lines = stage.Lines(run.child.stdout)
        return run

    def wait_for_line(self, run, text, seconds=stage.PATIENCE_SECONDS):
        said = []
        try:
            while not said or text not in said[-1]:
                said.append(run.lines.next(seconds))
        except stage.StageError as error:
            self.fail(f"{error} before {text!r} came; what came is {said}")
        return said[-1]

    def rest(self, run, seconds=stage.PATIENCE_SECONDS):
        """Returns the remaining lines of output and the exit status."""
        said = []
        try:
            while True:
                said.append(run.lines.next(seconds))
        except stage.StageError:
            pass  # end of the output
        return said, run.child.wait(stage.PATIENCE_SECONDS)

    @staticmethod
    def running():
        return {(number, name) for number, _, name in processes()}

    def assert_nothing_is_left(self):
        self.assertEqual(self.running() - self.before, set())


class Walk(Run):
    def setUp(self):
        if stage.has_own("mounts"):
            stage.cover_temporary_files(stage.ROOT, BUILD)
        super().setUp()

    def walk(self):
        """Runs the whole walk, checks its output and that nothing is left behind, and returns the lines of output."""
        places = ("/run", "/Library", "/tmp") if stage.has_own("mounts") else ("/run", "/Library")
        outside = {place: set(os.listdir(place)) | ALWAYS_THERE for place in places}
        said, status = self.rest(self.start(), WALK_SECONDS)
        self.assertEqual(status, 0, said)
        for step in (FIRST_LINE, "the helper is installed (privately)", 'the preset "Jeu" is chosen',
                     "the fans follow", "Fenwhirl ends: the fans are handed back"):
            self.assertTrue(any(step in line for line in said), (step, said))
        self.assertTrue(any("manual" in line for line in said))
        self.assertNotIn("manual", [line for line in said if "handed back" in line][0])
        self.assertEqual(said[-1], f"Pictures: {self.checkout}/build/tour")
        for name in ("dashboard", "dashboard-game", "dashboard-after"):
            picture = self.checkout / "build/tour" / f"{name}.png"
            self.assertEqual(picture.read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(picture.stat().st_uid, self.identity.get("user", 0))
        self.assert_nothing_is_left()
        self.assertEqual({place: set(os.listdir(place)) | ALWAYS_THERE for place in outside}, outside)
        return said

    def interrupt(self, send, number):
        temporary_files = set(os.listdir("/tmp")) | ALWAYS_THERE
        run = self.start()
        self.wait_for_line(run, FIRST_LINE, WALK_SECONDS)
        self.assertGreater(len(self.running() - self.before), 5)
        send(run.child.pid, number)
        said, status = self.rest(run)
        # On a busy computer the walk may have gone a step further before the signal reached it.
        self.assertEqual((said[-1:], status), (["The walk was interrupted."], 128 + number), said)
        self.assertFalse([line for line in said if line.startswith("Pictures:")], said)
        self.assert_nothing_is_left()
        if stage.has_own("mounts"):
            self.assertEqual(set(os.listdir("/tmp")) | ALWAYS_THERE, temporary_files)

    def kill(self):
        run = self.start()
        self.wait_for_line(run, FIRST_LINE, WALK_SECONDS)
        run.stop(signal.SIGKILL)
        stage.wait_until(lambda: not self.running() - self.before, lambda: f"all end: {self.running() - self.before}")


class TheWalk(Walk):
    def test_the_whole_walk_is_printed_and_nothing_is_left_behind(self):
        self.walk()

    def test_ctrl_c_ends_every_process(self):
        self.interrupt(os.killpg, signal.SIGINT)

    def test_sigterm_ends_every_process(self):
        self.interrupt(os.kill, signal.SIGTERM)

    def test_the_end_of_the_terminal_ends_it_too(self):
        self.interrupt(os.killpg, signal.SIGHUP)

    def test_a_kill_ends_every_process(self):
        self.kill()


class TheDemonstration(Run):
    def start_on_a_display(self, **environment):
        display = stage.Display()
        self.addCleanup(display.__exit__)
        display.start_window_manager()
        self.before = self.running()
        run = self.start("--simulate", "--heat", "15", "--speed", "3", **display.environment(), **environment)
        search = ["xdotool", "search", "--onlyvisible", "--name", "^Fenwhirl$"]
        stage.wait_until(lambda: subprocess.run(search, check=False, capture_output=True,
                                                env={**os.environ, **display.environment()}).stdout,
                         "the window is shown", WALK_SECONDS)
        return run

    def check_end(self, send, number):
        run = self.start_on_a_display()
        run.child.stdin.write(b"state\n")
        run.child.stdin.flush()
        self.assertIn("fan0=", self.wait_for_line(run, "fan0="))
        send(run.child.pid, number)
        _, status = self.rest(run)
        self.assertEqual(status, 0)  # the signal asked Fenwhirl to end, and it ended normally
        self.assert_nothing_is_left()

    def test_it_reaches_the_users_own_session(self):
        if not self.identity:
            self.skipTest("needs real root, to give up its rights, and a private world for an ordinary user")
        session = stage.SCRATCH / "session"
        session.mkdir(mode=0o700)
        os.chown(session, ORDINARY_USER, ORDINARY_USER)
        address = f"unix:path={session}/bus"
        bus = stage.Process(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1", f"--address={address}"],
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, **self.identity)
        self.addCleanup(bus.__exit__)
        stage.Lines(bus.child.stdout).next()
        self.start_on_a_display(DBUS_SESSION_BUS_ADDRESS=address, XDG_RUNTIME_DIR=str(session))

        def names():
            answer = subprocess.run(["dbus-send", f"--bus={address}", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                                     "org.freedesktop.DBus.ListNames"], check=True, capture_output=True, text=True,
                                    **self.identity)
            return answer.stdout

        stage.wait_until(lambda: "com.fenwhirl" in names(), names)

    def test_ctrl_c_ends_it(self):
        self.check_end(os.killpg, signal.SIGINT)

    def test_sigterm_ends_it(self):
        self.check_end(os.kill, signal.SIGTERM)


class TheOptions(Run):
    def answer(self, *arguments):
        return self.rest(self.start(*arguments))

    def test_help_tells_them(self):
        said, status = self.answer("--help")
        self.assertEqual(status, 0)
        for option in ("--machine NAME", "--heat SOURCE", "--speed N", "--tour", "--help"):
            self.assertTrue(any(line.strip().startswith(option) for line in said), (option, said))

    def test_the_machines_are_listed(self):
        said, status = self.answer("--machine", "list")
        self.assertEqual(status, 0)
        self.assertTrue(any(line.startswith("MacBookPro11,4 ") and line.endswith("(usual)") for line in said), said)
        self.assertGreaterEqual(len(said), 13)

    def test_wrong_ones_are_explained(self):
        for arguments in (["--machine", "iMac99,9"], ["--machine"], ["--wrong"], ["word"], ["--tour", "nowhere"],
                          ["--machine", "."], ["--machine", ""], ["--built", "/nowhere"]):
            said, status = self.answer(*arguments)
            self.assertEqual(status, 64, arguments)
            self.assertEqual(len(said), 1)
            self.assertRegex(said[0], r"^run: .*; --help explains$")
        self.assert_nothing_is_left()


class AMacThatRunsLinux(Run):
    """Its drivers are files made up for this test."""

    FENWHIRL = "#!/bin/sh\necho the real machine\n"
    SIMULATED_MAC = "#!/bin/sh\nif [ \"$1\" = --list ]; then echo 'MacBookPro11,4 (usual)'; else echo a simulated one; fi\n"

    def setUp(self):
        super().setUp()
        if not stage.has_own("mounts"):
            self.skipTest("needs mounts of its own, for a /sys with the driver")
        self.build = self.folder / "build"
        (self.build / "bin").mkdir(parents=True)
        for name, text in (("Fenwhirl", self.FENWHIRL), ("simulated-mac", self.SIMULATED_MAC)):
            program = self.build / "bin" / name
            program.write_text(text, encoding="utf-8")
            program.chmod(0o755)

    def answer(self, name_file, driver):
        devices = pathlib.Path("/sys/class")  # without drivers there may be no /sys/class/hwmon
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", devices], check=True)
        try:
            file = devices / "hwmon/hwmon0" / name_file
            file.parent.mkdir(parents=True)
            file.write_text(driver + "\n", encoding="utf-8")
            lines, status = self.rest(self.start("--built", str(self.build), DISPLAY=":99"))
        finally:
            subprocess.run(["umount", devices], check=True)
        return (lines[-1] if lines else ""), status

    def test_shows_itself(self):
        for driver in ("applesmc", "macsmc_hwmon", "t2smc"):
            for name_file in ("name", "device/name"):
                self.assertEqual(self.answer(name_file, driver), ("the real machine", 0), (name_file, driver))

    def test_another_computer_does_not(self):
        self.assertNotIn("the real machine", self.answer("name", "coretemp"))


class TheFolder(Run):
    def test_an_unwritable_folder_is_reported_before_anything_is_installed_or_built(self):
        if not self.identity:
            self.skipTest("needs real root, to give up its rights, and a private world for an ordinary user")
        shutil.copy(stage.ROOT / "test", self.checkout)
        self.checkout.chmod(0o555)
        self.addCleanup(self.checkout.chmod, 0o755)
        for command in ("run", "test"):
            done = subprocess.run([self.checkout / command], check=False, capture_output=True, text=True, timeout=60,
                                  env={"PATH": "/usr/bin:/bin"}, **self.identity)
            self.assertEqual((done.returncode, done.stdout), (73, ""))
            self.assertEqual(done.stderr, f"{command}: this folder cannot be written by you: {self.checkout}; "
                                          "copy it to one of your own\n")


if __name__ == "__main__":
    unittest.main()
