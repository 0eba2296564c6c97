"""Tests of what a screen reader says, key by key, on walks through Fenwhirl.

Speech/ contains one transcript of the expected speech for each walk and language. A line is a key or, after "*", an event; below
it, indented, are the sentences that follow, in order. "{n}" stands for a measured number. After each step some control has the
keyboard focus, something is said, and nothing is said twice.

  FENWHIRL_RECORD=1   rewrites the transcripts instead of comparing them; read them aloud before you keep them
"""

import os
import pathlib
import re
import sys
import time
import unittest

import screen_reader
import stage
from accessibility_test import desktop_settings
from desktop import Desktop, run
from status_host import StatusHost
from vendor_site import Site, redirect_vendor_host, vendor_domain

PAGES = ("dashboard", "fans", "sensors", "apps", "presets", "alerts", "settings")
REFUSED = {"fr": "Ce Mac n'a pas accepté le changement de vitesse du ventilateur.",
           "en": "This Mac didn’t accept the new fan speed."}
HOT = {"fr": "Le Mac est chaud", "en": "Your Mac is hot"}
# The name of an application with markup, a character reference, a line break and a mark that reverses the reading direction.
NASTY = ("<b>Alfa<b> &amp; \n\u202eBeta " + "gamma " * 40)[:200]
# Another program with a window.
ANOTHER = """
import gi
gi.require_version("Gtk", "3.0")
from gi.repository import Gtk
window = Gtk.Window(title="Another program")
window.add(Gtk.Entry())
window.show_all()
Gtk.main()
"""
TRANSCRIPTS = pathlib.Path(__file__).resolve().parent / "Speech"
RECORDING = "FENWHIRL_RECORD" in os.environ
MEASURED = re.compile(r"\d+:\d\d|\d+(?=(\s°C|\s?%|\séléments|\sitems))")
# The range of a sensor's temperatures. It is said only of sensors whose range has changed meanwhile.
RANGE = re.compile(r"\d+ ?– ?\d+ °C\.?")
# Orca reads the other texts of a card together with its first control, but only those already scrolled into view.
SCROLLED = re.compile(r"(^| )(La vitesse augmente .* °C|Starts speeding up .* °C|Drehzahl steigt ab .* °C|Скорость растёт с .* °C"
                      r"|Vitesse demandée : .* tr/min|Target speed: .* rpm|Gewünschte Drehzahl: .* U/min"
                      r"|Заданная скорость: .* об/мин)$")
# Without a test of the fans, a report is ready so soon that the question where to save it may come before this is said.
BRIEF = re.compile(r"notification (Création en cours|Creating)…")
# The window's name. Unless a transcript expects it, it may be said or not: when a dialog closes, that depends on which the screen
# reader learns of first, the window or its control.
WINDOW = "Fenwhirl"


def read_transcript(file):
    """The steps of a transcript: pairs of a key or event, and the list of sentences expected after it."""
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


def steady(texts):
    """Leaves out what is said only sometimes: ranges, texts that may not have been scrolled into view, and what takes no time."""
    texts = [SCROLLED.sub("", text) for text in texts if not RANGE.fullmatch(text) and not BRIEF.fullmatch(text)]
    return [text for text in texts if text]


def agrees(expected, said):
    """Whether `said` is the expected sentence, with any numbers in place of "{n}"."""
    pattern = r"[\d\s.,:’–-]+".join(re.escape(part) for part in expected.split("{n}"))
    return re.fullmatch(pattern, said) is not None


