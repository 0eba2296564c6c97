"""The scenery for the screenshots of a tour: a simulated Mac with steady readings, and applications that load the processor."""

import math
import os
import pathlib
import shutil
import struct
import subprocess
import threading
import time

import stage

COOL = {"TB0T": 31, "TB1T": 31, "TB2T": 32, "TaLP": 37, "TaRF": 38, "Tp01": 63, "Tp05": 62, "Tp09": 61, "Tp0D": 64,
        "Te05": 57, "Tg05": 52, "Tg0f": 50}
HOT = {"TB0T": 36, "TaLP": 52, "TaRF": 53, "Tp01": 87, "Tp05": 88, "Tp09": 88, "Tp0D": 86, "Te05": 79, "Tg05": 74}
# These sensors are removed, because the first of them would precede the processor's cores in the short list.
LEFT_OUT = ("TH0a", "TH0b", "TH0x", "Ts0P", "Ts1P")
FAN_LIMITS = [(1200, 5777), (1200, 6241)]


class ScreenshotMac(stage.SimulatedMac):
    """A simulated Mac with steady readings. The processor's temperature varies, which gives the chart a realistic history, and can
    be held while a screenshot is taken.
    """

    PROCESSOR = "Tp01"

    def __init__(self, build, slower=1):
        """The processor's temperature goes up and down about once a minute, or `slower` times more slowly."""
        super().__init__(build, "AppleSilicon", "--heat", "9", "--speed", "5")
        self.lock = threading.Lock()
        self.over = threading.Event()
        self.level = COOL[self.PROCESSOR]
        self.still = False
        self.slower = slower
        for key in LEFT_OUT:
            self.tell(f"vanish {key}")
        for index, (lowest, highest) in enumerate(FAN_LIMITS):
            self.tell(f"set F{index}Mn {lowest}")
            self.tell(f"set F{index}Mx {highest}")
        self.read(COOL)
        self.turn(2317, 2498)
        self.course = threading.Thread(target=self.wander, daemon=True)
        self.course.start()

    def tell(self, command):
        with self.lock:
            return super().tell(command)

    def read(self, celsius):
        """Sets sensors to fixed temperatures. The processor's varies around its value until hold() is called."""
        for key, value in celsius.items():
            if key == self.PROCESSOR:
                self.level = value
            if key != self.PROCESSOR or self.still:
                self.tell(f"set {key} {value}")

    def turn(self, *speeds):
        """Sets the measured speeds of the fans to fixed values."""
        for index, rpm in enumerate(speeds):
            self.tell(f"set F{index}Ac {rpm}")

    def crowd(self, fans, sensors=0):
        """Adds fans and sensors to the machine. A program that runs already notices only the fans.

        A key has four characters. The limits and the mode of the eleventh fan and later ones would share one ("F10M"), so these
        fans have only a speed and a target.
        """
        self.tell(f"pin FNum {fans:02X}")
        for index in range(len(FAN_LIMITS), fans):
            values = {"Ac": 1200 + 150 * index, "Mn": 1200, "Mx": 5777, "Tg": 1200, "Md": 0}
            for suffix, rpm in values.items():
                key = f"F{index}{suffix}"[:4]
                if not key.endswith("M"):
                    self.tell(f"define {key} flt 4 C0 {struct.pack('<f', rpm).hex().upper()}")
        digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"
        for index in range(sensors):
            celsius = struct.pack("<f", 25 + index * 80 / sensors).hex().upper()
            self.tell(f"define TX{digits[index // 36]}{digits[index % 36]} flt 4 80 {celsius}")

    def hold(self):
        """Keeps the processor's temperature at its current base value until release() is called."""
        self.still = True
        self.tell(f"set {self.PROCESSOR} {self.level}")

    def release(self):
        self.still = False

    def wander(self):
        # Two slow waves and a small, fast one imitate the temperature of a working machine.
        began = time.monotonic()
        while True:
            at = time.monotonic() - began
            slow = at / self.slower
            away = 7 * math.sin(slow / 11) + 4 * math.sin(slow / 5.3 + 1) + 1.2 * math.sin(at * 2.1) * math.cos(at * 5.7)
            if not self.still:
                self.tell(f"set {self.PROCESSOR} {self.level + away:.2f}")
            if self.over.wait(0.7):
                return

    def __exit__(self, *details):
        self.over.set()
        self.course.join()
        super().__exit__(*details)


class Workload:
    """Runs applications with their own icons, each of which keeps one processor busy for a share of the time (in percent)."""

    APPLICATIONS = [("Atelier 3D", 60, "#f7a04b", "#e2711d"), ("Navigateur", 22, "#8f7bff", "#5a3ee0"),
                    ("Machine virtuelle", 9, "#7ea6ff", "#3c63d6"), ("Musique", 4, "#ff8fb1", "#e0457b"),
                    ("Courrier", 2, "#6fc3ff", "#2f6fed")]
    DAEMONS = [("WindowServer", 11), ("kernel_task", 5), ("mds_stores", 3)]
    # Busy for a share of every tenth of a second. The memory is allocated so that the list of applications shows it.
    BUSY = ("import sys, time\nshare = float(sys.argv[1]) / 100\nmemory = bytearray(int(sys.argv[2]) << 20)\n"
            "while True:\n    end = time.monotonic() + share / 10\n    while time.monotonic() < end: pass\n"
            "    time.sleep((1 - share) / 10)\n")

    FONT = "/usr/share/fonts/opentype/inter/Inter-SemiBold.otf"

    def __init__(self):
        self.children = []

    def __enter__(self):
        for index, (name, share, light, dark) in enumerate(self.APPLICATIONS):
            self.start(pathlib.Path(f"/Applications/{name}.app/Contents/MacOS/{name}"), share, 300 - 50 * index)
            self.draw_icon(name, light, dark)
        for name, share in self.DAEMONS:
            self.start(pathlib.Path(f"/Library/Daemons/{name}"), share, 40)
        return self

    def start(self, program, share, megabytes):
        program.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy("/usr/bin/python3", program)
        self.children.append(subprocess.Popen([program, "-c", self.BUSY, str(share), str(megabytes)]))

    def draw_icon(self, name, light, dark):
        data = pathlib.Path(os.environ["HOME"]) / ".local/share"
        picture = data / f"icons/{name}.png"
        for folder in (picture.parent, data / "applications"):
            folder.mkdir(parents=True, exist_ok=True)
        corners = ["(", "-size", "256x256", "xc:black", "-fill", "white", "-draw", "roundrectangle 0,0 255,255 58,58", ")",
                   "-alpha", "off", "-compose", "CopyOpacity", "-composite", "-compose", "over"]
        letter = ["-fill", "white", "-font", self.FONT, "-pointsize", "130", "-gravity", "center", "-annotate", "0", name[0]]
        subprocess.run(["convert", "-size", "256x256", f"gradient:{light}-{dark}", *corners, *letter, picture], check=True)
        (data / f"applications/{name.lower()}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName={name}\nIcon={picture}\n", encoding="utf-8")

    def __exit__(self, *_):
        for child in self.children:
            child.kill()
            child.wait()
