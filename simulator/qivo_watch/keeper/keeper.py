"""The keeper of one watch: starts its parts in order, supervises them, ends with any of them."""

from __future__ import annotations

import contextlib
import errno
import json
import os
import signal
import sys
from typing import TYPE_CHECKING, Any

from gi.repository import Gio, GLib

from qivo_watch import bus
from qivo_watch.errors import UsageError, WatchError
from qivo_watch.interface import BODY_NAME, HOME_NAME
from qivo_watch.keeper.environment import bare_environment, program
from qivo_watch.keeper.log import Log
from qivo_watch.keeper.objects import connect
from qivo_watch.keeper.parts import LABELS, PATIENCE_S, Parts
from qivo_watch.keeper.tasks import Tasks, Until, Work
from qivo_watch.processes import REQUESTS
from qivo_watch.spawn import OPTIONS_VARIABLE
from qivo_watch.state import DEFAULT_NAME, Folder

if TYPE_CHECKING:
    from qivo_watch.keeper.screen import Screen
    from qivo_watch.keeper.watch import Watch

FLUSH_PATIENCE_S = 2
"""Seconds for the last answers to reach the bus."""

LOSS_PATIENCE_MS = 1000
"""Milliseconds until the end of a bus that has closed its connection is seen, if it has ended."""

_NO_ROOM = (errno.ENOSPC, errno.EDQUOT)

OWNED = {"home": HOME_NAME, "body": BODY_NAME}


