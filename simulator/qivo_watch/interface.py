"""What command and keeper share: names, limits, and each verb with its arguments.

A verb is declared here once. The command's grammar (command/arguments.py), its call
(command/bus/client.py), the interface on the bus and the check of what comes over it
(keeper/control.py) follow from that; Watch (keeper/watch.py) has a method of its name.
"""

from __future__ import annotations

import os

from qivo_watch.errors import UsageError, WatchError

TYPE_CHECKING = False  # typing itself takes long to load.
if TYPE_CHECKING:
    from typing import Any

PATH = "/com/velmora/QivoWatch"
NAME, INTERFACE = "com.velmora.QivoWatch", "com.velmora.QivoWatch1"
BODY_NAME, BODY_INTERFACE = "com.velmora.QivoWatch.Body", "com.velmora.QivoWatch.Body1"
HOME_NAME = "com.velmora.QivoWatch.Home"
REFUSED = "com.velmora.QivoWatch.Error.Refused"

GUIDE = "com.velmora.qivo-guide-app"
SIZES = [360, 390, 454]
LEAST_ZOOM, MOST_ZOOM = 0.25, 4.0
MARGIN = 680 / 360
"""The window's side, relative to that of the watch's screen."""

PASSWORD_LENGTH = 8
"""VNC uses no more, and a shorter one is easily guessed."""

_LONGEST_APP_ID = 255

LEVELS = ["debug", "info", "warn", "error"]
"""Of log lines, the lowest first."""

TIMES = "HH:MM, HH:MM:SS or YYYY-MM-DDTHH:MM[:SS]"


def is_app_id(text: str) -> bool:
    """Whether TEXT could be an application's id, such as org.example.hello."""
    words = text.split(".")
    return text.isascii() and len(text) <= _LONGEST_APP_ID and len(words) > 1 and all(
        _is_word(word) for word in words)


def _is_word(word: str) -> bool:
    return word.replace("-", "_").isidentifier() and not word.startswith("-")


class Number:
    """Whole, or with a SIGNATURE of "d" any."""

    def __init__(self, signature: str, least: float, most: float):
        self.signature = signature
        self.least = least
        self.most = most

    def read(self, word: str) -> float:
        """The value that a word of the command line means."""
        try:
            return self.check((float if self.signature == "d" else int)(word))
        except (ValueError, UsageError):
            raise self._refusal(word) from None

    def check(self, value: Any) -> Any:
        """The value, if it is one of this kind."""
        kinds = (int, float) if self.signature == "d" else int
        if (isinstance(value, bool) or not isinstance(value, kinds)
                or not self.least <= value <= self.most):
            raise self._refusal(value)
        return value

    def _refusal(self, value: Any) -> UsageError:
        return UsageError(f'"{value}" is not from {self.least:g} to {self.most:g}')


class Choice:
    """One of a few values. ARE_FLAGS: on the command line each is an option of its name."""

    def __init__(self, values: tuple, are_flags: bool = False):
        self.values = values
        self.are_flags = are_flags
        self.signature = "s" if isinstance(values[0], str) else "u"

    def read(self, word: str) -> Any:
        try:
            return type(self.values[0])(word)
        except ValueError:
            return word

    def check(self, value: Any) -> Any:
        if value not in self.values or not isinstance(value, type(self.values[0])):
            raise UsageError(f'"{value}" is not one of {", ".join(map(str, self.values))}')
        return value


class Text:
    """Any text; the verb checks it."""

    signature = "s"

    def read(self, word: str) -> str:
        return word

    def check(self, value: Any) -> str:
        if not isinstance(value, str):
            raise UsageError(f'"{value}" is not a text')
        return value


def _absolute(path: str) -> str:
    try:
        return os.path.abspath(path)
    except FileNotFoundError:
        raise WatchError(f'"{path}" is not found: the working folder has been removed') from None


class Time(Text):
    def read(self, word: str) -> str:
        """Reports a mistake before a watch is asked."""
        from qivo_watch.times import parse_time  # pylint: disable=import-outside-toplevel
        parse_time(word)
        return word


class Program(Text):
    """An application's id, or the path of a program."""

    def read(self, word: str) -> str:
        return _absolute(word) if "/" in word else word


