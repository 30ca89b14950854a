"""The control interface of the watch on its bus: each method answers when its effect is seen."""

import json
from typing import Any

from gi.repository import Gio, GLib
from Xlib.error import ConnectionClosedError

from qivo_watch.bus import BusObject, own_name
from qivo_watch.errors import UsageError, WatchError
from qivo_watch.tasks import Tasks, Work
from qivo_watch.watch import Watch

NAME = "com.velmora.QivoWatch"
PATH = "/com/velmora/QivoWatch"
INTERFACE = "com.velmora.QivoWatch1"
REFUSED = "com.velmora.QivoWatch.Error.Refused"

DESCRIPTION = f"""<node><interface name="{INTERFACE}">
  <method name="Launch">
    <arg name="app" type="s" direction="in"/>
    <arg name="operation" type="s" direction="in"/>
    <arg name="extra" type="a{{ss}}" direction="in"/>
  </method>
  <method name="Bezel">
    <arg name="direction" type="s" direction="in"/>
    <arg name="count" type="u" direction="in"/>
    <arg name="intervalMs" type="u" direction="in"/>
  </method>
  <method name="Button">
    <arg name="action" type="s" direction="in"/>
    <arg name="key" type="s" direction="in"/>
    <arg name="durationMs" type="u" direction="in"/>
    <arg name="count" type="u" direction="in"/>
    <arg name="intervalMs" type="u" direction="in"/>
  </method>
  <method name="Touch">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <method name="Swipe">
    <arg name="x1" type="i" direction="in"/>
    <arg name="y1" type="i" direction="in"/>
    <arg name="x2" type="i" direction="in"/>
    <arg name="y2" type="i" direction="in"/>
    <arg name="durationMs" type="u" direction="in"/>
  </method>
  <method name="SetBattery">
    <arg name="percent" type="d" direction="in"/>
    <arg name="state" type="s" direction="in"/>
  </method>
  <method name="SetPlugged"><arg name="plugged" type="b" direction="in"/></method>
  <method name="SetLanguage"><arg name="language" type="s" direction="in"/></method>
  <method name="SetTime"><arg name="ms" type="x" direction="in"/></method>
  <method name="SetTimeFrozen"><arg name="frozen" type="b" direction="in"/></method>
  <method name="ReadLog">
    <arg name="start" type="t" direction="in"/>
    <arg name="count" type="t" direction="out"/>
    <arg name="first" type="t" direction="out"/>
    <arg name="lines" type="as" direction="out"/>
  </method>
  <method name="Status"><arg name="json" type="s" direction="out"/></method>
  <method name="Stop"/>
  <signal name="LogGrown"><arg name="count" type="t"/></signal>
  <property name="ScreenOn" type="b" access="read"/>
  <property name="BezelPosition" type="i" access="read"/>
  <property name="BackPressed" type="b" access="read"/>
  <property name="PowerPressed" type="b" access="read"/>
  <property name="Plugged" type="b" access="read"/>
  <property name="Charging" type="b" access="read"/>
  <property name="Percentage" type="d" access="read"/>
  <property name="Language" type="s" access="read"/>
  <property name="App" type="s" access="read"/>
  <property name="Time" type="x" access="read"/>
  <property name="TimeFrozen" type="b" access="read"/>
</interface></node>"""


class Control:
    """Answers for a watch. The name is owned when everything can be answered."""

    def __init__(self, connection: Gio.DBusConnection, watch: Watch, tasks: Tasks):
        self._watch = watch
        self._tasks = tasks
        self.object = BusObject(connection, PATH, DESCRIPTION, watch.properties(), self._on_call)
        self._connection = connection

    def open(self) -> None:
        own_name(self._connection, NAME)

    def _on_call(self, method: str, arguments: tuple, call: Gio.DBusMethodInvocation) -> None:
        def done(result: Any, error: Exception | None) -> None:
            if error is None:
                call.return_value(result)
            else:
                call.return_dbus_error(REFUSED, _line_of(error))
        # The watch's end outlives who wanted it, as the body does not.
        owner = "" if method == "Stop" else call.get_sender()
        self._tasks.run(self._work(method, arguments), done, owner)

    def _work(self, method: str, arguments: tuple) -> Work:
        watch = self._watch
        works = {
            "Launch": watch.launch, "Bezel": watch.bezel, "Button": watch.button,
            "Touch": watch.touch, "Swipe": watch.swipe, "SetBattery": watch.set_battery,
            "SetPlugged": watch.set_plugged, "SetLanguage": watch.set_language,
            "SetTime": watch.set_time, "SetTimeFrozen": watch.set_time_frozen, "Stop": watch.stop,
        }
        if method in works:
            yield from works[method](*arguments)
            return None
        if method == "ReadLog":
            return GLib.Variant("(ttas)", watch.log.read(*arguments))
        return GLib.Variant("(s)", (json.dumps(watch.status()),))


def _line_of(error: Exception) -> str:
    if isinstance(error, (WatchError, UsageError)):
        return str(error)
    if isinstance(error, ConnectionClosedError):
        return "the watch has ended: the X server has gone"
    return f"{type(error).__name__}: {error}".splitlines()[0]
