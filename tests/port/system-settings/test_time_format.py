"""Whether clocks count to 24: the region's habit, and the desktop's setting before it."""

import time

import dbus
import pytest
from support.bus import LOCALE, SystemBus, wait_until
from support.probe import Probe
from support.session_bus import CLOCK_FORMAT, PORTAL, PORTAL_PATH, SETTINGS, SessionBus

OK = "0"
INVALID_PARAMETER_AND_UNTOUCHED = "-1 1"
UNKNOWN_KEY_AND_UNTOUCHED = "-2 1"
NO_BOOL_AND_UNTOUCHED = "-5 1"
COUNTS_TO_24 = "0 1"
COUNTS_TO_12 = "0 0"


@pytest.fixture(name="bus")
def private_bus():
    with SessionBus() as bus:
        yield bus


@pytest.fixture(name="probe")
def german_probe_on_bus(bus):
    with Probe("settings_probe", {**bus.env, "LANG": "de_DE.UTF-8"}) as probe:
        yield probe


def changes(probe):
    return probe.changes_after(PORTAL, "session")


@pytest.mark.parametrize("region, answer", [("de_DE", COUNTS_TO_24), ("en_US", COUNTS_TO_12),
                                            ("de", COUNTS_TO_24), ("C", COUNTS_TO_12)])
def test_without_a_desktop_it_is_the_regions_habit(region, answer):
    with Probe("settings_probe", {"LANG": "ko_KR", "LC_TIME": region}) as probe:
        assert probe.ask("is format") == answer
        assert probe.end() == (0, "")


def test_arguments_that_make_no_sense_are_refused():
    with Probe("settings_probe", {}) as probe:
        assert probe.ask("is format null") == INVALID_PARAMETER_AND_UNTOUCHED
        for key in ("language", "region", "time"):
            assert probe.ask(f"is {key}") == NO_BOOL_AND_UNTOUCHED
        for key in ("15", "-1", "100000"):
            assert probe.ask(f"is {key}") == UNKNOWN_KEY_AND_UNTOUCHED
        status, log = probe.end()
        assert status == 0
        assert log.count("E WATCH_PORT: system_settings_get_value_bool: ") == 7
        assert len(log.splitlines()) == 7


@pytest.mark.parametrize("region, clock_format, answer", [("de_DE", "12h", COUNTS_TO_12),
                                                          ("en_US", "24h", COUNTS_TO_24)])
def test_the_desktop_is_believed_before_the_region(bus, region, clock_format, answer):
    bus.start_portal(clock_format)
    with Probe("settings_probe", {**bus.env, "LANG": region}) as probe:
        assert probe.ask("set format is+format") == OK
        assert probe.wait_for_changes(1) == ["format"]
        assert probe.answer() == answer
        assert probe.end() == (0, "")


def test_a_desktop_that_agrees_with_the_region_is_no_change(bus, probe):
    bus.start_portal("24h")
    probe.ask("set format")
    assert changes(probe) == []
    assert probe.ask("is format") == COUNTS_TO_24


def test_a_desktop_without_the_setting_leaves_the_region(bus, probe):
    bus.start_portal(None)
    probe.ask("set format")
    assert changes(probe) == []
    assert probe.ask("is format") == COUNTS_TO_24
    assert probe.end() == (0, "")


def test_each_change_of_the_desktop_is_told_once(bus, probe):
    bus.start_portal("24h")
    probe.ask("set format")
    assert changes(probe) == []
    bus.set_clock_format("12h")
    bus.set_clock_format("12h")
    assert changes(probe) == ["format"]
    assert probe.ask("is format") == COUNTS_TO_12
    bus.set_clock_format("24h")
    assert changes(probe) == ["format"]
    assert probe.ask("is format") == COUNTS_TO_24