class Place(Text):
    """A file or a folder."""

    def read(self, word: str) -> str:
        if not word:
            raise UsageError('"" is not a file')
        return _absolute(word)


class Command:
    """The words of a command line; one word for the shell."""

    signature = "as"

    def read(self, word: str) -> list[str]:
        import shlex  # pylint: disable=import-outside-toplevel
        try:
            words = shlex.split(word)
        except ValueError as error:
            raise UsageError(f'"{word}" is not a command: {error}') from None
        if not words:
            raise UsageError(f'"{word}" is not a command')
        return [_absolute(words[0]) if "/" in words[0] else words[0], *words[1:]]

    def check(self, value: Any) -> list[str]:
        if not (isinstance(value, list) and value and all(isinstance(word, str) for word in value)):
            raise UsageError(f'"{value}" is not a command')
        return value


class Pairs:
    """Texts by their keys; on the command line one KEY=VALUE at a time."""

    signature = "a{ss}"

    def read(self, word: str) -> dict[str, str]:
        key, equals, value = word.partition("=")
        if not equals or not key:
            raise UsageError(f'"{word}" is not KEY=VALUE')
        return {key: value}

    def check(self, value: Any) -> dict[str, str]:
        if not (isinstance(value, dict)
                and all(isinstance(text, str) for pair in value.items() for text in pair)):
            raise UsageError(f'"{value}" is not a map of texts')
        return value


class Legs:
    """Further places of the finger: x, y, and the milliseconds that it takes to get there; on the
    command line one X,Y,MS at a time."""

    signature = "a(iiu)"

    def read(self, word: str) -> tuple[int, int, int]:
        try:
            (leg,) = self.check([tuple(int(part) for part in word.split(","))])
        except (ValueError, UsageError):
            raise UsageError(f'"{word}" is not X,Y,MS') from None
        return leg

    def check(self, value: Any) -> list[tuple[int, int, int]]:
        if not (isinstance(value, list) and all(isinstance(leg, tuple) and len(leg) == 3
                                                for leg in value)):
            raise UsageError(f'"{value}" is not a list of places')
        for x, y, duration in value:
            _PLACE.check(x)
            _PLACE.check(y)
            MILLISECONDS.check(duration)
        return value


Kind = Number | Choice | Text | Command | Pairs | Legs


class Argument:
    """A needed one is in a verb's signature; the others go into the a{sv} at its end.

    FLAG and SHORT are how it is given on the command line; without a flag, by its place.
    """

    def __init__(self, name: str, kind: Kind, help: str = "",  # pylint: disable=redefined-builtin
                 metavar: str | None = None, flag: str | None = None, short: str | None = None,
                 is_needed: bool = False, default: Any = None):
        self.name = name
        self.kind = kind
        self.help = help
        self.metavar = metavar
        self.flag = flag
        self.short = short
        self.is_needed = is_needed
        self.default = default


class Verb:
    """WORDS are those of the command line; if empty, only programs of the watch call it."""

    def __init__(self, method: str, words: str, help: str,  # pylint: disable=redefined-builtin
                 arguments: tuple[Argument, ...] = ()):
        self.method = method
        self.words = words
        self.help = help
        self.arguments = arguments
        self.needed = [argument for argument in arguments if argument.is_needed]
        self.optional = [argument for argument in arguments if not argument.is_needed]

    @property
    def function(self) -> str:
        """The name of Watch's method."""
        return "".join(f"_{letter.lower()}" if letter.isupper() else letter
                       for letter in self.method).lstrip("_")

    def bind(self, values: tuple) -> dict[str, Any]:
        """The arguments by name of a call on the bus, checked, with defaults for those left out."""
        options = values[-1] if self.optional else {}
        bound = {argument.name: value for argument, value in zip(self.needed, values)}
        bound |= {argument.name: argument.default for argument in self.optional} | options
        known = {argument.name: argument for argument in self.arguments}
        for name in options.keys() - {argument.name for argument in self.optional}:
            raise UsageError(f'{self.method} has no argument "{name}"')
        for name, value in bound.items():
            if name in options or known[name].is_needed:
                try:
                    known[name].kind.check(value)
                except UsageError as error:
                    raise UsageError(f"{name}: {error}") from None
        return bound


