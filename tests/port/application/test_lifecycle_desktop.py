"""Resume and pause where windows are drawn whole and the active one decides."""

import pytest

from port.lifecycle import App, wait_until_active, wait_until_still, window_of
from port.silent_bus import silent_x_server
from support.display import Display

CREATED = ["create user-data", "app_control default", "resume"]
ENDED = ["terminate", "result 0"]


class Desktop:
    """Runs applications on one display; all of them are gone at its end."""

    def __init__(self, display, folder):
        self.display = display
        self._folder = folder
        self._apps = []

    def start(self, does=""):
        """Starts an application in sight."""
        app = App(self.display.env, self._folder, does=does)
        self._apps.append(app)
        app.wait_for("resume")
        return app

    def end(self):
        for app in self._apps:
            app.__exit__()


@pytest.fixture(scope="module")
def xfwm4():
    with Display(manager="xfwm4") as display:
        yield display


@pytest.fixture(scope="module")
def weston():
    with Display("400x400x24", manager="weston") as display:
        yield display


@pytest.fixture
def closing(tmp_path):
    """A compositor that closes the active window when told so."""
    with Display(manager="sway") as display:
        desktop = Desktop(display, tmp_path)
        yield desktop
        desktop.end()


@pytest.fixture
def composited(xfwm4, tmp_path):
    desktop = Desktop(xfwm4, tmp_path)
    yield desktop
    desktop.end()


@pytest.fixture
def wayland(weston, tmp_path):
    desktop = Desktop(weston, tmp_path)
    # The compositor's switcher works wherever the pointer is on its output.
    desktop.display.xdotool("mousemove", 200, 200)
    yield desktop
    desktop.end()


def went(app, *since):
    """Ends an application that has lived like this; "pause" comes last if it is in sight."""
    app.tell("exit")
    status, lines = app.end()
    assert status == 0
    assert lines == CREATED + [*since] + ENDED


def test_a_window_that_opens_above_pauses_and_its_end_resumes(composited):
    app = composited.start()
    above = composited.start()
    app.wait_for("pause")
    went(above, "did exit", "pause")
    app.wait_for("resume")
    went(app, "pause", "resume", "did exit", "pause")


def test_the_window_that_is_made_active_is_resumed_and_the_other_one_paused(composited):
    app = composited.start()
    other = composited.start()
    app.wait_for("pause")
    composited.display.xdotool("windowactivate", window_of(composited.display, app))
    app.wait_for("resume")
    other.wait_for("pause")
    composited.display.xdotool("windowactivate", window_of(composited.display, other))
    app.wait_for("pause")
    other.wait_for("resume")
    went(other, "pause", "resume", "did exit", "pause")
    app.wait_for("resume")
    went(app, *["pause", "resume"] * 2, "did exit", "pause")


def test_lowering_below_another_window_pauses_and_raising_resumes(composited):
    other = composited.start()
    app = composited.start()
    other.wait_for("pause")
    app.tell("lower")
    app.wait_for("pause")
    other.wait_for("resume")
    app.tell("raise")
    app.wait_for("resume")
    other.wait_for("pause")
    went(app, "did lower", "pause", "did raise", "resume", "did exit", "pause")
    other.wait_for("resume")
    went(other, *["pause", "resume"] * 2, "did exit", "pause")


def test_lowering_with_nothing_behind_pauses_a_composited_window(composited):
    app = composited.start()
    app.tell("lower")
    app.wait_for("pause")
    went(app, "did lower", "pause", "did exit")


def test_a_lowered_window_is_in_sight_again_when_the_other_one_leaves(composited):
    other = composited.start()
    app = composited.start()
    other.wait_for("pause")
    app.tell("lower")
    app.wait_for("pause")
    other.wait_for("resume")
    # After a whole turn of its loop it knows where the window manager has put its window: the first
    # answer may come within the turn.
    app.tell("size")
    app.tell("size")
    other.tell("iconify")
    app.wait_for("resume")
    went(app, "did lower", "pause", *["size 360x360", "did size"] * 2, "resume", "did exit",
         "pause")


def test_lowering_above_a_minimised_window_pauses(composited):
    other = composited.start()
    other.tell("iconify")
    other.wait_for("pause")
    app = composited.start()
    app.tell("lower")
    app.wait_for("pause")
    went(app, "did lower", "pause", "did exit")


