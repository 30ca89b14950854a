"""How the user wants applications to look: as the desktop's settings portal says."""

import contextlib
import os

import dbus
import pytest

from port.lifecycle import App, compile_theme
from support.bus import wait_until
from support.session_bus import PORTAL, SessionBus

TEXT_SIZE = ("org.gnome.desktop.interface", "text-scaling-factor")
ANIMATIONS = ("org.gnome.desktop.interface", "enable-animations")
CONTRAST = ("org.freedesktop.appearance", "contrast")

# A page as high as its text, in a class of the toolkit's that follows the text size.
THEME = """
collections {
   group { name: "page";
      parts {
         text { "text";
            desc { text { text: "a"; font: "Sans"; size: 20; text_class: "label"; min: 1 1; } }
         }
      }
   }
}
"""

USUAL = "look 100 % moving 200"
OTHER = "look 150 % still 225"


@pytest.fixture(name="bus")
def _bus():
    with SessionBus() as bus:
        yield bus


@pytest.fixture(name="run")
def _run(bus, tmp_path):
    """Starts the application off screen; it says at once how it looks."""
    table = tmp_path / "colors.xml"
    table.write_text('<ColorTable><Color id="probe" r="200" g="200" b="200" a="255"/></ColorTable>')
    apps = []

    def start(**env):
        apps.append(App({"ELM_ENGINE": "buffer", "COLOR_TABLE": str(table), **bus.env, **env},
                        tmp_path, does="create:look"))
        return apps[-1]

    yield start
    for app in apps:
        app.__exit__()


@contextlib.contextmanager
def toolkit_held(folder):
    """Within the block an application with that home waits in the middle of the toolkit's start."""
    profile = folder / ".elementary" / "config" / "profile.cfg"
    profile.parent.mkdir(parents=True)
    os.mkfifo(profile)
    yield
    os.close(wait_until(lambda: open_reader(profile), "the start of the toolkit"))


def open_reader(pipe):
    """None while nobody reads."""
    with contextlib.suppress(OSError):
        return os.open(pipe, os.O_WRONLY | os.O_NONBLOCK)


def set_other(bus):
    bus.set_setting(TEXT_SIZE, dbus.Double(1.5))
    bus.set_setting(ANIMATIONS, dbus.Boolean(False))
    bus.set_setting(CONTRAST, dbus.UInt32(1))


def first_look(app):
    return app.next_line(lambda line: line.startswith("look "))


def warnings_of(app):
    return [line for line in app.port_lines() if "the desktop's" in line]


def wait_for_look(app, look):
    wait_until(lambda: app.ask("look") == look, look)


def test_the_first_frame_looks_as_the_user_wants_it(bus, run, tmp_path):
    bus.start_portal()
    set_other(bus)
    with toolkit_held(tmp_path):
        app = run()
        wait_until(lambda: bus.was_asked(), "the portal's answer")
    assert first_look(app) == OTHER


def test_without_a_portal_all_is_as_usual(run):
    app = run()
    assert first_look(app) == USUAL
    assert warnings_of(app) == []


def test_each_change_is_followed(bus, run):
    bus.start_portal()
    app = run()
    assert first_look(app) == USUAL
    set_other(bus)
    wait_for_look(app, OTHER)
    bus.set_setting(TEXT_SIZE, dbus.Double(1))
    bus.set_setting(ANIMATIONS, dbus.Boolean(True))
    bus.set_setting(CONTRAST, dbus.UInt32(0))
    wait_for_look(app, USUAL)


def test_a_layout_is_as_high_as_its_text_after_each_change(bus, run, tmp_path):
    bus.start_portal()
    app = run(THEME=compile_theme(tmp_path, THEME))

    def height():
        return int(app.ask("least-height").split()[-1])

    app.tell("theme")
    usual = wait_until(height, "the height of the layout")
    bus.set_setting(TEXT_SIZE, dbus.Double(2))
    wait_until(lambda: height() > 1.5 * usual, "a layout that is higher")
    bus.set_setting(TEXT_SIZE, dbus.Double(1))
    wait_until(lambda: height() == usual, "the layout's usual height")


