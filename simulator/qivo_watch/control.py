"""The control interface of the watch on its bus: each method answers when its effect is seen."""

import json
import re
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

VERBS = {
    "Launch": "app:s operation:s extra:a{ss} environment:a{ss} patienceMs:u",
    "Terminate": "app:s patienceMs:u",
    "Bezel": "direction:s count:u intervalMs:u",
    "Button": "action:s key:s durationMs:u count:u intervalMs:u",
    "Touch": "x:i y:i",
    "Swipe": "x1:i y1:i x2:i y2:i durationMs:u",
    "SetBattery": "percent:d state:s",
    "SetPlugged": "plugged:b",
    "SetLanguage": "language:s",
    "SetRegion": "region:s",
    "SetTime": "ms:x",
    "SetTimeFrozen": "frozen:b",
    "SetZone": "zone:s",
    "SetHours": "hours:u",
    "Stop": "",
}
"""What a watch does, each with its arguments; SetBattery is Watch.set_battery(), and so on."""

_PROPERTIES = {
    "ScreenOn": "b", "BezelPosition": "i", "BackPressed": "b", "PowerPressed": "b",
    "Plugged": "b", "Charging": "b", "Percentage": "d", "Language": "s", "App": "s", "Time": "x",
    "TimeFrozen": "b", "Zone": "s",
}


def _method(name: str, arguments: str) -> str:
    described = "".join('<arg name="{}" type="{}" direction="in"/>'.format(*argument.split(":"))
                        for argument in arguments.split())
    return f'<method name="{name}">{described}</method>'


DESCRIPTION = f"""<node><interface name="{INTERFACE}">
  {"".join(_method(*verb) for verb in VERBS.items())}
  <method name="ReadLog">
    <arg name="start" type="t" direction="in"/>
    <arg name="count" type="t" direction="out"/>
    <arg name="first" type="t" direction="out"/>
    <arg name="lines" type="as" direction="out"/>
  </method>
  <method name="Status"><arg name="json" type="s" direction="out"/></method>
  <signal name="LogGrown"><arg name="count" type="t"/></signal>
  {"".join(f'<property name="{name}" type="{kind}" access="read"/>'
           for name, kind in _PROPERTIES.items())}
</interface></node>"""


class Control:
    """Answers for a watch. The name is owned when everything can be answered."""

    def __init__(self, connection: Gio.DBusConnection, watch: Watch, tasks: Tasks):
        self._watch = watch
        self._tasks = tasks
        self._works = {verb: getattr(watch, _snake_case(verb)) for verb in VERBS}
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
        if method in self._works:
            yield from self._works[method](*arguments)
            return None
        if method == "ReadLog":
            return GLib.Variant("(ttas)", self._watch.log.read(*arguments))
        if method == "Status":
            return GLib.Variant("(s)", (json.dumps(self._watch.status()),))
        raise WatchError(f"a watch has no {method}")


def _snake_case(name: str) -> str:
    return re.sub(r"(?<=[a-z])(?=[A-Z])", "_", name).lower()


def _line_of(error: Exception) -> str:
    if isinstance(error, (WatchError, UsageError)):
        return str(error)
    if isinstance(error, ConnectionClosedError):
        return "the watch has ended: the X server has gone"
    return f"{type(error).__name__}: {error}".splitlines()[0]
