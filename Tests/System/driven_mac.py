"""A simulated Mac whose fans Fenwhirl drives without a screen: as an ordinary user, with the settings in its preferences. The
test itself stays root, so that it can stop and kill the program's processes.

Tests judge only what the machine does: the mode and the target of each fan, read from the machine's keys.
"""

import base64
import contextlib
import json
import os
import pathlib
import re
import signal
import time

import stage
from helper_stage import NOBODY, OLDER_MAC, processes, require_real_root

NEWER_MAC = "AppleSilicon"  # has mode keys, which can be written only while the unlock flag is set
HEADLINE_KEYS = {OLDER_MAC: "TCXC", NEWER_MAC: "Tp01"}
# From the cause to the safe state: three polls and a helper run. A busy computer needs longer; the long runs have the computer
# for themselves. Both are below the ten seconds after which any refused command is repeated.
REACTION_SECONDS = stage.rounds(9, 6)
END_SECONDS = 20  # the same, when the program has ended, is stopped, or has only just been started
LOW_RPM = 2400  # above the minimum of every fan of both machines, and far below the maximum
GUARD = "fenwhirl-guard"


def constant(rpm):
    return {"mode": "constant", "constantRPM": rpm, "sensorKey": "", "startTemp": 50, "maxTemp": 90}


def curve(start, end):
    return {"mode": "sensor", "constantRPM": 3000, "sensorKey": "", "startTemp": start, "maxTemp": end}


# Curves that drive the fans even while the machine is cool: at 60 °C, halfway between minimum and maximum.
GAME = {0: curve(40, 80), 1: curve(40, 80)}
SLOW = {0: constant(LOW_RPM), 1: constant(LOW_RPM)}


