"""Files that are written beside their place first: what fails leaves what was there."""

import os
import pathlib
import secrets


def part_of(file: str) -> pathlib.Path:
    """A name beside FILE that nothing has: one made from its own could be a file of the user's."""
    return pathlib.Path(file).absolute().with_name(f".qivo-watch-{secrets.token_hex(8)}")


def put_in_place(part: pathlib.Path, file: str) -> None:
    """Fails with an OSError; nothing is left of the part then."""
    try:
        os.replace(part, file)
    except OSError:
        part.unlink(missing_ok=True)
        raise
