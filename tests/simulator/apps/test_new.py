"""qivo-watch new. What it writes is built and run in tests/script/test_sdk.py."""

import os
import pathlib
import subprocess

import pytest

from simulator.desk import QIVO_WATCH, Desk

ROOT = pathlib.Path(__file__).parents[3]


@pytest.fixture(name="desk")
def _desk(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    with Desk() as desk:
        yield desk


def texts(folder):
    return {str(file.relative_to(folder)): file.read_bytes() for file in folder.rglob("*")
            if file.is_file() and "subprojects" not in file.parts}


def test_an_application_has_its_own_names_everywhere(desk, tmp_path):
    assert desk.do("new", "org.example.step-counter") == ""
    written = texts(tmp_path / "step-counter")
    assert b"org.example.step-counter\n" == written["res/step-counter.id"]
    assert b"Name=Step Counter\n" in written["org.example.step-counter.desktop"]
    assert b"project('step-counter'" in written["meson.build"]
    assert not [name for name, text in written.items()
                if "newapp" in name or b"newapp" in text or b"New App" in text]


def test_it_goes_into_the_folder_that_is_named(desk, tmp_path):
    desk.do("new", "org.example.hello", "other")
    assert sorted(path.name for path in tmp_path.iterdir()) == ["other"]
    assert (tmp_path / "other" / "res" / "hello.id").exists()


def test_in_a_checkout_it_is_built_with_the_checkout(desk, tmp_path):
    desk.do("new", "org.example.hello")
    assert (tmp_path / "hello" / "subprojects" / "qivo-guide-app").resolve() == ROOT


@pytest.mark.parametrize("words, complaint", [
    (["hello"], '"hello" is not an application id (such as org.example.hello'),
    (["org.example.my app"], '"org.example.my app" is not an application id'),
    (["org.example.1st"], "is not an application id"),
    (["org..hello"], "is not an application id"),
    (["org.example.Größe"], "is not an application id"),
    (["org.example." + "a" * 250], "is not an application id"),
    (["org.example.test"], '"org.example.test" is taken'),
    (["org.example.meson-logs"], "is taken"),
    (["org.example.scan-build"], "is taken"),
    (["org.example.clean-gcda"], "is taken"),
    (["com.velmora.qivo-guide-app"], "is taken"),
    (["org.example.hello", "my app"], 'a folder\'s name with blanks: "my app"')])
def test_a_bad_name_is_refused(desk, tmp_path, words, complaint):
    assert complaint in desk.refused("new", *words, status=2)
    assert not list(tmp_path.iterdir())


def test_what_exists_is_left_alone(desk, tmp_path):
    (tmp_path / "hello").symlink_to("nowhere")
    for folder in ("hello", ".", ""):
        assert "exists already" in desk.refused("new", "org.example.hello", folder)
    assert [path.name for path in tmp_path.iterdir()] == ["hello"]


@pytest.mark.parametrize("folder, reason", [
    ("missing/hello", "No such file or directory"), ("file/hello", "Not a directory"),
    ("/sys/hello", "Operation not permitted|Permission denied")])
def test_a_folder_that_cannot_be_made_is_one_line(desk, tmp_path, folder, reason):
    if folder.startswith("/sys/") and not os.path.ismount("/sys"):
        pytest.skip("the kernel's files are not mounted at /sys")
    (tmp_path / "file").touch()
    line = desk.refused("new", "org.example.hello", folder)
    assert line.startswith(f'qivo-watch: cannot make "{folder}": ')
    assert line.rpartition(": ")[2] in reason.split("|")


def test_what_cannot_be_written_whole_leaves_nothing(desk, tmp_path):
    words = [QIVO_WATCH.resolve(), "new", "org.example.hi"]
    done = subprocess.run(["prlimit", "--fsize=2000", *words],
                          env=desk.environment | {"PYTHONDONTWRITEBYTECODE": "1"},
                          capture_output=True, text=True)
    assert (done.returncode, done.stderr) == (1, 'qivo-watch: cannot make "hi": File too large\n')
    assert not os.listdir(tmp_path)
