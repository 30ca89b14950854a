"""Desktop entries: what an application is called, looks like and runs."""

import glob
import os
import pathlib
import re
import shutil
import stat
import unicodedata
from typing import Iterator

from gi.repository import GLib

from qivo_watch.errors import WatchError
from qivo_watch.interface import is_app_id
from qivo_watch.keeper.apps.app import Program, id_of
from qivo_watch.keeper.environment import program as own_program

MOST_BYTES = 1 << 20
MOST_ICON_BYTES = 4 << 20
LONGEST_NAME = 100

_GROUP = "Desktop Entry"
_FILE_CODES = ("%f", "%F", "%u", "%U", "%i", "%d", "%D", "%n", "%N", "%v", "%m")
"""What a launcher puts files and windows in for; a watch has none to give."""

_SCALABLE_PIXELS = 1 << 16
_SYSTEM_SHARES = (pathlib.Path("/usr/local/share"), pathlib.Path("/usr/share"))


class Entry:
    """The application of one file NAME.desktop, where NAME is its id."""

    def __init__(self, file: pathlib.Path):
        self.file = file
        self.app_id = file.name.removesuffix(".desktop")
        try:
            file.stat()
        except OSError as error:
            raise self._refusal(error.strerror) from None
        if file.suffix != ".desktop" or not is_app_id(self.app_id):
            raise self._refusal("its name is not an id such as org.example.hello with .desktop")
        self._keys = self._read()
        self.program = self._find_program()

    def name(self, language: str) -> str:
        """The name in a language, as one line that a screen and a terminal can show."""
        text = _line_of(self._get("Name", language)) or _line_of(self._get("Name"))
        return text if len(text) <= LONGEST_NAME else f"{text[:LONGEST_NAME - 1]}…"

    def icon(self, language: str) -> str:
        """The icon's file in a language; empty when there is none."""
        name = self._get("Icon", language)
        found = next(filter(_is_picture, self._icons(name)), None) if name else None
        return str(found) if found else ""

    @property
    def is_hidden(self) -> bool:
        """Whether no menu is to show it."""
        return self._get("NoDisplay") == "true"

    def _read(self) -> GLib.KeyFile:
        keys = GLib.KeyFile()
        try:
            content = read_text(self.file)
            keys.load_from_data(content, len(content.encode()), GLib.KeyFileFlags.KEEP_TRANSLATIONS)
        except OSError as error:
            raise self._refusal(error.strerror) from None
        except UnicodeDecodeError:
            raise self._refusal("it is not UTF-8") from None
        except (GLib.Error, ValueError):
            raise self._refusal("it is not a desktop entry") from None
        self._keys = keys
        if self._get("Type") != "Application":
            raise self._refusal("it is not of an application (Type=Application)")
        if self._get("Hidden") == "true":
            raise self._refusal("it says that the application is not there (Hidden=true)")
        if not self.name(""):
            raise self._refusal("it has no Name")
        return keys

    def _get(self, key: str, language: str = "") -> str:
        try:
            return (self._keys.get_locale_string(_GROUP, key, language or "C")
                    if language else self._keys.get_string(_GROUP, key)).strip()
        except GLib.Error:
            return ""

    def _find_program(self) -> Program:
        words = self._command()
        try:
            path = next(filter(_is_program, self._programs(words[0])), None)
            known = id_of(path) if path else None
        except OSError as error:
            raise self._refusal(f'its program "{words[0]}": {error.strerror}') from None
        if path is None:
            raise self._refusal(f'its program "{words[0]}" is not there')
        if known not in (None, self.app_id):
            raise self._refusal(f"its program is {known}")
        return Program(self.app_id, path, known is not None, tuple(words[1:]))

    def _command(self) -> list[str]:
        line = self._get("Exec")
        if not line:
            raise self._refusal("it has no Exec")
        try:
            words = GLib.shell_parse_argv(line)[1]
        except GLib.Error as error:
            raise self._refusal(f"Exec is not a command: {error.message}") from None
        words = [self._expand(word) for word in words if word not in _FILE_CODES]
        if not words or not words[0]:
            raise self._refusal("Exec names no program")
        return words

    def _expand(self, word: str) -> str:
        values = {"%%": "%", "%c": self.name(""), "%k": str(self.file)}

        def value(code: re.Match) -> str:
            if code[0] in values:
                return values[code[0]]
            if code[0] in _FILE_CODES:
                return ""
            raise self._refusal(f'Exec has the unknown code "{code[0]}"')
        return re.sub(r"%.?", value, word)

    @property
    def _prefix(self) -> pathlib.Path | None:
        """Of an installation's entry, where that is installed."""
        folder = self.file.parent
        return folder.parents[1] if folder.parts[-2:] == ("share", "applications") else None

    def _programs(self, word: str) -> Iterator[pathlib.Path]:
        """Where the program may be."""
        yield self.file.parent / word
        if "/" in word:
            return
        if self._prefix:
            yield self._prefix / "bin" / word
        try:
            yield own_program(word)
        except WatchError:
            pass
        if path := shutil.which(word):
            yield pathlib.Path(path)

    def _icons(self, name: str) -> Iterator[pathlib.Path]:
        """Where the icon may be, the largest first."""
        yield self.file.parent / name
        if "/" in name:
            return
        for ending in (".svg", ".png"):
            yield self.file.parent / f"{name}{ending}"
        for share in ([self._prefix / "share"] if self._prefix else []) + list(_SYSTEM_SHARES):
            found = [file for ending in ("svg", "png") for file in
                     share.glob(f"icons/hicolor/*/apps/{glob.escape(name)}.{ending}")]
            yield from sorted(found, key=_pixels_of, reverse=True)
            for ending in (".svg", ".png"):
                yield share / "pixmaps" / f"{name}{ending}"

    def _refusal(self, reason: str) -> WatchError:
        return WatchError(f'"{self.file}": {reason}')


