"""Every language has one sound and complete catalogue."""

import re
import subprocess

from languages.catalogues import LANGUAGES, LOCALE, TEMPLATE, compile_catalogue, source

LANGUAGE = re.compile(r"[a-z]{2,3}(_([A-Z]{2}|[0-9]{3}))?(@[a-z]+)?")


def headers():
    return {language: compile_catalogue(language)[1].info() for language in LANGUAGES}


def languages_where(is_wrong):
    return [language for language in LANGUAGES if is_wrong(language)]


def test_the_languages_are_those_that_have_a_file_in_their_order():
    assert LANGUAGES == sorted(path.stem for path in LOCALE.glob("*.po"))


def test_every_language_has_the_name_of_a_locale():
    assert languages_where(lambda language: not LANGUAGE.fullmatch(language)) == []


def test_the_compiler_has_nothing_to_complain_of():
    complaints = {language: compile_catalogue(language)[0] for language in LANGUAGES}
    assert {language: said for language, said in complaints.items() if said} == {}


def test_every_message_of_the_template_is_translated_and_no_other():
    for language in LANGUAGES:
        comparison = subprocess.run(["msgcmp", source(language), TEMPLATE],
                                    capture_output=True, text=True)
        assert (comparison.returncode, comparison.stderr) == (0, ""), language


def test_the_template_tells_a_translator_about_every_message():
    entries = TEMPLATE.read_text(encoding="utf-8").split("\n\n")[1:]
    assert entries
    assert [entry for entry in entries if not entry.startswith("#. ")] == []


def test_the_template_says_what_the_english_catalogue_says():
    template, english = (file.read_text(encoding="utf-8").split("\n\n")[1:]
                         for file in (TEMPLATE, source("en")))
    assert template == english


def test_the_header_names_the_language_and_utf_8():
    wrong = {language: header for language, header in headers().items()
             if header["language"] != language
             or header["content-type"] != "text/plain; charset=UTF-8"}
    assert wrong == {}


def test_the_header_gives_the_plural_forms():
    forms = re.compile(r"nplurals=[1-6]; plural=[^;]+;")
    assert languages_where(lambda language: not forms.fullmatch(
        headers()[language]["plural-forms"])) == []


def test_no_file_holds_an_address_of_a_person():
    assert languages_where(lambda language: re.search(
        r"\w@\w", source(language).read_text(encoding="utf-8").replace("sr@latin", ""))) == []


def test_the_translators_page_lists_the_languages():
    page = (LOCALE.parents[1] / "docs" / "languages.md").read_text(encoding="utf-8")
    listed = page.partition("\n## The languages\n")[2]
    assert re.findall(r"`([^`]+)`\s+[A-Z]", listed) == LANGUAGES
    assert f"in {len(LANGUAGES)} languages" in page
