"""Writes a new application: a copy of the template under another id."""

import os
import pathlib
import re
import tempfile

from qivo_watch import places
from qivo_watch.errors import UsageError, WatchError
from qivo_watch.interface import GUIDE, is_app_id

_HERE = pathlib.Path(__file__).resolve().parents[2]
_TEMPLATE = _HERE / "template"
"""Beside the modules when installed; in a build tree a link into the checkout."""

_ID, _PROGRAM, _TITLE = "org.example.newapp", "newapp", "New App"
_PKG_CONFIG_FOLDER = "/usr/local/lib/watch-port/pkgconfig"
"""What the template says, and each application in its own way."""

_TAKEN = {"PHONY", "all", "benchmark", "clean", "clean-ctlist", "clean-gcda", "clean-gcno",
          "coverage", "coverage-html", "coverage-text", "coverage-xml", "dist", "distcheck",
          "install", "phony", "reconfigure", "reinstall", "res", "scan-build", "subprojects",
          "test", "uninstall"}
"""Names of the build's own targets and folders."""


def create(app_id: str, folder: str | None) -> None:
    """Fails, and leaves nothing behind, when the id is none or the folder cannot be made."""
    program = _program_of(app_id)
    target = pathlib.Path(program if folder is None else folder)
    if re.search(r"\s", target.name):
        raise UsageError(f'a folder\'s name with blanks: "{target.name}"')
    if not _TEMPLATE.is_dir():
        raise WatchError("the files for developers are not installed (meson setup -Dsdk=true)")
    if os.path.lexists(target):
        raise WatchError(f'"{target}" exists already')
    try:
        # Whole or not at all: it is written in a folder of its own and then moved.
        with tempfile.TemporaryDirectory(prefix=".new-", dir=target.parent) as holder:
            part = pathlib.Path(holder, "part")
            _write(part, _replacements(app_id, program))
            part.rename(target)
    except OSError as error:
        raise WatchError(f'cannot make "{target}": {error.strerror}') from None


def _program_of(app_id: str) -> str:
    if not is_app_id(app_id):
        raise UsageError(f'"{app_id}" is not an application id (such as org.example.hello: words '
                         "of letters, digits, - and _, with dots between them)")
    program = app_id.rpartition(".")[2]
    if program in _TAKEN or program.startswith("meson-") or app_id == GUIDE:
        raise UsageError(f'"{app_id}" is taken: its last word becomes a program and a target of '
                         "the build")
    return program


def _replacements(app_id: str, program: str) -> dict[str, str]:
    title = " ".join(word.capitalize() for word in re.split("[-_]+", program) if word) or program
    installed = (_HERE / os.path.relpath(places.PKG_CONFIG, places.DATA)).resolve()
    return {_ID: app_id, _PROGRAM: program, _TITLE: title,
            _PKG_CONFIG_FOLDER: "" if _checkout() else str(installed)}


def _checkout() -> pathlib.Path | None:
    """The checkout that a build tree's command was built from."""
    return _TEMPLATE.resolve().parents[1] if _TEMPLATE.is_symlink() else None


def _write(part: pathlib.Path, replacements: dict[str, str]) -> None:
    known = re.compile("|".join(map(re.escape, replacements)))

    def replaced(text: str) -> str:
        return known.sub(lambda match: replacements[match[0]], text)
    for source in sorted(_TEMPLATE.rglob("*")):
        place = part / replaced(str(source.relative_to(_TEMPLATE)))
        if source.name == "gitignore":  # By its real name it would be the checkout's own.
            place = place.with_name(".gitignore")
        if source.is_dir():
            place.mkdir(parents=True)
        elif source.suffix == ".png":
            place.write_bytes(source.read_bytes())
        else:
            place.parent.mkdir(parents=True, exist_ok=True)
            place.write_text(replaced(source.read_text(encoding="utf-8")), encoding="utf-8")
    checkout = _checkout()
    if checkout:
        (part / "subprojects").mkdir()
        (part / "subprojects" / "qivo-guide-app").symlink_to(checkout)
