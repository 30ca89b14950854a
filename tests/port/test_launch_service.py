"""Launch requests that come over the session bus from foreign clients."""

import dbus
import dbus.bus
import dbus.lowlevel
import pytest

from port.launch_apps import id_of, path_of, requests
from support.bus import wait_until

APPLICATION = "org.freedesktop.Application"
LAUNCH = "org.watchport.Launch1"
NOTHING = dbus.Dictionary(signature="sv")
ERROR = "org.freedesktop.DBus.Error."


@pytest.fixture(name="client")
def _client(apps, clock):
    """The running application's object, for a client that sends what it likes."""
    bus = dbus.bus.BusConnection(apps.bus.address)
    yield bus.get_object(id_of("clock"), path_of("clock"), introspect=False)
    bus.close()


def failure(call):
    with pytest.raises(dbus.DBusException) as caught:
        call()
    # Shown when the test fails: the text tells a time that ran out from a process that ended.
    print(caught.value)
    return caught.value.get_dbus_name()


# The desktop's interface

def test_gapplication_launches_the_running_application(apps, clock):
    assert apps.client("gapplication", "launch", id_of("clock")).returncode == 0
    clock.wait_for("app_control default")


def test_gapplication_opens_files_in_it(apps, clock):
    assert apps.client("gapplication", "launch", id_of("clock"), "/a%20b", "/c").returncode == 0
    clock.wait_for("app_control open uris=file:///a%2520b")
    clock.wait_for("file:///c")


def test_gapplication_calls_its_actions(apps, clock):
    assert apps.client("gapplication", "action", id_of("clock"), "show").returncode == 0
    clock.wait_for("app_control show")


def test_an_action_parameter_is_the_extra_data(apps, clock):
    result = apps.client("gapplication", "action", id_of("clock"), "show",
                         "{'b': <'2'>, 'a': <'뒤로'>}")
    assert result.returncode == 0
    clock.wait_for("app_control show a=뒤로 b=2")


def test_gdbus_gets_an_empty_answer_after_the_callback(apps, clock):
    result = apps.call("clock", APPLICATION + ".Activate", "{'unknown': <uint32 7>}")
    assert (result.returncode, result.stdout) == (0, "()\n")
    clock.wait_for("app_control default")


def test_the_object_describes_both_interfaces(apps, clock):
    shown = apps.client("gdbus", "introspect", "--session", "--dest", id_of("clock"),
                        "--object-path", path_of("clock")).stdout
    for part in [APPLICATION, "Activate(", "Open(", "ActivateAction(", LAUNCH, "Launch("]:
        assert part in shown


def test_values_that_are_no_texts_and_empty_keys_are_left_out(client, clock):
    client.ActivateAction("show", [dbus.Dictionary({
        "a": "1", "": "no key", "number": 7, "list": dbus.Array(["x"]), "empty": ""},
        signature="sv")], {}, dbus_interface=APPLICATION, signature="sava{sv}")
    clock.wait_for("app_control show a=1 empty=")


def test_a_thousand_keys_arrive(client, clock):
    client.ActivateAction("show", [dbus.Dictionary({f"k{i:03}": "v" for i in range(1000)},
                                                   signature="sv")], {},
                          dbus_interface=APPLICATION, signature="sava{sv}")
    clock.wait_for("app_control show " + " ".join(f"k{i:03}=v" for i in range(1000)))


def test_a_value_of_nearly_a_megabyte_arrives_and_a_bigger_one_is_refused(client, clock):
    def show(size):
        client.ActivateAction("show", [dbus.Dictionary({"k": "v" * size}, signature="sv")], {},
                              dbus_interface=APPLICATION, signature="sava{sv}")
    show(1024 * 1024 - 5)
    clock.wait_for(f"app_control show k={1024 * 1024 - 5} bytes")
    assert failure(lambda: show(1024 * 1024 - 4)) == ERROR + "LimitsExceeded"
    assert failure(lambda: show(8 * 1024 * 1024)) == ERROR + "LimitsExceeded"
    client.Activate(NOTHING, dbus_interface=APPLICATION)
    clock.wait_for("app_control default")


