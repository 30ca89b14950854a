"""The grammar of the command line, which is that of a replay's lines too."""

import argparse
import pathlib
from typing import Any, NoReturn

from qivo_watch.apps import GUIDE
from qivo_watch.clock import parse_time
from qivo_watch.desktop import LEAST_ZOOM, MOST_ZOOM
from qivo_watch.errors import UsageError
from qivo_watch.inject import KEYS
from qivo_watch.log import LEVELS
from qivo_watch.services import STATES
from qivo_watch.state import DEFAULT_NAME

SIZES = [360, 390, 454]
WAIT_PATIENCE_S = 10.0
LAUNCH_PATIENCE_S = 30.0
END_PATIENCE_S = 5.0
HOLD_MS = 50
CLICK_PAUSE_MS = 100

_TIMES = "HH:MM, HH:MM:SS or YYYY-MM-DDTHH:MM[:SS]"


class _Parser(argparse.ArgumentParser):
    """One line for a mistake."""

    def __init__(self, **options: Any):
        super().__init__(allow_abbrev=False,
                         formatter_class=argparse.RawDescriptionHelpFormatter, **options)

    def error(self, message: str) -> NoReturn:
        raise UsageError(f"{message.splitlines()[0]} (see {self.prog} --help)")


class _LineParser(_Parser):
    """For a line of a replay, and so are the parsers of its subcommands: without --help."""

    def __init__(self, **options: Any):
        super().__init__(add_help=False, **options)


def number(kind: Any, least: float, most: float) -> Any:
    """A type for argparse: a number within limits."""
    def convert(text: str) -> Any:
        try:
            value = kind(text)
        except ValueError:
            value = None
        if value is None or not least <= value <= most:
            raise argparse.ArgumentTypeError(f'"{text}" is not from {least:g} to {most:g}')
        return value
    return convert


def _time(text: str) -> str:
    try:
        parse_time(text)
    except UsageError as error:
        raise argparse.ArgumentTypeError(str(error)) from None
    return text


def _pair(text: str) -> tuple[str, str]:
    key, equals, value = text.partition("=")
    if not equals or not key:
        raise argparse.ArgumentTypeError(f'"{text}" is not KEY=VALUE')
    return key, value


def _picture(text: str) -> str:
    if pathlib.Path(text).suffix != ".png":
        raise argparse.ArgumentTypeError(f'"{text}" does not end in .png')
    return text


_MS = number(int, 0, 60_000)
_PLACE = number(int, 0, max(SIZES) - 1)
_SECONDS = number(float, 0, 3600)


