#!/usr/bin/python3
"""A fake password dialog: an authentication agent that registers with the real polkit for one process.

    fake_agent.py PROCESS LOCALE HELPER     PROCESS whose requests it answers; HELPER: polkit's program that checks passwords

Prints READY once it is registered with polkit. Each line on standard input says how to answer the next request:

    password NAME WORD    as the administrator NAME, who types WORD as the password
    cancel                by closing the dialog

After each request it prints a line of JSON: the action, the message that the dialog would show, and whether the password was
correct.
"""

import json
import pathlib
import queue
import subprocess
import sys
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio  # noqa: E402
from gi.repository import GLib  # noqa: E402

AUTHORITY, AUTHORITY_PATH = "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority"
PATH = "/com/fenwhirl/test/agent"
DESCRIPTION = """<node><interface name="org.freedesktop.PolicyKit1.AuthenticationAgent">
  <method name="BeginAuthentication">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="a{ss}" direction="in"/><arg type="s" direction="in"/><arg type="a(sa{sv})" direction="in"/>
  </method>
  <method name="CancelAuthentication"><arg type="s" direction="in"/></method>
</interface></node>"""


def start_time(process):
    """The start time of a process as polkit uses it: field 22 of /proc/PID/stat. Field 2, the name, may contain spaces."""
    text = pathlib.Path(f"/proc/{process}/stat").read_text(encoding="utf-8", errors="replace")
    return int(text[text.rindex(")") + 2:].split()[19])


class Agent:
    def __init__(self, process, locale, helper):
        self.helper, self.answers = helper, queue.Queue()
        self.bus = Gio.bus_get_sync(Gio.BusType.SYSTEM, None)
        interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
        self.bus.register_object(PATH, interface, self.called, None, None)
        subject = ("unix-process", {"pid": GLib.Variant("u", process), "start-time": GLib.Variant("t", start_time(process))})
        self.bus.call_sync(AUTHORITY, AUTHORITY_PATH, f"{AUTHORITY}.Authority", "RegisterAuthenticationAgent",
                           GLib.Variant("((sa{sv})ss)", (subject, locale, PATH)), None, Gio.DBusCallFlags.NONE, -1, None)
        print("READY", flush=True)

    def called(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        if method == "CancelAuthentication":
            invocation.return_value(None)
        else:  # in a thread: polkit's password checker calls polkit back, so this call must not block the main loop meanwhile
            threading.Thread(target=self.answer, args=(arguments.unpack(), invocation), daemon=True).start()

    def answer(self, request, invocation):
        action, message, _icon, _details, cookie, _identities = request
        words = self.answers.get()
        told = {"action": action, "message": message, "right": False}
        if words[0] == "cancel":
            invocation.return_dbus_error(f"{AUTHORITY}.Error.Cancelled", "the dialog was closed")
        else:
            told["right"] = self.check(words[1], words[2], cookie)
            invocation.return_value(None)
        print(json.dumps(told), flush=True)

    def check(self, name, password, cookie):
        with subprocess.Popen([self.helper, name], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as helper:
            helper.stdin.write(cookie + "\n")
            helper.stdin.flush()
            for line in helper.stdout:
                if line.startswith("PAM_PROMPT_ECHO_OFF"):
                    helper.stdin.write(password + "\n")
                    helper.stdin.flush()
                elif line.strip() in ("SUCCESS", "FAILURE"):
                    return line.strip() == "SUCCESS"
        return False

    def heard(self, stream, _condition):
        words = stream.readline().split()
        if words:
            self.answers.put(words)
        return bool(words)


def main():
    agent = Agent(int(sys.argv[1]), sys.argv[2], sys.argv[3])
    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, agent.heard)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
