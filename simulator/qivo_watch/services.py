"""The services of the watch, by their standard names: battery, locale, time zone, clock format."""

import re
from typing import Any

from gi.repository import Gio, GLib

from qivo_watch.bus import BusObject, own_name
from qivo_watch.clock import is_zone, machine_zone
from qivo_watch.errors import WatchError

STATES = {"charging": 1, "discharging": 2, "full": 4}
"""UPower's numbers."""

_UPOWER = """<node><interface name="org.freedesktop.UPower">
  <method name="EnumerateDevices"><arg name="devices" type="ao" direction="out"/></method>
  <method name="GetDisplayDevice"><arg name="device" type="o" direction="out"/></method>
  <property name="DaemonVersion" type="s" access="read"/>
  <property name="OnBattery" type="b" access="read"/>
</interface></node>"""

_DEVICE = """<node><interface name="org.freedesktop.UPower.Device">
  <property name="Type" type="u" access="read"/>
  <property name="PowerSupply" type="b" access="read"/>
  <property name="IsPresent" type="b" access="read"/>
  <property name="IsRechargeable" type="b" access="read"/>
  <property name="State" type="u" access="read"/>
  <property name="Percentage" type="d" access="read"/>
</interface></node>"""

_LOCALE = """<node><interface name="org.freedesktop.locale1">
  <method name="SetLocale">
    <arg name="locale" type="as" direction="in"/>
    <arg name="interactive" type="b" direction="in"/>
  </method>
  <property name="Locale" type="as" access="read"/>
</interface></node>"""

_TIMEDATE = """<node><interface name="org.freedesktop.timedate1">
  <property name="Timezone" type="s" access="read"/>
  <property name="LocalRTC" type="b" access="read"/>
  <property name="CanNTP" type="b" access="read"/>
  <property name="NTP" type="b" access="read"/>
  <property name="TimeUSec" type="t" access="read"/>
</interface></node>"""

_PORTAL = """<node><interface name="org.freedesktop.portal.Settings">
  <method name="ReadAll">
    <arg name="namespaces" type="as" direction="in"/>
    <arg name="value" type="a{sa{sv}}" direction="out"/>
  </method>
  <method name="Read">
    <arg name="namespace" type="s" direction="in"/>
    <arg name="key" type="s" direction="in"/>
    <arg name="value" type="v" direction="out"/>
  </method>
  <method name="ReadOne">
    <arg name="namespace" type="s" direction="in"/>
    <arg name="key" type="s" direction="in"/>
    <arg name="value" type="v" direction="out"/>
  </method>
  <signal name="SettingChanged">
    <arg name="namespace" type="s"/>
    <arg name="key" type="s"/>
    <arg name="value" type="v"/>
  </signal>
  <property name="version" type="u" access="read"/>
</interface></node>"""

_DEVICE_PATH = "/org/freedesktop/UPower/devices/DisplayDevice"
_BATTERY_KIND = 2


class Battery:
    """UPower with the one device that stands for all."""

    def __init__(self, connection: Gio.DBusConnection, percent: float, state: str):
        self.percent = percent
        self.state = state
        self._manager = BusObject(
            connection, "/org/freedesktop/UPower", _UPOWER,
            {"DaemonVersion": "0.99", "OnBattery": not self.is_plugged}, self._answer)
        self._device = BusObject(
            connection, _DEVICE_PATH, _DEVICE,
            {"Type": _BATTERY_KIND, "PowerSupply": True, "IsPresent": True,
             "IsRechargeable": True, "State": STATES[state], "Percentage": percent})
        own_name(connection, "org.freedesktop.UPower")

    @property
    def is_plugged(self) -> bool:
        return self.state != "discharging"

    def set(self, percent: float, state: str) -> None:
        if state not in STATES:
            raise WatchError(f'"{state}" is no battery state ({", ".join(STATES)})')
        if not 0 <= percent <= 100:
            raise WatchError(f"{percent:g} is no charge (0 to 100 percent)")
        self.percent, self.state = percent, state
        self._device.set(State=STATES[state], Percentage=percent)
        self._manager.set(OnBattery=not self.is_plugged)

    @staticmethod
    def _answer(method: str, _arguments: tuple, call: Gio.DBusMethodInvocation) -> None:
        answers = {"EnumerateDevices": GLib.Variant("(ao)", ([],)),
                   "GetDisplayDevice": GLib.Variant("(o)", (_DEVICE_PATH,))}
        call.return_value(answers[method])


