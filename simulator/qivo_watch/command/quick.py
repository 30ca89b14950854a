"""Parsers for the words of a command, both made by the calls of argparse.

Parser tells of every mistake. Quick understands the plain ways to write a command, in which it
finds the same, and leaves the others to Parser: argparse takes longer to load than most verbs take
to be done, so cli.py asks Quick first.
"""

from __future__ import annotations

import types

from qivo_watch.errors import UsageError

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any


class Unclear(Exception):
    """Words that Quick leaves to Parser."""


class Quick:
    """A parser, its parsers of subcommands, or a group of options of which one can be given."""

    NO_DEFAULT = object()

    def __init__(self, above: Quick | None = None):
        self._above = above
        self._options: dict[str, tuple[str, dict[str, Any], Quick]] = {}
        self._places: list[tuple[str, dict[str, Any]]] = []
        self._defaults: dict[str, Any] = {}
        self._commands: dict[str, Quick] = {}
        self._is_command_needed = False

    def add_argument(self, *names: str, **how: Any) -> None:
        name = how.get("dest") or next((name for name in names if name.startswith("--")), names[0])
        name = name.lstrip("-").replace("-", "_")
        default = how.get("default", False if how.get("action") == "store_true" else None)
        parser = self._above or self
        if default is not self.NO_DEFAULT:
            parser._defaults.setdefault(name, default)
        if names[0].startswith("-"):
            parser._options.update(dict.fromkeys(names, (name, how, self)))
        else:
            parser._places.append((name, how))

    def add_mutually_exclusive_group(self) -> Quick:
        return Quick(self)

    def add_subparsers(self, dest: str, required: bool, **_help: Any) -> Quick:
        self._defaults[dest] = None
        self._is_command_needed = required
        self._command_name = dest
        return self

    def add_parser(self, word: str, **_help: Any) -> Quick:
        self._commands[word] = Quick()
        return self._commands[word]

    def set_defaults(self, **values: Any) -> None:
        self._defaults |= values

    def parse_known_args(self, words: list[str]) -> tuple[Any, list[str]]:
        found: dict[str, Any] = {}
        self._read(words, found)
        return types.SimpleNamespace(**found), []

    def _read(self, words: list[str], found: dict[str, Any]) -> None:
        found |= self._defaults
        groups: list[Quick] = []
        places, is_behind_place, rest = list(self._places), False, list(words)
        while rest:
            word = rest.pop(0)
            if word in self._options:
                is_behind_place = len(places) < len(self._places)
                name, how, group = self._options[word]
                if group is not self and group in groups:
                    raise Unclear()
                groups.append(group)
                _give(found, name, how, rest)
            elif word in self._commands:
                found[self._command_name] = word
                self._commands[word]._read(rest, found)
                return
            elif places and not is_behind_place:
                name, how = places.pop(0)
                found[name] = _value(word, how)
            else:
                raise Unclear()
        if self._is_command_needed or any(how.get("nargs") != "?" for _, how in places):
            raise Unclear()


def _give(found: dict[str, Any], name: str, how: dict[str, Any], rest: list[str]) -> None:
    action = how.get("action")
    if action == "store_true":
        found[name] = True
    elif action == "store_const":
        found[name] = how["const"]
    elif not rest:
        raise Unclear()
    elif action == "append":
        found[name] = [*(found[name] or []), _value(rest.pop(0), how)]
    else:
        found[name] = _value(rest.pop(0), how)


def _value(word: str, how: dict[str, Any]) -> Any:
    if word.startswith("-"):
        raise Unclear()
    try:
        value = how.get("type", str)(word)
    except (ValueError, UsageError):
        raise Unclear() from None
    if "choices" in how and value not in how["choices"]:
        raise Unclear()
    return value
