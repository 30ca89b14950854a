"""A private system bus with mocked system services, for tests that drive processes.

    with SystemBus() as bus:
        bus.start_upower(charging=True)
        subprocess.Popen([...], env={**os.environ, **bus.env})
        bus.set_charging(False)

Every method returns when its effect can be seen on the bus. Nothing outlives the
"with" block, nor a test process that is killed.
"""

import contextlib
import json
import os
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import dbus
import dbus.bus
import dbus.lowlevel

SERVICES = Path(__file__).with_name("services")
"""The mocks that are not the mocker's own."""

UPOWER = "org.freedesktop.UPower"
UPOWER_DEVICE = "org.freedesktop.UPower.Device"
DISPLAY_DEVICE = "/org/freedesktop/UPower/devices/DisplayDevice"
LOCALE = "org.freedesktop.locale1"
LOCALE_PATH = "/org/freedesktop/locale1"
TIMEDATE = "org.freedesktop.timedate1"
TIMEDATE_PATH = "/org/freedesktop/timedate1"
PROPERTIES = "org.freedesktop.DBus.Properties"
MOCK = "org.freedesktop.DBus.Mock"

STATE_CHARGING = 1
STATE_DISCHARGING = 2

DEADLINE_S = 60
_DIES_WITH_PARENT = ["setpriv", "--pdeathsig", "KILL"]

_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:path={directory}/bus</listen>
  <servicedir>{directory}/services</servicedir>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
  <limit name="max_replies_per_connection">50000</limit>
</busconfig>
"""

_FLOOD = """
import dbus.lowlevel
signal = dbus.lowlevel.SignalMessage(self.path, *args[1:3])
signal.append(*args[4], signature=args[3])
for _ in range(args[0]):
    for connection, *_ in self.locations:
        connection.send_message(signal)
