"""The control interface on the bus: each method answers when its effect has been seen."""

import itertools
import json
import time
from typing import Any

from gi.repository import Gio, GLib
from Xlib.error import ConnectionClosedError

from qivo_watch.errors import UsageError, WatchError
from qivo_watch.interface import NAME, REFUSED, VERBS, Verb
from qivo_watch.keeper.objects import own_name
from qivo_watch.keeper.tasks import Tasks, Work
from qivo_watch.keeper.watch import Watch


class Control:
    """Answers for a watch. It takes the name when it can answer everything."""

    def __init__(self, connection: Gio.DBusConnection, watch: Watch, tasks: Tasks):
        self._watch = watch
        self._tasks = tasks
        self._works = itertools.count()
        watch.activator.serve(self._on_wanted)
        watch.object.serve(self._on_call)
        own_name(connection, NAME)

    def _on_call(self, method: str, arguments: tuple, call: Gio.DBusMethodInvocation) -> None:
        def done(result: Any, error: Exception | None) -> None:
            if error is None:
                call.return_value(result)
            else:
                call.return_dbus_error(REFUSED, _line_of(error))
        # The end goes on when its caller has gone, as the body goes.
        owner = "" if method == "Stop" else call.get_sender()
        self._tasks.run(self._work(method, arguments, call.get_sender()), done, owner)

    def _on_wanted(self, app_id: str) -> None:
        """A call on the bus waits for an application."""
        def done(_result: Any, error: Exception | None) -> None:
            if error is not None:
                self._watch.log.say("warn", f"{app_id} was wanted: {_line_of(error)}")
                self._watch.activator.refuse(app_id, _line_of(error))
        self._tasks.run(self._watch.serve(app_id), done)

    def _work(self, method: str, arguments: tuple, caller: str) -> Work:
        if method in VERBS:
            yield from self._carry_out(VERBS[method], VERBS[method].bind(arguments), caller)
            return None
        if method == "ReadLog":
            return GLib.Variant("(ttas)", self._watch.log.read(*arguments))
        if method == "ShowTree":
            return GLib.Variant("(s)", ((yield from self._watch.show_tree()),))
        if method == "Status":
            return GLib.Variant("(s)", (json.dumps(self._watch.status(), indent=2),))
        if method == "ListApps":
            return GLib.Variant("(s)", (json.dumps(self._watch.list_apps(), indent=2),))
        raise WatchError(f"a watch has no {method}")

    def _carry_out(self, verb: Verb, values: dict[str, Any], caller: str) -> Work:
        """Tells whoever records what is done when it begins and ends."""
        work, succeeded = next(self._works), False
        self._watch.object.emit("Began", GLib.Variant(
            "(ttsss)", (work, _now_ms(), verb.method, json.dumps(values), caller)))
        try:
            yield from getattr(self._watch, verb.function)(**values)
            succeeded = True
        finally:
            self._watch.object.emit("Ended", GLib.Variant("(ttb)", (work, _now_ms(), succeeded)))


def _now_ms() -> int:
    return round(time.monotonic() * 1000)


def _line_of(error: Exception) -> str:
    if isinstance(error, (WatchError, UsageError)):
        return str(error)
    if isinstance(error, ConnectionClosedError):
        return "the watch has ended: the X server has gone"
    return f"{type(error).__name__}: {error}".splitlines()[0]
