"""The command line of the script that counts what the tests reach, and its figures."""

import importlib.util
import pathlib
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).parents[2]
FILE = ROOT / "tools" / "coverage" / "coverage.py"
SPEC = importlib.util.spec_from_file_location("coverage_of_qivo", FILE)
coverage = importlib.util.module_from_spec(SPEC)
SPEC.loader.exec_module(coverage)

REPORT = {
    "file": "../../qivo-ui/common/Page.cpp",
    "functions": [{"demangled_name": "QivoUi::Page::~Page()", "start_line": 2, "end_line": 4,
                   "execution_count": runs} for runs in (0, 3)],
    "lines": [
        {"line_number": 2, "count": 3, "function_name": "D2", "branches": [
            {"count": 3, "throw": False}, {"count": 0, "throw": False},
            {"count": 0, "throw": True}]},
        {"line_number": 3, "count": 0, "function_name": "D2", "branches": []},
    ],
}


def test_wrong_use_is_named_in_one_line_with_status_2():
    result = subprocess.run([ROOT / "script" / "coverage", "--fast"], capture_output=True,
                            text=True)
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr.count("\n") == 1 and '"--fast"' in result.stderr


def test_a_folder_without_a_build_is_refused(tmp_path):
    result = subprocess.run([sys.executable, "-B", FILE, tmp_path], capture_output=True, text=True)
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr.count("\n") == 1 and str(tmp_path) in result.stderr


def test_tells_lines_and_branches_that_never_ran_but_no_exceptions_edge():
    counts = coverage.Counts()
    counts.add(REPORT)
    missed = [("line", "qivo-ui/common/Page.cpp", 3), ("branch", "qivo-ui/common/Page.cpp", 2)]
    assert list(counts.missed()) == missed


def test_one_run_of_a_destructors_bodies_is_enough():
    counts = coverage.Counts()
    counts.add(REPORT)
    assert not [m for m in counts.missed() if m[0] == "function"]


def test_a_second_program_adds_to_the_counts_of_the_first():
    counts = coverage.Counts()
    counts.add(REPORT)
    reached = dict(REPORT, lines=[dict(REPORT["lines"][1], count=1)])
    counts.add(reached)
    assert [m[0] for m in counts.missed()] == ["branch"]


@pytest.mark.parametrize("name, shown", [
    ("QivoUi::NaviFrame::PopItem(Elm_Object_Item*, bool)", "NaviFrame::PopItem"),
    ("QivoUi::(anonymous namespace)::Join[abi:cxx11](char*)", "Join"),
])
def test_names_functions_as_the_sources_do(name, shown):
    assert coverage.short(name) == shown
