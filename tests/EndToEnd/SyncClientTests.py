"""A desktop sync client in the terminal, played by a socket of the test's own."""

import json
import os
import socketserver
import threading

from support import ProgramTest


class Client(socketserver.StreamRequestHandler):
    """Says what Nextcloud's client says, and releases at once."""

    def handle(self):
        root = self.server.folder
        self.say(f"REGISTER_PATH:{root}", "REGISTER_PATH:/tmp")
        for line in self.rfile:
            command, _, argument = line.decode().strip().partition(":")
            if command == "VERSION":
                self.say("VERSION:3.7.3git:1.1")
            elif command == "GET_MENU_ITEMS":
                self.say("GET_MENU_ITEMS:BEGIN", "MENU_ITEM:MAKE_ONLINE_ONLY::x", "GET_MENU_ITEMS:END")
            elif command == "RETRIEVE_FILE_STATUS":
                self.say(f"STATUS:{'SYNC' if argument.endswith('new') else 'OK'}:{argument}")
            for path in argument.split("\x1e"):
                if command == "MAKE_ONLINE_ONLY":
                    with open(path + ".nextcloud", "w", encoding="ascii") as placeholder:
                        placeholder.write(" ")
                    os.rename(path, path.replace(str(root), str(self.server.cloud)))
                elif command == "MAKE_AVAILABLE_LOCALLY":
                    plain = path.removesuffix(".nextcloud")
                    os.rename(plain.replace(str(root), str(self.server.cloud)), plain)
                    os.remove(path)

    def say(self, *lines):
        self.wfile.write("".join(line + "\n" for line in lines).encode())


class SyncClient(ProgramTest):
    def icloud(self, action, *arguments, status=0, **variables):
        process = self.run_program("icloud", action, "--json", *arguments, **variables)
        self.assertEqual((process.returncode, process.stderr), (status, b""))
        return json.loads(process.stdout)

    def test_files_go_and_come_back_under_another_name(self):
        folder, runtime = self.home / "Cloud", self.home / "run"
        for name in ("a/one", "a/new", "top"):
            self.file(folder / name, b"x" * 20_000)
        for path in (self.home / "server/a", runtime / "Nextcloud"):
            path.mkdir(parents=True)
        server = socketserver.ThreadingUnixStreamServer(str(runtime / "Nextcloud/socket"), Client)
        server.daemon_threads, server.folder, server.cloud = True, folder, self.home / "server"
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        chosen = ("--drive", "nextcloud")
        environment = {"XDG_RUNTIME_DIR": str(runtime)}

        # Neither a folder nor a socket outside a confined home exists.
        drives = {drive["name"]: drive["containers"] for drive in
                  self.icloud("drives", **environment)["drives"]}
        self.assertEqual(drives["Nextcloud"], [{"path": str(folder), "closed": None}])
        os.rename(runtime, self.world / "run")
        outside = self.icloud("drives", XDG_RUNTIME_DIR=str(self.world / "run"))["drives"]
        self.assertEqual([drive["containers"] for drive in outside[2:]], [[], [], []])
        os.rename(self.world / "run", runtime)

        report = self.icloud("release", *chosen, folder / "top", folder / "a", status=1, **environment)
        self.assertEqual(report["renamed"],
                         [{"path": f"{folder}/top", "newPath": f"{folder}/top.nextcloud"}])
        self.assertEqual([refusal["path"] for refusal in report["refused"]], [f"{folder}/a/new"])
        self.assertIn("still being uploaded", report["refused"][0]["reason"])
        listed = self.icloud("list", *chosen, **environment)["items"]
        self.assertEqual([(item["path"], item["fileCount"], item["localBytes"]) for item in listed],
                         [(f"{folder}/a", 2, (folder / "a/new").stat().st_blocks * 512),
                          (f"{folder}/top.nextcloud", 1, 0)])
        self.assertEqual(self.icloud("fetch", *chosen, folder / "top.nextcloud", folder / "a",
                                     **environment)["refused"], [])
        for name in ("a/one", "a/new", "top"):
            self.assertEqual((folder / name).read_bytes(), b"x" * 20_000)
