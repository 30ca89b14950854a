"""The guide where something that it needs is not there, or is not what it should be."""

import pathlib
import shutil

import pytest

from e2e.app import BUILD, GUIDE, App
from e2e.watch import bare_environment
from support.bus import SystemBus

PAGE_THEME = "res/edje/qivoui.edj"
PLATFORM_THEME = "subprojects/watch-port/theme/platform.edj"
TABLES = ["res/tables/com.velmora.qivo-app_ChangeableColorTable.xml",
          "res/tables/com.velmora.qivo-app_FontInfoTable.xml"]

DAMAGES = ["missing", "empty", "garbled"]


@pytest.fixture(name="copy")
def _copy(tmp_path):
    """A copy of the built guide and of all that it reads, to be damaged."""
    themes_and_tables = (BUILD / name for name in [PAGE_THEME, PLATFORM_THEME, *TABLES])
    for path in [GUIDE, *themes_and_tables, *(BUILD / "res").rglob("*.mo")]:
        target = tmp_path / path.relative_to(BUILD)
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(path, target)
    return tmp_path


def complaints(app, word):
    return [line for line in app.log if word in line]


def do_damage(resource, damage):
    if damage == "missing":
        resource.unlink()
    else:
        resource.write_bytes(b"" if damage == "empty" else b"<not \xff what it should be" * 40)


def run_to_end(environment, *arguments):
    with App(environment, arguments) as app:
        return app.wait_end(), app.log


def test_the_copy_of_the_build_shows_the_same_page(watch, copy):
    original = watch.launch()
    page = watch.still_picture()
    original.terminate()
    original.wait_end()
    watch.launch(executable=copy / GUIDE.relative_to(BUILD))
    assert watch.still_picture() == page


@pytest.mark.parametrize("name", TABLES)
@pytest.mark.parametrize("damage", DAMAGES)
def test_a_damaged_table_is_named_in_one_line_and_the_page_comes(watch, copy, name, damage):
    do_damage(copy / name, damage)
    app = watch.launch(executable=copy / GUIDE.relative_to(BUILD))
    assert len(complaints(app, pathlib.Path(name).name)) == 1, app.tail()
    assert len(watch.still_picture().colours()) > 50
    watch.press_back()
    assert app.wait_end() == 0


@pytest.mark.parametrize("damage", DAMAGES)
def test_without_the_page_theme_the_failure_is_logged_and_the_guide_lives(watch, copy, damage):
    do_damage(copy / PAGE_THEME, damage)
    app = watch.launch(executable=copy / GUIDE.relative_to(BUILD))
    assert complaints(app, PAGE_THEME), app.tail()
    for image in ["pay_payment_help_image01.png", "pay_homescreen_guide.png"]:
        app.wait_log(" E QIVOUI_GUIDE", image)
    watch.press_back()
    assert app.wait_end() == 0


@pytest.mark.parametrize("damage", DAMAGES)
def test_a_damaged_platform_theme_is_named_in_one_line_and_the_guide_lives(watch, copy, damage):
    do_damage(copy / PLATFORM_THEME, damage)
    app = watch.launch(executable=copy / GUIDE.relative_to(BUILD))
    assert len(complaints(app, PLATFORM_THEME)) == 1, app.tail()
    app.terminate()
    assert app.wait_end() == 0


def test_without_a_catalogue_the_message_id_is_shown(watch, copy):
    page_shown = watch.launch()
    page = watch.still_picture()
    page_shown.terminate()
    page_shown.wait_end()
    shutil.rmtree(copy / "res" / "locale")
    app = watch.launch(executable=copy / GUIDE.relative_to(BUILD))
    _, top, _, _ = watch.still_picture().differing(page)
    assert top > 152
    app.terminate()
    assert app.wait_end() == 0


def test_without_services_the_page_is_shown_all_the_same(watch):
    with SystemBus() as bus:
        bus.die()
        watch.environment |= bus.env
    app = watch.launch()
    app.wait_log("device_battery_is_charging is error")
    watch.press_back()
    assert app.wait_end() == 0


def test_without_a_display_one_line_says_so(tmp_path):
    status, log = run_to_end(bare_environment(str(tmp_path)))
    assert status not in (0, -6, -11)
    assert sum("display" in line.lower() for line in log) == 1, log


@pytest.mark.parametrize("arguments, named", [
    (["--bogus"], "--bogus"),
    (["stray"], "stray"),
    (["--operation"], "--operation"),
    (["--extra"], "--extra"),
    (["--extra", "no-equals-sign"], "no-equals-sign"),
    (["--extra", "=value-without-key"], "=value-without-key"),
])
def test_a_wrong_argument_is_named_in_one_line(tmp_path, arguments, named):
    status, log = run_to_end(bare_environment(str(tmp_path)), *arguments)
    assert status > 0
    assert sum(named in line for line in log) == 1, log
