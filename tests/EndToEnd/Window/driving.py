"""Drives a program's window as a person would: by what things are called, by mouse and keyboard."""

import os
import pathlib
import re
import signal
import subprocess

from desktop import Desktop

DESKTOP = Desktop()
os.environ.update(DESKTOP.environment)

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib

Atspi.init()

# Each wait ends by an event. The ticks are for what tells nobody, such as the end of a process.
# Milliseconds.
TICK = 100
PATIENCE = 60_000
EVENTS = ("object:children-changed", "object:state-changed", "object:property-change",
          "object:bounds-changed", "object:text-changed", "object:visible-data-changed", "window:")


class NotSeen(AssertionError):
    pass


class Program:
    """A running program with one window."""

    def __init__(self, *arguments, environment=None, errors):
        self.errors = pathlib.Path(errors)
        self.stderr = self.errors.open("wb")
        self.process = subprocess.Popen(
            list(map(str, arguments)), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=self.stderr, env={**DESKTOP.environment, **(environment or {})})
        self.listener = Atspi.EventListener.new(lambda event: None)
        for event in EVENTS:
            self.listener.register(event)
        self.application = None
        self.wait_for(self._connect, "the window")
        self.wait_for(self.real_place, "the window on the display")

    def _connect(self):
        if self.process.poll() is not None:
            raise NotSeen(f"the program ended: {self.errors.read_text()}")
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if (application and application.get_process_id() == self.process.pid
                    and application.get_child_count() > 0):
                # What was remembered of things would soon be wrong: not every change is told.
                application.set_cache_mask(Atspi.Cache.NONE)
                self.application = application
                return True
        return False

    def wait_for(self, condition, what):
        """What `condition` returns once it is true; it is asked again after each event."""
        end = GLib.get_monotonic_time() + PATIENCE * 1000
        while True:
            try:
                result = condition()
            except GLib.Error:
                # The thing was gone when it was looked at.
                result = None
            if result:
                return result
            if GLib.get_monotonic_time() > end:
                raise NotSeen(f"did not see {what}; there is:\n" + "\n".join(self.texts()))
            ticked = []
            source = GLib.timeout_add(TICK, lambda: ticked.append(True))
            GLib.MainContext.default().iteration(True)
            if not ticked:
                GLib.source_remove(source)

    # Looking

    def everything(self):
        """All that is showing, in the order of the tree; while there is a dialog, it alone."""
        if self.application is None:
            return []
        self.application.clear_cache()
        things = self._everything(self.application)
        for thing in things:
            if thing.get_role_name() == "dialog":
                return self._everything(thing)
        return things

    def everything_below(self):
        """All that is showing, whether or not there is a dialog above it."""
        self.application.clear_cache()
        return self._everything(self.application)

    def _everything(self, root):
        found = []

        def visit(thing):
            for index in range(thing.get_child_count()):
                child = thing.get_child_at_index(index)
                if child is None:
                    continue
                states = child.get_state_set()
                if states.contains(Atspi.StateType.SHOWING):
                    found.append(child)
                    visit(child)

        visit(root)
        return found

    def texts(self):
        try:
            return [f"{thing.get_role_name()}: {thing.get_name()}" for thing in self.everything()
                    if thing.get_name()]
        except GLib.Error:
            return []

    def seen(self, name, role=None):
        """The showing things of a name; `name` may be a test of names."""
        matches = name if callable(name) else lambda text: text == name
        return [thing for thing in self.everything()
                if matches(thing.get_name() or "") and role in (None, thing.get_role_name())]

    def rows(self, role):
        """The names of the showing things of a role, from the top of the screen to its bottom."""
        def top(thing):
            return thing.get_extents(Atspi.CoordType.SCREEN).y

        things = [thing for thing in self.everything() if thing.get_role_name() == role]
        return [thing.get_name() for thing in sorted(things, key=top)]

    def see(self, name, role=None):
        return self.wait_for(lambda: self.seen(name, role), repr(name))[0]

    def see_no(self, name, role=None):
        self.wait_for(lambda: not self.seen(name, role), f"the end of {name!r}")

    def has_state(self, name, state, role=None):
        return any(thing.get_state_set().contains(state) for thing in self.seen(name, role))

    def wait_for_state(self, name, state, role=None, is_set=True):
        self.wait_for(
            lambda: self.seen(name, role) and self.has_state(name, state, role) == is_set,
            f"{name!r} {'' if is_set else 'not '}{state}")

    def is_ticked(self, name):
        return self.has_state(name, Atspi.StateType.CHECKED)

    def wait_for_tick(self, name, is_ticked=True):
        self.wait_for_state(name, Atspi.StateType.CHECKED, is_set=is_ticked)

    def is_enabled(self, name):
        return self.see(name).get_description() != "Not available"

    # Acting

    def box(self, name, role=None):
        """The place of a thing on the screen, once it has come to rest."""
        places = []

        def is_at_rest():
            # First, since what the program says of its parts goes by where it thinks that it is.
            if self.place()[:2] != self.real_place():
                places.clear()
                return False
            extents = self.see(name, role).get_extents(Atspi.CoordType.SCREEN)
            places.append((extents.x, extents.y, extents.width, extents.height))
            return len(places) > 1 and places[-1] == places[-2] and extents.width > 0

        self.wait_for(is_at_rest, f"{name!r} at rest")
        return places[-1]

    def click(self, name, role=None):
        x, y, width, height = self.box(name, role)
        self.click_at(x + width // 2, y + height // 2)

    def click_at(self, x, y, times=1):
        DESKTOP.run("xdotool", "mousemove", x, y, "click", "--repeat", times, 1)

    def press(self, name, role=None):
        """What an assistive tool does, where the mouse would not reach."""
        self.see(name, role).do_action(0)

    def drag(self, start, has_come_about, what):
        """Presses at a place of the screen, which is given anew for each try, moves on to the lower
        right and lets go, until something has come about."""
        def attempt():
            x, y = start()
            DESKTOP.run("xdotool", "mousemove", x, y, "mousedown", 1)
            for step in range(1, 200):
                # Far enough, and then back and forth.
                distance = min(step, 29 + step % 2)
                DESKTOP.run("xdotool", "mousemove", x + 4 * distance, y + 2 * distance)
                # The window manager takes over in the middle, at the program's request. If the
                # button were let go of before, it would move the window until the next click.
                if has_come_about() and step > 29:
                    break
            DESKTOP.run("xdotool", "mouseup", 1)
            return has_come_about()

        self.wait_for(attempt, what)

    def focus(self, name, role=None):
        self.see(name, role).grab_focus()
        self.wait_for(lambda: self.has_focus(name), f"the focus on {name!r}")

    def has_focus(self, name):
        return self.has_state(name, Atspi.StateType.FOCUSED)

    def focused(self):
        """The names of all that has the keyboard, scopes included."""
        return [thing.get_name() for thing in self.everything()
                if thing.get_state_set().contains(Atspi.StateType.FOCUSED)]

    def key(self, *keys):
        DESKTOP.run("xdotool", "key", *keys)

    def window(self):
        return DESKTOP.run("xdotool", "search", "--onlyvisible", "--pid",
                           self.process.pid).split()[0]

    def place(self):
        """The window's left and top edge, its width and height."""
        frame = self.application.get_child_at_index(0).get_extents(Atspi.CoordType.SCREEN)
        return frame.x, frame.y, frame.width, frame.height

    def real_place(self):
        """The window's left and top edge as the display has it, which the program is told a little
        later; nothing while the window is not shown."""
        try:
            facts = DESKTOP.run("xwininfo", "-id", self.window())
        except subprocess.CalledProcessError:
            return None
        return tuple(int(re.search(rf"Absolute upper-left {axis}: +(-?\d+)", facts)[1])
                     for axis in "XY")

    def size(self):
        return self.place()[2:]

    def resize(self, width, height, comes_to=None):
        """Asks the window manager for a size, and waits for what it comes to."""
        DESKTOP.run("xdotool", "windowsize", self.window(), width, height)
        expected = comes_to or (width, height)
        self.wait_for(lambda: self.size() == expected, f"the size {expected}")

    # Ending

    def wait_for_end(self):
        self.wait_for(lambda: self.process.poll() is not None, "the end of the program")
        self.listener = None
        self.stderr.close()
        return self.process.returncode

    def kill(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
        self.wait_for_end()
