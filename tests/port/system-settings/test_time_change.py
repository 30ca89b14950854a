"""What reports a change of the time: another time zone of the service, and a clock that is set."""

import dbus
import pytest
from port.clock import hears_the_clock, set_clock_to_now
from support.bus import TIMEDATE, wait_until
from support.probe import Probe

pytestmark = hears_the_clock

OK = "0"


@pytest.fixture(name="probe")
def probe_on_bus(bus):
    with Probe("settings_probe", bus.env) as probe:
        yield probe


def test_another_time_zone_is_a_change_of_the_time(bus, probe):
    bus.start_timedate("Europe/Berlin")
    probe.ask("set time")
    assert probe.changes_after(TIMEDATE) == []
    bus.set_timezone("Europe/Berlin")
    assert probe.changes_after(TIMEDATE) == []
    bus.set_timezone("Asia/Seoul")
    assert probe.changes_after(TIMEDATE) == ["time"]


def test_a_time_zone_of_another_type_is_passed_over(bus, probe):
    bus.start_timedate()
    probe.ask("set time")
    probe.changes_after(TIMEDATE)
    bus.set_timezone(dbus.UInt32(3))
    bus.set_timezone(dbus.Array(["x"], signature="s"))
    assert probe.changes_after(TIMEDATE) == []
    assert probe.end() == (0, "")


def test_a_time_zone_of_a_restarted_service_is_compared_with_the_last_one(bus, probe):
    bus.start_timedate("Etc/UTC")
    probe.ask("set time")
    probe.changes_after(TIMEDATE)
    bus.stop_timedate()
    bus.start_timedate("Asia/Seoul")
    assert probe.wait_for_changes(1)[0] == "time"


def test_a_callback_of_the_time_may_unset_itself(bus, probe):
    bus.start_timedate()
    probe.ask("set time unset+time,set+time,unset+time")
    probe.changes_after(TIMEDATE)
    bus.set_timezone("Asia/Seoul")
    assert [probe.answer() for _ in range(3)] == [OK] * 3
    assert probe.changes_after(TIMEDATE) == ["time"]
    wait_until(lambda: bus.matches(TIMEDATE) == [], "no listener")


def test_a_clock_that_is_set_is_a_change_of_the_time():
    with Probe("settings_probe", {}) as probe:
        probe.ask("set time")
        set_clock_to_now()
        assert probe.wait_for_changes(1) == ["time"]
        set_clock_to_now()
        assert probe.wait_for_changes(1) == ["time"]
        assert probe.end() == (0, "")


def test_a_callback_may_unset_itself_when_the_clock_is_set():
    with Probe("settings_probe", {}) as probe:
        probe.ask("set time unset+time")
        set_clock_to_now()
        assert probe.answer() == OK
        assert probe.wait_for_changes(1) == ["time"]
        assert probe.end() == (0, "")
