"""Tests of `.ci/checks distributions`: which commands it runs in which distribution, and that it passes only when all pass."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMMANDS = ("./run", "./test", "./run --tour", ".ci/checks clang qml")


class Distributions(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl-check-")
        self.addCleanup(folder.cleanup)
        self.checkout = pathlib.Path(folder.name)
        for path in (".ci/checks", "Packaging/with-progress"):
            (self.checkout / path).parent.mkdir()
            shutil.copy(ROOT / path, self.checkout / path)

    def check(self, *arguments, body="exit 0"):
        """Runs .ci/checks with a fake in-distribution script. Returns the completed process and the commands that the script
        was asked to run."""
        tool = self.checkout / "Packaging/Linux/in-distribution"
        tool.parent.mkdir(parents=True, exist_ok=True)
        tool.write_text(f'#!/bin/sh\n[ "$2" = sh ] || echo "$@" >>calls\n{body}\n', encoding="ascii")
        tool.chmod(0o755)
        done = subprocess.run([self.checkout / ".ci/checks", *arguments], check=False, capture_output=True, text=True,
                              timeout=60, env={**os.environ, "TMPDIR": str(self.checkout)})
        calls = self.checkout / "calls"
        return done, calls.read_text(encoding="ascii").splitlines() if calls.exists() else []

    def test_runs_everything_in_each(self):
        done, calls = self.check("distributions")
        self.assertEqual((done.returncode, calls),
                         (0, [f"{name} {command}" for name in ("bookworm", "trixie", "unstable") for command in COMMANDS]))
        self.assertRegex(done.stderr, r"(?m)^trixie: \./test +\d+ s$")

    def test_runs_it_in_those_that_are_named(self):
        self.assertEqual(self.check("distributions", "trixie")[1], [f"trixie {command}" for command in COMMANDS])

    def test_fails_when_one_fails_and_runs_the_rest(self):
        done, calls = self.check("distributions", body='[ "$*" != "trixie ./test" ] || { echo why; exit 8; }')
        self.assertEqual((done.returncode, len(calls)), (1, 3 * len(COMMANDS)))
        self.assertRegex(done.stderr, r"(?m)^why\ntrixie: \./test +FAILED after \d+ s; ")

    def test_what_could_not_be_done_is_not_passed(self):
        done, _ = self.check("distributions", "trixie", body='[ "$2" != ./run ] || exit 77')
        self.assertEqual(done.returncode, 77)
        self.assertIn("SKIPPED", done.stderr)

    def test_macos_with_the_newest_qt_takes_its_root(self):
        done, calls = self.check("macos-newest")
        self.assertEqual((done.returncode, calls), (0, ["unstable .ci/checks --step macos_newest_here"]))
        self.assertEqual(self.check("macos-newest", body="exit 77")[0].returncode, 77)
        self.assertEqual(self.check("macos-newest", body="exit 8")[0].returncode, 8)

    def test_does_not_run_by_default(self):
        # A fake with-progress lets every step pass immediately, so that the whole list of steps is covered.
        (self.checkout / "Packaging/with-progress").write_text('#!/bin/sh\necho "$1" >>steps\n', encoding="ascii")
        unasked = len(re.findall(r"^if wants .*; then step", (ROOT / ".ci/checks").read_text(encoding="utf-8"), re.M))
        done, calls = self.check()
        steps = (self.checkout / "steps").read_text(encoding="utf-8").splitlines()
        self.assertEqual((done.returncode, calls), (0, []), done.stderr)
        self.assertEqual((steps[0], len(steps)), ("Format", unasked), steps)
        self.assertNotIn("Tests of endurance at their whole volume", steps)


if __name__ == "__main__":
    unittest.main()
