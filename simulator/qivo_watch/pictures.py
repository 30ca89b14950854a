"""Pictures of the watch's screen: taken, made round, compared."""

import contextlib
import math
import os
import pathlib
import select
import socket
import threading
import time
import warnings
from typing import Iterator

from PIL import Image, ImageChops, ImageOps
from Xlib import X, Xatom, display, error
from Xlib.ext import damage

from qivo_watch.errors import WatchError
from qivo_watch.pulse import hang, is_server_silent

ANSWER_S = 3.0
"""Seconds for the server to answer."""

IDLE_S = 1.0
"""Seconds without news after which the server is asked whether it is still there."""

STILL_S = 0.5
"""Seconds without a change, and without a motion that its program tells of, after which nothing
moves any more; frames come 60 times a second."""

_MOTION = "_WATCH_PORT_MOTION"
"""What a window of the port has: 1 while anything in it moves, else 0."""

ALLOWED_SHARE = 0.002
"""The part of the disc's pixels that may differ: a glyph's edge that rounds the other way."""


class Eye:
    """Looks at a watch's screen until it is closed. The server tells of each change."""

    def __init__(self, name: str, authority: pathlib.Path):
        os.environ["XAUTHORITY"] = str(authority)
        if is_server_silent(name):
            raise hang("the X server")
        self._has_hung = False
        self._display = display.Display(name)
        self._root = self._display.screen().root
        geometry = self._root.get_geometry()
        self.size = geometry.width
        self._display.damage_query_version()
        self._damage = self._root.damage_create(damage.DamageReportNonEmpty)
        self._display.sync()

    def close(self) -> None:
        with contextlib.suppress(error.ConnectionClosedError):
            self._display.close()

    def look(self) -> Image.Image:
        """The square screen as it is now, RGB."""
        with self._bounded():
            seen = self._root.get_image(0, 0, self.size, self.size, X.ZPixmap, 0xffffffff)
        return Image.frombytes("RGB", (self.size, self.size), seen.data, "raw", "BGRX")

    def wait_other(self, picture: Image.Image, deadline: float) -> Image.Image | None:
        """The first picture that is not this one; None: none came until the deadline
        (time.monotonic())."""
        while True:
            seen = self.look()
            if seen.tobytes() != picture.tobytes():
                return seen
            if not self._wait_news(deadline):
                return None

    def wait_still(self, deadline: float) -> bool:
        """Whether the screen comes to rest before the deadline: for a while nothing on it changes,
        and the program on top has no motion under way that it tells of."""
        self._root.change_attributes(event_mask=X.PropertyChangeMask)
        picture = self.look()
        since = time.monotonic()
        while since + STILL_S <= deadline:
            is_moving = self._is_top_moving()
            if not self._wait_news(deadline if is_moving else since + STILL_S):
                return not is_moving
            other = self.look()
            if is_moving or other.tobytes() != picture.tobytes():
                picture, since = other, time.monotonic()
        return False

    def _is_top_moving(self) -> bool:
        """Whether the topmost window tells of a motion; the server tells when it changes."""
        with self._bounded():
            stack = self._root.get_full_property(
                self._display.get_atom("_NET_CLIENT_LIST_STACKING"), Xatom.WINDOW)
            if not stack or not stack.value:
                return False
            top = self._display.create_resource_object("window", stack.value[-1])
            top.change_attributes(event_mask=X.PropertyChangeMask,
                                  onerror=error.CatchError(error.BadWindow))
            try:
                motion = top.get_full_property(self._display.get_atom(_MOTION), Xatom.CARDINAL)
            except error.BadWindow:
                return False
        return bool(motion) and motion.value[0] == 1

    def _wait_news(self, deadline: float) -> bool:
        while True:
            has_news = False
            while self._display.pending_events():
                has_news = True
                self._display.next_event()
            if has_news:
                self._display.damage_subtract(self._damage, X.NONE, X.NONE)
                self._display.flush()
                return True
            left = deadline - time.monotonic()
            if left <= 0:
                return False
            if not select.select([self._display.fileno()], [], [], min(left, IDLE_S))[0]:
                with self._bounded():
                    self._display.sync()

    @contextlib.contextmanager
    def _bounded(self) -> Iterator[None]:
        """Hangs up on a server that does not answer, whichever thread waits for it."""
        timer = threading.Timer(ANSWER_S, self._hang_up)
        timer.start()
        try:
            yield
        except error.ConnectionClosedError:
            if self._has_hung:
                raise hang("the X server") from None
            raise
        finally:
            timer.cancel()

    def _hang_up(self) -> None:
        self._has_hung = True
        self._display.display.socket.shutdown(socket.SHUT_RDWR)


