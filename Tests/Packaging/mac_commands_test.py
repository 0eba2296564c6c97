"""Tests of ./run and ./test on a Mac, with fake system tools: what is installed, built and started, in which order."""

import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
APPLICATION = "build/release/bin/Fenwhirl.app/Contents/MacOS/Fenwhirl"
# The real tools that the commands may use beside the fake ones.
COMMON = ("bash", "cat", "dirname", "env", "getconf", "grep", "mkdir", "mktemp", "printf", "readlink", "rm", "sed", "sh",
          "sleep", "tail", "tr")


class MacCommands(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl-mac-")
        self.addCleanup(folder.cleanup)
        self.tools = os.path.join(folder.name, "tools")
        self.source = os.path.join(folder.name, "a checkout")
        self.log = os.path.join(folder.name, "log")
        for path in ("run", "test", "Packaging/with-progress", "Packaging/macOS/install-packages",
                     "Packaging/macOS/packages.txt"):
            target = os.path.join(self.source, path)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copy(os.path.join(ROOT, path), target)
        os.mkdir(self.tools)
        for tool in COMMON:
            os.symlink(shutil.which(tool), os.path.join(self.tools, tool))
        self.fake_tool("uname", "echo Darwin")
        self.fake_tool("xcode-select", "", silent=True)
        self.fake_tool("brew", 'if [ "$1" = list ]; then case "$3" in qt | googletest) exit 0 ;; esac; exit 1; fi')
        self.fake_tool("cmake", "")
        self.fake_tool("ninja", "")
        self.fake_tool("ctest", "")
        self.fake_tool(os.path.join(self.source, APPLICATION), "")

    def fake_tool(self, tool, body, silent=False):
        path = os.path.join(self.tools, tool)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        if os.path.lexists(path):
            os.remove(path)
        with open(path, "w", encoding="ascii") as file:
            file.write("#!/bin/sh\n")
            if not silent:
                file.write(f'{{ printf %s {os.path.basename(tool)}; printf " %s" "$@"; echo; }} >>"{self.log}"\n')
            file.write(body + "\n")
        os.chmod(path, 0o755)

    def remove_tools(self, *tools):
        for tool in tools:
            os.remove(os.path.join(self.tools, tool))

    def command(self, name, *arguments, answer=None):
        """Runs a command of the checkout. With an `answer` its standard input is a terminal on which that line was typed;
        without one it is /dev/null."""
        options = {"stdin": subprocess.DEVNULL}
        if answer is not None:
            ours, terminal = os.openpty()
            self.addCleanup(os.close, ours)
            os.write(ours, answer.encode() + b"\n")
            options = {"stdin": terminal}
        done = subprocess.run([os.path.join(self.source, name), *arguments], env={"PATH": self.tools}, check=False,
                              capture_output=True, text=True, timeout=60, **options)
        if answer is not None:
            os.close(terminal)
        return done

    def calls(self):
        """The logged calls, without the queries of what is installed (uname and brew list)."""
        if not os.path.exists(self.log):
            return []
        with open(self.log, encoding="ascii") as file:
            lines = [line.strip() for line in file]
        return [line for line in lines if line != "uname" and not line.startswith("brew list")]

    def test_run_builds_and_starts_the_bundle(self):
        done = self.command("run")
        self.assertEqual(done.returncode, 0, done.stderr)
        calls = self.calls()
        self.assertEqual(calls[0], "cmake --preset release")
        self.assertTrue(calls[1].startswith("cmake --build --preset release --parallel "), calls)
        self.assertEqual(calls[2:], ["Fenwhirl"])

    def test_run_installs_what_is_missing_before_it_builds(self):
        self.remove_tools("cmake", "ninja")
        self.fake_tool("brew", 'if [ "$1" = list ]; then exit 1; fi; : >"$(dirname "$0")/cmake"; chmod +x "$(dirname "$0")/cmake"')
        os.symlink(shutil.which("chmod"), os.path.join(self.tools, "chmod"))
        done = self.command("run")
        self.assertEqual(self.calls()[0], "brew install cmake ninja qt")
        self.assertIn("cmake ninja qt", done.stderr)

    def test_on_a_terminal_it_asks_first(self):
        self.remove_tools("ninja")
        self.command("run", answer="")
        self.assertEqual(self.calls()[0], "brew install ninja")

    def test_a_no_installs_and_builds_nothing(self):
        self.remove_tools("ninja")
        done = self.command("run", answer="n")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(self.calls(), [])

    def test_a_failed_installation_ends_it(self):
        self.remove_tools("ninja")
        self.fake_tool("brew", "exit 1")
        self.assertNotEqual(self.command("run").returncode, 0)
        self.assertEqual(self.calls(), ["brew install ninja qt"])

    def test_tools_from_elsewhere_need_no_homebrew(self):
        self.remove_tools("brew")
        self.fake_tool("macdeployqt", "")
        self.assertEqual(self.command("run").returncode, 0)
        self.assertEqual(self.calls()[-1], "Fenwhirl")

    def test_without_homebrew_it_says_what_is_missing(self):
        self.remove_tools("brew", "ninja")
        done = self.command("run")
        self.assertEqual(done.returncode, 1)
        self.assertIn("ninja qt", done.stderr)
        self.assertIn("Homebrew", done.stderr)

    def test_without_a_compiler_it_says_how_to_get_one(self):
        self.fake_tool("xcode-select", "exit 2", silent=True)
        done = self.command("run")
        self.assertEqual(done.returncode, 1)
        self.assertIn("xcode-select --install", done.stderr)
        self.assertEqual(self.calls(), [])

    def test_a_failed_build_is_shown_and_nothing_is_started(self):
        self.fake_tool("cmake", "echo 'error: no such file'; exit 1")
        done = self.command("run")
        self.assertEqual(done.returncode, 1)
        self.assertIn("no such file", done.stderr)
        self.assertNotIn("Fenwhirl", self.calls())

    def test_options_of_the_simulated_mac_are_refused(self):
        done = self.command("run", "--machine", "MacBookPro11,4")
        self.assertEqual(done.returncode, 64)
        self.assertIn("simulated", done.stderr)
        self.assertEqual(self.calls(), [])

    def test_test_builds_and_runs_the_tests(self):
        done = self.command("test", "-R", "Name")
        self.assertEqual(done.returncode, 0, done.stderr)
        calls = self.calls()
        self.assertEqual(calls[0], "cmake --preset dev")
        self.assertTrue(calls[1].startswith("cmake --build --preset dev --parallel "), calls)
        self.assertTrue(calls[2].startswith("ctest --test-dir build/dev "), calls)
        self.assertTrue(calls[2].endswith(" -R Name"), calls)

    def test_test_ends_with_the_status_of_the_test_runner(self):
        self.fake_tool("ctest", "exit 8")
        self.assertEqual(self.command("test").returncode, 8)

    def test_test_wants_googletest_too(self):
        self.fake_tool("brew", 'if [ "$1 $3" = "list qt" ]; then exit 0; fi; if [ "$1" = list ]; then exit 1; fi')
        self.command("test")
        self.assertEqual(self.calls()[0], "brew install googletest")

    def test_the_checks_are_for_linux(self):
        done = self.command("test", "--checks")
        self.assertEqual(done.returncode, 64)
        self.assertEqual(self.calls(), [])


if __name__ == "__main__":
    unittest.main()
