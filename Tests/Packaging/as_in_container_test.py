"""Tests of as-in-container, which runs a command under the restrictions of a container: each restriction takes effect, and
nothing else is refused.
"""

import errno
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(__file__).resolve().parents[2] / "Packaging/Linux/as-in-container"
NOBODY = 65534

# Tries every way to create or enter a namespace and to mount, each in its own child process. Prints errno by name of attempt.
PROBE = r"""
import ctypes, json, os, platform, signal, sys, tempfile
libc = ctypes.CDLL(None, use_errno=True)
x86 = platform.machine() == "x86_64"
FLAGS = {"user": 0x10000000, "mount": 0x20000, "network": 0x40000000, "processes": 0x20000000, "names": 0x4000000,
         "messages": 0x8000000, "groups": 0x2000000, "time": 0x80}

def error(result):
    return 0 if result >= 0 else ctypes.get_errno()

def system_call(*arguments):
    return libc.syscall(*[ctypes.c_long(argument) for argument in arguments])

def in_a_child(attempt):
    reader, writer = os.pipe()
    child = os.fork()
    if child == 0:
        try:
            os.write(writer, b"%d" % attempt())
        finally:
            os._exit(0)
    os.close(writer)
    os.waitpid(child, 0)
    with os.fdopen(reader, "rb") as pipe:
        return int(pipe.read())

def clone(flags):
    child = system_call(56 if x86 else 220, flags | signal.SIGCHLD, 0, 0, 0, 0)
    if child == 0:
        os._exit(0)
    return error(child)

def clone3():
    return error(system_call(435, 0, 0))

def mount_proc():
    if libc.unshare(FLAGS["mount"] | FLAGS["processes"]) < 0:
        return ctypes.get_errno()
    libc.mount(None, b"/", None, ctypes.c_ulong(0x44000), None)
    place = tempfile.mkdtemp()
    try:
        return in_a_child(lambda: error(libc.mount(b"proc", place.encode(), b"proc", ctypes.c_ulong(0), None)))
    finally:
        libc.umount2(place.encode(), 2)
        os.rmdir(place)

nowhere = b"/nowhere"
attempts = {f"unshare {name}": lambda flag=flag: error(libc.unshare(flag)) for name, flag in FLAGS.items()}
attempts |= {f"clone {name}": lambda flag=flag: clone(flag) for name, flag in FLAGS.items() if name != "time"}
attempts |= {f"setns {name}": lambda flag=flag: error(libc.setns(-1, flag)) for name, flag in FLAGS.items()}
attempts |= {
    "setns": lambda: error(libc.setns(-1, 0)),
    "clone3": clone3,
    "call mount": lambda: error(libc.mount(nowhere, nowhere, b"tmpfs", ctypes.c_ulong(0), None)),
    "call umount2": lambda: error(libc.umount2(nowhere, 0)),
    "call pivot_root": lambda: error(system_call(155 if x86 else 41, 0, 0)),
    "call open_tree": lambda: error(system_call(428, -1, 0, 0)),
    "call move_mount": lambda: error(system_call(429, -1, 0, -1, 0, 0)),
    "call fsopen": lambda: error(system_call(430, 0, 0)),
    "mount proc": mount_proc,
}
print(json.dumps({name: in_a_child(attempt) for name, attempt in attempts.items()}))
"""
NAMESPACES = ("user", "mount", "network", "processes", "names", "messages", "groups", "time")
MOUNTS = {"call mount", "call umount2", "call pivot_root", "call open_tree", "call move_mount", "call fsopen"}


def ways_to(namespace):
    ways = {f"unshare {namespace}", f"setns {namespace}"}
    return ways if namespace == "time" else ways | {f"clone {namespace}"}


def as_root():
    """Returns the command prefix that makes a command root: none when this process is root, else a user namespace."""
    return () if os.geteuid() == 0 else ("unshare", "--map-root-user", "--mount", "--")


def run(*command):
    return subprocess.run([str(part) for part in command], check=False, capture_output=True, text=True, timeout=60,
                          stdin=subprocess.DEVNULL)


