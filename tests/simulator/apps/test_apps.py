"""Applications that are installed on the watch: listed, shown, launched, started by the bus."""

import importlib
import json
import os
import shutil
import subprocess

import dbus.bus
import pytest

from simulator.desk import BUILD, GUIDE, Desk
from support.bus import wait_until

FRAME = "echo '00:00:00.000 I X: WATCH_PORT: first frame'"
HELLO = "org.example.hello"
WATCH, INTERFACE = "com.velmora.QivoWatch", "com.velmora.QivoWatch1"


@pytest.fixture(name="bus")
def _bus(desk):
    bus = dbus.bus.BusConnection(f"unix:path={desk.status()['folder']}/bus")
    yield bus
    bus.close()


@pytest.fixture(name="write")
def _write(tmp_path):
    """Makes an application without a window; returns its desktop entry."""
    def write(*lines, app_id=HELLO, folder=tmp_path, program=(FRAME, "exec sleep 600")):
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "hello").write_text("\n".join(["#!/bin/sh", *program, ""]), encoding="utf-8")
        (folder / "hello").chmod(0o700)
        entry = folder / f"{app_id}.desktop"
        entry.write_text("\n".join(["[Desktop Entry]", *(lines or (
            "Type=Application", "Name=Hello", "Name[ko]=안녕", "Exec=hello")), ""]),
                         encoding="utf-8")
        return entry
    return write


@pytest.fixture(name="clock")
def _clock(tmp_path):
    """The guide under another id, installed with its entry; returns where."""
    prefix = tmp_path / "prefix"
    for folder in ("bin", "share/clock", "share/applications"):
        (prefix / folder).mkdir(parents=True)
    shutil.copy(BUILD / "qivo-ui" / "qivo-guide-app", prefix / "bin" / "clock")
    (prefix / "share/clock/clock.id").write_text("org.example.Clock\n", encoding="utf-8")
    (prefix / "share/applications/org.example.Clock.desktop").write_text(
        "[Desktop Entry]\nType=Application\nName=Clock\nExec=clock\n", encoding="utf-8")
    return prefix


@pytest.fixture(name="module")
def _module(monkeypatch):
    """Imports a module of the watch, whose parts need no watch."""
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    return lambda name: importlib.import_module(f"qivo_watch.{name}")


@pytest.fixture(name="complaint_of")
def _complaint_of(module):
    """Reads a place; returns why it is refused."""
    def complaint_of(place):
        with pytest.raises(module("errors").WatchError) as refused:
            module("keeper.apps.entries").entries_at(place)
        return str(refused.value)
    return complaint_of


def installed(desk):
    return {app["id"]: app for app in json.loads(desk.do("apps", "--json"))}


def shown(bus):
    """Ids, names and icons as the home face gets them."""
    watch = bus.get_object(WATCH, "/com/velmora/QivoWatch", introspect=False)
    return [tuple(map(str, app)) for app in
            watch.Get(INTERFACE, "Apps", dbus_interface="org.freedesktop.DBus.Properties")]


def test_the_guide_is_there_from_the_start(desk, bus):
    assert desk.do("apps") == f"{GUIDE}  Qivo Guide\n"
    assert shown(bus) == [(GUIDE, "Qivo Guide", "")]


def test_an_installed_application_is_launched_by_its_id(desk, write):
    desk.do("install", write().parent)
    assert desk.do("apps") == f"{GUIDE}  Qivo Guide\n{HELLO}           Hello\n"
    desk.do("launch", HELLO)
    assert desk.status()["app"]["id"] == HELLO
    assert desk.status()["apps"] == [GUIDE, HELLO]


def test_an_entry_is_installed_by_its_file_too(desk, write):
    entry = write()
    desk.do("install", entry)
    assert installed(desk)[HELLO] == {
        "id": HELLO, "name": "Hello", "icon": None, "program": str(entry.parent / "hello"),
        "entry": str(entry)}


def test_the_home_face_launches_the_application_that_the_bezel_picks(desk, write):
    desk.do("install", write())
    desk.do("bezel", "cw", 1)
    desk.do("touch", 180, 257)
    wait_until(lambda: desk.status()["app"], "the application")
    assert desk.status()["app"]["id"] == HELLO


def test_a_tap_on_the_ring_launches_the_application_there(desk, write):
    desk.do("install", write())
    desk.do("touch", 256, 49)
    wait_until(lambda: desk.status()["app"], "the application")
    assert desk.status()["app"]["id"] == HELLO


