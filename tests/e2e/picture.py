"""Pictures of a watch's screen."""

import subprocess

import numpy

WIDTH = HEIGHT = 360
ROWS, COLUMNS = numpy.ogrid[:HEIGHT, :WIDTH]
ROUND = (COLUMNS - WIDTH / 2) ** 2 + (ROWS - HEIGHT / 2) ** 2 < (WIDTH / 2) ** 2


class Picture:
    """What the screen showed at one moment; equal when every pixel is."""

    def __init__(self, rgb):
        self._pixels = numpy.frombuffer(rgb, numpy.uint8).reshape(HEIGHT, WIDTH, 3)

    @staticmethod
    def of(environment):
        """The screen of the display that an environment names."""
        command = ["import", "-window", "root", "-depth", "8", "rgb:-"]
        return Picture(subprocess.run(command, env=environment, check=True,
                                      capture_output=True).stdout)

    def __eq__(self, other):
        return isinstance(other, Picture) and numpy.array_equal(self._pixels, other._pixels)

    def colours(self, top=0, bottom=HEIGHT):
        """How often each colour occurs in some rows, as far as the round screen shows them."""
        seen = self._pixels[top:bottom][ROUND[top:bottom]]
        colours, counts = numpy.unique(seen, axis=0, return_counts=True)
        return dict(zip(map(tuple, colours.tolist()), counts.tolist()))

    def differing(self, other):
        """The rectangle (left, top, right, bottom) that holds all differences, or None."""
        ys, xs = numpy.nonzero((self._pixels != other._pixels).any(axis=2))
        return (xs.min(), ys.min(), xs.max() + 1, ys.max() + 1) if len(xs) else None
