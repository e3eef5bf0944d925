"""The tables that people read, and the live line while they wait."""

import unicodedata

from support import NOW, ProgramTest, rule


class TerminalOutput(ProgramTest):
    def lines(self, *arguments, status=0, **variables):
        process = self.run_program("scan", "--now", NOW, "--no-commands", *arguments, **variables)
        self.assertEqual((process.returncode, process.stderr), (status, b""))
        return process.stdout.decode().splitlines()

    def test_areas_and_items_are_tables_with_the_largest_first(self):
        for path, size in (("small/entry", 4000), ("also/entry", 4000), ("none/entry", 0)):
            self.file(f"home/{path}", b"x" * size)
        self.file("home/large/entry", b"x" * 3_000_000, age_days=1)
        self.file("home/large/other", b"x" * 2_000_000)
        (self.home / "sealed").mkdir(0)
        catalog = self.catalog(
            rule("cache-small", ["~/small"]), rule("dev-none", ["~/none"]),
            rule("cache-also", ["~/also"]),
            rule("caf\u00e9", ["~/large"], tier="B"), rule("sealed", ["~/sealed"], tier="B"))
        self.assertEqual(self.lines("--catalog", catalog, status=1), [
            "AREA                    SIZE  ITEMS  ID",
            "caf\u00e9                    5 MB      2  caf\u00e9         review required",
            "cache-also              4 KB      1  cache-also",
            "cache-small             4 KB      1  cache-small",
            "sealed               Zero KB      0  sealed       review required, partly unreadable",
            "Total                   5 MB      5", "Selected by default     8 KB",
            "Not shown: 1 area where no space can be gained; --rule ID shows one"])
        # An area is known by every form of its name, and a locale that is not there does no harm.
        self.assertEqual(self.lines("--catalog", catalog, "--rule", "cafe\u0301", LC_ALL="none_XX"), [
            "caf\u00e9  5 MB, 2 items (review required)",
            f"  3 MB  2026-02-28  {self.home}/large/entry",
            f"  2 MB  2025-01-25  {self.home}/large/other", ""])

    def test_names_from_the_disk_cannot_drive_the_terminal(self):
        self.sample_home("0.05")
        # The driving names of the sample, and those that it lacks.
        for number, name in enumerate(("title\x1b]0;gotcha\a", "csi\u009b31m", "isolate\u2066x",
                                       "mark\u200e", "tag\U000e0041", "paragraph\u2029", "bom\ufeff")):
            self.file(f"home/.local/share/Trash/files/{name}", b"x" * number)
        catalog = self.catalog(rule("cache-\x1b[31m\n\u202e", ["~/.local/share/Trash/files"]))
        for arguments in ((), ("--catalog", catalog), ("--rule", "trash-user", "--rule", "cache-user")):
            lines = self.lines(*arguments, status=0 if "--catalog" in arguments else 1)
            categories = map(unicodedata.category, "".join(lines).replace("\u200d", ""))
            self.assertFalse({"Cc", "Cf", "Cs", "Cn", "Zl", "Zp"} & {*categories}, lines)
        listed = "\n".join(lines)
        for shown in (r"two\nlines", r"colour \e[31mred\e[0m", r"right-to-left \u{202E}gnp.exe",
                      r"invalid \xFF\xFE utf-8", "emoji \U0001f9f9 \U0001f469\u200d\U0001f4bb"):
            self.assertIn(f"/files/{shown}", listed)

    def test_the_live_line_is_for_terminals_only_and_is_gone_at_the_end(self):
        self.file("home/area/entry", b"x" * 90_000)
        catalog = self.catalog(rule("cache-area"), rule("cache-\x1b]0;gotcha\a", ["~/x"]))
        status, table, shown = self.on_terminal(["scan", "--catalog", catalog])
        self.assertEqual(status, 0)
        self.assertNotIn("\x1b", table)
        steps = shown.split("\r\x1b[K")
        self.assertEqual((steps[0], steps[-1]), ("", ""))
        self.assertRegex(steps[-2], r"\AScanning: .*\(9\d KB\)\Z")
        self.assertTrue(any(step.startswith("Scanning: cache-area (") for step in steps))
        self.assertNotRegex("".join(steps), r"[\x00-\x1f\x7f]")
