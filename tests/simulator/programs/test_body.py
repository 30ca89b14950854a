"""The watch's body: what it shows, and what the mouse does on it."""

import math
import subprocess

import dbus
import numpy
import pytest
from PIL import Image
from Xlib import X, display
from Xlib.protocol import event

from simulator.painter import Painter
from simulator.programs.watch import BODY, KEEPER, PROGRAMS, Watch
from support.bus import wait_until

CENTRE = (370, 340)
BACK_KEY = (598, 208)
POWER_KEY = (598, 472)
PLUG = (40, 340)
PLUG_BEHIND = (112, 340)
"""Where only a plugged charger is."""

ONE = {"count": 1, "interval": 0}
CLOCKWISE = ("cw", ONE)
PLUGGED, UNPLUGGED = ({"state": "charging"},), ({"state": "discharging"},)

RED, WHITE = 0xFF0000, 0xFFFFFF


def pixel(target, x, y):
    rgb = subprocess.run(["import", "-display", target.name, "-window", "root", "-crop",
                          f"1x1+{x}+{y}", "-depth", "8", "rgb:-"], check=True,
                         capture_output=True).stdout
    return tuple(rgb[:3])


def wait_pixel(target, place, colour):
    rgb = tuple(colour.to_bytes(3, "big"))
    wait_until(lambda: pixel(target, *place) == rgb, f"{rgb} at {place}")


def on_ring(degrees):
    """A place on the ring, clockwise from the right."""
    angle = math.radians(degrees)
    return round(CENTRE[0] + 215 * math.cos(angle)), round(CENTRE[1] + 215 * math.sin(angle))


def ask_to_close(target, name):
    """What the button of a window's frame does."""
    found, = target.xdotool("search", "--classname", f"^{name}$")
    connection = display.Display(target.name)
    request = event.ClientMessage(window=connection.create_resource_object("window", int(found)),
                                  client_type=connection.intern_atom("_NET_CLOSE_WINDOW"),
                                  data=(32, [X.CurrentTime, 2, 0, 0, 0]))
    connection.screen().root.send_event(request, event_mask=X.SubstructureRedirectMask)
    connection.sync()
    connection.close()


@pytest.fixture(name="shared_watch", scope="module")
def fixture_shared_watch():
    with Watch() as watch:
        yield watch


@pytest.fixture(name="watch")
def fixture_watch(shared_watch):
    """A watch at rest; its screen, its bus and its keeper go on to the next test."""
    yield shared_watch
    shared_watch.reset()


@pytest.fixture(name="own_watch")
def fixture_own_watch():
    """For a test that breaks it."""
    with Watch() as watch:
        yield watch


def test_shows_what_is_drawn_on_the_screen_and_fetches_nothing_while_it_stands_still(watch):
    watch.start_body()
    with Painter(watch.screen) as painter:
        for colour in 0x00FF00, RED:
            painter.paint(colour)
            wait_pixel(watch.host, CENTRE, colour)
        painter.paint(WHITE, 100, 100, 3, 2)
        wait_pixel(watch.host, (190 + 101, 160 + 101), WHITE)
        assert pixel(watch.host, 190 + 98, 160 + 101) == (255, 0, 0)
        frames = watch.frames()
        desk = pixel(watch.host, *PLUG_BEHIND)
        watch.set(BezelPosition=dbus.Int32(5), Plugged=True)
        wait_until(lambda: pixel(watch.host, *PLUG_BEHIND) != desk, "the charger at the case")
        assert watch.frames() == frames


