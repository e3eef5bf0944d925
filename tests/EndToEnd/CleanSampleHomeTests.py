#!/usr/bin/env python3
"""Cleaning a realistic home removes exactly what was chosen, and says so truly."""

import os
import unittest

from cleaning import CleaningTest, exact_path, snapshot, without
from support import NOW


class CleanSampleHome(CleaningTest):
    def setUp(self):
        super().setUp()
        self.sample_home("--scale", "0.2")
        self.when = ("--now", NOW)

    def selected_items(self, report):
        return [item for category in report["categories"] for item in category["items"]
                if item["selected"]]

    def leads_out(self, path):
        """Whether a link leads elsewhere than into the folder that it lies in."""
        folder = os.path.dirname(path)
        return os.path.islink(path) and not os.path.realpath(path).startswith(folder + b"/")

    def test_the_default_selection_goes_and_nothing_else(self):
        before = snapshot(self.world)
        scanned = self.scan(*self.when, status=1)
        chosen = {exact_path(item): item["sizeBytes"] for item in self.selected_items(scanned)}
        blocked = {path for path in chosen if self.leads_out(path)}
        links = {path for path in chosen if os.path.islink(path)}
        self.assertGreater(len(chosen), 50)
        self.assertGreater(len(blocked), 1)
        self.assertGreater(len(links - blocked), 1)
        expected = {path: 0 if path in links else size
                    for path, size in chosen.items() if path not in blocked}

        report = self.clean("--safe", *self.when, status=1)
        self.assertEqual({exact_path(item): item["bytes"] for item in report["removed"]}, expected)
        self.assertEqual({exact_path(item): item["reason"] for item in report["skipped"]},
                         dict.fromkeys(blocked, "blockedBySafetyGuard"))
        self.assertEqual(report["totalBytesFreed"], sum(expected.values()))
        self.assertLessEqual(report["totalBytesFreed"], scanned["selectedBytes"])
        self.assertGreaterEqual(report["visibleFreedBytes"], 0)
        self.assert_snapshot(self.world, without(before, expected))

        left = self.scan(*self.when, status=1)
        self.assertEqual({exact_path(item) for item in self.selected_items(left)}, blocked)
        self.assertEqual(left["totalBytes"],
                         scanned["totalBytes"] - sum(chosen[path] for path in expected))
        again = self.clean("--safe", *self.when, status=1)
        self.assertEqual((again["removed"], again["totalBytesFreed"]), ([], 0))
        self.assert_snapshot(self.world, without(before, expected))

    def test_every_area_goes_and_every_canary_stays(self):
        before = snapshot(self.world)
        scanned = self.scan(*self.when, status=1)
        rules = [argument for category in scanned["categories"]
                 for argument in ("--rule", category["ruleId"])]
        report = self.clean(*rules, "--all", *self.when, status=1)
        removed = {exact_path(item) for item in report["removed"]}
        self.assertLessEqual(removed, {exact_path(item) for category in scanned["categories"]
                                       for item in category["items"]})
        trash = os.fsencode(self.home) + b"/.local/share/Trash/"
        records = {trash + b"info/" + os.path.basename(path) + b".trashinfo" for path in removed
                   if os.path.dirname(path) == trash + b"files"}
        records = {path for path in records if path in before and not os.path.islink(path)}
        self.assertGreater(len(records), 20)
        self.assert_snapshot(self.world, without(before, removed | records))
        for kept in ("no entry.txt", "record is a link.txt", "link to documents"):
            self.assertTrue(os.path.lexists(trash + os.fsencode(f"info/{kept}.trashinfo")), kept)
        canaries = [path for path in before if path.endswith(b"canary.txt")]
        self.assertGreater(len(canaries), 30)
        self.assertTrue(all(map(os.path.isfile, canaries)))

    def test_a_dry_run_lists_the_same_and_changes_nothing(self):
        before = snapshot(self.world)
        dry = self.clean("--safe", "--dry-run", *self.when, status=1)
        text = self.run_program("clean", "--safe", "--dry-run", "--home", self.home, *self.when)
        self.assertEqual((text.returncode, text.stderr), (1, b""))
        self.assertIn(b" would be freed", text.stdout)
        self.assert_snapshot(self.world, before)

        wet = self.clean("--safe", *self.when, status=1)
        # Areas of equal size come in the order in which the scan finished them.
        self.assertCountEqual(map(exact_path, dry["removed"]), map(exact_path, wet["removed"]))
        self.assertCountEqual([(exact_path(item), item["reason"]) for item in dry["skipped"]],
                              [(exact_path(item), item["reason"]) for item in wet["skipped"]])
        self.assertEqual((dry["dryRun"], wet["dryRun"], dry["visibleFreedBytes"]),
                         (True, False, 0))

    def test_the_report_for_people_says_what_went_and_why_something_stayed(self):
        process = self.run_program("clean", "--safe", "--yes", "--home", self.home, *self.when)
        self.assertEqual((process.returncode, process.stderr), (1, b""))
        text = process.stdout.decode()
        self.assertRegex(text, r"\A[0-9.]+ [KMG]B freed — [0-9]+ items removed\n")
        self.assertRegex(text, r"\nFree space has grown by [0-9.Zero]+ ([KMG]B|bytes?)\n")
        self.assertRegex(text, r"\n2 protected by Zorvane\n  They pointed into personal areas "
                               r"\(like Documents or Photos\)\. Zorvane refused to touch them\.\n")
        self.assertIn(f"{self.home}/.cache/link-to-documents\n", text)
        self.assertNotIn("in use by an open app", text)
        self.assertTrue(text.endswith(
            "That's why the freed total is smaller than the estimate.\n"), text[-200:])


if __name__ == "__main__":
    unittest.main()
