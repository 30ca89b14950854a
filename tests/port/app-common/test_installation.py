"""What an application finds in its installation: catalogues and the watch's theme."""

import re
import shutil
import subprocess

import pytest

from port.lifecycle import PROGRAM, App

KOREAN = {"LANG": "ko_KR.UTF-8"}


class Installation:
    """An installation of the program in a folder of its own."""

    def __init__(self, root):
        self.root = root
        self.program = root / "bin" / PROGRAM.name
        self.program.parent.mkdir()
        shutil.copy(PROGRAM, self.program)
        (root / "share" / PROGRAM.name).mkdir(parents=True)

    def catalogue(self, language):
        return self.root / "share/locale" / language / "LC_MESSAGES" / f"{PROGRAM.name}.mo"

    def translate(self, language, text):
        file = self.catalogue(language)
        file.parent.mkdir(parents=True, exist_ok=True)
        source = f'msgid ""\nmsgstr "Content-Type: text/plain; charset=UTF-8\\n"\n' \
                 f'msgid "MESSAGE"\nmsgstr "{text}"\n'
        subprocess.run(["msgfmt", "-o", file, "-"], input=source, text=True, check=True)

    def theme(self):
        return self.root / "share/watch-port/platform.edj"

    def start(self, env):
        return App({"ELM_ENGINE": "buffer", **env}, self.root, program=self.program)

    def run(self, env):
        """Returns what the running application says of its text, and its log lines."""
        with self.start(env) as app:
            app.wait_for("resume")
            text = app.ask("text")
            app.tell("exit")
            assert app.end()[0] == 0
            return text, app.port_lines()


@pytest.fixture
def installation(tmp_path):
    return Installation(tmp_path)


def warnings(lines, *beginnings):
    return [line for line in lines
            if line.startswith(tuple("W WATCH_PORT: " + beginning for beginning in beginnings))]


def about_catalogues(lines):
    return warnings(lines, "catalogue", "no catalogue")


def about_the_theme(lines):
    return warnings(lines, "the watch's theme")


@pytest.mark.parametrize("env", [
    KOREAN, {"LANG": "ko"}, {"LC_ALL": "ko_KR.UTF-8", "LANG": "C"},
    {"LANGUAGE": "ko"}, {"LC_ALL": "C", "LANGUAGE": "ko"}, {"LC_ALL": "POSIX", "LANGUAGE": "ko_KR"},
    {"LANG": "C.UTF-8", "LANGUAGE": "ko"}, {"LC_MESSAGES": "C.utf8", "LANGUAGE": "ko"},
], ids=str)
def test_texts_are_translated_though_the_locale_is_not_installed(installation, env):
    installation.translate("ko", "안녕")
    installation.translate("en", "hello")
    text, lines = installation.run(env)
    # Since version 2.41 of the C library gettext passes LANGUAGE over in "C.UTF-8" too.
    assert re.fullmatch(r"text 안녕 locale (?!C\b|POSIX\b)\w+\.UTF-8 domain lifecycle_app", text)
    assert not about_catalogues(lines)


def test_a_catalogue_of_the_region_comes_first(installation):
    installation.translate("ko", "general")
    installation.translate("ko_KR", "regional")
    text, lines = installation.run(KOREAN)
    assert text.startswith("text regional ")
    assert not about_catalogues(lines)


@pytest.mark.parametrize("locale, near", [
    ("en_GB.UTF-8", "en"), ("pt_AO.UTF-8", "pt"), ("es_AR.UTF-8", "es_419"),
    ("zh_SG.UTF-8", "zh_CN"), ("zh_MO.UTF-8", "zh_HK"), ("zh_HK.UTF-8", "zh_TW"),
    ("sr_RS.UTF-8@latin", "sr@latin"), ("no_NO.UTF-8", "nb"), ("iw_IL.UTF-8", "he"),
])
def test_a_near_catalogue_comes_before_english(installation, locale, near):
    installation.translate("en", "hello")
    installation.translate(near, "near")
    text, lines = installation.run({"LANG": locale})
    assert text.startswith("text near ")
    assert not about_catalogues(lines)


def test_a_missing_catalogue_is_one_warning_and_texts_are_english(installation):
    installation.translate("en", "hello")
    text, lines = installation.run(KOREAN)
    assert text.startswith("text hello ")
    (line,) = about_catalogues(lines)
    assert '"lifecycle_app.mo" for the language "ko_KR"' in line
    assert line.endswith("texts are English")


@pytest.mark.parametrize("env", [KOREAN, {"LANG": "en_US.UTF-8"}, {}], ids=str)
def test_no_catalogue_at_all_is_one_warning_and_texts_are_message_ids(installation, env):
    text, lines = installation.run(env)
    assert text.startswith("text MESSAGE ")
    (line,) = about_catalogues(lines)
    assert line.endswith("texts are message ids")


