"""Runs a command in its own namespaces: with the computer's files, but an empty /run, an empty /Library and an empty home.

Where the kernel allows it, process numbers, the host name and the network are its own, too.
"""

import contextlib
import errno
import os
import pathlib
import signal
import stat

import supervision
import system_calls as kernel

# Where the new root is assembled, and the top-level folders that it does not take over from the computer.
NEW_ROOT = "/mnt"
REPLACED_FOLDERS = ("run", "Library", "proc", "mnt", "lost+found")


class CannotBeMade(Exception):
    """The kernel, or its configuration, does not allow the namespaces."""


class PrivateNamespace:
    """One attempt to make the namespaces. `own_processes` requests a PID namespace."""

    def __init__(self, keep_session, own_processes, way_to):
        self.keep_session, self.own_processes, self.way_to = keep_session, own_processes, way_to
        self.own = ["mounts"]  # the namespaces that could be made

    def run(self, command):
        """Runs the command in new namespaces and returns its status. Raises CannotBeMade if nothing could be run."""
        progress, said = os.pipe()
        may_go_on, go_on = os.pipe()
        child = supervision.start(lambda: self._enter(command, said, may_go_on))
        os.close(said)
        os.close(may_go_on)
        with os.fdopen(progress, "rb", buffering=0) as answers, os.fdopen(go_on, "wb", buffering=0) as permission:
            # The child writes "u" when it has made a user namespace and waits for its mappings, and "." when all is
            # ready.
            word = answers.read(1)
            if word == b"u":
                _map_users(child)
                permission.write(b".")
                word = answers.read(1)
            if word != b".":
                reason = answers.read().decode(errors="replace")
                supervision.wait(child)
                raise CannotBeMade(reason or "it ended before it was made")
        return supervision.wait(child)

    # --- The child: enters new namespaces, then stays to pass signals on ---

    def _enter(self, command, said, may_go_on):
        kernel.die_with_parent(signal.SIGKILL)
        try:
            self._leave_namespaces(said, may_go_on)
        except OSError as error:
            _refuse(said, error)
        # A PID namespace begins with the next child, which becomes its first process.
        first = supervision.start(lambda: self._settle(command, said))
        os.close(said)
        os._exit(supervision.wait(first))

    def _leave_namespaces(self, said, may_go_on):
        try:
            # Root needs no user namespace. Others get the right to make the rest by making one first.
            kernel.unshare(kernel.NEW_MOUNTS)
        except PermissionError:
            kernel.unshare(kernel.NEW_USERS)
            os.write(said, b"u")
            if not os.read(may_go_on, 1):
                raise OSError(errno.EPERM, "no user numbers were given") from None
            kernel.unshare(kernel.NEW_MOUNTS)
        self._try_to_leave(kernel.NEW_HOST_NAME, "name")
        if not self.keep_session:
            self._try_to_leave(kernel.NEW_NETWORK, "network")
        if self.own_processes:
            kernel.unshare(kernel.NEW_PROCESSES)
            self.own.append("processes")

    def _try_to_leave(self, flag, what):
        with contextlib.suppress(OSError):
            kernel.unshare(flag)
            self.own.append(what)

    # --- The first process of the namespaces: sets up the file system, then stays until the command has ended ---

    def _settle(self, command, said):
        kernel.die_with_parent(signal.SIGKILL)
        if not self.own_processes:
            kernel.adopt_orphans()
        where = os.getcwd()
        try:
            kernel.mount(None, "/", flags=kernel.MS_PRIVATE | kernel.MS_RECURSIVE)
            self._make_root()
        except OSError as error:
            _refuse(said, error)
        os.chdir(where)
        self._set_environment()
        os.write(said, b".")
        os.close(said)
        child = supervision.start(lambda: supervision.execute(command))
        status = supervision.wait(child)
        if not self.own_processes:
            supervision.end_descendants()
        os._exit(status)

    def _make_root(self):
        root = pathlib.Path(NEW_ROOT)
        # The new root hides what is at NEW_ROOT, which is therefore opened first and bind-mounted through its
        # descriptor. The recursive bind mount includes the new root, which is mounted on it, so that copy is unmounted
        # again.
        hidden = os.open(root, os.O_PATH | os.O_DIRECTORY)
        _mount_empty(root)
        (root / "mnt").mkdir()
        kernel.mount(f"/proc/self/fd/{hidden}", root / "mnt", flags=kernel.MS_BIND | kernel.MS_RECURSIVE)
        os.close(hidden)
        kernel.unmount(root / "mnt")
        _show_content(pathlib.Path("/"), root, REPLACED_FOLDERS)
        for name in ("run", "Library", "proc", ".before"):
            (root / name).mkdir()
        if not self.keep_session:
            _make_reachable(self.way_to, root)
        _mount_empty(root / "run")
        _mount_empty(root / "Library")
        (root / "run/home").mkdir(0o700)
        _make_open_folder(root / "run/lock")
        self._bring_the_session_along(root)
        if not self.keep_session:
            # Displays have small numbers, so two runs that start a display at the same moment would choose the same
            # one.
            _make_open_folder(pathlib.Path("/tmp/.X11-unix"))
            _mount_empty(root / "tmp/.X11-unix", "1777")
            # A display server compiles its keymap into a file named after the display's number. With a network of its
            # own, each run has a display 0, and servers that start together would remove each other's file, and end.
            keymaps = root / "var/lib/xkb"
            if keymaps.is_dir():
                _mount_empty(keymaps)
            if "network" in self.own:
                kernel.bring_loopback_up()
        if self.own_processes:
            kernel.mount("proc", root / "proc", "proc")
        else:
            kernel.mount("/proc", root / "proc", flags=kernel.MS_BIND | kernel.MS_RECURSIVE)
        kernel.pivot_root(root, root / ".before")
        kernel.unmount("/.before", kernel.DETACH)
        os.rmdir("/.before")

    def _bring_the_session_along(self, root):
        runtime = os.environ.get("XDG_RUNTIME_DIR", "")
        if self.keep_session and runtime.startswith("/run/") and os.path.isdir(runtime):
            inside = pathlib.Path(f"{root}{runtime}")
            inside.mkdir(parents=True)
            kernel.mount(runtime, inside, flags=kernel.MS_BIND | kernel.MS_RECURSIVE)
        else:
            (root / "run/user").mkdir(0o700)

    def _set_environment(self):
        set_home("/run/home", keep_display=self.keep_session)
        if not (self.keep_session and os.path.isdir(os.environ.get("XDG_RUNTIME_DIR", ""))):
            os.environ["XDG_RUNTIME_DIR"] = "/run/user"
            os.environ.pop("DBUS_SESSION_BUS_ADDRESS", None)
        describe("/run", self.own)


