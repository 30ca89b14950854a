"""A screen reader without a voice: it knows what an application shows through AT-SPI alone.

Prints what it is told, one JSON object a line, and answers the command "tree" on standard input
with all that the applications on the readers' bus show, "do APPLICATION ROLE NAME" with whether
the action of that object was done; ROLE has underscores for blanks.
"""

import contextlib
import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402 pylint: disable=wrong-import-position

EVENTS = ("window:activate", "window:deactivate", "object:state-changed:focused",
          "object:state-changed:showing", "object:children-changed", "object:text-changed",
          "object:property-change:accessible-name")
PATIENCE_MS = 20000


def described(accessible):
    """An object and all that is in it."""
    interfaces = accessible.get_interfaces()
    found = {"role": accessible.get_role_name(), "name": accessible.get_name(),
             "locale": accessible.get_object_locale(),
             "states": [state.value_nick for state in accessible.get_state_set().get_states()],
             "parent": accessible.get_parent().get_role_name(),
             "index": accessible.get_index_in_parent()}
    if "Component" in interfaces:
        place = Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)
        found["place"] = [place.x, place.y, place.width, place.height]
    if "Image" in interfaces:
        found["description"] = Atspi.Image.get_image_description(accessible)
    if "Text" in interfaces:
        found["text"] = Atspi.Text.get_text(accessible, 0, -1)
        found["lines"] = list(lines_of(accessible))
    found["children"] = [described(accessible.get_child_at_index(index))
                         for index in range(accessible.get_child_count())]
    return found


def lines_of(accessible):
    """Each line of a text with its place."""
    offset, length = 0, Atspi.Text.get_character_count(accessible)
    while offset < length:
        line = Atspi.Text.get_string_at_offset(accessible, offset, Atspi.TextGranularity.LINE)
        place = Atspi.Text.get_range_extents(accessible, line.start_offset, line.end_offset,
                                             Atspi.CoordType.SCREEN)
        yield [line.content, place.x, place.y, place.width, place.height]
        offset = max(line.end_offset, offset + 1)


def say(**what):
    print(json.dumps(what, ensure_ascii=False), flush=True)


def on_event(event):
    what = event.any_data
    # Whoever told it may have ended meanwhile.
    with contextlib.suppress(GLib.Error):
        say(event=event.type, on=event.detail1, role=event.source.get_role_name(),
            name=event.source.get_name(),
            data=what.get_name() if isinstance(what, Atspi.Accessible) else what)


def do_action(desktop, application, role, name):
    """Does what can be done to the first object of a role and a name."""
    applications = [desktop.get_child_at_index(index)
                    for index in range(desktop.get_child_count())]
    waiting = [found for found in applications if found.get_name() == application]
    while waiting:
        accessible = waiting.pop(0)
        if accessible.get_role_name() == role.replace("_", " ") and accessible.get_name() == name:
            return Atspi.Action.do_action(accessible, 0)
        waiting += [accessible.get_child_at_index(index)
                    for index in range(accessible.get_child_count())]
    return False


def on_command(_, __):
    command = sys.stdin.readline().split()
    if not command:
        Atspi.event_quit()
        return False
    desktop = Atspi.get_desktop(0)
    # What fails has gone while it was looked at.
    if command[0] == "do":
        try:
            say(done=do_action(desktop, *command[1:3], " ".join(command[3:])))
        except (GLib.Error, AttributeError) as error:
            say(done=False, error=str(error))
        return True
    try:
        say(tree=[described(desktop.get_child_at_index(index))
                  for index in range(desktop.get_child_count())])
    except (GLib.Error, AttributeError) as error:
        say(tree=[], error=str(error))
    return True


def main():
    Atspi.init()
    # By default an answer that takes 0.8 s, as on a loaded machine, loses what was told.
    Atspi.set_timeout(PATIENCE_MS, PATIENCE_MS)
    listener = Atspi.EventListener.new(on_event)
    for event in EVENTS:
        listener.register(event)
    GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP,
                      on_command)
    say(ready=True)
    Atspi.event_main()


if __name__ == "__main__":
    main()