def test_an_unreadable_catalogue_is_a_missing_one(installation):
    file = installation.catalogue("ko")
    file.parent.mkdir(parents=True)
    file.symlink_to(file)
    assert len(about_catalogues(installation.run(KOREAN)[1])) == 1


ENGLISH = {"LANG": "en_US.UTF-8"}


def break_count(file):
    data = bytearray(file.read_bytes())
    data[8:12] = b"\xff\xff\xff\x7f"
    file.write_bytes(data)


@pytest.mark.parametrize("damage", [
    break_count,
    lambda file: file.write_bytes(file.read_bytes()[:40]),
    lambda file: file.write_bytes(b""),
    lambda file: (file.unlink(), file.mkdir()),
], ids=["a number that leads out of it", "cut", "empty", "a folder"])
def test_a_broken_catalogue_is_one_warning_and_texts_are_english(installation, damage):
    installation.translate("en", "hello")
    installation.translate("ko", "안녕")
    damage(installation.catalogue("ko"))
    text, lines = installation.run(KOREAN)
    assert text.startswith("text hello ")
    (line,) = about_catalogues(lines)
    assert line.endswith(f'"{installation.catalogue("ko")}" is broken: it is not used')


@pytest.mark.parametrize("languages", ["ko:en", "ko_KR:en", "ko_KR.utf8@x:en", "korean:en"])
def test_a_broken_catalogue_is_found_by_each_name_that_leads_to_it(installation, languages):
    installation.translate("en", "hello")
    installation.translate("ko", "안녕")
    break_count(installation.catalogue("ko"))
    text, lines = installation.run(ENGLISH | {"LANGUAGE": languages})
    assert text.startswith("text hello ")
    assert len(about_catalogues(lines)) == 1


def test_a_catalogue_that_is_not_used_is_not_looked_at(installation):
    installation.translate("en", "hello")
    installation.translate("ko", "안녕")
    break_count(installation.catalogue("ko"))
    text, lines = installation.run(ENGLISH)
    assert text.startswith("text hello ")
    assert not about_catalogues(lines)


@pytest.mark.parametrize("broken", ["zh_TW", "zh_CN@x"])
def test_a_broken_catalogue_of_another_territory_or_modifier_is_not_looked_at(installation, broken):
    installation.translate("zh_CN", "你好")
    installation.translate(broken, "您好")
    break_count(installation.catalogue(broken))
    text, lines = installation.run({"LANG": "zh_CN.UTF-8"})
    assert text.startswith("text 你好 ")
    assert not about_catalogues(lines)


def test_without_another_catalogue_than_a_broken_one_texts_are_message_ids(installation):
    installation.translate("ko", "안녕")
    break_count(installation.catalogue("ko"))
    text, lines = installation.run({"LANGUAGE": "ko", "LC_ALL": "ko_KR.UTF-8"})
    assert text.startswith("text MESSAGE ")
    assert len(about_catalogues(lines)) == 1


def test_a_catalogue_of_two_gibibytes_is_not_read(installation):
    installation.translate("en", "hello")
    installation.translate("ko", "안녕")
    with open(installation.catalogue("ko"), "r+b") as file:
        file.truncate(2 << 30)
    text, lines = installation.run(KOREAN)
    assert text.startswith("text hello ")
    (line,) = about_catalogues(lines)
    assert line.endswith("is larger than 16 MiB: it is not used")


def test_a_language_that_changes_to_a_broken_catalogue_leaves_english(installation, bus):
    installation.translate("en", "hello")
    installation.translate("de", "hallo")
    installation.translate("ko", "안녕")
    break_count(installation.catalogue("ko"))
    bus.start_locale(["LANG=ko_KR.UTF-8"])
    with installation.start({**bus.env, "LANG": "de_DE.UTF-8"}) as app:
        app.wait_for_log("is broken: it is not used")
        assert app.ask("text").startswith("text hello ")
        assert len(about_catalogues(app.port_lines())) == 1


@pytest.mark.parametrize("content", [None, b"", b"no theme"], ids=["missing", "empty", "text"])
def test_a_theme_that_is_none_is_one_warning(installation, content):
    if content is not None:
        installation.theme().parent.mkdir()
        installation.theme().write_bytes(content)
    (line,) = about_the_theme(installation.run({})[1])
    assert f'"{installation.theme()}" is missing or not a theme' in line


def test_a_theme_that_is_there_is_no_warning(installation):
    installation.theme().parent.mkdir()
    built = PROGRAM.parents[2] / "subprojects/watch-port/theme/platform.edj"
    shutil.copy(built, installation.theme())
    assert not about_the_theme(installation.run({})[1])


def test_a_program_without_an_installation_runs_with_one_warning(tmp_path):
    program = tmp_path / PROGRAM.name
    shutil.copy(PROGRAM, program)
    with App({"ELM_ENGINE": "buffer"}, tmp_path, program=program) as app:
        app.wait_for("resume")
        app.tell("exit")
        assert app.end()[0] == 0
        (line,) = warnings(app.port_lines(), "")
    assert "no folder above" in line
