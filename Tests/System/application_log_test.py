"""Tests of stage.Application: a warning or error of Qt or the QML engine in the program's log fails the test that started it."""

import os
import pathlib
import unittest

import stage


class ApplicationLog(unittest.TestCase):
    def run_one_that_writes(self, text):
        """Runs a script in place of Fenwhirl that writes this text to its log and exits."""
        build = pathlib.Path(os.environ["HOME"]) / "build"
        program = build / "bin/Fenwhirl"
        program.parent.mkdir(parents=True, exist_ok=True)
        program.write_text(f"#!/bin/sh\ncat >&2 <<'END'\n{text}\nEND\n", encoding="utf-8")
        program.chmod(0o755)
        with stage.Application(build) as application:
            self.assertEqual(application.child.wait(stage.PATIENCE_SECONDS), 0)
            self.assertEqual(application.log(), text + "\n")

    def test_a_complaint_raises_an_error_with_its_lines(self):
        for complaint in ("WARNING qrc:/qt/qml/Fenwhirl/Views/FanCard.qml:20: TypeError: Cannot read property 'width' of null",
                          "WARNING qt.qpa.xcb: could not connect to display",
                          "CRITICAL QObject::startTimer: Timers cannot be started from another thread",
                          "==12==ERROR: AddressSanitizer: heap-use-after-free",
                          "Monitor.cpp:12:3: runtime error: signed integer overflow"):
            with self.subTest(complaint), self.assertRaises(stage.StageError) as raised:
                self.run_one_that_writes(f"qt.scenegraph.time.renderloop: one picture\n{complaint}\nanother line")
            self.assertEqual(str(raised.exception).splitlines()[1:], [complaint])

    def test_other_and_allowed_lines_raise_nothing(self):
        self.run_one_that_writes("qt.scenegraph.time.renderloop: one picture\nno WARNING at all\n"
                                 "WARNING The X11 connection broke (error 1). Did the X11 server die?")

    def test_an_error_of_the_test_itself_takes_precedence(self):
        with self.assertRaises(ZeroDivisionError), stage.Application(self.program_that_complains()):
            raise ZeroDivisionError

    def program_that_complains(self):
        with self.assertRaises(stage.StageError):
            self.run_one_that_writes("WARNING a line")
        return pathlib.Path(os.environ["HOME"]) / "build"


if __name__ == "__main__":
    unittest.main()
