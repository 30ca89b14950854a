"""What asks a command to end, other than Ctrl-C, ends it as Ctrl-C does, and what it has begun."""

import signal

from qivo_watch.processes import INTERRUPTS

_received: list[int] = []


def take() -> None:
    """From now on each of them raises a KeyboardInterrupt; those that are ignored stay so."""
    for number in set(INTERRUPTS) - {signal.SIGINT}:
        if signal.getsignal(number) is signal.SIG_DFL:
            signal.signal(number, _take)
    signal.pthread_sigmask(signal.SIG_UNBLOCK, INTERRUPTS)


def status() -> int:
    """What the process ends with that one of them has ended."""
    return 128 + (_received or [signal.SIGINT])[0]


def _take(number: int, _frame: object) -> None:
    # A terminal that is closed says so twice. The second shall not end the clearing up.
    if _received:
        return
    _received.append(number)
    raise KeyboardInterrupt
