"""What the tests of several folders start from."""

import pytest

from simulator.desk import Desk


@pytest.fixture(scope="session", name="running")
def _running():
    """A desk watch for all tests that leave it as it was."""
    with Desk() as desk:
        desk.do("start", "--headless")
        yield desk
