"""What the window's tests share: a home of their own and the program on it."""

import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))

import support
from driving import Program

WINDOW = os.environ["ZORVANE_WINDOW"]


def byte_count(count):
    """A byte count as the window writes it; written again here, so that it is checked."""
    unit, size, decimals = next(row for row in (("KB", 10**3, 0), ("MB", 10**6, 1), ("GB", 10**9, 2))
                                if round(count / row[1], row[2]) < 1000)
    text = f"{count / size:.{decimals}f}"
    return f"{text.rstrip('0').rstrip('.') if decimals else text if count else 'Zero'} {unit}"


class WindowTest(support.ProgramTest):
    """A test with an empty home: self.home. Whatever the program says on standard error fails it."""

    def setUp(self):
        super().setUp()
        (self.home / ".cache").mkdir()
        self.preferences = self.home / ".config/zorvane/preferences.ini"
        self.tools = ("--tools", self.home / ".tools", "--mirror", self.home / ".cloud-mirror")

    def start(self, *arguments, accepted="0.1", **environment):
        """The program's window; the terms of a version are accepted, or none are."""
        if accepted:
            self.file(self.preferences, f"[General]\nzorvane.acceptedTermsVersion={accepted}\n")
        program = Program(WINDOW, "--home", self.home, "--software", "--no-animations", *arguments,
                          errors=self.world / "errors",
                          environment={"LD_PRELOAD": os.environ["ZORVANE_CONFINED"], **environment})
        self.addCleanup(self.assert_silent, program)
        self.addCleanup(program.wait_for_end)
        self.addCleanup(program.process.kill)
        return program

    def assert_silent(self, program):
        # Where the desktop's service for assistive tools is slow to answer, Qt says so.
        self.assertRegex(program.errors.read_text(), r"\A(QSpiApplication::keyEventError.*\n)*\Z")

    def close(self, program):
        """Closes the window by its button."""
        program.click("Close", "push button")
        self.assertEqual(program.wait_for_end(), 0)

    def scan_in_window(self, program):
        program.click("Scan my Mac")
        program.see("Rescan")
