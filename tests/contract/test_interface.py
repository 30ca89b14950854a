"""The classes promise what interface.txt holds."""

import os
import pathlib
import shutil

import pytest

from contract import interface

BUILD = pathlib.Path(os.environ["BUILD_DIR"]).resolve()


def test_the_classes_promise_what_they_promised():
    now = interface.interface(interface.ROOT, BUILD)
    assert now == interface.KEPT.read_text(), (
        "what is meant to change goes into the file too: "
        "BUILD_DIR=BUILD /usr/bin/python3 tests/contract/interface.py > new && "
        "mv new tests/contract/interface.txt")


@pytest.mark.parametrize("was, becomes", [
    ("    void SetMainWindow(", "    void SetMainWindows("),
    ("    void SetMainWindow(", "    virtual void SetMainWindow("),
    ("bool animated,\n", "int animated,\n"),
    ("    bool mIsPaused", "    bool mOther = false;\n    bool mIsPaused"),
    (": public AppEventListener", ": private AppEventListener"),
    ("\npublic:\n", "\nprivate:\n"),
])
def test_a_changed_promise_is_noticed(tmp_path, was, becomes):
    shutil.copytree(interface.ROOT / "qivo-ui", tmp_path / "qivo-ui")
    header = tmp_path / "qivo-ui" / "common" / "NaviFrame.h"
    text = header.read_text()
    assert was in text
    header.write_text(text.replace(was, becomes, 1))
    assert interface.interface(tmp_path, BUILD) != interface.KEPT.read_text()
