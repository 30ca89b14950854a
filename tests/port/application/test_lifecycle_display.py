"""Resume and pause as a window manager shows and hides the application's window."""

import contextlib
import pathlib
import re
import signal
import time

import pytest

from port.lifecycle import App, wait_until_active, wait_until_still, window_of
from support.bus import wait_until
from support.display import Display
from support.shared_memory import are_left, segments_of

NO_DISPLAY = -5

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


def test_frames_are_drawn_on_the_main_thread(run):
    app = run()
    app.wait_for_log("I WATCH_PORT: first frame")
    names = {task.read_text().strip(): task.with_name("status").read_text()
             for task in pathlib.Path(f"/proc/{app.process.pid}/task").glob("*/comm")}
    # The toolkit starts it, and it waits for work once.
    assert re.search(r"^voluntary_ctxt_switches:\s+[01]$", names["Eevas-thread-wk"], re.M)


def test_a_window_that_stands_still_waits_for_events_alone(run):
    app = run()
    app.wait_for_log("I WATCH_PORT: first frame")
    # The toolkit clears up once, half a second after the last frame.
    wait_until_still(app)


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


@pytest.mark.parametrize("leaving, returning", [
    ("lower", "raise"), ("lower", "activate"), ("hide", "show"), ("delete", "new")])
def test_the_application_leaves_with_a_pause_and_comes_back_with_a_resume(run, leaving, returning):
    app = run()
    app.tell(leaving)
    app.wait_for("pause")
    app.tell(returning)
    app.wait_for("resume")
    app.tell("exit")
    ends_well(app, "did " + leaving, "pause", "did " + returning, "resume", "did exit", "pause")


def test_lowering_and_raising_at_once_is_not_seen(run):
    app = run()
    app.say("lower", "raise", "exit")
    ends_well(app, "did lower", "did raise", "did exit", "pause")


def test_a_lowered_window_that_the_user_presses_is_in_sight_again(run, display):
    app = run()
    app.tell("lower")
    app.wait_for("pause")
    display.xdotool("mousemove", 180, 180, "click", 1)
    app.wait_for("resume")
    app.tell("exit")
    ends_well(app, "did lower", "pause", "resume", "did exit", "pause")


def test_iconifying_from_outside_pauses_and_mapping_resumes(run, display):
    app = run()
    display.xdotool("windowminimize", window_of(display, app))
    app.wait_for("pause")
    display.xdotool("windowmap", window_of(display, app))
    app.wait_for("resume")


@pytest.mark.parametrize("word", ["iconify", "withdraw", "hide", "lower"])
def test_the_applications_own_leaving_pauses(run, word):
    app = run()
    app.tell(word)
    app.wait_for("pause")
    app.tell("exit")
    ends_well(app, "did " + word, "pause", "did exit")


def test_closing_the_window_ends_the_application_before_the_window_goes(run):
    app = run(does="window:watched")
    app.tell("close")
    assert app.end() == (0, CREATED + ["did close", "pause", "terminate", "deleted", "result 0"])
    assert "ERR<" not in app.log


def test_closing_a_window_twice_is_closing_it_once(run):
    app = run(does="window:watched")
    app.say("close", "close")
    status, lines = app.end()
    assert status == 0
    assert lines[-4:] == ["pause", "terminate", "deleted", "result 0"]


def test_closing_one_of_two_windows_deletes_it_alone(run, display):
    app = run(does="window:watched")
    app.tell("new")
    wait_until_active(display, app)
    # The window below is uncovered a moment later, which is no time out of sight.
    with display.silent_manager():
        app.tell("close")
        app.wait_for("deleted")
        # The window has gone by the next turn of the loop.
        app.tell("sync")
        app.tell("sync")
    app.tell("exit")
    assert app.end() == (0, CREATED + ["did new", "did close", "deleted", "did sync", "did sync",
                                       "did exit", "pause", "terminate", "deleted", "result 0"])


def test_a_window_that_opens_above_another_one_is_no_time_out_of_sight(run, display):
    app = run()
    with display.silent_manager():
        app.tell("new")
        app.tell("sync")
    wait_until_active(display, app)
    app.tell("exit")
    ends_well(app, "did new", "did sync", "did exit", "pause")


