"""A watch that hangs somewhere: each command gives up soon and says where, and it can be ended."""

import concurrent.futures
import contextlib
import importlib
import os
import pathlib
import signal
import socket
import subprocess
import sys
import threading
import time

import pytest

from simulator.desk import BUILD, GUIDE, Desk
from support.bus import wait_until
from support.display import Display

LIMIT_S = 5
"""For a command to give up, on a machine that has time for it."""

COMMANDS = {"call": ["bezel", "cw"], "log": ["log"], "screen": ["screenshot", "x.png"],
            "body": ["screenshot", "--body", "x.png"],
            "still": ["wait", "still", "-t", "60"], "change": ["wait", "frame", "-t", "60"],
            "line": ["wait", "log", "never said", "-t", "60"]}


@pytest.fixture(name="desk")
def _desk():
    with Desk() as desk:
        desk.do("start", "--headless")
        desk.do("launch")
        yield desk


def stop_running(desk, part):
    os.kill(desk.status()["processes"][part], signal.SIGSTOP)


def refused_soon(desk, *commands):
    """What commands say that are at work at a time, and give up."""
    def complaint_of(words):
        begin = time.monotonic()
        complaint = desk.refused(*words)
        assert time.monotonic() - begin < LIMIT_S + waiting_s(), words
        return complaint
    with concurrent.futures.ThreadPoolExecutor() as pool:
        return list(pool.map(complaint_of, commands))


def waiting_s():
    """Seconds that a process may wait for a processor, by the load of the last minute."""
    return max(0.0, os.getloadavg()[0] / os.cpu_count() - 1)


@pytest.mark.parametrize("part, label, commands", [
    ("keeper", "the keeper", [name for name in COMMANDS if name != "body"]),
    ("bus", "the message bus", COMMANDS),
    ("server", "the X server", ["call", "screen", "still", "change"]),
    ("body", "the body", ["body"])])
def test_a_command_gives_up_and_says_what_hangs(desk, part, label, commands):
    stop_running(desk, part)
    for complaint in refused_soon(desk, *(COMMANDS[command] for command in commands)):
        assert f"the watch hangs: {label} does not answer (qivo-watch stop ends it)" in complaint


@pytest.mark.parametrize("part, label, is_ending", [
    ("keeper", "the keeper", False), ("bus", "the message bus", False),
    ("bus", "the message bus", True), ("server", "the X server", False),
    ("server", "the X server", True)])
def test_a_recorder_of_what_is_done_gives_up_and_says_what_hangs(desk, tmp_path, part, label,
                                                                 is_ending):
    desk.do("terminate")
    file = tmp_path / "run.replay"
    with subprocess.Popen(desk.command("record", file), env=desk.environment,
                          stderr=subprocess.PIPE, text=True) as recorder:
        wait_until(file.exists, "the recording's begin")
        desk.do("bezel", "cw")
        stop_running(desk, part)
        if is_ending:
            recorder.terminate()
        try:
            _, complaint = recorder.communicate(timeout=LIMIT_S + waiting_s())
        finally:
            recorder.kill()
    assert recorder.returncode == 1
    assert f"the watch hangs: {label} does not answer (qivo-watch stop ends it)" in complaint
    assert "bezel cw" in file.read_text(encoding="utf-8")


def test_a_replay_gives_up_as_soon_as_a_command_and_leaves_a_page(desk, tmp_path):
    file = tmp_path / "run.replay"
    file.write_text("bezel cw\nwait log never -t 60\n", encoding="utf-8")
    with subprocess.Popen(desk.command("play", file), env=desk.environment,
                          stderr=subprocess.PIPE, text=True) as player:
        wait_until(lambda: desk.status()["bezel"] == 1, "the first step")
        stop_running(desk, "keeper")
        try:
            _, complaint = player.communicate(timeout=LIMIT_S + waiting_s())
        finally:
            player.kill()
    assert player.returncode == 6
    assert "the watch hangs: the keeper does not answer" in complaint
    assert (tmp_path / "run-trace" / "index.html").exists()


@pytest.fixture(name="load")
def _load(desk, monkeypatch):
    """Loads a module of the watch, by its name within the package."""
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    monkeypatch.setenv("XDG_RUNTIME_DIR", str(desk.runtime))
    return lambda name: importlib.import_module(f"qivo_watch.{name}")


def test_a_bus_that_hangs_while_a_tree_is_read_is_told_and_not_the_application(desk, load,
                                                                               monkeypatch):
    tree = load("command.screen.tree")
    client = load("command.bus.client").Client(load("state").Folder("watch"))
    shown = client.call("ShowTree")
    monkeypatch.setattr(client, "call", lambda _: shown)
    monkeypatch.setattr(tree, "PATIENCE_S", 0.2)
    stop_running(desk, "bus")
    with pytest.raises(load("errors").WatchGone, match="the message bus does not answer"):
        tree.read_windows(client)


