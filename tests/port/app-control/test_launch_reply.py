"""Applications that launch each other and reply."""

import time

import dbus.bus
import pytest

from port.launch_apps import LAUNCH, id_of, send_launch

INVALID_PARAMETER = -2
NO_SENDER = -9
ALREADY_REPLIED = -10


@pytest.fixture(name="alarm")
def _alarm(apps):
    return apps.run("alarm")


def launch(sender, name, what):
    sender.tell(f"launch {id_of(name)} {what}")
    assert "sent 0" in sender.lines


def test_a_reply_in_the_callback_reaches_the_sender_with_its_extra_data(clock, alarm):
    alarm.tell("at-once 0 b=2 a=뒤로 empty=")
    launch(clock, "alarm", "show x=1")
    alarm.wait_for("app_control show x=1")
    clock.wait_for("result 0 of show x=1: default a=뒤로 b=2 empty=")


def test_a_failure_is_replied_with_extra_data(clock, alarm):
    alarm.tell("at-once -1 why=busy")
    launch(clock, "alarm", "show")
    clock.wait_for("result -1 of show: default why=busy")


def test_an_exception_in_the_callback_of_a_reply_leaves_the_run(clock, alarm):
    alarm.tell("at-once 0")
    launch(clock, "alarm", "reply-throws")
    clock.wait_for("result 0 of reply-throws: default")
    assert clock.end()[0] == 99


def test_a_later_reply_reaches_the_sender(clock, alarm):
    launch(clock, "alarm", "ask")
    alarm.wait_for("app_control ask")
    alarm.tell("reply 0 answer=yes")
    assert "replied 0" in alarm.lines
    clock.wait_for("result 0 of ask: default answer=yes")


def test_a_second_reply_is_rejected(clock, alarm):
    alarm.tell("at-once 0")
    launch(clock, "alarm", "show")
    alarm.wait_for("replied 0")
    alarm.wait_for(f"replied {ALREADY_REPLIED}")
    clock.wait_for("result 0 of show: default")


def test_two_applications_launch_each_other(clock, alarm):
    clock.tell("at-once 0 from=clock")
    alarm.tell("at-once -1 from=alarm")
    launch(clock, "alarm", "there")
    launch(alarm, "clock", "back")
    clock.wait_for("result -1 of there: default from=alarm")
    alarm.wait_for("result 0 of back: default from=clock")


def test_an_application_launches_itself(clock):
    clock.tell("at-once 0 self=yes")
    launch(clock, "clock", "again")
    clock.wait_for("result 0 of again: default self=yes")


def test_a_request_without_callback_has_no_sender_who_waits(clock, alarm):
    alarm.tell("at-once 0")
    clock.tell(f"notify {id_of('alarm')} show x=1")
    alarm.wait_for("app_control show x=1")
    alarm.wait_for(f"replied {NO_SENDER}")


def test_a_reply_that_is_too_big_or_has_no_known_result_can_be_mended(clock, alarm):
    launch(clock, "alarm", "ask")
    alarm.wait_for("app_control ask")
    for reply in ["0 big=HUGE", "7"]:
        alarm.tell("reply " + reply)
    assert alarm.lines.count(f"replied {INVALID_PARAMETER}") == 2
    alarm.tell("reply 0 small=yes")
    clock.wait_for("result 0 of ask: default small=yes")


def test_a_reply_that_the_bus_takes_late_arrives_whole(apps, clock, alarm):
    launch(clock, "alarm", "ask")
    alarm.wait_for("app_control ask")
    with apps.bus.held():
        alarm.tell("reply 0 much=LARGE")
    clock.wait_for("result 0 of ask: default much=900000 bytes")


def test_a_receiver_that_dies_is_a_failure(clock, alarm):
    launch(clock, "alarm", "ask")
    alarm.wait_for("app_control ask")
    alarm.process.kill()
    clock.wait_for("result -1 of ask without reply")


def test_a_receiver_that_ends_is_a_failure(clock, alarm):
    launch(clock, "alarm", "exit")
    clock.wait_for("result -1 of exit without reply")
    assert alarm.end()[0] == 0


def test_a_sender_that_dies_is_no_harm(clock, alarm):
    launch(clock, "alarm", "ask")
    alarm.wait_for("app_control ask")
    clock.process.kill()
    clock.process.wait()
    alarm.tell("reply 0")
    alarm.tell("exit")
    assert alarm.end()[0] == 0


def test_a_bus_that_dies_fails_the_sender_and_leaves_the_receiver_nobody(apps, clock, alarm):
    launch(clock, "alarm", "ask")
    alarm.wait_for("app_control ask")
    launch(alarm, "clock", "wait")
    clock.wait_for("app_control wait")
    apps.bus.die()
    clock.wait_for("result -1 of ask without reply")
    # Now the receiver, too, has heard that there is no bus.
    alarm.wait_for("result -1 of wait without reply")
    alarm.tell("reply 0")
    assert f"replied {NO_SENDER}" in alarm.lines
    for app in [clock, alarm]:
        app.tell("exit")
        assert app.end()[0] == 0


def test_a_receiver_that_never_replies_is_a_failure_after_25_seconds(apps, clock, alarm):
    """And has room again by then, though nothing has happened to it meanwhile."""
    client = dbus.bus.BusConnection(apps.bus.address)
    for _ in range(255):
        send_launch(client, "alarm", "fill")
    for _ in range(255):
        alarm.wait_for("app_control fill")
    before = time.monotonic()
    launch(clock, "alarm", "ask")
    alarm.wait_for("app_control ask")
    clock.wait_for("result -1 of ask without reply", deadline=40)
    assert time.monotonic() - before > 24
    send_launch(client, "alarm", "late")
    alarm.wait_for("app_control late")
    client.close()


def test_an_application_that_does_not_run_is_started_and_replies_nothing_when_it_ends(apps, clock):
    apps.let_bus_start("alarm")
    launch(clock, "alarm", "exit")
    clock.wait_for("result -1 of exit without reply")


def test_an_application_that_is_missing_is_not_found(clock):
    clock.tell(f"launch {id_of('nobody')} show")
    assert "sent -7" in clock.lines


def test_a_foreign_client_gets_the_reply(apps, clock):
    clock.tell("at-once -1 why=busy")
    result = apps.call("clock", LAUNCH + ".Launch", "show", "{'a': '1'}")
    assert result.stdout == "(-1, {'why': 'busy'})\n"
    clock.wait_for("app_control show a=1")


@pytest.mark.parametrize("arguments", [["show"], ["''", "{}"], ["show", "{'a': <'1'>}"],
                                       ["show", "{}", "{}"]])
def test_wrong_arguments_are_an_error_and_no_request(apps, clock, arguments):
    result = apps.call("clock", LAUNCH + ".Launch", *arguments)
    assert result.returncode != 0
    clock.tell("exit")
    assert clock.end()[1][:2] == ["create", "app_control default"]
    assert not [line for line in clock.lines if line.startswith("app_control show")]
