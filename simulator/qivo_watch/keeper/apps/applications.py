"""All applications on the watch: launches them, passes requests on, ends them."""

import pathlib
import shutil
import sys
from signal import SIGTERM
from typing import Any, Callable

from qivo_watch.errors import WatchError
from qivo_watch.keeper.apps.app import App, Program, locate
from qivo_watch.keeper.apps.installed import Installed
from qivo_watch.keeper.log import Log
from qivo_watch.keeper.settle import Settler
from qivo_watch.keeper.tasks import Until, Work
from qivo_watch.processes import STATE_VARIABLE, end_of

END_PATIENCE_S = 3.0
"""Seconds that an application gets to end by itself before it is killed."""

FRAME_PATIENCE_S = 30.0
"""Seconds for the first frame, unless the caller gives others."""

TERMINATE_PATIENCE_S = 5.0
"""Seconds for an application to end, unless the caller gives others."""

WRAPPED_SLOWNESS = 20.0
"""Valgrind's programs are that slow."""

# Isolated: the environment is meant for the program, not for Python.
_DEBUGGEE = [sys.executable, "-I", str(pathlib.Path(__file__).with_name("debuggee.py"))]


class Applications:
    """ON_CHANGE is called when the last started application changes, also to none."""

    def __init__(self, environment: dict[str, str], log: Log, settler: Settler,
                 on_news: Callable[[], None], on_change: Callable[[], None]):
        self.last_end: dict[str, Any] | None = None
        self._apps: list[App] = []
        self._environment = environment
        self._log = log
        self._settler = settler
        self._on_news = on_news
        self._on_change = on_change

    @property
    def last(self) -> App | None:
        """The running application that was started last."""
        return self._apps[-1] if self._apps else None

    def look(self) -> None:
        """Forgets the applications that have ended."""
        for app in [known for known in self._apps if not known.is_running]:
            self._apps.remove(app)
            status = app.status or 0
            self.last_end = {"app": app.name, "status": max(status, 0),
                             "signal": max(-status, 0)}
            self._on_change()

    def settle(self) -> Work:
        """Waits until each of them has handled what was sent to it."""
        for app in list(self._apps):
            yield from self._settler.settle(app)

    def find_program(self, name: str, installed: Installed) -> Program:
        """The program of an id: if it runs, the running one, wherever it is."""
        return next((app.program for app in self._apps if app.program.has_id and app.name == name),
                    None) or installed.program(name) or locate(name)

    def launch(self, program: Program, arguments: list[str], settings: dict[str, str],
               additions: dict[str, str], wrap: list[str], patience_s: float | None) -> Work:
        """SETTINGS and the caller's ADDITIONS go into the program's environment. WRAP is a command
        that runs the program."""
        before = self.last
        first = self._running(program)
        if first and not program.has_id:
            raise WatchError(f"{program.name} is already running and takes no request: "
                             "it has no application id")
        if first and (additions or wrap):
            raise WatchError(f"{program.name} is already running: "
                             f"{'it cannot be wrapped' if wrap else 'its environment stays'}")
        app = self._start(program, arguments, settings, additions, _found(wrap))
        if wrap:
            app.slowness = WRAPPED_SLOWNESS
        if patience_s is None:
            patience_s = FRAME_PATIENCE_S * app.slowness
        try:
            try:
                if first:
                    yield from self._hand_over(first, app, patience_s)
                else:
                    yield from self._show(app, patience_s)
                if not first and before:
                    yield from self._settler.settle(before)
            except WatchError:
                yield from self._end([app], END_PATIENCE_S)
                raise
        except GeneratorExit:
            app.kill()
            raise

    def serve(self, program: Program, settings: dict[str, str]) -> Work:
        """Starts a program for a call that waits on the bus."""
        running = self._running(program)
        if running and not running.has_frame:
            return  # It is about to take its name.
        if running:
            yield Until(lambda: not running.is_running, END_PATIENCE_S,
                        f"{program.name} is running, but not on the bus")
        yield from self.launch(program, ["--service"], settings, {}, [], None)

    def start_for_debugger(self, program: Program, arguments: list[str], settings: dict[str, str],
                           additions: dict[str, str]) -> None:
        """Starts a program that waits for a debugger."""
        if first := self._running(program):
            raise WatchError(f"{program.name} is already running: gdb -p {first.pid} debugs it")
        self._add(self._start(program, arguments, settings, additions, _DEBUGGEE))

    def _running(self, program: Program) -> App | None:
        return next((app for app in self._apps if app.program.is_same(program)), None)

    def _start(self, program: Program, arguments: list[str], settings: dict[str, str],
               additions: dict[str, str], wrap: list[str]) -> App:
        if STATE_VARIABLE in additions:
            raise WatchError(f"{STATE_VARIABLE} is the watch's own")
        return App(program, arguments, self._environment | settings | additions, wrap, self._log,
                   self._on_news)

    def _add(self, app: App) -> None:
        self._apps.append(app)
        self._on_change()

    def _show(self, app: App, patience_s: float) -> Work:
        self._add(app)
        yield Until(lambda: app.has_frame or not app.is_running, patience_s,
                    f"{app.name} reported no first frame within {patience_s:g} s")
        if not app.has_frame:
            raise WatchError(f"{app.name} {end_of(app.status or 0)} before it had drawn anything")

    def _hand_over(self, first: App, second: App, patience_s: float) -> Work:
        """A second process of an application passes its request to the first, and ends. While the
        first ends, it cannot take it any more, and the second takes its place."""
        complaint = f"{second.name} is running, but did not take the request"
        yield Until(lambda: second.has_frame or not second.is_running, patience_s, complaint)
        if second.has_frame:
            yield Until(lambda: not (first.is_running and second.is_running), END_PATIENCE_S,
                        complaint)
        if second.is_running:
            self._add(second)
        elif second.status != 0:
            raise WatchError(complaint)

    def terminate(self, name: str, patience_s: float | None) -> Work:
        """NAME is empty for the application that was started last."""
        app = self.find(name)
        if patience_s is None:
            patience_s = TERMINATE_PATIENCE_S * app.slowness
        if (yield from self._end([app], patience_s)):
            raise WatchError(f"{app.name} did not end within {patience_s:g} s, and was killed")
        if app.status not in (0, -SIGTERM):
            raise WatchError(f"{app.name} {end_of(app.status or 0)}")
        yield from self._settler.settle(self.last)

    def end(self, app_id: str) -> Work:
        """Ends an application if it runs."""
        yield from self._end([app for app in self._apps if app.name == app_id], END_PATIENCE_S)

    def end_all(self) -> Work:
        yield from self._end(list(self._apps), END_PATIENCE_S)

    def find(self, name: str) -> App:
        """The running application of an id or a path; NAME is empty for the last."""
        if not self._apps:
            raise WatchError("no application is running")
        if not name:
            return self._apps[-1]
        path = pathlib.Path(name).resolve() if "/" in name else None
        for app in reversed(self._apps):
            if app.program.path.resolve() == path or app.name == name:
                return app
        raise WatchError(f"application {name} is not running")

    def _end(self, apps: list[App], patience_s: float) -> Work:
        """Asks them to end and kills those that do not in time; returns whether it killed one."""
        for app in apps:
            app.ask_to_end()
        gone = Until(lambda: not any(app.is_running for app in apps), patience_s, "")
        try:
            yield gone
        except WatchError:
            for app in apps:
                app.kill()
            yield Until(gone.condition, END_PATIENCE_S, "an application did not end")
            return True
        return False


def _found(command: list[str]) -> list[str]:
    """The command with its program's path, whatever PATH the application gets."""
    if not command:
        return []
    path = shutil.which(command[0])
    if path is None:
        raise WatchError(f"{command[0]} is not installed")
    return [path, *command[1:]]
