"""The charger: UPower on a private system bus, and the kernel's power supplies without it."""

import time

import dbus
import pytest
from support.bus import (DISPLAY_DEVICE, PROPERTIES, STATE_CHARGING, UPOWER, UPOWER_DEVICE,
                         wait_until)
from port.device.power_supply import PowerSupplies
from support.probe import Probe

OK = "0"
INVALID_PARAMETER = "-1"
UNKNOWN_TYPE = "-2"
ALREADY_ADDED = "-3"
NOT_ADDED = "-4"
NO_BATTERY_AND_UNTOUCHED = "-5 1"
CHARGING = "0 1"
NOT_CHARGING = "0 0"


@pytest.fixture(name="probe")
def probe_on_bus(bus):
    with Probe("charger_probe", bus.env) as probe:
        yield probe


@pytest.fixture(name="supplies")
def mocked_supplies():
    with PowerSupplies() as supplies:
        yield supplies


def tell_state(bus, *, interface=UPOWER_DEVICE, changed, signature="sa{sv}as", invalidated=()):
    """A PropertiesChanged of UPower's display device, of any shape."""
    arguments = [interface, dbus.Dictionary(changed, signature="sv"),
                 dbus.Array(invalidated, signature="s")]
    bus.emit(UPOWER, DISPLAY_DEVICE, PROPERTIES, "PropertiesChanged", signature, arguments)


def follow(bus, probe, charging=False):
    """The state has been read, and a callback waits for changes of it."""
    bus.start_upower(charging)
    probe.ask("get")
    probe.ask("add a")


def test_only_the_state_charging_is_charging(bus, probe):
    bus.start_upower()
    for state in range(7):
        bus.set_battery_state(state)
        assert probe.ask("get") == (CHARGING if state == STATE_CHARGING else NOT_CHARGING), state


def test_without_bus_and_battery_the_answer_is_left_untouched_quietly():
    with Probe("charger_probe", {}) as probe:
        assert probe.ask("get") == NO_BATTERY_AND_UNTOUCHED
        assert probe.ask("add a") == OK
        assert probe.ask("remove a") == OK
        assert probe.end() == (0, "")


def test_without_upower_and_battery_the_answer_is_left_untouched_quietly(probe):
    assert probe.ask("get") == NO_BATTERY_AND_UNTOUCHED
    assert probe.ask("add a") == OK
    assert probe.end() == (0, "")


def test_a_service_that_does_not_answer_is_waited_for_half_a_second(bus, probe):
    bus.add_activatable(UPOWER, "/bin/sleep 60")
    begin = time.monotonic()
    assert probe.ask("get") == NO_BATTERY_AND_UNTOUCHED
    assert 0.4 < time.monotonic() - begin < 3


def test_a_state_of_another_type_is_no_answer(bus, probe):
    bus.start_upower()
    for value in [dbus.String("1"), dbus.Int32(1), dbus.Double(1.0),
                  dbus.Array([dbus.UInt32(1)], signature="u")]:
        bus.set_property(UPOWER, DISPLAY_DEVICE, UPOWER_DEVICE, "State", value)
        assert probe.ask("get") == NO_BATTERY_AND_UNTOUCHED, value
    assert probe.end() == (0, "")


def test_each_change_is_told_once(bus, probe):
    bus.start_upower()
    probe.ask("get")
    assert probe.ask("add a") == OK
    bus.set_charging(True)
    assert probe.changes_after(UPOWER) == ["a 1"]
    bus.set_charging(False)
    assert probe.changes_after(UPOWER) == ["a 0"]


def test_what_stays_the_same_is_not_told(bus, probe):
    follow(bus, probe, charging=True)
    bus.set_charging(True)
    bus.set_property(UPOWER, DISPLAY_DEVICE, UPOWER_DEVICE, "Percentage", 12.0)
    assert probe.changes_after(UPOWER) == []
    bus.set_battery_state(2)
    bus.set_battery_state(4)
    assert probe.changes_after(UPOWER) == ["a 0"]


def test_a_state_that_was_never_read_is_no_change(bus, probe):
    bus.start_upower(charging=True)
    probe.ask("add a")
    assert probe.changes_after(UPOWER) == []


def test_a_change_between_reading_and_adding_is_told(bus, probe):
    bus.start_upower()
    assert probe.ask("get") == NOT_CHARGING
    bus.set_charging(True)
    assert probe.ask("add a") == OK
    assert probe.changes_after(UPOWER) == ["a 1"]


def test_reading_takes_no_change_away_from_the_callbacks(bus, probe):
    bus.start_upower()
    probe.ask("add a")
    bus.set_charging(True)
    assert probe.ask("get") == CHARGING
    assert probe.changes_after(UPOWER) == ["a 1"]


def test_upower_that_starts_late_is_followed(bus, probe):
    assert probe.ask("get") == NO_BATTERY_AND_UNTOUCHED
    probe.ask("add a")
    bus.start_upower(charging=True)
    assert probe.wait_for_changes(1) == ["a 1"]
    bus.set_charging(False)
    assert probe.changes_after(UPOWER) == ["a 0"]


