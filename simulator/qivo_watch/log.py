"""The watch's log: what its programs and the watch itself have said, kept in memory, bounded."""

import collections
import itertools
import re
import time
from typing import Callable

KEPT_LINES = 20000
LONGEST_LINE = 4096
PIECE_BYTES = 256 * 1024
"""As much as one reading returns; the bus drops who sends a message of more than 32 MiB."""

OWN_TAG = "QIVO_WATCH"
LEVELS = ["debug", "info", "warn", "error"]

_HEAD = re.compile(r"\d\d:\d\d:\d\d\.\d{3} ([DIWE]) ")
_LETTERS = dict(zip("DIWE", LEVELS))
_ESCAPE = re.compile(r"\033\[[0-9;]*m")
# Control characters, surrogates, ends of lines and paragraphs, and what turns the reading
# direction of the text around it. Spaces and joiners of all kinds are text.
_UNBEARABLE = re.compile(
    "[\0-\x08\x0a-\x1f\x7f-\x9f\ud800-\udfff\u2028-\u202e\u2066-\u2069]")
_RESET = "\033[0m"
_WAY = "\033[1;34m"
_COLOURS = {"error": "\033[31m", "warn": "\033[1;33m", "info": "\033[1;35m", "debug": "\033[2m"}


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
        """A line of the watch's own; level: one of LEVELS."""
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


def printable(line: str) -> str:
    """The line as a terminal can bear it: without escapes and control characters."""
    return _UNBEARABLE.sub("\ufffd", _ESCAPE.sub("", line)[:LONGEST_LINE])


def level_of(line: str) -> str | None:
    """One of LEVELS; None for a line that was not written through the watch's log."""
    found = _HEAD.match(line)
    return _LETTERS[found[1]] if found else None


def is_at_least(line: str, level: str) -> bool:
    """Lines of no level are always wanted: toolkits and sanitizers write them in need."""
    own = level_of(line)
    return own is None or LEVELS.index(own) >= LEVELS.index(level)


def coloured(line: str) -> str:
    """The line in the colour of its class: failure, warning, way through a function, the rest."""
    level = level_of(line)
    if level is None:
        return line
    if line.endswith((" BEGIN >>>>", " END <<<<")):
        colour = _WAY
    else:
        colour = _COLOURS[level]
    head, arrow, text = line.partition(" > ")
    if not arrow:
        head, arrow, text = line.partition(": ")
    return f"{head}{arrow}{colour}{text}{_RESET}"
