"""The applications on the watch: finds and starts them, reads their output, sees them end."""

import contextlib
import os
import pathlib
import re
import signal
from typing import Callable, NamedTuple

from gi.repository import GLib

from qivo_watch import places
from qivo_watch.errors import WatchError
from qivo_watch.interface import GUIDE, is_app_id
from qivo_watch.keeper.environment import program as find_program
from qivo_watch.keeper.log import Log
from qivo_watch.processes import descendants, end_of, kill_group, program_of
from qivo_watch.spawn import spawn

_FIRST_FRAME = re.compile(r"WATCH_PORT: first frame$")
HELD_END_MS = 10
"""Milliseconds after which an end that a debugger holds back is looked at again."""

_LONGEST_REST = 65536
"""How many bytes of a line without an end are kept."""

_READABLE = GLib.IOCondition.IN | GLib.IOCondition.HUP | GLib.IOCondition.ERR


class Program(NamedTuple):
    """What is launched. NAME is the application's id, else the file's name. ARGUMENTS come before
    those of a launch."""

    name: str
    path: pathlib.Path
    has_id: bool
    """Whether a second process can pass its request to the first."""
    arguments: tuple[str, ...] = ()

    def is_same(self, other: "Program") -> bool:
        if self.has_id and other.has_id:
            return self.name == other.name
        return self.path.resolve() == other.path.resolve()


class App:
    """One process of an application. Its standard streams go to the log.

    WRAP is a command that runs the program, in its own process or in one below it. SLOWNESS says
    how much longer than others it is waited for.
    """

    def __init__(self, program: Program, arguments: list[str], environment: dict[str, str],
                 wrap: list[str], log: Log, on_news: Callable[[], None]):
        self.program = program
        self.name = program.name
        self.has_frame = False
        self.status: int | None = None
        self._log = log
        self._on_news = on_news
        self._rest = b""
        self._out, into = os.pipe()
        os.set_blocking(self._out, False)
        try:
            self._process = spawn([*wrap, str(program.path), *program.arguments, *arguments],
                                  environment, stdout=into, stderr=into)
        except (OSError, ValueError) as error:
            os.close(self._out)
            reason = getattr(error, "strerror", None) or error
            raise WatchError(f"cannot start {program.name}: {reason}") from None
        finally:
            os.close(into)
        self._inner: int | None = None if wrap else self._process.pid
        self.slowness = 1.0
        self._source = GLib.unix_fd_add_full(GLib.PRIORITY_DEFAULT, self._out, _READABLE,
                                             self._on_readable)
        GLib.child_watch_add(GLib.PRIORITY_DEFAULT, self._process.pid, self._on_end)

    @property
    def pid(self) -> int:
        """The process of the program itself: of the wrapping one's descendants if it is there."""
        if self._inner is None:
            processes = [self._process.pid, *descendants(self._process.pid)]
            self._inner = next((process for process in processes
                                if program_of(process) == self.program.path.resolve()), None)
        return self._inner or self._process.pid

    @property
    def is_running(self) -> bool:
        return self.status is None

    @property
    def has_failed(self) -> bool:
        return self.status not in (None, 0)

    def ask_to_end(self) -> None:
        """Asks the program; what wraps it ends behind it."""
        if self.is_running:
            with contextlib.suppress(ProcessLookupError):
                os.kill(self.pid, signal.SIGTERM)

    def kill(self) -> None:
        """The rest of its group follows when its end is seen."""
        if self.is_running:
            os.kill(self._process.pid, signal.SIGKILL)

    def _on_readable(self, *_: object) -> bool:
        is_going_on = self._read()
        if not is_going_on:
            self._source = 0
        self._on_news()
        return is_going_on

    def _read(self) -> bool:
        """Logs the available output; returns whether more may come."""
        try:
            piece = os.read(self._out, 65536)
        except BlockingIOError:
            return True
        *lines, self._rest = (self._rest + piece).split(b"\n")
        if len(self._rest) > _LONGEST_REST or not piece and self._rest:
            lines, self._rest = [*lines, self._rest], b""
        for line in lines:
            self._take(line.decode("utf-8", "replace"))
        return bool(piece)

    def _take(self, line: str) -> None:
        if _FIRST_FRAME.search(line):
            self.has_frame = True
        self._log.add(line)

    def _on_end(self, pid: int, wait_status: int) -> None:
        # While a debugger holds the end back, GLib sees it, but without its status.
        with contextlib.suppress(ChildProcessError):
            ended, wait_status = os.waitpid(pid, os.WNOHANG)
            if not ended:
                GLib.timeout_add(HELD_END_MS, lambda: self._on_end(pid, 0) or False)
                return
        kill_group(self._process.pid)
        if self._source:
            self._read_rest()
            GLib.source_remove(self._source)
        os.close(self._out)
        self._process.returncode = self.status = os.waitstatus_to_exitcode(wait_status)
        self._log.say("error" if self.has_failed else "info",
                      f"{self.name} {end_of(self.status)}")
        self._on_news()

    def _read_rest(self) -> None:
        before = None
        while before != (self._log.count, self._rest):
            before = self._log.count, self._rest
            self._read()


def locate(app: str) -> Program:
    """The program of an application: given by the id, or by its program's path."""
    if "/" in app:
        path = pathlib.Path(app)
        if not os.access(path, os.X_OK) or path.is_dir():
            raise WatchError(f'"{app}" is not a program')
        app_id = id_of(path)
        return Program(app_id or path.name, path, app_id is not None)
    if not is_app_id(app):
        raise WatchError(f'"{app}" is not an application: neither an id such as {GUIDE} '
                         f"nor the path of a program")
    try:
        path = find_program(app.rpartition(".")[2])
    except WatchError:
        path = None
    if path is None or id_of(path) != app:
        raise WatchError(f"no application {app} is on the watch")
    return Program(app, path, True)


def id_of(path: pathlib.Path) -> str | None:
    """The id that an installation or a build tree gives its program, if it does."""
    name = path.name
    for root in path.resolve().parents:
        for file in (root / places.SHARE / name / f"{name}.id", root / "res" / f"{name}.id"):
            if file.is_file():
                return file.read_text(encoding="utf-8", errors="replace").strip()
    return None


def request_arguments(operation: str, extra: dict[str, str]) -> list[str]:
    """A launch request as arguments for the port's programs."""
    arguments = ["--operation", operation] if operation else []
    for key, value in extra.items():
        arguments += ["--extra", f"{key}={value}"]
    return arguments
