"""The guide on a desktop's message bus: requests that come while it runs, and starts by the bus."""

import os
import subprocess

import pytest

from e2e.app import GUIDE
from support.bus import SystemBus, wait_until

ID = "com.velmora.qivo-guide-app"


@pytest.fixture(name="session")
def _session():
    with SystemBus() as session:
        yield session


@pytest.fixture(name="watch")
def _watch(watch, session):
    watch.environment |= {"DBUS_SESSION_BUS_ADDRESS": session.address}
    return watch


def gapplication(watch, *arguments):
    return subprocess.run(["gapplication", *arguments], capture_output=True, text=True, timeout=60,
                          env={**os.environ, **watch.environment}).returncode


def test_a_later_request_is_logged_and_the_page_stays(watch):
    app = watch.launch()
    page = watch.still_picture()
    assert gapplication(watch, "action", ID, "show", "{'page': <'2'>}") == 0
    app.wait_log("SOnAppControl", "operation:[show]")
    assert watch.still_picture() == page
    watch.press_back()
    assert app.wait_end() == 0


def test_a_second_start_is_a_later_request(watch):
    app = watch.launch()
    second = subprocess.run([GUIDE, "--operation", "again"], env=watch.environment, timeout=60,
                            stderr=subprocess.PIPE, text=True)
    assert second.returncode == 0
    assert "SOnAppCreate" not in second.stderr
    app.wait_log("SOnAppControl", "operation:[again]")


def test_the_bus_starts_the_guide_and_the_back_key_ends_it(watch, session):
    settings = " ".join(f"'{name}={value}'" for name, value in watch.environment.items())
    session.add_activatable(ID, f"/usr/bin/env {settings} {GUIDE} --service")
    assert gapplication(watch, "launch", ID) == 0
    wait_until(lambda: watch.is_on_screen("qivo-guide-app"), "the guide's window")
    watch.still_picture()
    watch.press_back()
    wait_until(lambda: not session.has_owner(ID), "the guide's end")
