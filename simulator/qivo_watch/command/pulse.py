"""Whether the peers of a waiting command still answer, and which part of a watch hangs.

A busy peer is not silent: a keeper that turns the bezel for minutes answers meanwhile.
"""

import socket
import struct
from typing import Any, Callable, NamedTuple

from gi.repository import Gio, GLib

from qivo_watch.bus import PROPERTIES
from qivo_watch.errors import WatchError
from qivo_watch.state import Folder

INTERVAL_MS = 500
SILENCE_MS = 2700
"""How long a peer may owe the answer to a ping."""

PROBE_S = 0.7

_X_GREETING = b"l\0" + struct.pack("<5H", 11, 0, 0, 0, 0)
_BUS_GREETING = b"\0AUTH\r\n"


class Peer(NamedTuple):
    """An interface on the watch's bus, and what users call its owner."""

    label: str
    name: str
    path: str
    interface: str


class Pulse:
    """Pings a peer on the bus until stopped or the peer is silent; ON_NEWS is called for each
    answer, and for the first that does not come.

    A peer that is gone is not silent: its callers get an error.
    """

    def __init__(self, connection: Gio.DBusConnection, peer: Peer,
                 on_news: Callable[[], None]):
        self.is_silent = False
        self._connection = connection
        self._peer = peer
        self._on_news = on_news
        self._end = Gio.Cancellable()
        self._timer = 0
        self._wait()

    def stop(self) -> None:
        self._end.cancel()
        if self._timer:
            GLib.source_remove(self._timer)

    def _wait(self) -> None:
        self._timer = GLib.timeout_add(INTERVAL_MS, self._ping)

    def _ping(self) -> bool:
        self._timer = 0
        peer = self._peer
        # The peer's main loop reads properties; its bus thread would answer a mere Ping.
        self._connection.call(peer.name, peer.path, PROPERTIES, "GetAll",
                              GLib.Variant("(s)", (peer.interface,)), None,
                              Gio.DBusCallFlags.NO_AUTO_START, SILENCE_MS, self._end,
                              self._on_answer)
        return False

    def _on_answer(self, connection: Gio.DBusConnection, result: Any) -> None:
        try:
            connection.call_finish(result)
        except GLib.Error as error:
            self.is_silent = error.matches(Gio.io_error_quark(), Gio.IOErrorEnum.TIMED_OUT)
        if self._end.is_cancelled():
            return
        if not self.is_silent:
            self._wait()
        self._on_news()


def hang(part: str) -> WatchError:
    """The message of a command that gives up."""
    return WatchError(f"the watch hangs: {part} does not answer (qivo-watch stop ends it)")


def is_server_silent(display: str) -> bool:
    """Whether an X server of this machine (":1") ignores a client."""
    return _is_silent(f"/tmp/.X11-unix/X{display.removeprefix(':')}", _X_GREETING)


def silent_part(folder: Folder, peer: Peer) -> str:
    """What hangs when a peer does not answer: the peer itself, or a server that it needs."""
    if _is_silent(str(folder.bus_path), _BUS_GREETING):
        return "the message bus"
    if folder.display and is_server_silent(folder.display):
        return "the X server"
    return peer.label


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
