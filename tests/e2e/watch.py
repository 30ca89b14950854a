"""A watch for the guide: the desk watch, or a bare desktop, and the hands that use it."""

import contextlib
import os
import subprocess
import tempfile

from e2e.app import App
from e2e.picture import Picture
from support.bus import SystemBus, wait_until
from support.display import Display


class Desktop:
    """Context manager: a window manager on a screen, and no session bus. The guide is a program
    of its own here, not one that a watch has launched."""

    def __init__(self, manager):
        self._stack = contextlib.ExitStack()
        self._manager = manager
        self._display = None
        self.environment = None

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            self.enter(stack)
            self._stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._stack.close()

    def enter(self, stack):
        self._display = stack.enter_context(Display(manager=self._manager))
        bus = stack.enter_context(SystemBus())
        home = stack.enter_context(tempfile.TemporaryDirectory())
        self.environment = bare_environment(home) | self._display.env | bus.env

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
        wait_until(lambda: self.is_on_screen(name), f"the window {name}")

    def is_on_screen(self, name):
        return self.xdotool("search", "--onlyvisible", "--classname", f"^{name}$").returncode == 0

    def press_key(self, name):
        self.xdotool("key", name)

    def close_window(self):
        """As a window manager does for its user: asks the active window to go."""
        active = wait_until(lambda: self.xdotool("getactivewindow").stdout.split(),
                            "an active window")
        self._display.close_window(active[0].decode())

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.environment, capture_output=True)


class Watch(Desktop):
    """Context manager: a desk watch that runs, awake, not charging, in English."""

    def __init__(self, desk):
        super().__init__(None)
        self.desk = desk

    def enter(self, stack):
        status = self.desk.status()
        folder = status["folder"]
        self.environment = bare_environment(f"{folder}/home") | {
            "DISPLAY": status["display"], "XAUTHORITY": f"{folder}/Xauthority",
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={folder}/bus"}

    # Hands

    def turn_bezel(self, detents):
        """Clockwise, or counter-clockwise when negative."""
        self.desk.do("bezel", "cw" if detents > 0 else "ccw", abs(detents), "-i", 1)

    def press_back(self):
        self.desk.do("button", "click", "back")

    def press_power(self):
        """Only the key: on this watch the screen stays as it is."""
        self.press_key("XF86PowerOff")

    def plug_charger(self):
        self.desk.do("battery", "--charging")

    def unplug_charger(self):
        self.desk.do("battery", "--discharging")

    def set_language(self, name):
        self.desk.do("language", name)

    # Eyes

    def picture(self):
        return Picture.of(self.environment)

    def wait_picture(self, accept, what):
        """The first picture that accept() takes."""
        def accepted():
            picture = self.picture()
            return picture if accept(picture) else None

        return wait_until(accepted, what)

    def still_picture(self):
        """The picture when nothing moves any more."""
        self.desk.do("wait", "still")
        return self.picture()


def bare_environment(home):
    """A user with an empty home, no session bus, no language of his own."""
    kept = {key: value for key, value in os.environ.items()
            if key in ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS")}
    return kept | {"HOME": home, "XDG_RUNTIME_DIR": home, "LANG": "C.UTF-8"}
