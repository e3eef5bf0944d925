#!/usr/bin/env python3
"""Whatever is wrong with the input: one clear line, the right status, nothing on standard output."""

import json
import os
import shutil
import subprocess
import unittest

from support import CLI, NOW, ProgramTest, document, rule


def with_value(key, text):
    """A catalog with a literal JSON text in place of one member of its rule, or of its own."""
    content = document(rule())
    target = content if key in content else content["rules"][0]
    target[key] = "PLACE"
    return json.dumps(content).replace('"PLACE"', text)


class BadInput(ProgramTest):
    def test_catalogs(self):
        file = self.world / "bad.json"
        for name, content, *words in (
                ("empty", ""),
                ("truncated in a long text", '{"rules": "' + "x" * 100_000),
                ("followed by more", json.dumps(document(rule())) + "]"),
                ("not UTF-8", json.dumps(document(rule())).encode().replace(b"area", b"ar\xff\x1b[31m")),
                ("nested too deeply", "[" * 100_000),
                ("rules of a wrong type", with_value("rules", "{}"), '"rules" must be'),
                ("a rule of a wrong type", with_value("rules", '["\\u001b[31m"]')),
                ("a missing member", json.dumps(document({"id": "a"}))),
                ("a list of a wrong type", with_value("exclusions", "[7]"), '"exclusions" must be'),
                ("a text of a wrong type", with_value("id", "7"), '"id" must be'),
                ("an age that is a fraction", with_value("minAgeDays", "7.5"), '"minAgeDays" must be'),
                ("an age far beyond 64 bits", with_value("minAgeDays", "1" + "0" * 500)),
                ("an unknown kind with line ends", with_value("kind", '"a\\nb\\u001b[31m\\u202e"')),
                ("a very long unknown kind", with_value("kind", '"' + "x" * 100_000 + '"')),
                ("duplicate ids", json.dumps(document(rule("a"), rule("b"), rule("a")))),
                ("a bad exclusion of a badly named rule",
                 json.dumps(document(rule("a\n\x1b[31m", exclusions=["a/b"]))),
                 rf"{file} is invalid: exclusion with '/' in rule a\n\e[31m")):
            file.write_bytes(content if isinstance(content, bytes) else content.encode())
            for command in ("scan", "rules"):
                with self.subTest(name, command=command):
                    self.assert_refused(self.run_program(command, "--catalog", file), 3,
                                        str(file), *words)

    def test_catalogs_that_cannot_be_read(self):
        sealed = self.file("sealed.json")
        sealed.chmod(0)
        fifo = self.world / "fifo.json"
        os.mkfifo(fifo)
        endless = self.world / "endless.json"
        with open(endless, "wb") as file:
            file.truncate(1 << 40)
        for path, word in ((self.world / "missing.json", "No such file"),
                           (self.world, "directory"), (fifo, "not a regular file"),
                           ("/dev/zero", "not a regular file"), (endless, "too large"), (sealed, "Permission"),
                           (self.world / "new\nline\x1b[31m", "No such file"), ("", "No such file")):
            for command in ("scan", "rules"):
                with self.subTest(path=str(path), command=command):
                    self.assert_refused(self.run_program(command, "--catalog", path), 3, word)

    def test_homes_times_and_arguments(self):
        file = self.file("file")
        os.symlink("nowhere", self.world / "dangling")
        for arguments in (
                ["--home", self.world / "missing"], ["--home", file], ["--home", file / "below"],
                ["--home", self.world / "dangling"], ["--home", ""], ["--home", "/"],
                ["--home", "missing\x1b[31m\nline"], ["--home"],
                ["--rule", "no-such-area"], ["--rule", ""], ["--rule", "a\x1b[31m\nb"],
                ["--rule", "Trash-User"], ["--rule", "trash-user", "--rule", "no-such-area"],
                ["--rule", "trash-user", "cache-user"],
                *(["--now", time] for time in (
                    "", "2026-03-01", "2026-03-01T12:00:00", "2026-02-30T12:00:00Z",
                    "2026-03-01T24:00:00Z", "2026-03-01T12:00:00.Z", "2026-03-01T12:00:00Zx",
                    "1500-03-01T12:00:00Z", "9999-03-01T12:00:00Z", "2026-03-01T12:00:00+25:00",
                    "+026-03-01T12:00:00Z", "2026-03-01T12:00:00+01:60", "\x1b[31m\n")),
                ["--json", "extra"], ["--unknown"], ["--unknown\x1b[31m\nx"], ["--json=maybe"]):
            with self.subTest(arguments=list(map(str, arguments))):
                home = [] if arguments[0] == "--home" else ["--home", self.home]
                self.assert_refused(self.run_program("scan", *home, *arguments), 2)
        self.assert_refused(self.run_program("scan", HOME=str(self.world / "missing")), 2, "missing")
        for arguments in ([], ["guard"], ["rules", "--home", self.home]):
            self.assert_refused(self.run_program(*arguments), 2)
        for arguments in (["unknown"], ["unknown", "--json"], ["icloud", "unknown"]):
            self.assert_refused(self.run_program(*arguments), 2, 'no command "unknown"')
        sealed = self.world / "sealed"
        sealed.mkdir(mode=0)
        self.assert_refused(self.run_program("scan", "--home", sealed), 2, str(sealed), "read")

    def test_what_is_quoted_may_be_long(self):
        long = "\u00e9" * 3000
        for arguments, status, word in (
                (["scan", "--home", f"/{long}"], 2, "does not exist"),
                (["scan", "--catalog", f"/{long}"], 3, "cannot be read"),
                (["scan", "--rule", long], 2, "there is no area"),
                (["scan", f"--{long}"], 2, "not expected"), ([long], 2, "there is no command"),
                (["clean", "--rule", "trash-user", "--item", f"/{long}"], 2, "lists no item")):
            home = [] if "--home" in arguments or arguments == [long] else ["--home", self.home]
            self.assert_refused(self.run_program(*arguments, *home), status, word)

    def test_help_and_version_are_no_errors(self):
        for arguments in (["--help"], ["--version"], ["scan", "--help"], ["rules", "--help"]):
            process = self.run_program(*arguments)
            self.assertEqual((process.returncode, process.stderr), (0, b""), arguments)
            self.assertTrue(process.stdout)

    def test_a_program_without_its_resources(self):
        copy = self.world / "bin/zorvane-cli"
        copy.parent.mkdir()
        shutil.copy(CLI, copy)

        def run():
            return subprocess.run([copy, "rules"], capture_output=True, check=False,
                                  env={"HOME": str(self.home)})
        lost = run()
        self.assertEqual((lost.stdout, lost.stderr, lost.returncode),
                         (b"", b"unable to find bundle named CleanCore_CleanCore\n", 3))
        bundle = self.world / "share/zorvane/CleanCore_CleanCore.bundle"
        bundle.mkdir(parents=True)
        self.assert_refused(run(), 3, "the bundled catalog is missing")
        (bundle / "rules.json").write_text(json.dumps(document(rule("from-the-prefix"))))
        self.assertIn(b"from-the-prefix", run().stdout)

    def test_results_that_cannot_be_written(self):
        with open("/dev/full", "wb") as full:
            process = subprocess.run([CLI, "scan", "--json", "--home", self.home, "--now", NOW],
                                     stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(process.returncode, 1)
        self.assertRegex(process.stderr.decode(), r"\Azorvane-cli: .*\n\Z")

    def test_standard_streams_that_are_closed(self):
        self.file("home/area/entry")
        arguments = ["scan", "--json", "--home", self.home, "--catalog", self.catalog(rule())]
        for closed, output in (("<&-", True), ("<&- 2>&-", True), ("<&- >&- 2>&-", False)):
            process = subprocess.run(["sh", "-c", f'exec "$@" {closed}', "sh", CLI, *arguments],
                                     capture_output=True, check=False)
            self.assertEqual((process.returncode, process.stderr), (0, b""), closed)
            self.assertEqual(b"area/entry" in process.stdout, output)

    def test_a_current_folder_that_is_gone(self):
        gone = self.world / "gone"
        gone.mkdir()
        self.file("home/area/entry")
        catalog = self.catalog(rule(bases=["relative", "~/area"]))
        process = subprocess.run(
            ["sh", "-c", 'cd "$1" && rmdir "$1" && shift && exec "$@"', "sh", gone, CLI, "scan",
             "--json", "--home", self.home, "--catalog", catalog],
            capture_output=True, check=False)
        self.assertEqual((process.returncode, process.stderr), (0, b""))
        self.assertIn(b"area/entry", process.stdout)


if __name__ == "__main__":
    unittest.main()
