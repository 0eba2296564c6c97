"""The daily look for a newer version, by the built program: a web server with a certificate of its own, in a network of its
own where the maker's name leads to it.
"""

import contextlib
import ctypes
import fcntl
import http.server
import json
import os
import pathlib
import re
import socket
import ssl
import struct
import subprocess
import threading
import time
import unittest

import stage

BUILD = pathlib.Path(os.environ.get("FENWHIRL_BUILD", stage.ROOT / "build/dev")).resolve()
WORK = pathlib.Path("/run/update-test")
OPENED = WORK / "opened"
CLONE_NEWNET = 0x40000000


def makers_domain():
    """What the program was built with."""
    cache = (BUILD / "CMakeCache.txt").read_text(encoding="utf-8")
    return re.search(r"^FENWHIRL_UPDATE_DOMAIN:STRING=(.+)$", cache, re.MULTILINE).group(1)


def leave_the_network():
    """From now on there is a loopback interface and nothing else."""
    if ctypes.CDLL(None, use_errno=True).unshare(CLONE_NEWNET) != 0:
        raise unittest.SkipTest(f"no network of our own: {os.strerror(ctypes.get_errno())}")
    up_and_running = 0x1 | 0x40
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        fcntl.ioctl(any_socket, 0x8914, struct.pack("16sh14x", b"lo", up_and_running))  # SIOCSIFFLAGS


def cover(path, with_path):
    subprocess.run(["mount", "--bind", str(with_path), str(path)], check=True)


class Authority:
    """An authority of certificates, in a folder as the system has one for those that it trusts."""

    def __init__(self, name):
        self.folder = WORK / name
        self.folder.mkdir(parents=True)
        self.openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", f"/CN={name}",
                     "-keyout", self.folder / "authority.key", "-out", self.folder / "authority.pem")

    def certificate_for(self, host):
        """Certificate and key of a server, as two files."""
        names = self.folder / "names"
        names.write_text(f"subjectAltName=DNS:{host}\n", encoding="ascii")
        self.openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", f"/CN={host}", "-keyout", self.folder / "server.key",
                     "-out", self.folder / "server.csr")
        self.openssl("x509", "-req", "-in", self.folder / "server.csr", "-days", "2", "-CAcreateserial",
                     "-CA", self.folder / "authority.pem", "-CAkey", self.folder / "authority.key",
                     "-extfile", names, "-out", self.folder / "server.crt")
        return self.folder / "server.crt", self.folder / "server.key"

    def be_trusted(self):
        """Makes it the only authority that this computer knows."""
        trusted = WORK / "trusted"
        trusted.mkdir(exist_ok=True)
        (trusted / "authority.pem").write_bytes((self.folder / "authority.pem").read_bytes())
        self.openssl("rehash", trusted)
        cover("/etc/ssl/certs", trusted)

    @staticmethod
    def openssl(*arguments):
        subprocess.run(["openssl", *map(str, arguments)], check=True, capture_output=True)


class Site:
    """The maker's web site; `requests` are the paths that were asked for, `failures` the connections that came to nothing."""

    def __init__(self, certificate, version):
        self.requests, self.failures = [], []
        site = self

        class Answer(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                site.requests.append(self.path)
                body = json.dumps({"version": version, "page": f"https://www.{makers_domain()}/get?v=9"}).encode()
                self.send_response(200)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        class Server(http.server.ThreadingHTTPServer):
            def get_request(self):
                connection, peer = self.socket.accept()
                try:
                    return context.wrap_socket(connection, server_side=True), peer
                except OSError as error:
                    site.failures.append(str(error))
                    connection.close()
                    raise

        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*certificate)
        self.server = Server(("127.0.0.1", 443), Answer)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()