def test_a_region_that_changes_does_not_override_the_desktop(bus):
    bus.start_portal("24h")
    with SystemBus() as system:
        system.start_locale(["LANG=de_DE"])
        environment = {**bus.env, **system.env, "LANG": "de_DE"}
        with Probe("settings_probe", environment) as probe:
            probe.ask("set format")
            probe.ask("set region is+format")
            assert changes(probe) == []
            probe.changes_after(LOCALE)
            system.set_locale(["LANG=en_US"])
            assert probe.answer() == COUNTS_TO_24
            assert probe.changes_after(LOCALE) == ["region"]


def test_a_region_that_changes_is_told_with_its_format(bus):
    with SystemBus() as system:
        system.start_locale(["LANG=de_DE"])
        environment = {**bus.env, **system.env, "LANG": "de_DE"}
        with Probe("settings_probe", environment) as probe:
            probe.ask("set format is+format")
            probe.changes_after(LOCALE)
            system.set_locale(["LANG=en_US"])
            assert probe.answer() == COUNTS_TO_12
            assert probe.changes_after(LOCALE) == ["format"]


def test_a_portal_that_starts_late_restarts_or_leaves_is_borne(bus, probe):
    probe.ask("set format")
    bus.start_portal("12h")
    assert probe.wait_for_changes(1) == ["format"]
    bus.stop_portal()
    assert probe.ask("is format") == COUNTS_TO_12
    for clock_format in ("24h", "12h"):
        bus.start_portal(clock_format)
        assert probe.wait_for_changes(1) == ["format"]
        bus.stop_portal()
    bus.start_portal(None)
    assert changes(probe) == []
    assert probe.ask("is format") == COUNTS_TO_12
    assert probe.end() == (0, "")


def test_a_session_bus_that_dies_is_survived(bus, probe):
    bus.start_portal("12h")
    probe.ask("set format")
    assert probe.wait_for_changes(1) == ["format"]
    bus.die()
    assert probe.ask("is format") == COUNTS_TO_12
    assert probe.ask("unset format") == OK
    assert probe.ask("set format") == OK
    assert probe.end() == (0, "")


def test_the_users_own_bus_is_found_without_an_address(bus, tmp_path):
    bus.start_portal("12h")
    (tmp_path / "bus").symlink_to(bus.address.split("path=")[1].split(",")[0])
    environment = {"DBUS_SESSION_BUS_ADDRESS": "", "XDG_RUNTIME_DIR": str(tmp_path)}
    with Probe("settings_probe", {**environment, "LANG": "de_DE"}) as probe:
        probe.ask("set format")
        assert probe.wait_for_changes(1) == ["format"]
        assert probe.end() == (0, "")


def test_a_portal_that_does_not_answer_is_not_waited_for(bus, probe):
    bus.add_activatable(PORTAL, "/bin/sleep 60")
    begin = time.monotonic()
    assert probe.ask("set format") == OK
    assert probe.ask("is format") == COUNTS_TO_24
    assert time.monotonic() - begin < 1
    assert probe.ask("unset format") == OK
    assert probe.end() == (0, "")


def test_a_later_reading_has_the_answer_without_any_callback(bus, probe):
    bus.start_portal("12h")
    assert probe.ask("is format") == COUNTS_TO_24
    changes(probe)
    assert probe.ask("is format") == COUNTS_TO_12
    wait_until(lambda: bus.matches(PORTAL) == [], "no listener")


def test_a_portal_without_its_method_is_asked_no_more(bus, probe):
    bus.start_portal("12h", has_method=False)
    assert probe.ask("is format") == COUNTS_TO_24
    wait_until(lambda: bus.matches(PORTAL) == [], "no listener")
    assert probe.ask("is format") == COUNTS_TO_24
    assert probe.end() == (0, "")


