"""The order of an application's callbacks, off screen and before its command line."""

import signal
import time

import pytest

from port.lifecycle import PROGRAM, App
from port.silent_bus import SilentBus, silent_x_server

OFF_SCREEN = {"ELM_ENGINE": "buffer"}

CREATED = ["create user-data", "app_control default"]
ENDED = ["terminate", "result 0"]

INVALID_PARAMETER = -2
ALREADY_RUNNING = -3
INVALID_COMMAND_LINE = -4
NO_DISPLAY = -5
NO_TOOLKIT = -6
NOT_CREATED = -7
OUT_OF_MEMORY = 256 - 10


def about_memory(app):
    return [line for line in app.port_lines() if "memory is exhausted" in line]


@pytest.fixture
def run(tmp_path):
    """Starts the application off screen; all of them are gone at the end."""
    apps = []

    def start(*arguments, env=None, does=""):
        apps.append(App(OFF_SCREEN if env is None else env, tmp_path, *arguments, does=does))
        return apps[-1]

    yield start
    for app in apps:
        app.__exit__()


def test_a_run_is_create_request_resume_pause_terminate(run):
    app = run()
    app.wait_for("resume")
    app.tell("exit")
    assert app.end() == (0, CREATED + ["resume", "did exit", "pause"] + ENDED)


def test_the_first_request_holds_what_the_command_line_says(run):
    app = run("--operation", "show", "--extra", "b=2", "--extra=a=x=y", does="app_control:exit")
    assert app.end()[1][1] == "app_control show a=x=y b=2"


def test_a_window_is_in_sight_until_it_is_hidden_or_deleted(run):
    app = run()
    app.wait_for("resume")
    app.tell("hide")
    app.wait_for("pause")
    app.tell("show")
    app.wait_for("resume")
    app.tell("delete")
    app.wait_for("pause")
    app.tell("new")
    app.wait_for("resume")
    app.tell("exit")
    assert app.end()[0] == 0
    assert "ERR<" not in app.log


def test_hiding_and_showing_at_once_is_not_seen(run):
    app = run()
    app.wait_for("resume")
    app.say("hide", "show", "exit")
    assert app.end()[1] == CREATED + ["resume", "did hide", "did show", "did exit",
                                      "pause"] + ENDED


def test_a_lowered_window_is_out_of_sight_until_it_is_brought_back(run):
    app = run()
    app.wait_for("resume")
    for word in ["raise", "activate"]:
        app.tell("lower")
        app.wait_for("pause")
        app.tell(word)
        app.wait_for("resume")
    app.tell("exit")
    assert app.end()[0] == 0


def test_an_application_without_a_window_is_never_resumed(run):
    app = run(does="create:nothing")
    app.tell("exit")
    assert app.end() == (0, CREATED + ["did exit"] + ENDED)


@pytest.mark.parametrize("callback, lines", [
    ("create", CREATED[:1] + ENDED),
    ("app_control", CREATED + ENDED),
    ("resume", CREATED + ["resume", "pause"] + ENDED),
])
def test_exit_in_a_callback_skips_what_would_follow(run, callback, lines):
    assert run(does=f"{callback}:exit").end() == (0, lines)


@pytest.mark.parametrize("callback", ["pause", "terminate"])
def test_exit_again_while_ending_changes_nothing(run, callback):
    app = run(does=f"resume:exit,{callback}:exit")
    assert app.end() == (0, CREATED + ["resume", "pause"] + ENDED)


def test_exit_in_a_pause_ends_the_run_without_a_second_pause(run):
    app = run(does="pause:exit")
    app.wait_for("resume")
    app.tell("hide")
    assert app.end() == (0, CREATED + ["resume", "did hide", "pause"] + ENDED)


@pytest.mark.parametrize("callback, lines", [
    ("main", []),
    ("create", CREATED[:1]),
    ("app_control", CREATED),
    ("resume", CREATED + ["resume"]),
])
def test_memory_that_stays_exhausted_ends_the_process_at_once_with_one_line(run, callback, lines):
    app = run(does=f"main:handler,{callback}:exhaust")
    assert app.end() == (OUT_OF_MEMORY, lines + ["no memory"])
    assert len(about_memory(app)) == 1


