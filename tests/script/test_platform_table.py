"""docs/platform.md against the port's public headers: a row for each call, and for nothing else."""

import pathlib
import re

ROOT = pathlib.Path(__file__).parents[2]
PORT = ROOT / "subprojects" / "watch-port"
DOCUMENT = ROOT / "docs" / "platform.md"

COMMENT_OR_DIRECTIVE = re.compile(r"/\*.*?\*/|//[^\n]*|^#[^\n]*", re.DOTALL | re.MULTILINE)
FUNCTION = re.compile(r"^[a-zA-Z][\w *]*?\b(\w+)\([^;{]*\)[^;{]*;", re.MULTILINE)


def libraries():
    """The name and the public headers of each library of the port that has some."""
    for folder in sorted(PORT.glob("*/include")):
        yield folder.parent.name, sorted(folder.rglob("*.h"))


def public_functions(headers):
    return {name for header in headers
            for name in FUNCTION.findall(COMMENT_OR_DIRECTIVE.sub("", header.read_text()))}


def sections():
    """The document's sections by their title, which is a library's name."""
    parts = re.split(r"^## (.+)\n", DOCUMENT.read_text(), flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def calls(section):
    """What the rows of a section's table of calls begin with."""
    rows = re.search(r"^\| Call \|.*\n\|[-|]+\n((?:\|.*\n)*)", section, flags=re.MULTILINE)[1]
    return {call for row in rows.splitlines() for call in re.findall(r"`(\w+)`", row.split("|")[1])}


def test_each_public_call_has_a_row_in_its_librarys_section_and_no_row_is_of_another():
    functions = {name: public_functions(headers) for name, headers in libraries()}
    assert sum(map(len, functions.values())) > 30
    text = sections()
    assert {name: calls(text[name]) for name in functions} == functions


def test_each_section_names_its_librarys_headers():
    for name, headers in libraries():
        told = {header.relative_to(PORT / name / "include").as_posix() for header in headers
                if public_functions([header])}
        assert told == set(re.findall(r"`([\w/]+\.h)`", sections()[name].split("|")[0])), name
