"""Tests of heat alerts as a desktop shows them, with a real notification service (dunst)."""

import os
import subprocess
import unittest

from gi.repository import Gio

import stage
from scene import Scene


class HeatAlerts(unittest.TestCase):
    def start_service(self, scene):
        scene.stack.enter_context(stage.Process(["dunst"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        stage.wait_until(lambda: subprocess.run(["dunstctl", "is-paused"], capture_output=True, check=False).returncode == 0,
                         "the service is there")

    def shown(self):
        """Every notification so far as (program, summary, body), oldest first."""
        # dunst lists only notifications that were closed.
        subprocess.run(["dunstctl", "close-all"], check=True)
        # dunstctl would do the same with a tool of systemd, which not every computer has.
        bus = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        (entries,) = bus.call_sync("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                   "org.dunstproject.cmd0", "NotificationListHistory", None, None,
                                   Gio.DBusCallFlags.NONE, 5000, None).unpack()
        found = [tuple(entry[field] for field in ("appname", "summary", "body")) for entry in entries]
        return found[::-1]

    def test_heat_is_notified_once(self):
        with Scene() as scene:
            self.start_service(scene)
            scene.mac.tell("set TCXC 89.9")
            stage.wait_until(lambda: scene.shown_temperature() == 90, lambda: f"90 °C; there is {scene.shown_temperature()}")
            scene.polls()
            self.assertEqual(self.shown(), [])
            scene.mac.tell("set TCXC 90.9")
            stage.wait_until(self.shown, "a notification")
            scene.polls()
            # Non-breaking spaces keep punctuation and unit on the line of the word or number before them.
            self.assertEqual(self.shown(), [("Fenwhirl", "Fenwhirl", "Ton Mac chauffe\u00a0: 90\u00a0degrés.")])


if __name__ == "__main__":
    unittest.main()
