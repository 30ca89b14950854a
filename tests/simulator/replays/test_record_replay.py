"""What is done on the watch, recorded as a replay and played."""

import concurrent.futures
import contextlib
import importlib
import os
import random
import re
import shlex
import signal
import subprocess
import threading
import time

import pytest

from simulator.desk import BUILD, Desk
from support.bus import wait_until
from support.display import Display

CENTRE = (400, 370)
BACK_KEY = (628, 238)
POWER_KEY = (628, 502)
CHARGER = (70, 370)
"""On the host's screen, in whose middle the watch's window of 680 pixels is."""

ICON = (180, 257)
"""Of the home face, on the watch's screen."""

SEED = int(os.environ.get("QIVO_WATCH_SEED", "1"))
SECONDS = float(os.environ.get("QIVO_WATCH_RECORDED", "3"))
"""Seconds of random input; from 60 on it is played ten times."""

CHANGING = re.compile(r"^[\d:.]+ |0x[0-9a-f]+")


@pytest.fixture(name="host", scope="module")
def _host():
    with Display("740x740x24", manager=None) as host:
        yield host


@contextlib.contextmanager
def recording(desk, file, *words):
    """Records what is done within."""
    file.unlink(missing_ok=True)
    with subprocess.Popen(desk.command("record", file, *words), env=desk.environment,
                          stderr=subprocess.PIPE, text=True) as recorder:
        wait_until(lambda: file.exists() or recorder.poll() is not None, "the recording's begin")
        try:
            yield
        finally:
            recorder.send_signal(signal.SIGTERM)
            _, told = recorder.communicate(timeout=30)
    assert (recorder.returncode, told) == (0, "")


@pytest.fixture(name="load")
def _load(monkeypatch):
    """Loads a module of the watch, by its name within the package."""
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    # An eye sets it.
    monkeypatch.setenv("XAUTHORITY", "")
    return lambda name: importlib.import_module(f"qivo_watch.{name}")


def client_of(desk, load):
    with pytest.MonkeyPatch.context() as environment:
        environment.setenv("XDG_RUNTIME_DIR", str(desk.runtime))
        return load("command.bus.client").Client(load("state").Folder("watch"))


def recorded(file):
    """The lines after those that set the watch's state."""
    lines = file.read_text(encoding="utf-8").splitlines()
    zone = next(number for number, line in enumerate(lines) if line.startswith("time zone "))
    return lines[zone + 1:]


def log_since(client, count):
    """The log without times and addresses, and without what the toolkit says of a slow machine."""
    return [CHANGING.sub("", line) for line in client.log_lines(count)
            if not line.startswith("ERROR: ecore_animator")]


@pytest.fixture(name="window", scope="module")
def _window(host):
    """A watch in a window."""
    with Desk(host.name) as desk:
        desk.do("start")
        yield desk


class Hand:
    """Does something at random, by mouse or by verb."""

    def __init__(self, desk, host, chance):
        self._desk, self._host, self._chance = desk, host, chance
        self._deeds = [self.turn, self.turn, self.turn, self.drag, self.fling, self.tap,
                       self.charge, self.click, self.darken, self.say, self.say]

    def do_something(self):
        if self._desk.status()["app"] is None:
            self._desk.do("launch")
        # From rest to rest: a page that is caught on its way may stop elsewhere in the next run.
        self._desk.do("wait", "still")
        self._chance.choice(self._deeds)()
        time.sleep(self._chance.choice([0, 0.05, 0.2, 0.8]))

    def end(self):
        self._desk.do("wait", "still")
        if self._desk.status()["app"]:
            self._desk.do("terminate")

    def turn(self):
        self._host.xdotool("mousemove", *CENTRE, "click", "--repeat", self._chance.randint(1, 5),
                           "--delay", self._chance.choice([10, 40, 90]),
                           self._chance.choice([4, 5]))

    def drag(self):
        """Held before it is lifted, as a page that is flung stops where it may, and only one way:
        after a drag that turns back the toolkit's scroller ticks for ever."""
        place, step = self._place(), self._chance.choice([-30, 30])
        moves = [word for number in range(1, self._chance.randint(2, 4)) for word in (
            "mousemove", place[0], place[1] + number * step,
            "sleep", self._chance.choice([0.02, 0.1]))]
        self._host.xdotool("mousemove", *place, "mousedown", 1, *moves, "sleep", 0.1, "mouseup", 1)

    def fling(self):
        place, step = self._place(), self._chance.choice([-20, -8, 8, 20])
        moves = [word for number in range(1, self._chance.randint(3, 6))
                 for word in ("mousemove", place[0], place[1] + number * step, "sleep", 0.02)]
        self._host.xdotool("mousemove", *place, "mousedown", 1, *moves, "mouseup", 1)

    def tap(self):
        self._host.xdotool("mousemove", *self._place(), "click", 1)

    def charge(self):
        self._host.xdotool("mousemove", *CHARGER, "click", 1)

    def click(self):
        self._host.xdotool("mousemove", *BACK_KEY, "mousedown", 1, "sleep",
                           self._chance.choice([0.02, 0.3]), "mouseup", 1)
        # Nothing else comes before the key does.
        wait_until(lambda: not self._desk.status()["app"], "the end of the application")

    def darken(self):
        """Turns the screen off, which ends the guide, and on."""
        for state in ("off", "on"):
            self._host.xdotool("mousemove", *POWER_KEY, "mousedown", 1, "sleep",
                               self._chance.choice([0.02, 0.3]), "mouseup", 1)
            wait_until(lambda state=state: self._desk.status()["screen"] == state,
                       f"a screen that is {state}")

    def say(self):
        self._desk.do(*self._chance.choice([
            ("language", "ko_KR"), ("language", "ar_EG"), ("language", "en_US"),
            ("text-size", "1.5"), ("text-size", "1"), ("motion", "reduced"), ("motion", "full"),
            ("battery", "--percent", 33), ("time", "set", "10:08"), ("bezel", "cw", 2),
            ("touch", 180, 180), ("region", "de_DE"), ("contrast", "high")]))

    def _place(self):
        return (CENTRE[0] + self._chance.randint(-90, 90),
                CENTRE[1] + self._chance.randint(-90, 90))


