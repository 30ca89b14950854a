"""The system settings: the environment, and mocked language and time services."""

import struct

import dbus
import pytest
from port.clock import hears_the_clock
from support.bus import LOCALE, LOCALE_PATH, PROPERTIES, TIMEDATE, wait_until
from support.probe import Probe

pytestmark = hears_the_clock

OK = "0"
INVALID_PARAMETER = "-1"
UNKNOWN_KEY = "-2"
NO_STRING = "-3"


@pytest.fixture(name="probe")
def korean_probe_on_bus(bus):
    with Probe("settings_probe", {**bus.env, "LANG": "ko_KR.UTF-8"}) as probe:
        yield probe


def settings_of(environment):
    with Probe("settings_probe", environment) as probe:
        answers = (probe.ask("get language"), probe.ask("get region"))
        assert probe.end() == (0, "")
        return tuple(answer.removeprefix("0 ") for answer in answers)


def write_catalogue(directory, language, translations):
    """Writes a binary message catalogue of the domain "probe"."""
    texts = [("", "Content-Type: text/plain; charset=UTF-8\n"), *sorted(translations.items())]
    strings = b""
    tables = [[], []]
    offset = 28 + 16 * len(texts)
    for column in (0, 1):
        for pair in texts:
            text = pair[column].encode()
            tables[column].append(struct.pack("<II", len(text), offset + len(strings)))
            strings += text + b"\0"
    head = struct.pack("<7I", 0x950412DE, 0, len(texts), 28, 28 + 8 * len(texts), 0, 0)
    target = directory / language / "LC_MESSAGES"
    target.mkdir(parents=True)
    (target / "probe.mo").write_bytes(head + b"".join(tables[0] + tables[1]) + strings)


# The environment


@pytest.mark.parametrize("environment, language, region", [
    ({}, "en_US.UTF-8", "en_US.UTF-8"),
    ({"LANG": ""}, "en_US.UTF-8", "en_US.UTF-8"),
    ({"LANG": "C"}, "en_US.UTF-8", "en_US.UTF-8"),
    ({"LANG": "C.UTF-8"}, "en_US.UTF-8", "en_US.UTF-8"),
    ({"LANG": "POSIX"}, "en_US.UTF-8", "en_US.UTF-8"),
    ({"LANG": "ko_KR.UTF-8"}, "ko_KR.UTF-8", "ko_KR.UTF-8"),
    ({"LANG": "ko_KR"}, "ko_KR.UTF-8", "ko_KR.UTF-8"),
    ({"LANG": "ko_KR.utf8"}, "ko_KR.UTF-8", "ko_KR.UTF-8"),
    ({"LANG": "ko_KR.eucKR"}, "ko_KR.eucKR", "ko_KR.eucKR"),
    ({"LANG": "de"}, "de.UTF-8", "de.UTF-8"),
    ({"LANG": "es_419"}, "es_419.UTF-8", "es_419.UTF-8"),
    ({"LANG": "ca_ES@valencia"}, "ca_ES.UTF-8@valencia", "ca_ES.UTF-8@valencia"),
    ({"LANG": "ko_KR", "LC_MESSAGES": "de_DE"}, "de_DE.UTF-8", "de_DE.UTF-8"),
    ({"LANG": "ko_KR", "LC_TIME": "de_DE"}, "ko_KR.UTF-8", "de_DE.UTF-8"),
    ({"LANG": "ko_KR", "LC_MESSAGES": "", "LC_ALL": "fr_FR"}, "fr_FR.UTF-8", "fr_FR.UTF-8"),
    ({"LC_TIME": "de_DE"}, "en_US.UTF-8", "de_DE.UTF-8"),
    ({"LC_ALL": "C", "LANG": "ko_KR"}, "en_US.UTF-8", "en_US.UTF-8"),
])
def test_the_environment_answers_at_once(environment, language, region):
    assert settings_of(environment) == (language, region)


@pytest.mark.parametrize("name", ["k", "koko_KR", "ko_", "ko_kr", "ko_KRR", "ko_41", "ko_4190",
                                  "ko-KR", "ko_KR.", "ko_KR@", "../../etc", "ko_KR.UTF-8/x",
                                  "ko KR", "1o", "C_KR", "k\u00f6_KR", "ko_KR.UTF-8\nx",
                                  "x" * 3000])
def test_a_name_that_is_no_locale_is_passed_over_with_one_line(name):
    with Probe("settings_probe", {"LC_MESSAGES": name, "LANG": "de_DE"}) as probe:
        assert probe.ask("get language") == "0 de_DE.UTF-8"
        assert probe.ask("get region") == "0 de_DE.UTF-8"
        status, log = probe.end()
        assert status == 0
        assert len(log.splitlines()) == 1
        assert " W WATCH_PORT: LC_MESSAGES=" in log


