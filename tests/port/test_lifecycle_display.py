"""Resume and pause as a window manager shows and hides the application's window."""

import os
import pathlib
import signal
import time

import pytest

from port.lifecycle import DEADLINE, App, window_of
from support.bus import wait_until
from support.display import Display
from support.shared_memory import are_left, segments_of

PSELECT = {"x86_64": "270", "aarch64": "72"}
"""The number of the call pselect6, in which the main loop waits."""

CREATED = ["create user-data", "app_control default", "resume"]


@pytest.fixture(scope="module")
def display():
    with Display() as screen:
        yield screen


@pytest.fixture
def run(display, tmp_path):
    """Starts the application in sight; all of them are gone at the end."""
    apps = []

    def start(does=""):
        apps.append(App(display.env, tmp_path, does=does))
        apps[-1].wait_for("resume")
        return apps[-1]

    yield start
    for app in apps:
        app.__exit__()


def ends_well(app, *since):
    status, lines = app.end()
    assert status == 0
    assert lines == CREATED + list(since) + ["terminate", "result 0"]


def test_the_application_is_resumed_when_its_window_is_shown(run):
    app = run()
    app.tell("exit")
    ends_well(app, "did exit", "pause")


def test_the_first_frame_is_reported_after_the_resume(run):
    app = run()
    app.wait_for_log("I WATCH_PORT: first frame")
    assert app.lines == CREATED


def test_a_window_that_stands_still_waits_for_events_alone(run):
    app = run()
    app.wait_for_log("I WATCH_PORT: first frame")
    seen = []

    def sleeps_without_end():
        # Number and arguments of the call that the loop sleeps in; the fifth is its time limit.
        call = pathlib.Path(f"/proc/{app.process.pid}/syscall").read_text().split()
        seen[:] = call
        return call[0] == PSELECT[os.uname().machine] and int(call[5], 16) == 0

    # The toolkit clears up once, half a second after the last frame.
    deadline = time.monotonic() + DEADLINE
    while not sleeps_without_end():
        assert time.monotonic() < deadline, f"still wakes by itself: {seen}"
        time.sleep(0.02)


def test_a_cover_pauses_and_its_end_resumes(run):
    app = run()
    cover = run()
    app.wait_for("pause")
    cover.tell("exit")
    app.wait_for("resume")
    app.tell("exit")
    ends_well(app, "pause", "resume", "did exit", "pause")


def test_a_cover_that_is_lowered_uncovers(run):
    app = run()
    cover = run()
    app.wait_for("pause")
    cover.tell("lower")
    cover.wait_for("pause")
    app.wait_for("resume")


def test_lowering_out_of_sight_pauses_and_raising_resumes(run):
    run()
    app = run()
    app.tell("lower")
    app.wait_for("pause")
    app.tell("raise")
    app.wait_for("resume")


def test_lowering_with_nothing_behind_keeps_the_application_in_sight(run):
    app = run()
    app.tell("lower")
    app.tell("exit")
    ends_well(app, "did lower", "did exit", "pause")


def test_iconifying_from_outside_pauses_and_mapping_resumes(run, display):
    app = run()
    display.xdotool("windowminimize", window_of(display, app))
    app.wait_for("pause")
    display.xdotool("windowmap", window_of(display, app))
    app.wait_for("resume")


@pytest.mark.parametrize("word", ["iconify", "withdraw", "hide"])
def test_the_applications_own_leaving_pauses(run, word):
    app = run()
    app.tell(word)
    app.wait_for("pause")
    app.tell("exit")
    ends_well(app, "did " + word, "pause", "did exit")


def test_hiding_pauses_and_showing_resumes(run):
    app = run()
    app.tell("hide")
    app.wait_for("pause")
    app.tell("show")
    app.wait_for("resume")


@pytest.mark.parametrize("word", ["close", "delete"])
def test_the_end_of_the_window_pauses_and_a_new_one_resumes(run, word):
    app = run()
    app.tell(word)
    app.wait_for("pause")
    app.tell("new")
    app.wait_for("resume")
    app.tell("exit")
    ends_well(app, "did " + word, "pause", "did new", "resume", "did exit", "pause")


def test_a_window_destroyed_from_outside_pauses(run, display):
    app = run()
    display.xdotool("windowclose", window_of(display, app))
    app.wait_for("pause")


def test_a_pause_that_exits_ends_the_run(run):
    app = run(does="pause:exit")
    run()
    ends_well(app, "pause")


def test_an_exit_in_resume_pauses_first(run):
    ends_well(run(does="resume:exit"), "pause")


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_a_signal_ends_the_run_with_success(run, number):
    app = run()
    app.process.send_signal(number)
    ends_well(app, "pause")


def test_a_signal_ends_a_covered_application(run):
    app = run()
    run()
    app.wait_for("pause")
    app.process.send_signal(signal.SIGTERM)
    ends_well(app, "pause")


def test_a_killed_application_leaves_no_shared_memory(run):
    app = run()
    app.wait_for_log("first frame")
    segments = segments_of([app.process.pid])
    assert segments
    app.process.kill()
    app.process.wait()
    wait_until(lambda: not are_left(segments), "the end of the shared memory")


def test_the_window_fills_a_screen_of_another_size(tmp_path):
    with Display("480x400x24") as screen, App(screen.env, tmp_path) as app:
        app.wait_for("resume")
        app.wait_for_log("first frame")
        assert app.ask("size") == "size 480x400"
