"""Fenwhirl as it is heard: every key of a walk through it, and every word that the screen reader then says.

What has to be said lies in Speech/, one transcript for each walk and language: a key, or after "*" something that happens,
and below it, indented, the sentences in their order. "{n}" stands for a measured number. After each of them something has
the keyboard's focus, something is said, and nothing is said twice.

  FENWHIRL_RECORD=1   writes the transcripts anew instead of comparing them; they are to be read aloud before they are kept
"""

import os
import pathlib
import re
import unittest

import screen_reader
import stage
from desktop import Desktop, run

TRANSCRIPTS = pathlib.Path(__file__).resolve().parent / "Speech"
RECORDING = "FENWHIRL_RECORD" in os.environ
MEASURED = re.compile(r"\d+(?=\s(°C|%))")


def read_transcript(file):
    """The steps of a transcript: pairs of what is done, and the list of what is said then."""
    steps = []
    for line in file.read_text(encoding="utf-8").splitlines():
        if line.startswith("  "):
            steps[-1][1].append(line.strip())
        elif line and not line.startswith("#"):
            steps.append((line, []))
    return steps


def write_transcript(file, steps):
    title = [line for line in file.read_text(encoding="utf-8").splitlines() if line.startswith("#")]
    lines = title + [line for step, said in steps for line in (step, *(f"  {text}" for text in said))]
    file.write_text("\n".join(lines) + "\n", encoding="utf-8")


def agrees(expected, said):
    """Whether that was said, whatever the measured numbers are."""
    pattern = r"[\d\s.,’–-]+".join(re.escape(part) for part in expected.split("{n}"))
    return re.fullmatch(pattern, said) is not None


class Speech(unittest.TestCase):
    def setUp(self):
        screen_reader.require_screen_reader()
        self.language = "fr"
        self.desktop = self.reader = None

    def open(self, desktop, language="fr", window=True, **environment):
        """Starts the screen reader and then Fenwhirl, with its window open unless told otherwise."""
        self.desktop, self.language = desktop, language
        run("xdotool", "mousemove", 1279, 799)  # whatever opens does not open under it
        self.reader = desktop.stack.enter_context(screen_reader.ScreenReader(desktop.build, language))
        locale = {"LOCPATH": str(desktop.build / "locales"), "LC_ALL": "fr_FR.UTF-8"} if language == "fr" else {}
        desktop.start(LANGUAGE=language, **locale, **environment)
        if window:
            if desktop.preferences["didOnboard"]:
                desktop.start_again()
            desktop.wait_for_main_window()

    def focused(self):
        """Role and name of everything that has the keyboard's focus."""
        states = self.desktop.screen.atspi.StateType
        return [f"{stage.role_of(node)} {node.get_name()!r}" for node in self.desktop.screen.nodes()
                if node.get_state_set().contains(states.FOCUSED)]

    def walk(self, name, **events):
        """Goes through a transcript; `events` are what happens in it, by name, with "_" for each space."""
        file = TRANSCRIPTS / f"{name}.{self.language}.txt"
        heard = []
        for step, expected in read_transcript(file):
            if step.startswith("* "):
                events[step[2:].replace(" ", "_")]()
            else:
                self.desktop.key(step)
            said = self.reader.heard(at_least=1 if RECORDING else max(1, len(expected)), seconds=6)
            heard.append((step, [MEASURED.sub("{n}", text) for text in said]))
            if RECORDING:
                continue
            about = f"{name}: {step}, the {len(heard)}th step"
            self.assertTrue(said, f"{about}: nothing is said")
            self.assertEqual(len(said), len(set(said)), f"{about}: something is said twice: {said}")
            self.assertTrue(len(said) == len(expected) and all(map(agrees, expected, said)),
                            f"{about} says\n  {said}\ninstead of\n  {expected}")
            self.assertTrue(self.focused(), f"{about}: nothing has the focus; there is {self.desktop.screen.outline()}")
        if RECORDING:
            write_transcript(file, heard)

    def test_the_dashboard_at_rest_says_nothing(self):
        with Desktop() as desktop:
            self.open(desktop)
            self.reader.heard(at_least=1)
            requests = desktop.requests()
            desktop.polls(4)
            self.assertGreater(desktop.requests(), requests)
            self.assertEqual(self.reader.heard(), [])


if __name__ == "__main__":
    unittest.main()
