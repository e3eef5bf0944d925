#!/usr/bin/env python3
"""A clean in another home touches nothing outside of it, whatever it is told."""

import os
import unittest

from cleaning import CleaningTest, snapshot, without
from support import rule


class CleanConfinement(CleaningTest):
    def setUp(self):
        super().setUp()
        for name in ("tmp", "cache", "config", "data", "linked", "Trash/files", "Trash/info"):
            self.file(f"outside/{name}/file")
            self.file(f"outside/{name}/folder/inner/file")
        self.file("outside/Trash/info/file.trashinfo")
        self.file("outside/config/user-dirs.dirs", 'XDG_PICTURES_DIR="$HOME/area"\n')
        self.outside = self.world / "outside"
        self.file("home/area/entry")
        self.file("home/.config/user-dirs.dirs", 'XDG_PICTURES_DIR="$HOME/Bilder"\n')
        self.file("home/Bilder/photo")
        for name, target in (
                ("link", "../outside/linked"), ("up", ".."), (".cache", "../outside/cache"),
                (".tmp", self.outside / "tmp"), ("Trash", "../outside/Trash"),
                ("kernel-link", f"/proc/self/root{self.outside}/linked"),
                ("area/link", "../../outside/linked/file"), ("area/folder-link", self.outside),
                ("area/up", "../.."), ("area/itself", "itself")):
            os.symlink(target, self.home / name)
        self.variables = {
            "TMPDIR": f"{self.outside}/tmp", "XDG_CACHE_HOME": f"{self.outside}/cache",
            "XDG_CONFIG_HOME": f"{self.outside}/config", "XDG_DATA_HOME": f"{self.outside}/data"}

    def test_nothing_outside_goes(self):
        bases = {
            "by-variable": ["$DARWIN_USER_TEMP_DIR", "$DARWIN_USER_CACHE_DIR"],
            "by-link": ["~/link", "~/link/folder", "~/.cache", "~/.tmp", "~/kernel-link", "~/up",
                        "~/up/outside/linked", "~/Trash/files"],
            "by-name": [f"{self.outside}/{name}" for name in ("", "linked", "Trash/files")],
            "by-wildcard": ["~/*/folder", "~/link/*", "~/../*", "~/../outside/*", "/tmp/*/outside"],
            "by-dots": ["~/..", "~/../outside/linked", "~/area/../../outside/linked"],
            "protected": ["~/Bilder", "~/area/../Bilder"],
            "area": ["~/area"]}
        catalog = self.catalog(*(rule(name, base) for name, base in bases.items()))
        expected = without(snapshot(self.world),
                           [self.home / "area/entry", self.home / "area/itself"])
        for home in (["--home", self.home], []):
            for choice in (["--safe"],
                           [*(part for name in bases for part in ("--rule", name)), "--all"]):
                process = self.run_program("clean", *choice, "--yes", *home, "--catalog", catalog,
                                           **self.variables)
                self.assertEqual((process.returncode, process.stderr), (1, b""), choice)
                self.assert_snapshot(self.world, expected)

    def test_an_item_outside_is_none_that_can_be_named(self):
        before = snapshot(self.outside)
        catalog = self.catalog(rule("linked", ["~/link", str(self.outside / "linked")]))
        for item in (self.home / "link/file", self.outside / "linked/file"):
            process = self.run_program("clean", "--rule", "linked", "--item", item, "--yes",
                                       "--home", self.home, "--catalog", catalog, **self.variables)
            self.assert_refused(process, 2, str(item))
        self.assert_snapshot(self.outside, before)


if __name__ == "__main__":
    unittest.main()
