#!/usr/bin/python3
"""Measures, in one run, what Fenwhirl costs on the desktop, compared with its peers and with a minimal program of its kind.

    Packaging/Linux/install-packages run tour test bench
    cmake --preset bench -D FENWHIRL_TESTS=OFF
    cmake --build --preset bench --target Fenwhirl FenwhirlApp fenwhirl-guard simulated-mac QuickFloor WindowMonitor
    Packaging/Linux/private-namespace Benchmarks/DesktopBenchmark.py build/bench [--seconds 75] [--runs 9] [--dragging]

Needs real root, for the peer's sensors. Prints one line per figure: the figure, the figure it is compared with, their ratio,
and the allowed ratio. Ends with a sentence for each ratio that is exceeded, and then with status 1.
"""

import argparse
import base64
import contextlib
import json
import os
import pathlib
import re
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "Tests/System"))

import stage  # noqa: E402
from desktop import Desktop  # noqa: E402

PEER_TEMPERATURES = 60
PEER_FANS = 2
PEER_SENSORS = f"""
set -e
mount -t tmpfs sensors /sys/class
mkdir -p /sys/class/hwmon/hwmon0
cd /sys/class/hwmon/hwmon0
echo coretemp > name
for i in $(seq {PEER_TEMPERATURES}); do echo 45000 > temp${{i}}_input; done
for i in $(seq {PEER_FANS}); do echo 2000 > fan${{i}}_input; done
(while :; do for t in 45000 47000; do sleep 2; for f in temp*_input; do echo $t > $f; done; done; done) &
cd /
exec psensor
"""


class Table:
    """Prints the figures and remembers which ratios were exceeded."""

    def __init__(self):
        self.exceeded = []
        print(f"{'what':<58}{'figure':>12}{'against':>12}{'ratio':>8}{'at most':>9}")

    def line(self, what, figure, against, allowed, unit):
        ratio = figure / against if against else float("inf")
        if not ratio <= allowed:
            self.exceeded.append(f"Too costly: {what}, {ratio:.2f} times that (at most {allowed:.2f}).")
        print(f"{what:<58}{figure:>9.4g} {unit:<2}{against:>9.4g} {unit:<2}{ratio:>8.2f}{allowed:>9.2f}", flush=True)

    def note(self, what):
        print(f"    {what}", flush=True)

    def finish(self):
        """Prints a sentence for each ratio that was exceeded; returns the exit status."""
        for sentence in self.exceeded:
            print(sentence)
        return 1 if self.exceeded else 0


# --- What a process costs ---

def memory(pid):
    """Resident and private memory in MB."""
    text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii")
    kilobytes = {name: int(value) for name, value in re.findall(r"^(\w+): +(\d+) kB", text, re.M)}
    return kilobytes["Rss"] / 1024, kilobytes["Private_Dirty"] / 1024


def threads(pid):
    """For every thread: its name, nanoseconds of processor time, and how often it went to sleep."""
    found = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        with contextlib.suppress(OSError):
            spent = int((task / "schedstat").read_text(encoding="ascii").split()[0])
            slept = int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)",
                                  (task / "status").read_text(encoding="utf-8"), re.M).group(1))
            found[task.name] = ((task / "comm").read_text(encoding="utf-8").strip(), spent, slept)
    return found


def spent_between(before, after):
    """The difference of two measurements: nanoseconds of processor time, and sleeps by thread name."""
    nanoseconds, sleeps = 0, {}
    for task, (name, spent, slept) in after.items():
        _, spent_before, slept_before = before.get(task, (name, 0, 0))
        nanoseconds += spent - spent_before
        sleeps[name] = sleeps.get(name, 0) + slept - slept_before
    return nanoseconds, sleeps


SPANS = 5

# How long a hidden window lets pass between two polls.
POLL_SECONDS = 2

# A drag: the moves of the pointer, each a point further, to and fro over that many points; seconds between two.
DRAG_MOVES, DRAG_POINTS, DRAG_PAUSE = 600, 120, 0.016
# The lower handle of the first fan's curve at 80 °C on the page of fans, in a window of the usual size.
HANDLE = (505, 532)


