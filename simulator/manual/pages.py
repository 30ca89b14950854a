"""Writes the manual pages of the command and of its verbs, with help2man.

    pages.py VERSION FOLDER NAME...

NAME: each page that is wanted, such as qivo-watch-start.1. They must be those of all verbs.
"""

import pathlib
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

from grammar import members, top


PROGRAM = """#!/usr/bin/python3 -B
import sys
from qivo_watch.command.cli import main
sys.exit(main(sys.argv[1:]))
"""


def write_page(version: str, file: pathlib.Path, name: str, verb: str, sections: str) -> None:
    """help2man gives a page the name of the program that it runs."""
    with tempfile.TemporaryDirectory() as folder:
        program = pathlib.Path(folder, file.stem)
        program.write_text(PROGRAM, encoding="utf-8")
        program.chmod(0o755)
        subprocess.run(["help2man", "--no-info", "--name", name, "--version-string", version,
                        "--include", "/dev/stdin", "--help-option", f"{verb} --help".strip(),
                        "--output", file, program], input=sections, text=True, check=True)


def summary(text: str) -> str:
    """A sentence of the help as the line that whatis(1) shows."""
    first = text.split(". ")[0].split(":")[0].rstrip(".")
    return first[0].lower() + first[1:]


def main(version: str, folder: pathlib.Path, wanted: set[str]) -> None:
    parser = top()
    verbs = members(parser)
    pages = {"qivo-watch.1"} | {f"qivo-watch-{verb}.1" for verb in verbs}
    if wanted != pages:
        sys.exit(f"pages.py: the list of pages lacks {sorted(pages - wanted)} "
                 f"and has {sorted(wanted - pages)} too many")
    everywhere = ".BR qivo\\-watch (1)"
    others = ",\n".join(f".BR qivo\\-watch\\-{verb.replace('-', chr(92) + '-')} (1)"
                        for verb in verbs)
    with ThreadPoolExecutor() as pool:
        jobs = [pool.submit(write_page, version, folder / "qivo-watch.1",
                            "a watch on the desk", "", f"[see also]\n{others}\n")]
        for verb, page in verbs.items():
            parts = "".join(f"[{verb} {word}]\n.nf\n{part.format_help()}.fi\n"
                            for word, part in members(page).items())
            jobs.append(pool.submit(write_page, version, folder / f"qivo-watch-{verb}.1",
                                    summary(page.description), verb,
                                    f"{parts}[see also]\n{everywhere}\n"))
        for job in jobs:
            job.result()


main(sys.argv[1], pathlib.Path(sys.argv[2]), set(sys.argv[3:]))
