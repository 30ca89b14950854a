"""The totals that end a test session: nothing that went wrong may be missing from them."""

import json
import pathlib
import subprocess
import sys

import pytest

TOTALS = pathlib.Path(__file__).parents[2] / "tools" / "totals.py"
CASES = """<testsuites><testsuite name="suite">
<testcase classname="Case" name="Passes" status="run"/>
<testcase classname="Case" name="Off" status="notrun"/>
{more}</testsuite></testsuites>"""
FAILURE = '<testcase classname="Case" name="Fails"><failure message="1 is 2&#10;more"/></testcase>'
SKIP = '<testcase classname="Case" name="Skips"><skipped message="no kernel support"/></testcase>'


def totals(*arguments):
    run = subprocess.run([sys.executable, "-B", TOTALS, *map(str, arguments)],
                         capture_output=True, text=True)
    assert run.stderr == ""
    return run.returncode, run.stdout.splitlines()


@pytest.fixture(name="build")
def _build(tmp_path):
    """A build folder after "meson test", with one executable of the given outcome."""
    def make(result, status, report=None):
        (tmp_path / "meson-logs").mkdir()
        entry = {"name": "project:unit / calls", "result": result, "returncode": status}
        (tmp_path / "meson-logs" / "testlog.json").write_text(json.dumps(entry) + "\n")
        if report is not None:
            (tmp_path / "calls.xml").write_text(report)
        return tmp_path
    return make


def test_cases_of_an_executable_are_counted_one_by_one(build):
    status, lines = totals("--meson", build("OK", 0, CASES.format(more="")))
    assert (status, lines[-1]) == (0, "1 passed, 0 failed, 1 skipped")


def test_a_failed_case_is_printed_with_the_first_line_of_its_reason(build):
    status, lines = totals("--meson", build("FAIL", 1, CASES.format(more=FAILURE)))
    assert (status, lines[-1]) == (1, "1 passed, 1 failed, 1 skipped")
    assert any("Case.Fails" in line and line.endswith("1 is 2") for line in lines)


def test_a_skipped_case_is_printed_with_its_reason(build):
    status, lines = totals("--meson", build("OK", 0, CASES.format(more=SKIP)))
    assert (status, lines[-1]) == (0, "1 passed, 0 failed, 2 skipped")
    assert any("Case.Skips: no kernel support" in line for line in lines)


def test_a_reason_that_googletest_begins_with_its_place_is_printed_with_it(build):
    placed = SKIP.replace("no kernel support",
                          "../dlog_test.cpp:184&#10;no kernel support&#10;more")
    lines = totals("--meson", build("OK", 0, CASES.format(more=placed)))[1]
    assert any(line.endswith("Case.Skips: ../dlog_test.cpp:184: no kernel support")
               for line in lines)


@pytest.mark.parametrize("result, status", [("FAIL", -11), ("TIMEOUT", -15), ("ERROR", 99)])
def test_an_executable_that_left_no_report_has_failed(build, result, status):
    folder = build(result, status)
    assert totals("--meson", folder) == (
        1, [f"failed: {folder.name}: calls: {result}, status {status}", "0 passed, 1 failed"])


def test_an_executable_that_failed_after_its_cases_passed_has_failed(build):
    status, lines = totals("--meson", build("FAIL", 23, CASES.format(more="")))
    assert (status, lines[-1]) == (1, "1 passed, 1 failed, 1 skipped")


@pytest.mark.parametrize("report", ["<testsuites", "<testsuites/>"])
def test_a_broken_or_empty_report_is_a_failure(build, report):
    status, lines = totals("--meson", build("OK", 0, report))
    assert (status, lines[-1]) == (1, "0 passed, 1 failed")


def test_a_build_folder_without_a_run_is_a_failure(tmp_path):
    assert totals("--meson", tmp_path)[1][-1] == "0 passed, 1 failed"


def test_a_missing_pytest_report_is_a_failure(tmp_path):
    assert totals("--junit", tmp_path / "none.xml")[1][-1] == "0 passed, 1 failed"


def test_nothing_passed_is_not_a_success():
    assert totals() == (1, ["0 passed, 0 failed"])


def test_checks_are_counted(tmp_path):
    checks = tmp_path / "checks"
    checks.write_text("passed lint: format\nfailed lint: scripts\n")
    assert totals("--checks", checks) == (
        1, ["failed: lint: scripts", "1 passed, 1 failed"])
