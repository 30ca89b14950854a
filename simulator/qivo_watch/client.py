"""A running watch, as a command sees it: calls on its bus, its log, its end."""

import contextlib
import fcntl
import json
import os
import signal
import time
from typing import Any

from gi.repository import Gio, GLib

from qivo_watch.bus import PROPERTIES, connect
from qivo_watch.control import INTERFACE, NAME, PATH
from qivo_watch.errors import WatchEnded, WatchError
from qivo_watch.state import Folder

BODY = ("com.velmora.QivoWatch.Body", PATH, "com.velmora.QivoWatch.Body1")
CALL_PATIENCE_MS = 90_000
"""Longer than the keeper waits for any effect, beside the time that a verb asks for itself."""

STOP_PATIENCE_S = 20


class Client:
    """Connects when it is made; fails when the watch does not run."""

    def __init__(self, folder: Folder):
        self.folder = folder
        try:
            self.connection = connect(folder.bus_address)
            self.get("App")
        except GLib.Error:
            raise WatchError(_absence(folder)) from None

    def call(self, method: str, signature: str = "()", *arguments: Any,
             extra_ms: float = 0) -> tuple:
        """Calls the control interface; a refusal becomes a WatchError with its line."""
        return self._call((NAME, PATH, INTERFACE), method, GLib.Variant(signature, arguments),
                          extra_ms)

    def call_body(self, method: str, signature: str, *arguments: Any) -> tuple:
        return self._call(BODY, method, GLib.Variant(signature, arguments), 0)

    def get(self, name: str) -> Any:
        answer = self.connection.call_sync(
            NAME, PATH, PROPERTIES, "Get", GLib.Variant("(ss)", (INTERFACE, name)), None,
            Gio.DBusCallFlags.NO_AUTO_START, CALL_PATIENCE_MS, None)
        return answer.unpack()[0]

    def status(self) -> dict[str, Any]:
        return json.loads(self.call("Status")[0])

    def wait_log(self, start: int, accept: Any, seconds: float | None) -> int | None:
        """Hands each line from number START on to ACCEPT until that returns true; returns the
        number after it. None: it has not come in time (SECONDS None: no limit)."""
        loop = GLib.MainLoop()
        result: list[int] = []
        place = start

        def look(*_: Any) -> None:
            nonlocal place
            following, lines = self.call("ReadLog", "(t)", place)
            for number, line in enumerate(lines, following - len(lines)):
                place = number + 1
                if not result and accept(line):
                    result.append(place)
                    loop.quit()

        def closed(*_: Any) -> None:
            loop.quit()

        subscription = self.connection.signal_subscribe(
            NAME, INTERFACE, "LogGrown", PATH, None, Gio.DBusSignalFlags.NONE, look)
        handler = self.connection.connect("closed", closed)
        look()
        if not result:
            timer = seconds is not None and GLib.timeout_add(round(seconds * 1000), loop.quit)
            loop.run()
            if timer and (result or self.connection.is_closed()):
                GLib.source_remove(timer)
        self.connection.signal_unsubscribe(subscription)
        self.connection.disconnect(handler)
        if not result and self.connection.is_closed():
            raise ended(self.folder)
        return result[0] if result else None

    def _call(self, target: tuple[str, str, str], method: str, arguments: GLib.Variant,
              extra_ms: float) -> tuple:
        try:
            answer = self.connection.call_sync(*target, method, arguments, None,
                                               Gio.DBusCallFlags.NO_AUTO_START,
                                               round(CALL_PATIENCE_MS + extra_ms), None)
        except GLib.Error as error:
            name = Gio.DBusError.get_remote_error(error) or ""
            if name and "NoReply" not in name:
                raise WatchError(error.message.removeprefix(f"GDBus.Error:{name}: ")) from None
            if self.folder.is_held() and not self.connection.is_closed():
                raise WatchError(f"the watch does not answer: {error.message}") from None
            raise ended(self.folder) from None
        return answer.unpack() if answer else ()


def stop(folder: Folder) -> None:
    """Ends a watch, and returns when nothing of it is left."""
    client = Client(folder)
    guard = client.status()["processes"]["guard"]
    keeper = client.status()["processes"]["keeper"]
    try:
        client.call("Stop")
    except WatchEnded:
        pass  # before it could answer
    except WatchError:
        _kill(keeper)
    if not wait_gone(folder):
        _kill(keeper)
        _kill(guard)
        folder.clear()


def _kill(process: int) -> None:
    """Kills what may have ended by itself meanwhile."""
    with contextlib.suppress(ProcessLookupError):
        os.kill(process, signal.SIGKILL)


def wait_gone(folder: Folder) -> bool:
    """Waits until the watch's guard has cleaned up; false when it has not in time."""
    try:
        lock = os.open(folder.path, os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
    except FileNotFoundError:
        return True
    deadline = time.monotonic() + STOP_PATIENCE_S
    try:
        while time.monotonic() < deadline:
            try:
                fcntl.flock(lock, fcntl.LOCK_SH | fcntl.LOCK_NB)
                return True
            except BlockingIOError:
                time.sleep(0.005)
    finally:
        os.close(lock)
    return False


def ended(folder: Folder) -> WatchError:
    """What a command says that finds its watch gone."""
    reason = folder.take_note()
    return WatchError(f"the watch has ended: {reason}") if reason else WatchEnded(
        "the watch has ended")


def _absence(folder: Folder) -> str:
    """Why there is no watch."""
    reason = folder.take_note()
    if reason:
        return f'the watch "{folder.name}" has ended: {reason}'
    return f'the watch "{folder.name}" does not run (qivo-watch start starts it)'
