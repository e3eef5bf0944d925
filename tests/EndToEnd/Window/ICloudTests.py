"""The cloud drive: measuring, releasing, bringing back; after each step the disk is looked at."""

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

    def test_releases_what_was_chosen_and_shows_it_again_when_it_is_back(self):
        container = self.home / "Library/Mobile Documents/com~apple~CloudDocs"
        blocks = {}
        for name, size in (("Photos/one", 90_000), ("Photos/two", 30_000), ("Tools/note", 20_000),
                           ("Tools/Pad.app/binary", 50_000), ("Small/file", 10_000)):
            self.file(self.tools[3] / name, b"x" * size)
            blocks[name] = self.file(container / name, b"x" * size).stat().st_blocks * 512
        opened = self.world / "opened"
        opener = self.tool("bin/xdg-open", f'echo "$1" >> {opened}')
        program = self.start("--catalog", self.catalog(rule()), *self.tools[2:],
                             PATH=f"{opener.parent}:{os.environ['PATH']}")
        self.scan_in_window(program)
        program.click("Measure")
        program.see("Free up iCloud space")
        program.see("Rescan")
        self.assertEqual([name for name in program.rows("check box") if (container / name).exists()],
                         ["Photos", "Tools", "Small"])
        self.assertFalse(program.is_enabled("Free up Zero KB"))

        photos = byte_count(blocks["Photos/one"] + blocks["Photos/two"])
        program.see(photos)
        for name in ("Photos", "Tools"):
            program.click(name, "check box")
        releasable = byte_count(sum(list(blocks.values())[:3]))
        program.see(f"iCloud will release {releasable} in 3 files — this usually takes less than a "
                    "minute.")
        apps = byte_count(blocks["Tools/Pad.app/binary"])
        program.see(f"{apps} are apps stored in iCloud Drive.")
        # Without a file manager the folder of the apps is opened.
        program.click("Show in Finder")
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
        self.assertEqual([name for name in blocks if (container / name).stat().st_blocks > 0],
                         ["Tools/Pad.app/binary", "Small/file"])
        self.run_program("icloud", "fetch", *self.tools[2:], container / "Photos", container / "Tools")
        program.click("Rescan")
        program.see_no("released")
        program.see(photos)
        program.key("Escape")
        # The card now tells what is downloaded, and opens without measuring again.
        program.see(byte_count(sum(blocks.values())))
        program.click("iCloud Drive")
        program.see("Rescan")
        program.click("Close", "push button")
        program.wait_for_focus("iCloud Drive")
