"""Tests of every command of the helper as an ordinary user runs it: exit status, output, and what reaches the controller."""

import ctypes
import os
import socket
import subprocess
import unittest

from helper_stage import BUILD, HELPER, NOBODY, HelperTest, as_nobody, require_tracing


class WithoutController(HelperTest):
    machine = None

    def status(self, *arguments):
        result = self.helper(*arguments)
        self.assertEqual(result.stderr, b"")
        if arguments[:1] != ("version",):
            self.assertEqual(result.stdout, b"")
        return result.returncode

    def test_version_answers_all_the_same(self):
        result = self.helper("version", "extra", "words")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"3\n", b""))

    def test_no_command_is_a_usage_error(self):
        self.assertEqual(self.status(), 64)

    def test_a_missing_controller_is_reported_before_usage_errors(self):
        for arguments in (["bogus"], ["set"], ["set", "x", "y"], ["set", "0", "2000"], ["auto"], ["auto", "0"],
                          ["test"], [""], ["Version"], ["version "]):
            self.assertEqual(self.status(*arguments), 2, arguments)

    def listen(self, owner, mode, listener):
        """Creates a fake controller socket. `owner` owns its folder, which has this mode; `listener` is the user that listens."""
        folder = "/run/fenwhirl"
        os.makedirs(folder, exist_ok=True)
        os.chown(folder, owner, owner)
        os.chmod(folder, mode)
        path = folder + "/AppleSMC"
        server = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.addCleanup(lambda: (server.close(), os.path.exists(path) and os.unlink(path)))
        server.bind(path)
        os.chmod(path, 0o666)
        os.seteuid(listener)
        try:
            server.listen()
        finally:
            os.seteuid(0)
        server.settimeout(0.3)
        return server

    def test_a_squatted_controller_is_not_trusted(self):
        for owner, mode, listener in ((0, 0o777, NOBODY), (NOBODY, 0o755, NOBODY), (0, 0o1777, 0), (0, 0o775, 0),
                                      (0, 0o755, NOBODY)):
            with self.subTest(owner=owner, mode=oct(mode), listener=listener):
                server = self.listen(owner, mode, listener)
                self.assertEqual(self.status("set", "0", "2000"), 2)
                self.doCleanups()
                self.assertEqual(server.fileno(), -1)

    def test_the_environment_cannot_name_another_controller(self):
        server = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.addCleanup(server.close)
        server.bind("\0evil-controller")
        server.listen()
        server.settimeout(0.2)
        names = {name: "@evil-controller" for name in
                 ("FENWHIRL_SOCKET", "FENWHIRL_SMC", "SMC_SOCKET", "APPLESMC", "XDG_RUNTIME_DIR", "TMPDIR", "RUN")}
        self.assertEqual(self.helper("set", "0", "2000", env=names).returncode, 2)
        with self.assertRaises(TimeoutError):
            server.accept()


class StartedWithoutTheFlag(HelperTest):
    machine = None

    def start_with(self, arguments):
        """Starts the set-user-ID copy with exactly these arguments, the program's name included."""
        def run():
            os.setgroups([])
            os.setresgid(NOBODY, NOBODY, NOBODY)
            os.setresuid(NOBODY, NOBODY, NOBODY)
            library = ctypes.CDLL(None, use_errno=True)
            vector = (ctypes.c_char_p * (len(arguments) + 1))(*arguments, None)
            environment = (ctypes.c_char_p * 1)(None)
            library.execve(str(HELPER).encode(), vector, environment)

        child = os.fork()
        if child == 0:
            try:
                run()
            finally:
                os._exit(99)
        return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])

    def test_it_refuses(self):
        for arguments in ([], [b""], [b"Fenwhirl"], [b"Fenwhirl", b"--HELPER", b"version"],
                          [b"Fenwhirl", b"--helper ", b"version"], [b"Fenwhirl", b" --helper"],
                          [b"Fenwhirl", b"--help"], [b"Fenwhirl", b"--helperx"], [b"Fenwhirl", b"-helper"],
                          [b"Fenwhirl", b"version", b"--helper"], [b"Fenwhirl", b"", b"--helper", b"version"],
                          [b"Fenwhirl", b"A" * 130000]):
            self.assertEqual(self.start_with(arguments), 77, arguments[:3])

    def test_the_flag_is_looked_for_in_the_first_place_only(self):
        self.assertEqual(self.start_with([b"--helper", b"version"]), 77)
        self.assertEqual(self.start_with([b"", b"--helper", b"version"]), 0)

    def test_it_refuses_before_it_opens_or_connects_anything(self):
        require_tracing()
        trace = subprocess.run(
            ["strace", "-u", "nobody", "-f", "-e", "trace=%file,%network,clone,clone3,vfork,fork", str(HELPER)],
            capture_output=True, text=True, check=False)
        self.assertEqual(trace.returncode, 77, trace.stderr)
        calls = [line for line in trace.stderr.splitlines() if "(" in line and not line.startswith("+++")]
        opened = [call for call in calls if call.startswith("open")]
        self.assertTrue(opened)
        for call in opened:
            self.assertRegex(call, r'"(/etc/ld\.so\.cache|.*/libc\.so\.6)"')
        for call in calls:
            self.assertRegex(call, r"^(execve|open|openat|access|newfstatat|readlink)\(", calls)

    def test_arguments_without_end_are_ignored(self):
        self.assertEqual(self.start_with([b"Fenwhirl", b"--helper", b"version"] + [b"x"] * 60000), 0)
        self.assertEqual(self.start_with([b"Fenwhirl", b"--helper"] + [b"y" * 120000] * 10), 2)


