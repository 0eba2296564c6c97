"""A host for status items: does on the session bus what a panel with a notification area does, without a panel."""

import threading


class StatusHost:
    """Accepts status items (org.kde.StatusNotifierItem) and presses them.

    It uses the session bus of the environment, which must be set before, and answers on its own thread.
    """

    WATCHER = "org.kde.StatusNotifierWatcher"
    INTERFACE = """
        <node><interface name="org.kde.StatusNotifierWatcher">
            <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
            <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
            <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
            <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
            <property name="ProtocolVersion" type="i" access="read"/>
        </interface></node>"""

    def __init__(self):
        from gi.repository import Gio
        from gi.repository import GLib
        self.gio, self.glib = Gio, GLib
        self.item = None
        self.ready = threading.Event()
        self.thread = threading.Thread(target=self.serve, daemon=True)

    def serve(self):
        context = self.glib.MainContext.new()
        context.push_thread_default()
        self.loop = self.glib.MainLoop.new(context, False)
        self.bus = self.gio.bus_get_sync(self.gio.BusType.SESSION)
        description = self.gio.DBusNodeInfo.new_for_xml(self.INTERFACE).interfaces[0]
        self.bus.register_object("/StatusNotifierWatcher", description, self.called, self.asked, None)
        self.gio.bus_own_name_on_connection(self.bus, self.WATCHER, self.gio.BusNameOwnerFlags.NONE,
                                            lambda *_: self.ready.set(), None)
        self.loop.run()
        context.pop_thread_default()

    def called(self, _bus, sender, _path, _interface, method, parameters, invocation):
        if method == "RegisterStatusNotifierItem":
            service = parameters.unpack()[0]
            self.item = sender if service.startswith("/") else service
        invocation.return_value(None)

    def asked(self, _bus, _sender, _path, _interface, name):
        return {
            "RegisteredStatusNotifierItems": lambda: self.glib.Variant("as", [self.item] if self.item else []),
            "IsStatusNotifierHostRegistered": lambda: self.glib.Variant("b", True),
            "ProtocolVersion": lambda: self.glib.Variant("i", 0),
        }[name]()

    ITEM = "org.kde.StatusNotifierItem"
    MENU = "com.canonical.dbusmenu"

    def call(self, path, interface, method, arguments=None):
        """Calls a method of the item or of its menu and returns the answer's values."""
        return self.bus.call_sync(self.item, path, interface, method, arguments, None, self.gio.DBusCallFlags.NONE, -1,
                                  None).unpack()

    def press(self, x, y, method="Activate"):
        """Presses the item as if it were at that position of the screen. `method` is "ContextMenu" for the secondary button."""
        self.call("/StatusNotifierItem", self.ITEM, method, self.glib.Variant("(ii)", (x, y)))

    def menu(self):
        """The entries of the item's menu, which the host draws, as {text: (ID, properties)}. Separators are left out."""
        place, = self.call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                           self.glib.Variant("(ss)", (self.ITEM, "Menu")))
        self.menu_path = place
        _, (_, _, entries) = self.call(place, self.MENU, "GetLayout", self.glib.Variant("(iias)", (0, -1, [])))
        return {properties["label"].replace("__", "_"): (number, properties) for number, properties, _ in entries
                if "label" in properties}

    def choose(self, text):
        """Chooses the entry of the menu with that text."""
        number, _ = self.menu()[text]
        self.call(self.menu_path, self.MENU, "Event",
                  self.glib.Variant("(isvu)", (number, "clicked", self.glib.Variant("i", 0), 0)))

    def __enter__(self):
        self.thread.start()
        self.ready.wait(20)
        return self

    def __exit__(self, *_):
        self.loop.quit()
        self.thread.join(20)
