"""What a scan reports is what find(1) counts on the same home."""

import base64
import datetime
import json
import os
import subprocess

from support import (DAY, NOW, NOW_SECONDS, REPOSITORY, ProgramTest, exact_path, in_own_mounts,
                     paths, rule)

NANOSECONDS = 10**9


def find(*arguments):
    """The lines that find(1) prints, and whether it could read everything."""
    process = subprocess.run(["find", *arguments], capture_output=True, check=False)
    return process.stdout.split(b"\0")[:-1], process.returncode == 0


def nanoseconds(seconds):
    whole, _, fraction = seconds.partition(b".")
    return int(whole) * NANOSECONDS + int(fraction[:9].ljust(9, b"0"))


def independent_items(base):
    """{name: (bytes, newest change)} of what is in a folder, and whether it could be listed.

    A folder is worth the blocks (of 512 bytes) of everything below it that is no link; its own
    blocks do not count, its own time does. Each name of a hard link counts.
    """
    # A slash at the end: a base may be reached through a link.
    facts, _ = find(base + b"/", "-xdev", "-mindepth", "1", "-printf", r"%P\0%d %y %b %T@\0")
    items = {}
    for path, fact in zip(facts[::2], facts[1::2]):
        name, (depth, kind, blocks, time) = path.split(b"/")[0], fact.split()
        size, newest = items.get(name, (0, nanoseconds(time)))
        if kind != b"l":
            is_top_folder = kind == b"d" and depth == b"1"
            size += 0 if is_top_folder else int(blocks) * 512
            newest = max(newest, nanoseconds(time))
        items[name] = size, newest
    return items, find(base + b"/", "-mindepth", "1", "-maxdepth", "1", "-printf", "")[1]


def expand(base, home):
    """The folders that a base names: "~/", the two tokens, "*" for every entry of one folder."""
    base = {"$DARWIN_USER_CACHE_DIR": "~/.cache", "$DARWIN_USER_TEMP_DIR": "~/.tmp"}.get(base, base)
    folders = [os.fsencode(home) if base.startswith("~/") else b"/"]
    for part in base.split("/")[1:]:
        folders = [os.path.join(folder, name) for folder in folders
                   for name in ([os.fsencode(part)] if part != "*" else
                                sorted(os.listdir(folder)) if os.path.isdir(folder) else [])]
    inside = os.fsencode(os.path.realpath(home)) + b"/"
    return [folder for folder in folders
            if os.path.exists(folder) and os.path.realpath(folder).startswith(inside)]


def independent_scan(rules, home):
    """{rule id: ({path: (bytes, newest change)}, whether something could not be listed)}"""
    found = {}
    for rule_ in rules:
        limit = (NOW_SECONDS - rule_["minAgeDays"] * DAY) * NANOSECONDS
        items, had_errors = {}, False
        for base in (folder for base in rule_["basePaths"] for folder in expand(base, home)):
            inside, could_list = independent_items(base)
            had_errors = had_errors or not could_list
            for name in inside.keys() - set(map(os.fsencode, rule_["exclusions"])):
                if rule_["minAgeDays"] == 0 or inside[name][1] <= limit:
                    items[os.path.join(base, name)] = inside[name]
        if items or had_errors:
            found[rule_["id"]] = items, had_errors
    return found


def moment(text):
    whole, _, fraction = text.removesuffix("Z").partition(".")
    seconds = datetime.datetime.fromisoformat(whole + "+00:00").timestamp()
    return int(seconds) * NANOSECONDS + int(fraction.ljust(9, "0"))


class ScanTotals(ProgramTest):
    def test_a_sample_home_is_counted_as_find_counts_it(self):
        self.sample_home("--scale", "0.2")
        rules = json.loads((REPOSITORY / "CleanCore/Resources/rules.json").read_text())["rules"]
        expected = independent_scan([r for r in rules if r["kind"] == "fileSystem"], self.home)
        report = self.scan("--now", NOW, "--no-commands", status=1)
        scanned = {
            category["ruleId"]: (
                {exact_path(item): (item["sizeBytes"], moment(item["modifiedAt"]))
                 for item in category["items"]}, category["hadAccessErrors"])
            for category in report["categories"]}
        self.assertEqual(scanned.keys(), expected.keys())
        for name, found in expected.items():
            self.assertEqual(scanned[name], found, name)
        totals = {name: sum(size for size, _ in items.values())
                  for name, (items, _) in expected.items()}
        self.assertEqual({c["ruleId"]: c["totalBytes"] for c in report["categories"]}, totals)
        self.assertEqual(report["totalBytes"], sum(totals.values()))
        self.assertEqual(report["selectedBytes"], sum(
            totals.get(r["id"], 0) for r in rules if r["tier"] == "A"))
        # The home holds what is hard to count, or all this would tell little.
        self.assertGreater(report["totalBytes"], 10_000_000)
        self.assertTrue(any(errors for _, errors in expected.values()))

    def test_json_has_the_documented_shape_and_order(self):
        home = self.home = self.world / "home \udcff"
        self.file(home / "area/large", b"x" * 90_000)
        self.file(home / "other/entry", b"x" * 500_000)
        os.symlink("/", home / "area/link")
        os.utime(home / "area/link", ns=(0, 1_500_000_000_120_000_000), follow_symlinks=False)
        (home / "nothing").mkdir()
        # The same moment as NOW; the files are then exactly as old as they have to be.
        report = self.scan("--now", "2026-03-01T11:00:00-01:00", "--catalog", self.catalog(
            rule("zz-nothing", ["~/nothing"]), rule("cache-area", ["~/area"], days=400),
            rule("dev-other", ["~/other"], tier="B")))
        shown, exact = f"{self.world}/home \ufffd", os.fsencode(home)

        def item(name, size, time, selected):
            return {"path": shown + name, "pathBytes": base64.b64encode(
                exact + name.encode()).decode(), "sizeBytes": size, "modifiedAt": time,
                    "selected": selected}

        def category(name, tier, total, *items):
            return {"ruleId": name, "title": name, "tier": tier, "kind": "fileSystem",
                    "totalBytes": total, "hadAccessErrors": False, "items": list(items)}

        sizes = [(home / name).stat().st_blocks * 512 for name in ("other/entry", "area/large")]
        then = "2025-01-25T12:00:00Z"
        expected = {
            "home": shown, "homeBytes": base64.b64encode(exact).decode(), "categories": [
                category("dev-other", "B", sizes[0], item("/other/entry", sizes[0], then, False)),
                category("cache-area", "A", sizes[1], item("/area/large", sizes[1], then, True),
                         item("/area/link", 0, "2017-07-14T02:40:00.12Z", True))],
            "totalBytes": sum(sizes), "selectedBytes": sizes[1]}
        self.assertEqual(json.dumps(report, indent=1), json.dumps(expected, indent=1))

    def test_what_is_mounted_inside_an_item_is_not_counted(self):
        own = self.file("home/area/item/own", b"x" * 50_000)
        self.file("home/Documents/precious", b"x" * 70_000)
        (self.home / "area/item/foreign").mkdir()
        (self.home / "area/mounted").mkdir()
        mounted = self.scan("--catalog", self.catalog(rule()), wrapper=in_own_mounts(
            'cd "$1"\nmount -t tmpfs none area/item/foreign\nmount --bind Documents area/mounted\n'
            "head -c 300000 /dev/zero > area/item/foreign/file", self.home))
        self.assertEqual(mounted["totalBytes"], own.stat().st_blocks * 512)
        self.assertEqual(len(paths(mounted)), 2)
