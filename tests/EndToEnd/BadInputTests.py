"""Whatever is wrong with the input: one clear line, the right status, nothing on standard output."""

import functools
import os
import shutil
import subprocess

from support import CLI, NOW, ProgramTest, document, rule


class BadInput(ProgramTest):
    def test_catalogs(self):
        os.mkfifo(self.world / "fifo")
        os.truncate(self.file("endless"), 1 << 40)
        good = document(rule())
        for path, word in (
                ("missing", "No such file"), (self.world, "directory"), ("fifo", "regular file"),
                ("/dev/zero", "regular file"), ("endless", "large"),
                (self.file("sealed", mode=0), "Permission"), ("new\nline\x1b[31m", "No such file"),
                *((self.file(f"bad{number}", content), word) for number, (content, word) in enumerate((
                    ("", "bad0"), ('{"rules": "' + "x" * 100_000, "bad1"), ("[" * 100_000, "bad2"),
                    (good.encode().replace(b"area", b"ar\xff\x1b[31m"), "bad3"),
                    (good.replace('"exclusions": []', '"exclusions": [7]'), '"exclusions"'),
                    (good.replace("fileSystem", "x" * 100_000), "bad5"),
                    (document(rule("a"), rule("a")), "bad6"),
                    (document(rule("a\n\x1b[31m", exclusions=["a/b"])), r"a\n\e[31m"))))):
            for command in ("scan", "rules"):
                self.assert_refused(self.run_program(command, "--catalog", path), 3, word)

    def test_homes_times_and_arguments(self):
        file = self.file("file")
        os.symlink("nowhere", self.world / "dangling")
        (self.world / "sealed").mkdir(mode=0)
        for arguments in (
                *(["scan", "--home", home] for home in (
                    "missing", file, file / "below", "dangling", "", "/", "sealed",
                    "missing\x1b[31m\nline", "\u00e9" * 3000)),
                *(["scan", "--rule", name] for name in ("no-such-area", "", "a\x1b[31m\nb", "Trash-User")),
                *(["scan", "--now", time] for time in (
                    "", "2026-03-01", "2026-03-01T12:00:00", "2026-02-30T12:00:00Z",
                    "2026-03-01T24:00:00Z", "2026-03-01T12:00:00.Z", "2026-03-01T12:00:00Zx",
                    "1500-03-01T12:00:00Z", "9999-03-01T12:00:00Z", "2026-03-01T12:00:00+25:00",
                    "+026-03-01T12:00:00Z", "2026-03-01T12:00:00+01:60", "\x1b[31m\n")),
                ["scan", "--home"], ["scan", "--rule", "trash-user", "cache-user"],
                ["scan", "--unknown\x1b[31m\nx"], ["scan", "--json=maybe"], [], ["guard"],
                ["rules", "--now", NOW], ["unknown", "--json"], ["icloud", "unknown"]):
            self.assert_refused(self.run_program(*arguments), 2)
        self.assert_refused(self.run_program("scan", HOME=f"{self.world}/missing"), 2, "missing")
        # A list of a catalog needs no home; a part of a path needs a current folder.
        listed = self.run_program("rules", "--catalog", self.catalog(rule()), HOME="/missing")
        self.assertEqual((listed.returncode, b"not checked" in listed.stderr), (0, True))
        self.assert_refused(self.run_program("icloud", "list", "--container", "rel", wrapper=[
            "sh", "-c", 'mkdir x; cd x; rmdir ../x; exec "$@"', "sh"]), 2, "whole path")

    def test_a_program_without_its_resources(self):
        copy = self.file("bin/zorvane-cli", mode=0o755)
        shutil.copy(CLI, copy)
        planted = self.file("CleanCore_CleanCore.bundle/rules.json", document(rule("planted")))
        # Found on the path, so that its name says nothing of where it is.
        rules = ["env", f"PATH={copy.parent}", "zorvane-cli", "rules"]
        run = functools.partial(subprocess.run, rules, capture_output=True, check=False, cwd=self.world)
        lost = run()
        self.assertEqual((lost.stdout, lost.stderr, lost.returncode),
                         (b"", b"unable to find bundle named CleanCore_CleanCore\n", 3))
        bundle = self.world / "share/zorvane/CleanCore_CleanCore.bundle"
        bundle.mkdir(parents=True)
        self.assert_refused(run(), 3)
        planted.rename(bundle / "rules.json")
        self.assertIn(b"planted", run().stdout)

    def test_standard_streams_that_are_closed_or_full(self):
        self.file("home/area/entry")
        for streams, status, has_output in (("<&- 2>&-", 0, True), ("<&- >&- 2>&-", 0, False),
                                            (">/dev/full", 1, False)):
            process = self.run_program("scan", "--json", "--catalog", self.catalog(rule()),
                                       wrapper=["sh", "-c", f'exec "$@" {streams}', "sh"])
            self.assertEqual(process.returncode, status, streams)
            self.assertRegex(process.stderr, rb"\A(zorvane-cli: .+\n)?\Z")
            self.assertEqual((bool(process.stderr), b"area/entry" in process.stdout),
                             (status == 1, has_output))
