"""Tests of `cmake --install`: the program, its library, its guard and its desktop integration work under any prefix."""

import os
import pathlib
import signal
import subprocess
import unittest

import stage
from helper_stage import BUILD
from scene import Scene

PREFIX = stage.SCRATCH / "somewhere else"
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
CONTENTS = {
    "bin/Fenwhirl": 0o755,
    "bin/simulated-mac": 0o755,
    "lib/fenwhirl/libFenwhirlApp.so": 0o644,
    "lib/fenwhirl/fenwhirl-guard": 0o755,
    "share/applications/com.fenwhirl.app.desktop": 0o644,
    "share/dbus-1/services/com.fenwhirl.app.service": 0o644,
    **{f"share/icons/hicolor/{size}x{size}/apps/com.fenwhirl.app.png": 0o644 for size in SIZES},
    "share/icons/hicolor/scalable/apps/com.fenwhirl.app.svg": 0o644,
    "share/icons/hicolor/symbolic/apps/com.fenwhirl.app-symbolic.svg": 0o644,
    "share/man/man1/fenwhirl.1": 0o644,
    "share/man/man1/simulated-mac.1": 0o644,
    "share/man/man8/FenwhirlHelper.8": 0o644,
    "share/metainfo/com.fenwhirl.app.metainfo.xml": 0o644,
}


class AnInstallation(unittest.TestCase):
    def setUp(self):
        subprocess.run(["cmake", "--install", BUILD, "--prefix", PREFIX], check=True, capture_output=True)

    def test_holds_what_it_needs_and_nothing_else(self):
        found = {str(file.relative_to(PREFIX)): file.stat().st_mode & 0o777
                 for file in PREFIX.rglob("*") if file.is_file()}
        self.assertEqual(found, CONTENTS)
        for name, mode in CONTENTS.items():
            if name.startswith("lib/") or mode == 0o755:
                dynamic = subprocess.run(["readelf", "-dW", PREFIX / name], check=True, capture_output=True, text=True).stdout
                self.assertNotRegex(dynamic, "RPATH|RUNPATH", name)

    def test_the_bus_starts_the_program_where_it_is(self):
        service = (PREFIX / "share/dbus-1/services/com.fenwhirl.app.service").read_text(encoding="utf-8")
        self.assertIn(f"Exec=\"{PREFIX}/bin/Fenwhirl\"\n", service)

    def test_finds_its_own_library_and_guard_and_drives_the_fans(self):
        os.environ["FENWHIRL_BUILD"] = str(PREFIX)
        with Scene() as scene:
            scene.mac.tell("set TCXC 70")
            scene.choose_preset("Jeu")
            scene.wait_for_modes("manual", "fans under manual control")
            maps = pathlib.Path(f"/proc/{scene.application.child.pid}/maps").read_text(encoding="utf-8")
            self.assertIn(f"{PREFIX}/lib/fenwhirl/libFenwhirlApp.so\n", maps)
            self.assertNotIn(str(BUILD), maps)
            scene.application.stop(signal.SIGKILL)
            scene.wait_for_modes("automatic", "its guard hands them back")


if __name__ == "__main__":
    unittest.main()
