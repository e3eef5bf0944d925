"""In another home nothing outside of it is listed, measured or removed, whatever it is told."""

import ctypes
import os

from support import NOW, ProgramTest, in_own_mounts, paths, rule, snapshot

IN_ACCESS, IN_OPEN, IN_NONBLOCK = 0x1, 0x20, 0o4000
LIBC = ctypes.CDLL(None, use_errno=True)
ACCOUNT = 'mount --bind "$1" /etc/passwd'


class Watch:
    """Sees whether anyone opens or reads a folder or something directly in it; see inotify(7)."""

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
    def test_nothing_outside_is_read_or_goes(self):
        outside = self.world / "outside"
        for name in ("tmp", "cache", "config", "linked", "Trash/files"):
            self.file(f"outside/{name}/file")
            self.file(f"outside/{name}/folder/inner/file")
        self.file("outside/config/user-dirs.dirs", 'XDG_PICTURES_DIR="$HOME/area"\n')
        self.file("home/area/entry")
        self.file("home/.config/user-dirs.dirs", 'XDG_PICTURES_DIR="$HOME/Bilder"\n')
        self.file("home/Bilder/photo")
        for name, target in (
                ("link", "../outside/linked"), ("up", ".."), (".cache", "../outside/cache"),
                (".tmp", outside / "tmp"), ("Trash", "../outside/Trash"),
                ("kernel-link", f"/proc/self/root{outside}/linked"),
                ("area/link", "../../outside/linked/file"), ("area/folder-link", outside)):
            os.symlink(target, self.home / name)
        bases = {
            "variable": ["$DARWIN_USER_TEMP_DIR", "$DARWIN_USER_CACHE_DIR"],
            "link": ["~/link", "~/link/folder", "~/.cache", "~/.tmp", "~/kernel-link", "~/up",
                     "~/up/outside/linked", "~/Trash/files"],
            "name": [f"{outside}/{name}" for name in ("", "linked", "Trash/files")],
            "wildcard": ["~/*/folder", "~/link/*", "~/../*", "~/../outside/*", "/tmp/*/outside"],
            "dots": ["~/..", "~/../outside/linked", "~/area/../../outside/linked"],
            "protected": ["~/Bilder", "~/area/../Bilder"], "area": ["~/area"]}
        catalog = self.catalog(*(rule(name, base) for name, base in bases.items()))
        every = [word for name in bases for word in ("--rule", name)]
        variables = {name: f"{outside}/{folder}" for name, folder in (
            ("TMPDIR", "tmp"), ("XDG_CACHE_HOME", "cache"), ("XDG_CONFIG_HOME", "config"))}
        before = snapshot(self.world)
        watch = Watch(outside, *filter(os.path.isdir, outside.rglob("*")))
        for home in (["--home", self.home], []):
            for status, *command in (
                    (0, "scan"), (1, "clean", "--safe", "--yes"),
                    (1, "clean", *every, "--all", "--yes"),
                    (2, "clean", "--rule", "link", "--item", self.home / "link/file", "--yes")):
                process = self.run_program(*command, *home, "--catalog", catalog, **variables)
                self.assertEqual(process.returncode, status, command)
        self.assertEqual(watch.events(), b"")
        self.assert_left(before, [self.home / "area/entry"])
        os.listdir(outside)
        self.assertNotEqual(watch.events(), b"", "the watch itself does not work")

    def account(self):
        """A password file in which this home is the account's own."""
        return self.file("passwd", f"root:x:0:0::{self.home}:/bin/sh\n")

    def test_in_the_accounts_own_home_its_variables_and_links_count(self):
        self.file("home/elsewhere/in-cache")
        self.file("linked/in-linked")
        os.symlink("../linked", self.home / "link")
        process = self.run_program(
            "scan", "--json", "--catalog", self.catalog(
                rule("cache-x", ["$DARWIN_USER_CACHE_DIR"]), rule("cache-linked", ["~/link"])),
            wrapper=in_own_mounts(ACCOUNT, self.account()), XDG_CACHE_HOME=str(self.home / "elsewhere"))
        self.assertEqual((process.returncode, process.stderr), (0, b""))
        self.assertIn(b"in-cache", process.stdout)
        self.assertIn(b"link/in-linked", process.stdout)

    def test_what_is_for_other_homes_is_refused_in_the_accounts_own(self):
        mounted = self.world.parent / (self.world.name + "-home")
        mounted.mkdir()
        self.addCleanup(mounted.rmdir)
        account = in_own_mounts(f'{ACCOUNT}; mount --bind "$2" "$3"', self.account(), self.home,
                                mounted)
        os.symlink(self.home, self.world / "again")
        os.symlink(self.home, self.home / "itself")
        for arguments in (["--now", NOW], ["--tools", self.home], ["--home", self.world],
                          ["--home", self.home / ".."], ["--home", "/"],
                          *(["--now", NOW, "--home", home] for home in (
                              self.home, self.world / "again", mounted))):
            with self.subTest(arguments):
                word = str(self.world) if arguments[0] == "--home" else arguments[0]
                process = self.run_program("scan", *arguments, wrapper=account)
                self.assert_refused(process, 2, word if arguments[-1] != "/" else "home")
        for base in ("~", "~/itself", "/opt/x", "~/.config", self.world, "/*", "/etc"):
            catalog = self.catalog(rule("cache-fine", ["~/.cache"]), rule(bases=[str(base)]))
            for command in ("scan", "rules"):
                process = self.run_program(command, "--catalog", catalog, wrapper=account)
                self.assert_refused(process, 3, str(catalog))
        # Any may be tried in another home.
        self.file("home/area/entry")
        report = self.scan("--catalog", self.catalog(rule(bases=["~"])))
        self.assertIn(str(self.home / "area"), paths(report))
