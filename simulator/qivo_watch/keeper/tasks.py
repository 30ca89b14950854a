"""Work that waits: a generator that yields what it waits for, run by the main loop.

    def press(self):
        inject_press()
        yield Until(lambda: self.is_pressed, 5, "the key did not go down")
        return "pressed"

Whatever may have made a condition true calls Tasks.look(), so there is no polling.
"""

from typing import Any, Callable, Generator

from gi.repository import GLib

from qivo_watch.errors import WatchError


class Until:
    """Goes on when CONDITION() is true; fails with COMPLAINT after SECONDS."""

    def __init__(self, condition: Callable[[], Any], seconds: float, complaint: str):
        self.condition = condition
        self.seconds = seconds
        self.complaint = complaint


class Pause:
    """Goes on after a time that the user has asked for."""

    def __init__(self, milliseconds: float):
        self.milliseconds = milliseconds


Work = Generator[Any, None, Any]
Done = Callable[[Any, Exception | None], None]


class Tasks:
    """The generators at work, each until it returns or fails."""

    def __init__(self) -> None:
        self._owners: dict[Work, str] = {}
        self._waiting: dict[object, tuple[Until, Callable[[Exception | None], None]]] = {}
        self._is_looking = False
        self._is_look_due = False

    def run(self, work: Work, done: Done, owner: str = "") -> None:
        """Starts a generator; DONE gets its result, or what it raised.

        owner: the caller, for cancel().
        """
        self._owners[work] = owner
        self._go_on(work, done, None)

    def cancel(self, owner: str) -> None:
        """Ends OWNER's work by a GeneratorExit where it waits; DONE is not called."""
        for work in [known for known, other in self._owners.items() if other == owner]:
            del self._owners[work]
            work.close()

    def look(self) -> None:
        """Something has happened: checks every condition that is waited for."""
        self._is_look_due = True
        if self._is_looking:
            return
        self._is_looking = True
        try:
            while self._is_look_due:
                self._is_look_due = False
                for key in list(self._waiting):
                    self._ask(key)
        finally:
            self._is_looking = False

    def fail_all(self, error: Exception) -> None:
        """Ends all that waits."""
        for key in list(self._waiting):
            if key in self._waiting:
                self._waiting.pop(key)[1](error)

    def _go_on(self, work: Work, done: Done, error: Exception | None) -> None:
        if work not in self._owners:
            return
        try:
            wanted = work.throw(error) if error else next(work)
        except StopIteration as end:
            del self._owners[work]
            done(end.value, None)
        except Exception as failure:  # pylint: disable=broad-except
            del self._owners[work]
            done(None, failure)
        else:
            self._wait(wanted, lambda problem: self._go_on(work, done, problem))

    def _wait(self, wanted: Until | Pause, go_on: Callable[[Exception | None], None]) -> None:
        if isinstance(wanted, Pause):
            GLib.timeout_add(max(0, round(wanted.milliseconds)), lambda: go_on(None) or False)
            return
        key = object()
        self._waiting[key] = (wanted, go_on)
        if not self._ask(key):
            GLib.timeout_add(round(wanted.seconds * 1000), self._expire, key)

    def _ask(self, key: object) -> bool:
        """Goes on with work whose condition is true or raises; returns whether nothing waits there
        any more."""
        if key not in self._waiting:
            return True
        problem: Exception | None = None
        try:
            if not self._waiting[key][0].condition():
                return False
        except Exception as failure:  # pylint: disable=broad-except
            problem = failure
        self._waiting.pop(key)[1](problem)
        return True

    def _expire(self, key: object) -> bool:
        if not self._ask(key):
            wanted, go_on = self._waiting.pop(key)
            go_on(WatchError(wanted.complaint))
        return False
