"""What the window's tests share: a home of their own and the program on it."""

import json
import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))

import support
from driving import Program

WINDOW = os.environ["ZORVANE_WINDOW"]
UNITS = (("KB", 10**3, 0), ("MB", 10**6, 1), ("GB", 10**9, 2), ("TB", 10**12, 2))


def byte_count(count):
    """A byte count as the window writes it; written again here, so that it is checked."""
    if count == 0:
        return "Zero KB"
    if count < 1000:
        return f"{count} byte{'' if count == 1 else 's'}"
    for unit, size, decimals in UNITS:
        # Halves go up.
        parts = (count * 10**decimals * 2 + size) // (2 * size)
        if parts < 1000 * 10**decimals:
            text = f"{parts // 10**decimals}.{parts % 10**decimals:0{decimals}d}" if decimals else str(parts)
            return (text.rstrip("0").rstrip(".") if decimals else text) + " " + unit
    raise ValueError(count)


class WindowTest(support.ProgramTest):
    """A test with an empty home: self.home. Whatever the program says on standard error fails it."""

    def start(self, *arguments, accepted=True, **environment):
        """The program's window; the terms are accepted unless a test says otherwise."""
        if accepted:
            self.accept_terms()
        program = Program(WINDOW, "--home", self.home, "--software", "--no-animations", *arguments,
                          errors=self.world / "errors",
                          environment={"LD_PRELOAD": os.environ["ZORVANE_CONFINED"], **environment})
        self.addCleanup(self.assert_silent, program)
        self.addCleanup(program.kill)
        return program

    def assert_silent(self, program):
        # Where the desktop's service for assistive tools is slow to answer, Qt says so.
        said = [line for line in program.errors.read_text().splitlines()
                if not line.startswith("QSpiApplication::keyEventError")]
        self.assertEqual(said, [])

    @property
    def preferences(self):
        return self.home / ".config/zorvane/preferences.ini"

    def accept_terms(self):
        self.preferences.parent.mkdir(parents=True, exist_ok=True)
        self.preferences.write_text("[General]\nzorvane.acceptedTermsVersion=0.1\n")

    def close(self, program):
        """Closes the window by its button."""
        program.click("Close", "push button")
        self.assertEqual(program.wait_for_end(), 0)

    def tool_options(self):
        return "--tools", self.home / ".tools", "--mirror", self.home / ".cloud-mirror"

    def scan_in_terminal(self):
        # A sample home has areas that cannot be read.
        return self.scan("--tools", self.home / ".tools", status=1)

    def scan_in_window(self, program):
        program.click("Scan my Mac")
        program.see("Rescan")

    def titles(self):
        texts = json.loads((support.REPOSITORY / "CleanCore/Resources/texts/en.json").read_text())
        return {key.split(".")[1]: text for key, text in texts.items() if key.startswith("rule.")}


def header(category):
    """What the header of an area is called."""
    count = len(category["items"])
    return f"{category['title']}, {count} items, {byte_count(category['totalBytes'])}"
