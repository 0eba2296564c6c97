"""Randomised tests of the built programs against their safety promises:

- From 92 °C on, and without a temperature, no fan is manual.
- When the program has ended or is stopped, only fans at the constant speed set for them are manual.
- With heat alerts on and the threshold reached, every fan is at its maximum or controlled by the firmware.
- Otherwise, and when nothing is wrong any more, the fans do what the user set.

In each run (a "life") several things go wrong one after another; then one promise is checked. Only the modes and targets of the
machine are judged. Every life has a number, which is its random seed.
"""

import random
import signal
import time
import unittest

import stage
from driven_mac import END_SECONDS, LOW_RPM, NEWER_MAC, OLDER_MAC, REACTION_SECONDS, DrivenMac, constant, curve

REPETITION_SECONDS = 12  # within this time a speed that was refused, or changed by another program, is sent again
REST_SECONDS = 24
SETTLED_SECONDS = 2.5  # a state that lasts this long has survived a poll, and counts as permanent
COOL = 60


class Life:
    """One run: a machine with random settings, the faults that happen to it, and a log of them."""

    def __init__(self, number):
        self.chance = random.Random(number)
        self.number = number
        machine = self.chance.choice((OLDER_MAC, NEWER_MAC))
        settings = {fan: self.setting() for fan in (0, 1) if self.chance.random() < 0.8}
        self.driven = DrivenMac(machine, settings)
        self.begin = time.monotonic()
        self.history = []
        self.foreign_fans = set()
        self.is_repeated = False  # something was refused or changed that the program sends again only after a while

    def setting(self):
        return self.chance.choice((
            constant(self.chance.randrange(1500, 7000)),
            curve(40, 80),
            curve(self.chance.randrange(30, 60), self.chance.randrange(61, 100)),
        ))

    def __enter__(self):
        self.driven.__enter__()
        self.note(f"{self.driven.machine} with {self.driven.settings}")
        return self

    def __exit__(self, *details):
        return self.driven.__exit__(*details)

    def note(self, what):
        self.history.append(f"{time.monotonic() - self.begin:6.2f}  {what}")

    def tell(self, command):
        self.note(command)
        self.driven.tell(command)

    # --- What happens ---

    def pause(self, seconds=2.0):
        time.sleep(self.chance.random() * seconds)

    def start(self):
        self.note("start")
        self.driven.start()

    def heat(self, celsius):
        self.note(f"{celsius} °C")
        self.driven.heat(celsius)

    def refuse(self):
        self.tell(self.chance.choice(("refuse all", "refuse all kernel", "refuse F0Tg", "refuse F1Tg")))
        self.is_repeated = True

    def lose_a_key(self):
        keys = ["F0Ac", "F1Ac"]
        if not self.foreign_fans:  # without FNum the program cannot notice a fan that another program has taken
            keys.append("FNum")
        self.tell(f"vanish {self.chance.choice(keys)}")

    def lose_a_maximum(self):
        self.tell(f"unreadable F{self.chance.randrange(2)}Mx")

    def take_fan_as_another_program(self):
        fan = self.chance.randrange(2)
        if self.driven.settings.get(fan, {}).get("mode") == "constant":
            return
        self.note(f"another program takes fan {fan}")
        for command in ("accept all", "restore FNum"):  # the program cannot notice it while it cannot count the fans
            self.tell(command)
        self.driven.take_manual_control(fan, LOW_RPM)
        self.foreign_fans.add(fan)
        self.is_repeated = True

    def change_heat(self):
        self.heat(self.chance.choice((45, COOL, 75, 91, 95)))

    def stop_for_a_while(self):
        self.note("stopped")
        self.driven.application.child.send_signal(signal.SIGSTOP)
        self.pause(3)
        self.note("goes on")
        self.driven.application.child.send_signal(signal.SIGCONT)

    def start_anew(self):
        how = self.chance.choice(("quit", "kill", "kill everything"))
        self.note(how)
        if how == "kill everything":
            self.driven.kill_everything()
        else:
            self.driven.application.stop(signal.SIGTERM if how == "quit" else signal.SIGKILL, seconds=60)
            self.pause(3)
        self.driven.tell("restore FNum")  # without it the next start could not find the fans that were left manual
        self.start()
        self.driven.settle()
        self.is_repeated = True

    def inject_faults(self, *kinds):
        """Starts the program and lets up to three of these faults happen, one after another."""
        self.start()
        if self.chance.random() < 0.8:
            self.driven.settle()
        for kind in self.chance.choices(kinds, k=self.chance.randrange(1, 4)):
            kind()
            self.pause()

    # --- Promises ---

    def require(self, holds, what, seconds):
        """Fails unless `holds()` becomes true within `seconds` and stays true for SETTLED_SECONDS."""
        deadline = time.monotonic() + seconds
        since = None
        while True:
            now = time.monotonic()
            if holds():
                since = since or now
                if now - since >= SETTLED_SECONDS:
                    return
            else:
                since = None
                if now > deadline:
                    lines = "\n".join(self.history)
                    raise AssertionError(f"life {self.number}: {what}; there is {self.driven.fans()}, after\n{lines}")
            time.sleep(0.05)

    def does_what_the_user_set(self):
        for fan, (target, mode) in self.driven.fans().items():
            setting = self.driven.settings.get(fan)
            least, most = self.driven.limits[fan]
            if setting is None:
                if mode == "manual" and fan not in self.foreign_fans:
                    return False
                continue
            wanted = min(most, max(least, setting["constantRPM"]))
            if setting["mode"] == "sensor":
                part = (COOL - setting["startTemp"]) / max(1, setting["maxTemp"] - setting["startTemp"])
                wanted = least + (most - least) * min(1, max(0, part))
            if mode != "manual" or abs(target - wanted) > 125:
                return False
        return True


