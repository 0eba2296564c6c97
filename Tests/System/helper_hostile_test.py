"""Thousands of starts by an ordinary user who means harm: random arguments, environments, descriptors, signals, limits.

    helper_hostile_test.py [STARTS [SEED]]
"""

import os
import random
import re
import resource
import select
import signal
import sys
import time
import unittest

from helper_stage import HELPER, NOBODY, STATUSES, WRITABLE_KEYS, HelperTest
from stage import SCRATCH, rounds

STARTS = rounds(2000, 20000)
SEED = None
SHARED, HOME = SCRATCH / "shared", SCRATCH / "home"

WORDS = [b"version", b"set", b"auto", b"bogus", b"", b"0", b"1", b"2", b"-1", b"+1", b"+-1", b"65535", b"65536", b"007",
         b"9223372036854775807", b"9223372036854775808", b"-9223372036854775808", b"2400", b"-2400", b"2400.5", b"2400,5",
         b"1e3", b"1e999", b"-1e999", b"nan", b"-nan", b"nan(1)", b"inf", b"-inf", b"0x1p12", b" 1200", b"1200 ", b"\n",
         b"--helper", b"--", b"-h", b"%n%n%s", b"../../etc/shadow", b"/dev/zero", b"$(id)", b"`id`", b"\xff\xfe\x80",
         "１".encode(), "é".encode(), b"A" * 5000, b"9" * 5000, b"set 0 2400", b"auto\n", b"VERSION"]
VARIABLES = [b"LD_PRELOAD", b"LD_LIBRARY_PATH", b"LD_AUDIT", b"LD_DEBUG", b"LD_BIND_NOW", b"GLIBC_TUNABLES", b"MALLOC_CHECK_",
             b"LC_ALL", b"LANG", b"LANGUAGE", b"LOCPATH", b"TZ", b"PATH", b"HOME", b"TMPDIR", b"IFS", b"FENWHIRL", b"",
             b"GCONV_PATH", b"NLSPATH", b"MALLOC_PERTURB_", b"LD_DEBUG_OUTPUT"]
VALUES = [b"", b"1", os.fsencode(SCRATCH / "shared/evil.so"), b"fr_FR.UTF-8", b"all", b"C", b"../../run/shared", b"\xff" * 40,
          b"x" * 20000, b"%n", b"glibc.malloc.check=3", os.fsencode(SCRATCH / "home/evil")]
LIMITS = {resource.RLIMIT_NOFILE: (0, 3, 4, 5, 64), resource.RLIMIT_AS: (1 << 20, 8 << 20, 1 << 30),
          resource.RLIMIT_DATA: (0, 1 << 16, 1 << 20), resource.RLIMIT_STACK: (0, 1 << 14, 1 << 20),
          resource.RLIMIT_FSIZE: (0, 1), resource.RLIMIT_CPU: (0, 1), resource.RLIMIT_NPROC: (0, 1),
          resource.RLIMIT_CORE: (0, resource.RLIM_INFINITY), resource.RLIMIT_MEMLOCK: (0,)}
# Starving these can end the process in the kernel or in the loader, before any line of ours.
STARVING = {resource.RLIMIT_NOFILE, resource.RLIMIT_AS, resource.RLIMIT_DATA, resource.RLIMIT_STACK, resource.RLIMIT_CPU}
# The loader speaks of what it was asked for and does not do for root.
LOADER_SAYS = re.compile(rb"ERROR: ld\.so: object |warning: debug option ")


