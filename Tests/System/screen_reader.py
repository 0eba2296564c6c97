"""Runs Orca, the screen reader of Linux desktops, with a file in place of a voice.

Orca runs beside the program, on the same display and session bus, and decides with its own code what it says and when. Only the
last step, from text to sound, is replaced by a customization module, which is Orca's own extension mechanism. No speech service
and no sound card are needed; tests read from the file what would have been spoken.
"""

import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import time
import unittest

import stage
from helper_stage import processes

# After this long without speech, nothing more is said in response to a key, if nothing is at work in the last part of it.
QUIET_SECONDS = 0.9
IDLE_SECONDS = 0.35
# The programs between a key and its sentence. While one of them works, more may be said.
INVOLVED = {"Xvfb", "openbox", "dbus-daemon", "at-spi2-registr", "Fenwhirl", "orca"}
# The differences from Orca's defaults: it does not wait for a speech service, writes instead of speaking, does not echo typed
# keys, and announces positions in lists.
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
# The locales of the build folder for the languages that are listened to. English needs none.
LOCALES = {"fr": "fr_FR.UTF-8", "de": "de_DE.UTF-8", "ru": "ru_RU.UTF-8"}
SERIES = "43"
GREETING = "The screen reader is there."


def require_screen_reader():
    """Skips a test where Orca is not installed, or is of another series, which uses other words."""
    if shutil.which("orca") is None:
        raise unittest.SkipTest("there is no orca here, the screen reader that this test listens to")
    version = installed_version()
    if version.split(".")[0] != SERIES:
        raise unittest.SkipTest(f"what is heard was written down with Orca {SERIES}, and here is {version}")


def installed_version():
    try:
        # Its own module with the version. The program itself takes a tenth of a second of processor time to tell it.
        from orca import orca_platform
        return orca_platform.version
    except (ImportError, AttributeError):
        told = subprocess.run(["orca", "--version"], capture_output=True, text=True, check=False).stdout
        return next(iter(re.findall(r"\d+(?:\.\d+)*", told)), "another")  # newer ones tell more than the number


def is_working(process):
    threads = f"/proc/{process}/task"
    with contextlib.suppress(OSError):  # it may end meanwhile
        for thread in os.listdir(threads):
            with open(f"{threads}/{thread}/stat", "rb") as file:
                if file.read().rpartition(b")")[2].split()[0] in (b"R", b"D"):
                    return True
    return False


class ScreenReader(stage.Process):
    """Orca in one language. heard() returns what it has said since the previous call."""

    def __init__(self, build, language="fr"):
        require_screen_reader()
        home = pathlib.Path(os.environ["HOME"])
        preferences = home / ".local/share/orca"
        preferences.mkdir(parents=True, exist_ok=True)
        self.file = home / f"speech-{time.monotonic_ns()}.txt"
        (preferences / "orca-customizations.py").write_text(
            CUSTOMIZATIONS.format(file=str(self.file), greeting=GREETING), encoding="utf-8")
        locale = {"LC_ALL": LOCALES.get(language, "C.UTF-8"), "LANGUAGE": language}
        settings = {**os.environ, "LOCPATH": str(build / "locales"), "NO_AT_BRIDGE": "1", **locale,
                    "GST_PLUGIN_SYSTEM_PATH": ""}  # it looks for sounds that are not played here
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

    @staticmethod
    def is_anything_expected():
        """Whether any thread of the programs involved runs, or waits for a processor or a disk."""
        return any(is_working(number) for number, _, name in processes() if name in INVOLVED)

    def heard(self, at_least=0, seconds=stage.PATIENCE_SECONDS):
        """Waits for `at_least` lines and then for silence, during which nothing is at work either; returns what was said since
        the last call. It waits no longer than `seconds` for the lines, and for what is at work.
        """
        end = time.monotonic() + seconds
        count, changed = len(self.lines()), time.monotonic()
        while time.monotonic() - changed < QUIET_SECONDS or (count - self.place < at_least and time.monotonic() < end):
            time.sleep(0.1)
            now = len(self.lines())
            if now != count:
                count, changed = now, time.monotonic()
            elif (time.monotonic() - changed > QUIET_SECONDS - IDLE_SECONDS and time.monotonic() < end
                  and self.is_anything_expected()):
                changed = time.monotonic()
        said = self.lines()[self.place:count]
        self.place = count
        return said
