"""A watch for the tests of the guide."""

import pytest

from e2e.watch import Watch


@pytest.fixture(name="watch")
def _watch(desk):
    with Watch(desk) as watch:
        yield watch
