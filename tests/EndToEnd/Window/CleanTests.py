"""Confirming a clean, the clean itself, and its report; after each step the disk is looked at."""

import os
import subprocess

from window_test import WindowTest, byte_count
from support import rule, snapshot

UNDERSTOOD = "I understand that"


class CleanTests(WindowTest):
    def setUp(self):
        super().setUp()
        for name, size in (("safe/a1", 8192), ("safe/a2", 8192), ("review/b1", 16384),
                           ("review/b2", 16384), ("Documents/letter.txt", 1)):
            self.file(f"home/{name}", b"x" * size)
        (self.home / "safe/way out").symlink_to(self.home / "Documents/letter.txt")
        self.deleted = self.world / "deleted"
        self.gate = self.world / "gate"
        self.tool("home/.tools/usr/bin/tmutil", f'''case "$1" in
listlocalsnapshots)
    printf 'com.apple.TimeMachine.2026-%s-000000.local\\n' 01-01 02-02;;
deletelocalsnapshots) [ ! -p {self.gate} ] || cat {self.gate}; echo "$2" >> {self.deleted};;
esac''')
        self.tool("home/.tools/usr/bin/docker",
                  "echo '{\"Type\":\"Images\",\"Reclaimable\":\"2GB\"}'")

    def start_and_scan(self):
        catalog = self.catalog(
            rule("cache-safe", ["~/safe"]), rule("dev-review", ["~/review"], "B"),
            rule("tm-local-snapshots", [], "B", kind="command"),
            rule("docker-reclaimable", [], "B", kind="command"))
        program = self.start("--catalog", catalog, *self.tools)
        self.scan_in_window(program)
        return program

    def test_removes_exactly_what_was_confirmed_and_says_why_the_rest_stayed(self):
        program = self.start_and_scan()
        before = snapshot(self.home)
        for area, box in (("dev-review, 2", f"{self.home}/review/b1"),
                          ("Unused Docker data, 1", "Docker — Images")):
            header = program.see(lambda name: name.startswith(area)).get_name()
            program.click(header)
            program.click(box)
            program.click(header)
        # 8192 and 8192 bytes of files, 16384 to review, and what the tool claims.
        total = byte_count(2 * 8192 + 16384 + 2 * 10**9)
        program.click("Clean " + total)
        program.see("Removal is permanent — files do not go to the Trash.")
        delete = f"Delete {total} permanently"
        self.assertFalse(program.is_enabled(delete))
        box = program.see(lambda name: name.startswith(UNDERSTOOD), "check box").get_name()
        # Neither Return nor a press of what is not available removes anything.
        program.click(delete)
        program.press(delete)
        program.click(box)
        program.wait_for_tick(box)
        program.key("Return", "Escape")
        program.see_no("Confirm cleanup")
        self.assertEqual(snapshot(self.home), before)

        program.click("Clean " + total)
        program.wait_for_tick(box, False)
        program.click(box)
        program.wait_for(lambda: program.is_enabled(delete), "the button to delete")
        program.click(delete)
        program.see("freed — 3 items removed")
        program.see(byte_count(2 * 8192 + 16384))
        program.see("1 in use by an open app")
        program.see("1 protected by Zorvane")
        program.click("Details")
        program.see(str(self.home / "safe/way out"), "list item")
        program.see("Docker — Images", "list item")
        gone = {str(self.home / path).encode() for path in ("safe/a1", "safe/a2", "review/b1")}
        self.assertEqual(before.keys() ^ snapshot(self.home).keys(), gone)
        program.click("Scan again")
        program.see("cache-safe, 1 items, Zero KB")
        program.see("dev-review, 1 items, 16 KB")
        self.close(program)

    def test_tells_what_the_disk_gains_before_and_after(self):
        (self.home / "Documents/twin").hardlink_to(self.home / "safe/a1")
        with (self.home / "safe/a2").open("rb") as file:
            holder = subprocess.Popen(["sleep", "600"], stdin=file)
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        program = self.start_and_scan()
        header = program.see(lambda name: name.startswith("cache-safe")).get_name()
        program.click(header)
        for item, gain in (("a1", "Zero KB"), ("a2", "Zero KB to 8 KB")):
            box = program.see(f"{self.home}/safe/{item}", "check box")
            program.wait_for(lambda: box.get_description() == f"gives back {gain}", gain)
        program.click("Clean 16 KB")
        program.click("Free space will grow by Zero KB to 8 KB")
        program.see("Files with several names")
        program.see("Open in sleep")
        program.click("Cancel")
        holder.kill()
        holder.wait()
        program.click("Rescan")
        program.click("Clean 16 KB")
        program.click("Free space will grow by 8 KB")
        program.see_no("Open in sleep")
        program.click("Delete 16 KB permanently")
        program.click("Why the free space has grown by less")
        program.see("Files with several names")
        program.click("Close")
        self.close(program)

    def test_nothing_is_taken_during_a_clean_and_SIGTERM_finishes_what_is_in_hand(self):
        os.mkfifo(self.gate)
        program = self.start_and_scan()
        program.click(program.see(lambda name: ", 2 items, Zero KB" in name).get_name())
        program.click("Select all")
        rescan = program.box("Rescan")
        program.click("Clean 16 KB")
        program.click(program.see(lambda name: name.startswith(UNDERSTOOD), "check box").get_name())
        program.click("Delete 16 KB permanently")
        program.see("Cleaning…")
        program.click_at(rescan[0] + 10, rescan[1] + 10)
        program.press("Rescan")
        program.key("Tab", "space")
        # The end of a session does what the button for closing does.
        program.process.terminate()
        program.see("Finishing the item in hand, then closing…")
        program.key("Tab", "Down")
        self.assertEqual(program.focused(), [])
        self.assertFalse(self.deleted.exists())
        self.gate.write_text("")
        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(self.deleted.read_text().split(), ["2026-01-01-000000"])
