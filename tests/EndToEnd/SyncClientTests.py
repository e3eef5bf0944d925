"""A desktop sync client in the terminal, played by a socket of the test's own."""

import json
import os

from support import ProgramTest
from sync_client import start_client


class SyncClient(ProgramTest):
    def icloud(self, action, *arguments, status=0, **variables):
        process = self.run_program("icloud", action, "--json", *arguments, **variables)
        self.assertEqual((process.returncode, process.stderr), (status, b""))
        return json.loads(process.stdout)

    def test_files_go_and_come_back_under_another_name(self):
        folder, runtime = self.home / "Cloud", self.home / "run"
        for name in ("a/one", "a/new", "top"):
            self.file(folder / name, b"x" * 20_000)
        start_client(self, folder, runtime)
        chosen = ("--drive", "nextcloud")
        environment = {"XDG_RUNTIME_DIR": str(runtime)}

        # Neither a folder nor a socket outside a confined home exists.
        drives = {drive["name"]: drive["containers"] for drive in
                  self.icloud("drives", **environment)["drives"]}
        self.assertEqual(drives["Nextcloud"], [{"path": str(folder), "closed": None}])
        os.rename(runtime, self.world / "run")
        outside = self.icloud("drives", XDG_RUNTIME_DIR=str(self.world / "run"))["drives"]
        self.assertEqual([drive["containers"] for drive in outside[2:]], [[], [], []])
        os.rename(self.world / "run", runtime)

        report = self.icloud("release", *chosen, folder / "top", folder / "a", status=1, **environment)
        self.assertEqual(report["renamed"],
                         [{"path": f"{folder}/top", "newPath": f"{folder}/top.nextcloud"}])
        self.assertEqual([refusal["path"] for refusal in report["refused"]], [f"{folder}/a/new"])
        self.assertIn("still being uploaded", report["refused"][0]["reason"])
        listed = self.icloud("list", *chosen, **environment)["items"]
        self.assertEqual([(item["path"], item["fileCount"], item["localBytes"]) for item in listed],
                         [(f"{folder}/a", 2, (folder / "a/new").stat().st_blocks * 512),
                          (f"{folder}/top.nextcloud", 1, 0)])
        self.assertEqual(self.icloud("fetch", *chosen, folder / "top.nextcloud", folder / "a",
                                     **environment)["refused"], [])
        for name in ("a/one", "a/new", "top"):
            self.assertEqual((folder / name).read_bytes(), b"x" * 20_000)
