"""An application on a bus: application_service.py ADDRESS NAME LOG [refuse]

Offers org.freedesktop.Application as NAME and appends each call, as one line of JSON, to LOG.
With "refuse" it answers each call with an error.
"""

import json
import sys

import dbus.bus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

INTERFACE = "org.freedesktop.Application"


class Application(dbus.service.Object):
    def __init__(self, bus, name, log, refuses):
        super().__init__(bus, "/" + name.replace(".", "/").replace("-", "_"))
        self._log = log
        self._refuses = refuses

    def _take(self, *call):
        with open(self._log, "a", encoding="utf-8") as log:
            log.write(json.dumps(call, default=str, ensure_ascii=False) + "\n")
        if self._refuses:
            raise dbus.DBusException("not now", name="org.example.Error.Refused")

    @dbus.service.method(INTERFACE, in_signature="a{sv}")
    def Activate(self, platform_data):
        self._take("Activate", platform_data)

    @dbus.service.method(INTERFACE, in_signature="sava{sv}")
    def ActivateAction(self, action, parameter, platform_data):
        self._take("ActivateAction", action, parameter, platform_data)


def main(address, name, log, refuse=""):
    loop = GLib.MainLoop()
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.bus.BusConnection(address)
    bus.call_on_disconnection(lambda _: loop.quit())
    Application(bus, name, log, refuse == "refuse")
    bus.request_name(name)
    loop.run()


if __name__ == "__main__":
    main(*sys.argv[1:])
