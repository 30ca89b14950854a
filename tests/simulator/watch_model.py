"""What a watch should say of itself after any commands: a model of `status --json`."""

import datetime
import zoneinfo

from simulator.desk import BUILD, GUIDE

CARDS = "org.example.cards"
PROGRAMS = {GUIDE: GUIDE, CARDS: str(BUILD.resolve() / "examples" / "cards" / "cards")}
PARTS = ["guard", "keeper", "server", "bus", "manager", "home", "body"]
LOCALES = ["de_DE", "ko_KR", "ar"]
ZONES = ["Asia/Seoul", "America/New_York"]

KEYS = ["bezel cw", "bezel ccw 3", *(f"button {deed} {key}" for deed in ("push", "release", "click")
                                     for key in ("back", "power"))]
TIMES = ["time freeze", "time thaw", "time set 2026-03-01T07:00", "time set 2040-12-31T23:59:59",
         *(f"time zone {name}" for name in ZONES), "time zone Mars/Base", "time hours 12",
         "time hours 24"]
SETTINGS = ["battery --percent 5", "battery --percent 42.5 --full", "battery --charging",
            "battery --discharging", *(f"language {name}" for name in LOCALES),
            *(f"region {name}" for name in LOCALES), "region auto", "language Klingon",
            "text-size 1.5", "text-size 1", "motion reduced", "motion full", "contrast high",
            "contrast normal"]
APPLICATIONS = ["launch {guide}", "launch {cards}", "terminate", "terminate {guide}",
                "install {entries}", "uninstall org.example.one", f"uninstall {GUIDE}"]
"""Commands, with places for what the desk knows."""


class Model:
    """One watch. Each command has a method, which returns whether it is carried out; one that
    returns None has an effect that is not foretold, and is not given."""

    def __init__(self):
        self.running = False

    def start(self):
        if self.running:
            return False
        self.__init__()
        self.running, self.is_on, self.keys, self.turned = True, True, [], 0
        self.battery = {"percent": 80.0, "state": "discharging"}
        self.language, self.own_region = "en_US.UTF-8", None
        self.frozen, self.moment, self.zone_name, self.clock_hours = False, None, None, None
        self.look = {"textSize": 1.0, "motion": "full", "contrast": "normal"}
        self.installed, self.apps, self.last_end = [GUIDE], [], None
        return True

    def stop(self):
        was_running, self.running = self.running, False
        return was_running

    def expected(self):
        """The part of the status that it foretells."""
        status = {
            "screen": "on" if self.is_on else "off", "keysDown": sorted(self.keys),
            "bezel": self.turned, "battery": self.battery, "language": self.language,
            "region": self.own_region or self.language, "apps": self.installed,
            "app": self.apps[-1] if self.apps else None, "lastEnd": self.last_end,
            "frozen": self.frozen, "hours": self.clock_hours, **self.look}
        if self.zone_name:
            status["zone"] = self.zone_name
        if self.frozen and self.moment:
            place = zoneinfo.ZoneInfo(self.zone_name or "UTC")
            status["now"] = self.moment.astimezone(place).replace(tzinfo=None).isoformat()
        return status

    def take(self, words):
        """Has a command its effect; returns whether it is carried out."""
        if not self.running:
            return False
        name = words[0].replace("-", "_")
        return getattr(self, f"do_{name}")(*words[1:])

    def lose(self, app, status, signal):
        self.apps.remove(app)
        self.last_end = {"app": app, "status": status, "signal": signal}

    def leave(self, app):
        if app in self.apps:
            self.lose(app, 0, 0)

    # Keys, bezel

    def do_bezel(self, direction, count="1"):
        if self.is_on:
            self.turned += int(count) if direction == "cw" else -int(count)
        return self.is_on

    def do_button(self, deed, key):
        if deed == "click":
            pushed = self.do_button("push", key)
            return pushed and self.do_button("release", key)
        if deed == "push":
            if key in self.keys or (key == "back" and not self.is_on):
                return False
            if self.keys:
                return None
            self.keys.append(key)
            return True
        if key not in self.keys:
            return False
        self.keys.remove(key)
        if key == "power":
            self.is_on = not self.is_on
            self.leave(GUIDE)
        elif self.apps:
            self.leave(self.apps[-1])
        return True

    # Applications

    def do_launch(self, program):
        app = CARDS if "/" in program else GUIDE
        if self.keys:
            return None
        if not self.is_on:
            return False
        if app == CARDS:
            self.leave(GUIDE)
        if app not in self.apps:
            self.apps.append(app)
        return True

    def do_terminate(self, app=None):
        if self.keys:
            return None
        if not self.apps or (app and app not in self.apps):
            return False
        self.leave(app or self.apps[-1])
        return True

    def do_install(self, _folder):
        if "org.example.one" not in self.installed:
            self.installed = [*self.installed, "org.example.one"]
        return True

    def do_uninstall(self, app):
        if app == GUIDE or app not in self.installed:
            return False
        self.installed = [GUIDE]
        return True

    # Settings

    def do_battery(self, *words):
        words = list(words)
        if words[0] == "--percent":
            self.battery = self.battery | {"percent": float(words[1])}
            words = words[2:]
        if words:
            self.battery = self.battery | {"state": words[0].removeprefix("--")}
        return True

    def do_language(self, name):
        if name in LOCALES:
            self.language = f"{name}.UTF-8"
        return name in LOCALES

    def do_region(self, name):
        self.own_region = None if name == "auto" else f"{name}.UTF-8"
        return True

    def do_time(self, deed, value=None):
        return getattr(self, f"time_{deed}")(*([value] if value else []))

    def time_freeze(self):
        was_frozen, self.frozen = self.frozen, True
        if not was_frozen:
            self.moment = None
        return not was_frozen

    def time_thaw(self):
        was_frozen, self.frozen = self.frozen, False
        return was_frozen

    def time_set(self, text):
        place = zoneinfo.ZoneInfo(self.zone_name or "UTC")
        self.moment = datetime.datetime.fromisoformat(text).replace(tzinfo=place)
        return True

    def time_zone(self, name):
        if name in ZONES:
            self.zone_name = name
        return name in ZONES

    def time_hours(self, hours):
        self.clock_hours = int(hours)
        return True

    def do_text_size(self, factor):
        self.look["textSize"] = float(factor)
        return True

    def do_motion(self, motion):
        self.look["motion"] = motion
        return True

    def do_contrast(self, contrast):
        self.look["contrast"] = contrast
        return True
