"""Shared infrastructure of the end-to-end tests: a display, a session bus, a simulated Mac, Fenwhirl, and access to its interface.

Everything here runs inside Packaging/Linux/private-namespace, so that each test has its own /run, /Library and home folder, and
every process it leaves behind ends with it. Where no private namespace can be created, that script runs the tests one at a time
on the computer itself; a test that needs isolation there skips itself with `require_own`.

Tests act as a user through the accessibility tree (AT-SPI): they read texts where a screen reader would read them, and operate
controls with the actions that assistive technology uses.
"""

import contextlib
import os
import pathlib
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
HELPER = pathlib.Path("/Library/PrivilegedHelperTools/FenwhirlHelper")
SCRATCH = pathlib.Path(os.environ.get("FENWHIRL_SCRATCH", "/run"))  # its content is removed with the test
PATIENCE_SECONDS = 20.0  # timeout for what should happen immediately; loaded machines are slow
# How many requests one poll sends to the machines of tests that count polls.
REQUESTS_OF_A_POLL = {"MacBookPro11,4": 94, "AppleSilicon": 104}

LONG_RUNS = "FENWHIRL_LONG_RUNS" in os.environ


def rounds(sample, whole):
    """Returns how much of an endurance test to run: `sample` normally, `whole` in the long runs, which take hours."""
    return whole if LONG_RUNS else sample


def has_own(what):
    """Whether the test has its own, not the computer's, "mounts", (host) "name", "network" or "processes"."""
    return what in os.environ.get("FENWHIRL_OWN", "").split()


def require_own(what, reason):
    """Skips a test that cannot work where this is shared with the computer."""
    if not has_own(what):
        raise unittest.SkipTest(f"needs {what} of its own: {reason}")


class StageError(Exception):
    """Something that a test or tour waited for did not happen."""


class Interrupted(BaseException):
    """Raised by a signal that asks the program to end: Ctrl-C, a closed terminal, SIGTERM. Its argument is the signal's number."""


class Interruption:
    """When Interrupted is raised: at once, or, in a `with` block of DEFERRED, at its end."""

    def __init__(self):
        self.deferred = False
        self.arrived = None

    def arrive(self, number):
        if not self.deferred:
            raise Interrupted(number)
        self.arrived = number

    def __enter__(self):
        self.deferred = True

    def __exit__(self, *_):
        self.deferred, number, self.arrived = False, self.arrived, None
        if number is not None:
            raise Interrupted(number)

    def arrive_again(self, unraisable):
        """For sys.unraisablehook. Python drops an exception that is raised while an object is finalized, which may happen anywhere."""
        if not isinstance(unraisable.exc_value, Interrupted):
            sys.__unraisablehook__(unraisable)
            return
        number = unraisable.exc_value.args[0]
        signal.signal(signal.SIGALRM, lambda *_: self.arrive(number))
        signal.setitimer(signal.ITIMER_REAL, 0.01)  # when the object is gone, most likely; otherwise this is called again


# For functions that a library calls, in which an exception would be lost.
DEFERRED = Interruption()


def end_in_order_when_interrupted():
    """Makes the first such signal raise Interrupted, so that everything that was started is cleaned up. Later ones are ignored."""
    signals = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)

    def interrupt(number, _):
        for each in signals:
            signal.signal(each, signal.SIG_IGN)
        DEFERRED.arrive(number)

    for each in signals:
        signal.signal(each, interrupt)
    sys.unraisablehook = DEFERRED.arrive_again


def wait_until(question, what, seconds=PATIENCE_SECONDS, interval_seconds=0.05):
    """Calls `question` until its answer is true, and returns the answer. Raises StageError after `seconds`; `what` describes what
    was waited for: a text, or a function that returns it at that moment. A question that takes long, as a walk through the
    whole screen does, is asked less often than `interval_seconds` says, because the program works to answer it.
    """
    end = time.monotonic() + seconds
    while True:
        asked = time.monotonic()
        answer = question()
        if answer:
            return answer
        now = time.monotonic()
        if now > end:
            raise StageError(f"waited {seconds:g} s in vain: {what() if callable(what) else what}")
        time.sleep(max(interval_seconds, 2 * (now - asked)))


