"""python-dbusmock template of the registry on the screen readers' bus."""

BUS_NAME = "org.a11y.atspi.Registry"
MAIN_OBJ = "/org/a11y/atspi/accessible/root"
MAIN_IFACE = "org.a11y.atspi.Socket"
SYSTEM_BUS = False


def load(mock, _):
    mock.AddMethod(MAIN_IFACE, "Embed", "(so)", "(so)",
                   'ret = dbus.Struct((":1.0", dbus.ObjectPath("/desktop")), signature="so")')
