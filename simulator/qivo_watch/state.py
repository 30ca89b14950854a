"""Where a watch keeps what belongs to it, and how a dead one is told from a living one.

A watch's folder is $XDG_RUNTIME_DIR/qivo-watch/NAME, or /tmp/qivo-watch-UID/NAME. The process
that guards the watch holds a lock on the folder itself, which the kernel takes away with it:
a folder without the lock is a dead watch's.
"""

import contextlib
import fcntl
import os
import pathlib
import re
import shutil
import stat

from qivo_watch.errors import UsageError, WatchError
from qivo_watch.processes import kill_all_of

DEFAULT_NAME = "watch"
SOCKET_LIMIT = 100
"""Bytes that a socket's path may have; the kernel takes 107."""


class Folder:
    """The folder of the watch NAME, whether it runs or not."""

    def __init__(self, name: str):
        if not re.fullmatch(r"[A-Za-z0-9][A-Za-z0-9_-]{0,31}", name):
            raise UsageError(f'"{name}" is no name for a watch (1 to 32 of A-Z a-z 0-9 _ -)')
        self.name = name
        self.path = _base() / name
        if len(os.fsencode(self.bus_path)) > SOCKET_LIMIT:
            raise WatchError(f"the path of the watch's folder is too long for a socket: "
                             f"{self.path}")

    @property
    def bus_path(self) -> pathlib.Path:
        return self.path / "bus"

    @property
    def bus_address(self) -> str:
        return f"unix:path={self.bus_path}"

    @property
    def home(self) -> pathlib.Path:
        """The home folder of the programs on the watch."""
        return self.path / "home"

    @property
    def authority(self) -> pathlib.Path:
        """What lets a program onto the watch's screen."""
        return self.path / "Xauthority"

    @property
    def note(self) -> pathlib.Path:
        """Why the watch ended when nobody asked it to; told once."""
        return self.path.with_name(f"{self.name}.ended")

    def create(self) -> int:
        """Makes the folder, ends what a dead watch left there, returns the lock's descriptor.

        Fails when the watch runs.
        """
        while True:
            _base().mkdir(mode=0o700, exist_ok=True)
            try:
                self.path.mkdir(mode=0o700, exist_ok=True)
                lock = os.open(self.path, os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
            except FileNotFoundError:
                continue  # Another watch has just ended, and has removed the empty folder.
            try:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except BlockingIOError:
                os.close(lock)
                raise WatchError(f'the watch "{self.name}" runs already '
                                 f"(qivo-watch stop ends it, --name starts another)") from None
            if self._is(lock):
                break
            os.close(lock)
        kill_all_of(self.path)
        for leftover in self.path.iterdir():
            _remove(leftover)
        self.note.unlink(missing_ok=True)
        self.home.mkdir(mode=0o700)
        return lock

    def is_held(self) -> bool:
        """Whether a living watch has the folder."""
        try:
            lock = os.open(self.path, os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
        except FileNotFoundError:
            return False
        try:
            fcntl.flock(lock, fcntl.LOCK_SH | fcntl.LOCK_NB)
        except BlockingIOError:
            return True
        finally:
            os.close(lock)
        return False

    def clear(self) -> None:
        """Ends what is left of a dead watch, and removes the folder."""
        kill_all_of(self.path)
        _remove(self.path)
        with contextlib.suppress(OSError):
            self.path.parent.rmdir()

    def take_note(self) -> str:
        """Returns why the watch ended, and forgets it; empty: it was asked to, or never ran."""
        try:
            text = self.note.read_text(encoding="utf-8").strip()
        except FileNotFoundError:
            return ""
        self.note.unlink(missing_ok=True)
        with contextlib.suppress(OSError):
            self.path.parent.rmdir()
        return text

    def _is(self, descriptor: int) -> bool:
        """Whether the descriptor is the folder's, which another one may have removed."""
        try:
            return os.path.samestat(os.fstat(descriptor), os.stat(self.path))
        except FileNotFoundError:
            return False


def _base() -> pathlib.Path:
    runtime = os.environ.get("XDG_RUNTIME_DIR")
    if runtime and os.path.isdir(runtime):
        return pathlib.Path(runtime, "qivo-watch")
    base = pathlib.Path(f"/tmp/qivo-watch-{os.getuid()}")
    try:
        found = base.lstat()
    except FileNotFoundError:
        return base
    if not stat.S_ISDIR(found.st_mode) or found.st_uid != os.getuid() or found.st_mode & 0o077:
        raise WatchError(f"{base} is not a folder of this user alone")
    return base


def _remove(path: pathlib.Path) -> None:
    # A program that is being ended may still write beside the hand that removes.
    for _ in range(100):
        if path.is_dir() and not path.is_symlink():
            shutil.rmtree(path, ignore_errors=True)
        else:
            path.unlink(missing_ok=True)
        if not path.exists():
            return
    raise WatchError(f"cannot remove {path}")