def test_names_and_icons_follow_the_language_at_once(desk, write, bus):
    entry = write("Type=Application", "Name=Hello", "Name[ko]=안녕", "Exec=hello", "Icon=plain",
                  "Icon[ko]=korean.svg")
    for name in ("plain.png", "korean.svg"):
        (entry.parent / name).write_text("a picture", encoding="utf-8")
    desk.do("install", entry)
    assert shown(bus)[1] == (HELLO, "Hello", str(entry.parent / "plain.png"))
    desk.do("language", "ko_KR")
    assert shown(bus)[1] == (HELLO, "안녕", str(entry.parent / "korean.svg"))
    assert installed(desk)[HELLO]["name"] == "안녕"


def test_an_installation_has_its_programs_and_icons_where_they_belong(desk, clock):
    icons = clock / "share/icons/hicolor"
    for size in ("16x16", "128x128", "48x48"):
        (icons / size / "apps").mkdir(parents=True)
        (icons / size / "apps/clock.png").write_text("a picture", encoding="utf-8")
    with (clock / "share/applications/org.example.Clock.desktop").open("a") as entry:
        entry.write("Icon=clock\n")
    desk.do("install", clock)
    clock_app = installed(desk)["org.example.Clock"]
    assert clock_app["program"] == str(clock / "bin/clock")
    assert clock_app["icon"] == str(icons / "128x128/apps/clock.png")


def test_the_command_line_of_an_entry_reaches_its_program(desk, write):
    desk.do("install", write(
        "Type=Application", "Name=Two words", r'Exec="./hello" "a \\"b\\" c" 100%% %U --name=%c %k',
        program=('for word; do echo "word $word;"; done', FRAME, "exec sleep 600")))
    desk.do("launch", HELLO, "--operation", "show")
    entry = installed(desk)[HELLO]["entry"]
    for word in ('a "b" c', "100%", "--name=Two words", entry, "--operation", "show"):
        desk.do("wait", "log", f"word {word};")
    assert "word %U" not in desk.do("log")


@pytest.mark.parametrize("lines, complaint", [
    (["Type=Application", "Name=Hello"], "it has no Exec"),
    (["Type=Application", "Name=Hello", "Exec="], "it has no Exec"),
    (["Type=Application", "Name=Hello", "Exec=%U"], "Exec names no program"),
    (["Type=Application", "Name=Hello", "Exec=nowhere/hello"],
     'its program "nowhere/hello" is not there'),
    (["Type=Application", "Name=Hello", f"Exec={'x' * 300}"],
     f'its program "{"x" * 300}": File name too long'),
    (["Type=Application", "Name=Hello", 'Exec=hello "open'], "Exec is not a command: "),
    (["Type=Application", "Name=Hello", "Exec=hello %z"], 'Exec has the unknown code "%z"'),
    (["Type=Application", "Name=Hello", "Exec=hello 5%"], 'Exec has the unknown code "%"'),
    (["Type=Application", "Exec=hello"], "it has no Name"),
    (["Type=Application", r"Name=\n\t ", "Exec=hello"], "it has no Name"),
    (["Type=Link", "Name=Hello", "Exec=hello"], "it is not of an application (Type=Application)"),
    (["Type=Application", "Name=Hello", "Exec=hello", "Hidden=true"],
     "it says that the application is not there (Hidden=true)"),
    (["no key"], "it is not a desktop entry"),
])
def test_an_entry_that_makes_no_application_is_refused(complaint_of, write, lines, complaint):
    entry = write(*lines)
    assert complaint_of(entry).startswith(f'"{entry}": {complaint}')


def as_pipe(entry):
    entry.unlink()
    os.mkfifo(entry)


def as_link_to_nothing(entry):
    entry.unlink()
    entry.symlink_to("nowhere")


@pytest.mark.parametrize("spoil, complaint", [
    (lambda entry: entry.write_bytes(b"[Desktop Entry]\nName=\xff\n"), "it is not UTF-8"),
    (lambda entry: entry.write_bytes(b"[Desktop Entry]\0"), "it is not a desktop entry"),
    (lambda entry: entry.write_bytes(b"#" * (1 << 20) + b"\n"), "it is longer than 1048576 bytes"),
    (as_pipe, "it is not a file"),
    (as_link_to_nothing, "No such file or directory"),
])
def test_a_file_that_is_no_entry_is_refused(complaint_of, write, spoil, complaint):
    entry = write()
    spoil(entry)
    assert complaint_of(entry) == f'"{entry}": {complaint}'


