"""Applications on the watch: launched, handed requests, told to end."""

import shutil

import dbus.bus
import pytest

from simulator.desk import BUILD, GUIDE

FRAME = "echo '00:00:00.000 I X: WATCH_PORT: first frame'"
"""How a program without a window tells of its first frame."""


@pytest.fixture(name="script")
def _script(tmp_path):
    """Makes a program without an id."""
    def write(*lines):
        program = tmp_path / "program"
        program.write_text("\n".join(["#!/bin/sh", *lines, ""]), encoding="utf-8")
        program.chmod(0o700)
        return program
    return write


@pytest.fixture(name="clock")
def _clock(tmp_path):
    """The guide under another id, as it is installed; the watch does not know where."""
    program, resources = tmp_path / "bin" / "clock", tmp_path / "share" / "clock"
    program.parent.mkdir()
    resources.mkdir(parents=True)
    shutil.copy(BUILD / "qivo-ui" / "qivo-guide-app", program)
    (resources / "clock.id").write_text("org.example.Clock\n", encoding="utf-8")
    return program


def processes_of(desk, program):
    return [process for process, command in desk.processes().items()
            if str(program).encode() in command.split(b"\0")]


def test_launch_returns_when_the_page_is_drawn(desk, tmp_path):
    desk.do("wait", "still")
    home = tmp_path / "home.png"
    desk.do("screenshot", home)
    desk.do("launch")
    assert desk.status()["app"]["id"] == GUIDE
    assert "pixels differ from" in desk.refused("compare", home)


def test_launch_hands_a_request_to_the_application_that_runs(desk):
    desk.do("launch")
    pid = desk.status()["app"]["pid"]
    desk.do("launch", GUIDE, "--operation", "show", "--extra", "card=1")
    assert desk.status()["app"]["pid"] == pid
    desk.do("wait", "log", "operation:[show]")


def test_launch_takes_the_path_of_a_program(desk):
    desk.do("launch", BUILD / "qivo-ui" / "qivo-guide-app")
    assert desk.status()["app"]["id"] == GUIDE


@pytest.mark.parametrize("app, complaint", [
    ("org.example.Nothing", "no application org.example.Nothing is on the watch"),
    ("nothing", '"nothing" is not an application'),
    ("./nothing", "is not a program"),
])
def test_launch_refuses_what_is_not_there(desk, app, complaint):
    assert complaint in desk.refused("launch", app)
    assert desk.status()["app"] is None


def test_launch_tells_of_an_application_that_ends_before_it_draws(desk):
    assert "false ended with status 1 before it had drawn anything" in desk.refused(
        "launch", "/bin/false")


def test_launch_tells_of_a_program_whose_interpreter_is_missing(desk, tmp_path):
    program = tmp_path / "orphan"
    program.write_text("#!/nowhere/interpreter\n", encoding="utf-8")
    program.chmod(0o700)
    assert "orphan ended with status 127 before" in desk.refused("launch", program)
    assert "No such file or directory" in desk.do("log")


def test_a_program_without_an_id_is_not_launched_twice(desk, script):
    program = script(FRAME, "while :; do sleep 600; done")
    desk.do("launch", program)
    running = desk.status()["app"]
    assert desk.refused("launch", program) == (
        "qivo-watch: program is already running and takes no request: it has no application id")
    assert desk.status()["app"] == running
    assert processes_of(desk, program) == [running["pid"]]


def test_programs_of_one_name_are_told_apart_by_their_paths(desk, script, tmp_path):
    first = script(FRAME, "exec sleep 600")
    (tmp_path / "other").mkdir()
    second = shutil.copy(first, tmp_path / "other")
    desk.do("launch", first)
    before = desk.status()["app"]
    desk.do("launch", second)
    assert desk.status()["app"]["pid"] != before["pid"]
    desk.do("terminate", first)
    assert desk.refused("terminate", first) == f"qivo-watch: application {first} is not running"


def test_an_id_that_runs_from_a_path_takes_requests(desk, clock):
    desk.do("launch", clock)
    pid = desk.status()["app"]["pid"]
    desk.do("launch", "org.example.Clock", "--operation", "by its id")
    desk.do("wait", "log", "operation:[by its id]")
    assert desk.status()["app"]["pid"] == pid
    desk.do("terminate", "org.example.Clock")
    assert "no application org.example.Clock is on the watch" in desk.refused(
        "launch", "org.example.Clock")


def test_a_second_process_that_keeps_its_request_is_ended(desk, clock, script):
    desk.do("launch", clock)
    stubborn = script(f"{FRAME} >&2", "exec sleep 600")
    pid = desk.status()["app"]["pid"]
    shutil.copy(stubborn, clock.with_name("new"))
    clock.with_name("new").replace(clock)
    assert desk.refused("launch", clock) == (
        "qivo-watch: org.example.Clock is running, but did not take the request")
    assert desk.status()["app"]["pid"] == pid
    assert processes_of(desk, clock) == [pid]


