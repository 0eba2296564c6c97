"""The fixture of the end-to-end tests: a simulated Mac run by root, and Fenwhirl in a window, run by an ordinary user."""

import contextlib
import os
import pathlib
import re
import time
import unittest

import interface
import stage

# The user ID of nobody: an account that exists everywhere and owns nothing.
ORDINARY_USER = 65534


class Scene:
    """Context manager that starts everything and takes Fenwhirl through its introduction, to the dashboard."""

    def __init__(self, machine="MacBookPro11,4", watts=12, user=ORDINARY_USER, helper=True, speed=5):
        self.build = pathlib.Path(os.environ["FENWHIRL_BUILD"])
        self.machine, self.watts, self.user, self.helper, self.speed = machine, watts, user, helper, speed
        self.stack = contextlib.ExitStack()
        self.mac = self.display = self.application = self.screen = None

    def __enter__(self):
        if self.user and not stage.can_become(self.user):
            raise unittest.SkipTest("needs real root, to give up its rights for an ordinary user's")
        try:
            self.mac = self.stack.enter_context(stage.SimulatedMac(
                self.build, self.machine, "--heat", str(self.watts), "--speed", str(self.speed)))
            if self.helper:
                stage.install_helper(self.build)
            if self.user:
                stage.become_ordinary_user(self.user)
            self.display = self.stack.enter_context(stage.Display())
            self.display.start_window_manager()
            os.environ.update(self.display.environment())
            bus = self.stack.enter_context(stage.SessionBus())
            os.environ.update(bus.environment())
            self.application = self.stack.enter_context(stage.Application(self.build))
            self.screen = interface.Interface()
            for button in ("Suivant", "Suivant", "Commencer"):
                self.screen.press(button)
            self.screen.wait_for("Tableau de bord")
        except BaseException:
            self.stack.close()
            raise
        return self

    def __exit__(self, *details):
        return self.stack.__exit__(*details)

    def start_again(self, showing=False):
        """Starts Fenwhirl again with its saved preferences. It stays hidden unless `showing` is set."""
        self.application = self.stack.enter_context(stage.Application(self.build))
        if showing:
            stage.wait_until(self.screen.root, "it is there")
            with stage.Application(self.build) as second:
                second.child.wait(stage.PATIENCE_SECONDS)
            self.screen.wait_for("Tableau de bord")

    # --- Actions of the user ---

    def choose_preset(self, title):
        before = self.screen.texts().count(title)
        self.screen.press("Préréglage")
        stage.wait_until(lambda: self.screen.texts().count(title) > before, "the menu opens")
        self.screen.press(title)

    def open_page(self, title):
        self.screen.press(title)

    # --- What the user sees ---

    def shown_speeds(self):
        """The speeds shown on the gauges, in the order of the fans."""
        speeds = []
        for text in self.screen.texts():
            found = re.fullmatch(r"(\d[\d\s\u00a0\u202f.,']*)\s?tr/min", text)
            if found:
                speeds.append(int(re.sub(r"\D", "", found.group(1))))
        return speeds

    def shown_temperature(self):
        """The main temperature shown, or None when there is none."""
        for text in self.screen.texts():
            found = re.fullmatch(r"(\d+)\s°C", text)
            if found:
                return int(found.group(1))
        return None

    # --- State of the machine ---

    def wait_for_modes(self, mode, what, seconds=stage.PATIENCE_SECONDS):
        """Waits until both fans are in this mode ("automatic" or "manual"); returns how many seconds that took."""
        begin = time.monotonic()
        stage.wait_until(lambda: self.fan(0)[2] == mode and self.fan(1)[2] == mode, what, seconds, 0.01)
        return time.monotonic() - begin

    def requests(self):
        """The number of requests that the controller has received."""
        return self.mac.requests()

    def polls(self, count=1):
        """Waits until that many whole polls have reached the controller, besides one that may be under way."""
        self.mac.await_polls(count)

    def keys(self, prefix):
        return [match.group(1) for match in (re.search(rf"\b({prefix}\S{{3}})\b", line)
                                             for line in self.mac.tell(f"keys {prefix}")) if match]

    def writes(self, start=1):
        """Every write that reached the controller from number `start` on, as (key, value, user ID)."""
        found = []
        for line in self.mac.tell(f"log {start}"):
            write = re.search(r"uid=(\d+) key=(.{4}) ?type=.* value=([-\d.]+) kernel=(\S+) result=(\S+)", line)
            if write:
                found.append((write.group(2), float(write.group(3)), int(write.group(1))))
        return found

    def fan(self, index):
        """Speed, target and mode ("automatic" or "manual") of a fan."""
        state = self.mac.tell("state")[0]
        rpm, target, mode = re.search(rf"fan{index}=([^ ]+)", state).group(1).split("/")
        return float(rpm), float(target), mode
