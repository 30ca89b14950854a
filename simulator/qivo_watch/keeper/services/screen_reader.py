"""The desktop's accessibility service: a screen reader, as far as applications can tell."""

from typing import Callable

from gi.repository import Gio, GLib

from qivo_watch.keeper.objects import BusObject, own_name, process_of

_SERVICE = """<node><interface name="org.a11y.Bus">
  <method name="GetAddress"><arg name="address" type="s" direction="out"/></method>
</interface></node>"""

_STATUS = """<node><interface name="org.a11y.Status">
  <property name="IsEnabled" type="b" access="read"/>
  <property name="ScreenReaderEnabled" type="b" access="read"/>
</interface></node>"""

_SOCKET = """<node><interface name="org.a11y.atspi.Socket">
  <method name="Embed">
    <arg name="plug" type="(so)" direction="in"/>
    <arg name="socket" type="(so)" direction="out"/>
  </method>
</interface></node>"""

_PATH = "/org/a11y/bus"
_ROOT = "/org/a11y/atspi/accessible/root"
_REGISTRY = "org.a11y.atspi.Registry"


class ScreenReader:
    """The readers' bus is the watch's own. Until somebody looks at a tree nobody reads, and
    applications do nothing for it."""

    def __init__(self, connection: Gio.DBusConnection, address: str, on_news: Callable[[], None]):
        self._connection = connection
        self._address = address
        self._on_news = on_news
        self._names: dict[int, str] = {}
        self._service = BusObject(connection, _PATH, _SERVICE, {})
        self._status = BusObject(connection, _PATH, _STATUS,
                                 {"IsEnabled": False, "ScreenReaderEnabled": False})
        self._socket = BusObject(connection, _ROOT, _SOCKET, {})
        self._service.serve(self._answer_address)
        self._status.serve()
        self._socket.serve(self._embed)
        own_name(connection, "org.a11y.Bus")
        own_name(connection, _REGISTRY)

    def read(self) -> None:
        """From now on somebody reads."""
        self._status.set(IsEnabled=True)

    def name_of(self, process: int) -> str | None:
        """The name on the bus under which an application shows its tree."""
        return self._names.get(process)

    def _answer_address(self, _method: str, _arguments: tuple,
                        call: Gio.DBusMethodInvocation) -> None:
        call.return_value(GLib.Variant("(s)", (self._address,)))

    def _embed(self, _method: str, _arguments: tuple, call: Gio.DBusMethodInvocation) -> None:
        sender = call.get_sender()
        call.return_value(GLib.Variant("((so))", ((_REGISTRY, _ROOT),)))
        process = process_of(self._connection, sender)
        if process is not None:
            self._names[process] = sender
        self._on_news()
