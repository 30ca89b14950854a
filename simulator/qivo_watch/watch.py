"""What the watch does as a watch: its keys, screen, bezel, settings, clock, applications.

Each verb is a generator for Tasks, refuses what cannot be, and returns when its effect is seen.
"""

import contextlib
import pathlib
from signal import SIGTERM
from typing import Any, Iterator

from qivo_watch.apps import App, Program, locate, request_arguments
from qivo_watch.bus import BusObject
from qivo_watch.clock import Clock, format_time, machine_zone
from qivo_watch.errors import WatchError
from qivo_watch.inject import KEYS, WHEEL, Hand
from qivo_watch.log import Log
from qivo_watch.processes import STATE_VARIABLE, end_of
from qivo_watch.screen import Screen
from qivo_watch.services import Battery, ClockFormat, Locale, TimeZone
from qivo_watch.settle import Settler
from qivo_watch.tasks import Pause, Until, Work

PATIENCE_S = 10.0
"""Seconds for an effect to be seen; a sanitized application on a busy machine is slow."""

END_PATIENCE_S = 3.0
"""Seconds that an application gets to end by itself before it is killed."""

FINGER_STEP_MS = 10
MOST_DETENTS = 1000
DETENTS_AT_ONCE = 50
"""Detents that may follow each other before the watch attends to other callers."""

MOST_CLICKS = 100
LONGEST_MS = 60_000
LONGEST_PATIENCE_MS = 3_600_000