class Promises(unittest.TestCase):
    LIVES = (3, 100)  # in an ordinary run, and in a long one

    def each_of(self, first, story):
        for number in range(first, first + stage.rounds(*self.LIVES)):
            with Life(number) as life:
                story(life)

    def test_no_fan_is_manual_in_an_emergency(self):
        def story(life):
            life.inject_faults(life.refuse, life.lose_a_key, life.take_fan_as_another_program, life.change_heat, life.stop_for_a_while,
                          life.start_anew)
            if life.chance.random() < 0.3:
                life.note("no temperature")
                life.driven.remove_temperatures()
            else:
                life.heat(life.chance.choice((92, 93, 98)))
            life.pause(4)
            life.tell("accept all")
            life.require(lambda: all(mode == "automatic" for _, mode in life.driven.fans().values()),
                         "no fan is manual in an emergency", REACTION_SECONDS)

        self.each_of(1000, story)

    def test_no_fan_is_left_behind(self):
        def story(life):
            life.inject_faults(life.refuse, life.lose_a_key, life.change_heat, life.start_anew)
            how = life.chance.choice((signal.SIGTERM, signal.SIGINT, signal.SIGKILL, signal.SIGSTOP))
            life.note(f"ends by {how.name}")
            if how == signal.SIGSTOP:
                life.driven.application.child.send_signal(how)
            else:
                life.driven.application.stop(how, seconds=60)
            life.pause(8)
            life.tell("accept all")
            life.require(life.driven.is_left_in_order, "no fan is left behind", END_SECONDS)

        self.each_of(2000, story)

    def test_heat_is_answered_from_the_threshold_on(self):
        def story(life):
            life.inject_faults(life.refuse, life.lose_a_key, life.lose_a_maximum, life.stop_for_a_while, life.start_anew)
            life.tell("accept all")
            life.heat(91)
            # Automatic fans satisfy the condition even before the program has reacted, so wait for a poll first.
            life.driven.polls(1)
            life.require(life.driven.is_cooled, "every fan cools or is with the firmware",
                         REACTION_SECONDS + (REPETITION_SECONDS if life.is_repeated else 0))

        self.each_of(3000, story)

    def test_at_rest_the_fans_do_what_the_user_set(self):
        def story(life):
            life.inject_faults(life.refuse, life.lose_a_key, life.take_fan_as_another_program, life.change_heat, life.stop_for_a_while,
                          life.start_anew)
            life.tell("restore all")
            life.heat(COOL)
            life.require(life.does_what_the_user_set, "the fans do what the user set", REST_SECONDS)

        self.each_of(4000, story)


if __name__ == "__main__":
    unittest.main()
