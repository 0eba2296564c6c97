"""Tests of Packaging/Linux/install-packages with fake Debian tools: what it installs, and when it asks for root rights."""

import contextlib
import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
COMMON = ("bash", "cat", "dirname", "env", "grep", "mkdir", "mktemp", "readlink", "rm", "sed", "sh", "tail", "tr")
PACKAGES = """\
# Two purposes; one package that a command stands in for.
build compiler
build maker make
run viewer
test tray?
"""
ELSEWHERE = """\
# Debian, command, Fedora, Arch, openSUSE
compiler c++ gcc-c++ gcc g++
maker make make base-devel,make -
viewer - qt-viewer viewer viewer
"""
APT = "apt-get -o DPkg::Lock::Timeout=300 -o APT::Status-Fd=1"
INSTALL = f"{APT} install -y --no-install-recommends"
UPDATE = f"{APT} update"


class InstallPackages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl-packages-")
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.tools = os.path.join(folder.name, "tools")
        self.log = os.path.join(folder.name, "log")
        self.installed = os.path.join(folder.name, "installed")
        self.kept_log = os.path.join(folder.name, "build/logs/install-packages.log")
        self.script = os.path.join(folder.name, "Packaging/Linux/install-packages")
        os.makedirs(os.path.dirname(self.script))
        shutil.copy(os.path.join(ROOT, "Packaging/Linux/install-packages"), self.script)
        self.write("Packaging/Linux/packages.txt", PACKAGES)
        self.write("Packaging/Linux/packages-elsewhere.txt", ELSEWHERE)
        self.write("os-release", "")
        self.write("installed", "")
        os.mkdir(self.tools)
        for tool in COMMON:
            os.symlink(shutil.which(tool), os.path.join(self.tools, tool))
        # The package names follow three options. "viewer" is entirely unknown; a removed package still has a status.
        self.fake("dpkg-query", f"""status=0; shift 3
for name; do
    if grep -qx "$name" "{self.installed}"; then echo "installed:$name"
    elif [ "$name" = viewer ]; then echo "no package $name" >&2; status=1
    else echo "config-files:$name"; fi
done
exit $status""")
        self.fake_apt("")
        self.fake("apt-cache", 'for name; do :; done; echo "$name:"; echo "  Candidate: 1.2-3"')
        self.fake("id", "echo 0")

    def write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="ascii") as file:
            file.write(text)

    def fake_apt(self, body, lists="a list"):
        """Installs a fake apt-get that runs `body` for installs and updates. Queries are answered, but not logged."""
        self.fake("apt-get", f'case $1 in indextargets) echo "{lists}"; exit ;; esac\n{self.note("apt-get")}\n{body}')

    def note(self, tool):
        return f'{{ printf %s {tool}; printf " %s" "$@"; echo; }} >>"{self.log}"'

    def read(self, path):
        with open(path, encoding="ascii") as file:
            return file.read()

    def fake(self, tool, body, logged=False):
        path = os.path.join(self.tools, tool)
        with open(path, "w", encoding="ascii") as file:
            file.write("#!/bin/sh\n")
            if logged:
                file.write(self.note(tool) + "\n")
            file.write(body + "\n")
        os.chmod(path, 0o755)

    def an_ordinary_user(self, can_become_root=True):
        self.fake("id", "echo 1000")
        if can_become_root:
            self.fake("sudo", 'exec "$@"', logged=True)

    def install(self, *purposes):
        environment = {"PATH": self.tools, "OS_RELEASE": os.path.join(self.folder, "os-release")}
        result = subprocess.run([self.script, *purposes], env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                                text=True, check=False)
        return result, self.read(self.log).splitlines() if os.path.exists(self.log) else []

    def test_does_nothing_when_nothing_is_missing(self):
        self.an_ordinary_user()
        self.write("installed", "compiler\nmaker\nviewer\n")
        result, done = self.install("build", "run")
        self.assertEqual((result.returncode, result.stdout + result.stderr, done), (0, "", []))

    def test_installs_what_the_purposes_need_and_is_missing(self):
        self.write("installed", "compiler\n")
        result, done = self.install("build")
        self.assertEqual((result.returncode, done), (0, [f"{INSTALL} maker"]))

    def test_says_how_much_it_installs_where_the_log_is_and_how_long_it_took(self):
        self.fake_apt("echo Unpacking")
        result, _ = self.install("build")
        first, last = result.stderr.splitlines()
        self.assertIn("2 packages", first)
        self.assertIn(self.kept_log, first)
        self.assertRegex(last, r"2 packages in \d+ s")
        self.assertIn("Unpacking\n", self.read(self.kept_log))

    def test_shows_progress_on_a_terminal(self):
        self.fake_apt("echo dlstatus:1:33.3:Retrieving; echo pmstatus:viewer:66.6:Unpacking; echo Setting up: all")
        ours, theirs = os.openpty()
        with subprocess.Popen([self.script, "run"], env={"PATH": self.tools}, stdin=subprocess.DEVNULL,
                              stderr=theirs) as child:
            os.close(theirs)
            shown = b""
            with contextlib.suppress(OSError):  # the read fails once no process has the terminal open
                while more := os.read(ours, 4096):
                    shown += more
        os.close(ours)
        self.assertEqual(child.returncode, 0)
        lines = shown.decode("ascii").split("\r\x1b[K")
        self.assertIn("Installing 1 package: downloading, 33 %", lines)
        self.assertIn("Installing 1 package: 66 %, viewer", lines)
        self.assertIn("Setting up: all\n", self.read(self.kept_log))

    def test_a_command_that_is_there_needs_no_package(self):
        self.fake("make", "")
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
        self.fake_apt(f'case "$*" in *install*) [ -e "{failed}" ] || {{ : >"{failed}"; exit 100; }} ;; esac')
        result, done = self.install("run")
        self.assertEqual((result.returncode, done), (0, [f"{INSTALL} viewer", UPDATE, f"{INSTALL} viewer"]))

    def test_what_cannot_be_installed_says_why(self):
        self.fake_apt('case "$*" in *install*) echo no such thing; exit 100 ;; esac')
        result, _ = self.install("run")
        self.assertEqual(result.returncode, 1)
        self.assertIn("no such thing", result.stderr)
        self.assertIn(f"The log is {self.kept_log}", result.stderr)
        self.assertIn("no such thing", self.read(self.kept_log))

    def test_what_a_test_needs_is_installed_where_it_is_offered(self):
        result, done = self.install("test")
        self.assertEqual((result.returncode, done), (0, [f"{INSTALL} tray"]))

    def test_what_only_a_test_needs_may_be_missing_from_a_distribution(self):
        for answer in ("", 'echo "$2:"; echo "  Candidate: (none)"'):
            with self.subTest(answer):
                self.write("log", "")
                self.fake("apt-cache", answer)
                result, done = self.install("run", "test")
                self.assertEqual((result.returncode, done), (0, [f"{INSTALL} viewer"]))
                self.assertIn("This distribution has no tray; the tests that need it are skipped.", result.stderr)

    def test_what_is_left_out_needs_neither_root_rights_nor_new_lists(self):
        self.an_ordinary_user(can_become_root=False)
        self.fake("apt-cache", "")
        self.assertEqual(self.install("test")[0].returncode, 0)
        self.fake("id", "echo 0")
        self.assertEqual(self.install("test")[1], [])

    def test_an_answer_longer_than_a_pipe_holds_is_read_to_its_end(self):
        """A search that ended at the first match would kill the writer, and with it the whole pipeline."""
        self.fake("apt-cache", 'echo "  Candidate: 1.2-3"; line=$(printf "%10000d" 0)\n'
                  'for each in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do echo "$line"; done')
        self.assertEqual(self.install("test")[1], [f"{INSTALL} tray"])

    def test_without_package_lists_they_are_fetched_first(self):
        self.fake_apt("", lists="")
        _, done = self.install("test")
        self.assertEqual(done, [UPDATE, f"{INSTALL} tray"])

    def another_system(self, release=""):
        self.write("os-release", release)
        os.remove(os.path.join(self.tools, "apt-get"))
        result, done = self.install("build", "run", "test")
        self.assertEqual((result.returncode, done), (0, []))
        return result.stderr

    def test_another_system_is_told_which_commands_are_missing_and_may_try(self):
        said = self.another_system('ID=other\nNAME="Another"\n')
        self.assertIn("commands are missing here: c++ make\n", said)
        self.assertIn("Documentation/Distributions.md", said)
        self.assertNotIn("On Another", said)

    def test_a_system_that_is_known_is_told_its_own_names(self):
        self.assertIn("On Fedora Linux: dnf install gcc-c++ make\n", self.another_system('ID=fedora\nNAME="Fedora Linux"\n'))

    def test_a_system_like_a_known_one_has_its_names(self):
        said = self.another_system('ID=manjaro\nID_LIKE=arch\nNAME=Manjaro\n')
        self.assertIn("On Manjaro: pacman -S gcc base-devel make\n", said)

    def test_a_package_without_a_name_there_is_left_out(self):
        said = self.another_system('ID="opensuse-tumbleweed"\nID_LIKE="opensuse suse"\nNAME=openSUSE\n')
        self.assertIn("On openSUSE: zypper install g++\n", said)

    def test_another_system_where_the_commands_are_there(self):
        self.fake("c++", "")
        self.fake("make", "")
        self.assertNotIn("missing", self.another_system("ID=arch\n"))

    def test_every_line_of_the_real_list_is_understood(self):
        rows = self.rows_of("packages.txt")
        self.assertGreater(len(rows), 40)
        for row in rows:
            self.assertIn(len(row), (2, 3), row)
            self.assertIn(row[0], ("build", "run", "tour", "test", "macos", "package", "check", "bench", "coverage"))

    def rows_of(self, name):
        return [line.split() for line in self.read(os.path.join(ROOT, "Packaging/Linux", name)).splitlines()
                if not line.startswith("#")]

    def test_other_systems_are_told_every_package(self):
        needed = [row[1].rstrip("?") for row in self.rows_of("packages.txt") if row[0] in ("build", "run", "tour", "test")]
        rows = self.rows_of("packages-elsewhere.txt")
        self.assertEqual(sorted(row[0] for row in rows), sorted(needed))
        with open(os.path.join(ROOT, "Documentation/Distributions.md"), encoding="utf-8") as file:
            table = file.read()
        for debian, _, *names in rows:
            shown = ["—" if name == "-" else ", ".join(f"`{each}`" for each in name.split(",")) for name in names]
            self.assertIn(f"| `{debian}` | {' | '.join(shown)} |\n", table)


if __name__ == "__main__":
    unittest.main()
