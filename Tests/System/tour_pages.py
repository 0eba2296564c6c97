#!/usr/bin/python3
"""Takes screenshots of everything Fenwhirl can show: pages, panel, introduction, dialogs, menus and error states, dark and light.

Runs inside Packaging/Linux/private-namespace. Every picture shows the real program with a real helper and a simulated Mac; the
tour operates it through the accessibility tree. The visible readings are fixed, so that two tours can be compared picture by
picture.
"""

import contextlib
import hashlib
import json
import shutil
import socket
import subprocess
import sys
import time

import interface
import picture_stage
import stage
from vendor_site import Site, vendor_domain, redirect_vendor_host
from screenshot_mac import COOL, HOT, ScreenshotMac, Workload

COMPUTER = "MacBook Pro de Camille"
PREFERENCES = stage.SCRATCH / "home/.config/com.fenwhirl.app/preferences.json"
STATE = stage.SCRATCH / "home/.local/state/com.fenwhirl.app"
SCALE = 2
SCREEN = (2600, 1440)  # room for the largest window
PAGES = {"dashboard": "Tableau de bord", "fans": "Ventilateurs", "sensors": "Capteurs", "apps": "Applications",
         "presets": "Préréglages", "alerts": "Alertes", "settings": "Réglages"}


def pixels(*points):
    """Distances in the window as xdotool's arguments."""
    return [str(round(distance * SCALE)) for distance in points]


