"""What asks a command to end, other than Ctrl-C, ends it as Ctrl-C does, and what it has begun."""

import contextlib
import signal
from typing import Callable, Iterator

from qivo_watch.processes import INTERRUPTS

_received: list[int] = []
_quit: list[Callable[[], None]] = []


def take() -> None:
    """From now on each of them raises a KeyboardInterrupt; those that are ignored stay so."""
    for number in set(INTERRUPTS) - {signal.SIGINT}:
        if signal.getsignal(number) is signal.SIG_DFL:
            signal.signal(number, _take)
    signal.pthread_sigmask(signal.SIG_UNBLOCK, INTERRUPTS)


def status() -> int:
    """What the process ends with that one of them has ended."""
    return 128 + (_received or [signal.SIGINT])[0]


@contextlib.contextmanager
def quitting(end: Callable[[], None]) -> Iterator[None]:
    """Within, an interrupt calls END and is raised after it: a main loop only prints what is
    raised within."""
    before = len(_received)
    _quit.append(end)
    try:
        yield
    finally:
        _quit.pop()
    if len(_received) > before:
        raise KeyboardInterrupt


def _take(number: int, _frame: object) -> None:
    # A terminal that is closed says so twice. The second shall not end the clearing up.
    if _received:
        return
    _received.append(number)
    if not _quit:
        raise KeyboardInterrupt
    _quit[-1]()
