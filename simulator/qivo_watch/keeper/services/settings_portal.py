"""The desktop's settings portal with what the watch's user has set."""

from typing import Any

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


_INTERFACE, _APPEARANCE = "org.gnome.desktop.interface", "org.freedesktop.appearance"


class SettingsPortal:
    """The desktop's settings portal: the clock's format, which is missing until it is set, and how
    the user wants applications to look."""

    def __init__(self, connection: Gio.DBusConnection, text_size: float, motion: str,
                 contrast: str):
        self.hours: int | None = None
        self.text_size, self.motion, self.contrast = text_size, motion, contrast
        self._told = self._settings()
        self._object = BusObject(connection, "/org/freedesktop/portal/desktop", _PORTAL,
                                 {"version": 2})
        self._object.serve(self._answer)
        own_name(connection, "org.freedesktop.portal.Desktop")

    def set(self, **values: Any) -> None:
        """Sets hours, text_size, motion, contrast."""
        vars(self).update(values)
        before, self._told = self._told, self._settings()
        for setting, value in self._told.items():
            if value != before.get(setting):
                self._object.emit("SettingChanged", GLib.Variant("(ssv)", (*setting, value)))

    def _settings(self) -> dict[tuple[str, str], GLib.Variant]:
        settings = {
            (_INTERFACE, "text-scaling-factor"): GLib.Variant("d", self.text_size),
            (_INTERFACE, "enable-animations"): GLib.Variant("b", self.motion == "full"),
            (_APPEARANCE, "contrast"): GLib.Variant("u", self.contrast == "high")}
        if self.hours:
            settings[_INTERFACE, "clock-format"] = GLib.Variant("s", f"{self.hours}h")
        return settings

    def _answer(self, method: str, arguments: tuple, call: Gio.DBusMethodInvocation) -> None:
        if method == "ReadAll":
            found: dict[str, dict[str, GLib.Variant]] = {}
            for (space, key), value in self._told.items():
                if any(_is_within(space, pattern) for pattern in arguments[0] or [""]):
                    found.setdefault(space, {})[key] = value
            call.return_value(GLib.Variant("(a{sa{sv}})", (found,)))
        elif arguments not in self._told:
            call.return_dbus_error("org.freedesktop.portal.Error.NotFound",
                                   "Requested setting not found")
        else:
            # The first version's method wraps the value once more.
            value = self._told[arguments]
            call.return_value(GLib.Variant(
                "(v)", (GLib.Variant("v", value) if method == "Read" else value,)))


def _is_within(space: str, pattern: str) -> bool:
    """Whether a namespace is the pattern, or begins as one that ends in a star."""
    return pattern in ("", space) or pattern.endswith("*") and space.startswith(pattern[:-1])
