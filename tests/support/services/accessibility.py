"""python-dbusmock template of the desktop's accessibility service: who reads, and on which bus."""

import dbus

BUS_NAME = "org.a11y.Bus"
MAIN_OBJ = "/org/a11y/bus"
MAIN_IFACE = "org.a11y.Bus"
SYSTEM_BUS = False


def load(mock, parameters):
    mock.AddMethod(MAIN_IFACE, "GetAddress", "", "s", f"ret = {parameters['address']!r}")
    mock.AddProperties("org.a11y.Status", {
        "IsEnabled": dbus.Boolean(parameters["reads"]), "ScreenReaderEnabled": dbus.Boolean(False)})
