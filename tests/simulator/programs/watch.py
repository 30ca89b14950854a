"""The watch's own two programs for one test: nested screen, host display, bus and a keeper."""

import contextlib
import os
import pathlib
import subprocess
import tempfile

import dbus

from support.bus import MOCK, PROPERTIES, wait_until
from support.display import Display
from support.session_bus import SessionBus

BUILD = pathlib.Path(os.environ["BUILD_DIR"])
PROGRAMS = {name: BUILD / "simulator" / name / f"qivo-watch-{name}" for name in ("body", "home")}

KEEPER = "com.velmora.QivoWatch"
CONTROL = "com.velmora.QivoWatch1"
BODY = "com.velmora.QivoWatch.Body"
HOME = "com.velmora.QivoWatch.Home"
PATH = "/com/velmora/QivoWatch"

TEN_PAST_TEN = 1_700_000_000_000 // 86_400_000 * 86_400_000 + (10 * 60 + 10) * 60_000
"""In the zone of the programs, which is UTC."""

AT_REST = {"ScreenOn": True, "BezelPosition": dbus.Int32(0), "BackPressed": False,
           "PowerPressed": False, "Plugged": False, "Charging": False,
           "Percentage": 82.0, "TextSize": 1.0, "MotionReduced": False, "ContrastHigh": False}


class Watch:
    """Context manager: a watch without an application; its programs are started by the test."""

    def __init__(self, size=360, time=TEN_PAST_TEN, frozen=True):
        self.size = size
        self._time = {"Time": time, "TimeFrozen": frozen}
        self._stack = contextlib.ExitStack()
        self._programs = contextlib.ExitStack()
        self._hosts = {}
        self.screen = Display(f"{size}x{size}x24")
        self.host = None
        self.bus = SessionBus()

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            self._home = stack.enter_context(tempfile.TemporaryDirectory())
            stack.enter_context(self.screen)
            stack.enter_context(self.bus)
            self.bus._start(KEEPER, str(pathlib.Path(__file__).with_name("keeper.py")),
                            **self._time)
            self._stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._programs.close()
        self._stack.close()

    def reset(self):
        """Ends the programs and puts the keeper back to where it began."""
        self._programs.close()
        self._object(KEEPER).ClearCalls(dbus_interface=MOCK)
        self.set(**AT_REST)

    def start_body(self, zoom=1, *arguments, screen=None, manager="openbox"):
        """With its window on a host display, which it just fills unless SCREEN is another size."""
        side = round(680 * self.size / 360 * zoom)
        width, height = screen or (side, side)
        key = width, height, manager
        if key not in self._hosts:
            self._hosts[key] = self._stack.enter_context(
                Display(f"{width}x{height}x24", manager))
        self.host = self._hosts[key]
        return self._start("body", BODY, self.host.env, "--screen", self.screen.name,
                           "--size", str(self.size), "--side", str(side), *arguments)

    def start_headless_body(self):
        return self._start("body", BODY, {"ELM_ENGINE": "buffer"}, "--screen", self.screen.name,
                           "--size", str(self.size))

    def start_home(self):
        return self._start("home", HOME, self.screen.env, "--size", str(self.size))

    def environment(self, **more):
        kept = {key: value for key, value in os.environ.items()
                if key in ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")}
        return kept | {"HOME": self._home, "XDG_RUNTIME_DIR": self._home, "LANG": "C.UTF-8",
                       "TZ": "UTC"} | self.bus.env | more

    def _start(self, program, name, environment, *arguments):
        wait_until(lambda: not self.bus.has_owner(name), f"{name} free")
        process = subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", PROGRAMS[program], *arguments],
            env=self.environment(**environment), stderr=subprocess.PIPE, text=True)
        self._programs.callback(_end, process)
        wait_until(lambda: process.poll() is not None or self.bus.has_owner(name), name)
        assert process.poll() is None, process.stderr.read()
        return process

    # The keeper

    def set(self, **properties):
        """Sets properties of the keeper, which tells them."""
        for name, value in properties.items():
            self.bus.set_property(KEEPER, PATH, CONTROL, name, value)

    def get(self, name):
        return self._object(KEEPER).Get(CONTROL, name, dbus_interface=PROPERTIES)

    def calls(self, method):
        """The arguments of all calls of a control method so far."""
        calls = self._object(KEEPER).GetMethodCalls(method, dbus_interface=MOCK)
        return [tuple(map(_plain, arguments)) for _, arguments in calls]

    def all_calls(self):
        """Name and arguments of all calls so far."""
        return [(str(name), tuple(map(_plain, arguments))) for _, name, arguments in
                self._object(KEEPER).GetCalls(dbus_interface=MOCK)]

    def keys(self):
        """The pushes and releases of keys so far, in their order."""
        return [(name, *arguments) for name, arguments in self.all_calls()
                if name in ("PushKey", "ReleaseKey")]

    def wait_keys(self, *expected):
        wait_until(lambda: len(self.keys()) >= len(expected), f"the keys {expected}")
        assert self.keys() == list(expected)

    def wait_calls(self, method, expected):
        wait_until(lambda: len(self.calls(method)) >= len(expected), f"{method} {expected}")
        assert self.calls(method) == expected

    def fail(self, method, text):
        """From now on the method answers with an error."""
        self._object(KEEPER).AddMethod(
            CONTROL, method, "sa{sv}", "", f"raise dbus.exceptions.DBusException({text!r}, "
            f"name='com.velmora.QivoWatch.Error.Failed')", dbus_interface=MOCK)

    def emit_changed(self, values):
        """Has the keeper tell of properties, however wrong."""
        self.bus.emit(KEEPER, PATH, PROPERTIES, "PropertiesChanged", "sa{sv}as",
                      [CONTROL, dbus.Dictionary(values, signature="sv"),
                       dbus.Array([], signature="s")])

    # The body

    def frames(self):
        return int(self._object(BODY).Get("com.velmora.QivoWatch.Body1", "Frames",
                                          dbus_interface=PROPERTIES))

    def picture(self, file, body=True):
        self._object(BODY).Picture(str(file), body, dbus_interface="com.velmora.QivoWatch.Body1")

    def _object(self, name):
        return self.bus._client.get_object(name, PATH, introspect=False)


def times_woken(process):
    """How often the kernel has had to run a process's threads so far."""
    count = 0
    for thread in pathlib.Path(f"/proc/{process.pid}/task").iterdir():
        # A thread may end meanwhile.
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):
            count += sum(int(line.split()[1])
                         for line in (thread / "status").read_text().splitlines()
                         if "ctxt_switches" in line)
    return count


def _plain(value):
    return {dbus.String: str, dbus.UInt32: int, dbus.Double: float, dbus.Boolean: bool}.get(
        type(value), lambda other: other)(value)


def _end(process):
    process.kill()
    process.wait()
    process.stderr.close()
