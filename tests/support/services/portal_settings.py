"""python-dbusmock template of the desktop's settings portal, with settings of any kind."""

import dbus
import dbus.service

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Settings"
SYSTEM_BUS = False
TEST_IFACE = "org.example.Test"


def load(mock, parameters):
    mock.was_asked = False
    mock.has_method = parameters["has_method"]
    mock.settings = {tuple(setting): value for *setting, value in parameters["settings"]}


@dbus.service.method(MAIN_IFACE, in_signature="as", out_signature="a{sa{sv}}")
def ReadAll(self, namespaces):
    self.was_asked = True
    if not self.has_method:
        raise dbus.DBusException("No such method",
                                 name="org.freedesktop.DBus.Error.UnknownMethod")
    return {space: dbus.Dictionary({key: value for (within, key), value in self.settings.items()
                                    if within == space}, signature="sv")
            for space, _ in self.settings if space in namespaces}


@dbus.service.method(TEST_IFACE, out_signature="b")
def WasAsked(self):
    return self.was_asked


@dbus.service.method(TEST_IFACE, in_signature="ssv")
def Set(self, namespace, key, value):
    """The value keeps its levels of variants."""
    self.settings[namespace, key] = value
    self.EmitSignal(MAIN_IFACE, "SettingChanged", "ssv", [namespace, key, value])
