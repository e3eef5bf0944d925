"""The way from the first start to the ready screen."""

from window_test import WindowTest

NOTICE = "No Full Disk Access — results will be partial"


class FirstRunTests(WindowTest):
    def test_quitting_the_terms_stores_nothing_and_another_version_is_asked_for_again(self):
        program = self.start(accepted=None)
        program.see("Before you start")
        program.click("Quit", "push button")
        self.assertEqual(program.wait_for_end(), 0)
        self.assertFalse(self.preferences.exists())
        program = self.start(accepted="1.0")
        program.see("Before you start")
        self.close(program)

    def test_by_keyboard_alone_to_the_results_and_out(self):
        program = self.start(accepted=None)
        for button, key, screen in (("Accept and continue", "space", "Scan my Mac"),
                                    ("Scan my Mac", "Return", "Rescan")):
            program.see(button)
            for _ in range(10):
                program.key("Tab")
                if button in program.focused():
                    break
            program.key(key)
            program.see(screen)
        for word in ("acceptedTermsVersion=0.1", "acceptedTermsDate="):
            self.assertIn(f"zorvane.{word}", self.preferences.read_text())
        program.key("ctrl+w")
        self.assertEqual(program.wait_for_end(), 0)

    def test_goes_on_without_the_permission_or_notices_it_while_waiting(self):
        (self.home / ".cache").rmdir()
        program = self.start()
        program.click("Continue without permission (partial results)")
        program.see(NOTICE)
        self.scan_in_window(program)
        self.close(program)
        again = self.start()
        again.see("Permission to see your disk")
        (self.home / ".cache").mkdir()
        again.see("Scan my Mac")
        again.see_no(NOTICE)
        again.key("ctrl+q")
        self.assertEqual(again.wait_for_end(), 0)
