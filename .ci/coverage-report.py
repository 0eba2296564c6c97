"""Reads the summary of llvm-cov and prints it as a table; status 1 when the coverage is below what is required."""

import json
import re
import sys

# Files in which every branch must be reached, because a wrong branch there moves a fan.
WHOLE = re.compile(r"FenwhirlCore/(SMC|NumberText|SensorNames)[^/]*$|Fenwhirl/Helper[^/]*$|Monitoring/Poll")
SHOWN = re.compile(r"FenwhirlCore/|Fenwhirl/(Helper[^/]*|main\.cpp)$|Fenwhirl/Platform/(Entry|Desktop)/|"
                   r"Monitoring/(Poll|FanSetting|SensorSummary|FanSummary)|Fenwhirl/(Views|Application)/")
# Folders that are also summed up, each without those below that are listed themselves.
SUMMED = ("Fenwhirl/Views/Components/", "Fenwhirl/Views/", "Fenwhirl/Platform/Desktop/", "Fenwhirl/Application/SelfCheck/",
          "Fenwhirl/Application/")
CORE = "FenwhirlCore/"
CORE_LINES_PERCENT = 95


def main():
    files = json.load(sys.stdin)["data"][0]["files"]
    status = 0
    lines = [0, 0]
    sums = {folder: [0, 0, 0, 0] for folder in SUMMED}
    print(f"{'file':<58} {'lines':>12} {'branches':>12}")
    for file in sorted(files, key=lambda entry: entry["filename"]):
        place, _, name = file["filename"].partition("/Sources/")
        if place.endswith("/build/coverage") or not SHOWN.search(name):
            continue  # generated, or not of interest
        parts = file["summary"]
        line, branch = parts["lines"], parts["branches"]
        missing = WHOLE.search(name) and branch["covered"] < branch["count"]
        status |= bool(missing)
        print(f"{name:<58} {line['covered']:>5} / {line['count']:<4} {branch['covered']:>5} / {branch['count']:<4}"
              + (" must be whole" if missing else ""))
        if name.startswith(CORE):
            lines[0] += line["covered"]
            lines[1] += line["count"]
        for folder in SUMMED:
            if name.startswith(folder):
                for at, count in enumerate((line["covered"], line["count"], branch["covered"], branch["count"])):
                    sums[folder][at] += count
                break
    for folder, (covered, count, taken, branches) in sums.items():
        if count and branches:
            print(f"{folder}: {100 * covered / count:.1f} % of the lines, {100 * taken / branches:.1f} % of the branches")
    percent = 100 * lines[0] / lines[1]
    print(f"The core's lines: {percent:.1f} % (at least {CORE_LINES_PERCENT} %)")
    return 1 if status or percent < CORE_LINES_PERCENT else 0


if __name__ == "__main__":
    sys.exit(main())
