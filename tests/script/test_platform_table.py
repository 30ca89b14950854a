"""The document on the watch's interfaces: it lists every call, and tests that there are."""

import pathlib
import re

ROOT = pathlib.Path(__file__).parents[2]
TESTS = ROOT / "tests" / "port"
PORT = ROOT / "subprojects" / "watch-port"
LINES = (ROOT / "docs" / "platform.md").read_text().splitlines()

PUBLIC_HEADER = re.compile(r"[a-z_]+\.h")
FUNCTION = re.compile(r"^[a-zA-Z][\w *]*?\b(\w+)\([^;{]*\)[^;{]*;", re.MULTILINE)
GTEST_CASE = re.compile(r"^TEST(?:_F|_P)?\((\w+),\s*(\w+)\)", re.MULTILINE)
PYTEST_CASE = re.compile(r"^def (test_\w+)\(", re.MULTILINE)


def public_functions():
    for header in PORT.rglob("*.h"):
        if PUBLIC_HEADER.fullmatch(header.name):
            text = re.sub(r"/\*.*?\*/|//[^\n]*|^#[^\n]*", "", header.read_text(),
                          flags=re.DOTALL | re.MULTILINE)
            yield from FUNCTION.findall(text)


def cases(path):
    """A file's tests and suites, as the document names them."""
    text = path.read_text()
    names = set(PYTEST_CASE.findall(text))
    for suite, name in GTEST_CASE.findall(text):
        names |= {suite, name, f"{suite}.{name}"}
    return names


def file_of(word):
    """The file that a word of the document names, or None."""
    if not re.fullmatch(r"[\w/]+\.(py|cpp)", word):
        return None
    return ROOT / word if "/" in word else TESTS / word


def named_tests():
    """Each test that the document names, and the file it names before it in the line, if any."""
    for line in LINES:
        file = None
        in_test_column = line.rpartition("|")[0].rpartition("|")[2]
        for word in re.findall(r"`([^`]+)`", line):
            file = file_of(word) or file
            if re.fullmatch(r"test_\w+|[A-Z]\w+\.[A-Z]\w+", word) or (
                    file and file.suffix == ".cpp" and f"`{word}`" in in_test_column
                    and re.fullmatch(r"[A-Z]\w+", word)):
                yield word, file


def test_every_public_function_has_a_row():
    functions = set(public_functions())
    assert len(functions) > 20
    rows = [line.split("|")[1] for line in LINES if line.startswith("|")]
    named = {word for cell in rows for word in re.findall(r"`(\w+)`", cell)}
    assert sorted(functions - named) == []


def test_every_named_file_of_tests_exists():
    files = {file for line in LINES for word in re.findall(r"`([^`]+)`", line)
             if (file := file_of(word))}
    assert len(files) > 10
    assert [str(file) for file in sorted(files) if not file.is_file()] == []


def test_every_named_test_is_in_the_file_that_is_named_before_it():
    everywhere = set().union(*(cases(file) for file in TESTS.iterdir() if file.is_file()))
    named = list(named_tests())
    assert len(named) > 60
    assert [(name, file and file.name) for name, file in named
            if name not in (cases(file) if file else everywhere)] == []
