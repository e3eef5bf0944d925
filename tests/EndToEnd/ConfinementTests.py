#!/usr/bin/env python3
"""A run in another home neither lists nor measures anything outside of it."""

import ctypes
import os
import pathlib
import unittest

from support import NOW, ProgramTest, in_own_mounts, paths, rule

IN_ACCESS, IN_OPEN, IN_NONBLOCK = 0x1, 0x20, 0o4000
LIBC = ctypes.CDLL(None, use_errno=True)


class Watch:
    """Sees whether anyone opens or reads a folder or what is directly in it; see inotify(7)."""

    def __init__(self, *folders):
        self._descriptor = LIBC.inotify_init1(IN_NONBLOCK)
        for folder in folders:
            assert LIBC.inotify_add_watch(self._descriptor, os.fsencode(folder),
                                          IN_ACCESS | IN_OPEN) >= 0

    def events(self):
        try:
            return os.read(self._descriptor, 1 << 16)
        except BlockingIOError:
            return b""


class Confinement(ProgramTest):
    def test_nothing_outside_is_listed_or_measured(self):
        outside = [self.world / name for name in ("tmp", "cache", "absolute", "linked", "config")]
        for folder in outside:
            self.file(folder / "old-file", b"x" * 50_000)
            self.file(folder / "old-folder/inner/file", b"x" * 50_000)
        self.file("home/area/entry")
        for name, target in (("link", "../linked"), ("link-up", ".."), (".cache", "../cache"),
                             ("kernel-link", f"/proc/self/root{self.world}/linked")):
            os.symlink(target, self.home / name)
        os.symlink(self.world / "linked", self.home / "area/link-in-area")
        catalog = self.catalog(
            rule("temp-x", ["$DARWIN_USER_TEMP_DIR", "~/.tmp"]),
            rule("cache-x", ["$DARWIN_USER_CACHE_DIR", "~/.cache"]),
            rule("cache-absolute", [str(self.world / "absolute"), "/tmp", "/var/tmp", "/"]),
            rule("cache-linked", ["~/link", "~/link/old-folder", "~/kernel-link"]),
            rule("cache-up", ["~/..", "~/link-up/linked", "~/area/../../linked", "~/../*"]),
            rule("cache-wild", ["~/*/old-folder", "~/link/*"]),
            rule("cache-area"))

        watch = Watch(*outside, *(folder / "old-folder" for folder in outside))
        for by_variable in (False, True):
            home = [] if by_variable else ["--home", self.home]
            process = self.run_program(
                "scan", "--json", "--catalog", catalog, "--now", NOW, *home,
                TMPDIR=str(self.world / "tmp"), XDG_CACHE_HOME=str(self.world / "cache"),
                XDG_CONFIG_HOME=str(self.world / "config"))
            self.assertEqual((process.returncode, process.stderr), (0, b""))
            for name in ("old-file", "old-folder", "/linked/", "/absolute"):
                self.assertNotIn(name.encode(), process.stdout)
            self.assertIn(b"area/entry", process.stdout)
        self.assertEqual(watch.events(), b"")

        os.listdir(outside[0])
        self.assertNotEqual(watch.events(), b"", "the watch itself does not work")

    def test_in_the_accounts_own_home_its_variables_and_links_count(self):
        account = in_own_mounts('mount --bind "$1" /etc/passwd', self.account())
        self.file("cache/in-cache")
        self.file("linked/in-linked")
        os.symlink("../linked", self.home / "link")
        catalog = self.catalog(rule("cache-x", ["$DARWIN_USER_CACHE_DIR"]),
                               rule("cache-linked", ["~/link"]))
        process = self.run_program("scan", "--json", "--catalog", catalog, wrapper=account,
                                   XDG_CACHE_HOME=str(self.world / "cache"))
        self.assertEqual((process.returncode, process.stderr), (0, b""))
        self.assertIn(b"in-cache", process.stdout)
        self.assertIn(b"link/in-linked", process.stdout)

    def account(self):
        """A password file in which this home is the account's own."""
        file = self.world / "passwd"
        file.write_text(f"root:x:0:0::{self.home}:/bin/sh\n")
        return file

    def test_what_is_for_other_homes_is_refused_in_the_accounts_own(self):
        account = in_own_mounts('mount --bind "$1" /etc/passwd', self.account())
        (self.home / ".config").mkdir()
        os.symlink(self.home, self.world / "again")
        os.symlink(self.home, self.home / "innocent")
        harmless = self.catalog(rule())
        above = pathlib.Path(*self.world.parts[:2])
        for arguments, status, word in (
                (["--now", NOW], 2, "--now"),
                (["--tools", self.home], 2, "--tools"),
                (["--now", NOW, "--home", self.home], 2, "--now"),
                (["--now", NOW, "--home", self.world / "again"], 2, "--now"),
                (["--home", self.world], 2, str(self.world)),
                (["--home", self.home / ".."], 2, str(self.world)),
                (["--home", above], 2, str(above)),
                (["--home", "/"], 2, "/")):
            with self.subTest(arguments):
                self.assert_refused(self.run_program("scan", "--catalog", harmless, *arguments,
                                                     wrapper=account), status, word)
        for base in ("~", "~/innocent", "/opt/x", "/srv/x", "/home/other", "~/.config", "~/.local", "~/.local/share", self.world, "/*",
                     "/usr/share", "/etc"):
            with self.subTest(base):
                catalog = self.catalog(rule("cache-fine", ["~/.cache"]), rule(bases=[str(base)]))
                for command in ("scan", "rules"):
                    process = self.run_program(command, "--catalog", catalog, wrapper=account)
                    self.assert_refused(process, 3, "refused")

    def test_a_mount_of_the_accounts_own_home_is_that_home(self):
        other = [self.world.parent / (self.world.name + name) for name in ("-home", "-above")]
        for folder in other:
            folder.mkdir()
            self.addCleanup(folder.rmdir)
        mounts = in_own_mounts('mount --bind "$1" /etc/passwd; mount --bind "$2" "$3"; '
                               'mount --bind "$4" "$5"', self.account(), self.home, other[0],
                               self.world, other[1])
        for home, word in ((other[0], "--now"), (other[1], str(other[1]))):
            self.assert_refused(self.run_program("scan", "--home", home, "--now", NOW,
                                                 wrapper=mounts), 2, word)

    def test_any_catalog_may_be_tried_in_another_home(self):
        self.file("home/area/entry")
        report = self.scan("--catalog", self.catalog(rule(bases=["~"])))
        self.assertEqual(paths(report), [str(self.home / "area")])


if __name__ == "__main__":
    unittest.main()
