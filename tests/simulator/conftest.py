"""A watch for all tests of a module."""

import pytest

from simulator.desk import Desk


@pytest.fixture(scope="module", name="running")
def _running():
    with Desk() as desk:
        desk.do("start", "--headless")
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
