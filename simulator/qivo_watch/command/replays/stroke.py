"""A finger's way over the screen, and the words of a command that draws it again."""

import heapq
import math
from typing import Any, Iterator, Sequence

from qivo_watch.interface import MILLISECONDS

TAP_MS = 150
"""A finger that stays in its place for longer does not tap."""

STRAY_PIXELS = 3
"""How far a recorded finger may stray from the mouse's way, if MOST_LEGS are enough for that."""

MOST_LEGS = 100

STEP_MS = 10
"""The keeper's finger takes steps of as many milliseconds, and a hand's mouse no longer ones."""

_MARGIN = 1.0
"""Pixels that a finger keeps from the edge."""

HELD_MS = 90
"""A finger that has stayed in its place for so long flings nothing."""


class Stroke:
    """A finger on the screen: milliseconds and places, from its press to its release."""

    def __init__(self, points: list[tuple[int, int, int]]):
        self.points = points
        self._words: list[str] = []

    @classmethod
    def of_swipe(cls, values: dict[str, Any]) -> "Stroke":
        """Of a verb's arguments."""
        points = [(0, values["x1"], values["y1"])]
        for x, y, duration in [(values["x2"], values["y2"], values["duration"]), *values["then"]]:
            points.append((points[-1][0] + duration, x, y))
        return cls(points)

    def is_flung(self) -> bool:
        """Whether the finger leaves while it moves. Milliseconds then decide where a page stops,
        and no finger repeats them."""
        end, *place = self.points[-1]
        since = end - HELD_MS
        late = [other for time, *other in self.points if time >= since]
        for (begin, *first), (time, *second) in zip(self.points, self.points[1:]):
            if begin < since < time:
                late.append(_between(first, second, (since - begin) / (time - begin)))
        return any(math.dist(place, other) > STRAY_PIXELS for other in late)

    def words(self, size: int) -> list[str]:
        """Of a finger that has left: a recording is written again and again."""
        if not self._words:
            self._words = self._found_words(size)
        return self._words

    def _found_words(self, size: int) -> list[str]:
        points = [(time, *_onto_disc(x, y, size)) for time, x, y in _held(self.points)]
        begin, end = points[0], points[-1]
        reach = max(math.dist(point[1:], begin[1:]) for point in points)
        if reach <= STRAY_PIXELS and end[0] - begin[0] <= TAP_MS:
            return ["touch", *map(str, begin[1:])]
        kept = _simplified(points)
        legs = [(x, y, min(time - before[0], int(MILLISECONDS.most)))
                for before, (time, x, y) in zip(kept, kept[1:])]
        (x, y, duration), *others = legs
        return ["swipe", *map(str, begin[1:]), str(x), str(y), "-d", str(duration),
                *(word for leg in others for word in ("--then", ",".join(map(str, leg))))]


def _held(points: list[tuple[int, int, int]]) -> Iterator[tuple[int, int, int]]:
    """The points, with those where the finger stayed before it leapt on."""
    yield points[0]
    for (before, *place), (time, *next_place) in zip(points, points[1:]):
        if time - before > 2 * STEP_MS and place != next_place:
            yield time - STEP_MS, *place
        yield time, *next_place


def _onto_disc(x: int, y: int, size: int) -> tuple[int, int]:
    """The nearest place of the round screen."""
    middle = size / 2 - 0.5
    distance, most = math.dist((x, y), (middle, middle)), size / 2 - _MARGIN
    if distance <= most:
        return x, y
    return (round(middle + (x - middle) * most / distance),
            round(middle + (y - middle) * most / distance))


def _simplified(points: list[tuple[int, int, int]]) -> list[tuple[int, int, int]]:
    """The points between which a finger that moves evenly strays little: where it strays most, the
    next one is taken, until none is left or a replay's line is full."""
    kept = {0, len(points) - 1}
    legs = [_worst(points, 0, len(points) - 1)]
    while len(kept) <= MOST_LEGS and legs[0][0] < -STRAY_PIXELS:
        _, first, where, last = heapq.heappop(legs)
        kept.add(where)
        heapq.heappush(legs, _worst(points, first, where))
        heapq.heappush(legs, _worst(points, where, last))
    return [points[number] for number in sorted(kept)]


def _worst(points: list[tuple[int, int, int]], first: int, last: int
           ) -> tuple[float, int, int, int]:
    """How far the finger strays at most from an even way between two points, negative as a heap
    has its least first; FIRST, at which point it does, and LAST."""
    begin, end = points[first], points[last]
    whole = max(end[0] - begin[0], 1)
    worst, where = 0.0, first
    for number in range(first + 1, last):
        time, *place = points[number]
        share = (time - begin[0]) / whole
        if (distance := math.dist(_between(begin[1:], end[1:], share), place)) > worst:
            worst, where = distance, number
    return -worst, first, where, last


def _between(begin: Sequence[float], end: Sequence[float], share: float) -> list[float]:
    return [one + (other - one) * share for one, other in zip(begin, end)]
