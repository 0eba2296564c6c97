"""Tests of the dashboard's chart in a real window: readings by pointer and keyboard, and what assistive technology is told."""

import re
import time
import unittest

import gi

import stage
from desktop import Desktop, run

# A reading: a time of day and a temperature.
READING = re.compile(r"\d{1,2}\D{1,3}\d{2}( [AP]M)?, \d+\s°C")


class Chart(unittest.TestCase):
    def chart(self, desktop):
        desktop.start()
        self.assertEqual(desktop.start_again(), 0)
        window = desktop.wait_for_main_window()
        chart = desktop.screen.wait_for("Température du processeur", "chart")
        stage.wait_until(lambda: "focusable" in chart.now().states, "two temperatures were read")
        return window, chart

    def reads(self, chart):
        return READING.fullmatch(chart.description()) is not None

    def test_the_pointer_reads_it(self):
        with Desktop() as desktop:
            window, chart = self.chart(desktop)
            self.assertFalse(self.reads(chart), chart.description())
            place = chart.place()
            x, y = (int(value) for value in (place.x + place.width / 2, place.y + place.height / 2))
            run("xdotool", "mousemove", "--window", window[0], x, y)
            run("xdotool", "mousemove", "--window", window[0], x + 5, y)
            stage.wait_until(lambda: self.reads(chart), lambda: f"a reading; the chart says {chart.description()!r}")
            run("xdotool", "mousemove", "--window", window[0], 5, 5)
            stage.wait_until(lambda: not self.reads(chart), "the reading goes with the pointer")

    def test_keys_read_it_and_each_reading_is_announced(self):
        with Desktop() as desktop:
            window, chart = self.chart(desktop)
            heard = []

            def hear(event):
                if event.source.get_name() == chart.name:
                    heard.append(event.source.get_description())

            gi.require_version("Atspi", "2.0")
            from gi.repository import Atspi
            listener = Atspi.EventListener.new(hear)
            self.assertTrue(listener.register("object:property-change:accessible-description"))
            run("xdotool", "windowactivate", "--sync", window[0])
            chart.take_focus()
            stage.wait_until(lambda: self.reads(chart), lambda: f"a reading; the chart says {chart.description()!r}")
            desktop.key("Home")  # moves to another sample, usually with another temperature
            stage.wait_until(lambda: len(self.pumped(heard)) == 2, lambda: f"two readings are told; there are {heard}")
            # Further polls change the data, but must not announce a reading that the user did not ask for.
            desktop.polls(2)
            self.assertEqual(len(self.pumped(heard)), 2, heard)
            for reading in heard:
                self.assertRegex(reading, READING)
            desktop.key("Escape")
            stage.wait_until(lambda: not self.reads(chart), "Escape takes the reading away")
            listener.deregister("object:property-change:accessible-description")

    def pumped(self, heard):
        """Runs GLib's main loop for a moment to deliver pending events, and returns what was heard so far."""
        from gi.repository import GLib
        end = time.monotonic() + 0.1
        while time.monotonic() < end:
            GLib.MainContext.default().iteration(False)
        return heard


if __name__ == "__main__":
    unittest.main()
