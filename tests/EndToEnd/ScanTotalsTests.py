#!/usr/bin/env python3
"""What a scan reports is what find(1) and du(1) count on the same home."""

import base64
import datetime
import json
import os
import subprocess
import unittest

from cleaning import exact_path
from support import DAY, NOW, NOW_SECONDS, REPOSITORY, ProgramTest, in_own_mounts, paths, rule

NANOSECONDS = 10**9


def find(*arguments):
    """The lines that find(1) prints, and whether it could read everything."""
    process = subprocess.run(["find", *arguments], capture_output=True, check=False)
    return process.stdout.split(b"\0")[:-1], process.returncode == 0


def nanoseconds(seconds):
    whole, _, fraction = seconds.partition(b".")
    return int(whole) * NANOSECONDS + int(fraction[:9].ljust(9, b"0"))


def independent_measure(item):
    """(bytes, newest change) of one entry.

    A folder is worth the blocks (of 512 bytes) of everything below it that is no link; its own
    blocks do not count, its own time does. Each name of a hard link counts, as with `du -l`.
    """
    [own], _ = find(item, "-maxdepth", "0", "-printf", r"%y %b %T@\0")
    kind, blocks, time = own.split()
    newest = nanoseconds(time)
    if kind == b"l":
        return 0, newest
    if kind != b"d":
        return int(blocks) * 512, newest
    inside, is_complete = find(item, "-xdev", "-mindepth", "1", "!", "-type", "l",
                               "-printf", r"%b %T@\0")
    entries = [entry.split() for entry in inside]
    size = sum(int(blocks) for blocks, _ in entries) * 512
    if is_complete:
        links, _ = find(item, "-type", "l", "-printf", r"%b\0")
        du = int(subprocess.run([b"du", b"-slx", b"--block-size=512", item],
                                capture_output=True, check=True).stdout.split(b"\t")[0])
        assert size == (du - int(blocks) - sum(map(int, links))) * 512
    return size, max([newest, *(nanoseconds(time) for _, time in entries)])


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
            # A slash at the end: a base may be reached through a link.
            entries, could_list = find(base + b"/", "-mindepth", "1", "-maxdepth", "1", "-printf",
                                       r"%f\0")
            had_errors = had_errors or not could_list
            for name in set(entries) - {os.fsencode(name) for name in rule_["exclusions"]}:
                size, newest = independent_measure(os.path.join(base, name))
                if rule_["minAgeDays"] == 0 or newest <= limit:
                    items[os.path.join(base, name)] = size, newest
        if items or had_errors:
            found[rule_["id"]] = items, had_errors
    return found


def moment(text):
    whole, _, fraction = text.removesuffix("Z").partition(".")
    seconds = datetime.datetime.fromisoformat(whole + "+00:00").timestamp()
    return int(seconds) * NANOSECONDS + int(fraction.ljust(9, "0"))


