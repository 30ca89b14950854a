"""Has the message bus start applications by their names.

For a name with a service file the bus asks whoever it takes for the service manager, which is the
keeper: so an application that another one calls is started like every other on the watch.
"""

import pathlib
from typing import Any, Callable

from gi.repository import Gio, GLib

from qivo_watch.bus import DAEMON, PATIENCE_MS
from qivo_watch.keeper.objects import own_name

MANAGER = "org.freedesktop.systemd1"
_INTERFACE = f"{MANAGER}.Activator"
_FAILED = "org.freedesktop.DBus.Error.Spawn.Failed"
_UNIT_SUFFIX = ".service"


class Activator:
    """FOLDER is where the bus looks for service files."""

    def __init__(self, connection: Gio.DBusConnection, folder: pathlib.Path):
        self._connection = connection
        self._folder = folder

    def serve(self, on_wanted: Callable[[str], None]) -> None:
        """ON_WANTED(id) is called for an application that a call on the bus waits for."""
        def on_request(_bus: Any, _sender: str, _path: str, _interface: str, _signal: str,
                       arguments: GLib.Variant) -> None:
            on_wanted(arguments.unpack()[0].removesuffix(_UNIT_SUFFIX))

        self._connection.signal_subscribe(DAEMON[0], _INTERFACE, "ActivationRequest", None, None,
                                          Gio.DBusSignalFlags.NONE, on_request)
        own_name(self._connection, MANAGER)

    def offer(self, ids: list[str]) -> None:
        """Sets what can be started; the bus knows on return."""
        for file in self._folder.iterdir():
            file.unlink()
        for app_id in ids:
            # The command is never run, but must be there.
            (self._folder / f"{app_id}.service").write_text(
                f"[D-BUS Service]\nName={app_id}\nExec=/bin/false\n"
                f"SystemdService={app_id}{_UNIT_SUFFIX}\n", encoding="utf-8")
        self._connection.call_sync(*DAEMON, "ReloadConfig", None, None, Gio.DBusCallFlags.NONE,
                                   PATIENCE_MS, None)

    def refuse(self, app_id: str, reason: str) -> None:
        """Tells those who wait for the application that it does not come."""
        self._connection.emit_signal(
            DAEMON[0], DAEMON[1], _INTERFACE, "ActivationFailure",
            GLib.Variant("(sss)", (f"{app_id}{_UNIT_SUFFIX}", _FAILED, reason)))
