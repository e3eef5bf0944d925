"""The programs where an installation puts them, and what belongs to them there."""

import configparser
import os
import pathlib
import re

from driving import run
from window_test import WINDOW, WindowTest
from support import CLI

INSTALLED = pathlib.Path(os.environ["ZORVANE_INSTALLED"])
SHARE = INSTALLED / "share"
LONG_OPTION = r"--[a-z]+(?:-[a-z]+)*"
# What the shell offers after these words, of which the last is begun only.
COMPLETE = """source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
function=$(complete -p "${1##*/}" | sed 's/.*-F \\([^ ]*\\).*/\\1/')
"$function" "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
printf '%s\\n' "${COMPREPLY[@]}" """


class InstallationTests(WindowTest):
    def test_the_desktop_finds_the_program_and_the_program_its_pages(self):
        os.mkfifo(self.world / "opened")
        opener = self.tool("bin/xdg-open", f'echo "$1" >{self.world}/opened')
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(SHARE / "applications/io.github.zorvane.Zorvane.desktop")
        entry = entry["Desktop Entry"]
        self.assertEqual(INSTALLED / "bin" / entry["Exec"], pathlib.Path(WINDOW))
        self.assertIn("<svg", (SHARE / f"icons/hicolor/scalable/apps/{entry['Icon']}.svg").read_text())
        program = self.start(accepted=None, PATH=f"{opener.parent}:{os.environ['PATH']}")
        window_class = run("xprop", "-id", program.window(), "WM_CLASS")
        self.assertEqual(window_class.split('"')[-2], entry["StartupWMClass"])
        for link, page in (("Terms of Service", "terms"), ("Privacy Policy", "privacy")):
            program.click(link)
            self.assertEqual((self.world / "opened").read_text().strip(),
                             f"file://{SHARE}/zorvane/legal/{page}.html")
        self.close(program)

    def test_the_manual_and_the_completions_know_every_option(self):
        commands = [(WINDOW,), *((CLI, *words.split()) for words in (
            "", "rules", "scan", "clean", "guard", "icloud list", "icloud release", "icloud fetch"))]
        for command in commands:
            with self.subTest(command[1:]):
                name = pathlib.Path(command[0]).name
                text = run(*command, "--help")
                known = set(re.findall(LONG_OPTION, text))
                manual = (SHARE / f"man/man1/{name}.1").read_text().replace("\\-", "-")
                self.assertLessEqual(known, set(re.findall(LONG_OPTION, manual)))
                subcommands = set(re.findall(r"^  ([a-z]+) ", text, re.M)) - {"path"}
                begun = "--" if len(command) > 1 or command == (WINDOW,) else ""
                offered = run("bash", "-euc", COMPLETE, "bash",
                               SHARE / "bash-completion/completions" / name, *command, begun)
                self.assertEqual(set(offered.split()), known | (subcommands if not begun else set()))
