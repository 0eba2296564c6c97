"""Tests of the real installation of the helper: by root, into its required path, and then used by an ordinary user."""

import collections
import filecmp
import os
import pathlib
import re
import shutil
import signal
import stat
import subprocess
import unittest

from helper_stage import BUILD, HELPER, NOBODY, OLDER_MAC, HelperTest, Probe, as_nobody, lay_out_probe, require_real_root, require_tracing
from stage import SCRATCH, SimulatedMac, require_own, rounds, wait_until

SHARED = SCRATCH / "shared"  # a folder that every user may write to


def describe(path):
    found = os.lstat(path)
    return stat.filemode(found.st_mode), found.st_uid, found.st_gid


class InstallTest(unittest.TestCase):
    def setUp(self):
        require_real_root()

    def probe(self, user=0, **options):
        probe = Probe(user, **options)
        self.addCleanup(probe.__exit__)
        return probe


class AsRoot(InstallTest):
    def test_the_helper_is_a_set_user_id_copy_of_the_program(self):
        probe = self.probe()
        self.assertEqual(probe.tell("installed"), "no")
        self.assertEqual(probe.tell("version"), "absent")
        self.assertEqual(probe.tell("install"), "yes")
        self.assertEqual(describe(HELPER), ("-rwsr-xr-x", 0, 0))
        self.assertTrue(filecmp.cmp(HELPER, probe.executable, shallow=False))
        self.assertEqual(describe(HELPER.parent)[0], "drwxr-xr-x")
        self.assertEqual(os.listdir(HELPER.parent), [HELPER.name])
        self.assertEqual(probe.tell("installed"), "yes")
        self.assertEqual(probe.tell("version"), "3")

    def test_an_ordinary_user_drives_the_fans_through_it(self):
        self.assertEqual(self.probe().tell("install"), "yes")
        with SimulatedMac(BUILD, OLDER_MAC, "--speed", "0", "--heat", "20") as mac:
            user = self.probe(NOBODY)
            self.assertEqual(user.tell("version"), "3")
            self.assertEqual(user.tell("run set 0 2400"), "yes")
            self.assertEqual(user.tell("run set 0 nan"), "no")
            log = [line for line in mac.tell("log") if line.startswith("write")]
            self.assertEqual(len(log), 2)
            for line in log:
                self.assertIn("uid=0 ", line)
            self.assertEqual(user.tell("run auto"), "yes")
            mac.stop()

    def test_a_newer_program_replaces_an_older_helper(self):
        HELPER.parent.mkdir()
        HELPER.write_text("#!/bin/sh\necho 2\n", encoding="ascii")
        os.chmod(HELPER, 0o4755)
        probe = self.probe()
        self.assertEqual(probe.tell("version"), "2")
        self.assertEqual(probe.tell("install"), "yes")
        self.assertEqual(probe.tell("version"), "3")

    def test_a_helper_at_work_is_replaced_and_ends_its_work(self):
        with SimulatedMac(BUILD, OLDER_MAC, "--speed", "0", "--heat", "20") as mac:
            probe = self.probe()
            self.assertEqual(probe.tell("install"), "yes")
            before = os.stat(HELPER)
            self.assertEqual(probe.tell("background test"), "yes")
            wait_until(lambda: subprocess.run(["pgrep", "-x", "FenwhirlHelper"], check=False,
                                              capture_output=True).returncode == 0, "the helper runs")
            self.assertEqual(probe.tell("install"), "yes")
            after = os.stat(HELPER)
            self.assertNotEqual(before.st_ino, after.st_ino)
            self.assertEqual((before.st_size, before.st_mode), (after.st_size, after.st_mode))
            self.assertEqual(os.listdir(HELPER.parent), [HELPER.name])
            self.assertEqual(probe.tell("version"), "3")
            wait_until(lambda: subprocess.run(["pgrep", "-x", "FenwhirlHelper"], check=False,
                                              capture_output=True).returncode != 0, "the older helper ends")
            self.assertNotIn("manual", mac.tell("state")[-1])

    def test_a_path_that_would_end_its_quotes_is_refused(self):
        for folder in ("o'brien", "a'; touch pwned; '", "a\"b", "a\\b", "a\nb"):
            probe = self.probe(folder=SCRATCH / folder)
            self.assertEqual(probe.tell("install"), "no", folder)
        self.assertFalse(HELPER.parent.exists())
        self.assertFalse(os.path.exists("pwned"))

    def test_a_path_with_other_oddities_is_not(self):
        probe = self.probe(folder=SCRATCH / "l’été $HOME `id` & co")
        self.assertEqual(probe.tell("install"), "yes")
        self.assertEqual(describe(HELPER), ("-rwsr-xr-x", 0, 0))

    def test_a_folder_that_others_control_is_refused(self):
        for mode, owner in ((0o777, 0), (0o775, 0), (0o755, NOBODY)):
            HELPER.parent.mkdir(exist_ok=True)
            os.chown(HELPER.parent, owner, 0)
            os.chmod(HELPER.parent, mode)
            self.assertEqual(self.probe().tell("install"), "no")
            self.assertEqual(os.listdir(HELPER.parent), [])
        HELPER.parent.rmdir()
        os.symlink(SCRATCH, HELPER.parent)
        self.assertEqual(self.probe().tell("install"), "no")
        self.assertFalse(os.path.exists(SCRATCH / "FenwhirlHelper"))

    def test_nobody_can_exchange_the_file_between_the_steps(self):
        self.install_during_swap_attack(rounds(100, 1000), umask=0o022)

    def test_nobody_can_exchange_the_file_under_any_umask(self):
        # pkexec passes the caller's umask on to the command.
        self.install_during_swap_attack(rounds(100, 1000), umask=0)

    def install_during_swap_attack(self, times, umask):
        os.makedirs(SHARED)
        os.chmod(SHARED, 0o1777)
        swapper = subprocess.Popen(
            ["/usr/bin/python3", "-c",
             "import os,sys\nhelper,evil=sys.argv[1:]; open(evil,'w').close(); done=0\n"
             "while True:\n"
             " for place in (helper, helper + '.new'):\n"
             "  for attempt in (lambda: os.rename(evil, place), lambda: os.symlink(evil, place), lambda: os.link(evil, place),\n"
             "                  lambda: os.unlink(place), lambda: open(place, 'r+')):\n"
             "   try: attempt(); print('exchanged', flush=True)\n"
             "   except OSError: pass\n", str(HELPER), str(SHARED / "evil")],
            stdout=subprocess.PIPE, user=NOBODY, group=NOBODY, extra_groups=[], cwd="/")
        self.addCleanup(swapper.stdout.close)
        self.addCleanup(swapper.wait)
        self.addCleanup(swapper.kill)
        probe = self.probe(umask=umask)
        for number in range(times):
            self.assertEqual(probe.tell("install"), "yes")
            self.assertEqual(describe(HELPER), ("-rwsr-xr-x", 0, 0))
            self.assertEqual(describe(HELPER.parent), ("drwxr-xr-x", 0, 0))
            self.assertTrue(filecmp.cmp(HELPER, probe.executable, shallow=False))
            if number % 4:
                HELPER.unlink()
            else:  # lets the next installation create the folder again
                shutil.rmtree(HELPER.parent)
        swapper.kill()
        self.assertEqual(swapper.stdout.read(), b"")

    def test_each_system_call_of_an_installation_may_fail(self):
        """Injects a failure into the n-th call of each system call, in the shell and in every program that it starts."""
        require_tracing()
        probe = self.probe()
        command = probe.tell(f"install-command {probe.executable}")
        trace = SCRATCH / "trace"
        plain = subprocess.run(["strace", "-f", "-o", trace, "sh", "-c", command], capture_output=True, check=False)
        self.assertEqual(plain.returncode, 0, plain.stderr)
        calls = collections.Counter()
        for process, name in re.findall(r"^(\d+) +([a-z_0-9]+)\(", trace.read_text(errors="replace"), re.MULTILINE):
            calls[process, name] += 1
        most = {name: max(count for (_, other), count in calls.items() if other == name) for _, name in calls}
        faults = [(name, number, error) for name, count in most.items() for number in range(1, count + 1)
                  for error in ("EIO", "ENOMEM", "EINTR") if name not in ("brk", "exit_group", "rt_sigreturn")]
        self.assertGreater(len(faults), 150)
        ended = set()
        for name, number, error in faults[::rounds(12, 1)]:
            # The shell may wait for ever after such a failure. The program that then ends it must not be affected itself.
            done = subprocess.run(["timeout", "-s", "KILL", "20", "strace", "-f", "--seccomp-bpf", "-o", "/dev/null",
                                   "-e", f"trace={name}", "-e", f"inject={name}:error={error}:when={number}", "sh", "-c", command],
                                  stdin=subprocess.DEVNULL, capture_output=True, check=False)
            ended.add(done.returncode == 0)
            # A file with the set-user-ID bit is always a complete helper, whether the old one or the new one.
            if HELPER.exists():
                self.assertEqual(describe(HELPER), ("-rwsr-xr-x", 0, 0), (name, number, error))
                self.assertTrue(filecmp.cmp(HELPER, probe.executable, shallow=False), (name, number, error))
            self.assertEqual(probe.tell("install"), "yes", (name, number, error))
            self.assertEqual(os.listdir(HELPER.parent), [HELPER.name], (name, number, error))
            if number % 2:
                HELPER.unlink()
        self.assertEqual(ended, {True, False})  # some calls matter, others do not

    def test_a_full_disk_leaves_no_helper_with_the_bit(self):
        require_own("mounts", "a full disk")
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k,mode=0755", "tmpfs", "/Library"], check=True)
        probe = self.probe()
        self.assertEqual(probe.tell("install"), "no")
        self.assertEqual(probe.tell("installed"), "no")
        self.assertEqual(os.listdir(HELPER.parent), [])

    def test_an_update_that_breaks_off_leaves_the_helper_as_it_is(self):
        require_own("mounts", "a full disk")
        size = (os.path.getsize(BUILD / "bin/Fenwhirl") + 200_000) // 1024
        subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={size}k,mode=0755", "tmpfs", "/Library"], check=True)
        probe = self.probe()
        self.assertEqual(probe.tell("install"), "yes")
        self.assertEqual(probe.tell("version"), "3")
        before = os.stat(HELPER)
        self.assertEqual(probe.tell("install"), "no")  # there is no room for a second copy
        self.assertEqual(os.stat(HELPER), before)
        self.assertEqual(os.listdir(HELPER.parent), [HELPER.name])
        self.assertEqual(probe.tell("version"), "3")

    def test_leftovers_of_a_broken_installation_do_not_interfere(self):
        probe = self.probe()
        HELPER.parent.mkdir()
        left = pathlib.Path(f"{HELPER}.new")
        left.write_bytes(b"half of it")
        os.chmod(left, 0o4755)
        self.assertEqual(probe.tell("install"), "yes")
        self.assertTrue(filecmp.cmp(HELPER, probe.executable, shallow=False))
        self.assertEqual(os.listdir(HELPER.parent), [HELPER.name])

    def test_a_folder_that_everybody_may_write_to_is_refused_even_where_files_are_kept_from_others(self):
        probe = self.probe()
        self.assertEqual(probe.tell("install"), "yes")
        os.chmod(HELPER.parent, 0o1777)
        self.assertEqual(probe.tell("install"), "no")
        self.assertEqual(os.listdir(HELPER.parent), [HELPER.name])

    def test_the_removal_command_removes_it(self):
        probe = self.probe()
        self.assertEqual(probe.tell("install"), "yes")
        self.assertEqual(subprocess.run(["/bin/sh", "-c", f"rm -f '{HELPER}'"], check=False).returncode, 0)
        self.assertEqual(probe.tell("installed"), "no")
        self.assertEqual(probe.tell("version"), "absent")


