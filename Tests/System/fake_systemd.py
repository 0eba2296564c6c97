#!/usr/bin/python3
"""A fake of the user's systemd on the session bus, limited to the method that Fenwhirl calls (StartTransientUnit).

Prints READY once it is on the bus, then one line "NAME MODE PIDS" for each scope that is requested. With the argument "refuses"
it refuses all requests.
"""

import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio  # noqa: E402
from gi.repository import GLib  # noqa: E402

DESCRIPTION = """<node><interface name="org.freedesktop.systemd1.Manager">
  <method name="StartTransientUnit">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a(sv)" direction="in"/>
    <arg type="a(sa(sv))" direction="in"/><arg type="o" direction="out"/>
  </method>
</interface></node>"""


def called(_bus, _sender, _path, _interface, _method, arguments, invocation):
    name, mode, properties, further = arguments.unpack()
    values = dict(properties)
    assert not further and values["Description"]
    print(name, mode, *values["PIDs"], flush=True)
    if "refuses" in sys.argv:
        invocation.return_dbus_error("org.freedesktop.DBus.Error.AccessDenied", "not here")
    else:
        invocation.return_value(GLib.Variant("(o)", ("/org/freedesktop/systemd1/job/1",)))


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    (interface,) = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces
    bus.register_object("/org/freedesktop/systemd1", interface, called, None, None)
    Gio.bus_own_name_on_connection(bus, "org.freedesktop.systemd1", Gio.BusNameOwnerFlags.NONE,
                                   lambda *_: print("READY", flush=True), None)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
