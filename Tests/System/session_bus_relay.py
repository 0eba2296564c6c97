"""Lets a program that believes itself to be root reach its user's session bus.

In a namespace made without root rights every program is root by its own account and still the user by the bus's. A client
introduces itself with the number that it sees, and the bus refuses it. This relay stands between them and puts the number
in which the bus knows the user; everything after that passes through untouched, file descriptors included.
"""

import contextlib
import os
import re
import socket
import threading

PIECE = 65536
DESCRIPTORS = 32
INTRODUCTION = re.compile(rb"AUTH EXTERNAL [0-9a-f]+\r\n")


def user_outside():
    """The number that the computer knows us by, or None where it is the one that we see."""
    with open("/proc/self/uid_map", encoding="ascii") as lines:
        inside, outside, _ = (int(word) for word in lines.readline().split())
    return outside if inside != outside else None


def socket_of(address):
    """Where a bus address of the kind "unix:path=…" or "unix:abstract=…" leads, or None."""
    found = re.match(r"unix:(?:[^;]*,)?(path|abstract)=([^,;]+)", address or "")
    if not found:
        return None
    return ("\0" if found.group(1) == "abstract" else "") + found.group(2)


def relay(path, bus, user):
    """Listens at `path` and leads whoever comes to `bus`. Returns the address to give to clients."""
    listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
    listener.bind(path)
    listener.listen()
    threading.Thread(target=_accept, args=(listener, bus, b"AUTH EXTERNAL " + str(user).encode().hex().encode() + b"\r\n"),
                     daemon=True).start()
    return f"unix:path={path}"


def _accept(listener, bus, introduction):
    while True:
        client, _ = listener.accept()
        server = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        try:
            server.connect(bus)
        except OSError:
            client.close()
            server.close()
            continue
        threading.Thread(target=_pass_on, args=(client, server, introduction), daemon=True).start()
        threading.Thread(target=_pass_on, args=(server, client, None), daemon=True).start()


def _pass_on(source, target, introduction):
    with contextlib.suppress(OSError):
        while True:
            data, descriptors, _, _ = socket.recv_fds(source, PIECE, DESCRIPTORS)
            if not data:
                break
            if introduction:
                # A client waits for the answer to its introduction before it says anything else, so it comes whole.
                data, changed = INTRODUCTION.subn(introduction, data)
                if changed:
                    introduction = None
            try:
                if descriptors:
                    sent = socket.send_fds(target, [data], descriptors)
                    data = data[sent:]
                target.sendall(data)
            finally:
                for descriptor in descriptors:
                    os.close(descriptor)
    with contextlib.suppress(OSError):
        target.shutdown(socket.SHUT_WR)
