#!/usr/bin/python3
"""Runs Fenwhirl on the user's own display, driving a simulated Mac; ends with Fenwhirl or with Ctrl-C.

Runs inside Packaging/Linux/private-namespace. The simulated Mac shows its live status line on the terminal and reads its
commands from there ("help" lists them).
"""

import argparse
import contextlib
import os
import pathlib
import signal
import subprocess
import sys
import threading
import time

import session_bus_relay
import stage


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--build", type=pathlib.Path, required=True)
    options.add_argument("--machine", required=True)
    options.add_argument("--heat", required=True)
    options.add_argument("--speed", required=True)
    chosen = options.parse_args()

    # Ctrl-C must reach Fenwhirl only: it then hands the fans back, and needs the simulated Mac for that.
    mac = subprocess.Popen([chosen.build / "bin/simulated-mac", "--machine", chosen.machine, "--heat", chosen.heat,
                            "--speed", chosen.speed], stdin=subprocess.PIPE, preexec_fn=ignore_terminal_signals)
    application = None

    def end(number, _):
        if application is None:
            sys.exit(128 + number)  # what is already running ends with the private namespace
        application.terminate()

    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, end)
    socket = pathlib.Path("/run/fenwhirl/AppleSMC")
    while not socket.exists():
        if mac.poll() is not None:
            return mac.returncode
        time.sleep(0.02)
    environment = dict(os.environ)
    user, bus = session_bus_relay.user_outside(), session_bus_relay.socket_of(os.environ.get("DBUS_SESSION_BUS_ADDRESS"))
    if user is not None and bus is not None:
        environment["DBUS_SESSION_BUS_ADDRESS"] = session_bus_relay.relay(f"{stage.SCRATCH}/session-bus", bus, user)
    application = subprocess.Popen([chosen.build / "bin/Fenwhirl"], stdin=subprocess.DEVNULL, env=environment)
    threading.Thread(target=forward_commands, args=(mac,), daemon=True).start()
    status = application.wait()
    mac.terminate()
    mac.wait()
    return status if status >= 0 else 128 - status


def ignore_terminal_signals():
    for number in (signal.SIGINT, signal.SIGHUP):
        signal.signal(number, signal.SIG_IGN)


def forward_commands(mac):
    """Forwards what is typed on the terminal to the simulated Mac."""
    with contextlib.suppress(OSError):
        for line in sys.stdin:
            mac.stdin.write(line.encode())
            mac.stdin.flush()


if __name__ == "__main__":
    sys.exit(main())