def test_the_portal_is_listened_to_for_the_format_alone(bus, probe):
    for key in ("language", "region", "time"):
        assert probe.ask(f"set {key}") == OK
    assert bus.matches(PORTAL) == []
    probe.ask("set format")
    wait_until(lambda: len(bus.matches(PORTAL)) == 2, "a listener")
    probe.ask("unset format")
    wait_until(lambda: bus.matches(PORTAL) == [], "no listener")


def test_a_callback_may_unset_itself_and_come_back(bus, probe):
    bus.start_portal("24h")
    probe.ask("set format unset+format,set+format,is+format")
    assert changes(probe) == []
    bus.set_clock_format("12h")
    assert [probe.answer() for _ in range(3)] == [OK, OK, COUNTS_TO_12]
    assert changes(probe) == ["format"]
    assert probe.end() == (0, "")


@pytest.mark.parametrize("value", [
    "", "24", "24H", "24h ", "locale", "x" * 1024 * 1024, dbus.UInt32(24), dbus.Boolean(True),
    dbus.Double(24), dbus.Array(["24h"], signature="s"), dbus.ByteArray(b"24h"),
    dbus.Struct(["24h"]), dbus.ObjectPath("/24h"), dbus.String("24h", variant_level=4)],
    ids=lambda value: ascii(value)[:30])
def test_an_answer_that_is_no_format_is_passed_over(bus, value):
    with Probe("settings_probe", {**bus.env, "LANG": "en_US"}) as probe:
        bus.start_portal()
        bus.set_clock_format(value)
        probe.ask("set format")
        assert changes(probe) == []
        bus.set_clock_format(value)
        assert changes(probe) == []
        assert probe.ask("is format") == COUNTS_TO_12
        bus.set_clock_format("24h")
        assert changes(probe) == ["format"]
        assert probe.end() == (0, "")


@pytest.mark.parametrize("signature, code", [
    ("", ""), ("s", 'ret = "12h"'), ("ss", 'ret = ("12h", "12h")'), ("as", 'ret = ["12h"]'),
    ("vv", 'ret = ("12h", "12h")'), ("a{sv}", 'ret = {"clock-format": "12h"}'),
    ("v", 'ret = "12h"'),
    ("a{sa{ss}}", f'ret = {{"{CLOCK_FORMAT[0]}": {{"clock-format": "12h"}}}}'),
    ("a{sa{sv}}s", f'ret = ({{"{CLOCK_FORMAT[0]}": {{"clock-format": "12h"}}}}, "12h")')])
def test_an_answer_of_another_shape_is_passed_over(bus, probe, signature, code):
    bus.start_portal()
    bus.answer_with(signature, code)
    probe.ask("set format")
    assert changes(probe) == []
    assert probe.ask("is format") == COUNTS_TO_24
    assert probe.end() == (0, "")


@pytest.mark.parametrize("signature, arguments", [
    ("", []), ("s", ["24h"]), ("sss", [*CLOCK_FORMAT, "12h"]), ("ss", [*CLOCK_FORMAT]),
    ("ssvv", [*CLOCK_FORMAT, "12h", "12h"]), ("ssu", [*CLOCK_FORMAT, dbus.UInt32(12)]),
    ("ssv", [CLOCK_FORMAT[0], "clock", "12h"]), ("ssv", ["org.example", CLOCK_FORMAT[1], "12h"]),
    ("a{sv}", [dbus.Dictionary({"clock-format": "12h"}, signature="sv")])])
def test_a_signal_of_another_shape_or_setting_is_passed_over(bus, probe, signature, arguments):
    bus.start_portal("24h")
    probe.ask("set format")
    assert changes(probe) == []
    bus.emit_setting(signature, arguments)
    assert changes(probe) == []
    assert probe.end() == (0, "")


def test_signals_of_others_are_passed_over(bus, probe):
    bus.start_portal("24h")
    probe.ask("set format")
    bus.emit_as_stranger(PORTAL_PATH, SETTINGS, "SettingChanged", "ssv", (*CLOCK_FORMAT, "12h"))
    assert changes(probe) == []
