"""Runs a command on behalf of a process that others wait for: passes signals on and leaves no process behind."""

import contextlib
import os
import signal
import time

PASSED_ON = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)


def start(function):
    """Forks a child that runs `function`, which must not return or raise. Returns the child's process number."""
    # Between the fork and the child's own setup, a signal must not run the parent's handler in the child.
    with _blocked():
        child = os.fork()
        if child == 0:
            _run_in_child(function)
    return child


def _run_in_child(function):
    status = 70  # an error in this program (EX_SOFTWARE)
    try:
        for number in PASSED_ON:
            signal.signal(number, signal.SIG_DFL)
        signal.pthread_sigmask(signal.SIG_UNBLOCK, PASSED_ON)
        function()
    except SystemExit as end:
        status = end.code if isinstance(end.code, int) else 1
    except OSError as error:
        os.write(2, f"private-namespace: {error}\n".encode())
        status = 127 if isinstance(error, FileNotFoundError) else 126
    finally:
        os._exit(status)


@contextlib.contextmanager
def _blocked():
    signal.pthread_sigmask(signal.SIG_BLOCK, PASSED_ON)
    try:
        yield
    finally:
        signal.pthread_sigmask(signal.SIG_UNBLOCK, PASSED_ON)


def exit_on_signals():
    """Until the next wait(), signals to end raise SystemExit, so that what was begun is undone."""
    def end(number, _):
        raise SystemExit(128 + number)

    for number in PASSED_ON:
        signal.signal(number, end)


def execute(command):
    """Executes the command with default signal handling, so that Ctrl-C has its usual effect."""
    for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGPIPE, signal.SIGXFSZ):
        signal.signal(number, signal.SIG_DFL)
    os.execvp(command[0], command)


def wait(child):
    """Waits for a child, passing on signals that this process receives, and returns its status as a shell would.

    Meanwhile it reaps orphans that have become children of this process.
    """
    def pass_on(number, _):
        with contextlib.suppress(ProcessLookupError):
            os.kill(child, number)

    for number in PASSED_ON:
        signal.signal(number, pass_on)
    while True:
        ended, status = os.wait()
        if ended == child:
            code = os.waitstatus_to_exitcode(status)
            return code if code >= 0 else 128 - code


def children_of(parents):
    """The processes whose parent is one of `parents`."""
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        with contextlib.suppress(OSError), open(f"/proc/{entry}/stat", encoding="ascii", errors="replace") as file:
            if int(file.read().rpartition(")")[2].split()[1]) in parents:
                found.append(int(entry))
    return found


def end_descendants():
    """Ends all descendants of this process, which must have adopted orphans."""
    pause = 0.001
    while True:
        family = found = {os.getpid()}
        while found:
            found = set(children_of(found)) - family
            family = family | found
        descendants = family - {os.getpid()}
        if not descendants:
            return
        for process in descendants:
            with contextlib.suppress(OSError):
                os.kill(process, signal.SIGKILL)
        with contextlib.suppress(ChildProcessError):
            while os.waitpid(-1, os.WNOHANG)[0] != 0:
                pass
        time.sleep(pause)
        pause = min(2 * pause, 0.05)
