"""Folders that nothing may ever remove, each with a canary.txt whose text names its folder."""

FOLDERS = (
    "Documents", "Desktop", "Downloads", "Pictures", "Music", "Movies", "Library/Mobile Documents",
    "Videos", "Templates", "Public", "Bilder",
)

PRIVATE_FOLDERS = (".ssh", ".gnupg", ".password-store", ".pki", ".local/share/keyrings")

USER_FOLDERS = """\
# The folder of pictures has a localised name; the folder of templates is turned off.
XDG_DESKTOP_DIR="$HOME/Desktop"
XDG_DOCUMENTS_DIR="$HOME/Documents"
XDG_DOWNLOAD_DIR="$HOME/Downloads"
XDG_MUSIC_DIR="$HOME/Music"
XDG_PICTURES_DIR="$HOME/Bilder"
XDG_PUBLICSHARE_DIR="$HOME/Public"
XDG_TEMPLATES_DIR="$HOME/"
XDG_VIDEOS_DIR="$HOME/Videos"
"""


def build(tree):
    for folder in FOLDERS:
        _canary(tree, folder, 0o644)
    for folder in PRIVATE_FOLDERS:
        _canary(tree, folder, 0o600)
        tree.folder(folder, mode=0o700)
    tree.file(".config/user-dirs.dirs", USER_FOLDERS, 100)


def _canary(tree, folder, mode):
    # Older than every age limit, so that only the protection keeps it.
    tree.file(f"{folder}/canary.txt", f"Keep me: {folder}\n", 500, mode)
    tree.file(f"{folder}/inner/canary.txt", f"Keep me too: {folder}/inner\n", 500, mode)
