"""docs/watch.md, whose examples are one session from the first block to the last."""

import pathlib
import re
import subprocess

import pytest

from simulator.desk import PATIENCE_S, QIVO_WATCH, Desk

PAGE = pathlib.Path(__file__).parents[2] / "docs" / "watch.md"

# What differs from one run or machine to the next.
CHANGING = [
    (re.compile(r"\d\d:\d\d:\d\d\.\d{3} "), "TIME "),
    (re.compile(r"\d{4}-\d\d-\d\dT"), "DATE"),
    (re.compile(r"0x[0-9a-f]+"), "ADDRESS"),
    (re.compile(r"\(\d+\) >"), "(LINE) >"),
    (re.compile(r'"(guard|keeper|server|bus|manager|home|body)": \d+'), r'"\1": PID'),
    (re.compile(r'":\d+"'), "DISPLAY"),
    (re.compile(r'"/[^"]*/hello/'), '"/PLACE/hello/'),
    (re.compile(r'"folder": ".*/qivo-watch/'), '"folder": "RUNTIME/qivo-watch/'),
    (re.compile(r"127\.0\.0\.1:\d+"), "HOST:PORT"),
    (re.compile(r"password=\w{8}$", re.MULTILINE), "password=PASSWORD"),
    (re.compile(r"\d+ pixels differ"), "N pixels differ"),
]


def examples():
    """The commands of the page with what each is to print."""
    blocks = re.findall(r"^```console\n(.*?)^```", PAGE.read_text(encoding="utf-8"),
                        re.DOTALL | re.MULTILINE)
    return re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", "".join(blocks), re.MULTILINE)


def comparable(text):
    for pattern, word in CHANGING:
        text = pattern.sub(word, text)
    return text


@pytest.fixture(name="desk")
def _desk():
    with Desk() as desk:
        desk.environment["PATH"] = f"{QIVO_WATCH.resolve().parent}:{desk.environment['PATH']}"
        desk.environment["TZ"] = "UTC"
        yield desk


def run(command, desk, folder):
    result = subprocess.run(["bash", "-c", command], env=desk.environment, cwd=folder,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                            timeout=PATIENCE_S, stdin=subprocess.DEVNULL)
    status = f"[status {result.returncode}]\n" if result.returncode else ""
    return result.stdout + status


def test_each_example_prints_what_the_page_says(desk, tmp_path):
    commands = examples()
    assert len(commands) > 50
    for command, expected in commands:
        # A file that the page shows is there.
        if command.startswith("cat "):
            (tmp_path / command.removeprefix("cat ")).write_text(expected)
        printed = run(command, desk, tmp_path)
        assert comparable(printed) == comparable(expected), command
