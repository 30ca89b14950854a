"""Applications with an id, each installed in a folder of its own, on one private session bus."""

import contextlib
import os
import pathlib
import shutil
import subprocess

import dbus.lowlevel

from port.lifecycle import App
from support.bus import SystemBus

LAUNCH = "org.watchport.Launch1"
PROGRAM = pathlib.Path(os.environ["BUILD_DIR"], "tests/port/launch_app")


class Apps:
    """Context manager: the bus, and whatever is started on it."""

    def __init__(self, folder, program=PROGRAM):
        self.folder = folder
        self._program = program
        self._stack = contextlib.ExitStack()
        self.bus = None

    def __enter__(self):
        self.bus = self._stack.enter_context(SystemBus())
        self.env = {"ELM_ENGINE": "buffer", "DBUS_SESSION_BUS_ADDRESS": self.bus.address}
        return self

    def __exit__(self, *_):
        self._stack.close()

    def install(self, name):
        """Returns the program, whose id is id_of(name)."""
        program = self.folder / name / "bin" / name
        resources = self.folder / name / "share" / name
        if not program.exists():
            program.parent.mkdir(parents=True)
            resources.mkdir(parents=True)
            shutil.copy(self._program, program)
            (resources / f"{name}.id").write_text(id_of(name) + "\n")
        return program

    def start(self, name, *arguments, env=None):
        """Starts a process; there may be several of one name."""
        return self._stack.enter_context(
            App({**self.env, **(env or {})}, self.folder, *arguments, program=self.install(name)))

    def run(self, name):
        """Starts an application and returns when it has its first request."""
        app = self.start(name)
        app.wait_for("app_control default")
        return app

    def let_bus_start(self, name):
        """Lets the bus start the application, which says nothing to the test then."""
        self.bus.add_activatable(
            id_of(name),
            f"/usr/bin/env ELM_ENGINE=buffer HOME={self.folder} "
            f"'DBUS_SESSION_BUS_ADDRESS={self.bus.address}' {self.install(name)} --service")

    def client(self, *command):
        """Runs a foreign client of the bus."""
        return subprocess.run(command, env={**os.environ, **self.env}, capture_output=True,
                              text=True, timeout=40)

    def call(self, name, method, *arguments):
        return self.client("gdbus", "call", "--session", "--dest", id_of(name), "--object-path",
                           path_of(name), "--method", method, *arguments)


def id_of(name):
    return f"org.example.{name}-app"


def path_of(name):
    return f"/org/example/{name}_app"


def requests(app):
    """What the application has said of its requests."""
    return [line for line in app.lines if line.startswith("app_control ")]


def send_launch(client, name, operation, extra_data=None):
    """Sends a request for a reply, which is not waited for; returns its serial number."""
    message = dbus.lowlevel.MethodCallMessage(id_of(name), path_of(name), LAUNCH, "Launch")
    message.append(operation, extra_data or {}, signature="sa{ss}")
    serial = client.send_message(message)
    client.flush()
    return serial
