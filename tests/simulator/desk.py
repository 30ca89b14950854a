"""A desk for one test: a place of its own for watches, and the command that drives them."""

import contextlib
import functools
import json
import os
import pathlib
import subprocess
import tempfile

from support.bus import wait_until
from support.fork_server import ForkServer
from support.shared_memory import are_left, segments_of

BUILD = pathlib.Path(os.environ["BUILD_DIR"])
QIVO_WATCH = BUILD / "simulator" / "qivo-watch"
GUIDE = "com.velmora.qivo-guide-app"
PATIENCE_S = 120
"""Seconds for any command; a sanitized build on a busy machine is slow."""

STARTS = {"start", "play"}
"""The commands that start a watch; its processes are recognised by their environment."""

STOP_ALL = """read -r _ && exit
for watch in "$XDG_RUNTIME_DIR"/qivo-watch/*/; do
    "$0" --name "$(basename "$watch")" stop
done
rm -rf "$XDG_RUNTIME_DIR"
"""
"""What a shell does for a test that is killed: its end of the pipe closes without a line."""


@functools.cache
def command_server():
    """Runs commands; to start an interpreter for each would take most of the tests' time."""
    modules = (QIVO_WATCH.parent / "qivo_watch" / "command").glob("[a-z]*.py")
    return ForkServer(str(QIVO_WATCH), [f"qivo_watch.command.{file.stem}" for file in modules])


class Desk:
    """Context manager: ends every watch that was started on it, and shows that nothing is left."""

    def __init__(self, display=None):
        self._folder = None
        self._guard = None
        self._display = display
        self.runtime = None
        self.environment = {}

    def __enter__(self):
        # A short path: sockets lie in it.
        self._folder = tempfile.TemporaryDirectory(prefix="desk-")
        self.runtime = pathlib.Path(self._folder.name)
        # A user's commands find their modules compiled.
        unwanted = ("DISPLAY", "XAUTHORITY", "DBUS_SESSION_BUS_ADDRESS", "PYTHONDONTWRITEBYTECODE")
        self.environment = {key: value for key, value in os.environ.items()
                            if key not in unwanted} | {"XDG_RUNTIME_DIR": str(self.runtime)}
        if self._display:
            self.environment["DISPLAY"] = self._display
        self._guard = subprocess.Popen(
            ["sh", "-c", STOP_ALL, QIVO_WATCH], env=self.environment, stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        return self

    def __exit__(self, *_):
        segments = segments_of(self.processes())
        # A watch that ends by itself takes the folder along.
        with contextlib.suppress(FileNotFoundError, NotADirectoryError):
            for name in os.listdir(self.runtime / "qivo-watch"):
                self.run("--name", name, "stop")
        self._guard.communicate(b"\n")
        left = self.processes()
        self._folder.cleanup()
        assert not left, left
        wait_until(lambda: not are_left(segments), "the end of the shared memory")

    def command(self, *words):
        return [str(QIVO_WATCH), *map(str, words)]

    def run(self, *words):
        """Carries out a command, whatever comes of it."""
        if words and STARTS.isdisjoint(words):
            return command_server().run(words, self.environment, PATIENCE_S)
        return subprocess.run(self.command(*words), env=self.environment, capture_output=True,
                              text=True, timeout=PATIENCE_S, stdin=subprocess.DEVNULL)

    def do(self, *words):
        """Carries out a command that must succeed in silence; returns what it printed."""
        result = self.run(*words)
        assert (result.returncode, result.stderr) == (0, ""), (words, result)
        return result.stdout

    def refused(self, *words, status=1):
        """Carries out a command that must fail with one line; returns the line."""
        result = self.run(*words)
        assert (result.returncode, result.stdout) == (status, ""), (words, result)
        assert result.stderr.count("\n") == 1 and result.stderr.startswith("qivo-watch: "), result
        return result.stderr.strip()

    def status(self, *words):
        return json.loads(self.do(*words, "status", "--json"))

    def processes(self):
        """Ids and command lines of all that belong to this desk's watches."""
        mark = f"QIVO_WATCH_FOLDER={self.runtime}".encode()
        found = {}
        for folder in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if mark in (folder / "environ").read_bytes():
                    found[int(folder.name)] = (folder / "cmdline").read_bytes()
            except OSError:
                continue
        return found
