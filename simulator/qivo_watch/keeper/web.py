"""The watch in a browser on this machine: a second screen with the body, served by noVNC.

The only port is the bridge's, on the loopback interface; the VNC server listens in the watch's
folder. The bridge refuses pages of another origin, and limits its connections: whoever opens many
can lock others out, but cannot end the watch.
"""

import os
import pathlib
import secrets
import shutil
import socket
import string
from typing import Any

from qivo_watch.errors import WatchError
from qivo_watch.interface import PASSWORD_LENGTH
from qivo_watch.keeper.parts import LABELS, PATIENCE_S, Parts
from qivo_watch.keeper.tasks import Pause, Work
from qivo_watch.state import Folder

NOVNC = pathlib.Path("/usr/share/novnc")
LOOPBACK = "127.0.0.1"
BRIDGE_FILES = 128
"""Descriptors for the bridge, which needs two for each connection. They are far fewer than the
VNC server's 1024: it dies when it has none left."""

LOOK_MS = 20
"""Milliseconds between two checks whether the VNC server listens."""

_ACCEPTS = 1 << 16
"""The flag of a listening socket in /proc/net/unix."""


class Web:
    """The three processes behind the page: screen, VNC server, bridge to the browser."""

    def __init__(self, parts: Parts, folder: Folder, options: dict[str, Any]):
        self._parts = parts
        self._folder = folder
        self._side = options["side"]
        self._password = options["password"] or _fresh_password()
        self._socket = folder.path / "vnc"
        self._listener = _listen(options["port"] or 0)
        self._display = ""

    def start_display(self) -> Work:
        """Returns the name of the display that the browser shows."""
        if not (NOVNC / "vnc.html").is_file():
            raise WatchError("noVNC is not installed (package novnc)")
        if not shutil.which("websockify"):
            raise WatchError("websockify is not installed")
        server = self._parts.start_server("outer", (self._side, self._side))
        self._display = yield from self._parts.wait_display("outer", server)
        manager = self._parts.start_manager("outer-manager", self._display)
        yield from self._parts.wait_line("outer-manager", manager)
        return self._display

    def serve(self) -> Work:
        """Returns the page's address, which holds the password."""
        secret = self._folder.path / "vnc-password"
        with open(os.open(secret, os.O_WRONLY | os.O_CREAT, 0o600), "w", encoding="ascii") as file:
            file.write(f"{self._password}\n")
        self._parts.start("vnc", [
            "x11vnc", "-display", self._display, "-unixsock", str(self._socket),
            "-rfbport", "0", "-rfbportv6", "0",
            "-passwdfile", str(secret), "-forever", "-shared", "-quiet", "-nodpms", "-noxkb",
            "-cursor", "arrow", "-wait", "10", "-defer", "10",
            # Memory that it shares with the server could outlive it.
            "-noshm"])
        yield from self._wait_vnc()
        port = self._listener.getsockname()[1]
        origins = [f"http://{host}:{port}" for host in (LOOPBACK, "localhost")]
        # It inherits the socket, which listens before the bridge is ready.
        self._parts.start("bridge", [
            "prlimit", f"--nofile={BRIDGE_FILES}", "websockify", "--inetd", "--web", str(NOVNC),
            "--auth-plugin", "ExpectOrigin", "--auth-source", " ".join(origins),
            "--unix-target", str(self._socket)], stdin=self._listener)
        self._listener.close()
        return (f"{origins[0]}/vnc.html?autoconnect=true&resize=scale"
                f"#password={self._password}")

    def _wait_vnc(self) -> Work:
        """Waits until the server listens, which it does not report."""
        for _ in range(round(PATIENCE_S * 1000 / LOOK_MS)):
            if _is_listening(self._socket):
                return
            yield Pause(LOOK_MS)
        raise WatchError(f"{LABELS['vnc']} did not start")


def _is_listening(path: pathlib.Path) -> bool:
    """Whether a server listens there; connecting would start a session."""
    for line in pathlib.Path("/proc/net/unix").read_bytes().splitlines()[1:]:
        fields = line.split(maxsplit=7)
        if fields[7:] == [os.fsencode(path)] and int(fields[3], 16) & _ACCEPTS:
            return True
    return False


def _fresh_password() -> str:
    letters = string.ascii_letters + string.digits
    return "".join(secrets.choice(letters) for _ in range(PASSWORD_LENGTH))


def _listen(port: int) -> socket.socket:
    listener = socket.socket()
    listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    try:
        listener.bind((LOOPBACK, port))
    except OSError as error:
        raise WatchError(f"cannot listen at port {port}: {error.strerror}") from None
    listener.listen()
    return listener
