#!/usr/bin/python3
"""Scanning, looking at the results and choosing among them."""

import os
import unittest

from driving import DESKTOP
from window_test import WindowTest, byte_count, header
from support import rule

SCRIPT = "#!/bin/sh\n"


class ScanTests(WindowTest):
    def test_shows_what_the_terminal_lists_in_the_same_order(self):
        self.sample_home()
        program = self.start(*self.tool_options())
        self.scan_in_window(program)
        expected = self.scan_in_terminal()
        shown = [name for name in program.rows("push button") if " items, " in name]
        self.assertGreater(len(shown), 5)
        self.assertEqual(shown, [header(category) for category in expected["categories"]][:len(shown)])
        program.see("Selected: " + byte_count(expected["selectedBytes"]))
        program.see("Clean " + byte_count(expected["selectedBytes"]))
        program.see(byte_count(expected["totalBytes"]))
        program.see("Some areas could not be read — grant Full Disk Access for the full amount")
        self.close(program)

    def test_a_scan_can_be_cancelled_and_started_again(self):
        (self.home / ".cache").mkdir()
        self.file("home/.cache/thumbnails/normal/old.png", b"x" * 4096)
        # A tool that does not answer until it is told to.
        tool = self.home / ".tools/usr/bin/tmutil"
        tool.parent.mkdir(parents=True)
        os.mkfifo(self.world / "answer")
        tool.write_text(SCRIPT + f"cat {self.world}/answer\n")
        tool.chmod(0o755)
        program = self.start("--tools", self.home / ".tools")
        program.click("Scan my Mac")
        program.see("4 KB")
        program.see("Preparing…")
        program.click("Cancel")
        program.see("Scan my Mac")
        tool.write_text(SCRIPT + "exit 1\n")
        self.scan_in_window(program)
        program.see("Selected: 4 KB")
        # The first tool still waits; closing ends it.
        self.close(program)

    def test_the_keyboard_comes_back_to_a_screen_that_changed_below_a_sheet_or_a_menu(self):
        (self.home / ".cache").mkdir()
        self.file("home/area/item", b"x" * 4096)
        tool = self.home / ".tools/usr/bin/tmutil"
        tool.parent.mkdir(parents=True)
        answer = self.world / "answer"
        os.mkfifo(answer)
        tool.write_text(SCRIPT + f"cat {answer}\n")
        tool.chmod(0o755)
        catalog = self.catalog(rule("cache-a", ["~/area"]),
                               rule("tm-local-snapshots", [], "B", kind="command"))
        program = self.start("--tools", self.home / ".tools", "--catalog", catalog)
        program.click("Scan my Mac")
        program.see("Cancel")
        program.click("Menu")
        program.click("About Zorvane")
        program.see(lambda name: name.startswith("Version "))
        answer.write_text("")
        program.wait_for(
            lambda: "Rescan" in [thing.get_name() for thing in program.everything_below()],
            "the results below the sheet")
        program.key("Escape")
        program.wait_for(lambda: program.has_focus("cache-a, 1 items, 4 KB"),
                         "the keyboard on the results")

        program.click("Rescan")
        program.see("Cancel")
        program.click("Menu")
        program.see("About Zorvane")
        answer.write_text("")
        program.see("Rescan")
        program.key("Escape")
        program.wait_for(lambda: program.has_focus("cache-a, 1 items, 4 KB"),
                         "the keyboard on the results")
        self.close(program)

    def test_choosing_by_mouse_and_by_keyboard(self):
        for name, size in (("a", 8192), ("b", 4096)):
            self.file(f"home/safe/{name}", b"x" * size)
            self.file(f"home/review/{name}", b"x" * size)
        (self.home / ".cache").mkdir()
        catalog = self.catalog(
            dict(id="cache-safe", tier="A", kind="fileSystem", titleKey="", basePaths=["~/safe"],
                 minAgeDays=0, exclusions=[]),
            dict(id="dev-review", tier="B", kind="fileSystem", titleKey="", basePaths=["~/review"],
                 minAgeDays=0, exclusions=[]))
        program = self.start("--catalog", catalog)
        self.scan_in_window(program)
        program.see("Selected: 12 KB")

        program.click("Select cache-safe")
        program.see("Selected: Zero KB")
        self.assertFalse(program.is_enabled("Clean Zero KB"))
        program.click("Select cache-safe")
        program.see("Selected: 12 KB")

        program.click("cache-safe, 2 items, 12 KB")
        path = str(self.home / "safe/b")
        program.wait_for_tick(path)
        program.click(path, "check box")
        program.see("Selected: 8 KB")
        program.wait_for_tick("Select cache-safe", False)
        program.click("Clear selection")
        program.see("Selected: Zero KB")
        program.click("Select all")
        program.see("Selected: 12 KB")
        program.wait_for_tick("Select cache-safe")
        program.click("cache-safe, 2 items, 12 KB")
        program.see_no(path)

        # The area to review has no box of its own; its items are chosen one by one.
        self.assertFalse(program.seen("Select dev-review"))
        program.press("dev-review, 2 items, 12 KB")
        path = str(self.home / "review/a")
        program.wait_for_tick(path, False)
        program.focus(path)
        program.key("space")
        program.see("Selected: 20 KB")

        # A new scan chooses afresh, with every area closed.
        program.click("Rescan")
        program.see("Selected: 12 KB")
        program.see_no(path)
        self.close(program)

    def test_names_from_the_disk_are_shown_as_text(self):
        (self.home / ".cache").mkdir()
        self.file("home/area/<b>bold <img src=x>\n\u202egpj.exe", b"x" * 4096)
        program = self.start("--catalog", self.catalog(
            dict(id="cache-<i>%1%2&x", tier="A", kind="fileSystem", titleKey="", basePaths=["~/area"],
                 minAgeDays=0, exclusions=[])))
        self.scan_in_window(program)
        program.click("cache-<i>%1%2&x, 1 items, 4 KB")
        program.see(f"{self.home}/area/<b>bold <img src=x>⟨U+000A⟩⟨U+202E⟩gpj.exe", "check box")
        self.close(program)

    def test_the_window_behaves_as_a_window(self):
        (self.home / ".cache").mkdir()
        program = self.start()
        program.see("Scan my Mac")
        program.resize(1200, 800)
        program.resize(300, 200, comes_to=(520, 640))
        program.click("Maximize")
        program.see("Restore")
        program.wait_for(lambda: program.size() == (1600, 1100), "the whole screen")
        program.click("Restore")
        program.wait_for(lambda: program.size() == (520, 640), "the old size")
        x, y, _, _ = program.place()
        program.click_at(x + 300, y + 12, times=2)
        program.wait_for(lambda: program.size() == (1600, 1100), "the whole screen")
        program.click("Restore")
        program.wait_for(lambda: program.size() == (520, 640), "the old size")

        # By its edge and by its bar.
        def on_right_edge():
            x, y, width, _ = program.place()
            return x + width - 2, y + 300

        def on_bar():
            x, y, _, _ = program.place()
            return x + 300, y + 12

        program.drag(on_right_edge, lambda: program.size()[0] > 570, "a wider window")
        program.resize(1000, 700)
        x, y, _, _ = program.place()
        program.drag(on_bar, lambda: program.place()[:2] != (x, y), "another place")
        # The window manager comes to this when it has let go of the window.
        program.resize(1100, 750)

        # The results need more room, and stay on the screen with it.
        program.resize(300, 200, comes_to=(520, 640))
        DESKTOP.run("xdotool", "windowmove", "--sync", program.window(), 1070, 450)
        program.wait_for(lambda: program.place()[:2] == (1070, 450), "the right edge")
        self.scan_in_window(program)
        program.wait_for(lambda: program.place() == (700, 450, 900, 640), "room for the results")
        program.resize(300, 200, comes_to=(900, 640))

        program.click("Menu")
        self.assertTrue(program.see("About Zorvane", "menu item"))
        names = [name.split(": ", 1)[1] for name in program.texts() if name.startswith("menu item")]
        self.assertEqual(names, ["About Zorvane", "Check for Updates…", "Quit"])
        self.assertFalse(program.is_enabled("Check for Updates…"))
        program.click("About Zorvane")
        program.see(lambda name: name.startswith("Version "))
        program.key("Escape")
        program.see_no(lambda name: name.startswith("Version "))
        program.click("Menu")
        program.click("Quit")
        self.assertEqual(program.wait_for_end(), 0)

    def test_refuses_a_command_line_that_it_cannot_start_with(self):
        import subprocess
        from window_test import WINDOW
        missing = self.world / "missing"
        for arguments, status, word in (
                (("--home", missing), 2, "does not exist"),
                (("--home", self.home, "--tools", missing), 2, "--tools"),
                (("--home", self.home, "--catalog", missing), 3, "catalog"),
                (("--nonsense",), 2, "--help"),
                (("extra",), 2, "--help")):
            process = subprocess.run([WINDOW, *map(str, arguments)], capture_output=True,
                                     text=True, env=DESKTOP.environment, check=False)
            self.assertEqual(process.returncode, status, arguments)
            self.assertRegex(process.stderr, r"\Azorvane: [^\n]+\n\Z")
            self.assertIn(word, process.stderr)
        version = subprocess.run([WINDOW, "--version"], capture_output=True, text=True, check=True,
                                 env={**DESKTOP.environment, "DISPLAY": ""})
        self.assertRegex(version.stdout, r"\Azorvane \d+\.\d+\.\d+\n\Z")
        self.assertIn("--mirror", subprocess.run([WINDOW, "--help"], capture_output=True, text=True,
                                                 check=True, env=DESKTOP.environment).stdout)


if __name__ == "__main__":
    unittest.main()
