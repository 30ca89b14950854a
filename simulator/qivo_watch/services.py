"""The system services of the watch, by their standard names: battery, language, time zone."""

import os
import re
from typing import Any

from gi.repository import Gio, GLib

from qivo_watch.bus import BusObject, own_name
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


class Language:
    """locale1."""

    def __init__(self, connection: Gio.DBusConnection, name: str):
        self.name = full_locale(name)
        self._object = BusObject(connection, "/org/freedesktop/locale1", _LOCALE,
                                 {"Locale": [f"LANG={self.name}"]})
        own_name(connection, "org.freedesktop.locale1")

    def set(self, name: str) -> None:
        self.name = full_locale(name)
        self._object.set(Locale=[f"LANG={self.name}"])


class TimeZone:
    """timedate1. The zone is the machine's, and the time the watch's."""

    def __init__(self, connection: Gio.DBusConnection, microseconds: Any):
        """microseconds: a function that returns the time since the epoch."""
        BusObject(connection, "/org/freedesktop/timedate1", _TIMEDATE,
                  {"Timezone": _zone(), "LocalRTC": False, "CanNTP": False, "NTP": False,
                   "TimeUSec": microseconds})
        own_name(connection, "org.freedesktop.timedate1")


def full_locale(name: str) -> str:
    """"ar_EG" and "ar" as "ar_EG.UTF-8" and "ar.UTF-8"."""
    if not re.fullmatch(r"[A-Za-z]{2,3}(_[A-Z]{2})?(\.[A-Za-z0-9-]+)?(@[A-Za-z0-9]+)?", name):
        raise WatchError(f'"{name}" is no language such as ko_KR or ar_EG.UTF-8')
    stem, _, modifier = name.partition("@")
    full = stem if "." in stem else f"{stem}.UTF-8"
    return f"{full}@{modifier}" if modifier else full


def _zone() -> str:
    target = os.path.realpath("/etc/localtime")
    _, found, zone = target.partition("/zoneinfo/")
    return zone if found else "Etc/UTC"
