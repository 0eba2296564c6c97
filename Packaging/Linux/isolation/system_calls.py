"""The kernel's calls for namespaces and mounts, which Python 3.11 does not have. Each raises OSError when it fails."""

import ctypes
import fcntl
import os
import socket
import struct

# unshare(2)
NEW_MOUNTS = 0x00020000
NEW_HOST_NAME = 0x04000000
NEW_USERS = 0x10000000
NEW_PROCESSES = 0x20000000
NEW_NETWORK = 0x40000000

# mount(2), umount2(2)
MS_BIND = 0x1000
MS_RECURSIVE = 0x4000
MS_PRIVATE = 0x40000
DETACH = 2

# prctl(2)
_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36

# glibc has no function for it, and its number differs between processors.
_SYS_PIVOT_ROOT = {"aarch64": 41, "armv7l": 218, "i686": 217, "loongarch64": 41, "ppc64": 203, "ppc64le": 203,
                   "riscv64": 41, "s390x": 217, "x86_64": 155}

_libc = ctypes.CDLL(None, use_errno=True)


def _checked(result, what):
    if result < 0:
        number = ctypes.get_errno()
        raise OSError(number, f"{what}: {os.strerror(number)}")


def _text(value):
    return None if value is None else os.fsencode(value)


def unshare(flags):
    _checked(_libc.unshare(ctypes.c_int(flags)), "unshare")


def mount(source, target, kind=None, flags=0, options=None):
    _checked(_libc.mount(_text(source), _text(target), _text(kind), ctypes.c_ulong(flags), _text(options)),
             f"mount on {os.fspath(target)}")


def unmount(target, flags=0):
    _checked(_libc.umount2(_text(target), ctypes.c_int(flags)), f"unmount {os.fspath(target)}")


def pivot_root(new_root, put_old):
    number = _SYS_PIVOT_ROOT[os.uname().machine]
    _checked(_libc.syscall(ctypes.c_long(number), _text(new_root), _text(put_old)), "pivot_root")


def die_with_parent(number):
    """Has this process sent a signal when its parent ends, and ends it now if that has happened already."""
    parent = os.getppid()
    _checked(_libc.prctl(_PR_SET_PDEATHSIG, ctypes.c_ulong(number), 0, 0, 0), "prctl")
    if os.getppid() != parent:
        os.kill(os.getpid(), number)


def adopt_orphans():
    """Makes this process the parent of every descendant that loses its own."""
    _checked(_libc.prctl(_PR_SET_CHILD_SUBREAPER, ctypes.c_ulong(1), 0, 0, 0), "prctl")


def bring_loopback_up():
    """The loopback interface of a new network is down."""
    set_flags, up_and_running = 0x8914, 0x1 | 0x40
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        fcntl.ioctl(any_socket, set_flags, struct.pack("16sh14x", b"lo", up_and_running))
