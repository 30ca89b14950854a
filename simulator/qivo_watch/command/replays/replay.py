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
from qivo_watch.command.replays import junit, trace
from qivo_watch.command.arguments import Grammar
from qivo_watch.command.commands import Session
from qivo_watch.command.replays.journal import STATUS, Journal
from qivo_watch.command.screen.recorder import USUAL_RATE, Recording, check_file, is_replay
from qivo_watch.errors import ReplayFailed, ScreenGone, UsageError, WatchError, of_system
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


def mistake_in(line: str) -> str:
    """Why a line cannot be in a replay, whatever it says; "" if it can."""
    if len(line) > LONGEST_LINE:
        return f"the line is longer than {LONGEST_LINE} characters"
    # Some editors end a line at these, and so show other commands than those that run.
    for letter in line:
        if unicodedata.category(letter) in ("Cc", "Zl", "Zp") and letter != "\t":
            return f"U+{ord(letter):04X} is not allowed in a replay"
    return ""


def _split(line: str) -> list[str]:
    if mistake := mistake_in(line):
        raise UsageError(mistake)
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


def play(file: pathlib.Path, given: argparse.Namespace) -> None:
    """Runs a replay as the options of `play` want it; the first command that fails ends it, and the
    watch that it started."""
    steps = read(file)
    failure: ReplayFailed | KeyboardInterrupt | None = None
    with contextlib.closing(_Player(file, given)) as player:
        try:
            for step in steps:
                player.take(step)
            player.finish(steps)
        except ReplayFailed as failed:
            failure = failed
            player.give_up()
        except KeyboardInterrupt as interrupt:
            failure = interrupt
            player.interrupt(steps)
            player.give_up()
        except BaseException:
            player.give_up()
            raise
    try:
        page = player.report(steps)
    except WatchError as error:
        if isinstance(failure, ReplayFailed):
            raise ReplayFailed(f"{failure} ({error})", failure.status) from None
        raise failure or error from None
    if isinstance(failure, KeyboardInterrupt):
        raise failure
    if failure:
        raise ReplayFailed(f'{failure} (see "{page}")' if page else str(failure), failure.status)


class _Player:
    """Runs steps in one session, and records meanwhile."""

    def __init__(self, file: pathlib.Path, given: argparse.Namespace):
        self._file = file
        self._given = given
        self._session = Session(given.name, file.parent)
        self._session.is_update = given.update
        self._journal = Journal(self._session, bool(given.trace))
        self._recording: Recording | None = None
        self._has_begun = False
        self._has_started = False

    def take(self, step: Step) -> None:
        self._journal.begin()
        command = shlex.join(step.words)
        failure = self._journal.end(step.line, command, self._error_of(step))
        if failure:
            raise ReplayFailed(f"{self._file}:{step.line}: {command}: {failure.text}",
                               STATUS.get(failure.kind, 1))

    def _error_of(self, step: Step) -> WatchError | UsageError | None:
        """Does what a step says; returns why it failed."""
        try:
            self._prepare(step)
            self._take(step)
        except ScreenGone:
            return life.ended(self._session.folder)
        except (WatchError, UsageError) as error:
            return error
        except BrokenPipeError:
            raise  # Nobody reads on.
        except OSError as error:
            return of_system(error)
        return None

    def finish(self, steps: list[Step]) -> None:
        """Ends a recording as `record stop` does."""
        if self._recording:
            self.take(Step(steps[-1].line, _END_RECORD, None))

    def interrupt(self, steps: list[Step]) -> None:
        """The step at work, or the next one, is not done."""
        for step in steps[len(self._journal.entries):][:1]:
            self._journal.interrupt(step.line, shlex.join(step.words))

    def report(self, steps: list[Step]) -> pathlib.Path | None:
        """Writes what is wanted of how it went; returns where the page is, if there is one."""
        left = [(step.line, shlex.join(step.words))
                for step in steps[len(self._journal.entries):]]
        try:
            if self._given.junit:
                junit.write(self._journal, self._file.stem, left, self._given.junit)
        finally:
            page = self._leave_page(left)
        return page

    def _leave_page(self, left: list[tuple[int, str]]) -> pathlib.Path | None:
        usual = self._file.with_name(f"{self._file.stem}-trace")
        has_failed = any(entry.failure for entry in self._journal.entries)
        if not has_failed:
            with contextlib.suppress(OSError):
                (usual / trace.PAGE).unlink()
                usual.rmdir()
        if self._given.trace:
            return trace.write(self._journal, self._file.name, left,
                               pathlib.Path(self._given.trace))
        if has_failed:
            with contextlib.suppress(WatchError):
                return trace.write(self._journal, self._file.name, left, usual)
        return None

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
                # What made the replay fail before is told.
                with contextlib.suppress(WatchError):
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

    def _prepare(self, step: Step) -> None:
        """Before the first step that needs a watch."""
        verb = step.given.verb if step.given else ""
        if not self._has_begun and verb not in _WITHOUT_WATCH:
            # The replay's waits ignore earlier lines.
            self._session.pass_log()
            self._has_begun = True
            self._journal.open(self._session.log_place)

    def _begin(self, verb: str) -> None:
        if verb == "stop" and self._recording:
            self._end_recording()
        if verb not in _WITHOUT_PICTURE:
            self._session.remember_picture()

    def _end(self, verb: str) -> None:
        if verb == "start":
            self._session.log_place = 0
            self._has_begun = True
            self._journal.open(0)
        if verb == "stop":
            self._journal.close()
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