def test_a_portal_that_comes_late_leaves_or_restarts_is_borne(bus, run):
    app = run()
    assert first_look(app) == USUAL
    bus.start_portal()
    set_other(bus)
    wait_for_look(app, OTHER)
    bus.stop_portal()
    assert app.ask("look") == OTHER
    bus.start_portal()
    assert app.ask("look") == OTHER
    bus.set_setting(CONTRAST, dbus.UInt32(0))
    wait_for_look(app, "look 150 % still 200")


def test_a_bus_that_dies_is_survived(bus, run):
    bus.start_portal()
    set_other(bus)
    app = run()
    app.wait_for("resume")
    bus.die()
    assert app.ask("look") == OTHER
    app.tell("exit")
    assert app.end()[0] == 0


@pytest.mark.parametrize("factor, percent", [(0.1, 80), (-3, 80), (0.8, 80), (1.25, 125), (2, 200),
                                             (1e300, 200)])
def test_a_text_size_out_of_range_is_the_nearest_in_it(bus, run, factor, percent):
    bus.start_portal()
    bus.set_setting(TEXT_SIZE, dbus.Double(factor))
    app = run()
    wait_for_look(app, f"look {percent} % moving 200")
    assert warnings_of(app) == []


@pytest.mark.parametrize("setting, value, expected", [
    (TEXT_SIZE, dbus.Double("nan"), 'a finite number of type "d"'),
    (TEXT_SIZE, dbus.Double("inf"), 'a finite number of type "d"'),
    (TEXT_SIZE, dbus.Double("-inf"), 'a finite number of type "d"'),
    (TEXT_SIZE, dbus.Int32(2), 'a finite number of type "d"'),
    (TEXT_SIZE, "1.5", 'a finite number of type "d"'),
    (TEXT_SIZE, dbus.Double(1.5, variant_level=3), 'a finite number of type "d"'),
    (ANIMATIONS, dbus.UInt32(0), 'of type "b"'),
    (ANIMATIONS, "false", 'of type "b"'),
    (CONTRAST, dbus.Int32(1), 'of type "u"'),
    (CONTRAST, dbus.Boolean(True), 'of type "u"'),
    (CONTRAST, dbus.Array([1], signature="u"), 'of type "u"')], ids=lambda value: ascii(value)[:40])
def test_a_value_of_another_kind_is_one_warning_and_changes_nothing(bus, run, setting, value,
                                                                    expected):
    bus.start_portal()
    bus.set_setting(setting, value)
    app = run()
    assert first_look(app) == USUAL
    bus.set_setting(setting, value)
    set_other(bus)
    wait_for_look(app, OTHER)
    warning = f"the desktop's {setting[1]} is ignored: not {expected}"
    assert [line.endswith(warning) for line in warnings_of(app)] == [True]


def test_a_contrast_that_is_not_known_is_the_usual_one(bus, run):
    bus.start_portal()
    bus.set_setting(CONTRAST, dbus.UInt32(7))
    app = run()
    assert first_look(app) == USUAL
    assert warnings_of(app) == []


def test_a_portal_that_hangs_leaves_the_first_look_as_usual_and_is_followed_later(bus, run):
    bus.start_portal()
    set_other(bus)
    with bus.service_held(PORTAL):
        app = run()
        assert first_look(app) == USUAL
    wait_for_look(app, OTHER)


def test_a_portal_that_is_started_by_the_question_is_followed_later(bus, run):
    bus.add_activatable(PORTAL, "/bin/sleep 60")
    app = run()
    assert first_look(app) == USUAL
    bus.start_portal()
    set_other(bus)
    wait_for_look(app, OTHER)
