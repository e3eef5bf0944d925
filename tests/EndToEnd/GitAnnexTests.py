"""The real git-annex in the terminal: many files go and come back; both repositories and the disk
are checked after each step."""

import json
import os
import pathlib
import signal
import subprocess

from annexes import Annexes
from support import CLI, ProgramTest


FOLDERS = 40 if os.environ.get("ZORVANE_RELIABILITY") == "long" else 6


class GitAnnex(ProgramTest):
    def icloud(self, action, *arguments, status=0):
        process = self.run_program("icloud", action, "--json", "--tools", "/", "--drive", "git-annex",
                                   *arguments)
        self.assertEqual((process.returncode, process.stderr), (status, b""))
        return json.loads(process.stdout)

    def kill_in_the_middle(self, annexes, action):
        """Kills the program and its git-annex once the first content has gone or come."""
        before = annexes.here()
        with subprocess.Popen([CLI, "icloud", action, "--tools", "/", "--drive", "git-annex",
                               *annexes.entries[:5]], env=self.environment, cwd=self.world) as process:
            while annexes.here() == before:
                self.assertIsNone(process.poll())
            children = "".join(path.read_text() for path in
                               pathlib.Path(f"/proc/{process.pid}/task").glob("*/children"))
            process.kill()
            for child in children.split():
                os.killpg(int(child), signal.SIGKILL)
        self.assertTrue(0 < abs(annexes.here() - before) < 125)

    def test_files_go_and_come_back(self):
        annexes = Annexes(self.home, self.environment, FOLDERS, files=25)
        files = len(annexes.contents)
        refused = self.icloud("release", *annexes.entries, status=1)["refused"]
        self.assertEqual((len(refused), annexes.here()), (files, files))
        self.assertIn("0 out of 1 necessary copy", refused[0]["reason"])
        self.assertNotIn("--force", refused[0]["reason"])
        annexes.connect()
        listed = self.icloud("list", "--container", annexes.src)["items"]
        self.assertEqual((len(listed), {item["fileCount"] for item in listed}), (FOLDERS, {25}))

        report = self.icloud("release", *annexes.entries)
        self.assertEqual((len(report["released"]), report["refused"], annexes.here()), (FOLDERS, [], 0))
        annexes.check()
        self.assertEqual(self.icloud("fetch", *annexes.entries)["refused"], [])
        self.assertEqual(annexes.here(), files)
        annexes.check()

        for action, left in (("release", files - 125), ("fetch", files)):
            self.kill_in_the_middle(annexes, action)
            annexes.correct()
            self.assertEqual(self.icloud(action, *annexes.entries[:5])["refused"], [])
            self.assertEqual(annexes.here(), left)
            annexes.check()
        for name, content in annexes.contents.items():
            self.assertEqual((annexes.src / name).read_bytes(), content)

    def test_a_confined_run_uses_the_systems_programs_for_drives_only_and_leaves_its_home_never(self):
        annexes = Annexes(self.home, self.environment, folders=1, files=2)
        annexes.connect()
        for arguments in (("scan", "--tools", "/"), ("clean", "--safe", "--tools", "/")):
            self.assert_refused(self.run_program(*arguments), 2)
        self.assert_refused(self.run_program("icloud", "list", "--drive", "none"), 2, "git-annex")
        first = str(annexes.entries[0])
        # In the account's own home git-annex is the system's, and the given drive stays refused.
        for drive, status in (("git-annex", 0), ("icloud", 2)):
            process = self.run_program("icloud", "release", "--drive", drive, first,
                                       wrapper=self.account())
            self.assertEqual((process.returncode, annexes.here()), (status, 0), process.stderr)
        self.run_program("icloud", "fetch", "--drive", "git-annex", "--tools", "/", first)
        self.tool("tools/usr/bin/git-annex", f"touch {self.world}/ran")
        for setting, value in (("remote.usb.url", f"{self.world}/away"),
                               ("annex.secure-erase-command", "shred"),
                               ("core.worktree", str(self.world))):
            old = annexes.git(annexes.src, "config", "--default", "", setting).strip()
            annexes.git(annexes.src, "config", setting, value)
            process = self.run_program("icloud", "release", "--tools", self.world / "tools", "--drive",
                                       "git-annex", first)
            self.assertIn(f"leads out of the home in use: {setting}", process.stderr.decode())
            unset = ("--unset", setting) if old == "" else (setting, old)
            subprocess.run(["git", "config", "-f", annexes.src / ".git/config", *unset], check=True)
        self.assertEqual(annexes.here(), 2)
        # What cannot be seen in its settings, the kernel refuses: content that lies outside, and
        # what another repository names.
        content = (annexes.src / "d0/f0").resolve()
        hashed = content.parent.parent
        hashed.rename(self.world / "outside")
        hashed.symlink_to(self.world / "outside")
        annexes.git(annexes.usb, "config", "annex.freezecontent-command",
                    f"touch {self.world}/ran")
        self.run_program("icloud", "release", "--tools", "/", "--drive", "git-annex", first)
        self.assertTrue(content.exists())
        self.run_program("icloud", "fetch", "--tools", "/", "--drive", "git-annex", first)
        self.assertFalse((self.world / "ran").exists())
