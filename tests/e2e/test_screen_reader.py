"""The guide on a desktop with a screen reader, which knows it through AT-SPI alone."""

import os

import pytest

from e2e.app import BUILD, App
from e2e.watch import bare_environment
from languages.catalogues import BACK_KEY, HELP_TEXT, LANGUAGES, WATCH, compile_catalogue
from support.bus import SystemBus, wait_until
from support.display import Display
from support.screen_reader import ScreenReader, parts

NAME = "qivo-guide-app"
CARDS = "cards"


class Desk:
    """A desktop with a screen reader, and the guide on it."""

    def __init__(self, reader, display, system, folder):
        self.reader = reader
        self.display = display
        self.system = system
        self.environment = bare_environment(folder) | reader.env | display.env | system.env

    def launch(self, **program):
        app = App(self.environment, **program)
        app.wait_log("WATCH_PORT", "first frame")
        return app

    def key(self, name):
        self.display.xdotool("key", name)

    def turn_bezel(self):
        self.display.xdotool("click", "5")

    def page(self, accept=lambda tree: parts(tree, "label")):
        return self.reader.wait_tree(NAME, lambda tree: tree and accept(tree))

    def speak(self, language):
        """Sets the desktop's language."""
        stem, at, modifier = language.partition("@")
        self.system.set_locale([f"LANG={stem}.UTF-8{at}{modifier}"])


@pytest.fixture(scope="module", name="scene")
def _scene(tmp_path_factory):
    with ScreenReader() as reader, Display() as display, SystemBus() as system:
        system.start_upower()
        system.start_locale(["LANG=en_US.UTF-8"])
        yield Desk(reader, display, system, str(tmp_path_factory.mktemp("home")))


@pytest.fixture(name="desk")
def _desk(scene):
    scene.reader.turn_on()
    scene.speak("en_US")
    scene.system.set_charging(False)
    yield scene
    wait_until(lambda: not any(map(scene.reader.tree, (NAME, CARDS))), "an empty readers' bus")


def text_of(language, message=HELP_TEXT):
    return compile_catalogue(language)[1].gettext(message)


def names(tree, role):
    return [part["name"] for part in parts(tree, role)]


def test_the_tree_is_window_page_pictures_and_text(desk):
    with desk.launch():
        tree = desk.page()
        (frame,) = tree["children"]
        (page,) = frame["children"]
        assert (tree["role"], frame["role"], page["role"]) == ("application", "frame", "page")
        assert [(part["role"], part["name"]) for part in page["children"]] == [
            ("image", text_of("en", WATCH)), ("image", text_of("en", BACK_KEY)),
            ("label", text_of("en"))]
        assert [part["index"] for part in page["children"]] == [0, 1, 2]
        assert {part["parent"] for part in page["children"]} == {"page"}
        assert {part["locale"] for part in page["children"]} == {"en_US.UTF-8"}
        assert frame["place"] == page["place"] == [0, 0, 360, 360]
        picture, _, label = page["children"]
        assert picture["place"][:3] == [0, 0, 360]
        assert sum(picture["place"][1::2]) <= label["place"][1]
        assert picture["description"] == picture["name"]
        assert label["text"] == label["name"]


def test_every_line_of_the_text_has_its_place(desk):
    with desk.launch():
        (label,) = parts(desk.page(), "label")
    lines = label["lines"]
    assert "".join(line[0] for line in lines) == label["text"]
    assert len(lines) > 2
    tops = [line[2] for line in lines]
    assert tops == sorted(set(tops))
    left, width = label["place"][0], label["place"][2]
    assert all(left <= x and x + across <= left + width for _, x, _, across, _ in lines)


def test_reading_begins_at_the_text_of_the_active_window(desk):
    with desk.launch():
        desk.reader.wait(event="window:activate", role="frame")
        desk.reader.wait(event="object:state-changed:focused", on=1, name=text_of("en"))
        tree = desk.page()
        assert "active" in tree["children"][0]["states"]
        assert "focused" in parts(tree, "label")[0]["states"]


@pytest.mark.parametrize("key", ["XF86Back", "Escape"])
def test_the_back_key_leaves_the_guide_while_it_is_read(desk, key):
    with desk.launch() as app:
        desk.page()
        desk.key(key)
        assert app.wait_end() == 0


