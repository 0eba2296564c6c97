"""Tests of in-distribution, which runs a command in the root file system of another distribution: what persists between runs,
and what never does. A fake debootstrap creates the root.
"""

import contextlib
import os
import pathlib
import pty
import re
import shutil
import signal
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ("in-distribution", "as-in-container")
IN_THE_ROOT = ("cat", "ls", "sh", "sleep")
SECONDS = 60

# The fake debootstrap: copies a small root with a shell and its libraries, and logs how it was called.
DEBOOTSTRAP = """#!/bin/sh
echo "$@" >>"$FAKE_FOLDER/calls"
echo "$http_proxy" >"$FAKE_FOLDER/proxy"
cp -r "$FAKE_FOLDER/root" "$2"
echo "$1" >"$2/etc/distribution"
"""


def libraries_of(program):
    said = subprocess.run(["ldd", program], check=True, capture_output=True, text=True).stdout
    return re.findall(r"(/\S+)", said)


def make_fake_root(folder):
    for name in ("bin", "etc"):
        (folder / name).mkdir(parents=True)
    for name in IN_THE_ROOT:
        program = shutil.which(name)
        shutil.copy(program, folder / "bin" / name)
        for library in libraries_of(program):
            place = folder / library.lstrip("/")
            place.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(library, place)


