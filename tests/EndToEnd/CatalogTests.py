#!/usr/bin/env python3
"""The catalog that ships with the program, and the check that guards it."""

import json
import os
import subprocess
import unittest

from support import CLI, DAY, NOW, NOW_SECONDS, REPOSITORY, ProgramTest, document, paths, rule

RESOURCES = REPOSITORY / "CleanCore/Resources"
# Entries of the sample home that keep real state inside the folders that are cleaned.
KEPT = (".config/hexchat", ".config/unity3d/Studio", ".cache/keepassxc", ".cache/doc", ".cache/ibus", ".cache/rclone", ".cache/evolution", ".cache/huggingface/token",
        ".cache/git", ".config/google-chrome/Default", ".mozilla", ".config/Slack/Crashpad/settings.dat",
        ".tmp/.X11-unix", ".var/app/org.gimp.GIMP/config")
# Offered with a warning, never selected without being asked for.
LEFT_TO_CHOICE = (".cache/JetBrains", ".gradle/caches", ".m2/repository", ".local/share/Trash", ".tmp")


def is_same_or_inside(path, folder):
    return path == folder or path.startswith(folder + "/")


class Catalog(ProgramTest):
    def assert_offered_once(self, offered):
        offered = sorted(offered, key=lambda path: path.split("/"))
        for above, below in zip(offered, offered[1:]):
            self.assertFalse(is_same_or_inside(below, above), f"{above} and {below}")

    def test_offers_nothing_twice_and_nothing_that_must_stay_on_a_sample_home(self):
        self.sample_home()
        report = self.scan("--now", NOW, "--no-commands", status=1)
        offered = [os.path.relpath(path, self.home) for path in paths(report)]
        self.assertGreater(len(offered), 150)
        self.assert_offered_once(offered)
        canaries = [os.path.relpath(os.path.dirname(path), self.home) for path in subprocess.run(
            ["find", self.home, "-name", "canary.txt"], capture_output=True, text=True,
            check=False).stdout.splitlines()]
        self.assertGreater(len(canaries), 20)
        for kept in (*canaries, *KEPT):
            for path in offered:
                self.assertFalse(is_same_or_inside(kept, path) or is_same_or_inside(path, kept),
                                 f"{path} is offered, {kept} must stay")
        selected = [os.path.relpath(item["path"], self.home) for category in report["categories"]
                    for item in category["items"] if item["selected"]]
        self.assertGreater(len(selected), 100)
        for choice in LEFT_TO_CHOICE:
            self.assertTrue(any(is_same_or_inside(path, choice) for path in offered), choice)
            self.assertFalse(any(is_same_or_inside(path, choice) for path in selected), choice)

    def test_offers_nothing_twice_where_every_base_of_every_rule_exists(self):
        rules = json.loads((RESOURCES / "rules.json").read_text())["rules"]
        tokens = {"$DARWIN_USER_CACHE_DIR": "~/.cache", "$DARWIN_USER_TEMP_DIR": "~/.tmp"}
        expected = set()
        for rule in rules:
            for base in (tokens.get(base, base) for base in rule["basePaths"]):
                if base.startswith("~/"):
                    entry = f"{base[2:].replace('*', 'App')}/entry of {rule['id']}"
                    self.file(f"home/{entry}")
                    expected.add(entry)
        for folder, _, _ in os.walk(self.home, topdown=False):
            os.utime(folder, (NOW_SECONDS - 400 * DAY,) * 2)

        offered = {os.path.relpath(path, self.home)
                   for path in paths(self.scan("--now", NOW, "--no-commands"))}
        self.assert_offered_once(offered)
        self.assertEqual(expected - offered, set())

    def test_a_bundle_in_the_current_folder_is_not_the_programs(self):
        self.file("zorvane-cli")
        bundle = self.world / "CleanCore_CleanCore.bundle/rules.json"
        self.file(bundle, json.dumps(document(rule("planted"))))
        # Found on the path, so that its name says nothing of where it is.
        process = subprocess.run(["zorvane-cli", "rules", "--json"], capture_output=True,
                                 env={"PATH": os.path.dirname(CLI)}, cwd=self.world, check=False)
        self.assertEqual(process.stderr, b"")
        ids = [listed["id"] for listed in json.loads(process.stdout)["rules"]]
        self.assertIn("trash-user", ids)
        self.assertNotIn("planted", ids)

    def test_rules_prints_every_rule_with_its_texts(self):
        process = self.run_program("rules", "--json")
        listed = json.loads(process.stdout)["rules"]
        rules = json.loads((RESOURCES / "rules.json").read_text())["rules"]
        self.assertEqual([{key: rule[key] for key in rules[0]} for rule in listed], rules)
        for rule in listed:
            self.assertTrue(rule["title"] and rule["explanation"], rule["id"])
            self.assertEqual(bool(rule["warning"]), rule["tier"] == "B", rule["id"])
        table = self.run_program("rules")
        self.assertEqual((table.returncode, table.stderr), (0, b""))
        self.assertIn(f"{len(rules)} areas", table.stdout.decode())


class CheckCatalog(ProgramTest):
    def test_finds_each_kind_of_fault(self):
        def first(rules, **conditions):
            return next(r for r in rules if all(r[k] == v for k, v in conditions.items()))

        def set_base(base):
            return lambda rules, texts: first(rules, kind="fileSystem").update(basePaths=[base])

        faults = {
            "a repeated id": lambda rules, texts: rules.append(dict(rules[0])),
            "an id of no group": lambda rules, texts: rules[0].update(id="other-things"),
            "home as a base": set_base("~/"),
            "a relative base": set_base("Library"),
            "a token with more behind it": set_base("$DARWIN_USER_CACHE_DIR/x"),
            "a base in a protected folder": set_base("~/Documents/old"),
            "a base above a protected folder": set_base("~/Library"),
            "a base that a wildcard makes one": set_base("~/*"),
            "all the configuration": set_base("~/.config"),
            "a dotted base": set_base("~/x/../y"),
            "an entry that is another rule's base": set_base("~/.local/share/Trash"),
            "an exclusion with a slash": lambda rules, texts: rules[0]["exclusions"].append("a/b"),
            "a rule without a title": lambda rules, texts: texts.pop("rule.trash-user.title"),
            "a rule without an explanation":
                lambda rules, texts: texts.pop("category.explanation.trash-user"),
            "a review rule without a warning":
                lambda rules, texts: texts.pop("category.warning.trash-user"),
            "a missing command rule":
                lambda rules, texts: rules.remove(first(rules, id="brew-cleanup")),
            "a fraction": lambda rules, texts: rules[0].update(minAgeDays=7.5),
        }
        for name, spoil in faults.items():
            with self.subTest(name):
                catalog = json.loads((RESOURCES / "rules.json").read_text())
                texts = json.loads((RESOURCES / "texts/en.json").read_text())
                spoil(catalog["rules"], texts)
                files = [self.world / "rules.json", self.world / "texts.json"]
                for file, content in zip(files, (catalog, texts)):
                    file.write_text(json.dumps(content))
                process = subprocess.run([REPOSITORY / "tools/check-catalog", *files],
                                         capture_output=True, text=True, check=False)
                self.assertEqual((process.returncode, process.stderr), (1, ""))
                self.assertNotIn("no findings", process.stdout)


if __name__ == "__main__":
    unittest.main()
