"""How an application starts on a session bus: first, again, by the bus, and without one."""

import pathlib
import signal
import subprocess
import time

import pytest

from port.launch_apps import id_of, requests
from port.partial_bus import PartialBus
from port.silent_bus import SilentBus, silent_x_server
from support.bus import wait_until

APPLICATION = "org.freedesktop.Application"

NOT_FORWARDED = 256 - 8
NO_SESSION_BUS = 256 - 9

# More than a socket takes; a word of the command line holds 128 KiB.
MUCH = [f"--extra={i}=" + "v" * 100_000 for i in range(4)]


def assert_ends_at_once(app, status):
    """By a signal: within a fraction of the two seconds that a bus is waited for."""
    before = time.monotonic()
    app.process.send_signal(signal.SIGTERM)
    assert app.process.wait(timeout=20) == status
    assert time.monotonic() - before < 1


# A second start

def test_a_second_start_hands_its_request_over_and_ends(apps, clock):
    second = apps.start("clock", "--operation", "show", "--extra", "a=1")
    assert second.end() == (0, [])
    clock.wait_for("app_control show a=1")
    assert apps.start("clock").end() == (0, [])
    clock.wait_for("app_control default")


def test_a_second_start_needs_no_display(apps, clock):
    assert apps.start("clock", env={"ELM_ENGINE": ""}).end() == (0, [])
    clock.wait_for("app_control default")


def test_starts_at_once_are_one_application_with_all_requests(apps):
    started = [apps.start("clock", f"--operation=start-{i}") for i in range(4)]
    wait_until(lambda: sum(app.process.poll() is not None for app in started) == 3, "one process")
    owner = next(app for app in started if app.process.poll() is None)
    owner.tell("exit")
    assert sorted(requests(owner)) == [f"app_control start-{i}" for i in range(4)]
    assert [app.end()[0] for app in started] == [0] * 4


def test_a_second_start_gives_up_an_owner_that_does_not_answer(apps, clock):
    clock.process.send_signal(signal.SIGSTOP)
    before = time.monotonic()
    second = apps.start("clock")
    assert second.end() == (NOT_FORWARDED, [])
    assert 4.9 < time.monotonic() - before < 10
    assert "E WATCH_PORT: ui_app_main: the application is already running, but did not take the " \
           "launch request" in second.port_lines()
    clock.process.send_signal(signal.SIGCONT)


def test_a_second_start_succeeds_an_owner_that_ends_instead_of_answering(apps, clock):
    clock.process.send_signal(signal.SIGSTOP)
    second = apps.start("clock", "--operation", "show")
    wait_until(lambda: apps.bus.has_client(second.process.pid), "the second start on the bus")
    clock.process.kill()
    second.wait_for("app_control show")
    assert second.lines == ["create", "app_control show"]
    assert apps.bus.has_owner(id_of("clock"))


def test_a_second_start_runs_when_the_first_ends_without_taking_its_request(apps, clock):
    """The first one has left its main loop and only cleans up."""
    clock.tell("linger")
    clock.tell("exit")
    clock.wait_for("terminate")
    second = apps.start("clock", "--operation", "show")
    wait_until(lambda: apps.bus.has_client(second.process.pid), "the second start on the bus")
    clock.process.stdin.close()
    second.wait_for("app_control show")
    assert clock.process.wait(timeout=10) == 0


def test_a_second_start_gives_up_a_bus_that_stops_to_read(apps, clock, tmp_path):
    stopping = PartialBus(apps.bus, tmp_path, b"ActivateAction", stops=True)
    before = time.monotonic()
    second = apps.start("clock", *MUCH, env={"DBUS_SESSION_BUS_ADDRESS": stopping.address})
    assert second.end() == (NOT_FORWARDED, [])
    assert time.monotonic() - before < 8
    assert len([line for line in second.port_lines() if "did not take" in line]) == 1
    assert requests(clock) == ["app_control default"]


def test_a_signal_ends_the_wait_for_a_bus_that_stops_to_read(apps, clock, tmp_path):
    stopping = PartialBus(apps.bus, tmp_path, b"ActivateAction", stops=True)
    second = apps.start("clock", *MUCH, env={"DBUS_SESSION_BUS_ADDRESS": stopping.address})
    assert stopping.swallowed.wait(timeout=20)
    assert_ends_at_once(second, -signal.SIGTERM)
    assert requests(clock) == ["app_control default"]


