"""Stand-in tools below .tools, each a script with its state in .tools/state/NAME.

Every call adds a line to .tools/state/calls.log: the tool's name and its arguments, separated
by tabs. A file .tools/state/NAME/fail makes that tool fail.
"""

import json
from datetime import datetime, timezone

from .scripts import SCRIPTS
from .tree import SECOND

# Reference and runtime.
FLATPAK_APPS = (
    ("org.gnome.Calculator/x86_64/stable", "org.gnome.Platform/x86_64/46"),
    ("org.videolan.VLC/x86_64/stable", "org.kde.Platform/x86_64/5.15-23.08"),
)
# Reference, size and needed runtime; flatpak puts a no-break space before the unit, which becomes a
# question mark in the C locale.
FLATPAK_RUNTIMES = (
    ("org.gnome.Platform/x86_64/46", "935.0?MB", ""),
    ("org.kde.Platform/x86_64/5.15-23.08", "1.1?GB", ""),
    ("org.gnome.Platform/x86_64/43", "865.2?MB", ""),
    ("org.gnome.Platform.Locale/x86_64/43", "12.9?MB", ""),
    ("org.kde.Platform/x86_64/5.15-22.08", "1.0?GB", ""),
    ("org.freedesktop.Platform.GL.default/x86_64/22.08", "451.1?MB", ""),
    ("org.freedesktop.Platform/x86_64/22.08", "624.3?MB", ""),
)
FLATPAK_PINS = "runtime/org.freedesktop.Platform/x86_64/22.08\n"

# Repository, tag, id, age, size, shared size, unique size, containers.
PODMAN_IMAGES = (
    ("docker.io/library/debian", "bookworm", "a4d2f91c0b77", "3 weeks ago", "120MB", "120MB", "0B", "1"),
    ("localhost/notes", "latest", "5b0d3a4e9c12", "2 days ago", "1.3GB", "120MB", "1.18GB", "0"),
    ("<none>", "<none>", "3f53bb00af94", "2 weeks ago", "1.2GB", "120MB", "1.08GB", "0"),
    ("<none>", "<none>", "77e1c08d52ab", "5 weeks ago", "870MB", "120MB", "750MB", "0"),
    ("<none>", "<none>", "c90a6b1f3d44", "6 weeks ago", "640MB", "120MB", "520MB", "1"),
)

HOMEBREW_LEFTOVERS = """\
/Users/sample/Library/Caches/Homebrew/wget--1.21.4.arm64_sonoma.bottle.tar.gz (4.5MB)
/Users/sample/Library/Caches/Homebrew/ffmpeg--6.1.1.arm64_sonoma.bottle.tar.gz (18.7MB)
/opt/homebrew/Cellar/openssl@3/3.2.0 (6,512 files, 28.4MB)
/Users/sample/Library/Logs/Homebrew/node (3 files, 12.1KB)
"""

DOCKER_ROWS = (
    {"Active": "2", "Reclaimable": "2.1GB (45%)", "Size": "4.6GB", "TotalCount": "12", "Type": "Images"},
    {"Active": "1", "Reclaimable": "125.4kB (98%)", "Size": "127.9kB", "TotalCount": "7", "Type": "Containers"},
    {"Active": "1", "Reclaimable": "0B (0%)", "Size": "310.2MB", "TotalCount": "1", "Type": "Local Volumes"},
    {"Active": "0", "Reclaimable": "512.8MB", "Size": "512.8MB", "TotalCount": "41", "Type": "Build Cache"},
)


def build(tree):
    for path, script in SCRIPTS.items():
        tree.file(f".tools/{path}", script, 0, 0o755)
    for path, content in _state(tree).items():
        tree.file(f".tools/state/{path}", content, 0)


def _state(tree):
    return {
        "calls.log": "",
        "tmutil/snapshots": _snapshots(tree),
        "xcrun/unavailable.json": _simulators(tree),
        "brew/leftovers": HOMEBREW_LEFTOVERS,
        "docker/rows": "".join(json.dumps(row, separators=(",", ":")) + "\n" for row in DOCKER_ROWS),
        "flatpak/apps": _table(FLATPAK_APPS),
        "flatpak/runtimes": _table(FLATPAK_RUNTIMES),
        "flatpak/pins": FLATPAK_PINS,
        "podman/images": "".join(
            "{:<26}{:<12}{:<14}{:<13}{:<12}{:<13}{:<13}{}\n".format(*row) for row in PODMAN_IMAGES),
    }


def _snapshots(tree):
    stamps = (datetime.fromtimestamp(tree.time(age) // SECOND, timezone.utc) for age in (3, 1.5, 0.25))
    return "".join(f"com.apple.TimeMachine.{stamp:%Y-%m-%d-%H%M%S}.local\n" for stamp in stamps)


def _simulators(tree):
    def device(name):
        digits = f"{tree.random.getrandbits(128):032X}"
        udid = "-".join((digits[:8], digits[8:12], digits[12:16], digits[16:20], digits[20:]))
        return {"availabilityError": "runtime profile not found", "isAvailable": False,
                "name": name, "state": "Shutdown", "udid": udid}

    prefix = "com.apple.CoreSimulator.SimRuntime."
    devices = {prefix + "iOS-15-0": [device("iPhone 8"), device("iPad (9th generation)")],
               prefix + "watchOS-8-0": [device("Apple Watch Series 5 - 44mm")]}
    return json.dumps({"devices": devices}, indent=2) + "\n"


def _table(rows):
    return "".join("\t".join(row) + "\n" for row in rows)