@pytest.mark.parametrize("callback, lines", [
    ("pause", CREATED + ["resume", "pause"]),
    ("terminate", CREATED + ["resume", "pause", "terminate"]),
])
def test_memory_that_is_exhausted_on_the_way_out_ends_the_process_too(run, callback, lines):
    app = run(does=f"main:handler,resume:exit,{callback}:exhaust")
    assert app.end() == (OUT_OF_MEMORY, lines)
    assert len(about_memory(app)) == 1


@pytest.mark.skipif(b"__asan_init" in PROGRAM.read_bytes(),
                    reason="the address sanitizer ends a process that is refused memory")
def test_the_way_out_has_memory_of_its_own(run):
    app = run(does="main:handler")
    app.wait_for("resume")
    app.tell("run-short")
    assert app.end() == (0, CREATED + ["resume", "no memory", "did run-short", "pause"] + ENDED)
    assert not about_memory(app)


def test_where_no_thread_can_be_started_one_line_says_so(tmp_path):
    # A thread's stack is as large as the limit of stacks: this one is all that there can be.
    env = {"DISPLAY": f"unix:{tmp_path}/nobody", "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nobody"}
    with App(env, tmp_path, f"--stack={1 << 47}", PROGRAM, program="prlimit") as app:
        assert app.end()[0] == 256 + NO_TOOLKIT
        assert app.port_lines() == ["E WATCH_PORT: ui_app_main: cannot start a thread: "
                                    "Resource temporarily unavailable"]


def test_the_toolkits_own_exit_is_an_exit(run):
    app = run()
    app.wait_for("resume")
    app.tell("quit")
    assert app.end() == (0, CREATED + ["resume", "did quit", "pause"] + ENDED)


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_a_signal_ends_the_run_with_success(run, number):
    app = run()
    app.wait_for("resume")
    app.process.send_signal(number)
    assert app.end() == (0, CREATED + ["resume", "pause"] + ENDED)


def test_a_signal_before_the_loop_ends_the_run_with_success(run):
    status, lines = run(does="create:signal").end()
    assert status == 0
    assert lines[:2] == CREATED
    assert lines[-2:] == ENDED


def test_a_create_that_fails_ends_the_run_with_an_error(run):
    app = run(does="create:false")
    assert app.end() == (256 + NOT_CREATED, ["create user-data", f"result {NOT_CREATED}"])
    assert "E WATCH_PORT: the application was not created" in app.port_lines()


@pytest.mark.parametrize("callback, lines", [
    ("create", CREATED[:1]),
    ("app_control", CREATED),
    ("resume", CREATED + ["resume"]),
    ("pause", CREATED + ["resume", "did hide", "pause"]),
])
def test_an_exception_leaves_the_run_without_further_callbacks(run, callback, lines):
    app = run(does=f"{callback}:throw")
    if callback == "pause":
        app.wait_for("resume")
        app.tell("hide")
    assert app.end() == (99, lines + [f"thrown in {callback}"])


def test_an_exception_in_the_last_callbacks_leaves_the_run(run):
    assert run(does="resume:exit,pause:throw").end() == (
        99, CREATED + ["resume", "pause", "thrown in pause"])
    assert run(does="app_control:exit,terminate:throw").end() == (
        99, CREATED + ["terminate", "thrown in terminate"])


def test_a_run_within_a_run_is_rejected(run):
    app = run(does="create:nest,create:exit")
    assert f"nested {ALREADY_RUNNING}" in app.end()[1]


def test_missing_callbacks_are_skipped(run):
    app = run(does="callbacks:none")
    app.wait_for("loop")
    app.process.send_signal(signal.SIGTERM)
    assert app.end() == (0, ["loop", "result 0"])


def test_nothing_reaches_an_application_that_has_been_terminated(run, bus):
    bus.start_upower(charging=False)
    bus.start_locale(["LANG=en_US.UTF-8"])
    app = run(env={**OFF_SCREEN, **bus.env}, does="services:followed,terminate:wait")
    app.wait_for("resume")
    bus.set_charging(True)
    app.wait_for("charger")
    bus.set_locale(["LANG=ko_KR.UTF-8"])
    app.wait_for("language")
    app.tell("exit")
    app.wait_for("terminate")
    # What comes now is read while the toolkit shuts down.
    bus.set_charging(False)
    bus.set_locale(["LANG=en_US.UTF-8"])
    app.say("")
    assert app.end()[1][-4:] == ["pause", "terminate", "waited 1", "result 0"]


