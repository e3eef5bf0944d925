"""Stand-in tools below .tools, each a script with its state in .tools/state/NAME.

Every call adds a line to .tools/state/calls.log: the tool's name and its arguments, separated
by tabs. A file .tools/state/NAME/fail makes that tool fail.
"""

import json
from datetime import datetime, timezone

from .scripts import SCRIPTS
from .tree import SECOND

# Application, architecture, branch, size; flatpak puts a no-break space before the unit.
RUNTIMES_IN_USE = (
    ("org.freedesktop.Platform", "x86_64", "23.08", "624.3\u00a0MB"),
    ("org.gnome.Platform", "x86_64", "46", "935.0\u00a0MB"),
)
UNUSED_RUNTIMES = (
    ("org.gnome.Platform", "x86_64", "43", "865.2\u00a0MB"),
    ("org.freedesktop.Platform.GL.default", "x86_64", "22.08", "451.1\u00a0MB"),
    ("org.kde.Platform", "x86_64", "5.15-22.08", "1.0\u00a0GB"),
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
        "flatpak/in-use": _table(RUNTIMES_IN_USE),
        "flatpak/unused": _table(UNUSED_RUNTIMES),
        "podman/before.json": _podman(3_400_000_000, "3.4GB", 2_250_000_000, "2.25GB (66%)"),
        "podman/pruned.json": _podman(1_150_000_000, "1.15GB", 0, "0B (0%)"),
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


def _podman(size, shown_size, reclaimable, shown_reclaimable):
    def row(kind, total, active, *sizes):
        keys = ("Type", "Total", "Active", "RawSize", "RawReclaimable", "TotalCount", "Size", "Reclaimable")
        raw_size, raw_reclaimable, text, reclaimable_text = sizes
        return dict(zip(keys, (kind, total, active, raw_size, raw_reclaimable, total, text, reclaimable_text)))

    rows = [row("Images", 9, 3, size, reclaimable, shown_size, shown_reclaimable),
            row("Containers", 2, 2, 40_960, 0, "40.96kB", "0B (0%)"),
            row("Local Volumes", 1, 1, 0, 0, "0B", "0B (0%)")]
    return json.dumps(rows, indent=4, ensure_ascii=False) + "\n"