def test_arguments_that_make_no_sense_are_refused():
    with Probe("settings_probe", {}) as probe:
        for key in ("-1", "0", "100000"):
            assert probe.ask(f"get {key}") == f"{UNKNOWN_KEY} -"
            assert probe.ask(f"set {key}") == UNKNOWN_KEY
            assert probe.ask(f"unset {key}") == UNKNOWN_KEY
        assert probe.ask("get language null") == f"{INVALID_PARAMETER} -"
        assert probe.ask("get time") == f"{NO_STRING} -"
        assert probe.ask("get format") == f"{NO_STRING} -"
        assert probe.ask("get 15") == f"{UNKNOWN_KEY} -"
        assert probe.ask("set 15") == UNKNOWN_KEY
        assert probe.ask("unset 31") == UNKNOWN_KEY
        assert probe.ask("set time null") == INVALID_PARAMETER
        status, log = probe.end()
        assert status == 0
        assert log.count("E WATCH_PORT: system_settings_") == len(log.splitlines()) == 16


def test_without_a_bus_everything_is_quiet():
    with Probe("settings_probe", {"LANG": "ko_KR"}) as probe:
        for key in ("language", "region", "format", "time"):
            assert probe.ask(f"set {key}") == OK
        assert probe.ask("get language") == "0 ko_KR.UTF-8"
        for key in ("language", "region", "format", "time"):
            assert probe.ask(f"unset {key}") == OK
        assert probe.end() == (0, "")


# The language service


def test_another_answer_of_the_service_is_a_change(bus, probe):
    bus.start_locale(["LANG=de_DE.UTF-8"])
    probe.ask("set language get+language")
    assert probe.wait_for_changes(1) == ["language"]
    assert probe.answer() == "0 de_DE.UTF-8"


