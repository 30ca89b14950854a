"""A bus that accepts every connection and then keeps silent, or talks nonsense."""

import contextlib
import socket
import tempfile
import threading


class SilentBus:
    """Listens at `address`. The kernel accepts in its place, so it needs no loop to keep silent."""

    def __init__(self, nonsense=b""):
        self._nonsense = nonsense
        self._clients = []

    def __enter__(self):
        self._scratch = tempfile.TemporaryDirectory(prefix="bus-")
        self.address = f"unix:path={self._scratch.name}/bus"
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(f"{self._scratch.name}/bus")
        self._listener.listen()
        if self._nonsense:
            threading.Thread(target=self._talk, daemon=True).start()
        return self

    def __exit__(self, *_):
        # Wakes the thread in accept(), as close() does not.
        with contextlib.suppress(OSError):
            self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        for client in self._clients:
            client.close()
        self._scratch.cleanup()

    def _talk(self):
        with contextlib.suppress(OSError):
            while True:
                client = self._listener.accept()[0]
                self._clients.append(client)
                client.sendall(self._nonsense)
