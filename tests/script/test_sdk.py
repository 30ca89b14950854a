"""What is installed for the developers of other applications, and one that needs nothing else."""

import json
import os
import pathlib
import re
import shutil
import subprocess

import pytest

from simulator.desk import Desk
from support.paper import Reader

ROOT = pathlib.Path(__file__).parents[2]
BUILD = pathlib.Path(os.environ["BUILD_DIR"]).resolve()
FOLDER = pathlib.Path("lib/watch-port")
WATCH = ["dlog", "capi-appfw-application", "capi-appfw-app-control", "capi-appfw-app-common",
         "capi-system-system-settings", "capi-system-device", "efl-extension", "ui-extension"]

# Two processes would install, and follow the paper, each for itself.
installed_once = pytest.mark.xdist_group("sdk")

APPLICATION = """
#include "common/BaseView.h"
#include "common/NaviFrame.h"
#include <Elementary.h>
#include <app.h>
#include <device/battery.h>
#include <efl_extension.h>
#include <system_settings.h>
#include <ui_extension.h>

class View : public QivoUi::BaseView
{
    std::shared_ptr<QivoUi::NaviFrameItemData> CreateViewImpl(Evas_Object* parent) override
    {
        auto data = std::make_shared<QivoUi::NaviFrameItemData>();
        data->mViewLayout = elm_layout_add(parent);
        return data;
    }
};

View view;

bool Create(void*)
{
    Evas_Object* window = elm_win_add(nullptr, "app", ELM_WIN_BASIC);
    evas_object_show(window);
    Evas_Object* layout = elm_layout_add(window);
    elm_layout_theme_set(layout, "layout", "application", "default");
    elm_win_resize_object_add(window, layout);
    evas_object_show(layout);
    QivoUi::NaviFrame::GetInstance()->CreateNaviFrame(layout);
    view.CreateView();
    bool isCharging = false;
    device_battery_is_charging(&isCharging);
    return view.Show(true) != nullptr && uxt_theme_set_changeable_ui_enabled(EINA_TRUE) == 0 &&
           system_settings_unset_changed_cb(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE) == 0;
}

int main(int argc, char** argv)
{
    ui_app_lifecycle_callback_s callbacks = {};
    callbacks.create = Create;
    callbacks.resume = [](void*) { ui_app_exit(); };
    return ui_app_main(argc, argv, &callbacks, nullptr);
}
"""


def planned(build, *options):
    """Where an installation with these options gets each file from, by its place."""
    subprocess.run(["meson", "setup", build, ROOT, "-Dtests=false", "-Dexamples=false",
                    "--prefix=/prefix", *options], check=True, capture_output=True)
    plan = json.loads((build / "meson-info" / "intro-installed.json").read_text())
    return {pathlib.Path(place).relative_to("/prefix"): pathlib.Path(source)
            for source, place in plan.items()}


def copy_archive(source, place):
    """The archive of the build that is tested, which may only refer to its objects."""
    names = subprocess.run(["ar", "t", source], cwd=BUILD, check=True, capture_output=True,
                           text=True).stdout.split()
    subprocess.run(["ar", "rcs", place, *names], cwd=BUILD, check=True)


def install(source, build, target):
    """What the build that is tested has made, a link of its folder's, or a part of the checkout."""
    target.parent.mkdir(parents=True, exist_ok=True)
    if not source.exists():
        source = BUILD / source.relative_to(build)
    if source.is_dir():
        shutil.copytree(source, target, ignore=(
            shutil.ignore_patterns("*.cpp") if "lib" in target.parts else None))
    elif source.suffix == ".a":
        copy_archive(source, target)
    else:
        shutil.copy(source, target)


@pytest.fixture(scope="module", name="prefix")
def _prefix(tmp_path_factory):
    """An installation for developers, moved to another place than it was configured for."""
    folder = tmp_path_factory.mktemp("sdk")
    build = folder / "build"
    for place, source in planned(build, "-Dsdk=true").items():
        if place.suffix != ".mo":
            install(source, build, folder / "prefix" / place)
    return folder / "prefix"


@pytest.fixture(scope="module", name="sdk")
def _sdk(prefix):
    return prefix / FOLDER


def test_nothing_is_installed_for_developers_unless_they_ask(tmp_path):
    places = planned(tmp_path / "build")
    assert not [place for place in places if place.suffix in (".a", ".h", ".pc")]


