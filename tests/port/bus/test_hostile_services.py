"""Services that say what nobody expects, too much, or nothing."""

import time
from dataclasses import dataclass

import dbus
import pytest
from support.bus import (DISPLAY_DEVICE, LOCALE, LOCALE_PATH, PROPERTIES, TIMEDATE, TIMEDATE_PATH,
                         UPOWER, UPOWER_DEVICE)
from port.clock import hears_the_clock
from port.silent_bus import SilentBus
from support.probe import Probe
from support.session_bus import CLOCK_FORMAT, PORTAL, PORTAL_PATH, SETTINGS, SessionBus

SIGNALS = 10_000
MEGABYTE = 1024 * 1024
PATIENCE_S = 2


@dataclass(frozen=True)
class Service:
    """A property, how a probe follows it, and two values of which the first is the old one.

    change, back: what the probe says of the new value, and of the old one after it.
    """

    name: str
    path: str
    interface: str
    key: str
    probe: str
    follow: str
    change: str
    back: str
    old: object
    new: object

    def start(self, bus):
        {UPOWER: bus.start_upower, LOCALE: bus.start_locale,
         TIMEDATE: bus.start_timedate}[self.name](self.old if self.name != UPOWER else False)

    def set(self, bus, value):
        bus.set_property(self.name, self.path, self.interface, self.key, value)


def short(value):
    """The name of a test's argument, which may be long or odd."""
    return ascii(value)[:30]


def locale(*entries):
    return dbus.Array(entries, signature="s")


SERVICES = [
    Service(UPOWER, DISPLAY_DEVICE, UPOWER_DEVICE, "State", "charger_probe", "add a", "a 1", "a 0",
            dbus.UInt32(2), dbus.UInt32(1)),
    Service(LOCALE, LOCALE_PATH, LOCALE, "Locale", "settings_probe", "set language", "language",
            "language", locale("LANG=ko_KR"), locale("LANG=de_DE")),
    pytest.param(
        Service(TIMEDATE, TIMEDATE_PATH, TIMEDATE, "Timezone", "settings_probe", "set time", "time",
                "time", "Etc/UTC", "Asia/Seoul"), marks=hears_the_clock)]


@pytest.fixture(name="service", params=SERVICES, ids=lambda service: service.name.split(".")[-1])
def mocked_service(request, bus):
    request.param.start(bus)
    return request.param


@pytest.fixture(name="probe")
def following_probe(bus, service):
    with Probe(service.probe, {**bus.env, "LANG": "ko_KR"}) as probe:
        assert probe.ask(service.follow) == "0"
        assert probe.changes_after(service.name) == []
        yield probe


def properties(values=(), signature="sv"):
    return dbus.Dictionary(dict(values), signature=signature)


def names(*texts):
    return dbus.Array(texts, signature="s")


def test_signals_of_other_shapes_are_passed_over(bus, service, probe):
    key, new = service.key, service.new
    for signature, arguments in [
            ("", []), ("s", [service.interface]), ("v", [new]), ("ss", [service.interface, key]),
            ("a{sv}", [properties({key: new})]),
            ("sa{sv}", [service.interface, properties({key: new})]),
            ("sa{ss}as", [service.interface, properties({key: "x"}, "ss"), names()]),
            ("sa{sv}asas", [service.interface, properties({key: new}), names(), names()]),
            ("oa{sv}as", [dbus.ObjectPath("/x"), properties({key: new}), names()]),
            ("sa{sv}as", ["org.example", properties({key: new}), names()]),
            ("sa{sv}as", ["", properties({"": new}), names("")]),
            ("sa{sv}as", [service.interface, properties({key.lower(): new}), names(key * 9)])]:
        bus.emit(service.name, service.path, PROPERTIES, "PropertiesChanged", signature, arguments)
    assert probe.changes_after(service.name) == []
    assert probe.end() == (0, "")


