"""The keeper's interface on the bus, as a program calls it that is not the command."""

import dbus.bus
import pytest

INTERFACE = "com.velmora.QivoWatch1"


@pytest.fixture(name="ask")
def _ask(desk):
    """Calls the keeper; returns what it answers, or the text of its refusal."""
    bus = dbus.bus.BusConnection(f"unix:path={desk.status()['folder']}/bus")
    watch = bus.get_object("com.velmora.QivoWatch", "/com/velmora/QivoWatch", introspect=False)

    def ask(method, *arguments):
        try:
            return watch.get_dbus_method(method, INTERFACE)(*arguments)
        except dbus.DBusException as refused:
            return refused.get_dbus_message()
    yield ask
    bus.close()


def options(**given):
    return dbus.Dictionary(given, signature="sv")


def test_what_is_left_out_has_its_default(desk, ask):
    before = desk.status()["bezel"]
    assert ask("Bezel", "cw", options()) is None
    assert desk.status()["bezel"] == before + 1


def test_a_charger_is_set_without_a_percentage(desk, ask):
    assert ask("SetBattery", options(percent=12.5)) is None
    assert ask("SetBattery", options(state="charging")) is None
    assert desk.status()["battery"] == {"percent": 12.5, "state": "charging"}


@pytest.mark.parametrize("method, arguments, complaint", [
    ("Bezel", ["cw", options(count=dbus.UInt32(0))], 'count: "0" is not from 1 to 1000'),
    ("Bezel", ["cw", options(count="two")], 'count: "two" is not from 1 to 1000'),
    ("Bezel", ["cw", options(count=2.5)], 'count: "2.5" is not from 1 to 1000'),
    ("Bezel", ["up", options()], 'direction: "up" is not one of cw, ccw'),
    ("Bezel", ["cw", options(count=True)], 'count: "True" is not from 1 to 1000'),
    ("Bezel", ["cw", options(speed=1)], 'Bezel has no argument "speed"'),
    ("Bezel", ["cw", options(direction="ccw")], 'Bezel has no argument "direction"'),
    ("SetBattery", [options(percent=float("nan"))], 'percent: "nan" is not from 0 to 100'),
    ("SetBattery", [options(state=dbus.Int32(1))],
     'state: "1" is not one of charging, discharging, full'),
    ("SetTextSize", [float("inf")], 'factor: "inf" is not from 0.8 to 2'),
    ("SetMotion", ["none"], 'motion: "none" is not one of full, reduced'),
    ("SetContrast", ["low"], 'contrast: "low" is not one of normal, high'),
    ("SetHours", [dbus.UInt32(13)], 'hours: "13" is not one of 12, 24'),
    ("Launch", [options(extra="a=b")], 'extra: "a=b" is not a map of texts'),
    ("Launch", [options(wrap="env")], 'wrap: "env" is not a command'),
    ("Launch", [options(debugger="lldb")], 'debugger: "lldb" is not one of gdb'),
    ("PushKey", ["menu"], 'key: "menu" is not one of back, power'),
    ("Touch", [dbus.Int32(-1), dbus.Int32(0)], 'x: "-1" is not from 0 to 453'),
    ("Swipe", [dbus.Int32(9)] * 4 + [options(then="far")], 'then: "far" is not a list of places'),
    ("Swipe", [dbus.Int32(9)] * 4 + [options(then=dbus.Array([(9, 9, 70000)], "(iiu)"))],
     'then: "70000" is not from 0 to 60000'),
    ("Dance", [], "Dance")])
def test_what_is_not_in_the_interface_is_refused(desk, ask, method, arguments, complaint):
    before = desk.status()
    told = ask(method, *arguments)
    assert complaint in told and "\n" not in told
    after = desk.status()
    assert (after["bezel"], after["battery"], after["keysDown"]) == (
        before["bezel"], before["battery"], before["keysDown"])
