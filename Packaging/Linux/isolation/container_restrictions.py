"""Imposes the restrictions of an ordinary container: no namespaces, no mounts and few capabilities."""

import contextlib
import ctypes
import errno
import os
import platform
import re
import struct

import system_calls as kernel

NAMESPACES = {
    "user": kernel.NEW_USERS,
    "mount": kernel.NEW_MOUNTS,
    "network": kernel.NEW_NETWORK,
    "processes": kernel.NEW_PROCESSES,
    "all": kernel.NEW_USERS | kernel.NEW_MOUNTS | kernel.NEW_NETWORK | kernel.NEW_PROCESSES | kernel.NEW_HOST_NAME
           | kernel.NEW_MESSAGES | kernel.NEW_CGROUPS | kernel.NEW_CLOCKS,
}
KINDS = (*NAMESPACES, "proc-mount")

# Per processor: its identifier in a filter, then the numbers of its system calls.
AUDIT_ARCH = {"x86_64": 0xC000003E, "aarch64": 0xC00000B7}
CALLS = {
    "x86_64": {"clone": 56, "unshare": 272, "setns": 308, "mount": 165, "umount2": 166, "pivot_root": 155},
    "aarch64": {"clone": 220, "unshare": 97, "setns": 268, "mount": 40, "umount2": 39, "pivot_root": 41},
}
# The numbers of newer calls are the same on every processor.
NEW_CALLS = {"open_tree": 428, "move_mount": 429, "fsopen": 430, "fsconfig": 431, "fsmount": 432, "fspick": 433,
             "mount_setattr": 442, "open_tree_attr": 467}
CLONE3 = 435
X32_CALLS = 0x40000000  # a second table of system calls of the same architecture

LOAD, JUMP_EQUAL, JUMP_GREATER_OR_EQUAL, JUMP_ANY_BIT, RETURN = 0x20, 0x15, 0x35, 0x45, 0x06
RETURN_ERRNO, RETURN_ALLOW = 0x00050000, 0x7FFF0000
NUMBER, ARCHITECTURE, FIRST_ARGUMENT, SECOND_ARGUMENT = 0, 4, 16, 24  # offsets in seccomp_data, little endian

PR_SET_SECCOMP, SECCOMP_MODE_FILTER = 22, 2
PR_CAPBSET_READ, PR_CAPBSET_DROP = 23, 24
PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL = 47, 4
CAPABILITY_VERSION = 0x20080522
CAP_SYS_ADMIN = 21
# The capabilities that common engines leave to root in a container: CHOWN, DAC_OVERRIDE, FOWNER, FSETID, KILL, SETGID,
# SETUID, SETPCAP, NET_BIND_SERVICE, NET_RAW, SYS_CHROOT, MKNOD, AUDIT_WRITE, SETFCAP.
KEPT_CAPABILITIES = (0, 1, 3, 4, 5, 6, 7, 8, 10, 13, 18, 27, 29, 31)


class Refused(Exception):
    pass


def instruction(code, operand, if_true=0, if_false=0):
    return struct.pack("=HBBI", code, if_true, if_false, operand)


def refusal(error):
    return instruction(RETURN, RETURN_ERRNO | error)


def refused_call(number, error=errno.EPERM):
    return instruction(JUMP_EQUAL, number, 0, 1) + refusal(error)


