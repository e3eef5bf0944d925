#!/usr/bin/python3
"""The programs where an installation puts them, and what belongs to them there."""

import configparser
import os
import pathlib
import re
import subprocess
import unittest

from driving import DESKTOP
from window_test import WINDOW, WindowTest
from support import CLI

INSTALLED = pathlib.Path(os.environ["ZORVANE_INSTALLED"])
SHARE = INSTALLED / "share"
APPLICATION = "io.github.zorvane.Zorvane"


def options(*command):
    """The long options that a command's help tells of."""
    text = subprocess.run([*command, "--help"], check=True, capture_output=True, text=True).stdout
    return set(re.findall(r"--[a-z]+(?:-[a-z]+)*", text))


def completed(program, *words):
    """What the shell offers after these words, of which the last is begun only."""
    script = """
        source "$1"; shift
        COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        function=$(complete -p "${1##*/}" | sed 's/.*-F \\([^ ]*\\).*/\\1/')
        "$function" "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
        printf '%s\\n' "${COMPREPLY[@]}"
    """
    completions = SHARE / "bash-completion/completions" / pathlib.Path(program).name
    return set(subprocess.run(["bash", "-euc", script, "bash", completions, program, *words],
                              check=True, capture_output=True, text=True).stdout.split())


class InstallationTests(WindowTest):
    def test_the_legal_pages_are_opened_from_the_share_folder(self):
        tools = self.world / "tools"
        tools.mkdir()
        os.mkfifo(self.world / "opened")
        (tools / "xdg-open").write_text(f'#!/bin/sh\necho "$1" >{self.world}/opened\n')
        (tools / "xdg-open").chmod(0o755)
        program = self.start(accepted=False, PATH=f"{tools}:{os.environ['PATH']}")
        for link, page in (("Terms of Service", "terms"), ("Privacy Policy", "privacy")):
            program.click(link)
            self.assertEqual((self.world / "opened").read_text().strip(),
                             f"file://{SHARE}/zorvane/legal/{page}.html")
        self.close(program)

    def test_the_desktop_finds_the_program_its_icon_and_its_window(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.optionxform = str
        entry.read(SHARE / f"applications/{APPLICATION}.desktop")
        entry = entry["Desktop Entry"]
        self.assertTrue(os.access(INSTALLED / "bin" / entry["Exec"], os.X_OK))
        icon = SHARE / f"icons/hicolor/scalable/apps/{entry['Icon']}.svg"
        self.assertIn("<svg", icon.read_text())
        program = self.start()
        window_class = DESKTOP.run("xprop", "-id", program.window(), "WM_CLASS")
        self.assertIn(f'"{entry["StartupWMClass"]}"', window_class)
        self.close(program)

    def test_the_manual_and_the_completions_know_every_option(self):
        icloud = [(CLI, "icloud", action) for action in ("list", "release", "fetch")]
        commands = [(WINDOW,), *[(CLI, name) for name in ("rules", "scan", "clean", "guard")], *icloud]
        for command in commands:
            with self.subTest(command[1:]):
                known = options(*command)
                self.assertEqual(completed(*command, "--"), known)
                manual = SHARE / "man/man1" / (pathlib.Path(command[0]).name + ".1")
                named = set(re.findall(r"--[a-z]+(?:-[a-z]+)*", manual.read_text().replace("\\-", "-")))
                self.assertLessEqual(known, named)
        help_text = subprocess.run([CLI, "--help"], check=True, capture_output=True, text=True).stdout
        self.assertEqual(completed(CLI, ""), options(CLI) | set(re.findall(r"^  ([a-z]+) ", help_text,
                                                                           re.MULTILINE)))


if __name__ == "__main__":
    unittest.main()
