#!/usr/bin/env python3
"""The tables that people read, and the live line while they wait."""

import re
import unicodedata
import unittest

from support import NOW, ProgramTest, rule


class TerminalOutput(ProgramTest):
    def lines(self, *arguments, status=0, **variables):
        process = self.run_program("scan", "--home", self.home, "--now", NOW, "--no-commands",
                                   *arguments, **variables)
        self.assertEqual((process.returncode, process.stderr), (status, b""))
        return process.stdout.decode().splitlines()

    def test_areas_are_a_table_with_the_largest_first(self):
        self.file("home/small/entry", b"x" * 4000)
        self.file("home/large/entry", b"x" * 3_000_000)
        self.file("home/large/other", b"x" * 3_000_000)
        (self.home / "sealed").mkdir(0)
        catalog = self.catalog(rule("cache-small", ["~/small"]), rule("dev-none", ["~/none"]),
                               rule("cache-sealed", ["~/sealed"]),
                               rule("dev-sealed-review", ["~/sealed"], tier="B"),
                               rule("dev-large", ["~/large"], tier="B"))
        header, *areas, total, selected = self.lines("--catalog", catalog, status=1)

        self.assertEqual([line.split()[0] for line in areas[:2]], ["dev-large", "cache-small"])
        self.assertEqual({line.split()[0] for line in areas[2:]},
                         {"cache-sealed", "dev-sealed-review"})
        end = header.index("SIZE") + len("SIZE")
        for line, size in ((areas[0], "6 MB"), (areas[1], "4 KB"), (areas[2], "Zero KB"),
                           (total, "6 MB"), (selected, "4 KB")):
            self.assertTrue(line[:end].endswith(" " + size), f"{size} in {line}")
            self.assertEqual(line[end:end + 1].strip(), "")
        self.assertTrue(areas[0].endswith("  review required"))
        self.assertTrue(areas[1].endswith("cache-small"))
        notes = {line.split()[0]: line.rpartition("  ")[2] for line in areas[2:]}
        self.assertEqual(notes, {"cache-sealed": "partly unreadable",
                                 "dev-sealed-review": "review required, partly unreadable"})
        self.assertRegex(total, r"^Total .* 3$")
        self.assertRegex(selected, r"^Selected by default ")

    def test_the_items_of_one_area_are_listed(self):
        self.file("home/area/first", b"x" * 90_000, age_days=1)
        self.file("home/area/second", b"x" * 9_000, age_days=40)
        self.file("home/other/unseen")
        catalog = self.catalog(rule("cache-area", ["~/area"]), rule("cache-other", ["~/other"]))
        text = "\n".join(self.lines("--catalog", catalog, "--rule", "cache-area"))
        self.assertRegex(text, r"cache-area  1\d\d KB, 2 items\n"
                               rf" +\d+ KB  2026-02-28  {self.home}/area/first\n"
                               rf" +12 KB  2026-01-20  {self.home}/area/second")
        self.assertNotIn("unseen", text)

    def test_names_from_the_disk_cannot_drive_the_terminal(self):
        self.sample_home()
        # The driving names of the sample, and those that it lacks.
        for number, name in enumerate(("bell\a", "title\x1b]0;gotcha\a", "csi\u009b31m", "\r\x7f",
                                       "isolate\u2066x", "mark\u200e", "tag\U000e0041",
                                       "paragraph\u2029", "feed\v\f", "bom\ufeff")):
            self.file(f"home/.local/share/Trash/files/{name}", b"x" * number)
        catalog = self.catalog(rule("cache-\x1b[31m\n\u202e", ["~/.local/share/Trash/files"]))
        for arguments in (["--rule", "trash-user"], ["--rule", "temp-user"], ["--rule", "cache-user"],
                          ["--catalog", catalog], []):
            lines = self.lines(*arguments, status=0 if arguments else 1)
            for line in lines:
                for character in line.replace("\u200d", ""):
                    self.assertNotIn(unicodedata.category(character),
                                     ("Cc", "Cf", "Cs", "Cn", "Zl", "Zp"), repr(line))
        listed = "\n".join(self.lines("--rule", "trash-user"))
        for shown in (r"two\nlines", r"tab\there", r"colour \e[31mred\e[0m", r"bell\u{0007}",
                      r"right-to-left \u{202E}gnp.exe", r"invalid \xFF\xFE utf-8", r"csi\u{009B}31m",
                      "emoji \U0001f9f9 \U0001f469\u200d\U0001f4bb", "<b>bold<b>", " leading space"):
            self.assertIn(f"/files/{shown}", listed)

    def test_an_area_is_known_by_every_form_of_its_name_in_an_unknown_locale_too(self):
        self.file("home/area/entry", b"x" * 1_250_000)
        lines = self.lines("--catalog", self.catalog(rule("caf\u00e9")), "--rule", "cafe\u0301",
                           LC_ALL="none_XX.UTF-8")
        self.assertRegex("\n".join(lines), r"1\.3 MB(.|\n)*entry")

    def test_the_live_line_is_for_terminals_only_and_is_gone_at_the_end(self):
        self.file("home/area/entry", b"x" * 90_000)
        catalog = self.catalog(rule("cache-area"), rule("cache-\x1b]0;gotcha\a", ["~/x"]))
        status, table, shown = self.on_terminal(["scan", "--home", self.home, "--catalog", catalog])
        self.assertEqual(status, 0)
        self.assertNotIn("\x1b", table)
        steps = shown.split("\r\x1b[K")
        self.assertEqual((steps[0], steps[-1]), ("", ""))
        self.assertTrue(any(re.fullmatch(r"Scanning: cache-area \(.*\)", step) for step in steps))
        self.assertRegex(steps[-2], r"\(9\d KB\)$")
        for step in steps:
            self.assertNotRegex(step, r"[\x00-\x1f\x7f]")


if __name__ == "__main__":
    unittest.main()
