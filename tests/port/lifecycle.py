"""Runs the application that prints each callback of its life."""

import os
import pathlib
import select
import subprocess
import time

from support.bus import wait_until

PROGRAM = pathlib.Path(os.environ["BUILD_DIR"], "tests/port/lifecycle_app")
DEADLINE = 60.0
SANITIZERS = {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}
"""What a sanitized build is told; the rest of the environment is the test's alone."""


class App:
    """Context manager: one run. Whatever is left of it ends with the context.

    lines: what the application has printed so far.
    """

    def __init__(self, env, folder, *arguments, program=PROGRAM, does=""):
        self.lines = []
        self._seen = 0
        self._rest = b""
        self._log = folder / f"stderr-{time.monotonic_ns()}"
        with open(self._log, "wb") as log:
            self.process = subprocess.Popen(
                [program, *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log,
                env={**SANITIZERS, "HOME": str(folder), "XDG_RUNTIME_DIR": str(folder),
                     "LIFECYCLE": does, "PATH": os.environ["PATH"],
                     "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={folder}/no-bus", **env})

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()

    @property
    def log(self):
        return self._log.read_text(errors="replace")

    def port_lines(self):
        """The port's own log lines, without their time."""
        return [line[13:] for line in self.log.splitlines() if " WATCH_PORT: " in line]

    def wait_for(self, line, deadline=DEADLINE):
        """Waits, for so many seconds, for a line after the one that was waited for last."""
        deadline += time.monotonic()
        while line not in self.lines[self._seen:]:
            assert self._read(deadline), f"no {line!r} in {self.lines}\n{self.log}"
        self._seen = self.lines.index(line, self._seen) + 1

    def wait_for_log(self, text):
        deadline = time.monotonic() + DEADLINE
        while text not in self.log:
            assert time.monotonic() < deadline, f"no {text!r} in {self.log}"
            time.sleep(0.005)

    def tell(self, word):
        """Returns when the application has done it; what comes of it may take longer."""
        self.process.stdin.write(word.encode() + b"\n")
        self.process.stdin.flush()
        self.wait_for("did " + word)

    def ask(self, word):
        """Returns what the application says to it."""
        self.tell(word)
        return self.lines[self._seen - 2]

    def end(self):
        """Waits for the end; returns the exit status and all lines."""
        deadline = time.monotonic() + DEADLINE
        while self._read(deadline):
            pass
        return self.process.wait(timeout=DEADLINE), self.lines

    def _read(self, deadline):
        left = max(0.0, deadline - time.monotonic())
        if not select.select([self.process.stdout], [], [], left)[0]:
            return False
        data = os.read(self.process.stdout.fileno(), 4096)
        *whole, self._rest = (self._rest + data).split(b"\n")
        self.lines += [line.decode() for line in whole]
        return bool(data)


def wait_until_active(display, app):
    window = window_of(display, app)
    wait_until(lambda: display.xdotool("getactivewindow") == [window], "the active window")


def window_of(display, app):
    """The application's window, as xdotool names it."""
    return display.xdotool("search", "--all", "--pid", app.process.pid, "--name",
                           "^lifecycle-app$")[-1]
