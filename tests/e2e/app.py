"""The guide as a process: started, listened to, ended."""

import contextlib
import os
import pathlib
import re

from support.program import Program

BUILD = pathlib.Path(os.environ["BUILD_DIR"])
GUIDE = BUILD / "qivo-ui" / "qivo-guide-app"


class App(Program):
    """One run of the guide."""

    def __init__(self, environment, arguments=(), executable=GUIDE):
        super().__init__([str(executable), *arguments], environment, prints_log=True)

    @property
    def log(self):
        """The lines so far."""
        while self.read(0):
            pass
        return self.lines

    def wait_log(self, *texts):
        """Waits for the next line that holds all the texts; lines before it are used up."""
        return self.next_line(lambda line: all(text in line for text in texts))

    def wait_log_or_end(self, text, seconds):
        """Waits for a line that holds the text, for the process's end, and no longer than that."""
        with contextlib.suppress(AssertionError):
            self.next_line(lambda line: text in line, seconds)

    def rewind(self):
        """Lets wait_log() look again from the first line."""
        self._seen = 0

    def wait_end(self):
        """Waits for the process's end and returns its status."""
        return self.end()[0]

    def terminate(self):
        self.process.terminate()

    def has(self, text):
        return any(text in line for line in self.log)

    def count(self, text):
        return sum(text in line for line in self.log)

    def peak_of_addresses(self):
        """The most bytes of addresses that the process has had."""
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return int(re.search(r"VmPeak:\s*(\d+) kB", status)[1]) * 1024

    def tail(self):
        return "\n".join(self.log[-40:])
