"""UPower with the watch's battery."""

from gi.repository import Gio, GLib

from qivo_watch.keeper.objects import BusObject, own_name

_NUMBERS = {"charging": 1, "discharging": 2, "full": 4}
"""UPower's for the states."""

_UPOWER = """<node><interface name="org.freedesktop.UPower">
  <method name="EnumerateDevices"><arg name="devices" type="ao" direction="out"/></method>
  <method name="GetDisplayDevice"><arg name="device" type="o" direction="out"/></method>
  <property name="DaemonVersion" type="s" access="read"/>
  <property name="OnBattery" type="b" access="read"/>
</interface></node>"""

_DEVICE = """<node><interface name="org.freedesktop.UPower.Device">
  <property name="Type" type="u" access="read"/>
  <property name="PowerSupply" type="b" access="read"/>
  <property name="IsPresent" type="b" access="read"/>
  <property name="IsRechargeable" type="b" access="read"/>
  <property name="State" type="u" access="read"/>
  <property name="Percentage" type="d" access="read"/>
</interface></node>"""

_DEVICE_PATH = "/org/freedesktop/UPower/devices/DisplayDevice"
_BATTERY_KIND = 2


class Battery:
    """UPower with the display device, which stands for all."""

    def __init__(self, connection: Gio.DBusConnection, percent: float, state: str):
        self.percent = percent
        self.state = state
        self._manager = BusObject(
            connection, "/org/freedesktop/UPower", _UPOWER,
            {"DaemonVersion": "0.99", "OnBattery": not self.is_plugged})
        self._device = BusObject(
            connection, _DEVICE_PATH, _DEVICE,
            {"Type": _BATTERY_KIND, "PowerSupply": True, "IsPresent": True,
             "IsRechargeable": True, "State": _NUMBERS[state], "Percentage": percent})
        self._manager.serve(self._answer)
        self._device.serve()
        own_name(connection, "org.freedesktop.UPower")

    @property
    def is_plugged(self) -> bool:
        return self.state != "discharging"

    def set(self, percent: float | None, state: str | None) -> None:
        """What is None stays as it is."""
        self.percent = self.percent if percent is None else percent
        self.state = state or self.state
        self._device.set(State=_NUMBERS[self.state], Percentage=self.percent)
        self._manager.set(OnBattery=not self.is_plugged)

    @staticmethod
    def _answer(method: str, _arguments: tuple, call: Gio.DBusMethodInvocation) -> None:
        answers = {"EnumerateDevices": GLib.Variant("(ao)", ([],)),
                   "GetDisplayDevice": GLib.Variant("(o)", (_DEVICE_PATH,))}
        call.return_value(answers[method])
