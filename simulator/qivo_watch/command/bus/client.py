"""A running watch, as a command sees it: calls on its bus, and its log."""

from __future__ import annotations

import contextlib
import time

from qivo_watch.bus import PATIENCE_S, PROPERTIES
from qivo_watch.command.bus.connection import BusGone, CallError, Connection
from qivo_watch.command.life import absence, ended, wait_ready
from qivo_watch.command.bus.pulse import Peer, Pulse, hang, silent_part
from qivo_watch.errors import WatchError, WatchGone
from qivo_watch.interface import BODY_INTERFACE, BODY_NAME, INTERFACE, NAME, PATH

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Callable, Iterator
    from qivo_watch.command.bus.wire import Message
    from qivo_watch.interface import Verb
    from qivo_watch.state import Folder

CONTROL = Peer("the keeper", NAME, PATH, INTERFACE)
BODY = Peer("the body", BODY_NAME, PATH, BODY_INTERFACE)

_GONE = ("org.freedesktop.DBus.Error.NoReply", "org.freedesktop.DBus.Error.ServiceUnknown",
         "org.freedesktop.DBus.Error.NameHasNoOwner")
_LAST_LINE = 2 ** 64 - 1
_LOG_RULE = (f"type='signal',sender='{NAME}',path='{PATH}',interface='{INTERFACE}',"
             "member='LogGrown'")


class Client:
    """Connects when it is made; if the watch is starting, once it is ready.

    Each method fails when the watch has ended, or when its peer hangs.
    """

    def __init__(self, folder: Folder):
        self.folder = folder
        self._log_count = 0
        wait_ready(folder)
        try:
            self.connection = Connection(str(folder.bus_path), PATIENCE_S, self._on_signal)
        except TimeoutError:
            raise hang("the message bus") from None
        except BusGone:
            raise WatchGone(absence(folder)) from None
        except CallError as error:
            raise WatchError(f"the message bus takes no more clients: {error}") from None

    def call(self, method: str, signature: str = "", *arguments: Any) -> tuple:
        """Calls the control interface; a refusal becomes a WatchError with its line."""
        return self._call(CONTROL, INTERFACE, method, signature, *arguments)

    def carry_out(self, verb: Verb, values: dict[str, Any]) -> None:
        """Calls a verb; the keeper has defaults for what is not in VALUES."""
        signature = "".join(argument.kind.signature for argument in verb.needed)
        arguments: list[Any] = [values[argument.name] for argument in verb.needed]
        if verb.optional:
            signature += "a{sv}"
            arguments.append({argument.name: (argument.kind.signature, values[argument.name])
                              for argument in verb.optional if argument.name in values})
        self.call(verb.method, signature, *arguments)

    def call_body(self, method: str, signature: str, *arguments: Any) -> tuple:
        return self._call(BODY, BODY.interface, method, signature, *arguments)

    def get(self, name: str) -> Any:
        return self._call(CONTROL, PROPERTIES, "Get", "ss", INTERFACE, name)[0]

    def status(self) -> dict[str, Any]:
        import json  # pylint: disable=import-outside-toplevel  # most verbs need none
        return json.loads(self.call("Status")[0])

    def log_count(self) -> int:
        """How many lines the log has had so far."""
        return self.call("ReadLog", "t", _LAST_LINE)[0]

    def log_lines(self, place: int = 0) -> Iterator[str]:
        """The lines of the log as it is now, from number PLACE on."""
        last = self.log_count()
        while place < last:
            _, first, lines = self.call("ReadLog", "t", place)
            yield from lines[:max(0, last - first)]
            place = first + len(lines)

    def wait_log(self, start: int, accept: Callable[[str], bool],
                 seconds: float | None) -> int | None:
        """Calls ACCEPT with each line from number START on until it returns true; returns the next
        number. None: no line was accepted in time (SECONDS None: no limit)."""
        deadline = None if seconds is None else time.monotonic() + seconds
        place = start
        with self._following():
            while True:
                count, first, lines = self.call("ReadLog", "t", place)
                # The log may have grown since.
                self._log_count = max(self._log_count, count)
                for place, line in enumerate(lines, first + 1):
                    if accept(line):
                        return place
                if not self._wait(lambda: self._log_count > place, CONTROL, deadline):
                    return None

    @contextlib.contextmanager
    def _following(self) -> Iterator[None]:
        """Keeps the number of lines up to date."""
        with self._lasting():
            self.connection.ask_daemon("AddMatch", "s", _LOG_RULE)
        try:
            yield
        finally:
            with contextlib.suppress(BusGone, TimeoutError):
                self.connection.ask_daemon("RemoveMatch", "s", _LOG_RULE)

    def _on_signal(self, message: Message) -> None:
        self._log_count = message.values[0]

    def _call(self, peer: Peer, interface: str, method: str, signature: str,
              *arguments: Any) -> tuple:
        with self._lasting():
            call = self.connection.send(peer.name, peer.path, interface, method, signature,
                                        *arguments)
        self._wait(lambda: self.connection.has_answer(call), peer, None)
        try:
            return self.connection.take(call).values
        except CallError as error:
            if error.name in _GONE:
                raise ended(self.folder) from None
            raise WatchError(str(error)) from None

    def _wait(self, is_over: Callable[[], bool], peer: Peer, deadline: float | None) -> bool:
        """Reads the bus until IS_OVER(); returns false at the deadline (time.monotonic()).

        Fails when PEER is silent meanwhile.
        """
        pulse = Pulse(self.connection, peer)
        try:
            with self._lasting():
                while not is_over():
                    if deadline is not None and time.monotonic() >= deadline:
                        return False
                    if pulse.is_silent():
                        raise hang(silent_part(self.folder, peer.label))
                    self.connection.wait(min(pulse.due, deadline or pulse.due))
        finally:
            pulse.stop()
        return True

    @contextlib.contextmanager
    def _lasting(self) -> Iterator[None]:
        """Tells of a bus that goes or hangs meanwhile."""
        try:
            yield
        except TimeoutError:
            raise hang("the message bus") from None
        except BusGone:
            raise ended(self.folder) from None
