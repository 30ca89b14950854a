"""A watch that hangs somewhere: each command gives up soon and says where, and it can be ended."""

import concurrent.futures
import os
import pathlib
import signal
import time

import pytest

from simulator.desk import GUIDE, Desk

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