class DrivenMac:
    """Context manager for the simulated Mac with the helper installed. The test starts Fenwhirl."""

    def __init__(self, machine=OLDER_MAC, settings=None, celsius=60, alerts=True, speed=0):
        require_real_root()
        self.build = pathlib.Path(os.environ["FENWHIRL_BUILD"])
        self.machine, self.settings, self.alerts, self.speed = machine, settings or {}, alerts, speed
        self.headline, self.first_celsius = HEADLINE_KEYS[machine], celsius
        self.stack = contextlib.ExitStack()
        self.home = stage.SCRATCH / "home"
        self.runtime = stage.SCRATCH / "user"
        self.mac = self.application = None
        self.requests_before = 0  # those that came before the program's start

    def __enter__(self):
        try:
            self.mac = self.stack.enter_context(stage.SimulatedMac(
                self.build, self.machine, "--heat", "12", "--speed", str(self.speed)))
            self.tell(f"unlock {100 if self.machine == NEWER_MAC else 0}")
            self.heat(self.first_celsius)
            stage.install_helper(self.build)
            for folder in (self.home, self.runtime):
                folder.mkdir(exist_ok=True)
                os.chown(folder, NOBODY, NOBODY)
            self.limits = {fan: (self.value(f"F{fan}Mn"), self.value(f"F{fan}Mx")) for fan in self.fans()}
            self.save()
        except BaseException:
            self.stack.close()
            raise
        return self

    def __exit__(self, *details):
        result = self.stack.__exit__(*details)
        self.clear_away()
        return result

    def clear_away(self):
        """Ends the guards and helpers that are left, so that none of them reaches the next machine of this test."""
        def are_gone():
            left = self.running(GUARD) + self.running("FenwhirlHelper")
            self.signal(left, signal.SIGKILL)  # again, because a guard may have started a helper meanwhile
            return not left
        stage.wait_until(are_gone, "guards and helpers end")

    # --- The program and its processes ---

    def save(self):
        """Writes the preferences for the next start of Fenwhirl."""
        text = json.dumps({str(fan): setting for fan, setting in self.settings.items()})
        preferences = {"didOnboard": True, "language": "fr", "brenor.update.lastCheck": time.time(),
                       "alertsEnabled": self.alerts,
                       "settings": {"data": base64.b64encode(text.encode()).decode()}}
        file = self.home / ".config/com.fenwhirl.app/preferences.json"
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(json.dumps(preferences), encoding="utf-8")
        for path in (self.home / ".config", file.parent, file):
            os.chown(path, NOBODY, NOBODY)

    def start(self):
        """Starts Fenwhirl in this session, in its own process group, without waiting for anything."""
        environment = {"HOME": str(self.home), "XDG_RUNTIME_DIR": str(self.runtime), "USER": "nobody", "LOGNAME": "nobody",
                       "QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software",
                       "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "0", "QT_LOGGING_RULES": "qt.qpa.*=false;qt.core.qobject.connect=false",
                       "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
        self.requests_before = self.requests()
        self.application = self.stack.enter_context(stage.Application(self.build, environment=environment, user=NOBODY,
                                                                       start_new_session=False, process_group=0))
        return self

    def drive(self):
        """Starts Fenwhirl and waits until every fan is under manual control."""
        self.start()
        self.wait_for("manual", "every fan under manual control", stage.PATIENCE_SECONDS)
        return self

    def settle(self):
        """Waits until the first poll is over: the machine has been read, and the requests have stopped."""
        def is_quiet():
            before = self.requests()
            time.sleep(0.3)
            return before > self.requests_before + 100 and self.requests() == before
        stage.wait_until(is_quiet, "the first poll ends")
        return self

    def running(self, name):
        return [process for process, _, found in processes() if found == name]

    def kill_everything(self):
        """Kills the application and its guard, without giving either time to react."""
        stage.wait_until(lambda: self.running(GUARD), "the guard runs")
        # The program is stopped first, because a running one would replace its guard. Stopping the guard instead would not help:
        # it would be woken by the end of its parent.
        self.application.child.send_signal(signal.SIGSTOP)
        self.signal(self.running(GUARD), signal.SIGKILL)
        self.application.stop(signal.SIGKILL)

    @staticmethod
    def signal(numbers, how):
        for number in numbers:
            with contextlib.suppress(ProcessLookupError):
                os.kill(number, how)

    # --- The machine ---

    def tell(self, command):
        return self.mac.tell(command)

    def heat(self, celsius):
        """Sets the main temperature from now on."""
        self.tell(f"set {self.headline} {celsius}")

    def remove_temperatures(self):
        for line in self.tell("keys T"):
            if found := re.match(r"\d+ (T\S{3}) ", line):
                self.tell(f"vanish {found.group(1)}")

    def value(self, key):
        return float(re.search(r"value=(\S+)", self.tell(f"get {key}")[-1]).group(1))

    def requests(self):
        return self.mac.requests()

    def polls(self, count=1):
        """Waits until Fenwhirl has read the whole machine that many more times."""
        self.mac.await_polls(count)

    def last_write(self):
        return int(re.search(r"writes=(\d+)", self.tell("state")[-1]).group(1))

    def await_write(self, key, since):
        """Waits for the first write of a key after the write with that number; returns its own number."""
        answer = self.tell(f"await write {key} since {since} within {stage.PATIENCE_SECONDS}")[-1]
        return int(re.search(r"write (\d+)", answer).group(1))

    def take_manual_control(self, fan, rpm):
        """Takes a fan under manual control, as another fan-control program would."""
        if self.machine == OLDER_MAC:
            self.tell(f"write FS! {int(self.value('FS!')) | 1 << fan}")
        else:
            self.tell("write Ftst 1")
            stage.wait_until(lambda: "unlock=open" in self.tell("state")[-1], "manual control is unlocked")
            self.tell(f"write F{fan}Md 1")
        self.tell(f"write F{fan}Tg {rpm}")

    def fans(self):
        """Target and mode ("automatic" or "manual") of each fan."""
        modes = re.findall(r"\bfan(\d+)=[^ ]+/(\w+)", self.tell("state")[-1])
        return {int(fan): (self.value(f"F{fan}Tg"), mode) for fan, mode in modes}

    def wait_for(self, mode, what, seconds, fans=None):
        """Waits until these fans (default: all) are in this mode; returns how many seconds that took."""
        begin = time.monotonic()
        stage.wait_until(lambda: all(found == mode for fan, (_, found) in self.fans().items() if fans is None or fan in fans),
                         lambda: f"{what}; there is {self.fans()}", seconds, 0.02)
        return time.monotonic() - begin

    def is_cooled(self):
        """Whether every fan runs at its maximum or is controlled by the firmware."""
        return all(mode == "automatic" or target >= self.limits[fan][1] - 1 for fan, (target, mode) in self.fans().items())

    def is_left_in_order(self, settings=None):
        """Whether every manual fan is at the constant speed that was set for it."""
        settings = self.settings if settings is None else settings

        def at_its_constant(fan, target):
            setting = settings.get(fan)
            if setting is None or setting["mode"] != "constant":
                return False
            least, most = self.limits[fan]
            return abs(min(most, max(setting["constantRPM"], least)) - target) <= 1

        return all(mode == "automatic" or at_its_constant(fan, target) for fan, (target, mode) in self.fans().items())

    def wait_until_left_in_order(self, seconds=END_SECONDS):
        stage.wait_until(self.is_left_in_order, lambda: f"no fan is left behind; there is {self.fans()}", seconds)
