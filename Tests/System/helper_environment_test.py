"""Tests of the helper in a hostile process environment, prepared by its caller: descriptors, signals, limits, terminals, folders
and environment variables.
"""

import contextlib
import ctypes
import fcntl
import itertools
import os
import resource
import signal
import subprocess
import tempfile
import termios
import time
import unittest

from helper_stage import BUILD, CAP_SYS_RESOURCE, NOBODY, HelperTest, as_nobody, has_capability, require_tracing
from stage import HELPER, SCRATCH, require_own, wait_until

SEQUENCE_SIGNALS = {signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGQUIT}
# Every signal that the C library lets a process block, except SIGALRM.
HELD_IN_A_SEQUENCE = set(range(1, 65)) - {signal.SIGKILL, signal.SIGSTOP, signal.SIGALRM, 32, 33}
USUAL_SLACK_NANOSECONDS = 50_000
PR_SET_TIMERSLACK = 29


def status_field(pid, name):
    with open(f"/proc/{pid}/status", encoding="ascii", errors="replace") as file:
        for line in file:
            if line.startswith(name + ":"):
                return line.split(":", 1)[1].strip()
    return None


def full_terminal():
    """Opens a pseudo-terminal whose buffer is full; returns the descriptors of both ends."""
    master, terminal = os.openpty()
    os.set_blocking(terminal, False)
    for size in (1024, 1):
        with contextlib.suppress(BlockingIOError):
            while True:
                os.write(terminal, bytes(size))
    os.set_blocking(terminal, True)
    return master, terminal


def mask(signals):
    return sum(1 << (number - 1) for number in signals)