def test_a_signal_that_is_ignored_ends_no_wait(apps, clock, tmp_path):
    late = PartialBus(apps.bus, tmp_path, b"Activate", holds=True)
    before = signal.signal(signal.SIGHUP, signal.SIG_IGN)
    second = apps.start("clock", env={"DBUS_SESSION_BUS_ADDRESS": late.address})
    signal.signal(signal.SIGHUP, before)
    assert late.swallowed.wait(timeout=20)
    second.process.send_signal(signal.SIGHUP)
    with pytest.raises(subprocess.TimeoutExpired):
        second.process.wait(timeout=0.5)
    late.released.set()
    assert second.end() == (0, [])
    clock.wait_for("app_control default")


# No bus

@pytest.mark.parametrize("address", ["", "unix:path=/no-such-socket", "nonsense"])
def test_without_a_bus_the_first_request_comes_and_one_warning(apps, address):
    app = apps.start("clock", "--operation=first", env={"DBUS_SESSION_BUS_ADDRESS": address})
    app.wait_for("app_control first")
    app.tell("exit")
    assert app.end()[0] == 0
    assert len([line for line in app.port_lines() if "session bus" in line]) == 1
    assert "ERR" not in app.log


@pytest.mark.parametrize("word", ["AUTH", "BEGIN", "Hello", "RequestName"])
def test_a_bus_that_does_not_answer_is_given_up_with_one_warning(apps, tmp_path, word):
    silent = PartialBus(apps.bus, tmp_path, word.encode())
    before = time.monotonic()
    app = apps.start("clock", env={"DBUS_SESSION_BUS_ADDRESS": silent.address})
    app.wait_for("app_control default")
    assert time.monotonic() - before < 10
    assert len([line for line in app.port_lines() if "does not answer" in line]) == 1
    app.tell("exit")
    assert app.end()[0] == 0


@pytest.mark.parametrize("word", ["AUTH", "Hello", "RequestName"])
def test_a_signal_ends_the_wait_for_a_bus_that_does_not_answer(apps, tmp_path, word):
    silent = PartialBus(apps.bus, tmp_path, word.encode())
    app = apps.start("clock", env={"DBUS_SESSION_BUS_ADDRESS": silent.address})
    assert silent.swallowed.wait(timeout=20)
    assert_ends_at_once(app, -signal.SIGTERM)


@pytest.mark.parametrize("variable", ["DISPLAY", "WAYLAND_DISPLAY"])
def test_a_signal_ends_the_wait_for_a_display_that_does_not_answer(apps, variable):
    with SilentBus() as compositor, silent_x_server() as server:
        name = server if variable == "DISPLAY" else compositor.path
        app = apps.start("clock", env={"ELM_ENGINE": "", variable: name})
        wait_until(lambda: apps.bus.has_owner(id_of("clock")), "the name")
        tasks = pathlib.Path(f"/proc/{app.process.pid}/task")
        wait_until(lambda: len(list(tasks.iterdir())) > 1, "the wait for the display")
        assert_ends_at_once(app, 0)
        assert app.end() == (0, [])
        assert not app.log


def test_a_name_that_comes_too_late_is_given_back(apps, tmp_path):
    other = apps.run("other")
    other.tell("at-once 0")
    late = PartialBus(apps.bus, tmp_path, b"RequestName", holds=True)
    app = apps.start("clock", env={"DBUS_SESSION_BUS_ADDRESS": late.address})
    app.wait_for("app_control default")
    late.released.set()
    # On the same connection, so the bus has handled by then what was held.
    app.tell(f"launch {id_of('other')} show")
    other.wait_for("app_control show")
    assert not apps.bus.has_owner(id_of("clock"))
    apps.run("clock")


def test_one_connection_is_all_that_a_start_needs(apps, tmp_path):
    """So no bus can fall silent before a second one; what asks later is given up in time."""
    silent = PartialBus(apps.bus, tmp_path, b"AUTH", first_client=2)
    app = apps.start("clock", env={"DBUS_SESSION_BUS_ADDRESS": silent.address})
    app.wait_for("app_control default", deadline=10)
    assert not silent.swallowed.is_set()
    app.tell("notify org.example.Other show")
    assert "sent -6" in app.lines


def test_a_signal_ends_the_wait_of_a_callback_for_the_bus(apps, tmp_path):
    silent = PartialBus(apps.bus, tmp_path, b"AUTH", first_client=2)
    app = apps.start("clock", env={"DBUS_SESSION_BUS_ADDRESS": silent.address})
    app.wait_for("app_control default")
    app.say("notify org.example.Other show")
    assert silent.swallowed.wait(timeout=20)
    before = time.monotonic()
    app.process.send_signal(signal.SIGTERM)
    app.wait_for("sent -6")
    assert time.monotonic() - before < 1
    assert app.end()[1][-1] == "terminate"
    assert app.process.returncode == 0


