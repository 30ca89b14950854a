"""Looks at a watch's screen: takes pictures, waits for a change or for stillness."""

import contextlib
import os
import pathlib
import select
import time

import qivo_watch.packages  # noqa: F401 what follows needs it
from PIL import Image
from Xlib import X, Xatom, error
from Xlib.ext import damage

from qivo_watch.command.bus.pulse import hang, is_server_silent
from qivo_watch.command.screen.link import Link

IDLE_S = 1.0
"""Seconds without news after which the server is asked whether it is still there."""

STILL_S = 0.5
"""Seconds without a change or a reported motion after which the screen counts as still; frames
come 60 times a second."""

_MOTION = "_WATCH_PORT_MOTION"
"""A property of the port's windows: 1 while anything in it moves, else 0."""


class Eye:
    """Looks at a watch's screen until it is closed. The server reports each change.

    Each method raises ScreenGone when the server has ended, and fails when it hangs.
    """

    def __init__(self, name: str, authority: pathlib.Path):
        os.environ["XAUTHORITY"] = str(authority)
        if is_server_silent(name):
            raise hang("the X server")
        self.seen: Image.Image | None = None
        self._link = Link(name)
        self._display = self._link.display
        with self._link.bounded():
            self._root = self._display.screen().root
            self.size = self._root.get_geometry().width
            self._display.damage_query_version()
            self._damage = self._root.damage_create(damage.DamageReportNonEmpty)
            self._display.sync()

    def close(self) -> None:
        with contextlib.suppress(error.ConnectionClosedError):
            self._display.close()

    def look(self) -> Image.Image:
        """The square screen as it is now, RGB."""
        with self._link.bounded():
            seen = self._root.get_image(0, 0, self.size, self.size, X.ZPixmap, 0xffffffff)
        return Image.frombytes("RGB", (self.size, self.size), seen.data, "raw", "BGRX")

    def wait_other(self, picture: Image.Image, deadline: float) -> Image.Image | None:
        """The first picture that is not this one; None: none came until the deadline
        (time.monotonic())."""
        while True:
            seen = self.look()
            if seen.tobytes() != picture.tobytes():
                return seen
            if not self._wait_news(deadline):
                return None

    def wait_still(self, deadline: float) -> bool:
        """Whether the screen is still before the deadline: for a while nothing on it changes, and
        the program on top reports no motion."""
        self._root.change_attributes(event_mask=X.PropertyChangeMask)
        picture = self.look()
        since = time.monotonic()
        while since + STILL_S <= deadline:
            is_moving = self._is_top_moving()
            if not self._wait_news(deadline if is_moving else since + STILL_S):
                return not is_moving
            other = self.look()
            if is_moving or other.tobytes() != picture.tobytes():
                picture, since = other, time.monotonic()
        return False

    def has_changed(self) -> bool:
        """Whether the screen is another one than at the last call, which is then SEEN, or the
        program on top reports a motion; does not wait."""
        is_moving = self._is_top_moving()
        if self.seen and not self._take_news() and not is_moving:
            return False
        before, self.seen = self.seen, self.look()
        return is_moving or before is None or before.tobytes() != self.seen.tobytes()

    def top_process(self) -> int:
        """The process of the topmost window; 0 if unknown."""
        return self._read_of_top("_NET_WM_PID")

    def _is_top_moving(self) -> bool:
        """Whether the topmost window reports a motion; the server reports its changes."""
        return self._read_of_top(_MOTION) == 1

    def _read_of_top(self, name: str) -> int:
        """A number that the topmost window has as a property; 0 if it has none."""
        with self._link.bounded():
            stack = self._root.get_full_property(
                self._display.get_atom("_NET_CLIENT_LIST_STACKING"), Xatom.WINDOW)
            if not stack or not stack.value:
                return 0
            top = self._display.create_resource_object("window", stack.value[-1])
            top.change_attributes(event_mask=X.PropertyChangeMask,
                                  onerror=error.CatchError(error.BadWindow))
            try:
                found = top.get_full_property(self._display.get_atom(name), Xatom.CARDINAL)
            except error.BadWindow:
                return 0
        return found.value[0] if found else 0

    def _wait_news(self, deadline: float) -> bool:
        while True:
            if self._take_news():
                return True
            left = deadline - time.monotonic()
            if left <= 0:
                return False
            if not select.select([self._display.fileno()], [], [], min(left, IDLE_S))[0]:
                with self._link.bounded():
                    self._display.sync()

    def _take_news(self) -> bool:
        with self._link.bounded():
            has_news = False
            while self._display.pending_events():
                has_news = True
                self._display.next_event()
            if has_news:
                self._display.damage_subtract(self._damage, X.NONE, X.NONE)
                self._display.flush()
        return has_news
