"""Nothing goes that nobody agreed to, and a request to end leaves what was not begun."""

import json
import os
import pty
import subprocess

from support import CLI, ProgramTest, everything_shown, rule, snapshot


class CleanConsent(ProgramTest):
    def setUp(self):
        super().setUp()
        self.names = [str(self.home / name) for name in (
            "area/a", ".local/share/Trash/files/gone", "other/o")]
        for name in self.names:
            self.file(name)
        self.chosen = ["clean", "--rule", "cache-area", "--rule", "trash-user", "--all", "--catalog",
                       self.catalog(rule("cache-area"), rule("cache-other", ["~/other"]), rule(
                           "trash-user", ["~/.local/share/Trash/files"], "B"))]

    def test_only_yes_removes_what_the_question_told(self):
        before = snapshot(self.world)
        for keys, status in ((b"\n", 4), (b"y\n", 4), (b"YES\n", 4), (b"yes no\n", 4),
                             (b" yes\n", 4), (b"\x04", 4), (b"ye\x04\x04", 4), (b"yes\x03", 130)):
            result, output, shown = self.on_terminal(self.chosen, keys)
            self.assertEqual((result, output), (status, ""), shown)
            self.assertRegex(shown, r"zorvane-cli: .*nothing was removed.*\n\Z")
            self.assert_left(before)
        for text in (*(f"{name}\n" for name in self.names[:2]), ", 2 items.\n",
                     "Removal is permanent — files do not go to the Trash.\n"):
            self.assertIn(text, shown)
        self.assertNotIn(self.names[2], shown)
        # The area to review is named once more, with its warning.
        self.assertRegex(shown, r"\n  Trash: [^\n]{20,}\n")
        result, output, shown = self.on_terminal([*self.chosen, "--json"], b"yes\n")
        self.assertEqual(result, 0, shown)
        self.assertCountEqual([item["path"] for item in json.loads(output)["removed"]], self.names[:2])
        self.assert_left(before, self.names[:2])

    def test_the_list_has_to_be_seen_on_a_terminal(self):
        before = snapshot(self.world)
        self.assert_refused(self.run_program(*self.chosen), 4, "--yes")
        ours, theirs = pty.openpty()
        os.write(ours, b"yes\n")
        command = {"args": [CLI, *map(str, self.chosen)], "stdin": theirs, "env": self.environment}
        self.assert_refused(subprocess.run(**command, capture_output=True, check=False), 4, "--yes")
        self.assert_left(before)
        subprocess.run(**command, stdout=theirs, check=True)
        os.close(theirs)
        self.assertIn(self.names[0] + "\n", everything_shown(ours))
        os.close(ours)
        self.assert_left(before, self.names[:2])

    def test_a_request_to_end_finishes_the_item_in_hand_and_leaves_the_rest(self):
        deleted = self.world / "deleted"
        self.tool("home/.tools/usr/bin/tmutil", f"""if [ "$1" = listlocalsnapshots ]; then
    seq -f "com.apple.TimeMachine.2026-01-01-%06.0f.local" 200
else
    [ -e {deleted} ] || kill -INT $PPID
    echo "$2" >> {deleted}
fi""")
        catalog = self.catalog(rule("cache-area"),
                               rule("tm-local-snapshots", [], "B", kind="command"))
        process = self.run_program(
            "clean", "--tools", self.home / ".tools", "--catalog", catalog, "--rule", "cache-area",
            "--rule", "tm-local-snapshots", "--all", "--json", "--yes")
        self.assertEqual(process.returncode, 130)
        self.assertRegex(process.stderr, rb"\Azorvane-cli: interrupted[^\n]*\n\Z")
        report = json.loads(process.stdout)
        file, *snapshots = report["removed"]
        self.assertEqual((report["skipped"], file["path"]), ([], self.names[0]))
        self.assertTrue(0 < len(snapshots) < 200)
        self.assertEqual(len(deleted.read_text().split()), len(snapshots))

    def test_a_request_to_end_ends_a_scan_and_its_tool(self):
        for name in ("INT", "TERM", "HUP"):
            # The tool itself never ends.
            self.tool("home/.tools/opt/homebrew/bin/brew",
                      f"kill -{name} $PPID; exec tail -f /dev/null")
            process = self.run_program("scan", "--json", "--rule", "brew-cleanup", "--tools",
                                       self.home / ".tools")
            self.assertEqual((process.returncode, process.stdout, process.stderr),
                             (130, b"", b"zorvane-cli: interrupted\n"), name)