@pytest.mark.parametrize("zoom, slack", [(0.5, 1), (1, 0), (1.37, 0), (3, 0)])
def test_a_touch_arrives_at_the_pixel_under_the_mouse(watch, zoom, slack):
    watch.start_body(zoom)
    unit = round(680 * zoom) / 680
    side = round(360 * unit)
    corner = round(370 * unit - side / 2), round(340 * unit - side / 2)
    with Painter(watch.screen) as painter:
        for x, y in (180, 180), (1, 180), (358, 180), (180, 1), (180, 358), (54, 54), (306, 305):
            place = [corner[0] + int((x + 0.5) * side / 360),
                     corner[1] + int((y + 0.5) * side / 360)]
            watch.host.xdotool("mousemove", *place, "click", 1)
            gestures = []
            wait_until(lambda seen=gestures: seen.extend(painter.gestures()) or
                       [X.ButtonPress, X.ButtonRelease] == [kind for kind, *_ in seen
                                                            if kind != X.MotionNotify], "a touch")
            assert all(abs(gesture[1] - x) <= slack and abs(gesture[2] - y) <= slack
                       for gesture in gestures), (x, y, gestures)


def test_a_finger_that_is_dragged_beyond_the_screen_stays_at_its_edge(watch):
    watch.start_body()
    with Painter(watch.screen) as painter:
        watch.host.xdotool("mousemove", *CENTRE, "mousedown", 1, "mousemove", 5, 340,
                           "mouseup", 1)
        seen = []
        wait_until(lambda: seen.extend(painter.gestures()) or seen[-1:] and
                   seen[-1][0] == X.ButtonRelease, "the finger lifted")
        assert seen[0] == (X.ButtonPress, 180, 180)
        assert seen[-1] == (X.ButtonRelease, 0, 180)
    assert watch.calls("SetBattery") == []


@pytest.mark.parametrize("place, key", [(BACK_KEY, "back"), (POWER_KEY, "power")])
def test_a_key_is_pushed_as_long_as_the_button_is_held(watch, place, key):
    watch.start_body()
    watch.host.xdotool("mousemove", *place, "mousedown", 1)
    watch.wait_keys(("PushKey", key))
    watch.host.xdotool("mousemove", *CENTRE, "mouseup", 1)
    watch.wait_keys(("PushKey", key), ("ReleaseKey", key))


def turns(watch):
    """The ways of all detents so far."""
    return [way for way, options in watch.calls("Bezel") for _ in range(options["count"])]


def test_a_notch_of_the_wheel_is_a_detent_anywhere(watch):
    watch.start_body(screen=(1000, 680))
    watch.host.xdotool("mousemove", *CENTRE, "click", 5, "click", 4, "mousemove", 5, 5,
                       "click", 5, "mousemove", 995, 5, "click", 4)
    wait_until(lambda: len(turns(watch)) == 4, "four detents")
    assert turns(watch) == ["cw", "ccw", "cw", "ccw"]


def test_a_burst_of_notches_is_told_in_order_and_before_the_key_that_follows(watch):
    watch.start_body()
    watch.host.xdotool("mousemove", *CENTRE, "click", "--repeat", 300, "--delay", 0, 5,
                       "click", "--repeat", 40, "--delay", 0, 4, "mousemove", *BACK_KEY,
                       "click", 1)
    wait_until(lambda: len(watch.keys()) == 2, "the key")
    assert turns(watch) == ["cw"] * 300 + ["ccw"] * 40
    names = [name for name, _ in watch.all_calls()]
    assert names[-2:] == ["PushKey", "ReleaseKey"]


@pytest.mark.parametrize("key, named", [("Escape", "back"), ("BackSpace", "back"), ("p", "power"),
                                        ("XF86Back", "back")])
def test_a_key_of_the_keyboard_is_a_key_of_the_watch_as_long_as_it_is_held(watch, key, named):
    watch.start_body()
    watch.host.xdotool("keydown", key)
    watch.wait_keys(("PushKey", named))
    watch.host.xdotool("keyup", key)
    watch.wait_keys(("PushKey", named), ("ReleaseKey", named))


def test_the_arrow_keys_turn_the_bezel_and_c_plugs_the_charger(watch):
    watch.start_body()
    passed = []
    for key, direction in (("Right", "cw"), ("Down", "cw"), ("Left", "ccw"), ("Up", "ccw")):
        watch.host.xdotool("key", key)
        passed.append((direction, ONE))
        watch.wait_calls("Bezel", passed)
    for plugged in (True, False):
        watch.host.xdotool("key", "c")
        wait_until(lambda wanted=plugged: watch.get("Plugged") == wanted, "the charger")
    assert watch.calls("SetBattery") == [PLUGGED, UNPLUGGED]


