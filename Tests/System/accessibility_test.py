"""Tests of the accessibility tree of the running program: every page, the panel, the introduction and the dialogs.

Every control must have a role, a name, an action and, where it applies, a value. Nothing else may offer an action.
"""

import os
import unittest
import unittest.mock

import interface
import stage
from desktop import Desktop

# The roles of controls, and of the controls that have a value.
USED = {"push button", "check box", "toggle button", "radio button", "combo box", "slider", "spin button", "page tab",
        "menu item", "scroll bar", "entry", "link"}
VALUED = {"slider", "spin button", "scroll bar"}
PASSIVE_ACTIONS = {"SetFocus"}
PAGES = {
    "Tableau de bord": {"page tab", "combo box", "radio button", "chart", "slider", "spin button"},
    "Ventilateurs": {"page tab", "radio button", "slider", "combo box", "spin button", "push button"},
    "Capteurs": {"page tab", "list item"},
    "Applications": {"page tab", "check box", "list item"},
    "Préréglages": {"page tab", "push button"},
    "Alertes": {"page tab", "check box", "slider", "push button"},
    "Réglages": {"page tab", "check box", "radio button", "combo box", "slider", "push button"},
}


class Accessibility(unittest.TestCase):
    def check(self, desktop, where):
        """Checks every visible node; returns the roles that were found."""
        roles = set()
        for node in desktop.screen.nodes():
            try:
                roles.add(self.check_node(where, node))
            except interface.Error:
                if not self.is_gone(node):
                    raise
        return roles

    @staticmethod
    def is_gone(node):
        """Whether a node has disappeared, as the row of an application or a sensor may at any moment."""
        try:
            node.now()
        except interface.Error:
            return True
        return False

    def check_node(self, where, node):
        """Checks one node; returns its role."""
        role, name, actions = node.role, node.name, set(node.actions())
        about = f"{where}: {role} {name!r} with {sorted(actions)}"
        if role in USED:
            self.assertTrue(name and name.strip(), f"{about} has no name")
            self.assertTrue(actions - PASSIVE_ACTIONS, f"{about} offers nothing to do")
        else:
            self.assertFalse(actions - PASSIVE_ACTIONS, f"{about} can be used, but does not look like it")
        if role in ("push button", "check box", "combo box", "slider", "spin button", "page tab"):
            self.assertTrue("focusable" in node.states, f"{about} is out of the keyboard's reach")
        if role in VALUED:
            low, now, high = node.lowest_value(), node.value(), node.highest_value()
            self.assertTrue(low < high and low <= now <= high, f"{about}: {low} ≤ {now} ≤ {high}")
            self.assertGreater(node.step(), 0, about)
        if role in ("label", "list item", "heading"):
            self.assertTrue(name and name.strip(), f"{about} says nothing")
        return role

    def show(self, desktop):
        """Opens the main window, high enough for the longest page."""
        desktop.start()
        self.assertEqual(desktop.start_again(), 0)
        window = desktop.wait_for_main_window()
        desktop.resize(window, 1040, 1900)

    def test_every_page(self):
        settings = desktop_settings()
        with Desktop(height=2000, preferences=settings) as desktop:
            desktop.start_busy_application()
            self.show(desktop)
            for page, expected in PAGES.items():
                desktop.screen.press(page, "page tab")
                desktop.screen.wait_for(page, "heading")
                stage.wait_until(lambda expected=expected: expected <= {node.role for node in desktop.screen.nodes()},
                                 lambda page=page: f"all of {page}; there is {desktop.screen.outline()}")
                with self.subTest(page=page):
                    self.check(desktop, page)

    def test_values_can_be_read_and_set(self):
        with Desktop(height=2000, preferences=desktop_settings()) as desktop:
            self.show(desktop)
            desktop.screen.press("Alertes", "page tab")
            desktop.screen.wait_for("Seuil d'alerte : 90 °C", "label")
            slider = desktop.screen.wait_for("Seuil d'alerte", "slider")
            self.assertEqual(slider.value(), 90)
            slider.set_value(75)
            desktop.screen.wait_for("Seuil d'alerte : 75 °C", "label")
            switch = desktop.screen.find("Prévenir quand le Mac chauffe trop", "check box")
            self.assertIn("checked", switch.states)
            desktop.screen.press("Prévenir quand le Mac chauffe trop", "check box")
            stage.wait_until(lambda: "checked" not in switch.now().states, "the switch is off")
            desktop.screen.press("Ventilateurs", "page tab")
            desktop.screen.wait_for("La vitesse augmente à partir de 50 °C", "label")
            stepper = desktop.screen.wait_for("La vitesse augmente à partir de", "spin button")
            self.assertEqual(stepper.value(), 50)
            self.assertEqual(stepper.text(), "50 °C")
            stepper.set_value(65)
            desktop.screen.wait_for("La vitesse augmente à partir de 65 °C", "label")
            # A gauge gives its speed as a text, beside the fan's name.
            desktop.screen.wait_for(lambda text: text.endswith(" tr/min") and "–" not in text, "label")
            desktop.screen.press("Tableau de bord", "page tab")
            chart = desktop.screen.wait_for("Température du processeur", "chart")
            stage.wait_until(lambda: "°C" in chart.description(), "the chart says between which values it moves")

    def test_the_question_before_quitting_an_application(self):
        with Desktop(height=2000) as desktop:
            desktop.start_busy_application()
            self.show(desktop)
            desktop.screen.press("Applications", "page tab")
            stage.wait_until(lambda: desktop.screen.find("Busy", "check box"),
                             lambda: f"the busy application; there is {desktop.screen.outline()}")
            desktop.screen.press("Busy", "check box")
            for answer in ("Fermer", "Forcer la fermeture", "Annuler"):
                desktop.screen.wait_for(answer, "push button")
            self.assertIn("dialog", self.check(desktop, "question"))
            dialogs = [node for node in desktop.screen.nodes() if node.role == "dialog"]
            self.assertEqual([node.name for node in dialogs], ["Fermer Busy ?"])
            self.assertIn("modal", dialogs[0].states)
            self.assertFalse(desktop.screen.find("Applications", "page tab"), "what the question covers cannot be reached")
            desktop.screen.press("Annuler")
            desktop.screen.wait_until_gone("Annuler")

    def test_the_open_menus(self):
        with Desktop(height=2000, preferences=desktop_settings()) as desktop:
            self.show(desktop)
            for page, menu, item in (("Tableau de bord", "Préréglage", "Jeu"), ("Ventilateurs", "Capteur", "Batterie"),
                                     ("Réglages", "Langue", "Deutsch")):
                desktop.screen.press(page, "page tab")
                desktop.screen.press(menu, "combo box")
                desktop.screen.wait_for(item, "menu item")
                self.check(desktop, f"menu of {page}")
                desktop.key("Escape")
                desktop.screen.wait_until_gone(item, "menu item")

    def test_before_the_session_begins_nothing_is_found(self):
        with unittest.mock.patch.dict(os.environ, DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere"):
            self.assertIsNone(interface.Interface().find("Fenwhirl"))

    def test_the_introduction(self):
        with Desktop(onboarded=False) as desktop:
            desktop.start()
            desktop.wait_for_main_window()
            for title, button in (("Bienvenue dans Fenwhirl", "Suivant"), ("Pilote tes ventilateurs", "Suivant"),
                                  ("Tout est prêt", "Commencer")):
                desktop.screen.wait_for(title)
                self.assertIn("dialog", self.check(desktop, title))
                desktop.screen.press(button)
            desktop.screen.wait_for("Mac en bonne santé")

    def test_the_panel(self):
        with Desktop() as desktop:
            desktop.start_panel()
            desktop.start()
            desktop.click_item()
            desktop.screen.wait_for("Ouvrir Fenwhirl")
            roles = self.check(desktop, "panel")
            self.assertLessEqual({"radio button", "slider", "push button", "list item"}, roles)


def desktop_settings():
    """Preferences with one fan at a fixed speed and one that follows a sensor, so that every control of a fan is shown."""
    import base64
    import json
    common = {"constantRPM": 3000, "sensorKey": "", "startTemp": 50, "maxTemp": 90}
    text = json.dumps({"0": {"mode": "constant", **common}, "1": {"mode": "sensor", **common}})
    return {"settings": {"data": base64.b64encode(text.encode()).decode()}}


if __name__ == "__main__":
    unittest.main()
