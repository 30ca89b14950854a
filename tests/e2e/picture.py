"""Pictures of a watch's screen."""

import subprocess

WIDTH = HEIGHT = 360
BYTES_PER_PIXEL = 3


class Picture:
    """What the screen showed at one moment; equal when every pixel is."""

    def __init__(self, rgb):
        assert len(rgb) == WIDTH * HEIGHT * BYTES_PER_PIXEL, len(rgb)
        self._rgb = rgb

    @staticmethod
    def of(display):
        command = ["import", "-display", display.name, "-window", "root", "-depth", "8", "rgb:-"]
        return Picture(subprocess.run(command, check=True, capture_output=True).stdout)

    def __eq__(self, other):
        return isinstance(other, Picture) and self._rgb == other._rgb

    def pixel(self, x, y):
        start = (y * WIDTH + x) * BYTES_PER_PIXEL
        return tuple(self._rgb[start:start + BYTES_PER_PIXEL])

    def colours(self, left=0, top=0, right=WIDTH, bottom=HEIGHT):
        """How often each colour occurs in a rectangle, as far as the round screen shows it."""
        count = {}
        for y in range(top, bottom):
            for x in range(left, right):
                if in_circle(x, y):
                    colour = self.pixel(x, y)
                    count[colour] = count.get(colour, 0) + 1
        return count

    def differing(self, other):
        """The rectangle (left, top, right, bottom) that holds all differences, or None."""
        places = [(x, y) for y in range(HEIGHT) for x in range(WIDTH)
                  if self.pixel(x, y) != other.pixel(x, y)]
        if not places:
            return None
        xs, ys = zip(*places)
        return min(xs), min(ys), max(xs) + 1, max(ys) + 1


def in_circle(x, y):
    return (x - WIDTH / 2) ** 2 + (y - HEIGHT / 2) ** 2 < (WIDTH / 2) ** 2
