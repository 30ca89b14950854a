"""Commands that are interrupted or cannot write their output: nothing goes on without them."""

import contextlib
import pathlib
import signal
import subprocess
import sys
import time

import pytest
from Xlib import X, display

from simulator.desk import BUILD, QIVO_WATCH
from support.bus import wait_until

INTERRUPTED = (130, -signal.SIGINT)
INTERRUPTS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def begin(desk, *words, **options):
    # A shell that runs the tests in the background has them ignore interrupts; the command must
    # not, from its first moment on.
    return subprocess.Popen(
        desk.command(*words), env=desk.environment, text=True, stderr=subprocess.PIPE,
        preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL), **options)


def interrupt(process, number=signal.SIGINT):
    """Ends a command as Ctrl-C does; returns what it complained of."""
    with process:
        process.send_signal(number)
        assert process.wait(10) in INTERRUPTED or number != signal.SIGINT
        return process.stderr.read()


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGKILL])
def test_a_key_is_let_go_when_who_holds_it_has_gone(desk, number):
    pressing = begin(desk, "button", "click", "power", "-d", 60000)
    wait_until(lambda: desk.status()["keysDown"] == ["power"], "the key down")
    assert not interrupt(pressing, number)
    wait_until(lambda: not desk.status()["keysDown"], "the key up")
    assert desk.status()["screen"] == "on"
    desk.do("button", "click", "power")


def test_the_bezel_stops_when_who_turns_it_has_gone(desk):
    before = desk.status()["bezel"]
    turning = begin(desk, "bezel", "cw", 1000, "-i", 20)
    wait_until(lambda: desk.status()["bezel"] > before + 2, "the bezel's first detents")
    assert not interrupt(turning)
    # Ten detents' time, told by the watch itself.
    position = desk.status()["bezel"]
    desk.do("button", "click", "power", "-d", 200)
    assert desk.status()["bezel"] <= position + 1


def test_the_finger_is_lifted_when_who_swipes_has_gone(desk, monkeypatch):
    status = desk.status()
    monkeypatch.setenv("XAUTHORITY", str(pathlib.Path(status["folder"], "Xauthority")))
    with contextlib.closing(display.Display(status["display"])) as screen:
        def is_down():
            return screen.screen().root.query_pointer().mask & X.Button1Mask
        swiping = begin(desk, "swipe", 100, 180, 260, 180, "-d", 60000)
        wait_until(is_down, "the finger down")
        assert not interrupt(swiping)
        wait_until(lambda: not is_down(), "the finger up")


def test_a_program_that_does_not_end_goes_when_who_launches_it_has_gone(desk, tmp_path):
    program = tmp_path / "stubborn"
    program.write_text("#!/bin/sh\ntrap 'echo asked to end' TERM\n"
                       "while :; do sleep 0.01; done\n", encoding="utf-8")
    program.chmod(0o700)
    launching = begin(desk, "launch", program, "-t", "0.1")
    desk.do("wait", "log", "asked to end")
    assert not interrupt(launching)
    wait_until(lambda: desk.status()["app"] is None, "the end of the program")
    assert desk.status()["lastEnd"]["signal"] == signal.SIGKILL


def test_a_key_that_was_pushed_stays_down_after_its_command(desk):
    desk.do("button", "push", "power")
    assert desk.status()["keysDown"] == ["power"]
    desk.do("button", "release", "power")


def test_an_interrupted_command_says_nothing(desk):
    """Whenever it comes: while the interpreter starts, too."""
    for milliseconds in range(0, 200, 10):
        waiting = begin(desk, "wait", "log", "never said", "-t", "60")
        time.sleep(milliseconds / 1000)  # It is to be met at any place.
        assert not interrupt(waiting), milliseconds


def test_a_followed_log_ends_in_silence_whenever_the_watch_does(fresh):
    for _ in range(3):
        fresh.do("start", "--headless")
        with begin(fresh, "log", "--follow", stdout=subprocess.PIPE) as following:
            assert "the watch is ready" in following.stdout.readline()
            fresh.do("launch", "--operation", "show")
            fresh.do("stop")
            assert (following.wait(30), following.stderr.read()) == (0, "")


@pytest.mark.parametrize("output, complaint", [
    (">&-", "Bad file descriptor"), (">/dev/full", "No space left on device")])