class Start:
    """One random way of starting the helper."""

    def __init__(self, chance):
        arguments = [chance.choice(WORDS) for _ in range(chance.choice((0, 1, 1, 2, 3, 3, 3, 4, 9)))]
        if arguments and chance.random() < 0.5:
            arguments[0] = chance.choice((b"set", b"auto", b"version"))
        flag = b"--helper" if chance.random() < 0.93 else chance.choice(WORDS + [b"--HELPER", b"--helper "])
        self.arguments = [b"FenwhirlHelper", flag, *arguments]
        if chance.random() < 0.02:
            self.arguments = self.arguments[:chance.choice((1, 2))]
        self.environment = {chance.choice(VARIABLES) + (b"" if chance.random() < 0.8 else b"_"): chance.choice(VALUES)
                            for _ in range(chance.choice((0, 1, 3, 12)))}
        self.environment.pop(b"", None)
        self.closed = [number for number in (0, 1) if chance.random() < 0.15]
        self.output = chance.choice(("/dev/null", "/dev/full", "/dev/zero", None))
        self.open = chance.choice((0, 0, 0, 5, 60))
        self.ignored = [number for number in range(1, 65)
                        if number not in (9, 19, 32, 33) and chance.random() < chance.choice((0, 0, 0.3, 1))]
        self.blocked = [number for number in sorted(signal.valid_signals()) if chance.random() < chance.choice((0, 0, 0.3, 1))]
        self.pending = [chance.choice((1, 2, 3, 10, 12, 14, 15, 17, 20, 34, 50))
                        for _ in range(chance.choice((0, 0, 0, 0, 0, 2)))]
        self.limits = {}
        if chance.random() < 0.25:
            limit = chance.choice(list(LIMITS))
            self.limits[limit] = chance.choice(LIMITS[limit])
        self.umask = chance.choice((0, 0o22, 0o777))
        self.folder = chance.choice(("/", SHARED, HOME, "/proc/self"))

    def __repr__(self):
        return repr(vars(self))

    def names_an_impossible_fan(self):
        try:
            return not 0 <= int(self.arguments[3].decode("ascii")) <= 65535
        except (IndexError, ValueError):
            return False

    def run_in_child(self, errors):
        os.setgroups([])
        os.setresgid(NOBODY, NOBODY, NOBODY)
        os.setresuid(NOBODY, NOBODY, NOBODY)
        os.umask(self.umask)
        os.chdir(self.folder)
        for _ in range(self.open):
            os.set_inheritable(os.open("/dev/null", os.O_RDWR), True)
        if self.output:
            os.dup2(os.open(self.output, os.O_WRONLY), 1)
        else:
            readable, writable = os.pipe()
            os.dup2(writable, 1)
            os.close(readable)
        os.dup2(errors, 2)
        for number in self.closed:
            os.close(number)
        for number in self.ignored:
            signal.signal(number, signal.SIG_IGN)
        signal.pthread_sigmask(signal.SIG_BLOCK, [*self.blocked, *self.pending])
        for number in self.pending:
            os.kill(os.getpid(), number)
        for limit, value in self.limits.items():
            hard = resource.getrlimit(limit)[1]
            if hard != resource.RLIM_INFINITY and (value == resource.RLIM_INFINITY or value > hard):
                value = hard
            resource.setrlimit(limit, (value, value))
        os.execve(str(HELPER), self.arguments, self.environment)

    def run(self):
        """Its exit status (negative for a signal), what it said on standard error, and whether it started at all."""
        readable, writable = os.pipe()
        child = os.fork()
        if child == 0:
            try:
                self.run_in_child(writable)
            except BaseException:  # exec itself was refused
                os._exit(199)
        os.close(writable)
        said = b""
        end = time.monotonic() + 40
        while select.select([readable], [], [], max(0, end - time.monotonic()))[0]:
            piece = os.read(readable, 65536)
            if not piece:
                break
            said += piece
        else:
            os.kill(child, signal.SIGKILL)
        os.close(readable)
        return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), said


class HostileStarts(HelperTest):
    def verdict(self, start, status, said):
        """What is wrong with an outcome, or None."""
        if status == 199:
            return None  # the kernel refused to start anything
        said = b"".join(line for line in said.splitlines(True) if not LOADER_SAYS.match(line))
        if status in STATUSES:
            return f"said {said!r}" if said else None
        if STARVING & set(start.limits) and (status < 0 or status == 127):
            return None
        if status == -signal.SIGABRT and start.names_an_impossible_fan():
            return None  # stops before any write
        return f"status {status}, said {said!r}"

    def test_end_in_a_known_way_and_reach_nothing_but_the_fans(self):
        seed = SEED if SEED is not None else random.SystemRandom().randrange(1 << 32)
        chance = random.Random(seed)
        os.makedirs(SHARED, exist_ok=True)
        for place in (SHARED, HOME):
            os.chmod(place, 0o777)
        places = {place: set(os.listdir(place)) for place in ("/", "/run", SCRATCH, SHARED, HOME, "/run/fenwhirl")}
        outcomes = {}
        faults = []
        for _ in range(STARTS):
            start = Start(chance)
            status, said = start.run()
            outcomes[status] = outcomes.get(status, 0) + 1
            fault = self.verdict(start, status, said)
            if fault:
                faults.append(f"{fault}: {start}")
        print(f"seed {seed}: {dict(sorted(outcomes.items()))}")
        if faults:
            self.fail(f"seed {seed}: {len(faults)} faults, the first: {faults[0][:2000]}")
        # Every way out was seen, or the test is not hostile enough.
        self.assertLessEqual({0, 1, 64, 77}, set(outcomes))
        written = {entry["key"] for entry in self.log()}
        self.assertTrue(written)
        self.assertEqual({key for key in written if not WRITABLE_KEYS.match(key)}, set())
        for place, before in places.items():
            self.assertEqual(set(os.listdir(place)) - before, set(), place)
        self.assertEqual(self.helper("auto").returncode, 0)
        self.assert_automatic()


if __name__ == "__main__":
    if len(sys.argv) > 2:
        SEED = int(sys.argv.pop(2))
    if len(sys.argv) > 1:
        STARTS = int(sys.argv.pop(1))
    unittest.main()