class Process:
    """A child process that is killed at the end of its `with` block."""

    def __init__(self, arguments, **options):
        self.arguments = [str(argument) for argument in arguments]
        # In a session of its own the child does not get the terminal's signals (Ctrl-C, hang-up): this process handles them, and
        # ends its children in the right order.
        self.child = subprocess.Popen(self.arguments, **{"start_new_session": True, **options})

    def running(self):
        return self.child.poll() is None

    def stop(self, how=signal.SIGTERM, seconds=PATIENCE_SECONDS):
        """Sends a signal and returns the exit status. When the child does not end in time, kills it and raises StageError."""
        if self.running():
            self.child.send_signal(how)
        try:
            return self.child.wait(seconds)
        except subprocess.TimeoutExpired:
            self.child.kill()
            self.child.wait()
            raise StageError(f"{self.arguments[0]} did not end after {how!s}") from None

    def processor_seconds(self):
        """The processor time that the running process has used so far, in user mode and in the kernel."""
        # The name stands in parentheses and may contain blanks. utime and stime are the 12th and 13th fields after it.
        fields = pathlib.Path(f"/proc/{self.child.pid}/stat").read_text().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.running():
            self.child.kill()
        self.child.wait()
        for stream in (self.child.stdin, self.child.stdout, self.child.stderr):
            if stream:
                with contextlib.suppress(OSError):
                    stream.close()


class Lines:
    """Reads a pipe line by line, with a timeout for each line."""

    def __init__(self, stream):
        self.descriptor = stream.fileno()
        self.buffer = b""

    def next(self, seconds=PATIENCE_SECONDS):
        end = time.monotonic() + seconds
        while b"\n" not in self.buffer:
            left = end - time.monotonic()
            if left <= 0 or not select.select([self.descriptor], [], [], left)[0]:
                raise StageError("no line came")
            more = os.read(self.descriptor, 65536)
            if not more:
                raise StageError("the stream ended")
            self.buffer += more
        line, self.buffer = self.buffer.split(b"\n", 1)
        return line.decode("utf-8", "replace")


def require_command(command, reason):
    """Skips a test that needs a program that this computer does not have."""
    if shutil.which(command) is None:
        raise unittest.SkipTest(f"there is no {command} here, {reason}")


class Display(Process):
    """A virtual screen (Xvfb). `name` is its X11 display name; start_window_manager() adds a window manager."""

    ATTEMPTS = 3
    SERVER = ("Xvfb", "-screen", "0")

    def __init__(self, width=1280, height=800, scale=1):
        # Once in several thousand starts the server ended at once; why is not known.
        for attempt in range(self.ATTEMPTS):
            try:
                self.name = self._start_server(f"{round(width * scale)}x{round(height * scale)}x24")
                break
            except StageError as error:
                super().__exit__()
                if attempt == self.ATTEMPTS - 1:
                    raise
                print(f"{error}\nAnother one is started.", file=sys.stderr)
        self.manager = None

    def _start_server(self, screen):
        """Starts a server and returns the name of its display."""
        readable, writable = os.pipe()
        with tempfile.TemporaryFile() as log, os.fdopen(readable, "rb", buffering=0) as pipe:
            super().__init__(
                [*self.SERVER, screen, "-displayfd", writable, "-nolisten", "tcp",
                 "-noreset"],  # otherwise the server resets when its last client leaves, and disconnects one that is just joining
                pass_fds=[writable], stdout=subprocess.DEVNULL, stderr=log, env=self.surroundings())
            os.close(writable)
            try:
                return ":" + Lines(pipe).next()
            except StageError as error:
                log.seek(0)
                said = log.read().decode(errors="replace").strip()
                raise StageError(f"the display server does not start ({error}): {said}") from error

    def surroundings(self):
        """The environment in which the server is started."""
        return dict(os.environ)

    def environment(self):
        return {"DISPLAY": self.name}

    def start_window_manager(self, manager="openbox"):
        quiet = {"env": {**os.environ, **self.environment()}, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self.manager = Process([manager], **quiet)
        # A window that is mapped while the window manager takes over the screen may never be shown.
        wait_until(lambda: subprocess.run(["xdotool", "get_desktop"], **quiet, check=False).returncode == 0,
                   "the window manager is there")

    def __exit__(self, *details):
        if self.manager:
            self.manager.__exit__(*details)
        super().__exit__(*details)


class NestedDisplay(Display):
    """A screen in a window on another one (Xephyr). What moves the pointer of the outer screen reaches the inner one as the
    events of a device, with everything that the server does to these: grabs, and which window gets a release.
    """

    SERVER = ("Xephyr", "-screen")

    def __init__(self, width=1280, height=800):
        self.outer = Display(width, height)
        try:
            super().__init__(width, height)
            # Both screens then have the same coordinates.
            wait_until(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "Xephyr"], check=False,
                                              env=self.surroundings(), capture_output=True).returncode == 0,
                       "the inner screen is shown")
        except BaseException:
            self.outer.__exit__()
            raise

    def surroundings(self):
        return {**os.environ, **self.outer.environment()}

    def __exit__(self, *details):
        super().__exit__(*details)
        self.outer.__exit__(*details)


