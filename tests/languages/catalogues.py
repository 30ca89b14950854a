"""The message catalogues as translators left them, compiled one by one with the real compiler."""

import functools
import gettext
import io
import pathlib
import subprocess

LOCALE = pathlib.Path(__file__).parents[2] / "res" / "locale"
TEMPLATE = LOCALE / "qivo-guide-app.pot"
HELP_TEXT = "MIDS_QIVOG_BODY_PRESS_N_HOLD_BACK_KEY_ON_ANY_SCREEN_ABB"
WATCH = "MIDS_QIVOG_TMBODY_WATCH_AND_BACK_KEY"
BACK_KEY = "MIDS_QIVOG_TMBODY_BACK_KEY"

LANGUAGES = (LOCALE / "LINGUAS").read_text(encoding="utf-8").split()


def source(language):
    return LOCALE / f"{language}.po"


@functools.cache
def compile_catalogue(language):
    """The compiler's complaints, and the catalogue; no catalogue when it has not come about."""
    compiler = subprocess.run(["msgfmt", "--check", "--output-file=-", source(language)],
                              capture_output=True)
    complaints = compiler.stderr.decode()
    if compiler.returncode != 0:
        return complaints, None
    return complaints, gettext.GNUTranslations(io.BytesIO(compiler.stdout))


def texts(message=HELP_TEXT):
    """The help text, or another message, in each language."""
    return {language: compile_catalogue(language)[1].gettext(message) for language in LANGUAGES}
