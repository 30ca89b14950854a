"""Whether the peers of a waiting command still answer, and which part of a watch hangs.

A busy peer is not silent: a keeper that turns the bezel for minutes answers meanwhile.
"""

from __future__ import annotations

import socket
import struct
import time

from qivo_watch.bus import PROPERTIES
from qivo_watch.command.bus.connection import CallError, Connection
from qivo_watch.errors import WatchGone

TYPE_CHECKING = False
if TYPE_CHECKING:
    from qivo_watch.state import Folder

INTERVAL_S = 0.5
SILENCE_S = 2.7
"""How long a peer may owe the answer to a ping."""

PROBE_S = 0.7

_X_GREETING = b"l\0" + struct.pack("<5H", 11, 0, 0, 0, 0)
_BUS_GREETING = b"\0AUTH\r\n"


class Peer:
    """An interface on the watch's bus, and what users call its owner."""

    def __init__(self, label: str, name: str, path: str, interface: str):
        self.label = label
        self.name = name
        self.path = path
        self.interface = interface


class Pulse:
    """Pings a peer on the bus; DUE is when is_silent() should be asked next (time.monotonic()).

    A peer that is gone is not silent: its callers get an error.
    """

    def __init__(self, connection: Connection, peer: Peer):
        self.due = time.monotonic() + INTERVAL_S
        self._connection = connection
        self._peer = peer
        self._ping: int | None = None

    def stop(self) -> None:
        if self._ping is not None:
            self._connection.forget(self._ping)

    def is_silent(self) -> bool:
        now = time.monotonic()
        if self._ping is not None and self._connection.has_answer(self._ping):
            try:
                self._connection.take(self._ping)
            except CallError:
                pass  # It has gone.
            self._ping, self.due = None, now + INTERVAL_S
        if now < self.due:
            return False
        if self._ping is not None:
            return True
        # The peer's main loop reads properties; its bus thread would answer a mere Ping.
        self._ping = self._connection.send(self._peer.name, self._peer.path, PROPERTIES, "GetAll",
                                           "s", self._peer.interface)
        self.due = now + SILENCE_S
        return False


def hang(part: str) -> WatchGone:
    """The message of a command that gives up."""
    return WatchGone(f"the watch hangs: {part} does not answer (qivo-watch stop ends it)")


def is_server_silent(display: str) -> bool:
    """Whether an X server of this machine (":1") ignores a client."""
    return _is_silent(f"/tmp/.X11-unix/X{display.removeprefix(':')}", _X_GREETING)


def silent_part(folder: Folder, label: str) -> str:
    """What hangs when a peer does not answer: the peer itself, or a server that it needs. LABEL is
    what users call the peer."""
    if _is_silent(str(folder.bus_path), _BUS_GREETING):
        return "the message bus"
    if folder.display and is_server_silent(folder.display):
        return "the X server"
    return label


def _is_silent(path: str, greeting: bytes) -> bool:
    """Whether nothing comes back from a socket. Refusing, or not existing, is not silence."""
    try:
        with socket.socket(socket.AF_UNIX) as peer:
            peer.settimeout(PROBE_S)
            peer.connect(path)
            peer.sendall(greeting)
            peer.recv(1)
    except (TimeoutError, BlockingIOError):
        return True
    except OSError:
        pass
    return False
