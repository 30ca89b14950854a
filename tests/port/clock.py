"""The machine's clock, which all processes share."""

import time

import pytest

hears_the_clock = pytest.mark.xdist_group("clock")
"""Marks a test that sets the clock or counts the times when it is set: one after the other."""


def set_clock_to_now():
    """Sets the clock, by as little as can be, or skips the test."""
    try:
        time.clock_settime(time.CLOCK_REALTIME, time.clock_gettime(time.CLOCK_REALTIME))
    except PermissionError as error:
        pytest.skip(f"the clock cannot be set here: {error}")
