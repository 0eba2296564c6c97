"""Shared fixtures of the tests of the privileged helper: the installed set-user-ID copy, an ordinary user, and the controller's
write log.

The tests run inside Packaging/Linux/private-namespace as real root; without real root they are skipped.
"""

import os
import pathlib
import re
import shutil
import subprocess
import unittest

from stage import HELPER, PATIENCE_SECONDS, ROOT, SCRATCH, Lines, Process, SimulatedMac, has_own, install_helper

NOBODY = 65534
CAP_SYS_PTRACE, CAP_SYS_RESOURCE = 19, 24
STATUSES = {0, 1, 2, 64, 77}
WRITABLE_KEYS = re.compile(r"^(FS!|Ftst|F\d+(Tg|Md|md))$")
OLDER_MAC = "MacBookPro11,4"  # has the forced-fan mask FS! instead of mode keys
BUILD = pathlib.Path(os.environ.get("FENWHIRL_BUILD", ROOT / "build/dev")).resolve()


def require_real_root():
    """Skips the test where it can neither become another user nor create a set-user-ID file."""
    with open("/proc/self/uid_map", encoding="ascii") as file:
        inside, outside, _ = file.read().split()[:3]
    if os.geteuid() != 0 or inside != outside:
        raise unittest.SkipTest("needs real root: another user's identity and a set-user-ID file")


def has_capability(number):
    """Whether this process has a capability; root in a container often lacks some."""
    with open("/proc/self/status", encoding="ascii", errors="replace") as file:
        effective = int(re.search(r"^CapEff:\s+([0-9a-f]+)", file.read(), re.MULTILINE).group(1), 16)
    return bool(effective >> number & 1)


def require_tracing():
    """Skips a test that inspects processes of other users where root may not do that, as in most containers."""
    if not has_capability(CAP_SYS_PTRACE):
        raise unittest.SkipTest("needs the capability CAP_SYS_PTRACE: a look into another user's process")


def as_nobody():
    """Returns the options of subprocess that start a command as an ordinary user."""
    return {"user": NOBODY, "group": NOBODY, "extra_groups": []}


class HelperTest(unittest.TestCase):
    """Base class with the helper installed and, unless `machine` is None, a simulated Mac whose simulated time stands still."""

    machine = OLDER_MAC

    @classmethod
    def setUpClass(cls):
        require_real_root()
        install_helper(BUILD)
        cls.mac = None
        if cls.machine:
            cls.mac = SimulatedMac(BUILD, cls.machine, "--speed", "0", "--heat", "20")
            cls.addClassCleanup(cls.mac.__exit__)
            cls.addClassCleanup(cls.mac.stop)

    def setUp(self):
        if self.mac:
            self.mac.tell("answer")  # an earlier test may have made the simulated Mac silent or faulty
            self.helper("auto")
            self.seen = self.last_write()

    def command_line(self, *arguments):
        return [str(HELPER), "--helper", *arguments]

    def helper(self, *arguments, **options):
        """Runs one command of the helper as an ordinary user and waits for its end."""
        settings = {**as_nobody(), "stdin": subprocess.DEVNULL, "timeout": 60, **options}
        if "stdout" not in settings:
            settings["capture_output"] = True
        return subprocess.run(self.command_line(*arguments), check=False, **settings)

    def start(self, *arguments, **options):
        """Starts one command of the helper as an ordinary user without waiting."""
        settings = {**as_nobody(), "stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL,
                    "stderr": subprocess.DEVNULL, **options}
        child = subprocess.Popen(self.command_line(*arguments), **settings)
        self.addCleanup(lambda: (child.kill(), child.wait()))
        return child

    def log(self, since=0):
        """The writes that reached the SMC after number `since`: dictionaries with number, key, bytes, uid, result and others."""
        entries = []
        for line in self.mac.tell(f"log {since + 1}" if since else "log"):
            if line.startswith("write "):
                words = line.split()
                entries.append({"number": int(words[1]), **dict(word.split("=", 1) for word in words[2:])})
        return entries

    def last_write(self):
        entries = self.log()
        return entries[-1]["number"] if entries else 0

    def writes(self):
        """Key and bytes of each write since the start of the test."""
        return [f"{entry['key']}={entry['bytes']}" for entry in self.log(self.seen)]

    def value(self, key):
        """The value of a key as a reader sees it, or None."""
        answer = self.mac.tell(f"get {key}")
        found = re.search(r"value=(\S+)", answer[-1]) if answer else None
        return float(found.group(1)) if found else None

    def has(self, key):
        return any(line.split()[0] == key for line in self.mac.tell(f"keys {key}") if line)

    def assert_automatic(self):
        """Asserts that no fan is manual, that no bit of the mask is set, and that nothing is unlocked."""
        state = self.mac.tell("state")[-1]
        self.assertNotIn("manual", state)
        for key in ("FS!", "Ftst"):
            value = self.value_or_none(key)
            self.assertIn(value, (None, 0.0), key)

    def value_or_none(self, key):
        return self.value(key) if self.has(key) else None


