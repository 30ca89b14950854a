"""The command line of the scripts."""

import os
import pathlib
import subprocess

import pytest

from e2e.picture import Picture

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


def test_a_screenshot_shows_the_first_complete_frame_and_leaves_nothing_running(tmp_path):
    picture = tmp_path / "guide.png"
    nowhere = {key: value for key, value in os.environ.items() if key != "DISPLAY"}
    result = subprocess.run([SCRIPT / "run", "--screenshot", picture], capture_output=True,
                            text=True, env=nowhere | {"TMPDIR": str(tmp_path)})
    assert result.returncode == 0, result.stderr
    assert "first frame" in result.stderr
    rgb = subprocess.run(["convert", picture, "-depth", "8", "rgb:-"], check=True,
                         capture_output=True).stdout
    page = Picture(rgb)
    assert page.colours(top=240).get((255, 255, 255), 0) > 100
    assert len(page.colours(bottom=240)) > 50
    assert list(tmp_path.iterdir()) == [picture]
    assert not processes_with(f"TMPDIR={tmp_path}")


def processes_with(variable):
    """The command lines of all processes that have the variable in their environment."""
    found = []
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if variable.encode() in (folder / "environ").read_bytes().split(b"\0"):
                found.append((folder / "cmdline").read_bytes())
        except OSError:
            continue
    return found
