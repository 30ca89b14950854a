"""The list of calls is whole: no call of qivo-ui can be left out of the fault matrix."""

import fnmatch
import os
import pathlib
import re
import subprocess

import pytest

HERE = pathlib.Path(__file__).parent
BUILD = pathlib.Path(os.environ["BUILD_DIR"])


def listed_calls():
    text = (HERE.parent / "harness" / "Calls.def").read_text()
    return set(re.findall(r"^(?:CALL\d|FAKE)\([^,]*, (\w+)", text, re.MULTILINE))


def excused_patterns():
    lines = (HERE / "excused.txt").read_text().splitlines()
    return [line.split(maxsplit=1) for line in lines if line and not line.startswith("#")]


def called_symbols():
    objects = sorted((BUILD / "qivo-ui").glob("lib*.a.p/*.o"))
    assert len(objects) == len(list((HERE.parents[2] / "qivo-ui").rglob("*.cpp")))
    output = subprocess.run(
        ["nm", "--undefined-only", "--format=posix", *objects],
        check=True,
        capture_output=True,
        text=True,
    ).stdout
    return {line.split()[0] for line in output.splitlines() if re.search(r" [Uuvw]\b", line)}


def unknown(symbols, calls, patterns):
    return sorted(
        symbol
        for symbol in symbols - calls
        if not any(fnmatch.fnmatchcase(symbol, pattern) for pattern, _ in patterns)
    )


def test_every_call_is_listed_or_excused():
    assert unknown(called_symbols(), listed_calls(), excused_patterns()) == []


def test_every_listed_call_is_made():
    assert sorted(listed_calls() - called_symbols()) == []


def test_every_excuse_has_a_reason():
    assert all(len(line) == 2 for line in excused_patterns())


@pytest.mark.parametrize("symbol", ["elm_win_raise", "malloc", "app_control_clone"])
def test_a_call_that_is_not_listed_is_noticed(symbol):
    symbols = called_symbols() | {symbol}
    assert unknown(symbols, listed_calls(), excused_patterns()) == [symbol]
