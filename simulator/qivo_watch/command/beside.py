"""Files that are written beside their place first: what fails leaves what was there."""

import contextlib
import os
import pathlib
from typing import Iterator


def part_of(file: str) -> pathlib.Path:
    """A name beside FILE that nothing has: one made from its own could be a file of the user's."""
    return pathlib.Path(file).absolute().with_name(f".qivo-watch-{os.urandom(8).hex()}")


@contextlib.contextmanager
def beside(file: str) -> Iterator[pathlib.Path]:
    """A file to write within, which then takes FILE's place; a failure leaves nothing of it."""
    part = part_of(file)
    try:
        yield part
        os.replace(part, file)
    except BaseException:
        part.unlink(missing_ok=True)
        raise
