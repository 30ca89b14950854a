"""What testers see of an application without looking: its tree, and the audit of its page."""

import importlib
import json
import types

import pytest
from PIL import Image

from languages.catalogues import BACK_KEY, WATCH, texts
from simulator.desk import BUILD

PAGE = BUILD / "tests" / "simulator" / "audited_page"
GONE = "org.freedesktop.DBus.Error.UnknownObject"
RED = (255, 0, 0, 255)


def parts(part):
    yield part
    for child in part["children"]:
        yield from parts(child)


def tree(desk):
    (window,) = json.loads(desk.do("tree", "--json"))
    return list(parts(window))


def test_the_tree_shows_what_is_on_the_guides_page_and_where(desk):
    desk.do("launch")
    desk.do("wait", "still")
    window, page, picture, arrow, label = tree(desk)
    assert [part["role"] for part in (window, page, picture, arrow, label)] == [
        "frame", "page", "image", "image", "label"]
    assert [part["name"] for part in (picture, arrow, label)] == [
        texts(WATCH)["en"], texts(BACK_KEY)["en"], texts()["en"]]
    assert window["place"] == [0, 0, 360, 360] and all(part["showing"] for part in (page, label))
    assert " ".join(line["text"] for line in label["lines"]).split() == label["name"].split()
    printed = desk.do("tree").splitlines()
    assert printed[0] == 'frame "qivo-guide-app" 0,0 360x360'
    x, y, width, height = picture["place"]
    assert printed[2] == f'    image "{picture["name"]}" {x},{y} {width}x{height}'


def test_the_tree_follows_the_page(desk):
    desk.do("launch")
    before = tree(desk)[-1]["place"][1]
    desk.do("bezel", "cw")
    desk.do("wait", "still")
    assert tree(desk)[-1]["place"][1] == before - 90
    desk.do("language", "ko_KR")
    desk.do("wait", "text", texts()["ko"].split("\n")[0])
    desk.do("battery", "--charging")
    desk.do("wait", "still")
    assert texts(BACK_KEY)["ko"] not in [part["name"] for part in tree(desk)]


def test_lines_that_break_within_a_word_have_each_letter_once(desk):
    desk.do("text-size", "2.0")
    desk.do("language", "my_MM")
    desk.do("launch")
    desk.do("wait", "still")
    label = tree(desk)[-1]
    drawn = "".join(line["text"] for line in label["lines"])
    assert "".join(drawn.split()) == "".join(label["name"].split())


def test_waiting_for_a_text_that_does_not_come_fails(desk):
    desk.do("launch")
    assert desk.refused("wait", "text", "never shown", "-t", "0.2") == (
        'qivo-watch: no text "never shown" within 0.2 s')


def test_a_text_that_comes_out_of_sight_is_found(desk):
    desk.do("launch", PAGE, "--env", "FAULTS=late")
    desk.do("wait", "text", "Late", "-t", "20")


def test_without_an_application_there_is_no_tree(desk):
    for words in (["tree"], ["audit"], ["wait", "text", "any"], ["touch", "--text", "any"]):
        assert desk.refused(*words) == "qivo-watch: no application is running"


def test_a_program_that_is_not_on_the_port_shows_no_tree(desk):
    # A launch waits for the first frame, which such a program does not report.
    desk.do("launch", "--env", "DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere")
    assert "shows no tree" in desk.refused("tree")


def test_a_touch_finds_its_text(desk):
    desk.do("text-size", "2.0")
    desk.do("launch")
    desk.do("wait", "still")
    desk.do("touch", "--text", "Back key")
    for text in ("zzz", lines_of(desk)[-1]):
        assert desk.refused("touch", "--text", text) == f'qivo-watch: no "{text}" is in sight'


def lines_of(desk):
    return [line["text"] for line in tree(desk)[-1]["lines"]]


def test_a_text_has_more_lines_than_a_bus_takes_questions_at_once(desk):
    desk.do("launch", PAGE, "--env", "FAULTS=long-entry")
    (entry,) = (part for part in tree(desk) if len(part.get("lines", ())) > 1)
    assert [line["text"] for line in entry["lines"]][:150] == [
        f"Line {number}." for number in range(1, 151)]
    heights = [line["place"][1] for line in entry["lines"]]
    assert heights == sorted(heights)


SIGNATURES = {"GetChildren": "a(so)", "GetInterfaces": "as", "GetState": "au", "GetRoleName": "s",
              "Get": "v", "GetExtents": "(iiii)", "GetRangeExtents": "iiii",
              "GetStringAtOffset": "sii"}


class Liar:
    """An application's end of the bus, as the reader of its tree calls it."""

    def __init__(self, **lies):
        self.lies = lies

    def send(self, _bus, path, _interface, method, _signature, *arguments):
        honest = {"GetChildren": ([(":1.0", "/part")] if path.endswith("root") else [],),
                  "GetInterfaces": (["org.a11y.atspi.Text"],), "GetState": ([0, 0],),
                  "GetRoleName": ("label",), "Get": ("Name",),
                  "GetExtents": ((0, 0, 9, 9),), "GetRangeExtents": (0, 0, 9, 9),
                  "GetStringAtOffset": ("", 0, 0)}
        answer = self.lies.get(method, honest[method])
        return method, answer(*arguments) if callable(answer) else answer

    def finish(self, call, _seconds):
        method, answer = call
        if isinstance(answer, Exception):
            raise answer
        return types.SimpleNamespace(signature=SIGNATURES[method], values=answer)

    def forget(self, _call):
        pass


