"""A watch that is being started: commands wait for it, and it can be stopped."""

import concurrent.futures
import os
import signal
import subprocess

import pytest

from support.bus import wait_until


@pytest.fixture(name="starting")
def _starting(desk):
    """A start that is under way: the watch has its first process."""
    with subprocess.Popen(desk.command("start", "--headless"), env=desk.environment, text=True,
                          stderr=subprocess.PIPE) as process:
        wait_until(desk.processes, "the first process of the watch")
        yield process


def hold(desk, name):
    """Stops a process of the watch where it is, once it is there; returns its id."""
    found = wait_until(lambda: [process for process, command in desk.processes().items()
                                if name in command], name)
    os.kill(found[0], signal.SIGSTOP)
    return found[0]


def test_a_launch_waits_for_a_watch_that_is_being_started(desk, starting):
    desk.do("launch")
    assert starting.wait(60) == 0


def test_a_watch_that_is_being_started_is_not_started_twice(desk, starting):
    complaint = desk.refused("start", "--headless")
    assert 'watch "watch" is already starting' in complaint or "is already running" in complaint
    assert starting.wait(60) == 0


def test_a_stop_ends_a_watch_that_is_being_started(desk, starting):
    hold(desk, b"qivo-watch-home")
    desk.do("stop")
    assert starting.wait(10) == 1
    assert starting.stderr.read() == "qivo-watch: the watch did not start: it was stopped\n"
    assert not desk.processes()
    assert not list(desk.runtime.iterdir())


def test_commands_are_told_of_a_start_that_takes_long_and_work_after_it(desk, starting, tmp_path):
    keeper = hold(desk, b"qivo_watch.keeper")
    commands = [["status"], ["status", "--json"], ["bezel", "cw"], ["launch"], ["log"],
                ["screenshot", tmp_path / "a.png"], ["screenshot", "--body", tmp_path / "b.png"]]
    with concurrent.futures.ThreadPoolExecutor(len(commands)) as pool:
        for complaint in pool.map(lambda words: desk.refused(*words), commands):
            assert 'watch "watch" is still starting' in complaint
    os.kill(keeper, signal.SIGCONT)
    assert starting.wait(60) == 0
    for words in commands:
        assert desk.run(*words).returncode == 0


def test_a_start_that_hangs_can_be_stopped(desk, starting):
    hold(desk, b"qivo_watch.keeper")
    assert 'watch "watch" is already starting' in desk.refused("start", "--headless")
    desk.do("stop")
    assert starting.wait(10) == 1
    assert not desk.processes()
