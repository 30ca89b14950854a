"""The keeper's parent process, which cleans up however the keeper ended.

It starts the keeper, reaps every orphan (what the watch's programs have started and left), and when
the keeper has ended, ends what is left and removes the watch's folder. On SIGTERM it asks the
keeper to end, and kills it if it does not. It uses no library that could fail with the watch.
"""

import contextlib
import ctypes
import os
import signal
import subprocess
import sys
from typing import Any, NoReturn

from qivo_watch.processes import REQUESTS, STATE_VARIABLE, descendants
from qivo_watch.spawn import OPTIONS_VARIABLE, spawn
from qivo_watch.state import Folder

PR_SET_CHILD_SUBREAPER = 36
_NUMBER_BYTES = 10
"""Of the guard's id, with which the answer begins."""

NO_PROCESS = -1
"""For the id of a guard that could not be started."""

END_PATIENCE_S = 4
"""Seconds for a keeper to end; it gives three of them to the applications."""

KEEPER = "import sys; from qivo_watch.keeper.keeper import main; sys.exit(main(sys.argv[1:]))"


def start_guard(folder: Folder, lock: int, options: str) -> tuple[int, int]:
    """Starts the guard apart from this process; returns its id, and the pipe where the keeper
    answers.

    The answer is a line: "ready", or what went wrong. options: the watch's, as JSON.
    The caller has blocked INTERRUPTS: REQUESTS reach the guard once it can serve them.
    """
    answer, into = os.pipe()
    child = os.fork()
    if child == 0:
        os.close(answer)
        _become_guard(folder, lock, into, options)
    os.close(into)
    os.close(lock)
    os.waitpid(child, 0)
    return int(os.read(answer, _NUMBER_BYTES) or NO_PROCESS), answer


def _become_guard(folder: Folder, lock: int, answer: int, options: str) -> NoReturn:
    status = 1
    try:
        os.setsid()
        if os.fork() == 0:
            os.chdir("/")
            with open(os.devnull, "r+b") as null:
                for stream in (0, 1, 2):
                    os.dup2(null.fileno(), stream)
            _guard(folder, lock, answer, options)
        status = 0
    finally:
        os._exit(status)


def _guard(folder: Folder, lock: int, answer: int, options: str) -> None:
    os.write(answer, str(os.getpid()).zfill(_NUMBER_BYTES).encode())
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
    # Everybody may read a process's arguments, but only its user the environment.
    environment = {**os.environ, STATE_VARIABLE: str(folder.path), OPTIONS_VARIABLE: options,
                   "PYTHONPATH": os.pathsep.join(filter(None, sys.path))}
    signal.signal(signal.SIGHUP, signal.SIG_IGN)
    signal.pthread_sigmask(signal.SIG_UNBLOCK, [signal.SIGHUP])
    os.set_inheritable(answer, True)
    keeper = spawn([sys.executable, "-c", KEEPER, folder.name, str(answer)],
                   environment, end_signal="TERM", pass_fds=[answer],
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(answer)
    signal.signal(signal.SIGALRM, lambda *_: os.kill(keeper.pid, signal.SIGKILL))
    _serve_requests(lambda *_: _ask_to_end(keeper.pid))
    _wait_for(keeper.pid)
    _serve_requests(signal.SIG_IGN)
    signal.alarm(0)
    _end_descendants()
    folder.clear()
    os.close(lock)


def _serve_requests(serve: Any) -> None:
    for request in REQUESTS:
        signal.signal(request, serve)
    signal.pthread_sigmask(signal.SIG_UNBLOCK, REQUESTS)


def _ask_to_end(keeper: int) -> None:
    _serve_requests(signal.SIG_IGN)
    os.kill(keeper, signal.SIGTERM)
    os.kill(keeper, signal.SIGCONT)
    signal.alarm(END_PATIENCE_S)


def _wait_for(keeper: int) -> None:
    """Reaps orphans until the keeper has ended."""
    while os.wait()[0] != keeper:
        pass


def _end_descendants() -> None:
    while victims := descendants(os.getpid()):
        for victim in victims:
            with contextlib.suppress(ProcessLookupError):
                os.kill(victim, signal.SIGKILL)
        with contextlib.suppress(ChildProcessError):
            os.wait()