class AsAnOrdinaryUser(InstallTest):
    def replace_pkexec(self, body):
        """Replaces pkexec by a script with this body, which logs its arguments, in this private namespace only."""
        require_own("mounts", "another program in the place of pkexec")
        for folder in ("upper", "work"):
            os.makedirs(SCRATCH / folder)
        subprocess.run(["mount", "-t", "overlay", "overlay", "-o",
                        f"lowerdir=/usr/bin,upperdir={SCRATCH}/upper,workdir={SCRATCH}/work", "/usr/bin"], check=True)
        with open("/usr/bin/pkexec", "w", encoding="ascii") as file:
            file.write(f"#!/bin/sh\nfor word; do printf '<%s>' \"$word\"; done > {SHARED}/asked\n{body}\n")
        os.chmod("/usr/bin/pkexec", 0o755)
        os.makedirs(SHARED)
        os.chmod(SHARED, 0o777)

    def test_the_system_is_asked_with_the_whole_command(self):
        self.replace_pkexec("exit 0")
        self.assertEqual(self.probe(NOBODY).tell("install"), "no")  # the user agreed, but the fake installs nothing
        self.assertEqual(
            (SHARED / "asked").read_text(encoding="ascii"),
            f"</bin/sh><-c><umask 022 && mkdir -p /Library/PrivilegedHelperTools && rm -f '{HELPER}.new' && "
            f"cp '{SCRATCH}/probe/bin/Fenwhirl' '{HELPER}.new' && chown root:root '{HELPER}.new' && "
            f"chmod 4755 '{HELPER}.new' && mv -fT '{HELPER}.new' '{HELPER}' || {{ rm -f '{HELPER}.new'; exit 1; }}>")

    def test_a_cancelled_dialog_leaves_nothing_behind(self):
        self.replace_pkexec("exit 126")
        self.assertEqual(self.probe(NOBODY).tell("install"), "no")
        self.assertFalse(HELPER.parent.exists())

    def test_without_anybody_to_ask_the_installation_fails(self):
        self.replace_pkexec("")
        os.unlink("/usr/bin/pkexec")
        self.assertEqual(self.probe(NOBODY).tell("install"), "no")
        self.assertFalse(HELPER.parent.exists())


