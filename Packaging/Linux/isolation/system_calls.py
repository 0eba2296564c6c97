"""System calls for namespaces and mounts that Python 3.11 does not offer. Each raises OSError on failure."""

import ctypes
import fcntl
import os
import socket
import struct

# unshare(2)
NEW_CLOCKS = 0x00000080
NEW_MOUNTS = 0x00020000
NEW_CGROUPS = 0x02000000
NEW_HOST_NAME = 0x04000000
NEW_MESSAGES = 0x08000000
NEW_USERS = 0x10000000
NEW_PROCESSES = 0x20000000
NEW_NETWORK = 0x40000000

# mount(2), umount2(2)
MS_READ_ONLY = 0x1
MS_NO_SET_UID = 0x2
MS_NO_DEVICES = 0x4
MS_NO_PROGRAMS = 0x8
MS_REMOUNT = 0x20
MS_BIND = 0x1000
MS_RECURSIVE = 0x4000
MS_PRIVATE = 0x40000
DETACH = 2

# prctl(2)
_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36

# glibc has no wrapper for pivot_root, and its number differs between processors.
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


def enter_namespace(descriptor, flag):
    _checked(_libc.setns(ctypes.c_int(descriptor), ctypes.c_int(flag)), "setns")


def mount(source, target, kind=None, flags=0, options=None):
    _checked(_libc.mount(_text(source), _text(target), _text(kind), ctypes.c_ulong(flags), _text(options)),
             f"mount on {os.fspath(target)}")


def unmount(target, flags=0):
    _checked(_libc.umount2(_text(target), ctypes.c_int(flags)), f"unmount {os.fspath(target)}")


def pivot_root(new_root, put_old):
    number = _SYS_PIVOT_ROOT[os.uname().machine]
    _checked(_libc.syscall(ctypes.c_long(number), _text(new_root), _text(put_old)), "pivot_root")


def prctl(option, *arguments):
    words = [ctypes.c_ulong(argument) for argument in (*arguments, 0, 0, 0, 0)[:4]]
    result = _libc.prctl(ctypes.c_int(option), *words)
    _checked(result, "prctl")
    return result


def capset(header, data):
    """Takes both structures as bytes."""
    _checked(_libc.capset(header, data), "capset")


def die_with_parent(number):
    """Sends this process a signal when its parent ends, or at once if the parent has already ended."""
    parent = os.getppid()
    prctl(_PR_SET_PDEATHSIG, number)
    if os.getppid() != parent:
        os.kill(os.getpid(), number)


def adopt_orphans():
    """Makes this process the parent of every descendant that loses its own parent."""
    prctl(_PR_SET_CHILD_SUBREAPER, 1)


def bring_loopback_up():
    """Brings up the loopback interface, which is down in a new network namespace."""
    set_flags, up_and_running = 0x8914, 0x1 | 0x40
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        fcntl.ioctl(any_socket, set_flags, struct.pack("16sh14x", b"lo", up_and_running))
