"""A probe: a small program of ours. Its answers and reports of changes come in any order."""

import contextlib
import os
import signal
from pathlib import Path

from support.program import DEADLINE_S, Program

_LOCALE_VARIABLES = ("LC_", "LANG", "TZ")


class Probe(Program):
    """A running probe. Lines that begin with "changed" report events, others are answers."""

    def __init__(self, name, environment, wrapper=()):
        """wrapper: a command that ends in executing the command that follows it."""
        clean = {key: value for key, value in os.environ.items()
                 if not key.startswith(_LOCALE_VARIABLES)}
        for bus in ("SYSTEM", "SESSION"):
            clean[f"DBUS_{bus}_BUS_ADDRESS"] = "unix:path=/nonexistent/bus"
        super().__init__([*wrapper, Path(os.environ["BUILD_DIR"]) / "tests/port" / name],
                         {**clean, **environment})
        self._answers = []
        self._changes = []

    def ask(self, command):
        """Returns the answer to a command, without its verb."""
        self.say(command)
        return self.answer()

    @contextlib.contextmanager
    def held(self):
        """What happens in the block is found by the probe's main loop all at a time."""
        self.process.send_signal(signal.SIGSTOP)
        os.waitid(os.P_PID, self.process.pid, os.WSTOPPED)
        yield
        self.process.send_signal(signal.SIGCONT)

    def answer(self):
        """Returns the next answer, such as that to a command that a callback gave."""
        while not self._answers:
            self._sort_next_line()
        return self._answers.pop(0)

    def wait_for_changes(self, count):
        """Returns what was reported since the last call, once it is `count` lines or more."""
        while len(self._changes) < count:
            self._sort_next_line()
        return self._take_changes()

    def changes_after(self, service, bus="system"):
        """Returns what was reported until all that the service had sent was dealt with."""
        assert self.ask(f"ping {service} {bus}") == "done"
        return self._take_changes()

    def watches(self):
        """Returns how many files and folders the probe watches."""
        count = 0
        for info in Path(f"/proc/{self.process.pid}/fdinfo").iterdir():
            # Another thread may close a file meanwhile.
            with contextlib.suppress(FileNotFoundError):
                count += info.read_text().count("inotify wd:")
        return count

    def end(self):
        """Returns the status and what was written to the standard error stream."""
        self.process.stdin.close()
        return self.process.wait(timeout=DEADLINE_S), self.log

    def _sort_next_line(self):
        line = self.next_line()
        if line.startswith("changed "):
            self._changes.append(line.removeprefix("changed "))
        else:
            self._answers.append(line.partition(": ")[2])

    def _take_changes(self):
        changes, self._changes = self._changes, []
        return changes
