"""A connection to a message bus."""

from __future__ import annotations

import os
import select
import socket
import time

from qivo_watch.command.bus import wire

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Callable

_DAEMON, _DAEMON_PATH = "org.freedesktop.DBus", "/org/freedesktop/DBus"


class BusGone(Exception):
    """There is no bus, or it has closed the connection."""


class CallError(Exception):
    """The peer has answered with an error: its name and its text."""

    def __init__(self, name: str, text: str):
        super().__init__(text)
        self.name = name


class Connection:
    """Connects when it is made; ON_SIGNAL gets each signal that was asked for, while the
    caller waits.

    Each method raises BusGone when the bus has gone, and TimeoutError when it does not take or
    answer anything for SECONDS.
    """

    def __init__(self, path: str, seconds: float, on_signal: Callable[[wire.Message], None]):
        self._on_signal = on_signal
        self._serial = 0
        self._answers: dict[int, wire.Message | None] = {}
        self._unread = b""
        self._seconds = seconds
        self._socket = socket.socket(socket.AF_UNIX)
        try:
            self._socket.settimeout(seconds)
            self._socket.connect(path)
            self._greet()
        except TimeoutError:
            raise
        except OSError:
            raise BusGone() from None

    def close(self) -> None:
        self._socket.close()

    def send(self, destination: str, path: str, interface: str, method: str,
             signature: str = "", *values: Any) -> int:
        """Calls a method; returns the number by which has_answer() and take() know the call."""
        self._serial += 1
        message = wire.call(self._serial, destination, path, interface, method, signature, *values)
        self._answers[self._serial] = None
        try:
            self._socket.sendall(message)
        except TimeoutError:
            raise
        except OSError:
            raise BusGone() from None
        return self._serial

    def forget(self, call: int) -> None:
        """Nobody takes its answer any more."""
        self._answers.pop(call, None)

    def has_answer(self, call: int) -> bool:
        return self._answers[call] is not None

    def take(self, call: int) -> wire.Message:
        """The answer to a call that has one; raises CallError."""
        answer = self._answers.pop(call)
        if answer.kind == wire.ERROR:
            raise CallError(answer.error, answer.values[0] if answer.signature[:1] == "s" else "")
        return answer

    def call(self, seconds: float, *message: Any) -> wire.Message:
        """send() and finish()."""
        return self.finish(self.send(*message), seconds)

    def finish(self, call: int, seconds: float) -> wire.Message:
        """Waits and takes; raises TimeoutError when no answer comes within SECONDS."""
        deadline = time.monotonic() + seconds
        while not self.has_answer(call):
            if not self.wait(deadline):
                self.forget(call)
                raise TimeoutError()
        return self.take(call)

    def wait(self, deadline: float) -> bool:
        """Reads what comes; returns false when nothing has come at the deadline
        (time.monotonic())."""
        while not self._read_message():
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self._socket], [], [], left)[0]:
                return False
            self._receive()
        return True

    def ask_daemon(self, *method: Any) -> None:
        self.call(self._seconds, _DAEMON, _DAEMON_PATH, _DAEMON, *method)

    def _greet(self) -> None:
        """All at once, as a bus on the same machine can refuse only by closing."""
        user = str(os.getuid()).encode().hex().encode()
        self._socket.sendall(b"\0AUTH EXTERNAL " + user + b"\r\nBEGIN\r\n")
        hello = self.send(_DAEMON, _DAEMON_PATH, _DAEMON, "Hello")
        while b"\r\n" not in self._unread:
            self._receive()
        greeting, _, self._unread = self._unread.partition(b"\r\n")
        if not greeting.startswith(b"OK "):
            raise BusGone()
        self.finish(hello, self._seconds)

    def _receive(self) -> None:
        try:
            piece = self._socket.recv(1 << 16)
        except TimeoutError:
            raise
        except OSError:
            piece = b""
        if not piece:
            raise BusGone()
        self._unread += piece

    def _read_message(self) -> bool:
        """Serves the first message that has come whole."""
        if len(self._unread) < wire.HEAD_SIZE:
            return False
        size = wire.size_of(self._unread[:wire.HEAD_SIZE])
        if len(self._unread) < size:
            return False
        data, self._unread = self._unread[:size], self._unread[size:]
        message = wire.read(data)
        if message.kind == wire.SIGNAL:
            # Anyone may send one to a client; what was asked for is sent to nobody in particular.
            if not message.destination:
                self._on_signal(message)
        elif message.answered in self._answers:
            self._answers[message.answered] = message
        return True
