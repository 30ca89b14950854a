"""What is done on a watch, and the lines of a replay that do it again."""

import os
import pathlib
import re
import shlex
from typing import Any, Iterator, NamedTuple

from qivo_watch.command.replays.replay import mistake_in
from qivo_watch.command.replays.stroke import Stroke
from qivo_watch.interface import (MILLISECONDS, VERBS, Argument, Choice, Command, Legs, Pairs,
                                  Place, Program)
from qivo_watch.lines import level_of, printable

FINGER = "Finger"
"""The method of a deed of the mouse on the screen."""

RHYTHM_MS = 1000
"""Detents that are further apart are turned one by one."""

_LONGEST_TEXT = 200
"""Characters of a text that is waited for."""

_BREAK = re.compile(r"[\0-\x1f\x7f-\x9f\u2028\u2029]")
"""What a replay's line may not have, and the ends of a text's lines."""

_CHANGING = re.compile(r"0x[0-9a-fA-F]+|\d{4,}|\d\d:\d\d")
"""Addresses, processes, times."""

_FUNCTION = re.compile(r"\b(\w+)\(\d+\)$")


class Rest(NamedTuple):
    """The screen, still after a deed: a text that has come on the page, the file of its picture,
    and whether the application has ended well."""

    text: str = ""
    picture: str = ""
    has_ended: bool = False


class Deed(NamedTuple):
    """Times are milliseconds, FIRST and LAST the log's lengths when it began and ended.

    IS_BY_MOUSE: of the watch's body. WAS_STILL: whether the screen rested before it, as REST tells
    if it rested long.
    """

    method: str
    values: dict[str, Any]
    is_by_mouse: bool
    began: int
    ended: int
    first: int
    last: int
    was_still: bool
    rest: Rest | None


def is_flung(deed: Deed) -> bool:
    """Whether it has flung a page."""
    if deed.method == "Swipe":
        return Stroke.of_swipe(deed.values).is_flung()
    return deed.method == FINGER and deed.values["stroke"].is_flung()


def lines(deeds: list[Deed], end: Deed, log: list[str], size: int) -> Iterator[str]:
    """END is where the recording ends, with what was before it; LOG the lines so far."""
    place, last = 0, 0
    for deed in [*_gathered(deeds), end]:
        found = _line_to_wait_for(log, place, last, deed.first)
        if found:
            place, text = found
            yield _wait("log", text)
        yield from _waits(deed)
        if deed is not end:
            yield _line(deed, size)
            last = deed.last


def _waits(deed: Deed) -> Iterator[str]:
    """For the rest before a deed."""
    if deed.rest and deed.rest.has_ended:
        yield "wait exit"
    if deed.rest and deed.rest.text:
        yield _wait("text", deed.rest.text)
    if deed.rest or deed.was_still:
        yield "wait still"
    if deed.rest and deed.rest.picture:
        yield shlex.join(["compare", deed.rest.picture])


def _wait(what: str, text: str) -> str:
    return shlex.join(["wait", what, *(["--"] if text.startswith("-") else []), text])


def piece_of(text: str) -> str:
    """The longest part that one line of a replay can wait for."""
    return max(_BREAK.split(text), key=len).strip()[:_LONGEST_TEXT]


def _gathered(deeds: list[Deed]) -> Iterator[Deed]:
    """Clicks instead of keys that go down and up, and turns instead of detents."""
    gathered: Deed | None = None
    for deed in deeds:
        joined = gathered and (_click(gathered, deed) or _turn(gathered, deed))
        if gathered and not joined:
            yield gathered
        gathered = joined or deed
    if gathered:
        yield gathered


def _click(push: Deed, release: Deed) -> Deed | None:
    if ((push.method, release.method) != ("PushKey", "ReleaseKey")
            or push.values != release.values):
        return None
    duration = min(release.began - push.began, int(MILLISECONDS.most))
    return push._replace(method="ClickKey", values={**push.values, "duration": duration},
                         ended=release.ended, last=release.last)


