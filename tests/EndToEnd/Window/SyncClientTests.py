"""A desktop sync client in the window: what it refuses is told, and released files come back."""

from window_test import WindowTest
from sync_client import start_client


class SyncClient(WindowTest):
    def test_files_go_and_come_back_under_another_name(self):
        folder, runtime = self.home / "Cloud", self.home / "run"
        for name in ("a/one", "a/new", "top"):
            self.file(folder / name, b"x" * 20_000)
        start_client(self, folder, runtime)
        program = self.start("--catalog", self.catalog(), XDG_RUNTIME_DIR=str(runtime))
        self.scan_in_window(program)
        program.click("Measure")
        program.see("Free up Nextcloud space")
        program.see(f"Nextcloud — {folder}")
        for name in ("a", "top"):
            program.click(name, "check box")
        program.click(lambda name: name.startswith("Free up ") and name.endswith("B"))
        program.see("new: it is still being uploaded or downloaded")
        program.see("not wholly released: 1 files stayed")
        program.see("top.nextcloud")
        self.assertEqual(sorted(path.name for path in folder.rglob("*")),
                         ["a", "new", "one.nextcloud", "top.nextcloud"])
        program.click("Fetch top.nextcloud")
        program.see("top", "check box")
        self.assertEqual((folder / "top").read_bytes(), b"x" * 20_000)
