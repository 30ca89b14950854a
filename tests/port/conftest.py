"""What the tests of services and of launch requests start from."""

import pytest

from port.launch_apps import Apps
from support.bus import SystemBus


@pytest.fixture(name="bus")
def _bus():
    with SystemBus() as bus:
        yield bus


@pytest.fixture(name="apps")
def _apps(tmp_path):
    with Apps(tmp_path) as apps:
        yield apps


@pytest.fixture(name="clock")
def _clock(apps):
    return apps.run("clock")
