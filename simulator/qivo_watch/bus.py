"""The watch's message bus, as its clients see it."""

PROPERTIES = "org.freedesktop.DBus.Properties"
DAEMON = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")

PATIENCE_S = 4.0
"""Seconds for a bus to answer."""

PATIENCE_MS = round(PATIENCE_S * 1000)
