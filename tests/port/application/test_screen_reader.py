"""What the port says to screen readers, and that no lie of theirs or of their bus harms it."""

import contextlib
import time

import dbus
import dbus.bus
import dbus.lowlevel
import pytest

from port.lifecycle import App, compile_theme, wait_until_active, wait_until_still
from port.silent_bus import SilentBus
from support.bus import wait_until
from support.display import Display
from support.session_bus import ACCESSIBILITY, SessionBus

ROOT = "/org/a11y/atspi/accessible/root"
ACCESSIBLE = "org.a11y.atspi.Accessible"
ACTION = "org.a11y.atspi.Action"
COMPONENT = "org.a11y.atspi.Component"
EDITABLE_TEXT = "org.a11y.atspi.EditableText"
PROPERTIES = "org.freedesktop.DBus.Properties"
TEXT = "org.a11y.atspi.Text"
WORD, LINE = 1, 3
CHECKED, EDITABLE, ENABLED, FOCUSABLE, FOCUSED = 4, 7, 8, 11, 12

THEME = """
collections {
   group { name: "page";
      data.item: "accessible-buttons" "pay bare gone away";
      data.item: "accessible-decoration" "ornament";
      parts {
         rect { "pay"; desc { color: 0 0 0 0; rel2.relative: 1.0 0.2; } }
         rect { "bare"; desc { color: 0 0 0 0; rel1.relative: 0.0 0.2; rel2.relative: 1.0 0.4; } }
         rect { "gone"; desc { visible: 0; } }
         rect { "nothing"; desc { visible: 0; } }
         rect { "away"; desc { clip_to: "nothing"; } }
         text { "label"; nomouse;
            desc { rel.to: "pay"; text { text: "Pay"; font: "Sans"; size: 20; min: 1 1; } }
         }
         text { "ornament"; nomouse; desc { text { text: "~"; font: "Sans"; size: 20; } } }
      }
   }
}
"""


@pytest.fixture(scope="module", name="readers")
def _readers():
    """The readers' bus."""
    with SessionBus() as bus:
        bus.start_registry()
        yield bus


@pytest.fixture(name="session")
def _session():
    with SessionBus() as bus:
        yield bus


def start_on(session, folder, **env):
    """An application in sight that has looked for a reader."""
    app = App({"ELM_ENGINE": "buffer", **session.env, **env}, folder)
    app.wait_for("resume")
    wait_until(lambda: session.matches(ACCESSIBILITY), "a look for screen readers")
    return app


@pytest.fixture(name="start")
def _start(session, tmp_path):
    with contextlib.ExitStack() as apps:
        yield lambda: apps.enter_context(start_on(session, tmp_path))


def is_read(readers, app):
    return readers.has_client(app.process.pid)


def wait_until_read(readers, app):
    wait_until(lambda: is_read(readers, app), "the application on the readers' bus")


class Reader:
    """A client of the readers' bus that asks the application whatever it likes."""

    def __init__(self, readers, app):
        self._bus = dbus.bus.BusConnection(readers.address)
        self._name = readers.client_of(app.process.pid)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._bus.close()

    def ask(self, path, interface, member, signature="", *arguments):
        return self._bus.call_blocking(self._name, path, interface, member, signature, arguments)

    def name_of(self, path):
        return self.ask(path, PROPERTIES, "Get", "ss", ACCESSIBLE, "Name")

    def items(self):
        """Path and name of all that the application shows."""
        items = self.ask("/org/a11y/atspi/cache", "org.a11y.atspi.Cache", "GetItems")
        return [(str(item[0][1]), str(item[6])) for item in items]

    def control(self, name):
        """The path of the control of that name; what is on it has it too."""
        return next(path for path, shown in self.items() if shown == name)

    def states(self, path):
        low, high = self.ask(path, ACCESSIBLE, "GetState")
        return {bit for bit in range(64) if (high << 32 | low) >> bit & 1}

    def error(self, *question):
        with pytest.raises(dbus.DBusException) as refusal:
            self.ask(*question)
        return refusal.value.get_dbus_name().removeprefix("org.freedesktop.DBus.Error.")

    def post(self, path, interface, member, signature, *arguments):
        """Asks and wants no answer."""
        message = dbus.lowlevel.MethodCallMessage(self._name, path, interface, member)
        message.append(*arguments, signature=signature)
        message.set_no_reply(True)
        self._bus.send_message(message)