class Grammar:
    """Adds one subcommand a method to a parser. IS_REPLAY: as a line of a replay."""

    def __init__(self, is_replay: bool):
        self.parser = (_LineParser(prog="qivo-watch") if is_replay
                       else _Parser(prog="qivo-watch", description=_DESCRIPTION))
        self._verbs = self.parser.add_subparsers(dest="verb", metavar="COMMAND",
                                                 required=is_replay)
        self._is_replay = is_replay
        if not is_replay:
            self.parser.add_argument("--name", default=DEFAULT_NAME, help=_NAME_HELP)
        for add in (self._start, self._launch, self._terminate, self._bezel, self._button,
                    self._touch, self._swipe, self._battery, self._language, self._region,
                    self._time, self._screenshot, self._wait, self._compare, self._record,
                    self._log, self._play, self._status, self._list, self._stop):
            add()

    def parse(self, words: list[str]) -> argparse.Namespace:
        return self.parser.parse_args(words)

    def _add(self, verb: str, text: str) -> argparse.ArgumentParser:
        parser = self._verbs.add_parser(verb, help=text, description=text)
        if not self._is_replay:
            parser.add_argument("--name", default=argparse.SUPPRESS, help=_NAME_HELP)
        return parser

    def _start(self) -> None:
        add = self._add("start", "Start a watch; return when it is ready.").add_argument
        add("--headless", action="store_true", help="without a window")
        add("--web", action="store_true", help="in a browser of this machine; prints the address")
        add("--port", type=number(int, 1, 65535), help="of --web (default: a free one)")
        add("--password-file", metavar="FILE",
            help="holds the password of --web, 8 of A-Z a-z 0-9; - is standard input "
            "(default: a fresh password)")
        add("--size", type=int, choices=SIZES, default=SIZES[0], help="pixels of the screen's side")
        add("--zoom", type=number(float, LEAST_ZOOM, MOST_ZOOM), metavar="Z",
            help=f"of the window alone, {LEAST_ZOOM:g} to {MOST_ZOOM:g} (default: the desktop's "
            "scale, as far as the screen allows it)")
        add("--language", default="en_US", help="such as ko_KR (default: %(default)s)")
        add("--percent", type=number(float, 0, 100), default=80.0, help="charge of the battery")
        add("--charging", dest="battery", action="store_const", const="charging",
            default="discharging", help="with the charger plugged")
        add("--at", type=_time, metavar="TIME", help=f"the watch's time: {_TIMES}")

    def _launch(self) -> None:
        add = self._add("launch", "Start an application, or hand it a request when it runs; return "
                        "when its first frame is drawn.").add_argument
        add("app", nargs="?", default=GUIDE, metavar="APP",
            help="its id, or the path of its program (default: %(default)s)")
        add("--operation", default="", help="the operation of the request")
        add("--extra", type=_pair, action="append", default=[], metavar="KEY=VALUE",
            help="a value of the request; repeatable")
        add("--env", type=_pair, action="append", default=[], metavar="KEY=VALUE",
            help="a variable of the program's environment; repeatable")
        add("-t", "--timeout", type=_SECONDS, default=LAUNCH_PATIENCE_S, metavar="SECONDS",
            help="how long it may take; a program that takes longer is ended "
                 "(default: %(default)g)")

    def _terminate(self) -> None:
        add = self._add("terminate", "Ask an application to end; return when it has "
                        "ended.").add_argument
        add("app", nargs="?", default="", metavar="APP",
            help="its id, or the path of its program (default: the one that was launched last)")
        add("-t", "--timeout", type=_SECONDS, default=END_PATIENCE_S, metavar="SECONDS",
            help="how long it may take; then it is killed (default: %(default)g)")

    def _bezel(self) -> None:
        add = self._add("bezel", "Turn the bezel; return when all detents are taken.").add_argument
        add("direction", choices=["cw", "ccw"], help="clockwise or counter-clockwise")
        add("count", nargs="?", type=number(int, 1, 1000), default=1, metavar="N", help="detents")
        add("-i", "--interval", type=_MS, default=20, metavar="MS", help="from one to the next")

    def _button(self) -> None:
        add = self._add("button", "Press a key; return when its effect is seen.").add_argument
        add("action", choices=["click", "push", "release"])
        add("key", choices=list(KEYS))
        add("-d", "--duration", type=_MS, metavar="MS",
            help=f"how long a click holds it (default: {HOLD_MS})")
        add("-n", "--count", type=number(int, 1, 100), metavar="N", help="clicks (default: 1)")
        add("-i", "--interval", type=_MS, metavar="MS",
            help=f"between two clicks (default: {CLICK_PAUSE_MS})")

    def _touch(self) -> None:
        add = self._add("touch", "Tap the screen at a place in its pixels.").add_argument
        add("x", type=_PLACE, metavar="X")
        add("y", type=_PLACE, metavar="Y")

    def _swipe(self) -> None:
        add = self._add("swipe", "Draw a finger over the screen.").add_argument
        for place in ("x1", "y1", "x2", "y2"):
            add(place, type=_PLACE, metavar=place.upper())
        add("-d", "--duration", type=_MS, default=200, metavar="MS", help="from end to end")

    def _battery(self) -> None:
        parser = self._add("battery", "Set the battery; what is not given stays.")
        parser.add_argument("--percent", type=number(float, 0, 100), metavar="P")
        states = parser.add_mutually_exclusive_group()
        for state in STATES:
            states.add_argument(f"--{state}", dest="state", action="store_const", const=state)

    def _language(self) -> None:
        self._add("language", "Set the language.").add_argument(
            "language", metavar="LANGUAGE", help="such as ko_KR")

    def _region(self) -> None:
        self._add("region", "Set the region, whose habits dates and times follow.").add_argument(
            "region", metavar="REGION",
            help='such as de_DE, or "auto" for that of the language')

    def _time(self) -> None:
        parser = self._add("time", "Show the watch's time, set it, let it stand or go; set its "
                           "zone and how clocks count.")
        verbs = parser.add_subparsers(dest="action", metavar="set|freeze|thaw|zone|hours")
        verbs.add_parser("set", help="set it").add_argument("time", type=_time, help=_TIMES)
        verbs.add_parser("freeze", help="let it stand")
        verbs.add_parser("thaw", help="let it go on")
        verbs.add_parser("zone", help="set the time zone").add_argument(
            "zone", metavar="ZONE", help="such as Asia/Seoul")
        verbs.add_parser("hours", help="let clocks count to 12 or 24").add_argument(
            "hours", type=int, choices=[12, 24])

    def _screenshot(self) -> None:
        add = self._add("screenshot", "Save a picture of the round screen.").add_argument
        add("file", type=_picture, metavar="FILE", help="a PNG")
        add("--body", action="store_true", help="with the whole watch around it")

    def _wait(self) -> None:
        parser = self._add("wait", "Wait for something to happen.")
        verbs = parser.add_subparsers(dest="what", metavar="log|still|frame|exit", required=True)
        for what, text in _WAITS.items():
            verb = verbs.add_parser(what, help=text, description=text)
            if what == "log":
                verb.add_argument("text", metavar="TEXT")
                verb.add_argument("--new", action="store_true",
                                  help="pass over the lines that are there already")
            verb.add_argument("-t", "--timeout", type=_SECONDS, default=WAIT_PATIENCE_S,
                              metavar="SECONDS", help="how long at most (default: %(default)g)")

    def _compare(self) -> None:
        add = self._add("compare", "Fail unless the screen is as in a picture.").add_argument
        add("file", type=_picture, metavar="FILE")
        add("--tolerance", type=number(int, 0, 255), default=16, metavar="N",
            help="how much a channel of a pixel may be off (default: %(default)s)")

    def _record(self) -> None:
        add = self._add("record", "Record the screen: for the time given, else until Ctrl-C or the "
                        "watch's end; in a replay until its end or `record stop`.").add_argument
        add("file", metavar="FILE", help="ends in .gif, .apng, .png, .webp or .mp4")
        add("-d", "--duration", type=_SECONDS, metavar="SECONDS")
        add("--fps", type=number(int, 1, 60), default=30, metavar="N", help="frames a second")

    def _log(self) -> None:
        add = self._add("log", "Show what the watch's programs have logged.").add_argument
        add("--level", choices=LEVELS, default=LEVELS[0], help="and what is graver")
        add("--color", choices=["auto", "always", "never"], default="auto")
        add("--follow", action="store_true", help="go on until the watch ends")

    def _play(self) -> None:
        if self._is_replay:
            return
        add = self._add("play", "Carry out a file of these commands, one a line.").add_argument
        add("file", metavar="FILE")
        add("--update", action="store_true", help="write the pictures to compare with anew")

    def _status(self) -> None:
        self._add("status", "Show the state of the watch.").add_argument(
            "--json", action="store_true", help="for programs")

    def _list(self) -> None:
        self._add("list", "List the watches that run.")

    def _stop(self) -> None:
        self._add("stop", "End the watch; return when nothing of it is left.")


_NAME_HELP = "which watch (default: watch)"
_WAITS = {
    "log": "for a line of the log that holds TEXT",
    "still": "for a screen on which nothing moves",
    "frame": "for a change of the screen",
    "exit": "for the end of the application; fails when it crashed or failed",
}
_DESCRIPTION = """A watch on the desk. Without a command it starts one.

In the window:
  wheel, dragged ring, or arrow keys       bezel
  mouse on the screen                      finger
  a click on a key; Escape or Backspace    back key
  a click on a key; P                      power key
  a click on the charger; C                plug, unplug
  closing the window                       end the watch"""
