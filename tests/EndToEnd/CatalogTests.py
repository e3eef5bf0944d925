"""The catalog that ships with the program, and the check that guards it."""

import json
import os
import subprocess

from support import DAY, NOW, NOW_SECONDS, REPOSITORY, ProgramTest, document

RESOURCES = REPOSITORY / "CleanCore/Resources"
RULES = json.loads((RESOURCES / "rules.json").read_text())["rules"]
TOKENS = {"$DARWIN_USER_CACHE_DIR": "~/.cache", "$DARWIN_USER_TEMP_DIR": "~/.tmp"}


class Catalog(ProgramTest):
    def test_offers_nothing_twice_where_every_base_of_every_rule_exists(self):
        expected = {f"{base[2:].replace('*', 'App')}/entry of {rule['id']}" for rule in RULES
                    for base in (TOKENS.get(base, base) for base in rule["basePaths"])
                    if base.startswith("~/")}
        for entry in expected:
            self.file(f"home/{entry}")
        for folder, _, _ in os.walk(self.home, topdown=False):
            os.utime(folder, (NOW_SECONDS - 400 * DAY,) * 2)
        report = self.scan("--now", NOW, "--no-commands")
        offered = sorted(os.path.relpath(item["path"], self.home).split("/")
                         for category in report["categories"] for item in category["items"])
        for above, below in zip(offered, offered[1:]):
            self.assertNotEqual(below[:len(above)], above)
        self.assertLessEqual(expected, set(map("/".join, offered)))

    def test_rules_prints_every_rule_with_its_texts(self):
        listed = json.loads(self.run_program("rules", "--json").stdout)["rules"]
        self.assertEqual([{key: rule[key] for key in RULES[0]} for rule in listed], RULES)
        for rule in listed:
            self.assertTrue(rule["title"] and rule["explanation"], rule["id"])
            self.assertEqual(bool(rule["warning"]), rule["tier"] == "B", rule["id"])
        self.assertIn(f"{len(RULES)} areas", self.run_program("rules").stdout.decode())

    def test_the_check_finds_each_kind_of_fault(self):
        trash = next(rule for rule in RULES if rule["id"] == "trash-user")
        files = next(rule for rule in RULES if rule["kind"] == "fileSystem")
        tool = next(rule for rule in RULES if rule["kind"] == "command")
        bases = ("~/", "Library", "$DARWIN_USER_CACHE_DIR/x", "~/Documents/old", "~/*", "~/.config",
                 "~/x/../y", "~/.local/share/Trash")
        for changed, change, lost_text in (
                (tool, {"id": "dev-gone"}, None), *((files, change, None) for change in (
                    {"id": "trash-user"}, {"id": "other-things"}, {"exclusions": ["a/b"]},
                    {"minAgeDays": 7.5}, *({"basePaths": [base]} for base in bases))),
                *((trash, {}, key) for key in ("rule.trash-user.title", "category.warning.trash-user",
                                               "category.explanation.trash-user"))):
            rules = [{**rule, **(change if rule is changed else {})} for rule in RULES]
            texts = json.loads((RESOURCES / "texts/en.json").read_text())
            texts.pop(lost_text, None)
            process = subprocess.run(
                [REPOSITORY / "tools/check-catalog", self.file("rules.json", document(*rules)),
                 self.file("texts.json", json.dumps(texts))], capture_output=True, check=False)
            self.assertEqual((process.returncode, process.stderr), (1, b""), (change, lost_text))
