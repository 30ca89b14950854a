"""A watch's beginning and end: starts, several at once, crashes, and nothing left behind."""

import contextlib
import importlib
import os
import pathlib
import signal
import subprocess
import types

import pytest
from Xlib import X
from Xlib import display as xlib
from Xlib.protocol import event

from simulator.desk import BUILD, GUIDE, Desk
from support.bus import wait_until
from support.display import Display
from support.shared_memory import are_left, segments_of

PARTS = ["server", "bus", "manager", "home", "body"]


def kill(pid, number=signal.SIGKILL):
    os.kill(pid, number)


def close_window(display_name):
    """As a desktop closes a window on its user's click."""
    display = xlib.Display(display_name)
    root = display.screen().root
    windows = root.get_full_property(display.get_atom("_NET_CLIENT_LIST"), X.AnyPropertyType)
    close = event.ClientMessage(
        window=display.create_resource_object("window", windows.value[0]),
        client_type=display.get_atom("_NET_CLOSE_WINDOW"), data=(32, [X.CurrentTime, 2, 0, 0, 0]))
    root.send_event(close, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
    display.sync()
    display.close()


def wait_nothing_left(desk):
    wait_until(lambda: not desk.processes(), "the end of all processes")


def memory_kb(pid):
    status = pathlib.Path(f"/proc/{pid}/status").read_text(encoding="utf-8")
    return int(status.partition("VmRSS:")[2].split()[0])


def open_files(pid, kind=""):
    count = 0
    for file in pathlib.Path(f"/proc/{pid}/fd").iterdir():
        # The process may close a file meanwhile.
        with contextlib.suppress(FileNotFoundError):
            count += os.readlink(file).startswith(kind)
    return count


def test_a_stopped_watch_leaves_no_process_and_no_file(desk):
    desk.do("start", "--headless")
    desk.do("launch")
    assert desk.processes()
    desk.do("stop")
    assert not desk.processes()
    assert not list(desk.runtime.iterdir())
    assert "is not running" in desk.refused("stop")


def test_a_followed_log_ends_well_with_the_watch(desk):
    desk.do("start", "--headless")
    with subprocess.Popen(desk.command("log", "--follow"), env=desk.environment, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE) as following:
        assert "the watch is ready" in following.stdout.readline()
        desk.do("stop")
        assert (following.wait(30), following.stderr.read()) == (0, "")


def test_a_recording_ends_well_with_the_watch(desk, tmp_path):
    desk.do("start", "--headless")
    file = tmp_path / "run.apng"
    with subprocess.Popen(desk.command("record", file, "--fps", "10"), env=desk.environment,
                          text=True, stderr=subprocess.PIPE) as recording:
        # The encoder gets a frame when the screen changes.
        wait_until(lambda: desk.do("button", "click", "power") or list(tmp_path.iterdir()),
                   "a first frame")
        desk.do("stop")
        assert (recording.wait(30), recording.stderr.read()) == (0, "")
    assert file.stat().st_size > 1000 and list(tmp_path.iterdir()) == [file]


def test_a_recording_of_a_screen_that_hangs_leaves_no_file(desk, tmp_path):
    desk.do("start", "--headless")
    with subprocess.Popen(desk.command("record", tmp_path / "run.apng", "--fps", "10"),
                          env=desk.environment, text=True, stderr=subprocess.PIPE) as recording:
        wait_until(lambda: desk.do("button", "click", "power") or list(tmp_path.iterdir()),
                   "a first frame")
        kill(desk.status()["processes"]["server"], signal.SIGSTOP)
        assert recording.wait(30) == 1
        assert "the X server does not answer" in recording.stderr.read()
    assert not list(tmp_path.iterdir())


def test_a_replay_whose_watch_ends_between_two_commands_says_so(desk, tmp_path, monkeypatch):
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    for key in ("XDG_RUNTIME_DIR", "XAUTHORITY"):
        monkeypatch.setenv(key, str(desk.runtime))
    replay = importlib.import_module("qivo_watch.command.replays.replay")
    desk.do("start", "--headless")
    file = tmp_path / "run.replay"
    file.write_text("bezel cw\nbezel cw\n", encoding="utf-8")
    read = replay.read

    class Steps(list):
        def __iter__(self):
            first, second = super().__iter__()
            yield first
            kill(desk.status()["processes"]["server"])
            yield second
    monkeypatch.setattr(replay, "read", lambda given: Steps(read(given)))
    with pytest.raises(importlib.import_module("qivo_watch.errors").WatchError) as told:
        replay.play(file, types.SimpleNamespace(name="watch", update=False, trace=None, junit=None))
    assert "run.replay:2: bezel cw: the watch has ended" in str(told.value)


class EndingFolder:
    """Of a watch whose guard is still clearing up at the first looks."""

    name = "watch"

    def __init__(self):
        self.looks = 3

    def is_held(self):
        self.looks -= 1
        return self.looks > 0

    def take_note(self):
        assert self.looks == 0
        return "it broke"


@pytest.mark.parametrize("tell", ["absence", "ended"])
def test_who_is_told_of_a_watchs_end_may_start_another_at_once(monkeypatch, tell):
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    life = importlib.import_module("qivo_watch.command.life")
    assert "has ended: it broke" in str(getattr(life, tell)(EndingFolder()))


@pytest.mark.parametrize("program", ["Xvfb", "dbus-daemon", "openbox"])
def test_a_program_that_is_not_installed_is_named_and_nothing_is_left(desk, tmp_path, program):
    for installed in pathlib.Path("/usr/bin").iterdir():
        if installed.name != program:
            (tmp_path / installed.name).symlink_to(installed)
    desk.environment["PATH"] = str(tmp_path)
    assert f"did not start: {program} is not installed" in desk.refused("start", "--headless")
    wait_nothing_left(desk)
    assert not list(desk.runtime.iterdir())


@pytest.mark.parametrize("verb", [["status"], ["launch"], ["bezel", "cw"], ["log"],
                                  ["screenshot", "x.png"], ["wait", "still"]])
def test_without_a_watch_a_command_says_so(desk, verb):
    assert 'watch "watch" is not running (qivo-watch start starts it)' in desk.refused(*verb)


def test_a_name_that_runs_is_not_started_again_and_another_one_is(desk):
    desk.do("start", "--headless", "--language", "ko_KR", "--charging", "--at", "07:00")
    assert 'watch "watch" is already running' in desk.refused("start", "--headless")
    desk.do("--name", "second", "start", "--headless", "--size", "390")
    first, second = desk.status(), desk.status("--name", "second")
    assert (first["language"], first["battery"]["state"], first["size"]) == (
        "ko_KR.UTF-8", "charging", 360)
    assert "T07:0" in first["time"]["now"]
    assert (second["language"], second["battery"]["state"], second["size"]) == (
        "en_US.UTF-8", "discharging", 390)
    desk.do("--name", "second", "bezel", "ccw", "2")
    assert (desk.status()["bezel"], desk.status("--name", "second")["bezel"]) == (0, -2)
    desk.do("--name", "second", "stop")
    assert desk.status()["running"]


def test_what_a_dead_watch_has_left_is_ended_by_the_next_start(desk):
    desk.do("start", "--headless")
    before = desk.processes()
    keeper, guard = (desk.status()["processes"][name] for name in ("keeper", "guard"))
    kill(guard, signal.SIGSTOP)
    kill(keeper, signal.SIGSTOP)
    kill(guard)
    assert desk.runtime.joinpath("qivo-watch", "watch").is_dir()
    desk.do("start", "--headless")
    assert not set(before) & set(desk.processes())
    assert desk.status()["app"] is None


@pytest.mark.parametrize("part", PARTS)
def test_a_part_that_dies_is_named_and_everything_ends(desk, part):
    desk.do("start", "--headless")
    desk.do("launch")
    kill(desk.status()["processes"][part])
    wait_nothing_left(desk)
    complaint = desk.refused("status")
    assert 'watch "watch" has ended: the ' in complaint and "was killed by SIGKILL" in complaint
    assert not list(desk.runtime.iterdir())


def test_a_command_at_work_is_told_that_the_watch_has_ended(desk):
    desk.do("start", "--headless")
    with subprocess.Popen(desk.command("button", "click", "back", "-d", "60000"), text=True,
                          env=desk.environment, stderr=subprocess.PIPE) as pressing:
        wait_until(lambda: desk.status()["keysDown"] == ["back"], "the key down")
        kill(desk.status()["processes"]["server"])
        assert pressing.wait(30) == 1
        assert "has ended" in pressing.stderr.read()


@pytest.mark.parametrize("victim", ["keeper", "guard"])
def test_a_killed_keeper_leaves_nothing(desk, victim):
    desk.do("start", "--headless")
    desk.do("launch")
    kill(desk.status()["processes"][victim])
    wait_nothing_left(desk)
    wait_until(lambda: not list(desk.runtime.iterdir()), "the end of the folder")
    assert "is not running" in desk.refused("status")


def test_a_killed_application_is_told_and_the_watch_goes_on(desk):
    desk.do("start", "--headless")
    desk.do("launch")
    kill(desk.status()["app"]["pid"], signal.SIGABRT)
    assert f"{GUIDE} was killed by SIGABRT" in desk.refused("wait", "exit")
    assert desk.status()["lastEnd"] == {"app": GUIDE, "status": 0, "signal": signal.SIGABRT}
    desk.do("launch")
    assert desk.status()["app"]["id"] == GUIDE


def test_an_application_that_hangs_is_told_and_ended_with_the_watch(desk):
    desk.do("start", "--headless")
    desk.do("launch")
    kill(desk.status()["app"]["pid"], signal.SIGSTOP)
    assert f"{GUIDE} does not answer" in desk.refused("bezel", "cw")
    desk.do("stop")


def test_a_wait_for_the_screen_is_told_that_the_watch_has_ended(desk):
    desk.do("start", "--headless")
    desk.do("time", "freeze")
    desk.do("wait", "still")
    with subprocess.Popen(desk.command("wait", "frame", "-t", "60"), env=desk.environment,
                          text=True, stderr=subprocess.PIPE) as waiting:
        wait_until(lambda: open_files(waiting.pid, "socket:") == 2, "a look at bus and screen")
        kill(desk.status()["processes"]["server"])
        assert waiting.wait(30) == 1
        told = waiting.stderr.read()
    assert told.startswith("qivo-watch: the watch has ended") and told.count("\n") == 1


def test_a_level_of_the_users_does_not_hide_the_first_frame(desk):
    desk.environment["DLOG_LEVEL"] = "error"
    desk.do("start", "--headless")
    desk.do("launch")


def test_a_place_where_no_watch_can_live_is_told(desk):
    (desk.runtime / "qivo-watch").touch()
    for words in (["start", "--headless"], ["status"]):
        assert "qivo-watch: " in desk.refused(*words)
    desk.environment["XDG_RUNTIME_DIR"] = "/proc"
    assert "/proc/qivo-watch: No such file" in desk.refused("start", "--headless")


def test_without_a_display_a_start_says_what_to_do(desk):
    assert "no display (DISPLAY is not set): use --headless or --web" in desk.refused("start")
    for name in (":4711", "localhost:99999"):
        desk.environment["DISPLAY"] = name
        assert f'"{name}" cannot be opened' in desk.refused("start")
    assert not list(desk.runtime.iterdir())


def test_on_a_display_the_watch_is_a_window_whose_end_is_the_watch_s():
    with Display("1000x1000x24") as display, Desk(display.name) as desk:
        desk.do()
        close_window(display.name)
        wait_nothing_left(desk)


def test_a_killed_watch_leaves_no_shared_memory():
    with Display("1000x1000x24") as display, Desk(display.name) as desk:
        desk.do("start")
        desk.do("launch")
        segments = segments_of(desk.processes())
        assert segments
        kill(desk.status()["processes"]["keeper"])
        wait_nothing_left(desk)
        wait_until(lambda: not are_left(segments), "the end of the shared memory")


def test_an_installed_watch_works_wherever_it_is_moved(desk, tmp_path):
    subprocess.run(["meson", "install", "-C", BUILD, "--no-rebuild", "--destdir",
                    tmp_path / "root"], check=True, capture_output=True)
    command = next((tmp_path / "root").rglob("bin/qivo-watch"))
    place = tmp_path / "moved"
    command.parents[1].rename(place)
    for words in (["start", "--headless"], ["launch"], ["stop"]):
        subprocess.run([place / "bin" / "qivo-watch", *words], env=desk.environment, check=True)


def test_a_body_that_fails_tells_why(desk, tmp_path):
    subprocess.run(["meson", "install", "-C", BUILD, "--no-rebuild", "--destdir", tmp_path],
                   check=True, capture_output=True)
    body = next(tmp_path.rglob("libexec/qivo-watch/qivo-watch-body"))
    body.write_text("#!/bin/sh\necho one >&2\necho qivo-watch-body: no reason >&2\nexit 1\n")
    started = subprocess.run([next(tmp_path.rglob("bin/qivo-watch")), "start", "--headless"],
                             env=desk.environment, capture_output=True, text=True)
    assert started.returncode == 1
    assert started.stderr == ("qivo-watch: the watch did not start: the body ended with status 1 "
                              "(qivo-watch-body: no reason)\n")


@pytest.mark.parametrize("size", [390, 454])
def test_the_page_follows_the_size_of_the_screen(desk, tmp_path, size):
    file = tmp_path / "page.png"
    desk.do("start", "--headless", "--size", size)
    desk.do("launch")
    desk.do("wait", "still")
    desk.do("screenshot", file)
    identified = subprocess.run(["identify", "-format", "%w %h %k", file], check=True, text=True,
                                capture_output=True).stdout.split()
    assert identified[:2] == [str(size), str(size)] and int(identified[2]) > 200


def test_many_launches_leave_no_process_no_file_and_no_growth(desk):
    """QIVO_WATCH_LAUNCHES=200 makes the long run of it."""
    launches = int(os.environ.get("QIVO_WATCH_LAUNCHES", "10"))
    desk.do("start", "--headless")
    parts = desk.status()["processes"]

    def pidfds():
        return open_files(parts["keeper"], "anon_inode:[pidfd]")

    held = pidfds()

    def launch_and_leave():
        desk.do("launch")
        desk.do("button", "click", "back")
        # The keeper lets go of an application a moment after it has told of its end.
        wait_until(lambda: pidfds() == held, "its release")

    def measure():
        # The bus is measured too: what clients leave behind would pile up there.
        return ([memory_kb(parts[name]) for name in ("keeper", "guard", "bus", "home", "body")],
                open_files(parts["keeper"]), sorted(desk.processes()),
                sorted(str(path) for path in desk.runtime.rglob("*")))

    for _ in range(max(2, launches // 4)):
        launch_and_leave()
    memory, files, processes, paths = measure()
    for _ in range(launches):
        launch_and_leave()
    memory_after, files_after, processes_after, paths_after = measure()
    assert (files_after, processes_after, paths_after) == (files, processes, paths)
    for before, after in zip(memory, memory_after):
        assert after - before < 2000 + 10 * launches, (memory, memory_after)
