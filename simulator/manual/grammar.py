"""The command's verbs, as the manual and the completions show them."""

import argparse
from typing import Iterator

from qivo_watch.command.arguments import Grammar


def top() -> argparse.ArgumentParser:
    return Grammar(is_replay=False).parser


def members(parser: argparse.ArgumentParser) -> dict[str, argparse.ArgumentParser]:
    """The verbs below a parser, by the word that chooses them."""
    for action in parser._actions:  # pylint: disable=protected-access
        if isinstance(action.choices, dict):
            return action.choices
    return {}


def options(parser: argparse.ArgumentParser) -> Iterator[argparse.Action]:
    return (action for action in parser._actions  # pylint: disable=protected-access
            if action.option_strings)
