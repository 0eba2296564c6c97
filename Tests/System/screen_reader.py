"""Orca, the screen reader of Linux desktops, with a file in place of a voice.

It runs with its own code for what is said and when, beside the program, on the same display and session bus. Only the last
step, from a text to a sound, is replaced by Orca's own means for adapting it, a module of customizations: there is no speech
service and no sound card, and a test reads what would have been heard.
"""

import os
import pathlib
import shutil
import subprocess
import time
import unittest

import stage

# Nothing more is said to a key once it was silent for this long.
QUIET_SECONDS = 0.9
# What differs from a new user's Orca: it waits for no speech service, writes instead of speaking, repeats no typed keys, and
# tells the place in a list.
CUSTOMIZATIONS = '''\
import os
import orca.settings
import orca.speech

_file = os.open({file!r}, os.O_WRONLY | os.O_APPEND | os.O_CREAT, 0o600)


def _write(text):
    os.write(_file, (" ".join(str(text).split()) + "\\n").encode())


def _speak(text, *_, **__):
    _write(text)


def _nothing(*_, **__):
    pass


orca.speech.init = _nothing
orca.speech._speak = _speak
orca.speech.speakCharacter = _speak
orca.speech.speakKeyEvent = _nothing
orca.settings.enableKeyEcho = False
orca.settings.enablePositionSpeaking = True
_write({greeting!r})
'''
SERIES = "43"
GREETING = "The screen reader is there."


def require_screen_reader():
    """Skips a test where Orca is not to be had, or is of another series, which words things in another way."""
    if shutil.which("orca") is None:
        raise unittest.SkipTest("there is no orca here, the screen reader that this test listens to")
    version = subprocess.run(["orca", "--version"], capture_output=True, text=True, check=False).stdout.strip()
    if version.split(".")[0] != SERIES:
        raise unittest.SkipTest(f"what is heard was written down with Orca {SERIES}, and here is {version or 'another'}")


class ScreenReader(stage.Process):
    """Orca in one language; `heard` takes what it has said since it was last asked."""

    def __init__(self, build, language="fr"):
        require_screen_reader()
        home = pathlib.Path(os.environ["HOME"])
        preferences = home / ".local/share/orca"
        preferences.mkdir(parents=True, exist_ok=True)
        self.file = home / f"speech-{time.monotonic_ns()}.txt"
        (preferences / "orca-customizations.py").write_text(
            CUSTOMIZATIONS.format(file=str(self.file), greeting=GREETING), encoding="utf-8")
        locale = {"LC_ALL": "fr_FR.UTF-8", "LANGUAGE": "fr"} if language == "fr" else {"LC_ALL": "C.UTF-8", "LANGUAGE": "en"}
        settings = {**os.environ, "LOCPATH": str(build / "locales"), "NO_AT_BRIDGE": "1", **locale}
        self.place = 0
        self.log_file = home / "orca.log"
        with self.log_file.open("wb") as log:
            super().__init__(["orca", "--replace"], env=settings, stdout=log, stderr=log)
        stage.wait_until(lambda: GREETING in self.lines(), lambda: f"Orca is ready; it says {self.log_file.read_text()}")
        self.heard()

    def lines(self):
        try:
            return self.file.read_text(encoding="utf-8").splitlines()
        except FileNotFoundError:
            return []

    def heard(self, at_least=0, seconds=stage.PATIENCE_SECONDS):
        """What was said since the last question, once it has been silent for a while."""
        end = time.monotonic() + seconds
        count, changed = len(self.lines()), time.monotonic()
        while time.monotonic() - changed < QUIET_SECONDS or (count - self.place < at_least and time.monotonic() < end):
            time.sleep(0.03)
            now = len(self.lines())
            if now != count:
                count, changed = now, time.monotonic()
        said = self.lines()[self.place:count]
        self.place = count
        return said
