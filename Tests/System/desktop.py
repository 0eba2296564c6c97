"""A desktop for tests of the built program: screen, session, panels with a notification area, and a simulated Mac.

Scene tests everything from a click to the fans. Desktop tests what happens on the screen around the windows: which of them are
shown, where, and what the notification area contains.
"""

import contextlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import time
import unittest

import interface
import stage

PANEL_HEIGHT = 30  # pixels of the bar along the upper edge

# Works for a share of every tenth of a second, which the file that its first argument names tells. Asked to end, it waits until
# the file that its second argument names is there.
BUSY = """
import os, signal, sys, time
asked = []
signal.signal(signal.SIGTERM, lambda *_: asked.append(True))
while not (asked and os.path.exists(sys.argv[2])):
    with open(sys.argv[1]) as file:
        share = float(file.read() or 0)
    end = time.process_time() + 0.1 * share
    while time.process_time() < end:
        pass
    time.sleep(0.1 * (1 - share))
"""

XFCE_PANEL = f"""<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="{PANEL_HEIGHT}"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
"""


def run(*arguments):
    """Runs a command and returns its output, whatever its exit status."""
    return subprocess.run([str(argument) for argument in arguments], capture_output=True, text=True, check=False).stdout


class Desktop:
    """Context manager that starts a screen, a window manager, a session bus and a simulated Mac. Tests start Fenwhirl and the
    panels themselves. With `nested`, the screen is in a window of another (stage.NestedDisplay).
    """

    def __init__(self, onboarded=True, helper=False, machine="MacBookPro11,4", height=800, window_manager="openbox",
                 preferences=None, speed=5, controller=True, user=None, nested=False):
        self.build = pathlib.Path(os.environ["FENWHIRL_BUILD"])
        self.home = pathlib.Path(os.environ["HOME"])
        self.machine, self.height, self.helper, self.window_manager = machine, height, helper, window_manager
        self.speed, self.controller, self.user, self.nested = speed, controller, user, nested
        self.preferences = {"didOnboard": onboarded, "language": "fr", "brenor.update.lastCheck": time.time(),
                            **(preferences or {})}
        self.stack = contextlib.ExitStack()
        self.mac = self.application = self.screen = self.empty = None

    def __enter__(self):
        if self.user and not stage.can_become(self.user):
            raise unittest.SkipTest("needs real root, to give up its rights for an ordinary user's")
        try:
            if self.controller:
                self.mac = self.stack.enter_context(stage.SimulatedMac(
                    self.build, self.machine, "--heat", "12", "--speed", str(self.speed)))
            if self.helper:
                stage.install_helper(self.build)
            if self.user:
                stage.become_ordinary_user(self.user)
                self.home = pathlib.Path(os.environ["HOME"])
            self.put(".config/com.fenwhirl.app/preferences.json", json.dumps(self.preferences))
            display = self.stack.enter_context((stage.NestedDisplay if self.nested else stage.Display)(height=self.height))
            # The environment in which xdotool moves the pointer.
            self.of_pointer = display.surroundings() if self.nested else {**os.environ, **display.environment()}
            if self.window_manager:
                display.start_window_manager(self.window_manager)
            os.environ.update(display.environment())
            stage.wait_until(lambda: not self.window_manager or self.is_managed(display),
                             "the window manager is at work")
            bus = self.stack.enter_context(stage.SessionBus())
            os.environ.update(bus.environment())
        except BaseException:
            self.stack.close()
            raise
        return self

    def __exit__(self, *details):
        return self.stack.__exit__(*details)

    def is_managed(self, display):
        if not display.manager.running():  # openbox exits when the screen is not ready for it
            display.start_window_manager(self.window_manager)
        return "window id" in run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")

    def put(self, path, text):
        file = self.home / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    # --- What is started ---

    def launch(self, **environment):
        """Starts Fenwhirl without waiting for anything."""
        self.application = self.stack.enter_context(stage.Application(self.build, environment=environment))
        self.screen = interface.Interface()
        return self.application

    def start(self, **environment):
        """Starts Fenwhirl and waits until it has polled the controller, or, without a controller, until it is running."""
        self.launch(**environment)
        if self.controller:
            self.polls()
        else:
            stage.wait_until(self.screen.root, "the program is there")
        return self.application

    def log(self):
        return self.application.log()

    def start_again(self, **environment):
        """Starts Fenwhirl a second time beside the running one; returns the exit status of the second."""
        with stage.Application(self.build, environment=environment) as second:
            return second.child.wait(stage.PATIENCE_SECONDS)

    def polls(self, count=1):
        """Waits until that many whole polls have reached the controller, besides one that may be under way."""
        self.mac.await_polls(count)

    def requests(self):
        return int(re.search(r"requests=(\d+)", self.mac.tell("state")[0]).group(1))

    def start_panel(self):
        """Starts Xfce's panel, a host for status notifier items. Its first start must precede Fenwhirl's, because it also
        records what the empty panel looks like.
        """
        self.put(".config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml", XFCE_PANEL)
        panel = self.stack.enter_context(stage.Process(
            ["xfce4-panel", "--disable-wm-check"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        stage.wait_until(self.has_host, "the panel offers a place for status items")
        if self.empty is None:
            self.record_empty_bar()
        return panel

    def see_the_empty_panel(self):
        """Shows the panel for a moment to record what it looks like without an item."""
        self.start_panel().stop()
        stage.wait_until(lambda: not self.has_host(), "the panel is gone")

    @staticmethod
    def has_host():
        return "true" in run("dbus-send", "--session", "--print-reply", "--dest=org.kde.StatusNotifierWatcher",
                             "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties.Get",
                             "string:org.kde.StatusNotifierWatcher", "string:IsStatusNotifierHostRegistered")

    def start_tray(self):
        """Starts a classic tray, which embeds windows of programs, in the upper right corner. As with start_panel(), its first
        start must precede Fenwhirl's.
        """
        stage.require_command("trayer", "the classic tray that this test needs")
        tray = self.stack.enter_context(stage.Process(
            ["trayer", "--edge", "top", "--align", "right", "--height", PANEL_HEIGHT, "--widthtype", "pixel",
             "--width", "200"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        stage.wait_until(lambda: run("xdotool", "search", "--onlyvisible", "--class", "trayer"), "the tray is shown")
        if self.empty is None:
            self.record_empty_bar()
        return tray

    def start_busy_application(self, name="Busy", share=0.06):
        """Starts an application with that name, which loads a processor for that share of the time. It has the usual priority, because
        a lower one would give it too small a share of a busy computer to be shown. Asked to quit, it does so after
        let_busy_application_end().
        """
        program = self.home / f"{name}.app/Contents/MacOS/Busy"
        program.parent.mkdir(parents=True)
        shutil.copy("/usr/bin/python3", program)
        self.load_with(name, share)
        return self.stack.enter_context(stage.Process([program, "-c", BUSY, self.share_file(name), self.home / "busy-may-end"]))

    def share_file(self, name):
        return self.home / f"share of {sum(map(ord, name))}"  # the name may be as long as a file's name can be

    def load_with(self, name, share):
        """Makes a busy application load a processor for that share of the time from now on."""
        file = self.share_file(name)
        file.with_suffix(".new").write_text(str(share), encoding="ascii")
        file.with_suffix(".new").rename(file)

    def let_busy_application_end(self):
        (self.home / "busy-may-end").touch()

    # --- Windows ---

    def windows(self):
        """The visible windows of Fenwhirl as (X11 window ID, x, y, width, height)."""
        found = []
        for window in run("xdotool", "search", "--onlyvisible", "--name", "^Fenwhirl$").split():
            place = dict(re.findall(r"(\w+)=(-?\d+)", run("xdotool", "getwindowgeometry", "--shell", window)))
            if int(place.get("WIDTH", 0)) > 100:  # an icon in a tray is a window with the same name
                found.append((window, int(place["X"]), int(place["Y"]), int(place["WIDTH"]), int(place["HEIGHT"])))
        return found

    def main_window(self):
        return next((window for window in self.windows() if window[3] > 440), None)

    def panel_window(self):
        """The status item's panel, recognised by its width: 340, or 440 with the margin for its shadow."""
        return next((window for window in self.windows() if window[3] in (340, 440)), None)

    def wait_for_main_window(self, seconds=stage.PATIENCE_SECONDS):
        return stage.wait_until(self.main_window, "the main window is shown", seconds)

    def wait_for_panel_window(self):
        return stage.wait_until(self.panel_window, "the status item's panel opens")

    def resize(self, window, width, height):
        run("xdotool", "windowsize", window[0], width, height)
        stage.wait_until(lambda: (self.main_window() or window)[3:] == (width, height), "the window is resized")

    @staticmethod
    def has_focus(window):
        return window is not None and run("xdotool", "getwindowfocus").strip() == window[0]

    def cover(self, place="1200x700+0+0"):
        """Puts a white window of another program in front."""
        self.stack.enter_context(stage.Process(["xev", "-geometry", place], stdout=subprocess.DEVNULL))
        other = stage.wait_until(lambda: run("xdotool", "search", "--onlyvisible", "--name", "^Event Tester$").split(),
                                 "the other window is shown")
        run("xdotool", "windowactivate", other[0])

    @contextlib.contextmanager
    def watch_for_windows(self):
        """Yields a function that returns the MapNotify events of all windows that were shown since, however briefly."""
        log = self.home / "events.log"
        with log.open("wb") as file, stage.Process(["xev", "-root", "-event", "substructure"], stdout=file):
            stage.wait_until(lambda: subprocess.run(["xdotool", "search", "--name", "^nothing$"], check=False,
                                                    capture_output=True).returncode == 1, "the screen answers")
            yield lambda: re.findall(r"^MapNotify event", log.read_text(encoding="utf-8", errors="replace"), re.M)

    @staticmethod
    def key(name):
        run("xdotool", "key", name)

    def close(self, window):
        """Closes a window with Alt+F4. Repeats that until it has an effect, because on a loaded computer the window may not have
        the focus yet.
        """
        def is_gone():
            if window[0] not in [shown[0] for shown in self.windows()]:
                return True
            run("timeout", "3", "xdotool", "windowactivate", "--sync", window[0], "key", "alt+F4")
            return False
        stage.wait_until(is_gone, "the window closes", interval_seconds=0.5)

    # --- The notification area ---

    def picture(self, name):
        """Saves what the bar along the upper edge shows as a PNG file, and returns its path."""
        file = self.home / f"{name}.png"
        run("import", "-window", "root", "-crop", f"1280x{PANEL_HEIGHT}+0+0", "+repage", file)
        return file

    def record_empty_bar(self):
        """Waits until the bar no longer changes, and records it as the empty bar."""
        def still():
            first, second = self.picture("first"), self.picture("second")
            return first.stat().st_size > 0 and run("compare", "-metric", "AE", first, second, "null:") == "" and \
                subprocess.run(["cmp", "-s", first, second], check=False).returncode == 0
        stage.wait_until(still, "the bar comes to rest", interval_seconds=0.3)
        self.empty = self.picture("empty")

    def changed_area(self):
        """The bounding box in which the bar differs from the empty one as (x, y, width, height), or None without a difference."""
        now = self.picture("now")
        box = run("convert", self.empty, now, "-compose", "difference", "-composite", "-colorspace", "gray",
                  "-threshold", "10%", "-format", "%@ %[fx:mean*w*h]", "info:")
        found = re.match(r"(\d+)x(\d+)\+(\d+)\+(\d+) ([\d.]+)", box)
        if not found or float(found.group(5)) < 20:  # fewer pixels than any icon has
            return None
        width, height, x, y = (int(found.group(index)) for index in range(1, 5))
        return (x, y, width, height)

    def wait_for_item(self):
        return stage.wait_until(self.changed_area, "something is drawn into the bar")

    def wait_until_item_gone(self):
        stage.wait_until(lambda: self.changed_area() is None, lambda: f"the bar is empty; there is {self.changed_area()}")

    @staticmethod
    def click(x, y):
        run("xdotool", "mousemove", x, y, "click", 1)

    def click_item(self):
        """Clicks the middle of the status item in the bar; returns that point."""
        x, y, width, height = self.wait_for_item()
        point = (x + width // 2, y + height // 2)
        self.click(*point)
        return point
