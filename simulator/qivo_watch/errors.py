"""What a command answers when it cannot do as told."""


class WatchError(Exception):
    """Refused, or without effect: its one line is for the user, the status is 1."""


class UsageError(Exception):
    """Nothing that could be tried: its one line is for the user, the status is 2."""
