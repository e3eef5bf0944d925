"""What the end-to-end tests share: homes of their own, catalogs, exact snapshots, the program."""

import base64
import json
import os
import pathlib
import pty
import stat
import subprocess
import tempfile
import unittest

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
CLI = os.environ["ZORVANE_CLI"]
NOW = "2026-03-01T12:00:00Z"
NOW_SECONDS = 1_772_366_400
DAY = 86_400


def rule(name="cache-test", bases=("~/area",), tier="A", days=0, exclusions=(), kind="fileSystem"):
    return {"id": name, "tier": tier, "kind": kind, "titleKey": "", "basePaths": list(bases),
            "minAgeDays": days, "exclusions": list(exclusions)}


def document(*rules):
    return json.dumps({"schemaVersion": 1, "rules": rules})


class ProgramTest(unittest.TestCase):
    """A test with an empty home in a folder of its own: self.world / "home"."""

    def setUp(self):
        self.world = pathlib.Path(tempfile.mkdtemp(prefix="zorvane-test-")).resolve()
        self.addCleanup(subprocess.run, ["sh", "-c", 'chmod -R u+rwX "$0"; rm -r "$0"', self.world],
                        check=True)
        self.home = self.world / "home"
        self.home.mkdir()
        self.environment = {"PATH": os.environ["PATH"], "HOME": str(self.home), "LC_ALL": "C.UTF-8"}

    def file(self, path, content="content", age_days=400, mode=0o644):
        """Makes a file of a given age below the world; returns its path."""
        path = self.world / path
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        path.chmod(mode)
        os.utime(path, (NOW_SECONDS - age_days * DAY,) * 2)
        return path

    def tool(self, path, script):
        """A stand-in for an external tool, or for a program on the path."""
        return self.file(path, f"#!/bin/sh\n{script}\n", mode=0o755)

    def catalog(self, *rules):
        return self.file("catalog.json", document(*rules))

    def account(self):
        """A wrapper that makes the home the account's own."""
        entry = self.file("passwd", f"root:x:0:0::{self.home}:/bin/sh\n")
        return in_own_mounts('mount --bind "$1" /etc/passwd', entry)

    def run_program(self, *arguments, wrapper=(), **variables):
        """The finished process; its texts are bytes. HOME and every locale are set for it."""
        return subprocess.run([*wrapper, CLI, *map(str, arguments)], capture_output=True,
                              stdin=subprocess.DEVNULL, env={**self.environment, **variables},
                              cwd=self.world, check=False)

    def on_terminal(self, arguments, keys=b""):
        """Runs the program on a terminal of its own and types the keys at the question; returns the
        status, standard output and what the terminal shows."""
        ours, theirs = pty.openpty()
        with subprocess.Popen(["setsid", "--ctty", CLI, *map(str, arguments)], stdin=theirs,
                              stderr=theirs, stdout=subprocess.PIPE, env=self.environment) as process:
            os.close(theirs)
            shown = everything_shown(ours, keys)
            output = process.stdout.read()
        os.close(ours)
        return process.returncode, output.decode(), shown

    def scan(self, *arguments, status=0, **options):
        """What `scan --json` prints for the home."""
        process = self.run_program("scan", "--json", *arguments, **options)
        self.assertEqual((process.stderr, process.returncode), (b"", status))
        return json.loads(process.stdout)

    def clean(self, *arguments, status=0):
        """What `clean --json --yes` prints for the home."""
        process = self.run_program("clean", "--json", "--yes", *arguments)
        # A sample home has an area that cannot be read, which is said and nothing else.
        self.assertRegex(process.stderr, rb"\A(zorvane-cli: [^\n]*could not be read[^\n]*\n)?\Z")
        self.assertEqual(process.returncode, status)
        return json.loads(process.stdout)

    def sample_home(self, scale="0.2"):
        """The home becomes a sample home; ages count back from NOW."""
        self.home.rmdir()
        subprocess.run([REPOSITORY / "tools/make-sample-home", self.home, "--now", NOW, "--scale",
                        scale], check=True, stdout=subprocess.DEVNULL)

    def assert_refused(self, process, status, *words):
        """One clear line on standard error, the status, nothing on standard output."""
        message = process.stderr.decode()[:1000]
        self.assertEqual((process.stdout[:100], process.returncode), (b"", status), message)
        self.assertRegex(message, r"\Azorvane-cli: [^\x00-\x1f\x7f-\x9f]{10,400}\n\Z")
        for word in words:
            self.assertIn(word, message)

    def assert_left(self, before, removed=()):
        """The world is as it was but for these paths, and the times of the folders they were in."""
        removed = set(map(os.fsencode, removed))
        folders, gone = set(map(os.path.dirname, removed)), tuple(path + b"/" for path in removed)
        after = snapshot(self.world)

        def kept(entries):
            return {(path, *facts[:2 if path in folders else None]) for path, facts in entries.items()
                    if path not in removed and not path.startswith(gone)}

        self.assertEqual(kept(before) ^ kept(after), set())
        self.assertEqual(removed & after.keys(), set())


def snapshot(folder):
    """Everything below a folder, by its path in bytes: kind, mode, owner, time of change to the
    nanosecond, and content or target. Taking it works in folders without permissions too."""
    path = os.fsencode(folder)
    status = os.lstat(path)
    facts = (stat.filemode(status.st_mode), status.st_uid, status.st_mtime_ns)
    if stat.S_ISLNK(status.st_mode):
        return {path: (*facts, os.readlink(path))}
    if stat.S_ISREG(status.st_mode):
        content = pathlib.Path(folder).read_bytes() if status.st_mode & stat.S_IRUSR else b""
        return {path: (*facts, status.st_blocks, content)}
    entries = {path: facts}
    if stat.S_ISDIR(status.st_mode):
        os.chmod(path, 0o700)
        for name in os.listdir(path):
            entries.update(snapshot(os.fsdecode(os.path.join(path, name))))
        os.chmod(path, stat.S_IMODE(status.st_mode))
    return entries


def everything_shown(terminal, keys=b""):
    """What programs write to a terminal until they have all closed it; the keys are typed once the
    question is there."""
    shown = b""
    try:
        while chunk := os.read(terminal, 4096):
            shown += chunk
            if keys and b'Type "yes"' in shown:
                os.write(terminal, keys)
                keys = b""
    except OSError:
        pass  # The other end is closed.
    return shown.decode().replace("\r\n", "\n")


def exact_path(item):
    """The bytes of an item's path in a report."""
    if "pathBytes" in item:
        return base64.b64decode(item["pathBytes"], validate=True)
    return os.fsencode(item["path"])


def in_own_mounts(script, *values):
    """A wrapper that runs a script in a mount namespace, as the root of it, and then the program.
    The script finds the values in $1, $2, …"""
    return ["unshare", "--user", "--map-root-user", "--mount", "sh", "-euc",
            f'{script}\nshift {len(values)}\nexec "$@"', "sh", *map(str, values)]