@pytest.fixture(scope="module", name="read")
def _read(readers, tmp_path_factory):
    """An application that is read, and who reads it."""
    with SessionBus() as session:
        session.start_accessibility(readers.address)
        with start_on(session, tmp_path_factory.mktemp("home")) as app:
            wait_until_read(readers, app)
            with Reader(readers, app) as reader:
                yield app, reader


@pytest.fixture(scope="module", name="written")
def _written(read):
    """A reader, and all that it can read of an application that has written something."""
    app, reader = read
    app.tell("write")
    return reader, reader.items()


@pytest.fixture(name="text")
def _text(written):
    """Asks about the text "two words"."""
    reader, items = written
    (path,) = [path for path, name in items if name == "two words"]
    return lambda *question: reader.ask(path, TEXT, *question)


def test_without_a_reader_nothing_is_started_and_nothing_wakes_the_application(
        session, start, tmp_path):
    started = tmp_path / "started"
    session.add_activatable(ACCESSIBILITY, f"/usr/bin/touch {started}")
    wait_until_still(start())
    assert not session.has_owner(ACCESSIBILITY) and not started.exists()


def test_a_service_that_says_nobody_reads_leaves_the_application_off_the_readers_bus(
        session, readers, start):
    session.start_accessibility(readers.address, reads=False)
    app = start()
    wait_until_still(app)
    assert not is_read(readers, app)


def test_a_service_that_comes_later_and_goes_is_followed(session, readers, start):
    app = start()
    session.start_accessibility(readers.address)
    wait_until_read(readers, app)
    session.stop_accessibility()
    wait_until(lambda: not is_read(readers, app), "the application off the readers' bus")
    session.start_accessibility(readers.address)
    wait_until_read(readers, app)


def test_an_application_whose_first_window_goes_before_its_first_frame_is_read(
        session, readers, tmp_path):
    session.start_accessibility(readers.address)
    with start_on(session, tmp_path, LIFECYCLE="resume:replace") as app:
        wait_until_read(readers, app)


def test_values_of_other_types_are_nobody_who_reads(session, readers, start):
    session.start_accessibility(readers.address)
    app = start()
    wait_until_read(readers, app)
    session.set_reading("yes")
    wait_until(lambda: not is_read(readers, app), "the application off the readers' bus")


@pytest.mark.parametrize("address", ["", "nonsense", "unix:path=/nowhere", "tcp:host=localhost"])
def test_an_address_of_no_bus_is_left_alone(session, start, address):
    session.start_accessibility(address)
    app = start()
    wait_until_still(app)
    app.tell("exit")
    assert app.end()[0] == 0


def test_an_address_that_would_run_a_program_is_left_alone(session, start, tmp_path):
    ran = tmp_path / "ran"
    program = f"unixexec:path=/usr/bin/touch,argv1={ran}"
    for address in (program, f"unix:path=/nowhere;{program}"):
        session.start_accessibility(address)
        wait_until_still(start())
        session.stop_accessibility()
    assert not ran.exists()


def test_a_silent_readers_bus_holds_the_application_up_for_less_than_five_seconds(session, start):
    with SilentBus() as silent:
        session.start_accessibility(silent.address)
        begin = time.monotonic()
        app = start()
        app.wait_for_log("the screen readers' bus does not answer")
        assert time.monotonic() - begin < 5
        wait_until_still(app)


def test_the_window_is_in_the_tree_under_its_title(read):
    _, reader = read
    (window,) = reader.ask(ROOT, ACCESSIBLE, "GetChildren")
    assert reader.ask(window[1], ACCESSIBLE, "GetRoleName") == "frame"
    assert reader.name_of(window[1]) == "lifecycle-app"
    assert reader.ask(window[1], ACCESSIBLE, "GetChildAtIndex", "i", 99)[1].endswith("/null")


def test_a_name_that_is_not_utf_8_is_told_as_far_as_it_is(session, readers, start):
    session.start_accessibility(readers.address)
    app = start()
    wait_until_read(readers, app)
    app.tell("misname")
    with Reader(readers, app) as reader:
        window = reader.ask(ROOT, ACCESSIBLE, "GetChildAtIndex", "i", 0)[1]
        assert reader.name_of(window) == "caf\N{REPLACEMENT CHARACTER}"


def test_a_password_is_told_as_it_is_drawn(written):
    names = [name for _, name in written[1]]
    assert "******" in names and "secret" not in names


def test_words_follow_each_other_up_to_the_end_of_the_text(text):
    assert text("GetStringAtOffset", "iu", 0, WORD) == ("two ", 0, 4)
    assert text("GetStringAtOffset", "iu", 3, WORD) == ("two ", 0, 4)
    assert text("GetStringAtOffset", "iu", 4, WORD) == ("words", 4, 9)


