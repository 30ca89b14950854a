"""The grammar of the command line and of a replay's lines."""

from __future__ import annotations

import os

from qivo_watch.command.quick import Quick, Unclear
from qivo_watch.errors import UsageError
from qivo_watch.interface import (CONTRAST, GROUPS, LEAST_ZOOM, LEVELS, MOST_ZOOM, MOTION,
                                  PERCENT, SECONDS, SIZES, TEXT_SIZE, TIMES, VERBS, Choice, Legs,
                                  Number, Pairs, Place, Time)
from qivo_watch.state import DEFAULT_NAME

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any
    from qivo_watch.interface import Argument, Verb

WAIT_PATIENCE_S = 10.0


def _picture(text: str) -> str:
    if os.path.splitext(text)[1] != ".png":
        raise UsageError(f'"{text}" does not end in .png')
    return text


def read(words: list[str]) -> Any:
    """What the words of a command line mean."""
    try:
        return Grammar(False, Quick()).parse(words)
    except Unclear:
        return Grammar(False).parse(words)


class Grammar:
    """The verbs of the watch, and those of the command alone, one a method.

    IS_REPLAY: for a line of a replay. PARSER: a Quick one, else one that tells of mistakes. The
    result has the first word as VERB, and the Verb to be called, or None, as CALL.
    """

    def __init__(self, is_replay: bool, parser: Any = None):
        self.parser = parser or _whole_parser(is_replay)
        self._verbs = self.parser.add_subparsers(dest="verb", metavar="COMMAND",
                                                 required=is_replay)
        self._groups: dict[str, Any] = {"": self._verbs}
        self._is_replay = is_replay
        if not is_replay:
            self.parser.add_argument("--name", default=DEFAULT_NAME, help=_NAME_HELP)
        self._start()
        for verb in VERBS.values():
            if verb.words and verb.method != "Touch":
                self._add_call(verb)
        for add in (self._touch, self._tree, self._audit, self._screenshot, self._wait,
                    self._compare, self._record, self._log, self._play, self._status, self._list,
                    self._stop, self._apps, self._new):
            add()

    def parse(self, words: list[str]) -> Any:
        try:
            given, unknown = self.parser.parse_known_args(words)
        except UsageError:
            self._check_order(words)
            raise
        if unknown:
            getattr(given, "parser", self.parser).error(
                f"unrecognized arguments: {' '.join(unknown)}")
        for argument in given.call.arguments if given.verb and given.call else ():
            if isinstance(argument.kind, Pairs):
                _merge(given, argument.name)
        return given

    def _check_order(self, words: list[str]) -> None:
        """Tells of an option between a verb's two words."""
        first = 2 if words[:1] == ["--name"] else 0
        group, second = [*words[first:first + 2], "", ""][:2]
        if group in set(self._groups) - {""} and (
                second[:1] == "-" and second.partition("=")[0] != "--name"):
            raise UsageError(f"{group}: {second} comes after the word that follows {group} "
                             f"(see qivo-watch {group} --help)")

    def _add(self, words: str, text: str, call: Verb | None = None) -> Any:
        group, _, word = words.rpartition(" ")
        parser = self._groups[group].add_parser(word, help=text, description=text)
        parser.set_defaults(parser=parser, call=call)
        if not self._is_replay:
            parser.add_argument("--name", default=parser.NO_DEFAULT, help=_NAME_HELP)
        return parser

    def _add_group(self, word: str, text: str, members: str, is_needed: bool) -> None:
        self._groups[word] = self._add(word, text).add_subparsers(
            dest="what", metavar=members, required=is_needed)

    def _add_call(self, verb: Verb) -> None:
        group = verb.words.rpartition(" ")[0]
        if group and group not in self._groups:
            members = [other.words.split()[1] for other in VERBS.values()
                       if other.words.startswith(f"{group} ")]
            self._add_group(group, GROUPS[group], "|".join(members), group != "time")
        parser = self._add(verb.words, verb.help, verb)
        for argument in verb.arguments:
            _add_argument(parser, argument)

    def _start(self) -> None:
        add = self._add("start", "Start a watch; return when it is ready.").add_argument
        add("--headless", action="store_true", help="without a window")
        add("--web", action="store_true", help="in a browser on this machine; prints the address")
        add("--port", type=Number("u", 1, 65535).read,
            help="port for --web (default: a free one)")
        add("--password-file", metavar="FILE",
            help="holds the password of --web, 8 of A-Z a-z 0-9; - is standard input "
            "(default: a new password)")
        add("--size", type=int, choices=SIZES, default=SIZES[0], help="pixels of the screen's side")
        add("--zoom", type=Number("d", LEAST_ZOOM, MOST_ZOOM).read, metavar="Z",
            help=f"of the window, {LEAST_ZOOM:g} to {MOST_ZOOM:g} (default: the desktop's "
            "scale, if the screen is large enough)")
        add("--language", default="en_US", help="such as ko_KR (default: %(default)s)")
        add("--percent", type=PERCENT.read, default=80.0, help="the battery's charge")
        add("--charging", dest="battery", action="store_const", const="charging",
            default="discharging", help="with the charger plugged")
        add("--text-size", type=TEXT_SIZE.read, default=1.0, metavar="FACTOR",
            help="how large the user wants all text, 0.8 to 2.0 (default: %(default)s)")
        add("--motion", choices=MOTION.values, default="full",
            help="whether things move and fade (default: %(default)s)")
        add("--contrast", choices=CONTRAST.values, default="normal",
            help="the contrast that the user wants (default: %(default)s)")
        add("--keep", type=Place().read, metavar="FOLDER",
            help="remembers there which applications are installed, for the next start")
        add("--at", type=Time().read, metavar="TIME", help=f"the watch's time: {TIMES}")

    def _touch(self) -> None:
        verb = VERBS["Touch"]
        parser = self._add(verb.words, verb.help, verb)
        for place in verb.arguments:
            parser.add_argument(place.name, nargs="?", type=place.kind.read,
                                metavar=place.metavar)
        parser.add_argument("--text", metavar="TEXT",
                            help="where this text is in sight, instead of X and Y")

    def _tree(self) -> None:
        self._add("tree", "Show what the application shows to a screen reader, with places on the "
                  "screen.").add_argument("--json", action="store_true", help="as JSON")

    def _audit(self) -> None:
        self._add("audit", "Check the application's page: contrast, size of letters, what the edge "
                  "cuts, what has no name, what the bezel does not reach. Turns the bezel to both "
                  "ends and back.").add_argument(
                      "--picture", type=_picture, metavar="FILE",
                      help="a PNG for what fails, marked on the screen")

    def _screenshot(self) -> None:
        add = self._add("screenshot", "Save a picture of the round screen.").add_argument
        add("file", type=_picture, metavar="FILE", help="a PNG")
        add("--body", action="store_true", help="with the whole watch around it")

    def _wait(self) -> None:
        self._add_group("wait", "Wait for something to happen.", "|".join(_WAITS), True)
        for what, text in _WAITS.items():
            add = self._add(f"wait {what}", text).add_argument
            if what in ("log", "text"):
                add("text", metavar="TEXT")
            if what == "log":
                add("--new", action="store_true",
                    help="ignore the lines that are already there")
            add("-t", "--timeout", type=SECONDS.read, default=WAIT_PATIENCE_S, metavar="SECONDS",
                help="fail after this time (default: %(default)g)")

    def _compare(self) -> None:
        add = self._add("compare", "Fail unless the screen looks like a picture.").add_argument
        add("file", type=_picture, metavar="FILE")
        add("--tolerance", type=Number("u", 0, 255).read, default=16, metavar="N",
            help="how much a channel of a pixel may differ (default: %(default)s)")

    def _record(self) -> None:
        add = self._add("record", "Record the screen, or what is done on the watch: for the time "
                        "given, else until Ctrl-C or the watch's end; in a replay, which records "
                        "the screen only, until its end or `record stop`.").add_argument
        add("file", metavar="FILE", help="ends in .gif, .apng, .png, .webp or .mp4; or in .replay: "
            "commands for `play` that do again what is done by mouse or by command")
        add("--pictures", action="store_true",
            help="into a replay: compare the screen wherever it rests")
        add("-d", "--duration", type=SECONDS.read, metavar="SECONDS")
        add("--fps", type=Number("u", 1, 60).read, metavar="N",
            help="frames a second (default: 30)")

    def _log(self) -> None:
        add = self._add("log", "Show the log of the watch's programs.").add_argument
        add("--level", choices=LEVELS, default=LEVELS[0], help="the lowest level to show")
        add("--color", choices=["auto", "always", "never"], default="auto")
        add("--follow", action="store_true", help="go on showing new lines until the watch ends")

    def _play(self) -> None:
        if self._is_replay:
            return
        add = self._add("play", "Run a file of these commands, one a line.").add_argument
        add("file", metavar="FILE")
        add("--update", action="store_true", help="write the reference pictures again")
        add("--trace", type=Place().read, metavar="FOLDER",
            help="for a page that shows each step, with pictures, log and tree (default: only when "
            "a step fails, beside FILE)")
        add("--junit", type=Place().read, metavar="FILE",
            help="for the result as build servers read it, an XML file")

    def _new(self) -> None:
        if self._is_replay:
            return
        add = self._add("new", "Write a new application: a Meson project with one screen, to be "
                        "built, run and changed.").add_argument
        add("id", metavar="ID", help="such as org.example.hello; the last word is the program")
        add("folder", metavar="FOLDER", nargs="?",
            help="which must not exist (default: the program's name)")

    def _status(self) -> None:
        self._add("status", "Show the state of the watch.").add_argument(
            "--json", action="store_true", help="as JSON")

    def _apps(self) -> None:
        self._add("apps", "List the applications on the watch.").add_argument(
            "--json", action="store_true", help="as JSON")

    def _list(self) -> None:
        self._add("list", "List the running watches.")

    def _stop(self) -> None:
        self._add("stop", "End the watch; return when nothing of it is left.")