class WithAFakeDebootstrap(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl-distribution-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.folder.chmod(0o755)
        self.checkout = self.folder / "a checkout"
        self.tool = self.checkout / "Packaging/Linux/in-distribution"
        self.roots = self.checkout / "build/distributions"
        self.tool.parent.mkdir(parents=True)
        for name in TOOLS:
            shutil.copy(ROOT / "Packaging/Linux" / name, self.tool.parent / name)
        shutil.copytree(ROOT / "Packaging/Linux/isolation", self.tool.parent / "isolation")
        self.fakes = self.folder / "fakes"
        self.fakes.mkdir()
        self.fake("debootstrap", DEBOOTSTRAP)
        self.fake("apt-config", "#!/bin/sh\n")
        self.fake("apt-get", "#!/bin/sh\n")
        make_fake_root(self.fakes / "root")

    def fake(self, name, text):
        (self.fakes / name).write_text(text, encoding="ascii")
        (self.fakes / name).chmod(0o755)

    def command(self, *arguments):
        environment = {**os.environ, "PATH": f"{self.fakes}:{os.environ['PATH']}", "FAKE_FOLDER": str(self.fakes)}
        environment.pop("http_proxy", None)
        return {"args": [str(argument) for argument in (self.tool, *arguments)], "env": environment, "cwd": self.checkout,
                "text": True}

    def run_it(self, *arguments):
        return subprocess.run(**self.command(*arguments), stdin=subprocess.DEVNULL, capture_output=True, timeout=SECONDS,
                              check=False)

    def ok(self, *arguments):
        done = self.run_it(*arguments)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def calls(self):
        try:
            return (self.fakes / "calls").read_text(encoding="ascii").splitlines()
        except FileNotFoundError:
            return []


class InDistribution(WithAFakeDebootstrap):
    def setUp(self):
        super().setUp()
        probe = 'mkdir l u w m && mount -t overlay -o lowerdir=l,upperdir=u,workdir=w overlay m'
        place = self.folder / "probe"
        place.mkdir()
        if os.geteuid() != 0 or subprocess.run(["unshare", "--mount", "--pid", "--fork", "sh", "-c", probe], cwd=place,
                                               capture_output=True, check=False).returncode != 0:
            self.skipTest("needs root rights with CAP_SYS_ADMIN, and a folder that a root can be laid over")

    def tearDown(self):
        self.assertNotIn(str(self.folder), pathlib.Path("/proc/self/mounts").read_text(encoding="utf-8"))
        self.assertEqual(list(self.roots.glob("*/fresh-*")), [])

    def test_the_command_runs_in_the_root_and_at_the_same_place(self):
        said = self.ok("trixie", "sh", "-c", "pwd; cat /etc/distribution; ls Packaging/Linux")
        self.assertEqual(said.splitlines(), [str(self.checkout), "trixie", *sorted(TOOLS), "isolation"])

    def test_it_has_the_status_of_the_command(self):
        self.assertEqual(self.run_it("trixie", "sh", "-c", "exit 7").returncode, 7)
        self.assertEqual(self.run_it("trixie", "sh", "-c", "kill -9 $$").returncode, 128 + 9)
        self.assertEqual(self.run_it("trixie", "no-such-command").returncode, 127)

    def test_a_root_is_made_once_and_what_is_put_there_stays(self):
        self.ok("trixie", "sh", "-c", "echo installed >/installed; echo built >build/mine; echo changed >source")
        self.assertEqual(self.ok("trixie", "cat", "/installed", "build/mine", "source"), "installed\nbuilt\nchanged\n")
        self.assertEqual(len(self.calls()), 1)
        self.assertEqual((self.checkout / "source").read_text(encoding="ascii"), "changed\n")
        self.assertFalse((self.checkout / "build/mine").exists(), "each has a build folder of its own")

    def test_each_distribution_has_its_own(self):
        self.ok("trixie", "sh", "-c", "echo built >build/mine")
        self.assertEqual(self.ok("bookworm", "sh", "-c", "cat /etc/distribution; ls build"), "bookworm\n")
        self.assertEqual(self.ok("sid", "cat", "/etc/distribution"), "unstable\n")
        self.assertEqual(self.ok("unstable", "cat", "/etc/distribution"), "unstable\n")
        self.assertEqual(len(self.calls()), 3)

    def test_a_fresh_one_has_nothing_from_before_and_keeps_nothing(self):
        self.ok("trixie", "sh", "-c", "echo installed >/installed; echo built >build/mine")
        again = 'ls build; ls /installed; echo x >/installed; echo x >build/fresh; echo x >/bin/new'
        for _ in range(2):
            done = self.run_it("--fresh", "trixie", "sh", "-c", again)
            self.assertEqual((done.returncode, done.stdout), (0, ""))
            self.assertIn("/installed", done.stderr)
        self.assertEqual(self.ok("trixie", "sh", "-c", "cat /installed; ls build; ls /bin"),
                         "installed\nmine\n" + "".join(f"{name}\n" for name in sorted(IN_THE_ROOT)))

    def test_downloaded_packages_are_kept_in_any_case(self):
        self.ok("--fresh", "trixie", "sh", "-c", "echo package >/var/cache/apt/archives/some.deb")
        self.assertEqual(self.ok("--fresh", "trixie", "cat", "/var/cache/apt/archives/some.deb"), "package\n")

    def test_it_has_devices_proc_sys_and_a_resolver(self):
        look = ("[ -c /dev/null ] && [ -d /dev/shm ] && [ -e /dev/ptmx ] && [ -d /proc/$$ ] && [ -d /sys/class ] && "
                "echo >/dev/shm/x && echo >/tmp/x && echo >/run/x && cat /etc/resolv.conf; echo $PATH $HOME $FAKE_FOLDER")
        resolver = pathlib.Path("/etc/resolv.conf").read_text(encoding="utf-8")
        path = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"
        self.assertEqual(self.ok("trixie", "sh", "-c", look), f"{resolver}{path} /root\n")
        self.assertNotIn("x", self.ok("trixie", "ls", "/dev/shm", "/run", "/tmp").splitlines())

    def test_apt_goes_the_same_way_as_outside(self):
        proxy = 'Acquire::http::Proxy "http://proxy.example:3128/";'
        self.fake("apt-config", f"#!/bin/sh\necho 'Acquire::Other \"1\";'\necho '{proxy}'\n")
        self.fake("apt-get", '#!/bin/sh\n[ "$1 $4" = "indextargets Label: Debian" ] && echo http://mirror.example/debian\n')
        self.assertEqual(self.ok("trixie", "cat", "/etc/apt/apt.conf.d/90outside"), proxy + "\n")
        self.assertEqual(self.calls(), [f"trixie {self.roots}/trixie/bare.new http://mirror.example/debian"])
        self.assertEqual((self.fakes / "proxy").read_text(encoding="ascii"), "http://proxy.example:3128/\n")

    def test_without_settings_debootstrap_uses_its_defaults(self):
        self.ok("trixie", "sh", "-c", ":")
        self.assertEqual(self.calls(), [f"trixie {self.roots}/trixie/bare.new"])

    def test_in_a_container_it_has_reduced_capabilities(self):
        outside = pathlib.Path("/proc/self/status").read_text(encoding="utf-8")
        for options, expected in (((), outside), (("--container",), "CapEff:\t00000000a80425fb")):
            status = self.ok(*options, "trixie", "cat", "/proc/self/status")
            self.assertIn(re.search(r"CapEff:\t\w+", expected).group(0), status)

    def test_a_failure_of_debootstrap_is_reported_and_the_next_try_starts_over(self):
        self.fake("debootstrap", '#!/bin/sh\nmkdir -p "$2/half"\necho E: no such suite\nexit 1\n')
        done = self.run_it("trixie", "sh", "-c", ":")
        self.assertEqual(done.returncode, 1)
        self.assertIn("E: no such suite", done.stderr)
        self.assertIn(f"the log is {self.roots}/trixie/debootstrap.log", done.stderr)
        self.fake("debootstrap", DEBOOTSTRAP)
        self.assertNotIn("half", self.ok("trixie", "ls", "/"))

    # The following tests detect surviving processes by a pipe: it is at its end only when no process has the other end open.

    def started(self, *arguments, **options):
        child = subprocess.Popen(**self.command(*arguments), stdin=subprocess.PIPE, stdout=subprocess.PIPE, **options)
        self.addCleanup(child.wait)
        self.addCleanup(child.kill)
        self.addCleanup(child.stdin.close)
        self.addCleanup(child.stdout.close)
        return child

    def assert_ends(self, child, status):
        self.assertEqual(child.wait(SECONDS), status)
        self.assertEqual(child.stdout.read(), "", "nobody is left to write")

    LEAVES_A_PROCESS_BEHIND = "(trap '' TERM INT HUP; echo ready; sleep 1000; sleep 1000) & wait"

    def test_nothing_is_left_when_it_is_told_to_end(self):
        for options in ((), ("--fresh",)):
            for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
                with self.subTest(options=options, signal=number):
                    # A shell without job control starts background commands with SIGINT ignored.
                    child = self.started(*options, "trixie", "sh", "-c", self.LEAVES_A_PROCESS_BEHIND)
                    self.assertEqual(child.stdout.readline(), "ready\n")
                    child.send_signal(number)
                    self.assert_ends(child, 128 + number)
                    self.tearDown()

    def test_nothing_runs_on_when_the_command_ends_first(self):
        child = self.started("--fresh", "trixie", "sh", "-c", "(echo ready; sleep 1000) & read line")
        self.assertEqual(child.stdout.readline(), "ready\n")
        child.stdin.write("\n")
        child.stdin.flush()
        self.assert_ends(child, 0)

    def test_nothing_runs_on_when_it_is_killed_and_the_next_one_clears_up(self):
        child = self.started("--fresh", "trixie", "sh", "-c", self.LEAVES_A_PROCESS_BEHIND)
        self.assertEqual(child.stdout.readline(), "ready\n")
        child.kill()
        self.assert_ends(child, -signal.SIGKILL)
        self.assertEqual(len(list(self.roots.glob("*/fresh-*"))), 1)
        self.ok("--fresh", "trixie", "sh", "-c", ":")

    def test_the_command_decides_what_a_signal_means(self):
        child = self.started("trixie", "sh", "-c", "trap 'echo told; exit 3' TERM; echo ready; read line")
        self.assertEqual(child.stdout.readline(), "ready\n")
        child.terminate()
        self.assertEqual(child.stdout.readline(), "told\n")
        self.assert_ends(child, 3)

    def test_ctrl_c_reaches_the_command_once(self):
        self.ok("trixie", "sh", "-c", ":")  # makes the root first, because that would print to the terminal
        child, terminal = pty.fork()
        if child == 0:
            command = self.command("trixie", "sh", "-c", "trap 'echo told' INT; echo ready; read a; read a; echo end")
            os.chdir(command["cwd"])
            os.execve(command["args"][0], command["args"], command["env"])
        self.addCleanup(os.close, terminal)
        said = ""
        with contextlib.suppress(OSError):  # the read fails once no process has the terminal open
            while more := os.read(terminal, 4096):
                said += more.decode("ascii")
                for word, answer in (("ready", b"\x03"), ("told", b"\n\n")):
                    if word in said and answer:
                        said = said.replace(word, word.upper())
                        os.write(terminal, answer)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0)
        self.assertEqual((said.count("READY"), said.count("TOLD"), said.count("told"), said.count("end")), (1, 1, 0, 1))

    def test_debootstrap_is_ended_too(self):
        self.fake("debootstrap", """#!/bin/sh
echo ready >"$FAKE_FOLDER/ready"
(trap '' TERM; exec sleep 1000 <"$FAKE_FOLDER/ready") & wait
""")
        os.mkfifo(self.fakes / "ready")
        child = self.started("trixie", "sh", "-c", ":")
        with open(self.fakes / "ready", encoding="ascii") as pipe:
            self.assertEqual(pipe.readline(), "ready\n")
        child.terminate()
        self.assert_ends(child, 128 + signal.SIGTERM)
        # Opening a FIFO for writing without blocking fails when it has no reader left.
        with self.assertRaises(OSError):
            os.close(os.open(self.fakes / "ready", os.O_WRONLY | os.O_NONBLOCK))
        self.assertFalse((self.roots / "trixie/bare").exists())

    def test_two_commands_take_their_turns(self):
        first = self.started("trixie", "sh", "-c", "echo ready; read line; echo first >>/order")
        self.assertEqual(first.stdout.readline(), "ready\n")
        second = self.started("trixie", "sh", "-c", "echo second >>/order; cat /order", stderr=subprocess.PIPE)
        self.addCleanup(second.stderr.close)
        self.assertIn("waits for another command in trixie", second.stderr.readline())
        self.ok("--fresh", "trixie", "sh", "-c", ":")
        first.stdin.write("\n")
        first.stdin.flush()
        self.assertEqual(first.wait(SECONDS), 0)
        self.assertEqual(second.wait(SECONDS), 0)
        self.assertEqual(second.stdout.read(), "first\nsecond\n")


