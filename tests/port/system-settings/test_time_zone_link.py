"""The time zone's link, /etc/localtime, for machines without a time service that answers."""

import subprocess

import pytest
from port.clock import hears_the_clock, set_clock_to_now
from support.bus import TIMEDATE, SystemBus, wait_until
from support.probe import Probe

pytestmark = hears_the_clock

BERLIN = "/usr/share/zoneinfo/Europe/Berlin"
SEOUL = "/usr/share/zoneinfo/Asia/Seoul"


@pytest.fixture(name="link")
def localtime_in_a_folder_to_mount_over_etc(tmp_path):
    trial = subprocess.run(["unshare", "--mount", "mount", "--bind", tmp_path, "/etc"],
                           stderr=subprocess.PIPE, text=True, check=False)
    if trial.returncode:
        pytest.skip(f"/etc cannot be mounted over: {trial.stderr.strip()}")
    link = tmp_path / "localtime"
    link.symlink_to(BERLIN)
    return link


def probe_with(link, environment):
    """A probe that sees this link instead of the machine's."""
    script = 'mount --bind "$0" /etc && exec "$@"'
    return Probe("settings_probe", environment,
                 ["unshare", "--mount", "sh", "-c", script, link.parent])


def replace(link, target):
    """Replaces the link at once, as timedatectl does."""
    new = link.with_name("new")
    new.symlink_to(target)
    new.rename(link)


def put_file(link):
    new = link.with_name("new")
    new.write_bytes(b"TZif2 one")
    new.rename(link)


@pytest.mark.parametrize("changes", [
    pytest.param([lambda link: replace(link, SEOUL),
                  lambda link: replace(link, "../usr/share/zoneinfo/Europe/Berlin")],
                 id="replaced-link"),
    pytest.param([lambda link: link.unlink(), lambda link: link.symlink_to(SEOUL)],
                 id="link-that-comes-and-goes"),
    pytest.param([put_file, lambda link: link.write_bytes(b"TZif2 two")],
                 id="file-that-is-written")])
def test_what_the_link_becomes_is_another_time_zone(link, changes):
    with probe_with(link, {}) as probe:
        probe.ask("set time")
        for change in changes:
            change(link)
            assert probe.wait_for_changes(1) == ["time"]
        assert probe.end() == (0, "")


def test_the_same_zone_and_other_files_are_no_change(link):
    with probe_with(link, {}) as probe:
        probe.ask("set time")
        replace(link, "../usr/share/zoneinfo/Europe/Berlin")
        link.with_name("hostname").write_text("x")
        link.with_name("localtime.bak").symlink_to(SEOUL)
        # Events keep their order, so the first report came after those.
        replace(link, SEOUL)
        assert probe.wait_for_changes(1) == ["time"]
        link.with_name("hostname").write_text("y")
        replace(link, BERLIN)
        assert probe.wait_for_changes(1) == ["time"]


def test_a_callback_may_unset_itself(link):
    with probe_with(link, {}) as probe:
        probe.ask("set time unset+time,set+time,unset+time")
        replace(link, SEOUL)
        assert [probe.answer() for _ in range(3)] == ["0"] * 3
        assert probe.wait_for_changes(1) == ["time"]
        assert probe.watches() == 0
        assert probe.end() == (0, "")


def test_a_callback_may_unset_itself_when_clock_and_link_change_together(link):
    with probe_with(link, {}) as probe:
        probe.ask("set time unset+time")
        with probe.held():
            replace(link, SEOUL)
            set_clock_to_now()
        assert probe.answer() == "0"
        assert probe.ask("get language") == "0 en_US.UTF-8"
        assert probe.wait_for_changes(1) == ["time"]
        assert probe.end() == (0, "")


def test_a_link_that_changes_just_before_its_watch_ends_is_not_told(link):
    with probe_with(link, {}) as probe:
        probe.ask("set time")
        with probe.held():
            replace(link, SEOUL)
            probe.say("unset time")
        assert probe.answer() == "0"
        assert probe.ask("get language") == "0 en_US.UTF-8"
        assert probe.wait_for_changes(0) == []
        assert probe.end() == (0, "")


def test_a_zone_that_service_and_link_both_tell_is_one_change(link):
    with SystemBus() as bus:
        bus.start_timedate("Europe/Berlin")
        with probe_with(link, bus.env) as probe:
            probe.ask("set time")
            probe.changes_after(TIMEDATE)
            bus.stop_timedate()
            wait_until(lambda: probe.watches() == 1, "the link is watched")
            replace(link, SEOUL)
            assert probe.wait_for_changes(1) == ["time"]
            bus.start_timedate("Asia/Seoul")
            wait_until(lambda: probe.watches() == 0, "the service is believed")
            assert probe.changes_after(TIMEDATE) == []


def test_a_service_that_leaves_keeps_its_word_against_the_link(link):
    with SystemBus() as bus:
        bus.start_timedate("Asia/Seoul")
        with probe_with(link, bus.env) as probe:
            probe.ask("set time")
            probe.changes_after(TIMEDATE)
            bus.stop_timedate()
            wait_until(lambda: probe.watches() == 1, "the link is watched")
            bus.start_timedate("Asia/Seoul")
            wait_until(lambda: probe.watches() == 0, "the service is believed")
            assert probe.changes_after(TIMEDATE) == []


def test_the_link_is_watched_with_a_callback_alone():
    with Probe("settings_probe", {}) as probe:
        for key in ("language", "region", "format"):
            probe.ask(f"set {key}")
        assert probe.watches() == 0
        probe.ask("set time")
        assert probe.watches() == 1
        probe.ask("unset time")
        assert probe.watches() == 0


def test_the_link_is_watched_while_the_service_does_not_answer():
    with SystemBus() as bus, Probe("settings_probe", bus.env) as probe:
        probe.ask("set time")
        wait_until(lambda: probe.watches() == 1, "the link is watched")
        bus.start_timedate()
        wait_until(lambda: probe.watches() == 0, "the service is believed")
        bus.die()
        wait_until(lambda: probe.watches() == 1, "the link is watched again")
