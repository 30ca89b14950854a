"""How the command reads its words and speaks to the bus, without a watch: against the libraries
that it does without, and what it loads."""

import importlib
import subprocess

import pytest
from gi.repository import Gio, GLib
from hypothesis import given, settings, strategies as st

from simulator.desk import BUILD, QIVO_WATCH

# What is typed in a verb's place, whether it makes sense there or not.
VALUES = ["cw", "ccw", "back", "power", "5", "0", "-1", "", "a", "a=b", "a=c", "x.png", "10:08",
          "-", "--", "12", "360", "1.5", "error", "--nothing"]
NUMBERS = {"y": (0, 255), "n": (-2 ** 15, 2 ** 15 - 1), "q": (0, 2 ** 16 - 1),
           "i": (-2 ** 31, 2 ** 31 - 1), "u": (0, 2 ** 32 - 1), "x": (-2 ** 63, 2 ** 63 - 1),
           "t": (0, 2 ** 64 - 1), "h": (0, 2 ** 31 - 1)}
SLOW = {"argparse", "gi", "json", "pathlib", "re", "shlex", "site", "threading", "typing"}


@pytest.fixture(name="module", scope="module")
def _module():
    with pytest.MonkeyPatch.context() as patch:
        patch.syspath_prepend(str(BUILD / "simulator"))
        yield lambda name: importlib.import_module(f"qivo_watch.command.{name}")


def described(namespace):
    return {key: value for key, value in vars(namespace).items() if key != "parser"}


def words_of(parser):
    """Lists that begin with a verb of the whole grammar and go on with what verbs take."""
    def pieces(action):
        values = st.sampled_from([*map(str, action.choices or ()), *VALUES]).map(lambda one: [one])
        if not action.option_strings:
            return values
        name = st.sampled_from(action.option_strings).map(lambda one: [one])
        return name if action.nargs == 0 else st.tuples(name, values).map(lambda two: sum(two, []))

    def lists(path, here):
        own = [action for action in here._actions if not isinstance(action.choices, dict)]
        yield st.lists(st.one_of(*map(pieces, own)), max_size=4).map(
            lambda found: sum(found, list(path)))
        for action in here._actions:
            for word, part in action.choices.items() if isinstance(action.choices, dict) else ():
                yield from lists([*path, word], part)
    return st.one_of(*lists([], parser))


def test_what_is_read_quickly_means_the_same_to_the_whole_parser(module):
    arguments, quick = module("arguments"), module("quick")
    whole = arguments.Grammar(False)
    read = []

    @settings(max_examples=800, deadline=None, derandomize=True, database=None)
    @given(words_of(whole.parser))
    def compare(words):
        try:
            found = arguments.Grammar(False, quick.Quick()).parse(words)
        except quick.Unclear:
            return
        read.append(words)
        assert described(found) == described(whole.parse(words))

    compare()
    assert len(read) > 100


@pytest.mark.parametrize("line", [
    "", "start --headless --size 390 --at 10:08", "--name second bezel cw 3 -i 0", "list",
    "button click back -d 5 -n 2", "battery --percent 5 --full", "status --json", "time",
    "time set 10:08", "launch ./cards --extra a=b --extra c=d --operation show", "touch 5 5",
    "touch --text Done", "wait log --new done -t 3", "swipe 1 2 3 4", "log --level error"])
def test_what_is_usually_written_is_read_quickly(module, line):
    module("arguments").Grammar(False, module("quick").Quick()).parse(line.split())


@pytest.mark.parametrize("words", [
    ["battery", "--percent", "5"], ["bezel", "cw"], ["status", "--json"], ["list"],
    ["wait", "log", "ready"]])
def test_a_verb_loads_no_library_that_takes_longer_than_the_verb(desk, words):
    python = ["/usr/bin/python3", "-I", "-S", "-X", "importtime"]
    told = subprocess.run([*python, QIVO_WATCH, *words], env=desk.environment, text=True,
                          capture_output=True, check=True).stderr
    loaded = {line.rpartition("|")[2].strip() for line in told.splitlines()}
    assert not loaded & SLOW
    assert "qivo_watch.command.cli" in loaded


def kinds():
    """Types with a value each, as GLib and wire.py take it."""
    def pair(kind, values):
        return values.map(lambda value: (kind, value, value))

    text = st.text(st.characters(blacklist_categories=["Cs"], blacklist_characters="\0"))
    plain = st.one_of(
        *(pair(kind, st.integers(*limits)) for kind, limits in NUMBERS.items()),
        pair("b", st.booleans()), pair("d", st.floats(allow_nan=False)), pair("s", text),
        pair("o", st.just("/a/b")), pair("g", st.just("a{sv}")))

    def array(found):
        kind, one, other = found
        return st.integers(0, 3).map(lambda count: (f"a{kind}", [one] * count, [other] * count))

    def structure(parts):
        names, ones, others = zip(*parts)
        return f"({''.join(names)})", ones, others

    def table(found):
        kind, one, other = found
        return text.map(lambda key: (f"a{{s{kind}}}", {key: one}, {key: other}))

    def variant(found):
        kind, one, other = found
        return "v", GLib.Variant(kind, one), (kind, other)

    return st.recursive(plain, lambda inner: st.one_of(
        inner.flatmap(array), st.lists(inner, min_size=1, max_size=3).map(structure),
        inner.flatmap(table), inner.map(variant)), max_leaves=6)


@settings(max_examples=150, deadline=None, derandomize=True, database=None)
@given(st.lists(kinds(), max_size=3))
def test_a_call_is_read_by_another_library_and_its_answer_from_it(module, found):
    wire = module("bus.wire")
    signature = "".join(kind for kind, _, _ in found)
    values = GLib.Variant(f"({signature})", tuple(one for _, one, _ in found))
    data = wire.call(7, "a.b", "/a", "a.b.C", "Do", signature, *(other for _, _, other in found))
    call = Gio.DBusMessage.new_from_blob(data, Gio.DBusCapabilityFlags.NONE)
    assert wire.size_of(data[:wire.HEAD_SIZE]) == len(data)
    assert (call.get_member(), call.get_serial(), call.get_signature()) == ("Do", 7, signature)
    assert signature == "" or call.get_body().equal(values)
    for order in (Gio.DBusMessageByteOrder.BIG_ENDIAN, Gio.DBusMessageByteOrder.LITTLE_ENDIAN):
        answer = Gio.DBusMessage.new_method_reply(call)
        answer.set_byte_order(order)
        answer.set_serial(9)
        answer.set_body(values)
        blob = answer.to_blob(Gio.DBusCapabilityFlags.NONE)
        assert wire.size_of(blob[:wire.HEAD_SIZE]) == len(blob)
        read = wire.read(blob)
        assert (read.kind, read.answered, read.signature) == (wire.ANSWER, 7, signature)
        assert read.values == values.unpack()
