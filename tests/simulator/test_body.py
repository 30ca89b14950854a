"""The watch's body: what it shows, and what the mouse does on it."""

import subprocess

import dbus
import pytest

from simulator.painter import Painter
from simulator.watch import Watch
from support.bus import wait_until

CENTRE = (370, 340)
BACK_KEY = (598, 208)
POWER_KEY = (598, 472)
PLUG = (40, 340)
PLUG_BEHIND = (112, 340)
"""Where only a plugged charger is."""


def xdotool(display, *arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True, env=display.env)


def pixel(display, x, y):
    rgb = subprocess.run(["import", "-display", display.name, "-window", "root", "-crop",
                          f"1x1+{x}+{y}", "-depth", "8", "rgb:-"], check=True,
                         capture_output=True).stdout
    return tuple(rgb[:3])


@pytest.fixture(name="watch")
def fixture_watch():
    with Watch() as watch:
        yield watch


def test_shows_what_is_drawn_on_the_screen(watch):
    watch.start_body()
    with Painter(watch.screen) as painter:
        for colour, rgb in (0xFF0000, (255, 0, 0)), (0x00FF00, (0, 255, 0)):
            painter.paint(colour)
            wait_until(lambda rgb=rgb: pixel(watch.host, *CENTRE) == rgb, hex(colour))


def test_fetches_nothing_while_the_screen_stands_still(watch):
    watch.start_body()
    with Painter(watch.screen) as painter:
        painter.paint(0xFF0000)
        wait_until(lambda: pixel(watch.host, *CENTRE) == (255, 0, 0), "red")
        frames = watch.frames()
        desk = pixel(watch.host, *PLUG_BEHIND)
        watch.set(BezelPosition=dbus.Int32(5), Charging=True)
        wait_until(lambda: pixel(watch.host, *PLUG_BEHIND) != desk, "the charger at the case")
        assert watch.frames() == frames


@pytest.mark.parametrize("place, key", [(BACK_KEY, "back"), (POWER_KEY, "power")])
def test_a_key_is_pushed_as_long_as_the_button_is_held(watch, place, key):
    watch.start_body()
    xdotool(watch.host, "mousemove", *place, "mousedown", 1)
    watch.wait_calls("Button", [("push", key, 0, 1, 0)])
    xdotool(watch.host, "mousemove", *CENTRE, "mouseup", 1)
    watch.wait_calls("Button", [("push", key, 0, 1, 0), ("release", key, 0, 1, 0)])


def test_a_notch_of_the_wheel_is_a_detent(watch):
    watch.start_body()
    xdotool(watch.host, "mousemove", *CENTRE, "click", 5, "click", 4, "click", 5)
    watch.wait_calls("Bezel", [("cw", 1, 0), ("ccw", 1, 0), ("cw", 1, 0)])


def test_a_click_on_the_charger_plugs_and_unplugs_it(watch):
    watch.start_body()
    xdotool(watch.host, "mousemove", *PLUG, "click", 1)
    watch.wait_calls("SetBattery", [(82.0, "charging")])
    xdotool(watch.host, "click", 1)
    watch.wait_calls("SetBattery", [(82.0, "charging"), (82.0, "discharging")])
