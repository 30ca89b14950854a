"""The settings of the watch, as the port's programs read them from its services."""

import subprocess

import pytest

from simulator.desk import BUILD
from support.bus import LOCALE, TIMEDATE
from support.probe import Probe
from support.session_bus import PORTAL, PORTAL_PATH, SETTINGS

OK = "0"
LIFECYCLE_APP = BUILD / "tests" / "port" / "lifecycle_app"
LOOK = {"text-size": ("org.gnome.desktop.interface", "text-scaling-factor"),
        "motion": ("org.gnome.desktop.interface", "enable-animations"),
        "contrast": ("org.freedesktop.appearance", "contrast")}
CLOCK_FORMAT = ("org.gnome.desktop.interface", "clock-format")


@pytest.fixture(name="probe")
def _probe(desk):
    """A program of the port on the watch's bus."""
    address = f"unix:path={desk.status()['folder']}/bus"
    with Probe("settings_probe", {"DBUS_SYSTEM_BUS_ADDRESS": address, "TZ": "UTC",
                                  "DBUS_SESSION_BUS_ADDRESS": address}) as probe:
        yield probe


def ask_portal(desk, method, *arguments):
    """The portal's answer to any client, or its error."""
    result = subprocess.run(
        ["gdbus", "call", "--address", f"unix:path={desk.status()['folder']}/bus", "--dest", PORTAL,
         "--object-path", PORTAL_PATH, "--method", f"{SETTINGS}.{method}", *arguments],
        capture_output=True, text=True, check=False)
    return result.stdout + result.stderr


def test_the_region_is_the_languages_until_it_is_set_and_again_with_auto(desk, probe):
    assert probe.ask("set region") == OK
    assert probe.changes_after(LOCALE) == []
    assert probe.ask("get region") == f"{OK} en_US.UTF-8"
    desk.do("region", "de_DE")
    assert probe.changes_after(LOCALE) == ["region"]
    assert probe.ask("get region") == f"{OK} de_DE.UTF-8"
    assert (desk.status()["language"], desk.status()["region"]) == ("en_US.UTF-8", "de_DE.UTF-8")
    desk.do("language", "ko_KR")
    assert probe.changes_after(LOCALE) == []
    desk.do("region", "auto")
    assert probe.changes_after(LOCALE) == ["region"]
    assert probe.ask("get region") == f"{OK} ko_KR.UTF-8"
    assert '"nowhere" is not a region (such as' in desk.refused("region", "nowhere")
    assert desk.status()["region"] == "ko_KR.UTF-8"


@pytest.mark.parametrize("method", ["ReadOne", "Read"])
def test_clocks_count_as_the_region_until_they_are_told(desk, probe, method):
    assert probe.ask("set format") == OK
    assert probe.changes_after(PORTAL, "session") == []
    assert probe.ask("is format") == f"{OK} 0"
    assert "NotFound" in ask_portal(desk, method, *CLOCK_FORMAT)
    assert desk.status()["time"]["hours"] is None
    desk.do("time", "hours", "24")
    assert probe.changes_after(PORTAL, "session") == ["format"]
    assert probe.ask("is format") == f"{OK} 1"
    desk.do("region", "de_DE")
    desk.do("time", "hours", "12")
    assert probe.changes_after(PORTAL, "session") == ["format"]
    assert probe.ask("is format") == f"{OK} 0"
    assert desk.status()["time"]["hours"] == 12
    assert "'12h'" in ask_portal(desk, method, *CLOCK_FORMAT)


def test_a_program_that_starts_later_finds_the_clocks_format(desk, probe):
    desk.do("time", "hours", "24")
    assert probe.ask("set format") == OK
    assert probe.wait_for_changes(1) == ["format"]
    assert probe.ask("is format") == f"{OK} 1"


