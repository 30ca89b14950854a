"""timedate1 with the watch's time and zone."""

from typing import Callable

from gi.repository import Gio

from qivo_watch.errors import WatchError
from qivo_watch.keeper.objects import BusObject, own_name
from qivo_watch.times import is_zone, machine_zone

_TIMEDATE = """<node><interface name="org.freedesktop.timedate1">
  <property name="Timezone" type="s" access="read"/>
  <property name="LocalRTC" type="b" access="read"/>
  <property name="CanNTP" type="b" access="read"/>
  <property name="NTP" type="b" access="read"/>
  <property name="TimeUSec" type="t" access="read"/>
</interface></node>"""


class TimeZone:
    """timedate1. The zone is the machine's until it is set, and the time the watch's."""

    def __init__(self, connection: Gio.DBusConnection, microseconds: Callable[[], int]):
        """microseconds: the time since the epoch."""
        self.chosen = ""
        self._object = BusObject(
            connection, "/org/freedesktop/timedate1", _TIMEDATE,
            {"Timezone": machine_zone(), "LocalRTC": False, "CanNTP": False, "NTP": False,
             "TimeUSec": microseconds})
        self._object.serve()
        own_name(connection, "org.freedesktop.timedate1")

    def set(self, name: str) -> None:
        if not is_zone(name):
            raise WatchError(f'"{name}" is not a time zone (such as Asia/Seoul)')
        self.chosen = name
        self._object.set(Timezone=name)
