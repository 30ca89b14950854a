"""The bridge from a browser to the VNC server: websockify, with a limit to its connections.

Run as a program: bridge.py FOLDER-OF-THE-PAGE VNC-SOCKET ORIGIN..., with the socket that listens as
its standard input. Without a limit of its own websockify would try again and again, without a
pause, to accept a connection for which it has no descriptor left.
"""

import multiprocessing
import multiprocessing.connection
import sys

from websockify.auth_plugins import ExpectOrigin
from websockify.websocketproxy import WebSocketProxy

MOST_CONNECTIONS = 50
"""Far fewer than the 1024 descriptors of the VNC server, which dies when they are used up."""


class Bridge(WebSocketProxy):
    """Each connection is served by a process of its own."""

    def poll(self) -> None:
        """Is called before each connection: lets it wait while too many are served."""
        while len(serving := multiprocessing.active_children()) >= MOST_CONNECTIONS:
            multiprocessing.connection.wait([process.sentinel for process in serving])


if __name__ == "__main__":
    page, vnc, *origins = sys.argv[1:]
    Bridge(listen_fd=sys.stdin.fileno(), web=page, unix_target=vnc,
           auth_plugin=ExpectOrigin(" ".join(origins))).start_server()
