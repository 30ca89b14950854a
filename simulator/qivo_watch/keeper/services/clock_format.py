"""The desktop's settings portal with the format of clocks."""

from gi.repository import Gio, GLib

from qivo_watch.keeper.objects import BusObject, own_name

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


class ClockFormat:
    """The desktop's settings portal with the clock's format, which is missing until it is set."""

    _SPACE, _KEY = "org.gnome.desktop.interface", "clock-format"

    def __init__(self, connection: Gio.DBusConnection):
        self.hours: int | None = None
        self._object = BusObject(connection, "/org/freedesktop/portal/desktop", _PORTAL,
                                 {"version": 2})
        self._object.serve(self._answer)
        own_name(connection, "org.freedesktop.portal.Desktop")

    def set(self, hours: int) -> None:
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
