"""The watch's message bus, as its clients see it."""

import contextlib
import threading
from typing import Iterator

from gi.repository import Gio

PROPERTIES = "org.freedesktop.DBus.Properties"
DAEMON = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")

PATIENCE_S = 4.0
"""Seconds for a bus to answer."""

PATIENCE_MS = round(PATIENCE_S * 1000)


def connect(address: str) -> Gio.DBusConnection:
    """Fails with Gio.IOErrorEnum.CANCELLED at a bus that does not answer."""
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
             | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    with _patience() as end:
        connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, end)
    connection.set_exit_on_close(False)
    return connection


@contextlib.contextmanager
def _patience() -> Iterator[Gio.Cancellable]:
    end = Gio.Cancellable()
    timer = threading.Timer(PATIENCE_S, end.cancel)
    timer.start()
    try:
        yield end
    finally:
        timer.cancel()