def entries_at(place: pathlib.Path) -> list[Entry]:
    """The entries of an installation's or a build's folder, or the one of a file."""
    try:
        if not place.is_dir():
            return [Entry(place)]
        files = sorted(file for folder in (place, place / "share" / "applications")
                       if folder.is_dir() for file in folder.iterdir()
                       if file.suffix == ".desktop")
    except OSError as error:
        raise WatchError(f'"{place}": {error.strerror}') from None
    if not files:
        raise WatchError(f'"{place}" has no desktop entry, neither ID.desktop nor '
                         "share/applications/ID.desktop")
    found: dict[str, pathlib.Path] = {}
    for file in files:
        if file.name in found:
            raise WatchError(f'"{place}" has {file.name} twice: also "{found[file.name]}"')
        found[file.name] = file
    return [Entry(file) for file in files]


def read_text(file: pathlib.Path) -> str:
    """What a file of anybody's holds. Fails with an OSError, or a ValueError if it is no text."""
    # A pipe must not be waited for.
    descriptor = os.open(file, os.O_RDONLY | os.O_NONBLOCK)
    with open(descriptor, "rb") as opened:
        if not stat.S_ISREG(os.fstat(descriptor).st_mode):
            raise OSError(0, "it is not a file", str(file))
        content = opened.read(MOST_BYTES + 1)
    if len(content) > MOST_BYTES:
        raise OSError(0, f"it is longer than {MOST_BYTES} bytes", str(file))
    if b"\0" in content:
        raise ValueError
    return content.decode()


def _line_of(text: str) -> str:
    return "".join(letter for letter in " ".join(text.split())
                   if unicodedata.category(letter) != "Cc")


def _is_program(path: pathlib.Path) -> bool:
    return path.is_file() and os.access(path, os.X_OK)


def _is_picture(path: pathlib.Path) -> bool:
    try:
        return path.is_file() and 0 < path.stat().st_size <= MOST_ICON_BYTES
    except (OSError, ValueError):
        return False


def _pixels_of(icon: pathlib.Path) -> int:
    folder = icon.parents[1].name
    if folder == "scalable":
        return _SCALABLE_PIXELS
    side = re.match(r"\d+", folder)
    return int(side[0]) if side else 0
