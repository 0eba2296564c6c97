"""Packaging/Linux/install-packages with a played Debian: what it installs, and when it asks for root rights."""

import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
COMMON = ("bash", "cat", "dirname", "env", "grep", "mktemp", "readlink", "rm", "sh", "tail")
PACKAGES = """\
# Two purposes; one package that a command stands in for.
build compiler
build maker make
run viewer
"""
INSTALL = "apt-get -o DPkg::Lock::Timeout=300 install -y --no-install-recommends"
UPDATE = "apt-get -o DPkg::Lock::Timeout=300 update"


class InstallPackages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl-packages-")
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.tools = os.path.join(folder.name, "tools")
        self.log = os.path.join(folder.name, "log")
        self.installed = os.path.join(folder.name, "installed")
        self.script = os.path.join(folder.name, "install-packages")
        shutil.copy(os.path.join(ROOT, "Packaging/Linux/install-packages"), self.script)
        self.write("packages.txt", PACKAGES)
        self.write("installed", "")
        os.mkdir(self.tools)
        for tool in COMMON:
            os.symlink(shutil.which(tool), os.path.join(self.tools, tool))
        # A package that was removed still has a status; the last argument is its name.
        self.play("dpkg-query", f'for name; do :; done; if grep -qx "$name" "{self.installed}"; then printf installed; '
                                "else printf config-files; fi")
        self.play("apt-get", "", logged=True)
        self.play("id", "echo 0")

    def write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="ascii") as file:
            file.write(text)

    def play(self, tool, body, logged=False):
        path = os.path.join(self.tools, tool)
        with open(path, "w", encoding="ascii") as file:
            file.write("#!/bin/sh\n")
            if logged:
                file.write(f'{{ printf %s {tool}; printf " %s" "$@"; echo; }} >>"{self.log}"\n')
            file.write(body + "\n")
        os.chmod(path, 0o755)

    def an_ordinary_user(self, can_become_root=True):
        self.play("id", "echo 1000")
        if can_become_root:
            self.play("sudo", 'exec "$@"', logged=True)

    def install(self, *purposes):
        result = subprocess.run([self.script, *purposes], env={"PATH": self.tools}, stdin=subprocess.DEVNULL,
                                capture_output=True, text=True, check=False)
        done = []
        if os.path.exists(self.log):
            with open(self.log, encoding="ascii") as file:
                done = file.read().splitlines()
        return result, done

    def test_does_nothing_when_nothing_is_missing(self):
        self.an_ordinary_user()
        self.write("installed", "compiler\nmaker\nviewer\n")
        result, done = self.install("build", "run")
        self.assertEqual((result.returncode, result.stdout + result.stderr, done), (0, "", []))

    def test_installs_what_the_purposes_need_and_is_missing(self):
        self.write("installed", "compiler\n")
        result, done = self.install("build")
        self.assertEqual((result.returncode, done), (0, [f"{INSTALL} maker"]))
        self.assertIn("maker", result.stderr)
        self.assertNotIn("viewer", result.stderr)

    def test_a_command_that_is_there_needs_no_package(self):
        self.play("make", "")
        _, done = self.install("build", "run")
        self.assertEqual(done, [f"{INSTALL} compiler viewer"])

    def test_an_ordinary_user_becomes_root_for_the_installation_alone(self):
        self.an_ordinary_user()
        result, done = self.install("run")
        self.assertEqual(result.returncode, 0)
        self.assertEqual(done, [f"sudo env DEBIAN_FRONTEND=noninteractive {INSTALL} viewer", f"{INSTALL} viewer"])

    def test_who_cannot_become_root_is_told_what_to_install(self):
        self.an_ordinary_user(can_become_root=False)
        result, done = self.install("build", "run")
        self.assertEqual((result.returncode, done), (1, []))
        self.assertIn("Run as root: apt-get install compiler maker viewer", result.stderr)

    def test_old_package_lists_are_fetched_anew(self):
        failed = os.path.join(self.folder, "failed")
        self.play("apt-get", f'case "$*" in *install*) [ -e "{failed}" ] || {{ : >"{failed}"; exit 100; }} ;; esac', logged=True)
        result, done = self.install("run")
        self.assertEqual((result.returncode, done), (0, [f"{INSTALL} viewer", UPDATE, f"{INSTALL} viewer"]))

    def test_what_cannot_be_installed_says_why(self):
        self.play("apt-get", 'case "$*" in *install*) echo no such thing; exit 100 ;; esac')
        result, _ = self.install("run")
        self.assertEqual(result.returncode, 1)
        self.assertIn("no such thing", result.stderr)

    def test_another_system_is_told_and_may_try(self):
        os.remove(os.path.join(self.tools, "dpkg-query"))
        result, done = self.install("build")
        self.assertEqual((result.returncode, done), (0, []))
        self.assertIn("compiler maker", result.stderr)

    def test_every_line_of_the_real_list_is_understood(self):
        with open(os.path.join(ROOT, "Packaging/Linux/packages.txt"), encoding="ascii") as lines:
            rows = [line.split() for line in lines if not line.startswith("#")]
        self.assertGreater(len(rows), 40)
        for row in rows:
            self.assertIn(len(row), (2, 3), row)
            self.assertIn(row[0], ("build", "run", "tour", "test", "macos", "bench", "coverage"))


if __name__ == "__main__":
    unittest.main()
