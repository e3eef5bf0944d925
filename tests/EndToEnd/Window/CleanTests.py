#!/usr/bin/python3
"""Confirming a clean, the clean itself, and its report; after each step the disk is looked at."""

import os
import unittest

from window_test import WindowTest, byte_count
from cleaning import snapshot
from driving import DESKTOP
from support import rule

SCRIPT = "#!/bin/sh\n"
CONFIRMATION = "Confirm cleanup"


class CleanTests(WindowTest):
    def setUp(self):
        super().setUp()
        (self.home / ".cache").mkdir()
        for name in ("a1", "a2"):
            self.file(f"home/safe/{name}", b"x" * 8192)
        for name in ("b1", "b2"):
            self.file(f"home/review/{name}", b"x" * 16384)
        self.file("home/Documents/letter.txt", "kept")
        (self.home / "safe/way out").symlink_to(self.home / "Documents/letter.txt")
        self.deleted = self.world / "deleted"
        self.tool("usr/bin/tmutil", f'''case "$1" in
listlocalsnapshots)
    echo com.apple.TimeMachine.2026-01-01-000000.local
    echo com.apple.TimeMachine.2026-02-02-000000.local;;
deletelocalsnapshots) echo "$2" >> {self.deleted};;
esac''')
        self.tool("usr/bin/docker", "echo '{\"Type\":\"Images\",\"Reclaimable\":\"2GB\"}'")
        self.rules = self.catalog(
            rule("cache-safe", ["~/safe"]), rule("dev-review", ["~/review"], "B"),
            rule("tm-local-snapshots", [], "B", kind="command"),
            rule("docker-reclaimable", [], "B", kind="command"))

    def tool(self, path, script):
        tool = self.home / ".tools" / path
        tool.parent.mkdir(parents=True, exist_ok=True)
        tool.write_text(SCRIPT + script + "\n")
        tool.chmod(0o755)

    def start_and_scan(self):
        program = self.start("--catalog", self.rules, "--tools", self.home / ".tools")
        self.scan_in_window(program)
        return program

    def test_removes_exactly_what_was_confirmed_and_says_why_the_rest_stayed(self):
        program = self.start_and_scan()
        before = snapshot(self.home)
        program.click("dev-review, 2 items, 33 KB")
        program.click(str(self.home / "review/b1"), "check box")
        program.click("dev-review, 2 items, 33 KB")
        docker = program.see(lambda name: name.startswith("Unused Docker data")).get_name()
        program.click(docker)
        program.click("Docker — Images", "check box")
        program.click(docker)
        snapshots = program.see(lambda name: ", 2 items, Zero KB" in name).get_name()
        program.click(snapshots)
        program.click("Select all")
        program.click(snapshots)

        # 8192 and 8192 bytes of files, 16384 to review, and what the tool claims.
        total = byte_count(2 * 8192 + 16384 + 2 * 10**9)
        program.click("Clean " + total)
        program.see(CONFIRMATION)
        program.see("Removal is permanent — files do not go to the Trash.")
        delete = f"Delete {total} permanently"
        self.assertFalse(program.is_enabled(delete))
        box = program.see(lambda name: name.startswith("I understand that"), "check box").get_name()
        self.assertIn("dev-review", box)
        # Neither Return nor a press of what is not available removes anything.
        program.click(delete)
        program.press(delete)
        program.click(box)
        program.wait_for_tick(box)
        program.key("Return")
        program.key("Escape")
        program.see_no(CONFIRMATION)
        self.assertEqual(snapshot(self.home), before)

        program.click("Clean " + total)
        program.wait_for_tick(box, False)
        program.click("Cancel")
        program.see_no(CONFIRMATION)
        program.click("Clean " + total)
        program.click(box)
        program.wait_for(lambda: program.is_enabled(delete), "the button to delete")
        program.click(delete)

        program.see("freed — 5 items removed")
        program.see(byte_count(2 * 8192 + 16384))
        program.see(lambda name: name.startswith("Visible in Finder right now: "))
        program.see("1 in use by an open app")
        program.see("1 protected by Zorvane")
        self.assertFalse(program.seen(str(self.home / "safe/way out"), "list item"))
        program.click("Details")
        program.see(str(self.home / "safe/way out"), "list item")
        program.see("Docker — Images", "list item")
        gone = {str(self.home / path).encode() for path in ("safe/a1", "safe/a2", "review/b1")}
        after = snapshot(self.home)
        self.assertEqual(set(before) - set(after), gone)
        self.assertEqual(set(after) - set(before), set())
        self.assertEqual(self.deleted.read_text().split(),
                         ["2026-01-01-000000", "2026-02-02-000000"])

        program.click("Scan again")
        program.see("cache-safe, 1 items, Zero KB")
        program.see("dev-review, 1 items, 16 KB")
        self.close(program)

    def test_the_window_takes_no_input_during_a_clean_and_closing_finishes_what_is_in_hand(self):
        gate = self.world / "gate"
        os.mkfifo(gate)
        self.tool("usr/bin/tmutil", f'''case "$1" in
listlocalsnapshots)
    echo com.apple.TimeMachine.2026-01-01-000000.local
    echo com.apple.TimeMachine.2026-02-02-000000.local;;
deletelocalsnapshots) cat {gate}; echo "$2" >> {self.deleted};;
esac''')
        program = self.start_and_scan()
        snapshots = program.see(lambda name: ", 2 items, Zero KB" in name).get_name()
        program.click(snapshots)
        program.click("Select all")
        rescan = program.box("Rescan")
        program.click("Clean 16 KB")
        box = program.see(lambda name: name.startswith("I understand that"), "check box").get_name()
        program.click(box)
        program.click("Delete 16 KB permanently")
        program.see("Cleaning…")
        program.click_at(rescan[0] + 10, rescan[1] + 10)
        program.press("Rescan")
        program.key("Tab", "space")
        program.see("Cleaning…")

        program.click("Close", "push button")
        program.see("Finishing the item in hand, then closing…")
        program.key("Tab", "Down")
        self.assertEqual(program.focused(), [])
        self.assertFalse(self.deleted.exists())
        gate.write_text("")
        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(self.deleted.read_text().split(), ["2026-01-01-000000"])

    def test_a_clean_without_anything_skipped(self):
        (self.home / "safe/way out").unlink()
        program = self.start_and_scan()
        program.click("Clean 16 KB")
        self.assertFalse(program.seen(lambda name: name.startswith("I understand that")))
        program.see("cache-safe")
        program.press("Delete 16 KB permanently")
        program.see("freed — 2 items removed")
        self.assertFalse(program.seen("Details"))
        self.assertFalse(program.seen("That's why the freed total is smaller than the estimate."))
        program.key("Escape")
        program.see_no("freed — 2 items removed")
        # The list is that of the scan until the next.
        program.see("cache-safe, 2 items, 16 KB")
        self.assertEqual(os.listdir(self.home / "safe"), [])
        self.close(program)


if __name__ == "__main__":
    unittest.main()
