"""python-dbusmock template of a watch's keeper: its effects are those of the real one, in short."""

import dbus

BUS_NAME = "com.velmora.QivoWatch"
MAIN_OBJ = "/com/velmora/QivoWatch"
MAIN_IFACE = "com.velmora.QivoWatch1"
SYSTEM_BUS = False

GUIDE = ("com.velmora.qivo-guide-app", "Qivo Guide", "")

_SET = f'self.Set("{MAIN_IFACE}", "%s", %s)'
_BEZEL = _SET % ("BezelPosition", 'dbus.Int32(self.props["com.velmora.QivoWatch1"]'
                 '["BezelPosition"] + (1 if args[0] == "cw" else -1) * int(args[1]["count"]))')
_KEY = f"""self.Set("{MAIN_IFACE}", args[0].capitalize() + "Pressed", dbus.Boolean(%s))"""


def load(mock, parameters):
    for name, signature, effect in (
            ("Launch", "a{sv}", ""), ("Stop", "", ""), ("Bezel", "sa{sv}", _BEZEL),
            ("PushKey", "s", _KEY % True), ("ReleaseKey", "s", _KEY % False),
            ("SetBattery", "a{sv}",
             _SET % ("Plugged", 'dbus.Boolean(args[0]["state"] == "charging")'))):
        mock.AddMethod(MAIN_IFACE, name, signature, "", effect)
    for name, value in (
            ("ScreenOn", True), ("BezelPosition", dbus.Int32(0)), ("BackPressed", False),
            ("PowerPressed", False), ("Plugged", False), ("Charging", False), ("Percentage", 82.0),
            ("Language", "en_US.UTF-8"), ("App", ""), ("Time", dbus.Int64(parameters["Time"])),
            ("TimeFrozen", bool(parameters["TimeFrozen"])), ("Zone", ""), ("TextSize", 1.0),
            ("MotionReduced", False), ("ContrastHigh", False),
            ("Apps", dbus.Array([GUIDE], signature="(sss)"))):
        mock.AddProperty(MAIN_IFACE, name, value)
