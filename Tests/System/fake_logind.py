#!/usr/bin/python3
"""A login manager for tests (org.freedesktop.login1), with one session for each of a few users.

    fake_logind.py ADDRESS USER=SESSION… [slow]     ADDRESS of the bus; the users by their numbers; slow: it takes a while
    fake_logind.py ADDRESS silent                   it is there, but answers nothing

Writes READY when it is on the bus. Further lines on standard input, each answered with OK when it is announced:

    front SESSION    a switch to that session, or to somebody else's with "front -"
    sleep            the computer is going to sleep; answered, once nobody delays it any more, with OK and the seconds that
                     it was delayed; after five, as with the real one, it sleeps all the same
    wake             it is awake again

No process is in any of the sessions, as when a desktop was started by systemd; at the beginning somebody else is in front.
"""

import os
import select
import sys
import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio  # noqa: E402
from gi.repository import GLib  # noqa: E402

SLOW_MILLISECONDS = 250
LONGEST_DELAY_SECONDS = 5
NAME, PATH = "org.freedesktop.login1", "/org/freedesktop/login1"
PROPERTIES = "org.freedesktop.DBus.Properties"
DESCRIPTION = f"""<node>
<interface name="{NAME}.Manager">
  <method name="GetSessionByPID"><arg type="u" direction="in"/><arg type="o" direction="out"/></method>
  <method name="GetSession"><arg type="s" direction="in"/><arg type="o" direction="out"/></method>
  <method name="GetUser"><arg type="u" direction="in"/><arg type="o" direction="out"/></method>
  <method name="Inhibit">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="h" direction="out"/>
  </method>
  <property name="PreparingForSleep" type="b" access="read"/>
</interface>
<interface name="{NAME}.User"><property name="Display" type="(so)" access="read"/></interface>
<interface name="{NAME}.Session">
  <property name="Active" type="b" access="read"/><property name="Class" type="s" access="read"/>
</interface></node>"""


class Logind:
    def __init__(self, address, words):
        self.silent, self.slow, self.held = "silent" in words, "slow" in words, []
        self.sessions = dict(word.split("=") for word in words if "=" in word)  # by their users
        self.front = "-"
        self.delays = []  # the ends of pipes whose other ends delay a sleep
        self.sleeping = False
        flags = Gio.DBusConnectionFlags
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        self.bus.set_exit_on_close(True)
        interfaces = {interface.name: interface for interface in Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces}
        self.bus.register_object(PATH, interfaces[f"{NAME}.Manager"], self.called, self.asked, None)
        for user, session in self.sessions.items():
            self.bus.register_object(f"{PATH}/user/_{user}", interfaces[f"{NAME}.User"], None, self.asked, None)
            self.bus.register_object(f"{PATH}/session/_{session}", interfaces[f"{NAME}.Session"], None, self.asked, None)
        Gio.bus_own_name_on_connection(self.bus, NAME, Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: print("READY", flush=True), None)

    def called(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        if self.silent:
            self.held.append(invocation)
        elif self.slow:
            GLib.timeout_add(SLOW_MILLISECONDS, self.answer, method, arguments, invocation)
        else:
            self.answer(method, arguments, invocation)

    def answer(self, method, arguments, invocation):
        if method == "Inhibit":
            self.delay(arguments.unpack(), invocation)
            return
        (wanted,) = arguments.unpack()
        if method == "GetUser" and str(wanted) in self.sessions:
            invocation.return_value(GLib.Variant("(o)", (f"{PATH}/user/_{wanted}",)))
        else:
            invocation.return_dbus_error(f"{NAME}.NoSuchSession", "no such session")

    def delay(self, what, invocation):
        if self.sleeping or (what[0], what[3]) != ("sleep", "delay"):
            invocation.return_dbus_error(f"{NAME}.OperationInProgress", "not now")
            return
        ours, theirs = os.pipe2(os.O_CLOEXEC)
        self.delays.append(ours)
        descriptors = Gio.UnixFDList.new()
        descriptors.append(theirs)
        os.close(theirs)
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), descriptors)

    def asked(self, _bus, _sender, path, _interface, name):
        if name == "PreparingForSleep":
            return GLib.Variant("b", self.sleeping)
        which = path.rsplit("_", 1)[1]
        if name == "Display":
            return GLib.Variant("(so)", (self.sessions[which], f"{PATH}/session/_{self.sessions[which]}"))
        return GLib.Variant("b", which == self.front) if name == "Active" else GLib.Variant("s", "user")

    def switch(self, session):
        before, self.front = self.front, session
        for which in (before, session):  # as the real one: first who leaves, then who comes
            if which in self.sessions.values():
                changes = {"Active": GLib.Variant("b", which == session)}
                self.bus.emit_signal(None, f"{PATH}/session/_{which}", PROPERTIES, "PropertiesChanged",
                                     GLib.Variant("(sa{sv}as)", (f"{NAME}.Session", changes, [])))
        self.bus.flush_sync(None)
        print("OK", flush=True)

    def announce_sleep(self, begins):
        self.sleeping = begins
        self.bus.emit_signal(None, PATH, f"{NAME}.Manager", "PrepareForSleep", GLib.Variant("(b)", (begins,)))
        self.bus.flush_sync(None)

    def sleep(self):
        """Nothing else is answered meanwhile."""
        self.announce_sleep(True)
        begin = time.monotonic()
        while self.delays and time.monotonic() - begin < LONGEST_DELAY_SECONDS:
            for ended in select.select(self.delays, [], [], 0.1)[0]:
                self.delays.remove(ended)
                os.close(ended)
        print(f"OK {time.monotonic() - begin:.3f}", flush=True)

    def wake(self):
        self.announce_sleep(False)
        print("OK", flush=True)

    def heard(self, stream, _condition):
        words = stream.readline().split()
        if words == ["sleep"]:
            self.sleep()
        elif words == ["wake"]:
            self.wake()
        elif words:
            self.switch(words[1])
        return bool(words)


def main():
    logind = Logind(sys.argv[1], sys.argv[2:])
    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, logind.heard)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
