#!/usr/bin/python3
"""Checks the built ELF files: only the application library links Qt, it exports a single function, and no program has an RPATH
or RUNPATH.

Usage: check_libraries.py BUILD_DIRECTORY
"""

import os
import subprocess
import sys

QT_USER = "libFenwhirlApp.so"
ENTRY = "fenwhirl_app_main"


def dynamic_section(file):
    output = subprocess.run(["readelf", "-dW", file], check=True, capture_output=True, text=True).stdout
    needed, paths = [], []
    for line in output.splitlines():
        if "(NEEDED)" in line:
            needed.append(line[line.index("[") + 1:line.rindex("]")])
        elif "(RPATH)" in line or "(RUNPATH)" in line:
            paths.append(line[line.index("[") + 1:line.rindex("]")])
    return needed, paths


def exported(file):
    output = subprocess.run(["nm", "-D", "--defined-only", "--extern-only", file], check=True, capture_output=True, text=True).stdout
    return [line.split()[-1] for line in output.splitlines()]


def main():
    build = sys.argv[1]
    faults = []
    seen = set()
    for folder in ("bin", "lib/fenwhirl"):
        for name in sorted(os.listdir(os.path.join(build, folder))):
            file = os.path.join(build, folder, name)
            with open(file, "rb") as content:
                if content.read(4) != b"\x7fELF":
                    continue
            seen.add(name)
            needed, paths = dynamic_section(file)
            needs_qt = any(library.startswith("libQt6") for library in needed)
            if needs_qt != (name == QT_USER):
                faults.append(f"{name} {'needs' if needs_qt else 'does not need'} Qt: {needed}")
            if name == QT_USER and (symbols := exported(file)) != [ENTRY]:
                faults.append(f"{name} exports more than {ENTRY}, or less: {symbols[:5]}")
            if paths and name != QT_USER:
                faults.append(f"{name} carries a library search path: {paths}")
    for expected in ("Fenwhirl", "simulated-mac", "fenwhirl-guard", QT_USER):
        if expected not in seen:
            faults.append(f"{expected} was not built")
    print("\n".join(faults) if faults else f"{len(seen)} files in order")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
