"""Plays keys, bezel and finger into the nested display."""

from Xlib import X, XK

XK.load_keysym_group("xf86")

_KEYS = {"back": XK.string_to_keysym("XF86_Back"), "power": XK.string_to_keysym("XF86_PowerOff")}
_WHEEL = {"ccw": 4, "cw": 5}
_FINGER = 1


class Hand:
    """Each method returns when the server has the event."""

    def __init__(self, display):
        self._display = display
        self._codes = {name: self._code_of(keysym) for name, keysym in _KEYS.items()}
        self._held: set[str] = set()
        display.sync()

    def push(self, name: str) -> None:
        self._held.add(name)
        self._fake(X.KeyPress, self._codes[name])

    def release(self, name: str) -> bool:
        """Returns whether the key was down for the applications."""
        if name not in self._held:
            return False
        self._held.remove(name)
        self._fake(X.KeyRelease, self._codes[name])
        return True

    def detent(self, direction: str) -> None:
        """One detent of the bezel: the mouse wheel, at the pointer's place."""
        self._fake(X.ButtonPress, _WHEEL[direction])
        self._fake(X.ButtonRelease, _WHEEL[direction])

    def move(self, x: int, y: int) -> None:
        self._fake(X.MotionNotify, 0, x, y)

    def finger(self, is_down: bool) -> None:
        self._fake(X.ButtonPress if is_down else X.ButtonRelease, _FINGER)

    def _fake(self, kind: int, detail: int, x: int = 0, y: int = 0) -> None:
        self._display.xtest_fake_input(kind, detail, x=x, y=y)
        self._display.sync()

    def _code_of(self, keysym: int) -> int:
        """The key's code, added to the server's keyboard if it has none."""
        code = self._display.keysym_to_keycode(keysym)
        if code:
            return code
        first, last = self._display.display.info.min_keycode, self._display.display.info.max_keycode
        mapping = self._display.get_keyboard_mapping(first, last - first + 1)
        free = next(first + place for place, symbols in enumerate(mapping) if not any(symbols))
        self._display.change_keyboard_mapping(free, [[keysym]])
        self._display.sync()
        return free
