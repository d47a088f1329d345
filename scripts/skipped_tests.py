#!/usr/bin/env python3
"""Tells how many tests ran and how many were skipped, and the reason of each skip.

Usage: skipped_tests.py RESULTS_OF_CTEST.xml   (what ctest --output-junit writes)
"""

import re
import sys
import xml.etree.ElementTree as ElementTree
from collections import defaultdict

# GoogleTest: "file:line: Skipped", then the reason. Scripts: "skipped: " and the reason.
REASON = re.compile(r"(?:: Skipped\r?\n|^skipped: )([^\r\n]+)", re.MULTILINE)


def reason_of(case):
    output = case.findtext("system-out") or ""
    found = REASON.search(output)
    if found and not found.group(1).startswith("["):
        return found.group(1).strip()
    skipped = case.find("skipped")
    message = skipped.get("message", "") if skipped is not None else ""
    return f"no reason given ({message or case.get('status')})"


def main():
    cases = ElementTree.parse(sys.argv[1]).getroot().findall("testcase")
    skipped = [case for case in cases if case.get("status") in ("notrun", "disabled")]
    names = defaultdict(list)
    for case in skipped:
        names[reason_of(case)].append(case.get("name"))
    print(f"{len(cases) - len(skipped)} tests ran, {len(skipped)} were skipped")
    for reason, tests in sorted(names.items()):
        shown = ", ".join(tests[:3]) + (", ..." if len(tests) > 3 else "")
        print(f"  {len(tests)} x {reason} ({shown})")


main()
