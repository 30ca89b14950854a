"""The command `qivo-watch`."""

import os
import sys

from qivo_watch.command import interrupts
from qivo_watch.command.arguments import read
from qivo_watch.command.commands import Session
from qivo_watch.errors import UsageError, WatchError, of_system


def main(words: list[str]) -> int:
    """Returns the exit status: 0, 1 for a command that failed, 2 for wrong arguments; more for a
    replay that failed."""
    _open_missing_streams()
    try:
        interrupts.take()
        _run(words)
        sys.stdout.flush()
    except UsageError as error:
        return _complain(error, 2)
    except WatchError as error:
        return _complain(error, error.status)
    except UnicodeEncodeError as error:
        return _complain(f"{error.object!r} is not UTF-8", 2)
    except KeyboardInterrupt:
        return interrupts.status()
    except BrokenPipeError:
        _drop_output()  # The reader has closed the pipe.
    except OSError as error:
        _drop_output()
        return _complain(of_system(error), 1)
    return 0


def _run(words: list[str]) -> None:
    try:
        given = read(words)
    except SystemExit:
        return  # The help has been printed.
    if given.verb is None:
        given = read([*words, "start"])
    if given.verb == "play":
        import pathlib  # pylint: disable=import-outside-toplevel
        # pylint: disable-next=import-outside-toplevel
        from qivo_watch.command.replays.replay import play
        play(pathlib.Path(given.file), given)
        return
    session = Session(given.name)
    try:
        session.run(given)
    finally:
        session.close()


def _open_missing_streams() -> None:
    """Makes writing to an output that the caller has closed fail as usual."""
    for name, mode in (("stdin", "r"), ("stdout", "w"), ("stderr", "w")):
        if getattr(sys, name) is None:
            access = os.O_WRONLY if name == "stderr" else os.O_RDONLY
            setattr(sys, name, os.fdopen(os.open(os.devnull, access), mode))


def _drop_output() -> None:
    """Keeps the interpreter from complaining at its end about output it could not write."""
    os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())


def _complain(error: Exception | str, status: int) -> int:
    try:
        sys.stdout.flush()
    except OSError:
        _drop_output()
    from qivo_watch.lines import printable  # pylint: disable=import-outside-toplevel
    line = printable(" ".join(str(error).splitlines()))
    print(f"qivo-watch: {line}", file=sys.stderr)
    return status