class Refused(WithAFakeDebootstrap):
    def test_wrong_arguments(self):
        for arguments in ((), ("trixie",), ("--other", "trixie", "true"), ("../x", "true"), ("--roots",)):
            with self.subTest(arguments):
                done = self.run_it(*arguments)
                self.assertEqual(done.returncode, 64)
                self.assertIn("--help", done.stderr)
        self.assertEqual(self.calls(), [])

    def test_an_ordinary_user_is_told_what_is_needed(self):
        command = self.command("trixie", "true")
        if os.geteuid() == 0:
            command["args"] = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", *command["args"]]
        done = subprocess.run(**command, capture_output=True, timeout=SECONDS, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn("root rights", done.stderr)
        self.assertEqual(self.calls(), [])

    def test_a_container_is_told_that_it_is_one(self):
        container = self.tool.parent / "as-in-container"
        if os.geteuid() != 0 or subprocess.run([container, "true"], capture_output=True, check=False).returncode != 0:
            self.skipTest("needs root rights with CAP_SYS_ADMIN")
        command = self.command("trixie", "true")
        command["args"] = [str(container), *command["args"]]
        done = subprocess.run(**command, capture_output=True, timeout=SECONDS, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn("CAP_SYS_ADMIN", done.stderr)


if __name__ == "__main__":
    unittest.main()