def _turn(begin: Deed, more: Deed) -> Deed | None:
    """The later detents keep their rhythm: the time since the first, divided among them."""
    if not (begin.method == more.method == "Bezel" and begin.is_by_mouse and more.is_by_mouse
            and begin.values["direction"] == more.values["direction"]
            and more.began - begin.ended <= RHYTHM_MS and not more.rest
            and begin.values["count"] + more.values["count"] <= 1000):
        return None
    count = begin.values["count"] + more.values["count"]
    interval = round((more.began - begin.began) / (count - more.values["count"]))
    return begin._replace(values={**begin.values, "count": count,
                                  "interval": min(interval, int(MILLISECONDS.most))},
                          ended=more.ended, last=more.last)


def _line(deed: Deed, size: int) -> str:
    words = (deed.values["stroke"].words(size) if deed.method == FINGER
             else words_of(deed.method, deed.values))
    line = shlex.join(words)
    if mistake_in(line):
        return f"# cannot be replayed: {printable(' '.join(line.splitlines()))}"
    return line


def words_of(method: str, values: dict[str, Any]) -> list[str]:
    """The words of the command line for a verb; what has its default is left out."""
    verb = VERBS[method]
    words = verb.words.split()
    for argument in verb.arguments:
        value = values.get(argument.name)
        # A replay has no terminal for a debugger.
        is_alone = argument.name == "interval" and values.get("count") == 1
        if (value is not None and value != argument.default and argument.name != "debugger"
                and not is_alone):
            words += _argument_words(argument, value)
    return words


def _argument_words(argument: Argument, value: Any) -> list[str]:
    kind, flag = argument.kind, argument.short or argument.flag or ""
    if isinstance(kind, Choice) and kind.are_flags:
        return [f"--{value}"]
    if isinstance(kind, Pairs):
        return [word for key, text in value.items() for word in _option(flag, f"{key}={text}")]
    if isinstance(kind, Legs):
        return [word for leg in value for word in _option(flag, ",".join(map(str, leg)))]
    if isinstance(kind, Command):
        value = shlex.join([_near(value[0]), *value[1:]])
    elif isinstance(kind, (Program, Place)):
        value = _near(value)
    elif isinstance(value, float):
        value = f"{value:g}"
    return _option(flag, str(value)) if flag else [str(value)]


def _option(flag: str, text: str) -> list[str]:
    return [f"{flag}={text}"] if text.startswith("-") else [flag, text]


def _near(path: str) -> str:
    """A path below the working folder is found from there wherever that is."""
    near = os.path.relpath(path) if os.path.isabs(path) else path
    if near == path or pathlib.Path(near).parts[:1] == ("..",):
        return path
    return near if near == os.curdir else f"./{near}"


def _line_to_wait_for(log: list[str], place: int, last: int, first: int) -> tuple[int, str] | None:
    """Of the lines after a deed the latest that has a text of its own since the line number PLACE;
    returns the number of the next, and the text. The log may not have been read up to FIRST."""
    since = log[place:first]
    tried: set[str] = set()
    for number in range(min(first, len(log)) - 1, max(last, place) - 1, -1):
        for text in _lasting_texts(log[number]):
            if text not in tried and sum(text in line for line in since) == 1:
                return number + 1, text
            tried.add(text)
    return None


def _lasting_texts(line: str) -> Iterator[str]:
    """Parts of a log's line that are the same in the next run."""
    if level_of(line) is None:
        return
    head, arrow, text = line.partition(" > ")
    if not arrow:
        text = line.split(": ", 1)[-1]
    part = piece_of(max((part.strip() for part in _CHANGING.split(text)), key=len))
    if len(part) >= 4:
        yield part
    function = _FUNCTION.search(head)
    if arrow and function:
        yield function[1]
