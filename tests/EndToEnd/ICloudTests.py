"""The cloud drive in the terminal: listing, releasing and fetching; the disk is looked at."""

import json
import os

from support import ProgramTest, snapshot


class ICloud(ProgramTest):
    def icloud(self, action, *arguments, status=0):
        process = self.run_program("icloud", action, "--json", "--home", self.home, *arguments)
        self.assertEqual((process.returncode, process.stderr), (status, b""))
        return json.loads(process.stdout)

    def test_releasing_and_fetching_come_back_to_the_first_figures(self):
        container = self.home / "Library/Mobile Documents/com~apple~CloudDocs"
        mirror = ("--mirror", self.world / "home/mirror")
        for name in ("Letters/one", "Letters/Pad.app/binary", "\udcff"):
            for folder in (container, self.home / "mirror"):
                self.file(folder / name, b"x" * 20_000)
        letters, before = container / "Letters", snapshot(self.world)
        blocks = (letters / "one").stat().st_blocks * 512
        first = self.icloud("list")
        self.assertEqual([item["path"] for item in first["items"]],
                         [str(letters), f"{container}/\ufffd"])
        facts = ("localBytes", "releasableBytes", "releasableFileCount", "timedOut")
        self.assertEqual([first["items"][0][fact] for fact in facts], [2 * blocks, blocks, 1, False])

        report = self.icloud("release", *mirror, letters, container / "\udcff")
        self.assertEqual((report["released"][0], len(report["released"]), report["refused"]),
                         (str(letters), 2, []))
        self.assertEqual(report["appsStillDownloaded"][0]["localBytes"], blocks)
        self.assertEqual([(letters / name).stat().st_blocks for name in ("one", "Pad.app/binary")],
                         [0, blocks // 512])
        self.assertEqual(self.icloud("fetch", *mirror, letters, container / "\udcff")["fetched"],
                         report["released"])
        self.assertEqual(self.icloud("list"), first)
        self.assertEqual((letters / "one").read_bytes(), b"x" * 20_000)

        with open(letters / "one", "ab") as file:
            file.write(b"changed")
        refused = self.icloud("release", *mirror, letters, status=1)["refused"]
        self.assertEqual([item["path"] for item in refused], [str(letters / "one")])
        for arguments in ((), (letters / "one",), (letters, self.home), (f"{letters}/",)):
            process = self.run_program("icloud", "release", "--home", self.home, *mirror, *arguments)
            self.assert_refused(process, 2)
        self.assertEqual({*snapshot(self.world)}, {*before})
