"""python-dbusmock template of the desktop's settings portal, with the clock's format alone."""

import dbus
import dbus.service

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Settings"
SYSTEM_BUS = False
TEST_IFACE = "org.example.Test"

CLOCK_FORMAT = ("org.gnome.desktop.interface", "clock-format")


def load(mock, parameters):
    mock.version = parameters["version"]
    mock.clock_format = parameters["clock_format"]


def read(mock, setting, first_version):
    if mock.version < first_version:
        raise dbus.DBusException("No such method",
                                 name="org.freedesktop.DBus.Error.UnknownMethod")
    if setting != CLOCK_FORMAT or mock.clock_format is None:
        raise dbus.DBusException("Requested setting not found",
                                 name="org.freedesktop.portal.Error.NotFound")
    return mock.clock_format


@dbus.service.method(MAIN_IFACE, in_signature="ss", out_signature="v")
def ReadOne(self, namespace, key):
    return read(self, (namespace, key), first_version=2)


@dbus.service.method(MAIN_IFACE, in_signature="ss", out_signature="v")
def Read(self, namespace, key):
    return dbus.String(read(self, (namespace, key), first_version=1), variant_level=2)


@dbus.service.method(TEST_IFACE, in_signature="v")
def SetClockFormat(self, value):
    """The value keeps its levels of variants."""
    self.clock_format = value
    self.EmitSignal(MAIN_IFACE, "SettingChanged", "ssv", [*CLOCK_FORMAT, value])
