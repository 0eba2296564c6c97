"""Heat alerts as a desktop shows them, with a real notification service."""

import json
import subprocess
import unittest

import stage
from scene import Scene


class HeatAlerts(unittest.TestCase):
    def start_service(self, scene):
        scene.stack.enter_context(stage.Process(["dunst"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        stage.wait_until(lambda: subprocess.run(["dunstctl", "is-paused"], capture_output=True, check=False).returncode == 0,
                         "the service is there")

    def shown(self):
        """Every notification so far as (program, summary, body), oldest first."""
        # What is still on the screen cannot be asked for; what was put away can.
        subprocess.run(["dunstctl", "close-all"], check=True)
        answer = subprocess.run(["dunstctl", "history"], check=True, capture_output=True, text=True).stdout
        found = [tuple(entry[field]["data"] for field in ("appname", "summary", "body"))
                 for entry in json.loads(answer)["data"][0]]
        return found[::-1]

    def test_heat_is_told_once_in_plain_words(self):
        with Scene() as scene:
            self.start_service(scene)
            scene.mac.tell("set TCXC 89.9")
            scene.mac.tell("await requests 400 within 30")  # more than one poll
            self.assertEqual(self.shown(), [])
            scene.mac.tell("set TCXC 90.9")
            stage.wait_until(self.shown, "a notification")
            scene.mac.tell("await requests 400 within 30")
            self.assertEqual(self.shown(), [("Fenwhirl", "Fenwhirl", "Ton Mac chauffe : 90 degrés.")])


if __name__ == "__main__":
    unittest.main()