class SessionBus(Process):
    """A private D-Bus session bus, on which the accessibility service can be started."""

    def __init__(self):
        # The socket stays behind when the bus is killed. By default it would be in /tmp, which is shared with the computer.
        super().__init__(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
                          f"--address=unix:tmpdir={os.environ['XDG_RUNTIME_DIR']}"],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.address = Lines(self.child.stdout).next()

    def environment(self):
        return {"DBUS_SESSION_BUS_ADDRESS": self.address}


class SimulatedMac(Process):
    """The simulated Mac, a Mac's controller in software, which is controlled through its standard input."""

    PRIORITY = -15

    def __init__(self, build, machine, *options):
        super().__init__([build / "bin/simulated-mac", "--machine", machine, *options],
                         stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        # Hardware answers whatever else the computer does. A request that is not answered within two seconds would end its
        # client's connection. Only root outside of a user namespace may raise a priority.
        with contextlib.suppress(OSError):
            os.setpriority(os.PRIO_PROCESS, self.child.pid, self.PRIORITY)
        self.machine = machine
        self.lines = Lines(self.child.stdout)
        self.greeting = self.lines.next()

    def tell(self, command):
        """Sends one command and returns the lines of its answer, without the final "ok". A command that waits itself ("await …
        within SECONDS") is given that time in addition.
        """
        waits = re.search(r" within ([\d.]+)", command)
        seconds = PATIENCE_SECONDS + (float(waits.group(1)) if waits else 0)
        self.child.stdin.write((command + "\n").encode())
        self.child.stdin.flush()
        answer = []
        while True:
            line = self.lines.next(seconds)
            if line == "ok" or line.startswith("ok "):
                return answer + ([line[3:]] if len(line) > 3 else [])
            if line.startswith("error"):
                raise StageError(f"the simulated Mac refused \"{command}\": {line}")
            answer.append(line)

    def requests(self):
        """The number of requests that it has received."""
        return int(re.search(r"requests=(\d+)", self.tell("state")[-1]).group(1))

    def await_polls(self, count=1):
        """Waits until that many whole polls have been answered, besides one that may be under way. The requests of a helper
        count as well, so a test in which one runs should wait for one poll more.
        """
        requests = (count + 1) * REQUESTS_OF_A_POLL[self.machine] - 1  # the one under way has sent at least its first
        self.tell(f"await requests {self.requests() + requests} within {PATIENCE_SECONDS + 3 * (count + 1)}")

    def __exit__(self, *details):
        # It may run as root after this process has given up its rights. Then only its own command "quit" can end it.
        if self.running():
            with contextlib.suppress(OSError, StageError):
                self.tell("quit")
            self.child.wait(PATIENCE_SECONDS)
        super().__exit__(*details)


# Begins each line of Qt's log with its severity, so that warnings and errors can be recognised.
LOG_PATTERN = ("%{if-warning}WARNING %{endif}%{if-critical}CRITICAL %{endif}%{if-fatal}FATAL %{endif}"
               "%{if-category}%{category}: %{endif}%{message}")
COMPLAINT = re.compile(r"(WARNING|CRITICAL|FATAL) |.*(\bERROR: \w+Sanitizer|: runtime error: )")
# Warnings of Qt that are not the program's fault: regular expressions, each with the reason.
ALLOWED_COMPLAINTS = {
    r"WARNING qt\.accessibility\.atspi: AtSpiAdaptor::\w+ does not implement \"GetApplicationBusAddress\"":
        "newer clients of at-spi2 ask every program for a bus of its own; Qt has none, and the usual one serves",
    r"WARNING qt\.accessibility\.atspi: Could not find accessible on path":
        "what a test has just seen may go before it is asked about; the test gets an error, and goes on without it",
    r"WARNING qt\.accessibility\.atspi: WARNING Qt AtSpiAdaptor: Accessible invalid":
        "the same, when it goes between two questions of the same test",
    r"WARNING qt\.dbus\.integration: QDBusConnection: name 'org\.a11y\.Bus' had owner ''":
        "the accessibility service comes and goes with its users, which newer versions notice late",
    r"WARNING QSpiApplication::keyEventError  \"org.freedesktop.DBus.Error.NoReply\"":
        "a screen reader on a loaded machine answers later than the tenth of a second that Qt waits before it uses a key",
    r"WARNING Detected locale ": "newer versions say that a computer's language was never set, or is not installed there",
    r"WARNING This plugin does not support raise\(\)": "a program without a screen has no windows that could be raised",
    r"WARNING The X11 connection broke.*\((error|code) 1\)": "a display that goes away is told so, and a test makes one go",
}


class Application(Process):
    """The built program. Its log is kept in memory. If Qt or the QML engine has complained there, leaving the `with` block fails
    the test.
    """

    def __init__(self, build, *arguments, environment=None, scale=None, user=None, **options):
        settings = {**os.environ, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                    "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",  # hides the computer's login manager
                    "LANGUAGE": "fr", "QT_MESSAGE_PATTERN": LOG_PATTERN,
                    "QT_FORCE_STDERR_LOGGING": "1",  # some distributions' Qt writes to the system's journal otherwise
                    **(environment or {})}
        if scale:
            settings["QT_SCALE_FACTOR"] = str(scale)
        self.log_descriptor = os.memfd_create("Fenwhirl's log")  # a file would need a folder that every account may write to
        account = {"user": user, "group": user, "extra_groups": []} if user else {}
        super().__init__([build / "bin/Fenwhirl", *arguments], env=settings, stderr=self.log_descriptor, **account, **options)

    def log(self):
        """What the program has written to its standard error so far."""
        size = os.fstat(self.log_descriptor).st_size
        return os.pread(self.log_descriptor, size, 0).decode("utf-8", "replace")

    def complaints(self):
        """The warnings and errors in its log that are not explicitly allowed."""
        return [line for line in self.log().splitlines() if COMPLAINT.match(line)
                and not any(re.match(allowed, line) for allowed in ALLOWED_COMPLAINTS)]

    def __exit__(self, kind, *details):
        super().__exit__(kind, *details)
        log, complaints = self.log(), self.complaints()
        os.close(self.log_descriptor)
        if kind is Interrupted:
            return
        if kind is not None:
            sys.stderr.write(log)  # it may explain the failure
        elif complaints:
            raise StageError("the application's log has\n" + "\n".join(complaints))

    def window(self):
        """Waits until the main window is shown; returns its X11 window ID."""
        return wait_until(self.window_now, "the main window is shown")

    def window_now(self):
        answer = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Fenwhirl$"],
                                capture_output=True, text=True, check=False)
        return answer.stdout.split()[0] if answer.stdout.split() else None

    def picture(self, file):
        """Saves what the main window shows as a PNG."""
        pathlib.Path(file).parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["import", "-window", self.window(), str(file)], check=True)


