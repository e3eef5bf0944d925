"""A folder tree whose names, contents, modes and times follow from a seed and a moment."""

import os
import random
import stat

SECOND = 10**9
DAY = 86_400 * SECOND


def raw(path):
    """The exact bytes of a path given as text or as bytes."""
    return path if isinstance(path, bytes) else path.encode()


def join(folder, name):
    """The path of one entry of a folder; the name may hold anything but a slash."""
    assert b"/" not in raw(name)
    return raw(folder) + b"/" + raw(name)


class Tree:
    """Makes entries below one root; every path is relative to it, every age is in days before now.

    Files get their time when they are made, folders in finish(), because each new entry
    would change the time of its folder again. A folder without an age of its own is as old
    as its newest direct entry, but never newer than now.
    """

    def __init__(self, root, seed, now, scale):
        self.now = now
        self.files = self.folders = self.links = self.apparent = self.written = 0
        self._root = root
        self._seed = seed
        self._scale = scale
        self._modes = {b"": 0o700}
        self._times = {}
        self._newest = {}
        self.begin_area("")

    def begin_area(self, name):
        """Starts a random sequence of its own, so that areas do not shift one another."""
        self.random = random.Random(f"{self._seed}/{name}")

    def time(self, age):
        return self.now - round(age * DAY)

    def scaled(self, count):
        return max(1, round(count * self._scale))

    def folder(self, path, age=None, mode=0o755):
        path = raw(path)
        if path not in self._modes:
            self._make_parents(path)
            os.mkdir(self._absolute(path))
            self.folders += 1
        self._modes[path] = mode
        if age is not None:
            self._times[path] = self.time(age)

    def file(self, path, content, age, mode=0o644):
        """Makes a file of the given bytes, text, or number of random bytes."""
        if isinstance(content, int):
            content = self.random.randbytes(content)
        self._write(path, [(0, raw(content))], len(raw(content)), age, mode)

    def sparse(self, path, length, age, data=(), mode=0o644):
        """Makes a file of holes with random data at the given (offset, size) pairs."""
        pieces = [(offset, self.random.randbytes(size)) for offset, size in data]
        self._write(path, pieces, length, age, mode)

    def many(self, folder, count, sizes, ages, suffix="", levels=1):
        """Makes count (times the scale) random files, spread over levels of short folder names."""
        for _ in range(self.scaled(count)):
            name = f"{self.random.getrandbits(64):016x}"
            parts = [name[level * 2 : level * 2 + 1] for level in range(levels)]
            path = b"/".join([raw(folder), *map(raw, parts), raw(name + suffix)])
            self.file(path, self.random.randint(*sizes), self.random.uniform(*ages))

    def link(self, path, target, age):
        path = raw(path)
        self._make_parents(path)
        os.symlink(raw(target), self._absolute(path))
        self._set_time(path, self.time(age))
        self.links += 1

    def hard_link(self, path, existing, age):
        path = raw(path)
        self._make_parents(path)
        os.link(self._absolute(raw(existing)), self._absolute(path))
        self._note(path, self.time(age))
        self.files += 1

    def special(self, path, kind, age):
        """Makes a socket (stat.S_IFSOCK) or a pipe (stat.S_IFIFO) that nobody listens to."""
        path = raw(path)
        self._make_parents(path)
        os.mknod(self._absolute(path), kind | stat.S_IRUSR | stat.S_IWUSR)
        self._set_time(path, self.time(age))
        self.files += 1

    def finish(self):
        """Gives every folder its time and mode, deepest first, while its parents can be entered."""
        for path in sorted(self._modes, key=lambda path: (path == b"", -path.count(b"/"), path)):
            self._set_time(path, self._times.get(path, self._newest.get(path, self.now)))
            os.chmod(self._absolute(path), self._modes[path])

    def _absolute(self, path):
        return os.path.join(self._root, path) if path else self._root

    def _make_parents(self, path):
        parent = path.rpartition(b"/")[0]
        if parent not in self._modes:
            self.folder(parent)

    def _write(self, path, pieces, length, age, mode):
        path = raw(path)
        self._make_parents(path)
        time = self.time(age)
        descriptor = os.open(self._absolute(path), os.O_WRONLY | os.O_CREAT | os.O_EXCL, 0o600)
        with open(descriptor, "wb", buffering=0) as file:
            for offset, content in pieces:
                file.seek(offset)
                written = file.write(content)
                if written != len(content):
                    raise OSError(f"{os.fsdecode(path)}: written only in part")
                self.written += written
            os.ftruncate(descriptor, length)
            os.fchmod(descriptor, mode)
            os.utime(descriptor, ns=(time, time))
        self._note(path, time)
        self.files += 1
        self.apparent += length

    def _set_time(self, path, time):
        os.utime(self._absolute(path), ns=(time, time), follow_symlinks=False)
        if path:
            self._note(path, time)

    def _note(self, path, time):
        parent = path.rpartition(b"/")[0]
        time = min(time, self.now)
        self._newest[parent] = max(time, self._newest.get(parent, time))