def client_of(connection):
    return types.SimpleNamespace(connection=connection, folder=None, call=lambda _: (":1.0",))


@pytest.mark.parametrize("lies, complaint", [
    ({"GetChildren": ([(":1.0", "/part")],)}, "the tree is more than 100 objects deep"),
    ({"GetStringAtOffset": lambda offset, _: ("x", offset, offset + 1)},
     "the tree has more than 5000 objects and lines"),
    ({"GetInterfaces": GONE}, "the application's tree was not read within 0.1 s")],
    ids=["deep", "long", "gone"])
def test_a_tree_without_an_end_is_refused(monkeypatch, lies, complaint):
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    error = importlib.import_module("qivo_watch.command.bus.connection").CallError
    lies = {method: error(lie, "") if lie == GONE else lie for method, lie in lies.items()}
    reader = importlib.import_module("qivo_watch.command.screen.tree")
    if "within" in complaint:
        monkeypatch.setattr(reader, "_PATIENCE_S", 0.1)
    with pytest.raises(importlib.import_module("qivo_watch.errors").WatchError) as told:
        reader.read_windows(client_of(Liar(**lies)))
    assert str(told.value) == complaint


def test_a_name_that_is_no_text_is_none(monkeypatch):
    monkeypatch.syspath_prepend(str(BUILD / "simulator"))
    reader = importlib.import_module("qivo_watch.command.screen.tree")
    (part,) = reader.read_windows(client_of(Liar(Get=(5,))))
    assert part.name == ""


@pytest.mark.parametrize("words", [[], ["5"], ["5", "5", "--text", "any"], ["5", "--text", "any"]])
def test_a_touch_takes_a_place_or_a_text(desk, words):
    assert desk.refused("touch", *words, status=2) == (
        "qivo-watch: touch needs X and Y, or --text")


def test_the_guides_page_has_no_fault_and_stands_afterwards_where_it_stood(desk):
    desk.do("launch")
    desk.do("bezel", "cw")
    desk.do("wait", "still")
    before = tree(desk)
    assert desk.do("audit") == ""
    desk.do("wait", "still")
    assert tree(desk) == before


def test_a_page_that_counts_detents_has_its_number_again_after_the_audit(desk):
    desk.do("launch", PAGE, "--env", "FAULTS=counts")
    desk.do("bezel", "cw", 3)
    desk.do("wait", "text", "Turns: 11")
    assert desk.do("audit") == ""
    desk.do("wait", "still")
    assert "Turns: 11" in [part["name"] for part in tree(desk)]


def audited(desk, faults, *words):
    desk.do("launch", PAGE, "--env", f"FAULTS={faults}")
    return desk.run("audit", *words)


def test_a_page_without_a_fault_passes_and_leaves_no_picture(desk, tmp_path):
    file = tmp_path / "faults.png"
    result = audited(desk, "", "--picture", file)
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert not file.exists()


def test_what_would_turn_a_terminals_head_is_not_printed(desk):
    result = audited(desk, "escape")
    assert result.stdout.startswith("letters ") and "Red" in result.stdout
    assert "\x1b" not in result.stdout and "\x9b" not in result.stdout


def test_an_application_behind_another_has_no_page_to_audit(desk):
    desk.do("launch", PAGE)
    desk.do("button", "click", "back")
    assert desk.refused("audit") == "qivo-watch: the application is not on the screen"


def test_high_contrast_is_judged_by_a_stricter_rule(desk):
    assert audited(desk, "grey").returncode == 0
    desk.do("contrast", "high")
    result = desk.run("audit")
    desk.do("contrast", "normal")
    assert result.stdout.startswith("contrast 11.") and ' instead of 15: "Grey"' in result.stdout


def test_the_text_on_a_control_is_judged_too(desk):
    result = audited(desk, "pale-entry")
    assert result.stdout.splitlines() == ['contrast 3.5 instead of 7: "Dim"']


def test_letters_that_reach_below_no_line_may_be_lower(desk):
    assert audited(desk, "upright").stdout == ""


def test_each_rule_finds_the_fault_that_is_planted_and_marks_it(desk, tmp_path):
    file = tmp_path / "faults.png"
    result = audited(desk, "pale small cut unreached nameless lost-button", "--picture", file)
    assert sorted(result.stdout.splitlines()) == [
        'contrast 3.5 instead of 7: "Pale"', 'cut by the edge: "Cut off"',
        'letters 10 pixels high instead of 20: "Small"', "no name: image at 150,280 60x40",
        'out of the bezel\'s reach: "Unreached"',
        'out of the bezel\'s reach: push button "Lost"']
    assert (result.returncode, result.stderr) == (1, "qivo-watch: 6 faults on the page\n")
    with Image.open(file) as picture:
        assert picture.size == (360, 360)
        assert picture.getpixel((150, 280)) == RED
