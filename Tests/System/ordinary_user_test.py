"""Tests as an ordinary user: on a computer whose controller Fenwhirl cannot read, on one without the helper, and beside another
session's Fenwhirl.
"""

import os
import pathlib
import re
import signal
import unittest

import stage
from accessibility_test import PAGES
from desktop import Desktop
from scene import ORDINARY_USER


def handles_termination(process):
    """Whether a process has a handler of its own for SIGTERM."""
    status = pathlib.Path(f"/proc/{process}/status").read_text(encoding="ascii", errors="replace")
    caught = int(re.search(r"^SigCgt:\s+([0-9a-f]+)", status, re.MULTILINE).group(1), 16)
    return bool(caught >> (signal.SIGTERM - 1) & 1)


class AnotherUser(unittest.TestCase):
    def test_without_a_controller_every_page_says_what_there_is(self):
        with Desktop(controller=False, user=ORDINARY_USER) as desktop:
            application = desktop.start()
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()
            desktop.screen.wait_for("Fenwhirl n'arrive pas à lire les capteurs de ce Mac.")
            desktop.screen.wait_for("–")
            for page, text in zip(PAGES, (None, "Aucun ventilateur détecté sur ce Mac.", "0 capteurs de température",
                                          None, "Un clic pour changer le comportement des ventilateurs",
                                          "Tester l'alerte", "Non activé : Fenwhirl peut seulement lire les températures.")):
                desktop.screen.press(page, "page tab")
                desktop.screen.wait_for(page, "heading")
                if text:
                    desktop.screen.wait_for(text)
            desktop.screen.press("Préréglages", "page tab")
            desktop.screen.press("Appliquer: Max", "push button")
            desktop.screen.wait_for("Actif")
            self.assertTrue(application.running())
            self.assertEqual(application.stop(), 0)

    def test_without_the_helper_it_shows_everything_and_offers_to_install_it(self):
        with Desktop(user=ORDINARY_USER) as desktop:
            application = desktop.start()
            self.assertEqual(desktop.start_again(), 0)
            desktop.wait_for_main_window()
            desktop.screen.wait_for("Mac en bonne santé")
            desktop.screen.press("Préréglages", "page tab")
            desktop.screen.press("Appliquer: Max", "push button")
            desktop.screen.press("Ventilateurs", "page tab")
            desktop.screen.wait_for("Activer le contrôle des ventilateurs")
            # No authentication agent can ask for a password here: the activation fails, says so, and changes nothing.
            desktop.screen.press("Activer", "push button")
            desktop.screen.press("Tableau de bord", "page tab")
            desktop.screen.wait_for("L'activation a été annulée ou a échoué.")
            desktop.screen.wait_for("Activer le contrôle des ventilateurs")
            self.assertNotIn("key=F0Tg", "".join(desktop.mac.tell("log 1")))
            self.assertTrue(application.running())

    def test_the_program_in_another_session_is_left_alone(self):
        with Desktop(controller=False) as desktop:
            elsewhere = desktop.home / "elsewhere"  # the runtime folder of the other session, where its lock file is
            elsewhere.mkdir(0o700)
            first = desktop.start(XDG_RUNTIME_DIR=str(elsewhere))
            with stage.Application(desktop.build,
                                   environment={"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}) as second:
                stage.wait_until((pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / "fenwhirl.lock").exists,
                                 "the second one has its own lock")
                stage.wait_until(lambda: handles_termination(second.child.pid), "it can be asked to end")
                self.assertTrue(first.running())
                self.assertEqual(second.stop(), 0)
            self.assertTrue(first.running())


if __name__ == "__main__":
    unittest.main()
