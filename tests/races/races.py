"""The guide's threads: no races, by the thread sanitizer and by helgrind (see script/races).

BUILD_DIR is a build with the thread sanitizer, PLAIN_BUILD one without. STARTS: how often the guide
is started under the sanitizer.
"""

import os
import pathlib
import subprocess

import pytest

from e2e.app import BUILD, GUIDE, App
from e2e.watch import Desktop, bare_environment

PLAIN = pathlib.Path(os.environ["PLAIN_BUILD"])
STARTS = int(os.environ.get("STARTS", 5))
FOUND = 66
"""The exit status of a program when a race was found."""

PATIENCE = 180.0
"""Seconds for the first frame, for which helgrind takes half a minute on a busy machine."""

SUPPORT = pathlib.Path(__file__).parents[1] / "support"
HELGRIND = ["--quiet", "--tool=helgrind", f"--error-exitcode={FOUND}", "--num-callers=30",
            f"--suppressions={SUPPORT / 'checkers' / 'helgrind.supp'}"]


@pytest.fixture(name="environment")
def _environment(tmp_path, monkeypatch):
    monkeypatch.setenv("TSAN_OPTIONS",
                       f"exitcode={FOUND} suppressions={SUPPORT / 'checkers' / 'tsan.supp'}")
    return {**bare_environment(str(tmp_path)), "ELM_ENGINE": "buffer", "EINA_LOG_BACKTRACE": "-1"}


def run_to_frame(environment, arguments, executable):
    with App(environment, arguments, executable) as app:
        app.wait_log_or_end("first frame", PATIENCE)
        assert app.has("first frame"), app.tail()
        app.terminate()
        assert app.wait_end() == 0, app.tail()


def test_a_planted_race_is_found_by_the_sanitizer(environment):
    run = subprocess.run([BUILD / "tests/races/planted_race"], env=environment)
    assert run.returncode == FOUND


def test_a_planted_race_is_found_by_helgrind(environment):
    run = subprocess.run(["valgrind", *HELGRIND, PLAIN / "tests/races/planted_race"],
                         env=environment)
    assert run.returncode == FOUND


def test_the_tests_of_the_fonts_race_nowhere(environment):
    run = subprocess.run([BUILD / "tests/port/early_fonts_test"], env=environment)
    assert run.returncode == 0


def test_the_guide_races_nowhere_off_screen(environment):
    for _ in range(STARTS):
        run_to_frame(environment, [], GUIDE)


@pytest.mark.usefixtures("environment")
def test_the_guide_races_nowhere_on_a_display():
    with Desktop("openbox") as desktop:
        for _ in range(STARTS):
            app = desktop.launch()
            desktop.press_key("Escape")
            assert app.wait_end() == 0, app.tail()


def test_the_guide_races_nowhere_by_helgrind(environment):
    run_to_frame(environment, [*HELGRIND, PLAIN / GUIDE.relative_to(BUILD)], "valgrind")
