"""A program of ours that is driven line by line and says what happens."""

import os
import select
import subprocess
import tempfile
import time

DEADLINE_S = 60.0
"""Seconds for whatever a program is to do; a sanitized build on a busy machine is slow."""


class Program:
    """Context manager: one run. What is left of it ends with the context, or with the test.

    lines: what has been read so far of what it has printed.
    """

    def __init__(self, command, environment, prints_log=False):
        """prints_log: the log, its standard error stream, is read as what it prints."""
        self.lines = []
        self._seen = 0
        self._rest = b""
        self._log = tempfile.TemporaryFile()
        # Nobody reads while a test looks elsewhere.
        self.process = subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", *command], env=environment, bufsize=0,
            pipesize=1 << 20, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT if prints_log else self._log)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()

    @property
    def log(self):
        """What it has written to its standard error stream."""
        with open(f"/proc/self/fd/{self._log.fileno()}", "rb") as log:
            return log.read().decode(errors="replace")

    def say(self, *words):
        """Writes lines, and does not wait for their effect."""
        self.process.stdin.write("".join(f"{word}\n" for word in words).encode())

    def next_line(self, accept=lambda _: True, deadline=DEADLINE_S):
        """Waits, for so many seconds, for a line; passes over those before it."""
        deadline += time.monotonic()
        while True:
            for index in range(self._seen, len(self.lines)):
                if accept(self.lines[index]):
                    self._seen = index + 1
                    return self.lines[index]
            assert self.read(deadline), f"never came, after {self.lines}\n{self.log}"

    def end(self):
        """Waits for the end; returns the exit status and all lines."""
        deadline = time.monotonic() + DEADLINE_S
        while self.read(deadline):
            pass
        return self.process.wait(timeout=DEADLINE_S), self.lines

    def read(self, deadline):
        """Reads what has been printed, once there is something; whether there was until then."""
        left = max(0.0, deadline - time.monotonic())
        if self.process.stdout.closed or not select.select([self.process.stdout], [], [], left)[0]:
            return False
        data = os.read(self.process.stdout.fileno(), 1 << 20)
        *whole, self._rest = (self._rest + data).split(b"\n")
        if not data and self._rest:
            whole, self._rest = [self._rest], b""
        self.lines += [line.decode(errors="replace") for line in whole]
        return bool(data)