@pytest.mark.parametrize("words", [["--help"], ["bezel", "--help"]])
def test_a_help_that_cannot_be_written_is_told(desk, words, output, complaint):
    told = subprocess.run(["sh", "-c", f'exec "$@" {output}', "sh", *desk.command(*words)],
                          env=desk.environment, capture_output=True, text=True)
    assert (told.returncode, told.stderr) == (1, f"qivo-watch: output: {complaint}\n")


def test_a_watch_whose_address_cannot_be_told_is_not_there(fresh):
    with open("/dev/full", "w", encoding="ascii") as full:
        told = subprocess.run(fresh.command("start", "--web"), env=fresh.environment, stdout=full,
                              stderr=subprocess.PIPE, text=True)
    assert (told.returncode, told.stderr) == (1, "qivo-watch: output: No space left on device\n")
    assert not fresh.processes()
    assert not list(fresh.runtime.iterdir())


def test_a_start_without_a_process_to_have_leaves_nothing(fresh):
    script = ("import errno, os, sys\n"
              f"sys.path.insert(0, {str(BUILD / 'simulator')!r})\n"
              "def fork(): raise BlockingIOError(errno.EAGAIN, os.strerror(errno.EAGAIN))\n"
              "os.fork = fork\n"
              "from qivo_watch.command.cli import main\n"
              "sys.exit(main(['start', '--headless']))\n")
    told = subprocess.run([sys.executable, "-c", script], env=fresh.environment,
                          capture_output=True, text=True)
    assert (told.returncode, told.stderr) == (
        1, "qivo-watch: cannot start a process: Resource temporarily unavailable\n")
    assert not list(fresh.runtime.iterdir())


@pytest.mark.parametrize("closed, status, complaint", [
    (">&-", 1, "qivo-watch: output: Bad file descriptor\n"), ("<&-", 0, ""), ("2>&-", 0, "")])
def test_a_stream_that_is_closed_is_told_or_not_missed(desk, closed, status, complaint):
    told = subprocess.run(["sh", "-c", f'exec "$@" {closed}', "sh",
                           *desk.command("status", "--json")], env=desk.environment,
                          capture_output=True, text=True)
    assert (told.returncode, told.stderr) == (status, complaint)


def test_an_interrupted_start_leaves_no_watch(fresh):
    for number, milliseconds in zip(INTERRUPTS * 3, range(0, 1200, 150)):
        starting = begin(fresh, "start", "--headless")
        time.sleep(milliseconds / 1000)  # It is to be met at any place.
        starting.send_signal(number)
        with starting:
            if starting.wait(30) == 0:
                fresh.do("stop")
            assert not starting.stderr.read()
        assert not fresh.processes(), milliseconds


@pytest.mark.parametrize("number", INTERRUPTS)
def test_a_replay_that_is_interrupted_ends_the_watch_that_it_has_started(fresh, tmp_path, number):
    file = tmp_path / "run.replay"
    file.write_text('start --headless\nbezel cw\nwait log "never said" -t 600\n', encoding="utf-8")
    with begin(fresh, "play", file) as playing:
        wait_until(lambda: '"bezel": 1' in fresh.run("status", "--json").stdout, "the detent")
        playing.send_signal(number)
        assert (playing.wait(60), playing.stderr.read()) == (128 + number, "")
    assert not fresh.processes()


def test_a_start_that_fails_ends_no_watch_that_has_taken_its_place(fresh):
    script = ("import subprocess, sys\n"
              f"sys.path.insert(0, {str(BUILD / 'simulator')!r})\n"
              "from qivo_watch.command import life\n"
              "from qivo_watch.command.cli import main\n"
              "read = life._read_line\n"
              "def read_late(answer):\n"
              "    read(answer)\n"
              f"    for words in (['stop'], ['start', '--headless']):\n"
              f"        subprocess.run([{str(QIVO_WATCH)!r}, *words], check=True)\n"
              "    return 'it was stopped'\n"
              "life._read_line = read_late\n"
              "sys.exit(main(['start', '--headless']))\n")
    told = subprocess.run([sys.executable, "-c", script], env=fresh.environment,
                          capture_output=True, text=True)
    assert (told.returncode, told.stderr) == (
        1, "qivo-watch: the watch did not start: it was stopped\n")
    assert fresh.status()["running"]


def test_a_start_that_is_killed_leaves_no_watch(fresh):
    with begin(fresh, "start", "--headless") as starting:
        wait_until(fresh.processes, "the first process of the watch")
        starting.kill()
    wait_until(lambda: not fresh.processes(), "the end of all processes")
