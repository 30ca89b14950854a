"""How to see that a program has handled what was sent to it.

A program answers a ping of its window in the order of its X events, and one over the bus in the
order of its messages. The second is read in a later turn of its loop than the first, so a program
that has answered both has done what the first had queued: callbacks, a pause, an exit.
"""

from typing import Any, Callable

from gi.repository import Gio, GLib

from qivo_watch.bus import DAEMON, PATIENCE_MS
from qivo_watch.errors import WatchError
from qivo_watch.keeper.apps.app import App
from qivo_watch.keeper.objects import process_of
from qivo_watch.keeper.screen import Screen
from qivo_watch.keeper.tasks import Until, Work
from qivo_watch.processes import end_of

PATIENCE_S = 4.5
"""Seconds that a program may be silent; a command that waits for it gives up within 5."""

_THEME = "org.watchport.Theme1"
_PEER = "org.freedesktop.DBus.Peer"


class Settler:
    """Follows who is on the bus, and pings programs."""

    def __init__(self, connection: Gio.DBusConnection, screen: Screen, processes: dict[str, int],
                 on_news: Callable[[], None]):
        """processes: home and body."""
        self._processes = processes
        self._connection = connection
        self._screen = screen
        self._on_news = on_news

    def settle(self, app: App | None) -> Work:
        """Waits for the application, or without one for the home face. An application that ends
        with status 0 counts as well; one that crashes makes the verb fail."""
        if app is None:
            yield from self._settle_process(self._processes["home"], "the home face", None)
        elif app.is_running:
            yield from self._settle_process(app.pid, app.name, app)

    def reload_themes(self, app: App) -> Work:
        """Has an application load its themes again."""
        if not app.program.has_id:
            raise WatchError(f"{app.name} takes no request: it has no application id")
        answers: list[int | str] = []

        def answered(connection: Gio.DBusConnection, result: Any) -> None:
            try:
                answers.append(connection.call_finish(result).unpack()[0])
            except GLib.Error as error:
                answers.append(error.message)
            self._on_news()

        path = "/" + app.name.replace(".", "/").replace("-", "_")
        self._connection.call(app.name, path, _THEME, "Reload", None, GLib.VariantType("(u)"),
                              Gio.DBusCallFlags.NO_AUTO_START, round(_patience(app) * 2000), None,
                              answered)
        yield Until(lambda: answers or _has_ended(app), _patience(app),
                    f"{app.name} does not answer")
        if answers and isinstance(answers[0], str):
            raise WatchError(f"{app.name} cannot load its themes again: {answers[0]}")
        if answers == [0]:
            raise WatchError(f"{app.name} shows no theme of its own that can be read")

    def settle_if_covered(self, app: App) -> Work:
        """If an application has lowered its window, waits for what it does next."""
        if not app.is_running:
            return
        self._screen.ask_manager()
        yield Until(lambda: self._screen.manager_answered() or not app.is_running,
                    PATIENCE_S, "the window manager does not answer")
        if app.is_running and self._screen.top_process() != app.pid:
            yield from self.settle(app)

    def settle_services(self) -> Work:
        """Waits until every program on the watch has read what the services sent."""
        wanted = set(self._processes.values())
        yield from self._ping_bus(lambda process: process in wanted, "a program on the watch", None)

    def _settle_process(self, process: int, who: str, app: App | None) -> Work:
        window = self._screen.window_of(process)
        serial = self._screen.ping(window) if window else 0
        yield Until(lambda: self._screen.has_answered(serial) or _has_ended(app),
                    _patience(app), f"{who} does not answer")
        yield from self._ping_bus(lambda owner: owner == process, who, app)
        if app and app.has_failed:
            raise WatchError(f"{who} {end_of(app.status or 0)}")

    def _ping_bus(self, is_wanted, who: str, app: App | None) -> Work:
        names = self._connection.call_sync(*DAEMON, "ListNames", None, None,
                                           Gio.DBusCallFlags.NONE, PATIENCE_MS, None).unpack()[0]
        asked = {name for name in names
                 if name.startswith(":") and is_wanted(process_of(self._connection, name))}

        def answered(connection: Gio.DBusConnection, result: Any, name: str) -> None:
            try:
                connection.call_finish(result)
            except GLib.Error:
                pass  # One that has gone need not be waited for.
            asked.discard(name)
            self._on_news()

        for name in list(asked):
            self._connection.call(name, "/", _PEER, "Ping", None, None, Gio.DBusCallFlags.NONE,
                                  round(_patience(app) * 2000), None, answered, name)
        yield Until(lambda: not asked or _has_ended(app), _patience(app),
                    f"{who} does not answer")


def _patience(app: App | None) -> float:
    return PATIENCE_S * (app.slowness if app else 1)


def _has_ended(app: App | None) -> bool:
    return app is not None and not app.is_running
