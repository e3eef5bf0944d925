"""Scanning, looking at the results and choosing among them; the window as a window."""

import os
import subprocess

from driving import run
from window_test import WINDOW, WindowTest, byte_count
from support import rule


class ScanTests(WindowTest):
    def test_shows_what_the_terminal_lists_in_the_same_order(self):
        (self.home / ".cache").rmdir()
        self.sample_home()
        program = self.start(*self.tools)
        self.scan_in_window(program)
        # A sample home has areas that cannot be read.
        expected = self.scan(*self.tools[:2], status=1)
        shown = [name for name in program.rows("push button") if " items, " in name]
        self.assertGreater(len(shown), 5)
        self.assertEqual(shown, [f"{area['title']}, {len(area['items'])} items, "
                                 + byte_count(area["totalBytes"])
                                 for area in expected["categories"]][:len(shown)])
        program.see("Clean " + byte_count(expected["selectedBytes"]))
        program.see(byte_count(expected["totalBytes"]))
        program.see("Some areas could not be read — grant Full Disk Access for the full amount")
        self.close(program)

    def test_choosing_by_mouse_and_by_keyboard(self):
        odd = "<b>bold <img src=x>\n\u202egpj.exe"
        for name, size in (("safe/a", 8192), (f"safe/{odd}", 4096), ("review/a", 8192)):
            self.file(f"home/{name}", b"x" * size)
        program = self.start("--catalog", self.catalog(
            rule("cache-<i>%1", ["~/safe"]), rule("dev-review", ["~/review"], "B")))
        self.scan_in_window(program)
        for selected in ("Zero", "12"):
            program.click("Select cache-<i>%1")
            program.see(f"Clean {selected} KB")
        program.click("cache-<i>%1, 2 items, 12 KB")
        # Names from the disk are shown as text.
        path = f"{self.home}/safe/<b>bold <img src=x>⟨U+000A⟩⟨U+202E⟩gpj.exe"
        program.wait_for_tick(path)
        program.click(path, "check box")
        program.see("Selected: 8 KB")
        program.wait_for_tick("Select cache-<i>%1", False)
        program.click("Select all")
        program.see("Selected: 12 KB")
        program.click("cache-<i>%1, 2 items, 12 KB")
        program.see_no(path)
        # The area to review has no box of its own; its items are chosen one by one.
        self.assertFalse(program.seen("Select dev-review"))
        program.press("dev-review, 1 items, 8 KB")
        path = f"{self.home}/review/a"
        program.see(path, "check box").grab_focus()
        program.wait_for_focus(path)
        program.key("space")
        program.see("Selected: 20 KB")
        # A new scan chooses afresh, with every area closed.
        program.click("Rescan")
        program.see("Selected: 12 KB")
        program.see_no(path)

    def test_the_window_behaves_as_a_window(self):
        program = self.start()

        def resize(width, height):
            run("xdotool", "windowsize", program.window(), width, height)
            program.wait_for_place(max(width, 520), max(height, 640))

        resize(300, 200)
        x, y, _, _ = program.place()
        for maximise in (lambda: program.click("Maximize"),
                         lambda: program.click_at(x + 300, y + 12, times=2)):
            maximise()
            program.wait_for_place(1600, 1200)
            program.click("Restore")
            program.wait_for_place(520, 640)
        # By its edge and by its bar.
        program.drag(lambda: (sum(program.place()[::2]) - 2, program.place()[1] + 300),
                     lambda: program.place()[2] > 570, "a wider window")
        resize(1000, 700)
        before = program.place()[:2]
        program.drag(lambda: (program.place()[0] + 300, program.place()[1] + 12),
                     lambda: program.place()[:2] != before, "another place")
        # The window manager comes to this when it has let go of the window.
        resize(300, 200)
        # The results need more room, and stay on the screen with it.
        run("xdotool", "windowmove", "--sync", program.window(), 1070, 450)
        program.wait_for_place(1070, 450, 520, 640)
        self.scan_in_window(program)
        program.wait_for_place(700, 450, 900, 640)
        program.click("Menu")
        program.see("About Zorvane", "menu item")
        self.assertEqual(program.rows("menu item"), ["About Zorvane", "Check for Updates…", "Quit"])
        program.click("Quit")
        self.assertEqual(program.wait_for_end(), 0)

    def test_refuses_a_command_line_that_it_cannot_start_with(self):
        missing = self.world / "missing\x1b"
        foreign = self.catalog(rule(bases=["~"]))
        # Some of it would do in another home only.
        for arguments, status, word in (
                (("--home", missing), 2, "missing"), (("extra",), 2, "--help"),
                (("--tools", missing), 2, "--tools"), (("--mirror", self.home), 2, "--mirror"),
                (("--catalog", missing), 3, "catalog"), (("--catalog", foreign), 3, "catalog")):
            process = subprocess.run([*self.account(), WINDOW, *map(str, arguments)], text=True,
                                     env={**os.environ, "HOME": str(self.home)}, check=False,
                                     capture_output=True)
            self.assertEqual(process.returncode, status, arguments)
            self.assertRegex(process.stderr, rf"\Azorvane: [^\n\x1b]*{word}[^\n\x1b]*\n\Z")
