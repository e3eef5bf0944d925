"""The catalog that ships with the program, and the check that guards it."""

import json
import os
import subprocess

from support import DAY, NOW, NOW_SECONDS, REPOSITORY, ProgramTest, paths

RESOURCES = REPOSITORY / "CleanCore/Resources"
RULES = json.loads((RESOURCES / "rules.json").read_text())["rules"]
TOKENS = {"$DARWIN_USER_CACHE_DIR": "~/.cache", "$DARWIN_USER_TEMP_DIR": "~/.tmp"}


class Catalog(ProgramTest):
    def test_offers_nothing_twice_where_every_base_of_every_rule_exists(self):
        expected = set()
        for rule in RULES:
            for base in (TOKENS.get(base, base) for base in rule["basePaths"]):
                if base.startswith("~/"):
                    entry = f"{base[2:].replace('*', 'App')}/entry of {rule['id']}"
                    self.file(f"home/{entry}")
                    expected.add(entry)
        for folder, _, _ in os.walk(self.home, topdown=False):
            os.utime(folder, (NOW_SECONDS - 400 * DAY,) * 2)
        report = self.scan("--now", NOW, "--no-commands")
        offered = sorted((os.path.relpath(path, self.home) for path in paths(report)),
                         key=lambda path: path.split("/"))
        for above, below in zip(offered, offered[1:]):
            self.assertFalse(f"{below}/".startswith(f"{above}/"), f"{above} and {below}")
        self.assertEqual(expected - {*offered}, set())

    def test_rules_prints_every_rule_with_its_texts(self):
        listed = json.loads(self.run_program("rules", "--json").stdout)["rules"]
        self.assertEqual([{key: rule[key] for key in RULES[0]} for rule in listed], RULES)
        for rule in listed:
            self.assertTrue(rule["title"] and rule["explanation"], rule["id"])
            self.assertEqual(bool(rule["warning"]), rule["tier"] == "B", rule["id"])
        table = self.run_program("rules")
        self.assertEqual((table.returncode, table.stderr), (0, b""))
        self.assertIn(f"{len(RULES)} areas", table.stdout.decode())

    def test_the_check_finds_each_kind_of_fault(self):
        trash = next(index for index, rule in enumerate(RULES) if rule["id"] == "trash-user")
        files = next(index for index, rule in enumerate(RULES) if rule["kind"] == "fileSystem")
        tool = next(index for index, rule in enumerate(RULES) if rule["kind"] == "command")
        bases = ("~/", "Library", "$DARWIN_USER_CACHE_DIR/x", "~/Documents/old", "~/Library", "~/*",
                 "~/.config", "~/x/../y", "~/.local/share/Trash")
        faults = [(tool, {"id": "dev-gone"}, None), *((files, change, None) for change in (
            {"id": RULES[trash]["id"]}, {"id": "other-things"}, {"exclusions": ["a/b"]},
            {"minAgeDays": 7.5}, *({"basePaths": [base]} for base in bases)))] + [
                (trash, {}, key) for key in ("rule.trash-user.title", "category.warning.trash-user",
                                             "category.explanation.trash-user")]
        written = [self.world / "rules.json", self.world / "texts.json"]
        for index, change, lost_text in faults:
            with self.subTest(change=change, lost_text=lost_text):
                rules = [{**rule, **(change if rule is RULES[index] else {})} for rule in RULES]
                texts = json.loads((RESOURCES / "texts/en.json").read_text())
                texts.pop(lost_text, None)
                written[0].write_text(json.dumps({"schemaVersion": 1, "rules": rules}))
                written[1].write_text(json.dumps(texts))
                process = subprocess.run([REPOSITORY / "tools/check-catalog", *written],
                                         capture_output=True, text=True, check=False)
                self.assertEqual((process.returncode, process.stderr), (1, ""))
