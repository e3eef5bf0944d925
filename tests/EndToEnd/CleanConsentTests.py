#!/usr/bin/env python3
"""Nothing goes that nobody agreed to, and a request to end leaves what was not begun."""

import json
import os
import pty
import signal
import subprocess
import unittest

from support import CLI, ProgramTest, everything_shown, exact_path, rule, snapshot

FOLDERS = 3000


class CleanConsent(ProgramTest):
    def setUp(self):
        super().setUp()
        for name in ("area/a", ".local/share/Trash/files/gone", "other/o"):
            self.file(f"home/{name}")
        self.arguments = ["--home", self.home, "--catalog", self.catalog(
            rule("cache-area"), rule("trash-user", ["~/.local/share/Trash/files"], "B"),
            rule("cache-other", ["~/other"]))]
        self.chosen = ["clean", *self.arguments, "--rule", "cache-area", "--rule", "trash-user",
                       "--all"]

    def test_only_yes_removes_what_the_question_told(self):
        before = snapshot(self.world)
        for keys, status in ((b"\n", 4), (b"y\n", 4), (b"YES\n", 4), (b"yes no\n", 4),
                             (b" yes\n", 4), (b"\x04", 4), (b"ye\x04\x04", 4), (b"yes\x03", 130)):
            with self.subTest(keys):
                result, output, shown = self.on_terminal(self.chosen, keys)
                self.assertEqual((result, output), (status, ""), shown)
                self.assertRegex(shown, r"zorvane-cli: .*nothing was removed.*\n\Z")
                self.assert_left(before)
        names = ("area/a", ".local/share/Trash/files/gone")
        for text in (*(f"{self.home}/{name}\n" for name in names), ", 2 items.\n",
                     "Removal is permanent — files do not go to the Trash.\n"):
            self.assertIn(text, shown)
        self.assertNotIn(f"{self.home}/other", shown)
        # The area to review is named once more, with its warning.
        self.assertRegex(shown, r"\n  Trash: [^\n]{20,}\n")
        result, output, shown = self.on_terminal([*self.chosen, "--json"], b"yes\n")
        self.assertEqual(result, 0, shown)
        removed = [exact_path(item) for item in json.loads(output)["removed"]]
        self.assertCountEqual(removed, [os.fsencode(self.home / name) for name in names])
        self.assert_left(before, removed)

    def test_the_list_has_to_be_seen_on_a_terminal(self):
        before = snapshot(self.world)
        self.assert_refused(self.run_program(*self.chosen), 4, "--yes")
        ours, theirs = pty.openpty()
        os.write(ours, b"yes\n")
        command = [CLI, *map(str, self.chosen)]
        unseen = subprocess.run(command, stdin=theirs, capture_output=True, check=False)
        self.assert_refused(unseen, 4, "--yes")
        self.assert_left(before)
        seen = subprocess.run(command, stdin=theirs, stdout=theirs, check=False)
        os.close(theirs)
        self.assertEqual(seen.returncode, 0)
        self.assertIn(f"{self.home}/area/a\n", everything_shown(ours))
        os.close(ours)
        self.assertFalse(os.path.lexists(self.home / "area/a"))

    def test_a_request_to_end_finishes_the_item_in_hand_and_leaves_the_rest(self):
        for folder in range(FOLDERS):
            os.makedirs(self.home / f"area/{folder:04}/inner")
            self.file(f"home/area/{folder:04}/inner/file", b"")
        self.file("home/area/a", b"x" * 500_000)
        items = list(map(exact_path, self.scan(
            *self.arguments[2:], "--rule", "cache-area")["categories"][0]["items"]))
        self.assertEqual(items[0], os.fsencode(self.home / "area/a"), "the largest comes first")
        before = snapshot(self.world)
        with subprocess.Popen([CLI, "clean", *map(str, self.arguments), "--rule", "cache-area",
                               "--all", "--yes", "--json"], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as process:
            while os.path.lexists(items[0]) and process.poll() is None:
                pass
            process.send_signal(signal.SIGINT)
            output, errors = process.communicate()
        report = json.loads(output)
        removed = list(map(exact_path, report["removed"]))
        # No item is gone in part: what is not in the report is as it was.
        self.assert_left(before, removed)
        self.assertEqual((report["skipped"], removed), ([], items[:len(removed)]))
        self.assertTrue(0 < len(removed) < len(items))
        self.assertEqual(process.returncode, 130)
        self.assertRegex(errors, rb"\Azorvane-cli: interrupted[^\n]*\n\Z")

    def test_a_request_to_end_ends_a_scan_at_any_moment(self):
        def leave_pending(number):
            # A blocked signal stays pending across exec.
            signal.pthread_sigmask(signal.SIG_BLOCK, [number])
            os.kill(os.getpid(), number)
        interrupted = (130, b"", b"zorvane-cli: interrupted\n")
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            early = subprocess.run([CLI, "scan", "--json", *map(str, self.arguments)],
                                   preexec_fn=lambda: leave_pending(number), capture_output=True,
                                   check=False)
            self.assertEqual((early.returncode, early.stdout, early.stderr), interrupted, number)
        # While a tool lists that never ends by itself.
        self.file("home/.tools/opt/homebrew/bin/brew", mode=0o755,
                  content="#!/bin/sh\nkill -INT $PPID\nexec tail -f /dev/null\n")
        late = self.run_program("scan", "--json", "--home", self.home, "--rule", "brew-cleanup",
                                "--tools", self.home / ".tools")
        self.assertEqual((late.returncode, late.stdout, late.stderr), interrupted)


if __name__ == "__main__":
    unittest.main()
