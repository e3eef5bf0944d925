"""Logs, temporary files and the Trash, with ages on both sides of each limit."""

import stat
from datetime import datetime, timezone
from urllib.parse import quote_from_bytes

from .names import HARD_NAMES, longest
from .tree import SECOND, join, raw

TRASH_RECORD = ".trashinfo"


def build(tree):
    _logs(tree)
    _temporary(tree)
    _trash(tree)


def _logs(tree):
    for age in (3, 13.9, 14, 20, 60):
        session = f".config/Code/logs/session-{age}-days"
        for name in ("main.log", "window1/renderer.log", "window1/exthost/exthost.log"):
            tree.file(f"{session}/{name}", tree.random.randint(400, 6000), age)
    for app in (".config/Slack/logs", ".config/discord/logs", ".config/gcloud/logs"):
        tree.file(f"{app}/old.log", 6000, 30)
        tree.file(f"{app}/current.log", 6000, 0.2)
    tree.many(".gradle/daemon/8.5", 6, (2000, 20_000), (30, 60), ".out.log", levels=0)
    tree.many(".gradle/daemon/8.7", 3, (2000, 20_000), (0.5, 5), ".out.log", levels=0)
    for folder in ("pending", "completed"):
        tree.many(f".config/Slack/Crashpad/{folder}", 3, (8000, 40_000), (20, 60), ".dmp", levels=0)
    tree.file(".config/Slack/Crashpad/settings.dat", "client id\n", 60)
    tree.file(".config/hexchat/logs/friends.log", "a conversation to keep\n", 200)


def _temporary(tree):
    """.tmp is the temporary folder of a sample home."""
    tree.file(".tmp/old-report.pdf", 40_000, 12)
    tree.many(".tmp/old-build", 40, (300, 5000), (15, 60), ".o")
    tree.file(".tmp/exactly-ten-days", 2000, 10)
    tree.file(".tmp/nearly-ten-days", 2000, 9.9)
    tree.file(".tmp/recent-upload.part", 9000, 0.1)
    tree.file(".tmp/old-folder-new-file/cache/new", 500, 1)
    tree.folder(".tmp/old-folder-new-file", 40)
    tree.special(".tmp/agent.socket", stat.S_IFSOCK, 40)
    tree.special(".tmp/editor.pipe", stat.S_IFIFO, 40)
    tree.special(".tmp/.X11-unix/X0", stat.S_IFSOCK, 40)
    tree.special(".tmp/tmux-1000/default", stat.S_IFSOCK, 40)
    for name in (*HARD_NAMES, longest()):
        tree.file(join(".tmp", name), 700, 33)
    tree.folder(".tmp", mode=0o700)


def _trash(tree):
    _trashed_file(tree, "Old Report.odt", 30_000, 400)
    _trashed_file(tree, "archive.tar.gz", 400_000, 90)
    _trashed_file(tree, "changed just now.txt", 300, 0.01)
    tree.sparse(".local/share/Trash/files/Holiday film.mkv", 90_000_000, 700,
                [(0, 65_536), (50_000_000, 262_144)])
    _record(tree, "Holiday film.mkv")
    tree.many(".local/share/Trash/files/Photos 2019", 30, (3000, 20_000), (300, 900), ".jpg", levels=0)
    _record(tree, "Photos 2019")
    tree.link(".local/share/Trash/files/link to documents", "../../../../Documents", 60)
    _record(tree, "link to documents")
    for name in (*HARD_NAMES, longest(255 - len(TRASH_RECORD))):
        _trashed_file(tree, name, 700, 80)

    # An entry without a record, a record without an entry, and a record that is a link.
    tree.file(".local/share/Trash/files/no record.txt", 500, 50)
    _record(tree, "no entry.txt")
    tree.file(".local/share/Trash/files/record is a link.txt", 500, 50)
    tree.link(".local/share/Trash/info/record is a link.txt" + TRASH_RECORD,
              "../../../../Documents/canary.txt", 5)
    tree.folder(".local/share/Trash/files", mode=0o700)
    tree.folder(".local/share/Trash/info", mode=0o700)
    tree.folder(".local/share/Trash", mode=0o700)


def _trashed_file(tree, name, size, age):
    tree.file(join(".local/share/Trash/files", name), size, age)
    _record(tree, name)


def _record(tree, name):
    deleted = datetime.fromtimestamp(tree.time(5) // SECOND, timezone.utc)
    origin = quote_from_bytes(b"/home/sample/Documents/" + raw(name))
    tree.file(join(".local/share/Trash/info", raw(name) + raw(TRASH_RECORD)),
              f"[Trash Info]\nPath={origin}\nDeletionDate={deleted:%Y-%m-%dT%H:%M:%S}\n", 5, 0o600)
