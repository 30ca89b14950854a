"""The watch's log: lines of its programs and of the watch itself, in memory, bounded."""

import collections
import itertools
import time
from typing import Callable

from qivo_watch.lines import printable

KEPT_LINES = 20000
PIECE_BYTES = 256 * 1024
"""The most that one reading returns; the bus drops senders of messages over 32 MiB."""

OWN_TAG = "QIVO_WATCH"


class Log:
    """Lines with numbers from 0 on. The oldest go when there are too many."""

    def __init__(self, on_grown: Callable[[], None]):
        self._lines: collections.deque[str] = collections.deque(maxlen=KEPT_LINES)
        self._on_grown = on_grown
        self.count = 0

    def add(self, line: str) -> None:
        self._lines.append(printable(line))
        self.count += 1
        self._on_grown()

    def say(self, level: str, text: str) -> None:
        """Adds a line of the watch itself; level: one of LEVELS."""
        now = time.time()
        stamp = time.strftime("%H:%M:%S", time.localtime(now))
        letter = level[0].upper()
        self.add(f"{stamp}.{int(now * 1000) % 1000:03d} {letter} {OWN_TAG}: {text}")

    def read(self, start: int) -> tuple[int, int, list[str]]:
        """How many lines there were so far, the number of the first of a piece of them, and the
        piece: it begins with line START, or with the oldest that is kept."""
        oldest = self.count - len(self._lines)
        first = min(max(start, oldest), self.count)
        piece: list[str] = []
        size = 0
        for line in itertools.islice(self._lines, first - oldest, None):
            size += len(line.encode())
            if piece and size > PIECE_BYTES:
                break
            piece.append(line)
        return self.count, first, piece