class ScanTotals(ProgramTest):
    def test_a_sample_home_is_counted_as_find_and_du_count_it(self):
        self.sample_home()
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
        safe = {r["id"] for r in rules if r["tier"] == "A"}
        self.assertEqual(report["selectedBytes"],
                         sum(total for name, total in totals.items() if name in safe))
        # The home holds what is hard to count, or all this would tell little.
        self.assertGreater(report["totalBytes"], 30_000_000)
        self.assertTrue(any(errors for _, errors in expected.values()))

    def test_json_has_the_documented_shape_and_order(self):
        self.file("home/area/small", b"x")
        self.file("home/area/large", b"x" * 90_000)
        self.file(b"home/area/invalid \xff\xfe".decode(errors="surrogateescape"), b"x" * 20_000)
        self.file("home/other/entry", b"x" * 500_000)
        os.symlink("/", self.home / "area/link")
        os.utime(self.home / "area/link", ns=(0, 1_500_000_000_120_000_000), follow_symlinks=False)
        (self.home / "nothing").mkdir()
        catalog = self.catalog(rule("zz-nothing", ["~/nothing"]), rule("cache-area", ["~/area"]),
                               rule("dev-other", ["~/other"], tier="B"))
        report = self.scan("--catalog", catalog, "--now", NOW)

        self.assertEqual(list(report), ["home", "categories", "totalBytes", "selectedBytes"])
        self.assertEqual(report["home"], str(self.home))
        self.assertEqual([c["ruleId"] for c in report["categories"]], ["dev-other", "cache-area"])
        other, area = report["categories"]
        self.assertEqual(list(area), ["ruleId", "title", "tier", "kind", "totalBytes",
                                      "hadAccessErrors", "items"])
        self.assertEqual([area[k] for k in ("title", "tier", "kind", "hadAccessErrors")],
                         ["cache-area", "A", "fileSystem", False])
        self.assertEqual([other["tier"], other["items"][0]["selected"]], ["B", False])
        self.assertEqual([os.path.basename(item["path"]) for item in area["items"]],
                         ["large", "invalid \ufffd\ufffd", "small", "link"])
        large, invalid, _, link = area["items"]
        self.assertEqual(list(large), ["path", "sizeBytes", "modifiedAt", "selected"])
        self.assertEqual(list(invalid),
                         ["path", "pathBytes", "sizeBytes", "modifiedAt", "selected"])
        self.assertEqual(base64.b64decode(invalid["pathBytes"]),
                         bytes(self.home) + b"/area/invalid \xff\xfe")
        self.assertEqual([link["sizeBytes"], link["modifiedAt"], link["selected"]],
                         [0, "2017-07-14T02:40:00.12Z", True])
        self.assertEqual(report["selectedBytes"], area["totalBytes"])

    def test_a_home_of_any_bytes(self):
        home = os.fsencode(self.world) + b"/home \xff"
        os.mkdir(home)
        process = self.run_program("scan", "--json", "--home", os.fsdecode(home))
        self.assertEqual((process.stderr, process.returncode), (b"", 0))
        report = json.loads(process.stdout)
        self.assertEqual(report["home"], f"{self.world}/home \ufffd")
        self.assertEqual(base64.b64decode(report["homeBytes"], validate=True), home)

    def test_ages_have_the_precision_of_the_file_system(self):
        for name, offset in (("exact", 0), ("younger", 1), ("older", -1)):
            path = self.file(f"home/area/{name}")
            os.utime(path, ns=(0, (NOW_SECONDS - 7 * DAY) * NANOSECONDS + offset))
        catalog = self.catalog(rule(days=7))
        report = self.scan("--catalog", catalog, "--now", NOW)
        self.assertEqual({os.path.basename(path) for path in paths(report)}, {"exact", "older"})
        report = self.scan("--catalog", catalog, "--now", "2026-03-01T13:00:00.000000001+01:00")
        self.assertEqual(len(paths(report)), 3)

    def test_what_is_mounted_inside_an_item_is_not_counted(self):
        self.file("home/area/item/own", b"x" * 50_000)
        self.file("home/area/item/cover", b"x")
        self.file("home/Documents/precious", b"x" * 70_000)
        for folder in ("foreign", "mirror"):
            (self.home / "area/item" / folder).mkdir()
        (self.home / "area/mounted").mkdir()
        catalog = self.catalog(rule())
        plain = self.scan("--catalog", catalog)
        mounts = in_own_mounts(
            'cd "$1"\n'
            "mount -t tmpfs none area/item/foreign\n"
            "mount --bind Documents area/item/mirror\n"
            "mount --bind Documents/precious area/item/cover\n"
            "mount --bind Documents area/mounted\n"
            "head -c 300000 /dev/zero > area/item/foreign/file", self.home)
        mounted = self.scan("--catalog", catalog, wrapper=mounts)

        sizes = {os.path.basename(item["path"]): item["sizeBytes"]
                 for item in mounted["categories"][0]["items"]}
        block = 4096
        self.assertEqual(sizes["mounted"], 0)
        self.assertLess(sizes["item"], plain["totalBytes"])
        self.assertLess(sizes["item"], 50_000 + 2 * block)
        self.assertGreaterEqual(sizes["item"], 50_000)


if __name__ == "__main__":
    unittest.main()