def refused_flags(number, flags, argument=FIRST_ARGUMENT, refuse_zero=False):
    rule = instruction(LOAD, argument)
    if refuse_zero:
        rule += instruction(JUMP_EQUAL, 0, 0, 1) + refusal(errno.EPERM)
    rule += instruction(JUMP_ANY_BIT, flags, 0, 1) + refusal(errno.EPERM) + instruction(RETURN, RETURN_ALLOW)
    return instruction(JUMP_EQUAL, number, 0, len(rule) // 8) + rule


def filter_program(kinds):
    machine = platform.machine()
    if machine not in CALLS:
        raise Refused(f"the system calls of {machine} are not known")
    calls = CALLS[machine]
    namespaces = 0
    for kind in kinds:
        namespaces |= NAMESPACES.get(kind, 0)
    # Calls through another architecture's table would bypass the rules below.
    program = instruction(LOAD, ARCHITECTURE) + instruction(JUMP_EQUAL, AUDIT_ARCH[machine], 1, 0) + refusal(errno.ENOSYS)
    program += instruction(LOAD, NUMBER)
    program += instruction(JUMP_GREATER_OR_EQUAL, X32_CALLS, 0, 1) + refusal(errno.ENOSYS)
    # The flags of clone3() are behind a pointer, which a filter cannot follow. On ENOSYS the C library falls back to
    # clone().
    program += refused_call(CLONE3, errno.ENOSYS)
    if "mount" in kinds or "all" in kinds:
        for number in (calls["mount"], calls["umount2"], calls["pivot_root"], *NEW_CALLS.values()):
            program += refused_call(number)
    # clone() has the child's exit signal in the low bits, where unshare() has CLONE_NEWTIME, and cannot make that
    # namespace.
    program += refused_flags(calls["clone"], namespaces & ~0xFF)
    program += refused_flags(calls["unshare"], namespaces)
    program += refused_flags(calls["setns"], namespaces, SECOND_ARGUMENT, refuse_zero=True)
    return program + instruction(RETURN, RETURN_ALLOW)


def install_filter(kinds):
    program = filter_program(kinds)
    code = ctypes.create_string_buffer(program, len(program))
    header = ctypes.create_string_buffer(struct.pack("@HP", len(program) // 8, ctypes.addressof(code)))
    kernel.prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, ctypes.addressof(header))


def effective_capabilities():
    with open("/proc/self/status", encoding="ascii", errors="replace") as status:
        return int(next(line.split()[1] for line in status if line.startswith("CapEff:")), 16)


def drop_capabilities():
    capability = 0
    with contextlib.suppress(OSError):  # ends at the first capability that does not exist
        while True:
            kernel.prctl(PR_CAPBSET_READ, capability)
            if capability not in KEPT_CAPABILITIES:
                kernel.prctl(PR_CAPBSET_DROP, capability)
            capability += 1
    kernel.prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL)
    kept = effective_capabilities() & sum(1 << capability for capability in KEPT_CAPABILITIES)
    header = ctypes.create_string_buffer(struct.pack("=Ii", CAPABILITY_VERSION, 0))
    # Effective, permitted, inheritable: the low words, then the high ones.
    data = ctypes.create_string_buffer(struct.pack("=6I", kept, kept, 0, 0, 0, 0))
    kernel.capset(header, data)


def same_numbers(path):
    """The mapping that gives every user (or group) of the present user namespace the same number in a new one."""
    with open(path, encoding="ascii") as lines:
        ranges = [line.split() for line in lines]
    return "".join(f"{first} {first} {count}\n" for first, _, count in ranges)


def mounted_procs():
    with open("/proc/self/mountinfo", "rb") as mounts:
        for line in mounts:
            ours, _, file_system = line.partition(b" - ")
            root, place = ours.split()[3:5]
            if root == b"/" and file_system.split()[0] == b"proc":
                yield re.sub(rb"\\([0-7]{3})", lambda octal: bytes([int(octal[1], 8)]), place)


def refuse_fresh_proc():
    """Makes mounting a new /proc impossible. In a user namespace the kernel mounts no /proc that would show more than
    the existing ones. This covers a part of each of them with a mount that cannot be removed, as container engines do,
    too."""
    kernel.unshare(kernel.NEW_MOUNTS)
    kernel.mount(None, "/", flags=kernel.MS_RECURSIVE | kernel.MS_PRIVATE)
    for place in list(mounted_procs()):
        kernel.mount(place + b"/sys", place + b"/sys", flags=kernel.MS_BIND | kernel.MS_RECURSIVE)
    users, groups = same_numbers("/proc/self/uid_map"), same_numbers("/proc/self/gid_map")
    inside, told = os.pipe()
    helper = os.fork()  # stays outside, where it may write the mappings
    if helper == 0:
        status = 1
        try:
            os.read(inside, 1)
            for name, mapping in (("uid_map", users), ("gid_map", groups)):
                with open(f"/proc/{os.getppid()}/{name}", "w", encoding="ascii") as file:
                    file.write(mapping)
            status = 0
        finally:
            os._exit(status)
    kernel.unshare(kernel.NEW_USERS | kernel.NEW_MOUNTS)
    os.write(told, b"x")
    if os.waitpid(helper, 0)[1] != 0:
        raise Refused("the users of the new namespace could not be named")
    for end in (inside, told):
        os.close(end)


def restrict(kinds):
    if "proc-mount" in kinds and not {"mount", "all"} & kinds:
        refuse_fresh_proc()
    if kinds - {"proc-mount"}:
        install_filter(kinds)
    if "all" in kinds:
        drop_capabilities()
