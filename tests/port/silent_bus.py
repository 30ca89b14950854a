"""A bus that accepts every connection and then keeps silent, or talks nonsense, or accepts none."""

import contextlib
import os
import socket
import tempfile
import threading


class SilentBus:
    """Listens at `address`. The kernel accepts in its place, so it needs no loop to keep silent.

    A display server that does the same listens at `path`.
    """

    def __init__(self, nonsense=b"", is_full=False, path=None):
        """is_full: as many clients wait to be accepted as may; one more waits in connect().
        path: where to listen instead of in a folder of its own."""
        self.path = path
        self._nonsense = nonsense
        self._is_full = is_full
        self._clients = []

    def __enter__(self):
        self._scratch = tempfile.TemporaryDirectory(prefix="bus-")
        self.path = self.path or f"{self._scratch.name}/bus"
        self.address = f"unix:path={self.path}"
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(self.path)
        self._listener.listen(0 if self._is_full else 128)
        if self._is_full:
            self._clients.append(socket.socket(socket.AF_UNIX))
            self._clients[0].connect(self.path)
        if self._nonsense:
            threading.Thread(target=self._talk, daemon=True).start()
        return self

    def __exit__(self, *_):
        # Wakes the thread in accept(), as close() does not.
        with contextlib.suppress(OSError):
            self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        os.unlink(self.path)
        for client in self._clients:
            client.close()
        self._scratch.cleanup()

    def _talk(self):
        with contextlib.suppress(OSError):
            while True:
                client = self._listener.accept()[0]
                self._clients.append(client)
                client.sendall(self._nonsense)


@contextlib.contextmanager
def silent_x_server(is_full=False):
    """An X server that does the same; yields the name of its display."""
    folder = "/tmp/.X11-unix"
    os.makedirs(folder, mode=0o1777, exist_ok=True)
    # Far above the numbers that real servers take, and one for each process.
    number = 100_000_000 + os.getpid()
    with SilentBus(is_full=is_full, path=f"{folder}/X{number}"):
        yield f":{number}"