def test_what_the_mouse_does_is_recorded_with_its_rhythm(window, host, tmp_path):
    file = tmp_path / "run.replay"
    window.do("launch")
    window.do("terminate")
    with recording(window, file):
        window.do("launch")
        window.do("wait", "still")
        host.xdotool("mousemove", *CENTRE, "click", "--repeat", 4, "--delay", 100, 5)
        wait_until(lambda: window.status()["bezel"] == 4, "the bezel turned")
        window.do("wait", "still")
        host.xdotool("mousemove", *CHARGER, "click", 1)
        wait_until(lambda: window.status()["battery"]["state"] == "charging", "the charger")
        host.xdotool("mousemove", CENTRE[0], CENTRE[1] - 60, "mousedown", 1, "sleep", 0.1,
                     "mousemove", *CENTRE, "sleep", 0.3, "mouseup", 1)
        host.xdotool("mousemove", *CENTRE, "click", 1)
        host.xdotool("mousemove", *BACK_KEY, "mousedown", 1, "sleep", 0.4, "mouseup", 1)
        wait_until(lambda: window.status()["app"] is None, "the end of the application")
    window.do("battery", "--discharging")
    done = [line for line in recorded(file) if not line.startswith("wait")]
    number = r"(\d+)"
    shapes = ["launch", f"bezel cw 4 -i {number}", "battery --charging",
              f"swipe 180 120 180 120 -d {number} --then 180,180,10 --then 180,180,{number}",
              "touch 180 180",
              f"button click back -d {number}"]
    found = [re.fullmatch(shape, line) for shape, line in zip(shapes, done, strict=True)]
    assert all(found), done
    # A busy machine only adds to what xdotool waits for.
    assert 100 <= int(found[1][1]) <= 300
    assert 350 <= sum(map(int, found[3].groups())) and 350 <= int(found[5][1])


def test_commands_are_recorded_as_they_were_given(desk, tmp_path, monkeypatch):
    file = tmp_path / "run.replay"
    monkeypatch.chdir(tmp_path)
    given = ["launch --operation=-show --extra 'a=b c' --extra=-d=e", "bezel cw 2 -i 30",
             "swipe 180 250 180 200 -d 50 --then 180,250,40", "language de_DE",
             "battery --percent 12.5 --charging", "time set 10:08", "button click back -d 100"]
    with recording(desk, file):
        desk.refused("time", "thaw")
        for line in given:
            desk.do(*shlex.split(line))
    assert [line for line in recorded(file) if not line.startswith("wait")] == given


