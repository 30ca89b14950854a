"""A probe: a small program of ours that is driven line by line and says what happened."""

import contextlib
import os
import queue
import signal
import subprocess
import tempfile
import threading
from pathlib import Path

DEADLINE_S = 60
_LOCALE_VARIABLES = ("LC_", "LANG", "TZ")


class Probe:
    """A running probe. Lines that begin with "changed" report events, others are answers."""

    def __init__(self, name, environment, wrapper=()):
        """wrapper: a command that ends in executing the command that follows it."""
        clean = {key: value for key, value in os.environ.items()
                 if not key.startswith(_LOCALE_VARIABLES)}
        for bus in ("SYSTEM", "SESSION"):
            clean[f"DBUS_{bus}_BUS_ADDRESS"] = "unix:path=/nonexistent/bus"
        self._errors = tempfile.TemporaryFile("w+")
        self._process = subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", *wrapper,
             Path(os.environ["BUILD_DIR"]) / "tests/port" / name],
            env={**clean, **environment}, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=self._errors, text=True)
        self._lines = queue.Queue()
        self._answers = []
        self._changes = []
        threading.Thread(target=self._read, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.kill()
        self._process.wait()
        self._errors.close()

    def ask(self, command):
        """Returns the answer to a command, without its verb."""
        self.tell(command)
        return self.answer()

    def tell(self, command):
        """Gives a command whose answer is asked for later."""
        print(command, file=self._process.stdin, flush=True)

    @contextlib.contextmanager
    def held(self):
        """What happens in the block is found by the probe's main loop all at a time."""
        self._process.send_signal(signal.SIGSTOP)
        os.waitid(os.P_PID, self._process.pid, os.WSTOPPED)
        yield
        self._process.send_signal(signal.SIGCONT)

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
        for info in Path(f"/proc/{self._process.pid}/fdinfo").iterdir():
            # Another thread may close a file meanwhile.
            with contextlib.suppress(FileNotFoundError):
                count += info.read_text().count("inotify wd:")
        return count

    def end(self):
        """Returns the status and what was written to the standard error stream."""
        self._process.stdin.close()
        status = self._process.wait(timeout=DEADLINE_S)
        self._errors.seek(0)
        return status, self._errors.read()

    def _read(self):
        for line in self._process.stdout:
            self._lines.put(line.rstrip("\n"))
        self._lines.put(None)

    def _sort_next_line(self):
        line = self._lines.get(timeout=DEADLINE_S)
        assert line is not None, "the probe has ended"
        if line.startswith("changed "):
            self._changes.append(line.removeprefix("changed "))
        else:
            self._answers.append(line.partition(": ")[2])

    def _take_changes(self):
        changes, self._changes = self._changes, []
        return changes
