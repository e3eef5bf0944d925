"""The real git-annex in the window: folders are ticked by the keyboard, go, and come back one by one;
both repositories are checked after each step, and after a kill in the middle."""

import os
import signal

from window_test import WindowTest
from annexes import Annexes

FOLDERS = 40 if os.environ.get("ZORVANE_RELIABILITY") == "long" else 4


class GitAnnex(WindowTest):
    def open_sheet(self):
        program = self.start("--catalog", self.catalog(), "--tools", "/")
        self.scan_in_window(program)
        program.click("Measure")
        program.see("Free up git-annex space")
        program.see("Rescan")
        return program

    def tick_all(self, program, annexes):
        program.click(annexes.entries[0].name, "check box")
        for entry in annexes.entries[1:]:
            program.key("Down")
            program.wait_for_focus(entry.name)
            program.key("space")
            program.wait_for_tick(entry.name)

    def release_all(self, program, annexes):
        self.tick_all(program, annexes)
        program.click(lambda name: name.startswith("Free up ") and name.endswith("B"))

    def test_folders_go_and_come_back(self):
        annexes = Annexes(self.home, self.environment, FOLDERS, files=25)
        program = self.open_sheet()
        self.release_all(program, annexes)
        program.see(lambda name: "0 out of 1 necessary copy" in name)
        self.assertEqual(annexes.here(), len(annexes.contents))
        annexes.connect()
        program.click("Rescan")
        program.see("Rescan")
        self.release_all(program, annexes)
        program.see("released")
        self.assertEqual(annexes.here(), 0)
        annexes.check()
        # The list is near its end, where the keyboard has been.
        *others, before_last, last = annexes.entries
        program.click(f"Fetch {before_last.name}")
        for count, entry in enumerate((before_last, last, *reversed(others)), 1):
            if count > 1:
                program.key(*{2: ("End",), 3: ("Up", "Up")}.get(count, ("Up",)))
                program.wait_for_focus(f"Fetch {entry.name}")
                program.key("space")
            program.wait_for(lambda: annexes.here() == 25 * count, "the fetched folder")
            program.see_no(lambda name: "is fetching" in name)
        annexes.check()

        # Killed in the middle, with its child, and gone on with.
        program.click("Rescan")
        program.see("Rescan")
        self.release_all(program, annexes)
        program.wait_for(lambda: annexes.here() < len(annexes.contents), "the first file to go")
        children = f"/proc/{program.process.pid}/task"
        pids = {int(child) for task in os.listdir(children)
                for child in open(f"{children}/{task}/children", encoding="ascii").read().split()}
        program.process.kill()
        for pid in pids:
            os.killpg(pid, signal.SIGKILL)
        annexes.correct()
        for name, content in annexes.contents.items():
            self.assertEqual((annexes.usb / name).read_bytes(), content)
        annexes.git(annexes.src, "annex", "get", "-q", ".")
        annexes.check()
