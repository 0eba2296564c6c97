#!/usr/bin/python3
"""Fenwhirl on the person's own display, with a simulated Mac behind it; ends with Fenwhirl or with Ctrl-C.

Runs inside Packaging/Linux/private-namespace. The simulated Mac shows its live line on the terminal and takes its commands
there ("help" lists them).
"""

import argparse
import pathlib
import signal
import subprocess
import sys
import time


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--build", type=pathlib.Path, required=True)
    options.add_argument("--machine", required=True)
    options.add_argument("--heat", required=True)
    options.add_argument("--speed", required=True)
    chosen = options.parse_args()

    mac = subprocess.Popen([chosen.build / "bin/simulated-mac", "--machine", chosen.machine, "--heat", chosen.heat,
                            "--speed", chosen.speed])
    socket = pathlib.Path("/run/fenwhirl/AppleSMC")
    while not socket.exists():
        if mac.poll() is not None:
            return mac.returncode
        time.sleep(0.02)
    application = subprocess.Popen([chosen.build / "bin/Fenwhirl"], stdin=subprocess.DEVNULL)
    # Ctrl-C reaches all three of us; Fenwhirl then hands the fans back, and the simulated Mac has to outlive that.
    signal.signal(signal.SIGINT, signal.SIG_IGN)
    status = application.wait()
    mac.terminate()
    mac.wait()
    return status if status >= 0 else 128 - status


if __name__ == "__main__":
    sys.exit(main())
