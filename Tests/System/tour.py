#!/usr/bin/python3
"""Walks through Fenwhirl on a virtual display; prints a short table and saves screenshots.

Runs inside Packaging/Linux/private-namespace. The temperatures in the table are read from the screen through the accessibility
tree, and the fans from the simulated Mac.
"""

import argparse
import contextlib
import os
import pathlib
import re
import sys
import time

import interface
import picture_stage
import stage


class Tour:
    def __init__(self, options, stack, scale=1):
        self.options = options
        self.pictures = options.pictures
        self.mac = stack.enter_context(stage.SimulatedMac(
            options.build, options.machine, "--heat", options.heat or "0%", "--speed", "4"))
        display = stack.enter_context(stage.Display(1440, 960, scale))
        display.start_window_manager()
        os.environ.update(display.environment())
        bus = stack.enter_context(stage.SessionBus())
        os.environ.update(bus.environment())
        picture_stage.speak_french()
        self.application = stack.enter_context(stage.Application(options.build, scale=scale))
        self.screen = interface.Interface()
        self.began = time.monotonic()

    # --- The table ---

    def head(self):
        print(f"{'after':>6}  {'step':<44} {'shown':>6}  fans")
        print(f"{'-' * 6}  {'-' * 44} {'-' * 6}  {'-' * 40}")

    def line(self, step):
        temperature = self.temperature()
        shown = f"{temperature} °C" if temperature is not None else "–"
        seconds = time.monotonic() - self.began
        print(f"{seconds:5.0f} s  {step:<44} {shown:>6}  {self.fans()}", flush=True)

    def temperature(self):
        for text in self.screen.texts():
            found = re.fullmatch(r"(\d+)\s°C", text)
            if found:
                return int(found.group(1))
        return None

    def fans(self):
        state = self.mac.tell("state")[0]
        found = re.findall(r"fan(\d+)=([\d.]+)/([\d.]+)/(\w+)", state)
        return ", ".join(f"{float(rpm):.0f} → {float(target):.0f} {'manual' if mode == 'manual' else 'auto'}"
                         for _, rpm, target, mode in found) or "none"

    def first_fan(self):
        """The speed and the target of the first fan."""
        state = self.mac.tell("state")[0]
        found = re.search(r"fan0=([\d.]+)/([\d.]+)/", state)
        return (float(found.group(1)), float(found.group(2))) if found else (0.0, 0.0)

    def picture(self, name):
        self.application.picture(self.pictures / f"{name}.png")

    # --- The walk ---

    def welcome(self):
        self.screen.wait_for("Bienvenue dans Fenwhirl")
        self.picture("onboarding-0")
        self.line("first start: Fenwhirl introduces itself")
        self.screen.press("Suivant")
        self.screen.press("Activer le contrôle")
        self.screen.wait_for("Contrôle activé")
        self.picture("onboarding-1")
        self.line("the helper is installed (privately)")
        self.screen.press("Suivant")
        self.screen.wait_for("Tout est prêt")
        self.picture("onboarding-2")
        self.screen.press("Commencer")
        self.screen.wait_for("Tableau de bord")
        stage.wait_until(lambda: self.temperature() is not None, "a temperature on the dashboard")
        self.picture("dashboard")
        self.line("the dashboard: every fan automatic")
        self.resting_rpm, _ = self.first_fan()

    def heat(self):
        self.screen.press("Préréglage")
        self.screen.press("Jeu")
        self.line("the preset \"Jeu\" is chosen")
        has_fans = self.fans() != "none"
        if has_fans:
            stage.wait_until(lambda: "manual" in self.fans(), "the fans are taken over")
            self.line("the helper has taken the fans over")
        before = self.temperature() or 0
        self.mac.tell("heat 50%")
        self.line("a game starts: half of the processor's power")
        for _ in range(5):
            self.mac.tell("wait 16")
            self.line("it gets warm; the fans follow" if has_fans else "it gets warm; there is no fan")
        after = self.temperature() or 0
        if after <= before:
            raise stage.StageError(f"it did not get warmer on the screen: {before} °C, then {after} °C")
        rpm, target = self.first_fan()
        if has_fans and (abs(rpm - target) > 200 or target <= self.resting_rpm):
            raise stage.StageError(f"the fan did not follow: {rpm} rpm, target {target} rpm")
        self.picture("dashboard-game")
        self.mac.tell("heat 0%")
        for _ in range(2):
            self.mac.tell("wait 24")
            self.line("the game is over; it cools down")
        self.picture("dashboard-after")

    def farewell(self):
        status = self.application.stop()
        print(f"{time.monotonic() - self.began:5.0f} s  {'Fenwhirl ends: the fans are handed back':<44} {'':>6}  "
              f"{self.fans()}", flush=True)
        if status != 0 or "manual" in self.fans():
            raise stage.StageError(f"Fenwhirl ended with status {status}; fans: {self.fans()}")

    def run_all(self):
        self.head()
        self.welcome()
        self.heat()
        self.farewell()


def main(walk=Tour.run_all):
    """Parses the options, starts everything, and runs the walk; returns the exit status."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--pictures", type=pathlib.Path, required=True)
    parser.add_argument("--machine", required=True)
    parser.add_argument("--heat", default="")
    options = parser.parse_args()
    options.pictures.mkdir(parents=True, exist_ok=True)
    stage.end_in_order_when_interrupted()
    try:
        with contextlib.ExitStack() as stack:
            walk(Tour(options, stack))
    except stage.StageError as error:
        print(f"The walk ended early: {error}", file=sys.stderr)
        return 1
    except stage.Interrupted as interruption:
        print("The walk was interrupted.", file=sys.stderr)
        return 128 + interruption.args[0]
    print(f"Pictures: {options.pictures}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
