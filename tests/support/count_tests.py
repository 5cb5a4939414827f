#!/usr/bin/env python3
"""Prints how many tests of a build passed, failed and were skipped: count_tests.py BUILD

CTest runs whole files of tests; each of them leaves a report with its counts in BUILD/test-reports. An entry that
failed without a report counts as one failure.
"""
import os
import sys
import xml.etree.ElementTree as xml


def counts_of(report):
    """Passed, failed and skipped tests of one file."""
    root = xml.parse(report).getroot()
    failed = int(root.get("failures", 0)) + int(root.get("errors", 0))
    skipped = int(root.get("disabled", 0)) + sum(int(suite.get("skipped", 0)) for suite in root)
    return int(root.get("tests", 0)) - failed - skipped, failed, skipped


def main():
    build = sys.argv[1]
    totals = [0, 0, 0]
    for entry in xml.parse(os.path.join(build, "tests.xml")).getroot().iter("testcase"):
        report = os.path.join(build, "test-reports", entry.get("name") + ".xml")
        counts = counts_of(report) if os.path.exists(report) else (0, 0, 0)
        is_failed = entry.get("status") == "fail"
        if is_failed and counts[1] == 0:
            counts = (counts[0], 1, counts[2])
        elif not any(counts) and not is_failed:
            counts = (0, 0, 1)
        totals = [total + count for total, count in zip(totals, counts)]
    print(*totals)


if __name__ == "__main__":
    main()
