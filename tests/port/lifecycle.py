"""Runs the application that prints each callback of its life."""

import os
import pathlib
import subprocess

from support.bus import wait_until
from support.program import DEADLINE_S, Program

PROGRAM = pathlib.Path(os.environ["BUILD_DIR"], "tests/port/lifecycle_app")
PSELECT = {"x86_64": "270", "aarch64": "72"}
"""The number of the system call pselect6; the main loop waits in it."""

SANITIZERS = {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}
"""The options of the sanitizers; the rest of the environment is the test's alone."""


class App(Program):
    """One run of it."""

    def __init__(self, env, folder, *arguments, program=PROGRAM, does=""):
        super().__init__([program, *arguments], {
            **SANITIZERS, "HOME": str(folder), "XDG_RUNTIME_DIR": str(folder), "LIFECYCLE": does,
            "PATH": os.environ["PATH"], "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={folder}/no-bus",
            **env})

    def port_lines(self):
        """The port's own log lines, without their time."""
        return [line[13:] for line in self.log.splitlines() if " WATCH_PORT: " in line]

    def wait_for(self, line, deadline=DEADLINE_S):
        """Waits, for so many seconds, for a line after the one that was waited for last."""
        self.next_line(lambda said: said == line, deadline)

    def wait_for_log(self, text):
        wait_until(lambda: text in self.log, f"{text!r} in the log")

    def tell(self, word):
        """Returns when the application has done it; what comes of it may take longer."""
        self.say(word)
        self.wait_for("did " + word)

    def ask(self, word):
        """Returns what the application says to it."""
        self.tell(word)
        return self.lines[self._seen - 2]


def compile_theme(folder, source):
    """Returns the theme's file, which the application takes as THEME."""
    theme = folder / "theme.edj"
    theme.with_suffix(".edc").write_text(source)
    subprocess.run(["edje_cc", theme.with_suffix(".edc"), theme], check=True)
    return str(theme)


def wait_until_still(app):
    """Until the application waits for events alone, without a timer."""
    def sleeps_without_end():
        # Number and arguments of the call that the loop sleeps in; the fifth is its time limit.
        call = pathlib.Path(f"/proc/{app.process.pid}/syscall").read_text().split()
        return call[0] == PSELECT[os.uname().machine] and int(call[5], 16) == 0

    wait_until(sleeps_without_end, "an application that does not wake by itself")


def wait_until_active(display, app):
    window = window_of(display, app)
    wait_until(lambda: display.xdotool("getactivewindow") == [window], "the active window")


def window_of(display, app):
    """The application's window, as xdotool names it."""
    return display.xdotool("search", "--all", "--pid", app.process.pid, "--name",
                           "^lifecycle-app$")[-1]
