"""The watch's own clock: the machine's time, another time, or a frozen one."""

from qivo_watch.errors import WatchError
from qivo_watch.times import machine_ms

EARLIEST_MS = 0
LATEST_MS = 32_503_680_000_000
"""The year 3000: a clock that goes on from there stays far below the last year of a date."""


class Clock:
    """The watch's time in milliseconds since the epoch."""

    def __init__(self) -> None:
        self._offset_ms = 0
        self._frozen_ms: int | None = None

    @property
    def is_frozen(self) -> bool:
        return self._frozen_ms is not None

    def now_ms(self) -> int:
        if self._frozen_ms is not None:
            return self._frozen_ms
        return machine_ms() + self._offset_ms

    def set(self, milliseconds: int) -> None:
        """A frozen clock stays frozen, at the new time."""
        if not EARLIEST_MS <= milliseconds <= LATEST_MS:
            raise WatchError(f"{milliseconds} ms since 1970 is not a time for a watch "
                             "(the years 1970 to 2999)")
        if self.is_frozen:
            self._frozen_ms = milliseconds
        self._offset_ms = milliseconds - machine_ms()

    def freeze(self) -> None:
        self._frozen_ms = self.now_ms()

    def thaw(self) -> None:
        """Goes on from the frozen time."""
        if self._frozen_ms is not None:
            self._offset_ms = self._frozen_ms - machine_ms()
            self._frozen_ms = None
