#!/usr/bin/python3
"""The cloud drive: measuring, releasing, bringing back; after each step the disk is looked at."""

import json
import pathlib
import unittest
import urllib.parse

from window_test import WindowTest, byte_count
from driving import DESKTOP, Gio
from support import rule

MANAGER = """<node><interface name='org.freedesktop.FileManager1'>
<method name='ShowItems'><arg type='as' direction='in'/><arg type='s' direction='in'/></method>
</interface></node>"""


class DesktopsFileManager:
    """Stands in for the desktop's own and remembers what it was asked to show."""

    def __init__(self):
        self.shown = []
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(MANAGER).interfaces[0]
        self.object = self.bus.register_object("/org/freedesktop/FileManager1", interface, self.call)
        self.owner = Gio.bus_own_name_on_connection(
            self.bus, interface.name, Gio.BusNameOwnerFlags.NONE, None, None)

    def call(self, _bus, _sender, _path, _interface, _method, parameters, invocation):
        uris, _ = parameters.unpack()
        self.shown.append([urllib.parse.unquote(uri.removeprefix("file://")) for uri in uris])
        invocation.return_value(None)

    def end(self):
        self.bus.unregister_object(self.object)
        Gio.bus_unown_name(self.owner)


class ICloudTests(WindowTest):
    def setUp(self):
        super().setUp()
        self.sample_home()
        self.container = self.home / "Library/Mobile Documents/com~apple~CloudDocs"

    def start_and_measure(self, **environment):
        catalog = self.catalog(rule("cache-thumbnails", ["~/.cache/thumbnails"]))
        program = self.start("--catalog", catalog, *self.tool_options(), **environment)
        self.scan_in_window(program)
        program.see("takes a moment")
        program.click("Measure")
        program.see("Free up iCloud space")
        return program

    def icloud(self, action, *paths):
        process = self.run_program("icloud", action, "--json", "--home", self.home, "--mirror",
                                   self.home / ".cloud-mirror", *paths)
        return json.loads(process.stdout)

    def listed(self):
        """What the terminal lists that holds something: name to item."""
        return {pathlib.Path(item["path"]).name: item for item in self.icloud("list")["items"]
                if item["localBytes"] > 0}

    def blocks(self, name):
        return sum(path.lstat().st_blocks * 512 for path in (self.container / name).rglob("*")
                   if path.is_file() and not path.is_symlink())

    def test_releases_what_was_chosen_and_shows_it_again_when_it_is_back(self):
        manager = DesktopsFileManager()
        self.addCleanup(manager.end)
        listed = self.listed()
        program = self.start_and_measure()
        program.see("Rescan")
        expected = sorted(listed, key=lambda name: -listed[name]["localBytes"])
        self.assertEqual([name for name in program.rows("check box") if name in listed], expected)
        for name in ("Photos 2023", "Tools"):
            program.see(byte_count(listed[name]["localBytes"]))
        self.assertFalse(program.is_enabled("Free up Zero KB"))

        program.click("Photos 2023", "check box")
        program.click("Tools", "check box")
        releasable = sum(listed[name]["releasableBytes"] for name in ("Photos 2023", "Tools"))
        files = sum(listed[name]["releasableFileCount"] for name in ("Photos 2023", "Tools"))
        program.see(f"iCloud will release {byte_count(releasable)} in {files} files — this usually "
                    "takes less than a minute.")
        apps = listed["Tools"]["apps"]
        app_bytes = sum(app["localBytes"] for app in apps)
        program.see(f"{byte_count(app_bytes)} are apps stored in iCloud Drive.")
        program.click("Show in Finder")
        program.wait_for(lambda: manager.shown, "the request to show")
        self.assertEqual(manager.shown, [[app["path"] for app in apps]])

        contents = {path: path.stat().st_size for path in (self.container / "Photos 2023").iterdir()}
        program.press("Free up " + byte_count(releasable))
        program.see(f"Still on this Mac: {byte_count(app_bytes)} in apps.")
        program.see("released")
        self.assertEqual(self.blocks("Photos 2023"), 0)
        self.assertEqual(self.blocks("Tools"), app_bytes)
        self.assertEqual({path: path.stat().st_size for path in contents}, contents)
        self.assertFalse(program.is_enabled("Free up Zero KB"))

        for name in ("Photos 2023", "Tools"):
            self.icloud("fetch", self.container / name)
        program.click("Rescan")
        program.see_no("released")
        program.see("Rescan")
        # All of the two folders is here now, also what was only in the cloud before.
        listed = self.listed()
        expected = sorted(listed, key=lambda name: -listed[name]["localBytes"])
        self.assertGreater(listed["Photos 2023"]["localBytes"], 10**6)
        for name in expected:
            program.see(byte_count(listed[name]["localBytes"]))
        self.assertEqual([name for name in program.rows("check box") if name in listed], expected)
        program.key("Escape")
        program.see_no("Free up iCloud space")
        # The card now tells what is downloaded, and opens without measuring again.
        total = byte_count(sum(item["localBytes"] for item in listed.values()))
        program.see(total)
        program.click("iCloud Drive")
        program.see("Free up iCloud space")
        program.see("Rescan")
        program.click("Close", "push button")
        self.close(program)

    def test_folders_out_of_time_can_be_tried_again(self):
        late = self.world / "late"
        late.touch()
        program = self.start_and_measure(ZORVANE_TEST_LATE=str(late))
        program.see(lambda name: name.startswith("“") and "went past 90 seconds" in name)
        program.see("not measured")
        program.see("iCloud is busy with this folder")
        late.unlink()
        program.click("Try again")
        program.see_no("not measured")
        program.see("Photos 2023", "check box")
        program.see_no("Try again")
        program.key("Escape")
        self.close(program)

    def test_opens_the_folder_of_the_apps_where_there_is_no_file_manager(self):
        opener = self.world / "bin/xdg-open"
        opener.parent.mkdir()
        opener.write_text(f'#!/bin/sh\necho "$1" >> {self.world}/opened\n')
        opener.chmod(0o755)
        program = self.start_and_measure(PATH=f"{opener.parent}:{DESKTOP.environment['PATH']}")
        program.see("Rescan")
        program.click("Tools", "check box")
        program.click("Show in Finder")
        opened = self.world / "opened"
        program.wait_for(lambda: opened.exists() and opened.read_text(), "the opened folder")
        folder = urllib.parse.unquote(opened.read_text().strip()).removeprefix("file://")
        self.assertEqual(folder.rstrip("/"), str(self.container / "Tools"))
        program.key("Escape")
        self.close(program)

    def test_an_empty_drive_says_so(self):
        for path in sorted(self.container.iterdir()):
            path.rename(self.world / path.name)
        program = self.start_and_measure()
        program.see("Nothing downloaded — your iCloud Drive is already optimized.")
        program.key("Escape")
        program.see("Zero KB")
        # The button that opened the sheet is no longer there.
        program.see_no("Measure")
        program.wait_for(lambda: program.has_focus("iCloud Drive"), "the keyboard on the card")
        self.close(program)


if __name__ == "__main__":
    unittest.main()