class TheEntry(InstallTest):
    def test_a_caller_that_ignores_the_end_of_children_does_no_harm(self):
        self.assertEqual(self.probe().tell("install"), "yes")
        probe = self.probe(NOBODY, restore_signals=False, preexec_fn=lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN))
        self.assertEqual(probe.tell("run version"), "yes")
        self.assertEqual(probe.tell("run bogus"), "no")

    def test_only_the_flag_itself_in_the_first_place_makes_it_the_helper(self):
        executable = lay_out_probe(SCRATCH / "roles")

        def start(arguments, identity):
            return subprocess.run([executable, *arguments], input=b"quit\n", capture_output=True, check=False, **identity)

        for identity in ({}, as_nobody()):
            for arguments in ([], ["--HELPER", "version"], ["--helper ", "version"], [" --helper", "version"],
                              ["--helper=version"], ["version", "--helper"], ["", "--helper", "version"]):
                result = start(arguments, identity)
                self.assertEqual(result.returncode, 0, (arguments, result.stderr))
                self.assertRegex(result.stdout.decode(), rf"\Aready \d+ {1 + len(arguments)}\n\Z", arguments)
            result = start(["--helper", "version"], identity)
            self.assertEqual((result.returncode, result.stdout), (0, b"3\n"))

    def test_without_its_library_the_program_says_so_and_ends(self):
        executable = lay_out_probe(SCRATCH / "bare")
        shutil.rmtree(SCRATCH / "bare/lib")
        result = subprocess.run([executable], capture_output=True, check=False)
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr.decode(), r"\AFenwhirl : impossible de charger l'application \(.*"
                                                 rf"{SCRATCH}/bare/lib/fenwhirl/libFenwhirlApp\.so.*\)\.\n\Z")
        self.assertEqual(result.stdout, b"")

    def test_the_library_is_that_of_its_own_installation(self):
        executable = lay_out_probe(SCRATCH / "true")
        os.symlink(executable, SCRATCH / "link")
        os.makedirs(SCRATCH / "lib/fenwhirl")
        (SCRATCH / "lib/fenwhirl/libFenwhirlApp.so").write_bytes(b"no library")
        for start, folder in ((SCRATCH / "link", "/"), ("./Fenwhirl", SCRATCH / "true/bin"),
                              ("bin/../bin/Fenwhirl", SCRATCH / "true")):
            result = subprocess.run([start, "some", "words"], cwd=folder, input=b"quit\n", capture_output=True, check=False,
                                    env={"LD_LIBRARY_PATH": str(SCRATCH / "lib/fenwhirl")})
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertRegex(result.stdout.decode(), r"\Aready \d+ 3\n\Z")

    def test_a_library_without_the_entry_is_refused(self):
        executable = lay_out_probe(SCRATCH / "strange")
        shutil.copy(BUILD / "lib/fenwhirl/fenwhirl-guard", SCRATCH / "strange/lib/fenwhirl/libFenwhirlApp.so")
        result = subprocess.run([executable], capture_output=True, check=False)
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr.decode().startswith("Fenwhirl : impossible de charger l'application ("))

    def test_it_starts_with_the_standard_descriptors_closed(self):
        executable = lay_out_probe(SCRATCH / "closed")
        result = subprocess.run([executable], check=False, preexec_fn=lambda: [os.close(number) for number in (0, 1, 2)])
        self.assertEqual(result.returncode, 0)


if __name__ == "__main__":
    unittest.main()
