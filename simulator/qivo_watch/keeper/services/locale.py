"""locale1 with the watch's language and region."""

import re

from gi.repository import Gio

from qivo_watch.errors import WatchError
from qivo_watch.keeper.objects import BusObject, own_name

_LOCALE = """<node><interface name="org.freedesktop.locale1">
  <method name="SetLocale">
    <arg name="locale" type="as" direction="in"/>
    <arg name="interactive" type="b" direction="in"/>
  </method>
  <property name="Locale" type="as" access="read"/>
</interface></node>"""


class Locale:
    """locale1: the language, and the region if it differs from the language's."""

    def __init__(self, connection: Gio.DBusConnection, language: str):
        self.language = full_locale(language)
        self._region = ""
        self._object = BusObject(connection, "/org/freedesktop/locale1", _LOCALE,
                                 {"Locale": self._entries()})
        self._object.serve()
        own_name(connection, "org.freedesktop.locale1")

    @property
    def has_region(self) -> bool:
        return self._region != ""

    @property
    def region(self) -> str:
        return self._region or self.language

    def set_language(self, name: str) -> None:
        self.language = full_locale(name)
        self._object.set(Locale=self._entries())

    def set_region(self, name: str) -> None:
        """"auto": the language's again."""
        self._region = "" if name == "auto" else full_locale(name, "region")
        self._object.set(Locale=self._entries())

    def _entries(self) -> list[str]:
        region = [f"LC_TIME={self._region}"] if self._region else []
        return [f"LANG={self.language}", *region]


def full_locale(name: str, kind: str = "language") -> str:
    """"ar_EG" and "ar" as "ar_EG.UTF-8" and "ar.UTF-8"."""
    if not re.fullmatch(r"[A-Za-z]{2,3}(_[A-Z]{2})?(\.[A-Za-z0-9-]+)?(@[A-Za-z0-9]+)?", name):
        raise WatchError(f'"{name}" is not a {kind} (such as ko_KR or ar_EG.UTF-8)')
    stem, _, modifier = name.partition("@")
    full = stem if "." in stem else f"{stem}.UTF-8"
    return f"{full}@{modifier}" if modifier else full