class Probe(Process):
    """Runs HelperProbe.cpp: the real executable and the real guard with a test application that is only a client of the helper.

    It is installed in a folder of its own, laid out like a real installation. `user` is the user that it runs as.
    """

    def __init__(self, user=0, folder=SCRATCH / "probe", launcher=(), **options):
        self.executable = lay_out_probe(folder)
        identity = {"user": user, "group": user, "extra_groups": []} if user else {}
        super().__init__([*launcher, self.executable], stdin=subprocess.PIPE, stdout=subprocess.PIPE, **identity, **options)
        self.lines = Lines(self.child.stdout)
        self.pid = int(self.lines.next().split()[1])

    def tell(self, command, seconds=PATIENCE_SECONDS):
        self.child.stdin.write((command + "\n").encode())
        self.child.stdin.flush()
        return self.lines.next(seconds)

    def end(self):
        """Lets the probe quit normally, and returns its exit status."""
        self.child.stdin.write(b"quit\n")
        self.child.stdin.flush()
        return self.child.wait(PATIENCE_SECONDS)

    def guard(self):
        """The process ID of its guard, or None."""
        for process, parent, name in processes():
            if parent == self.pid and name == "fenwhirl-guard":
                return process
        return None


def lay_out_probe(folder):
    """Creates an installation whose application is the probe, unless it exists; returns the path of its executable."""
    executable = pathlib.Path(folder) / "bin/Fenwhirl"
    libraries = pathlib.Path(folder) / "lib/fenwhirl"
    if not executable.exists():
        executable.parent.mkdir(parents=True)
        libraries.mkdir(parents=True)
        shutil.copy(BUILD / "bin/Fenwhirl", executable)
        shutil.copy(BUILD / "tests/libHelperProbe.so", libraries / "libFenwhirlApp.so")
        shutil.copy(BUILD / "lib/fenwhirl/fenwhirl-guard", libraries)
    return executable


def processes(zombies=False):
    """Returns (PID, parent's PID, name) of every process of this namespace. Zombies are included only on request."""
    found = list(_all_processes(zombies))
    if has_own("processes") or "FENWHIRL_NAMESPACE_INIT" not in os.environ:
        return found
    # Without a PID namespace the computer's processes are visible, too. Those of the test descend from a subreaper, which adopts
    # orphaned processes.
    family = {int(os.environ["FENWHIRL_NAMESPACE_INIT"])}
    while more := {number for number, parent, _ in found if parent in family} - family:
        family |= more
    return [process for process in found if process[0] in family]


def _all_processes(zombies):
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open(f"/proc/{entry}/stat", encoding="ascii", errors="replace") as file:
                text = file.read()
        except OSError:
            continue
        name, rest = text[text.index("(") + 1:text.rindex(")")], text[text.rindex(")") + 2:].split()
        if zombies or rest[0] not in "ZX":
            yield int(entry), int(rest[1]), name


def is_running(process):
    return any(number == process for number, _, _ in processes())
