"""What may be chosen, how, and that a wrong choice removes nothing; the guard's verdicts."""

import json
import os

from support import NOW, ProgramTest, exact_path, rule, snapshot

ODD = "two\nlines \u202e\udcff"


class CleanChoice(ProgramTest):
    def setUp(self):
        super().setUp()
        for name in ("a", "b/inner", "excluded", ODD, "inner/i", "../review/r", "../other/o",
                     "../Documents/d"):
            self.file(f"home/area/{name}")
        self.file("home/area/young", age_days=1)
        for name in ("b", "inner"):
            os.utime(self.home / "area" / name, (0, 0))
        self.given = ("--now", NOW, "--catalog", self.catalog(
            rule("cache-area", ["~/area"], days=7, exclusions=["excluded"]),
            # What is in an area to review does not go with the safe area around it.
            rule("cache-review", ["~/review", "~/area/inner"], "B"), rule("cache-other", ["~/other"]),
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
                        "area/excluded", "area/young", "Documents/d", "review/r"))))):
            for agreed in ("--yes", "--dry-run"):
                process = self.run_program("clean", agreed, *self.given, *arguments)
                self.assert_refused(process, 2)
        self.assert_left(before)

    def test_a_part_of_an_area_that_is_cleared_as_a_whole_is_refused(self):
        self.tool("home/.tools/opt/homebrew/bin/brew",
                  "[ $2 = --dry-run ] && printf 'Would remove: /c/%s (1KB)\\n' a b; exit 0")
        given = ("clean", "--yes", "--rule", "brew-cleanup", "--item", "/c/a", "--tools",
                 self.home / ".tools")
        self.assert_refused(self.run_program(*given), 2)
        whole = json.loads(self.run_program(*given, "--item", "/c/b", "--json").stdout)
        self.assertEqual([item["path"] for item in whole["removed"]], ["/c/a", "/c/b"])

    def test_exactly_what_was_chosen_goes(self):
        items = ("--item", self.home / "area/a", "--item", self.home / "review/r")
        for arguments, *names in (
                (("--rule", "cache-empty", "--all"),),
                (("--rule", "cache-area", "--rule", "cache-review", *items, *items),
                 "area/a", "review/r"),
                (("--rule", "cache-area", "--item", self.home / "area" / ODD), f"area/{ODD}"),
                (("--safe",), "area/b", "other/o"), (("--safe",),)):
            before = snapshot(self.world)
            expected = [os.fsencode(self.home / name) for name in names]
            removed = self.clean(*arguments, *self.given)["removed"]
            self.assertCountEqual(map(exact_path, removed), expected)
            self.assert_left(before, expected)
        # There is nothing to ask about.
        process = self.run_program("clean", "--rule", "cache-empty", "--all", *self.given)
        self.assertEqual((process.returncode, process.stderr), (0, b""))

    def test_what_cannot_be_read_or_removed_is_told_and_left(self):
        os.chmod(self.home / "area", 0o500)
        os.chmod(self.home / "review", 0)
        before = snapshot(self.world)
        item, other = str(self.home / "area/a"), str(self.home / "other/o")
        report = self.clean("--rule", "cache-area", "--rule", "cache-other", "--item", item,
                            "--item", other, *self.given, status=1)
        self.assertEqual(report["skipped"], [{"path": item, "reason": "removalFailed"}])
        self.assertEqual([removed["path"] for removed in report["removed"]], [other])
        self.assert_left(before, [other])
        unreadable = self.run_program("clean", "--dry-run", "--rule", "cache-review", "--all",
                                      *self.given)
        self.assertEqual(unreadable.returncode, 1)
        self.assertRegex(unreadable.stderr, rb"\Azorvane-cli: .*could not be read.*\n\Z")

    def test_the_guards_verdicts(self):
        cache = self.home / "area"
        for name, target in (("documents", "../Documents"), ("root", "/"), ("inside", "b")):
            os.symlink(target, cache / name)
        for path, base, verdict in (
                (cache / "inside", cache, "allowed"),
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
