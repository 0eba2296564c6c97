#!/usr/bin/python3
"""The settings portal of a desktop, played: says what it was told, or nothing at all.

    played_portal.py COLOR_SCHEME ANIMATIONS     2 is light, 1 dark; "true" or "false"
    played_portal.py silent

Writes READY when it is on the bus. Each further line "COLOR_SCHEME ANIMATIONS" on standard input is a change, which it
announces.
"""

import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio  # noqa: E402
from gi.repository import GLib  # noqa: E402

INTERFACE = "org.freedesktop.portal.Settings"
PATH = "/org/freedesktop/portal/desktop"
DESCRIPTION = f"""<node><interface name="{INTERFACE}">
  <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""


class Portal:
    def __init__(self, silent, words):
        self.silent, self.held, self.settings = silent, [], {}
        self.take(words)
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0], self.called, None, None)
        Gio.bus_own_name_on_connection(self.bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: print("READY", flush=True), None)

    def take(self, words):
        if len(words) == 2:
            self.settings = {("org.freedesktop.appearance", "color-scheme"): GLib.Variant("u", int(words[0])),
                             ("org.gnome.desktop.interface", "enable-animations"): GLib.Variant("b", words[1] == "true")}

    def called(self, _bus, _sender, _path, _interface, _method, arguments, invocation):
        if self.silent:
            self.held.append(invocation)
            return
        value = self.settings.get(tuple(arguments.unpack()))
        if value is None:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
        else:  # wrapped once more than its type says, as the real one does
            invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))

    def heard(self, stream, _condition):
        line = stream.readline()
        if line:
            self.take(line.split())
            for (group, key), value in self.settings.items():
                self.bus.emit_signal(None, PATH, INTERFACE, "SettingChanged", GLib.Variant("(ssv)", (group, key, value)))
        return bool(line)


def main():
    portal = Portal(sys.argv[1] == "silent", sys.argv[1:] if sys.argv[1] != "silent" else [])
    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, portal.heard)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
