#!/usr/bin/env python3
"""Nothing goes that nobody agreed to, and Ctrl-C leaves what was not begun."""

import json
import os
import pty
import signal
import subprocess
import unittest

from cleaning import CleaningTest, exact_path, snapshot, without
from support import CLI, everything_shown, rule

FOLDERS = 3000
FILES = 5


class CleanConsent(CleaningTest):
    def setUp(self):
        super().setUp()
        self.file("home/area/a", b"x" * 5000)
        self.file("home/.local/share/Trash/files/gone")
        self.file("home/other/o")
        self.arguments = ["clean", "--home", self.home, "--catalog",
                          self.catalog(rule("cache-area"),
                                       rule("trash-user", ["~/.local/share/Trash/files"], "B"),
                                       rule("cache-other", ["~/other"]))]
        self.chosen = ["--rule", "cache-area", "--rule", "trash-user", "--all"]

    def test_only_yes_removes(self):
        before = snapshot(self.world)
        for keys, status in ((b"\n", 4), (b"y\n", 4), (b"YES\n", 4), (b"yes no\n", 4), (b" yes\n", 4),
                             (b"\x04", 4), (b"ye\x04\x04", 4), (b"yes\x03", 130)):
            with self.subTest(keys):
                result, output, shown = self.on_terminal([*self.arguments, *self.chosen], keys)
                self.assertEqual((result, output), (status, ""), shown)
                self.assertRegex(shown, r"zorvane-cli: .*nothing was removed\n\Z")
                self.assert_snapshot(self.world, before)

        result, output, shown = self.on_terminal([*self.arguments, *self.chosen, "--json"],
                                                 b"yes\n")
        self.assertEqual(result, 0, shown)
        removed = [exact_path(item) for item in json.loads(output)["removed"]]
        self.assertCountEqual(removed, [os.fsencode(self.home / path) for path in
                                        ("area/a", ".local/share/Trash/files/gone")])
        self.assert_snapshot(self.world, without(before, removed))

    def test_the_question_tells_what_will_go(self):
        _, _, shown = self.on_terminal([*self.arguments, *self.chosen], b"no\n")
        for text in (f"{self.home}/area/a\n", f"{self.home}/.local/share/Trash/files/gone\n",
                     "Removal is permanent — files do not go to the Trash.\n", ", 2 items.\n"):
            self.assertIn(text, shown)
        self.assertNotIn(f"{self.home}/other", shown)
        # A reviewed area is named once more, with its warning.
        review = shown.partition("Review required; these may not be recoverable:\n")[2]
        self.assertRegex(review, r"\A  [^:\n]+: [^\n]{20,}\n")
        _, _, safe = self.on_terminal([*self.arguments, "--safe"], b"no\n")
        self.assertNotIn("Review", safe)

    def test_the_totals_of_what_tools_report_stay_totals(self):
        huge = '{"Type":"Images","Reclaimable":"9000000TB"}'
        for tool, output in (("usr/local/bin/docker", f"{huge}\n{huge}"),
                             ("opt/homebrew/bin/brew", "Would remove: /c/a (9000000TB)")):
            self.file(f"home/.tools/{tool}", f"#!/bin/sh\ncat <<'END'\n{output}\nEND\n").chmod(0o755)
        given = ("--home", self.home, "--tools", self.home / ".tools",
                 "--rule", "docker-reclaimable", "--rule", "brew-cleanup")
        # Some that start programs leave them the signal of a child's end ignored.
        for wrapper in ([], ["env", "--ignore-signal=CHLD"]):
            process = self.run_program("scan", "--json", *given, wrapper=wrapper)
            self.assertEqual(json.loads(process.stdout)["totalBytes"], 2**63 - 1, wrapper)
        _, _, shown = self.on_terminal(["clean", "--all", *given], b"no\n")
        self.assertIn("Total: 9.22 EB, 3 items", shown)

    def test_without_a_terminal_it_refuses(self):
        before = snapshot(self.world)
        self.assert_refused(self.run_program(*self.arguments, "--safe"), 4, "--yes")
        answered = subprocess.run([CLI, *map(str, self.arguments), "--safe"], input=b"yes\n",
                                  capture_output=True, check=False)
        self.assert_refused(answered, 4, "--yes")
        self.assert_snapshot(self.world, before)

    def test_the_list_has_to_be_seen(self):
        before = snapshot(self.world)
        ours, theirs = pty.openpty()
        os.write(ours, b"yes\n")
        command = [CLI, *map(str, self.arguments), "--rule", "cache-other", "--all"]
        unseen = subprocess.run(command, stdin=theirs, capture_output=True, check=False)
        self.assert_refused(unseen, 4, "--yes")
        self.assert_snapshot(self.world, before)
        seen = subprocess.run(command, stdin=theirs, stdout=theirs, stderr=subprocess.PIPE,
                              check=False)
        os.close(theirs)
        self.assertEqual((seen.returncode, seen.stderr), (0, b""))
        self.assertIn(f"{self.home}/other/o\n", everything_shown(ours))
        os.close(ours)
        self.assert_snapshot(self.world, without(before, [self.home / "other/o"]))

    def test_ctrl_c_finishes_the_item_in_hand_and_leaves_the_rest(self):
        # A clean that is through before the signal comes tells nothing; then again.
        for _ in range(10):
            if self.interrupt_a_clean() == 130:
                return
        self.fail("every clean was through before it could be interrupted")

    def interrupt_a_clean(self):
        for folder in range(FOLDERS):
            os.makedirs(self.home / f"area/{folder:04}", exist_ok=True)
            for file in range(FILES):
                with open(self.home / f"area/{folder:04}/{file}", "wb"):
                    pass
        self.file("home/area/a", b"x" * 500_000)
        items = [os.fsencode(item["path"]) for item in
                 self.scan(*self.arguments[3:], "--rule", "cache-area")["categories"][0]["items"]]
        self.assertEqual(items[0], os.fsencode(self.home / "area/a"), "the largest comes first")
        before = snapshot(self.world)
        with subprocess.Popen([CLI, *map(str, self.arguments), "--rule", "cache-area", "--all",
                               "--yes", "--json"], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as process:
            while os.path.lexists(items[0]) and process.poll() is None:
                pass
            process.send_signal(signal.SIGINT)
            output, errors = process.communicate()
        self.assertIn(process.returncode, (0, 130), errors)
        report = json.loads(output)
        removed = [exact_path(item) for item in report["removed"]]
        self.assertEqual(report["skipped"], [])
        self.assertEqual(removed, items[:len(removed)])
        # No item is gone in part: what is not in the report is as it was.
        self.assert_snapshot(self.world, without(before, removed))
        if process.returncode == 130:
            self.assertRegex(errors, rb"\Azorvane-cli: interrupted[^\n]*\n\Z")
            self.assertGreater(len(removed), 0)
        return process.returncode if len(removed) < len(items) else 0


if __name__ == "__main__":
    unittest.main()