def test_no_callbacks_at_all_are_an_error(run):
    assert run(does="callbacks:null").end() == (256 + INVALID_PARAMETER,
                                                [f"result {INVALID_PARAMETER}"])


def test_the_first_frame_is_reported_once(run):
    app = run()
    app.wait_for_log("I WATCH_PORT: first frame")
    for _ in range(2):
        app.tell("hide")
        app.wait_for("pause")
        app.tell("show")
        app.wait_for("resume")
    app.tell("exit")
    app.end()
    assert app.port_lines().count("I WATCH_PORT: first frame") == 1


def test_a_window_without_a_size_gets_the_watchs_screen(run):
    app = run()
    app.wait_for("resume")
    assert app.ask("size") == "size 360x360"


def test_a_window_with_a_size_keeps_it(run):
    app = run(does="window:sized")
    app.wait_for("resume")
    assert app.ask("size") == "size 200x100"


def test_a_picture_engine_needs_no_display(run, tmp_path):
    app = run(env={"ELM_ENGINE": f"shot:delay=0.2:file={tmp_path}/shot.png"})
    assert app.end() == (0, CREATED + ["resume", "pause"] + ENDED)
    assert (tmp_path / "shot.png").read_bytes().startswith(b"\x89PNG")


@pytest.mark.parametrize("env", [
    {}, {"DISPLAY": ""}, {"DISPLAY": ":987654"}, {"DISPLAY": "nonsense"},
    {"WAYLAND_DISPLAY": "wayland-none"}, {"WAYLAND_DISPLAY": "/no/such/socket"},
    {"WAYLAND_DISPLAY": "w" * 200}, {"ELM_ENGINE": "bufferless"},
], ids=str)
def test_no_display_is_one_error_line_and_no_callback(run, env):
    app = run(env=env)
    assert app.end() == (256 + NO_DISPLAY, [f"result {NO_DISPLAY}"])
    assert len(app.log.splitlines()) == 1
    assert app.port_lines()[0].startswith("E WATCH_PORT: ui_app_main: no display: ")


@pytest.mark.parametrize("is_full", [False, True], ids=["silent", "full"])
def test_a_display_that_does_not_answer_is_given_up_after_five_seconds(run, is_full):
    with SilentBus(is_full=is_full) as server, silent_x_server(is_full) as display:
        begin = time.monotonic()
        apps = {"X server": run(env={"DISPLAY": display}),
                "compositor": run(env={"WAYLAND_DISPLAY": server.path})}
        for name, app in apps.items():
            assert app.end() == (256 + NO_DISPLAY, [f"result {NO_DISPLAY}"])
            silence, error = app.port_lines()
            assert name in silence and silence.endswith("has not answered within 5 seconds")
            assert error.startswith("E WATCH_PORT: ui_app_main: no display: ")
        assert 4.9 < time.monotonic() - begin < 15


def test_off_screen_a_silent_display_is_not_asked(run):
    with SilentBus() as server, silent_x_server() as display:
        app = run(env={**OFF_SCREEN, "DISPLAY": display, "WAYLAND_DISPLAY": server.path})
        app.wait_for("resume")
        assert not any("answered" in line for line in app.port_lines())


@pytest.mark.parametrize("arguments, what", [
    (["--unknown"], 'unknown option "--unknown"'),
    (["file"], 'stray argument "file"'),
    (["--operation"], "--operation has no value"),
    (["--operation="], '--operation ""'),
    (["--extra"], "--extra has no value"),
    (["--extra", "key"], '--extra "key": KEY=VALUE'),
    (["--extra", "=value"], '--extra "=value": KEY=VALUE'),
    (["--operation", b"\xff"], '--operation "\\xff"'),
    (["a\nb"], 'stray argument "a\\x0ab"'),
], ids=str)
def test_a_bad_command_line_is_one_error_line_and_no_callback(run, arguments, what):
    app = run(*arguments)
    assert app.end() == (256 + INVALID_COMMAND_LINE, [f"result {INVALID_COMMAND_LINE}"])
    assert len(app.log.splitlines()) == 1
    assert app.log.startswith("lifecycle_app: " + what)
    assert "accepted" in app.log


def test_help_is_printed_without_a_display_and_calls_nothing(run):
    app = run("--help", env={})
    status, lines = app.end()
    assert status == 0
    assert lines[0] == "Usage: lifecycle_app [--operation OP] [--extra KEY=VALUE]..."
    assert lines[-1] == "result 0"
    assert app.log == ""
