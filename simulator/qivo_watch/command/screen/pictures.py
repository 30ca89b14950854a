"""Pictures of the watch's screen: made round, saved, compared."""

import math
import pathlib
import warnings

import qivo_watch.packages  # noqa: F401 what follows needs it
from PIL import Image, ImageChops, ImageOps

from qivo_watch.command.beside import beside
from qivo_watch.errors import Differs, WatchError

ALLOWED_SHARE = 0.002
"""The share of the disc's pixels that may differ: edges of glyphs that round the other way."""


def disc_mask(size: int) -> Image.Image:
    """How much of each pixel the round screen covers. One quadrant is computed and mirrored, so
    that all four are alike."""
    half = size // 2
    radius = size / 2
    values = b""
    for y in range(half):
        # Most pixels need no computing: their far corners are well inside.
        whole = math.isqrt(max(0, (half - 1) ** 2 - (y + 1) ** 2))
        values += b"\xff" * whole + bytes(
            round(255 * min(1.0, max(0.0, radius + 0.5 - math.hypot(x + 0.5, y + 0.5))))
            for x in range(whole, half))
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
    # What cannot be seen is not in the file either.
    return Image.composite(result, Image.new("RGBA", picture.size), mask.point(bool, "1"))


def save(picture: Image.Image, file: str) -> None:
    """Writes beside the file first, so that a full disk leaves the old file."""
    try:
        with beside(file) as part:
            picture.save(part, "PNG")
    except OSError as problem:
        raise WatchError(f'cannot write "{file}": {problem.strerror or problem}') from None


def compare(seen: Image.Image, file: pathlib.Path, tolerance: int) -> None:
    """Fails when the picture differs from the file, and then writes FILE-diff.png beside it.

    tolerance: how much a pixel's channel may differ, 0 to 255.
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
    raise Differs(f'{count} pixels differ from "{file}" ({allowed} may): '
                  f'see "{difference_file}"', file, difference_file)
