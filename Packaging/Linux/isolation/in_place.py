"""The substitute for a private namespace where the kernel refuses to make one, as in most containers: root runs in place.

Everything that the command leaves in two fixed folders of the computer, and every process that it leaves running, is
removed at its end. Only one command runs at a time, and only if these folders are free.
"""

import contextlib
import fcntl
import os
import pathlib
import shutil
import signal
import sys
import tempfile

import private_namespace
import supervision
import system_calls as kernel

PLACES = (pathlib.Path("/run/fenwhirl"), pathlib.Path("/Library"))
DISPLAYS = pathlib.Path("/tmp/.X11-unix")
IN_TURN = "FENWHIRL_IN_PLACE"


class Occupied(Exception):
    """One of the folders contains something that is not ours."""


class InPlace:
    """One run of a command in place. The process must be root."""

    def __init__(self, keep_session):
        self.keep_session = keep_session
        self.made = []  # folders that did not exist before, the innermost last
        self.displays = set()
        self.scratch = None

    def run(self, command):
        """Runs the command and returns its status. Raises Occupied when the folders are not free."""
        with self._turn():
            self._check_places()
            kernel.adopt_orphans()
            supervision.exit_on_signals()
            try:
                self._make_places()
                # A child cleans up, and this process does so again after it, because either may be killed.
                return supervision.wait(supervision.start(lambda: self._keep(command)))
            finally:
                self._clean()

    @contextlib.contextmanager
    def _turn(self):
        """Waits for its turn. Locks the folder itself, so that no lock file is left behind."""
        if IN_TURN in os.environ:  # nested in another run, which has the lock
            yield
            return
        os.makedirs(PLACES[0].parent, exist_ok=True)
        folder = os.open(PLACES[0].parent, os.O_RDONLY | os.O_DIRECTORY)
        try:
            try:
                fcntl.flock(folder, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except BlockingIOError:
                print(f"Waiting until another one is done with {PLACES[0]} and {PLACES[1]}…", file=sys.stderr, flush=True)
                fcntl.flock(folder, fcntl.LOCK_EX)
            yield
        finally:
            os.close(folder)

    @staticmethod
    def _check_places():
        for place in PLACES:
            if os.path.lexists(place) and (not place.is_dir() or place.is_symlink() or any(place.iterdir())):
                raise Occupied(f"something lies in {place} already; remove it first if no Fenwhirl uses it")

    def _make_places(self):
        self.displays = _names(DISPLAYS)
        for place in (*PLACES[1:], DISPLAYS):
            if not place.exists():
                place.mkdir()
                self.made.append(place)
        if DISPLAYS in self.made:
            DISPLAYS.chmod(0o1777)
        # Not below /run, where some containers forbid executing programs. Not named Fenwhirl either, because the
        # program protects every application in a folder of that name.
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="in-place-", dir="/tmp"))
        self.scratch.chmod(0o755)

    def _keep(self, command):
        kernel.die_with_parent(signal.SIGTERM)
        kernel.adopt_orphans()
        for name in ("home", "user"):
            (self.scratch / name).mkdir(0o700)
        private_namespace.set_home(str(self.scratch / "home"), keep_display=self.keep_session)
        if not (self.keep_session and os.path.isdir(os.environ.get("XDG_RUNTIME_DIR", ""))):
            os.environ["XDG_RUNTIME_DIR"] = str(self.scratch / "user")
            os.environ.pop("DBUS_SESSION_BUS_ADDRESS", None)
        private_namespace.describe(str(self.scratch), [])
        os.environ[IN_TURN] = "yes"
        status = supervision.wait(supervision.start(lambda: supervision.execute(command)))
        self._clean()
        os._exit(status)

    def _clean(self):
        supervision.end_descendants()
        if self.scratch:
            shutil.rmtree(self.scratch, ignore_errors=True)
        shutil.rmtree(PLACES[0], ignore_errors=True)
        for entry in PLACES[1].iterdir() if PLACES[1].is_dir() else ():
            _remove(entry)
        for name in _names(DISPLAYS) - self.displays:  # left by a display server that was killed
            _remove(DISPLAYS / name)
            _remove(pathlib.Path(f"/tmp/.{name}-lock"))
        for folder in reversed(self.made):
            with contextlib.suppress(OSError):
                folder.rmdir()


def _names(folder):
    return set(os.listdir(folder)) if folder.is_dir() else set()


def _remove(path):
    if path.is_dir() and not path.is_symlink():
        shutil.rmtree(path, ignore_errors=True)
    else:
        path.unlink(missing_ok=True)
