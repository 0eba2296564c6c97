"""Lets a program that believes itself to be root reach its user's session bus.

In a user namespace that was created without root rights, every program sees itself as root, while the bus still sees the user. A
client authenticates with the user ID that it sees, and the bus rejects it. This relay sits between them and replaces that ID by
the one that the bus expects. Everything after that passes through unchanged, including file descriptors.
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
    """Returns our user ID outside the user namespace, or None where it is the same as inside."""
    with open("/proc/self/uid_map", encoding="ascii") as lines:
        inside, outside, _ = (int(word) for word in lines.readline().split())
    return outside if inside != outside else None


def socket_of(address):
    """Returns the socket address of a bus address such as "unix:path=…" or "unix:abstract=…", or None for other kinds."""
    found = re.match(r"unix:(?:[^;]*,)?(path|abstract)=([^,;]+)", address or "")
    if not found:
        return None
    return ("\0" if found.group(1) == "abstract" else "") + found.group(2)


def relay(path, bus, user):
    """Listens on `path` and relays every connection to `bus`, authenticated as `user`. Returns the address for clients."""
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
                # A client sends nothing further before its authentication is answered, so the line arrives in one piece.
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
