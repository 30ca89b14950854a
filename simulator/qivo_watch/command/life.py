"""A watch's start and end, as a command sees them.

None of this needs the watch's bus, so a watch that hangs can be ended too.
"""

from __future__ import annotations

import contextlib
import os
import select
import signal
import time

from qivo_watch.errors import WatchEnded, WatchError, WatchGone
from qivo_watch.processes import GRACE_S, INTERRUPTS, descendants
from qivo_watch.state import Folder

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any

START_PATIENCE_S = 60
READY_PATIENCE_S = 5.0
"""Seconds that a command waits for a watch that is being started."""

STOP_PATIENCE_S = 5.0
"""Seconds for a watch to end; before that, its guard kills what does not end by itself."""

_TURN_S = 0.01


def start(folder: Folder, options: dict[str, Any]) -> None:
    """Starts a watch, and returns when it can be used. An interrupted start leaves none.

    INTERRUPTS are blocked on return: a late one would end the command and leave the watch.
    """
    import json  # pylint: disable=import-outside-toplevel
    before = signal.pthread_sigmask(signal.SIG_BLOCK, INTERRUPTS)
    try:
        guard, answer = _start_guard(folder, json.dumps(options))
    except BaseException:
        signal.pthread_sigmask(signal.SIG_SETMASK, before)
        raise
    try:
        signal.pthread_sigmask(signal.SIG_SETMASK, before)
        line = _read_line(answer)
        signal.pthread_sigmask(signal.SIG_BLOCK, INTERRUPTS)
    except BaseException:
        end(folder, guard)
        raise
    if line != "ready":
        end(folder, guard)
        raise WatchGone(f"the watch did not start: {line or 'its keeper has ended'}")


def stop(folder: Folder) -> None:
    """Ends a watch that runs or is starting, whatever part of it hangs."""
    if not end(folder):
        raise WatchGone(absence(folder))


def end(folder: Folder, guard: int | None = None) -> bool:
    """Returns when nothing is left of a watch; false when there was none.

    guard: of which watch, should another one have taken its place; None is any.
    """
    deadline = time.monotonic() + STOP_PATIENCE_S
    asked: set[int] = set()
    was_held = False
    while folder.is_held():
        holders = folder.holders()
        if guard and guard not in holders:
            break
        was_held = True
        for holder in holders:
            if time.monotonic() > deadline:
                _signal(signal.SIGKILL, holder, *descendants(holder))
            elif holder not in asked:
                asked.add(holder)
                _signal(signal.SIGTERM, holder)
                _signal(signal.SIGCONT, holder)
        if time.monotonic() > deadline + GRACE_S:
            raise folder.held_unseen()
        time.sleep(_TURN_S)
    # Another stop takes the holder of the lock for the watch, and asks it to end.
    before = signal.signal(signal.SIGTERM, signal.SIG_IGN)
    try:
        return folder.clear_dead() or was_held
    finally:
        signal.signal(signal.SIGTERM, before)


def wait_ready(folder: Folder) -> None:
    """Waits for a watch that is starting; fails when there is none."""
    deadline = time.monotonic() + READY_PATIENCE_S
    # Check the folder's owner first: nothing of another user is read.
    while True:
        if not folder.is_held():
            raise WatchGone(absence(folder))
        if folder.display is not None:
            return
        if time.monotonic() > deadline:
            raise WatchGone(f'watch "{folder.name}" is still starting')
        time.sleep(_TURN_S)


def ended(folder: Folder) -> WatchError:
    """The message of a command whose watch is gone."""
    _wait_cleared(folder)
    reason = folder.take_note()
    return WatchGone(f"the watch has ended: {reason}") if reason else WatchEnded(
        "the watch has ended")


def absence(folder: Folder) -> str:
    """Why there is no watch."""
    _wait_cleared(folder)
    reason = folder.take_note()
    if reason:
        return f'watch "{folder.name}" has ended: {reason}'
    return f'watch "{folder.name}" is not running (qivo-watch start starts it)'


def _wait_cleared(folder: Folder) -> None:
    """Waits for the guard to clear up: who is told of a watch's end may start another at once."""
    deadline = time.monotonic() + GRACE_S
    while folder.is_held() and time.monotonic() < deadline:
        time.sleep(_TURN_S)


def _start_guard(folder: Folder, options: str) -> tuple[int, int]:
    from qivo_watch.guard import start_guard  # pylint: disable=import-outside-toplevel
    lock = folder.create()
    try:
        return start_guard(folder, lock, options)
    except OSError as error:
        folder.clear()
        os.close(lock)
        raise WatchError(f"cannot start a process: {error.strerror}") from None


def _signal(number: int, *processes: int) -> None:
    """Signals a process that may have ended meanwhile."""
    for process in processes:
        with contextlib.suppress(ProcessLookupError):
            os.kill(process, number)


def _read_line(descriptor: int) -> str:
    with os.fdopen(descriptor, "rb") as pipe:
        ready = select.select([pipe], [], [], START_PATIENCE_S)[0]
        return pipe.readline().decode("utf-8", "replace").strip() if ready else "it takes too long"
