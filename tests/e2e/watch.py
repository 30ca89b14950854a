"""A whole watch for one test: screen, home, charger, language, and the hands that use it."""

import contextlib
import os
import subprocess
import tempfile
import time

from e2e.app import DEADLINE, App
from e2e.picture import Picture
from support.bus import SystemBus
from support.display import Display

WHEEL_UP, WHEEL_DOWN = "4", "5"

STILL = 0.5
"""Seconds without a change after which an animation is taken to be over; frames come at 60 Hz."""


class Watch:
    """Context manager: a running watch with its home on the screen, not charging, in English.

    Without its home, and with another window manager, it is a bare desktop.
    """

    def __init__(self, manager="openbox", has_home=True):
        self._stack = contextlib.ExitStack()
        self._manager = manager
        self._has_home = has_home
        self.display = None
        self.bus = None
        self.environment = None

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            self.display = stack.enter_context(Display(manager=self._manager))
            self.bus = stack.enter_context(SystemBus())
            self.bus.start_upower(charging=False)
            self.bus.start_locale(["LANG=en_US.UTF-8"])
            home = stack.enter_context(tempfile.TemporaryDirectory())
            self.environment = bare_environment(home) | self.display.env | self.bus.env
            self._stack = stack.pop_all()
        if self._has_home:
            self.open_window("home")
        return self

    def __exit__(self, *_):
        self._stack.close()

    def launch(self, *arguments, **options):
        """Starts the guide and returns when its first frame is drawn."""
        app = self._stack.enter_context(App(self.environment, arguments, **options))
        app.wait_log("WATCH_PORT", "first frame")
        app.rewind()
        return app

    def open_window(self, name):
        """Another program's window comes up and fills the screen."""
        window = subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", "xlogo", "-name", name], env=self.environment,
            stderr=subprocess.DEVNULL)
        self._stack.callback(window.wait)
        self._stack.callback(window.kill)
        wait_until(lambda: self._is_on_screen(name), f"the window {name}")

    # Hands

    def turn_bezel(self, detents):
        """Clockwise, or counter-clockwise when negative."""
        self._xdotool("mousemove", "180", "180", "click", "--repeat", str(abs(detents)),
                      "--delay", "1", WHEEL_DOWN if detents > 0 else WHEEL_UP)

    def press_key(self, name):
        self._xdotool("key", name)

    def press_back(self):
        self.press_key("XF86Back")

    def press_power(self):
        self.press_key("XF86PowerOff")

    def close_window(self):
        """As a window manager does for its user: asks the active window to go."""
        self.display.close_window(self.display.xdotool("getactivewindow")[0])

    def plug_charger(self):
        self.bus.set_charging(True)

    def unplug_charger(self):
        self.bus.set_charging(False)

    def set_language(self, name):
        self.bus.set_locale([f"LANG={name}.UTF-8"])

    # Eyes

    def picture(self):
        return Picture.of(self.display)

    def wait_picture(self, accept, what):
        """The first picture that accept() takes."""
        def accepted():
            picture = self.picture()
            return picture if accept(picture) else None

        return wait_until(accepted, what)

    def still_picture(self):
        """The picture when nothing moves any more: nothing has changed for STILL seconds."""
        seen = {"picture": None, "since": 0.0}

        def is_still(picture):
            if picture != seen["picture"]:
                seen.update(picture=picture, since=time.monotonic())
            return time.monotonic() - seen["since"] > STILL

        return self.wait_picture(is_still, "a picture that stays")

    def _is_on_screen(self, name):
        search = ["xdotool", "search", "--onlyvisible", "--classname", f"^{name}$"]
        return subprocess.run(search, env=self.environment, capture_output=True).returncode == 0

    def _xdotool(self, *arguments):
        subprocess.run(["xdotool", *arguments], check=True, env=self.environment,
                       stdout=subprocess.DEVNULL, timeout=DEADLINE)


def wait_until(condition, what):
    """The first true result of condition(), asked again and again until the deadline."""
    deadline = time.monotonic() + DEADLINE
    while time.monotonic() < deadline:
        result = condition()
        if result:
            return result
    raise AssertionError(f"never came: {what}")


def bare_environment(home):
    """A user with an empty home, no session bus, no language of his own."""
    kept = {key: value for key, value in os.environ.items()
            if key in ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS")}
    return kept | {"HOME": home, "XDG_RUNTIME_DIR": home, "LANG": "C.UTF-8"}
