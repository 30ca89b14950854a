"""Launch requests that leave the process, over a real bus to a real application."""

import contextlib
import json
import os
import pathlib
import subprocess
import sys

import pytest

from port.lifecycle import SANITIZERS
from port.partial_bus import PartialBus
from support.bus import wait_until

PROBE = pathlib.Path(os.environ["BUILD_DIR"], "tests/port/launch_probe")
SERVICE = pathlib.Path(__file__).with_name("application_service.py")
NAME = "org.example.My-Clock"

NO_SESSION_BUS = -6
APP_NOT_FOUND = -7


@contextlib.contextmanager
def application(bus, log, *options):
    with subprocess.Popen([sys.executable, SERVICE, bus.address, NAME, log, *options]) as service:
        try:
            wait_until(lambda: bus.has_owner(NAME), "the application on the bus")
            yield
        finally:
            service.kill()


def calls(log):
    return [json.loads(line) for line in log.read_text().splitlines()] if log.exists() else []


def send(address, *arguments):
    return subprocess.run([PROBE, *arguments], capture_output=True,
                          env={**SANITIZERS, "DBUS_SESSION_BUS_ADDRESS": address},
                          text=True, timeout=40, check=True)


def test_the_default_operation_alone_is_an_activation(bus, tmp_path):
    log = tmp_path / "log"
    with application(bus, log):
        output = send(bus.address, NAME, "").stdout
    assert output == "sent 0\nanswer 0 to default for user-data\n"
    assert calls(log) == [["Activate", {}]]


def test_operation_and_extra_data_are_an_action_with_a_dictionary(bus, tmp_path):
    log = tmp_path / "log"
    with application(bus, log):
        output = send(bus.address, NAME, "show", "b", "2", "a", "뒤로", "empty", "").stdout
    assert output == "sent 0\nanswer 0 to show for user-data\n"
    assert calls(log) == [["ActivateAction", "show", [{"a": "뒤로", "b": "2", "empty": ""}], {}]]


def test_extra_data_make_the_default_operation_an_action(bus, tmp_path):
    log = tmp_path / "log"
    with application(bus, log):
        send(bus.address, NAME, "", "a", "1")
    assert calls(log) == [["ActivateAction", "default", [{"a": "1"}], {}]]


def test_an_operation_without_extra_data_has_an_empty_dictionary(bus, tmp_path):
    log = tmp_path / "log"
    with application(bus, log):
        send(bus.address, NAME, "show")
    assert calls(log) == [["ActivateAction", "show", [{}], {}]]


def test_a_refusal_is_a_failed_answer_and_a_warning(bus, tmp_path):
    log = tmp_path / "log"
    with application(bus, log, "refuse"):
        result = send(bus.address, NAME, "show")
    assert result.stdout == "sent 0\nanswer -1 to show for user-data\n"
    assert f'W WATCH_PORT: launch request to "{NAME}" failed: not now' in result.stderr


def test_an_application_that_does_not_run_is_started_by_the_bus(bus, tmp_path):
    log = tmp_path / "log"
    bus.add_activatable(NAME, f"{sys.executable} {SERVICE} {bus.address} {NAME} {log}")
    assert send(bus.address, NAME, "show").stdout.endswith("answer 0 to show for user-data\n")
    assert calls(log) == [["ActivateAction", "show", [{}], {}]]


def test_an_application_that_cannot_be_started_is_a_failed_answer(bus):
    bus.add_activatable(NAME, "/bin/false")
    assert send(bus.address, NAME, "").stdout == "sent 0\nanswer -1 to default for user-data\n"


def test_a_request_leaves_though_the_sender_ends_at_once(bus, tmp_path):
    log = tmp_path / "log"
    with application(bus, log):
        assert send(bus.address, "--no-loop", NAME, "show").stdout == "sent 0\n"
        wait_until(lambda: calls(log), "the call")
    assert calls(log) == [["ActivateAction", "show", [{}], {}]]


def test_an_unknown_application_is_not_found(bus):
    result = send(bus.address, "org.example.Nobody", "")
    assert result.stdout == f"sent {APP_NOT_FOUND}\n"
    assert ('E WATCH_PORT: app_control_send_launch_request: "org.example.Nobody" is not running'
            in result.stderr)


def test_a_bus_that_is_gone_is_no_bus(bus):
    address = bus.address
    bus.die()
    assert send(address, NAME, "").stdout == f"sent {NO_SESSION_BUS}\n"


@pytest.mark.parametrize("word", ["AUTH", "Hello", "NameHasOwner", "ListActivatableNames"])
def test_a_bus_that_does_not_answer_is_given_up(bus, tmp_path, word):
    silent = PartialBus(bus, tmp_path, word.encode())
    result = send(silent.address, NAME, "")
    assert result.stdout == f"sent {NO_SESSION_BUS}\n"
    assert "there is no session bus, or it does not answer" in result.stderr
