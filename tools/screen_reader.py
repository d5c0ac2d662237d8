# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Operates the program through the interface for screen readers, with a pointer and a keyboard."""

import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 10.0


def eventually(look, what, seconds=PATIENCE):
    """Calls `look` until it returns a true value and returns that. Fails after `seconds`."""
    deadline = time.monotonic() + seconds
    while True:
        try:
            found = look()
        except GLib.Error:  # Something disappeared meanwhile
            found = None
        if found:
            return found
        if time.monotonic() > deadline:
            raise AssertionError(f"in vain: {what}")
        time.sleep(0.05)


def tree(accessible):
    """Yields the accessible object and all its descendants."""
    yield accessible
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is not None:
            yield from tree(child)


class Thing:
    """An object on the screen."""

    def __init__(self, accessible):
        self._accessible = accessible

    @property
    def name(self):
        return self._accessible.get_name()

    @property
    def role(self):
        # AT-SPI called it a push button before version 2.56.
        return self._accessible.get_role_name().removeprefix("push ")

    @property
    def description(self):
        return self._accessible.get_description()

    @property
    def value(self):
        return self._accessible.get_value_iface().get_current_value()

    def has(self, state):
        """Returns whether it has the state of this name, such as CHECKED."""
        self._accessible.clear_cache()
        return self._accessible.get_state_set().contains(getattr(Atspi.StateType, state))

    def place(self):
        """Returns left, top, width and height on the screen."""
        box = self._accessible.get_extents(Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    def wait_until_placed(self):
        """Waits until the window manager has placed it."""
        seen = []

        def look():
            seen.append(self.place())
            return len(seen) > 6 and len(set(seen[-6:])) == 1
        eventually(look, "a place")

    def click(self, across=0.5, down=0.5):
        """Clicks with the pointer at this fraction of its width and height."""
        pointer("mousemove", *self.point(across, down), "click", "1")

    def toggle(self):
        """Runs the first action of a check box, without the pointer, and returns when that is done."""
        self._accessible.get_action_iface().do_action(0)

    def drag(self, begin, end):
        """Drags with the pointer along its middle from one fraction of its width to another, in many small moves."""
        pointer("mousemove", *self.point(begin), "mousedown", "1")
        for step in range(1, 31):
            pointer("mousemove", *self.point(begin + (end - begin) * step / 30))
        pointer("mouseup", "1")

    def point(self, across=0.5, down=0.5):
        left, top, width, height = self.place()
        return left + round(width * across), top + round(height * down)

    def things(self):
        self._accessible.clear_cache()
        return [Thing(accessible) for accessible in tree(self._accessible)]

    def find(self, role, name=None):
        """Waits for the visible object of this role whose name begins with `name`, and returns it."""
        def look():
            for thing in self.things():
                if thing.role == role and thing.has("SHOWING") and (name is None or thing.name.startswith(name)):
                    return thing
            return None
        return eventually(look, f"a {role} named {name}")

    def wait_for_lack(self, role, name=None):
        """Waits until no such object is visible."""
        eventually(lambda: not any(thing.role == role and thing.has("SHOWING") and
                                   (name is None or thing.name.startswith(name)) for thing in self.things()),
                   f"no {role} named {name}")


def pointer(*words):
    subprocess.run(["xdotool", *map(str, words)], check=True, stdout=subprocess.DEVNULL)


def keys(*names):
    pointer("key", "--delay", 30, *names)


def type_text(text):
    pointer("type", "--delay", 15, text)


def windows():
    """Returns all windows of the program."""
    found = []
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None and application.get_name().lower() == "chimewerk":
            application.clear_cache()
            children = [application.get_child_at_index(place) for place in range(application.get_child_count())]
            # None for a window that is being closed.
            found += [Thing(child) for child in children if child is not None]
    return found


def window(title):
    """Waits until the program's window with this title has the keyboard focus, and returns it."""
    def look():
        return next((one for one in windows() if one.name == title and one.has("SHOWING") and one.has("ACTIVE")), None)
    return eventually(look, f"the window {title}")


def wait_for_field(*, gone=False):
    """Waits until a text field has the keyboard focus, or no longer has it. Returns the field."""
    def look():
        fields = [thing for one in windows() for thing in one.things() if thing.role == "text" and thing.has("FOCUSED")]
        return not fields if gone else next(iter(fields), None)
    return eventually(look, "no field for text" if gone else "a field for text")