class Surroundings(HelperTest):
    def while_writing(self, look, *arguments, **options):
        """Starts a "set", calls `look` with the PID while the helper is talking to the controller, and waits for its end."""
        before = self.mac.requests()
        # Every answer from the sixth on is late until `look` is done, each by less than the two seconds that the helper waits.
        self.mac.tell("fault delay 600 after 5")
        child = self.start("set", "0", "2400", **options)
        wait_until(lambda: self.mac.requests() >= before + 6, "the helper talks to the controller", interval_seconds=0.01)
        try:
            look(child.pid)
            self.assertIsNone(child.poll(), "it was still talking to the controller")
        finally:
            self.mac.tell("answer")
            status = child.wait(30)
        return status

    def test_closed_standard_descriptors_are_never_the_controllers(self):
        require_tracing()
        for closed in itertools.chain.from_iterable(itertools.combinations((0, 1, 2), n) for n in range(4)):
            for user in (as_nobody(), {}):
                def shut(which=closed):
                    for descriptor in which:
                        os.close(descriptor)

                def look(pid):
                    links = {name: os.readlink(f"/proc/{pid}/fd/{name}") for name in os.listdir(f"/proc/{pid}/fd")}
                    self.assertEqual(set(links), {"0", "1", "2", "3"}, closed)
                    self.assertTrue(links["3"].startswith("socket:"), links)
                    self.assertFalse([name for name in "012" if links[name].startswith("socket:")], links)

                with self.subTest(closed=closed, user=user):
                    version = subprocess.run(self.command_line("version"), check=False, preexec_fn=shut, **user)
                    self.assertEqual(version.returncode, 0)
                    options = {**as_nobody(), **({"user": 0, "group": 0} if not user else {})}
                    self.assertEqual(self.while_writing(look, preexec_fn=shut, **options), 0)

    def test_descriptors_of_the_caller_are_closed(self):
        with open("/etc/hostname", "rb") as secret:
            high = os.dup2(secret.fileno(), 200)
            os.set_inheritable(high, True)
            try:
                self.while_writing(lambda pid: self.assertEqual(set(os.listdir(f"/proc/{pid}/fd")),
                                                                {"0", "1", "2", "3"}), close_fds=False)
            finally:
                os.close(high)

    def test_the_state_of_the_process_while_it_writes(self):
        require_tracing()
        def look(pid):
            self.assertEqual(set(status_field(pid, "Uid").split()), {"0"})
            self.assertEqual(int(status_field(pid, "SigBlk"), 16), mask(HELD_IN_A_SEQUENCE))
            self.assertEqual(os.readlink(f"/proc/{pid}/cwd"), "/")
            with open(f"/proc/{pid}/timerslack_ns", encoding="ascii") as file:
                self.assertEqual(int(file.read()), USUAL_SLACK_NANOSECONDS)
            self.assertEqual((os.sched_getscheduler(pid), os.getpriority(os.PRIO_PROCESS, pid)), (os.SCHED_OTHER, 0))
            self.assertEqual(status_field(pid, "Umask"), "0077")
            self.assertEqual(status_field(pid, "NoNewPrivs"), "0")
            self.assertEqual(os.stat(f"/proc/{pid}/mem").st_uid, 0)  # not dumpable
            with open(f"/proc/{pid}/limits", encoding="ascii") as file:
                limits = {line[:26].strip(): line[26:].split() for line in file}
            self.assertEqual(limits["Max core file size"][:2], ["0", "0"])
            for name in ("Max cpu time", "Max file size", "Max data size", "Max stack size", "Max open files",
                         "Max address space"):
                self.assertEqual(limits[name][0], limits[name][1], name)
            if has_capability(CAP_SYS_RESOURCE):
                for name in ("Max cpu time", "Max file size"):
                    self.assertEqual(limits[name][:2], ["unlimited", "unlimited"], name)
                self.assertGreaterEqual(int(limits["Max open files"][1]), 16)

        def lower():
            for limit in (resource.RLIMIT_CPU, resource.RLIMIT_FSIZE):
                resource.setrlimit(limit, (60, 60))
            resource.setrlimit(resource.RLIMIT_NOFILE, (10, 10))
            ctypes.CDLL(None).prctl(PR_SET_TIMERSLACK, ctypes.c_ulong(90_000_000_000), 0, 0, 0)
            os.sched_setscheduler(0, os.SCHED_IDLE, os.sched_param(0))
            os.nice(19)

        with tempfile.TemporaryDirectory() as place:
            os.chmod(place, 0o777)
            self.assertEqual(self.while_writing(look, cwd=place, umask=0, preexec_fn=lower), 0)

    def test_it_asks_for_limits_without_end(self):
        # The test before this one checks that it gets these limits, where root may raise them at all.
        def lower():
            for limit in (resource.RLIMIT_CPU, resource.RLIMIT_FSIZE):
                resource.setrlimit(limit, (60, 60))
            resource.setrlimit(resource.RLIMIT_NOFILE, (10, 10))

        trace = subprocess.run(["strace", "-e", "trace=prlimit64,setrlimit", str(BUILD / "bin/Fenwhirl"), "--helper",
                                "version"], capture_output=True, text=True, check=True, preexec_fn=lower)
        for name in ("CPU", "FSIZE", "DATA", "STACK", "AS"):
            self.assertRegex(trace.stderr, rf"RLIMIT_{name}, {{rlim_cur=RLIM64_INFINITY, rlim_max=RLIM64_INFINITY}}")
        self.assertRegex(trace.stderr, r"RLIMIT_NOFILE, {rlim_cur=64, rlim_max=64}")

    def test_ignored_and_blocked_signals_are_not_inherited(self):
        everything = set(range(1, 65)) - {signal.SIGKILL, signal.SIGSTOP, 32, 33}

        def prepare():
            for number in everything:
                signal.signal(number, signal.SIG_IGN)
            signal.pthread_sigmask(signal.SIG_BLOCK, everything)

        def look(pid):
            ignored = int(status_field(pid, "SigIgn"), 16)
            self.assertEqual(ignored & mask(set(range(1, 32))), 0)
            self.assertEqual(int(status_field(pid, "SigBlk"), 16), mask(HELD_IN_A_SEQUENCE))

        self.assertEqual(self.while_writing(look, preexec_fn=prepare, restore_signals=False), 0)

    def test_signals_that_wait_for_the_helper_are_discarded(self):
        waiting = {signal.SIGTERM, signal.SIGALRM, signal.SIGTSTP, signal.SIGUSR1, signal.SIGRTMIN, signal.SIGRTMIN + 3}

        def prepare():
            signal.pthread_sigmask(signal.SIG_BLOCK, waiting)
            for number in waiting:
                os.kill(os.getpid(), number)

        self.assertEqual(self.helper("set", "0", "2400", preexec_fn=prepare).returncode, 0)
        self.assertEqual(self.writes(), ["FS!=0001", "F0Tg=2580"])

    def test_its_caller_can_neither_kill_nor_stop_it(self):
        refused = []

        def look(pid):
            # Runs as the same user as the one that started the helper.
            code = ("import os,sys\npid=int(sys.argv[1]); refused=0\nfor number in (9, 19, 15, 2, 20)*200:\n"
                    "    try: os.kill(pid, number)\n    except PermissionError: refused += 1\nprint(refused)")
            answer = subprocess.run(["/usr/bin/python3", "-c", code, str(pid)], capture_output=True, check=True,
                                    **as_nobody())
            refused.append(int(answer.stdout))

        self.assertEqual(self.while_writing(look), 0)
        self.assertEqual(refused, [1000])
        self.assertEqual(self.writes(), ["FS!=0001", "F0Tg=2580"])

    def test_its_caller_cannot_kill_it_between_its_writes_and_the_hand_back(self):
        child = self.start("test")
        wait_until(lambda: "F0Tg" in {entry["key"] for entry in self.log(self.seen)}, "the fan is driven")
        code = ("import os,sys,time\npid=int(sys.argv[1]); killed=0\nfor number in range(1000):\n"
                "    try: os.kill(pid, 9); killed += 1\n    except PermissionError: time.sleep(0.004)\nprint(killed)")
        answer = subprocess.run(["/usr/bin/python3", "-c", code, str(child.pid)], capture_output=True, check=True,
                                **as_nobody())
        self.assertEqual(int(answer.stdout), 0)
        self.assertEqual(child.wait(30), 0)
        self.assert_automatic()

    def test_signals_of_the_terminal_act_when_the_sequence_is_complete(self):
        for number in sorted(SEQUENCE_SIGNALS):
            self.seen = self.last_write()
            status = self.while_writing(lambda pid, number=number: os.kill(pid, number))
            self.assertEqual(status, -number)
            self.assertEqual(self.writes(), ["FS!=0001", "F0Tg=2580"], number)

    def test_output_that_goes_nowhere_changes_no_status(self):
        expected = {("version",): 0, ("set", "0", "2400"): 0, ("auto",): 0, ("bogus",): 64, ("test",): 0}
        readable, writable = os.pipe()
        os.close(readable)
        with open("/dev/full", "wb") as full:
            for target in (full.fileno(), writable):
                for arguments, status in expected.items():
                    if arguments == ("test",) and target == writable:
                        continue  # it takes eight seconds, and once is enough
                    result = self.helper(*arguments, stdout=target, stderr=target)
                    self.assertEqual(result.returncode, status, arguments)
        os.close(writable)
        self.assert_automatic()

    def test_a_slow_reader_gets_everything(self):
        readable, writable = os.pipe()
        os.set_blocking(writable, False)
        child = self.start("version", stdout=writable)
        os.close(writable)
        time.sleep(0.1)
        with os.fdopen(readable, "rb") as pipe:
            self.assertEqual(pipe.read(), b"3\n")
        self.assertEqual(child.wait(10), 0)

    def test_a_full_pipe_is_waited_for(self):
        readable, writable = os.pipe()
        os.set_blocking(writable, False)
        filled = 0
        with self.assertRaises(BlockingIOError):
            while True:
                filled += os.write(writable, b"x" * 4096)
        child = self.start("version", stdout=writable)
        os.close(writable)
        time.sleep(0.1)
        self.assertIsNone(child.poll())
        with os.fdopen(readable, "rb") as pipe:
            self.assertEqual(pipe.read(), b"x" * filled + b"3\n")
        self.assertEqual(child.wait(10), 0)

    def test_a_reader_that_reads_nothing_is_given_up(self):
        pipes = [os.pipe() for _ in range(2)]
        os.set_blocking(pipes[0][1], False)
        for _, writable in pipes:
            with open(writable, "wb", buffering=0, closefd=False) as pipe:
                pipe.write(bytes(fcntl.fcntl(writable, fcntl.F_GETPIPE_SZ)))
        master, terminal = full_terminal()
        before = time.monotonic()
        children = [self.start(command, stdout=output) for output in (pipes[0][1], pipes[1][1], terminal)
                    for command in ("version", "version")]
        self.assertEqual([child.wait(30) for child in children], [0] * len(children))
        seconds = time.monotonic() - before
        self.assertGreater(seconds, 1)
        self.assertLess(seconds, 10)
        for descriptor in (*pipes[0], *pipes[1], master, terminal):
            os.close(descriptor)

    def test_a_report_that_nobody_reads_is_given_up(self):
        readable, writable = os.pipe()
        self.addCleanup(os.close, readable)
        os.write(writable, bytes(fcntl.fcntl(writable, fcntl.F_GETPIPE_SZ)))
        child = self.start("test", stdout=writable)
        os.close(writable)
        self.assertEqual(child.wait(25), 0)
        self.assert_automatic()

    def test_a_terminal_can_neither_stop_nor_block_it(self):
        # The helper is a background job of a terminal that stops background jobs when they write (TOSTOP).
        master, terminal = os.openpty()
        self.addCleanup(os.close, master)
        settings = termios.tcgetattr(terminal)
        settings[3] |= termios.TOSTOP
        termios.tcsetattr(terminal, termios.TCSANOW, settings)
        name = os.ttyname(terminal)
        os.chmod(name, 0o666)
        code = ("import fcntl,os,sys,termios\n"
                "os.setsid(); fd=os.open(sys.argv[1], os.O_RDWR); fcntl.ioctl(fd, termios.TIOCSCTTY, 0)\n"
                "child=os.fork()\n"
                "if child == 0:\n"
                " os.setpgid(0, 0); os.dup2(fd, 0); os.dup2(fd, 1); os.execv(sys.argv[2], sys.argv[2:])\n"
                "sys.stdout.write(str(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])))\n")
        session = subprocess.Popen(["/usr/bin/python3", "-c", code, name, *self.command_line("version")],
                                   stdout=subprocess.PIPE, **as_nobody())
        os.close(terminal)
        self.addCleanup(session.stdout.close)
        try:
            self.assertEqual(session.wait(20), 0)
        except subprocess.TimeoutExpired:
            for line in subprocess.run(["pgrep", "-x", "FenwhirlHelper"], capture_output=True, check=False).stdout.split():
                os.kill(int(line), signal.SIGKILL)
            session.wait()
            self.fail("stopped for ever")
        self.assertEqual(session.stdout.read(), b"0")
        self.assertEqual(os.read(master, 100), b"3\r\n")

    def test_the_stop_of_a_terminal_does_not_stop_it(self):
        def look(pid):
            os.kill(pid, signal.SIGTSTP)

        self.assertEqual(self.while_writing(look), 0)

    def test_slack_of_minutes_does_not_make_it_outlast_its_alarm(self):
        def loosen():
            ctypes.CDLL(None).prctl(PR_SET_TIMERSLACK, ctypes.c_ulong(90_000_000_000), 0, 0, 0)

        self.assertEqual(self.helper("test", preexec_fn=loosen).returncode, 0)
        self.assert_automatic()

    def test_root_that_works_under_another_identity_is_not_made_root_again(self):
        program = str(BUILD / "bin/Fenwhirl")
        result = subprocess.run([program, "--helper", "set", "0", "2400"], check=False, user=None,
                                preexec_fn=lambda: os.setresuid(0, NOBODY, NOBODY))
        self.assertEqual(result.returncode, 1)
        self.assertEqual({entry["uid"] for entry in self.log(self.seen)}, {str(NOBODY)})

    def test_without_a_null_device_it_answers_what_needs_no_controller(self):
        require_own("mounts", "a world without /dev/null")

        def start(program, arguments, closed=""):
            return subprocess.run(["unshare", "-m", "/bin/sh", "-c", "exec 3<&-; mount -t tmpfs tmpfs /dev && exec setpriv "
                                   f'--reuid {NOBODY} --regid {NOBODY} --clear-groups "$@" {closed}',
                                   "sh", program, "--helper", *arguments],
                                  stdin=subprocess.DEVNULL, capture_output=True, check=False)

        installed, plain = str(HELPER), str(BUILD / "bin/Fenwhirl")
        # The set-user-ID copy is tried with open standard streams only: with a closed one, the C library itself would end it.
        for program, closed in ((installed, ""), (plain, ""), (plain, "<&-"), (plain, "<&- 2>&-")):
            answer = start(program, ["version"], closed)
            self.assertEqual((answer.returncode, answer.stdout), (0, b"3\n"), closed)
            self.assertEqual(start(program, [], closed).returncode, 64, closed)
        self.assertEqual(start(plain, ["version"], ">&-").returncode, 0)
        self.assertEqual(start(plain, [], ">&-").returncode, 64)
        # With a standard stream closed, the connection to the controller could get its number.
        self.assertEqual(start(plain, ["auto"], "<&-").returncode, 2)
        self.assertEqual(start(plain, ["auto"]).returncode, 1)  # runs as an ordinary user, whose writes are refused
        self.assertEqual(start(installed, ["auto"]).returncode, 0)

    def test_auto_repairs_whatever_low_limits_cause(self):
        limits = {"NOFILE": (0, 3, 4, 8), "AS": (1 << 20, 4 << 20, 16 << 20), "DATA": (0, 64 << 10, 1 << 20),
                  "STACK": (0, 16 << 10, 128 << 10), "FSIZE": (0,), "CPU": (1,), "NPROC": (0,), "CORE": (0,),
                  "MEMLOCK": (0,)}
        combinations = 0
        for name, values in limits.items():
            for value in values:
                def starve(name=name, value=value):
                    resource.setrlimit(getattr(resource, "RLIMIT_" + name), (value, value))

                for arguments in (("set", "0", "2400"), ("auto",)):
                    combinations += 1
                    try:
                        status = self.helper(*arguments, preexec_fn=starve).returncode
                    except (OSError, subprocess.SubprocessError):
                        continue  # it could not even be started
                    self.assertTrue(status < 0 or status in {0, 1, 2, 127}, (name, value, status))
                self.assertEqual(self.helper("auto").returncode, 0)
                self.assert_automatic()
        self.assertGreaterEqual(combinations, 20)

    def test_it_works_from_a_folder_that_is_gone(self):
        place = tempfile.mkdtemp(dir=SCRATCH / "home")
        os.chmod(SCRATCH / "home", 0o777)
        os.chmod(place, 0o777)
        result = self.helper("set", "0", "2400", preexec_fn=lambda: (os.chdir(place), os.rmdir(place)))
        self.assertEqual(result.returncode, 0)

    def test_it_creates_no_file(self):
        require_tracing()
        for arguments in (["version"], ["set", "0", "2400"], ["auto"], ["bogus"]):
            trace = subprocess.run(["strace", "-u", "nobody", "-f", "-e", "trace=%file,clone,clone3,fork,vfork",
                                    *self.command_line(*arguments)], capture_output=True, text=True, check=False)
            calls = [line for line in trace.stderr.splitlines() if "(" in line]
            self.assertTrue(any("libc.so.6" in call for call in calls), trace.stderr)
            for call in calls:
                self.assertNotRegex(call, r"O_CREAT|O_TRUNC|^(creat|mkdir|mkdirat|rename|unlink|link|symlink|clone|fork)")

    def test_the_loaders_profiler_has_nowhere_to_write(self):
        # The loader honours this one variable even in set-user-ID programs, before any code of ours runs. It tries to write to a
        # fixed folder that no system has, and complains about that.
        self.assertFalse(os.path.exists("/var/profile"))
        result = self.helper("version", env={"LD_PROFILE": "libc.so.6"})
        self.assertEqual((result.returncode, result.stdout), (0, b"3\n"))

    def test_the_loaders_listing_mode_lists_nothing(self):
        # With this variable the loader ends a set-user-ID program with status 5. Since glibc 2.41 it ignores the variable.
        result = self.helper("set", "0", "2400", env={"LD_TRACE_LOADED_OBJECTS": "1"})
        self.assertIn(result.returncode, (0, 5))
        self.assertEqual((result.stdout, result.stderr), (b"", b""))
        self.assertEqual(self.writes() == [], result.returncode == 5)

    def test_the_environment_changes_nothing(self):
        hostile = [
            {"LD_PRELOAD": "/nonexistent.so"}, {"LD_AUDIT": "/nonexistent.so"}, {"LD_LIBRARY_PATH": "/tmp"},
            {"LD_DEBUG": "all", "LD_DEBUG_OUTPUT": "/tmp/helper-debug"}, {"LD_BIND_NOT": "1"},
            {"LD_SHOW_AUXV": "1"}, {"LD_HWCAP_MASK": "0"}, {"LD_ORIGIN_PATH": "/tmp"},
            {"GLIBC_TUNABLES": "glibc.malloc.check=3"}, {"GLIBC_TUNABLES": "glibc.malloc.tcache_count=" + "9" * 5000},
            {"MALLOC_CHECK_": "3"}, {"MALLOC_TRACE": "/tmp/helper-trace"}, {"MALLOC_PERTURB_": "85"},
            {"LOCPATH": "/tmp", "LC_ALL": "fr_FR.UTF-8"}, {"LC_ALL": "tr_TR.UTF-8"}, {"LC_NUMERIC": "de_DE.UTF-8"},
            {"LANGUAGE": "../../../../tmp"}, {"NLSPATH": "/tmp/%N"}, {"GCONV_PATH": "/tmp"}, {"CHARSET": "evil"},
            {"TZ": "/tmp/zone"}, {"TZDIR": "/tmp"}, {"TMPDIR": "/tmp"}, {"HOME": "/tmp", "PATH": "/tmp"},
            {"IFS": "0", "ENV": "/tmp/x"}, {"HOSTALIASES": "/tmp/x", "RESOLV_HOST_CONF": "/tmp/x"},
            {"BIG": "x" * 120000, **{f"BIG{i}": "x" * 120000 for i in range(8)}},
            {f"V{i}": "" for i in range(60000)}, {},
        ]
        for environment in hostile:
            self.helper("auto")
            self.seen = self.last_write()
            name = next(iter(environment), "empty")
            for arguments, status, output in ((("version",), 0, b"3\n"), (("set", "0", "2400.9"), 0, b""),
                                              (("set", "0", "2400,9"), 64, b"")):
                result = self.helper(*arguments, env=environment)
                self.assertEqual((result.returncode, result.stdout, result.stderr), (status, output, b""), name)
            self.assertEqual(self.writes(), ["FS!=0001", "F0Tg=2580"], name)
        self.assertEqual([name for name in os.listdir("/tmp") if name.startswith("helper-")], [])


if __name__ == "__main__":
    unittest.main()