def test_values_of_other_types_are_passed_over(bus, service, probe):
    for value in [
            dbus.Boolean(True), dbus.Byte(1), dbus.Int16(1), dbus.Int64(1), dbus.Double(1),
            dbus.ObjectPath("/x"), dbus.Signature("s"), dbus.Struct(["x", dbus.UInt32(1)]),
            dbus.Array([names("LANG=de_DE")], signature="as"), properties({"LANG": "de_DE"}),
            dbus.UInt32(1, variant_level=2), dbus.String("Asia/Seoul", variant_level=30),
            dbus.ByteArray(b"x" * MEGABYTE)]:
        service.set(bus, value)
        bus.emit(service.name, service.path, PROPERTIES, "PropertiesChanged", "sa{sv}as",
                 [service.interface, properties(), names(service.key)])
        assert probe.changes_after(service.name) == [], short(value)
        for known, change in [(service.new, service.change), (service.old, service.back)]:
            service.set(bus, known)
            assert probe.changes_after(service.name) == [change], short(value)
    assert probe.end() == (0, "")


def test_a_flood_of_old_news_is_no_change(bus, service, probe):
    bus.flood(SIGNALS, service.name, service.path, PROPERTIES, "PropertiesChanged", "sa{sv}as",
              [service.interface, properties({service.key: service.old}), names()])
    assert probe.changes_after(service.name) == []
    service.set(bus, service.new)
    assert probe.changes_after(service.name) == [service.change]
    assert probe.end() == (0, "")


def test_a_flood_of_withdrawn_values_is_no_change(bus, service, probe):
    bus.flood(SIGNALS, service.name, service.path, PROPERTIES, "PropertiesChanged", "sa{sv}as",
              [service.interface, properties(), names(service.key, service.key)])
    assert probe.changes_after(service.name) == []
    service.set(bus, service.new)
    assert probe.changes_after(service.name) == [service.change]
    assert probe.end() == (0, "")


def test_a_flood_of_the_portal_is_no_change():
    with SessionBus() as bus:
        bus.start_portal("24h")
        with Probe("settings_probe", {**bus.env, "LANG": "de_DE"}) as probe:
            probe.ask("set format")
            bus.flood(SIGNALS, PORTAL, PORTAL_PATH, SETTINGS, "SettingChanged", "ssv",
                      [*CLOCK_FORMAT, "24h"])
            assert probe.changes_after(PORTAL, "session") == []
            bus.set_clock_format("12h")
            assert probe.changes_after(PORTAL, "session") == ["format"]
            assert probe.end() == (0, "")


def follow_language(bus):
    bus.start_locale(["LANG=ko_KR"])
    probe = Probe("settings_probe", {**bus.env, "LANG": "ko_KR"})
    probe.ask("set language")
    assert probe.changes_after(LOCALE) == []
    return probe


def test_a_thousand_entries_of_a_locale_are_read_to_the_last(bus):
    with follow_language(bus) as probe:
        bus.set_locale([*(f"LC_{number}=fr_FR" for number in range(999)), "LANG=de_DE"])
        assert probe.changes_after(LOCALE) == ["language"]
        bus.set_locale([f"LANG=k{chr(ord('a') + number % 26)}_KR" for number in range(1000)])
        assert probe.changes_after(LOCALE) == ["language"]
        assert probe.ask("get language") == "0 kl_KR.UTF-8"
        assert probe.end() == (0, "")


@pytest.mark.parametrize("entry, lines", [("LANG=" + "x" * MEGABYTE, 1), ("=" * MEGABYTE, 0),
                                          ("x" * MEGABYTE, 0), ("x" * MEGABYTE + "=de_DE", 0),
                                          ("LANG=de_DE." + "U" * MEGABYTE, 1),
                                          ("LANG=de_DE@" + "U" * MEGABYTE, 1),
                                          ("LANG=de_DE\n\x1b[31m", 1), ("LANG=de_DE%s%n", 1)],
                         ids=short)
