"""A bus that does not answer everything."""

import contextlib
import socket
import threading


class PartialBus:
    """Stands before a bus and swallows what a client sends with a certain word in it."""

    def __init__(self, bus, folder, word):
        self.address = f"unix:path={folder}/silent"
        self._word = word
        self._real = bus.address.split("path=")[1].split(",")[0]
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(f"{folder}/silent")
        self._listener.listen()
        self._start(self._serve)

    def _serve(self):
        while True:
            client, _ = self._listener.accept()
            server = socket.socket(socket.AF_UNIX)
            server.connect(self._real)
            self._start(self._forward, server, client)
            self._start(self._forward, client, server)

    def _forward(self, source, target):
        with contextlib.suppress(OSError):
            while data := source.recv(4096):
                if self._word not in data:
                    target.sendall(data)
            target.shutdown(socket.SHUT_WR)

    @staticmethod
    def _start(function, *arguments):
        threading.Thread(target=function, args=arguments, daemon=True).start()