def disc_mask(size: int) -> Image.Image:
    """How much of each pixel the round screen covers. One quadrant is computed and mirrored, so
    that all four are alike."""
    half = size // 2
    radius = size / 2
    values = bytes(
        round(255 * min(1.0, max(0.0, radius + 0.5 - math.hypot(x + 0.5, y + 0.5))))
        for y in range(half) for x in range(half))
    quadrant = Image.frombytes("L", (half, half), values)
    mask = Image.new("L", (size, size))
    for box, part in (
            ((half, half), quadrant), ((0, half), ImageOps.mirror(quadrant)),
            ((half, 0), ImageOps.flip(quadrant)),
            ((0, 0), ImageOps.flip(ImageOps.mirror(quadrant)))):
        mask.paste(part, box)
    return mask


def make_round(picture: Image.Image, mask: Image.Image) -> Image.Image:
    """The picture with nothing outside of the disc."""
    result = picture.convert("RGBA")
    result.putalpha(mask)
    # What is not seen is not in the file either.
    return Image.composite(result, Image.new("RGBA", picture.size), mask.point(bool, "1"))


def save(picture: Image.Image, file: str) -> None:
    """Writes beside the file first: a full disk leaves what was there."""
    part = pathlib.Path(f"{file}.part")
    try:
        picture.save(part, "PNG")
        os.replace(part, file)
    except OSError as problem:
        part.unlink(missing_ok=True)
        raise WatchError(f'cannot write "{file}": {problem.strerror or problem}') from None


def compare(seen: Image.Image, file: pathlib.Path, tolerance: int) -> None:
    """Fails when the picture is not as in the file, and then leaves FILE-diff.png beside it.

    tolerance: how much a pixel's channel may be off, 0 to 255.
    """
    difference_file = file.with_name(f"{file.stem}-diff.png")
    try:
        with (warnings.catch_warnings(action="error", category=Image.DecompressionBombWarning),
              Image.open(file) as opened):
            wanted = opened.convert("RGBA")
    except (OSError, SyntaxError, ValueError, Image.DecompressionBombError,
            Image.DecompressionBombWarning) as problem:
        reason = getattr(problem, "strerror", None) or problem
        raise WatchError(f'cannot read the picture "{file}": {reason}') from None
    if wanted.size != seen.size:
        raise WatchError(f'"{file}" has {wanted.size[0]}x{wanted.size[1]} pixels, '
                         f"the screen {seen.size[0]}x{seen.size[1]}")
    channels = ImageChops.difference(wanted, seen).split()
    worst = channels[0]
    for channel in channels[1:]:
        worst = ImageChops.lighter(worst, channel)
    wrong = worst.point(lambda value: 255 if value > tolerance else 0)
    count = wrong.histogram()[255]
    allowed = int(ALLOWED_SHARE * math.pi * (seen.size[0] / 2) ** 2)
    if count <= allowed:
        difference_file.unlink(missing_ok=True)
        return
    dimmed = seen.point([value // 3 for value in range(256)] * 3 + list(range(256)))
    red = Image.new("RGBA", seen.size, (255, 0, 0, 255))
    save(Image.composite(red, dimmed, wrong), str(difference_file))
    raise WatchError(f'{count} pixels are not as in "{file}" ({allowed} may be): '
                     f'see "{difference_file}"')
