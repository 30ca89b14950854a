"""The processes of a watch: found, and ended."""

from __future__ import annotations

import contextlib
import os
import signal
import time

TYPE_CHECKING = False  # typing and pathlib take long to load.
if TYPE_CHECKING:
    import pathlib
    from typing import Iterator

STATE_VARIABLE = "QIVO_WATCH_FOLDER"
"""Names the watch's folder in the environment of each process that belongs to the watch."""

REQUESTS = (signal.SIGTERM, signal.SIGINT)
"""The signals that ask a watch to end."""

INTERRUPTS = (*REQUESTS, signal.SIGHUP)
"""The signals that ask a command to end."""

GRACE_S = 3.0
"""Seconds in which killed processes are gone."""


def end_of(status: int) -> str:
    """Describes a process's end: "ended with status 3", "was killed by SIGSEGV"."""
    if status >= 0:
        return f"ended with status {status}"
    try:
        return f"was killed by {signal.Signals(-status).name}"
    except ValueError:
        return f"was killed by signal {-status}"


def kill_group(leader: int) -> None:
    """Ends a process and everything that it has started in its group."""
    with contextlib.suppress(ProcessLookupError, PermissionError):
        os.killpg(leader, signal.SIGKILL)


def descendants(ancestor: int) -> list[int]:
    """The living descendants of a process, in no order."""
    parents: dict[int, list[int]] = {}
    for process in _all():
        with contextlib.suppress(OSError, ValueError, IndexError):
            fields = _read(f"/proc/{process}/stat").rpartition(")")[2].split()
            if fields[0] != "Z":
                parents.setdefault(int(fields[1]), []).append(process)
    found, open_ends = [], [ancestor]
    while open_ends:
        children = parents.get(open_ends.pop(), [])
        found += children
        open_ends += children
    return found


def program_of(process: int) -> pathlib.Path | None:
    """The file that a process runs; None when it cannot be seen."""
    import pathlib  # pylint: disable=import-outside-toplevel,redefined-outer-name
    try:
        return pathlib.Path(os.readlink(f"/proc/{process}/exe"))
    except OSError:
        return None


def kill_all_of(folder: pathlib.Path) -> None:
    """Ends every process of this folder's watch except the caller."""
    mark = f"{STATE_VARIABLE}={folder}".encode()
    deadline = time.monotonic() + GRACE_S
    while victims := [process for process in _all() if _has(process, mark)]:
        for process in victims:
            with contextlib.suppress(ProcessLookupError, PermissionError):
                os.kill(process, signal.SIGKILL)
        if time.monotonic() > deadline:
            return
        time.sleep(0.001)


def lock_holders(folder: str) -> list[int]:
    """The processes of this user that hold an exclusive lock on a folder."""
    target = os.path.realpath(folder)
    return [process for process in _all() if _holds(process, target)]


def _holds(process: int, target: str) -> bool:
    place = f"/proc/{process}"
    with contextlib.suppress(OSError):
        for number in os.listdir(f"{place}/fd"):
            with contextlib.suppress(OSError):
                if os.readlink(f"{place}/fd/{number}") == target:
                    if any(fact.startswith("lock:") and "FLOCK" in fact and "WRITE" in fact
                           for fact in _read(f"{place}/fdinfo/{number}").splitlines()):
                        return True
    return False


def _read(file: str) -> str:
    with open(file, encoding="utf-8", errors="replace") as opened:
        return opened.read()


def _all() -> Iterator[int]:
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            yield int(entry)


def _has(process: int, mark: bytes) -> bool:
    if process == os.getpid():
        return False
    try:
        with open(f"/proc/{process}/environ", "rb") as environment:
            return mark in environment.read().split(b"\0")
    except OSError:
        return False
