"""A log larger than a message of the bus may be, and a bus that is used up or has dropped the
keeper."""

import contextlib
import importlib
import subprocess
import types

import dbus.bus
import dbus.lowlevel
import pytest

from simulator.desk import BUILD, Desk
from support.bus import wait_until

LONGEST_LINE = 4096
MOST_BYTES = 32 * 1024 * 1024
"""Of a message; the bus drops who sends a longer one."""


@pytest.fixture(name="desk")
def _desk():
    with Desk() as desk:
        desk.do("start", "--headless")
        yield desk


def test_a_log_of_any_size_is_read(desk, tmp_path):
    count = MOST_BYTES // LONGEST_LINE + 1000
    program = tmp_path / "talker"
    program.write_text(f"#!/bin/sh\nyes {'x' * LONGEST_LINE} | head -n {count}\necho the last\n")
    program.chmod(0o755)
    desk.run("launch", program)
    desk.do("wait", "log", "the last")
    lines = desk.do("log").splitlines()
    assert len([line for line in lines if line == "x" * LONGEST_LINE]) == count
    assert "the last" in lines
    assert "the watch is ready" in lines[0]


def test_a_keeper_that_its_bus_has_dropped_ends_the_watch(desk):
    bus = dbus.bus.BusConnection(f"unix:path={desk.status()['folder']}/bus")
    watch = bus.get_object("com.velmora.QivoWatch", "/com/velmora/QivoWatch", introspect=False)
    # The watch's message about it is a little longer than the call, which stays below the limit.
    with pytest.raises(dbus.DBusException, match="NoReply"):
        for rest in range(300, 180, -20):
            watch.SetLanguage("ko_KR.UTF-8@" + "x" * (MOST_BYTES - rest),
                              dbus_interface="com.velmora.QivoWatch1", timeout=20)
    bus.close()
    wait_until(lambda: not desk.processes(), "the end of all processes")
    assert "has ended: the message bus has dropped the keeper" in desk.refused("status")
    desk.do("start", "--headless")


def test_what_anyone_sends_to_a_command_that_waits_is_ignored(desk):
    bus = dbus.bus.BusConnection(f"unix:path={desk.status()['folder']}/bus")
    known = set(bus.list_names())
    with subprocess.Popen(desk.command("wait", "log", "first frame", "-t", 60),
                          env=desk.environment) as waiting:
        wait_until(lambda: set(bus.list_names()) - known, "the command on the bus")
        (name,) = set(bus.list_names()) - known
        signal = dbus.lowlevel.SignalMessage("/com/velmora/QivoWatch", "com.velmora.QivoWatch1",
                                             "LogGrown")
        signal.set_destination(name)
        bus.send_message(signal)
        bus.flush()
        desk.do("launch")
    bus.close()
    assert waiting.returncode == 0


def test_a_bus_with_too_many_clients_is_told(desk):
    address = f"unix:path={desk.status()['folder']}/bus"
    with contextlib.ExitStack() as stack:
        with pytest.raises(dbus.DBusException, match="LimitsExceeded"):
            for _ in range(1000):
                stack.callback(dbus.bus.BusConnection(address).close)
        assert "the message bus takes no more clients: " in desk.refused("bezel", "cw")


class GrowingLog:
    """Stands for a watch whose log grows while the answer to the first call is on its way."""

    def __init__(self):
        self.lines = ["first", "awaited"]
        self.answers = 0
        self.grow = None

    def ask_daemon(self, *_method):
        pass

    def read(self, _method, _signature, place):
        self.answers += 1
        if self.answers == 1:
            self.grow(types.SimpleNamespace(values=(2,)))
            return 1, place, self.lines[:1]
        return 2, place, self.lines[place:]


def test_a_line_that_comes_while_the_log_is_read_is_found(monkeypatch):
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    client_type = importlib.import_module("qivo_watch.command.bus.client").Client
    log = GrowingLog()
    client = client_type.__new__(client_type)
    monkeypatch.setattr(client, "connection", log, raising=False)
    log.grow = client._on_signal
    monkeypatch.setattr(client, "_log_count", 0, raising=False)
    monkeypatch.setattr(client, "call", log.read)
    monkeypatch.setattr(client, "_wait", lambda is_over, _peer, _deadline: is_over())
    assert client.wait_log(0, lambda line: line == "awaited", 1) == 2
