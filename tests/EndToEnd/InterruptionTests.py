#!/usr/bin/env python3
"""Ctrl-C, and other requests to end, during a scan."""

import os
import signal
import subprocess
import unittest

from support import CLI, ProgramTest, rule

FILES = 100_000


class Interruption(ProgramTest):
    def setUp(self):
        super().setUp()
        original = os.fsencode(self.file("original"))
        folder = os.fsencode(self.home / "area/item")
        os.makedirs(folder)
        for number in range(FILES):
            if number % 10_000 == 0:
                original_here = folder + b"/first-%d" % number
                with open(original_here, "wb"):
                    original = original_here
            os.link(original, folder + b"/%d" % number)
        self.arguments = [CLI, "scan", "--json", "--home", self.home, "--catalog",
                          self.catalog(rule())]

    def test_a_request_to_end_that_comes_early(self):
        def leave_pending(number):
            # A blocked signal stays pending across exec.
            signal.pthread_sigmask(signal.SIG_BLOCK, [number])
            os.kill(os.getpid(), number)
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                process = subprocess.run(self.arguments, capture_output=True, check=False,
                                         preexec_fn=lambda number=number: leave_pending(number))
                self.assertEqual((process.returncode, process.stdout, process.stderr),
                                 (130, b"", b"zorvane-cli: interrupted\n"))

    def test_a_request_to_end_that_comes_while_a_tool_lists(self):
        # The tool itself never ends.
        tool = self.file("home/.tools/opt/homebrew/bin/brew",
                         "#!/bin/sh\nkill -INT $PPID\nexec tail -f /dev/null\n")
        tool.chmod(0o755)
        process = self.run_program("scan", "--json", "--home", self.home, "--rule", "brew-cleanup",
                                   "--tools", self.home / ".tools")
        self.assertEqual((process.returncode, process.stdout, process.stderr),
                         (130, b"", b"zorvane-cli: interrupted\n"))

    def test_control_c_on_the_terminal_once_the_scan_is_on_its_way(self):
        # A scan that is through before the key is pressed tells nothing; then again.
        for _ in range(20):
            status, output, shown = self.on_terminal(self.arguments[1:], b"\x03", b"Scanning")
            if status != 0:
                break
        self.assertEqual((status, output), (130, ""))
        self.assertTrue(shown.endswith("\r\x1b[Kzorvane-cli: interrupted\n"), shown)


if __name__ == "__main__":
    unittest.main()
