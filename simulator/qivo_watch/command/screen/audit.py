"""Checks the page of an application: what it draws, against what it shows to a screen reader.

The bezel brings the page to each place where it rests, and back. A text is judged where it is seen
best, as a page may fade its lines towards the edges; what the edge cuts is a fault wherever the
page rests.
"""

import math
import time
import unicodedata
from typing import Callable, Iterator, NamedTuple

import qivo_watch.packages  # noqa: F401 what follows needs it
from PIL import Image, ImageDraw

from qivo_watch.command.screen.eye import Eye
from qivo_watch.command.screen.pictures import disc_mask, make_round, save
from qivo_watch.command.screen.tree import Line, Part, Place, is_on_screen
from qivo_watch.errors import WatchError
from qivo_watch.lines import printable

LEAST_CONTRAST = {"normal": 7.0, "high": 15.0}
"""Of a text with what is behind it, as the Web's accessibility guidelines reckon, for the contrast
that the user wants."""

LEAST_HEIGHT = 24 / 360
"""Of the tallest line of a text, from the lowest to the highest pixel, for a screen of size 1."""

LEAST_UPRIGHT_HEIGHT = 20 / 360
"""The same where nothing reaches below the line, as in "Done" and "128.40"."""

_BELOW_THE_LINE = set("gjpqy")
_UPRIGHT_SCRIPTS = ("LATIN", "GREEK", "CYRILLIC")

LEAST_MARGIN = 0.02
"""Between letters and the round edge, for a screen of size 1."""

LEAST_OPACITY = 0.1
"""What is drawn more faintly is not seen."""

MOST_DETENTS = 200
MOST_CHANGES = 10
"""Detents one way that change what the page says: one that counts them has no end."""

STILL_S = 10.0

_NAMED = {"image", "push button", "check box", "radio button", "entry"}
_CONTROLS = _NAMED - {"image"}
_ON_CONTROL = "on a control"
"""The role of what is reached with its control."""

_Turn = Callable[[str, int], None]


class Fault(NamedTuple):
    """What is wrong at a place of the screen."""

    what: str
    place: Place


class _Rest(NamedTuple):
    """The page where it rests."""

    picture: Image.Image
    parts: list[Part]

    def is_like(self, other: "_Rest") -> bool:
        return self.texts == other.texts and (
            [part.place for part in self.parts] == [part.place for part in other.parts])

    @property
    def texts(self) -> list[str]:
        return [part.name for part in self.parts]


class _Ink(NamedTuple):
    """The pixels of a line that are seen: their box, their contrast, whether the edge cuts them."""

    box: Place
    contrast: float
    is_cut: bool


def audit(eye: Eye, read_windows: Callable[[], list[Part]], turn: _Turn, contrast: str,
          file: str | None) -> None:
    """Fails when the page has faults, which it prints; FILE gets a picture of them. CONTRAST: the
    one that the user wants."""
    rests = list(_rests(eye, read_windows, turn))
    faults = [list(_faults_at(rest)) for rest in rests]
    if rests:
        faults[0] += _faults_of_all(rests, LEAST_CONTRAST[contrast])
    known: set[str] = set()
    for fault in (fault for found in faults for fault in found):
        if fault.what not in known:
            print(printable(fault.what), flush=True)
        known.add(fault.what)
    if not known:
        return
    if file:
        save(_marked([(rest.picture, found) for rest, found in zip(rests, faults) if found]), file)
    raise WatchError(f"{len(known)} fault{'s' if len(known) > 1 else ''} on the page")


def _rests(eye: Eye, read_windows: Callable[[], list[Part]], turn: _Turn) -> Iterator[_Rest]:
    """Where the page is, then each place on the way to the top, to the end and back to the top.

    Only from the top do as many detents lead to where the page was. Where the bezel finds no end,
    each way is as long as the others, which leads there too.
    """
    rest = _look(eye, read_windows)
    yield rest
    ways = []
    for direction in ("ccw", "cw", "ccw"):
        ways.append(0)
        changes = 0
        while ways[-1] < MOST_DETENTS and changes < MOST_CHANGES:
            turn(direction, 1)
            last, rest = rest, _look(eye, read_windows)
            if rest.is_like(last):
                break
            ways[-1] += 1
            changes += rest.texts != last.texts
            yield rest
    if ways[0]:
        turn("cw", ways[0])


def _look(eye: Eye, read_windows: Callable[[], list[Part]]) -> _Rest:
    if not eye.wait_still(time.monotonic() + STILL_S):
        raise WatchError(f"the screen was not still within {STILL_S:g} s")
    parts = [part for window in read_windows() for part in _judged(window)]
    return _Rest(eye.look(), parts)


def _judged(part: Part) -> Iterator[Part]:
    yield part
    for child in part.children:
        if part.role in _CONTROLS:
            child = child._replace(role=_ON_CONTROL)
        yield from _judged(child)