def test_a_server_that_hangs_before_the_finger_is_followed_is_told(desk, load, monkeypatch):
    status, link = desk.status(), load("command.screen.link")
    monkeypatch.setenv("XAUTHORITY", f"{status['folder']}/Xauthority")
    monkeypatch.setattr(link, "ANSWER_S", 0.2)
    stop_running(desk, "server")
    with pytest.raises(load("errors").WatchGone, match="the X server does not answer"):
        load("command.replays.finger").Finger(status["display"], None)


@pytest.mark.parametrize("part", ["guard", "keeper", "server", "bus"])
def test_a_watch_of_which_anything_hangs_can_be_stopped(desk, part):
    stop_running(desk, part)
    begin = time.monotonic()
    desk.do("stop")
    assert time.monotonic() - begin < LIMIT_S + 1 + waiting_s()
    assert not desk.processes()
    assert not list(desk.runtime.iterdir())


def test_a_watch_of_which_everything_hangs_can_be_stopped_and_started_again(desk):
    for process in desk.processes():
        os.kill(process, signal.SIGSTOP)
    desk.do("stop")
    assert not desk.processes()
    desk.do("start", "--headless")


def test_an_application_that_hangs_is_told_soon(desk):
    os.kill(desk.status()["app"]["pid"], signal.SIGSTOP)
    assert f"{GUIDE} does not answer" in refused_soon(desk, ["bezel", "cw"])[0]


def test_what_takes_long_is_not_given_up(desk):
    desk.do("bezel", "cw", 51, "-i", 100)
    assert desk.status()["bezel"] == 51


def test_a_silent_display_of_the_users_is_told_soon(desk):
    # An address that no machine has, and to which nothing comes back.
    desk.environment["DISPLAY"] = "192.0.2.1:0"
    complaint, = refused_soon(desk, ["--name", "second", "start"])
    assert '"192.0.2.1:0" ' in complaint and "use --headless or --web" in complaint
    assert not pathlib.Path(desk.runtime, "qivo-watch", "second").exists()


class StallingServer:
    """Context manager: passes an X server's answers on, and nothing more after some of them."""

    def __init__(self, server, answers):
        self._server, self._answers = server, answers
        self._listener = socket.socket(socket.AF_UNIX)
        self._ends = []

    def __enter__(self):
        for number in range(500, 600):
            self._path = f"/tmp/.X11-unix/X{number}"
            with contextlib.suppress(OSError):
                self._listener.bind(self._path)
                break
        self._listener.listen()
        threading.Thread(target=self._serve, daemon=True).start()
        return f":{number}"

    def __exit__(self, *_):
        os.unlink(self._path)
        self._listener.close()
        for end in self._ends:
            end.close()

    def _serve(self):
        while True:
            try:
                client, _ = self._listener.accept()
            except OSError:
                return
            server = socket.socket(socket.AF_UNIX)
            server.connect(f"/tmp/.X11-unix/X{self._server.removeprefix(':')}")
            self._ends += [client, server]
            threading.Thread(target=self._pass, args=(client, server), daemon=True).start()
            threading.Thread(target=self._answer, args=(server, client), daemon=True).start()

    def _pass(self, source, target):
        with contextlib.suppress(OSError):
            while piece := source.recv(65536):
                target.sendall(piece)

    def _answer(self, server, client):
        with contextlib.suppress(OSError):
            while self._answers and (piece := server.recv(65536)):
                self._answers -= 1
                client.sendall(piece)
            server.recv(1)  # Whoever waits for more is not told of an end.


@pytest.mark.parametrize("answers", [0, 1, 2, 3])
def test_a_server_that_hangs_while_a_look_begins_is_given_up(tmp_path, answers):
    script = ("import pathlib, sys\n"
              f"sys.path.insert(0, {str(BUILD / 'simulator')!r})\n"
              "from qivo_watch.command.screen.eye import Eye\n"
              "from qivo_watch.errors import WatchError\n"
              "try:\n"
              "    Eye(sys.argv[1], pathlib.Path(sys.argv[2]))\n"
              "except WatchError as error:\n"
              "    print(error)\n")
    with Display("100x100x24") as display, StallingServer(display.name, answers) as name:
        told = subprocess.run([sys.executable, "-c", script, name, tmp_path / "no-authority"],
                              capture_output=True, text=True, timeout=30, check=True)
    assert told.stdout == ("the watch hangs: the X server does not answer "
                           "(qivo-watch stop ends it)\n")
