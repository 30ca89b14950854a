"""The watch's screen for the keeper: windows, their answers, pixels."""

import itertools
from typing import Any, Callable

from gi.repository import GLib
from Xlib import X, Xatom, display, error
from Xlib.ext import damage
from Xlib.protocol import event

_READABLE = GLib.IOCondition.IN | GLib.IOCondition.HUP | GLib.IOCondition.ERR
_LONG = 32


class Screen:
    """A connection to the nested display. ON_NEWS is called after each batch of events."""

    def __init__(self, name: str, on_news: Callable[[], None]):
        self.display = display.Display(name)
        self.root = self.display.screen().root
        self._on_news = on_news
        self._serials = itertools.count(1)
        self._answered: set[int] = set()
        self._has_manager_answered = False
        self._is_drain_due = False
        self.root.change_attributes(
            event_mask=X.SubstructureNotifyMask | X.PropertyChangeMask)
        # The manager answers about windows that it does not manage.
        self._asked = self.root.create_window(0, 0, 1, 1, 0, X.CopyFromParent,
                                              event_mask=X.PropertyChangeMask)
        self.display.damage_query_version()
        self._damage = self.root.damage_create(damage.DamageReportNonEmpty)
        self.display.sync()
        GLib.unix_fd_add_full(GLib.PRIORITY_DEFAULT, self.display.fileno(), _READABLE,
                              self._on_readable)

    # Windows

    def stack(self) -> list[Any]:
        """The managed windows from the lowest to the topmost."""
        ids = self._property(self.root, "_NET_CLIENT_LIST_STACKING", Xatom.WINDOW) or []
        return [self.display.create_resource_object("window", number) for number in ids]

    def process_of(self, window: Any) -> int:
        """The process of a window; 0 if unknown."""
        found = self._property(window, "_NET_WM_PID", Xatom.CARDINAL)
        return found[0] if found else 0

    def top_process(self) -> int:
        stack = self.stack()
        return self.process_of(stack[-1]) if stack else 0

    def window_of(self, process: int) -> Any:
        """The topmost window of a process, or None."""
        return next((window for window in reversed(self.stack())
                     if self.process_of(window) == process), None)

    # Round trips

    def ping(self, window: Any) -> int:
        """Pings a window, which answers in the order of its events; returns a number for
        has_answered(). 0: the window does not support pings."""
        ping = self.display.get_atom("_NET_WM_PING")
        protocols = self._property(window, "WM_PROTOCOLS", Xatom.ATOM) or []
        if ping not in protocols:
            return 0
        serial = next(self._serials)
        self._send(window, "WM_PROTOCOLS", [ping, serial, window.id, 0, 0], window, 0)
        return serial

    def has_answered(self, serial: int) -> bool:
        self._drain()
        return serial == 0 or serial in self._answered

    def ask_manager(self) -> None:
        """Pings the window manager; manager_answered() says whether it has answered."""
        self._has_manager_answered = False
        self._send(self._asked, "_NET_REQUEST_FRAME_EXTENTS", [0] * 5, self.root,
                   X.SubstructureRedirectMask | X.SubstructureNotifyMask)

    def manager_answered(self) -> bool:
        self._drain()
        return self._has_manager_answered

    # Pixels

    def is_black(self) -> bool:
        """Whether nothing at all is lit."""
        size = self.root.get_geometry()
        image = self.root.get_image(0, 0, size.width, size.height, X.ZPixmap, 0xffffff)
        self._drain_soon()
        return not any(image.data[place::4].strip(b"\0") for place in (0, 1, 2))

    # Events

    def _property(self, window: Any, name: str, kind: int) -> Any:
        try:
            found = window.get_full_property(self.display.get_atom(name), kind)
        except error.BadWindow:
            return None
        finally:
            self._drain_soon()
        return found.value if found else None

    def _send(self, window: Any, kind: str, data: list[int], to: Any, mask: int) -> None:
        message = event.ClientMessage(window=window, client_type=self.display.get_atom(kind),
                                      data=(_LONG, data))
        to.send_event(message, event_mask=mask, onerror=error.CatchError(error.BadWindow))
        self.display.flush()

    def _on_readable(self, _fd: int, _condition: GLib.IOCondition) -> bool:
        try:
            self._drain()
        except (error.ConnectionClosedError, OSError):
            return False  # The server has gone; its end is reported elsewhere.
        self._on_news()
        return True

    def _drain_soon(self) -> None:
        """A reply may have brought events, for which the socket is no longer readable."""
        if not self._is_drain_due:
            self._is_drain_due = True
            GLib.idle_add(self._drain_later)

    def _drain_later(self) -> bool:
        self._is_drain_due = False
        try:
            self._drain()
        except (error.ConnectionClosedError, OSError):
            return False
        self._on_news()
        return False

    def _drain(self) -> None:
        while self.display.pending_events():
            self._take(self.display.next_event())

    def _take(self, news: Any) -> None:
        if news.type == X.ClientMessage and news.data[0] == _LONG:
            if news.data[1][0] == self.display.get_atom("_NET_WM_PING"):
                self._answered.add(news.data[1][1])
        elif news.type == X.PropertyNotify and news.window.id == self._asked.id:
            self._has_manager_answered = True
        elif news.type == self.display.extension_event.DamageNotify:
            self.display.damage_subtract(self._damage, X.NONE, X.NONE)
            self.display.flush()
