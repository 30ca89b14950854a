"""A watch that is being started: commands wait for it, and it can be stopped."""

import os
import signal
import subprocess

import pytest

from simulator.desk import Desk
from support.bus import wait_until


@pytest.fixture(name="desk")
def _desk():
    with Desk() as desk:
        yield desk


@pytest.fixture(name="starting")
def _starting(desk):
    """A start that is under way: the watch has its first process."""
    with subprocess.Popen(desk.command("start", "--headless"), env=desk.environment, text=True,
                          stderr=subprocess.PIPE) as process:
        wait_until(desk.processes, "the first process of the watch")
        yield process


def begin(desk, *words):
    return subprocess.Popen(desk.command(*words), env=desk.environment, text=True,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)


def test_commands_wait_for_a_watch_that_is_being_started(desk, starting, tmp_path):
    commands = [begin(desk, *words) for words in (
        ["status"], ["status", "--json"], ["bezel", "cw"], ["log"], ["battery", "--percent", "5"],
        ["screenshot", tmp_path / "a.png"], ["screenshot", "--body", tmp_path / "b.png"])]
    for command in commands:
        with command:
            assert (command.wait(60), command.stderr.read()) == (0, ""), command.args
    assert starting.wait(60) == 0


def test_a_launch_waits_for_a_watch_that_is_being_started(desk, starting):
    desk.do("launch")
    assert starting.wait(60) == 0


def test_a_watch_that_is_being_started_is_not_started_twice(desk, starting):
    complaint = desk.refused("start", "--headless")
    assert 'the watch "watch" is being started already' in complaint or "runs already" in complaint
    assert starting.wait(60) == 0


def test_a_stop_ends_a_watch_that_is_being_started(desk, starting):
    desk.do("stop")
    assert starting.wait(10) == 1
    assert starting.stderr.read() == "qivo-watch: the watch does not start: it was stopped\n"
    assert not desk.processes()
    assert not list(desk.runtime.iterdir())


def test_a_watch_whose_start_hangs_is_told_and_can_be_stopped(desk, starting):
    def hold(name):
        held = [process for process, command in desk.processes().items() if name in command]
        for process in held:
            os.kill(process, signal.SIGSTOP)
        return held
    wait_until(lambda: hold(b"qivo_watch.keeper"), "the keeper")
    assert 'the watch "watch" is still being started' in desk.refused("status")
    assert 'the watch "watch" is being started already' in desk.refused("start", "--headless")
    desk.do("stop")
    assert starting.wait(10) == 1
    assert not desk.processes()