class AsInContainer(unittest.TestCase):
    def setUp(self):
        if run(*as_root(), TOOL, "true").returncode != 0:
            self.skipTest("needs root rights, or user namespaces, and CAP_SYS_ADMIN")

    def ok(self, *command):
        done = run(*command)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def probed(self, *prefix):
        return json.loads(self.ok(*as_root(), *prefix, sys.executable, "-c", PROBE))

    def assert_refuses(self, kinds, refused):
        """Asserts that exactly these attempts fail with EPERM, and that all others have the same result as without the tool."""
        options = [word for kind in kinds for word in ("--refuse", kind)]
        expected = self.probed() | {way: errno.EPERM for way in refused}
        if set(kinds) != {"proc-mount"}:
            expected["clone3"] = errno.ENOSYS
        self.assertEqual(self.probed(TOOL, *options), expected)

    def test_refuses_a_namespace_of_users_alone(self):
        self.assert_refuses(["user"], ways_to("user") | {"setns"})

    def test_refuses_mounts_alone(self):
        self.assert_refuses(["mount"], ways_to("mount") | MOUNTS | {"setns", "mount proc"})

    def test_refuses_a_network_alone(self):
        self.assert_refuses(["network"], ways_to("network") | {"setns"})

    def test_refuses_process_numbers_alone(self):
        self.assert_refuses(["processes"], ways_to("processes") | {"setns", "mount proc"})

    def test_refuses_a_fresh_proc_alone(self):
        self.assertEqual(self.probed()["mount proc"], 0, "mounted without the tool")
        self.assert_refuses(["proc-mount"], {"mount proc"})

    def test_refuses_several(self):
        self.assert_refuses(["network", "proc-mount"], ways_to("network") | {"setns", "mount proc"})

    def test_refuses_everything_unless_told_what(self):
        everything = set().union(*(ways_to(namespace) for namespace in NAMESPACES)) | MOUNTS | {"setns", "mount proc"}
        expected = dict.fromkeys(everything, errno.EPERM) | {"clone3": errno.ENOSYS}
        self.assertEqual(self.probed(TOOL), expected)
        self.assertEqual(self.probed(TOOL, "--refuse", "all"), expected)

    def test_what_it_starts_is_refused_too(self):
        done = run(*as_root(), TOOL, "sh", "-c", "sh -c 'unshare --mount true'")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("Operation not permitted", done.stderr)

    def test_the_capabilities_are_gone_for_good(self):
        # Inheritable capabilities would return with the next exec, regardless of the bounding set.
        lines = self.ok(*as_root(), "setpriv", "--inh-caps=+sys_admin", TOOL, "cat", "/proc/self/status").splitlines()
        status = dict(line.split(":\t", 1) for line in lines if ":\t" in line)
        sys_admin, kill = 1 << 21, 1 << 5
        for which in ("CapInh", "CapPrm", "CapEff", "CapBnd", "CapAmb"):
            self.assertEqual(int(status[which], 16) & sys_admin, 0, which)
        self.assertEqual(int(status["CapEff"], 16) & kill, kill)
        self.assertEqual(status["NoNewPrivs"], "0")

    def test_a_set_uid_program_gains_its_identity(self):
        if os.geteuid() != 0 or "4294967295" not in pathlib.Path("/proc/self/uid_map").read_text(encoding="ascii"):
            self.skipTest("needs real root, to have another user")
        with tempfile.TemporaryDirectory(prefix="fenwhirl-container-") as folder:
            os.chmod(folder, 0o755)
            program = pathlib.Path(folder, "id")
            shutil.copy(shutil.which("id"), program)
            program.chmod(0o4755)
            if self.ok("setpriv", f"--reuid={NOBODY}", "--clear-groups", program, "-u") != "0\n":
                self.skipTest("this folder's file system ignores the set-uid bit")
            for kind in ("all", "network", "proc-mount"):
                with self.subTest(kind):
                    said = self.ok(TOOL, "--refuse", kind, "--user", NOBODY, program, "-u")
                    self.assertEqual(said, "0\n")

    def test_runs_as_the_user_that_is_asked_for(self):
        if os.geteuid() != 0:
            self.skipTest("needs root, to become another user")
        self.assertEqual(self.ok(TOOL, "--user", NOBODY, "sh", "-c", "id -u; id -G"), "65534\n65534\n")

    def test_the_command_has_its_own_status(self):
        self.assertEqual(run(*as_root(), TOOL, "sh", "-c", "exit 7").returncode, 7)
        done = run(*as_root(), TOOL, "/no/such/command")
        self.assertEqual(done.returncode, 127)
        self.assertIn("/no/such/command", done.stderr)

    def test_says_what_it_needs(self):
        done = run(*as_root(), TOOL, TOOL, "true")
        self.assertEqual(done.returncode, 1)
        self.assertIn("CAP_SYS_ADMIN", done.stderr)


class Arguments(unittest.TestCase):
    def test_wrong_arguments_are_refused(self):
        for arguments in ((), ("--refuse",), ("--refuse", "air", "true"), ("--user", "root", "true"), ("--user", "5"),
                          ("--other", "true")):
            with self.subTest(arguments):
                done = run(TOOL, *arguments)
                self.assertEqual(done.returncode, 64)
                self.assertIn("--help", done.stderr)


if __name__ == "__main__":
    unittest.main()
