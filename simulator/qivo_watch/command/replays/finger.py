"""The finger on a watch's screen, whoever moves it: the X server tells."""

import contextlib
import queue
import threading
import time
from typing import Any, Callable

import qivo_watch.packages  # noqa: F401 what follows needs it
from Xlib import X, error
from Xlib.ext import record
from Xlib.protocol import rq

from qivo_watch.command.bus.pulse import hang
from qivo_watch.command.screen.link import Link
from qivo_watch.errors import ScreenGone

_FINGER = 1
_ANY_DEVICE_EVENT = [{
    "core_requests": (0, 0), "core_replies": (0, 0), "ext_requests": (0, 0, 0, 0),
    "ext_replies": (0, 0, 0, 0), "delivered_events": (0, 0), "errors": (0, 0),
    "device_events": (X.ButtonPress, X.MotionNotify),
    "client_started": False, "client_died": False}]
END_S = 3.0


class Finger:
    """Follows each press, move and release until it is finished; take() calls ON_EVENT(KIND,
    MILLISECONDS, X, Y) for them. Times are those of time.monotonic()."""

    def __init__(self, name: str, on_event: Callable[[int, int, int, int], None]):
        self._on_event = on_event
        self._events: queue.SimpleQueue[tuple[int, int, int, int]] = queue.SimpleQueue()
        self._link, self._data = Link(name), Link(name).display
        with self._link.bounded():
            self._context = self._link.display.record_create_context(
                0, [record.AllClients], _ANY_DEVICE_EVENT)
            self._link.display.sync()
        self._thread = threading.Thread(target=self._listen, daemon=True)
        self._thread.start()

    def finish(self) -> None:
        """Waits for the last events, which can still be taken."""
        with contextlib.suppress(ScreenGone, OSError), self._link.bounded():
            self._link.display.record_disable_context(self._context)
            self._link.display.flush()
        self._thread.join(END_S)
        if self._thread.is_alive():
            raise hang("the X server")

    def take(self) -> None:
        """Reports what has come."""
        while not self._events.empty():
            self._on_event(*self._events.get())

    def _listen(self) -> None:
        try:
            self._data.record_enable_context(self._context, self._on_data)
            self._data.close()
        except (error.ConnectionClosedError, OSError):
            pass

    def _on_data(self, reply: Any) -> None:
        data = reply.data if reply.category == record.FromServer else b""
        while data:
            event, data = rq.EventField(None).parse_binary_value(
                data, self._data.display, None, None)
            is_move = event.type == X.MotionNotify
            if is_move or event.detail == _FINGER:
                now = round(time.monotonic() * 1000)
                # The server's clock is the machine's, in 32 bits.
                behind = (now - event.time) & 0xFFFFFFFF
                self._events.put((event.type, now - (behind if behind < 1 << 31 else 0),
                                  event.root_x, event.root_y))
