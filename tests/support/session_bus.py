"""A private session bus with a mocked settings portal.

    with SessionBus() as bus:
        bus.start_portal(clock_format="24h")
        subprocess.Popen([...], env={**os.environ, **bus.env})
        bus.set_clock_format("12h")
"""

from support.bus import MOCK, SERVICES, Bus

PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
ACCESSIBILITY, ACCESSIBILITY_PATH = "org.a11y.Bus", "/org/a11y/bus"
ACCESSIBILITY_STATUS = "org.a11y.Status"
REGISTRY = "org.a11y.atspi.Registry"
CLOCK_FORMAT = ("org.gnome.desktop.interface", "clock-format")


class SessionBus(Bus):
    """A private dbus-daemon that clients take for the session bus."""

    variable = "DBUS_SESSION_BUS_ADDRESS"

    def start_portal(self, clock_format=None, has_method=True):
        """None: the desktop has no format. Without its method it knows nothing at all."""
        self._start(PORTAL, str(SERVICES / "portal_settings.py"), has_method=has_method,
                    settings=[[*CLOCK_FORMAT, clock_format]] if clock_format else [])

    def stop_portal(self):
        self._stop(PORTAL)

    def set_clock_format(self, value):
        self.set_setting(CLOCK_FORMAT, value)

    def set_setting(self, setting, value):
        """Any value, of any type; the portal emits SettingChanged."""
        self._portal().Set(*setting, value, dbus_interface="org.example.Test")

    def was_asked(self):
        """Whether the portal has answered a question."""
        return self._portal().WasAsked(dbus_interface="org.example.Test")

    def emit_setting(self, signature, arguments):
        """Has the portal send a SettingChanged of any shape."""
        self.emit(PORTAL, PORTAL_PATH, SETTINGS, "SettingChanged", signature, arguments)

    def answer_with(self, signature, code):
        """Has the portal answer every question in a shape of its own: "ret = ..."."""
        self._portal().AddMethod(SETTINGS, "ReadAll", "as", signature, code, dbus_interface=MOCK)

    def _portal(self):
        return self._client.get_object(PORTAL, PORTAL_PATH, introspect=False)

    # Screen readers

    def start_accessibility(self, address, reads=True):
        """The service that knows whether somebody reads, and the address of the readers' bus."""
        self._start(ACCESSIBILITY, str(SERVICES / "accessibility.py"),
                    address=address, reads=reads)

    def stop_accessibility(self):
        self._stop(ACCESSIBILITY)

    def set_reading(self, value):
        """Any value, of any type; the service emits PropertiesChanged."""
        self.set_property(ACCESSIBILITY, ACCESSIBILITY_PATH, ACCESSIBILITY_STATUS, "IsEnabled",
                          value)

    def start_registry(self):
        """The registry, which makes this bus one of screen readers."""
        self._start(REGISTRY, str(SERVICES / "accessibility_registry.py"))
