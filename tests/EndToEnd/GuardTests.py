#!/usr/bin/env python3
"""The guard's verdict on one path."""

import os
import unittest

from support import ProgramTest


class Guard(ProgramTest):
    def setUp(self):
        super().setUp()
        self.file("home/.cache/app/file")
        self.file("home/Documents/file")
        self.file("home/.config/user-dirs.dirs", 'XDG_PICTURES_DIR="$HOME/Bilder"\n')
        os.symlink("../Documents", self.home / ".cache/to-documents")
        os.symlink("/", self.home / ".cache/to-root")
        os.symlink("app", self.home / ".cache/to-app")

    def test_verdicts(self):
        cache = self.home / ".cache"
        for path, base, verdict in (
                (cache / "app/file", cache, "allowed"),
                (cache / "missing", cache, "allowed"),
                (cache / "to-app", cache, "allowed"),
                (f"{cache}/./app//", f"{cache}/../.cache/", "allowed"),
                ("home/.cache/app", "home/.cache", "allowed"),
                (cache, cache, "blocked: outsideAllowedBase"),
                (self.home / ".cached/x", cache, "blocked: outsideAllowedBase"),
                (self.world / "x", cache, "blocked: outsideAllowedBase"),
                (cache / "to-documents", cache, "blocked: protectedUserPath"),
                (cache / "to-documents/file", cache, "blocked: protectedUserPath"),
                (self.home / "Documents", self.home, "blocked: protectedUserPath"),
                (self.home / "Bilder/photo", self.home, "blocked: protectedUserPath"),
                (self.home / ".ssh/id", self.home / ".ssh", "blocked: protectedUserPath"),
                (cache / "to-root", cache, "blocked: criticalSystemPath"),
                (self.home, self.world, "blocked: criticalSystemPath"),
                ("/", "/", "blocked: criticalSystemPath"),
                ("/usr", "/", "blocked: criticalSystemPath")):
            with self.subTest(path=path, base=base):
                for home in (["--home", self.home], []):
                    process = self.run_program("guard", path, "--base", base, *home)
                    self.assertEqual(
                        (process.stdout.decode(), process.stderr, process.returncode),
                        (verdict + "\n", b"", 0 if verdict == "allowed" else 1))

    def test_wrong_usage(self):
        for arguments in ((), (self.home,), ("--base", self.home), ("", "--base", self.home),
                          (self.home, "--base", ""), (self.home, "x", "--base", self.home),
                          (self.home, "--base", self.home, "--home", "/nowhere"),
                          (self.home, "--base", self.home, "--yes")):
            with self.subTest(arguments):
                self.assert_refused(self.run_program("guard", *arguments), 2)


if __name__ == "__main__":
    unittest.main()
