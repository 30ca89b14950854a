"""The installed fonts draw every text."""

import functools
import pathlib
import re
import subprocess

import pytest

from languages.catalogues import texts

THEME = pathlib.Path(__file__).parents[2] / "res" / "edje" / "qivoui.edc"


@functools.cache
def installed_fonts():
    """Families of sans-serif fonts, each with the characters that it draws."""
    listed = subprocess.run(["fc-list", "--format", "%{family[0]}\t%{charset}\n"], check=True,
                            capture_output=True, text=True).stdout
    fonts = {}
    for family, _, charset in (line.partition("\t") for line in listed.splitlines()):
        if family.startswith("Noto Sans") or family == "Lohit Odia":
            ranges = [[int(end, 16) for end in part.split("-")] for part in charset.split()]
            fonts[family] = [(part[0], part[-1]) for part in ranges]
    return fonts


def families(characters):
    """The families that draw all the characters."""
    return {family for family, ranges in installed_fonts().items() if all(
        any(first <= ord(character) <= last for first, last in ranges)
        for character in characters)}


def letters(text):
    """Those of the language: the name is drawn in the page's first font everywhere."""
    return {character for character in text.replace("Qivo", "") if character.isalpha()}


def preferred_families():
    """Those that the page's text style asks for before any other."""
    source = THEME.read_text(encoding="utf-8").replace("\\\n", "")
    named = re.search(r'font_fallbacks=([\w,]+)', source)[1].split(",")
    return [next((family for family in installed_fonts() if family.replace(" ", "") == name), name)
            for name in named]


def test_the_fonts_that_the_theme_prefers_are_installed():
    assert set(preferred_families()) <= set(installed_fonts())


def test_one_font_draws_all_letters_of_a_text():
    assert [language for language, text in texts().items() if not families(letters(text))] == []


def test_every_sign_of_a_text_is_in_a_font():
    signs = {sign for text in texts().values() for sign in text if sign != "\n"}
    assert {sign for sign in signs if not families(sign)} == set()


@pytest.mark.parametrize("language", ["ar", "fa", "he", "hy", "ka", "lo", "or", "ta", "ur"])
def test_the_theme_prefers_a_font_where_another_draws_the_script_badly(language):
    assert set(preferred_families()) & families(letters(texts()[language]))