def install_helper(build):
    """Installs the helper where the application would install it. Needs to be root of this private namespace."""
    HELPER.parent.mkdir(parents=True, exist_ok=True)
    copy = HELPER.with_suffix(".copy")  # a file that is being executed can be replaced, but not written
    shutil.copy(build / "bin/Fenwhirl", copy)
    os.chown(copy, 0, 0)
    os.chmod(copy, 0o4755)
    copy.rename(HELPER)


def cover_temporary_files(*needed):
    """Mounts an empty /tmp over the computer's in this namespace; the `needed` folders below it stay available.

    Needs mounts of its own.
    """
    kept = [(place, os.open(place, os.O_PATH)) for place in needed
            if place.is_relative_to("/tmp") and not any(place.is_relative_to(other) for other in needed if other != place)]
    where = os.getcwd()
    subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=1777", "tmpfs", "/tmp"], check=True)
    for place, descriptor in kept:
        place.mkdir(parents=True)
        subprocess.run(["mount", "--no-canonicalize", "--rbind", f"/proc/self/fd/{descriptor}", place], check=True,
                       pass_fds=[descriptor])
        os.close(descriptor)
    os.chdir(where)  # the same folder, through the new mount


def can_become(user):
    """Whether this process can become that user: real root can, but a user's own namespace contains only root."""
    with open("/proc/self/uid_map", encoding="ascii") as lines:
        ranges = [[int(word) for word in line.split()] for line in lines]
    return os.geteuid() == 0 and any(first <= user < first + count for first, _, count in ranges)


def become_ordinary_user(user=65534):
    """Gives up root rights permanently, as tests of an ordinary user must. Needs real root."""
    home = SCRATCH / "home"
    runtime = SCRATCH / "user"
    for folder in (home, runtime):
        folder.mkdir(exist_ok=True)
        os.chown(folder, user, user)
    os.setgroups([])
    os.setresgid(user, user, user)
    os.setresuid(user, user, user)
    os.environ.update(HOME=str(home), XDG_RUNTIME_DIR=str(runtime), USER="nobody", LOGNAME="nobody")
