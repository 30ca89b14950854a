"""What each subcommand does, on the command line and in a replay alike."""

import argparse
import contextlib
import json
import os
import pathlib
import signal
import sys
import time
from typing import Any

from Xlib.error import ConnectionClosedError, DisplayConnectionError

from qivo_watch import life
from qivo_watch.arguments import CLICK_PAUSE_MS, HOLD_MS
from qivo_watch.client import Client
from qivo_watch.clock import format_time, parse_time
from qivo_watch.desktop import window_zoom
from qivo_watch.errors import UsageError, WatchEnded, WatchError
from qivo_watch.log import coloured, is_at_least, printable
from qivo_watch.state import Folder, running


class Session:
    """One command, or the commands of one replay. Relative pictures to compare with lie in HERE."""

    def __init__(self, name: str, here: pathlib.Path = pathlib.Path()):
        self.folder = Folder(name)
        self.here = here
        self.is_update = False
        self.log_place = 0
        self._client: Client | None = None
        self._eye: Any = None
        self._picture: Any = None
        self._updated: set[pathlib.Path] = set()

    @property
    def client(self) -> Client:
        if self._client is None:
            self._client = Client(self.folder)
        return self._client

    def eye(self) -> Any:
        """The session's own look at the screen."""
        if self._eye is None:
            self._eye = self.open_eye()
        return self._eye

    def open_eye(self) -> Any:
        """Another look at the screen; the caller closes it."""
        # Nothing but pictures needs the imaging library, which takes its time to load.
        from qivo_watch.pictures import Eye  # pylint: disable=import-outside-toplevel
        return Eye(self.client.status()["display"], self.folder.authority)

    def remember_picture(self) -> None:
        """Lets `wait frame` find a change that the next command makes before it returns."""
        self._picture = self.eye().look()

    def pass_log(self) -> None:
        """Lets `wait log` pass over the lines that are there."""
        self.log_place = self.client.log_count()

    def run(self, given: argparse.Namespace) -> None:
        try:
            getattr(self, f"do_{given.verb}")(given)
        except (ConnectionClosedError, DisplayConnectionError):
            raise life.ended(self.folder) from None

    def close(self) -> None:
        if self._eye:
            self._eye.close()
        self._client = self._eye = None

    # The watch

    def do_start(self, given: argparse.Namespace) -> None:
        if given.headless and given.web:
            raise UsageError("--headless and --web exclude each other")
        if (given.port or given.password_file) and not given.web:
            raise UsageError("--port and --password-file are for --web")
        options = {key: getattr(given, key) for key in (
            "headless", "web", "port", "size", "language", "percent", "battery", "at")}
        options["zoom"] = given.zoom or 1.0
        if not (given.headless or given.web):
            options["zoom"] = window_zoom(given.size, given.zoom)
        if given.web:
            from qivo_watch.web import read_password  # pylint: disable=import-outside-toplevel
            options["password"] = given.password_file and read_password(given.password_file)
        life.start(self.folder, {**options, "name": self.folder.name})
        if given.web:
            try:
                print(self.client.status()["web"], flush=True)
            except BaseException:
                life.end(self.folder)
                raise

    def do_stop(self, _given: argparse.Namespace) -> None:
        self.close()
        life.stop(self.folder)

    def do_status(self, given: argparse.Namespace) -> None:
        status = self.client.status()
        if given.json:
            print(json.dumps(status, indent=2))
        else:
            print("\n".join(map(printable, _described(status))))

    def do_list(self, _given: argparse.Namespace) -> None:
        for name in running():
            print(name)

    def do_launch(self, given: argparse.Namespace) -> None:
        self.client.call("Launch", "(ssa{ss}a{ss}u)", _app(given.app), given.operation,
                         dict(given.extra), dict(given.env), round(given.timeout * 1000))

    def do_terminate(self, given: argparse.Namespace) -> None:
        self.client.call("Terminate", "(su)", _app(given.app), round(given.timeout * 1000))

    # Hands

    def do_bezel(self, given: argparse.Namespace) -> None:
        self.client.call("Bezel", "(suu)", given.direction, given.count, given.interval)

    def do_button(self, given: argparse.Namespace) -> None:
        details = given.duration, given.count, given.interval
        if given.action != "click" and details != (None, None, None):
            raise UsageError(f"-d, -n and -i are for click, not for {given.action}")
        duration, count, interval = (
            default if detail is None else detail
            for detail, default in zip(details, (HOLD_MS, 1, CLICK_PAUSE_MS)))
        self.client.call("Button", "(ssuuu)", given.action, given.key, duration, count,
                         interval)

    def do_touch(self, given: argparse.Namespace) -> None:
        self.client.call("Touch", "(ii)", given.x, given.y)

    def do_swipe(self, given: argparse.Namespace) -> None:
        self.client.call("Swipe", "(iiiiu)", given.x1, given.y1, given.x2, given.y2,
                         given.duration)

    # Services

    def do_battery(self, given: argparse.Namespace) -> None:
        if given.percent is None and given.state is None:
            raise UsageError("battery takes --percent, or one of --charging, --discharging, --full")
        self.client.call("SetBattery", "(ds)", -1 if given.percent is None else given.percent,
                         given.state or "")

    def do_language(self, given: argparse.Namespace) -> None:
        self.client.call("SetLanguage", "(s)", given.language)

    def do_region(self, given: argparse.Namespace) -> None:
        self.client.call("SetRegion", "(s)", "" if given.region == "auto" else given.region)

    def do_time(self, given: argparse.Namespace) -> None:
        if given.action is None:
            print(format_time(self.client.get("Time"), self.client.get("Zone")))
        elif given.action == "set":
            self.client.call("SetTime", "(x)", parse_time(
                given.time, self.client.get("Time"), self.client.get("Zone")))
        elif given.action == "zone":
            self.client.call("SetZone", "(s)", given.zone)
        elif given.action == "hours":
            self.client.call("SetHours", "(u)", given.hours)
        else:
            self.client.call("SetTimeFrozen", "(b)", given.action == "freeze")

    # Eyes

    def do_screenshot(self, given: argparse.Namespace) -> None:
        if given.body:
            self.client.call_body("Picture", "(sb)", os.path.abspath(given.file), True)
            return
        from qivo_watch.pictures import save  # pylint: disable=import-outside-toplevel
        save(self._round_picture(), given.file)

    def do_compare(self, given: argparse.Namespace) -> None:
        from qivo_watch import pictures  # pylint: disable=import-outside-toplevel
        file = self.here / given.file
        # One that is named twice is compared with what it has just become.
        if self.is_update and file.resolve() not in self._updated:
            pictures.save(self._round_picture(), str(file))
            self._updated.add(file.resolve())
        else:
            pictures.compare(self._round_picture(), file, given.tolerance)

    def do_record(self, given: argparse.Namespace) -> None:
        from qivo_watch import recorder  # pylint: disable=import-outside-toplevel
        recorder.check_file(given.file)
        requests: list[int] = []
        for number in (signal.SIGINT, signal.SIGTERM):
            signal.signal(number, lambda request, _: requests.append(request))

        def is_over(seconds: float) -> bool:
            return bool(requests) or (given.duration is not None and seconds >= given.duration)
        recorder.record(self.eye(), given.file, given.fps, is_over)

    def _round_picture(self) -> Any:
        from qivo_watch import pictures  # pylint: disable=import-outside-toplevel
        eye = self.eye()
        return pictures.make_round(eye.look(), pictures.disc_mask(eye.size))

    def do_log(self, given: argparse.Namespace) -> None:
        in_colour = given.color == "always" or (
            given.color == "auto" and sys.stdout.isatty() and "NO_COLOR" not in os.environ)

        def show(line: str) -> bool:
            if is_at_least(line, given.level):
                print(coloured(line) if in_colour else line, flush=True)
            return False
        if given.follow:
            with contextlib.suppress(WatchEnded):
                self.client.wait_log(0, show, None)
        else:
            for line in self.client.log_lines():
                show(line)

    def do_wait(self, given: argparse.Namespace) -> None:
        if given.what == "log":
            if given.new:
                self.pass_log()
            place = self.client.wait_log(self.log_place, lambda line: given.text in line,
                                         given.timeout)
            if place is None:
                raise WatchError(f'no line with "{given.text}" within {given.timeout:g} s')
            self.log_place = place
        elif given.what == "exit":
            self._wait_exit(given.timeout)
        elif given.what == "still":
            if not self.eye().wait_still(time.monotonic() + given.timeout):
                raise WatchError(f"the screen has not come to rest within {given.timeout:g} s")
        else:
            before = self._picture or self.eye().look()
            if self.eye().wait_other(before, time.monotonic() + given.timeout) is None:
                raise WatchError(f"the screen has not changed within {given.timeout:g} s")

    def _wait_exit(self, seconds: float) -> None:
        deadline = time.monotonic() + seconds
        place = self.client.log_count()
        # The end of an application is a line of the log.
        while self.client.get("App"):
            left = deadline - time.monotonic()
            if left <= 0 or self.client.wait_log(place, lambda _: True, left) is None:
                raise WatchError(f"{self.client.get('App')} has not ended within {seconds:g} s")
            place += 1
        end = self.client.status()["lastEnd"]
        if end is None:
            raise WatchError("no application has run")
        if end["status"] or end["signal"]:
            raise WatchError(f"{end['app']} " + (
                f"was killed by {signal.Signals(end['signal']).name}" if end["signal"]
                else f"ended with status {end['status']}"))


def _app(given: str) -> str:
    return os.path.abspath(given) if "/" in given else given


def _described(status: dict[str, Any]) -> list[str]:
    app, battery, clock = status["app"], status["battery"], status["time"]
    lines = [
        f"watch     {status['name']}, {status['size']} pixels, screen {status['screen']}",
        f"app       {app['id'] + ' (process ' + str(app['pid']) + ')' if app else 'none'}",
        f"battery   {battery['percent']:g} %, {battery['state']}",
        f"language  {status['language']}",
        f"region    {status['region']}",
        f"time      {clock['now']}{', stands' if clock['frozen'] else ''}",
        f"zone      {clock['zone']}",
        f"hours     {clock['hours'] or 'as the region counts'}",
        f"bezel     {status['bezel']} detents",
    ]
    if status["keysDown"]:
        lines.append(f"held      {', '.join(status['keysDown'])}")
    if status["lastEnd"]:
        end = status["lastEnd"]
        how = (f"killed by {signal.Signals(end['signal']).name}" if end["signal"]
               else f"status {end['status']}")
        lines.append(f"last end  {end['app']}: {how}")
    if status["web"]:
        lines.append(f"web       {status['web']}")
    return lines
