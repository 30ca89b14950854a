"""What a desktop and its software centre show of the guide, as it is installed."""

import configparser
import filecmp
import pathlib
import re
import shutil
import struct
import subprocess
import unicodedata
import xml.etree.ElementTree

import pytest

from languages.catalogues import LANGUAGES
from languages.scripts import FULL_STOPS, NON_LATIN, script_of

ROOT = pathlib.Path(__file__).parents[2]
GUIDE = (ROOT / "res" / "qivo-guide-app.id").read_text(encoding="utf-8").strip()
CATALOGUES = ROOT / "res" / "desktop" / "po"
VERSION = re.search(r"version: '([^']+)'", (ROOT / "meson.build").read_text())[1]
LANG = "{http://www.w3.org/XML/1998/namespace}lang"

MESON = f"""project('qivo-guide-app', version: '{VERSION}', meson_version: '>=1.0.0')
subdir('res')
"""


class Installation:
    """The project without its programs, built and installed in a folder of its own."""

    def __init__(self, folder):
        self.root = folder / "root"
        self.share = self.root / "usr" / "share"
        self._build = folder / "build"
        shutil.copytree(ROOT / "res", folder / "res")
        (folder / "meson.build").write_text(MESON, encoding="utf-8")
        self._do("meson", "setup", "--prefix=/usr", self._build, folder)
        self._do("meson", "install", "-C", self._build, "--destdir", self.root)

    def uninstall(self):
        self._do("ninja", "-C", self._build, "uninstall")

    def entry(self):
        return self.share / "applications" / f"{GUIDE}.desktop"

    def metainfo(self):
        return self.share / "metainfo" / f"{GUIDE}.metainfo.xml"

    @staticmethod
    def _do(*command):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        assert done.returncode == 0, done.stdout


@pytest.fixture(scope="module", name="installation")
def _installation(tmp_path_factory):
    return Installation(tmp_path_factory.mktemp("first"))


@pytest.fixture(name="entry")
def _entry(installation):
    """The keys of the desktop entry."""
    parser = configparser.RawConfigParser(delimiters="=", comment_prefixes="#", strict=True)
    parser.optionxform = str
    parser.read(installation.entry(), encoding="utf-8")
    return parser["Desktop Entry"]


@pytest.fixture(name="translations")
def _translations(entry):
    """A key of the entry in each language."""
    return lambda key: {language: entry[f"{key}[{language}]"] for language in LANGUAGES}


@pytest.fixture(name="component")
def _component(installation):
    """The root of the metainfo."""
    return xml.etree.ElementTree.parse(installation.metainfo()).getroot()


@pytest.fixture(name="descriptions")
def _descriptions(component):
    return {text.get(LANG): text.text for text in component.iter("p") if text.get(LANG)}


def wrong(texts, is_wrong):
    return {language: text for language, text in texts.items() if is_wrong(language, text)}


@pytest.mark.parametrize("key", ["Name", "Comment", "Keywords"])
def test_the_entry_is_translated_into_every_language(entry, key):
    found = [re.fullmatch(rf"{key}\[(.+)\]", name) for name in entry]
    assert sorted(match[1] for match in found if match) == LANGUAGES


@pytest.mark.parametrize("tag", ["name", "summary", "p"])
def test_the_metainfo_is_translated_into_every_language(component, tag):
    languages = [element.get(LANG) for element in component.iter(tag)]
    assert sorted(filter(None, languages)) == LANGUAGES and languages.count(None) == 1


def test_entry_and_metainfo_say_the_same(entry, component):
    said = {tag: component.find(tag).text for tag in ("id", "name", "summary", "launchable")}
    assert said == {"id": GUIDE, "name": entry["Name"], "summary": entry["Comment"],
                    "launchable": f"{GUIDE}.desktop"}
    assert [each.text for each in component.iter("category")] == \
        entry["Categories"].strip(";").split(";")


def test_the_newest_release_is_the_version_that_is_built(component):
    assert next(component.iter("release")).get("version") == VERSION


def test_the_entry_is_a_sound_one(installation):
    validated = subprocess.run(["desktop-file-validate", installation.entry()],
                               capture_output=True, text=True)
    assert (validated.returncode, validated.stdout) == (0, "")


