"""The environment of the programs on the watch, and where the programs are."""

import os
import pathlib
import secrets
import socket
import struct

from qivo_watch import places
from qivo_watch.errors import WatchError
from qivo_watch.processes import STATE_VARIABLE
from qivo_watch.state import Folder

# Without DLOG_LEVEL: the watch keeps all lines of an application and filters on demand.
_KEPT = ["PATH", "TZ", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"]
_FAMILY_LOCAL = 256
_COOKIE = "MIT-MAGIC-COOKIE-1"

HERE = pathlib.Path(__file__).resolve().parents[2]
"""The folder of the command in a build tree, DATADIR/qivo-watch when installed."""

_PLACES = [HERE / "body", HERE / "home", HERE.parent / "qivo-ui",
           *((HERE / os.path.relpath(place, places.DATA)).resolve() for place in places.PROGRAMS)]


def program(name: str) -> pathlib.Path:
    """A program that was built or installed with this one."""
    for place in _PLACES:
        if (place / name).is_file():
            return place / name
    raise WatchError(f"{name} is missing: it is in none of {', '.join(map(str, _PLACES))}")


def bare_environment(folder: Folder) -> dict[str, str]:
    """A user with an empty home and no desktop, on the watch's bus."""
    kept = {key: value for key, value in os.environ.items() if key in _KEPT}
    return kept | {
        STATE_VARIABLE: str(folder.path),
        "HOME": str(folder.home),
        "XDG_RUNTIME_DIR": str(folder.home),
        "XAUTHORITY": str(folder.authority),
        "DBUS_SESSION_BUS_ADDRESS": folder.bus_address,
        "DBUS_SYSTEM_BUS_ADDRESS": folder.bus_address,
        "LANG": "C.UTF-8",
    }


class Admission:
    """Controls who may open the watch's displays: this user's programs that know the cookie."""

    def __init__(self, folder: Folder):
        self.server_file = folder.path / "server-authority"
        self._file = folder.authority
        self._cookie = secrets.token_bytes(16)
        self._usual = os.environ.get("XAUTHORITY") or os.path.expanduser("~/.Xauthority")
        self._numbers: list[str] = []
        _write(self.server_file, _entry("", self._cookie))

    def admit(self, number: str) -> None:
        """Opens a display to the watch's programs, besides those that the user may open."""
        self._numbers.append(number)
        entries = b"".join(_entry(known, self._cookie) for known in self._numbers)
        try:
            entries += pathlib.Path(self._usual).read_bytes()
        except OSError:
            pass  # Without a file, the user's display needs no cookie.
        _write(self._file, entries)


def _entry(number: str, cookie: bytes) -> bytes:
    fields = [socket.gethostname().encode(), number.encode(), _COOKIE.encode(), cookie]
    return struct.pack(">H", _FAMILY_LOCAL) + b"".join(
        struct.pack(">H", len(field)) + field for field in fields)


def _write(path: pathlib.Path, content: bytes) -> None:
    with open(os.open(path, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600), "wb") as file:
        file.write(content)