def test_a_place_without_an_application_is_refused(complaint_of, write, tmp_path):
    assert complaint_of(tmp_path) == (
        f'"{tmp_path}" has no desktop entry, neither ID.desktop nor share/applications/ID.desktop')
    assert complaint_of(tmp_path / "nothing") == (
        f'"{tmp_path}/nothing": No such file or directory')
    assert "its name is not an id" in complaint_of(write(app_id="hello"))
    assert complaint_of(tmp_path / ("x" * 300)).endswith('": File name too long')


def test_a_refused_install_leaves_the_watch_as_it_was(desk, write, tmp_path):
    write()
    entry = write("Type=Application", app_id="org.example.wrong")
    assert desk.refused("install", tmp_path) == f'qivo-watch: "{entry}": it has no Name'
    assert list(installed(desk)) == [GUIDE]
    assert '"" is not a file' in desk.refused("install", "", status=2)


def test_a_folder_that_has_an_id_twice_is_refused(complaint_of, write, tmp_path):
    write()
    write(folder=tmp_path / "share/applications")
    assert complaint_of(tmp_path) == (
        f'"{tmp_path}" has {HELLO}.desktop twice: also "{tmp_path}/{HELLO}.desktop"')


def test_an_entry_through_a_link_is_that_of_the_link(desk, write, tmp_path):
    entry = write(folder=tmp_path / "build")
    link = tmp_path / "build" / "org.example.link.desktop"
    link.symlink_to(entry.name)
    desk.do("install", link)
    assert "org.example.link" in installed(desk)


def test_an_entry_whose_program_has_another_id_is_refused(complaint_of, clock):
    entry = clock / "share/applications/org.example.Clock.desktop"
    other = entry.rename(entry.with_name("org.example.Watch.desktop"))
    assert complaint_of(clock) == f'"{other}": its program is org.example.Clock'


def test_an_entry_whose_program_has_no_readable_id_is_refused(complaint_of, clock):
    entry = clock / "share/applications/org.example.Clock.desktop"
    (clock / "share/clock/clock.id").write_bytes(b"\xff")
    assert complaint_of(clock) == f'"{entry}": its program is \N{REPLACEMENT CHARACTER}'


def test_installing_again_takes_the_new_entry(desk, write, bus):
    desk.do("install", write())
    desk.do("install", write("Type=Application", "Name=Goodbye", "Exec=hello"))
    assert shown(bus)[1:] == [(HELLO, "Goodbye", "")]


def test_a_long_name_is_cut_and_control_characters_go(desk, write, bus):
    desk.do("install", write("Type=Application", "Name=\N{ESCAPE}[1mnight " + "x" * 5000,
                             "Exec=hello"))
    name = shown(bus)[1][1]
    assert name == "[1mnight " + "x" * 90 + "…" and len(name) == 100


@pytest.mark.parametrize("translated", ["", r"\n\t", "\N{ESCAPE}"])
def test_a_translated_name_of_nothing_leaves_the_other_one(module, write, translated):
    entry = write("Type=Application", "Name=Hello", f"Name[de]={translated}", "Exec=hello")
    assert module("keeper.apps.entries").Entry(entry).name("de_DE") == "Hello"


def test_what_asks_for_no_menu_is_launched_but_not_shown(desk, write, bus):
    desk.do("install", write("Type=Application", "Name=Hello", "Exec=hello", "NoDisplay=true"))
    assert [app[0] for app in shown(bus)] == [GUIDE]
    desk.do("launch", HELLO)


def test_an_icon_that_is_no_small_file_is_none(desk, write):
    entry = write("Type=Application", "Name=Hello", "Exec=hello", "Icon=picture")
    with (entry.parent / "picture.png").open("wb") as picture:
        picture.truncate((4 << 20) + 1)
    (entry.parent / "picture.svg").mkdir()
    desk.do("install", entry)
    assert installed(desk)[HELLO]["icon"] is None


def test_uninstall_ends_the_application_and_forgets_it(desk, write):
    desk.do("install", write())
    desk.do("launch", HELLO)
    desk.do("uninstall", HELLO)
    assert desk.status()["app"] is None
    assert list(installed(desk)) == [GUIDE]
    assert desk.refused("launch", HELLO) == f"qivo-watch: no application {HELLO} is on the watch"


def test_uninstall_refuses_what_is_not_there_and_the_guide(desk, tmp_path):
    assert desk.refused("uninstall", HELLO) == f"qivo-watch: application {HELLO} is not installed"
    assert desk.refused("uninstall", GUIDE) == f"qivo-watch: {GUIDE} is the watch's own"
    shutil.copy(BUILD / "res" / "desktop" / f"{GUIDE}.desktop", tmp_path)
    assert "qivo-guide-app" in desk.refused("install", tmp_path)


