"""What the tests of cleaning share: exact snapshots."""

import base64
import json
import os
import stat

from support import ProgramTest

READ_BY_THE_PROGRAM = (b"catalog.json", b"user-dirs.dirs")


def snapshot(folder):
    """Everything below a folder, by its path in bytes: kind, mode, owner, times to the nanosecond,
    and content or target. Taking it changes nothing, in folders without permissions neither."""
    entries = {}
    _add(os.fsencode(folder), entries)
    return entries


def _add(path, entries):
    status = os.lstat(path)
    facts = (stat.filemode(status.st_mode), status.st_uid, status.st_mtime_ns)
    if stat.S_ISLNK(status.st_mode):
        facts += (os.readlink(path),)
    elif stat.S_ISREG(status.st_mode):
        facts += (status.st_blocks, _content(path, status.st_mode))
        if os.path.basename(path) not in READ_BY_THE_PROGRAM:
            facts += (status.st_atime_ns,)
    entries[path] = facts
    if stat.S_ISDIR(status.st_mode):
        os.chmod(path, 0o700)
        for name in os.listdir(path):
            _add(os.path.join(path, name), entries)
        os.chmod(path, stat.S_IMODE(status.st_mode))


def _content(path, mode):
    if not mode & stat.S_IRUSR:
        return None
    descriptor = os.open(path, os.O_RDONLY | os.O_NOATIME)
    with open(descriptor, "rb") as file:
        return file.read()


def without(entries, removed):
    """A snapshot as it has to be once these paths are gone: the rest is as it was, but for the time
    of the folders that they were in."""
    removed = {os.fsencode(path) for path in removed}

    def is_gone(path):
        return path in removed or (path != os.path.dirname(path)
                                   and is_gone(os.path.dirname(path)))
    rest = {path: facts for path, facts in entries.items() if not is_gone(path)}
    for path in removed:
        parent = os.path.dirname(path)
        if parent in rest:
            rest[parent] = rest[parent][:2]
    return rest


def exact_path(item):
    """The bytes of an item's path in a report."""
    if "pathBytes" in item:
        return base64.b64decode(item["pathBytes"], validate=True)
    return os.fsencode(item["path"])


class CleaningTest(ProgramTest):
    def clean(self, *arguments, status=0, **options):
        """What `clean --json --yes` prints for the home."""
        process = self.run_program("clean", "--json", "--yes", "--home", self.home, *arguments,
                                   **options)
        # A sample home has an area that cannot be read, which is said and nothing else.
        unreadable = b'zorvane-cli: some areas could not be read; "zorvane-cli scan" shows which\n'
        self.assertIn(process.stderr, (b"", unreadable))
        self.assertEqual(process.returncode, status)
        return json.loads(process.stdout)

    def assert_snapshot(self, folder, expected):
        """Fails with the first paths that differ, not with two whole trees."""
        actual = snapshot(folder)
        for path, facts in expected.items():
            if path in actual:
                actual[path] = actual[path][:len(facts)]
        differing = [path for path in sorted({*expected, *actual})
                     if expected.get(path) != actual.get(path)]
        self.assertEqual([(path, expected.get(path, "missing before"),
                           actual.get(path, "missing now")) for path in differing[:5]], [])