def test_a_locale_of_a_megabyte_or_of_odd_signs_leaves_one_short_line(bus, entry, lines):
    with follow_language(bus) as probe:
        bus.set_locale([entry, "LC_TIME=de_DE"])
        assert probe.changes_after(LOCALE) == []
        status, log = probe.end()
        assert status == 0
        assert len(log.splitlines()) == lines
        assert len(log) < 300 and "\x1b" not in log


@hears_the_clock
def test_a_time_zone_of_a_megabyte_is_a_name_as_any_other(bus):
    bus.start_timedate()
    with Probe("settings_probe", bus.env) as probe:
        probe.ask("set time")
        assert probe.changes_after(TIMEDATE) == []
        for timezone in ("x" * MEGABYTE, "x" * MEGABYTE + "y"):
            bus.set_timezone(timezone)
            assert probe.changes_after(TIMEDATE) == ["time"]
        assert probe.end() == (0, "")


@pytest.mark.parametrize("variable, command, answer", [
    ("DBUS_SYSTEM_BUS_ADDRESS", "set language", "0"),
    ("DBUS_SESSION_BUS_ADDRESS", "set format", "0"),
    ("DBUS_SESSION_BUS_ADDRESS", "is format", "0 0")])
@pytest.mark.parametrize("is_full", [False, True], ids=["silent", "full"])
def test_a_bus_that_keeps_silent_is_given_up_once(variable, command, answer, is_full):
    with SilentBus(is_full=is_full) as bus, \
            Probe("settings_probe", {variable: bus.address}) as probe:
        begin = time.monotonic()
        assert probe.ask(command) == answer
        assert PATIENCE_S - 0.1 < time.monotonic() - begin < PATIENCE_S + 2
        begin = time.monotonic()
        assert probe.ask(command) == answer
        assert time.monotonic() - begin < PATIENCE_S - 0.5
        assert probe.end() == (0, "")


def test_the_charger_gives_a_bus_that_keeps_silent_up():
    with SilentBus() as bus, Probe("charger_probe",
                                   {"DBUS_SYSTEM_BUS_ADDRESS": bus.address}) as probe:
        begin = time.monotonic()
        assert probe.ask("get") == "-5 1"
        assert probe.ask("add a") == "0"
        assert PATIENCE_S - 0.1 < time.monotonic() - begin < PATIENCE_S + 2
        assert probe.end() == (0, "")


@pytest.mark.parametrize("nonsense", [b"\0" * 64, b"HTTP/1.1 200 OK\r\n\r\n", b"OK\r\n" * 1000,
                                      b"x" * MEGABYTE], ids=short)
def test_a_bus_that_talks_nonsense_is_given_up(nonsense):
    with SilentBus(nonsense) as bus:
        environment = {"DBUS_SYSTEM_BUS_ADDRESS": bus.address,
                       "DBUS_SESSION_BUS_ADDRESS": bus.address}
        with Probe("settings_probe", environment) as probe:
            assert probe.ask("set language") == "0"
            assert probe.ask("set format") == "0"
            assert probe.ask("get language") == "0 en_US.UTF-8"
            assert probe.end() == (0, "")


@pytest.mark.parametrize("address", ["", "nonsense", "unix:", "unix:path=/", "tcp:host=,port=0",
                                     "x:y=" + "z" * 100_000], ids=short)
def test_an_address_that_is_no_bus_is_no_bus(address):
    environment = {"DBUS_SYSTEM_BUS_ADDRESS": address or "unix:path=/nonexistent",
                   "DBUS_SESSION_BUS_ADDRESS": address, "XDG_RUNTIME_DIR": "/nonexistent"}
    with Probe("settings_probe", environment) as probe:
        assert probe.ask("set language") == "0"
        assert probe.ask("set format") == "0"
        assert probe.end() == (0, "")