class Keeper:
    """One run of a watch. The starting command reads "ready", or why not, from ANSWER."""

    def __init__(self, folder: Folder, answer: int, options: dict[str, Any]):
        self._folder = folder
        self._guard = os.getppid()
        self._answer: int | None = answer
        self._options = options
        self._loop = GLib.MainLoop()
        self._tasks = Tasks()
        self._environment = bare_environment(folder)
        self._host_display = os.environ.get("DISPLAY", "")
        self._connection: Gio.DBusConnection | None = None
        self._screen: Screen | None = None
        self._watch: Watch | None = None
        self._owned: set[str] = set()
        self._is_ending = False
        self._log = Log(self._on_log)
        self._parts = Parts(folder, self._environment, self._on_news, self._on_part_end)

    def run(self) -> None:
        for request in REQUESTS:
            GLib.unix_signal_add(GLib.PRIORITY_HIGH, request, self._on_signal)
        # The guard has blocked them until here.
        signal.pthread_sigmask(signal.SIG_UNBLOCK, REQUESTS)
        # An exception in a callback of the loop would only be printed, and nobody would see it.
        sys.excepthook = lambda _kind, error, _trace: self._on_error(error)
        self._tasks.run(self._start(), self._on_started)
        if not self._is_ending:  # as when the very first program is not there
            self._loop.run()
        if self._connection and not self._connection.is_closed():
            # A bus that hangs ends this process here; the guard cleans up behind it.
            signal.alarm(FLUSH_PATIENCE_S)
            with contextlib.suppress(GLib.Error):
                self._connection.flush_sync(None)
        signal.alarm(0)
        self._parts.end()
        if os.getppid() != self._guard:
            self._folder.clear()

    # Start

    def _start(self) -> Work:
        size = self._options["size"]
        server = self._parts.start_server("server", (size, size))
        daemon = self._parts.start_bus()
        # Loads while the servers start.
        # pylint: disable=import-outside-toplevel,redefined-outer-name
        from qivo_watch.keeper.control import Control
        from qivo_watch.keeper.screen import Screen
        from qivo_watch.keeper.watch import Watch
        from qivo_watch.keeper.web import Web
        yield from self._parts.wait_line("bus", daemon)
        display = yield from self._parts.wait_display("server", server)
        self._environment["DISPLAY"] = display
        # This process is a client of the display as well.
        os.environ["XAUTHORITY"] = str(self._folder.authority)
        manager = self._parts.start_manager("manager", display)
        self._connection = self._connect()
        self._screen = Screen(display, self._on_news)
        yield from self._parts.wait_line("manager", manager)
        self._parts.start_own("home", [str(program("qivo-watch-home")), "--size", str(size)],
                              self._environment)
        web = Web(self._parts, self._folder, self._options) if self._options["web"] else None
        outer = (yield from web.start_display()) if web else self._host_display
        self._start_body(display, outer)
        address = (yield from web.serve()) if web else None
        self._watch = Watch(self._options, {
            "display": display, "web": address, "folder": str(self._folder.path),
            "processes": {"guard": self._guard, "keeper": os.getpid(), **self._parts.processes}},
            self._connection, self._screen, self._environment, self._log, self._on_news, self._end)
        Control(self._connection, self._watch, self._tasks)
        for name, owned in OWNED.items():
            yield Until(lambda owned=owned: owned in self._owned, PATIENCE_S,
                        f"{LABELS[name]} did not start")
        self._folder.set_ready(display)

    def _connect(self) -> Gio.DBusConnection:
        connection = connect(self._folder.bus_address)
        connection.connect("closed", self._on_closed)
        connection.signal_subscribe(bus.DAEMON[0], bus.DAEMON[2], "NameOwnerChanged", None, None,
                                    Gio.DBusSignalFlags.NONE, self._on_owner, None)
        return connection

    def _start_body(self, display: str, outer: str) -> None:
        environment = dict(self._environment)
        size, name = self._options["size"], self._options["name"]
        command = [str(program("qivo-watch-body")), "--screen", display, "--size", str(size)]
        if self._options["headless"]:
            environment["ELM_ENGINE"] = "buffer"
        else:
            environment["DISPLAY"] = outer
            command += ["--side", str(self._options["side"])]
            if name != DEFAULT_NAME:
                command += ["--title", f"Qivo Watch: {name}"]
        self._parts.start_own("body", command, environment)

    def _on_started(self, _: Any, error: Exception | None) -> None:
        if error is None:
            self._log.say("info", "the watch is ready")
            self._answer_start("ready")
        else:
            self._fail(_reason_of(error, self._folder))

    def _answer_start(self, text: str) -> None:
        """Answers the starting command. If that has gone, the watch is not wanted any more."""
        if self._answer is None:
            return
        try:
            os.write(self._answer, f"{text}\n".encode())
        except BrokenPipeError:
            self._end()
        os.close(self._answer)
        self._answer = None

    # Run

    def _on_news(self) -> None:
        if self._watch:
            self._watch.applications.look()
        self._tasks.look()

    def _on_log(self) -> None:
        if self._watch:
            self._watch.object.emit("LogGrown", GLib.Variant("(t)", (self._log.count,)))

    def _on_owner(self, _bus: Any, _sender: str, _path: str, _interface: str, _signal: str,
                  arguments: GLib.Variant, _data: Any) -> None:
        name, _, owner = arguments.unpack()
        if owner:
            self._owned.add(name)
        else:
            self._owned.discard(name)
            self._tasks.cancel(name)
        self._on_news()

    # End

    def _on_signal(self) -> bool:
        self._answer_start("it was stopped")
        if self._watch:
            self._tasks.run(self._watch.stop(), lambda *_: None)
        else:
            self._end()
        return True

    def _on_error(self, error: BaseException) -> None:
        # pylint: disable=import-outside-toplevel
        from Xlib.error import ConnectionClosedError
        # The end of the server itself follows, with a better reason.
        if not isinstance(error, ConnectionClosedError):
            self._fail(f"the keeper failed: {error!r}")

    def _on_part_end(self, name: str, what: str) -> None:
        # A server takes its clients with it, and its end may be seen after theirs.
        if name in ("server", "bus") or not self._has_lost_server():
            self._fail(what)

    def _on_closed(self, *_: Any) -> None:
        """Without the bus nobody reaches the watch. If the bus has ended, that says more."""
        GLib.timeout_add(LOSS_PATIENCE_MS, self._fail, "the message bus has dropped the keeper")

    def _has_lost_server(self) -> bool:
        """Whether the X server or the bus has gone, so that its own end follows."""
        if self._connection is None or self._screen is None:
            return False
        from Xlib.error import ConnectionClosedError  # pylint: disable=import-outside-toplevel
        try:
            self._screen.display.sync()
            self._connection.call_sync(*bus.DAEMON, "GetId", None, None,
                                       Gio.DBusCallFlags.NONE, bus.PATIENCE_MS, None)
        except (ConnectionClosedError, OSError, GLib.Error):
            return True
        return False

    def _fail(self, what: str) -> None:
        """A necessary part has ended: reports it and ends the rest."""
        if self._is_ending:
            return
        line = " ".join(what.split())
        self._log.say("error", line)
        is_start = self._answer is not None
        self._answer_start(line)
        if not is_start:
            with contextlib.suppress(OSError):
                self._folder.note.write_text(f"{line}\n", encoding="utf-8")
        self._tasks.fail_all(WatchError(f"the watch has ended: {line}"))
        self._end()

    def _end(self) -> None:
        self._is_ending = True
        self._loop.quit()


def _reason_of(error: Exception, folder: Folder) -> str:
    if isinstance(error, OSError) and error.strerror:
        # Failed writes do not say which file they were for.
        place = error.filename or (folder.path if error.errno in _NO_ROOM else "the keeper")
        return f"{place}: {error.strerror}"
    known = isinstance(error, (WatchError, UsageError, GLib.Error))
    return str(error) if known else repr(error)


def main(arguments: list[str]) -> int:
    """keeper NAME ANSWER-DESCRIPTOR, as the guard calls it."""
    folder, answer = Folder(arguments[0]), int(arguments[1])
    options = json.loads(os.environ.pop(OPTIONS_VARIABLE))
    try:
        keeper = Keeper(folder, answer, options)
    except OSError as error:
        os.write(answer, f"{_reason_of(error, folder)}\n".encode())
        return 1
    keeper.run()
    return 0