def test_keys_together_with_ctrl_or_alt_are_the_desktops(watch):
    watch.start_body()
    watch.host.xdotool("key", "ctrl+p", "key", "alt+Escape", "key", "super+c", "key", "Right")
    watch.wait_calls("Bezel", [CLOCKWISE])
    assert watch.keys() == [] and watch.calls("SetBattery") == []


def test_a_key_that_is_held_when_the_window_loses_the_focus_is_released(watch):
    watch.start_body()
    with Painter(watch.host) as other:
        watch.host.xdotool("keydown", "p")
        watch.wait_keys(("PushKey", "power"))
        other.take_focus()
        watch.wait_keys(("PushKey", "power"), ("ReleaseKey", "power"))
        watch.host.xdotool("keyup", "p")


def test_dragging_the_ring_passes_a_detent_every_15_degrees(watch):
    watch.start_body()
    watch.host.xdotool("mousemove", *on_ring(90), "mousedown", 1)
    passed = []
    for angle, direction in (107, "cw"), (122, "cw"), (100, "ccw"):
        watch.host.xdotool("mousemove", *on_ring(angle))
        passed.append((direction, ONE))
        watch.wait_calls("Bezel", passed)
    watch.host.xdotool("mouseup", 1, "mousemove", *on_ring(200), "click", 5)
    watch.wait_calls("Bezel", [*passed, CLOCKWISE])


def test_a_click_on_the_charger_plugs_and_unplugs_it(watch):
    watch.start_body()
    watch.host.xdotool("mousemove", *PLUG, "click", 1)
    watch.wait_calls("SetBattery", [PLUGGED])
    watch.host.xdotool("click", 1)
    watch.wait_calls("SetBattery", [PLUGGED, UNPLUGGED])


def test_a_window_of_another_shape_shows_the_watch_as_large_as_it_can_in_the_middle(watch):
    watch.start_body(screen=(1000, 340))
    with Painter(watch.screen) as painter:
        painter.paint(RED)
        wait_pixel(watch.host, (330 + 185, 170), RED)
        assert pixel(watch.host, 330 + 185 - 88, 170) == (255, 0, 0)
        for place in (5, 5), (5, 335), (995, 5), (995, 335):
            assert min(pixel(watch.host, *place)) > 150, "the desk is light"
        watch.host.xdotool("mousemove", 330 + 185, 170, "click", 1, "mousemove", 330 + 299, 104,
                           "click", 1)
        wait_until(lambda: any(kind == X.ButtonRelease and abs(x - 180) <= 1 and abs(y - 180) <= 1
                               for kind, x, y in painter.gestures()), "a touch")
        watch.wait_keys(("PushKey", "back"), ("ReleaseKey", "back"))


