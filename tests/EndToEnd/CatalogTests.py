"""The catalog that ships with the program."""

import json
import os

from support import DAY, NOW, NOW_SECONDS, REPOSITORY, ProgramTest

RULES = json.loads((REPOSITORY / "CleanCore/Resources/rules.json").read_text())["rules"]
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
