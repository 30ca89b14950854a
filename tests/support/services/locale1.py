"""python-dbusmock template of the language service of systemd (localed)."""

import dbus

BUS_NAME = "org.freedesktop.locale1"
MAIN_OBJ = "/org/freedesktop/locale1"
MAIN_IFACE = "org.freedesktop.locale1"
SYSTEM_BUS = True


def load(mock, parameters):
    locale = parameters.get("Locale", ["LANG=C.UTF-8"])
    mock.AddMethod(MAIN_IFACE, "SetLocale", "asb", "",
                   f'self.Set("{MAIN_IFACE}", "Locale", args[0])')
    mock.AddProperty(MAIN_IFACE, "Locale", dbus.Array(locale, signature="s"))
