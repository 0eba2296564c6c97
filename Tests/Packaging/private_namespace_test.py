"""Tests of private-namespace, in which the built program is run: wherever the checkout is located, another user can read it
inside the namespace.
"""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

SCRIPT = "Packaging/Linux/private-namespace"
MODULES = "Packaging/Linux/isolation"
ROOT = pathlib.Path(__file__).resolve().parents[2]
AS_NOBODY = ("setpriv", "--reuid=65534", "--regid=65534", "--clear-groups")
FOR_ITS_OWNER = 0o700
KEYMAPS = pathlib.Path("/var/lib/xkb")


class WhereTheProjectLies(unittest.TestCase):
    def setUp(self):
        kind = subprocess.run((ROOT / SCRIPT, "--kind"), check=True, capture_output=True, text=True).stdout.strip()
        if kind not in ("private", "shared"):
            self.skipTest("needs a private world: none can be made here")
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl-")
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.checkout = self.home / "with a blank" / "checkout"
        (self.checkout / SCRIPT).parent.mkdir(parents=True)
        shutil.copy(ROOT / SCRIPT, self.checkout / SCRIPT)
        shutil.copytree(ROOT / MODULES, self.checkout / MODULES)
        self.checkout.chmod(0o755)
        (self.checkout / "build").mkdir()
        (self.checkout / "build/program").write_text("what was built", encoding="ascii")

    def run_there(self, *command, **options):
        done = subprocess.run((self.checkout / SCRIPT, *command), check=False, capture_output=True, text=True, timeout=60,
                              **options)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def assert_nobody_reads_what_was_built(self):
        if os.geteuid() != 0:
            self.skipTest("needs real root, to give up its rights")
        self.assertEqual(self.run_there(*AS_NOBODY, "cat", self.checkout / "build/program"), "what was built")

    def test_below_a_folder_that_only_root_may_enter(self):
        self.home.chmod(FOR_ITS_OWNER)
        self.assert_nobody_reads_what_was_built()
        self.assertEqual(self.home.stat().st_mode & 0o777, FOR_ITS_OWNER)

    def test_in_a_folder_that_only_root_may_enter_and_below_another(self):
        self.home.chmod(FOR_ITS_OWNER)
        self.checkout.chmod(FOR_ITS_OWNER)
        self.assert_nobody_reads_what_was_built()

    def test_other_files_are_visible_and_writes_persist(self):
        self.home.chmod(FOR_ITS_OWNER)
        (self.home / "beside").write_text("another build", encoding="ascii")
        said = self.run_there("sh", "-c", "cat ../../beside; echo a picture >build/picture", cwd=self.checkout)
        self.assertEqual(said, "another build")
        self.assertEqual((self.checkout / "build/picture").read_text(encoding="ascii"), "a picture\n")

    @unittest.skipUnless(KEYMAPS.is_dir(), f"display servers have no {KEYMAPS} here")
    def test_keymaps_of_display_servers_are_not_shared(self):
        name = self.home.name  # that of no other run
        self.assertEqual(self.run_there("sh", "-c", f"echo keys >{KEYMAPS / name}; ls {KEYMAPS}").split(), [name])
        self.assertFalse((KEYMAPS / name).exists())

    def test_in_the_folder_that_serves_as_mount_point(self):
        # The outer namespace keeps the computer's own /mnt untouched.
        prepare_and_run = 'mount -t tmpfs tmpfs /mnt && cp -r "$0" /mnt/checkout && cd /mnt/checkout && exec "./$1" cat build/program'
        done = subprocess.run(("unshare", "--map-root-user", "--mount", "sh", "-c", prepare_and_run, self.checkout, SCRIPT),
                              check=False, capture_output=True, text=True, timeout=60)
        self.assertEqual(done.stdout, "what was built", done.stderr)


if __name__ == "__main__":
    unittest.main()
