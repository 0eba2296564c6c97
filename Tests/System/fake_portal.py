#!/usr/bin/python3
"""A fake desktop portal: provides settings, or never answers, or provides a save dialog.

    fake_portal.py COLOR_SCHEME ANIMATIONS [TEXT_SCALE]     2 is light, 1 dark; "true" or "false"; a factor, usually 1
    fake_portal.py silent           never answers a call
    fake_portal.py saves FOLDER     its save dialog immediately chooses the proposed name in that folder

Prints READY once it is on the bus. Each line "COLOR_SCHEME ANIMATIONS [TEXT_SCALE]" on standard input changes the settings,
which it announces.
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
</interface>
<interface name="org.freedesktop.portal.FileChooser">
  <method name="SaveFile"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{{sv}}" direction="in"/>
    <arg type="o" direction="out"/></method>
</interface></node>"""


class Portal:
    def __init__(self, silent, words):
        self.folder = words[1] if words[:1] == ["saves"] else None
        self.silent, self.held, self.settings = silent, [], {}
        self.take([] if self.folder else words)
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        description = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION)
        for interface in description.interfaces:
            self.bus.register_object(PATH, interface, self.called, None, None)
        Gio.bus_own_name_on_connection(self.bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: print("READY", flush=True), None)

    def take(self, words):
        if len(words) >= 2:
            self.settings = {("org.freedesktop.appearance", "color-scheme"): GLib.Variant("u", int(words[0])),
                             ("org.gnome.desktop.interface", "enable-animations"): GLib.Variant("b", words[1] == "true"),
                             ("org.gnome.desktop.interface", "text-scaling-factor"):
                                 GLib.Variant("d", float(words[2] if len(words) > 2 else 1))}

    def called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if self.silent:
            self.held.append(invocation)
            return
        if method == "SaveFile":
            self.save(sender, arguments.unpack()[2], invocation)
            return
        value = self.settings.get(tuple(arguments.unpack()))
        if value is None:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
        else:  # wrapped in one variant more than the type says, like the answer of the real portal
            invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))

    def save(self, sender, options, invocation):
        if not self.folder:
            invocation.return_dbus_error("org.freedesktop.DBus.Error.UnknownMethod", "no dialog here")
            return
        request = f"{PATH}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        invocation.return_value(GLib.Variant("(o)", (request,)))
        place = GLib.filename_to_uri(f"{self.folder}/{options['current_name']}", None)
        self.bus.emit_signal(None, request, "org.freedesktop.portal.Request", "Response",
                             GLib.Variant("(ua{sv})", (0, {"uris": GLib.Variant("as", [place])})))

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