def test_software_centres_miss_nothing_but_a_licence(installation):
    """The owner has not chosen one. Newer validators have more hints than older ones."""
    validated = subprocess.run(["appstreamcli", "validate", "--no-net", "--explain",
                                installation.metainfo()], capture_output=True, text=True)
    found = re.findall(r"^[EW]: \S+ ([a-z-]+)", validated.stdout, re.MULTILINE)
    assert found == ["metadata-license-missing"], validated


def test_the_template_holds_what_is_to_be_translated():
    extracted = subprocess.run(
        ["xgettext", "--from-code=UTF-8", "--add-comments", "--add-location=file",
         f"--files-from={CATALOGUES / 'POTFILES'}", "--output=-"],
        cwd=ROOT, check=True, capture_output=True, text=True).stdout
    template = (CATALOGUES / "qivo-guide-app-desktop.pot").read_text(encoding="utf-8")
    assert template.split("\n\n", 1)[1] == extracted.split("\n\n", 1)[1]


def test_the_compiler_has_nothing_to_complain_of():
    for language in LANGUAGES:
        compiled = subprocess.run(["msgfmt", "--check", "--output-file=/dev/null",
                                   CATALOGUES / f"{language}.po"], capture_output=True, text=True)
        assert (compiled.returncode, compiled.stderr) == (0, ""), language


def test_no_catalogue_is_of_a_language_that_the_guide_does_not_speak():
    assert sorted(path.stem for path in CATALOGUES.glob("*.po")) == LANGUAGES


def test_each_text_calls_the_wallet_once_by_its_name(translations, descriptions):
    for texts in translations("Name"), translations("Comment"), descriptions:
        assert wrong(texts, lambda _, text: text.count("Qivo") != 1) == {}


def test_every_letter_is_of_the_languages_script(translations, descriptions):
    def is_wrong(language, text):
        # The Filipino key is called as in English, and its letters are Latin anyway.
        scripts = NON_LATIN.get(language, {"LATIN"})
        return any(letter.isalpha() and script_of(letter) not in scripts
                   for letter in text.replace("Qivo", ""))

    for key in "Name", "Comment", "Keywords":
        assert wrong(translations(key), is_wrong) == {}
    assert wrong(descriptions, is_wrong) == {}


def test_every_text_is_in_composed_form_with_single_blanks(translations, descriptions):
    for texts in (*map(translations, ("Name", "Comment", "Keywords")), descriptions):
        assert wrong(texts, lambda _, text: text != " ".join(
            unicodedata.normalize("NFC", text).split(" ")).strip() or "  " in text) == {}


def test_names_and_comments_are_no_sentences(translations):
    stops = {".", *FULL_STOPS.values()} - {""}
    for key in "Name", "Comment":
        assert wrong(translations(key), lambda _, text: text[-1] in stops) == {}


def test_descriptions_end_as_their_script_wants(descriptions):
    assert wrong(descriptions, lambda language, text: not text.endswith(
        FULL_STOPS.get(language, "."))) == {}


def test_the_words_to_search_for_are_several_and_each_another(translations):
    def is_wrong(_, text):
        words = text.split(";")
        return words.pop() != "" or len(words) < 4 or len(set(words)) != len(words) or any(
            word != word.strip() or not word for word in words)

    assert wrong(translations("Keywords"), is_wrong) == {}


def test_the_icon_is_installed_in_the_theme_s_sizes(installation, entry):
    theme = installation.share / "icons" / "hicolor"
    sizes = {}
    for file in theme.glob(f"*/apps/{entry['Icon']}.png"):
        width, height = struct.unpack(">II", file.read_bytes()[16:24])
        sizes[file.parents[1].name] = (width, height)
    assert sizes == {f"{side}x{side}": (side, side) for side in (16, 22, 24, 32, 48, 64, 128, 256)}
    assert (theme / "scalable" / "apps" / f"{entry['Icon']}.svg").is_file()


def test_two_builds_are_the_same_and_nothing_is_left_of_one_that_is_uninstalled(
        installation, tmp_path):
    folder = tmp_path / "another place"
    folder.mkdir()
    second = Installation(folder)
    files = sorted(path.relative_to(second.root) for path in second.root.rglob("*")
                   if path.is_file())
    assert len(files) > len(LANGUAGES)
    assert filecmp.cmpfiles(installation.root, second.root, files, shallow=False) == \
        (files, [], [])
    second.uninstall()
    assert list(second.root.rglob("*")) == []
