"""Where a watch keeps its files, and how to tell a dead watch from a living one.

A watch's folder is $XDG_RUNTIME_DIR/qivo-watch/NAME, or /tmp/qivo-watch-UID/NAME. The process
that guards the watch holds a lock on the folder itself, which the kernel releases when it ends: a
folder without the lock belongs to a dead watch. No folder is used that another user could change,
and no link is followed.
"""

from __future__ import annotations

import contextlib
import fcntl
import os
import stat
import time

from qivo_watch.errors import UsageError, WatchError
from qivo_watch.processes import kill_all_of, lock_holders

TYPE_CHECKING = False  # typing and pathlib take long to load.
if TYPE_CHECKING:
    import pathlib
    from typing import Any, Iterator

DEFAULT_NAME = "watch"
_LONGEST_NAME = 32
SOCKET_LIMIT = 100
"""The longest path of a socket in bytes; the kernel accepts 107."""

_LOOK_PATIENCE_S = 1.0
"""Seconds for commands that only check whether a watch runs to go."""

_NOTE = ".ended"
_WRITABLE_BY_OTHERS = 0o022
_OPEN_TO_OTHERS = 0o077


class Folder:
    """The folder of the watch NAME, whether it runs or not."""

    def __init__(self, name: str):
        if not (name.isascii() and name[:1].isalnum() and len(name) <= _LONGEST_NAME
                and name.replace("_", "0").replace("-", "0").isalnum()):
            raise UsageError(f'"{name}" is not a name for a watch (1 to 32 of A-Z a-z 0-9 _ -)')
        self.name = name
        self._base = _base()
        self._place = f"{self._base}/{name}"
        if len(os.fsencode(self.bus_path)) > SOCKET_LIMIT:
            raise WatchError(f"the path of the watch's folder is too long for a socket: "
                             f"{self._place}")

    @property
    def path(self) -> pathlib.Path:
        import pathlib  # pylint: disable=import-outside-toplevel,redefined-outer-name
        return pathlib.Path(self._place)

    @property
    def bus_path(self) -> str:
        return f"{self._place}/bus"

    @property
    def bus_address(self) -> str:
        import urllib.parse  # pylint: disable=import-outside-toplevel
        return "unix:path=" + urllib.parse.quote(self.bus_path).replace("~", "%7E")

    @property
    def home(self) -> pathlib.Path:
        """The home folder of the programs on the watch."""
        return self.path / "home"

    @property
    def services(self) -> pathlib.Path:
        """What tells the message bus which applications it can start."""
        return self.path / "services"

    @property
    def authority(self) -> pathlib.Path:
        """What lets a program onto the watch's screen."""
        return self.path / "Xauthority"

    @property
    def note(self) -> pathlib.Path:
        """Why the watch ended when nobody asked it to; reported once."""
        return self.path.with_name(f"{self.name}{_NOTE}")

    @property
    def display(self) -> str | None:
        """The display of a watch that is ready; None while it starts."""
        try:
            with open(f"{self._place}/display", encoding="ascii") as opened:
                return opened.read()
        except FileNotFoundError:
            return None

    def set_ready(self, display: str) -> None:
        """Shows every command that the watch can be used."""
        part = self.path / "display.part"
        part.write_text(display, encoding="ascii")
        part.rename(self.path / "display")

    def create(self) -> int:
        """Makes the folder, ends what a dead watch left there, returns the lock's descriptor.

        Fails when the watch runs.
        """
        deadline = time.monotonic() + _LOOK_PATIENCE_S
        while (lock := self._lock_made()) is None:
            # Another watch has just ended, or a command checks whether this one runs.
            if time.monotonic() > deadline:
                raise self.held_unseen()
        kill_all_of(self.path)
        for leftover in os.listdir(lock):
            _remove(leftover, lock)
        self.note.unlink(missing_ok=True)
        os.mkdir("home", 0o700, dir_fd=lock)
        return lock

    def is_held(self) -> bool:
        """Whether a living watch has the folder."""
        try:
            with self._opened() as lock:
                fcntl.flock(lock, fcntl.LOCK_SH | fcntl.LOCK_NB)
        except FileNotFoundError:
            return False
        except BlockingIOError:
            return True
        return False

    def holders(self) -> list[int]:
        """The processes that hold the folder: a watch's guard, or the command that starts it."""
        return lock_holders(self._place)

    def held_unseen(self) -> WatchError:
        return WatchError(f'watch "{self.name}" is held by a process that cannot be seen or '
                          'ended from here')

    def clear(self) -> None:
        """Ends the rest of a watch whose lock the caller holds, and removes the folder."""
        kill_all_of(self.path)
        with contextlib.suppress(FileNotFoundError), _opened(self._base, _OPEN_TO_OTHERS) as base:
            _remove(self.name, base)
        self._remove_empty_base()

    def clear_dead(self) -> bool:
        """Clears what a dead watch has left; returns whether it left anything."""
        try:
            with self._opened() as lock:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
                if not self._is_at_place(lock):
                    return False
                self.clear()
        except (FileNotFoundError, BlockingIOError):
            return False
        return True

    def take_note(self) -> str:
        """Returns why the watch ended, and forgets it; empty: it was asked to, or never ran."""
        try:
            with open(f"{self._place}{_NOTE}", encoding="utf-8") as opened:
                text = opened.read().strip()
        except FileNotFoundError:
            return ""
        self.note.unlink(missing_ok=True)
        self._remove_empty_base()
        return text

    def _lock_made(self) -> int | None:
        """The descriptor of the locked folder, made if missing; None: it was removed meanwhile."""
        with contextlib.suppress(FileExistsError):
            os.mkdir(self._base, mode=0o700)
        try:
            with _opened(self._base, _OPEN_TO_OTHERS) as base:
                with contextlib.suppress(FileExistsError):
                    os.mkdir(self.name, 0o700, dir_fd=base)
                lock = _open(self._place, _OPEN_TO_OTHERS)
        except FileNotFoundError:
            return None
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            if self._is_at_place(lock):
                return lock
        except BlockingIOError:
            # A command that only checks whether the folder is held locks it for a moment.
            if self.holders():
                os.close(lock)
                raise WatchError(f'watch "{self.name}" {self._state()}') from None
        except FileNotFoundError:
            pass
        os.close(lock)
        return None

    def _is_at_place(self, lock: int) -> bool:
        """Whether the locked folder is still the watch's."""
        return os.path.samestat(os.fstat(lock), os.lstat(self._place))

    def _state(self) -> str:
        if self.display is None:
            return "is already starting (qivo-watch stop ends it)"
        return "is already running (qivo-watch stop ends it, --name starts another)"

    @contextlib.contextmanager
    def _opened(self) -> Iterator[int]:
        with _opened(self._base, _OPEN_TO_OTHERS), _opened(self._place, _OPEN_TO_OTHERS) as folder:
            yield folder

    def _remove_empty_base(self) -> None:
        with contextlib.suppress(OSError):
            os.rmdir(self._base)


