#!/usr/bin/python3
"""A fake login manager (org.freedesktop.login1), with one session for each of the given users.

    fake_logind.py ADDRESS USER=SESSION… [slow]     ADDRESS of the bus; USER: user IDs; slow: delays every answer
    fake_logind.py ADDRESS silent                   is on the bus, but never answers

Prints READY once it is on the bus. It reads commands from standard input and prints OK after announcing each of them:

    front SESSION    switches to that session; "front -" switches to a session of some other user
    sleep            the computer is going to sleep; prints OK and the delay in seconds once no inhibitor delays the sleep any
                     more; as with the real login manager, the computer sleeps after five seconds in any case
    wake             the computer is awake again

No process belongs to any of the sessions, as when systemd has started the desktop. At the start the active session is some
other user's.
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
        self.sessions = dict(word.split("=") for word in words if "=" in word)  # user ID → session
        self.front = "-"
        self.delays = []  # read ends of the inhibitors' pipes: end of file when an inhibitor is released
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
        for which in (before, session):  # like the real login manager: first the session that becomes inactive
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
        """Announces the sleep and waits for the inhibitors. Answers nothing else meanwhile."""
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