class Updates(unittest.TestCase):
    def setUp(self):
        if os.geteuid() != 0:
            self.skipTest("needs the rights to make a network of its own")
        leave_the_network()
        WORK.mkdir()
        hosts = WORK / "hosts"
        hosts.write_text(f"127.0.0.1 localhost {makers_domain()}\n", encoding="ascii")
        cover("/etc/hosts", hosts)
        self.trusted, self.stranger = Authority("trusted-authority"), Authority("stranger")
        self.trusted.be_trusted()
        # What the desktop would open an address with.
        browser = WORK / "bin/xdg-open"
        browser.parent.mkdir()
        browser.write_text(f'#!/bin/sh\nprintf "%s" "$1" > {OPENED}.new && mv {OPENED}.new {OPENED}\n', encoding="ascii")
        browser.chmod(0o755)
        os.environ["PATH"] = f"{browser.parent}:{os.environ['PATH']}"
        for name in list(os.environ):
            if name.lower().endswith("_proxy"):
                del os.environ[name]
        stack = contextlib.ExitStack()
        self.addCleanup(stack.close)
        self.enter = stack.enter_context
        display = self.enter(stage.Display())
        display.start_window_manager()
        os.environ.update(display.environment())
        os.environ.update(self.enter(stage.SessionBus()).environment())
        self.enter(stage.SimulatedMac(BUILD, "MacBookPro11,4", "--speed", "0"))
        self.screen = stage.Interface()

    @property
    def file(self):
        return pathlib.Path.home() / ".config/com.fenwhirl.app/preferences.json"

    def remembered(self):
        return json.loads(self.file.read_text(encoding="utf-8"))

    def launch(self, **preferences):
        """Starts the program as on any day after the first."""
        if not self.file.exists():
            self.file.parent.mkdir(parents=True)
            self.file.write_text(json.dumps({"didOnboard": True, "language": "fr", **preferences}), encoding="utf-8")
        return self.enter(stage.Application(BUILD))

    def test_a_newer_version_is_offered_once_and_its_page_opened(self):
        site = Site(self.trusted.certificate_for(makers_domain()), "9.9")
        program = self.launch()
        self.screen.wait_for("Une nouvelle version est disponible")
        self.screen.wait_for("La version 9.9 de Fenwhirl est disponible. Elle est gratuite pour toi. Tu as la version 0.1.")
        self.assertEqual(site.requests, ["/maj/fenwhirl.json"])
        self.assertEqual(self.remembered()["brenor.update.notifiedVersion"], "9.9", "before the answer")
        self.assertLess(abs(self.remembered()["brenor.update.lastCheck"] - time.time()), 60)
        self.screen.wait_for("Plus tard")
        self.screen.press("Télécharger")
        stage.wait_until(OPENED.exists, "the page is opened")
        self.assertEqual(OPENED.read_text(encoding="ascii"), f"https://www.{makers_domain()}/get?v=9")
        self.screen.wait_until_gone("Une nouvelle version est disponible")
        self.assertEqual(program.stop(), 0)

        # The same day nothing is asked; the next day the same version is not offered again.
        program = self.launch()
        stage.wait_until(self.screen.root, "the program is there")
        self.assertEqual(program.stop(), 0)
        self.assertEqual(len(site.requests), 1)
        yesterday = {**self.remembered(), "brenor.update.lastCheck": time.time() - 86400}
        self.file.write_text(json.dumps(yesterday), encoding="utf-8")
        program = self.launch()
        stage.wait_until(lambda: self.remembered()["brenor.update.lastCheck"] > time.time() - 3600, "it was asked again")
        self.assertEqual(len(site.requests), 2)
        self.assertEqual(program.stop(), 0)
        self.assertFalse(self.screen.find("Une nouvelle version est disponible"))

    def test_later_means_nothing_more(self):
        Site(self.trusted.certificate_for(makers_domain()), "9.9")
        program = self.launch()
        self.screen.press("Plus tard")
        self.screen.wait_until_gone("Une nouvelle version est disponible")
        self.assertTrue(program.running())
        self.assertFalse(OPENED.exists())

    def test_the_alert_speaks_the_language_of_the_interface(self):
        Site(self.trusted.certificate_for(makers_domain()), "9.9")
        self.launch(language="sr-Cyrl")
        self.screen.wait_for("Доступна је нова верзија")
        self.screen.wait_for("Верзија 9.9 програма Fenwhirl је доступна. Бесплатна је за тебе. Имаш верзију 0.1.")

    def check_that_nothing_is_believed(self, certificate):
        site = Site(certificate, "9.9")
        program = self.launch()
        stage.wait_until(lambda: site.failures, "the program turns away")
        self.assertEqual(program.stop(), 0)
        self.assertEqual(site.requests, [])
        self.assertNotIn("brenor.update.lastCheck", self.remembered())
        self.assertNotIn("brenor.update.notifiedVersion", self.remembered())

    def test_a_site_that_a_stranger_vouches_for_is_not_believed(self):
        self.check_that_nothing_is_believed(self.stranger.certificate_for(makers_domain()))

    def test_a_site_with_the_certificate_of_another_is_not_believed(self):
        self.check_that_nothing_is_believed(self.trusted.certificate_for("other.example"))


if __name__ == "__main__":
    unittest.main()
