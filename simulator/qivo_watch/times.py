"""Times and time zones in words."""

import datetime
import os
import re
import time
import zoneinfo

from qivo_watch.errors import UsageError


def parse_time(text: str, now_ms: int | None = None, zone: str = "") -> int:
    """Milliseconds since the epoch of "HH:MM", "HH:MM:SS" (today) or "YYYY-MM-DDTHH:MM[:SS]".

    zone: empty for this process's.
    """
    place = _place(zone)
    now_ms = machine_ms() if now_ms is None else now_ms
    today = datetime.datetime.fromtimestamp(now_ms / 1000, place)
    pattern = r"(?:(\d{4})-(\d\d)-(\d\d)T)?(\d\d):(\d\d)(?::(\d\d))?"
    found = re.fullmatch(pattern, text, re.ASCII)
    if not found:
        raise UsageError(f'"{text}" is not a time (HH:MM, HH:MM:SS or YYYY-MM-DDTHH:MM[:SS])')
    *date, hour, minute, second = (int(part) if part else None for part in found.groups())
    if date[0] is None:
        date = [today.year, today.month, today.day]
    try:
        moment = datetime.datetime(*date, hour, minute, second or 0, tzinfo=place)
        return round(moment.timestamp() * 1000)
    except (ValueError, OverflowError, OSError) as error:
        raise UsageError(f'"{text}" is not a time: {error}') from None


def format_time(milliseconds: int, zone: str = "") -> str:
    moment = datetime.datetime.fromtimestamp(milliseconds / 1000, _place(zone))
    return moment.replace(tzinfo=None).isoformat(timespec="seconds")


def is_zone(name: str) -> bool:
    """Whether the machine's database has this time zone."""
    return _place(name) is not None


def machine_zone() -> str:
    """The name of the machine's zone: what TZ says in this process, else /etc/localtime."""
    name = os.environ.get("TZ", "/etc/localtime").removeprefix(":")
    if not name.startswith("/"):
        return name or "Etc/UTC"
    _, found, zone = os.path.realpath(name).partition("/zoneinfo/")
    return zone if found else "Etc/UTC"


def _place(zone: str) -> zoneinfo.ZoneInfo | None:
    """None if the database does not have it, such as the rule CET-1CEST in TZ."""
    try:
        return zoneinfo.ZoneInfo(zone)
    except (KeyError, ValueError, OSError):
        return None


def machine_ms() -> int:
    return time.time_ns() // 1_000_000
