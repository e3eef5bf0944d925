"""In another home nothing outside of it is listed, measured or removed, whatever it is told."""

import ctypes
import os

from support import NOW, ProgramTest, in_own_mounts, rule, snapshot

IN_ACCESS, IN_OPEN, IN_NONBLOCK = 0x1, 0x20, 0o4000
LIBC = ctypes.CDLL(None, use_errno=True)


def watch(folders):
    """Returns a function that tells whether anyone has opened or read one of the folders, or
    something directly in it, since it was last asked; see inotify(7)."""
    descriptor = LIBC.inotify_init1(IN_NONBLOCK)
    for folder in folders:
        assert LIBC.inotify_add_watch(descriptor, os.fsencode(folder), IN_ACCESS | IN_OPEN) >= 0

    def was_read():
        try:
            return os.read(descriptor, 1 << 16) != b""
        except BlockingIOError:
            return False

    return was_read


class Confinement(ProgramTest):
    def test_nothing_outside_is_read_or_goes(self):
        outside = self.world / "outside"
        for name in ("tmp", "cache", "config", "linked", "Trash/files"):
            self.file(f"outside/{name}/file")
            self.file(f"outside/{name}/folder/inner/file")
        self.file("outside/config/user-dirs.dirs", 'XDG_PICTURES_DIR="$HOME/area"\n')
        self.file("home/.config/user-dirs.dirs", 'XDG_PICTURES_DIR="$HOME/Bilder"\n')
        for name in ("area/entry", "Bilder/photo"):
            self.file(f"home/{name}")
        for name, target in (
                ("link", "../outside/linked"), ("up", ".."), (".cache", "../outside/cache"),
                (".tmp", outside / "tmp"), ("Trash", "../outside/Trash"),
                ("kernel-link", f"/proc/self/root{outside}/linked"),
                ("area/link", "../../outside/linked/file"), ("area/folder-link", outside)):
            os.symlink(target, self.home / name)
        bases = {
            "link": ["~/link", "~/link/folder", "~/.cache", "~/.tmp", "~/kernel-link", "~/up",
                     "~/up/outside/linked", "~/Trash/files"],
            "name": ["$DARWIN_USER_TEMP_DIR", "$DARWIN_USER_CACHE_DIR", str(outside),
                     f"{outside}/linked", f"{outside}/Trash/files"],
            "wildcard": ["~/*/folder", "~/link/*", "~/../*", "~/../outside/*", "/tmp/*/outside"],
            "dots": ["~/..", "~/../outside/linked", "~/area/../../outside/linked"],
            "protected": ["~/Bilder", "~/area/../Bilder"], "area": ["~/area"]}
        catalog = self.catalog(*(rule(name, base) for name, base in bases.items()))
        every = [word for name in bases for word in ("--rule", name)]
        variables = {name: f"{outside}/{folder}" for name, folder in (
            ("TMPDIR", "tmp"), ("XDG_CACHE_HOME", "cache"), ("XDG_CONFIG_HOME", "config"))}
        before = snapshot(self.world)
        was_read = watch([outside, *filter(os.path.isdir, outside.rglob("*"))])
        for status, *command in (
                (0, "scan"), (1, "clean", "--safe", "--yes"), (1, "clean", *every, "--all", "--yes"),
                (2, "clean", "--rule", "link", "--item", self.home / "link/file", "--yes")):
            for home in (["--home", self.home], []):
                process = self.run_program(*command, *home, "--catalog", catalog, **variables)
                self.assertEqual(process.returncode, status, command)
        self.assertFalse(was_read())
        self.assert_left(before, [self.home / "area/entry"])
        os.listdir(outside)
        self.assertTrue(was_read(), "the watch itself does not work")

    def test_in_the_accounts_own_home_its_variables_and_links_count(self):
        self.file("home/elsewhere/in-cache")
        self.file("linked/in-linked")
        os.symlink("../linked", self.home / "link")
        process = self.run_program(
            "scan", "--json", "--catalog",
            self.catalog(rule(bases=["$DARWIN_USER_CACHE_DIR", "~/link"])),
            wrapper=self.account(), XDG_CACHE_HOME=f"{self.home}/elsewhere")
        for name in (b"elsewhere/in-cache", b"link/in-linked"):
            self.assertIn(name, process.stdout)

    def test_what_is_for_other_homes_is_refused_in_the_accounts_own(self):
        (self.world / "mounted").mkdir()
        for name in ("again", "home/itself"):
            os.symlink(self.home, self.world / name)
        account = self.account() + in_own_mounts('mount --bind "$1" "$2"', self.home,
                                                 self.world / "mounted")
        for word, *arguments in (
                ("--now", "--now", NOW), ("--tools", "--tools", self.home),
                (str(self.world), "--home", self.world),
                *(("--now", "--now", NOW, "--home", self.world / name)
                  for name in ("home", "again", "mounted"))):
            self.assert_refused(self.run_program("scan", *arguments, wrapper=account), 2, word)
        for base in ("~", "~/itself", "/etc"):
            catalog = self.catalog(rule("cache-fine", ["~/.cache"]), rule(bases=[base]))
            for command in ("scan", "rules"):
                process = self.run_program(command, "--catalog", catalog, wrapper=account)
                self.assert_refused(process, 3, str(catalog))
        # Any may be tried in another home.
        self.file("home/area/entry")
        report = self.scan("--catalog", self.catalog(rule(bases=["~"])))
        self.assertIn(f"{self.home}/area", [item["path"] for item in report["categories"][0]["items"]])
