"""Prints the results of fuzzing as a table: for each target its executions, its time, and its coverage of the sources.

    fuzz-report.py LOGS TARGET…

The sources of a target are the files under Sources/ of which it reached anything at all; each is listed below it.
"""

import json
import pathlib
import re
import sys


def number(pattern, text):
    found = re.search(pattern, text)
    return float(found.group(1)) if found else 0.0


def share(parts, kind):
    covered = sum(part[kind]["covered"] for part in parts)
    count = sum(part[kind]["count"] for part in parts)
    return f"{covered:>6} / {count:<6}"


def files_reached(summary):
    for file in sorted(summary["data"][0]["files"], key=lambda entry: entry["filename"]):
        _, _, name = file["filename"].partition("/Sources/")
        if name and file["summary"]["lines"]["covered"]:
            yield name, file["summary"]


def main(logs, names):
    print(f"{'target':<58} {'executions':>12} {'processor':>10}  {'lines':^15} {'branches':^15}")
    for name in names:
        log = (logs / f"{name}.log").read_text(encoding="utf-8", errors="replace")
        executions = int(number(r"stat::number_of_executed_units:\s+(\d+)", log))
        seconds = number(r"processor seconds: ([\d.]+)", log) + number(r"processor seconds: [\d.]+ \+ ([\d.]+)", log)
        begin = f"{name:<58} {executions:>12} {seconds:>8.0f} s"
        if (logs / f"{name}.broken").exists():
            print(f"{begin}  BROKEN: see {logs / name}.log and build/fuzz/found")
            continue
        with (logs / f"{name}.json").open(encoding="utf-8") as file:
            reached = list(files_reached(json.load(file)))
        parts = [summary for _, summary in reached]
        print(f"{begin}  {share(parts, 'lines')} {share(parts, 'branches')}")
        for source, summary in reached:
            print(f"    {source:<80} {share([summary], 'lines')} {share([summary], 'branches')}")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), sys.argv[2:])
