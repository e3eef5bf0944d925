"""Whatever is wrong with the input: one clear line, the right status, nothing on standard output."""

import json
import os
import shutil
import subprocess

from support import CLI, NOW, ProgramTest, document, rule


class BadInput(ProgramTest):
    def test_catalogs(self):
        file = self.world / "bad.json"
        good = json.dumps(document(rule()))
        for name, content, *words in (
                ("empty", ""), ("truncated", '{"rules": "' + "x" * 100_000), ("more", good + "]"),
                ("not UTF-8", good.encode().replace(b"area", b"ar\xff\x1b[31m")),
                ("nested too deeply", "[" * 100_000),
                ("a missing member", json.dumps(document({"id": "a"}))),
                ("a wrong type", good.replace('"exclusions": []', '"exclusions": [7]'),
                 '"exclusions"'),
                ("an age beyond 64 bits", good.replace(": 0", ": 1" + "0" * 500)),
                ("a very long kind", good.replace("fileSystem", "x" * 100_000)),
                ("duplicate ids", json.dumps(document(rule("a"), rule("a")))),
                ("an exclusion of a badly named rule",
                 json.dumps(document(rule("a\n\x1b[31m", exclusions=["a/b"]))), r"a\n\e[31m")):
            file.write_bytes(content if isinstance(content, bytes) else content.encode())
            for command in ("scan", "rules"):
                with self.subTest(name, command=command):
                    process = self.run_program(command, "--catalog", file)
                    self.assert_refused(process, 3, str(file), *words)

    def test_catalogs_that_cannot_be_read(self):
        os.mkfifo(self.world / "fifo")
        os.truncate(self.file("endless"), 1 << 40)
        for path, word in (("missing", "No such file"), (self.world, "directory"),
                           ("fifo", "regular file"), ("/dev/zero", "regular file"),
                           ("endless", "large"), (self.file("sealed", mode=0), "Permission"),
                           ("new\nline\x1b[31m", "No such file"), ("", "No such file")):
            with self.subTest(path=str(path)):
                self.assert_refused(self.run_program("rules", "--catalog", path), 3, word)

    def test_homes_times_and_arguments(self):
        file = self.file("file")
        os.symlink("nowhere", self.world / "dangling")
        (self.world / "sealed").mkdir(mode=0)
        for arguments in (
                *(["scan", "--home", home] for home in (
                    "missing", file, file / "below", "dangling", "", "/", "sealed",
                    "missing\x1b[31m\nline", "\u00e9" * 3000)),
                *(["scan", "--rule", name] for name in (
                    "no-such-area", "", "a\x1b[31m\nb", "Trash-User", "\u00e9" * 3000)),
                *(["scan", "--now", time] for time in (
                    "", "2026-03-01", "2026-03-01T12:00:00", "2026-02-30T12:00:00Z",
                    "2026-03-01T24:00:00Z", "2026-03-01T12:00:00.Z", "2026-03-01T12:00:00Zx",
                    "1500-03-01T12:00:00Z", "9999-03-01T12:00:00Z", "2026-03-01T12:00:00+25:00",
                    "+026-03-01T12:00:00Z", "2026-03-01T12:00:00+01:60", "\x1b[31m\n")),
                ["scan", "--home"], ["scan", "--rule", "trash-user", "cache-user"], ["scan", "extra"],
                ["scan", "--unknown\x1b[31m\nx"], ["scan", "--json=maybe"], [], ["guard"],
                ["rules", "--now", NOW], ["unknown", "--json"], ["icloud", "unknown"],
                ["\u00e9" * 3000]):
            with self.subTest(arguments=list(map(str, arguments))):
                self.assert_refused(self.run_program(*arguments), 2)
        process = self.run_program("scan", HOME=str(self.world / "missing"))
        self.assert_refused(process, 2, "missing")

    def test_a_program_without_its_resources(self):
        copy = self.world / "bin/zorvane-cli"
        copy.parent.mkdir()
        shutil.copy(CLI, copy)
        planted = self.world / "CleanCore_CleanCore.bundle/rules.json"
        self.file(planted, json.dumps(document(rule("planted"))))

        def run():
            # Found on the path, so that its name says nothing of where it is.
            return subprocess.run(["zorvane-cli", "rules"], capture_output=True, check=False,
                                  env={"PATH": str(copy.parent)}, cwd=self.world)
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
        arguments = ["scan", "--json", "--home", self.home, "--catalog", self.catalog(rule())]
        for streams, status, has_output in (("<&- 2>&-", 0, True), ("<&- >&- 2>&-", 0, False),
                                            (">/dev/full", 1, False)):
            process = subprocess.run(["sh", "-c", f'exec "$@" {streams}', "sh", CLI, *arguments],
                                     capture_output=True, check=False)
            self.assertEqual(process.returncode, status, streams)
            self.assertRegex(process.stderr, rb"\A(zorvane-cli: .+\n)?\Z")
            self.assertEqual(bool(process.stderr), status == 1)
            self.assertEqual(b"area/entry" in process.stdout, has_output)
