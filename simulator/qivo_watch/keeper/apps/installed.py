"""The applications that are on the watch: the guide, and those that were installed."""

import json
import os
import pathlib
from typing import Any

from qivo_watch.errors import WatchError
from qivo_watch.interface import GUIDE
from qivo_watch.keeper.apps.app import Program
from qivo_watch.keeper.apps.entries import Entry, entries_at, read_text
from qivo_watch.keeper.environment import HERE
from qivo_watch.keeper.log import Log

MOST_APPLICATIONS = 100

_GUIDE_PLACES = [HERE.parent / "res" / "desktop", HERE.parent / "applications"]


class Installed:
    """In the order in which they were installed. KEEP is the folder that remembers them, if any."""

    def __init__(self, keep: str | None, log: Log):
        self._file = pathlib.Path(keep, "applications.json") if keep else None
        self._entries: dict[str, Entry] = {}
        for place in _GUIDE_PLACES:
            if (place / f"{GUIDE}.desktop").is_file():
                self._entries[GUIDE] = Entry(place / f"{GUIDE}.desktop")
                break
        if self._file:
            self._load(log)

    @property
    def ids(self) -> list[str]:
        return list(self._entries)

    @property
    def servants(self) -> list[str]:
        """The ids of those that the message bus can start."""
        return [app_id for app_id, entry in self._entries.items() if entry.program.has_id]

    def install(self, place: pathlib.Path) -> None:
        """One that is there already is replaced."""
        found = {entry.app_id: entry for entry in entries_at(place)}
        if GUIDE in found:
            raise WatchError(f"{GUIDE} is the watch's own")
        entries = self._entries | found
        if len(entries) > MOST_APPLICATIONS:
            raise WatchError(f"a watch holds {MOST_APPLICATIONS} applications, and no more")
        self._take(entries)

    def uninstall(self, app_id: str) -> None:
        self._take({known: entry for known, entry in self._entries.items() if known != app_id})

    def need(self, app_id: str) -> None:
        """Refuses what cannot be uninstalled."""
        if app_id == GUIDE:
            raise WatchError(f"{GUIDE} is the watch's own")
        if app_id not in self._entries:
            raise WatchError(f"application {app_id} is not installed")

    def program(self, app_id: str) -> Program | None:
        """As it is now, if it is installed: it may have been built anew."""
        return Entry(self._entries[app_id].file).program if app_id in self._entries else None

    def shown(self, language: str) -> list[tuple[str, str, str]]:
        """Id, name and icon of those on the home face."""
        return [(app_id, entry.name(language), entry.icon(language))
                for app_id, entry in self._entries.items() if not entry.is_hidden]

    def described(self, language: str) -> list[dict[str, Any]]:
        """What `apps --json` shows; docs/watch.md describes it."""
        return [{"id": app_id, "name": entry.name(language), "icon": entry.icon(language) or None,
                 "program": str(entry.program.path), "entry": str(entry.file)}
                for app_id, entry in self._entries.items()]

    def _take(self, entries: dict[str, Entry]) -> None:
        self._save(entries)
        self._entries = entries

    def _save(self, entries: dict[str, Entry]) -> None:
        if self._file is None:
            return
        files = [str(entry.file) for app_id, entry in entries.items() if app_id != GUIDE]
        part = self._file.with_suffix(f".{os.getpid()}")
        try:
            part.write_text(json.dumps(files, indent=2) + "\n", encoding="utf-8")
            part.rename(self._file)
        except OSError as error:
            raise WatchError(f'"{self._file}": {error.strerror}') from None

    def _load(self, log: Log) -> None:
        """An application that has gone is left out, with a line in the log."""
        for file in self._kept():
            try:
                entry = Entry(pathlib.Path(file))
            except WatchError as error:
                log.say("warn", f"an application is left out: {error}")
            else:
                self._entries.setdefault(entry.app_id, entry)

    def _kept(self) -> list[str]:
        assert self._file
        try:
            self._file.parent.mkdir(mode=0o700, exist_ok=True)
            kept = json.loads(read_text(self._file))
        except FileNotFoundError:
            if not self._file.parent.is_dir():
                raise
            return []
        except (ValueError, RecursionError):
            kept = None
        if not (isinstance(kept, list) and all(isinstance(file, str) for file in kept)):
            raise WatchError(f'"{self._file}" is not a list of desktop entries')
        return kept[:MOST_APPLICATIONS]
