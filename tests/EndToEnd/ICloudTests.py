"""The cloud drive in the terminal: listing, releasing and fetching; the disk is looked at."""

import json

from support import ProgramTest, snapshot


class ICloud(ProgramTest):
    def icloud(self, action, *arguments, status=0):
        process = self.run_program("icloud", action, "--json", *arguments)
        self.assertEqual((process.returncode, process.stderr), (status, b""))
        return json.loads(process.stdout)

    def test_releasing_and_fetching_come_back_to_the_first_figures(self):
        container = self.home / "Library/Mobile Documents/com~apple~CloudDocs"
        for name in ("Letters/one", "Letters/Pad.app/binary", "\udcff"):
            for folder in (container, self.home / "mirror"):
                self.file(folder / name, b"x" * 20_000)
        letters, before = container / "Letters", snapshot(self.world)
        chosen = ("--mirror", self.home / "mirror", letters)
        blocks = (letters / "one").stat().st_blocks * 512
        first = self.icloud("list")
        self.assertEqual([item["path"] for item in first["items"]],
                         [str(letters), f"{container}/\ufffd"])
        facts = ("localBytes", "releasableBytes", "releasableFileCount", "timedOut")
        self.assertEqual([first["items"][0][fact] for fact in facts], [2 * blocks, blocks, 1, False])

        report = self.icloud("release", *chosen, container / "\udcff")
        self.assertEqual((report["released"][0], len(report["released"]), report["refused"]),
                         (str(letters), 2, []))
        self.assertEqual(report["appsStillDownloaded"][0]["localBytes"], blocks)
        self.assertEqual([(letters / name).stat().st_blocks for name in ("one", "Pad.app/binary")],
                         [0, blocks // 512])
        self.assertEqual(self.icloud("fetch", *chosen, container / "\udcff")["fetched"],
                         report["released"])
        self.assertEqual(self.icloud("list"), first)
        self.assertEqual((letters / "one").read_bytes(), b"x" * 20_000)

        self.file(letters / "one", b"changed")
        refused = self.icloud("release", *chosen, status=1)["refused"]
        self.assertEqual([item["path"] for item in refused], [str(letters / "one")])
        for arguments in (chosen[:2], (*chosen[:2], letters / "one"), (*chosen, self.home)):
            self.assert_refused(self.run_program("icloud", "release", *arguments), 2)
        self.assertEqual({*snapshot(self.world)}, {*before})
