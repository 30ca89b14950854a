"""The keeper's side of the watch's bus: the daemon, names, objects with properties."""

import contextlib
import threading
from typing import Any, Callable, Iterator

from gi.repository import Gio, GLib

from qivo_watch.bus import DAEMON, PATIENCE_MS, PATIENCE_S, PROPERTIES
from qivo_watch.state import Folder

_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>{address}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def daemon_command(folder: Folder, ready: int) -> list[str]:
    """The command for a bus that writes a line to the descriptor READY when it listens. It asks
    the service manager on it for the applications in the folder of services."""
    folder.services.mkdir()
    configuration = folder.path / "bus.conf"
    configuration.write_text(_CONFIGURATION.format(
        address=folder.bus_address,
        services=GLib.markup_escape_text(str(folder.services), -1)), encoding="utf-8")
    return ["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile",
            "--nosyslog", "--systemd-activation", f"--print-address={ready}"]


def connect(address: str) -> Gio.DBusConnection:
    """Fails with Gio.IOErrorEnum.CANCELLED at a bus that does not answer."""
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
             | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    with _patience() as end:
        connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, end)
    connection.set_exit_on_close(False)
    return connection


@contextlib.contextmanager
def _patience() -> Iterator[Gio.Cancellable]:
    end = Gio.Cancellable()
    timer = threading.Timer(PATIENCE_S, end.cancel)
    timer.start()
    try:
        yield end
    finally:
        timer.cancel()


def own_name(connection: Gio.DBusConnection, name: str) -> None:
    """Takes a name; on a fresh bus nobody else has it."""
    connection.call_sync(*DAEMON, "RequestName", GLib.Variant("(su)", (name, 0)), None,
                         Gio.DBusCallFlags.NONE, PATIENCE_MS, None)


def process_of(connection: Gio.DBusConnection, name: str) -> int | None:
    """The process behind a name; None when it has gone."""
    try:
        return connection.call_sync(
            *DAEMON, "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)), None,
            Gio.DBusCallFlags.NONE, PATIENCE_MS, None).unpack()[0]
    except GLib.Error:
        return None


Handler = Callable[[str, tuple, Gio.DBusMethodInvocation], None]


class BusObject:
    """One interface at one path, with its properties; on the bus once it serves.

    PropertiesChanged is sent for each change by set().
    """

    def __init__(self, connection: Gio.DBusConnection, path: str, description: str,
                 values: dict[str, Any]):
        """description: introspection XML with one interface; values: the properties' first."""
        self._connection = connection
        self._path = path
        self._interface = Gio.DBusNodeInfo.new_for_xml(description).interfaces[0]
        self._types = {known.name: known.signature for known in self._interface.properties}
        self._values = dict(values)
        self._methods: Handler = _refuse

    def serve(self, methods: Handler | None = None) -> None:
        """METHODS gets a method's name, its arguments and the call to be answered."""
        self._methods = methods or _refuse
        self._connection.register_object(self._path, self._interface, self._on_call,
                                         self._on_read, None)

    def get(self, name: str) -> Any:
        value = self._values[name]
        return value() if callable(value) else value

    def set(self, **values: Any) -> None:
        """Sets properties; reports those that have changed."""
        self.tell(**{name: value for name, value in values.items()
                     if self._values[name] != value})

    def tell(self, **values: Any) -> None:
        """Reports properties, changed or not. A computed one stays computed."""
        for name, value in values.items():
            if not callable(self._values[name]):
                self._values[name] = value
        if not values:
            return
        changed = {name: self._variant(name, value) for name, value in values.items()}
        self._send(PROPERTIES, "PropertiesChanged",
                   GLib.Variant("(sa{sv}as)", (self._interface.name, changed, [])))

    def emit(self, signal: str, arguments: GLib.Variant) -> None:
        self._send(self._interface.name, signal, arguments)

    def _send(self, interface: str, signal: str, arguments: GLib.Variant) -> None:
        # A bus that has just died; its end is reported elsewhere.
        if not self._connection.is_closed():
            self._connection.emit_signal(None, self._path, interface, signal, arguments)

    def _variant(self, name: str, value: Any) -> GLib.Variant:
        return GLib.Variant(self._types[name], value)

    def _on_read(self, _connection: Any, _sender: str, _path: str, _interface: str,
                 name: str) -> GLib.Variant:
        return self._variant(name, self.get(name))

    def _on_call(self, _connection: Any, _sender: str, _path: str, _interface: str, method: str,
                 arguments: GLib.Variant, call: Gio.DBusMethodInvocation) -> None:
        self._methods(method, arguments.unpack(), call)


def _refuse(method: str, _arguments: tuple, call: Gio.DBusMethodInvocation) -> None:
    call.return_dbus_error("org.freedesktop.DBus.Error.NotSupported", f"a watch has no {method}")