def test_the_folder_in_which_a_command_is_given_is_recorded_as_such(desk, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    (tmp_path / "org.example.none.desktop").write_text(
        "[Desktop Entry]\nType=Application\nName=None\nExec=/bin/true\n", encoding="utf-8")
    with recording(desk, tmp_path / "run.replay"):
        desk.do("install", ".")
    desk.do("uninstall", "org.example.none")
    assert recorded(tmp_path / "run.replay")[0] == "install ."


def test_an_ending_in_capitals_means_a_replay_too(desk, tmp_path):
    file = tmp_path / "RUN.REPLAY"
    with recording(desk, file):
        desk.do("bezel", "cw")
    desk.do("play", file)
    assert "bezel cw" in recorded(file)


def test_a_page_that_was_flung_is_not_compared_until_the_application_ends(desk, tmp_path):
    file = tmp_path / "run.replay"
    rests = [["launch"], "swipe 180 250 180 150 -d 50".split(), "bezel ccw 30 -i 0".split(),
             ["terminate"], ["launch"]]
    with recording(desk, file, "--pictures"):
        for number, words in enumerate(rests):
            desk.do(*words)
            if words == ["launch"]:
                wait_until(lambda least=number: file.read_text().count("compare") > bool(least),
                           "the picture")
            else:
                desk.do("wait", "still")
        desk.do("terminate")
    done = [line.split()[0] for line in recorded(file) if not line.startswith("wait")]
    assert done == ["launch", "compare", "swipe", "bezel", "terminate", "launch", "compare",
                    "terminate"]


@pytest.mark.parametrize("points, is_flung", [
    ([(0, 180, 200), (50, 180, 150)], True),
    ([(0, 180, 200), (50, 180, 150), (130, 180, 150)], True),
    ([(0, 180, 200), (50, 180, 150), (160, 180, 150)], False),
    ([(0, 180, 200), (9000, 180, 150)], False), ([(0, 180, 200), (50, 181, 200)], False)])
def test_a_finger_that_leaves_while_it_moves_flings(load, points, is_flung):
    assert load("command.replays.stroke").Stroke(points).is_flung() == is_flung


def test_a_stroke_is_simplified_once_however_often_a_recording_is_written(load, monkeypatch):
    deeds, module = load("command.replays.deeds"), load("command.replays.stroke")
    looks, whole = [], module._simplified
    monkeypatch.setattr(module, "_simplified", lambda points: looks.append(1) or whole(points))
    stroke = module.Stroke([(0, 180, 200), (500, 180, 100)])
    deed = deeds.Deed(deeds.FINGER, {"stroke": stroke}, True, 0, 500, 0, 0, False, None)
    end = deed._replace(method="", began=600)
    written = [list(deeds.lines([deed], end, [], 360)) for _ in range(2)]
    assert written[0] == written[1] and looks == [1]


def test_what_is_done_while_a_rest_is_looked_at_is_not_on_it(desk, tmp_path, load, monkeypatch):
    """A page in Korean is not what was there before the language was set."""
    scribe, file = load("command.replays.scribe"), tmp_path / "run.replay"
    client, read = client_of(desk, load), scribe.tree.read_windows

    def read_later(client):
        if client.status()["language"] == "en_US.UTF-8":
            desk.do("language", "ko_KR")
            desk.do("wait", "still")
        return read(client)
    monkeypatch.setattr(scribe.tree, "read_windows", read_later)
    status = client.status()
    eye = load("command.screen.eye").Eye(status["display"], client.folder.authority)
    with contextlib.closing(eye), concurrent.futures.ThreadPoolExecutor(1) as pool:
        is_over = threading.Event()
        recorder = pool.submit(scribe.record, client, eye, str(file), False,
                               lambda _: is_over.is_set())
        try:
            wait_until(lambda: file.exists() or recorder.done(), "the recording's begin")
            desk.do("launch")
            wait_until(lambda: "language ko_KR\nwait text" in file.read_text(), "the rest")
        finally:
            is_over.set()
        recorder.result()
    before = recorded(file)[:recorded(file).index("language ko_KR")]
    assert [line for line in before if line.startswith("wait text")] == []


def test_a_finger_that_trembles_for_a_minute_is_recorded(load):
    points = [(8 * number, 180 + number % 2 * 80, 180) for number in range(8000)]
    stroke = load("command.replays.stroke").Stroke(points)
    assert stroke.words(360)[0] == "swipe"


def test_a_long_scribble_keeps_its_larger_turns(load):
    stroke = load("command.replays.stroke")
    way = [100, *[124, 100] * 30, *[114, 100] * 30]
    words = stroke.Stroke([(15 * number, x, 180) for number, x in enumerate(way)]).words(360)
    reached = [int(words[3]), *(int(leg.split(",")[0]) for leg in words[8::2])]
    assert len(reached) == stroke.MOST_LEGS and reached.count(124) == 30


def test_a_text_that_looks_like_an_option_is_waited_for(load):
    deeds, grammar = load("command.replays.deeds"), load("command.arguments").Grammar(True)
    end = deeds.Deed("", {}, False, 1, 1, 1, 1, True, deeds.Rest("-x degrees"))
    written = deeds.lines([], end, ["12:00:00.000 I weather: --cold"], 360)
    texts = [getattr(grammar.parse(shlex.split(line)), "text", None) for line in written]
    assert texts == ["--cold", "-x degrees", None]


@pytest.mark.parametrize("text, waited", [
    ("one\u2029two words", "two words"), ("bell\a", "bell"), ("x" * 9000, "x" * 200)])
def test_a_text_that_no_line_can_have_whole_is_waited_for_in_part(load, text, waited):
    assert load("command.replays.deeds").piece_of(text) == waited


def test_an_argument_that_is_longer_than_a_line_leaves_a_replay_that_can_be_read(load, tmp_path):
    deeds, replay = load("command.replays.deeds"), load("command.replays.replay")
    values = {"app": "org.example.none", "extra": {"key": "x" * 9000}}
    deed = deeds.Deed("Launch", values, False, 1, 2, 0, 0, False, None)
    end = deed._replace(method="", began=2)
    file = tmp_path / "run.replay"
    file.write_text("\n".join(deeds.lines([deed], end, [], 360)), encoding="utf-8")
    assert "# cannot be replayed: launch" in file.read_text(encoding="utf-8")
    assert replay.read(file) == []


def test_a_log_that_has_grown_since_it_was_read_loses_no_recording(load):
    deeds = load("command.replays.deeds")
    deed = deeds.Deed("Bezel", {"direction": "cw", "count": 1}, False, 1, 2, 5, 6, False, None)
    end = deed._replace(method="", began=2, first=1)
    read = ["12:00:00.000 I weather: sunny"]
    assert list(deeds.lines([deed], end, read, 360)) == ["wait log sunny", "bezel cw"]


def test_a_log_that_says_the_same_again_and_again_is_soon_looked_through(load):
    deeds = load("command.replays.deeds")
    log = ["12:00:00.000 I weather: sunny"] * 20000
    end = deeds.Deed("", {}, False, 1, 1, len(log), len(log), False, None)
    begin = time.process_time()
    assert not list(deeds.lines([], end, log, 360))
    assert time.process_time() - begin < 2


@pytest.mark.parametrize("before, within", [("thaw", "freeze"), ("freeze", "thaw")])
def test_a_recorded_clock_goes_at_the_end_whatever_was_done_to_it(desk, tmp_path, before, within):
    file = tmp_path / "run.replay"
    desk.run("time", before)
    with recording(desk, file):
        desk.do("time", within)
    desk.run("time", "thaw")
    for _ in range(2):
        desk.do("play", file)
    desk.refused("time", "thaw")


def test_what_the_home_face_launches_is_recorded_as_the_touch_alone(desk, tmp_path):
    file = tmp_path / "run.replay"
    with recording(desk, file, "--pictures"):
        desk.do("touch", *ICON)
        wait_until(lambda: desk.status()["app"], "the application")
        wait_until(lambda: "compare" in file.read_text(), "the picture")
        desk.do("bezel", "cw")
        desk.do("terminate")
    assert recorded(file)[:7] == [
        "touch 180 257", "wait log 'first frame'", "wait text 'Watch, Back key'", "wait still",
        "compare run-pictures/01.png", "bezel cw", "terminate"]
    desk.do("play", file)


@pytest.mark.parametrize("words, complaint", [
    (["run.gif", "--pictures"], "--pictures needs a FILE that ends in .replay"),
    (["run.replay", "--fps", 5], "a replay has no frames")])
def test_an_option_of_the_other_kind_of_recording_is_refused(desk, words, complaint):
    assert complaint in desk.refused("record", *words, status=2)


def test_a_recording_begins_without_an_application_and_where_it_can_be_written(desk, tmp_path):
    assert "No such file" in desk.refused("record", tmp_path / "nowhere" / "run.replay")
    (tmp_path / "run-pictures").touch()
    assert 'run-pictures": File exists' in desk.refused("record", tmp_path / "run.replay",
                                                        "--pictures", "-d", 0.1)
    desk.do("launch")
    assert "is running: a recorded replay begins without" in desk.refused(
        "record", tmp_path / "run.replay")
    assert not (tmp_path / "run.replay").exists()


def test_random_input_is_played_with_the_same_log_and_the_same_pictures(window, host, tmp_path,
                                                                        load):
    """QIVO_WATCH_RECORDED=60 goes on for a minute and plays it ten times; QIVO_WATCH_SEED chooses
    the input."""
    print(f"QIVO_WATCH_SEED={SEED}")
    file = tmp_path / "run.replay"
    hand = Hand(window, host, random.Random(SEED))
    client = client_of(window, load)
    before = client.log_count()
    with recording(window, file, "--pictures"):
        end = time.monotonic() + SECONDS
        while time.monotonic() < end:
            hand.do_something()
        hand.end()
    print("\n".join(recorded(file)))
    told = log_since(client, before)
    assert not [line for line in told if line.startswith("ERR<")]
    for _ in range(10 if SECONDS >= 60 else 1):
        before = client.log_count()
        played = window.run("play", file)
        assert played.stderr == ""
        assert log_since(client, before) == told
