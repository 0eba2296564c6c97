"""Tests of Packaging/with-progress: what it prints while a command runs and afterwards, what it logs, and that it leaves no
process running.
"""

import os
import pathlib
import pty
import re
import signal
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "Packaging/with-progress"


class WithProgress(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl-")
        self.addCleanup(folder.cleanup)
        self.log = pathlib.Path(folder.name) / "logs/build.log"

    def run_it(self, script):
        return subprocess.run([SCRIPT, "Build", self.log, "sh", "-c", script], check=False, capture_output=True, text=True,
                              timeout=60)

    def test_says_the_title_the_log_and_the_time_and_keeps_the_output(self):
        done = self.run_it("echo compiling; echo a warning >&2")
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        self.assertRegex(done.stderr, rf"\ABuild… \(log: {self.log}\)\nBuild +\d+ s\n\Z")
        self.assertEqual(self.log.read_text(encoding="utf-8"), "compiling\na warning\n")

    def test_shows_the_end_of_the_log_when_the_command_fails(self):
        done = self.run_it("seq 1000; echo error: no such file; exit 3")
        self.assertEqual(done.returncode, 3)
        self.assertIn("\n1000\nerror: no such file\n", done.stderr)
        self.assertNotIn("\n5\n", done.stderr)
        self.assertRegex(done.stderr, rf"Build +FAILED after \d+ s; the whole log is {self.log}\n\Z")

    def test_what_could_not_be_carried_out_is_neither_passed_nor_failed(self):
        done = self.run_it("echo working; echo SKIPPED: no compiler; exit 77")
        self.assertEqual(done.returncode, 77)
        self.assertRegex(done.stderr, r"\nBuild +SKIPPED: not checked, which is not passed\n    SKIPPED: no compiler\n\Z")

    def test_updates_its_line_on_a_terminal(self):
        terminal, other_end = pty.openpty()
        # The command finishes only after its progress was shown on the terminal.
        seen = self.log.parent.parent / "seen"
        child = subprocess.Popen([SCRIPT, "Build", self.log, "sh", "-c",
                                  f'echo "[3/7] Building x"; until [ -e "{seen}" ]; do sleep 0.05; done'], stderr=other_end)
        os.close(other_end)
        said = b""
        try:
            while True:
                said += os.read(terminal, 4096)
                if b"[3/7]" in said:
                    seen.touch()
        except OSError:
            pass  # the other end of the terminal is closed
        os.close(terminal)
        self.assertEqual(child.wait(60), 0)
        self.assertRegex(said.decode(), r"\r\x1b\[KBuild… \[3/7\] \d+ s\r\x1b\[K(.*\r\x1b\[K)?Build +\d+ s\r\n\Z")

    def test_a_signal_ends_the_command_and_nothing_is_left(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with subprocess.Popen([SCRIPT, "Build", self.log, "sh", "-c", "echo $$; exec sleep 1000"], stderr=subprocess.PIPE,
                                  start_new_session=True) as child:
                while not (self.log.exists() and re.fullmatch(r"\d+\n", self.log.read_text(encoding="ascii"))):
                    child.poll()
                command = int(self.log.read_text(encoding="ascii"))
                child.send_signal(number)
                self.assertEqual(child.wait(60), 128 + number)
                child.stderr.read()  # returns when no process has the other end open
                self.assertFalse(os.path.exists(f"/proc/{command}"))
                self.log.unlink()

    def test_its_clock_ends_when_it_is_killed(self):
        with subprocess.Popen([SCRIPT, "Build", self.log, "sh", "-c", "echo $$; exec sleep 1000"], stderr=subprocess.PIPE,
                              start_new_session=True) as child:
            while not (self.log.exists() and re.fullmatch(r"\d+\n", self.log.read_text(encoding="ascii"))):
                child.poll()
            child.kill()
            os.kill(int(self.log.read_text(encoding="ascii")), signal.SIGKILL)
            child.communicate(timeout=60)  # returns when no process has the other end of the pipe open


if __name__ == "__main__":
    unittest.main()
