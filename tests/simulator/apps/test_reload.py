"""Themes that are compiled anew while an application shows them."""

import pathlib
import shutil
import subprocess

import pytest
from PIL import Image

from simulator.desk import BUILD, GUIDE

THEME = pathlib.Path(__file__).parents[3] / "res" / "edje" / "qivoui.edc"
PURPLE = (60, 0, 90)


@pytest.fixture(name="clock")
def _clock(tmp_path):
    """The guide under another id, with its own copy of its theme; returns where."""
    resources = tmp_path / "res"
    for folder in ("edje", "images", "tables"):
        shutil.copytree(BUILD / "res" / folder, resources / folder)
    shutil.copytree(BUILD / "subprojects" / "watch-port" / "theme",
                    tmp_path / "subprojects" / "watch-port" / "theme")
    shutil.copy(BUILD / "qivo-ui" / "qivo-guide-app", tmp_path / "clock")
    (resources / "clock.id").write_text("org.example.Clock\n", encoding="utf-8")
    return tmp_path


def compile_theme(folder, old, new):
    text = THEME.read_text(encoding="utf-8")
    assert old in text
    (folder / "new.edc").write_text(text.replace(old, new), encoding="utf-8")
    subprocess.run(["edje_cc", "-fastdecomp", "-id", folder / "res" / "images", folder / "new.edc",
                    folder / "res" / "edje" / "qivoui.edj"], check=True, capture_output=True)


def picture(desk, tmp_path):
    desk.do("wait", "still")
    desk.do("screenshot", tmp_path / "screen.png")
    with Image.open(tmp_path / "screen.png") as opened:
        return opened.convert("RGB")


def test_a_theme_that_is_compiled_anew_shows_and_the_page_stays_where_it_was(
        desk, clock, tmp_path):
    desk.do("launch", clock / "clock")
    desk.do("bezel", "cw", 2)
    before = picture(desk, tmp_path)
    pid = desk.status()["app"]["pid"]
    compile_theme(clock, "color: BLACK", f"color: {' '.join(map(str, PURPLE))} 255")
    desk.do("reload")
    after = picture(desk, tmp_path)
    assert after.getpixel((180, 200)) == PURPLE and before.getpixel((180, 200)) == (0, 0, 0)
    letters = [[pixel == (255, 255, 255) for pixel in shown.getdata()] for shown in (before, after)]
    assert letters[0] == letters[1] and sum(letters[0]) > 500
    desk.do("bezel", "ccw", 9)
    assert picture(desk, tmp_path).tobytes() != after.tobytes()
    assert desk.status()["app"]["pid"] == pid
    desk.do("button", "click", "back")
    assert desk.status()["app"] is None


def test_a_theme_with_a_part_without_a_name_is_loaded_again(desk, clock):
    compile_theme(clock, "parts {", "parts { rect { desc { visible: 0; } }")
    desk.do("launch", clock / "clock")
    app = desk.status()["app"]
    desk.do("reload")
    assert desk.status()["app"] == app


@pytest.mark.parametrize("state", ["--charging", "--discharging"])
def test_what_the_theme_has_been_told_stays(desk, clock, tmp_path, state):
    desk.do("launch", clock / "clock")
    desk.do("battery", state)
    before = picture(desk, tmp_path)
    compile_theme(clock, "color: BLACK", "color: BLACK")
    desk.do("reload", "org.example.Clock")
    assert picture(desk, tmp_path).tobytes() == before.tobytes()
    desk.do("battery", "--charging" if state == "--discharging" else "--discharging")
    assert picture(desk, tmp_path).tobytes() != before.tobytes()


def test_a_theme_that_cannot_be_read_is_reported_and_the_page_stays(desk, clock, tmp_path):
    desk.do("launch", clock / "clock")
    before = picture(desk, tmp_path)
    theme = clock / "res" / "edje" / "qivoui.edj"
    theme.unlink()
    theme.write_text("no theme", encoding="utf-8")
    assert desk.refused("reload") == (
        "qivo-watch: org.example.Clock shows no theme of its own that can be read")
    assert picture(desk, tmp_path).tobytes() == before.tobytes()


def test_what_cannot_be_loaded_again_is_refused(desk, tmp_path):
    assert desk.refused("reload") == "qivo-watch: no application is running"
    assert desk.refused("reload", GUIDE) == "qivo-watch: no application is running"
    program = tmp_path / "program"
    program.write_text("#!/bin/sh\necho '00:00:00.000 I X: WATCH_PORT: first frame'\n"
                       "exec sleep 600\n", encoding="utf-8")
    program.chmod(0o700)
    desk.do("launch", program)
    assert desk.refused("reload") == (
        "qivo-watch: program takes no request: it has no application id")