def _faults_at(rest: _Rest) -> Iterator[Fault]:
    for part in rest.parts:
        if part.role in _NAMED and part.is_showing and not part.name.strip():
            yield Fault(f"no name: {part.role} at {_spoken(part.place)}", part.place)
        for line in part.lines:
            ink = _ink_of(line, rest)
            if ink and ink.is_cut:
                yield Fault(f'cut by the edge: "{line.text}"', line.place)


def _faults_of_all(rests: list[_Rest], contrast: float) -> Iterator[Fault]:
    """Of what is nowhere as it should be: a text is its lines, wherever the page rests."""
    for index, part in enumerate(rests[0].parts):
        same = [(rest, rest.parts[index]) for rest in rests if len(rest.parts) > index
                and rest.parts[index].name == part.name]
        if part.lines:
            yield from _faults_of_text(part, same, contrast)
        elif part.role in _CONTROLS and not any(
                is_on_screen(other.place, rest.picture.width) for rest, other in same):
            yield Fault(f'out of the bezel\'s reach: {part.role} "{part.name}"', part.place)


def _faults_of_text(part: Part, same: list[tuple[_Rest, Part]],
                    contrast: float) -> Iterator[Fault]:
    heights = []
    for number, line in enumerate(part.lines):
        if not line.text:
            continue
        inks = [_ink_of(other.lines[number], rest) for rest, other in same
                if len(other.lines) > number]
        whole = [ink for ink in inks if ink and not ink.is_cut]
        if not whole:
            if not any(inks) and part.role != _ON_CONTROL:
                yield Fault(f'out of the bezel\'s reach: "{line.text}"', line.place)
            continue
        best = max(whole, key=lambda ink: ink.contrast)
        heights.append(best.box[3])
        if best.contrast < contrast:
            yield Fault(f'contrast {best.contrast:.1f} instead of {contrast:g}: '
                        f'"{line.text}"', line.place)
    least = _least_height(part.name) * same[0][0].picture.width
    if heights and max(heights) < least:
        yield Fault(f'letters {max(heights)} pixels high instead of {math.ceil(least)}: '
                    f'"{part.lines[0].text}"', part.place)


def _least_height(text: str) -> float:
    is_upright = not _BELOW_THE_LINE & set(text) and all(
        unicodedata.name(letter, "").startswith(_UPRIGHT_SCRIPTS)
        for letter in text if letter.isalpha())
    return LEAST_UPRIGHT_HEIGHT if is_upright else LEAST_HEIGHT


def _ink_of(line: Line, rest: _Rest) -> _Ink | None:
    """None: nothing of the line is seen."""
    size = rest.picture.width
    left, top, width, height = line.place
    box = (max(0, left), max(0, top), min(size, left + width), min(size, top + height))
    if box[0] >= box[2] or box[1] >= box[3]:
        return None
    pixels = rest.picture.crop(box).convert("RGB")
    counted = sorted(pixels.getcolors(pixels.width * pixels.height))
    behind = _luminance(counted[-1][1])
    ratios = {colour: _contrast(_luminance(colour), behind) for _, colour in counted}
    best = max(ratios.values())
    # A letter's brightness falls with its opacity, and with it this difference.
    faintest = 1 + (_contrast(1.0, behind) - 1 if behind < 0.18 else _contrast(0.0, behind) - 1) \
        * LEAST_OPACITY ** 2.2
    if best <= faintest:
        return None
    seen = [(box[0] + index % pixels.width, box[1] + index // pixels.width)
            for index, colour in enumerate(pixels.getdata()) if ratios[colour] > faintest]
    across, down = [x for x, _ in seen], [y for _, y in seen]
    # To the nearest corner of a pixel: a letter covers those at its own edge only in part.
    reach = max(math.hypot(abs(x + 0.5 - size / 2) - 0.5, abs(y + 0.5 - size / 2) - 0.5)
                for x, y in seen)
    return _Ink((min(across), min(down), max(across) - min(across) + 1,
                 max(down) - min(down) + 1), best, reach > size * (0.5 - LEAST_MARGIN)
                or left < 0 or left + width > size)


def _luminance(colour: tuple[int, int, int]) -> float:
    linear = [value / 255 / 12.92 if value <= 10 else ((value / 255 + 0.055) / 1.055) ** 2.4
              for value in colour]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def _contrast(one: float, other: float) -> float:
    return (max(one, other) + 0.05) / (min(one, other) + 0.05)


def _spoken(place: Place) -> str:
    x, y, width, height = place
    return f"{x},{y} {width}x{height}"


def _marked(faulty: list[tuple[Image.Image, list[Fault]]]) -> Image.Image:
    """The screens with what fails framed, side by side."""
    size = faulty[0][0].width
    sheet = Image.new("RGBA", (size * len(faulty), size))
    for column, (picture, faults) in enumerate(faulty):
        screen = make_round(picture, disc_mask(size))
        draw = ImageDraw.Draw(screen)
        for fault in faults:
            x, y, width, height = fault.place
            draw.rectangle((x, y, x + width - 1, y + height - 1), outline=(255, 0, 0, 255), width=2)
        sheet.paste(screen, (column * size, 0))
    return sheet
