#!/usr/bin/python3
"""Checks that every setting has a test, and names each that has none in one line.

Usage: check_settings.py SOURCE_DIRECTORY

- The title of every SettingRow on the pages must occur in Tests/Fenwhirl/Views/SettingsTest.cpp.
- Every property of PreferencesView that the user can change must be compared there with what the monitor has, or with what WHERE
  names instead.
- The key of every preference must occur in Tests/Fenwhirl/Monitoring/MonitorPreferencesTest.cpp.

This does not show that the tests are good ones, only that none was forgotten.
"""

import os
import re
import sys

VIEWS = "Sources/Fenwhirl/Views"
PREFERENCES = "Sources/Fenwhirl/Monitoring/SavedPreferences.h"
VIEW_TESTS = "Tests/Fenwhirl/Views/SettingsTest.cpp"
MONITOR_TESTS = "Tests/Fenwhirl/Monitoring/MonitorPreferencesTest.cpp"

# Where a property ends up that is not one of the monitor's.
WHERE = {"launchAtLogin": "world.loginItemEnabled"}


def row_titles(qml):
    """The titles of the rows in a QML file."""
    for row in re.split(r"\bSettingRow \{", qml)[1:]:
        title = re.search(r'^\s*title: (?:qsTr\("(.*)"\)|(.*))$', row, re.M)
        yield (title.group(1) or title.group(2)) if title else "(without a title)"


def untested_rows(file, qml, tests):
    for title in row_titles(qml):
        if f'"{title}"' not in tests:
            yield f'{file}: {VIEW_TESTS} does not test the row "{title}"'


def untested_properties(header, tests):
    for name in re.findall(r"Q_PROPERTY\(\w+ (\w+) READ \w+ WRITE", header):
        if WHERE.get(name, f"monitor().{name}()") not in tests:
            yield f"{VIEWS}/PreferencesView.h: {VIEW_TESTS} does not test the property {name}"


def untested_preferences(header, tests):
    for key in re.findall(r'Preference\{"(\w+)"', header):
        if f'"{key}"' not in tests:
            yield f'{PREFERENCES}: {MONITOR_TESTS} does not test the preference "{key}"'


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 64

    def read(path):
        with open(os.path.join(sys.argv[1], path), encoding="utf-8") as file:
            return file.read()

    view_tests = read(VIEW_TESTS)
    faults = []
    rows = 0
    for name in sorted(os.listdir(os.path.join(sys.argv[1], VIEWS))):
        if name.endswith(".qml"):
            qml = read(f"{VIEWS}/{name}")
            rows += len(list(row_titles(qml)))
            faults += untested_rows(f"{VIEWS}/{name}", qml, view_tests)
    faults += untested_properties(read(f"{VIEWS}/PreferencesView.h"), view_tests)
    faults += untested_preferences(read(PREFERENCES), read(MONITOR_TESTS))
    for fault in faults:
        print(fault)
    if rows < 3:
        print("too few rows were found for this to be the project")
        return 1
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
