"""What a scan reports is what find(1) counts on the same home."""

import base64
import datetime
import json
import os
import subprocess

from support import NOW, REPOSITORY, ProgramTest, exact_path, in_own_mounts, rule

TOKENS = {"$DARWIN_USER_CACHE_DIR": "~/.cache", "$DARWIN_USER_TEMP_DIR": "~/.tmp"}
AREA = ("ruleId", "title", "tier", "kind", "totalBytes", "hadAccessErrors", "items")
ITEM = ("path", "pathBytes", "sizeBytes", "modifiedAt", "selected")


def independent_items(base):
    """{name: (bytes, newest change)} of what is in a folder.

    A folder is worth the blocks (of 512 bytes) of everything below it that is no link; its own
    blocks do not count, its own time does. Each name of a hard link counts.
    """
    # A slash at the end: a base may be reached through a link.
    facts = subprocess.run(
        ["find", base + "/", "-xdev", "-mindepth", "1", "-printf", r"%P\0%d %y %b %TFT%TT\0"],
        capture_output=True, check=False, env={**os.environ, "TZ": "UTC"}).stdout
    facts = os.fsdecode(facts).split("\0")
    items = {}
    for path, fact in zip(facts[::2], facts[1::2]):
        name, (depth, kind, blocks, time) = path.split("/")[0], fact.split()
        size, newest = items.get(name, (0, time))
        if kind != "l":
            size += 0 if (kind, depth) == ("d", "1") else int(blocks) * 512
            newest = max(newest, time)
        items[name] = size, newest
    return items


def expand(base, home):
    """The folders in the home that a base names."""
    base = TOKENS.get(base, base)
    return [str(folder) for folder in (home.glob(base[2:]) if base.startswith("~/") else ())
            if os.path.realpath(folder).startswith(f"{home}/")]


def independent_scan(rules, home):
    """{rule id: ({path: (bytes, newest change)}, whether something could not be listed)}"""
    found = {}
    for each in rules:
        limit = datetime.datetime(2026, 3, 1, 12) - datetime.timedelta(each["minAgeDays"])
        items, had_errors = {}, False
        for base in (folder for base in each["basePaths"] for folder in expand(base, home)):
            had_errors = had_errors or not os.access(base, os.R_OK | os.X_OK)
            items.update((os.path.join(base, name), facts)
                         for name, facts in independent_items(base).items()
                         if name not in each["exclusions"]
                         and (each["minAgeDays"] == 0 or facts[1] <= limit.isoformat() + ".0000000000"))
        if items or had_errors:
            # The trailing zeros of a fraction are not written.
            found[each["id"]] = {os.fsencode(path): (size, time.rstrip("0").rstrip(".") + "Z")
                                 for path, (size, time) in items.items()}, had_errors
    return found


class ScanTotals(ProgramTest):
    def test_a_sample_home_is_counted_as_find_counts_it(self):
        self.sample_home()
        rules = json.loads((REPOSITORY / "CleanCore/Resources/rules.json").read_text())["rules"]
        expected = independent_scan([r for r in rules if r["kind"] == "fileSystem"], self.home)
        report = self.scan("--now", NOW, "--no-commands", status=1)
        totals = {}
        for category in report["categories"]:
            name, items = category["ruleId"], category["items"]
            self.assertEqual(
                ({exact_path(item): (item["sizeBytes"], item["modifiedAt"]) for item in items},
                 category["hadAccessErrors"]), expected[name], name)
            totals[name] = category["totalBytes"]
        self.assertEqual(totals, {name: sum(size for size, _ in items.values())
                                  for name, (items, _) in expected.items()})
        self.assertEqual(report["totalBytes"], sum(totals.values()))
        self.assertEqual(report["selectedBytes"], sum(
            totals.get(r["id"], 0) for r in rules if r["tier"] == "A"))
        # The home holds what is hard to count, or all this would tell little.
        self.assertGreater(report["totalBytes"], 10_000_000)
        self.assertTrue(any(errors for _, errors in expected.values()))

    def test_json_has_the_documented_shape_and_order(self):
        home = self.world / "home \udcff"
        other, large = (self.file(home / name, b"x" * size).stat().st_blocks * 512
                        for name, size in (("other/entry", 500_000), ("area/large", 90_000)))
        os.symlink("/", home / "area/link")
        os.utime(home / "area/link", ns=(0, 1_500_000_000_120_000_000), follow_symlinks=False)
        (home / "nothing").mkdir()
        # The same moment as NOW; the files are then exactly as old as they have to be.
        catalog = self.catalog(
            rule("zz-nothing", ["~/nothing"]), rule("cache-area", ["~/area"], days=400),
            rule("dev-other", ["~/other"], tier="B"))
        report = self.scan("--home", home, "--now", "2026-03-01T11:00:00-01:00", "--catalog", catalog)
        shown, then = f"{self.world}/home \ufffd", "2025-01-25T12:00:00Z"

        def item(name, *values):
            exact = base64.b64encode(os.fsencode(home) + name.encode()).decode()
            return dict(zip(ITEM, (shown + name, exact, *values)))

        expected = {"home": shown, "homeBytes": item("")["pathBytes"], "categories": [
            dict(zip(AREA, ("dev-other", "dev-other", "B", "fileSystem", other, False, [
                item("/other/entry", other, then, False)]))),
            dict(zip(AREA, ("cache-area", "cache-area", "A", "fileSystem", large, False, [
                item("/area/large", large, then, True),
                item("/area/link", 0, "2017-07-14T02:40:00.12Z", True)])))],
            "totalBytes": other + large, "selectedBytes": large}
        self.assertEqual(json.dumps(report), json.dumps(expected))

    def test_what_is_mounted_inside_an_item_is_not_counted(self):
        own = self.file("home/area/item/own", b"x" * 50_000)
        self.file("home/Documents/precious", b"x" * 70_000)
        for name in ("item/foreign", "mounted"):
            (self.home / "area" / name).mkdir()
        mounted = self.scan("--catalog", self.catalog(rule()), wrapper=in_own_mounts(
            'cd "$1"\nmount -t tmpfs none area/item/foreign\nmount --bind Documents area/mounted\n'
            "head -c 300000 /dev/zero > area/item/foreign/file", self.home))
        self.assertEqual(mounted["totalBytes"], own.stat().st_blocks * 512)
        self.assertEqual(len(mounted["categories"][0]["items"]), 2)