def _add_argument(parser: Any, argument: Argument) -> None:
    """What is left out is None, and the keeper uses the default."""
    kind = argument.kind
    if isinstance(kind, Choice) and kind.are_flags:
        flags = parser.add_mutually_exclusive_group()
        for value in kind.values:
            flags.add_argument(f"--{value}", dest=argument.name, action="store_const", const=value,
                               help=argument.help or None)
        return
    text = f"{argument.help} (default: {argument.default})" if argument.default else argument.help
    options: dict[str, Any] = {"type": kind.read, "help": text}
    if isinstance(kind, Choice):
        options["choices"] = kind.values
    if isinstance(kind, (Legs, Pairs)):
        options["action"] = "append"
    if argument.metavar:
        options["metavar"] = argument.metavar
    names = [name for name in (argument.short, argument.flag) if name]
    if names:
        options["dest"] = argument.name
    elif not argument.is_needed:
        options["nargs"] = "?"
    parser.add_argument(*(names or [argument.name]), **options)


def _merge(given: Any, name: str) -> None:
    """One map of those that a repeated option has given."""
    maps = getattr(given, name)
    if maps is not None:
        setattr(given, name, {key: value for part in maps for key, value in part.items()})


def _whole_parser(is_replay: bool) -> Any:
    from qivo_watch.command.parser import (  # pylint: disable=import-outside-toplevel
        LineParser, Parser)
    if is_replay:
        return LineParser(prog="qivo-watch")
    return Parser(prog="qivo-watch", description=_DESCRIPTION)


_NAME_HELP = "which watch (default: watch)"
_WAITS = {
    "log": "for a log line that contains TEXT",
    "text": "for TEXT among what the application shows to a screen reader, in sight or not",
    "still": "for a screen without motion",
    "frame": "for a change of the screen",
    "exit": "for the end of the application; fails if it crashed or failed",
}
_DESCRIPTION = """A watch on the desk. Without a command it starts one.

In the window:
  wheel, dragged ring, or arrow keys       bezel
  mouse on the screen                      finger
  a click on a key; Escape or Backspace    back key
  a click on a key; P                      power key
  a click on the charger; C                plug, unplug
  closing the window                       stop the watch"""
