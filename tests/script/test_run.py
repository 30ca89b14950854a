"""The command line of the scripts."""

import pathlib
import subprocess

import pytest

from e2e.picture import Picture
from simulator.desk import Desk
from support.display import Display

SCRIPT = pathlib.Path(__file__).parents[2] / "script"

# They build in the same folder.
builds_guide = pytest.mark.xdist_group("build/run")


def run(name, *arguments):
    return subprocess.run([SCRIPT / name, *arguments], capture_output=True, text=True)


@pytest.mark.parametrize("name, arguments, named", [
    ("run", ["--bogus"], '"--bogus"'),
    ("run", ["--screenshot"], "--screenshot"),
    ("setup", ["everything"], '"everything"'),
    ("setup", ["run", "extra"], '"extra"'),
    ("build", [], "kind"),
    ("build", ["everything"], '"everything"'),
    ("test", ["--fast"], '"--fast"'),
    ("lint", ["--fast"], '"--fast"'),
    ("lint", ["results", "extra"], '"extra"'),
    ("fuzz", ["0"], '"0"'),
    ("gallery", ["page.png", "extra"], '"extra"'),
    ("valgrind", ["many"], '"many"'),
    ("races", ["many"], '"many"'),
    ("bench", ["--fast"], '"--fast"'),
    ("bench", ["--quick", "extra"], '"extra"'),
    ("bench", ["--verbs", "--only=start"], "--only=start"),
])
def test_wrong_use_is_named_in_one_line_with_status_2(name, arguments, named):
    result = run(name, *arguments)
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr.count("\n") == 1 and named in result.stderr


@pytest.mark.parametrize("name, usage", [
    ("run", "script/run [--screenshot FILE] [-- APP-ARGUMENTS]"),
    ("bench", "script/bench [--quick] [--verbs | [--only=PART]... [--minutes=N]]"),
    ("build", "script/build KIND [TARGET...]"),
    ("setup", "script/setup test "),
    ("test", "script/test"),
    ("lint", "script/lint [RESULTS]"),
    ("fuzz", "script/fuzz [SECONDS]"),
    ("gallery", "script/gallery [FILE]"),
    ("coverage", "script/coverage"),
    ("valgrind", "script/valgrind [LIVES]"),
    ("races", "script/races [STARTS]"),
    ("package", "script/package [FOLDER]"),
    ("test-elsewhere", "script/test-elsewhere TARGET"),
])
def test_help_says_what_a_script_takes_wherever_it_is_called(name, usage):
    result = subprocess.run([f"./{name}", "--help"], cwd=SCRIPT, capture_output=True, text=True)
    assert (result.returncode, result.stderr) == (0, "")
    assert f"\n  {usage}" in result.stdout
    assert "set -eu" not in result.stdout and "shellcheck" not in result.stdout


@builds_guide
def test_a_screenshot_shows_the_first_complete_frame_and_leaves_nothing_running(tmp_path):
    picture = tmp_path / "guide.png"
    with Desk() as desk:
        result = subprocess.run([SCRIPT / "run", "--screenshot", picture], capture_output=True,
                                text=True, env=desk.environment | {"TMPDIR": str(tmp_path)})
        assert result.returncode == 0, result.stderr
        assert "first frame" in result.stderr
        assert not desk.processes() and not list(desk.runtime.glob("qivo-watch*"))
    assert list(tmp_path.iterdir()) == [picture]
    rgb = subprocess.run(["convert", picture, "-alpha", "off", "-depth", "8", "rgb:-"], check=True,
                         capture_output=True).stdout
    page = Picture(rgb)
    assert page.colours(top=158).get((255, 255, 255), 0) > 100
    assert len(page.colours(bottom=158)) > 50


@builds_guide
def test_without_a_display_the_guide_runs_on_and_it_is_told_how_to_look(tmp_path):
    with Desk() as desk:
        for turn in ("first", "second"):
            result = subprocess.run(
                [SCRIPT / "run", "--", "--operation", turn], capture_output=True, text=True,
                env=desk.environment)
            assert result.returncode == 0, result.stderr
            assert "No display" in result.stdout
        look = next(line for line in result.stdout.splitlines() if "screenshot" in line).split()
        subprocess.run(look, cwd=tmp_path, env=desk.environment, check=True)
        assert (tmp_path / "guide.png").stat().st_size > 10000
        log = subprocess.run([look[0], "log"], env=desk.environment, check=True, text=True,
                             capture_output=True).stdout
        assert "operation:[second]" in log and "operation:[first]" not in log
        subprocess.run([look[0], "stop"], env=desk.environment, check=True)
        assert not desk.processes()


@builds_guide
def test_on_a_display_the_watch_ends_with_the_script():
    with Display("1000x1000x24") as display, Desk(display.name) as desk:
        running = subprocess.Popen([SCRIPT / "run"], env=desk.environment, text=True,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        assert any("WATCH_PORT: first frame" in line for line in running.stdout)
        running.terminate()
        assert running.wait(60) == 143
        running.stdout.close()
        assert not desk.processes() and not list(desk.runtime.glob("qivo-watch*"))


@builds_guide
def test_a_request_that_the_guide_refuses_fails_the_run():
    with Desk() as desk:
        result = subprocess.run([SCRIPT / "run", "--screenshot", "x.png", "--", "--bogus"],
                                capture_output=True, text=True, env=desk.environment)
        assert result.returncode == 2 and "--bogus" in result.stderr
        assert not desk.processes() and not list(desk.runtime.glob("qivo-watch*"))
