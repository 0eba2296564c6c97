"""A fake notification area, which registers the program's status item and clicks on it as a desktop panel does."""

import threading

from stage import wait_until

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"

INTERFACE = f"""<node><interface name="{WATCHER}">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <signal name="StatusNotifierHostRegistered"/>
</interface></node>"""


class NotificationArea:
    """Serves on the session bus of this process, on its own thread, until the process ends."""

    def __init__(self):
        import gi
        gi.require_version("Gio", "2.0")
        from gi.repository import Gio, GLib
        self.gio, self.glib = Gio, GLib
        self.item = None
        ready = threading.Event()
        threading.Thread(target=self._serve, args=[ready], daemon=True).start()
        ready.wait()

    def _serve(self, ready):
        context = self.glib.MainContext.new()
        context.push_thread_default()
        address = self.gio.dbus_address_get_for_bus_sync(self.gio.BusType.SESSION, None)
        flags = self.gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | self.gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.bus = self.gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        interface = self.gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        self.bus.register_object("/StatusNotifierWatcher", interface, self._called, self._asked, None)
        self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                           self.glib.Variant("(su)", (WATCHER, 0)), None, self.gio.DBusCallFlags.NONE, -1, None)
        ready.set()
        self.glib.MainLoop.new(context, False).run()

    def _called(self, _bus, _sender, _path, _interface, _method, parameters, invocation):
        self.item = parameters.unpack()[0]
        invocation.return_value(None)

    def _asked(self, *_):
        return self.glib.Variant("b", True)

    def wait_for_item(self):
        wait_until(lambda: self.item, "the item is announced")

    def click(self):
        self.bus.call_sync(self.item, "/StatusNotifierItem", ITEM, "Activate", self.glib.Variant("(ii)", (600, 10)), None,
                           self.gio.DBusCallFlags.NONE, 10_000, None)
