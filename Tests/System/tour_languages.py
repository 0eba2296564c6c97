#!/usr/bin/python3
"""Takes screenshots of everything Fenwhirl shows, in every language, at the window's default size and at its smallest.

It repeats the walk of tour_pages.py (pages, panel, introduction, dialogs, menus and error states) in each language. Pages that do
not fit into the window are scrolled; the last picture of a page shows its end. Each language has its own folder.

Runs inside Packaging/Linux/private-namespace.
"""

import contextlib
import shutil
import subprocess
import sys
import time

import picture_stage
import stage
import tour_pages
from interface_texts import LANGUAGES, TranslatedInterface
from screenshot_mac import ScreenshotMac

SIZES = [(1040, 680), (920, 560)]
SCREEN = (2000, 1300)
WHEEL_POINTS = 60  # how far a notch of the mouse wheel scrolls a page


class Tour(tour_pages.Tour):
    """The walk in one language."""

    def __init__(self, options, language, host, vendor_site):
        super().__init__(options, "dark", host, vendor_site)
        self.language = language
        self.folder = options.pictures / language
        self.screen = TranslatedInterface(language)
        self.count = 0

    def started(self, onboarded=True, shown=True, **preferences):
        return super().started(onboarded, shown, language=self.language, **preferences)

    # --- Pictures ---

    def picture(self, name, narrow=False, title=None):
        if narrow or title:
            self.one_picture(name, narrow, title)
            return
        for size in SIZES:
            self.resize(size)
            self.one_picture(f"{name}-{size[0]}")
            if name.startswith(("pages/", "states/")):
                self.rest_of_the_page(name, size)
        self.resize(SIZES[0])

    def one_picture(self, name, narrow=False, title=None):
        with contextlib.redirect_stdout(None):
            super().picture(name, narrow, title)
        self.count += 1
        return self.folder / f"{name}-{self.theme}.png"

    def rest_of_the_page(self, name, size):
        for number in range(2, 8):
            before = self.places()
            self.wheel((size[1] - 2 * WHEEL_POINTS) // WHEEL_POINTS)
            file = self.one_picture(f"{name}-{size[0]}-{number}")
            if self.places() == before:  # nothing moved: the previous picture showed the end of the page
                file.unlink()
                self.count -= 1
                break
        self.scroll(downwards=False)

    def places(self):
        """The vertical position of every visible node, which scrolling changes."""
        return [(node.role, node.place(on_screen=True).y) for node in self.screen.nodes()]

    def both_ends(self, name):
        self.picture(name)  # already scrolls through the whole page

    def windows(self, title="^Fenwhirl$"):
        return [(title, 0)] if title.isdigit() else super().windows(title)

    # --- Actions ---

    def resize(self, size):
        subprocess.run(["xdotool", "windowsize", "--sync", self.window(), *map(str, size)], check=True)

    def wheel(self, notches):
        subprocess.run(["xdotool", "mousemove", "--window", self.window(), "600", "280",
                        "click", "--repeat", str(notches), "--delay", "2", "5"], check=True)
        self.rest()

    def dialog_of_qt(self):
        """The X11 window ID of Qt's own dialog: a window of the program with another title than "Fenwhirl"."""
        answer = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.application.child.pid)],
                                capture_output=True, text=True, check=False).stdout
        for window in answer.split():
            title = subprocess.run(["xdotool", "getwindowname", window], capture_output=True, text=True, check=False).stdout.strip()
            if title and title != "Fenwhirl":
                return window
        return None

    def report(self):
        """As in tour_pages.py, but finds the save dialog by its window, because its texts are Qt's own."""
        self.open_page("settings")
        switch = "Inclure un test des ventilateurs (6 secondes)"
        stage.wait_until(lambda: self.scroll() or self.screen.find(switch, "check box"), "the page is scrolled")
        self.screen.press(switch, "check box")
        self.screen.press("Créer le rapport")
        window = stage.wait_until(self.dialog_of_qt, "the question where to save the report", 30)
        self.picture("dialogs/save", title=window)
        subprocess.run(["xdotool", "windowfocus", "--sync", window, "key", "Escape"], check=True)
        stage.wait_until(lambda: not self.dialog_of_qt(), "the question goes")
        self.screen.wait_for("Créer le rapport")

    # --- Walk ---

    def walk(self):
        began = time.monotonic()
        self.host.item = None
        with ScreenshotMac(self.build) as self.mac:
            for part in (self.first_start, self.update, self.in_control, self.old_helper, self.no_fans):
                if self.only in (None, part.__name__):
                    # A walk that ended early may have left a helper.
                    shutil.rmtree(stage.HELPER.parent, ignore_errors=True)
                    part()
            shutil.rmtree(stage.HELPER.parent, ignore_errors=True)
        if self.only in (None, "no_controller"):
            self.no_controller()
        print(f"{LANGUAGES[self.language]:<20} {self.count} pictures in {time.monotonic() - began:.0f} s", flush=True)


def walk(options, host):
    vendor_site = tour_pages.start_vendor_site(options.build)
    failed = []
    for language in options.language or LANGUAGES:
        try:  # a failure in one language does not end the tour of the others
            Tour(options, language, host, vendor_site).walk()
        except stage.StageError as error:
            print(f"{LANGUAGES[language]}: {error}", file=sys.stderr)
            failed.append(LANGUAGES[language])
    if failed:
        raise stage.StageError(", ".join(failed))


def main():
    parser = picture_stage.options_parser(__doc__)
    parser.add_argument("--language", choices=LANGUAGES, action="append", help="only this language; may be given more than once")
    parser.add_argument("--only", help="only the pictures of this part of the walk")
    options = parser.parse_args()
    options.minutes = 0
    tour_pages.SCALE, tour_pages.SCREEN = 1, SCREEN
    return picture_stage.perform(walk, options, SCREEN, tour_pages.SCALE)


if __name__ == "__main__":
    sys.exit(main())
