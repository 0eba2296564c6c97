"""Tests of what the settings page changes on the computer: the helper, the login item, and the report."""

import configparser
import pathlib
import stat
import subprocess
import unittest

import stage
from scene import Scene

PORTAL = pathlib.Path(__file__).with_name("fake_portal.py")
START_WITH_SESSION = "Ouvrir Fenwhirl au démarrage du Mac"


class Control(unittest.TestCase):
    def test_activating_installs_the_helper_and_deactivating_hands_back_and_removes_it(self):
        # As root of this private namespace, who needs no password.
        with Scene(user=None, helper=False) as scene:
            scene.choose_preset("Max")
            scene.open_page("Réglages")
            scene.screen.press("Activer le contrôle")
            stage.wait_until(stage.HELPER.exists, "the helper is installed")
            scene.wait_for_modes("manual", "and does as the preset says")
            status = stage.HELPER.stat()
            self.assertEqual((stat.S_IMODE(status.st_mode), status.st_uid, status.st_gid), (0o4755, 0, 0))
            self.assertEqual(stage.HELPER.read_bytes(), (scene.build / "bin/Fenwhirl").read_bytes())

            scene.screen.press("Désactiver")
            stage.wait_until(lambda: not stage.HELPER.exists(), "the helper is removed")
            scene.screen.wait_for("Activer le contrôle")
            self.assertEqual((scene.fan(0)[2], scene.fan(1)[2]), ("automatic", "automatic"))

    def test_resetting_hands_every_fan_back(self):
        with Scene() as scene:
            scene.choose_preset("Max")
            scene.wait_for_modes("manual", "fans under manual control")
            scene.open_page("Réglages")
            scene.screen.press("Remettre les ventilateurs en automatique")
            scene.wait_for_modes("automatic", "handed back")
            scene.polls(6)  # a speed that is still wanted would be sent again after ten seconds
            self.assertEqual((scene.fan(0)[2], scene.fan(1)[2]), ("automatic", "automatic"), "for good")


class StartingWithTheSession(unittest.TestCase):
    def test_the_switch_writes_and_removes_the_entry(self):
        with Scene() as scene:
            entry = pathlib.Path.home() / ".config/autostart/com.fenwhirl.app.desktop"
            scene.open_page("Réglages")
            self.assertFalse(entry.exists())
            scene.screen.press(START_WITH_SESSION)
            stage.wait_until(entry.exists, "the entry is written")
            written = configparser.ConfigParser(interpolation=None)
            written.read(entry, encoding="utf-8")
            self.assertEqual(written["Desktop Entry"]["Exec"], f'"{scene.build / "bin/Fenwhirl"}"')
            scene.screen.press(START_WITH_SESSION)
            stage.wait_until(lambda: not entry.exists(), "the entry is removed")

    def test_an_entry_that_cannot_be_written_is_reported(self):
        with Scene() as scene:
            (pathlib.Path.home() / ".config/autostart").write_text("not a folder", encoding="ascii")
            scene.open_page("Réglages")
            scene.screen.press(START_WITH_SESSION)
            scene.screen.wait_for("Impossible de changer le démarrage automatique.")


class TheReport(unittest.TestCase):
    @staticmethod
    def press_anywhere(scene, name, role):
        next(node for node in scene.screen.nodes(showing=False) if (node.name, node.role) == (name, role)).press()

    def test_the_report_is_saved_where_the_user_chooses(self):
        with Scene() as scene:
            (pathlib.Path.home() / "Documents").mkdir(exist_ok=True)
            scene.open_page("Réglages")
            # The controls are below the visible part of the page; assistive technology can use them nevertheless.
            self.press_anywhere(scene, "Inclure un test des ventilateurs (6 secondes)", "check box")
            self.press_anywhere(scene, "Créer le rapport", "push button")
            # Without a desktop's own dialog, Qt shows its own, in the program's language.
            scene.screen.wait_for("Annuler", "push button", seconds=40)
            scene.screen.press("Enregistrer")
            report = pathlib.Path.home() / "Documents/Fenwhirl-diagnostic.txt"
            stage.wait_until(report.exists, "the report is saved")
            text = report.read_text(encoding="utf-8")
            self.assertIn("TCXC", text)
            self.assertIn("\n\nAssistant installé : oui\n\n-- Test d'écriture (6 s) --\n", text)
            self.assertEqual((scene.fan(0)[2], scene.fan(1)[2]), ("automatic", "automatic"))

    def test_the_desktops_own_dialog_is_asked_where_there_is_one(self):
        with Scene() as scene:
            scene.open_page("Réglages")
            with fake_save_dialog(pathlib.Path.home()):
                self.press_anywhere(scene, "Créer le rapport", "push button")
                report = pathlib.Path.home() / "Fenwhirl-diagnostic.txt"
                stage.wait_until(report.exists, "the report is saved")
            self.assertIn("TCXC", report.read_text(encoding="utf-8"))
            self.assertIsNone(scene.screen.find("Annuler", "push button"))


def fake_save_dialog(folder):
    portal = stage.Process(["/usr/bin/python3", "-B", PORTAL, "saves", folder], stdout=subprocess.PIPE)
    stage.Lines(portal.child.stdout).next()
    return portal


if __name__ == "__main__":
    unittest.main()
