"""The errors of a command."""

from __future__ import annotations

TYPE_CHECKING = False  # typing and what it needs take long to load.
if TYPE_CHECKING:
    import pathlib


class WatchError(Exception):
    """Refused, failed or without effect: one line for the user. KIND is for who plays a replay:
    journal.py has an exit status for each."""

    kind = "refused"
    status = 1


class Late(WatchError):
    """What was waited for did not come in time."""

    kind = "time"


class Differs(WatchError):
    """The screen does not look like the picture in the file WANTED; DIFFERENCE is another file."""

    kind = "difference"

    def __init__(self, text: str, wanted: pathlib.Path, difference: pathlib.Path):
        super().__init__(text)
        self.wanted = wanted
        self.difference = difference


class ReplayFailed(WatchError):
    """STATUS is the exit status."""

    def __init__(self, text: str, status: int):
        super().__init__(text)
        self.status = status


class WatchGone(WatchError):
    """There is no watch, it hangs, or it has not started."""

    kind = "watch"


class WatchEnded(WatchGone):
    """The watch was stopped while a command was working on it."""


def of_system(error: OSError) -> WatchError:
    """What the system refused, a full output for one."""
    return WatchError(f"{error.filename or 'output'}: {error.strerror}")


class UsageError(Exception):
    """Wrong arguments: one line for the user, exit status 2."""


class ScreenGone(Exception):
    """The watch's screen has gone: the watch has ended, or is ending."""
