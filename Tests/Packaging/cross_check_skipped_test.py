"""Tests of the macOS cross-check on a computer that cannot download what it needs: it says why, and never reports "passed"."""

import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


class CrossCheckWithoutDownloads(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl-check-")
        self.addCleanup(folder.cleanup)
        self.source = os.path.join(folder.name, "checkout")
        self.tools = os.path.join(folder.name, "tools")
        self.cache = os.path.join(folder.name, "cache")
        os.mkdir(self.tools)
        shutil.copytree(os.path.join(ROOT, "Packaging/macOS/check"), os.path.join(self.source, "Packaging/macOS/check"))
        os.mkdir(os.path.join(self.source, ".ci"))
        for path in (".ci/checks", ".ci/run", "Packaging/with-progress"):
            shutil.copy(os.path.join(ROOT, path), os.path.join(self.source, path))
        # Pretend that the distribution's packages are installed; what the check downloads with them is missing.
        self.fake_script("Packaging/Linux/install-packages", "exit 0")

    def fake_script(self, path, body, folder=None):
        path = os.path.join(folder or self.source, path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="ascii") as file:
            file.write(f"#!/bin/sh\n{body}\n")
        os.chmod(path, 0o755)

    def run_in_checkout(self, *command):
        """Runs a command in the copied checkout, with empty caches so that no earlier download is found."""
        environment = {"PATH": f"{self.tools}:{os.environ['PATH']}", "HOME": self.cache, "npm_config_cache": self.cache}
        return subprocess.run(command, cwd=self.source, env=environment, check=False, capture_output=True, text=True,
                              timeout=100)

    def assert_skipped(self, done, *words):
        self.assertEqual(done.returncode, 77, done.stdout + done.stderr)
        self.assertRegex(done.stderr, r"(?m)^macOS build .* SKIPPED: not checked, which is not passed$")
        for word in words:
            self.assertIn(word, done.stderr)
        self.assertNotRegex(done.stderr, r"(?m)^macOS build.* \d+ s$")  # the line of a check that passed

    def test_a_computer_without_network_skips_it(self):
        without_network = ("unshare", "--map-root-user", "--net")
        if self.run_in_checkout(*without_network, "true").returncode != 0:
            self.skipTest("needs network of its own: none to be had")
        done = self.run_in_checkout(*without_network, ".ci/checks", "macos")
        self.assert_skipped(done, "SKIPPED: the npm registry did not give" if shutil.which("npm") else "SKIPPED: npm is not")

    def test_a_computer_that_cannot_install_the_compiler_skips_it(self):
        self.fake_script("Packaging/Linux/install-packages", "exit 1")
        self.assert_skipped(self.run_in_checkout(".ci/checks", "macos"), "SKIPPED: the compiler")

    def test_any_other_error_fails_it(self):
        self.fake_script("Packaging/macOS/check/check", "exit 1")
        done = self.run_in_checkout(".ci/checks", "macos")
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"(?m)^macOS build .* FAILED after \d+ s; the whole log is \S+$")

    def test_a_file_that_is_not_the_pinned_one_is_a_failure(self):
        self.fake_script("npm", "echo something else >package.tgz", folder=self.tools)
        done = self.run_in_checkout(".ci/checks", "macos")
        self.assertEqual(done.returncode, 1)
        self.assertIn("is not the pinned file", done.stderr)

    def test_a_passed_check_does_not_mention_skipping(self):
        self.fake_script("Packaging/macOS/check/check", "exit 0")
        done = self.run_in_checkout(".ci/checks", "macos")
        self.assertEqual(done.returncode, 0)
        self.assertNotIn("SKIPPED", done.stderr)

    def run_everything(self, status_of_checks, status_of_tests):
        self.fake_script(".ci/checks", f"exit {status_of_checks}")
        self.fake_script("test", f"echo tests run; exit {status_of_tests}")
        return self.run_in_checkout(".ci/run")

    def test_the_whole_run_goes_on_and_ends_with_it(self):
        done = self.run_everything(77, 0)
        self.assertEqual(done.returncode, 77)
        self.assertTrue(done.stdout.startswith("tests run\n"))
        self.assertTrue(done.stdout.splitlines()[-1].startswith("SKIPPED"))

    def test_the_whole_run_fails_with_its_checks_and_with_its_tests(self):
        self.assertEqual(self.run_everything(1, 0).stdout, "")
        self.assertEqual(self.run_everything(1, 0).returncode, 1)
        self.assertEqual(self.run_everything(77, 8).returncode, 8)
        self.assertEqual(self.run_everything(0, 8).returncode, 8)
        self.assertEqual(self.run_everything(0, 0).returncode, 0)


if __name__ == "__main__":
    unittest.main()