PERCENT = Number("d", 0, 100)
TEXT_SIZE = Number("d", 0.8, 2.0)
MOTION, CONTRAST = Choice(("full", "reduced")), Choice(("normal", "high"))
SECONDS = Number("d", 0, 3600)
MILLISECONDS = Number("u", 0, 60_000)
_PLACE = Number("i", 0, max(SIZES) - 1)
_KEY = Argument("key", Choice(("back", "power")), is_needed=True)


def _interval(default: int, text: str) -> Argument:
    return Argument("interval", MILLISECONDS, text, "MS", "--interval", "-i", default=default)


def _duration(default: int, text: str) -> Argument:
    return Argument("duration", MILLISECONDS, text, "MS", "--duration", "-d", default=default)


def _timeout(default: float | None, text: str) -> Argument:
    return Argument("timeout", SECONDS, text, "SECONDS", "--timeout", "-t", default=default)


def _places(*names: str) -> tuple[Argument, ...]:
    return tuple(Argument(name, _PLACE, metavar=name.upper(), is_needed=True) for name in names)


_MACHINE_TIME = ("The home face and timedate1 follow; an application that reads the clock gets the "
                 "machine's time.")

GROUPS = {
    "button": "Press a key; return when its effect is seen.",
    "time": "Show or set the watch's time, freeze or thaw it; set the time zone or 12 or 24 hours. "
            f"{_MACHINE_TIME}",
}
"""What the first of two words means."""

VERBS = {verb.method: verb for verb in (
    Verb("Launch", "launch",
         "Start an application, or send it a request if it runs; return when its first frame is "
         "drawn.", (
             Argument("app", Program(), "its id, or the path of its program", "APP", default=GUIDE),
             Argument("operation", Text(), "the operation of the request", flag="--operation",
                      default=""),
             Argument("extra", Pairs(), "a value of the request; repeatable", "KEY=VALUE",
                      "--extra", default={}),
             Argument("env", Pairs(), "a variable of the program's environment; repeatable",
                      "KEY=VALUE", "--env", default={}),
             Argument("wrap", Command(), "a command that runs the program, such as valgrind",
                      "COMMAND", "--wrap", default=[]),
             Argument("debugger", Choice(("gdb",), are_flags=True),
                      "in gdb, which gets the terminal, stopped before its first instruction"),
             _timeout(None, "how long it may take, before it is ended (default: 30, with --wrap "
                      "600)"))),
    Verb("Terminate", "terminate", "Ask an application to end; return when it has ended.", (
        Argument("app", Program(), "its id, or the path of its program (default: the one that was "
                 "launched last)", "APP", default=""),
        _timeout(None, "how long it may take, before it is killed (default: 5, of a wrapped one "
                 "100)"))),
    Verb("Install", "install", "Put the applications of a folder, or of one desktop entry, on the "
         "watch; return when the home face shows them.", (
             Argument("place", Place(), "an installation or a build that has ID.desktop or "
                      "share/applications/ID.desktop, or such a file",
                      "FOLDER|DESKTOP-FILE", is_needed=True),)),
    Verb("Uninstall", "uninstall", "End an application and take it from the watch.", (
        Argument("app", Text(), "its id", "ID", is_needed=True),)),
    Verb("Reload", "reload", "Have an application show its themes as they have been compiled anew.",
         (Argument("app", Program(), "its id, or the path of its program (default: the one that "
                   "was launched last)", "APP", default=""),)),
    Verb("Bezel", "bezel", "Turn the bezel; return when the application has got all detents.", (
        Argument("direction", Choice(("cw", "ccw")), "clockwise or counter-clockwise",
                 is_needed=True),
        Argument("count", Number("u", 1, 1000), "detents", "N", default=1),
        _interval(20, "time between two detents"))),
    Verb("ClickKey", "button click", "Push a key and release it.", (
        _KEY, _duration(50, "how long it is held"),
        Argument("count", Number("u", 1, 100), "clicks", "N", "--count", "-n", default=1),
        _interval(100, "between two clicks"))),
    Verb("PushKey", "button push", "Push a key and keep it down.", (_KEY,)),
    Verb("ReleaseKey", "button release", "Release a key that was pushed.", (_KEY,)),
    Verb("Touch", "touch", "Tap the screen, in its pixels.", _places("x", "y")),
    Verb("Swipe", "swipe", "Swipe a finger over the screen.", (
        *_places("x1", "y1", "x2", "y2"), _duration(200, "how long the swipe takes"),
        Argument("then", Legs(), "where the finger goes next, and how long that takes; repeatable",
                 "X,Y,MS", "--then", default=[]))),
    Verb("SetBattery", "battery", "Set the battery; what is not given stays as it is.", (
        Argument("percent", PERCENT, metavar="P", flag="--percent"),
        Argument("state", Choice(("charging", "discharging", "full"), are_flags=True)))),
    Verb("SetLanguage", "language", "Set the language.", (
        Argument("language", Text(), "such as ko_KR", "LANGUAGE", is_needed=True),)),
    Verb("SetRegion", "region", "Set the region, which decides how dates and times are written.", (
        Argument("region", Text(), 'such as de_DE, or "auto" to follow the language', "REGION",
                 is_needed=True),)),
    Verb("SetTime", "time set", f"Set the watch's time. {_MACHINE_TIME}", (
        Argument("time", Time(), TIMES, "TIME", is_needed=True),)),
    Verb("FreezeTime", "time freeze", f"Stop the watch's clock. {_MACHINE_TIME}"),
    Verb("ThawTime", "time thaw", "Let the watch's clock go on."),
    Verb("SetZone", "time zone", "Set the time zone.", (
        Argument("zone", Text(), "such as Asia/Seoul", "ZONE", is_needed=True),)),
    Verb("SetHours", "time hours", "Set the clock's format to 12 or 24 hours.", (
        Argument("hours", Choice((12, 24)), is_needed=True),)),
    Verb("SetTextSize", "text-size", "Set how large the user wants all text.", (
        Argument("factor", TEXT_SIZE, "0.8 to 2.0; 1.0 is usual", "FACTOR", is_needed=True),)),
    Verb("SetMotion", "motion", "Set whether things move and fade.", (
        Argument("motion", MOTION, is_needed=True),)),
    Verb("SetContrast", "contrast", "Set the contrast that the user wants.", (
        Argument("contrast", CONTRAST, is_needed=True),)),
    Verb("Stop", "", "End the watch."),
)}

