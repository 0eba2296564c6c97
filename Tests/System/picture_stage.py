"""What every walk with pictures needs: its options, and the screen, session and status item host on which it takes place.

tour_pages.py, tour_languages.py and tour_scales.py describe only what they walk through.
"""

import argparse
import contextlib
import os
import pathlib
import subprocess
import sys

import stage
from status_host import StatusHost


def options_parser(description):
    """A parser of the options that ./run gives to every walk. The caller adds its own."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--pictures", type=pathlib.Path, required=True)
    parser.add_argument("--machine", help="of no effect: the pictured Mac is chosen by what it shows")
    parser.add_argument("--heat", help="of no effect: the readings are held still")
    return parser


def speak_french():
    """Formats numbers as in France, and makes the interface French unless the preferences choose another language."""
    os.environ.pop("LC_ALL", None)
    os.environ["LANG"] = "fr_FR.UTF-8"


@contextlib.contextmanager
def raised(width, height, scale):
    """Starts a screen of this size in points with a window manager, and a session on it; yields the host of status items."""
    with contextlib.ExitStack() as stack:
        display = stack.enter_context(stage.Display(width, height, scale))
        display.start_window_manager()
        os.environ.update(display.environment())
        # With a compositor, as on most desktops, translucent parts show what is under them. It also makes the background grey.
        # It writes an error whenever a window goes while it draws that.
        stack.enter_context(stage.Process(["xcompmgr"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        speak_french()
        os.environ.update(stack.enter_context(stage.SessionBus()).environment())
        yield stack.enter_context(StatusHost())


def perform(walk, options, screen, scale):
    """Calls walk(options, host) on a stage of its own; returns the exit status of the program. `screen` is in points."""
    options.pictures.mkdir(parents=True, exist_ok=True)
    stage.end_in_order_when_interrupted()
    try:
        with raised(*screen, scale) as host:
            walk(options, host)
    except stage.StageError as error:
        print(f"The tour ended early: {error}", file=sys.stderr)
        return 1
    except stage.Interrupted as interruption:
        print("The tour was interrupted.", file=sys.stderr)
        return 128 + interruption.args[0]
    print(f"Pictures: {options.pictures}")
    return 0