class WithController(HelperTest):
    def check(self, arguments, status, writes):
        self.seen = self.last_write()
        result = self.helper(*arguments)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (status, b"", b""), arguments)
        self.assertEqual(self.writes(), writes, arguments)

    def test_usage_errors_write_nothing(self):
        for arguments in ([], ["bogus"], [""], ["SET", "0", "2000"], ["set"], ["set", "0"], ["set", "", "1200"],
                          ["set", "x", "1200"], ["set", "-", "1200"], ["set", "0", "abc"], ["set", "0", ""],
                          ["set", "0", " 1200"], ["set", "0", "1200 "], ["set", "0", "12,5"], ["set", "0x0", "1200"],
                          ["set", "9223372036854775808", "1200"], ["Auto"], ["auto "], ["tests"]):
            self.check(arguments, 64, [])

    def test_set_drives_one_fan(self):
        self.check(["set", "0", "2400"], 0, ["FS!=0001", "F0Tg=2580"])
        self.check(["set", "+1", "2400"], 0, ["FS!=0003", "F1Tg=2580"])
        self.check(["set", "1", "2.5e3", "extra", "words"], 0, ["FS!=0003", "F1Tg=2710"])
        self.check(["set", "1", "0x1p12"], 0, ["FS!=0003", "F1Tg=4000"])

    def test_set_stays_within_the_fans_own_range(self):
        low, high = int(self.value("F0Mn")) * 4, int(self.value("F0Mx")) * 4
        self.check(["set", "0", "-5"], 0, ["FS!=0001", f"F0Tg={low:04X}"])
        self.check(["set", "0", "1e9"], 0, ["FS!=0001", f"F0Tg={high:04X}"])
        self.check(["set", "0", "inf"], 0, ["FS!=0001", f"F0Tg={high:04X}"])
        self.check(["set", "0", "-inf"], 0, ["FS!=0001", f"F0Tg={low:04X}"])
        self.check(["set", "0", "1e999"], 0, ["FS!=0001", f"F0Tg={high:04X}"])

    def test_a_speed_that_is_no_number_is_a_failure_that_writes_nothing(self):
        for word in ("nan", "-nan", "NAN", "nan(1)"):
            self.check(["set", "0", word], 1, [])

    def test_a_fan_that_does_not_exist_is_a_failure(self):
        self.check(["set", "7", "2400"], 1, ["FS!=0080"])
        self.check(["auto", "7"], 0, ["FS!=0000"])
        self.check(["set", "65535", "2400"], 1, ["FS!=0000"])

    def test_auto_hands_back_one_fan_or_all(self):
        self.check(["set", "0", "2400"], 0, ["FS!=0001", "F0Tg=2580"])
        self.check(["set", "1", "2400"], 0, ["FS!=0003", "F1Tg=2580"])
        self.check(["auto", "1"], 0, ["FS!=0001"])
        self.check(["auto", "0", "extra"], 0, ["FS!=0000"])
        for word in ("x", "", "1.0", " 1", "--", "9223372036854775808"):
            self.check(["auto", word], 0, ["FS!=0000", "FS!=0000"])
        self.check(["auto"], 0, ["FS!=0000", "FS!=0000"])
        self.assert_automatic()

    def test_a_refused_write_is_a_failure(self):
        self.mac.tell("refuse F0Tg")
        self.addCleanup(self.mac.tell, "accept all")
        result = self.helper("set", "0", "2400")
        self.assertEqual(result.returncode, 1)
        self.mac.tell("refuse FS!")
        self.assertEqual(self.helper("auto").returncode, 1)
        self.assertEqual(self.helper("auto", "0").returncode, 1)

    def test_auto_goes_on_after_a_failure(self):
        self.mac.tell("fault result 86 times 1 command write")
        self.addCleanup(self.mac.tell, "restore all")
        self.assertEqual(self.helper("auto").returncode, 1)
        self.assertEqual(len(self.writes()), 2)

    def test_an_impossible_index_stops_before_any_write_and_leaves_no_core(self):
        for index in ("-1", "65536", "9223372036854775807", "-9223372036854775808"):
            for arguments in (["set", index, "2400"], ["auto", index]):
                child = self.start(*arguments, cwd="/tmp")
                _, status = os.waitpid(child.pid, 0)
                child.returncode = 0
                self.assertTrue(os.WIFSIGNALED(status), arguments)
                self.assertEqual(os.WTERMSIG(status), 6, arguments)
                self.assertFalse(os.WCOREDUMP(status), arguments)
        self.assertEqual(self.writes(), [])

    def test_without_a_fan_auto_succeeds(self):
        self.mac.tell("unreadable FNum")
        self.addCleanup(self.mac.tell, "restore all")
        self.check(["auto"], 0, [])

    def test_writes_come_from_root(self):
        self.helper("set", "0", "2400")
        self.assertEqual({entry["uid"] for entry in self.log(self.seen)}, {"0"})

    def test_no_uninitialised_byte_leaves_it(self):
        program = str(BUILD / "bin/Fenwhirl")
        for command in (["set", "0", "2400"], ["set", "9", "2400"], ["auto", "0"], ["auto"]):
            checked = subprocess.run(["valgrind", "--error-exitcode=99", "--leak-check=full", "--quiet", program,
                                      "--helper", *command], capture_output=True, text=True, check=False)
            self.assertIn(checked.returncode, (0, 1), checked.stderr)
        self.helper("auto", "9")

    def test_the_test_reports_and_hands_back(self):
        result = self.helper("test")
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        lines = result.stdout.decode().split("\n")
        self.assertEqual(len(lines), 10)
        self.assertEqual(lines[-1], "")
        self.assertTrue(lines[0].startswith("Ventilateur 0 : minimum "))
        self.assertEqual(lines[1], "Écriture acceptée : oui")
        self.assertTrue(lines[8].startswith("Retour en automatique : oui, cible après "))
        self.assert_automatic()

    def test_auto_repairs_whatever_a_hundred_at_once_leave(self):
        children = [self.start("set", str(i % 2), str(2000 + 10 * i)) for i in range(100)]
        for child in children:
            self.assertEqual(child.wait(60), 0)
        self.assertEqual(self.helper("auto").returncode, 0)
        self.assert_automatic()


class WithoutPrivilege(HelperTest):
    def test_without_new_privileges_writes_are_refused(self):
        bare = ["setpriv", "--no-new-privs", "--reuid=65534", "--regid=65534", "--clear-groups"]
        run = lambda *arguments: subprocess.run(bare + self.command_line(*arguments), capture_output=True,  # noqa: E731
                                                check=False)
        self.assertEqual(run("version").stdout, b"3\n")
        self.assertEqual(run("set", "0", "2400").returncode, 1)
        self.assertEqual(run("auto").returncode, 1)
        test = run("test")
        self.assertEqual((test.returncode, test.stdout.decode()),
                         (0, "Test impossible : droits administrateur absents.\n"))
        self.assertEqual({entry["kernel"] for entry in self.log(self.seen)}, {"0xE00002C1"})

    def test_a_tracer_takes_the_privilege_away(self):
        traced = subprocess.run(["strace", "-o", "/dev/null", *self.command_line("set", "0", "2400")], check=False,
                                capture_output=True, **as_nobody())
        self.assertEqual(traced.returncode, 1, traced.stderr)


if __name__ == "__main__":
    unittest.main()