def processor_use(pid, span):
    """The share of one processor in percent, and the sleeps by thread name, while `span` is called a few times.

    The share is the median of several spans. A virtual computer sometimes charges the time that its host takes for itself
    to the running program: 15 ms at once, even to a program that only reads its clock. The spans are printed, too.
    """
    shares, slept = [], {}
    for _ in range(SPANS):
        before, began = threads(pid), time.monotonic()
        span()
        nanoseconds, sleeps = spent_between(before, threads(pid))
        shares.append(nanoseconds / (time.monotonic() - began) / 1e9 * 100)
        for name, count in sleeps.items():
            slept[name] = slept.get(name, 0) + count
    return shares, slept


# --- Windows ---

class Watch(stage.Process):
    """Detects when a window is first drawn after it was shown."""

    SMALLEST = 150  # in points; narrower windows are ignored

    def __init__(self, build):
        super().__init__([build / "benchmarks/WindowMonitor"], stdout=subprocess.PIPE)
        self.lines = stage.Lines(self.child.stdout)
        assert self.lines.next() == "READY"
        self.shown = set()

    def next_picture(self):
        """The moment of the next first drawing, and the window."""
        while True:
            moment, what, *rest = self.lines.next(60).split()
            if what == "shown" and int(rest[1].split("x")[0]) >= self.SMALLEST:
                self.shown.add(rest[0])
            elif what == "drawn" and rest[0] in self.shown:
                self.shown.discard(rest[0])
                return float(moment), rest[0]


def first_picture(watch, command, **options):
    """Milliseconds from the start of a program to its first picture. Ends the program afterwards."""
    began = time.monotonic()
    with stage.Process(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options):
        moment, _ = watch.next_picture()
    return (moment - began) * 1000


@contextlib.contextmanager
def peer(desktop, hides):
    """Runs the other program with its sensors in a mount namespace, hidden in the bar or with its window open."""
    # GSettings reads this file only with the keyfile backend; otherwise every start would be a first start.
    desktop.put(".config/glib-2.0/settings/keyfile",
                f"[apps/psensor]\ninterface-hide-on-startup={'true' if hides else 'false'}\n")
    with stage.Process(["unshare", "--mount", "sh", "-c", PEER_SENSORS], stderr=subprocess.DEVNULL,
                       env={**os.environ, "GSETTINGS_BACKEND": "keyfile"}) as process:
        pid = process.child.pid  # `exec` keeps the process number
        stage.wait_until(lambda: pathlib.Path(f"/proc/{pid}/comm").read_text(encoding="ascii").strip() == "psensor",
                         "the peer runs")
        desktop.wait_for_item()
        time.sleep(5)
        assert bool(peer_windows()) != hides, "the peer is not what it is to be measured as"
        yield pid
    desktop.wait_until_item_gone()


def peer_windows():
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Psensor"], check=False, capture_output=True,
                          text=True).stdout.split()


# --- Fenwhirl ---

def activate(bus, name="com.fenwhirl.app", path="/com/fenwhirl/app"):
    """Makes the D-Bus call that a second start makes to the running program."""
    from gi.repository import GLib
    bus.call_sync(name, path, "org.freedesktop.Application", "Activate",
                  GLib.Variant("(a{sv})", ({},)), None, 0, 5000, None)


def session():
    import gi
    gi.require_version("Gio", "2.0")
    from gi.repository import Gio
    return Gio.DBusConnection.new_for_address_sync(
        os.environ["DBUS_SESSION_BUS_ADDRESS"],
        Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)