class Tour:
    """The tour in one appearance (dark or light), from the first start to the last error state."""

    def __init__(self, options, theme, host, vendor_site):
        self.build = options.build
        self.folder = options.pictures
        self.only = options.only
        self.minutes = options.minutes
        self.theme = theme
        self.host = host
        self.vendor_site = vendor_site
        self.screen = interface.Interface()
        self.application = self.mac = None

    # --- The program ---

    @contextlib.contextmanager
    def started(self, onboarded=True, shown=True, **preferences):
        """Runs Fenwhirl, with its window on the screen if `shown` is true."""
        shutil.rmtree(STATE, ignore_errors=True)  # otherwise the window would have the size of an earlier picture
        PREFERENCES.parent.mkdir(parents=True, exist_ok=True)
        PREFERENCES.write_text(json.dumps({"theme": self.theme, "didOnboard": onboarded,
                                           "brenor.update.lastCheck": time.time(), **preferences}), encoding="utf-8")
        with stage.Application(self.build, scale=SCALE) as self.application:
            if onboarded and shown:
                # The program starts hidden; a second start makes it show its window.
                stage.wait_until(lambda: self.host.item, "the status item is there")
                with stage.Application(self.build, scale=SCALE) as second:
                    second.child.wait(stage.PATIENCE_SECONDS)
            if shown:
                # The introduction covers the pages, also for assistive technology.
                self.screen.wait_for("Tableau de bord" if onboarded else "Bienvenue dans Fenwhirl")
            yield
            self.application.stop()
            self.host.item = None

    def windows(self, title="^Fenwhirl$"):
        """The windows on the screen with this title, as (X11 window ID, width)."""
        found = []
        answer = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", title],
                                capture_output=True, text=True, check=False).stdout
        for window in answer.split():
            place = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window],
                                   capture_output=True, text=True, check=False).stdout
            sizes = dict(line.split("=") for line in place.splitlines())
            if "WIDTH" in sizes:
                found.append((window, int(sizes["WIDTH"])))
        return found

    def window(self, narrow=False):
        """The X11 window ID of the main window, or, with `narrow`, of the panel."""
        fits = [window for window, width in self.windows() if (width <= 460 * SCALE) == narrow]
        return fits[0] if fits else None

    # --- Pictures ---

    def picture(self, name, narrow=False, title=None):
        """Saves a screenshot of a window, as soon as two in a row are equal: then all animations have ended."""
        file = self.folder / f"{name}-{self.theme}.png"
        file.parent.mkdir(parents=True, exist_ok=True)
        shot = before = None
        end = time.monotonic() + stage.PATIENCE_SECONDS
        while time.monotonic() < end:
            shot = self.shot(narrow, title)
            now = shot and hashlib.sha256(shot).digest()
            if now and now == before:
                break
            before = now
            time.sleep(0.2)
        if not shot:
            raise stage.StageError(f"there is no window for {file.name}")
        subprocess.run(["convert", "ppm:-", file], input=shot, check=True)
        print(f"  {file.relative_to(self.folder)}", flush=True)

    def shot(self, narrow, title=None):
        """The current content of a window as PPM. The panel's includes its surroundings, which show at its round corners."""
        window = next((name for name, _ in self.windows(title)), None) if title else self.window(narrow)
        if window is None:
            return None
        what = ["-window", window]
        if narrow:
            geometry = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window],
                                      capture_output=True, text=True, check=False).stdout
            place = dict(line.split("=") for line in geometry.splitlines())
            margin = round(24 * SCALE)
            x, y, width, height = (int(place.get(name, 0)) for name in ("X", "Y", "WIDTH", "HEIGHT"))
            what = ["-window", "root", "-crop", f"{width + 2 * margin}x{height + 2 * margin}"
                    f"+{max(0, x - margin)}+{max(0, y - margin)}", "+repage"]
        return subprocess.run(["import", *what, "ppm:-"], capture_output=True, check=False).stdout

    def both_ends(self, name):
        """Takes pictures of the top of a page, and of its end after scrolling."""
        self.picture(name)
        self.scroll()
        self.picture(f"{name}-scrolled")
        self.scroll(downwards=False)

    # --- Actions ---

    def open_page(self, name):
        self.screen.press(PAGES[name], "page tab")
        self.screen.wait_for(PAGES[name], "heading")
        self.rest()

    def rest(self):
        """Moves the pointer away, so that no control is in its hover state."""
        subprocess.run(["xdotool", "mousemove", "0", "0"], check=True)

    def press_elsewhere(self):
        """Clicks on an empty part of the window, which closes any open menu or panel."""
        subprocess.run(["xdotool", "mousemove", "--window", self.window(), *pixels(100, 440), "click", "1"], check=True)
        self.rest()

    def scroll(self, downwards=True):
        """Turns the mouse wheel over the page far enough to reach its end (or its top)."""
        subprocess.run(["xdotool", "mousemove", "--window", self.window(), *pixels(600, 280), "click", "--repeat", "60", "--delay", "2", "5" if downwards else "4"], check=True)
        self.rest()

    def choose_preset(self, title):
        before = self.screen.texts().count(title)
        self.screen.press("Préréglage")
        stage.wait_until(lambda: self.screen.texts().count(title) > before, "the menu opens")
        self.screen.press(title, "menu item")
        stage.wait_until(lambda: self.screen.texts().count(title) <= before + 1, "the menu closes")

    def menu(self, control, picture):
        self.screen.press(control, "combo box")
        stage.wait_until(lambda: self.screen.find(lambda _: True, "menu item"), "the menu opens")
        self.rest()
        self.picture(picture)
        self.press_elsewhere()
        stage.wait_until(lambda: not self.screen.find(lambda _: True, "menu item"), "the menu closes")

    @contextlib.contextmanager
    def dragged(self, slider, offset, by, narrow=False):
        """Holds the point at that offset from a slider's upper left corner, moved to the right by that many points. The slider is
        in the main window, or, with `narrow`, in the panel.
        """
        # Qt tells a slider's position in points on every screen, but its size is wrong where a point is several pixels.
        place = slider.place()
        x, y = place.x + offset[0], place.y + offset[1]
        window = ["mousemove", "--window", self.window(narrow)]
        subprocess.run(["xdotool", *window, *pixels(x, y), "mousedown", "1"], check=True)
        for step in range(1, 5):
            subprocess.run(["xdotool", *window, *pixels(x + by * step / 4, y)], check=True)
        yield
        subprocess.run(["xdotool", "mouseup", "1"], check=True)
        self.rest()

    def read_chart(self):
        """Puts the keyboard's cursor on a sample of the dashboard's chart."""
        chart = self.screen.wait_for("Température du processeur", "chart")
        stage.wait_until(lambda: "focusable" in chart.now().states, "two temperatures were read")
        subprocess.run(["xdotool", "windowfocus", "--sync", self.window()], check=True)
        chart.take_focus()
        # Without a reading the description is the range of all temperatures, with its two units. The keys show the focus ring.
        for key, units in (("", 1), ("Escape", 2), ("Home", 1)):
            if key:
                subprocess.run(["xdotool", "key", key], check=True)
            stage.wait_until(lambda: chart.description().count("°C") == units, "the keyboard's cursor comes or goes")

    def slider_at(self, text, value):
        """Waits until the last slider of that name has at least this value."""
        stage.wait_until(lambda: self.slider(text).value() >= value,
                         lambda: f"{text} is dragged to {value}; it is {self.slider(text).value()}")

    def slider(self, text):
        """The last slider whose name begins with that text."""
        return self.screen.wait_for(lambda name: name.startswith(text), "slider")

    @contextlib.contextmanager
    def failing_installation(self):
        """Makes the installation of the helper fail: a file with the name of its folder is in the way."""
        shutil.rmtree(stage.HELPER.parent, ignore_errors=True)
        stage.HELPER.parent.write_text("", encoding="utf-8")
        yield
        stage.HELPER.parent.unlink()

    @contextlib.contextmanager
    def open_panel(self):
        time.sleep(0.5)  # a press just after the panel has closed belongs to the click that closed it, and opens nothing
        self.host.press(round(SCREEN[0] * SCALE) - 300, 10)
        stage.wait_until(lambda: self.window(narrow=True), "the panel opens")
        self.rest()
        yield
        self.press_elsewhere()
        stage.wait_until(lambda: not self.window(narrow=True), "the panel closes")

    def panel(self, picture):
        with self.open_panel():
            self.picture(picture, narrow=True)

    def panel_in_use(self, fan):
        """The panel while it is used: the pointer over the symbol of that fan, the last one, which has a constant speed, and the
        knob of its slider held. The speed is set back.
        """
        with self.open_panel():
            slider = self.screen.wait_for(fan, "slider")
            place = slider.place()
            symbol = pixels(place.x + 9, place.y - 18)
            subprocess.run(["xdotool", "mousemove", "--window", self.window(narrow=True), *symbol], check=True)
            time.sleep(1)  # the tooltip appears after 0.6 s; assistive technology does not see it
            self.picture("panel/symbol-hovered", narrow=True)
            self.rest()
            before = slider.value()
            share = (before - slider.lowest_value()) / (slider.highest_value() - slider.lowest_value())
            with self.dragged(slider, (9 + share * (308 - 18), 10), 55, narrow=True):
                stage.wait_until(lambda: slider.value() >= before + 800, "the knob is dragged")
                self.picture("panel/knob-dragged", narrow=True)
            slider.set_value(before)

    # --- Walk ---

    def first_start(self):
        """The introduction without enabling anything, and the pages while Fenwhirl can only read."""
        with self.started(onboarded=False):
            self.screen.wait_for("Bienvenue dans Fenwhirl")
            self.picture("onboarding/0")
            self.screen.press("Suivant")
            self.screen.wait_for("Activer le contrôle")
            self.picture("onboarding/1")
            self.screen.press("Suivant")
            self.screen.wait_for("Tout est prêt")
            self.picture("onboarding/2")
            self.screen.press("Commencer")
            for name in ("fans", "sensors", "presets", "alerts", "settings"):
                self.open_page(name)
                self.both_ends(f"pages/{name}") if name in ("sensors", "settings") else self.picture(f"pages/{name}")
            self.menu("Langue", "menus/language")
            self.open_page("dashboard")
            self.choose_preset("Auto")
            time.sleep(60 * self.minutes)
            self.mac.hold()
            self.screen.wait_for("63 °C")
            self.picture("pages/dashboard")
            self.menu("Préréglage", "menus/preset")
            self.choose_preset("Équilibré")
            self.screen.wait_for("Activer")
            self.panel("panel/needs-helper")
            self.open_page("fans")
            self.picture("states/fans-needs-helper")
            self.open_page("dashboard")
            with self.failing_installation():
                self.screen.press("Activer")
                self.screen.wait_for(lambda text: text.startswith("L'activation a été annulée"))
                self.both_ends("states/dashboard-banners")

    def in_control(self):
        """With the helper: presets, modes, applications, heat, the report, and refusals."""
        with self.started(onboarded=False):
            self.screen.press("Suivant")
            self.screen.press("Activer le contrôle")
            self.screen.wait_for("Contrôle activé")
            self.picture("onboarding/1-installed")
            self.screen.press("Suivant")
            self.screen.press("Commencer")
            self.mac.turn(2694, 2846)
            self.choose_preset("Équilibré")
            self.both_ends("pages/dashboard-balanced")
            self.panel("panel/panel")
            self.open_page("settings")
            self.both_ends("states/settings-installed")
            self.modes()
            self.apps()
            self.heat()
            self.report()
            self.refusal()

    def modes(self):
        self.mac.turn(2694, 3396)
        self.open_page("fans")
        self.screen.press("Vitesse fixe", "radio button") # of the last fan
        self.slider("Vitesse demandée").set_value(3400)
        self.picture("states/fans-modes")
        self.panel("panel/modes")
        self.panel_in_use("Ventilateur droit")
        self.drags()
        self.menu("Capteur", "menus/sensor")

    def drags(self):
        """A handle of the first fan's curve and the knob of the second one's speed, while they are held. Both go back."""
        with self.dragged(self.slider("La vitesse augmente"), (7, 7), 60):
            self.slider_at("La vitesse augmente", 65)
            self.picture("states/fans-handle-dragged")
        self.slider("La vitesse augmente").set_value(50)
        track, knob, share = 349, 18, (3400 - 1200) / (6241 - 1200)  # of a card in a window of the usual size
        with self.dragged(self.slider("Vitesse demandée"), (knob / 2 + share * (track - knob), 10), 60):
            self.slider_at("Vitesse demandée", 4300)
            self.picture("states/fans-knob-dragged")
        self.slider("Vitesse demandée").set_value(3400)

    def apps(self):
        with Workload():
            self.open_page("apps")
            self.screen.wait_for("Musique")
            self.picture("pages/apps")
            self.screen.press("Navigateur", "check box")
            self.screen.wait_for("Fermer Navigateur ?")
            self.picture("dialogs/quit")
            self.screen.press("Annuler")
        self.open_page("dashboard")
        # Without `ps` the program cannot list any process.
        subprocess.run(["mount", "--bind", "/dev/null", "/usr/bin/ps"], check=True)
        self.open_page("apps")
        self.screen.wait_for("Aucune application ne sollicite beaucoup le processeur.")
        self.picture("states/apps-empty")
        subprocess.run(["umount", "/usr/bin/ps"], check=True)

    def heat(self):
        self.mac.read(HOT)
        self.mac.turn(5434, 5861)
        self.open_page("dashboard")
        self.choose_preset("Équilibré")
        self.screen.wait_for("Le Mac est chaud")
        self.mac.hold()
        self.screen.wait_for("87 °C")
        self.both_ends("states/dashboard-hot")
        self.panel("states/panel-hot")
        self.mac.read(COOL)
        self.mac.turn(2694, 2846)
        self.mac.release()
        self.screen.wait_for("Tout est normal")

    def report(self):
        self.open_page("settings")
        switch = "Inclure un test des ventilateurs (6 secondes)"
        stage.wait_until(lambda: self.scroll() or self.screen.find(switch, "check box"), "the page is scrolled")
        self.screen.press(switch, "check box")
        self.screen.press("Créer le rapport")
        self.screen.wait_for("Création en cours…")
        self.picture("states/settings-report-busy")
        # The save dialog is Qt's own, because no desktop provides one here.
        self.screen.wait_for("Annuler", "push button", seconds=40)
        self.picture("dialogs/save", title="^Enregistrer")
        self.screen.press("Annuler", "push button")
        self.screen.wait_for("Créer le rapport")

    def refusal(self):
        self.mac.tell("refuse all")
        self.open_page("dashboard")
        self.choose_preset("Max")
        self.screen.wait_for(lambda text: text.startswith("Ce Mac n'a pas accepté"))
        self.picture("states/dashboard-refused")
        self.panel("panel/refused")
        self.mac.tell("accept all")

    def update(self):
        """The offer of a newer version at launch, while no other window is open."""
        if self.vendor_site is None:
            print("  (no picture of an update: a network of our own is not allowed here)", flush=True)
            return
        with self.started(shown=False, **{"brenor.update.lastCheck": 0}):
            self.screen.wait_for("Télécharger")
            self.picture("dialogs/update", narrow=True)

    def old_helper(self):
        """The installed helper belongs to an earlier version of the program."""
        stage.install_helper(self.build)
        stage.HELPER.write_text("#!/bin/sh\necho 0.9\n", encoding="ascii")
        with self.started():
            self.screen.wait_for("Mettre à jour")
            self.picture("states/dashboard-outdated")
            self.open_page("fans")
            self.picture("states/fans-outdated")
            self.open_page("settings")
            self.scroll()
            self.picture("states/settings-outdated")

    def no_fans(self):
        self.mac.tell("set FNum 0")
        with self.started():
            self.screen.wait_for(lambda text: text.startswith("Ce Mac n'a pas de ventilateur"))
            self.mac.hold()
            self.picture("states/dashboard-no-fans")
            self.open_page("fans")
            self.picture("states/fans-none")
            self.panel("states/panel-no-fans")

    def no_controller(self):
        with self.started():
            self.screen.wait_for(lambda text: text.startswith("Fenwhirl n'arrive pas"))
            self.picture("states/dashboard-no-smc")
            self.open_page("sensors")
            self.picture("states/sensors-no-smc")
            self.panel("states/panel-no-smc")

    def sizes(self):
        """An ordinary Mac in the smallest and in large windows, and the chart with the keyboard focus."""
        stage.install_helper(self.build)
        with self.started():
            self.choose_preset("Équilibré")
            self.mac.hold()
            for width, height in ((920, 560), (1680, 1000), (2560, 1400)):
                subprocess.run(["xdotool", "windowsize", "--sync", self.window(), str(SCALE * width), str(SCALE * height)],
                               check=True)
                for name in ("dashboard", "fans", "sensors", "alerts", "settings"):
                    self.open_page(name)
                    self.picture(f"sizes/{name}-{width}-ordinary")
            self.open_page("dashboard")
            self.read_chart()
            self.picture("states/dashboard-chart-focus")

    def many(self):
        """More sensors than any Mac has, and as many fans as its controller can describe, in the smallest and in a large window;
        then the panel with more fans than fit on the screen.
        """
        self.mac.crowd(fans=10, sensors=500)
        with self.started():
            self.mac.hold()
            for size in ((920, 560), (1920, 1200)):
                subprocess.run(["xdotool", "windowsize", "--sync", self.window(), *(str(SCALE * side) for side in size)],
                               check=True)
                for name in PAGES:
                    self.open_page(name)
                    self.picture(f"sizes/{name}-{size[0]}")
            self.mac.crowd(fans=30)
            self.open_page("fans")
            self.screen.wait_for("Ventilateur 11")
            with self.open_panel():
                self.picture("states/panel-many", narrow=True)
                # The pointer over the scroll bar keeps it on the screen.
                place = self.screen.wait_for("Ventilateur 3", "slider").place()
                bar = pixels(place.x + 308 + 16 - 6, place.y)
                subprocess.run(["xdotool", "mousemove", "--window", self.window(narrow=True), *bar], check=True)
                self.picture("states/panel-many-bar", narrow=True)
                subprocess.run(["xdotool", "click", "--repeat", "6", "5"], check=True)
                self.picture("states/panel-many-scrolled", narrow=True)

    def walk(self):
        with ScreenshotMac(self.build, max(1, self.minutes)) as self.mac:
            for part in (self.first_start, self.update, self.in_control, self.old_helper, self.sizes, self.many, self.no_fans):
                if self.only in (None, part.__name__):
                    part()
                    shutil.rmtree(stage.HELPER.parent, ignore_errors=True)
        if self.only in (None, "no_controller"):
            self.no_controller()


def start_vendor_site(build):
    """Starts the fake web site with a newer version; returns None where that is not possible."""
    domain = vendor_domain(build)
    try:
        return Site(domain, redirect_vendor_host(domain).certificate_for(domain), "0.2")
    except OSError:
        return None


def walk(options, host):
    if stage.has_own("name"):
        socket.sethostname(COMPUTER)
    else:
        print(f"This computer keeps its name: the pictures show it instead of \"{COMPUTER}\".")
    vendor_site = start_vendor_site(options.build)
    for theme in [options.theme] if options.theme else ["dark", "light"]:
        print(f"{theme}:")
        Tour(options, theme, host, vendor_site).walk()


def main():
    parser = picture_stage.options_parser(__doc__)
    parser.add_argument("--theme", choices=["dark", "light"], help="only this appearance")
    parser.add_argument("--only", help="only the pictures of this part of the walk")
    parser.add_argument("--minutes", type=float, default=0, help="of temperatures in the chart of the dashboard's picture")
    return picture_stage.perform(walk, parser.parse_args(), SCREEN, SCALE)


if __name__ == "__main__":
    sys.exit(main())
