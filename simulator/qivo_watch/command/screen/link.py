"""A connection to a watch's X server, which may hang."""

import contextlib
import socket
import threading
from typing import Iterator

import qivo_watch.packages  # noqa: F401 what follows needs it
from Xlib import display, error

from qivo_watch.command.bus.pulse import hang
from qivo_watch.errors import ScreenGone

ANSWER_S = 3.0
"""Seconds for the server to answer."""


class Link:
    """Connects when it is made; fails as bounded() does."""

    def __init__(self, name: str):
        self._has_hung = False
        self.display = _opened(name)

    @contextlib.contextmanager
    def bounded(self) -> Iterator[None]:
        """Closes the connection to a server that does not answer what is asked within, whichever
        thread waits for it, and fails then; raises ScreenGone when the server has ended."""
        timer = threading.Timer(ANSWER_S, self._hang_up)
        try:
            timer.start()
            yield
        except error.ConnectionClosedError:
            raise (hang("the X server") if self._has_hung else ScreenGone()) from None
        finally:
            timer.cancel()

    def _hang_up(self) -> None:
        self._has_hung = True
        # Closed already, if an interrupted command's last wait was still timed.
        with contextlib.suppress(OSError):
            self.display.display.socket.shutdown(socket.SHUT_RDWR)


def _opened(name: str) -> display.Display:
    """The connection cannot be hung up on while it is being made."""
    made: list[display.Display] = []

    def connect() -> None:
        with contextlib.suppress(error.DisplayConnectionError, error.ConnectionClosedError):
            made.append(display.Display(name))
    connecting = threading.Thread(target=connect, daemon=True)
    connecting.start()
    connecting.join(ANSWER_S)
    if made:
        return made[0]
    raise hang("the X server") if connecting.is_alive() else ScreenGone()
