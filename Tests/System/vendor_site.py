"""A fake of the vendor's web site for update checks: a local HTTPS server with its own certificate, in a network namespace in
which the vendor's host name resolves to it.
"""

import contextlib
import ctypes
import fcntl
import http.server
import json
import os
import re
import socket
import ssl
import struct
import subprocess
import threading

from stage import SCRATCH

WORK = SCRATCH / "makers-site"
CLONE_NEWNET = 0x40000000


def vendor_domain(build):
    """Returns the vendor's domain that the program was built with."""
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    return re.search(r"^FENWHIRL_UPDATE_DOMAIN:STRING=(.+)$", cache, re.MULTILINE).group(1)


def enter_private_network():
    """Moves this process into a network namespace with only a loopback interface. Raises OSError where that is not allowed."""
    if ctypes.CDLL(None, use_errno=True).unshare(CLONE_NEWNET) != 0:
        raise OSError(ctypes.get_errno(), "no network of our own")
    up_and_running = 0x1 | 0x40
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        fcntl.ioctl(any_socket, 0x8914, struct.pack("16sh14x", b"lo", up_and_running))  # SIOCSIFFLAGS


def cover(path, with_path):
    subprocess.run(["mount", "--bind", str(with_path), str(path)], check=True)


class Authority:
    """A certificate authority, with its key and certificates in a folder."""

    def __init__(self, name):
        self.folder = WORK / name
        self.folder.mkdir(parents=True)
        self.openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", f"/CN={name}",
                     "-keyout", self.folder / "authority.key", "-out", self.folder / "authority.pem")

    def certificate_for(self, host):
        """Issues a certificate for a server; returns the paths of certificate and key."""
        names = self.folder / "names"
        names.write_text(f"subjectAltName=DNS:{host}\n", encoding="ascii")
        self.openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", f"/CN={host}", "-keyout", self.folder / "server.key",
                     "-out", self.folder / "server.csr")
        self.openssl("x509", "-req", "-in", self.folder / "server.csr", "-days", "2", "-CAcreateserial",
                     "-CA", self.folder / "authority.pem", "-CAkey", self.folder / "authority.key",
                     "-extfile", names, "-out", self.folder / "server.crt")
        return self.folder / "server.crt", self.folder / "server.key"

    def make_trusted(self):
        """Makes this the only authority that the computer trusts, by covering /etc/ssl/certs."""
        trusted = WORK / "trusted"
        trusted.mkdir(exist_ok=True)
        (trusted / "authority.pem").write_bytes((self.folder / "authority.pem").read_bytes())
        self.openssl("rehash", trusted)
        cover("/etc/ssl/certs", trusted)

    @staticmethod
    def openssl(*arguments):
        subprocess.run(["openssl", *map(str, arguments)], check=True, capture_output=True)


class Site:
    """The vendor's web site. `requests` are the requested paths, `failures` the errors of connections that failed. With `held`,
    answers begin at once, but end only after release().
    """

    def __init__(self, domain, certificate, version, held=False):
        self.requests, self.failures = [], []
        self.released = threading.Event()
        if not held:
            self.release()
        site = self

        class Answer(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                site.requests.append(self.path)
                body = json.dumps({"version": version, "page": f"https://www.{domain}/get?v=9"}).encode()
                self.send_response(200)
                if site.released.is_set():
                    self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                with contextlib.suppress(OSError):  # a client that has waited for too long is gone
                    while not site.released.wait(1):
                        self.wfile.write(b" ")  # keeps the client from taking the connection for dead
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

    def release(self):
        """Lets held answers end, and does not hold later ones."""
        self.released.set()


def redirect_vendor_host(domain):
    """Makes the vendor's host name resolve to this computer only. Returns the authority that is trusted from now on."""
    enter_private_network()
    WORK.mkdir()
    hosts = WORK / "hosts"
    hosts.write_text(f"127.0.0.1 localhost {domain}\n", encoding="ascii")
    cover("/etc/hosts", hosts)
    for name in list(os.environ):
        if name.lower().endswith("_proxy"):
            del os.environ[name]
    trusted = Authority("trusted-authority")
    trusted.make_trusted()
    return trusted
