"""A watch's screen for one test: an X server without a monitor, managed as the watch is."""

import contextlib
import ctypes
import os
import pathlib
import re
import select
import signal
import socket
import subprocess
import tempfile
import time

from support.bus import wait_until
from support.session_bus import SessionBus

OPENBOX_CONFIGURATION = pathlib.Path(__file__).parents[2] / "simulator" / "openbox.xml"

SETTINGS_SERVICE = pathlib.Path("/usr/share/dbus-1/services/org.xfce.Xfconf.service")

NOBODY = 65534
"""A user who owns nothing."""

START_DEADLINE = 20.0
"""Seconds until the server and the window manager must be ready; normally 0.2 are enough."""


def end(process):
    """Ends a process, and waits for it."""
    process.terminate()
    try:
        process.wait(timeout=5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


class ClientMessage(ctypes.Structure):
    """Xlib's XClientMessageEvent, as long as an event of any type."""

    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("rest", ctypes.c_long * 12)]


def is_composited(name):
    """Whether a compositing manager runs on the first screen of an X display."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    connection = ctypes.c_void_p(x11.XOpenDisplay(name.encode()))
    selection = x11.XInternAtom(connection, b"_NET_WM_CM_S0", False)
    owner = x11.XGetSelectionOwner(connection, ctypes.c_ulong(selection))
    x11.XCloseDisplay(connection)
    return owner != 0


class Display:
    """Context manager: a private X server (Xvfb) with a window manager on it.

    The server takes a free display number, listens on no network and has one screen of SIZE
    ("WIDTHxHEIGHTxDEPTH"). MANAGER is "openbox", which does not composite, "xfwm4", which does, or
    "weston", a Wayland compositor whose one output fills the screen, or "sway", one that closes
    windows when told so and draws into memory. When the context is entered,
    the window manager manages; with None there is none until start_manager(). All processes end
    with the context, and also when the test's own process dies. DOTS: how many the screen has an
    inch.

    name: the X display's name, such as ":7".
    env: what a client needs in its environment; merge it: {**os.environ, **display.env}.
    """

    def __init__(self, size="360x360x24", manager="openbox", dots=None):
        self.size = size
        self._dots = dots
        self.manager = manager
        self.name = None
        self.env = {}
        self._processes = []
        self._log = None
        self._home = None
        self._bus = None

    def __enter__(self):
        self._log = tempfile.TemporaryFile()
        self._home = tempfile.TemporaryDirectory()
        try:
            self._start_server()
            if self.manager:
                self.start_manager(self.manager)
        except BaseException:
            self._end()
            raise
        return self

    def __exit__(self, *_):
        self._end()

    def xdotool(self, *arguments):
        """Does as a user of the X display would; returns the words that xdotool prints."""
        return subprocess.run(["xdotool", *map(str, arguments)], env={"DISPLAY": self.name},
                              check=True, capture_output=True, text=True,
                              timeout=START_DEADLINE).stdout.split()

    @contextlib.contextmanager
    def silent_server(self):
        """Inside of the context the server accepts connections and answers nobody."""
        self._processes[0].send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            self._processes[0].send_signal(signal.SIGCONT)

    @contextlib.contextmanager
    def silent_manager(self):
        """Inside of the context the window manager does nothing."""
        self._processes[-1].send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            self._processes[-1].send_signal(signal.SIGCONT)

    def kill_server(self):
        """The X server dies, and its clients see the connection end."""
        self._processes[0].kill()
        self._processes[0].wait()

    def _start_server(self):
        number_out, number_in = os.pipe()
        dots = ["-dpi", str(self._dots)] if self._dots else []
        try:
            self._spawn(["Xvfb", "-displayfd", str(number_in), "-screen", "0", self.size, *dots,
                         "-nolisten", "tcp", "-noreset", "-s", "0"], pass_fds=[number_in])
        finally:
            os.close(number_in)
        with os.fdopen(number_out, "rb", buffering=0) as pipe:
            number = self._wait_line(pipe, lambda line: line.strip().isdigit(), "Xvfb")
        self.name = ":" + number.strip().decode()
        self.env = {"DISPLAY": self.name}

    def end_manager(self):
        """The manager dies; the X display goes on without one."""
        end(self._processes.pop())

    def start_manager(self, name):
        """A manager comes to a display that has none."""
        {"openbox": self._start_openbox, "xfwm4": self._start_xfwm4,
         "weston": self._start_weston, "sway": self._start_sway}[name]()

    def _start_openbox(self):
        # openbox runs its start-up command once it manages, with its own standard output.
        out, into = os.pipe()
        try:
            self._spawn(["openbox", "--sm-disable", "--config-file", str(OPENBOX_CONFIGURATION),
                         "--startup", "echo managing"], stdout=into)
        finally:
            os.close(into)
        with os.fdopen(out, "rb", buffering=0) as pipe:
            self._wait_line(pipe, lambda line: line == b"managing", "openbox")

    def _start_xfwm4(self):
        if not self._bus:
            self._start_settings()
        env = {"PATH": os.environ["PATH"], "HOME": self._home.name, "NO_AT_BRIDGE": "1",
               "XDG_RUNTIME_DIR": self._home.name, **self._bus.env, **self.env}
        self._spawn(["xfwm4", "--compositor=on", "--vblank=off"], env=env)
        # It tells the active window when all else is set up.
        deadline = time.monotonic() + START_DEADLINE
        while "window id" not in self._root_property("_NET_ACTIVE_WINDOW"):
            if time.monotonic() > deadline:
                self._fail("xfwm4")
            time.sleep(0.02)

    def close_window(self, window):
        """Has the window manager close a window, as a user does who clicks the cross on it."""
        client_message = 33
        to_window_manager = 0x180000
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XDefaultRootWindow.restype = x11.XInternAtom.restype = ctypes.c_ulong
        connection = ctypes.c_void_p(x11.XOpenDisplay(self.name.encode()))
        message = ClientMessage(type=client_message, window=int(window), format=32)
        message.message_type = x11.XInternAtom(connection, b"_NET_CLOSE_WINDOW", False)
        x11.XSendEvent(connection, ctypes.c_ulong(x11.XDefaultRootWindow(connection)), False,
                       ctypes.c_long(to_window_manager), ctypes.byref(message))
        x11.XCloseDisplay(connection)

    def set_compositing(self, is_on):
        """Lets xfwm4 composite or not; returns when it does as told."""
        subprocess.run(["xfconf-query", "--channel", "xfwm4", "--property",
                        "/general/use_compositing", "--create", "--type", "bool", "--set",
                        str(is_on).lower()], env={**os.environ, **self._bus.env}, check=True,
                       timeout=START_DEADLINE)
        deadline = time.monotonic() + START_DEADLINE
        while is_composited(self.name) != is_on:
            if time.monotonic() > deadline:
                self._fail("xfwm4's compositor")
            time.sleep(0.02)

    def _start_settings(self):
        # xfwm4 reads its settings over a session bus. A service that the bus started would outlive
        # the test.
        self._bus = SessionBus()
        self._bus.__enter__()
        program = re.search("^Exec=(.*)$", SETTINGS_SERVICE.read_text(), re.MULTILINE)[1]
        self._spawn([program], env={"PATH": os.environ["PATH"], "HOME": self._home.name,
                                    **self._bus.env})
        wait_until(lambda: self._bus.has_owner("org.xfce.Xfconf"), "the settings of xfwm4")

    def _root_property(self, name):
        return subprocess.run(["xprop", "-root", name], env={**os.environ, **self.env}, text=True,
                              stdout=subprocess.PIPE, timeout=START_DEADLINE).stdout

    def _start_weston(self):
        width, height, _ = self.size.split("x")
        env = {"XDG_RUNTIME_DIR": self._home.name, "WAYLAND_DISPLAY": "wayland-test"}
        # It reports over the socket in NOTIFY_SOCKET that it is ready.
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as notices:
            path = os.path.join(self._home.name, "notify")
            notices.bind(path)
            notices.settimeout(START_DEADLINE)
            self._spawn(["weston", "--backend=x11-backend.so", "--use-pixman", "--no-config",
                         "--idle-time=0", f"--width={width}", f"--height={height}",
                         "--socket=wayland-test", "--modules=systemd-notify.so"],
                        env={"PATH": os.environ["PATH"], "HOME": self._home.name,
                             "NOTIFY_SOCKET": path, **env, **self.env})
            while b"READY=1" not in notices.recv(4096):
                pass
        self.env = env

    def _start_sway(self):
        # It refuses to be root's.
        plain = []
        if os.geteuid() == 0:
            plain = ["setpriv", "--pdeathsig", "TERM", f"--reuid={NOBODY}", f"--regid={NOBODY}",
                     "--clear-groups"]
            os.chown(self._home.name, NOBODY, NOBODY)
        configuration = pathlib.Path(self._home.name, "configuration")
        configuration.write_text("xwayland disable\nexec echo $WAYLAND_DISPLAY\n")
        env = {"PATH": os.environ["PATH"], "HOME": self._home.name,
               "XDG_RUNTIME_DIR": self._home.name, "SWAYSOCK": f"{self._home.name}/sway",
               "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman",
               "WLR_LIBINPUT_NO_DEVICES": "1"}
        out, into = os.pipe()
        try:
            self._spawn([*plain, "sway", "--config", str(configuration)], env=env, stdout=into)
        finally:
            os.close(into)
        with os.fdopen(out, "rb", buffering=0) as pipe:
            name = self._wait_line(pipe, lambda line: line.startswith(b"wayland-"), "sway")
        self.env = {"WAYLAND_DISPLAY": f"{self._home.name}/{name.decode()}"}

    def close_active_window(self):
        """Has sway close the active window, as a user does with its key for that."""
        subprocess.run(["swaymsg", "--socket", f"{self._home.name}/sway", "kill"], check=True,
                       capture_output=True, timeout=START_DEADLINE)

    def _spawn(self, command, **options):
        # The kernel ends the child when the test dies without a chance to clean up.
        process = subprocess.Popen(
            ["setpriv", "--pdeathsig", "TERM", *command], start_new_session=True,
            stdin=subprocess.DEVNULL, stderr=self._log,
            **{"env": {**os.environ, **self.env}, "stdout": self._log, **options})
        self._processes.append(process)
        return process

    def _wait_line(self, pipe, accept, who):
        deadline = time.monotonic() + START_DEADLINE
        text = b""
        while select.select([pipe], [], [], max(0.0, deadline - time.monotonic()))[0]:
            piece = pipe.read(4096)
            if not piece:
                break
            text += piece
            for line in text.split(b"\n")[:-1]:
                if accept(line):
                    return line
        self._fail(who)

    def _fail(self, who):
        self._log.seek(0)
        output = self._log.read().decode(errors="replace")
        raise RuntimeError(f"{who} did not become ready: {output}")

    def _end(self):
        for process in reversed(self._processes):
            end(process)
        self._processes.clear()
        if self._bus:
            self._bus.__exit__()
            self._bus = None
        if self._log:
            self._log.close()
            self._home.cleanup()
            self._log = None
