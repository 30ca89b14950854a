"""A client of an X display that paints, and that sees what the pointer does."""

from Xlib import X, display


class Painter:
    """Context manager: a window without a border that covers a display."""

    def __init__(self, target):
        self._name = target.name

    def __enter__(self):
        self._display = display.Display(self._name)
        screen = self._display.screen()
        self._window = screen.root.create_window(
            0, 0, screen.width_in_pixels, screen.height_in_pixels, 0, X.CopyFromParent,
            override_redirect=True,
            event_mask=X.ButtonPressMask | X.ButtonReleaseMask | X.ButtonMotionMask)
        self._window.map()
        self._display.sync()
        return self

    def __exit__(self, *_):
        self._display.close()

    def paint(self, colour, *rectangle):
        """Fills (x, y, width, height), or all; the colour is 0xRRGGBB."""
        geometry = self._window.get_geometry()
        gc = self._window.create_gc(foreground=colour)
        self._window.fill_rectangle(gc, *(rectangle or (0, 0, geometry.width, geometry.height)))
        self._display.sync()

    def take_focus(self):
        """Takes the keyboard, whoever has it."""
        self._window.set_input_focus(X.RevertToParent, X.CurrentTime)
        self._display.sync()

    def gestures(self):
        """What the pointer did so far: (type, x, y), the type one of X's."""
        self._display.sync()
        events = [self._display.next_event() for _ in range(self._display.pending_events())]
        return [(event.type, event.root_x, event.root_y) for event in events
                if event.type in (X.ButtonPress, X.ButtonRelease, X.MotionNotify)]
