"""Tests of stage.end_in_order_when_interrupted(): whatever a program is doing, one signal ends it, in order."""

import subprocess
import sys
import unittest

import stage

# Gets the signal in the midst of something, and would go on for ever. The status tells whether it has ended in order.
PROGRAM = """
import os, signal, sys
import stage

def interrupt():
    os.kill(os.getpid(), signal.SIGTERM)

class Object:
    def __del__(self):
        interrupt()

stage.end_in_order_when_interrupted()
try:
    {action}
    while True:
        signal.pause()
except stage.Interrupted as interruption:
    sys.exit(100 + interruption.args[0])
"""
ENDED_IN_ORDER = 100 + 15


class AnInterruption(unittest.TestCase):
    def assert_ends(self, action):
        program = [sys.executable, "-B", "-c", PROGRAM.format(action=action)]
        done = subprocess.run(program, capture_output=True, text=True, timeout=stage.PATIENCE_SECONDS, check=False)
        self.assertEqual((done.returncode, done.stderr), (ENDED_IN_ORDER, ""))

    def test_ends_a_program_at_work(self):
        self.assert_ends("interrupt()")

    def test_ends_one_that_finalizes_an_object(self):
        self.assert_ends("del [Object()][:]")

    def test_ends_one_that_defers_it(self):
        self.assert_ends("with stage.DEFERRED: interrupt()")


if __name__ == "__main__":
    unittest.main()
