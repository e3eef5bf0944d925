#!/usr/bin/env python3
"""What may be chosen, how, and that a wrong choice removes nothing."""

import os
import sys
import unittest

from cleaning import CleaningTest, exact_path, snapshot, without
from support import NOW, REPOSITORY, paths, rule

sys.path.append(str(REPOSITORY / "tools"))
from sample_home.names import HARD_NAMES, longest


class CleanChoice(CleaningTest):
    def setUp(self):
        super().setUp()
        for name in ("area/a", "area/b/inner", "area/excluded", "review/r", "other/o", "Documents/d"):
            self.file(f"home/{name}")
        self.file("home/area/young", age_days=1)
        os.utime(self.home / "area/b", (0, 0))
        self.given = ("--now", NOW, "--catalog", self.catalog(
            rule("cache-area", ["~/area"], days=7, exclusions=["excluded"]),
            rule("cache-review", ["~/review"], tier="B"),
            rule("cache-other", ["~/other"]),
            rule("cache-empty", ["~/nowhere"]),
            rule("tool-area", [], kind="command")))

    def path(self, name):
        return os.fsencode(self.home / name)

    def assert_removes(self, arguments, names):
        before = snapshot(self.world)
        report = self.clean(*arguments, *self.given)
        expected = [self.path(name) for name in names]
        self.assertCountEqual([exact_path(item) for item in report["removed"]], expected)
        self.assert_snapshot(self.world, without(before, expected))

    def test_wrong_usage_removes_nothing(self):
        before = snapshot(self.world)
        a = self.home / "area/a"
        area = ("--rule", "cache-area")
        for arguments in (
                (), ("--all",), ("--item", a), area, (*area, "--all", "--item", a),
                ("--safe", *area), ("--safe", "--all"), ("--safe", "--item", a),
                ("--rule", "", "--all"), ("--rule", "CACHE-AREA", "--all"),
                (*area, "--rule", "no-such-area", "--all"),
                (*area, "--item="), (*area, "--item", a, "--item", ""), (*area, "--item", "area/a"),
                (*area, "--item", f"{a}/"), (*area, "--item", f"{self.home}/area/./a"),
                (*area, "--item", f"{self.home}/area/b/../a"), (*area, "--item", self.home / "area"),
                (*area, "--item", self.home / "area/b/inner"), (*area, "--item", "/"),
                (*area, "--item", a, "--item", self.home / "area/missing"),
                (*area, "--item", self.home / "area/excluded"),
                (*area, "--item", self.home / "area/young"),
                (*area, "--item", self.home / "Documents/d"), (*area, "--item", self.home / "review/r"),
                (*area, "--item", f"{self.home}/area/\u0430"), (*area, "--item", f"[{a}]"),
                (*area, "--item", a, self.home / "area/b"),
                ("--safe", "--home", ""), ("--safe", "--home", self.home / "missing"),
                ("--safe", "--home", a), ("--safe", "--home", "/"),
                ("--safe", "--now", "yesterday"), ("--safe", "more"), ("--safe", "--unknown"),
                (*area, "--all=a"), ("--safe=no",)):
            for agreed in (("--yes",), ("--dry-run",)):
                with self.subTest(arguments=arguments, agreed=agreed):
                    given = ([] if "--home" in arguments else ["--home", self.home]) + list(
                        self.given[2:] if "--now" in arguments else self.given)
                    process = self.run_program("clean", *agreed, *given, *arguments)
                    self.assert_refused(process, 2)
        self.assert_snapshot(self.world, before)

    def test_all_of_some_areas_reviewed_ones_too(self):
        self.assert_removes(("--rule", "cache-area", "--all"), ["area/a", "area/b"])
        self.assert_removes(("--rule", "cache-review", "--rule", "cache-other", "--all"),
                            ["review/r", "other/o"])

    def test_only_the_named_items(self):
        self.assert_removes(("--rule", "cache-area", "--rule", "cache-review",
                             "--item", self.home / "area/a", "--item", self.home / "review/r",
                             "--item", self.home / "area/a"), ["area/a", "review/r"])

    def test_the_safe_areas(self):
        self.assert_removes(("--safe",), ["area/a", "area/b", "other/o"])
        self.assert_removes(("--safe",), [])

    def test_an_area_without_items(self):
        self.assert_removes(("--rule", "cache-empty", "--all"), [])
        # There is nothing to ask about.
        process = self.run_program("clean", "--rule", "cache-empty", "--all", "--home", self.home,
                                   *self.given)
        self.assertEqual((process.returncode, process.stderr), (0, b""))

    def test_items_of_any_name(self):
        names = [name if isinstance(name, bytes) else name.encode()
                 for name in (*HARD_NAMES, longest())]
        self.assertTrue({"composed \u00e9".encode(), "composed e\u0301".encode()} <= {*names})
        for name in names:
            with open(os.path.join(self.path("area"), name), "wb") as file:
                file.write(b"x")
            os.utime(file.name, (0, 0))
        for name in names:
            with self.subTest(name):
                before = snapshot(self.world)
                item = os.path.join(self.path("area"), name)
                process = self.run_program("clean", "--dry-run", "--rule", "cache-area", "--item",
                                           os.fsdecode(item), "--home", self.home, *self.given)
                self.assertEqual((process.returncode, process.stderr), (0, b""))
                self.assertNotRegex(process.stdout, rb"[\x00-\x09\x0b-\x1f\x7f]|\xff|\xe2\x80\xae")
                report = self.clean("--rule", "cache-area", "--item", os.fsdecode(item),
                                    *self.given)
                self.assertEqual([exact_path(each) for each in report["removed"]], [item])
                self.assert_snapshot(self.world, without(before, [item]))

    def test_an_area_that_cannot_be_read_is_told(self):
        sealed = self.home / "area/b"
        self.given = ("--now", NOW, "--catalog", self.catalog(
            rule("cache-area", [str(sealed), "~/other"]), rule("cache-review", ["~/review"])))
        sealed.chmod(0)
        before = snapshot(self.world)
        process = self.run_program("clean", "--safe", "--yes", "--home", self.home, *self.given)
        self.assertEqual(process.returncode, 1)
        self.assertRegex(process.stderr.decode(), r"\Azorvane-cli: .*could not be read.*\n\Z")
        self.assert_snapshot(self.world, without(before, [self.path("other/o"),
                                                          self.path("review/r")]))
        # What was not asked for does not matter.
        self.clean("--rule", "cache-review", "--all", *self.given)

    def test_overlapping_areas_offer_and_free_everything_once(self):
        big = self.file("home/area/b/big", b"x" * 100_000)
        os.symlink("area", self.home / "link")
        self.given = ("--now", NOW, "--catalog", self.catalog(
            rule("cache-outer", ["~/area", "~/area/", "~/link"]), rule("cache-same", ["~/link"]),
            rule("cache-inner", ["~/area/b", "~/link/b"])))
        scanned = self.scan(*self.given)
        listed = [os.path.realpath(path) for path in paths(scanned)]
        self.assertCountEqual(listed, [str(self.home / "area" / name) for name in
                                       ("a", "excluded", "young", "b/inner", "b/big")])
        report = self.clean("--safe", *self.given)
        self.assertEqual(report["skipped"], [])
        self.assertEqual(report["totalBytesFreed"], scanned["totalBytes"])
        self.assertFalse(big.exists())

    def test_a_part_of_the_areas_is_what_the_scan_of_all_lists_there(self):
        self.file("home/area/b/deep/leaf")
        os.symlink("area/b", self.home / "link")
        for name, rules in {
                "a review area inside a safe one's item": (
                    rule("outer", ["~/area"]), rule("inner", ["~/area/b"], tier="B")),
                "a review area on a safe one's folder": (
                    rule("safe", ["~/area"]), rule("review", ["~/area"], tier="B", days=30)),
                "by a link": (rule("outer", ["~/area"]), rule("linked", ["~/link/deep"], tier="B")),
                "by a wildcard": (rule("outer", ["~/area"]), rule("any", ["~/*/b"], tier="B")),
                "an exclusion inside": (
                    rule("outer", ["~/area"]),
                    rule("inner", ["~/area/b"], tier="B", exclusions=["inner"])),
                "safe areas": (rule("b-same", ["~/area"]), rule("a-same", ["~/area"]),
                               rule("inner", ["~/area/b/deep"])),
                "a base that is no path": (rule("outer", ["~/area"]), rule("odd", ["area"]))}.items():
            with self.subTest(name):
                given = ("--now", NOW, "--catalog", self.catalog(*rules))
                scanned = self.scan(*given)
                selected = [item["path"] for category in scanned["categories"]
                            for item in category["items"] if item["selected"]]
                self.assertCountEqual(self.would_remove("--safe", *given), selected)
                for category in (each["id"] for each in rules):
                    listed = [each for each in scanned["categories"] if each["ruleId"] == category]
                    self.assertEqual(self.scan("--rule", category, *given)["categories"], listed)
                    self.assertCountEqual(self.would_remove("--rule", category, "--all", *given),
                                          paths({"categories": listed}))

    def would_remove(self, *arguments):
        return [item["path"] for item in self.clean("--dry-run", *arguments)["removed"]]

    def test_what_cannot_be_removed_is_reported_and_left(self):
        folder = self.home / "area"
        os.chmod(folder, 0o500)
        before = snapshot(self.world)
        chosen = ("--rule", "cache-area", "--rule", "cache-other", "--item", folder / "a",
                  "--item", self.home / "other/o")
        report = self.clean(*chosen, *self.given, status=1)
        self.assertEqual(report["skipped"], [{"path": str(folder / "a"),
                                              "reason": "removalFailed"}])
        self.assertEqual([item["path"] for item in report["removed"]],
                         [str(self.home / "other/o")])
        self.assert_snapshot(self.world, without(before, [self.home / "other/o"]))
        process = self.run_program("clean", *chosen[:2], *chosen[4:6], "--yes", "--home", self.home,
                                   *self.given)
        text = process.stdout.decode()
        self.assertTrue(text.startswith("Zero KB freed — 0 items removed\n"), text)
        self.assertTrue(text.endswith(f"""
1 in use by an open app
  They were being written to right now. Close the app and run Zorvane again to clear them.
    {folder}/a
That's why the freed total is smaller than the estimate.
"""), text)


if __name__ == "__main__":
    unittest.main()