def test_another_time_zone_is_told_and_moves_the_hands(desk, probe, tmp_path):
    assert probe.ask("set time") == OK
    assert probe.changes_after(TIMEDATE) == []
    desk.do("time", "freeze")
    desk.do("time", "zone", "UTC")
    probe.changes_after(TIMEDATE)
    desk.do("time", "set", "2026-03-01T10:08")
    desk.do("wait", "still")
    desk.do("screenshot", tmp_path / "utc.png")
    desk.do("time", "zone", "Asia/Seoul")
    assert probe.changes_after(TIMEDATE) == ["time"]
    assert desk.do("time") == "2026-03-01T19:08:00\n"
    assert desk.status()["time"] == {"now": "2026-03-01T19:08:00", "frozen": True,
                                     "zone": "Asia/Seoul", "hours": None}
    desk.do("wait", "still")
    assert "pixels differ from" in desk.refused("compare", tmp_path / "utc.png")
    desk.do("time", "set", "10:08")
    desk.do("wait", "still")
    desk.do("compare", tmp_path / "utc.png")


def test_an_application_is_launched_with_the_settings(desk, tmp_path):
    program = tmp_path / "program"
    program.write_text('#!/bin/sh\necho "$LANG $LC_TIME $TZ"\n'
                       "echo '00:00:00.000 I X: WATCH_PORT: first frame'\nexec sleep 600\n",
                       encoding="utf-8")
    program.chmod(0o700)
    desk.do("language", "ar_EG")
    desk.do("region", "de_DE")
    desk.do("time", "zone", "Asia/Seoul")
    desk.do("launch", program)
    desk.do("wait", "log", "ar_EG.UTF-8 de_DE.UTF-8 Asia/Seoul")


def test_the_settings_are_described_for_people(desk):
    desk.do("time", "zone", "Asia/Seoul")
    text = desk.do("status")
    assert "region    en_US.UTF-8" in text and "zone      Asia/Seoul" in text
    assert "hours     as in the region" in text
    desk.do("time", "hours", "24")
    assert "hours     24" in desk.do("status")


def test_the_clocks_format_is_among_all_settings(desk):
    desk.do("time", "hours", "24")
    for asked, found in (("[]", True), ("['org.gnome.*']", True), ("['org.kde.*']", False)):
        assert ("<'24h'>" in ask_portal(desk, "ReadAll", asked)) is found


@pytest.mark.parametrize("method", ["ReadOne", "Read"])
def test_how_the_user_wants_applications_to_look_is_told_by_the_portal(desk, method):
    def answers():
        return [ask_portal(desk, method, *setting).strip("()<>,\n") for setting in LOOK.values()]

    assert answers() == ["1.0", "true", "uint32 0"]
    for verb, value in (("text-size", "1.5"), ("motion", "reduced"), ("contrast", "high")):
        desk.do(verb, value)
    assert answers() == ["1.5", "false", "uint32 1"]
    status = desk.status()
    assert (status["textSize"], status["motion"], status["contrast"]) == (1.5, "reduced", "high")
    text = desk.do("status")
    assert "text size 1.5" in text and "motion    reduced" in text and "contrast  high" in text


def test_an_application_looks_from_the_first_as_the_user_wants_it(desk):
    for verb, value in (("text-size", "2"), ("motion", "reduced")):
        desk.do(verb, value)
    desk.do("launch", LIFECYCLE_APP, "--env", "LIFECYCLE=create:look")
    desk.do("wait", "log", "look 200 % still")


def test_a_watch_starts_as_the_user_wants_it(fresh):
    fresh.do("start", "--headless", "--text-size", "0.8", "--motion", "reduced", "--contrast",
             "high")
    status = fresh.status()
    assert (status["textSize"], status["motion"], status["contrast"]) == (0.8, "reduced", "high")


def test_a_page_that_is_shown_follows_and_comes_back(desk, tmp_path):
    desk.do("launch")
    desk.do("wait", "still")
    desk.do("screenshot", tmp_path / "usual.png")
    for verb, value, usual in (("text-size", "2.0", "1.0"), ("motion", "reduced", "full")):
        desk.do(verb, value)
        desk.do("wait", "still")
        if verb == "text-size":
            assert "pixels differ" in desk.refused("compare", tmp_path / "usual.png")
        desk.do(verb, usual)
        desk.do("wait", "still")
        desk.do("compare", tmp_path / "usual.png")
    # The toolkit complains of a shape that is asked for its members.
    assert "non-smart" not in desk.do("log")