class Speech(unittest.TestCase):
    def setUp(self):
        screen_reader.require_screen_reader()
        self.language = "fr"
        self.desktop = self.reader = None

    def open(self, desktop, language="fr", window=True, moving=False, **environment):
        """Starts the screen reader and then Fenwhirl, with its window open unless told otherwise. The Mac keeps its temperatures and
        speeds unless it is `moving`; the screen reader is told of each text that changes, and would work all the time.
        """
        self.desktop, self.language = desktop, language
        if not moving:
            desktop.mac.tell("speed 0")
        run("xdotool", "mousemove", 1279, 799)  # so that no window opens under the pointer
        self.reader = desktop.stack.enter_context(screen_reader.ScreenReader(desktop.build, language))
        locale = screen_reader.LOCALES.get(language)
        numbers = {"LOCPATH": str(desktop.build / "locales"), "LC_ALL": locale} if locale else {}
        desktop.start(LANGUAGE=language, **numbers, **environment)
        if window:
            if desktop.preferences["didOnboard"]:
                desktop.start_again()
            desktop.wait_for_main_window()

    def walk(self, name, **events):
        """Performs the steps of a transcript and compares what is said. `events` are the functions behind its "*" lines, by the
        line's text with "_" for each space.
        """
        file = TRANSCRIPTS / f"{name}.{self.language}.txt"
        heard = []
        for step, expected in read_transcript(file):
            if step.startswith("* "):
                events[step[2:].replace(" ", "_")]()
            else:
                self.desktop.key(step)
            said = self.reader.heard(at_least=1 if RECORDING else max(1, len(expected)))
            said, expected = steady(said), steady(expected)
            if WINDOW not in expected:
                said = [text for text in said if text != WINDOW]
            heard.append((step, [MEASURED.sub("{n}", text) for text in said]))
            about = f"{name}: {step}, step {len(heard)}"
            self.assertTrue(said, f"{about}: nothing is said")
            self.assertEqual(len(said), len(set(said)), f"{about}: something is said twice: {said}")
            if not self.desktop.screen.focused():
                self.fail(f"{about}: nothing has the focus; there is {self.desktop.screen.outline()}")
            if RECORDING:
                continue
            if step.startswith("* "):  # announcements that follow an event come in any order
                same = all(any(agrees(each, text) for text in said) for each in expected)
            else:
                same = all(map(agrees, expected, said))
            self.assertTrue(same and len(said) == len(expected),
                            f"{about} says\n  {said}\ninstead of\n  {expected}")
        if RECORDING:
            write_transcript(file, heard)

    def start_at(self, page, desktop, language, **options):
        """Opens the window and goes to a page's row in the sidebar."""
        self.open(desktop, language, **options)
        # Pins the measured speeds, as the transcripts contain them.
        desktop.mac.tell("set F0Ac 2160")
        desktop.mac.tell("set F1Ac 2000")
        desktop.polls()
        self.reader.heard(at_least=1)
        if page != PAGES[0]:
            desktop.key(f"ctrl+{PAGES.index(page) + 1}")
            self.reader.heard(at_least=3)  # the row, its position, and that it is the current one

    @staticmethod
    def desktop_in(language, preferences=None, **options):
        return Desktop(preferences={**(preferences or {}), "language": language}, **options)

    def walk_page(self, page, language, **options):
        with self.desktop_in(language, **options) as desktop:
            self.start_at(page, desktop, language)
            self.walk(page)

    # --- Silence at rest ---

    def test_the_dashboard_at_rest_says_nothing(self):
        with Desktop() as desktop:
            self.open(desktop, moving=True)
            self.reader.heard(at_least=1)
            requests = desktop.requests()
            desktop.polls(2)
            self.assertGreater(desktop.requests(), requests)
            self.assertEqual(self.reader.heard(), [])

    # --- Walks ---

    def applications(self, language):
        with self.desktop_in(language) as desktop:
            self.start_at("apps", desktop, language)
            desktop.start_busy_application()
            desktop.screen.wait_for("Busy", "check box")
            self.reader.heard()

            self.walk("applications", the_application_ends=desktop.let_busy_application_end)

    def onboarding(self, language):
        with self.desktop_in(language, onboarded=False) as desktop:
            self.open(desktop, language)
            self.reader.heard(at_least=3)
            self.walk("onboarding")

    def menu(self, language):
        with self.desktop_in(language, helper=True) as desktop:
            self.start_at("dashboard", desktop, language)
            for key in ("Tab", "Tab", "Tab"):
                desktop.key(key)
            self.reader.heard(at_least=2)

            def rest_the_pointer():
                box = desktop.screen.wait_for({"fr": "Préréglage", "en": "Preset"}[language], "combo box")
                place = box.place(on_screen=True)
                run("xdotool", "mousemove", place.x + 30, place.y + place.height + 90)
                desktop.key("F1")  # makes the screen reader say something, as each step requires

            self.walk("menu", the_pointer_rests_where_the_menu_opens=rest_the_pointer)

    def panel(self, language):
        with self.desktop_in(language, helper=True) as desktop, StatusHost() as host:
            self.open(desktop, language, window=False)
            stage.wait_until(lambda: host.item, "the host has the item")
            desktop.mac.tell("set F0Ac 2160")
            desktop.mac.tell("set F1Ac 2000")
            desktop.polls()
            # As on every desktop, the keyboard comes from another program that the screen reader knows, and goes back to it.
            desktop.stack.enter_context(stage.Process([sys.executable, "-c", ANOTHER]))
            self.reader.heard(at_least=1)

            # As a desktop's panel does for the keyboard. After a click the screen reader may already look where the pointer is.
            def choose():
                host.press(0, 0)
                desktop.wait_for_panel_window()

            def choose_again():
                desktop.key("Escape")
                stage.wait_until(lambda: not desktop.panel_window(), "the panel closes")
                closed = time.monotonic()
                self.assertIn("Another", " ".join(self.reader.heard(at_least=1)))
                # Shortly after the panel has closed, the program mistakes a press for the one that closed it.
                stage.wait_until(lambda: time.monotonic() - closed > 0.4, "a press opens it again")
                choose()

            self.walk("panel", the_status_item_is_chosen=choose, it_is_closed_and_chosen_again=choose_again)

    def trouble(self, language):
        with self.desktop_in(language, helper=True) as desktop:
            self.start_at("dashboard", desktop, language)
            fixed = {"fr": "Vitesse fixe", "en": "Fixed speed"}[language]

            def tell(*commands):
                for command in commands:
                    desktop.mac.tell(command)

            def refuse():
                tell("refuse all")
                desktop.screen.press(fixed, "radio button")
                desktop.screen.wait_for(REFUSED[language], "alert")
                tell("accept all")  # otherwise the message would return after it is closed

            self.walk("trouble",
                      it_gets_hot=lambda: tell("set TCXC 88", "set TC0P 88"),
                      it_cools_down=lambda: tell("unpin TCXC", "unpin TC0P"),
                      the_controller_refuses_a_change=refuse,
                      the_fan_vanishes=lambda: tell("set FNum 1"))

    def update(self, language):
        stage.require_own("mounts", "other certificates and another table of hosts")
        domain = vendor_domain(pathlib.Path(os.environ["FENWHIRL_BUILD"]))
        try:
            trusted = redirect_vendor_host(domain)
        except OSError as error:
            self.skipTest(str(error))
        # The program asks at its start, and waits for 30 s. The answer is held until the window is at rest,
        # or both would compete for the keyboard.
        site = Site(domain, trusted.certificate_for(domain), "9.9", held=True)
        with self.desktop_in(language, {"brenor.update.lastCheck": 0}) as desktop:
            self.open(desktop, language)
            self.reader.heard(at_least=1)
            self.walk("update", a_newer_version_is_found=site.release)

    def report(self, language):
        with self.desktop_in(language) as desktop:
            self.start_at("settings", desktop, language)
            self.walk("report")
            self.assertIn("TC0P", (desktop.home / "Fenwhirl-diagnostic.txt").read_text(encoding="utf-8"))

    def unreadable(self, language):
        with self.desktop_in(language) as desktop:
            self.start_at("dashboard", desktop, language)

            def lose_all():
                for key in re.findall(r"\b(T\S{3})\b", "\n".join(desktop.mac.tell("keys T"))):
                    desktop.mac.tell(f"unreadable {key}")

            self.walk("unreadable", no_sensor_can_be_read=lose_all,
                      the_sensors_can_be_read_again=lambda: desktop.mac.tell("restore all"))

    def names(self, language):
        with self.desktop_in(language) as desktop:
            desktop.mac.tell("define T<b> sp78 2 80 3200")
            desktop.start_busy_application(NASTY)
            self.start_at("sensors", desktop, language)

            def go_to_the_sensor():
                row = stage.wait_until(lambda: next((node for node in desktop.screen.nodes(showing=False)
                                                     if "T<b>" in node.name), None), "the sensor has a row")
                row.act("SetFocus")

            def open_applications():
                desktop.key("ctrl+4")
                desktop.screen.wait_for(lambda text: text.startswith("<b>"), "check box")

            self.walk("names", a_sensor_with_markup_gets_the_focus=go_to_the_sensor,
                      the_page_of_applications_is_opened=open_applications)

    def overtaking(self, language):
        with self.desktop_in(language) as desktop:
            # So different that their order is certain even on a busy computer, which gives Alfa much less.
            desktop.start_busy_application("Alfa", 0.1)
            desktop.start_busy_application("Beta", 0.02)
            self.start_at("apps", desktop, language)

            def order():
                return [text for text in desktop.screen.texts() if text in ("Alfa", "Beta")]

            stage.wait_until(lambda: order() == ["Alfa", "Beta"], lambda: f"Alfa leads; there is {order()}")
            self.reader.heard()

            def overtake():
                desktop.load_with("Alfa", 0.02)
                desktop.load_with("Beta", 0.1)
                stage.wait_until(lambda: order() == ["Beta", "Alfa"], lambda: f"Beta leads; there is {order()}")
                self.assertEqual(self.reader.heard(), [], "an application overtakes another")
                desktop.key("space")

            self.walk("overtaking", the_focused_application_overtakes_the_other_and_space_is_pressed=overtake)

    def leaving(self, language):
        with self.desktop_in(language) as desktop:
            self.start_at("dashboard", desktop, language)

            def leave():
                desktop.mac.tell("set TCXC 88")
                desktop.mac.tell("set TC0P 88")
                # The announcement stands beside it for five seconds, in which a busy computer may not find it.
                desktop.screen.wait_for(HOT[language], "label")
                desktop.key("ctrl+3")

            self.walk("leaving", the_page_is_left_while_it_gets_hot=leave)

    def test_the_page_dashboard_in_french(self):
        self.walk_page("dashboard", "fr", preferences=desktop_settings())

    def test_the_page_dashboard_in_english(self):
        self.walk_page("dashboard", "en", preferences=desktop_settings())

    def test_the_page_fans_in_french(self):
        self.walk_page("fans", "fr", helper=True)

    def test_the_page_fans_in_english(self):
        self.walk_page("fans", "en", helper=True)

    def test_the_page_sensors_in_french(self):
        self.walk_page("sensors", "fr", helper=True)

    def test_the_page_sensors_in_english(self):
        self.walk_page("sensors", "en", helper=True)

    def test_the_page_presets_in_french(self):
        self.walk_page("presets", "fr", helper=True)

    def test_the_page_presets_in_english(self):
        self.walk_page("presets", "en", helper=True)

    def test_the_page_alerts_in_french(self):
        self.walk_page("alerts", "fr", helper=True)

    def test_the_page_alerts_in_english(self):
        self.walk_page("alerts", "en", helper=True)

    def test_the_page_settings_in_french(self):
        self.walk_page("settings", "fr")

    def test_the_page_settings_in_english(self):
        self.walk_page("settings", "en")

    def test_applications_in_french(self):
        self.applications("fr")

    def test_applications_in_english(self):
        self.applications("en")

    def test_onboarding_in_french(self):
        self.onboarding("fr")

    def test_onboarding_in_english(self):
        self.onboarding("en")

    def test_menu_in_french(self):
        self.menu("fr")

    def test_menu_in_english(self):
        self.menu("en")

    def test_panel_in_french(self):
        self.panel("fr")

    def test_panel_in_english(self):
        self.panel("en")

    def test_trouble_in_french(self):
        self.trouble("fr")

    def test_trouble_in_english(self):
        self.trouble("en")

    def test_update_in_french(self):
        self.update("fr")

    def test_update_in_english(self):
        self.update("en")

    def test_report_in_french(self):
        self.report("fr")

    def test_report_in_english(self):
        self.report("en")

    def test_unreadable_in_french(self):
        self.unreadable("fr")

    def test_unreadable_in_english(self):
        self.unreadable("en")

    def test_names_in_french(self):
        self.names("fr")

    def test_names_in_english(self):
        self.names("en")

    def test_overtaking_in_french(self):
        self.overtaking("fr")

    def test_overtaking_in_english(self):
        self.overtaking("en")

    def test_leaving_in_french(self):
        self.leaving("fr")

    def test_leaving_in_english(self):
        self.leaving("en")

    def test_the_page_dashboard_in_german(self):
        self.walk_page("dashboard", "de", preferences=desktop_settings())

    def test_the_page_fans_in_german(self):
        self.walk_page("fans", "de", helper=True)

    def test_the_page_fans_in_russian(self):
        self.walk_page("fans", "ru", helper=True)


if __name__ == "__main__":
    unittest.main()
