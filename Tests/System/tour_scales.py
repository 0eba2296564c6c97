#!/usr/bin/python3
"""Takes screenshots of everything that is drawn rather than written (chart with a reading, gauges, curve, sliders, bars, panel), on
screens of 1, 1.5 and 2 pixels per point, in three languages, dark and light.

Each scale has its own folder, with one for each language in it. Runs inside Packaging/Linux/private-namespace.
"""

import contextlib
import sys
import time

import picture_stage
import stage
import tour_pages
from interface_texts import LANGUAGES, TranslatedInterface
from screenshot_mac import ScreenshotMac

SCALES = [1, 1.5, 2]
CHOSEN_LANGUAGES = ["fr", "de", "ru"]
SCREEN = (1600, 1000)  # in points


class Tour(tour_pages.Tour):
    """The walk at one scale, in one language and appearance."""

    def __init__(self, options, language, theme, host, mac):
        super().__init__(options, theme, host, None)
        self.language = language
        self.folder = options.pictures / f"{tour_pages.SCALE:g}x" / language
        self.screen = TranslatedInterface(language)
        self.mac = mac

    def started(self, onboarded=True, shown=True, **preferences):
        return super().started(onboarded, shown, language=self.language, **preferences)

    def walk(self):
        began = time.monotonic()
        with self.started(), contextlib.redirect_stdout(None):
            self.choose_preset("Équilibré")
            self.read_chart()
            self.picture("dashboard")
            self.open_page("fans")
            self.screen.press("Vitesse fixe", "radio button")  # of the last fan
            self.slider("Vitesse demandée").set_value(3400)
            self.drags()
            self.panel_in_use("Ventilateur droit")
            self.open_page("sensors")
            self.picture("sensors")
            self.panel("panel")
        print(f"{tour_pages.SCALE:g}x {LANGUAGES[self.language]}, {self.theme}: {time.monotonic() - began:.0f} s", flush=True)


def walk(options, host):
    with ScreenshotMac(options.build) as mac:
        stage.install_helper(options.build)
        mac.turn(2694, 3396)
        for tour_pages.SCALE in options.scale or SCALES:
            for language in options.language or CHOSEN_LANGUAGES:
                for theme in [options.theme] if options.theme else ["dark", "light"]:
                    Tour(options, language, theme, host, mac).walk()


def main():
    parser = picture_stage.options_parser(__doc__)
    parser.add_argument("--language", choices=LANGUAGES, action="append", help="instead of the usual three; may be given more than once")
    parser.add_argument("--scale", type=float, choices=SCALES, action="append", help="only this scale; may be given more than once")
    parser.add_argument("--theme", choices=["dark", "light"], help="only this appearance")
    options = parser.parse_args()
    options.minutes, options.only = 0, None
    tour_pages.SCREEN = SCREEN
    return picture_stage.perform(walk, options, SCREEN, max(SCALES))


if __name__ == "__main__":
    sys.exit(main())