def test_a_cover_pauses_where_one_of_two_windows_was_closed(run):
    app = run(does="window:watched")
    app.tell("new")
    app.tell("close")
    app.wait_for("deleted")
    run()
    app.wait_for("pause")


def test_a_window_that_is_a_picture_is_no_window_of_the_display(run):
    app = run()
    app.tell("picture")
    app.tell("sync")
    app.tell("exit")
    ends_well(app, "did picture", "did sync", "did exit", "pause")


def test_closing_the_last_window_in_sight_ends_an_application_with_a_hidden_one(run):
    app = run()
    app.tell("hide")
    app.wait_for("pause")
    app.tell("new")
    app.wait_for("resume")
    app.tell("close")
    ends_well(app, "did hide", "pause", "did new", "resume", "did close", "pause")


def test_an_application_that_closes_its_window_itself_is_not_ended(run):
    app = run(does="window:kept")
    app.tell("close")
    app.wait_for("asked to close")
    app.tell("exit")
    ends_well(app, "did close", "asked to close", "did exit", "pause")


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
@pytest.mark.parametrize("is_covered", [False, True], ids=["in-sight", "covered"])
def test_a_signal_ends_the_run_with_success(run, number, is_covered):
    app = run()
    if is_covered:
        run()
        app.wait_for("pause")
    app.process.send_signal(number)
    ends_well(app, "pause")


@pytest.mark.parametrize("manager", ["openbox", "xfwm4"])
def test_window_managers_that_start_and_restart_leave_the_application_in_sight(tmp_path, manager):
    with Display(manager=None) as bare, App(bare.env, tmp_path) as app:
        app.wait_for("resume")
        for _ in range(2):
            bare.start_manager(manager)
            # It has heard all that the window manager did by the next turn of its loop.
            app.tell("sync")
            app.tell("size")
            bare.end_manager()
        app.tell("exit")
        lines = app.end()[1]
        assert [line for line in lines if line in ("resume", "pause")] == ["resume", "pause"]


def test_a_window_that_another_program_hides_is_out_of_sight_after_a_while(tmp_path):
    with Display(manager=None) as bare, App(bare.env, tmp_path) as app:
        app.wait_for("resume")
        bare.xdotool("windowunmap", window_of(bare, app))
        app.wait_for("pause")
        bare.xdotool("windowmap", window_of(bare, app))
        app.wait_for("resume")


def start_in_sight(stack, screen, folder):
    app = stack.enter_context(App(screen.env, folder))
    app.wait_for("resume")
    app.wait_for_log("first frame")
    return app


def test_a_server_that_falls_silent_ends_who_waits_for_it_within_five_seconds(tmp_path):
    with contextlib.ExitStack() as stack:
        screen = stack.enter_context(Display())
        waiting, ending = (start_in_sight(stack, screen, tmp_path) for _ in range(2))
        with screen.silent_server():
            begin = time.monotonic()
            waiting.say("sync")
            ending.process.send_signal(signal.SIGTERM)
            for app in [waiting, ending]:
                assert app.end()[0] == 256 + NO_DISPLAY
                assert app.port_lines()[-1] == (
                    "E WATCH_PORT: the X server of DISPLAY does not answer any more: "
                    "the application ends")
            assert time.monotonic() - begin < 15
        assert ending.lines[-1] == "terminate"


def count_polls(app):
    """How many threads wait for a server, or for all that the loop waits for."""
    count = 0
    for task in pathlib.Path(f"/proc/{app.process.pid}/task").iterdir():
        # A thread may end meanwhile.
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):
            count += "poll" in (task / "wchan").read_text()
    return count


def test_an_application_that_is_stopped_takes_no_server_for_silent(tmp_path):
    with contextlib.ExitStack() as stack:
        screen = stack.enter_context(Display())
        app = start_in_sight(stack, screen, tmp_path)
        with screen.silent_server():
            app.say("sync")
            wait_until(lambda: count_polls(app) > 1, "the question to the server")
            app.process.send_signal(signal.SIGSTOP)
            # Longer than the server has to answer.
            time.sleep(5)
            app.process.send_signal(signal.SIGCONT)
        app.wait_for("did sync")
        app.tell("exit")
        ends_well(app, "did sync", "did exit", "pause")


def test_a_long_turn_of_the_applications_own_making_is_borne(run):
    app = run()
    app.tell("toil")
    app.tell("exit")
    ends_well(app, "did toil", "did exit", "pause")


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
