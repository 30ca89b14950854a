"""Writes what is done on a watch, by mouse or by verb, as a replay."""

import collections
import json
import pathlib
import shlex
import time
from typing import Any, Callable, Iterator, NamedTuple

import qivo_watch.packages  # noqa: F401 what follows needs it
from Xlib import X

from qivo_watch.bus import PATIENCE_S
from qivo_watch.command.bus import wire
from qivo_watch.command.screen import tree
from qivo_watch.command.beside import beside
from qivo_watch.command.bus.client import CONTROL, Client
from qivo_watch.command.bus.connection import BusGone, CallError, Connection
from qivo_watch.command.replays.deeds import (
    FINGER, Deed, Rest, is_flung, lines, piece_of, words_of)
from qivo_watch.command.replays.stroke import Stroke
from qivo_watch.command.screen.eye import STILL_S, Eye
from qivo_watch.command.replays.finger import Finger
from qivo_watch.command.life import ended
from qivo_watch.command.screen.pictures import disc_mask, make_round, save
from qivo_watch.command.bus.pulse import Pulse, hang, silent_part
from qivo_watch.errors import ScreenGone, WatchEnded, WatchError
from qivo_watch.interface import BODY_NAME, GUIDE, HOME_NAME, INTERFACE, NAME, PATH

TICK_S = 0.05
_DAEMON = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
QUIET_MS = 100
"""Milliseconds without a change after which the screen counts as still for the next deed."""

CLOCK_SLACK_MS = 20
"""How far the X server's clock may be from the keeper's."""

_REMEMBERED = 1000
"""How many changes of the screen, and of the log, are looked at again for a deed told late."""

_FINGER_VERBS = ("Touch", "Swipe")


def check(client: Client) -> None:
    """A replay begins from a known state."""
    if app := client.status()["app"]:
        raise WatchError(f"{app['id']} is running: a recorded replay begins without an application "
                         "(qivo-watch terminate ends it)")


def record(client: Client, eye: Eye, file: str, with_pictures: bool,
           is_over: Callable[[float], bool]) -> None:
    """Records until is_over(SECONDS SO FAR), or until the watch ends. The file is there, with the
    state of the watch, once the recording has begun."""
    check(client)
    try:
        scribe = _Scribe(client, eye, pathlib.Path(file), with_pictures)
        try:
            scribe.begin()
            _follow(scribe, is_over)
        finally:
            scribe.close()
    except (BusGone, CallError):
        raise ended(client.folder) from None
    except TimeoutError:
        raise hang("the message bus") from None
    except OSError as error:
        raise WatchError(f'cannot record "{file}": {error.strerror}') from None


def _follow(scribe: "_Scribe", is_over: Callable[[float], bool]) -> None:
    begin = time.monotonic()
    try:
        while not (is_over(time.monotonic() - begin) or scribe.has_stopped):
            scribe.turn()
        scribe.finish()
    except (WatchEnded, ScreenGone, BusGone):
        pass  # The recording ends with the watch.
    finally:
        scribe.write()  # Also what was done before something hung.


class _Still(NamedTuple):
    """A time in which the screen did not change, to the moment when a change was seen, and what was
    known then."""

    end: int
    begin: int
    has_acted: bool
    rest: Rest | None


