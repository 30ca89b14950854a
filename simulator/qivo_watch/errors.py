"""The errors of a command."""


class WatchError(Exception):
    """Refused, failed or without effect: one line for the user, exit status 1."""


class WatchEnded(WatchError):
    """The watch was stopped while a command was working on it."""


class UsageError(Exception):
    """Wrong arguments: one line for the user, exit status 2."""


class ScreenGone(Exception):
    """The watch's screen has gone: the watch has ended, or is ending."""
