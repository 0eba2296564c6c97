"""Tests of the built program's daily update check, against a fake of the vendor's web site on this computer."""

import contextlib
import json
import os
import pathlib
import time
import unittest

import interface
import stage
from vendor_site import WORK, Authority, Site, vendor_domain, redirect_vendor_host

BUILD = pathlib.Path(os.environ.get("FENWHIRL_BUILD", stage.ROOT / "build/dev")).resolve()
DOMAIN = vendor_domain(BUILD)
OPENED = WORK / "opened"


class Updates(unittest.TestCase):
    def setUp(self):
        stage.require_own("mounts", "other certificates and another table of hosts")
        try:
            self.trusted = redirect_vendor_host(DOMAIN)
        except OSError as error:
            self.skipTest(str(error))
        self.stranger = Authority("stranger")
        # Replaces xdg-open, which the desktop would open addresses with. The script renames the finished file, so that the test
        # never reads half of an address.
        browser = WORK / "bin/xdg-open"
        browser.parent.mkdir()
        browser.write_text(f'#!/bin/sh\nprintf "%s" "$1" > {OPENED}.new && mv {OPENED}.new {OPENED}\n', encoding="ascii")
        browser.chmod(0o755)
        os.environ["PATH"] = f"{browser.parent}:{os.environ['PATH']}"
        stack = contextlib.ExitStack()
        self.addCleanup(stack.close)
        self.enter = stack.enter_context
        display = self.enter(stage.Display())
        display.start_window_manager()
        os.environ.update(display.environment())
        os.environ.update(self.enter(stage.SessionBus()).environment())
        self.mac = self.enter(stage.SimulatedMac(BUILD, "MacBookPro11,4", "--speed", "0"))
        self.screen = interface.Interface()

    @property
    def file(self):
        return pathlib.Path.home() / ".config/com.fenwhirl.app/preferences.json"

    def remembered(self):
        return json.loads(self.file.read_text(encoding="utf-8"))

    def launch(self, **preferences):
        """Starts the program with its introduction already completed."""
        if not self.file.exists():
            self.file.parent.mkdir(parents=True)
            self.file.write_text(json.dumps({"didOnboard": True, "language": "fr", **preferences}), encoding="utf-8")
        return self.enter(stage.Application(BUILD))

    def test_a_newer_version_is_offered_once_and_its_page_opened(self):
        site = Site(DOMAIN, self.trusted.certificate_for(DOMAIN), "9.9")
        program = self.launch()
        self.screen.wait_for("Une nouvelle version est disponible")
        self.screen.wait_for("La version 9.9 de Fenwhirl est disponible. Elle est gratuite pour toi. Tu as la version 0.1.")
        self.assertEqual(site.requests, ["/maj/fenwhirl.json"])
        self.assertEqual(self.remembered()["brenor.update.notifiedVersion"], "9.9", "before the answer")
        self.assertLess(abs(self.remembered()["brenor.update.lastCheck"] - time.time()), 60)
        self.screen.wait_for("Plus tard")
        self.screen.press("Télécharger")
        stage.wait_until(OPENED.exists, "the page is opened")
        self.assertEqual(OPENED.read_text(encoding="ascii"), f"https://www.{DOMAIN}/get?v=9")
        self.screen.wait_until_gone("Une nouvelle version est disponible")
        self.assertEqual(program.stop(), 0)

        # On the same day it does not check again; the next day it does not offer the same version again.
        program = self.launch()
        stage.wait_until(self.screen.root, "the program is there")
        self.mac.await_polls()  # time in which it would check
        self.assertEqual(program.stop(), 0)
        self.assertEqual(len(site.requests), 1)
        yesterday = {**self.remembered(), "brenor.update.lastCheck": time.time() - 86400}
        self.file.write_text(json.dumps(yesterday), encoding="utf-8")
        program = self.launch()
        stage.wait_until(lambda: self.remembered()["brenor.update.lastCheck"] > time.time() - 3600, "it was asked again")
        self.assertEqual(len(site.requests), 2)
        stage.wait_until(self.screen.root, "the program is there")
        self.mac.await_polls()  # time in which it would offer the version
        self.assertFalse(self.screen.find("Une nouvelle version est disponible"))
        self.assertEqual(program.stop(), 0)

    def test_later_closes_the_alert(self):
        Site(DOMAIN, self.trusted.certificate_for(DOMAIN), "9.9")
        program = self.launch()
        self.screen.press("Plus tard")
        self.screen.wait_until_gone("Une nouvelle version est disponible")
        self.assertTrue(program.running())
        self.assertFalse(OPENED.exists())

    def test_the_alert_speaks_the_language_of_the_interface(self):
        Site(DOMAIN, self.trusted.certificate_for(DOMAIN), "9.9")
        self.launch(language="sr-Cyrl")
        self.screen.wait_for("Доступна је нова верзија")
        self.screen.wait_for("Верзија 9.9 програма Fenwhirl је доступна. Бесплатна је за тебе. Имаш верзију 0.1.")

    def check_that_the_answer_is_rejected(self, certificate):
        site = Site(DOMAIN, certificate, "9.9")
        program = self.launch()
        stage.wait_until(lambda: site.failures, "the program turns away")
        self.assertEqual(program.stop(), 0)
        self.assertEqual(site.requests, [])
        self.assertNotIn("brenor.update.lastCheck", self.remembered())
        self.assertNotIn("brenor.update.notifiedVersion", self.remembered())

    def test_an_untrusted_certificate_is_rejected(self):
        self.check_that_the_answer_is_rejected(self.stranger.certificate_for(DOMAIN))

    def test_a_certificate_for_another_host_is_rejected(self):
        self.check_that_the_answer_is_rejected(self.trusted.certificate_for("other.example"))


if __name__ == "__main__":
    unittest.main()
