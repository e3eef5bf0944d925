"""What a clean says that free space will grow by, beside what it grew by: on volumes of their own
where loop devices may be mounted, and without those on a tmpfs."""

import contextlib
import json
import os
import subprocess

from support import ProgramTest, rule

KIB, MIB = 1024, 1024 * 1024
SIZE = 16 * MIB


def make(path, size=SIZE, data=None):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(data or os.urandom(size))
    return path


def prose(size):
    """Text that compresses well, and no two blocks of it alike."""
    return b"".join(b"%08d one line of a log, much like the others\n" % i for i in range(size // 52))


def clone(source, target):
    target.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run(["cp", "--reflink=always", source, target], check=True)


def overwrite(path, start, size):
    with open(path, "r+b") as file:
        file.seek(start)
        file.write(os.urandom(size))


def sparse(area, _):
    with open(make(area / "x/sparse", MIB), "r+b") as file:
        file.truncate(40 * MIB)
        os.pwrite(file.fileno(), os.urandom(3 * MIB), 20 * MIB)


def preallocated(area, _):
    with open(make(area / "x/reserved", MIB), "r+b") as file:
        os.posix_fallocate(file.fileno(), 0, SIZE)


def linked(area, names):
    first = make(area / "a/file")
    for name in names:
        name.parent.mkdir(parents=True, exist_ok=True)
        os.link(first, name)


def tiny(area, _):
    for i in range(20_000):
        make(area / f"t{i % 40}/f{i}", data=b"small")


def cloned(area, outside, half=False, both=True):
    first = make(area / "a/file")
    clone(first, (area if both else outside) / "b/file")
    if half:
        overwrite(first, SIZE // 2, SIZE // 2)


def rewritten(area, _):
    make(area / "x/database")
    os.sync()
    for i in range(20):
        overwrite(area / "x/database", (i * 3 + 1) * 256 * KIB, 256 * KIB)


def snapshot(area, _):
    make(area / "x/file")
    os.sync()
    subprocess.run(["btrfs", "-q", "subvolume", "snapshot", area.parent,
                    area.parent.parent / "snapshot"], check=True)


def mixed(area, outside):
    make(area / "x/plain")
    linked(area, [outside / "link"])
    make(area / "x/log", data=prose(SIZE))
    sparse(area, outside)
    for i in range(500):
        make(area / f"x/many/f{i}", i % 9 * KIB + 1)
        (area / f"x/many/l{i}").symlink_to(f"f{i}")


# The name, how it is made, whether a program has a file open, the file systems (all: none named).
CASES = (
    ("plain", lambda a, o: make(a / "x/file"), False, ()),
    ("sparse", sparse, False, ()),
    ("preallocated", preallocated, False, ()),
    # Where extents are small, btrfs does not show what of them was replaced at their ends.
    ("rewritten in places", rewritten, False, ("tmpfs", "ext4", "xfs", "btrfs")),
    ("links, all names", lambda a, o: linked(a, [a / "a/two", a / "b/three"]), False, ()),
    ("links, some names", lambda a, o: linked(a, [a / "b/two", o / "three"]), False, ()),
    ("open file", lambda a, o: make(a / "x/file"), True, ()),
    ("tiny files", tiny, False, ()),
    ("mixed", mixed, False, ()),
    ("compressed text", lambda a, o: make(a / "x/log", data=prose(4 * SIZE)), False, ()),
    ("clones, both", lambda a, o: cloned(a, o), False, ("xfs", "btrfs", "zstd")),
    ("clones, one", lambda a, o: cloned(a, o, both=False), False, ("xfs", "btrfs", "zstd")),
    ("clones, half overwritten", lambda a, o: cloned(a, o, half=True, both=False), False,
     ("xfs", "btrfs", "zstd")),
    ("clones, both, half overwritten", lambda a, o: cloned(a, o, half=True), False,
     ("xfs", "btrfs", "zstd")),
    ("snapshot", snapshot, False, ("btrfs", "zstd")),
)


class Reclaim(ProgramTest):
    def volumes(self):
        """The folders of file systems of our own, by name."""
        mounts = {"tmpfs": ["-t", "tmpfs", "-o", "size=600m", "none"]}
        for name, command, options in (("ext4", ["mkfs.ext4", "-q"], "loop"),
                                       ("xfs", ["mkfs.xfs", "-q"], "loop"),
                                       ("btrfs", ["mkfs.btrfs", "-q"], "loop"),
                                       ("zstd", ["mkfs.btrfs", "-q"], "loop,compress-force=zstd")):
            image = self.world / f"{name}.image"
            with open(image, "wb") as file:
                file.truncate(600 * MIB)
            if succeeds(*command, image):
                mounts[name] = ["-o", options, image]
        for name, arguments in mounts.items():
            folder = self.world / name
            folder.mkdir()
            if succeeds("mount", *arguments, folder):
                self.addCleanup(subprocess.run, ["umount", "-l", folder], check=True)
                yield name, folder
            else:
                print(f"not tried on {name}, which cannot be mounted here")

    def test_every_gain_is_as_it_was_said(self):
        print(f"\n{'':7}{'':31}{'said before':>23}{'gained':>10}{'said after':>11}  because of")
        for volume, folder in self.volumes():
            for name, prepare, is_open, only in CASES:
                if not only or volume in only:
                    with self.subTest(volume=volume, case=name):
                        self.check(volume, folder, name, prepare, is_open)

    def test_a_released_download_is_seen_in_the_free_space(self):
        for volume, folder in self.volumes():
            home = folder / "home"
            entry = make(home / "Library/Mobile Documents/com~apple~CloudDocs/film")
            make(home / "mirror/film", data=entry.read_bytes())
            os.sync()
            process = self.run_program("icloud", "release", entry, "--home", home, "--mirror",
                                       home / "mirror", "--json")
            self.assertGreater(json.loads(process.stdout)["freedBytes"], SIZE * 0.99, volume)

    def check(self, volume, folder, name, prepare, is_open):
        home = folder / "home"
        self.empty(folder)
        if volume in ("btrfs", "zstd"):
            subprocess.run(["btrfs", "-q", "subvolume", "create", home], check=True)
        for made in ("area", "outside"):
            (home / made).mkdir(parents=True)
        prepare(home / "area", home / "outside")
        given = ("--home", home, "--catalog", self.catalog(rule()), "--json", "--safe")
        with contextlib.ExitStack() as stack:
            if is_open:
                stack.enter_context(open(home / "area/x/file", "rb"))
            said = json.loads(self.run_program("clean", "--dry-run", *given).stdout)["reclaim"]
            before = settled(folder)
            report = json.loads(self.run_program("clean", "--yes", *given).stdout)
            gained = settled(folder) - before
        self.assertEqual((report["skipped"], os.listdir(home / "area")), ([], []))
        causes = {share["cause"]: share["bytes"] for share in said["causes"]}
        least, most = said["certainBytes"], said["possibleBytes"]
        print(f"{volume:7}{name:31}{least / 1e6:>10.1f} –{most / 1e6:>10.1f}{gained / 1e6:>10.1f}"
              f"{report['visibleFreedBytes'] / 1e6:>11.1f}  {' '.join(causes)}")
        # Records of the file systems themselves come and go beside the data.
        tolerance = max(most // 100, 128 * KIB)
        self.assertTrue(least - tolerance <= gained <= most + tolerance, (said, gained))
        self.assertAlmostEqual(report["visibleFreedBytes"], gained, delta=tolerance)
        self.assertFalse(report["stillBeingFreed"])
        if report["totalBytesFreed"] - gained > tolerance:
            self.assertTrue(report["shortfall"]["causes"], report)
            self.assertEqual(report["shortfall"]["unexplainedBytes"], 0, report)
        elif not causes:
            self.assertNotIn("shortfall", report)

    def empty(self, folder):
        for entry in folder.iterdir():
            if not succeeds("btrfs", "-q", "subvolume", "delete", "-c", entry):
                subprocess.run(["rm", "-rf", entry], check=True)
        settled(folder)

    def test_hard_links_sparse_and_open_files_are_known_without_such_volumes(self):
        area = self.home / "area"
        sparse(area, None)
        linked(area, [area / "b/two", self.home / "three"])
        with open(make(area / "open/file"), "rb") as file:
            holder = subprocess.Popen(["sleep", "600"], stdin=file)
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        self.tool("tools/usr/bin/docker", """echo '{"Type":"Images","Reclaimable":"2GB"}'""")
        given = ("--home", self.home, "--tools", self.world / "tools", "--catalog",
                 self.catalog(rule(), rule("docker-reclaimable", [], "B", kind="command")))
        shown = self.clean("--dry-run", "--rule", "docker-reclaimable", "--all", *given, status=1)
        self.assertEqual(shown["reclaim"], {"certainBytes": 0, "possibleBytes": 0, "causes": [
            {"cause": "shownOnly", "bytes": 2 * 10**9}]})
        causes = self.scan("--reclaim", *given)["reclaim"]["causes"]
        self.assertEqual([(share["cause"], share["bytes"] // MIB, share.get("programs"))
                          for share in causes],
                         [("otherNames", 32, None), ("openFiles", 16, ["sleep"])])
        shown = self.run_program("scan", "--reclaim", "--rule", "cache-test", *given).stdout.decode()
        for name in ("a", "b", "open"):
            self.assertRegex(shown, rf"area/{name} +\(gives back ")


def settled(folder):
    """The free bytes of a volume that has nothing left to do: freezing waits for that. A tmpfs
    cannot be frozen and does all at once."""
    for step in ("-f", "-u"):
        succeeds("fsfreeze", step, folder)
    status = os.statvfs(folder)
    return status.f_bavail * status.f_frsize


def succeeds(*command):
    """Whether a program of the administrator does its work."""
    path = f"{os.environ['PATH']}:/usr/sbin:/sbin"
    return subprocess.run(["env", f"PATH={path}", *command], check=False,
                          stderr=subprocess.DEVNULL).returncode == 0
