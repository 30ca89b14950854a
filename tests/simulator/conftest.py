"""A watch for all tests that leave one as it was, and a place for watches of a test's own."""

import pytest

from simulator.desk import Desk


@pytest.fixture(name="fresh")
def _fresh():
    """A place without a watch."""
    with Desk() as desk:
        yield desk


@pytest.fixture(name="desk")
def _desk(running):
    """A watch that shows its home face, awake, on its battery, in English."""
    yield running
    left = running.status()
    for key in left["keysDown"]:
        running.run("button", "release", key)
    if left["keysDown"]:
        left = running.status()
    if left["screen"] == "off":
        running.do("button", "click", "power")
    while running.status()["app"]:
        running.do("terminate")
    if left["battery"] != {"percent": 80, "state": "discharging"}:
        running.do("battery", "--percent", "80", "--discharging")
    if left["language"] != "en_US.UTF-8":
        running.do("language", "en_US")
    if left["time"]["frozen"]:
        running.do("time", "thaw")