class _Scribe:
    """Follows the keeper's signals, the finger, the log and the screen."""

    def __init__(self, client: Client, eye: Eye, file: pathlib.Path, with_pictures: bool):
        self._client, self._eye = client, eye
        self._file = file
        self._folder = self._file.with_name(f"{self._file.stem}-pictures")
        self._with_pictures = with_pictures
        self._mask = disc_mask(eye.size)
        self._pictures: dict[bytes, str] = {}
        self._deeds: list[Deed] = []
        self._at_work: dict[int, Deed | None] = {}
        self._stroke: Deed | None = None
        self._rest: Rest | None = None
        self._has_acted = False
        self._still_since = _now_ms()
        self._stills: collections.deque[_Still] = collections.deque(maxlen=_REMEMBERED)
        self._log: list[str] = []
        self._log_start = self._log_count = 0
        self._growths: collections.deque[tuple[int, int]] = collections.deque(maxlen=_REMEMBERED)
        self._texts: set[str] = set()
        self._app: dict[str, Any] | None = None
        self._dumb = self._flung = 0
        self.has_stopped = False
        # Another connection: what comes while the client waits is not lost, and not out of order.
        self._bus = Connection(str(client.folder.bus_path), PATIENCE_S, self._on_signal)
        self._body, self._home = (self._ask_bus("GetNameOwner", "s", name).values[0]
                                  for name in (BODY_NAME, HOME_NAME))
        self._ask_bus("AddMatch", "s", f"type='signal',sender='{NAME}',path='{PATH}',"
                      f"interface='{INTERFACE}'")
        status = client.status()
        self._pulse = Pulse(self._bus, CONTROL)
        self._finger = Finger(status["display"], self._on_finger)
        self._head = list(_state(status, json.loads(client.call("ListApps")[0])))
        self._frozen = status["time"]["frozen"]

    def begin(self) -> None:
        self._log_start = self._log_count = self._client.log_count()
        self._eye.has_changed()
        if self._with_pictures:
            # Not only at the first rest: what had been done by then would be in vain.
            try:
                self._folder.mkdir(exist_ok=True)
            except OSError as error:
                raise WatchError(f'cannot make "{self._folder}": {error.strerror}') from None
        self.write()

    def turn(self) -> None:
        """Waits for news, and takes them."""
        deadline = time.monotonic() + TICK_S
        while time.monotonic() < deadline:
            self._bus.wait(deadline)
        if self._pulse.is_silent():
            raise hang(silent_part(self._client.folder, CONTROL.label))
        self._finger.take()
        self._read_log()
        if self._eye.has_changed():
            now = _now_ms()
            self._stills.append(_Still(now, self._still_since, self._has_acted, self._rest))
            self._still_since = now
            # A rest that does not last tells nothing of the next deed.
            self._rest, self._has_acted = None, bool(self._deeds)
        if self._has_acted and self._still_ms() >= STILL_S * 1000:
            self._note_rest()
            self.write()

    def finish(self) -> None:
        """Takes what is on its way, and notes the rest at the recording's end."""
        if not self.has_stopped:
            self._finger.finish()
            self._ask_bus("GetId")
        self._finger.take()
        self._read_log()
        if self._has_acted and self._still_ms() >= QUIET_MS:
            self._note_rest()

    def write(self) -> None:
        now = _now_ms()
        end = Deed("", {}, False, now, now, len(self._log), len(self._log), False, self._rest)
        done = sorted((deed for deed in self._deeds if deed.ended), key=lambda deed: deed.began)
        written = [*self._head, *lines(done, end, self._log, self._eye.size)]
        if self._is_frozen_after(done):
            written.append("time thaw")
        with beside(str(self._file)) as part:
            part.write_text("\n".join(written) + "\n", encoding="utf-8")

    def _is_frozen_after(self, deeds: list[Deed]) -> bool:
        changes = [deed.method for deed in deeds if deed.method in ("FreezeTime", "ThawTime")]
        return changes[-1] == "FreezeTime" if changes else self._frozen

    def close(self) -> None:
        self._bus.close()

    # The screen and the log

    def _still_ms(self) -> int:
        """For how long nothing has moved; 0 while something is being done."""
        if self._stroke or self._at_work:
            return 0
        return _now_ms() - self._still_since

    def _read_log(self) -> None:
        while self._log_start + len(self._log) < self._log_count:
            _, first, read = self._client.call("ReadLog", "t", self._log_start + len(self._log))
            # The watch forgets its oldest lines.
            self._log += [""] * (first - self._log_start - len(self._log)) + read

    def _note_rest(self) -> None:
        known, before = len(self._deeds), (self._app, self._texts)
        status = self._client.status()
        had_app, self._app = self._app, status["app"]
        text = self._new_text()
        rest = Rest(text, self._picture() if self._shows_the_same(status) else "",
                    bool(had_app and not self._app and _ended_well(status["lastEnd"])))
        # What has been done meanwhile may be on the picture. It has been told, but not read.
        self._ask_bus("GetId")
        self._finger.take()
        if len(self._deeds) == known and not self._stroke:
            self._rest, self._has_acted = rest, False
        else:
            self._app, self._texts = before

    def _shows_the_same(self, status: dict[str, Any]) -> bool:
        """Whether it will in the next run: a clock that goes shows another time, and a page that
        was flung another place."""
        if self._app and self._eye.top_process() == self._app["pid"]:
            return status["screen"] == "on" and self._app["pid"] != self._flung
        return status["screen"] == "on" and status["time"]["frozen"]

    def _picture(self) -> str:
        if not self._with_pictures:
            return ""
        picture = make_round(self._eye.seen, self._mask)
        content = picture.tobytes()
        if content not in self._pictures:
            name = f"{len(self._pictures) + 1:02}.png"
            save(picture, str(self._folder / name))
            self._pictures[content] = f"{self._folder.name}/{name}"
        return self._pictures[content]

    def _new_text(self) -> str:
        """A text that the last rest did not have; "" also without a tree."""
        if not self._app or self._dumb == self._app["pid"]:
            self._texts = set()
            return ""
        try:
            windows = tree.read_windows(self._client)
        except WatchError:
            self._dumb = self._app["pid"]
            return ""
        texts = [piece_of(part.name) for window in windows for child in window.children
                 for part in child.all() if part.is_showing]
        new = [text for text in texts if len(text) > 1 and text not in self._texts
               and not any(letter.isdigit() for letter in text)]
        self._texts = set(texts)
        return new[0] if new else ""

    # What is done

    def _ask_bus(self, *method: Any) -> wire.Message:
        return self._bus.call(PATIENCE_S, *_DAEMON, *method)

    def _on_signal(self, message: wire.Message) -> None:
        signal, values = message.member, message.values
        self._finger.take()
        if signal == "Stopping" or self.has_stopped:
            self.has_stopped = True
        elif signal == "LogGrown":
            self._log_count = values[0]
            self._growths.append((_now_ms(), self._log_count))
        elif signal == "Began":
            work, moment, method, text, caller = values
            # The home face does what the finger told it.
            self._at_work[work] = None if caller == self._home else self._begin(
                method, json.loads(text), moment, caller == self._body)
        elif signal == "Ended":
            self._on_ended(*values)

    def _on_ended(self, work: int, moment: int, succeeded: bool) -> None:
        deed = self._at_work.pop(work, None)
        if deed:
            self._end(deed, moment, succeeded)
        self._still_since = _now_ms()

    def _on_finger(self, kind: int, moment: int, x: int, y: int) -> None:
        if kind == X.ButtonPress and not self._stroke and not self._is_verb_at(moment):
            self._stroke = self._begin(FINGER, {"stroke": Stroke([])}, moment, True)
        if not self._stroke:
            return
        self._stroke.values["stroke"].points.append((moment, x, y))
        if kind == X.ButtonRelease:
            stroke, self._stroke = self._stroke, None
            self._end(stroke, moment, True)
            self._still_since = _now_ms()

    def _is_verb_at(self, moment: int) -> bool:
        """Whether a verb moved the finger then."""
        return any(deed.method in _FINGER_VERBS and deed.began - CLOCK_SLACK_MS <= moment
                   and (deed.ended == 0 or moment <= deed.ended + CLOCK_SLACK_MS)
                   for deed in self._deeds)

    def _begin(self, method: str, values: dict[str, Any], moment: int, is_by_mouse: bool) -> Deed:
        if method in _FINGER_VERBS and self._deeds and self._deeds[-1].method == FINGER \
                and self._deeds[-1].began >= moment - CLOCK_SLACK_MS:
            return self._take_over(method, values, moment)
        deed = Deed(method, values, is_by_mouse, moment, 0,
                    self._log_length(moment if method == FINGER else _now_ms()), 0,
                    *self._still_before(moment))
        self._deeds.append(deed)
        self._stills.clear()
        self._rest, self._has_acted = None, True
        return deed

    def _still_before(self, moment: int) -> tuple[bool, Rest | None]:
        """Whether the screen was still, and the rest that was noted. What a deed has changed may be
        seen before the deed is told."""
        still = next((still for still in self._stills if still.end >= moment), None) or _Still(
            moment, self._still_since, self._has_acted, self._rest)
        is_idle = not (self._stroke or self._at_work)
        return (is_idle and still.has_acted and moment - still.begin >= QUIET_MS), still.rest

    def _log_length(self, moment: int) -> int:
        known = [count for time_ms, count in self._growths if time_ms <= moment]
        return max(0, (known[-1] if known else 0) - self._log_start)

    def _take_over(self, method: str, values: dict[str, Any], moment: int) -> Deed:
        """The server has told of a verb's finger before the keeper has."""
        self._deeds[-1] = self._deeds[-1]._replace(method=method, values=values, is_by_mouse=False,
                                                   began=moment, ended=0)
        self._stroke = None
        return self._deeds[-1]

    def _place_of(self, deed: Deed) -> int:
        return next(place for place, known in enumerate(self._deeds) if known is deed)

    def _end(self, deed: Deed, moment: int, succeeded: bool) -> None:
        place = self._place_of(deed)
        if not succeeded:
            del self._deeds[place]
            return
        self._deeds[place] = deed._replace(ended=moment, last=self._log_length(_now_ms()))
        if is_flung(deed):
            app = self._client.status()["app"]
            self._flung = app["pid"] if app else 0


def _now_ms() -> int:
    return round(time.monotonic() * 1000)


def _ended_well(end: dict[str, Any] | None) -> bool:
    return end is not None and not end["status"] and not end["signal"]


def _state(status: dict[str, Any], apps: list[dict[str, Any]]) -> Iterator[str]:
    """The lines that set what the watch was like when the recording began."""
    yield f"# Recorded on a watch of {status['size']} pixels."
    for app in apps:
        if app["id"] != GUIDE:
            yield shlex.join(words_of("Install", {"place": app["entry"]}))
    clock, region = status["time"], status["region"]
    for method, values in (
            ("SetLanguage", {"language": status["language"]}),
            ("SetRegion", {"region": "auto" if region == status["language"] else region}),
            ("SetBattery", status["battery"]), ("SetTextSize", {"factor": status["textSize"]}),
            ("SetMotion", {"motion": status["motion"]}),
            ("SetContrast", {"contrast": status["contrast"]}), ("SetZone", {"zone": clock["zone"]}),
            *([("SetHours", {"hours": clock["hours"]})] if clock["hours"] else []),
            *([("FreezeTime", {}), ("SetTime", {"time": clock["now"]})]
              if clock["frozen"] else [])):
        yield shlex.join(words_of(method, values))
