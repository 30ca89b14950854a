"""Replays: plain text files of the watch's commands, checked whole before the first one runs.

A line is a command as on the command line, without "qivo-watch"; "#" begins a comment. Words are
quoted as in a shell.
"""

import argparse
import contextlib
import pathlib
import shlex
import signal
import unicodedata
from typing import NamedTuple

from qivo_watch.command import life
from qivo_watch.command.arguments import Grammar
from qivo_watch.command.commands import Session
from qivo_watch.command.recorder import USUAL_RATE, Recording, check_file, is_replay
from qivo_watch.errors import ScreenGone, UsageError, WatchError
from qivo_watch.processes import INTERRUPTS

MOST_BYTES = 1 << 20
LONGEST_LINE = 8192
_END_RECORD = ["record", "stop"]
_WITHOUT_PICTURE = {"start", "stop", "wait", "status", "log", "list", "apps"}
_WITHOUT_WATCH = {"start", "list"}


class Step(NamedTuple):
    """One command. GIVEN is None for the end of a recording."""

    line: int
    words: list[str]
    given: argparse.Namespace | None


def read(file: pathlib.Path) -> list[Step]:
    grammar = Grammar(is_replay=True)
    steps = []
    for number, line in enumerate(_read_text(file).split("\n"), 1):
        try:
            words = _split(line.removesuffix("\r"))
            if words:
                steps.append(Step(number, words, _parse(grammar, words)))
        except (UsageError, ValueError) as error:
            raise UsageError(f"{file}:{number}: {error}") from None
        except WatchError as error:
            raise WatchError(f"{file}:{number}: {error}") from None
    return steps


def _read_text(file: pathlib.Path) -> str:
    try:
        with file.open("rb") as opened:
            content = opened.read(MOST_BYTES + 1)
        if len(content) > MOST_BYTES:
            raise UsageError(f'"{file}" is longer than {MOST_BYTES} bytes')
        return content.decode()
    except (OSError, UnicodeDecodeError) as error:
        reason = getattr(error, "strerror", None) or "it is not UTF-8"
        raise UsageError(f'cannot read "{file}": {reason}') from None


def _split(line: str) -> list[str]:
    if len(line) > LONGEST_LINE:
        raise UsageError(f"the line is longer than {LONGEST_LINE} characters")
    # Some editors end a line at these, and so show other commands than those that run.
    for letter in line:
        if unicodedata.category(letter) in ("Cc", "Zl", "Zp") and letter != "\t":
            raise UsageError(f"U+{ord(letter):04X} is not allowed in a replay")
    return shlex.split(line, comments=True)


def _parse(grammar: Grammar, words: list[str]) -> argparse.Namespace | None:
    if words == _END_RECORD:
        return None
    given = grammar.parse(words)
    if given.verb == "launch" and given.debugger:
        raise UsageError("a replay has no terminal for --gdb")
    if given.verb == "record":
        if is_replay(given.file):
            raise UsageError("a replay records the screen only")
        check_file(given.file)
        if given.pictures:
            raise UsageError("--pictures is for a replay that is being recorded")
        if given.duration is not None:
            raise UsageError("a replay records until its end or `record stop`, not for a time")
    return given


def play(file: pathlib.Path, name: str, is_update: bool) -> None:
    """Runs a replay; the first command that fails ends it, and the watch that it started."""
    steps = read(file)
    with contextlib.closing(_Player(file, name, is_update)) as player:
        try:
            for step in steps:
                try:
                    player.take(step)
                except (WatchError, UsageError) as error:
                    raise WatchError(
                        f"{file}:{step.line}: {shlex.join(step.words)}: {error}") from None
        except BaseException:
            player.give_up()
            raise


class _Player:
    """Runs steps in one session, and records meanwhile."""

    def __init__(self, file: pathlib.Path, name: str, is_update: bool):
        self._session = Session(name, file.parent)
        self._session.is_update = is_update
        self._recording: Recording | None = None
        self._has_begun = False
        self._has_started = False

    def take(self, step: Step) -> None:
        try:
            self._take(step)
        except ScreenGone:
            raise life.ended(self._session.folder) from None

    def give_up(self) -> None:
        """Ends the watch that the replay started."""
        if self._has_started:
            with contextlib.suppress(WatchError):
                self._begin("stop")
            with contextlib.suppress(WatchError):
                life.stop(self._session.folder)

    def close(self) -> None:
        try:
            if self._recording:
                self._end_recording()
        finally:
            self._session.close()

    def _take(self, step: Step) -> None:
        if step.given is None:
            if not self._recording:
                raise WatchError("no recording is running")
            self._end_recording()
        elif step.given.verb == "record":
            self._record(step.given)
        else:
            self._begin(step.given.verb)
            self._session.run(step.given)
            self._end(step.given.verb)

    def _begin(self, verb: str) -> None:
        if verb == "stop" and self._recording:
            self._end_recording()
        if not self._has_begun and verb not in _WITHOUT_WATCH:
            # The replay's waits ignore earlier lines.
            self._session.pass_log()
            self._has_begun = True
        if verb not in _WITHOUT_PICTURE:
            self._session.remember_picture()

    def _end(self, verb: str) -> None:
        if verb == "start":
            self._session.log_place = 0
            self._has_begun = True
        if verb in ("start", "stop"):
            self._has_started = verb == "start"
            signal.pthread_sigmask(signal.SIG_UNBLOCK, INTERRUPTS)

    def _record(self, given: argparse.Namespace) -> None:
        if self._recording:
            raise WatchError("a recording is already running")
        self._recording = Recording(self._session.open_eye(), given.file,
                                    given.fps or USUAL_RATE)

    def _end_recording(self) -> None:
        recording, self._recording = self._recording, None
        recording.finish()
