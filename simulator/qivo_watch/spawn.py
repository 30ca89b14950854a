"""Starts the processes of a watch, which do not outlive their parent."""

import shutil
import subprocess

OPTIONS_VARIABLE = "QIVO_WATCH_OPTIONS"
"""Tells the keeper how the watch was started, as JSON."""

_SETPRIV = shutil.which("setpriv") or "setpriv"
"""Looked up before a program's own PATH can interfere."""


def spawn(command: list[str], environment: dict[str, str], end_signal: str = "KILL",
          **options) -> subprocess.Popen:
    """Starts a process in a group of its own, which ends with the thread that calls.

    end_signal: what it gets when that thread ends.
    """
    return subprocess.Popen(
        [_SETPRIV, "--pdeathsig", end_signal, "--", *command], env=environment,
        start_new_session=True, **{"stdin": subprocess.DEVNULL, **options})