def set_home(home, keep_display):
    """Makes `home` the home folder, and clears the variables that point into the user's own."""
    # The display's key is in the user's own home, so name its path explicitly.
    key = os.path.join(os.environ.get("HOME", ""), ".Xauthority")
    if keep_display and "XAUTHORITY" not in os.environ and os.path.isfile(key):
        os.environ["XAUTHORITY"] = key
    os.environ["HOME"] = home
    for name in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"):
        os.environ.pop(name, None)


def describe(scratch, own):
    """Describes to the command, in its environment, its scratch folder and which namespaces are its own."""
    os.environ["FENWHIRL_SCRATCH"] = scratch
    os.environ["FENWHIRL_OWN"] = " ".join(own)
    os.environ["FENWHIRL_NAMESPACE_INIT"] = str(os.getpid())


def _refuse(said, error):
    os.write(said, b"!" + str(error).encode())
    os._exit(1)


def _map_users(child):
    """Writes the mappings of a child's user namespace: all our IDs if allowed, otherwise only our own, as root."""
    try:
        for name in ("uid_map", "gid_map"):
            with open(f"/proc/self/{name}", encoding="ascii") as own:
                ranges = [line.split() for line in own]
            _write(f"/proc/{child}/{name}", "".join(f"{first} {first} {count}\n" for first, _, count in ranges))
    except PermissionError:
        # The kernel accepts a group mapping of an ordinary user only after this.
        _write(f"/proc/{child}/setgroups", "deny")
        _write(f"/proc/{child}/uid_map", f"0 {os.geteuid()} 1\n")
        _write(f"/proc/{child}/gid_map", f"0 {os.getegid()} 1\n")


def _write(path, text):
    with open(path, "w", encoding="ascii") as file:
        file.write(text)


def _mount_empty(place, mode="0755"):
    kernel.mount("tmpfs", place, "tmpfs", options=f"mode={mode}")


def _make_open_folder(place):
    with contextlib.suppress(FileExistsError):
        place.mkdir()
        place.chmod(0o1777)


def _show_content(folder, place, but):
    """Makes the contents of a folder visible at `place`, too, except for the entries with these names."""
    for entry in os.scandir(folder):
        if entry.name in but:
            continue
        shown = place / entry.name
        if entry.is_symlink():
            os.symlink(os.readlink(entry.path), shown)
        elif entry.is_dir():
            shown.mkdir()
            kernel.mount(entry.path, shown, flags=kernel.MS_BIND | kernel.MS_RECURSIVE)
        elif entry.is_file():
            shown.touch()
            kernel.mount(entry.path, shown, flags=kernel.MS_BIND)


def _make_reachable(path, root):
    """Opens a path to the project for other users, as whom some commands run.

    They may not be allowed to enter the folders that contain the project, for example /root. In the new root, each of
    these is replaced by one that everybody may enter, with the same contents.
    """
    folder = pathlib.Path("/")
    for name in pathlib.Path(path).parts[1:]:
        folder = folder / name
        inside = pathlib.Path(f"{root}{folder}")
        if not inside.stat().st_mode & stat.S_IXOTH:
            _mount_empty(inside)
            _show_content(folder, inside, ())
