"""A place for watches of a test's own."""

import pytest

from simulator.desk import Desk


@pytest.fixture(name="fresh")
def _fresh():
    """A place without a watch."""
    with Desk() as desk:
        yield desk