def test_upower_that_restarts_is_followed(bus, probe):
    follow(bus, probe)
    bus.stop_upower()
    bus.start_upower(charging=True)
    assert probe.wait_for_changes(1) == ["a 1"]
    assert probe.ask("get") == CHARGING


def test_a_state_stands_when_upower_leaves_and_nobody_else_knows(bus, probe):
    follow(bus, probe, charging=True)
    bus.stop_upower()
    bus.start_upower()
    assert probe.wait_for_changes(1) == ["a 0"]


def test_a_bus_that_dies_is_survived(bus, probe):
    follow(bus, probe, charging=True)
    probe.changes_after(UPOWER)
    bus.die()
    assert probe.ask("get") == NO_BATTERY_AND_UNTOUCHED
    assert probe.ask("remove a") == OK
    assert probe.ask("add a") == OK
    assert probe.end() == (0, "")


def test_malformed_signals_are_passed_over(bus, probe):
    follow(bus, probe)
    bus.emit(UPOWER, DISPLAY_DEVICE, PROPERTIES, "PropertiesChanged", "s", ["State"])
    bus.emit(UPOWER, DISPLAY_DEVICE, PROPERTIES, "PropertiesChanged", "", [])
    bus.emit(UPOWER, DISPLAY_DEVICE, PROPERTIES, "PropertiesChanged", "sua{sv}",
             [UPOWER_DEVICE, dbus.UInt32(1), dbus.Dictionary({}, signature="sv")])
    tell_state(bus, changed={"State": dbus.String("1")})
    tell_state(bus, changed={"State": dbus.Byte(1)})
    tell_state(bus, changed={"state": dbus.UInt32(1)})
    tell_state(bus, interface="org.freedesktop.UPower", changed={"State": dbus.UInt32(1)})
    assert probe.changes_after(UPOWER) == []
    tell_state(bus, changed={"Other": dbus.String("x"), "State": dbus.UInt32(STATE_CHARGING)})
    assert probe.changes_after(UPOWER) == ["a 1"]
    assert probe.end() == (0, "")


def test_signals_of_others_are_passed_over(bus, probe):
    follow(bus, probe)
    bus.emit_as_stranger(DISPLAY_DEVICE, PROPERTIES, "PropertiesChanged", "sa{sv}as",
                         (UPOWER_DEVICE, {"State": dbus.UInt32(1)}, dbus.Array([], "s")))
    assert probe.changes_after(UPOWER) == []


def test_an_invalidated_state_is_read_again(bus, probe):
    follow(bus, probe, charging=True)
    tell_state(bus, changed={"State": dbus.UInt32(2)})
    assert probe.changes_after(UPOWER) == ["a 0"]
    tell_state(bus, changed={}, invalidated=["Percentage", "State"])
    assert probe.wait_for_changes(1) == ["a 1"]


def test_arguments_that_make_no_sense_are_refused(probe):
    assert probe.ask("get null") == f"{INVALID_PARAMETER} 1"
    assert probe.ask("add null") == INVALID_PARAMETER
    assert probe.ask("remove null") == INVALID_PARAMETER
    for wrong in ("1", "3", "-1", "100000"):
        assert probe.ask(f"wrong {wrong}") == f"{UNKNOWN_TYPE} {UNKNOWN_TYPE}"
    assert probe.ask("remove a") == NOT_ADDED
    assert probe.ask("add a") == OK
    assert probe.ask("add a") == ALREADY_ADDED
    assert probe.ask("remove a") == OK
    assert probe.ask("remove a") == NOT_ADDED
    status, log = probe.end()
    assert status == 0
    assert log.count("E WATCH_PORT: device_") == len(log.splitlines()) == 14


def test_all_callbacks_are_told_until_they_are_removed(bus, probe):
    bus.start_upower()
    probe.ask("add a")
    probe.ask("add b")
    bus.set_charging(True)
    assert probe.changes_after(UPOWER) == ["a 1", "b 1"]
    probe.ask("remove a")
    bus.set_charging(False)
    assert probe.changes_after(UPOWER) == ["b 0"]


def test_a_callback_may_remove_itself(bus, probe):
    bus.start_upower()
    probe.ask("add a remove+a")
    probe.ask("add b")
    bus.set_charging(True)
    assert probe.wait_for_changes(2) == ["a 1", "b 1"]
    assert probe.answer() == OK
    bus.set_charging(False)
    assert probe.changes_after(UPOWER) == ["b 0"]


def test_a_callback_may_remove_the_one_after_it(bus, probe):
    bus.start_upower()
    probe.ask("add a remove+b")
    probe.ask("add b")
    bus.set_charging(True)
    assert probe.answer() == OK
    assert probe.changes_after(UPOWER) == ["a 1"]


