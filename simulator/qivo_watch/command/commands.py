"""What each subcommand does, on the command line and in a replay."""

# What only some commands need is imported where they begin: most are done sooner than it loads.
# pylint: disable=import-outside-toplevel

from __future__ import annotations

import contextlib
import os
import signal
import sys
import time

from qivo_watch.command import life
from qivo_watch.command.bus.client import Client
from qivo_watch.errors import Late, ScreenGone, UsageError, WatchEnded, WatchError
from qivo_watch.interface import MARGIN, VERBS
from qivo_watch.processes import INTERRUPTS
from qivo_watch.state import Folder, running

TYPE_CHECKING = False
if TYPE_CHECKING:
    import argparse
    import pathlib
    from typing import Any

LOOK_AGAIN_S = 0.5
"""Seconds after which a text is looked for again though the screen has not changed."""


_GDB_OPTIONS = ["-q", "-iex", "set pagination off", "-iex", "set print symbol-loading off",
                "-ex", "tcatch exec", "-ex", "continue",
                "-ex", "set pagination on", "-ex", "set print symbol-loading full"]
"""Leads gdb silently to where the waiting process becomes the program."""


class Session:
    """One command, or the commands of one replay. Reference pictures are relative to HERE."""

    def __init__(self, name: str, here: pathlib.Path | None = None):
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
        # Only pictures need the imaging library, which is slow to load.
        from qivo_watch.command.screen.eye import Eye
        return Eye(self.client.status()["display"], self.folder.authority)

    def remember_picture(self) -> None:
        """Lets `wait frame` find a change that the next command makes before it returns."""
        self._picture = self.eye().look()

    def pass_log(self) -> None:
        """Lets `wait log` ignore the lines that are already there."""
        self.log_place = self.client.log_count()

    def run(self, given: argparse.Namespace) -> None:
        try:
            getattr(self, f"do_{given.verb}", self.call)(given)
        except ScreenGone:
            raise life.ended(self.folder) from None

    def call(self, given: argparse.Namespace) -> None:
        """Has the keeper carry out a verb."""
        values = {argument.name: getattr(given, argument.name)
                  for argument in given.call.arguments}
        self.client.carry_out(given.call, {
            name: value for name, value in values.items() if value is not None})

    def close(self) -> None:
        if self._eye:
            self._eye.close()
        if self._client:
            self._client.connection.close()
        self._client = self._eye = None

    # The watch

    def do_start(self, given: argparse.Namespace) -> None:
        if given.headless and given.web:
            raise UsageError("--headless and --web cannot be combined")
        if given.headless and given.zoom:
            raise UsageError("--zoom needs a window or --web")
        if (given.port or given.password_file) and not given.web:
            raise UsageError("--port and --password-file need --web")
        zoom = given.zoom or 1.0
        if not (given.headless or given.web):
            from qivo_watch.command import desktop
            zoom = desktop.window_zoom(given.size, given.zoom)
        options = {key: getattr(given, key) for key in (
            "headless", "web", "port", "size", "language", "percent", "battery", "text_size",
            "motion", "contrast", "at", "keep")}
        life.start(self.folder, options | {
            "name": self.folder.name, "zoom": zoom, "side": round(given.size * zoom * MARGIN),
            "password": _password(given.password_file)})
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
        if given.json:
            print(self.client.call("Status")[0])
            return
        from qivo_watch.lines import printable
        print("\n".join(map(printable, _described(self.client.status()))))

    def do_apps(self, given: argparse.Namespace) -> None:
        listed = self.client.call("ListApps")[0]
        if given.json:
            print(listed)
            return
        import json
        from qivo_watch.lines import printable
        apps = json.loads(listed)
        width = max((len(app["id"]) for app in apps), default=0)
        for app in apps:
            print(printable(f"{app['id']:{width}}  {app['name']}"))

    def do_list(self, _given: argparse.Namespace) -> None:
        for name in running():
            print(name)

    def do_new(self, given: argparse.Namespace) -> None:
        from qivo_watch.command import new
        new.create(given.id, given.folder)

    # Verbs of the watch that take more than the call

    def do_launch(self, given: argparse.Namespace) -> None:
        if given.debugger:
            if given.wrap or given.timeout is not None:
                raise UsageError("--gdb cannot be combined with --wrap or --timeout")
            import shutil
            if not shutil.which("gdb"):
                raise WatchError("gdb is not installed")
        self.call(given)
        if given.debugger:
            app = self.client.status()["app"]
            if app is None:
                raise WatchError("the program ended before gdb was there (see qivo-watch log)")
            sys.stdout.flush()
            # gdb takes this process's place: terminal, Ctrl-C and status are its own.
            os.execvp("gdb", ["gdb", *_GDB_OPTIONS, "-p", str(app["pid"])])

    def do_battery(self, given: argparse.Namespace) -> None:
        if given.percent is None and given.state is None:
            raise UsageError("battery needs --percent, or one of --charging, --discharging, --full")
        self.call(given)

    def do_time(self, given: argparse.Namespace) -> None:
        if given.call:
            self.call(given)
        else:
            print(self.client.status()["time"]["now"])

    def do_touch(self, given: argparse.Namespace) -> None:
        has_place = given.x is not None and given.y is not None
        if has_place == (given.text is not None) or (given.x is not None and not has_place):
            raise UsageError("touch needs X and Y, or --text")
        if given.text is not None:
            place = self._find_text(given.text)
            if place is None:
                raise WatchError(f'no "{given.text}" is in sight')
            given.x, given.y = place
        self.call(given)

    # Eyes

    def do_tree(self, given: argparse.Namespace) -> None:
        if given.json:
            import json
            print(json.dumps([window.as_json() for window in self._read_windows()], indent=2))
        else:
            print("\n".join(self.describe_tree()))

    def describe_tree(self) -> list[str]:
        """What the application shows to a screen reader, a line for each object."""
        from qivo_watch.lines import printable
        return [printable(line) for window in self._read_windows() for line in window.described()]

    def do_audit(self, given: argparse.Namespace) -> None:
        from qivo_watch.command.screen import audit
        status = self.client.status()
        if status["app"] and self.eye().top_process() != status["app"]["pid"]:
            raise WatchError("the application is not on the screen")
        audit.audit(self.eye(), self._read_windows, self._turn, status["contrast"], given.picture)

    def _turn(self, direction: str, count: int) -> None:
        self.client.carry_out(VERBS["Bezel"], {"direction": direction, "count": count})

    def _read_windows(self) -> Any:
        from qivo_watch.command.screen import tree
        return tree.read_windows(self.client)

    def _find_text(self, text: str) -> tuple[int, int] | None:
        from qivo_watch.command.screen import tree
        return tree.find_text(self._read_windows(), text, self.eye().size)

    def do_screenshot(self, given: argparse.Namespace) -> None:
        if given.body:
            self.client.call_body("Picture", "sb", os.path.abspath(given.file), True)
            return
        from qivo_watch.command.screen.pictures import save
        save(self._round_picture(), given.file)

    def do_compare(self, given: argparse.Namespace) -> None:
        from qivo_watch.command.screen import pictures
        import pathlib
        file = pathlib.Path(self.here or "", given.file)
        # One that is named twice is compared with the picture just written.
        if self.is_update and file.resolve() not in self._updated:
            pictures.save(self._round_picture(), str(file))
            self._updated.add(file.resolve())
        else:
            pictures.compare(self._round_picture(), file, given.tolerance)

    def do_record(self, given: argparse.Namespace) -> None:
        from qivo_watch.command.screen import recorder
        if recorder.is_replay(given.file):
            if given.fps:
                raise UsageError("a replay has no frames: --fps is for pictures that move")
        else:
            if given.pictures:
                raise UsageError("--pictures needs a FILE that ends in .replay")
            recorder.check_file(given.file)
        requests: list[int] = []
        for number in INTERRUPTS:
            if signal.getsignal(number) is not signal.SIG_IGN:
                signal.signal(number, lambda request, _: requests.append(request))

        def is_over(seconds: float) -> bool:
            return bool(requests) or (given.duration is not None and seconds >= given.duration)
        if recorder.is_replay(given.file):
            from qivo_watch.command.replays import scribe
            scribe.record(self.client, self.eye(), given.file, given.pictures, is_over)
        else:
            recorder.record(self.eye(), given.file, given.fps or recorder.USUAL_RATE, is_over)

    def _round_picture(self) -> Any:
        from qivo_watch.command.screen import pictures
        eye = self.eye()
        return pictures.make_round(eye.look(), pictures.disc_mask(eye.size))

    def do_log(self, given: argparse.Namespace) -> None:
        from qivo_watch.lines import coloured, is_at_least
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
                raise Late(f'no line with "{given.text}" within {given.timeout:g} s')
            self.log_place = place
        elif given.what == "text":
            self._wait_text(given.text, given.timeout)
        elif given.what == "exit":
            self._wait_exit(given.timeout)
        elif given.what == "still":
            if not self.eye().wait_still(time.monotonic() + given.timeout):
                raise Late(f"the screen was not still within {given.timeout:g} s")
        else:
            before = self._picture or self.eye().look()
            if self.eye().wait_other(before, time.monotonic() + given.timeout) is None:
                raise Late(f"the screen did not change within {given.timeout:g} s")

    def _wait_text(self, text: str, seconds: float) -> None:
        deadline = time.monotonic() + seconds
        while True:
            picture, now = self.eye().look(), time.monotonic()
            if any(text in part.name for window in self._read_windows() for part in window.all()):
                return
            if now > deadline:
                raise Late(f'no text "{text}" within {seconds:g} s')
            # What is in sight is drawn when it comes; the rest must be looked for.
            self.eye().wait_other(picture, min(deadline, time.monotonic() + LOOK_AGAIN_S))

    def _wait_exit(self, seconds: float) -> None:
        deadline = time.monotonic() + seconds
        place = self.client.log_count()
        # The end of an application is a line of the log.
        while self.client.get("App"):
            left = deadline - time.monotonic()
            if left <= 0 or self.client.wait_log(place, lambda _: True, left) is None:
                raise Late(f"{self.client.get('App')} did not end within {seconds:g} s")
            place += 1
        end = self.client.status()["lastEnd"]
        if end is None:
            raise WatchError("no application has been started")
        if end["status"] or end["signal"]:
            raise WatchError(f"{end['app']} " + (
                f"was killed by {signal.Signals(end['signal']).name}" if end["signal"]
                else f"ended with status {end['status']}"))


def _password(file: str | None) -> str | None:
    if file is None:
        return None
    from qivo_watch.command.password import read
    return read(file)


def _described(status: dict[str, Any]) -> list[str]:
    app, battery, clock = status["app"], status["battery"], status["time"]
    lines = [
        f"watch     {status['name']}, {status['size']} pixels, screen {status['screen']}",
        f"app       {app['id'] + ' (process ' + str(app['pid']) + ')' if app else 'none'}",
        f"apps      {len(status['apps'])}",
        f"battery   {battery['percent']:g} %, {battery['state']}",
        f"language  {status['language']}",
        f"region    {status['region']}",
        f"time      {clock['now']}{', frozen' if clock['frozen'] else ''}",
        f"zone      {clock['zone']}",
        f"hours     {clock['hours'] or 'as in the region'}",
        f"text size {status['textSize']:g}",
        f"motion    {status['motion']}",
        f"contrast  {status['contrast']}",
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