class Benchmark:
    def __init__(self, build, seconds, runs):
        self.build, self.seconds, self.runs = build, seconds, runs
        self.table = Table()

    def fenwhirl(self):
        return stage.Process([self.build / "bin/Fenwhirl"], env={**os.environ, "LANGUAGE": "fr"})

    def starts(self):
        """Measures the time from the start to the first picture. The programs take turns."""
        took = {"floor": [], "fenwhirl": [], "gsm": []}
        with Desktop(onboarded=False, window_manager=False), Watch(self.build) as watch:
            for _ in range(self.runs):
                took["floor"].append(first_picture(watch, [self.build / "benchmarks/QuickFloor", "window"]))
                took["fenwhirl"].append(first_picture(watch, [self.build / "bin/Fenwhirl"]))
                took["gsm"].append(first_picture(watch, ["gnome-system-monitor"]))
        median = {name: statistics.median(values) for name, values in took.items()}
        self.table.line("start to first picture, against a Qt Quick hello", median["fenwhirl"], median["floor"],
                        1.6, "ms")
        self.table.line("the same, against gnome-system-monitor", median["fenwhirl"], median["gsm"], 0.45, "ms")

    def measure_peer(self):
        """Measures memory and processor time of psensor: in the tray, and with its window open."""
        figures = {}
        with Desktop(window_manager=False) as desktop:
            desktop.start_panel()
            for name, hides in (("hidden", True), ("open", False)):
                with peer(desktop, hides) as pid:
                    figures[name] = (*memory(pid), self.processor_share(pid, f"psensor {name}"))
        return figures

    def measure_ours(self):
        figures = {}
        with Desktop(machine="iMac19,1", window_manager=False, speed=1) as desktop:
            desktop.start_panel()
            with self.fenwhirl() as process:
                pid = process.child.pid
                desktop.wait_for_item()
                self.rest(desktop)
                fresh = memory(pid)
                time.sleep(20)  # by then it has released what only its start needed
                costs = self.hidden_costs(desktop, pid, "hidden")
                figures["hidden"] = (*memory(pid), *costs)
                self.table.note(f"just started: {fresh[0]:.1f} MB resident, {fresh[1]:.1f} MB private")
                bus = session()
                with Watch(self.build) as watch:
                    activate(bus)
                    watch.next_picture()
                    time.sleep(20)  # by then it has released what only making the window needed
                    figures["dashboard"] = memory(pid)
                    desktop.mac.tell("unpin all")
                    self.choose_page(desktop)
                    figures["sensors"] = self.processor_share(pid, "sensors page")
                    self.cycles(desktop, pid, bus, watch, figures)
                self.rest(desktop)
                time.sleep(20)  # as before the first window
                figures["closed"] = self.hidden_costs(desktop, pid, "closed")
        return figures

    def note_fresh_dashboard(self):
        """Prints the dashboard's memory before anything of its start is released, for comparison."""
        with Desktop(machine="iMac19,1", window_manager=False, speed=1) as desktop, Watch(self.build) as watch:
            desktop.start_panel()
            with self.fenwhirl() as process:
                desktop.wait_for_item()
                activate(session())
                watch.next_picture()
                time.sleep(3)
                resident, private = memory(process.child.pid)
                self.table.note(f"a dashboard opened with the start: {resident:.1f} MB resident, {private:.1f} MB private")

    @staticmethod
    def rest(desktop):
        """Pins every temperature, so that the results do not depend on the simulated heat."""
        for key in re.findall(r"\bT\S{3}\b", "\n".join(desktop.mac.tell("keys T"))):
            with contextlib.suppress(stage.StageError):  # some keys have no numeric type
                desktop.mac.tell(f"set {key} 50")

    @staticmethod
    def choose_page(desktop, page=2):
        """Opens a page, by default that of the sensors, by a click into the sidebar, so that nothing else runs that would affect
        the result.
        """
        window = desktop.wait_for_main_window()
        subprocess.run(["xdotool", "mousemove", str(window[1] + 100), str(window[2] + 84 + page * 42 + 20), "click", "1"],
                       check=True)
        time.sleep(2)

    def processor_share(self, pid, what):
        """The share of one processor in percent."""
        shares, _ = processor_use(pid, lambda: time.sleep(self.seconds / SPANS))
        return self.typical(shares, what)

    def typical(self, shares, what):
        self.table.note(f"{what}: {' '.join(f'{share:.2f}' for share in shares)} % of a processor")
        return statistics.median(shares)

    def hidden_costs(self, desktop, pid, what):
        """The share of the processor, and wake-ups per second beyond those of round trips to the controller.

        Hardly anything happens but polls, of which a span has only a few. It therefore lasts from the end of one poll to
        the end of another.
        """
        polls = round(self.seconds / SPANS / POLL_SECONDS)
        self.await_polls(desktop, 1)
        requests, began = desktop.requests(), time.monotonic()
        shares, sleeps = processor_use(pid, lambda: self.await_polls(desktop, polls))
        seconds = time.monotonic() - began
        trips = desktop.requests() - requests
        beyond = max(0, sleeps.pop("fenwhirl.smc", 0) - trips)
        self.table.note(f"sleeps by thread in {seconds:.0f} s: {sleeps}, fenwhirl.smc {beyond} beyond {trips} round trips")
        return self.typical(shares, what), (sum(sleeps.values()) + beyond) / seconds

    @staticmethod
    def await_polls(desktop, count):
        """Waits until that many polls have begun, and the last of them, which takes a few milliseconds, has ended."""
        for _ in range(count):
            desktop.mac.tell(f"await requests {desktop.requests() + 1} within {10 * POLL_SECONDS}")
            time.sleep(POLL_SECONDS / 4)

    def cycles(self, desktop, pid, bus, watch, figures):
        """Closes and opens the window 20 times."""
        took, private = [], []
        for _ in range(20):
            window = desktop.wait_for_main_window()
            self.delete(window[0])
            stage.wait_until(lambda: not desktop.windows(), "the window closes", interval_seconds=0.02)
            private.append(memory(pid))
            began = time.monotonic()
            activate(bus)
            moment, _ = watch.next_picture()
            took.append((moment - began) * 1000)
        self.delete(desktop.wait_for_main_window()[0])
        stage.wait_until(lambda: not desktop.windows(), "the window closes")
        figures["cycles"] = (private[1], memory(pid))
        figures["reopen"] = statistics.median(took)

    def drag(self, pid, window, x, y):
        """Drags what lies at that point of a window to and fro; returns milliseconds of processor time for each move of the
        pointer, and frames for each move.
        """
        with stage.Process([self.build / "benchmarks/WindowMonitor", window], stdout=subprocess.PIPE) as watch:
            assert stage.Lines(watch.child.stdout).next() == "READY"
            places = [x + abs(move % (2 * DRAG_POINTS) - DRAG_POINTS) - DRAG_POINTS for move in range(DRAG_MOVES)]
            moves = [word for place in places for word in ("mousemove", str(place), str(y), "sleep", str(DRAG_PAUSE))]
            subprocess.run(["xdotool", "mousemove", str(x), str(y), "mousedown", "1"], check=True)
            before = threads(pid)
            subprocess.run(["xdotool", *moves], check=True)
            nanoseconds, _ = spent_between(before, threads(pid))
            subprocess.run(["xdotool", "mouseup", "1"], check=True)
            watch.child.terminate()
            frames = watch.child.stdout.read().count(b"drawn")
        return nanoseconds / 1e6 / DRAG_MOVES, frames / DRAG_MOVES

    def drag_handle(self):
        """Drags the lower handle of a fan's curve, and the floor's handle."""
        curve = {"mode": "sensor", "constantRPM": 3000, "sensorKey": "", "startTemp": 80, "maxTemp": 100}
        settings = base64.b64encode(json.dumps({"0": curve, "1": curve}).encode()).decode()
        with Desktop(machine="iMac19,1", helper=True, window_manager=False, speed=1, height=1000,
                     preferences={"settings": {"data": settings}, "theme": "dark"}) as desktop:
            with stage.Process([self.build / "benchmarks/QuickFloor", "drag"]) as process:
                window = stage.wait_until(lambda: self.visible("^Floor$"), "the floor's window is shown")
                floor = self.drag(process.child.pid, window, 600, 340)
            with self.fenwhirl() as process, Watch(self.build) as watch:
                bus = session()
                stage.wait_until(lambda: self.owned(bus), "the program is there")
                self.rest(desktop)
                activate(bus)
                watch.next_picture()
                self.choose_page(desktop, 1)
                window, left, top, *_ = desktop.wait_for_main_window()
                ours = self.drag(process.child.pid, window, left + HANDLE[0], top + HANDLE[1])
                written = json.loads((desktop.home / ".config/com.fenwhirl.app/preferences.json").read_text(encoding="utf-8"))
                assert written["settings"]["data"] != settings, "the handle was not dragged"
        return ours, floor

    @staticmethod
    def visible(title):
        return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", title], check=False, capture_output=True,
                              text=True).stdout.strip()

    @staticmethod
    def owned(bus):
        from gi.repository import GLib
        return bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                             GLib.Variant("(s)", ("com.fenwhirl.app",)), None, 0, 5000, None).unpack()[0]

    @staticmethod
    def delete(window):
        """Sends what a window manager sends when the close button is pressed."""
        subprocess.run(["/usr/bin/python3", "-c", DELETE, window], check=True)

    def kept_window(self):
        """Milliseconds from the request to the picture, for a bare window that was only hidden."""
        took = []
        with Desktop(window_manager=False), Watch(self.build) as watch, \
                stage.Process([self.build / "benchmarks/QuickFloor", "window"]):
            watch.next_picture()
            bus, name, path = session(), "com.fenwhirl.floor", "/floor"
            for _ in range(20):
                time.sleep(0.1)
                activate(bus, name, path)
                time.sleep(0.1)
                began = time.monotonic()
                activate(bus, name, path)
                moment, _ = watch.next_picture()
                took.append((moment - began) * 1000)
        return statistics.median(took)

    def hidden_floor(self):
        with Desktop(window_manager=False), \
                stage.Process([self.build / "benchmarks/QuickFloor", "hidden"]) as floor:
            time.sleep(2)
            return memory(floor.child.pid)

    def dragging(self):
        (cost, frames), (floor, floor_frames) = self.drag_handle()
        self.table.line("dragging a handle: processor a move, against a bare handle", cost, floor, 2.0, "ms")
        self.table.line("dragging a handle: frames a move, against a bare handle", frames, floor_frames, 1.1, "")

    def run(self):
        line = self.table.line
        peer_figures, floor = self.measure_peer(), self.hidden_floor()
        ours = self.measure_ours()
        kept = self.kept_window()
        resident, private, share = peer_figures["hidden"]
        line("hidden: resident memory, against psensor in the tray", ours["hidden"][0], resident, 0.75, "MB")
        line("hidden: private memory, against psensor in the tray", ours["hidden"][1], private, 0.7, "MB")
        self.table.note(f"Qt Quick linked and nothing else: {floor[0]:.1f} MB resident, {floor[1]:.1f} MB private")
        line("hidden: processor, against psensor in the tray", ours["hidden"][2], share, 1.5, "%")
        line("hidden: wake-ups a second beyond the round trips", ours["hidden"][3], 1.0, 1.0, "/s")
        self.starts()
        resident, private, share = peer_figures["open"]
        self.note_fresh_dashboard()
        line("dashboard: resident memory, against psensor's window", ours["dashboard"][0], resident, 1.1, "MB")
        line("sensors page: processor, against psensor's window", ours["sensors"], share, 0.4, "%")
        self.dragging()
        line("closed: processor, against before the first window", ours["closed"][0], ours["hidden"][2], 1.1, "%")
        line("private memory after 20 openings, against after one", ours["cycles"][1][1], ours["cycles"][0][1],
             1.05, "MB")
        line("resident memory after 20 openings, against after one", ours["cycles"][1][0], ours["cycles"][0][0],
             1.05, "MB")
        line("reopening, against a bare window that was kept", ours["reopen"], kept, 3.0, "ms")
        return self.table.finish()