def test_a_program_that_has_gone_is_named_when_it_is_launched(desk, write):
    entry = write()
    desk.do("install", entry)
    (entry.parent / "hello").unlink()
    assert desk.refused("launch", HELLO) == (
        f'qivo-watch: "{entry}": its program "hello" is not there')


def activate(bus, app_id):
    """Sends an application a request, as another one does; the bus starts it."""
    path = "/" + app_id.replace(".", "/").replace("-", "_")
    bus.get_object(app_id, path, introspect=False).Activate(
        dbus.Dictionary(signature="sv"), dbus_interface="org.freedesktop.Application", timeout=60)


def test_the_bus_starts_an_application_that_is_called(desk, clock, bus):
    desk.do("install", clock)
    activate(bus, "org.example.Clock")
    wait_until(lambda: (desk.status()["app"] or {}).get("id") == "org.example.Clock", "the clock")
    desk.do("wait", "log", "operation:[")
    pid = desk.status()["app"]["pid"]
    activate(bus, "org.example.Clock")
    assert desk.status()["app"]["pid"] == pid


def test_the_bus_starts_the_guide(desk, bus):
    activate(bus, GUIDE)
    wait_until(lambda: (desk.status()["app"] or {}).get("id") == GUIDE, "the guide")


def test_a_call_to_an_application_that_has_gone_fails_with_the_reason(desk, clock, bus):
    desk.do("install", clock)
    (clock / "bin/clock").unlink()
    with pytest.raises(dbus.DBusException) as failed:
        activate(bus, "org.example.Clock")
    assert 'its program "clock" is not there' in failed.value.get_dbus_message()
    desk.do("uninstall", "org.example.Clock")
    with pytest.raises(dbus.DBusException) as failed:
        activate(bus, "org.example.Clock")
    assert failed.value.get_dbus_name() == "org.freedesktop.DBus.Error.ServiceUnknown"


def test_a_folder_keeps_the_applications_for_the_next_start(fresh: Desk, write, tmp_path):
    keep = tmp_path / "keep"
    hello = write(folder=tmp_path / "one")
    other = write(app_id="org.example.other", folder=tmp_path / "two")
    gone = write(app_id="org.example.gone", folder=tmp_path / "three")
    fresh.do("start", "--headless", "--keep", keep)
    for entry in (hello, other, gone):
        fresh.do("install", entry)
    fresh.do("uninstall", "org.example.other")
    fresh.do("stop")
    gone.unlink()
    fresh.do("start", "--headless", "--keep", keep)
    assert list(installed(fresh)) == [GUIDE, HELLO]
    assert f'an application is left out: "{gone}"' in fresh.do("log", "--level", "warn")


@pytest.mark.parametrize("content", [
    b"{", b"[1]", b"{}", b"\xff", pytest.param(b"[" * 10000, id="deep"),
])
def test_a_list_that_is_none_is_refused(module, tmp_path, content):
    (tmp_path / "applications.json").write_bytes(content)
    with pytest.raises(module("errors").WatchError, match="is not a list of desktop entries"):
        module("keeper.apps.installed").Installed(str(tmp_path), None)


@pytest.mark.parametrize("place", ["file", "file/below", "no/where"])
def test_a_folder_that_cannot_be_is_refused(module, tmp_path, place):
    (tmp_path / "file").touch()
    with pytest.raises(OSError):
        module("keeper.apps.installed").Installed(str(tmp_path / place), None)
    assert not (tmp_path / "no").exists()


def test_a_watch_that_cannot_keep_its_applications_does_not_start(fresh: Desk, tmp_path):
    (tmp_path / "file").touch()
    assert fresh.refused("start", "--headless", "--keep", tmp_path / "file") == (
        f"qivo-watch: the watch did not start: {tmp_path}/file: File exists")


def test_a_working_folder_that_has_been_removed_is_told(desk, tmp_path):
    (tmp_path / "gone").mkdir()
    told = subprocess.run(["sh", "-c", 'rmdir "$PWD" && exec "$@"', "sh",
                           *desk.command("install", "app")], cwd=tmp_path / "gone",
                          env=desk.environment, capture_output=True, text=True)
    assert (told.returncode, told.stderr) == (
        1, 'qivo-watch: "app" is not found: the working folder has been removed\n')
