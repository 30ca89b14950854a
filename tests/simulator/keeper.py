"""python-dbusmock template of a watch's keeper: its effects are those of the real one, in short."""

import dbus

BUS_NAME = "com.velmora.QivoWatch"
MAIN_OBJ = "/com/velmora/QivoWatch"
MAIN_IFACE = "com.velmora.QivoWatch1"
SYSTEM_BUS = False

_SET = f'self.Set("{MAIN_IFACE}", "%s", %s)'
_BEZEL = _SET % ("BezelPosition", 'dbus.Int32(self.props["com.velmora.QivoWatch1"]'
                 '["BezelPosition"] + (1 if args[0] == "cw" else -1) * int(args[1]))')
_BUTTON = f"""self.Set("{MAIN_IFACE}", args[1].capitalize() + "Pressed",
                       dbus.Boolean(args[0] == "push"))"""


def load(mock, parameters):
    for name, signature, effect in (
            ("Launch", "ssa{ss}a{ss}u", ""), ("Stop", "", ""),
            ("Bezel", "suu", _BEZEL), ("Button", "ssuuu", _BUTTON),
            ("SetPlugged", "b", _SET % ("Plugged", "dbus.Boolean(args[0])"))):
        mock.AddMethod(MAIN_IFACE, name, signature, "", effect)
    for name, value in (
            ("ScreenOn", True), ("BezelPosition", dbus.Int32(0)), ("BackPressed", False),
            ("PowerPressed", False), ("Plugged", False), ("Charging", False), ("Percentage", 82.0),
            ("Language", "en_US.UTF-8"), ("App", ""), ("Time", dbus.Int64(parameters["Time"])),
            ("TimeFrozen", bool(parameters["TimeFrozen"])), ("Zone", "")):
        mock.AddProperty(MAIN_IFACE, name, value)
