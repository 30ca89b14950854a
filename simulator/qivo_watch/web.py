"""The watch in a browser of this machine: a second screen with the body, served by noVNC."""

import math
import os
import pathlib
import secrets
import socket
import string
from typing import Any

from qivo_watch.errors import WatchError
from qivo_watch.parts import Parts
from qivo_watch.state import Folder
from qivo_watch.tasks import Work

NOVNC = pathlib.Path("/usr/share/novnc")
LOOPBACK = "127.0.0.1"
PASSWORD_LENGTH = 8
"""As much as the VNC protocol looks at."""

MARGIN = 680 / 360
"""The outer screen's side, in sides of the watch's screen: that of the body's window."""

FIRST_VNC_PORT = 5900
"""Where the VNC server begins to look for a free port."""


class Web:
    """The three processes behind the page: screen, VNC server, bridge to the browser."""

    def __init__(self, parts: Parts, folder: Folder, options: dict[str, Any]):
        self._parts = parts
        self._folder = folder
        self._side = math.ceil(options["size"] * options["zoom"] * MARGIN)
        self._password = options["password"] or _fresh_password()
        self._listener = _listen(options["port"] or 0)
        self._display = ""

    def start_display(self) -> Work:
        """Returns the name of the display that the browser shows."""
        if not (NOVNC / "vnc.html").is_file():
            raise WatchError("noVNC is not installed (package novnc)")
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
        vnc = self._parts.start_telling("vnc", [
            "x11vnc", "-display", self._display, "-autoport", str(FIRST_VNC_PORT), "-localhost",
            "-passwdfile", str(secret), "-forever", "-shared", "-quiet", "-nodpms", "-noxkb",
            "-cursor", "arrow", "-wait", "10", "-defer", "10",
            # Memory that it shares with the server would outlive it.
            "-noshm"])
        line = yield from self._parts.wait_line("vnc", vnc)
        # It inherits the socket, which listens before the bridge can.
        self._parts.start("bridge", [
            "websockify", "--inetd", "--web", str(NOVNC),
            f"{LOOPBACK}:{line.removeprefix('PORT=')}"], stdin=self._listener)
        port = self._listener.getsockname()[1]
        self._listener.close()
        return (f"http://{LOOPBACK}:{port}/vnc.html?autoconnect=true&resize=scale"
                f"#password={self._password}")


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