def test_a_lowered_window_that_the_user_makes_active_is_in_sight_again(composited, xfwm4):
    xfwm4.set_compositing(False)
    try:
        app = composited.start()
        wait_until_active(xfwm4, app)
        beside = composited.start("window:sized")
        wait_until_active(xfwm4, beside)
        app.tell("lower")
        app.wait_for("pause")
        xfwm4.xdotool("windowactivate", window_of(xfwm4, app))
        app.wait_for("resume")
        went(app, "did lower", "pause", "resume", "did exit", "pause")
    finally:
        xfwm4.set_compositing(True)


@pytest.mark.parametrize("way_back", ["windowmap", "windowactivate"])
def test_minimising_pauses_and_restoring_resumes(composited, way_back):
    app = composited.start()
    window = window_of(composited.display, app)
    composited.display.xdotool("windowminimize", window)
    app.wait_for("pause")
    composited.display.xdotool(way_back, window)
    app.wait_for("resume")
    went(app, "pause", "resume", "did exit", "pause")


def test_another_workspace_pauses_and_the_windows_own_resumes(composited):
    app = composited.start()
    composited.display.xdotool("set_desktop", 1)
    app.wait_for("pause")
    composited.display.xdotool("set_desktop", 0)
    app.wait_for("resume")
    went(app, "pause", "resume", "did exit", "pause")


def test_a_cover_pauses_after_compositing_has_ended_and_begun_again(composited, xfwm4):
    app = composited.start()
    for is_on in [False, True]:
        xfwm4.set_compositing(is_on)
        cover = composited.start()
        app.wait_for("pause")
        went(cover, "did exit", "pause")
        app.wait_for("resume")
    assert "ERR<" not in app.log
    went(app, *["pause", "resume"] * 2, "did exit", "pause")


def test_on_wayland_the_active_window_is_resumed_and_the_other_one_paused(wayland):
    app = wayland.start()
    other = wayland.start()
    app.wait_for("pause")
    wayland.display.xdotool("key", "super+Tab")
    other.wait_for("pause")
    app.wait_for("resume")
    went(other, "pause", "did exit")
    went(app, "pause", "resume", "did exit", "pause")


@pytest.mark.parametrize("word", ["iconify", "lower"])
def test_on_wayland_minimising_and_lowering_pause(wayland, word):
    app = wayland.start()
    app.tell(word)
    app.wait_for("pause")
    went(app, "did " + word, "pause", "did exit")


def test_on_wayland_hiding_pauses_and_showing_resumes(wayland):
    app = wayland.start()
    app.tell("hide")
    app.wait_for("pause")
    app.tell("show")
    app.wait_for("resume")
    went(app, "did hide", "pause", "did show", "resume", "did exit", "pause")


def test_on_wayland_closing_the_window_ends_the_application_before_the_window_goes(closing):
    app = closing.start("window:watched")
    # The toolkit crashes when it hears more of a window that is closed: let it have heard all.
    wait_until_still(app)
    closing.display.close_active_window()
    assert app.end() == (0, CREATED + ["pause", "terminate", "deleted", "result 0"])


def test_on_wayland_closing_one_of_two_windows_deletes_it_alone(closing):
    app = closing.start("window:watched")
    app.tell("new")
    wait_until_still(app)
    closing.display.close_active_window()
    app.wait_for("deleted")
    wait_until_still(app)
    app.tell("exit")
    assert app.end() == (0, CREATED + ["did new", "deleted", "did exit", "pause", "terminate",
                                       "deleted", "result 0"])


def test_on_wayland_an_application_that_closes_its_window_itself_is_not_ended(closing):
    app = closing.start("window:kept")
    wait_until_still(app)
    closing.display.close_active_window()
    app.wait_for("asked to close")
    went(app, "asked to close", "did exit", "pause")


def test_a_compositor_is_found_beside_a_silent_x_server(weston, tmp_path):
    with silent_x_server() as display, App({**weston.env, "DISPLAY": display}, tmp_path) as app:
        app.wait_for("resume")
        app.tell("exit")
        assert app.end()[0] == 0


def test_a_compositor_is_found_beside_an_x_server_that_has_gone(weston, tmp_path):
    with App({**weston.env, "DISPLAY": ":987654"}, tmp_path) as app:
        app.wait_for("resume")
        app.tell("exit")
        assert app.end()[0] == 0