def test_the_last_line_ends_with_the_text(text):
    assert text("GetStringAtOffset", "iu", 0, LINE) == ("two words", 0, 9)


@pytest.mark.parametrize("offset", [-2**31, -2, -1, 9, 2**31 - 1])
def test_a_letter_that_there_is_not_has_no_size(text, offset):
    assert text("GetCharacterExtents", "iu", offset, 0)[2:] == (0, 0)
    assert text("GetCharacterExtents", "iu", 0, 0)[2] > 0


@pytest.mark.parametrize("question, error", [
    ((f"{ROOT}/1", ACCESSIBLE, "GetRole"), "UnknownObject"),
    (("/org/a11y/atspi/accessible/0", ACCESSIBLE, "GetRole"), "UnknownObject"),
    (("/org/a11y/atspi/accessible/99999999999999999999", ACCESSIBLE, "GetRole"), "UnknownObject"),
    (("/org/a11y/atspi/accessible/1x", ACCESSIBLE, "GetRole"), "UnknownObject"),
    (("/org/a11y/atspi", ACCESSIBLE, "GetRole"), "UnknownObject"),
    ((ROOT, ACCESSIBLE, "GetSecret"), "UnknownMethod"),
    ((ROOT, COMPONENT, "GetExtents", "u", 0), "UnknownMethod"),
    ((ROOT, "org.a11y.atspi.Text", "GetText", "ii", 0, -1), "UnknownMethod"),
    ((ROOT, ACCESSIBLE, "GetChildAtIndex", "s", "first"), "InvalidArgs"),
    ((ROOT, PROPERTIES, "Get", "ss", ACCESSIBLE, "Secret"), "InvalidArgs"),
    ((ROOT, PROPERTIES, "Set", "ssv", ACCESSIBLE, "Name", "Mine"), "PropertyReadOnly"),
    ((ROOT, ACTION, "DoAction", "i", 0), "UnknownMethod"),
])
def test_a_question_without_an_answer_gets_an_error(read, question, error):
    _, reader = read
    assert reader.error(*question) == error


@pytest.fixture(scope="module", name="controls")
def _controls(read):
    app, reader = read
    app.tell("controls")
    return app, reader


@pytest.mark.parametrize("name, event, action", [
    ("Press", "clicked", "click"), ("Check", "changed", "toggle"), ("Radio", "changed", "toggle")])
def test_a_reader_works_a_control(controls, name, event, action):
    app, reader = controls
    path = reader.control(name)
    assert reader.ask(path, ACTION, "GetName", "i", 0) == action
    assert reader.ask(path, ACTION, "GetActions") == [(action, "", "")]
    assert reader.ask(path, ACTION, "DoAction", "i", 0)
    app.wait_for(f"{event} {name}")


def test_a_check_that_is_toggled_is_checked(controls):
    app, reader = controls
    path = reader.control("Check")
    before = CHECKED in reader.states(path)
    reader.ask(path, ACTION, "DoAction", "i", 0)
    app.wait_for("changed Check")
    assert (CHECKED in reader.states(path)) is not before


@pytest.mark.parametrize("index", [-1, 1, 2**31 - 1])
def test_an_action_that_there_is_not_is_not_done(controls, index):
    _, reader = controls
    path = reader.control("Press")
    assert reader.ask(path, ACTION, "GetName", "i", index) == ""
    assert not reader.ask(path, ACTION, "DoAction", "i", index)


def test_what_is_disabled_cannot_be_worked(controls):
    _, reader = controls
    path = reader.control("Off")
    assert ENABLED not in reader.states(path) and ENABLED in reader.states(reader.control("Press"))
    assert not reader.ask(path, ACTION, "DoAction", "i", 0)
    assert not reader.ask(path, COMPONENT, "GrabFocus")


def test_a_button_that_deletes_itself_can_be_pressed_many_times(controls):
    app, reader = controls
    path = reader.control("Once")
    for _ in range(100):
        reader.post(path, ACTION, "DoAction", "i", 0)
    app.wait_for("clicked Once")
    assert reader.error(path, ACTION, "DoAction", "i", 0) == "UnknownObject"
    # Still there.
    assert reader.ask(ROOT, ACCESSIBLE, "GetRoleName") == "application"


