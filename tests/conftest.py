"""What the tests of several folders start from."""

import os

import pytest

from simulator.desk import BUILD, Desk

# Hypothesis keeps its tables there, not in the checkout.
os.environ["HYPOTHESIS_STORAGE_DIRECTORY"] = str(BUILD / "hypothesis")

CHANGES_BY_ITSELF = {"display", "processes", "lastEnd", "bezel"}
"""What a status says besides the state that a test must leave as it was."""


@pytest.fixture(scope="session", name="shared")
def _shared():
    """A desk watch for all tests that leave it as it was, and its state at rest."""
    with Desk() as desk:
        desk.do("start", "--headless")
        yield desk, state_of(desk.status())


@pytest.fixture(name="desk")
def _desk(shared):
    """A watch that shows its home face, awake, on its battery, in English."""
    desk, at_rest = shared
    yield desk
    left = desk.status()
    if state_of(left) == at_rest:
        return
    take_back(desk, left, at_rest)
    # No verb takes back all settings: the clock's format, once set, stays.
    if state_of(desk.status()) != at_rest:
        desk.do("stop")
        desk.do("start", "--headless")


def state_of(status):
    state = {name: value for name, value in status.items() if name not in CHANGES_BY_ITSELF}
    return state | {"time": {**status["time"], "now": None}}


def take_back(desk, left, at_rest):
    for key in left["keysDown"]:
        desk.run("button", "release", key)
    if desk.status()["screen"] == "off":
        desk.do("button", "click", "power")
    while desk.status()["app"]:
        desk.do("terminate")
    for app in set(left["apps"]) - set(at_rest["apps"]):
        desk.do("uninstall", app)
    if left["battery"] != at_rest["battery"]:
        desk.do("battery", "--percent", at_rest["battery"]["percent"], "--discharging")
    if left["region"] != left["language"]:
        desk.do("region", "auto")
    if left["language"] != at_rest["language"]:
        desk.do("language", at_rest["language"])
    for verb, name in (("text-size", "textSize"), ("motion", "motion"), ("contrast", "contrast")):
        if left[name] != at_rest[name]:
            desk.do(verb, at_rest[name])
    if left["time"]["zone"] != at_rest["time"]["zone"]:
        desk.do("time", "zone", at_rest["time"]["zone"])
    if left["time"]["frozen"]:
        desk.do("time", "thaw")