"""
"""A method of a mock."""


def wait_until(condition, what):
    """Returns the first true result of condition(); fails after DEADLINE_S seconds."""
    deadline = time.monotonic() + DEADLINE_S
    while time.monotonic() < deadline:
        result = condition()
        if result:
            return result
        time.sleep(0.005)
    raise TimeoutError(f"not within {DEADLINE_S} s: {what}")


@contextlib.contextmanager
def _stopped(process):
    process.send_signal(signal.SIGSTOP)
    os.waitid(os.P_PID, process.pid, os.WSTOPPED)
    yield
    process.send_signal(signal.SIGCONT)


class Bus:
    """A private dbus-daemon; an environment variable leads clients to it."""

    variable = None

    def __init__(self):
        self._scratch = None
        self._daemon = None
        self._services = {}
        self._client = None
        self.address = None

    def __enter__(self):
        self._scratch = tempfile.TemporaryDirectory(prefix="bus-")
        directory = Path(self._scratch.name)
        (directory / "services").mkdir()
        configuration = directory / "bus.conf"
        configuration.write_text(_CONFIGURATION.format(directory=directory))
        self._daemon = subprocess.Popen(
            [*_DIES_WITH_PARENT, "dbus-daemon", f"--config-file={configuration}", "--nofork",
             "--nopidfile", "--print-address"], stdout=subprocess.PIPE, text=True)
        self.address = self._daemon.stdout.readline().strip()
        self._client = dbus.bus.BusConnection(self.address)
        return self

    def __exit__(self, *_):
        for name in list(self._services):
            self._stop(name)
        self.die()
        self._daemon.stdout.close()
        self._scratch.cleanup()

    @property
    def env(self):
        """What a process needs in its environment to come to this bus."""
        return {self.variable: self.address}

    def die(self):
        """The bus goes away under its clients, and the services with it."""
        if self._client:
            self._client.close()
            self._client = None
        self._daemon.kill()
        self._daemon.wait()
        for service in self._services.values():
            service.kill()
            service.wait()
        self._services.clear()

    @contextlib.contextmanager
    def held(self):
        """Within the block the bus reads nothing and answers nobody."""
        with _stopped(self._daemon):
            yield

    def service_held(self, name):
        """Within the block a mocked service answers nobody."""
        return _stopped(self._services[name])

    def has_owner(self, name):
        return self._client.name_has_owner(name)

    def has_client(self, process):
        """Whether a process, by its id, is connected."""
        return self.client_of(process) is not None

    def client_of(self, process):
        """The unique name of a process, by its id; None when it is not connected."""
        def process_of(name):
            try:
                return self._client.call_blocking(
                    dbus.BUS_DAEMON_NAME, dbus.BUS_DAEMON_PATH, dbus.BUS_DAEMON_IFACE,
                    "GetConnectionUnixProcessID", "s", (name,))
            except dbus.DBusException:
                return None
        return next((name for name in self._client.list_names()
                     if name.startswith(":") and process_of(name) == process), None)

    def matches(self, name):
        """The match rules by which clients listen to a service."""
        rules = self._client.call_blocking(
            dbus.BUS_DAEMON_NAME, dbus.BUS_DAEMON_PATH, "org.freedesktop.DBus.Debug.Stats",
            "GetAllMatchRules", "", ())
        return [rule for client in rules.values() for rule in client if f"'{name}'" in rule]

    def set_property(self, name, path, interface, key, value):
        """Sets a mocked property; the mock emits PropertiesChanged."""
        self._client.get_object(name, path, introspect=False).Set(
            interface, key, value, dbus_interface=PROPERTIES)

    def emit(self, name, path, interface, member, signature, arguments):
        """Has the mocked service send any signal, however wrong."""
        self._client.get_object(name, path, introspect=False).EmitSignal(
            interface, member, signature, dbus.Array(arguments, signature="v"),
            dbus_interface=MOCK)

    def flood(self, count, name, path, interface, member, signature, arguments):
        """Has the mocked service send the same signal many times."""
        mock = self._client.get_object(name, path, introspect=False)
        mock.AddMethod(MOCK, "Flood", "usssav", "", _FLOOD, dbus_interface=MOCK)
        mock.Flood(count, interface, member, signature, dbus.Array(arguments, signature="v"),
                   dbus_interface=MOCK)

    def emit_as_stranger(self, path, interface, member, signature, arguments):
        """Sends a signal from a connection that owns no name."""
        message = dbus.lowlevel.SignalMessage(path, interface, member)
        message.append(*arguments, signature=signature)
        self._client.send_message(message)
        self._client.flush()

    def add_activatable(self, name, command):
        """Lets the bus start `command` when a message is sent to `name`."""
        service = Path(self._scratch.name) / "services" / f"{name}.service"
        service.write_text(f"[D-BUS Service]\nName={name}\nExec={command}\n")
        self._client.call_blocking(dbus.BUS_DAEMON_NAME, dbus.BUS_DAEMON_PATH,
                                   dbus.BUS_DAEMON_IFACE, "ReloadConfig", "", ())

    def _start(self, name, template, **parameters):
        self._services[name] = subprocess.Popen(
            [*_DIES_WITH_PARENT, sys.executable, "-m", "dbusmock", "--template", template,
             "--parameters", json.dumps(parameters)],
            env={**os.environ, **self.env}, stdout=subprocess.DEVNULL)
        wait_until(lambda: self.has_owner(name), f"{name} on the bus")

    def _stop(self, name):
        service = self._services.pop(name)
        service.send_signal(signal.SIGTERM)
        service.wait()
        wait_until(lambda: not self.has_owner(name), f"{name} gone from the bus")


class SystemBus(Bus):
    """A private dbus-daemon that clients take for the system bus."""

    variable = "DBUS_SYSTEM_BUS_ADDRESS"

    # The charger

    def start_upower(self, charging=False):
        self._start(UPOWER, "upower")
        self.set_charging(charging)

    def stop_upower(self):
        self._stop(UPOWER)

    def set_charging(self, charging):
        self.set_battery_state(STATE_CHARGING if charging else STATE_DISCHARGING)

    def set_battery_state(self, state):
        """UPower's State: 0 unknown, 1 charging, 2 discharging, 4 full, 5 pending charge."""
        self.set_property(UPOWER, DISPLAY_DEVICE, UPOWER_DEVICE, "State", dbus.UInt32(state))

    # The language

    def start_locale(self, entries=("LANG=C.UTF-8",)):
        """entries as localed has them: ["LANG=ko_KR.UTF-8", "LC_TIME=de_DE.UTF-8"]"""
        self._start(LOCALE, str(SERVICES / "locale1.py"))
        self.set_locale(entries)

    def stop_locale(self):
        self._stop(LOCALE)

    def set_locale(self, entries):
        self.set_property(LOCALE, LOCALE_PATH, LOCALE, "Locale",
                          dbus.Array(entries, signature="s"))

    # The clock

    def start_timedate(self, timezone="Etc/UTC"):
        self._start(TIMEDATE, "timedated", Timezone=timezone)

    def stop_timedate(self):
        self._stop(TIMEDATE)

    def set_timezone(self, timezone):
        self.set_property(TIMEDATE, TIMEDATE_PATH, TIMEDATE, "Timezone", timezone)
