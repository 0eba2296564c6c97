"""Tests of the installed helper on a Mac that runs Linux: files in the test's own /sys stand in for the kernel's drivers."""

import os
import pathlib
import shutil
import stat
import subprocess
import unittest

from helper_stage import BUILD, NOBODY, OLDER_MAC, HelperTest
from stage import SimulatedMac, require_own

CLASSES = pathlib.Path("/sys/class/hwmon")
MEMORY = pathlib.Path("/run/fenwhirl")


class WithDrivers(HelperTest):
    machine = None

    def setUp(self):
        require_own("mounts", "a /sys made of files")
        super().setUp()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=0755", "tmpfs", "/sys"], check=True)
        self.addCleanup(subprocess.run, ["umount", "/sys"], check=True)
        self.addCleanup(shutil.rmtree, MEMORY, ignore_errors=True)
        self.device = CLASSES / "hwmon2"

    def plug_in(self, driver, **attributes):
        """Creates the attributes of a driver's device. Root may write those that control a fan."""
        self.device.mkdir(parents=True)
        for name, text in {"name": driver, **attributes}.items():
            file = self.device / name
            file.write_text(f"{text}\n", encoding="ascii")
            file.chmod(0o644 if name.endswith(("_manual", "_output", "_target")) else 0o444)

    def plug_in_intel(self):
        fans = {f"fan{number}_{name}": value for number in (1, 2)
                for name, value in (("input", 2000), ("min", 2000), ("max", 6000), ("output", 2000), ("manual", 0))}
        self.plug_in("applesmc", **fans, temp1_label="TC0P", temp1_input=51000)

    def plug_in_apple_silicon(self, sensor):
        self.plug_in("macsmc_hwmon", fan1_input=1300, fan1_min=1199, fan1_max=7199, fan1_target=0, temp1_label=sensor,
                     temp1_input=58046)

    def attribute(self, name):
        # Unlike a driver's attribute, an ordinary file keeps the tail of a longer earlier text, so only its first line counts.
        return (self.device / name).read_text(encoding="ascii").split("\n")[0]

    def status(self, *arguments):
        result = self.helper(*arguments)
        self.assertEqual((result.stdout, result.stderr), (b"", b""))
        return result.returncode

    def test_fans_are_driven_and_handed_back(self):
        self.plug_in_intel()
        self.assertEqual(self.status("set", "0", "2640.9"), 0)
        self.assertEqual((self.attribute("fan1_manual"), self.attribute("fan1_output")), ("1", "2640"))
        self.assertEqual(self.status("set", "1", "-1"), 0)
        self.assertEqual((self.attribute("fan2_manual"), self.attribute("fan2_output")), ("1", "2000"))
        self.assertEqual(self.status("auto", "0"), 0)
        self.assertEqual((self.attribute("fan1_manual"), self.attribute("fan2_manual")), ("0", "1"))
        self.assertEqual(self.status("auto"), 0)
        self.assertEqual(self.attribute("fan2_manual"), "0")
        self.assertEqual(self.status("set", "2", "3000"), 1)
        self.assertFalse(MEMORY.exists())

    def test_usage_errors_are_the_same_as_on_any_mac(self):
        self.plug_in_intel()
        for arguments in (["bogus"], ["set"], ["set", "x", "1200"]):
            self.assertEqual(self.status(*arguments), 64, arguments)

    def test_a_fan_whose_driver_refuses_is_a_failure(self):
        self.plug_in_intel()
        (self.device / "fan1_output").chmod(0o444)
        self.assertEqual(self.status("set", "0", "3000"), 1)
        self.assertEqual(self.status("auto", "0"), 0)

    def test_drivers_come_before_a_simulated_mac(self):
        self.plug_in_intel()
        with SimulatedMac(BUILD, OLDER_MAC, "--speed", "0") as mac:
            self.assertEqual(self.status("set", "0", "3000"), 0)
            self.assertEqual(self.attribute("fan1_output"), "3000")
            self.assertIn("connections=0 ", mac.tell("state")[-1])
            subprocess.run(["rm", "-r", str(CLASSES)], check=True)
            self.assertEqual(self.status("set", "0", "3000"), 0)
            self.assertIn("key=F0Tg", "".join(mac.tell("log")))
            self.assertEqual(self.status("auto"), 0)

    def test_without_a_driver_of_a_mac_there_is_no_controller(self):
        self.plug_in("coretemp", temp1_label="Core 0", temp1_input=51000, fan1_input=900)
        self.assertEqual(self.status("set", "0", "3000"), 2)
        self.assertEqual(self.status("auto"), 2)

    def test_it_remembers_a_target_in_one_file_and_forgets_it_with_the_hand_back(self):
        self.plug_in_apple_silicon("Tp01")
        self.assertEqual(self.status("set", "0", "2640"), 0)
        self.assertEqual(self.attribute("fan1_target"), "2640")
        self.assertEqual(os.listdir(MEMORY), ["fan0"])
        folder, file = os.stat(MEMORY), os.stat(MEMORY / "fan0")
        self.assertEqual((folder.st_uid, stat.S_IMODE(folder.st_mode)), (0, 0o755))
        self.assertEqual((file.st_uid, file.st_mode & 0o022), (0, 0))
        self.assertEqual(self.status("auto"), 0)
        self.assertEqual(self.attribute("fan1_target"), "0")
        self.assertEqual(os.listdir(MEMORY), [])

    def test_nothing_is_remembered_where_others_may_write(self):
        self.plug_in_apple_silicon("Tp01")
        MEMORY.mkdir()
        MEMORY.chmod(0o777)
        precious = MEMORY.parent / "precious"
        precious.write_text("precious", encoding="ascii")
        os.symlink(precious, MEMORY / "fan0")
        os.chown(MEMORY / "fan0", NOBODY, NOBODY, follow_symlinks=False)
        self.assertEqual(self.status("set", "0", "2640"), 0)
        self.assertEqual(precious.read_text(encoding="ascii"), "precious")
        self.assertTrue((MEMORY / "fan0").is_symlink())

    def test_no_fan_is_driven_while_the_processor_is_not_seen(self):
        if os.path.exists("/etc/fenwhirl/allow-fan-control"):
            self.skipTest("root of this computer allows it")
        self.plug_in_apple_silicon("TCHP")
        self.assertEqual(self.status("set", "0", "2640"), 1)
        self.assertEqual(self.attribute("fan1_target"), "0")
        self.assertEqual(self.status("auto"), 0)


if __name__ == "__main__":
    unittest.main()
