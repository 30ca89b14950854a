"""A bus that accepts every connection and then keeps silent, or talks nonsense, or accepts none."""

import contextlib
import socket
import tempfile
import threading


class SilentBus:
    """Listens at `address`. The kernel accepts in its place, so it needs no loop to keep silent."""

    def __init__(self, nonsense=b"", is_full=False):
        """is_full: as many clients wait to be accepted as may; one more waits in connect()."""
        self._nonsense = nonsense
        self._is_full = is_full
        self._clients = []

    def __enter__(self):
        self._scratch = tempfile.TemporaryDirectory(prefix="bus-")
        self.address = f"unix:path={self._scratch.name}/bus"
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(f"{self._scratch.name}/bus")
        self._listener.listen(0 if self._is_full else 128)
        if self._is_full:
            self._clients.append(socket.socket(socket.AF_UNIX))
            self._clients[0].connect(f"{self._scratch.name}/bus")
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
