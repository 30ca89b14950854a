"""The programs of a watch: started, waited for until they are ready, and supervised."""

import os
import shutil
import subprocess
import tempfile
from typing import IO, Any, Callable

from gi.repository import GLib

from qivo_watch.errors import WatchError
from qivo_watch.keeper.environment import HERE, Admission
from qivo_watch.keeper.objects import daemon_command
from qivo_watch.keeper.tasks import Until, Work
from qivo_watch.processes import end_of, kill_group
from qivo_watch.spawn import spawn
from qivo_watch.state import Folder

PATIENCE_S = 20.0
"""Seconds for each part to be ready; normally 0.2 are enough."""

LABELS = {"server": "the X server", "bus": "the message bus", "manager": "the window manager",
          "home": "the home face", "body": "the body", "outer": "the outer X server",
          "outer-manager": "the outer window manager",
          "vnc": "the VNC server", "bridge": "the web bridge"}


class Line:
    """A pipe on which a program writes a line when it is ready. INTO is the program's end."""

    def __init__(self, on_news: Callable[[], None]):
        self._out, self.into = os.pipe()
        self._on_news = on_news
        self.text = ""
        self.is_over = False
        GLib.unix_fd_add_full(GLib.PRIORITY_DEFAULT, self._out,
                              GLib.IOCondition.IN | GLib.IOCondition.HUP, self._read)

    @property
    def is_whole(self) -> bool:
        return "\n" in self.text

    def _read(self, *_: Any) -> bool:
        piece = os.read(self._out, 4096)
        self.text += piece.decode("utf-8", "replace")
        self.is_over = not piece or self.is_whole
        if self.is_over:
            os.close(self._out)
        self._on_news()
        return not self.is_over


class Parts:
    """ON_END(name, what happened) is called when one ends; none should."""

    def __init__(self, folder: Folder, environment: dict[str, str], on_news: Callable[[], None],
                 on_end: Callable[[str, str], None]):
        self._folder = folder
        self._environment = environment
        self._on_news = on_news
        self._on_end = on_end
        self._admission = Admission(folder)
        self._parts: dict[str, subprocess.Popen] = {}
        self._complaints: dict[str, IO[bytes]] = {}

    @property
    def processes(self) -> dict[str, int]:
        return {name: part.pid for name, part in self._parts.items()}

    def start(self, name: str, command: list[str], **options: Any) -> None:
        if not shutil.which(command[0]):
            raise WatchError(f"{command[0]} is not installed")
        settings = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **options}
        environment = settings.pop("environment", self._environment)
        self._parts[name] = spawn(command, environment, **settings)
        GLib.child_watch_add(GLib.PRIORITY_DEFAULT, self._parts[name].pid, self._on_part_end, name)

    def start_own(self, name: str, command: list[str], environment: dict[str, str]) -> None:
        """A program that writes one line of complaint before it fails."""
        self._complaints[name] = tempfile.TemporaryFile()
        self.start(name, command, environment=environment, stderr=self._complaints[name])

    def start_server(self, name: str, size: tuple[int, int]) -> Line:
        """An X server; the line is its display's number."""
        return self._start_telling(name, lambda line: {"command": [
            "Xvfb", "-displayfd", str(line.into), "-screen", "0", f"{size[0]}x{size[1]}x24",
            "-nolisten", "tcp", "-noreset", "-auth", str(self._admission.server_file)],
            "pass_fds": [line.into]})

    def start_bus(self) -> Line:
        return self._start_telling("bus", lambda line: {"command": daemon_command(
            self._folder, line.into), "pass_fds": [line.into]})

    def start_manager(self, name: str, display: str) -> Line:
        """The window manager of a display; each window fills the screen."""
        # openbox runs its start-up command when it manages, with its own standard output.
        return self.start_telling(name, [
            "openbox", "--sm-disable", "--config-file", str(HERE / "openbox.xml"),
            "--startup", "echo managing"],
            environment=self._environment | {"DISPLAY": display})

    def start_telling(self, name: str, command: list[str], **options: Any) -> Line:
        """A program that writes to its standard output when it is ready."""
        return self._start_telling(
            name, lambda line: {"command": command, "stdout": line.into, **options})

    def _start_telling(self, name: str, describe: Callable[[Line], dict[str, Any]]) -> Line:
        line = Line(self._on_news)
        try:
            self.start(name, **describe(line))
        finally:
            os.close(line.into)
        return line

    def wait_line(self, name: str, line: Line) -> Work:
        yield Until(lambda: line.is_over, PATIENCE_S, f"{LABELS[name]} did not start")
        if not line.is_whole:
            raise WatchError(f"{LABELS[name]} did not start")
        return line.text.splitlines()[0].strip()

    def wait_display(self, name: str, line: Line) -> Work:
        """Waits for a server, and lets the watch's programs onto its display; returns its name."""
        number = yield from self.wait_line(name, line)
        self._admission.admit(number)
        return f":{number}"

    def end(self) -> None:
        """Ends all, the last first."""
        for part in reversed(list(self._parts.values())):
            kill_group(part.pid)

    def _on_part_end(self, _pid: int, wait_status: int, name: str) -> None:
        status = os.waitstatus_to_exitcode(wait_status)
        self._parts.pop(name).returncode = status
        self._on_end(name, f"{LABELS[name]} {end_of(status)}{self._reason(name)}")

    def _reason(self, name: str) -> str:
        if name not in self._complaints:
            return ""
        with self._complaints.pop(name) as complaints:
            complaints.seek(0)
            lines = complaints.read().decode("utf-8", "replace").splitlines()
        return f" ({lines[-1]})" if lines else ""
