"""The user's desktop: how large the watch's window is on it."""

import contextlib
import math
import os
import re
import threading
from typing import NamedTuple

import qivo_watch.packages  # noqa: F401 what follows needs it
from Xlib import Xatom, display, error
from Xlib.ext import randr

from qivo_watch.errors import WatchError
from qivo_watch.interface import LEAST_ZOOM, MARGIN, MOST_ZOOM

ANSWER_S = 4.0
"""Seconds for the desktop's X server to answer."""

_FRAMED_SHARE = 0.95
"""The share of a screen that a window's frame leaves."""

_USUAL_DPI = 96
_MM_PER_INCH = 25.4
_PLAUSIBLE_DPI = 500
"""A screen that reports more does not know its size."""


class _Area(NamedTuple):
    """Of a screen or a monitor, in pixels and in millimetres."""

    width: int
    height: int
    width_mm: int


def window_zoom(size: int, wanted: float | None) -> float:
    """fitting_zoom() on the user's display; fails when there is none that answers."""
    name = os.environ.get("DISPLAY", "")
    if not name:
        raise WatchError("no display (DISPLAY is not set): use --headless or --web")
    zooms: list[float] = []
    problem = [f'"{name}" does not answer']

    def ask() -> None:
        try:
            zooms.append(fitting_zoom(name, size, wanted))
        except Exception:  # pylint: disable=broad-except
            # The library raises anything for a name that makes no sense.
            problem[:] = [f'"{name}" cannot be opened']
    # Neither looking up a host nor connecting to it has a time limit.
    asking = threading.Thread(target=ask, daemon=True)
    asking.start()
    asking.join(ANSWER_S)
    if not zooms:
        raise WatchError(f"no display: {problem[0]}; use --headless or --web")
    return zooms[0]


def fitting_zoom(name: str, size: int, wanted: float | None) -> float:
    """The zoom on the display NAME: WANTED, else the scale of the desktop's other programs; less
    where the window would be larger than the screen."""
    with contextlib.closing(display.Display(name)) as host:
        room = min(*(min(area.width, area.height) for area in _areas(host)), *_work_area(host))
        zoom = wanted or min(max(1.0, _scale(host)), MOST_ZOOM)
    if not wanted:
        room *= _FRAMED_SHARE
    most = math.floor(room / (size * MARGIN) * 100) / 100
    return max(LEAST_ZOOM, min(zoom, most))


def _scale(host: display.Display) -> float:
    """The scale of programs: from the environment, else from the screen's resolution."""
    told = [_number(os.environ.get(name)) for name in ("GDK_SCALE", "QT_SCALE_FACTOR")]
    resources = host.screen().root.get_full_property(Xatom.RESOURCE_MANAGER, Xatom.STRING)
    found = resources and re.search(rb"^Xft\.dpi:\s*(\S+)", resources.value, re.MULTILINE)
    if found:
        told.append(_number(found[1].decode("ascii", "replace")) / _USUAL_DPI)
    # In whole steps: many ordinary screens have a slightly higher resolution.
    return max(told) if any(told) else max(map(_dpi, _areas(host))) // _USUAL_DPI


def _number(text: str | None) -> float:
    """0 for anything but a number."""
    try:
        value = float(text or 0)
    except ValueError:
        return 0.0
    return value if math.isfinite(value) else 0.0


def _areas(host: display.Display) -> list[_Area]:
    """The whole screen; with it the primary monitor, or the first, where there are monitors."""
    screen = host.screen()
    areas = [_Area(screen.width_in_pixels, screen.height_in_pixels, screen.width_in_mms)]
    if host.has_extension(randr.extname):
        with contextlib.suppress(error.XError):  # an extension version without monitors
            monitors = screen.root.xrandr_get_monitors().monitors
            areas += [_Area(monitor.width_in_pixels, monitor.height_in_pixels,
                            monitor.width_in_millimeters)
                      for monitor in sorted(monitors, key=lambda monitor: -monitor.primary)[:1]]
    return areas


def _dpi(area: _Area) -> float:
    dpi = area.width * _MM_PER_INCH / area.width_mm if area.width_mm else 0.0
    return dpi if dpi <= _PLAUSIBLE_DPI else 0.0


def _work_area(host: display.Display) -> tuple[int, int]:
    """Width and height of the screen without panels."""
    screen = host.screen()
    found = screen.root.get_full_property(host.get_atom("_NET_WORKAREA"), Xatom.CARDINAL)
    if found and len(found.value) >= 4 and min(found.value[2:4]) > 0:
        return found.value[2], found.value[3]
    return screen.width_in_pixels, screen.height_in_pixels
