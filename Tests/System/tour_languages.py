#!/usr/bin/python3
"""The dashboard and the settings in every language, as pictures, at the window's usual size and at its smallest.

Runs inside Packaging/Linux/private-namespace. The language is changed in the settings, as a person does it, while the
program runs. What does not fit into the window is scrolled to: the last picture of a page shows its end.
"""

import contextlib
import hashlib
import subprocess
import sys

import stage
import tour

LANGUAGES = {"fr": "Français", "en": "English", "sr": "Srpski (latinica)", "sr-Cyrl": "Српски (ћирилица)", "de": "Deutsch",
             "es": "Español", "it": "Italiano", "pt": "Português", "ru": "Русский"}
SIZES = [(1040, 680), (920, 560)]
PAGES = {"dashboard": 0, "settings": 6}  # by their place in the sidebar, since their names are translated
WHEEL_POINTS = 60  # a notch of the mouse wheel scrolls a page by so much


class Pictures:
    """One walk through all languages."""

    def __init__(self, stage_of_tour):
        self.tour = stage_of_tour
        self.screen = stage_of_tour.screen
        self.application = stage_of_tour.application

    # --- Hands ---

    def on_window(self, *arguments):
        subprocess.run(["xdotool", *arguments], check=True, stdout=subprocess.DEVNULL)

    def resize(self, width, height):
        self.on_window("windowsize", "--sync", self.application.window(), str(width), str(height))

    def open_page(self, name):
        tabs = [node for node in self.screen.nodes() if stage.role_of(node) == "page tab"]
        self.screen.use(tabs[PAGES[name]])

    def choose(self, language):
        self.open_page("settings")
        picker = stage.wait_until(self.picker, "the settings offer the languages")
        if picker.get_description() != LANGUAGES[language]:
            self.screen.use(picker)
            self.screen.press(LANGUAGES[language], "menu item")
            stage.wait_until(lambda: self.picker().get_description() == LANGUAGES[language],
                             f"{LANGUAGES[language]} is chosen")

    def scroll(self, points):
        button = "5" if points > 0 else "4"
        self.on_window("mousemove", "--window", self.application.window(), "600", "300",
                       "click", "--repeat", str(abs(points) // WHEEL_POINTS), "--delay", "5", button)
        # Nothing may be hovered in a picture.
        self.on_window("mousemove", "0", "0")

    # --- Eyes ---

    def picker(self):
        found = [node for node in self.screen.nodes() if stage.role_of(node) == "combo box"]
        return found[0] if len(found) == 1 else None

    def places(self):
        """How far down everything stands, which scrolling changes. What is out of sight is not in the list."""
        return [(stage.role_of(node), node.get_extents(self.screen.atspi.CoordType.SCREEN).y)
                for node in self.screen.nodes()]

    def still_picture(self, name):
        """Saves what the window shows as soon as it shows the same twice: then all motion has ended."""
        seen = []

        def is_still():
            seen.append(hashlib.sha256(subprocess.run(
                ["import", "-window", self.application.window(), "ppm:-"], capture_output=True, check=True).stdout).digest())
            return len(seen) > 1 and seen[-1] == seen[-2]

        stage.wait_until(is_still, f"the window holds still for {name}", interval_seconds=0.15)
        self.tour.picture(name)

    def page(self, name, language, width, height):
        self.open_page(name)
        for number in range(1, 6):
            self.still_picture(f"{name}-{width}x{height}-{language}-{number}")
            before = self.places()
            self.scroll(height - 2 * WHEEL_POINTS)
            with contextlib.suppress(stage.StageError):
                stage.wait_until(lambda: self.places() != before, "the page scrolls", seconds=1)
                continue
            return number  # it did not: this was its end
        raise stage.StageError(f"the {name} page has no end")

    def walk(self):
        for button in ("Suivant", "Activer le contrôle"):
            self.screen.press(button)
        self.screen.wait_for("Contrôle activé")
        for button in ("Suivant", "Commencer"):
            self.screen.press(button)
        # The fan cards say most in this preset.
        self.screen.press("Préréglage")
        self.screen.press("Équilibré", "menu item")
        for language, title in LANGUAGES.items():
            self.choose(language)
            counts = []
            for width, height in SIZES:
                self.resize(width, height)
                counts += [self.page(name, language, width, height) for name in PAGES]
            print(f"{title:<20} {sum(counts)} pictures", flush=True)
        self.choose("fr")


if __name__ == "__main__":
    sys.exit(tour.main(lambda stage_of_tour: Pictures(stage_of_tour).walk()))
