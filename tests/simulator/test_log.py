"""A log larger than a message of the bus may be, and a keeper that the bus has dropped."""

import dbus.bus
import pytest

from simulator.desk import Desk
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
    # What the watch tells of it is a little longer than the call, whose own limit is not met.
    with pytest.raises(dbus.DBusException, match="NoReply"):
        for rest in range(300, 180, -20):
            watch.SetLanguage("ko_KR.UTF-8@" + "x" * (MOST_BYTES - rest),
                              dbus_interface="com.velmora.QivoWatch1", timeout=20)
    bus.close()
    wait_until(lambda: not desk.processes(), "the end of all processes")
    assert "has ended: the message bus has dropped the keeper" in desk.refused("status")
    desk.do("start", "--headless")