def test_a_reader_gives_a_control_the_keyboard(session, readers, tmp_path):
    session.start_accessibility(readers.address)
    with Display() as display, start_on(session, tmp_path, **display.env,
                                        ELM_ENGINE="software_x11") as app:
        wait_until_read(readers, app)
        wait_until_active(display, app)
        app.tell("controls")
        with Reader(readers, app) as reader:
            for name in ("Press", "Check"):
                path = reader.control(name)
                assert FOCUSABLE in reader.states(path)
                assert reader.ask(path, COMPONENT, "GrabFocus")
                wait_until(lambda asked=path: FOCUSED in reader.states(asked), name)
            # It deletes itself when it has the keyboard.
            path = reader.control("Shy")
            assert reader.ask(path, COMPONENT, "GrabFocus")
            app.wait_for("focused Shy")
            assert reader.error(path, COMPONENT, "GrabFocus") == "UnknownObject"


def test_an_entry_that_cannot_be_edited_is_not_offered_for_it(controls):
    _, reader = controls
    path = reader.control("fixed")
    assert EDITABLE not in reader.states(path)
    assert EDITABLE in reader.states(reader.control("typed"))
    assert EDITABLE_TEXT not in reader.ask(path, ACCESSIBLE, "GetInterfaces")
    assert reader.error(path, EDITABLE_TEXT, "SetTextContents", "s", "other") == "UnknownMethod"


def test_a_reader_types(controls):
    _, reader = controls
    path = reader.control("typed")
    assert reader.ask(path, EDITABLE_TEXT, "SetTextContents", "s", "<b>caf\N{LATIN SMALL LETTER E}")
    assert reader.name_of(path) == "<b>cafe"
    assert reader.ask(path, EDITABLE_TEXT, "InsertText", "isi", 3, "12345", 2)
    assert reader.ask(path, EDITABLE_TEXT, "DeleteText", "ii", 0, 3)
    assert reader.name_of(path) == "12cafe"
    assert reader.ask(path, EDITABLE_TEXT, "InsertText", "isi", 2**31 - 1, "!", 1)
    assert reader.ask(path, EDITABLE_TEXT, "DeleteText", "ii", 99, -1)
    assert reader.name_of(path) == "12cafe!"
    # An inserted text is counted in bytes, and a character is never torn.
    for length in (3, 2):
        assert reader.ask(path, EDITABLE_TEXT, "InsertText", "isi", 0, "a\u00e9\u00e9", length)
    assert reader.name_of(path) == "aa\u00e912cafe!"
    assert not reader.ask(path, EDITABLE_TEXT, "SetTextContents", "s", "x" * 10_001)


def test_a_theme_says_what_its_buttons_are_and_what_is_decoration(session, readers, tmp_path):
    theme = compile_theme(tmp_path, THEME)
    session.start_accessibility(readers.address)
    with start_on(session, tmp_path, THEME=theme) as app:
        wait_until_read(readers, app)
        app.tell("theme")
        with Reader(readers, app) as reader:
            items = reader.items()
            assert [name for _, name in items] == [
                "lifecycle_app", "lifecycle-app", "Pay", "Pay", ""]
            for path, part in ((items[2][0], "pay"), (items[4][0], "bare")):
                assert reader.ask(path, ACCESSIBLE, "GetRoleName") == "push button"
                assert reader.ask(path, ACTION, "DoAction", "i", 0)
                app.wait_for(f"tapped {part}")


def test_no_reader_moves_or_sizes_the_window(read):
    _, reader = read
    window = reader.ask(ROOT, ACCESSIBLE, "GetChildren")[0][1]
    place = reader.ask(window, COMPONENT, "GetExtents", "u", 0)
    assert reader.error(window, COMPONENT, "SetExtents", "iiiiu", 1, 2, 3, 4, 0) == "UnknownMethod"
    assert reader.ask(window, COMPONENT, "GetExtents", "u", 0) == place


def test_ten_thousand_questions_leave_the_application_its_turn(session, readers, start):
    """Each is answered from the tree as it is then: the more is shown, the longer they take."""
    session.start_accessibility(readers.address)
    app = start()
    wait_until_read(readers, app)
    with Reader(readers, app) as reader:
        for _ in range(10_000):
            reader.post(ROOT, ACCESSIBLE, "GetChildAtIndex", "i", -1)
        app.tell("lower")
        assert reader.ask(ROOT, ACCESSIBLE, "GetRoleName") == "application"


def test_a_readers_bus_that_dies_leaves_the_application_running(session, start):
    with SessionBus() as readers:
        readers.start_registry()
        session.start_accessibility(readers.address)
        app = start()
        wait_until_read(readers, app)
        readers.die()
        wait_until_still(app)
        app.tell("exit")
        assert app.end()[0] == 0