def test_the_watch_follows_each_new_size_of_its_window(watch):
    watch.start_body(screen=(1400, 1400), manager=None)
    window, = watch.host.xdotool("search", "--classname", "^qivo-watch$")
    with Painter(watch.screen) as painter:
        painter.paint(RED)
        corner = (1400 - 680) // 2
        wait_pixel(watch.host, (corner + CENTRE[0], corner + CENTRE[1]), RED)
        for side in 1000, 400, 680:
            watch.host.xdotool("windowsize", window, side, side)
            centre = corner + side * 370 // 680, corner + side * 340 // 680
            black = centre[0] + side * 182 // 680, centre[1]
            # What was there may already be red, or not yet black, in the size before.
            wait_until(lambda red=(centre[0] + side * 178 // 680, centre[1]), black=black:
                       pixel(watch.host, *red) == (255, 0, 0) and
                       pixel(watch.host, *black)[0] < 255, f"the watch {side} pixels large")


def test_without_a_window_manager_the_watch_is_in_the_middle_and_has_the_keyboard(watch):
    watch.start_body(screen=(1000, 800), manager=None)
    with Painter(watch.screen) as painter:
        painter.paint(RED)
        wait_pixel(watch.host, (160 + CENTRE[0], 60 + CENTRE[1]), RED)
    watch.host.xdotool("mousemove", 5, 5, "key", "Escape")
    watch.wait_keys(("PushKey", "back"), ("ReleaseKey", "back"))
    watch.host.xdotool("mousemove", 160 + 5, 60 + 5, "click", 5)
    watch.wait_calls("Bezel", [CLOCKWISE])


@pytest.mark.parametrize("manager", ["openbox", "xfwm4"])
def test_a_window_manager_that_comes_and_one_that_goes_are_borne(own_watch, manager):
    body = own_watch.start_body(screen=(1000, 800), manager=None)
    with Painter(own_watch.screen) as painter:
        painter.paint(RED)
        wait_pixel(own_watch.host, (530, 400), RED)
        own_watch.host.start_manager(manager)
        ask_to_close(own_watch.host, "qivo-watch")
        own_watch.wait_calls("Stop", [()])
        painter.paint(WHITE)
        wait_pixel(own_watch.host, (530, 400), WHITE)
        own_watch.host.end_manager()
        painter.paint(RED)
        wait_pixel(own_watch.host, (500, 400), RED)
        assert body.poll() is None


def test_the_window_has_an_icon_and_the_title_that_it_was_given(watch):
    watch.start_body(1, "--title", "Qivo Watch: s\u00e9cond")
    connection = display.Display(watch.host.name)
    found, = watch.host.xdotool("search", "--classname", "^qivo-watch$")
    window = connection.create_resource_object("window", int(found))
    title, icon = (window.get_full_property(connection.intern_atom(name), X.AnyPropertyType).value
                   for name in ("_NET_WM_NAME", "_NET_WM_ICON"))
    connection.close()
    assert title.decode() == "Qivo Watch: s\u00e9cond"
    width, height, *pixels = icon
    assert width == height == 128 and len(pixels) == width * height
    alpha = numpy.array(pixels).reshape(height, width) >> 24
    assert alpha[0, 0] == 0 and alpha[height // 2, width // 2] == 255


def test_closing_the_window_stops_the_watch(watch):
    body = watch.start_body()
    ask_to_close(watch.host, "qivo-watch")
    watch.wait_calls("Stop", [()])
    assert body.poll() is None


def read(file):
    return numpy.asarray(Image.open(file).convert("RGBA"), dtype=int)


@pytest.mark.parametrize("size", [360, 390, 454])
def test_a_picture_shows_the_disc_round_and_the_surroundings_transparent(tmp_path, size):
    with Watch(size) as watch, Painter(watch.screen) as painter:
        painter.paint(RED)
        watch.start_headless_body()
        watch.picture(tmp_path / "watch.png")
        picture = read(tmp_path / "watch.png")
    side = round(size * 680 / 360)
    assert picture.shape == (side, side, 4)
    assert picture[0, -1, 3] == 0 and picture[0, 0, 3] == 0
    left, top = round(side * 370 / 680 - size / 2), round(side * 340 / 680 - size / 2)
    screen = picture[top:top + size, left:left + size]
    distance = numpy.hypot(*(numpy.indices((size, size)) + 0.5 - size / 2))
    # Around the disc is black glass; beyond that the ring's metal, which is not the disc's matter.
    red = numpy.where(distance < size / 2 + 4, screen[:, :, 0], 0)
    assert (red == red[::-1]).all() and (red == red[:, ::-1]).all() and (red == red.T).all()
    assert (red[distance < size / 2 - 1] == 255).all()
    assert (red[distance > size / 2 + 1] == 0).all()
    assert ((red > 0) & (red < 255)).any()


def test_a_picture_shows_keys_ring_and_charger_as_they_are(watch, tmp_path):
    def shown(**properties):
        watch.set(**properties)
        # The body draws the state that it got before the request.
        watch.picture(tmp_path / "watch.png")
        return read(tmp_path / "watch.png")

    watch.start_headless_body()
    places = {"BackPressed": (BACK_KEY, 24), "PowerPressed": (POWER_KEY, 24),
              "Plugged": ((105, 340), 14), "BezelPosition": ((370, 124), 14)}
    before = shown()
    for name, ((x, y), around) in places.items():
        after = shown(**{name: dbus.Int32(3) if name == "BezelPosition" else True})
        area = (slice(y - around, y + around), slice(x - around, x + around))
        assert (before[area] != after[area]).any(), name
        before = after


def test_a_picture_that_cannot_be_is_refused_in_one_line(watch):
    process = watch.start_headless_body()
    for file, body, said in (("watch.png", True, "absolute"), ("/watch.jpg", True, ".png"),
                             ("/nowhere/watch.png", True, "/nowhere/watch.png"),
                             ("/tmp/watch.png", False, "body")):
        with pytest.raises(dbus.DBusException, match=said) as refusal:
            watch.picture(file, body)
        assert "\n" not in refusal.value.get_dbus_message()
    assert process.poll() is None


def test_a_call_that_fails_is_told_in_one_line_and_the_body_goes_on(own_watch):
    body = own_watch.start_body()
    own_watch.fail("Bezel", "no window is there\nto turn")
    own_watch.host.xdotool("mousemove", *CENTRE, "click", 5)
    line = next(line for line in body.stderr if line.startswith("qivo-watch-body"))
    assert line == "qivo-watch-body: Bezel: no window is there to turn\n"
    own_watch.host.xdotool("mousemove", *PLUG, "click", 1)
    own_watch.wait_calls("SetBattery", [PLUGGED])


def test_properties_of_a_wrong_type_are_passed_over(watch):
    body = watch.start_headless_body()
    for name in "BezelPosition", "Charging", "Percentage", "BackPressed":
        watch.emit_changed({name: "nonsense"})
    watch.set(BezelPosition=dbus.Int32(2))
    assert watch.frames() > 0
    assert body.poll() is None


def said_by(process):
    return [line for line in process.stderr if line.startswith("qivo-watch")]


def test_a_screen_that_dies_is_told_in_one_line_with_status_1(own_watch):
    body = own_watch.start_headless_body()
    own_watch.screen.kill_server()
    assert body.wait(timeout=10) == 1
    assert said_by(body) == ["qivo-watch-body: the watch's screen has gone\n"]


def test_ends_with_the_bus(own_watch):
    body = own_watch.start_headless_body()
    own_watch.bus.die()
    assert body.wait(timeout=10) == 0
    assert said_by(body) == ["qivo-watch-body: the bus has gone\n"]


def test_ends_with_the_keeper_and_on_sigterm(own_watch):
    body = own_watch.start_headless_body()
    body.terminate()
    assert body.wait(timeout=10) == 0
    wait_until(lambda: not own_watch.bus.has_owner(BODY), "the name free")
    body = own_watch.start_headless_body()
    own_watch.bus._stop(KEEPER)
    assert (body.wait(timeout=10), said_by(body)) == (0, [])


@pytest.mark.parametrize("arguments, status, said", [
    ([], 2, "--size is missing"), (["--size", "100"], 2, '"100"'),
    (["--size", "360"], 2, "--screen is missing"), (["--size", "360", "--side", "0"], 2, '"0"'),
    (["--zap"], 2, '"--zap"'), (["--size", "360", "--screen", ":77777"], 1, ":77777"),
    (["--size", "390", "--screen", "{screen}"], 1, "360x360")])
def test_what_it_cannot_start_with_is_told_in_one_line(watch, arguments, status, said):
    named = [argument.replace("{screen}", watch.screen.name) for argument in arguments]
    result = subprocess.run([PROGRAMS["body"], *named], capture_output=True, text=True,
                            env=watch.environment(ELM_ENGINE="buffer"), timeout=30)
    assert (result.returncode, result.stdout) == (status, "")
    assert result.stderr.count("\n") == 1 and said in result.stderr
