"""The guide on the desk watch, by a replay file."""

import os
import pathlib

import pytest

from simulator.desk import Desk

REPLAY = pathlib.Path(__file__).with_name("guide.replay")


@pytest.mark.parametrize("turn", range(int(os.environ.get("QIVO_WATCH_REPLAYS", "1"))))
def test_a_whole_run_looks_as_it_should(turn):
    """QIVO_WATCH_REPLAYS=10 plays it so often."""
    with Desk() as desk:
        desk.do("start", "--headless")
        desk.do("play", REPLAY)
        assert "SOnAppTerminate" in desk.do("log")
        assert " E QIVO_WATCH" not in desk.do("log")
