"""The last lines that ./test prints: the skipped tests with their reasons, and the counts."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent / "summarize.py"
CASE = '<testcase name="{name}" status="{status}">{verdict}<system-out>{output}</system-out></testcase>'


def passed(name):
    return CASE.format(name=name, status="run", verdict="", output="PASS")


def failed(name):
    return CASE.format(name=name, status="fail", verdict='<failure message=""/>', output="... skipped 'not this one'")


def skipped(name, output):
    return CASE.format(name=name, status="notrun", verdict='<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>', output=output)


def not_run(name):
    return CASE.format(name=name, status="disabled", verdict="<disabled/>", output="")


class Summary(unittest.TestCase):
    def summary(self, *cases):
        with tempfile.NamedTemporaryFile("w", suffix=".xml", encoding="utf-8") as file:
            file.write('<?xml version="1.0" encoding="UTF-8"?>\n<testsuite>' + "".join(cases) + "</testsuite>")
            file.flush()
            return subprocess.run([sys.executable, "-B", SCRIPT, file.name], check=True, capture_output=True,
                                  encoding="utf-8").stdout.splitlines()

    def test_without_skipped_ones_there_is_one_line(self):
        self.assertEqual(self.summary(passed("a"), failed("b"), passed("c")), ["2 passed, 1 failed, 0 skipped"])

    def test_every_kind_of_test_says_why_it_skips(self):
        lines = self.summary(
            passed("a"),
            skipped("python", "test_x (m.C.test_x) ... skipped 'needs mounts of its own: a full disk'\n\nOK (skipped=1)"),
            skipped("python.quotes", "test_x (m.C.test_x) ... skipped \"it's late\"\n\nOK (skipped=1)"),
            skipped("google", "[ RUN      ] A.B\n/a/b.cpp:12: Skipped\nno such locale\n\n[  SKIPPED ] A.B (0 ms)"),
            skipped("qt", "SKIP   : Components::A::b() no OpenGL\n   Loc: [x]"),
            skipped("world", "private-namespace: something lies in /Library already; remove it first\n"),
            skipped("silent", ""))
        self.assertEqual(lines, [
            "Skipped:",
            "  needs mounts of its own: a full disk", "    python",
            "  it's late", "    python.quotes",
            "  no such locale", "    google",
            "  Components::A::b() no OpenGL", "    qt",
            "  something lies in /Library already; remove it first", "    world",
            "  it did not say why", "    silent",
            "1 passed, 0 failed, 6 skipped"])

    def test_one_reason_is_said_once(self):
        output = "... skipped 'no root'"
        self.assertEqual(self.summary(skipped("a", output), skipped("b", output)),
                         ["Skipped:", "  no root", "    a", "    b", "0 passed, 0 failed, 2 skipped"])

    def test_what_was_not_run_at_all_is_no_success(self):
        self.assertEqual(self.summary(passed("a"), not_run("b")), ["1 passed, 1 failed, 0 skipped"])


if __name__ == "__main__":
    unittest.main()
