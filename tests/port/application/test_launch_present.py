"""A later launch request brings the running application's window before the user's eyes."""

import pytest

from port import lifecycle
from port.launch_apps import Apps
from port.lifecycle import App, wait_until_active, window_of
from support.display import Display


@pytest.fixture(scope="module", params=["openbox", "xfwm4"])
def display(request):
    with Display(manager=request.param) as screen:
        yield screen


@pytest.fixture
def apps(display, tmp_path):
    with Apps(tmp_path, lifecycle.PROGRAM) as running:
        running.env.update(display.env, ELM_ENGINE="")
        yield running


@pytest.fixture
def clock(apps):
    app = apps.start("clock")
    app.wait_for("resume")
    return app


@pytest.fixture
def cover(display, clock, tmp_path):
    with App(display.env, tmp_path) as app:
        app.wait_for("resume")
        clock.wait_for("pause")
        yield app


def test_a_second_start_raises_and_activates_the_covered_window(apps, clock, cover, display):
    assert apps.start("clock", "--operation=show").end() == (0, ["result 0"])
    clock.wait_for("app_control show")
    clock.wait_for("resume")
    cover.wait_for("pause")
    wait_until_active(display, clock)


def test_activation_over_the_bus_raises_and_activates_the_covered_window(
        apps, clock, cover, display):
    assert apps.call("clock", "org.freedesktop.Application.Activate", "{}").returncode == 0
    clock.wait_for("resume")
    cover.wait_for("pause")
    wait_until_active(display, clock)


def test_a_request_restores_the_minimised_window(apps, clock, display):
    clock.tell("iconify")
    clock.wait_for("pause")
    apps.start("clock").end()
    clock.wait_for("resume")
    wait_until_active(display, clock)


def test_a_request_brings_back_the_window_that_the_application_has_left(apps, clock):
    clock.tell("lower")
    clock.wait_for("pause")
    apps.start("clock").end()
    clock.wait_for("app_control default")
    clock.wait_for("resume")


def test_a_request_leaves_a_window_hidden_that_the_application_hides(
        display, apps, clock, tmp_path):
    clock.tell("hide")
    clock.wait_for("pause")
    apps.start("clock").end()
    clock.wait_for("app_control default")
    # By the next turn of its loop the display has what it wanted of it, and serves others later.
    clock.tell("size")
    with App(display.env, tmp_path) as later:
        later.wait_for("resume")
        assert display.xdotool("search", "--onlyvisible", "--name", "^lifecycle-app$") == \
            [window_of(display, later)]


def test_a_request_without_a_window_is_delivered(apps, clock):
    clock.tell("delete")
    clock.wait_for("pause")
    apps.start("clock").end()
    clock.wait_for("app_control default")
    clock.tell("exit")
    assert clock.end()[0] == 0
