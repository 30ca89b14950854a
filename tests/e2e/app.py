"""The guide as a process: started, listened to, ended."""

import os
import pathlib
import re
import subprocess
import threading

BUILD = pathlib.Path(os.environ["BUILD_DIR"])
GUIDE = BUILD / "qivo-ui" / "qivo-guide-app"

DEADLINE = 30.0
"""Seconds for anything that the guide is to do; a sanitized build on a busy machine is slow."""


class App:
    """Context manager: one run of the guide. Its standard error is its log.

    The process is killed when the context is left before it has ended by itself.
    """

    def __init__(self, environment, arguments=(), executable=GUIDE):
        self._environment = environment
        self._command = ["setpriv", "--pdeathsig", "KILL", str(executable), *arguments]
        self._process = None
        self._reader = None
        self._news = threading.Condition()
        self._next = 0
        self._ended = False
        self.log = []

    def __enter__(self):
        self._process = subprocess.Popen(
            self._command, env=self._environment, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, errors="replace")
        self._reader = threading.Thread(target=self._read)
        self._reader.start()
        return self

    def __exit__(self, *_):
        self._process.kill()
        self._process.wait()
        self._reader.join()
        self._process.stderr.close()

    def wait_log(self, *texts):
        """Waits for the next line that holds all the texts; lines before it are used up."""
        with self._news:
            found = self._news.wait_for(lambda: self._find(texts) or self._ended, DEADLINE)
            assert found and self._find(texts), f"no line with {texts} in:\n{self.tail()}"
            self._next = self._find(texts)
            return self.log[self._next - 1]

    def wait_log_or_end(self, text, seconds):
        """Waits for a line that holds the text, for the process's end, and no longer than that."""
        with self._news:
            self._news.wait_for(lambda: self.has(text) or self._ended, seconds)

    def rewind(self):
        """Lets wait_log() look again from the first line."""
        self._next = 0

    def wait_end(self):
        """Waits for the process's end and returns its status."""
        try:
            status = self._process.wait(DEADLINE)
        except subprocess.TimeoutExpired as error:
            raise AssertionError(f"does not end:\n{self.tail()}") from error
        self._reader.join()
        return status

    def terminate(self):
        self._process.terminate()

    def has(self, text):
        return any(text in line for line in self.log)

    def count(self, text):
        return sum(text in line for line in self.log)

    def peak_of_addresses(self):
        """The most bytes of addresses that the process has had."""
        status = pathlib.Path(f"/proc/{self._process.pid}/status").read_text()
        return int(re.search(r"VmPeak:\s*(\d+) kB", status)[1]) * 1024

    def tail(self):
        return "\n".join(self.log[-40:])

    def _find(self, texts):
        """The number of lines up to and with the one looked for; 0 when it has not come."""
        for index in range(self._next, len(self.log)):
            if all(text in self.log[index] for text in texts):
                return index + 1
        return 0

    def _read(self):
        for line in self._process.stderr:
            with self._news:
                self.log.append(line.rstrip("\n"))
                self._news.notify_all()
        with self._news:
            self._ended = True
            self._news.notify_all()
