"""Each of these tests has watches of its own, which it may break."""

import pytest


@pytest.fixture(name="desk")
def _desk(fresh):
    return fresh