DELETE = """
import ctypes, sys
x = ctypes.CDLL("libX11.so.6")
x.XOpenDisplay.restype = ctypes.c_void_p
x.XInternAtom.restype = ctypes.c_ulong
class Message(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int), ("display", ctypes.c_void_p),
                ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("pad", ctypes.c_long * 24)]
display, window = ctypes.c_void_p(x.XOpenDisplay(None)), int(sys.argv[1])
m = Message(33, 0, 1, display, window, x.XInternAtom(display, b"WM_PROTOCOLS", 0), 32)
m.data[0] = x.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
x.XSendEvent(display, ctypes.c_ulong(window), 0, ctypes.c_long(0), ctypes.byref(m))
x.XSync(display, 0)
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--seconds", type=float, default=75, help="how long processor time is measured")
    parser.add_argument("--runs", type=int, default=9, help="how often each program is started")
    parser.add_argument("--dragging", action="store_true", help="only measures dragging a handle")
    chosen = parser.parse_args()
    build = chosen.build.resolve()
    os.environ["FENWHIRL_BUILD"] = str(build)
    benchmark = Benchmark(build, chosen.seconds, chosen.runs)
    if chosen.dragging:
        benchmark.dragging()
        return benchmark.table.finish()
    return benchmark.run()


if __name__ == "__main__":
    sys.exit(main())
