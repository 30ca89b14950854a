"""Adds up what the runs of a test session left behind and prints the totals.

totals.py [--checks FILE] [--meson BUILD]... [--junit FILE]...

--checks: lines "passed NAME" or "failed NAME".
--meson: a build folder after "meson test"; GoogleTest executables count by their cases.
--junit: a pytest report.

Each failure and each skip is printed with its reason; the last line is "N passed, N failed", and
", N skipped" when there are skips. The status is 1 when something failed or nothing passed.
"""

import argparse
import json
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree
from collections import namedtuple

Result = namedtuple("Result", "verdict name reason", defaults=[""])

PLACE = re.compile(r"\S+:\d+")


def checked(path):
    for line in path.read_text().splitlines():
        verdict, name = line.split(" ", 1)
        yield Result(verdict, name)


def reported(path):
    """The cases of a JUnit report."""
    try:
        cases = list(ElementTree.parse(path).iter("testcase"))
    except (OSError, ElementTree.ParseError) as error:
        return [Result("failed", str(path), f"no report: {error}")]
    return [judged(case) for case in cases] or [Result("failed", str(path), "ran no test")]


def judged(case):
    name = f"{case.get('classname')}.{case.get('name')}"
    for tag in ("failure", "error"):
        if case.find(tag) is not None:
            return Result("failed", name, reason(case.find(tag)))
    if case.find("skipped") is not None:
        return Result("skipped", name, reason(case.find("skipped")))
    if case.get("status") == "notrun":
        return Result("skipped", name, "disabled")
    return Result("passed", name)


def reason(element):
    """The message's first line, and the second one where GoogleTest begins with the place."""
    lines = (element.get("message") or element.text or "").strip().splitlines()
    return ": ".join(lines[:2 if PLACE.fullmatch(lines[0]) else 1]) if lines else ""


def executed(build):
    """The results of Meson's tests, by case where an executable reports its cases."""
    log = build / "meson-logs" / "testlog.json"
    if not log.exists():
        return [Result("failed", str(build), "meson ran no test")]
    return [result for line in log.read_text().splitlines()
            for result in of_executable(build, json.loads(line))]


def of_executable(build, entry):
    name = entry["name"].split(" / ")[-1]
    ended_well = entry["result"] in ("OK", "EXPECTEDFAIL")
    report = build / f"{name}.xml"
    if not report.exists():
        verdict = "skipped" if entry["result"] == "SKIP" else "passed" if ended_well else "failed"
        return [Result(verdict, f"{build.name}: {name}", end_of(entry))]
    results = [result._replace(name=f"{build.name}: {result.name}")
               for result in reported(report)]
    if not ended_well and not any(result.verdict == "failed" for result in results):
        results.append(Result("failed", f"{build.name}: {name}", end_of(entry)))
    return results


def end_of(entry):
    return f"{entry['result']}, status {entry.get('returncode')}"


def main():
    parser = argparse.ArgumentParser()
    for option in ("--checks", "--meson", "--junit"):
        parser.add_argument(option, type=pathlib.Path, action="append", default=[])
    given = parser.parse_args()
    results = [result for read, paths in ((checked, given.checks), (executed, given.meson),
                                          (reported, given.junit))
               for path in paths for result in read(path)]
    count = {verdict: sum(result.verdict == verdict for result in results)
             for verdict in ("passed", "failed", "skipped")}
    for result in results:
        if result.verdict != "passed":
            print(": ".join(filter(None, result)))
    skipped = f", {count['skipped']} skipped" if count["skipped"] else ""
    print(f"{count['passed']} passed, {count['failed']} failed{skipped}")
    return 0 if count["passed"] and not count["failed"] else 1


if __name__ == "__main__":
    sys.exit(main())
