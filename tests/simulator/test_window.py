"""The whole watch as a window on a desktop: how it comes, how large, and what mouse and keys do."""

import re
import subprocess

import pytest
from Xlib import X, Xatom, display

from simulator.desk import Desk
from simulator.painter import Painter
from support.bus import UPOWER, wait_until
from support.display import Display

CHARGER = (40, 340)
"""In the watch's square of 680 pixels."""


@pytest.fixture(name="host", scope="module")
def _host():
    with Display("1000x800x24", manager=None) as host:
        yield host


@pytest.fixture(name="desk")
def _desk(host):
    with Desk(host.name) as desk:
        yield desk


def window_sizes(host, name="Qivo Watch"):
    tree = subprocess.run(["xwininfo", "-display", host.name, "-root", "-tree"], check=True,
                          capture_output=True, text=True).stdout
    return [tuple(map(int, size)) for size in
            re.findall(rf'"{name}": \("qivo-watch" .*?\)\s+(\d+)x(\d+)\+', tree)]


def set_resources(host, text):
    """What a desktop's settings tell its programs."""
    connection = display.Display(host.name)
    connection.screen().root.change_property(Xatom.RESOURCE_MANAGER, Xatom.STRING, 8,
                                             text.encode())
    connection.sync()
    connection.close()


@pytest.fixture(name="large_host", scope="module")
def _large_host():
    with Display("3000x2000x24", manager=None) as host:
        yield host


def on_battery(desk):
    """What the applications read from UPower."""
    return subprocess.run(
        ["gdbus", "call", "--address", f"unix:path={desk.runtime}/qivo-watch/watch/bus",
         "--dest", UPOWER, "--object-path", "/org/freedesktop/UPower",
         "--method", "org.freedesktop.DBus.Properties.Get", UPOWER, "OnBattery"],
        check=True, capture_output=True, text=True).stdout.strip() == "(<true>,)"


def test_without_a_window_manager_it_starts_and_answers_mouse_and_keys(desk, host):
    desk.do("start")
    assert window_sizes(host) == [(680, 680)]
    desk.do("launch")
    host.xdotool("mousemove", 500, 400, "click", "--repeat", 3, 5, "key", "Right")
    wait_until(lambda: desk.status()["bezel"] == 4, "the bezel turned")
    host.xdotool("key", "Escape")
    wait_until(lambda: desk.status()["app"] is None, "the application left")


def test_no_notch_of_a_burst_is_lost_on_the_way_to_the_application(desk, host, monkeypatch):
    desk.do("start")
    status = desk.status()
    monkeypatch.setenv("XAUTHORITY", f"{status['folder']}/Xauthority")
    with Painter(display_named(status["display"])) as application:
        host.xdotool("mousemove", 500, 400, "click", "--repeat", 300, "--delay", 0, 5)
        seen = []
        wait_until(lambda: seen.extend(application.gestures()) or
                   len([kind for kind, *_ in seen if kind == X.ButtonRelease]) == 300,
                   "300 notches")
    wait_until(lambda: desk.status()["bezel"] == 300, "300 detents")


def display_named(name):
    """An X display that is there already."""
    found = Display()
    found.name = name
    return found


def test_a_full_battery_is_plugged_for_everybody_and_one_click_unplugs_it(desk, host, tmp_path):
    desk.do("start")
    desk.do("battery", "--charging")
    desk.do("screenshot", "--body", tmp_path / "charging.png")
    desk.do("battery", "--full")
    assert not on_battery(desk)
    desk.do("screenshot", "--body", tmp_path / "full.png")
    left = [subprocess.run(["convert", tmp_path / f"{name}.png", "-crop", "120x680+0+0", "rgba:-"],
                           check=True, capture_output=True).stdout for name in ("charging", "full")]
    assert left[0] == left[1]
    host.xdotool("mousemove", 160 + CHARGER[0], 60 + CHARGER[1], "click", 1)
    wait_until(lambda: desk.status()["battery"]["state"] == "discharging", "the charger unplugged")
    assert on_battery(desk)


def test_a_watch_of_another_name_is_named_in_the_title(desk, host):
    desk.do("--name", "second", "start")
    assert window_sizes(host, "Qivo Watch: second") == [(680, 680)]


@pytest.mark.parametrize("variables, resources, arguments, zoom", [
    ({}, "", [], 1), ({}, "Xft.dpi:\t192\n", [], 2), ({}, "*font: x\nXft.dpi: 144", [], 1.5),
    ({"GDK_SCALE": "2"}, "Xft.dpi: 96", [], 2), ({"QT_SCALE_FACTOR": "1.25"}, "", [], 1.25),
    ({"GDK_SCALE": "2"}, "", ["--zoom", "0.5"], 0.5), ({"GDK_SCALE": "two"}, "Xft.dpi: x", [], 1),
    ({"QT_SCALE_FACTOR": "0.5"}, "", [], 1), ({"GDK_SCALE": "3"}, "", [], 2.79),
    ({}, "", ["--zoom", "4"], 2.94)])
def test_the_window_is_as_large_as_the_desktop_s_programs_and_no_larger_than_the_screen(
        large_host, variables, resources, arguments, zoom):
    with Desk(large_host.name) as desk:
        desk.environment |= variables
        set_resources(large_host, resources)
        desk.do("start", *arguments)
        assert desk.status()["zoom"] == zoom
        side = round(680 * zoom)
        assert window_sizes(large_host) == [(side, side)]


def test_a_screen_of_many_dots_gets_a_larger_window():
    with Display("2000x2000x24", manager=None, dots=200) as host, Desk(host.name) as desk:
        desk.do("start")
        assert desk.status()["zoom"] == 2


@pytest.mark.parametrize("zoom", ["0.24", "4.01", "nan", "x"])
def test_a_zoom_that_no_window_can_have_is_refused(desk, zoom):
    assert f'"{zoom}" is not from 0.25 to 4' in desk.refused("start", "--zoom", zoom, status=2)
