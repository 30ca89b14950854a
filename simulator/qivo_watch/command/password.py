"""The password for the watch in a browser, from the user."""

from qivo_watch.errors import WatchError
from qivo_watch.interface import PASSWORD_LENGTH


def read(file: str) -> str:
    """The first line of a file, "-" for standard input: PASSWORD_LENGTH letters and digits."""
    try:
        is_input = file == "-"
        with open(0 if is_input else file, encoding="ascii", errors="replace",
                  closefd=not is_input) as opened:
            password = opened.readline(PASSWORD_LENGTH + 2).rstrip("\n")
    except OSError as error:
        raise WatchError(f'cannot read the password from "{file}": {error.strerror}') from None
    if not (len(password) == PASSWORD_LENGTH and password.isascii() and password.isalnum()):
        raise WatchError(f'the first line of "{file}" is not a password '
                         f"({PASSWORD_LENGTH} of A-Z a-z 0-9)")
    return password
