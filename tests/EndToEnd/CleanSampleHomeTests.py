"""Cleaning a realistic home removes exactly what was chosen, and says so truly."""

import os

from support import NOW, ProgramTest, exact_path, snapshot

# What the sample home keeps of real state inside the folders that are cleaned.
KEPT = """.config/hexchat .config/unity3d/Studio .cache/keepassxc .cache/doc .cache/ibus .cache/rclone
    .cache/evolution .cache/huggingface/token .cache/git .config/google-chrome/Default .mozilla
    .config/Slack/Crashpad/settings.dat .tmp/.X11-unix .var/app/org.gimp.GIMP/config""".split()


class CleanSampleHome(ProgramTest):
    def setUp(self):
        super().setUp()
        self.sample_home()
        self.before = snapshot(self.world)
        self.scanned = self.scan("--now", NOW, status=1)
        self.offered = {exact_path(item): item for category in self.scanned["categories"]
                        for item in category["items"]}

    def test_the_default_selection_goes_as_the_dry_run_said_and_nothing_else(self):
        dry = self.clean("--safe", "--dry-run", "--now", NOW, status=1)
        self.assert_left(self.before)
        report = self.clean("--safe", "--now", NOW, status=1)
        chosen = {path: item["sizeBytes"] for path, item in self.offered.items() if item["selected"]}
        links = {path for path in chosen if path in self.before and self.before[path][0][0] == "l"}
        # Links that lead elsewhere than into the folder that they lie in.
        blocked = {path for path in links if os.path.lexists(path) and not os.path.realpath(
            path).startswith(os.path.dirname(path) + b"/")}
        self.assertTrue(len(chosen) > 50 and len(blocked) > 1 and len(links - blocked) > 1)
        unseen = {path for path in chosen if self.offered[path].get("incomplete")}
        self.assertEqual({os.path.basename(path) for path in unseen}, {b"locked-inside"})
        expected = {path: 0 if path in links else size
                    for path, size in chosen.items() if path not in blocked | unseen}
        for told in (dry, report):
            self.assertEqual({exact_path(item): item["bytes"] for item in told["removed"]}, expected)
            self.assertEqual({exact_path(item): item["reason"] for item in told["skipped"]},
                             dict.fromkeys(blocked, "blockedBySafetyGuard") |
                             dict.fromkeys(unseen, "removalFailed"))
            self.assertEqual((told["totalBytesFreed"], told["dryRun"]),
                             (sum(expected.values()), told is dry))
        self.assertEqual(dry["visibleFreedBytes"], 0)
        self.assert_left(self.before, expected)

        left = self.scan("--now", NOW, status=1)
        self.assertEqual(left["totalBytes"],
                         self.scanned["totalBytes"] - sum(chosen[path] for path in expected))
        again = self.run_program("clean", "--safe", "--yes", "--now", NOW)
        self.assertRegex(again.stdout.decode(), rf"""\AZero KB freed — 0 items removed
Free space has grown by .*
1 could not be looked into
  The scan .*
    /.*
{len(blocked)} protected by Zorvane
  They pointed into personal areas \(like Documents or Photos\)\. Zorvane refused to touch them\.
(    /.*\n){{{len(blocked)}}}That's why the freed total is smaller than the estimate\.\n\Z""")

    def test_every_area_goes_and_every_canary_stays(self):
        rules = [argument for category in self.scanned["categories"]
                 for argument in ("--rule", category["ruleId"])]
        report = self.clean(*rules, "--all", "--now", NOW, status=1)
        removed = {exact_path(item) for item in report["removed"]}
        self.assertLessEqual(removed, self.offered.keys())
        trash = os.fsencode(self.home) + b"/.local/share/Trash/"
        records = {trash + b"info/" + path[len(trash + b"files/"):] + b".trashinfo"
                   for path in removed if path.startswith(trash + b"files/")}
        records = {path for path in records if self.before.get(path, "l")[0][0] == "-"}
        self.assertGreater(len(records), 20)
        self.assert_left(self.before, removed | records)
        canaries = [path for path in self.before if path.endswith(b"canary.txt")]
        self.assertGreater(len(canaries), 30)
        self.assertTrue(all(map(os.path.lexists, [*canaries, *(self.home / name for name in KEPT)])))