def test_the_same_answer_of_the_service_is_no_change(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language")
    probe.ask("set region")
    assert probe.changes_after(LOCALE) == []


@pytest.mark.parametrize("entries, language, region", [
    (["LANG=de_DE"], "de_DE.UTF-8", "de_DE.UTF-8"),
    (["LANG=de_DE", "LC_MESSAGES=fr_FR"], "fr_FR.UTF-8", "fr_FR.UTF-8"),
    (["LC_TIME=en_GB", "LANG=de_DE"], "de_DE.UTF-8", "en_GB.UTF-8"),
    (["LC_TIME=en_GB"], "ko_KR.UTF-8", "en_GB.UTF-8"),
    (["LANG=C.UTF-8"], "en_US.UTF-8", "en_US.UTF-8"),
])
def test_the_service_is_believed_before_the_environment(bus, probe, entries, language, region):
    bus.start_locale(entries)
    probe.ask("set language")
    probe.changes_after(LOCALE)
    assert probe.ask("get language") == f"0 {language}"
    assert probe.ask("get region") == f"0 {region}"


@pytest.mark.parametrize("entries", [[], ["LANG="], ["LC_PAPER=de_DE"], ["LANG"], ["", "=", "=x"]])
def test_a_service_that_sets_nothing_leaves_the_environment(bus, probe, entries):
    bus.start_locale(["LANG=de_DE"])
    probe.ask("set language")
    assert probe.wait_for_changes(1) == ["language"]
    bus.set_locale(entries)
    assert probe.changes_after(LOCALE) == ["language"]
    assert probe.ask("get language") == "0 ko_KR.UTF-8"
    assert probe.end() == (0, "")


def test_an_invalid_name_of_the_service_is_passed_over_with_one_line(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language")
    probe.changes_after(LOCALE)
    bus.set_locale(["LANG=../../x", "LC_MESSAGES=de_DE"])
    assert probe.changes_after(LOCALE) == ["language"]
    assert probe.ask("get language") == "0 de_DE.UTF-8"
    status, log = probe.end()
    assert status == 0
    assert len(log.splitlines()) == 1 and "W WATCH_PORT: LANG=\"../../x\"" in log


def test_each_key_is_told_of_its_own_change_only(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    for key in ("format", "region", "language"):
        probe.ask(f"set {key}")
    probe.changes_after(LOCALE)
    bus.set_locale(["LANG=ko_KR", "LC_TIME=de_DE"])
    assert probe.changes_after(LOCALE) == ["region"]
    bus.set_locale(["LANG=fr_FR", "LC_TIME=de_DE"])
    assert probe.changes_after(LOCALE) == ["language"]
    bus.set_locale(["LANG=fr_FR", "LC_TIME=de_DE", "LC_PAPER=en_US"])
    assert probe.changes_after(LOCALE) == []
    bus.set_locale(["LANG=fr_FR", "LC_TIME=en_US"])
    assert probe.changes_after(LOCALE) == ["region", "format"]
    bus.set_locale(["LANG=en_US"])
    assert probe.changes_after(LOCALE) == ["language"]
    bus.set_locale(["LANG=de_DE"])
    assert probe.changes_after(LOCALE) == ["language", "region", "format"]


def test_all_values_are_new_before_the_first_callback(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language get+region,catalogues")
    probe.changes_after(LOCALE)
    bus.set_locale(["LANG=de_DE", "LC_TIME=en_GB"])
    assert probe.answer() == "0 en_GB.UTF-8"
    assert probe.answer() == "de_DE:de:en"


def test_a_service_that_starts_late_or_restarts_is_followed(bus, probe):
    probe.ask("set language")
    bus.start_locale(["LANG=de_DE"])
    assert probe.wait_for_changes(1) == ["language"]
    bus.stop_locale()
    bus.start_locale(["LANG=fr_FR"])
    # The mock begins with "C.UTF-8", which may or may not be seen.
    wait_until(lambda: probe.ask("get language") == "0 fr_FR.UTF-8", "the new language")


def test_a_service_that_leaves_keeps_its_word_and_is_not_started_again(bus, probe):
    bus.start_locale(["LANG=de_DE"])
    probe.ask("set language")
    assert probe.wait_for_changes(1) == ["language"]
    bus.start_timedate()
    bus.add_activatable(LOCALE, "/bin/false")
    bus.stop_locale()
    assert probe.changes_after(TIMEDATE) == []
    assert not bus.has_owner(LOCALE)
    assert probe.ask("get language") == "0 de_DE.UTF-8"


def test_a_bus_that_dies_is_survived(bus, probe):
    bus.start_locale(["LANG=de_DE"])
    bus.start_timedate()
    probe.ask("set language")
    probe.ask("set time")
    assert probe.changes_after(LOCALE) == ["language"]
    bus.die()
    assert probe.ask("get language") == "0 de_DE.UTF-8"
    assert probe.ask("unset time") == OK
    assert probe.ask("set time") == OK
    assert probe.ask("unset language") == OK
    assert probe.ask("set region") == OK
    assert probe.end() == (0, "")


@pytest.mark.parametrize("value", [dbus.String("LANG=de_DE"), dbus.UInt32(1),
                                   dbus.Array([dbus.UInt32(1)], signature="u"),
                                   dbus.ByteArray(b"LANG=de_DE")])
def test_a_value_of_another_type_is_passed_over(bus, probe, value):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language")
    bus.set_property(LOCALE, LOCALE_PATH, LOCALE, "Locale", value)
    bus.emit(LOCALE, LOCALE_PATH, PROPERTIES, "PropertiesChanged", "as", [["LANG=de_DE"]])
    assert probe.changes_after(LOCALE) == []
    assert probe.end() == (0, "")


def test_a_later_reading_has_the_answer_without_any_callback(bus, probe):
    bus.start_locale(["LANG=de_DE"])
    assert probe.ask("get language") == "0 ko_KR.UTF-8"
    assert probe.ask("set time") == OK
    probe.changes_after(LOCALE)
    assert probe.ask("get language") == "0 de_DE.UTF-8"
    wait_until(lambda: bus.matches(LOCALE) == [], "no listener")


def test_nothing_is_listened_to_without_a_callback(bus, probe):
    for key, service in [("language", LOCALE), ("region", LOCALE), ("format", LOCALE),
                         ("time", TIMEDATE)]:
        assert bus.matches(service) == []
        probe.ask(f"set {key}")
        wait_until(lambda: len(bus.matches(service)) == 2, f"a listener of {key}")
        probe.ask(f"unset {key}")
        wait_until(lambda: bus.matches(service) == [], f"no listener of {key}")


def test_unset_stops_one_key_and_leaves_the_others(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language")
    probe.ask("set region")
    probe.changes_after(LOCALE)
    assert probe.ask("unset language") == OK
    assert probe.ask("unset language") == OK
    bus.set_locale(["LANG=de_DE"])
    assert probe.changes_after(LOCALE) == ["region"]


def test_a_key_has_one_callback(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language")
    probe.ask("set language")
    probe.changes_after(LOCALE)
    bus.set_locale(["LANG=de_DE"])
    assert probe.changes_after(LOCALE) == ["language"]


def test_a_callback_may_unset_itself(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language unset+language")
    probe.changes_after(LOCALE)
    bus.set_locale(["LANG=de_DE"])
    assert probe.answer() == OK
    assert probe.changes_after(LOCALE) == ["language"]
    bus.set_locale(["LANG=fr_FR"])
    assert probe.changes_after(LOCALE) == []


def test_a_callback_may_unset_the_others(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language unset+region,unset+format,unset+language")
    probe.ask("set region")
    probe.ask("set format")
    probe.changes_after(LOCALE)
    bus.set_locale(["LANG=en_US"])
    assert [probe.answer() for _ in range(3)] == [OK] * 3
    assert probe.changes_after(LOCALE) == ["language"]


def test_a_callback_may_unset_itself_and_come_back(bus, probe):
    bus.start_locale(["LANG=ko_KR"])
    probe.ask("set language unset+language,set+region,unset+region")
    probe.changes_after(LOCALE)
    bus.set_locale(["LANG=de_DE"])
    assert [probe.answer() for _ in range(3)] == [OK] * 3
    assert probe.ask("set language") == OK
    bus.set_locale(["LANG=fr_FR"])
    assert probe.changes_after(LOCALE) == ["language", "language"]


def test_a_callback_may_be_unset_while_the_service_is_asked(bus, probe):
    bus.add_activatable(LOCALE, "/bin/sleep 60")
    assert probe.ask("set language") == OK
    assert probe.ask("unset language") == OK
    assert probe.ask("set language") == OK
    bus.start_locale(["LANG=de_DE"])
    assert probe.wait_for_changes(1) == ["language"]
    assert probe.end() == (0, "")


# Catalogues


@pytest.mark.parametrize("environment, catalogues", [
    ({}, "en_US:en"),
    ({"LANG": "ko_KR.UTF-8"}, "ko_KR:ko:en"),
    ({"LANG": "de"}, "de:en"),
    ({"LANG": "en"}, "en"),
    ({"LANG": "sr_RS@latin"}, "sr_RS@latin:sr@latin:sr:en"),
    ({"LANG": "pt_BR"}, "pt_BR:pt:en"),
    ({"LANG": "es_ES"}, "es_ES:es:en"),
    ({"LANG": "es_MX"}, "es_MX:es_419:es:en"),
    ({"LANG": "es_419"}, "es_419:es:en"),
    ({"LANG": "zh"}, "zh:zh_CN:en"),
    ({"LANG": "zh_CN"}, "zh_CN:zh:en"),
    ({"LANG": "zh_SG"}, "zh_SG:zh_CN:zh:en"),
    ({"LANG": "zh_TW"}, "zh_TW:zh_CN:zh:en"),
    ({"LANG": "zh_HK"}, "zh_HK:zh_TW:zh_CN:zh:en"),
    ({"LANG": "zh_MO"}, "zh_MO:zh_HK:zh_TW:zh_CN:zh:en"),
    ({"LANG": "no_NO"}, "no_NO:nb:no:en"),
    ({"LANG": "iw_IL"}, "iw_IL:he:iw:en"),
    ({"LANG": "ko_KR", "LANGUAGE": "fr"}, "fr"),
    ({"LANG": "ko_KR", "LANGUAGE": ""}, "ko_KR:ko:en"),
])
def test_catalogues_are_listed_from_the_language_to_english(environment, catalogues):
    with Probe("settings_probe", environment) as probe:
        probe.ask("get language")
        assert probe.ask("catalogues") == catalogues


def test_the_users_own_list_of_catalogues_holds_until_the_language_changes(bus):
    bus.start_locale(["LANG=ko_KR"])
    environment = {**bus.env, "LANG": "ko_KR", "LANGUAGE": "fr"}
    with Probe("settings_probe", environment) as probe:
        probe.ask("set language")
        probe.changes_after(LOCALE)
        assert probe.ask("catalogues") == "fr"
        bus.set_locale(["LANG=de_DE"])
        assert probe.changes_after(LOCALE) == ["language"]
        assert probe.ask("catalogues") == "de_DE:de:en"


def test_texts_follow_the_language_without_a_generated_locale(bus, probe, tmp_path):
    write_catalogue(tmp_path, "en", {"HELLO": "Hello", "BYE": "Bye"})
    write_catalogue(tmp_path, "ko", {"HELLO": "안녕하세요"})
    write_catalogue(tmp_path, "de_DE", {"HELLO": "Grüß Gott"})
    bus.start_locale(["LANG=ko_KR"])
    probe.ask(f"bind {tmp_path}")
    assert probe.ask("translate HELLO") == "HELLO"
    assert probe.ask("get language") == "0 ko_KR.UTF-8"
    assert probe.ask("translate HELLO") == "안녕하세요"
    assert probe.ask("translate BYE") == "Bye"
    probe.ask("set language translate+HELLO")
    probe.changes_after(LOCALE)
    bus.set_locale(["LANG=de_DE"])
    assert probe.answer() == "Grüß Gott"
    bus.set_locale(["LANG=fi_FI"])
    assert probe.answer() == "Hello"