def test_a_program_that_tells_of_no_frame_is_ended_with_the_patience_for_it(desk):
    assert desk.refused("launch", shutil.which("xlogo"), "-t", "0.5") == (
        "qivo-watch: xlogo reported no first frame within 0.5 s")
    assert desk.status()["app"] is None
    assert processes_of(desk, shutil.which("xlogo")) == []


def test_a_program_that_draws_nothing_and_does_not_end_is_killed(desk, script):
    program = script("trap '' TERM", "while :; do sleep 600; done")
    assert "reported no first frame within 0.1 s" in desk.refused("launch", program, "-t", "0.1")
    assert desk.status()["lastEnd"] == {"app": "program", "status": 0, "signal": 9}
    assert processes_of(desk, program) == []


def test_the_environment_of_a_program_is_the_callers_to_add_to(desk, script):
    program = script('echo "flavour $FLAVOUR of $LANG"', FRAME, "exec sleep 600")
    desk.do("launch", program, "--env", "FLAVOUR=a=b c", "--env", "LANG=eo")
    desk.do("wait", "log", "flavour a=b c of eo")


def test_a_path_of_a_programs_own_hides_nothing_that_the_watch_needs(desk, script):
    program = script('echo "path $PATH"', FRAME, "exec /bin/sleep 600")
    desk.do("launch", program, "--env", "PATH=/nowhere")
    desk.do("wait", "log", "path /nowhere")


def test_an_environment_that_is_too_large_is_refused_in_one_line(desk):
    bus = dbus.bus.BusConnection(f"unix:path={desk.status()['folder']}/bus")
    watch = bus.get_object("com.velmora.QivoWatch", "/com/velmora/QivoWatch", introspect=False)
    large = dbus.Dictionary({"A": "x" * 200_000}, signature="ss")
    with pytest.raises(dbus.DBusException) as refused:
        watch.Launch(dbus.Dictionary({"app": "/bin/true", "env": large}, signature="sv"),
                     dbus_interface="com.velmora.QivoWatch1")
    bus.close()
    assert refused.value.get_dbus_message() == "cannot start true: Argument list too long"


def test_an_environment_that_comes_too_late_or_hides_the_program_is_refused(desk, clock):
    desk.do("launch", clock)
    assert desk.refused("launch", clock, "--env", "A=1") == (
        "qivo-watch: org.example.Clock is already running: its environment stays")
    assert desk.refused("launch", "--env", "QIVO_WATCH_FOLDER=/") == (
        "qivo-watch: QIVO_WATCH_FOLDER is the watch's own")


def test_terminate_ends_an_application_in_order(desk):
    desk.do("launch")
    desk.do("terminate")
    status = desk.status()
    assert status["app"] is None
    assert status["lastEnd"] == {"app": GUIDE, "status": 0, "signal": 0}
    log = desk.do("log").splitlines()
    assert any("SOnAppTerminate" in line for line in log[-12:]), log[-12:]


def test_terminate_names_what_it_cannot_end(desk):
    assert desk.refused("terminate") == "qivo-watch: no application is running"
    desk.do("launch")
    assert desk.refused("terminate", "org.example.Nothing") == (
        "qivo-watch: application org.example.Nothing is not running")
    assert desk.status()["app"]["id"] == GUIDE


def test_terminate_kills_what_does_not_end(desk, script):
    desk.do("launch", script("trap '' TERM", FRAME, "while :; do sleep 600; done"))
    assert desk.refused("terminate", "-t", "0.2") == (
        "qivo-watch: program did not end within 0.2 s, and was killed")
    assert desk.status()["app"] is None


def test_terminate_tells_of_an_application_that_fails_at_its_end(desk, script):
    desk.do("launch", script("trap 'exit 3' TERM", FRAME, "while :; do sleep 0.01; done"))
    assert desk.refused("terminate") == "qivo-watch: program ended with status 3"


def test_the_watches_that_run_are_listed(desk):
    assert desk.do("list") == "watch\n"
    desk.do("--name", "a-second", "start", "--headless")
    assert desk.do("list") == "a-second\nwatch\n"
    desk.do("--name", "a-second", "stop")
    assert desk.do("list") == "watch\n"


def test_a_line_of_an_application_that_does_not_end_is_cut(desk, script):
    program = script("exec head -c 50000000 /dev/zero")
    assert "program ended with status 0 before" in desk.refused("launch", program)


def test_a_second_process_takes_the_place_of_a_first_that_ends(desk, clock, script, tmp_path):
    second, ended = tmp_path / "second", tmp_path / "ended"
    program = script(f"[ -e {second} ] && {{ {FRAME} >&2; touch {ended}; exec sleep 600; }}",
                     f"{FRAME} >&2", f"while ! [ -e {ended} ]; do sleep 0.05; done")
    shutil.copy(program, clock.with_name("new"))
    clock.with_name("new").replace(clock)
    desk.do("launch", clock)
    pid = desk.status()["app"]["pid"]
    second.touch()
    desk.do("launch", clock)
    status = desk.status()
    assert status["app"]["pid"] != pid
    assert status["lastEnd"] == {"app": "org.example.Clock", "status": 0, "signal": 0}
