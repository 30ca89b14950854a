"""What a command answers when it cannot do as told."""


class WatchError(Exception):
    """Refused, or without effect: its one line is for the user, the status is 1."""


class WatchEnded(WatchError):
    """The watch has ended as it was asked to, while a command was at work on it."""


class UsageError(Exception):
    """Nothing that could be tried: its one line is for the user, the status is 2."""


class ScreenGone(Exception):
    """The watch's screen has gone while it was looked at: the watch has ended, or is ending."""
