"""What a replay has done so far: for each step what the watch looked like and what it logged."""

import io
import pathlib
import re
import time
from typing import Any, NamedTuple

from qivo_watch.command.commands import Session
from qivo_watch.errors import Differs, ScreenGone, UsageError, WatchEnded, WatchError, WatchGone

_APP_FAILED = re.compile(
    r" QIVO_WATCH: \S+ (was killed by (?!SIGTERM)|ended with status [1-9])")
APP_FAILED = "application"

_NEED_APP = {"audit", "terminate", "touch", "tree", "wait"}
"""Commands that are refused without an application; others have another reason."""

STATUS = {"difference": 3, "time": 4, APP_FAILED: 5, "watch": 6}
"""What a replay ends with, by the kind of its failure; 1 for any other kind."""


class Failure(NamedTuple):
    """TEXT is the complaint. WANTED and DIFFERENCE are pictures, for a kind of "difference"."""

    kind: str
    text: str
    wanted: bytes = b""
    difference: bytes = b""


class Entry(NamedTuple):
    """A step that has been done. Pictures are PNGs, b"" for none."""

    line: int
    command: str
    seconds: float
    before: bytes
    after: bytes
    log: list[str]
    tree: list[str]
    failure: Failure | None


class Journal:
    """WITH_TREES: whether the application is read after each step, and not only at a failure: it
    then works for a screen reader."""

    def __init__(self, session: Session, with_trees: bool):
        self.entries: list[Entry] = []
        self.state: dict[str, Any] = {}
        self._session = session
        self._with_trees = with_trees
        self._has_watch = False
        self._log_place = 0
        self._pixels = self._picture = b""
        self._begun = time.monotonic()

    def open(self, log_place: int) -> None:
        """A watch is there; the log is noted from LOG_PLACE on."""
        self._has_watch, self._log_place = True, log_place
        self._look()

    def begin(self) -> None:
        self._begun = time.monotonic()

    def end(self, line: int, command: str, error: WatchError | UsageError | None) -> Failure | None:
        """ERROR: why the step has failed. Returns what is told of it, also of a watch that turns
        out to hang."""
        seconds, before = time.monotonic() - self._begun, self._picture
        log: list[str] = []
        tree: list[str] = []
        try:
            # One that hangs, or has ended, would answer no better.
            if self._has_watch and getattr(error, "kind", "") != "watch":
                self._look()
                log = self._read_log()
                tree = self._read_tree() if error or self._with_trees else []
        except (WatchEnded, ScreenGone):
            pass  # The next step tells.
        except WatchError as unread:
            error = error or unread
        failure = self._failure(command, error, log) if error else None
        self.entries.append(Entry(line, command, seconds, before, self._picture, log, tree,
                                  failure))
        return failure

    def interrupt(self, line: int, command: str) -> None:
        """A step was interrupted. The watch is not asked: that could take seconds."""
        self.entries.append(Entry(line, command, time.monotonic() - self._begun, self._picture,
                                  b"", [], [], Failure("interrupted", "it was interrupted")))

    def close(self) -> None:
        """The watch has been stopped."""
        self._has_watch = False
        self._pixels = self._picture = b""

    def _look(self) -> None:
        self.state = self._session.client.status()
        seen = self._session.eye().look()
        pixels = seen.tobytes()
        if pixels != self._pixels:
            png = io.BytesIO()
            seen.save(png, "PNG", compress_level=1)
            self._pixels, self._picture = pixels, png.getvalue()

    def _read_log(self) -> list[str]:
        lines = list(self._session.client.log_lines(self._log_place))
        self._log_place += len(lines)
        return lines

    def _read_tree(self) -> list[str]:
        try:
            return self._session.describe_tree() if self.state.get("app") else []
        except WatchGone:
            raise
        except WatchError:
            return []  # A program that is not on the port shows none.

    def _failure(self, command: str, error: WatchError | UsageError, log: list[str]) -> Failure:
        if isinstance(error, Differs):
            return Failure(error.kind, str(error), _content(error.wanted),
                           _content(error.difference))
        kind = getattr(error, "kind", "refused")
        told = log
        if kind == "time" or command.split()[0] in _NEED_APP:
            told = self._log_since_launch() + log
        if kind != "watch" and any(map(_APP_FAILED.search, told)):
            kind = APP_FAILED
        return Failure(kind, str(error))

    def _log_since_launch(self) -> list[str]:
        """The log of the steps from the last launch on."""
        launched = [place for place, entry in enumerate(self.entries)
                    if entry.command.split()[0] == "launch"]
        since = self.entries[launched[-1] if launched else 0:]
        return [line for entry in since for line in entry.log]


def _content(file: pathlib.Path) -> bytes:
    """b"" for a picture that has gone meanwhile."""
    try:
        return file.read_bytes()
    except OSError:
        return b""
