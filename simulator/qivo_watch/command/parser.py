"""The parsers of argparse, with one line for a mistake."""

import argparse
from typing import Any, Callable, NoReturn

from qivo_watch.errors import UsageError


class Parser(argparse.ArgumentParser):
    """For a command, and so are the parsers of its subcommands."""

    NO_DEFAULT = argparse.SUPPRESS

    def __init__(self, **options: Any):
        super().__init__(allow_abbrev=False,
                         formatter_class=argparse.RawDescriptionHelpFormatter, **options)

    def error(self, message: str) -> NoReturn:
        raise UsageError(f"{message.splitlines()[0]} (see {self.prog} --help)")

    def add_argument(self, *names: Any, **how: Any) -> argparse.Action:
        if "type" in how:
            how["type"] = _telling(how["type"])
        return super().add_argument(*names, **how)


class LineParser(Parser):
    """For a line of a replay: without --help."""

    def __init__(self, **options: Any):
        super().__init__(add_help=False, **options)


def _telling(read: Callable[[str], Any]) -> Callable[[str], Any]:
    """A type for argparse, which hides the text of other errors."""
    def convert(word: str) -> Any:
        try:
            return read(word)
        except UsageError as error:
            raise argparse.ArgumentTypeError(str(error)) from None
    return convert
