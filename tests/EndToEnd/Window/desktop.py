"""A desktop of the tests' own: an X server, a session bus with accessibility, a window manager."""

import atexit
import os
import pathlib
import shutil
import subprocess
import tempfile


class Desktop:
    """Everything ends with the process that made it."""

    def __init__(self, size="1600x1100"):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="zorvane-desktop-")).resolve()
        self.processes = []
        atexit.register(self.close)
        runtime = self.folder / "runtime"
        runtime.mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.folder),
            "LC_ALL": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(runtime),
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
            "NO_AT_BRIDGE": "1",
        }
        self.environment["DISPLAY"] = ":" + self._start_and_read(
            ["Xvfb", "-displayfd", "{pipe}", "-screen", "0", f"{size}x24", "-nolisten", "tcp",
             "-noreset"])
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_and_read(
            ["dbus-daemon", "--session", "--nofork", "--print-address={pipe}"])
        self._start_window_manager()

    def _start_and_read(self, command):
        """Starts a server that writes one line to the descriptor {pipe} when it is ready."""
        reading, writing = os.pipe()
        command = [word.replace("{pipe}", str(writing)) for word in command]
        self._start(command, pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as pipe:
            line = pipe.readline().strip()
        if not line:
            raise RuntimeError(f"{command[0]} did not start")
        return line

    def _start_window_manager(self):
        # It tells so on the root window when it is there.
        self._start(["openbox"])
        for _ in range(2000):
            if "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"):
                return
        raise RuntimeError("openbox did not start")

    def _start(self, command, **options):
        process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
        self.processes.append(process)

    def run(self, *command):
        return subprocess.run(list(map(str, command)), env=self.environment, check=True,
                              capture_output=True, text=True).stdout

    def close(self):
        for process in reversed(self.processes):
            process.kill()
            process.wait()
        self.processes = []
        shutil.rmtree(self.folder, ignore_errors=True)
