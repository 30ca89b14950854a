"""The command line of the scripts."""

import pathlib
import subprocess

import pytest

SCRIPT = pathlib.Path(__file__).parents[2] / "script"


def run(name, *arguments):
    return subprocess.run([SCRIPT / name, *arguments], capture_output=True, text=True)


@pytest.mark.parametrize("name, arguments, named", [
    ("run", ["--bogus"], '"--bogus"'),
    ("run", ["--screenshot"], "--screenshot"),
    ("setup", ["everything"], '"everything"'),
    ("test", ["--fast"], '"--fast"'),
])
def test_wrong_use_is_named_in_one_line_with_status_2(name, arguments, named):
    result = run(name, *arguments)
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr.count("\n") == 1 and named in result.stderr


def test_help_says_what_run_takes():
    result = run("run", "--help")
    assert (result.returncode, result.stderr) == (0, "")
    assert "script/run [--screenshot FILE] [-- APP-ARGUMENTS]" in result.stdout
