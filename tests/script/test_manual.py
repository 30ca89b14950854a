"""Manual pages and completions, as they are installed."""

import os
import pathlib
import re
import subprocess

import pytest

MANUAL = pathlib.Path(os.environ["BUILD_DIR"]).resolve() / "simulator/manual"
COMPLETE = """source "$1"; shift
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_qivo_watch
printf '%s\\n' "${COMPREPLY[@]}" """


def completed(*words):
    return subprocess.run(["bash", "-c", COMPLETE, "bash", MANUAL / "qivo-watch", *words],
                          check=True, text=True, capture_output=True).stdout.split()


def test_a_page_tells_what_help_tells():
    page = (MANUAL / "qivo-watch-battery.1").read_text(encoding="utf-8")
    assert page.startswith(".") and "qivo-watch-battery \\- set the battery" in page
    assert "\\fB\\-\\-charging\\fR" in page


def test_the_page_of_a_group_tells_each_of_its_verbs():
    page = (MANUAL / "qivo-watch-wait.1").read_text(encoding="utf-8")
    assert '.SH "WAIT LOG"' in page and "ignore the lines that are already there" in page


@pytest.mark.parametrize("words, offered", [
    (["st"], ["start", "status", "stop"]),
    (["start", "--si"], ["--size"]),
    (["start", "--size", ""], ["360", "390", "454"]),
    (["wait", "f"], ["frame"]),
    (["wait", "log", "--n"], ["--name", "--new"]),
    (["log", "--level", "e"], ["error"]),
    (["--name", "other", "motion", "r"], ["reduced"]),
])
def test_bash_completes(words, offered):
    assert completed("qivo-watch", *words) == offered


@pytest.mark.parametrize("file, form", [("_qivo-watch", r'^\s*"(\S+):'),
                                        ("qivo-watch.fish", r"-f -a (\S+) -d")])
def test_other_shells_complete_every_verb(file, form):
    verbs = {page.stem[len("qivo-watch-"):] for page in MANUAL.glob("qivo-watch-*.1")}
    assert verbs <= set(re.findall(form, (MANUAL / file).read_text(encoding="utf-8"), re.MULTILINE))
