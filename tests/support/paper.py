"""What a paper of docs/ shows is tried: its commands, with what they print, and its files."""

import pathlib
import re
import subprocess
import tempfile

PATIENCE_S = 300
"""Seconds for one block; some build an application on a busy machine."""

# What differs from one run or machine to the next.
CHANGING = [
    (re.compile(r"\d\d:\d\d:\d\d\.\d{3} "), "TIME "),
    (re.compile(r"\d{4}-\d\d-\d\dT"), "DATE"),
    (re.compile(r"0x[0-9a-f]+"), "ADDRESS"),
    (re.compile(r"\(\d+\) >"), "(LINE) >"),
    (re.compile(r'"(guard|keeper|server|bus|manager|home|body)": \d+'), r'"\1": PID'),
    (re.compile(r'":\d+"'), "DISPLAY"),
    (re.compile(r'"folder": ".*/qivo-watch/'), '"folder": "RUNTIME/qivo-watch/'),
    (re.compile(r"127\.0\.0\.1:\d+"), "HOST:PORT"),
    (re.compile(r"password=\w{8}$", re.MULTILINE), "password=PASSWORD"),
    (re.compile(r"\d+ pixels differ"), "N pixels differ"),
]

BLOCK = re.compile(
    r"(?:(?P<last>[^\n]*)\n)?(?P<said>[^\n]*)\n\n```(?P<kind>\w*)\n(?P<text>.*?)^```$",
    re.DOTALL | re.MULTILINE)
"""A block with the two lines before it, which say what file it is."""
FILE = re.compile(r"(New,|All of|[Aa]t the end of|[Ii]n) `([^`]+)`"
                  r"(?:, (after|in place of) `([^`]+)`)?:$")


def examples(block):
    """The commands of a console's block with what each is to print."""
    return re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, re.MULTILINE)


def comparable(text):
    for pattern, word in CHANGING:
        text = pattern.sub(word, text)
    return text


class Reader:
    """Does what a paper says, block by block, as a reader would who begins in FOLDER."""

    def __init__(self, page, environment, folder):
        self._page = page
        self._environment = environment
        self.folder = folder
        self.commands = 0

    def read(self):
        for block in BLOCK.finditer(self._page.read_text(encoding="utf-8")):
            kind, text = block["kind"], block["text"]
            said = FILE.search(" ".join([block["last"] or "", block["said"]]))
            if said:
                self._edit(*said.groups(), text)
            elif kind == "console":
                self._try(text)
            elif kind == "sh":
                status, printed = self._run(text)
                assert status == 0, printed

    def _try(self, text):
        for command, expected in examples(text):
            # A file that the page shows is there.
            if command.startswith("cat "):
                (self.folder / command.removeprefix("cat ")).write_text(expected)
            status, printed = self._run(command)
            printed += f"[status {status}]\n" if status else ""
            assert comparable(printed) == comparable(expected), command
            self.commands += 1

    def _run(self, commands):
        """The folder that they go to is that of those that follow."""
        with tempfile.NamedTemporaryFile("r") as place:
            done = subprocess.run(
                ["bash", "-ec", f"trap 'pwd >{place.name}' EXIT\n{commands}"],
                env=self._environment, cwd=self.folder, stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT, text=True, timeout=PATIENCE_S, stdin=subprocess.DEVNULL)
            self.folder = pathlib.Path(place.read().strip())
        return done.returncode, done.stdout

    def _edit(self, how, name, where, line, text):
        file = self.folder / name
        if how == "New,":
            assert not file.exists(), file
        if how in ("New,", "All of"):
            file.write_text(text, encoding="utf-8")
            return
        before = file.read_text(encoding="utf-8")
        if line is None:
            file.write_text(before + text, encoding="utf-8")
            return
        assert before.count(f"{line}\n") == 1, (name, line)
        kept = f"{line}\n" if where == "after" else ""
        file.write_text(before.replace(f"{line}\n", kept + text), encoding="utf-8")