class Watch:
    """The state of one watch. The keeper gives it what it stands on."""

    screen: Screen
    hand: Hand
    settler: Settler
    battery: Battery
    locale: Locale
    clock_format: ClockFormat
    zone: TimeZone
    object: BusObject

    def __init__(self, options: dict[str, Any], environment: dict[str, str], log: Log, on_news,
                 on_stop):
        self.size: int = options["size"]
        self.options = options
        self.environment = environment
        self.log = log
        self.clock = Clock()
        self.is_on = True
        self.bezel_position = 0
        self.pressed = {name: False for name in KEYS}
        self.is_touched = False
        self.apps: list[App] = []
        self.last_end: dict[str, Any] | None = None
        self.facts: dict[str, Any] = {}
        self._on_news = on_news
        self._on_stop = on_stop

    # Applications

    @property
    def app(self) -> App | None:
        """The application that was started last, of those that run."""
        return self.apps[-1] if self.apps else None

    def look_after_apps(self) -> None:
        """Forgets the applications that have ended."""
        for app in [known for known in self.apps if not known.is_running]:
            self.apps.remove(app)
            status = app.status or 0
            self.last_end = {"app": app.name, "status": max(status, 0),
                             "signal": max(-status, 0)}
            self._tell_app()

    def launch(self, name: str, operation: str, extra: dict[str, str],
               environment: dict[str, str], patience_ms: int) -> Work:
        _within("patience", patience_ms, 0, LONGEST_PATIENCE_MS)
        if STATE_VARIABLE in environment:
            raise WatchError(f"{STATE_VARIABLE} is the watch's own")
        program = self._find_program(name)
        self._need_screen()
        before = self.app
        first = next((app for app in self.apps if app.program.is_same(program)), None)
        if first and not program.has_id:
            raise WatchError(f"{program.name} runs already, and takes no request: "
                             "it has no application id")
        if first and environment:
            raise WatchError(f"{program.name} runs already: its environment stays as it is")
        app = App(program, request_arguments(operation, extra),
                  self.environment | self._settings() | environment, self.log, self._on_news)
        try:
            try:
                yield from (self._hand_over if first else self._show)(app, patience_ms / 1000)
                if not first and before:
                    yield from self.settler.settle(before)
            except WatchError:
                yield from self._end_apps([app], END_PATIENCE_S)
                raise
        except GeneratorExit:
            app.kill()
            raise

    def _find_program(self, name: str) -> Program:
        """Of an id that runs, the program is the one that runs, wherever it lies."""
        return next((app.program for app in self.apps if app.program.has_id and app.name == name),
                    None) or locate(name)

    def _settings(self) -> dict[str, str]:
        """The settings as an application reads them before a service has answered."""
        region = {"LC_TIME": self.locale.region} if self.locale.has_region else {}
        zone = {"TZ": self.zone.chosen} if self.zone.chosen else {}
        return {"LANG": self.locale.language} | region | zone

    def _show(self, app: App, patience_s: float) -> Work:
        self.apps.append(app)
        self._tell_app()
        yield Until(lambda: app.has_frame or not app.is_running, patience_s,
                    f"{app.name} has told of no first frame within {patience_s:g} s")
        if not app.has_frame:
            raise WatchError(f"{app.name} {end_of(app.status or 0)} before it had drawn anything")

    def _hand_over(self, second: App, patience_s: float) -> Work:
        """A second process of an application hands its request to the first, and ends."""
        complaint = f"{second.name} runs, and has not taken the request"
        yield Until(lambda: second.has_frame or not second.is_running, patience_s, complaint)
        if second.status != 0:
            raise WatchError(complaint)

    def terminate(self, name: str, patience_ms: int) -> Work:
        """NAME is empty for the application that was started last."""
        _within("patience", patience_ms, 0, LONGEST_PATIENCE_MS)
        app = self._find_app(name)
        if (yield from self._end_apps([app], patience_ms / 1000)):
            raise WatchError(f"{app.name} has not ended within {patience_ms / 1000:g} s, "
                             "and was killed")
        if app.status not in (0, -SIGTERM):
            raise WatchError(f"{app.name} {end_of(app.status or 0)}")
        yield from self.settler.settle(self.app)

    def _find_app(self, name: str) -> App:
        if not self.apps:
            raise WatchError("no application runs")
        if not name:
            return self.apps[-1]
        path = pathlib.Path(name).resolve() if "/" in name else None
        for app in reversed(self.apps):
            if app.program.path.resolve() == path or app.name == name:
                return app
        raise WatchError(f"no application {name} runs")

    def _end_apps(self, apps: list[App], patience_s: float) -> Work:
        """Asks them to end, and kills those that do not in time; returns whether it had to."""
        for app in apps:
            app.ask_to_end()
        gone = Until(lambda: not any(app.is_running for app in apps), patience_s, "")
        try:
            yield gone
        except WatchError:
            for app in apps:
                app.kill()
            yield Until(gone.condition, END_PATIENCE_S, "an application does not end")
            return True
        return False

    def _tell_app(self) -> None:
        self.object.set(App=self.app.name if self.app else "")

    # Keys

    def button(self, action: str, key: str, duration: int, count: int, interval: int) -> Work:
        if key not in KEYS:
            raise WatchError(f'"{key}" is no key ({", ".join(KEYS)})')
        _within("count", count, 1, MOST_CLICKS)
        _within("duration", duration, 0, LONGEST_MS)
        _within("interval", interval, 0, LONGEST_MS)
        if action == "push":
            yield from self._push(key)
        elif action == "release":
            yield from self._release(key)
        elif action == "click":
            for turn in range(count):
                if turn:
                    yield Pause(interval)
                yield from self._push(key)
                with self._let_go_on_failure(key):
                    yield Pause(duration)
                yield from self._release(key)
        else:
            raise WatchError(f'"{action}" is nothing to do with a key (click, push, release)')

    def _push(self, key: str) -> Work:
        if self.pressed[key]:
            raise WatchError(f"the {key} key is down already")
        if key == "back":
            self._need_screen()
        with self._let_go_on_failure(key):
            self._show_key(key, True)
            if self.is_on:
                self.hand.key(key, True)
                yield from self.settler.settle(self.app)

    @contextlib.contextmanager
    def _let_go_on_failure(self, key: str) -> Iterator[None]:
        """For what is done with a key down: it fails, or who wanted it done has gone."""
        try:
            yield
        except BaseException:
            self._show_key(key, False)
            if self.is_on:
                self.hand.key(key, False)
            raise

    def _release(self, key: str) -> Work:
        if not self.pressed[key]:
            raise WatchError(f"the {key} key is not down")
        self._show_key(key, False)
        app = self.app
        if self.is_on:
            self.hand.key(key, False)
            yield from self.settler.settle(app)
        if key == "power":
            yield from self._switch_screen()
        elif app:
            yield from self.settler.settle_if_covered(app)

    def _show_key(self, key: str, is_down: bool) -> None:
        self.pressed[key] = is_down
        self.object.set(**{f"{key.capitalize()}Pressed": is_down})

    def _switch_screen(self) -> Work:
        wanted = not self.is_on
        self.is_on = wanted
        self.object.set(ScreenOn=wanted)
        yield Until(lambda: self.screen.is_black() != wanted, PATIENCE_S,
                    f"the screen does not turn {'on' if wanted else 'off'}")
        for app in list(self.apps):
            yield from self.settler.settle(app)

    def _need_screen(self) -> None:
        if not self.is_on:
            raise WatchError("the screen is off (button click power wakes it)")

    # Bezel and finger

    def bezel(self, direction: str, count: int, interval: int) -> Work:
        if direction not in WHEEL:
            raise WatchError(f'"{direction}" is no way to turn (cw, ccw)')
        _within("count", count, 1, MOST_DETENTS)
        _within("interval", interval, 0, LONGEST_MS)
        self._need_screen()
        for turn in range(count):
            if turn and (interval or turn % DETENTS_AT_ONCE == 0):
                yield Pause(interval)
            self.hand.detent(direction)
            self.bezel_position += 1 if direction == "cw" else -1
            self.object.set(BezelPosition=self.bezel_position)
        yield from self.settler.settle(self.app)

    def touch(self, x: int, y: int) -> Work:
        yield from self.swipe(x, y, x, y, 0)

    def swipe(self, x1: int, y1: int, x2: int, y2: int, duration: int) -> Work:
        for x, y in ((x1, y1), (x2, y2)):
            self._need_on_screen(x, y)
        _within("duration", duration, 0, LONGEST_MS)
        self._need_screen()
        if self.is_touched:
            raise WatchError("a finger is on the screen already")
        app = self.app
        self.is_touched = True
        self.hand.move(x1, y1)
        self.hand.finger(True)
        try:
            steps = duration // FINGER_STEP_MS
            for step in range(1, steps + 1):
                yield Pause(FINGER_STEP_MS)
                self._need_screen()
                if app and not app.is_running:
                    raise WatchError(f"{app.name} {end_of(app.status or 0)} during the swipe")
                self.hand.move(x1 + (x2 - x1) * step // steps, y1 + (y2 - y1) * step // steps)
            self.hand.move(x2, y2)
        finally:
            self.hand.finger(False)
            self.is_touched = False
        yield from self.settler.settle(app)

    def _need_on_screen(self, x: int, y: int) -> None:
        radius = self.size / 2
        if (x + 0.5 - radius) ** 2 + (y + 0.5 - radius) ** 2 > radius ** 2:
            raise WatchError(f"{x},{y} is outside of the round screen of {self.size} pixels")

    # Services

    def set_battery(self, percent: float, state: str) -> Work:
        """A percentage of -1 and an empty state stay as they are."""
        self.battery.set(self.battery.percent if percent == -1 else percent,
                         state or self.battery.state)
        self.object.set(Plugged=self.battery.is_plugged,
                        Charging=self.battery.state == "charging",
                        Percentage=self.battery.percent)
        yield from self._settle_services()

    def set_plugged(self, is_plugged: bool) -> Work:
        state = "charging" if is_plugged else "discharging"
        yield from self.set_battery(-1, state)

    def set_language(self, name: str) -> Work:
        self.locale.set_language(name)
        self.object.set(Language=self.locale.language)
        yield from self._settle_services()

    def set_region(self, name: str) -> Work:
        self.locale.set_region(name)
        yield from self._settle_services()

    def set_hours(self, hours: int) -> Work:
        self.clock_format.set(hours)
        yield from self._settle_services()

    def set_zone(self, name: str) -> Work:
        self.zone.set(name)
        self.object.set(Zone=name)
        yield from self._settle_services()

    def set_time(self, milliseconds: int) -> Work:
        self.clock.set(milliseconds)
        yield from self._tell_time()

    def set_time_frozen(self, is_frozen: bool) -> Work:
        if is_frozen == self.clock.is_frozen:
            raise WatchError("the clock stands already" if is_frozen else "the clock goes already")
        if is_frozen:
            self.clock.freeze()
        else:
            self.clock.thaw()
        yield from self._tell_time()

    def _tell_time(self) -> Work:
        self.object.tell(Time=self.clock.now_ms(), TimeFrozen=self.clock.is_frozen)
        yield from self._settle_services()

    def _settle_services(self) -> Work:
        yield from self.settler.settle_services()
        for app in list(self.apps):
            yield from self.settler.settle(app)

    # The whole

    def stop(self) -> Work:
        """Ends the applications as a watch does; the rest ends with the keeper."""
        yield from self._end_apps(list(self.apps), END_PATIENCE_S)
        self._on_stop()

    def properties(self) -> dict[str, Any]:
        """The first values on the bus."""
        return {"ScreenOn": True, "BezelPosition": 0, "BackPressed": False, "PowerPressed": False,
                "Plugged": self.battery.is_plugged,
                "Charging": self.battery.state == "charging", "Percentage": self.battery.percent,
                "Language": self.locale.language, "App": "", "Time": self.clock.now_ms,
                "TimeFrozen": False, "Zone": ""}

    def status(self) -> dict[str, Any]:
        """What `status --json` shows; docs/watch.md describes it."""
        app = self.app
        return {
            "name": self.options["name"], "running": True,
            "size": self.size, "zoom": self.options["zoom"], **self.facts,
            "screen": "on" if self.is_on else "off",
            "app": {"id": app.name, "pid": app.pid} if app else None,
            "lastEnd": self.last_end,
            "battery": {"percent": self.battery.percent, "state": self.battery.state},
            "language": self.locale.language,
            "region": self.locale.region,
            "time": {"now": format_time(self.clock.now_ms(), self.zone.chosen),
                     "frozen": self.clock.is_frozen,
                     "zone": self.zone.chosen or machine_zone(),
                     "hours": self.clock_format.hours},
            "bezel": self.bezel_position,
            "keysDown": [name for name, is_down in self.pressed.items() if is_down],
        }


def _within(what: str, value: int, least: int, most: int) -> None:
    if not least <= value <= most:
        raise WatchError(f"{value} is no {what} ({least} to {most})")
