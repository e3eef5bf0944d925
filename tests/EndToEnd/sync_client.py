"""The socket of a desktop sync client, played for the programs."""

import os
import socketserver
import threading


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


def start_client(test, folder, runtime):
    """The client of a test's folder, with its socket below a runtime folder; the server keeps what is
    released in the home's folder "server"."""
    cloud = test.home / "server"
    for path in (cloud / "a", runtime / "Nextcloud"):
        path.mkdir(parents=True)
    runtime.chmod(0o700)
    server = socketserver.ThreadingUnixStreamServer(str(runtime / "Nextcloud/socket"), Client)
    server.daemon_threads, server.folder, server.cloud = True, folder, cloud
    # The programs hang up whenever they have seen enough.
    server.handle_error = lambda *_: None
    threading.Thread(target=server.serve_forever, daemon=True).start()
    test.addCleanup(server.server_close)
    test.addCleanup(server.shutdown)
