"""A watch's screen for one test: an X server without a monitor, managed as the watch is."""

import os
import pathlib
import select
import subprocess
import tempfile
import time

OPENBOX_CONFIGURATION = pathlib.Path(__file__).parents[2] / "script" / "openbox.xml"

START_DEADLINE = 20.0
"""Seconds in which the server and the window manager must be ready; normally 0.2 are enough."""


class Display:
    """Context manager: a private X server (Xvfb) with openbox on it.

    The server takes a free display number, listens on no network and has one screen of SIZE
    ("WIDTHxHEIGHTxDEPTH"). When the context is entered, the window manager manages. Both
    processes end with the context, and also when the test's own process dies.

    name: the display's name, such as ":7".
    env: what a client needs in its environment; merge it: {**os.environ, **display.env}.
    """

    def __init__(self, size="360x360x24"):
        self.size = size
        self.name = None
        self.env = {}
        self._processes = []
        self._log = None

    def __enter__(self):
        self._log = tempfile.TemporaryFile()
        try:
            self._start_server()
            self._start_window_manager()
        except BaseException:
            self._end()
            raise
        return self

    def __exit__(self, *_):
        self._end()

    def _start_server(self):
        number_out, number_in = os.pipe()
        try:
            self._spawn(["Xvfb", "-displayfd", str(number_in), "-screen", "0", self.size,
                         "-nolisten", "tcp", "-noreset"], pass_fds=[number_in])
        finally:
            os.close(number_in)
        with os.fdopen(number_out, "rb", buffering=0) as pipe:
            number = self._wait_line(pipe, lambda line: line.strip().isdigit(), "Xvfb")
        self.name = ":" + number.strip().decode()
        self.env = {"DISPLAY": self.name}

    def _start_window_manager(self):
        # openbox runs its start-up command once it manages, with its own standard output.
        out, into = os.pipe()
        try:
            self._spawn(["openbox", "--sm-disable", "--config-file", str(OPENBOX_CONFIGURATION),
                         "--startup", "echo managing"], stdout=into)
        finally:
            os.close(into)
        with os.fdopen(out, "rb", buffering=0) as pipe:
            self._wait_line(pipe, lambda line: line == b"managing", "openbox")

    def _spawn(self, command, **options):
        # The kernel ends the child when the test dies without a chance to clean up.
        self._processes.append(subprocess.Popen(
            ["setpriv", "--pdeathsig", "TERM", *command], start_new_session=True,
            env={**os.environ, **self.env}, stdin=subprocess.DEVNULL, stderr=self._log,
            **{"stdout": self._log, **options}))

    def _wait_line(self, pipe, accept, who):
        deadline = time.monotonic() + START_DEADLINE
        text = b""
        while select.select([pipe], [], [], max(0.0, deadline - time.monotonic()))[0]:
            piece = pipe.read(4096)
            if not piece:
                break
            text += piece
            for line in text.split(b"\n")[:-1]:
                if accept(line):
                    return line
        self._log.seek(0)
        output = self._log.read().decode(errors="replace")
        raise RuntimeError(f"{who} did not become ready: {output}")

    def _end(self):
        for process in reversed(self._processes):
            process.terminate()
            try:
                process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        self._processes.clear()
        if self._log:
            self._log.close()
            self._log = None