def test_a_last_callback_may_remove_itself_and_come_back(bus, probe):
    bus.start_upower()
    probe.ask("add a remove+a,add+a")
    bus.set_charging(True)
    assert probe.wait_for_changes(1) == ["a 1"]
    assert [probe.answer(), probe.answer()] == [OK, OK]
    wait_until(lambda: len(bus.matches(UPOWER)) == 2, "one listener")
    bus.set_charging(False)
    assert probe.wait_for_changes(1) == ["a 0"]


def test_nothing_is_listened_to_without_a_callback(bus, probe):
    bus.start_upower()
    probe.ask("get")
    wait_until(lambda: bus.matches(UPOWER) == [], "no listener before")
    probe.ask("add a")
    probe.ask("add b")
    wait_until(lambda: len(bus.matches(UPOWER)) == 2, "one listener for both")
    probe.ask("remove a")
    probe.ask("remove b")
    wait_until(lambda: bus.matches(UPOWER) == [], "no listener after")


# Without UPower: the kernel


@pytest.mark.parametrize("status, answer", [("Charging", CHARGING), ("Discharging", NOT_CHARGING),
                                            ("Full", NOT_CHARGING), ("", NOT_CHARGING)])
def test_without_upower_the_battery_is_read_from_the_kernel(supplies, status, answer):
    supplies.add("AC", "Mains", "Unknown")
    supplies.add("BAT0", "Battery", status)
    with Probe("charger_probe", supplies.env) as probe:
        assert probe.ask("get") == answer


def test_one_charging_battery_is_enough(supplies):
    for name, status in [("BAT0", "Full"), ("BAT1", "Charging"), ("BAT2", "Discharging")]:
        supplies.add(name, "Battery", status)
    with Probe("charger_probe", supplies.env) as probe:
        assert probe.ask("get") == CHARGING


def test_batteries_of_peripherals_do_not_count(supplies):
    supplies.add("mouse", "Battery", "Charging", scope="Device")
    with Probe("charger_probe", supplies.env) as probe:
        assert probe.ask("get") == NO_BATTERY_AND_UNTOUCHED


def test_the_kernels_events_are_told(supplies):
    supplies.add("BAT0", "Battery", "Discharging")
    with Probe("charger_probe", supplies.env) as probe:
        assert probe.ask("get") == NOT_CHARGING
        probe.ask("add a")
        supplies.set_status("BAT0", "Charging")
        assert probe.wait_for_changes(1) == ["a 1"]
        supplies.set_status("BAT0", "Charging")
        supplies.set_status("BAT0", "Full")
        assert probe.wait_for_changes(1) == ["a 0"]
        assert probe.end() == (0, "")


def test_a_callback_may_remove_itself_in_a_kernels_event(supplies):
    supplies.add("BAT0", "Battery", "Discharging")
    with Probe("charger_probe", supplies.env) as probe:
        probe.ask("add a remove+a")
        supplies.set_status("BAT0", "Charging")
        assert probe.answer() == OK
        assert probe.wait_for_changes(1) == ["a 1"]
        assert probe.ask("get") == CHARGING
        assert probe.end() == (0, "")


def test_upower_is_believed_before_the_kernel(bus, supplies):
    supplies.add("BAT0", "Battery", "Charging")
    bus.start_upower(charging=False)
    with Probe("charger_probe", {**supplies.env, **bus.env}) as probe:
        assert probe.ask("get") == NOT_CHARGING
        probe.ask("add a")
        supplies.set_status("BAT0", "Charging")
        assert probe.changes_after(UPOWER) == []
        bus.stop_upower()
        assert probe.wait_for_changes(1) == ["a 1"]
        bus.start_upower(charging=False)
        assert probe.wait_for_changes(1) == ["a 0"]
        supplies.set_status("BAT0", "Charging")
        assert probe.changes_after(UPOWER) == []


def test_a_question_that_is_asked_anew_is_not_answered_by_the_kernel(bus, supplies):
    supplies.add("BAT0", "Battery", "Discharging")
    bus.add_activatable(UPOWER, "/bin/sleep 60")
    with Probe("charger_probe", {**supplies.env, **bus.env}) as probe:
        assert probe.ask("get") == NOT_CHARGING
        assert probe.ask("add a") == OK
        supplies.set_status("BAT0", "Charging")
        bus.start_upower(charging=False)
        assert probe.changes_after(UPOWER) == []
        assert probe.end() == (0, "")


def test_the_kernel_is_followed_when_the_bus_dies(bus, supplies):
    supplies.add("BAT0", "Battery", "Discharging")
    bus.start_upower(charging=True)
    with Probe("charger_probe", {**supplies.env, **bus.env}) as probe:
        assert probe.ask("get") == CHARGING
        probe.ask("add a")
        bus.die()
        assert probe.wait_for_changes(1) == ["a 0"]
        supplies.set_status("BAT0", "Charging")
        assert probe.wait_for_changes(1) == ["a 1"]
        assert probe.end() == (0, "")
