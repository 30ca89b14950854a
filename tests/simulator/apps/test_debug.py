"""Applications that are launched in a debugger, or by another program."""

import os
import pathlib
import pty
import shutil
import subprocess
import sys

import pytest

from simulator.desk import BUILD, GUIDE, PATIENCE_S
from support.bus import wait_until

INNER = """sh -c '"$@"; exit $?' sh"""
"""Runs the program in a process below its own."""

needs_gdb = pytest.mark.skipif(not shutil.which("gdb"), reason="gdb is not installed")


def program_of(process):
    return pathlib.Path(f"/proc/{process}/exe").resolve()


def test_a_wrapped_program_is_what_the_watch_drives_and_asks_to_end(desk):
    desk.do("launch", "--wrap", INNER)
    process = desk.status()["app"]["pid"]
    assert program_of(process) == (BUILD / "qivo-ui" / "qivo-guide-app").resolve()
    desk.do("bezel", "cw", 2)
    desk.do("terminate")
    assert desk.status()["lastEnd"] == {"app": GUIDE, "status": 0, "signal": 0}
    assert "SOnAppTerminate" in desk.do("log")


def test_a_wrapped_program_ends_with_what_wraps_it(desk):
    desk.do("launch", "--wrap", INNER)
    process = desk.status()["app"]["pid"]
    os.kill(int(pathlib.Path(f"/proc/{process}/stat").read_text().split()[3]), 9)
    wait_until(lambda: desk.status()["app"] is None, "the end of the wrapping program")
    wait_until(lambda: process not in desk.processes(), "the end of the program")


def test_a_program_that_wraps_in_its_own_process_is_the_application(desk):
    desk.do("launch", "--wrap", "env FLAVOUR=wrapped", "--env", "PATH=/nowhere")
    assert b"FLAVOUR=wrapped" in pathlib.Path(
        f"/proc/{desk.status()['app']['pid']}/environ").read_bytes()


def test_what_cannot_wrap_is_refused(desk):
    assert desk.refused("launch", "--wrap", "no-such-tool -q") == (
        "qivo-watch: no-such-tool is not installed")
    assert "false ended with status 1" not in desk.refused("launch", "--wrap", "false")
    desk.do("launch")
    assert desk.refused("launch", "--wrap", "env") == (
        f"qivo-watch: {GUIDE} is already running: it cannot be wrapped")


def debug(desk, commands, *options):
    return subprocess.run(desk.command("launch", "--gdb", *options), env=desk.environment,
                          input=commands, capture_output=True, text=True, timeout=PATIENCE_S)


@needs_gdb
def test_gdb_stops_at_breakpoints_from_the_start_and_leaves_the_application_running(desk):
    told = debug(desk, "break SOnAppCreate\ncontinue\ndelete\nquit\n")
    assert told.returncode == 0 and "Breakpoint 2, " in told.stdout, told
    desk.do("wait", "log", "first frame")
    desk.do("bezel", "cw")
    process = desk.status()["app"]["pid"]
    assert desk.refused("launch", "--gdb") == (
        f"qivo-watch: {GUIDE} is already running: gdb -p {process} debugs it")


@needs_gdb
def test_what_gdb_kills_has_ended_for_the_watch_and_its_environment_is_its_own(desk):
    told = debug(desk, "kill\n", "--env", "PYTHONHOME=/nowhere")
    assert told.returncode == 0 and "killed" in told.stdout, told
    wait_until(lambda: desk.status()["app"] is None, "the end of the application")
    assert desk.status()["lastEnd"] == {"app": GUIDE, "status": 0, "signal": 9}


@needs_gdb
def test_the_interrupt_key_goes_to_gdb_and_the_watch_runs_on(desk):
    try:
        keeper, terminal = pty.openpty()
    except OSError as error:
        pytest.skip(f"no terminal is to be had here: {error}")
    gdb = subprocess.Popen(
        ["setsid", "--ctty", *desk.command("launch", "--gdb")], stdin=terminal, stdout=terminal,
        stderr=terminal, env={**desk.environment, "TERM": "dumb", "DEBUGINFOD_URLS": ""})
    os.close(terminal)
    told = b""

    def wait_for(text):
        nonlocal told
        while text not in told:
            told += os.read(keeper, 4096)
        told = told.partition(text)[2]

    wait_for(b"(gdb) ")
    os.write(keeper, b"continue\n")
    desk.do("wait", "log", "first frame")
    desk.do("bezel", "cw")
    os.write(keeper, b"\x03")
    wait_for(b"SIGINT")
    wait_for(b"(gdb) ")
    assert desk.status()["app"]["id"] == GUIDE
    os.write(keeper, b"kill\ny\nquit\n")
    assert gdb.wait(PATIENCE_S) == 0
    os.close(keeper)


def test_a_program_waits_for_its_debugger_no_longer_than_it_should(tmp_path):
    source = (BUILD / "simulator/qivo_watch/keeper/apps/debuggee.py").read_text(encoding="utf-8")
    impatient = tmp_path / "debuggee.py"
    impatient.write_text(source.replace("PATIENCE_S = 5.0", "PATIENCE_S = 0.1"), encoding="utf-8")
    told = subprocess.run([sys.executable, impatient, "/bin/true"], capture_output=True, text=True)
    assert (told.returncode, told.stderr) == (1, "no debugger within 0.1 s\n")


def test_a_replay_has_no_terminal_for_gdb(desk, tmp_path):
    (tmp_path / "debug.replay").write_text("launch --gdb\n", encoding="utf-8")
    assert "a replay has no terminal for --gdb" in desk.refused(
        "play", tmp_path / "debug.replay", status=2)