def test_other_keys_reach_the_guide_while_it_is_read(desk):
    with desk.launch() as app:
        desk.page()
        desk.key("XF86PowerOff")
        app.wait_log("POWER KEY Released!")


def test_the_bezel_turns_the_page_while_it_is_read(desk):
    with desk.launch():
        (before,) = parts(desk.page(), "label")
        desk.turn_bezel()
        desk.page(lambda tree: parts(tree, "label")[0]["place"][1] < before["place"][1] - 80)


def test_a_change_of_the_language_is_told(desk):
    with desk.launch():
        desk.page()
        desk.speak("ko_KR")
        desk.reader.wait(event="object:property-change:accessible-name", role="image",
                         data=text_of("ko", WATCH))
        desk.reader.wait(event="object:property-change:accessible-name", role="label",
                         data=text_of("ko"))
        desk.reader.wait(event="object:text-changed:delete", data=text_of("en"))
        desk.reader.wait(event="object:text-changed:insert", data=text_of("ko"))


def test_the_arrow_is_told_as_it_goes_and_comes_with_the_charger(desk):
    with desk.launch():
        arrow = text_of("en", BACK_KEY)
        desk.page(lambda tree: arrow in names(tree, "image"))
        desk.system.set_charging(True)
        desk.reader.wait(event="object:children-changed:remove", role="page")
        desk.page(lambda tree: names(tree, "image") == [text_of("en", WATCH)])
        desk.system.set_charging(False)
        desk.reader.wait(event="object:children-changed:add", role="page", data=arrow)
        desk.page(lambda tree: arrow in names(tree, "image"))


def test_a_reader_that_comes_and_goes_is_followed(desk):
    desk.reader.turn_on(False)
    with desk.launch():
        assert desk.reader.tree(NAME) is None
        desk.reader.turn_on()
        desk.page()
        desk.reader.turn_on(False)
        wait_until(lambda: desk.reader.tree(NAME) is None, "no guide on the readers' bus")
        desk.reader.turn_on()
        desk.page()


def test_a_reader_leaves_the_guide_by_the_windows_action(desk):
    with desk.launch() as app:
        desk.page(lambda tree: "active" in tree["children"][0]["states"])
        assert desk.reader.do(NAME, "frame", NAME)
        assert app.wait_end() == 0


def test_another_application_is_worked_by_a_reader_alone(desk):
    """A theme says which of its parts are buttons, and which are decoration."""
    def screen(role, name):
        return desk.reader.wait_tree(CARDS, lambda tree: tree and name in names(tree, role))

    with desk.launch(executable=BUILD / "examples" / "cards" / "cards") as app:
        tree = screen("push button", "Tram Pass 19.00 • 0370")
        assert names(tree, "image") == []
        assert desk.reader.do(CARDS, "push button", "Tram Pass 19.00 • 0370")
        screen("label", "Balance 19.00")
        # A screen that moves takes no finger, and no reader.
        wait_until(lambda: desk.reader.do(CARDS, "push button", "Pay"), "the payment")
        screen("push button", "Done")
        wait_until(lambda: desk.reader.do(CARDS, "push button", "Done"), "the first screen")
        screen("push button", "Tram Pass 15.50 • 0370")
        # It may have gone before the answer.
        wait_until(lambda: desk.reader.do(CARDS, "frame", "Cards") or
                   app.process.poll() is not None, "the back key")
        assert app.wait_end() == 0


def test_the_guide_can_be_read_in_every_language_and_left(desk):
    """By a listener that has nothing but what AT-SPI tells."""
    languages = os.environ.get("PAGE_LANGUAGES", " ".join(LANGUAGES)).split()
    with desk.launch() as app:
        desk.page()
        for language in languages:
            desk.speak(language)
            tree = desk.page(lambda tree, wanted=language: parts(tree, "label") and names(
                tree, "label") == [text_of(wanted)])
            assert names(tree, "image") == [text_of(language, WATCH), text_of(language, BACK_KEY)]
        desk.key("XF86Back")
        assert app.wait_end() == 0
