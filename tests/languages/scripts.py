"""How languages are written."""

import unicodedata

NON_LATIN = {
    "am": {"ETHIOPIC"}, "ar": {"ARABIC"}, "as": {"BENGALI"}, "be": {"CYRILLIC"},
    "bg": {"CYRILLIC"}, "bn": {"BENGALI"}, "el": {"GREEK"}, "fa": {"ARABIC"}, "gu": {"GUJARATI"},
    "he": {"HEBREW"}, "hi": {"DEVANAGARI"}, "hy": {"ARMENIAN"},
    "ja": {"CJK", "HIRAGANA", "KATAKANA", "KATAKANA-HIRAGANA"}, "ka": {"GEORGIAN"},
    "kk": {"CYRILLIC"}, "km": {"KHMER"}, "kn": {"KANNADA"}, "ko": {"HANGUL"}, "ky": {"CYRILLIC"},
    "lo": {"LAO"}, "mk": {"CYRILLIC"}, "ml": {"MALAYALAM"}, "mn": {"CYRILLIC"},
    "mr": {"DEVANAGARI"}, "my": {"MYANMAR"}, "ne": {"DEVANAGARI"}, "or": {"ORIYA"},
    "pa": {"GURMUKHI"}, "ru": {"CYRILLIC"}, "si": {"SINHALA"}, "sr": {"CYRILLIC"},
    "ta": {"TAMIL"}, "te": {"TELUGU"}, "tg": {"CYRILLIC"}, "th": {"THAI"}, "uk": {"CYRILLIC"},
    "ur": {"ARABIC"}, "zh_CN": {"CJK"}, "zh_HK": {"CJK"}, "zh_TW": {"CJK"},
}
"""The scripts of languages, as the names of Unicode's characters begin."""

FULL_STOPS = {
    "am": "\u1362", "as": "\u0964", "bn": "\u0964", "hi": "\u0964", "hy": "\u0589",
    "ja": "\u3002", "km": "\u17d4", "lo": "", "my": "\u104b", "ne": "\u0964", "or": "\u0964",
    "pa": "\u0964", "th": "", "ur": "\u06d4", "zh_CN": "\u3002", "zh_HK": "\u3002",
    "zh_TW": "\u3002",
}
"""How a sentence ends where it is not with a dot; Thai and Lao put nothing there."""


def script_of(character):
    return unicodedata.name(character, "").split(" ")[0]
