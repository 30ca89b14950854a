"""The command `qivo-watch`."""

import os
import pathlib
import signal
import sys

from qivo_watch.command.arguments import Grammar
from qivo_watch.command.commands import Session
from qivo_watch.errors import UsageError, WatchError
from qivo_watch.lines import printable

_INTERRUPTED = 130


def main(words: list[str]) -> int:
    """Returns the status: 0, 1 for a command that failed, 2 for one that cannot be meant."""
    _open_missing_streams()
    try:
        signal.pthread_sigmask(signal.SIG_UNBLOCK, [signal.SIGINT])
        _run(words)
        sys.stdout.flush()
    except UsageError as error:
        return _complain(error, 2)
    except WatchError as error:
        return _complain(error, 1)
    except UnicodeEncodeError as error:
        return _complain(f"{error.object!r} is not UTF-8", 2)
    except KeyboardInterrupt:
        return _INTERRUPTED
    except BrokenPipeError:
        _drop_output()  # The reader has seen enough.
    except OSError as error:
        _drop_output()
        return _complain(f"{error.filename or 'output'}: {error.strerror}", 1)
    return 0


def _run(words: list[str]) -> None:
    grammar = Grammar(is_replay=False)
    try:
        given = grammar.parse(words)
    except SystemExit:
        return  # The help has been printed.
    if given.verb is None:
        given = grammar.parse([*words, "start"])
    if given.verb == "play":
        from qivo_watch.command.replay import play  # pylint: disable=import-outside-toplevel
        play(pathlib.Path(given.file), given.name, given.update)
        return
    session = Session(given.name)
    try:
        session.run(given)
    finally:
        session.close()


def _open_missing_streams() -> None:
    """What is written to an output that the caller has closed fails, as everywhere."""
    for name, mode in (("stdin", "r"), ("stdout", "w"), ("stderr", "w")):
        if getattr(sys, name) is None:
            access = os.O_WRONLY if name == "stderr" else os.O_RDONLY
            setattr(sys, name, os.fdopen(os.open(os.devnull, access), mode))


def _drop_output() -> None:
    """The interpreter shall not complain at its end of what it could not write."""
    os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())


def _complain(error: Exception | str, status: int) -> int:
    line = printable(" ".join(str(error).splitlines()))
    print(f"qivo-watch: {line}", file=sys.stderr)
    return status
