"""When the screen counts as still."""

import contextlib

import pytest
from Xlib import X, Xatom, display


MOTION = "_WATCH_PORT_MOTION"


@pytest.fixture(name="screen")
def _screen(desk, monkeypatch):
    status = desk.status()
    monkeypatch.setenv("XAUTHORITY", f"{status['folder']}/Xauthority")
    with contextlib.closing(display.Display(status["display"])) as screen:
        yield screen


@pytest.fixture(name="window")
def _window(screen):
    """A window of a program that is not on the port, above the home face."""
    root = screen.screen().root
    root.change_attributes(event_mask=X.PropertyChangeMask)
    window = root.create_window(0, 0, 360, 360, 0, X.CopyFromParent)
    window.map()
    while window.id not in stack(screen):
        screen.next_event()
    yield window
    window.destroy()
    while window.id in stack(screen):
        screen.next_event()


def stack(screen):
    found = screen.screen().root.get_full_property(
        screen.get_atom("_NET_CLIENT_LIST_STACKING"), Xatom.WINDOW)
    return list(found.value) if found else []


def tell(screen, window, value):
    window.change_property(screen.get_atom(MOTION), Xatom.CARDINAL, 32, [value])
    screen.sync()


def motion_of(screen, window):
    found = window.get_full_property(screen.get_atom(MOTION), Xatom.CARDINAL)
    return list(found.value) if found else None


def changes(screen):
    """How often a motion was told of since the last call."""
    screen.sync()
    events = [screen.next_event() for _ in range(screen.pending_events())]
    return sum(event.type == X.PropertyNotify and event.atom == screen.get_atom(MOTION)
               for event in events)


def test_a_motion_that_its_program_tells_of_is_waited_for_however_slow_it_is(desk, screen, window):
    tell(screen, window, 1)
    assert "was not still within 1.5 s" in desk.refused("wait", "still", "-t", "1.5")
    tell(screen, window, 0)
    desk.do("wait", "still")


def test_a_program_without_the_port_is_still_when_nothing_on_it_changes(desk, screen, window):
    assert motion_of(screen, window) is None
    desk.do("wait", "still")


def test_only_the_program_on_top_is_asked(desk, screen, window):
    tell(screen, window, 1)
    desk.do("launch")
    desk.do("wait", "still")
    desk.do("button", "click", "back")


def test_the_guide_tells_of_a_motion_with_a_request_at_its_beginning_and_one_at_its_end(
        desk, screen):
    desk.do("launch")
    desk.do("wait", "still")
    guide = screen.create_resource_object("window", stack(screen)[-1])
    assert motion_of(screen, guide) == [0]
    guide.change_attributes(event_mask=X.PropertyChangeMask)
    assert changes(screen) == 0
    desk.do("bezel", "cw")
    desk.do("wait", "still")
    assert (motion_of(screen, guide), changes(screen)) == ([0], 2)
    desk.do("button", "click", "back")


@pytest.mark.parametrize("way", [
    ["100", "280", "260", "180"],
    # A fling, a turn, and a rest before the finger leaves.
    "111 212 204 101 -d 3 --then 267,142,113 --then 173,199,141 --then 173,199,127".split()])
def test_nothing_goes_on_after_a_finger_that_went_aslant(desk, way):
    desk.do("launch")
    desk.do("swipe", *way)
    desk.do("wait", "still")
    desk.do("button", "click", "back")


def test_the_end_of_the_page_is_reached_when_it_is_still(desk, tmp_path):
    desk.do("launch")
    desk.do("wait", "still")
    desk.do("bezel", "cw", 30)
    desk.do("wait", "still")
    desk.do("screenshot", tmp_path / "end.png")
    for _ in range(3):
        desk.do("bezel", "ccw", 30)
        desk.do("bezel", "cw", 30)
        desk.do("wait", "still")
        desk.do("compare", tmp_path / "end.png", "--tolerance", "0")
    desk.do("button", "click", "back")