@pytest.mark.parametrize("method, signature, arguments", [
    ("Activate", "", []),
    ("Activate", "s", ["x"]),
    ("Activate", "a{ss}", [{"a": "b"}]),
    ("Activate", "a{sv}s", [{}, "more"]),
    ("Open", "a{sv}", [{}]),
    ("Open", "sa{sv}", ["file:///a", {}]),
    ("ActivateAction", "s", ["show"]),
    ("ActivateAction", "ava{sv}", [[], {}]),
    ("ActivateAction", "sa{sv}a{sv}", ["show", {}, {}]),
    ("ActivateAction", "sava{sv}", ["", [], {}]),
    ("ActivateAction", "sava{sv}", ["show", ["text"], {}]),
    ("ActivateAction", "sava{sv}", ["show", [{"a": "b"}], {}]),
    ("ActivateAction", "sava{sv}", ["show", [dbus.Dictionary(signature="sv")] * 2, {}]),
])
def test_wrong_arguments_are_an_error_and_no_request(client, clock, method, signature, arguments):
    error = failure(lambda: client.get_dbus_method(method, APPLICATION)(
        *arguments, signature=signature))
    assert error in [ERROR + "InvalidArgs", ERROR + "InvalidSignature"]
    client.Activate(NOTHING, dbus_interface=APPLICATION)
    clock.wait_for("app_control default")
    assert requests(clock) == ["app_control default"] * 2


@pytest.mark.parametrize("interface, method", [
    (APPLICATION, "Quit"), (LAUNCH, "Activate"), ("org.example.Other", "Activate")])
def test_an_unknown_method_is_an_error(client, clock, interface, method):
    error = failure(lambda: client.get_dbus_method(method, interface)())
    assert error.startswith(ERROR + "Unknown")
    client.Activate(NOTHING, dbus_interface=APPLICATION)
    clock.wait_for("app_control default")


def test_a_flood_arrives_whole_and_in_order(client, clock):
    for i in range(2000):
        client.ActivateAction(f"flood-{i}", [], {}, dbus_interface=APPLICATION,
                              signature="sava{sv}", ignore_reply=True)
    client._bus.flush()
    clock.wait_for("app_control flood-1999")
    assert requests(clock) == ["app_control default"] + [
        f"app_control flood-{i}" for i in range(2000)]


def test_more_than_256_requests_that_wait_for_a_reply_are_refused(client, clock):
    for _ in range(256):
        message = dbus.lowlevel.MethodCallMessage(id_of("clock"), path_of("clock"), LAUNCH,
                                                  "Launch")
        message.append("flood", {}, signature="sa{ss}")
        client._bus.send_message(message)
    for _ in range(256):
        clock.wait_for("app_control flood")
    assert failure(lambda: client.Launch("flood", {}, dbus_interface=LAUNCH,
                                         signature="sa{ss}")) == ERROR + "LimitsExceeded"
    client.Activate(NOTHING, dbus_interface=APPLICATION)
    clock.wait_for("app_control default")
    assert requests(clock).count("app_control flood") == 256


# The order of callbacks

def test_requests_that_come_before_the_first_callback_wait_for_it(apps):
    """They are sent as soon as the name is owned, long before the toolkit is up."""
    app = apps.start("clock", "--operation", "first")
    bus = dbus.bus.BusConnection(apps.bus.address)
    wait_until(lambda: apps.bus.has_owner(id_of("clock")), "the application")
    clock = bus.get_object(id_of("clock"), path_of("clock"), introspect=False)
    clock.ActivateAction("second", [], {}, dbus_interface=APPLICATION, signature="sava{sv}")
    bus.close()
    app.wait_for("app_control second")
    assert app.lines == ["create", "app_control first", "app_control second"]


def test_exit_in_a_later_request_ends_the_run(apps, clock):
    apps.call("clock", APPLICATION + ".ActivateAction", "exit", "[]", "{}")
    assert clock.end() == (0, ["create", "app_control default", "app_control exit", "terminate"])


def test_an_exception_in_a_later_request_leaves_the_run(apps, clock):
    apps.call("clock", APPLICATION + ".ActivateAction", "throw", "[]", "{}")
    assert clock.end() == (99, ["create", "app_control default", "app_control throw"])
