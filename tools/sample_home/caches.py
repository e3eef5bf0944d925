"""Caches of desktop programs, browsers, web apps and Flatpak apps, with files beside them that must survive."""

# Name, files, range of sizes, suffix; all older than any age limit.
OLD_APPLICATIONS = (
    ("gnome-software", 330, (500, 9000), ".png"),
    ("fontconfig", 80, (1000, 24000), "-le64.cache-8"),
    ("gimp", 120, (300, 7000), ".cache"),
    ("inkscape", 90, (300, 4000), ".svg"),
    ("darktable", 160, (2000, 12000), ".mip"),
    ("shotwell", 150, (1000, 6000), ".jpg"),
    ("totem", 40, (300, 3000), ".media-art"),
    ("epiphany", 140, (300, 4000), ".http"),
    ("matplotlib", 12, (2000, 30000), ".json"),
    ("mypy", 180, (200, 3000), ".meta.json"),
    ("typescript", 90, (300, 4000), ".d.ts"),
    ("babl", 3, (500, 3000), ".fish"),
)

RECENT_APPLICATIONS = ("rhythmbox", "nautilus", "gnome-maps")

# Entries of .cache that keep real state: a cleaner leaves them alone however old they are.
SPARED = {
    "keepassxc/keepassxc.ini": "[General]\nLastDatabases=/home/sample/secrets.kdbx\n",
    "JetBrains/IdeaIC2024.1/LocalHistory/changes.storageData": "uncommitted changes\n",
    "doc/by-app/org.example.Editor/letter.odt": "a document behind the portal\n",
    "ibus/libpinyin/user_bigram.db": "learned words\n",
    "rclone/vfs/remote/not-yet-uploaded.odt": "exists nowhere else\n",
    "evolution/mail/outbox.mbox": "not yet sent\n",
    "huggingface/token": "not a real token\n",
    "git/credential/config": "socket folder of the credential cache\n",
}

WEB_APPS = ("Slack", "discord", "Code", "obsidian", "Microsoft/Microsoft Teams")


def build(tree):
    _applications(tree)
    _browsers(tree)
    _web_apps(tree)
    _flatpaks(tree)


def _applications(tree):
    for name, count, sizes, suffix in OLD_APPLICATIONS:
        tree.many(f".cache/{name}", count, sizes, (20, 300), suffix)
    for name in RECENT_APPLICATIONS:
        tree.many(f".cache/{name}", 40, (300, 4000), (0.1, 5))
    for path, content in SPARED.items():
        tree.file(f".cache/{path}", content, 120)

    # The folder is old, and so is all but one of its files.
    tree.many(".cache/obs-studio", 20, (300, 4000), (60, 90))
    tree.file(".cache/obs-studio/plugins/latest.bin", 5000, 1)
    tree.folder(".cache/obs-studio", 90)

    tree.file(".cache/exactly-seven-days", 3000, 7)
    tree.file(".cache/one-second-short-of-seven-days", 3000, 7 - 1 / 86_400)
    tree.file(".cache/from-the-future", 1000, -400)
    tree.file(".cache/empty-file", b"", 50)
    tree.folder(".cache/empty-folder", 50)

    for size, count in (("normal", 260), ("large", 140), ("fail/gnome-thumbnail-factory", 30)):
        tree.many(f".cache/thumbnails/{size}", count, (400, 5000), (0.5, 200), ".png", levels=0)
    tree.many(".cache/mesa_shader_cache", 180, (200, 3000), (10, 60), levels=1)


def _browsers(tree):
    firefox = ".cache/mozilla/firefox"
    for profile, count in (("3k1x2y9z.default-release", 520), ("old8prof.default", 90)):
        tree.many(f"{firefox}/{profile}/cache2/entries", count, (200, 8000), (0.2, 90), levels=0)
        tree.many(f"{firefox}/{profile}/startupCache", 3, (2000, 60000), (1, 30), ".little", levels=0)
        tree.many(f"{firefox}/{profile}/safebrowsing", 8, (200, 9000), (1, 30), ".vlpset", levels=0)
    tree.file(".mozilla/firefox/3k1x2y9z.default-release/places.sqlite", 6000, 0.5, 0o600)

    chrome = ".cache/google-chrome"
    for profile, count in (("Default", 430), ("Profile 1", 60)):
        tree.many(f"{chrome}/{profile}/Cache/Cache_Data", count, (200, 8000), (0.2, 60), "_0", levels=0)
        tree.many(f"{chrome}/{profile}/Code Cache/js", count // 4, (200, 5000), (0.2, 60), "_0", levels=0)
    tree.file(".config/google-chrome/Default/Bookmarks", '{"roots": {}}\n', 0.5, 0o600)


def _web_apps(tree):
    for name in WEB_APPS:
        home = f".config/{name}"
        tree.many(f"{home}/Cache/Cache_Data", 60, (300, 6000), (0.2, 60), "_0", levels=0)
        tree.many(f"{home}/Code Cache/js", 20, (300, 5000), (0.2, 60), "_0", levels=0)
        tree.many(f"{home}/GPUCache", 4, (300, 5000), (5, 60), levels=0)
        tree.file(f"{home}/Cookies", "signed in\n", 0.5, 0o600)
        tree.file(f"{home}/Local Storage/leveldb/000003.log", "messages\n", 0.5)
    for age in (3, 40):
        tree.many("/".join((".config/Slack/Service Worker/CacheStorage", f"origin-{age}-days")),
                  10, (300, 4000), (age, age + 1))
    tree.file(".config/unity3d/Studio/Game/cache/save.dat", "a game's save\n", 200)


def _flatpaks(tree):
    gimp = ".var/app/org.gimp.GIMP"
    tree.many(f"{gimp}/cache/gimp", 50, (300, 5000), (10, 90))
    tree.many(f"{gimp}/cache/fontconfig", 20, (1000, 9000), (10, 90), levels=0)
    tree.many(f"{gimp}/cache/recently-used", 10, (300, 2000), (0.1, 1), levels=0)
    tree.file(f"{gimp}/cache/tmp/old-scratch.xcf", 4000, 15)
    tree.file(f"{gimp}/cache/tmp/new-scratch.xcf", 4000, 1)
    tree.file(f"{gimp}/config/gimprc", "settings\n", 30)
    tree.many(".var/app/org.mozilla.firefox/cache/mozilla/firefox/flat5pak.default/cache2/entries",
              40, (300, 5000), (1, 60), levels=0)
    tree.many(".var/app/com.spotify.Client/cache/spotify/Storage", 40, (2000, 12000), (1, 60))
