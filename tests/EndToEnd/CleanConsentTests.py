"""Nothing goes that nobody agreed to, and a request to end leaves what was not begun."""

import json
import os
import pty
import subprocess

from support import CLI, ProgramTest, everything_shown, exact_path, rule, snapshot

SNAPSHOTS = 200


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
        deleted = self.world / "tool/deleted"
        deleted.parent.mkdir()
        self.file("home/.tools/usr/bin/tmutil", f"""#!/bin/sh
if [ "$1" = listlocalsnapshots ]; then
    seq -f "com.apple.TimeMachine.2026-01-01-%06.0f.local" {SNAPSHOTS}
else
    [ -e {deleted} ] || kill -INT $PPID
    echo "$2" >> {deleted}
fi
""", mode=0o755)
        catalog = self.catalog(rule("cache-area"),
                               rule("tm-local-snapshots", [], "B", kind="command"))
        before = snapshot(self.world)
        process = self.run_program(
            "clean", "--home", self.home, "--tools", self.home / ".tools", "--catalog", catalog,
            "--rule", "cache-area", "--rule", "tm-local-snapshots", "--all", "--json", "--yes")
        self.assertEqual(process.returncode, 130)
        self.assertRegex(process.stderr, rb"\Azorvane-cli: interrupted[^\n]*\n\Z")
        report = json.loads(process.stdout)
        file, *snapshots = report["removed"]
        self.assertEqual((report["skipped"], file["path"]), ([], str(self.home / "area/a")))
        self.assertTrue(0 < len(snapshots) < SNAPSHOTS)
        self.assertEqual(len(deleted.read_text().split()), len(snapshots))
        deleted.unlink()
        self.assert_left(before, [self.home / "area/a", deleted])

    def test_a_request_to_end_ends_a_scan_and_its_tool(self):
        for name in ("INT", "TERM", "HUP"):
            # The tool itself never ends.
            self.file("home/.tools/opt/homebrew/bin/brew", mode=0o755,
                      content=f"#!/bin/sh\nkill -{name} $PPID\nexec tail -f /dev/null\n")
            process = self.run_program("scan", "--json", "--home", self.home, "--rule",
                                       "brew-cleanup", "--tools", self.home / ".tools")
            self.assertEqual((process.returncode, process.stdout, process.stderr),
                             (130, b"", b"zorvane-cli: interrupted\n"), name)
