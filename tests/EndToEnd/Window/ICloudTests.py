"""The cloud drive: measuring, releasing, bringing back; after each step the disk is looked at."""

import json
import os
import urllib.parse

from gi.repository import Gio

from window_test import WindowTest, byte_count
from support import rule

MANAGER = "org.freedesktop.FileManager1"
INTERFACE = Gio.DBusNodeInfo.new_for_xml(f"""<node><interface name='{MANAGER}'>
<method name='ShowItems'><arg type='as' direction='in'/><arg type='s' direction='in'/></method>
</interface></node>""").interfaces[0]


class ICloudTests(WindowTest):
    def start_file_manager(self):
        """The desktop's file manager; returns the list of what it is asked to show."""
        shown = []

        def call(_bus, _sender, _path, _interface, _method, parameters, invocation):
            shown.extend(map(urllib.parse.unquote, parameters.unpack()[0]))
            invocation.return_value(None)

        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        bus.register_object("/" + MANAGER.replace(".", "/"), INTERFACE, call)
        Gio.bus_own_name_on_connection(bus, MANAGER, Gio.BusNameOwnerFlags.NONE, None, None)
        return shown

    def icloud(self, action, *paths):
        process = self.run_program("icloud", action, "--json", "--home", self.home, *self.tools[2:],
                                   *paths)
        return json.loads(process.stdout)

    def test_releases_what_was_chosen_and_shows_it_again_when_it_is_back(self):
        container = self.home / "Library/Mobile Documents/com~apple~CloudDocs"
        for name, size in (("Photos/one", 90_000), ("Photos/two", 30_000), ("Tools/note", 20_000),
                           ("Tools/Pad.app/binary", 50_000), ("Small/file", 10_000)):
            for folder in (container, self.tools[3]):
                self.file(folder / name, b"x" * size)
        opener = self.tool("bin/xdg-open", f'echo "$1" >> {self.world}/opened')
        listed = {item["path"].rpartition("/")[2]: item for item in self.icloud("list")["items"]}
        total = byte_count(sum(item["localBytes"] for item in listed.values()))
        program = self.start("--catalog", self.catalog(rule()), *self.tools[2:],
                             PATH=f"{opener.parent}:{os.environ['PATH']}")
        self.scan_in_window(program)
        program.click("Measure")
        program.see("Free up iCloud space")
        program.see("Rescan")
        self.assertEqual([name for name in program.rows("check box") if name in listed],
                         ["Photos", "Tools", "Small"])
        self.assertFalse(program.is_enabled("Free up Zero KB"))

        for name in ("Photos", "Tools"):
            program.see(byte_count(listed[name]["localBytes"]))
            program.click(name, "check box")
        releasable = byte_count(sum(listed[name]["releasableBytes"] for name in ("Photos", "Tools")))
        program.see(f"iCloud will release {releasable} in 3 files — this usually takes less than a "
                    "minute.")
        apps = byte_count(listed["Tools"]["apps"][0]["localBytes"])
        program.see(f"{apps} are apps stored in iCloud Drive.")
        # Without a file manager the folder of the apps is opened.
        program.click("Show in Finder")
        opened = self.world / "opened"
        program.wait_for(lambda: opened.exists() and opened.read_text(), "the opened folder")
        self.assertEqual(urllib.parse.unquote(opened.read_text().strip()).rstrip("/"),
                         f"file://{container}/Tools")
        shown = self.start_file_manager()
        program.click("Show in Finder")
        program.wait_for(lambda: shown, "the request to show")
        self.assertEqual(shown, [f"file://{container}/Tools/Pad.app"])

        program.click("Free up " + releasable)
        program.see(f"Still on this Mac: {apps} in apps.")
        program.see("released")
        sizes = {name: (container / name).stat() for name in
                 ("Photos/one", "Photos/two", "Tools/note", "Tools/Pad.app/binary", "Small/file")}
        self.assertEqual([name for name, status in sizes.items() if status.st_blocks > 0],
                         ["Tools/Pad.app/binary", "Small/file"])
        self.assertEqual([status.st_size for status in sizes.values()],
                         [90_000, 30_000, 20_000, 50_000, 10_000])
        self.icloud("fetch", container / "Photos", container / "Tools")
        program.click("Rescan")
        program.see_no("released")
        program.see(byte_count(listed["Photos"]["localBytes"]))
        program.key("Escape")
        # The card now tells what is downloaded, and opens without measuring again.
        program.see(total)
        program.click("iCloud Drive")
        program.see("Rescan")
        program.click("Close", "push button")
        program.wait_for_focus("iCloud Drive")
        self.close(program)
