"""What the watch does: keys, screen, bezel, settings, clock.

Each verb of the interface is a generator for Tasks. It refuses what is impossible, and returns when
its effect has been seen. The interface has checked the limits of its arguments.
"""

import contextlib
import pathlib
from typing import Any, Callable, Iterator

from gi.repository import Gio, GLib

from qivo_watch.errors import WatchError
from qivo_watch.interface import PATH, describe
from qivo_watch.keeper.apps.applications import Applications
from qivo_watch.keeper.apps.app import App, request_arguments
from qivo_watch.keeper.inject import Hand
from qivo_watch.keeper.apps.installed import Installed
from qivo_watch.keeper.log import Log
from qivo_watch.keeper.objects import BusObject
from qivo_watch.keeper.screen import Screen
from qivo_watch.keeper.services.activator import Activator
from qivo_watch.keeper.services.battery import Battery
from qivo_watch.keeper.services.clock import Clock
from qivo_watch.keeper.services.locale import Locale
from qivo_watch.keeper.services.screen_reader import ScreenReader
from qivo_watch.keeper.services.settings_portal import SettingsPortal
from qivo_watch.keeper.services.time_zone import TimeZone
from qivo_watch.keeper.settle import Settler
from qivo_watch.keeper.tasks import Pause, Until, Work
from qivo_watch.processes import end_of
from qivo_watch.times import format_time, machine_zone, parse_time

PATIENCE_S = 10.0
"""Seconds for the screen to turn on or off; a sanitized application on a busy machine is slow."""

TREE_PATIENCE_S = 4.0
"""Seconds for an application to see that somebody reads it, and to show its tree."""

FINGER_STEP_MS = 10
DETENTS_AT_ONCE = 50
"""How many detents may follow each other before the watch serves other callers."""


