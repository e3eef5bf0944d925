#!/usr/bin/python3
"""The way from the first start to the ready screen."""

import unittest

from window_test import WindowTest

NOTICE = "No Full Disk Access — results will be partial"


class FirstRunTests(WindowTest):
    def test_quitting_the_terms_stores_nothing(self):
        program = self.start(accepted=False)
        program.see("Before you start")
        program.see("The app collects no data: no accounts, no telemetry, nothing leaves your Mac.")
        program.click("Quit", "push button")
        self.assertEqual(program.wait_for_end(), 0)
        self.assertFalse(self.preferences.exists())

    def test_accepting_goes_on_to_the_permission_which_is_noticed_while_waiting(self):
        program = self.start(accepted=False)
        program.click("Accept and continue")
        program.see("Permission to see your disk")
        self.assertIn("zorvane.acceptedTermsVersion=0.1", self.preferences.read_text())
        self.assertIn("zorvane.acceptedTermsDate=", self.preferences.read_text())
        (self.home / ".cache").mkdir()
        program.see("Scan my Mac")
        program.see_no(NOTICE)
        self.close(program)

        again = self.start(accepted=False)
        again.see("Scan my Mac")
        self.close(again)

    def test_accepting_skips_the_permission_where_it_is_there(self):
        (self.home / ".cache").mkdir()
        program = self.start(accepted=False)
        program.click("Accept and continue")
        program.see("Scan my Mac")
        self.close(program)

    def test_goes_on_without_the_permission_and_says_so(self):
        program = self.start()
        program.click("Continue without permission (partial results)")
        program.see(NOTICE)
        program.click("Scan my Mac")
        program.see("Rescan")
        self.close(program)

        again = self.start()
        again.see("Permission to see your disk")
        again.key("ctrl+q")
        self.assertEqual(again.wait_for_end(), 0)

    def test_another_version_of_the_terms_is_asked_for_again(self):
        self.accept_terms()
        self.preferences.write_text("[General]\nzorvane.acceptedTermsVersion=1.0\n")
        program = self.start(accepted=False)
        program.see("Before you start")
        self.close(program)

    def test_works_by_keyboard_alone(self):
        (self.home / ".cache").mkdir()
        program = self.start(accepted=False)
        program.see("Accept and continue")
        for _ in range(10):
            program.key("Tab")
            if program.has_focus("Accept and continue"):
                break
        program.key("space")
        program.see("Scan my Mac")
        for _ in range(10):
            program.key("Tab")
            if program.has_focus("Scan my Mac"):
                break
        program.key("Return")
        program.see("Rescan")
        program.key("ctrl+w")
        self.assertEqual(program.wait_for_end(), 0)


if __name__ == "__main__":
    unittest.main()