def running() -> list[str]:
    """The names of the running watches."""
    try:
        with _opened(_base(), _OPEN_TO_OTHERS) as base:
            names = sorted(os.listdir(base))
    except FileNotFoundError:
        return []
    return [name for name in names if _runs(name)]


def _runs(name: str) -> bool:
    """Whether NAME is a running watch; it may not be a watch at all."""
    with contextlib.suppress(UsageError, WatchError, OSError):
        return Folder(name).is_held()
    return False


def _base() -> str:
    """The folder of all watches of this user, which may not exist."""
    runtime = os.environ.get("XDG_RUNTIME_DIR")
    if runtime and not os.path.isabs(runtime):
        raise WatchError(f'XDG_RUNTIME_DIR is not an absolute path: "{runtime}"')
    if not runtime or not os.path.isdir(runtime):
        return f"/tmp/qivo-watch-{os.getuid()}"
    os.close(_open(runtime, _WRITABLE_BY_OTHERS))
    return f"{runtime.rstrip('/')}/qivo-watch"


def _open(path: str, unwanted: int) -> int:
    """Opens a folder of this user that gives others none of the UNWANTED rights.

    A folder inside such a one cannot be exchanged for another.
    """
    try:
        folder = os.open(path, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW | os.O_CLOEXEC)
    except NotADirectoryError:
        raise WatchError(f"{path} is not a folder, or is a link to one") from None
    found = os.fstat(folder)
    if found.st_uid != os.getuid() or stat.S_IMODE(found.st_mode) & unwanted:
        os.close(folder)
        raise WatchError(f"{path} is not a folder of this user alone "
                         f"(owner {found.st_uid}, mode {stat.S_IMODE(found.st_mode):o})")
    return folder


@contextlib.contextmanager
def _opened(path: str, unwanted: int) -> Iterator[int]:
    folder = _open(path, unwanted)
    try:
        yield folder
    finally:
        os.close(folder)


def _remove(name: str, parent: int) -> None:
    """Removes an entry of the open folder PARENT, and never what a link points to."""
    import shutil  # pylint: disable=import-outside-toplevel  # only needed for removing
    problem = ""

    def note(_function: Any, path: str, error: Any) -> None:
        nonlocal problem
        problem = f"{os.readlink(f'/proc/self/fd/{parent}')}/{path}: {error[1].strerror}"

    # A program that is ending may still write while its folder is removed.
    for _ in range(100):
        try:
            if stat.S_ISDIR(os.lstat(name, dir_fd=parent).st_mode):
                _make_writable(name, parent)
                shutil.rmtree(name, onerror=note, dir_fd=parent)
            else:
                os.unlink(name, dir_fd=parent)
        except FileNotFoundError:
            return
    raise WatchError(f"cannot remove what a watch has left: {problem}")


def _make_writable(name: str, parent: int) -> None:
    """Gives this user all rights on a folder and those below it, which may lack them."""
    with contextlib.suppress(OSError):
        os.chmod(name, 0o700, dir_fd=parent)
        for _, below, _, folder in os.fwalk(name, dir_fd=parent):
            for entry in below:
                with contextlib.suppress(OSError):
                    if stat.S_ISDIR(os.lstat(entry, dir_fd=folder).st_mode):
                        os.chmod(entry, 0o700, dir_fd=folder)