def test_a_bus_that_accepts_nobody_is_given_up_with_one_warning(apps):
    with SilentBus(is_full=True) as full:
        app = apps.start("clock", env={"DBUS_SESSION_BUS_ADDRESS": full.address})
        app.wait_for("app_control default", deadline=10)
        assert len([line for line in app.port_lines() if "does not answer" in line]) == 1
        app.tell("notify org.example.Other show")
        assert "sent -6" in app.lines
        app.tell("exit")
        assert app.end()[0] == 0


def test_an_application_outlives_its_bus(apps, clock):
    apps.bus.die()
    assert apps.start("clock", "--operation=exit").end()[0] == 0
    clock.tell("notify org.example.Other show")
    assert "sent -6" in clock.lines
    clock.tell("exit")
    assert clock.end()[0] == 0


def test_a_start_runs_alone_when_the_bus_dies_while_it_hands_over(apps, clock, tmp_path):
    stopping = PartialBus(apps.bus, tmp_path, b"Activate")
    second = apps.start("clock", env={"DBUS_SESSION_BUS_ADDRESS": stopping.address})
    assert stopping.swallowed.wait(timeout=20)
    apps.bus.die()
    second.wait_for("app_control default")
    assert len([line for line in second.port_lines() if "session bus" in line]) == 1
    assert requests(clock) == ["app_control default"]


def test_an_id_that_is_none_is_one_warning(apps):
    apps.install("clock")
    (apps.folder / "clock/share/clock/clock.id").write_text("no id\n")
    app = apps.run("clock")
    assert len([line for line in app.port_lines() if "clock.id" in line]) == 1


def test_an_id_that_cannot_be_read_is_one_warning_with_the_reason(apps):
    apps.install("clock")
    file = apps.folder / "clock/share/clock/clock.id"
    file.unlink()
    file.symlink_to(file)
    app = apps.run("clock")
    assert [line for line in app.port_lines() if "clock.id" in line] == [
        f'W WATCH_PORT: "{file}" cannot be read (Too many levels of symbolic links): '
        "launch requests over the session bus do not arrive"]


def test_a_program_without_an_id_asks_for_no_name_and_says_nothing(apps):
    apps.install("clock")
    (apps.folder / "clock/share/clock/clock.id").unlink()
    first, second = apps.run("clock"), apps.run("clock")
    for app in [first, second]:
        assert not [line for line in app.port_lines() if "bus" in line]


# A start by the bus

def test_the_bus_starts_the_application_and_the_call_is_its_first_request(apps):
    apps.let_bus_start("clock")
    assert apps.client("gapplication", "action", id_of("clock"), "first").returncode == 0
    assert apps.bus.has_owner(id_of("clock"))
    apps.call("clock", APPLICATION + ".ActivateAction", "exit", "[]", "{}")
    wait_until(lambda: not apps.bus.has_owner(id_of("clock")), "the end")


def test_a_service_is_not_created_before_a_request(apps):
    app = apps.start("clock", "--service")
    wait_until(lambda: apps.bus.has_owner(id_of("clock")), "the name")
    apps.client("gdbus", "introspect", "--session", "--dest", id_of("clock"), "--object-path", "/")
    assert app.lines == []
    apps.call("clock", APPLICATION + ".Activate", "{}")
    app.wait_for("app_control default")
    app.tell("exit")
    assert app.end() == (0, ["create", "app_control default", "did exit", "terminate"])


def test_a_service_without_requests_ends_after_ten_seconds(apps):
    before = time.monotonic()
    assert apps.start("clock", "--service").end() == (0, [])
    assert time.monotonic() - before > 9.5


def test_a_signal_ends_a_service_that_waits(apps):
    app = apps.start("clock", "--service")
    wait_until(lambda: apps.bus.has_owner(id_of("clock")), "the name")
    app.process.send_signal(signal.SIGTERM)
    assert app.process.wait(timeout=10) in [0, -signal.SIGTERM]


def test_a_second_service_ends_at_once(apps, clock):
    assert apps.start("clock", "--service").end() == (0, [])
    assert requests(clock) == ["app_control default"]


def test_a_service_needs_a_bus_and_an_id(apps):
    env = {"DBUS_SESSION_BUS_ADDRESS": ""}
    assert apps.start("clock", "--service", env=env).end() == (NO_SESSION_BUS, [])
    (apps.folder / "clock/share/clock/clock.id").unlink()
    assert apps.start("clock", "--service").end() == (NO_SESSION_BUS, [])