PROPERTIES = {
    "ScreenOn": "b", "BezelPosition": "i", "BackPressed": "b", "PowerPressed": "b",
    "Plugged": "b", "Charging": "b", "Percentage": "d", "Language": "s", "App": "s", "Time": "x",
    "TimeFrozen": "b", "Zone": "s", "TextSize": "d", "MotionReduced": "b", "ContrastHigh": "b",
    "Apps": "a(sss)",
}
"""The keeper's properties, each with its type on the bus."""


def describe() -> str:
    """The keeper's interface as a message bus describes it."""
    return f"""<node><interface name="{INTERFACE}">
  {"".join(map(_describe_verb, VERBS.values()))}
  <method name="ReadLog">
    <arg name="start" type="t" direction="in"/>
    <arg name="count" type="t" direction="out"/>
    <arg name="first" type="t" direction="out"/>
    <arg name="lines" type="as" direction="out"/>
  </method>
  <method name="ShowTree"><arg name="bus" type="s" direction="out"/></method>
  <method name="Status"><arg name="json" type="s" direction="out"/></method>
  <method name="ListApps"><arg name="json" type="s" direction="out"/></method>
  <signal name="LogGrown"><arg name="count" type="t"/></signal>
  <signal name="Began">
    <arg name="work" type="t"/>
    <arg name="time" type="t"/>
    <arg name="method" type="s"/>
    <arg name="json" type="s"/>
    <arg name="caller" type="s"/>
  </signal>
  <signal name="Stopping"/>
  <signal name="Ended">
    <arg name="work" type="t"/>
    <arg name="time" type="t"/>
    <arg name="succeeded" type="b"/>
  </signal>
  {"".join(f'<property name="{name}" type="{kind}" access="read"/>'
           for name, kind in PROPERTIES.items())}
</interface></node>"""


def _describe_verb(verb: Verb) -> str:
    arguments = [(argument.name, argument.kind.signature) for argument in verb.needed]
    if verb.optional:
        arguments.append(("options", "a{sv}"))
    described = "".join(f'<arg name="{name}" type="{kind}" direction="in"/>'
                        for name, kind in arguments)
    return f'<method name="{verb.method}">{described}</method>'
