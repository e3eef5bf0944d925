"""What the end-to-end tests share: homes of their own, catalogs, and the program itself."""

import json
import os
import pathlib
import pty
import shutil
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
    return {"schemaVersion": 1, "rules": list(rules)}


class ProgramTest(unittest.TestCase):
    """A test with an empty home in a folder of its own: self.world / "home"."""

    maxDiff = 4000

    def setUp(self):
        self.world = pathlib.Path(tempfile.mkdtemp(prefix="zorvane-test-")).resolve()
        self.addCleanup(remove, self.world)
        self.home = self.world / "home"
        self.home.mkdir()

    def file(self, path, content="content", age_days=400):
        """Makes a file of a given age below the world; returns its path."""
        path = self.world / path
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        os.utime(path, (NOW_SECONDS - age_days * DAY,) * 2)
        return path

    def catalog(self, *rules):
        path = self.world / "catalog.json"
        path.write_text(json.dumps(document(*rules)))
        return path

    def run_program(self, *arguments, wrapper=(), **variables):
        """The finished process; its texts are bytes. HOME and every locale are set for it."""
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.home), "LC_ALL": "C.UTF-8"}
        return subprocess.run([*wrapper, CLI, *map(str, arguments)], capture_output=True,
                              stdin=subprocess.DEVNULL, env={**environment, **variables},
                              cwd=self.world, check=False)

    def on_terminal(self, arguments, keys=b"", question=b'Type "yes"'):
        """Runs the program on a terminal of its own and types the keys at the question; returns the
        status, standard output and what the terminal shows."""
        ours, theirs = pty.openpty()
        with subprocess.Popen(["setsid", "--ctty", CLI, *map(str, arguments)], stdin=theirs,
                              stderr=theirs, stdout=subprocess.PIPE,
                              env={"PATH": os.environ["PATH"], "HOME": str(self.home),
                                   "LC_ALL": "C.UTF-8"}) as process:
            os.close(theirs)
            shown = everything_shown(ours, question, keys)
            output = process.stdout.read()
        os.close(ours)
        return process.returncode, output.decode(), shown

    def scan(self, *arguments, status=0, **options):
        """What `scan --json` prints for the home."""
        process = self.run_program("scan", "--json", "--home", self.home, *arguments, **options)
        self.assertEqual((process.stderr, process.returncode), (b"", status))
        return json.loads(process.stdout)

    def sample_home(self, *arguments):
        """The home becomes a sample home; ages count back from NOW."""
        self.home.rmdir()
        subprocess.run([REPOSITORY / "tools/make-sample-home", self.home, "--now", NOW, *arguments],
                       check=True, stdout=subprocess.DEVNULL)

    def assert_refused(self, process, status, *words):
        """One clear line on standard error, the status, nothing on standard output."""
        message = process.stderr.decode()[:1000]
        self.assertEqual((process.stdout[:100], process.returncode), (b"", status), message)
        self.assertRegex(message, r"\Azorvane-cli: [^\x00-\x1f\x7f-\x9f]{10,400}\n\Z")
        for word in words:
            self.assertIn(word, message)


def everything_shown(terminal, question=b"", keys=b""):
    """What programs write to a terminal until they have all closed it; the keys are typed once the
    question is there."""
    shown = b""
    try:
        while chunk := os.read(terminal, 4096):
            shown += chunk
            if keys and question in shown:
                os.write(terminal, keys)
                keys = b""
    except OSError:
        pass  # The other end is closed.
    return shown.decode().replace("\r\n", "\n")


def paths(report):
    return [item["path"] for category in report["categories"] for item in category["items"]]


def in_own_mounts(script, *values):
    """A wrapper that runs a script in a mount namespace, as the root of it, and then the program.
    The script finds the values in $1, $2, …"""
    shifts = f"shift {len(values)}" if values else ":"
    return ["unshare", "--user", "--map-root-user", "--mount", "sh", "-euc",
            f'{script}\n{shifts}\nexec "$@"', "sh", *map(str, values)]


def remove(folder):
    """Removes a tree that may hold folders without permissions."""
    for path, names, _ in os.walk(folder):
        for name in names:
            child = os.path.join(path, name)
            if not os.path.islink(child):
                os.chmod(child, 0o700)
    shutil.rmtree(folder)
