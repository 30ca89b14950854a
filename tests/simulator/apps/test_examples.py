"""docs/watch.md, whose examples are one session from the first block to the last."""

import pathlib

import pytest

from simulator.desk import QIVO_WATCH, Desk
from support.paper import Reader

PAGE = pathlib.Path(__file__).parents[3] / "docs" / "watch.md"


@pytest.fixture(name="desk")
def _desk():
    with Desk() as desk:
        desk.environment["PATH"] = f"{QIVO_WATCH.resolve().parent}:{desk.environment['PATH']}"
        desk.environment["TZ"] = "UTC"
        yield desk


def test_each_example_prints_what_the_page_says(desk, tmp_path):
    reader = Reader(PAGE, desk.environment, tmp_path)
    reader.read()
    assert reader.commands > 50
