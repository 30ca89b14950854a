"""The build takes the watch's libraries from the system, and from the port only what it lacks."""

import json
import os
import pathlib
import subprocess

import pytest

ROOT = pathlib.Path(__file__).parents[2]
LIBRARIES = ["dlog", "capi-appfw-application", "capi-appfw-app-control", "capi-appfw-app-common",
             "capi-system-system-settings", "capi-system-device", "efl-extension", "ui-extension"]


@pytest.fixture
def system(tmp_path):
    """Makes a system with some of the libraries; gives what a build on it would build."""
    def configured(names):
        for name in names:
            (tmp_path / f"{name}.pc").write_text(
                f"Name: {name}\nDescription: the watch's own\nVersion: 1\nLibs: -lown-{name}\n")
        build = tmp_path / "build"
        subprocess.run(["meson", "setup", build, ROOT], check=True, capture_output=True, text=True,
                       env={**os.environ, "PKG_CONFIG_PATH": str(tmp_path)})
        targets = json.loads((build / "meson-info" / "intro-targets.json").read_text())
        program = subprocess.run(
            ["ninja", "-C", build, "-t", "commands", "qivo-ui/qivo-guide-app"],
            check=True, capture_output=True, text=True).stdout.splitlines()[-1]
        return targets, program
    return configured


def test_nothing_of_the_port_is_built_where_the_system_has_all(system):
    targets, program = system(LIBRARIES)
    assert [target["name"] for target in targets if target["subproject"]] == []
    assert [name for name in LIBRARIES if f"-lown-{name}" not in program] == []


@pytest.mark.parametrize("name", ["dlog", "efl-extension"])
def test_a_library_of_the_system_stands_among_those_of_the_port(system, name):
    _, program = system([name])
    assert f"-lown-{name}" in program
    assert [other for other in LIBRARIES
            if (f"lib{other}.a" in program) != (other != name)] == []
