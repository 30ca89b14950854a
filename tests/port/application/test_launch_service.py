"""Launch requests that come over the session bus from foreign clients."""

import pathlib
import re
from array import array

import dbus
import dbus.bus
import dbus.lowlevel
import pytest
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import Gio, GLib

from port.launch_apps import LAUNCH, id_of, path_of, requests, send_launch
from support.bus import wait_until

APPLICATION = "org.freedesktop.Application"
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


def peak_memory(app):
    """What the application has ever had in memory, in bytes."""
    status = pathlib.Path(f"/proc/{app.process.pid}/status").read_text()
    return int(re.search(r"VmHWM:\s+(\d+) kB", status)[1]) * 1024


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
        send_launch(client._bus, "clock", "flood")
    for _ in range(256):
        clock.wait_for("app_control flood")
    assert failure(lambda: client.Launch("flood", {}, dbus_interface=LAUNCH,
                                         signature="sa{ss}")) == ERROR + "LimitsExceeded"
    client.Activate(NOTHING, dbus_interface=APPLICATION)
    clock.wait_for("app_control default")
    assert requests(clock).count("app_control flood") == 256


def test_requests_that_wait_take_no_more_than_16_megabytes(client, clock):
    large = {"k": "v" * (1024 * 1024 - 10)}
    for _ in range(15):
        send_launch(client._bus, "clock", "large", large)
        clock.wait_for(f"app_control large k={1024 * 1024 - 10} bytes")
    for _ in range(60):
        assert failure(lambda: client.Launch("large", large, dbus_interface=LAUNCH,
                                             signature="sa{ss}")) == ERROR + "LimitsExceeded"
    send_launch(client._bus, "clock", "small")
    clock.wait_for("app_control small")


def test_a_million_empty_keys_are_refused_and_take_no_memory(apps, clock):
    """No dictionary holds them, but a message does."""
    count = 1_000_000
    keys_and_values = b"\0\0\1" * count + array("I", range(3, 3 * count + 1, 3)).tobytes()
    extra_data = GLib.Variant.new_from_bytes(GLib.VariantType("a{ss}"),
                                             GLib.Bytes.new(keys_and_values), True)
    arguments = GLib.Variant.new_tuple(GLib.Variant("s", "show"), extra_data)
    peer = Gio.DBusConnection.new_for_address_sync(
        apps.bus.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
        Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
    before = peak_memory(clock)
    with pytest.raises(GLib.Error, match="LimitsExceeded"):
        peer.call_sync(id_of("clock"), path_of("clock"), LAUNCH, "Launch", arguments, None,
                       Gio.DBusCallFlags.NONE, 30_000, None)
    # The message itself, of 16 bytes an entry, is read by halves into a buffer that grows.
    assert peak_memory(clock) - before < 5 * 16 * count
    assert requests(clock) == ["app_control default"]


def test_4096_entries_arrive_and_one_more_is_refused(client, clock):
    def show(count):
        client.Launch("show", {str(i): "" for i in range(count)}, dbus_interface=LAUNCH,
                      signature="sa{ss}", timeout=20)
    clock.tell("at-once 0")
    show(4096)
    clock.wait_for("app_control show " + " ".join(f"{i}=" for i in sorted(map(str, range(4096)))))
    assert failure(lambda: show(4097)) == ERROR + "LimitsExceeded"


def test_calls_that_want_no_answer_get_none(apps, clock):
    """The bus would not pass one on, so that a monitor looks for it."""
    clock.tell("at-once 0")
    bus = dbus.bus.BusConnection(apps.bus.address)
    sender = bus.get_name_owner(id_of("clock"))
    monitor = dbus.bus.BusConnection(apps.bus.address, mainloop=DBusGMainLoop())
    answers = []
    monitor.add_message_filter(
        lambda _, message: answers.append(message) if message.get_sender() == sender else None)
    monitor.call_blocking(dbus.BUS_DAEMON_NAME, dbus.BUS_DAEMON_PATH,
                          "org.freedesktop.DBus.Monitoring", "BecomeMonitor", "asu", ([], 0))
    calls = [(APPLICATION, "Activate", "a{sv}", [{}]), (APPLICATION, "Activate", "s", ["wrong"]),
             (APPLICATION, "Quit", "", []), (LAUNCH, "Launch", "sa{ss}", ["show", {}])]
    for interface, method, signature, arguments in calls:
        message = dbus.lowlevel.MethodCallMessage(id_of("clock"), path_of("clock"), interface,
                                                  method)
        message.append(*arguments, signature=signature)
        message.set_no_reply(True)
        bus.send_message(message)
    last = send_launch(bus, "clock", "last")
    while not any(answer.get_reply_serial() == last for answer in answers):
        GLib.MainContext.default().iteration(True)
    bus.close()
    monitor.close()
    assert len(answers) == 1
    clock.wait_for("app_control last")
    assert requests(clock) == [f"app_control {name}" for name in ["default"] * 2 + ["show", "last"]]
    assert "replied -9" in clock.lines


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
