"""What may be chosen, how, and that a wrong choice removes nothing; the guard's verdicts."""

import json
import os
import sys

from support import NOW, REPOSITORY, ProgramTest, exact_path, paths, rule, snapshot

sys.path.append(str(REPOSITORY / "tools"))
from sample_home.names import HARD_NAMES, longest


class CleanChoice(ProgramTest):
    def setUp(self):
        super().setUp()
        for name in ("area/a", "area/b/inner", "area/excluded", "review/r", "other/o", "Documents/d"):
            self.file(f"home/{name}")
        self.file("home/area/young", age_days=1)
        os.utime(self.home / "area/b", (0, 0))
        self.given = ("--now", NOW, "--catalog", self.catalog(
            rule("cache-area", ["~/area"], days=7, exclusions=["excluded"]),
            rule("cache-review", ["~/review"], "B"), rule("cache-other", ["~/other"]),
            rule("cache-empty", ["~/nowhere"]), rule("tool-area", [], kind="command")))

    def test_wrong_usage_removes_nothing(self):
        before = snapshot(self.world)
        a, area = self.home / "area/a", ("--rule", "cache-area")
        for arguments in (
                (), ("--all",), ("--item", a), area, (*area, "--all", "--item", a),
                ("--safe", *area), ("--safe", "--all"), ("--safe", "--item", a), ("--safe", "more"),
                ("--rule", "CACHE-AREA", "--all"), (*area, "--rule", "no-such-area", "--all"),
                (*area, "--item="), (*area, "--item", a, self.home / "area/b"), (*area, "--all=a"),
                *((*area, "--item", a, "--item", item) for item in (
                    "", "area/a", "/", f"{a}/", f"[{a}]", *(f"{self.home}/{name}" for name in (
                        "area/./a", "area/b/../a", "area", "area/b/inner", "area/missing",
                        "area/excluded", "area/young", "Documents/d", "review/r", "area/\u0430"))))):
            for agreed in (("--yes",), ("--dry-run",)):
                with self.subTest(arguments=arguments, agreed=agreed):
                    self.assert_refused(self.run_program("clean", *agreed, "--home", self.home,
                                                         *self.given, *arguments), 2)
        self.assert_left(before)

    def test_a_part_of_an_area_that_is_cleared_as_a_whole_is_refused(self):
        self.file("home/.tools/opt/homebrew/bin/brew", mode=0o755, content="#!/bin/sh\n"
                  "[ $2 = --dry-run ] && printf 'Would remove: /c/%s (1KB)\\n' a b\nexit 0\n")
        given = ("--yes", "--rule", "brew-cleanup", "--home", self.home, "--tools",
                 self.home / ".tools", "--item", "/c/a")
        self.assert_refused(self.run_program("clean", *given), 2)
        whole = self.run_program("clean", *given, "--item", "/c/b", "--json")
        self.assertEqual([item["path"] for item in json.loads(whole.stdout)["removed"]],
                         ["/c/a", "/c/b"])

    def test_exactly_what_was_chosen_goes(self):
        for arguments, names in (
                (("--rule", "cache-empty", "--all"), []),
                (("--rule", "cache-area", "--rule", "cache-review", "--item", self.home / "area/a",
                  "--item", self.home / "review/r", "--item", self.home / "area/a"),
                 ["area/a", "review/r"]),
                (("--safe",), ["area/b", "other/o"]), (("--safe",), [])):
            with self.subTest(arguments):
                before = snapshot(self.world)
                expected = [os.fsencode(self.home / name) for name in names]
                removed = self.clean(*arguments, *self.given)["removed"]
                self.assertCountEqual(map(exact_path, removed), expected)
                self.assert_left(before, expected)
        # There is nothing to ask about.
        process = self.run_program("clean", "--rule", "cache-empty", "--all", "--home", self.home,
                                   *self.given)
        self.assertEqual((process.returncode, process.stderr), (0, b""))

    def test_items_of_any_name(self):
        folder = os.fsencode(self.home / "area")
        items = [os.path.join(folder, name if isinstance(name, bytes) else name.encode())
                 for name in (*HARD_NAMES, longest())]
        for item in items:
            with open(item, "wb") as file:
                file.write(b"x")
            os.utime(item, (0, 0))
        for item in items:
            with self.subTest(item):
                before = snapshot(self.world)
                chosen = ("--rule", "cache-area", "--item", os.fsdecode(item), *self.given)
                process = self.run_program("clean", "--dry-run", "--home", self.home, *chosen)
                self.assertEqual((process.returncode, process.stderr), (0, b""))
                self.assertNotRegex(process.stdout, rb"[\x00-\x09\x0b-\x1f\x7f]|\xff|\xe2\x80\xae")
                self.assertEqual(list(map(exact_path, self.clean(*chosen)["removed"])), [item])
                self.assert_left(before, [item])

    def test_a_part_of_the_areas_is_what_the_scan_of_all_lists_there(self):
        os.symlink("area/b", self.home / "link")
        given = ("--now", NOW, "--catalog", self.catalog(
            rule("outer", ["~/area", "~/area/"]), rule("inner", ["~/link"], "B"),
            rule("same", ["~/other"]), rule("any", ["~/oth*"], "B", days=30)))
        scanned = self.scan(*given)
        self.assertEqual(len({os.path.realpath(path) for path in paths(scanned)}), 5)
        for category in scanned["categories"]:
            chosen = ("--rule", category["ruleId"], *given)
            self.assertEqual(self.scan(*chosen)["categories"], [category])
            removed = self.clean("--dry-run", "--all", *chosen)["removed"]
            self.assertCountEqual(map(exact_path, removed), map(exact_path, category["items"]))

    def test_what_cannot_be_read_or_removed_is_told_and_left(self):
        os.chmod(self.home / "area", 0o500)
        os.chmod(self.home / "review", 0)
        before = snapshot(self.world)
        item, other = self.home / "area/a", self.home / "other/o"
        report = self.clean("--rule", "cache-area", "--rule", "cache-other", "--item", item,
                            "--item", other, *self.given, status=1)
        self.assertEqual(report["skipped"], [{"path": str(item), "reason": "removalFailed"}])
        self.assertEqual(list(map(exact_path, report["removed"])), [os.fsencode(other)])
        self.assert_left(before, [other])
        process = self.run_program("clean", "--rule", "cache-area", "--item", item, "--yes",
                                   "--home", self.home, *self.given)
        self.assertRegex(process.stdout.decode(), rf"""\AZero KB freed — 0 items removed\n(.+\n)*
1 in use by an open app
  They were being written to right now\. Close the app and run Zorvane again to clear them\.
    {item}
That's why the freed total is smaller than the estimate\.\n\Z""".replace("\n1 in", "1 in"))
        self.clean("--rule", "cache-empty", "--all", *self.given)
        unreadable = self.run_program("clean", "--rule", "cache-review", "--all", "--yes", "--home",
                                      self.home, *self.given)
        self.assertEqual(unreadable.returncode, 1)
        self.assertRegex(unreadable.stderr, rb"\Azorvane-cli: .*could not be read.*\n\Z")

    def test_the_guards_verdicts(self):
        cache = self.home / "area"
        for name, target in (("documents", "../Documents"), ("root", "/"), ("inside", "b")):
            os.symlink(target, cache / name)
        for path, base, verdict in (
                (cache / "b/inner", cache, "allowed"), (cache / "inside", cache, "allowed"),
                ("home/area/./b//", f"{cache}/../area/", "allowed"),
                (cache, cache, "blocked: outsideAllowedBase"),
                (cache / "documents/d", cache, "blocked: protectedUserPath"),
                (cache / "root", cache, "blocked: criticalSystemPath")):
            process = self.run_program("guard", path, "--base", base)
            self.assertEqual((process.stdout.decode(), process.stderr, process.returncode),
                             (verdict + "\n", b"", 0 if verdict == "allowed" else 1), path)
        for arguments in ((cache,), ("", "--base", cache), (cache, "--base", ""),
                          (cache, "x", "--base", cache), (cache, "--base", cache, "--yes")):
            self.assert_refused(self.run_program("guard", *arguments), 2)
