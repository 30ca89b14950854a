"""The help text in every language, as far as rules can tell that it will read well."""

import unicodedata

from languages.catalogues import BACK_KEY, LANGUAGES, WATCH, texts
from languages.scripts import FULL_STOPS, NON_LATIN, script_of

LONGEST = 90
"""Characters of which no more than six or seven lines come on a round screen."""

WORD_BREAK, NO_BREAK_SPACE, NON_JOINER = "\u200b", "\u00a0", "\u200c"

INVISIBLE = {
    "fa": {NON_JOINER}, "km": {WORD_BREAK}, "lo": {WORD_BREAK}, "my": {WORD_BREAK},
    "te": {NON_JOINER}, "th": {WORD_BREAK},
}
"""Unseen characters that a language needs: to spell, or to break lines between its words."""

PUNCTUATION = set(NO_BREAK_SPACE + " \n-.,،«»„“”’") | {stop for stop in FULL_STOPS.values() if stop}


def wrong_texts(is_wrong):
    return {language: text for language, text in texts().items() if is_wrong(language, text)}


def test_the_name_of_the_wallet_occurs_once_in_latin_letters():
    assert wrong_texts(lambda _, text: text.count("Qivo") != 1) == {}


def test_every_text_is_another():
    assert len(set(texts().values())) == len(texts())


def test_no_text_holds_what_the_page_takes_for_markup():
    assert wrong_texts(lambda _, text: set(text) & set("&<>")) == {}


def test_no_text_breaks_its_line_more_often_than_the_page_does():
    assert wrong_texts(lambda _, text: text.count("\n") > 1) == {}


def test_no_line_is_empty_or_begins_or_ends_with_a_blank():
    assert wrong_texts(lambda _, text: any(
        line != line.strip() or not line for line in text.split("\n"))) == {}


def test_no_blank_follows_another():
    assert wrong_texts(lambda _, text: "  " in text) == {}


def test_every_text_is_in_composed_form():
    assert wrong_texts(lambda _, text: text != unicodedata.normalize("NFC", text)) == {}


def test_no_text_is_longer_than_a_round_screen_bears():
    assert wrong_texts(lambda _, text: len(text.replace(WORD_BREAK, "")) > LONGEST) == {}


def test_every_sentence_ends_as_its_script_wants():
    assert wrong_texts(lambda language, text: not (
        text.endswith(FULL_STOPS.get(language, "."))
        and (FULL_STOPS.get(language, ".") or text[-1].isalpha()))) == {}


def test_every_letter_is_of_the_languages_script():
    def is_wrong(language, text):
        scripts = NON_LATIN.get(language, {"LATIN"})
        invisible = INVISIBLE.get(language, set())
        rest = set(text.replace("Qivo", "")) - PUNCTUATION - invisible
        return {character for character in rest if script_of(character) not in scripts}

    assert wrong_texts(is_wrong) == {}


def test_unseen_characters_stand_where_the_language_needs_them():
    def unseen(text):
        return {character for character in text
                if unicodedata.category(character) in ("Cf", "Zl", "Zp")}

    assert {language: unseen(text) for language, text in texts().items()
            if unseen(text)} == INVISIBLE


def test_a_space_that_does_not_break_the_line_keeps_a_word_with_the_name():
    assert wrong_texts(lambda _, text: text.count(NO_BREAK_SPACE)
                       != text.count(NO_BREAK_SPACE + "Qivo")) == {}


def test_each_line_of_a_right_to_left_text_begins_with_a_letter_of_its_script():
    """The toolkit takes the direction of a line from its first letter."""
    assert wrong_texts(lambda language, text: NON_LATIN.get(language) in ({"ARABIC"}, {"HEBREW"})
                       and any(unicodedata.bidirectional(line[0]) not in ("R", "AL")
                               for line in text.split("\n"))) == {}


def test_the_picture_is_called_by_more_than_the_key_at_which_the_arrow_points():
    """A screen reader says the two one after the other."""
    wrong = {language: (picture, key)
             for language, picture, key in zip(LANGUAGES, texts(WATCH).values(),
                                               texts(BACK_KEY).values())
             if not picture.endswith(key) or len(picture) < len(key) + 2}
    assert wrong == {}


def test_every_letter_of_a_name_is_of_the_languages_script():
    def is_wrong(language, name):
        scripts = NON_LATIN.get(language, {"LATIN"})
        return any(character.isalpha() and script_of(character) not in scripts
                   for character in name)

    assert [language for language, name in texts(WATCH).items() if is_wrong(language, name)] == []
