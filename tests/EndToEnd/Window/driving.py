"""Drives a program's window as a person would: by what things are called, by mouse and keyboard."""

import os
import pathlib
import re
import subprocess

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

Atspi.init()

# Each wait ends by an event. The ticks are for what tells nobody, such as the end of a process.
TICK_MILLISECONDS = 100
PATIENCE_MICROSECONDS = 60_000_000


def run(*command):
    return subprocess.run(list(map(str, command)), check=True, capture_output=True, text=True).stdout


class Program:
    """A running program with one window."""

    def __init__(self, *arguments, environment, errors):
        self.errors = pathlib.Path(errors)
        with self.errors.open("wb") as stderr:
            self.process = subprocess.Popen(
                list(map(str, arguments)), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                stderr=stderr, env={**os.environ, **environment})
        self.listener = Atspi.EventListener.new(lambda event: None)
        for event in ("object:", "window:"):
            self.listener.register(event)
        self.application = None
        self.wait_for(self._connect, "the window")
        self.wait_for(self.real_place, "the window on the display")

    def _connect(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the program ended: {self.errors.read_text()}")
        for application in children(Atspi.get_desktop(0)):
            if application.get_process_id() == self.process.pid and children(application):
                # What was remembered of things would soon be wrong: not every change is told.
                application.set_cache_mask(Atspi.Cache.NONE)
                self.application = application
        return self.application

    def wait_for(self, condition, what):
        """What `condition` returns once it is true; it is asked again after each event."""
        end = GLib.get_monotonic_time() + PATIENCE_MICROSECONDS
        while GLib.get_monotonic_time() < end:
            try:
                if result := condition():
                    return result
            except GLib.Error:
                pass  # The thing was gone when it was looked at.
            ticked = []
            source = GLib.timeout_add(TICK_MILLISECONDS, lambda: ticked.append(True))
            GLib.MainContext.default().iteration(True)
            if not ticked:
                GLib.source_remove(source)
        names = [thing.get_name() for thing in self.everything()] if self.application else []
        raise AssertionError(f"did not see {what}; there is: {names}")

    def everything(self, below_a_dialog=False):
        """All that is showing, in the order of the tree; while there is a dialog, it alone."""
        self.application.clear_cache()
        things = showing(self.application)
        dialogs = [thing for thing in things if thing.get_role_name() == "dialog"]
        return showing(dialogs[0]) if dialogs and not below_a_dialog else things

    def seen(self, name, role=None):
        """The showing things of a name; `name` may be a test of names."""
        matches = name if callable(name) else lambda text: text == name
        return [thing for thing in self.everything()
                if matches(thing.get_name() or "") and role in (None, thing.get_role_name())]

    def see(self, name, role=None):
        return self.wait_for(lambda: self.seen(name, role), repr(name))[0]

    def see_no(self, name):
        self.wait_for(lambda: not self.seen(name), f"the end of {name!r}")

    def rows(self, role):
        """The names of the showing things of a role, from the top of the screen to its bottom."""
        things = [thing for thing in self.everything() if thing.get_role_name() == role]
        return [thing.get_name() for thing in sorted(things, key=lambda thing: extents(thing)[1])]

    def wait_for_tick(self, name, is_ticked=True):
        self.wait_for(lambda: self.see(name).get_state_set().contains(Atspi.StateType.CHECKED)
                      == is_ticked, f"{name!r} {'' if is_ticked else 'not '}ticked")

    def is_enabled(self, name):
        return self.see(name).get_description() != "Not available"

    def focused(self):
        """The names of all that has the keyboard, scopes included."""
        return [thing.get_name() for thing in self.everything()
                if thing.get_state_set().contains(Atspi.StateType.FOCUSED)]

    def wait_for_focus(self, name):
        self.wait_for(lambda: name in self.focused(), f"the keyboard on {name!r}")

    def box(self, name, role=None):
        """The place of a thing on the screen, once it has come to rest."""
        places = []

        def is_at_rest():
            # What the program says of its parts goes by where it thinks that it is.
            if self.place()[:2] != self.real_place():
                places.clear()
                return False
            places.append(extents(self.see(name, role)))
            return places[-2:] == 2 * places[-1:] and places[-1][2] > 0

        self.wait_for(is_at_rest, f"{name!r} at rest")
        return places[-1]

    def click(self, name, role=None):
        x, y, width, height = self.box(name, role)
        self.click_at(x + width // 2, y + height // 2)

    def click_at(self, x, y, times=1):
        run("xdotool", "mousemove", x, y, "click", "--repeat", times, 1)

    def press(self, name):
        """What an assistive tool does, where the mouse would not reach."""
        self.see(name).do_action(0)

    def key(self, *keys):
        run("xdotool", "key", *keys)

    def drag(self, start, has_come_about, what):
        """Presses at a place of the screen, which is given anew for each try, moves on to the lower
        right and lets go, until something has come about."""
        def attempt():
            x, y = start()
            run("xdotool", "mousemove", x, y, "mousedown", 1)
            # Far enough, and then back and forth: the window manager takes over in the middle, and
            # if the button were let go of before, it would move the window until the next click.
            for distance in (*range(30), *(29, 30) * 85):
                run("xdotool", "mousemove", x + 4 * distance, y + 2 * distance)
                if distance > 28 and has_come_about():
                    break
            run("xdotool", "mouseup", 1)
            return has_come_about()

        self.wait_for(attempt, what)

    def window(self):
        return run("xdotool", "search", "--onlyvisible", "--pid", self.process.pid).split()[0]

    def place(self):
        """The window's left and top edge, its width and height."""
        return extents(self.application.get_child_at_index(0))

    def real_place(self):
        """The window's left and top edge as the display has it, which the program is told a little
        later; nothing while the window is not shown."""
        try:
            facts = run("xwininfo", "-id", self.window())
            return tuple(map(int, re.findall(r"Absolute upper-left [XY]: +(-?\d+)", facts)))
        except subprocess.CalledProcessError:
            return None

    def wait_for_place(self, *expected):
        """Waits for its size, or for both."""
        self.wait_for(lambda: self.place()[-len(expected):] == expected, f"the place {expected}")

    def wait_for_end(self):
        self.wait_for(lambda: self.process.poll() is not None, "the end of the program")
        return self.process.returncode


def children(thing):
    every = map(thing.get_child_at_index, range(thing.get_child_count()))
    return [child for child in every if child is not None]


def showing(root):
    return [thing for child in children(root)
            if child.get_state_set().contains(Atspi.StateType.SHOWING)
            for thing in (child, *showing(child))]


def extents(thing):
    place = thing.get_extents(Atspi.CoordType.SCREEN)
    return place.x, place.y, place.width, place.height
