#!/usr/bin/env python3
"""Summarizes ctest's JUnit XML: which tests were skipped and why, and how many passed, failed and were skipped."""

import re
import sys
import xml.etree.ElementTree

# How each test framework reports the reason for a skip. The last pattern matches the output of a command that could not
# be run at all.
REASONS = (
    re.compile(r"\.\.\. skipped '(.+)'$", re.M),  # unittest
    re.compile(r'\.\.\. skipped "(.+)"$', re.M),
    re.compile(r"^\S+:\d+: Skipped\n(.+?)$", re.M),  # GoogleTest
    re.compile(r"^SKIP *: (.+)$", re.M),  # Qt Test
    re.compile(r"^(?:private-namespace: )?(\S.*)$", re.M),
)


def reason_of(output):
    for pattern in REASONS:
        found = pattern.search(output)
        if found:
            return found.group(1)
    return "it did not say why"


def summary(file):
    """The lines to print."""
    cases = list(xml.etree.ElementTree.parse(file).getroot().iter("testcase"))
    skipped = [case for case in cases if case.find("skipped") is not None]
    failed = [case for case in cases if case.get("status") == "fail"]
    lines = []
    if skipped:
        reasons = {}
        for case in skipped:
            reasons.setdefault(reason_of(case.findtext("system-out") or ""), []).append(case.get("name"))
        lines.append("Skipped:")
        for reason, names in reasons.items():
            lines.append(f"  {reason}")
            lines.extend(f"    {name}" for name in names)
    # Tests that did not run for other reasons (disabled, missing program) count as failures in ctest, too.
    passed = len([case for case in cases if case.get("status") == "run"])
    lines.append(f"{passed} passed, {len(cases) - passed - len(skipped)} failed, {len(skipped)} skipped")
    return lines


if __name__ == "__main__":
    print("\n".join(summary(sys.argv[1])))
