"""A running watch, as a command sees it: calls on its bus, and its log."""

import contextlib
import json
import time
from typing import Any, Callable, Iterator

from gi.repository import Gio, GLib

from qivo_watch.bus import PROPERTIES, connect
from qivo_watch.command.interrupts import quitting
from qivo_watch.command.life import absence, ended, wait_ready
from qivo_watch.command.pulse import Peer, Pulse, hang, silent_part
from qivo_watch.errors import WatchError
from qivo_watch.interface import (BODY_INTERFACE, BODY_NAME, INTERFACE, NAME, PATH, Verb)
from qivo_watch.state import Folder

CONTROL = Peer("the keeper", NAME, PATH, INTERFACE)
BODY = Peer("the body", BODY_NAME, PATH, BODY_INTERFACE)

_GONE = ("org.freedesktop.DBus.Error.NoReply", "org.freedesktop.DBus.Error.ServiceUnknown",
         "org.freedesktop.DBus.Error.NameHasNoOwner")
_LAST_LINE = 2 ** 64 - 1


class Client:
    """Connects when it is made; if the watch is starting, once it is ready.

    Each method fails when the watch has ended, or when its peer hangs.
    """

    def __init__(self, folder: Folder):
        self.folder = folder
        self._loop = GLib.MainLoop()
        self._log_count = 0
        wait_ready(folder)
        try:
            self.connection = connect(folder.bus_address)
        except GLib.Error as error:
            if error.matches(Gio.io_error_quark(), Gio.IOErrorEnum.CANCELLED):
                raise hang("the message bus") from None
            raise WatchError(absence(folder)) from None
        self.connection.connect("closed", lambda *_: self._loop.quit())

    def call(self, method: str, signature: str = "()", *arguments: Any) -> tuple:
        """Calls the control interface; a refusal becomes a WatchError with its line."""
        return self._call(CONTROL, INTERFACE, method, GLib.Variant(signature, arguments))

    def carry_out(self, verb: Verb, values: dict[str, Any]) -> None:
        """Calls a verb; the keeper has defaults for what is not in VALUES."""
        signature = "".join(argument.kind.signature for argument in verb.needed)
        arguments: list[Any] = [values[argument.name] for argument in verb.needed]
        if verb.optional:
            signature += "a{sv}"
            arguments.append({argument.name: GLib.Variant(argument.kind.signature,
                                                          values[argument.name])
                              for argument in verb.optional if argument.name in values})
        self.call(verb.method, f"({signature})", *arguments)

    def call_body(self, method: str, signature: str, *arguments: Any) -> tuple:
        return self._call(BODY, BODY.interface, method, GLib.Variant(signature, arguments))

    def get(self, name: str) -> Any:
        return self._call(CONTROL, PROPERTIES, "Get", GLib.Variant("(ss)", (INTERFACE, name)))[0]

    def status(self) -> dict[str, Any]:
        return json.loads(self.call("Status")[0])

    def log_count(self) -> int:
        """How many lines the log has had so far."""
        return self.call("ReadLog", "(t)", _LAST_LINE)[0]

    def log_lines(self) -> Iterator[str]:
        """The lines of the log as it is now."""
        place, last = 0, self.log_count()
        while place < last:
            _, first, lines = self.call("ReadLog", "(t)", place)
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
                count, first, lines = self.call("ReadLog", "(t)", place)
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
        def grow(_bus: Any, _sender: str, _path: str, _interface: str, _signal: str,
                 arguments: GLib.Variant) -> None:
            self._log_count = arguments.unpack()[0]
            self._loop.quit()

        subscription = self.connection.signal_subscribe(
            NAME, INTERFACE, "LogGrown", PATH, None, Gio.DBusSignalFlags.NONE, grow)
        try:
            yield
        finally:
            self.connection.signal_unsubscribe(subscription)

    def _call(self, peer: Peer, interface: str, method: str,
              arguments: GLib.Variant) -> tuple:
        results: list[Any] = []

        def done(_connection: Gio.DBusConnection, result: Any) -> None:
            results.append(result)
            self._loop.quit()

        self.connection.call(peer.name, peer.path, interface, method, arguments, None,
                             Gio.DBusCallFlags.NO_AUTO_START, GLib.MAXINT32, None, done)
        self._wait(lambda: bool(results), peer, None)
        try:
            return self.connection.call_finish(results[0]).unpack()
        except GLib.Error as error:
            name = Gio.DBusError.get_remote_error(error)
            if not name or name in _GONE:
                raise ended(self.folder) from None
            raise WatchError(error.message.removeprefix(f"GDBus.Error:{name}: ")) from None

    def _wait(self, is_over: Callable[[], bool], peer: Peer,
              deadline: float | None) -> bool:
        """Runs the loop until IS_OVER(); returns false at the deadline (time.monotonic()).

        Each event that may change that ends one turn. Fails when PEER is silent meanwhile.
        """
        left = GLib.MAXINT32 if deadline is None else round((deadline - time.monotonic()) * 1000)
        alarm = GLib.timeout_source_new(max(0, left))
        alarm.set_callback(lambda *_: self._loop.quit())
        alarm.attach()
        pulse = Pulse(self.connection, peer, self._loop.quit)
        try:
            while not (is_over() or self.connection.is_closed() or pulse.is_silent
                       or alarm.is_destroyed()):
                with quitting(self._loop.quit):
                    self._loop.run()
        finally:
            pulse.stop()
            alarm.destroy()
        if pulse.is_silent and not is_over():
            raise hang(silent_part(self.folder, peer))
        if self.connection.is_closed() and not is_over():
            raise ended(self.folder)
        return is_over()
