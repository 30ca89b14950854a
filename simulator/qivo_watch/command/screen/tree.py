"""What an application shows to a screen reader: its accessible tree, read over the watch's bus."""

import math
import time
from typing import Any, Iterator, NamedTuple

from qivo_watch.bus import PATIENCE_S
from qivo_watch.command.bus.client import Client
from qivo_watch.command.bus.connection import BusGone, CallError
from qivo_watch.command.bus.pulse import hang, silent_part
from qivo_watch.errors import WatchEnded, WatchError

_ROOT = "/org/a11y/atspi/accessible/root"
_ACCESSIBLE, _COMPONENT, _TEXT = (f"org.a11y.atspi.{name}"
                                  for name in ("Accessible", "Component", "Text"))
_ON_SCREEN, _LINE = 0, 3
_SHOWING = 25
"""The numbers of AT-SPI2."""

_AT_ONCE = 50
"""Questions that may be open; a bus takes 128."""

_MOST_OBJECTS, _DEEPEST = 5000, 100
"""A tree with more objects and lines, or with more of them in each other, counts as broken."""

_PATIENCE_S = 20.0
"""Seconds for a whole tree, also for one that changes again and again while it is read."""

_GONE = "org.freedesktop.DBus.Error.UnknownObject"

Place = tuple[int, int, int, int]


class Line(NamedTuple):
    """A line of a text, and where it is on the screen: x, y, width, height."""

    text: str
    place: Place


class Part(NamedTuple):
    """An object of the tree with all that is in it."""

    role: str
    name: str
    place: Place
    is_showing: bool
    lines: list[Line]
    children: list["Part"]

    def all(self) -> Iterator["Part"]:
        """In reading order."""
        yield self
        for child in self.children:
            yield from child.all()

    def as_json(self) -> dict[str, Any]:
        described: dict[str, Any] = {"role": self.role, "name": self.name, "place": self.place,
                                     "showing": self.is_showing}
        if self.lines:
            described["lines"] = [{"text": line.text, "place": line.place} for line in self.lines]
        return described | {"children": [child.as_json() for child in self.children]}

    def described(self, depth: int = 0) -> Iterator[str]:
        """A line for each object."""
        x, y, width, height = self.place
        name = " ".join(self.name.split())
        yield (f"{'  ' * depth}{self.role}{f' {chr(34)}{name}{chr(34)}' if name else ''} "
               f"{x},{y} {width}x{height}{'' if self.is_showing else ' out of sight'}")
        for child in self.children:
            yield from child.described(depth + 1)


def read_windows(client: Client) -> list[Part]:
    """The windows of the application that was started last."""
    bus = client.call("ShowTree")[0]
    deadline = time.monotonic() + _PATIENCE_S
    while True:
        try:
            return _Reader(client, bus, deadline).windows()
        except _Changed:
            pass  # Something went while it was read.


def find_text(windows: list[Part], text: str, size: int) -> tuple[int, int] | None:
    """The middle of the first line or object that contains a text, of those whose middle is on a
    round screen of SIZE pixels."""
    for part in (part for window in windows for part in window.all()):
        if not part.is_showing or text not in part.name:
            continue
        places = [line.place for line in part.lines if text in line.text] or [part.place]
        for place in (place for place in places if is_on_screen(place, size)):
            return place[0] + place[2] // 2, place[1] + place[3] // 2
    return None


def is_on_screen(place: Place, size: int) -> bool:
    """Whether the middle of a place is on a round screen."""
    x, y, width, height = place
    return math.hypot(x + width / 2 - size / 2, y + height / 2 - size / 2) <= size / 2


class _Question(NamedTuple):
    """A call that reads something of an object; ANSWER: the types of what it returns."""

    interface: str
    method: str
    answer: str
    signature: str = ""
    arguments: tuple = ()


_CHILDREN = _Question(_ACCESSIBLE, "GetChildren", "a(so)")
_INTERFACES = _Question(_ACCESSIBLE, "GetInterfaces", "as")
_NAME = _Question("org.freedesktop.DBus.Properties", "Get", "v", "ss",
                  (_ACCESSIBLE, "Name"))
_PLACE = _Question(_COMPONENT, "GetExtents", "(iiii)", "u", (_ON_SCREEN,))
_ROLE = _Question(_ACCESSIBLE, "GetRoleName", "s")
_STATES = _Question(_ACCESSIBLE, "GetState", "au")


class _Changed(Exception):
    """An object has gone since its parent told of it."""


class _Reader:
    def __init__(self, client: Client, bus: str, deadline: float):
        self._folder = client.folder
        self._connection = client.connection
        self._bus = bus
        self._deadline = deadline
        self._left = _MOST_OBJECTS

    def windows(self) -> list[Part]:
        return self._parts(*self._ask(_ROOT, _CHILDREN), 1)

    def _parts(self, children: list[tuple[str, str]], depth: int) -> list[Part]:
        if children and depth > _DEEPEST:
            raise WatchError(f"the tree is more than {_DEEPEST} objects deep")
        return [self._part(path, depth) for _, path in children]

    def _count(self) -> None:
        self._left -= 1
        if self._left < 0:
            raise WatchError(f"the tree has more than {_MOST_OBJECTS} objects and lines")

    def _part(self, path: str, depth: int) -> Part:
        self._count()
        interfaces, states, name, role, place, children = self._ask(
            path, _INTERFACES, _STATES, _NAME, _ROLE, _PLACE, _CHILDREN)
        return Part(role, name if isinstance(name, str) else "", place,
                    bool(states and states[0] >> _SHOWING & 1),
                    self._lines(path) if _TEXT in interfaces else [],
                    self._parts(children, depth + 1))

    def _lines(self, path: str) -> list[Line]:
        texts, places = [], []
        offset = 0
        while True:
            [(text, begin, end)] = self._ask(path, _Question(
                _TEXT, "GetStringAtOffset", "sii", "iu", (offset, _LINE)))
            if end <= offset:
                found = [place for first in range(0, len(places), _AT_ONCE)
                         for place in self._ask(path, *places[first:first + _AT_ONCE])]
                return [Line(*line) for line in zip(texts, found)]
            self._count()
            texts.append(text.strip())
            places.append(_Question(_TEXT, "GetRangeExtents", "iiii", "iiu",
                                    (begin, end, _ON_SCREEN)))
            offset = end

    def _ask(self, path: str, *questions: _Question) -> list[Any]:
        """The answers of an object, to one question while it answers the one before."""
        if time.monotonic() > self._deadline:
            raise WatchError(f"the application's tree was not read within {_PATIENCE_S:g} s")
        calls = []
        try:
            for question in questions:
                calls.append(self._connection.send(self._bus, path, question.interface,
                                                   question.method, question.signature,
                                                   *question.arguments))
            return [self._answer(call, question) for call, question in zip(calls, questions)]
        except CallError as error:
            if error.name == _GONE:
                raise _Changed() from None
            raise _broken(str(error).partition("\n")[0]) from None
        except TimeoutError:
            raise hang(silent_part(self._folder, "the application")) from None
        except BusGone:
            raise WatchEnded("the watch has ended") from None
        finally:
            for call in calls:
                self._connection.forget(call)

    def _answer(self, call: int, question: _Question) -> Any:
        found = self._connection.finish(call, PATIENCE_S)
        if found.signature != question.answer:
            raise _broken(f"{question.method} returns {found.signature or 'nothing'}")
        return found.values[0] if len(found.values) == 1 else found.values


def _broken(how: str) -> WatchError:
    return WatchError(f"the application's tree cannot be read: {how}")