class Watch:
    """The state of one watch. OPTIONS are those it was started with, FACTS the fixed part of its
    status. ON_NEWS is called when an application does something, ON_STOP when the watch is to end
    and its applications have ended."""

    def __init__(self, options: dict[str, Any], facts: dict[str, Any],
                 connection: Gio.DBusConnection, screen: Screen, environment: dict[str, str],
                 log: Log, on_news: Callable[[], None], on_stop: Callable[[], None]):
        self.log = log
        self._options = options
        self._facts = facts
        self._size: int = options["size"]
        self._screen = screen
        self._hand = Hand(screen.display)
        self._settler = Settler(connection, screen, {
            name: facts["processes"][name] for name in ("home", "body")}, on_news)
        self._battery = Battery(connection, options["percent"], options["battery"])
        self._locale = Locale(connection, options["language"])
        self._portal = SettingsPortal(connection, options["text_size"], options["motion"],
                                      options["contrast"])
        self._clock = Clock()
        if options["at"]:
            self._clock.set(parse_time(options["at"]))
        self._zone = TimeZone(connection, lambda: self._clock.now_ms() * 1000)
        self._reader = ScreenReader(connection, f"unix:path={facts['folder']}/bus", on_news)
        self._is_on = True
        self._is_touched = False
        self._bezel_position = 0
        self._pressed = {"back": False, "power": False}
        self.activator = Activator(connection, pathlib.Path(facts["folder"], "services"))
        self._installed = Installed(options["keep"], log)
        self.activator.offer(self._installed.servants)
        self.applications = Applications(environment, log, self._settler, on_news, self._tell_app)
        self.object = BusObject(connection, PATH, describe(), self._properties())
        self._on_stop = on_stop

    # Applications

    def launch(self, app: str, operation: str, extra: dict[str, str], env: dict[str, str],
               wrap: list[str], debugger: str | None, timeout: float | None) -> Work:
        program = self.applications.find_program(app, self._installed)
        self._need_screen()
        arguments = request_arguments(operation, extra)
        if debugger:
            self.applications.start_for_debugger(program, arguments, self._settings(), env)
        else:
            yield from self.applications.launch(program, arguments, self._settings(), env, wrap,
                                                timeout)

    def terminate(self, app: str, timeout: float | None) -> Work:
        yield from self.applications.terminate(app, timeout)

    def serve(self, app_id: str) -> Work:
        """Starts an application for a call that waits for it on the bus."""
        program = self._installed.program(app_id)
        if program is None:
            raise WatchError(f"application {app_id} is not installed")
        self._need_screen()
        yield from self.applications.serve(program, self._settings())

    def reload(self, app: str) -> Work:
        running = self.applications.find(app)
        yield from self._settler.reload_themes(running)
        yield from self._settler.settle(running)

    def install(self, place: str) -> Work:
        self._installed.install(pathlib.Path(place))
        yield from self._tell_installed()

    def uninstall(self, app: str) -> Work:
        self._installed.need(app)
        yield from self.applications.end(app)
        self._installed.uninstall(app)
        yield from self._tell_installed()

    def list_apps(self) -> list[dict[str, Any]]:
        """What `apps --json` shows; docs/watch.md describes it."""
        return self._installed.described(self._locale.language)

    def _tell_installed(self) -> Work:
        self.activator.offer(self._installed.servants)
        self._show_installed()
        yield from self._settle_services()

    def _show_installed(self) -> None:
        self.object.set(Apps=self._installed.shown(self._locale.language))

    def show_tree(self) -> Work:
        """Has the last application show what is on it to a screen reader; returns its name on the
        bus for that."""
        app = self._app
        if app is None:
            raise WatchError("no application is running")
        self._reader.read()
        yield Until(lambda: self._reader.name_of(app.pid) or not app.is_running, TREE_PATIENCE_S,
                    f"{app.name} shows no tree (programs built on the port do)")
        if not app.is_running:
            raise WatchError(f"{app.name} {end_of(app.status or 0)}")
        return self._reader.name_of(app.pid)

    def _settings(self) -> dict[str, str]:
        """The settings as an application reads them before a service has answered."""
        region = {"LC_TIME": self._locale.region} if self._locale.has_region else {}
        zone = {"TZ": self._zone.chosen} if self._zone.chosen else {}
        return {"LANG": self._locale.language} | region | zone

    def _tell_app(self) -> None:
        self.object.set(App=self._app.name if self._app else "")

    @property
    def _app(self) -> App | None:
        return self.applications.last

    # Keys

    def click_key(self, key: str, duration: int, count: int, interval: int) -> Work:
        for turn in range(count):
            if turn:
                yield Pause(interval)
            yield from self.push_key(key)
            with self._let_go_on_failure(key):
                yield Pause(duration)
            yield from self.release_key(key)

    def push_key(self, key: str) -> Work:
        if self._pressed[key]:
            raise WatchError(f"the {key} key is already down")
        if key == "back":
            self._need_screen()
        with self._let_go_on_failure(key):
            self._show_key(key, True)
            if self._is_on:
                self._hand.push(key)
                yield from self._settler.settle(self._app)

    def release_key(self, key: str) -> Work:
        if not self._pressed[key]:
            raise WatchError(f"the {key} key is not down")
        self._show_key(key, False)
        app = self._app
        if self._hand.release(key):
            yield from self._settler.settle(app)
        if key == "power":
            yield from self._switch_screen()
        elif app:
            yield from self._settler.settle_if_covered(app)

    @contextlib.contextmanager
    def _let_go_on_failure(self, key: str) -> Iterator[None]:
        """Releases the key if the work fails or its caller has gone."""
        try:
            yield
        except BaseException:
            self._show_key(key, False)
            self._hand.release(key)
            raise

    def _show_key(self, key: str, is_down: bool) -> None:
        self._pressed[key] = is_down
        self.object.set(**{f"{key.capitalize()}Pressed": is_down})

    def _switch_screen(self) -> Work:
        wanted = not self._is_on
        self._is_on = wanted
        self.object.set(ScreenOn=wanted)
        yield Until(lambda: self._screen.is_black() != wanted, PATIENCE_S,
                    f"the screen did not turn {'on' if wanted else 'off'}")
        yield from self.applications.settle()

    def _need_screen(self) -> None:
        if not self._is_on:
            raise WatchError("the screen is off (button click power wakes it)")

    # Bezel and finger

    def bezel(self, direction: str, count: int, interval: int) -> Work:
        self._need_screen()
        for turn in range(count):
            if turn and (interval or turn % DETENTS_AT_ONCE == 0):
                yield Pause(interval)
            self._hand.detent(direction)
            self._bezel_position += 1 if direction == "cw" else -1
            self.object.set(BezelPosition=self._bezel_position)
        yield from self._settler.settle(self._app)

    def touch(self, x: int, y: int) -> Work:
        yield from self.swipe(x, y, x, y, 0, [])

    def swipe(self, x1: int, y1: int, x2: int, y2: int, duration: int,
              then: list[tuple[int, int, int]]) -> Work:
        legs = [(x2, y2, duration), *then]
        for x, y in ((x1, y1), *((x, y) for x, y, _ in legs)):
            self._need_on_screen(x, y)
        self._need_screen()
        if self._is_touched:
            raise WatchError("a finger is already on the screen")
        app = self._app
        self._is_touched = True
        self._hand.move(x1, y1)
        self._hand.finger(True)
        try:
            place = x1, y1
            for leg in legs:
                yield from self._draw(app, *place, *leg)
                place = leg[:2]
        finally:
            self._hand.finger(False)
            self._is_touched = False
        yield from self._settler.settle(app)

    def _draw(self, app: App | None, x1: int, y1: int, x2: int, y2: int, duration: int) -> Work:
        steps = duration // FINGER_STEP_MS
        for step in range(1, steps + 1):
            yield Pause(FINGER_STEP_MS)
            self._need_screen()
            if app and not app.is_running:
                raise WatchError(f"{app.name} {end_of(app.status or 0)} during the swipe")
            self._hand.move(x1 + (x2 - x1) * step // steps, y1 + (y2 - y1) * step // steps)
        if duration % FINGER_STEP_MS:
            yield Pause(duration % FINGER_STEP_MS)
            self._need_screen()
        self._hand.move(x2, y2)

    def _need_on_screen(self, x: int, y: int) -> None:
        radius = self._size / 2
        if (x + 0.5 - radius) ** 2 + (y + 0.5 - radius) ** 2 > radius ** 2:
            raise WatchError(f"{x},{y} is outside the round screen of {self._size} pixels")

    # Services

    def set_battery(self, percent: float | None, state: str | None) -> Work:
        self._battery.set(percent, state)
        self.object.set(**self._battery_properties())
        yield from self._settle_services()

    def _battery_properties(self) -> dict[str, Any]:
        return {"Plugged": self._battery.is_plugged, "Charging": self._battery.state == "charging",
                "Percentage": self._battery.percent}

    def set_language(self, language: str) -> Work:
        self._locale.set_language(language)
        self.object.set(Language=self._locale.language)
        self._show_installed()
        yield from self._settle_services()

    def set_region(self, region: str) -> Work:
        self._locale.set_region(region)
        yield from self._settle_services()

    def set_hours(self, hours: int) -> Work:
        self._portal.set(hours=hours)
        yield from self._settle_services()

    def set_text_size(self, factor: float) -> Work:
        yield from self._set_look(text_size=float(factor))

    def set_motion(self, motion: str) -> Work:
        yield from self._set_look(motion=motion)

    def set_contrast(self, contrast: str) -> Work:
        yield from self._set_look(contrast=contrast)

    def _set_look(self, **values: Any) -> Work:
        self._portal.set(**values)
        self.object.set(**self._look_properties())
        yield from self._settle_services()

    def _look_properties(self) -> dict[str, Any]:
        return {"TextSize": self._portal.text_size,
                "MotionReduced": self._portal.motion == "reduced",
                "ContrastHigh": self._portal.contrast == "high"}

    def set_zone(self, zone: str) -> Work:
        self._zone.set(zone)
        self.object.set(Zone=zone)
        yield from self._settle_services()

    def set_time(self, time: str) -> Work:
        self._clock.set(parse_time(time, self._clock.now_ms(), self._zone.chosen))
        yield from self._tell_time()

    def freeze_time(self) -> Work:
        if self._clock.is_frozen:
            raise WatchError("the clock is already frozen")
        self._clock.freeze()
        yield from self._tell_time()

    def thaw_time(self) -> Work:
        if not self._clock.is_frozen:
            raise WatchError("the clock is not frozen")
        self._clock.thaw()
        yield from self._tell_time()

    def _tell_time(self) -> Work:
        self.object.tell(Time=self._clock.now_ms(), TimeFrozen=self._clock.is_frozen)
        yield from self._settle_services()

    def _settle_services(self) -> Work:
        yield from self._settler.settle_services()
        yield from self.applications.settle()

    # The whole

    def stop(self) -> Work:
        """Ends the applications; the rest ends with the keeper."""
        self.object.emit("Stopping", GLib.Variant("()", ()))
        yield from self.applications.end_all()
        self._on_stop()

    def _properties(self) -> dict[str, Any]:
        """The first values on the bus."""
        return self._battery_properties() | self._look_properties() | {
            "ScreenOn": True, "BezelPosition": 0, "BackPressed": False, "PowerPressed": False,
            "Language": self._locale.language, "App": "", "Time": self._clock.now_ms,
            "TimeFrozen": False, "Zone": "",
            "Apps": self._installed.shown(self._locale.language)}

    def status(self) -> dict[str, Any]:
        """What `status --json` shows; docs/watch.md describes it."""
        app = self._app
        return {
            "name": self._options["name"], "running": True,
            "size": self._size, "zoom": self._options["zoom"], **self._facts,
            "screen": "on" if self._is_on else "off",
            "app": {"id": app.name, "pid": app.pid} if app else None,
            "lastEnd": self.applications.last_end,
            "apps": self._installed.ids,
            "battery": {"percent": self._battery.percent, "state": self._battery.state},
            "language": self._locale.language,
            "region": self._locale.region,
            "time": {"now": format_time(self._clock.now_ms(), self._zone.chosen),
                     "frozen": self._clock.is_frozen,
                     "zone": self._zone.chosen or machine_zone(),
                     "hours": self._portal.hours},
            "textSize": self._portal.text_size, "motion": self._portal.motion,
            "contrast": self._portal.contrast,
            "bezel": self._bezel_position,
            "keysDown": [name for name, is_down in self._pressed.items() if is_down],
        }
