"""Build folders that belong elsewhere or have other options, and what the scripts install."""

import fcntl
import os
import pathlib
import shutil
import subprocess

import pytest

SCRIPT = pathlib.Path(__file__).parents[2] / "script"
OPTIONS = SCRIPT.parent / "meson_options.txt"
MESON = """project('place')
custom_target('where', output: 'where', build_by_default: true,
  command: ['sh', '-c', 'echo "@0@" >"$1"'.format(meson.project_source_root()), '-', '@OUTPUT@'])
"""


@pytest.fixture(name="checkout")
def _checkout(tmp_path):
    """A project of nothing but its build scripts. Its one target says where it was built."""
    root = tmp_path / "first"
    (root / "script").mkdir(parents=True)
    shutil.copy(SCRIPT / "build", root / "script")
    shutil.copy(OPTIONS, root)
    (root / "meson.build").write_text(MESON, encoding="utf-8")
    return root


def build(root, kind="run", **environment):
    result = subprocess.run([root / "script" / "build", kind], capture_output=True, text=True,
                            env=os.environ | environment)
    assert result.returncode == 0, result
    assert (root / "build" / kind / "where").read_text(encoding="utf-8") == f"{root}\n"
    return result.stdout


def test_a_folder_that_is_as_wanted_is_built_in_and_not_configured_again(checkout):
    assert "The Meson build system" in build(checkout)
    again = build(checkout)
    assert "The Meson build system" not in again and "no work to do" in again


@pytest.mark.parametrize("move", [shutil.copytree, pathlib.Path.rename])
def test_a_copied_or_moved_checkout_builds_in_its_own_place(checkout, tmp_path, move):
    build(checkout)
    file = checkout / "build" / "run" / "build.ninja"
    before = file.stat().st_mtime_ns
    second = tmp_path / "second"
    move(checkout, second)
    assert "making build/run again" in build(second)
    assert str(checkout) not in (second / "build" / "run" / "build.ninja").read_text()
    assert not file.exists() or file.stat().st_mtime_ns == before


def test_options_that_a_pull_has_changed_reach_an_old_folder(checkout):
    build(checkout)
    script = checkout / "script" / "build"
    script.write_text(script.read_text().replace("--buildtype=release", "--buildtype=debug"))
    assert "making build/run again" in build(checkout)
    build(checkout)


def test_a_folder_that_was_never_wholly_configured_is_made_anew(checkout):
    (checkout / "build" / "run").mkdir(parents=True)
    (checkout / "build" / "run" / "build.ninja").write_text("nonsense")
    assert "making build/run again" in build(checkout)


def test_a_compiler_that_is_chosen_is_an_option_too(checkout):
    build(checkout, CXX="g++")
    assert "making build/run again" in build(checkout, CXX="clang++")


def test_the_second_of_two_builds_at_once_waits_for_the_first(checkout):
    (checkout / "build").mkdir()
    with open(checkout / "build" / "run.lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        second = subprocess.Popen([checkout / "script" / "build", "run"], text=True,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        told = second.stderr.readline()
    assert told == "script/build: waiting for another build in build/run\n"
    assert second.communicate()[1] == "" and second.returncode == 0


def test_two_first_builds_at_once_both_end_well(checkout):
    builds = [subprocess.Popen([checkout / "script" / "build", "run"], stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, text=True) for _ in range(2)]
    told = [one.communicate()[0] for one in builds]
    assert [one.returncode for one in builds] == [0, 0], told
    assert "".join(told).count("The Meson build system") == 1


def test_a_checkout_that_cannot_be_written_into_says_how_to_build_elsewhere(checkout):
    # No permission stops root, a file in the folder's place does.
    (checkout / "build").touch()
    result = subprocess.run([checkout / "script" / "build", "run"], capture_output=True, text=True)
    assert (result.returncode, result.stdout, result.stderr.count("\n")) == (1, "", 1)
    assert f"cannot write in {checkout}/build" in result.stderr
    assert f"meson setup FOLDER {checkout}" in result.stderr


def test_no_other_script_configures_a_build_folder():
    for script in SCRIPT.iterdir():
        assert script.name == "build" or "meson setup" not in script.read_text(), script


@pytest.fixture(name="bare_machine")
def _bare_machine(tmp_path):
    """The environment of a machine without any package and without a network."""
    tools = {"dpkg-query": "exit 1", "apt-get": "exit 1", "id": "echo 0"}
    for name, action in tools.items():
        (tmp_path / name).write_text(f"#!/bin/sh\n{action}\n", encoding="ascii")
        (tmp_path / name).chmod(0o755)
    return os.environ | {"PATH": f"{tmp_path}:{os.environ['PATH']}"}


def wanted_by(command, environment):
    result = subprocess.run(command, env=environment, capture_output=True, text=True)
    assert result.returncode == 1 and "apt-get update failed" in result.stderr
    first = (result.stdout + result.stderr).splitlines()[0]
    assert first.startswith("script/setup: installing ")
    return set(first.split()[2:])


def test_each_set_of_packages_holds_the_smaller_ones(bare_machine):
    run, unit, tools, test = (wanted_by([SCRIPT / "setup", name], bare_machine)
                              for name in ("run", "unit", "tools", "test"))
    assert run < unit < tools < test and test == wanted_by([SCRIPT / "setup"], bare_machine)


@pytest.mark.parametrize("command", [["gallery"], ["valgrind"], ["coverage"], ["mutate"],
                                     ["fuzz", "1"]])
def test_what_measures_in_process_installs_neither_browser_nor_compositor(bare_machine, command):
    wanted = wanted_by([SCRIPT / command[0], *command[1:]], bare_machine)
    assert wanted and not wanted & {"chromium", "weston", "xfwm4", "novnc", "x11vnc"}
