"""A bus that does not answer everything."""

import contextlib
import socket
import threading


class PartialBus:
    """Stands before a bus and swallows what a client sends with a certain word in it.

    first_client: the first one, counted from 1, of whom anything is swallowed.
    stops: with the word it reads no more of that client, for good.
    holds: it hands the word over late, once `released` is set.
    """

    def __init__(self, bus, folder, word, *, first_client=1, stops=False, holds=False):
        self.address = f"unix:path={folder}/silent"
        self.swallowed = threading.Event()
        self._word = word
        self._first_client = first_client
        self.released = threading.Event()
        self._stops = stops
        self._holds = holds
        self._real = bus.address.split("path=")[1].split(",")[0]
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(f"{folder}/silent")
        self._listener.listen()
        self._open = []
        self._start(self._serve)

    def _serve(self):
        count = 0
        while True:
            client, _ = self._listener.accept()
            server = socket.socket(socket.AF_UNIX)
            server.connect(self._real)
            # Whatever is not read any more stays open.
            self._open += [client, server]
            count += 1
            self._start(self._forward, server, client, None)
            self._start(self._forward, client, server,
                        self._word if count >= self._first_client else None)

    def _forward(self, source, target, word):
        with contextlib.suppress(OSError):
            while data := source.recv(4096):
                if word is None or word not in data:
                    target.sendall(data)
                    continue
                self.swallowed.set()
                if self._stops:
                    return
                if self._holds:
                    self.released.wait()
                    target.sendall(data)
            target.shutdown(socket.SHUT_WR)

    @staticmethod
    def _start(function, *arguments):
        threading.Thread(target=function, args=arguments, daemon=True).start()
