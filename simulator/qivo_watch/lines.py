"""Lines of a log: made safe for a terminal, their levels and colours."""

import re

from qivo_watch.interface import LEVELS

LONGEST_LINE = 4096

_HEAD = re.compile(r"\d\d:\d\d:\d\d\.\d{3} ([DIWE]) ")
_LETTERS = dict(zip("DIWE", LEVELS))
_ESCAPE = re.compile(r"\033\[[0-9;]*m")
# Control characters, surrogates, ends of lines and paragraphs, what turns the reading direction of
# the text around it, and what no XML may have. Spaces and joiners of all kinds are text.
_UNBEARABLE = re.compile(
    "[\0-\x08\x0a-\x1f\x7f-\x9f\ud800-\udfff\u2028-\u202e\u2066-\u2069\ufffe\uffff]")
_RESET = "\033[0m"
_WAY = "\033[1;34m"
_COLOURS = {"error": "\033[31m", "warn": "\033[1;33m", "info": "\033[1;35m", "debug": "\033[2m"}


def printable(line: str) -> str:
    """The line in a form safe for a terminal: without escapes and control characters."""
    return _UNBEARABLE.sub("\ufffd", _ESCAPE.sub("", line)[:LONGEST_LINE])


def level_of(line: str) -> str | None:
    """One of LEVELS; None for a line that was not written through the watch's log."""
    found = _HEAD.match(line)
    return _LETTERS[found[1]] if found else None


def is_at_least(line: str, level: str) -> bool:
    """Lines without a level are always shown: toolkits and sanitizers write their errors so."""
    own = level_of(line)
    return own is None or LEVELS.index(own) >= LEVELS.index(level)


def coloured(line: str) -> str:
    """The line in the colour of its kind: error, warning, trace of a function, other."""
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
