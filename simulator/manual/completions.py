"""Writes what a shell needs to complete the command's verbs and options.

    completions.py bash|zsh|fish FILE
"""

import argparse
import pathlib
import sys
from typing import Iterator

import shtab

from grammar import members, options, top

BASH = """_qivo_watch() {{
    local word=${{COMP_WORDS[COMP_CWORD]}} given=" " words= i
    for ((i = 1; i < COMP_CWORD; i++)); do
        given+="${{COMP_WORDS[i]}} "
    done
    case $given in
{cases}
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}}
complete -o default -F _qivo_watch qivo-watch
"""


def parsers(parser: argparse.ArgumentParser, given: str = " ") -> Iterator[tuple]:
    """Each verb's words with its parser, the innermost first."""
    for word, part in members(parser).items():
        yield from parsers(part, f"{given}{word} ")
    yield given, parser


def bash_cases(given: str, parser: argparse.ArgumentParser) -> Iterator[tuple[str, list]]:
    """Patterns for the words before the one that is completed, and what it can be."""
    here = f'*"{given}"*'
    for option in options(parser):
        for name in option.option_strings if option.choices else ():
            yield f'{here}"{name} "', option.choices
    values = [value for action in parser._actions  # pylint: disable=protected-access
              if not action.option_strings for value in action.choices or ()]
    yield here, values + [name for option in options(parser) for name in option.option_strings]


def bash() -> str:
    """shtab's own offers the first of several words only."""
    longest_first = sorted(parsers(top()), key=lambda found: -found[0].count(" "))
    return BASH.format(cases="\n".join(
        f"        {pattern}) words='{' '.join(map(str, words))}' ;;"
        for found in longest_first for pattern, words in bash_cases(*found)))


def quoted(text: str) -> str:
    escaped = text.replace("\\", "\\\\").replace("'", "\\'")
    return f"'{escaped}'"


def fish_options(condition: str, parser: argparse.ArgumentParser) -> Iterator[str]:
    for option in options(parser):
        names = " ".join(f"-l {name[2:]}" if name.startswith("--") else f"-s {name[1:]}"
                         for name in option.option_strings)
        value = "" if option.nargs == 0 else " -r"
        if option.choices:
            value = f" -x -a {quoted(' '.join(map(str, option.choices)))}"
        yield f"{condition} {names}{value} -d {quoted((option.help or '').split(' (')[0])}"


def fish() -> str:
    """shtab does not know this shell."""
    command = "complete -c qivo-watch"
    lines = list(fish_options(command, top()))
    for verb, page in members(top()).items():
        lines.append(f"{command} -n __fish_use_subcommand -f -a {verb} "
                     f"-d {quoted(page.description)}")
        condition = f"{command} -n '__fish_seen_subcommand_from {verb}'"
        lines += fish_options(condition, page)
        lines += [f"{condition} -f -a {word} -d {quoted(part.description)}"
                  for word, part in members(page).items()]
    return "\n".join(lines) + "\n"


def zsh() -> str:
    return shtab.complete(top(), "zsh")


file = pathlib.Path(sys.argv[2])
file.write_text({"bash": bash, "zsh": zsh, "fish": fish}[sys.argv[1]](), encoding="utf-8")