@installed_once
def test_each_library_has_the_watchs_name_in_a_private_folder(sdk):
    assert sorted(file.stem for file in (sdk / "pkgconfig").iterdir()) == sorted(
        [*WATCH, "qivo-framework"])


@installed_once
def test_an_application_is_built_with_the_installed_files_alone(sdk, tmp_path):
    (tmp_path / "app.cpp").write_text(APPLICATION)
    (tmp_path / "res").mkdir()
    flags = subprocess.run(
        ["pkg-config", "--cflags", "--libs", "qivo-framework"], check=True, capture_output=True,
        text=True, env={**os.environ, "PKG_CONFIG_PATH": str(sdk / "pkgconfig")}).stdout.split()
    assert not [flag for flag in flags if str(ROOT) in flag]
    subprocess.run(["g++", "-std=c++17", "-Wall", "-Wextra", "-Werror", "app.cpp", "-o", "app",
                    *flags], cwd=tmp_path, check=True)
    done = subprocess.run([tmp_path / "app"], capture_output=True, text=True, env={
        "PATH": os.environ["PATH"], "HOME": str(tmp_path), "XDG_RUNTIME_DIR": str(tmp_path),
        "ELM_ENGINE": "buffer", "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={tmp_path}/no-bus"})
    assert done.returncode == 0, done.stderr
    assert "[Failed]" not in done.stderr


@pytest.fixture(scope="module", name="desk")
def _desk():
    with Desk() as desk:
        yield desk


@pytest.fixture(scope="module", name="application")
def _application(prefix, desk, tmp_path_factory):
    """What a reader of docs/first-app.md has at its end, below a folder with a blank."""
    folder = tmp_path_factory.mktemp("my applications")
    # The archives know the place that they were configured for: the watch's theme is found above.
    theme = folder / "subprojects" / "watch-port" / "theme"
    theme.parent.mkdir(parents=True)
    theme.symlink_to(prefix / "share" / "watch-port")
    environment = {key: value for key, value in desk.environment.items()
                   if key not in ("PKG_CONFIG_PATH", "CC", "CXX")}
    environment |= {
        "PATH": f"{prefix / 'bin'}:{environment['PATH']}",
        # Lets a compiler cache, if there is one, know what it has compiled in another folder.
        "CCACHE_BASEDIR": str(folder.parent), "CCACHE_NOHASHDIR": "yes"}
    reader = Reader(ROOT / "docs" / "first-app.md", environment, folder)
    reader.read()
    return reader.folder


@installed_once
def test_the_paper_on_a_first_application_does_what_it_says(application):
    assert (application / "pictures" / "count.png").is_file()


@installed_once
def test_an_editor_finds_the_headers(application):
    settings = (application / ".clangd").read_text()
    folder = re.search(r"CompilationDatabase: (\S+)", settings)[1]
    commands = json.loads((application / folder / "compile_commands.json").read_text())
    assert {pathlib.Path(command["file"]).name for command in commands} == {
        file.name for file in (application / "src").glob("*.cpp")}


def test_a_checkout_serves_as_a_subproject(desk, tmp_path):
    """Its libraries are those of the build that is tested: to build them again takes minutes."""
    desk.do("new", "org.example.hello", tmp_path / "hello")
    build = tmp_path / "hello" / "b"
    subprocess.run(["meson", "setup", build, build.parent, "-Dunity=on", "-Dunity_size=1000"],
                   check=True, capture_output=True, env=desk.environment)
    link = subprocess.run(["ninja", "-C", build, "-t", "commands", "-s", "hello"], check=True,
                          capture_output=True, text=True).stdout.splitlines()[-1]
    subprocess.run(["ninja", "-C", build, *re.findall(r"hello\.p/\S+\.o", link)], check=True,
                   capture_output=True)
    (tmp_path / "hello.p").symlink_to(build / "hello.p")
    (tmp_path / "subprojects").mkdir()
    (tmp_path / "subprojects" / "qivo-guide-app").symlink_to(BUILD)
    link = link.replace("-o hello ", "-o program ", 1)
    subprocess.run(link, shell=True, cwd=tmp_path, check=True)
    tests = json.loads(subprocess.run(["meson", "introspect", "--tests", build], check=True,
                                      capture_output=True).stdout)
    watch = build / "subprojects" / "qivo-guide-app" / "simulator" / "qivo-watch"
    assert str(watch) in next(test["cmd"] for test in tests if test["name"] == "replay")
