"""A computer with several logged-in users, and a fake login manager that tests control."""

import base64
import contextlib
import json
import os
import pathlib
import re
import subprocess
import time

import stage
from helper_stage import require_real_root

# The IDs of two unprivileged accounts that exist everywhere: a bus rejects a user that it cannot look up.
FIRST, SECOND = 65534, 1
# Approximate numbers of requests that a start, until its first poll, and a later poll send to this Mac's controller.
START_REQUESTS, POLL_REQUESTS = 850, 94
LOGIND = pathlib.Path(__file__).with_name("fake_logind.py")
BUS = """<busconfig>
  <type>system</type>
  <listen>unix:path={path}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
"""


class Computer:
    """Context manager for a simulated Mac with the helper installed. Tests start the bus, the login manager, and Fenwhirl for each
    user that logs in; nothing reads the screen.
    """

    def __init__(self):
        self.build = pathlib.Path(os.environ["FENWHIRL_BUILD"])
        self.stack = contextlib.ExitStack()
        self.address = "unix:path=/nonexistent"
        self.mac = self.logind = self.answers = None
        self.running = 0

    def __enter__(self):
        require_real_root()
        try:
            self.mac = self.stack.enter_context(stage.SimulatedMac(self.build, "MacBookPro11,4", "--heat", "12"))
            stage.install_helper(self.build)
            os.environ.update(self.stack.enter_context(stage.Display()).environment())
        except BaseException:
            self.stack.close()
            raise
        return self

    def __exit__(self, *details):
        return self.stack.__exit__(*details)

    def start_bus(self):
        socket = stage.SCRATCH / "system-bus"
        configuration = stage.SCRATCH / "system-bus.conf"
        configuration.write_text(BUS.format(path=socket), encoding="utf-8")
        bus = self.stack.enter_context(stage.Process(
            ["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile", "--print-address=1"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL))  # it warns about limits that it cannot raise
        self.address = stage.Lines(bus.child.stdout).next()

    def start_logind(self, *words):
        self.start_bus()
        self.logind = self.stack.enter_context(stage.Process(
            ["/usr/bin/python3", "-B", LOGIND, self.address, *words], stdin=subprocess.PIPE, stdout=subprocess.PIPE))
        self.answers = stage.Lines(self.logind.child.stdout)
        assert self.answers.next() == "READY"

    def switch_to(self, session):
        self.logind.child.stdin.write(f"front {session}\n".encode())
        self.logind.child.stdin.flush()
        assert self.answers.next() == "OK"

    def sleep(self):
        """Announces a sleep; returns for how many seconds inhibitors delayed it."""
        self.logind.child.stdin.write(b"sleep\n")
        self.logind.child.stdin.flush()
        word, seconds = self.answers.next().split()
        assert word == "OK"
        return float(seconds)

    def wake(self):
        self.logind.child.stdin.write(b"wake\n")
        self.logind.child.stdin.flush()
        assert self.answers.next() == "OK"

    def log_in(self, user, rpm=None):
        """Starts Fenwhirl for a user, set to run both fans at `rpm`, or along a curve without it."""
        home, runtime = (stage.SCRATCH / f"{what}-{user}" for what in ("home", "user"))
        preferences = home / ".config/com.fenwhirl.app/preferences.json"
        preferences.parent.mkdir(parents=True, exist_ok=True)
        setting = {"mode": "constant" if rpm else "sensor", "constantRPM": rpm or 0, "sensorKey": "", "startTemp": 20,
                   "maxTemp": 90}
        settings = base64.b64encode(json.dumps({"0": setting, "1": setting}).encode()).decode()
        preferences.write_text(json.dumps({"didOnboard": True, "brenor.update.lastCheck": time.time(),
                                           "settings": {"data": settings}}), encoding="utf-8")
        runtime.mkdir(mode=0o700, exist_ok=True)
        subprocess.run(["chown", "-R", f"{user}:{user}", home, runtime], check=True)
        before = self.requests()
        application = self.stack.enter_context(stage.Application(self.build, user=user, environment={
            "HOME": str(home), "XDG_RUNTIME_DIR": str(runtime), "XDG_SESSION_ID": "",
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent", "DBUS_SYSTEM_BUS_ADDRESS": self.address}))
        self.running += 1
        self.mac.tell(f"await requests {before + START_REQUESTS} within 30")
        return application

    def requests(self):
        return int(re.search(r"requests=(\d+)", self.mac.tell("state")[0]).group(1))

    def fans(self):
        """Mode and target of both fans. The target is None where the mode is automatic."""
        state = self.mac.tell("state")[0]
        found = (text.split("/") for text in re.findall(r"fan\d=([^ ]+)", state))
        return [(mode, float(target) if mode == "manual" else None) for _, target, mode in found]

    def wait_for(self, mode, target=None):
        stage.wait_until(lambda: self.fans() == [(mode, target)] * 2, lambda: f"{mode} {target}; it is {self.fans()}",
                         seconds=2 * stage.PATIENCE_SECONDS)

    def let_poll(self):
        """Waits until every application has polled about twice."""
        self.mac.tell(f"await requests {self.requests() + 2 * POLL_REQUESTS * self.running} within 60")

    def writes(self):
        return [line for line in self.mac.tell("log") if line.startswith("write ")]

    def hand_backs(self):
        """Every write that made a manual fan automatic."""
        found, manual = [], 0
        for line in self.writes():
            mask = re.search(r"key=FS! .* value=(\d+)", line)
            if mask:
                if manual & ~int(mask.group(1)):
                    found.append(line)
                manual = int(mask.group(1))
        return found

    def speeds(self):
        """The speeds that were sent, in order, without consecutive repetitions."""
        sent = []
        for line in self.writes():
            found = re.search(r"key=F\dTg type=.* value=([\d.]+)", line)
            if found and sent[-1:] != [float(found.group(1))]:
                sent.append(float(found.group(1)))
        return sent
