"""A desktop's screen reader for the tests: a session bus with the real accessibility service, and
a listener that knows an application through it alone.

    with ScreenReader() as reader:
        reader.turn_on()
        with Program(command, os.environ | reader.env): ...
        reader.wait(event="window:activate")
        reader.tree("guide")
"""

import contextlib
import json
import os
import pathlib
import subprocess
import tempfile

import dbus
import dbus.bus

from support.bus import PROPERTIES, wait_until
from support.program import Program
from support.session_bus import SessionBus

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
SERVICE, PATH, STATUS = "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status"
LISTENER = pathlib.Path(__file__).with_name("at_spi_listener.py")


class ScreenReader:
    """Context manager: the service, at first without anybody who reads.

    bus: the session bus, whose environment an application needs.
    """

    def __init__(self):
        self.bus = SessionBus()
        self._stack = contextlib.ExitStack()
        self._client = None
        self._listener = None

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            stack.enter_context(self.bus)
            home = stack.enter_context(tempfile.TemporaryDirectory())
            environment = {"PATH": os.environ["PATH"], "HOME": home, "XDG_RUNTIME_DIR": home,
                           "GSETTINGS_BACKEND": "memory", "LANG": "C.UTF-8", **self.bus.env}
            stack.enter_context(_launcher(environment))
            self._client = dbus.bus.BusConnection(self.bus.address)
            stack.callback(self._client.close)
            wait_until(self._answers, "the accessibility service")
            self._listener = stack.enter_context(
                Program(["/usr/bin/python3", "-B", str(LISTENER)], environment))
            self._listener.next_line(lambda line: "ready" in line)
            self._stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._stack.close()

    @property
    def env(self):
        return self.bus.env

    def _answers(self):
        # It has its name before its object.
        with contextlib.suppress(dbus.DBusException):
            self._client.get_object(SERVICE, PATH, introspect=False).Get(
                STATUS, "IsEnabled", dbus_interface=PROPERTIES)
            return True
        return False

    def turn_on(self, is_on=True):
        """Tells the desktop whether a screen reader runs."""
        status = self._client.get_object(SERVICE, PATH, introspect=False)
        for name in ("ScreenReaderEnabled", "IsEnabled"):
            status.Set(STATUS, name, dbus.Boolean(is_on, variant_level=1),
                       dbus_interface=PROPERTIES)

    def wait(self, **wanted):
        """The next thing told that has these values; passes over those before it."""
        return json.loads(self._listener.next_line(
            lambda line: wanted.items() <= json.loads(line).items()))

    def tree(self, name):
        """What the application of that name shows; None when it is not on the readers' bus."""
        self._listener.say("tree")
        line = self._listener.next_line(lambda line: "tree" in json.loads(line))
        return next((application for application in json.loads(line)["tree"]
                     if application["name"] == name), None)

    def do(self, application, role, name):
        """Whether the action of an object was done, by its role and name."""
        self._listener.say(f"do {application} {role.replace(' ', '_')} {name}")
        return json.loads(self._listener.next_line(lambda line: "done" in json.loads(line)))["done"]

    def wait_tree(self, name, accept=bool):
        """The first that is accepted."""
        def accepted():
            tree = self.tree(name)
            return tree if accept(tree) else None

        return wait_until(accepted, f"what {name} shows")


@contextlib.contextmanager
def _launcher(environment):
    # It ends the readers' bus when it is asked to end, and leaves it behind when it is killed.
    launcher = subprocess.Popen(
        ["setpriv", "--pdeathsig", "TERM", LAUNCHER, "--launch-immediately"], env=environment,
        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        yield
    finally:
        launcher.terminate()
        launcher.wait()


def parts(tree, role):
    """All objects of a role in a tree, in reading order."""
    found = [tree] if tree["role"] == role else []
    return found + [part for child in tree["children"] for part in parts(child, role)]