class Locale:
    """locale1: the language, and a region where it is not the language's."""

    def __init__(self, connection: Gio.DBusConnection, language: str):
        self.language = full_locale(language)
        self._region = ""
        self._object = BusObject(connection, "/org/freedesktop/locale1", _LOCALE,
                                 {"Locale": self._entries()})
        own_name(connection, "org.freedesktop.locale1")

    @property
    def has_region(self) -> bool:
        return self._region != ""

    @property
    def region(self) -> str:
        return self._region or self.language

    def set_language(self, name: str) -> None:
        self.language = full_locale(name)
        self._object.set(Locale=self._entries())

    def set_region(self, name: str) -> None:
        """An empty one is the language's again."""
        self._region = full_locale(name, "region") if name else ""
        self._object.set(Locale=self._entries())

    def _entries(self) -> list[str]:
        region = [f"LC_TIME={self._region}"] if self._region else []
        return [f"LANG={self.language}", *region]


class ClockFormat:
    """The desktop's settings portal with the clock's format, which is not there until it is set."""

    _SPACE, _KEY = "org.gnome.desktop.interface", "clock-format"

    def __init__(self, connection: Gio.DBusConnection):
        self.hours: int | None = None
        self._object = BusObject(connection, "/org/freedesktop/portal/desktop", _PORTAL,
                                 {"version": 2}, self._answer)
        own_name(connection, "org.freedesktop.portal.Desktop")

    def set(self, hours: int) -> None:
        if hours not in (12, 24):
            raise WatchError(f"a clock does not count to {hours} hours (12, 24)")
        if hours != self.hours:
            self.hours = hours
            self._object.emit("SettingChanged", GLib.Variant(
                "(ssv)", (self._SPACE, self._KEY, self._format())))

    def _format(self) -> GLib.Variant:
        return GLib.Variant("s", f"{self.hours}h")

    def _answer(self, method: str, arguments: tuple, call: Gio.DBusMethodInvocation) -> None:
        if method == "ReadAll":
            is_asked = self.hours and any(_is_within(self._SPACE, space)
                                          for space in arguments[0] or [""])
            found = {self._SPACE: {self._KEY: self._format()}} if is_asked else {}
            call.return_value(GLib.Variant("(a{sa{sv}})", (found,)))
        elif self.hours is None or arguments != (self._SPACE, self._KEY):
            call.return_dbus_error("org.freedesktop.portal.Error.NotFound",
                                   "Requested setting not found")
        else:
            # The first version's method wraps the value once more.
            value = self._format()
            call.return_value(GLib.Variant(
                "(v)", (GLib.Variant("v", value) if method == "Read" else value,)))


def _is_within(space: str, pattern: str) -> bool:
    """Whether a namespace is the pattern, or begins as one that ends in a star."""
    return pattern in ("", space) or pattern.endswith("*") and space.startswith(pattern[:-1])


class TimeZone:
    """timedate1. The zone is the machine's until it is set, and the time the watch's."""

    def __init__(self, connection: Gio.DBusConnection, microseconds: Any):
        """microseconds: a function that returns the time since the epoch."""
        self.chosen = ""
        self._object = BusObject(
            connection, "/org/freedesktop/timedate1", _TIMEDATE,
            {"Timezone": machine_zone(), "LocalRTC": False, "CanNTP": False, "NTP": False,
             "TimeUSec": microseconds})
        own_name(connection, "org.freedesktop.timedate1")

    def set(self, name: str) -> None:
        if not is_zone(name):
            raise WatchError(f'"{name}" is no time zone such as Asia/Seoul')
        self.chosen = name
        self._object.set(Timezone=name)


def full_locale(name: str, kind: str = "language") -> str:
    """"ar_EG" and "ar" as "ar_EG.UTF-8" and "ar.UTF-8"."""
    if not re.fullmatch(r"[A-Za-z]{2,3}(_[A-Z]{2})?(\.[A-Za-z0-9-]+)?(@[A-Za-z0-9]+)?", name):
        raise WatchError(f'"{name}" is no {kind} such as ko_KR or ar_EG.UTF-8')
    stem, _, modifier = name.partition("@")
    full = stem if "." in stem else f"{stem}.UTF-8"
    return f"{full}@{modifier}" if modifier else full
