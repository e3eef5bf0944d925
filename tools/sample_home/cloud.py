"""A cloud drive in its container, and the mirror that stands for its cloud side.

The mirror holds a copy of every file, those of placeholders included. A placeholder is a file
of full length that holds no block.
"""

CONTAINER = "Library/Mobile Documents/com~apple~CloudDocs"
MIRROR = ".cloud-mirror"

# Path, size, and whether its content is on this disk.
FILES = (
    ("Big film.mov", 1_500_000, True),
    ("Cloud film.mov", 700_000, False),
    ("empty note.txt", 0, True),
    (".DS_Store", 6148, True),
    (".hidden folder/inside.txt", 900, True),
    ("Letters/Übersicht 2024 – Entwurf.txt", 4000, True),
    ("Letters/.draft.txt", 2000, True),
    ("Letters/two\nlines \U0001f4c4.txt", 2000, True),
    ("Letters/old letter.txt", 5000, False),
    ("Cloud only/one.pdf", 80_000, False),
    ("Cloud only/deeper/two.pdf", 60_000, False),
    ("Cloud only/deeper/three.pdf", 40_000, False),
    ("Tools/Sketch Pad.app/Contents/Info.plist", 900, True),
    ("Tools/Sketch Pad.app/Contents/MacOS/Sketch Pad", 300_000, True),
    ("Tools/Sketch Pad.app/Contents/PlugIns/Inner.app/Contents/helper", 90_000, True),
    ("Tools/Sketch Pad.app/Contents/Resources/manual.pdf", 70_000, False),
    ("Tools/Not Here.app/Contents/MacOS/Not Here", 200_000, False),
    ("Tools/Report.app.old/Contents/data", 20_000, True),
    ("Tools/Notes.APP/Contents/data", 20_000, True),
    ("Tools/readme.txt", 1200, True),
)


def build(tree):
    for path, size, local in FILES:
        _file(tree, path, size, local)
    for number in range(24):
        _file(tree, f"Photos 2023/IMG_{1000 + number}.jpg", tree.random.randint(20_000, 90_000), number % 3 != 0)
    for number in range(12):
        _file(tree, f"Projects/Garden/sheet {number}.numbers", tree.random.randint(4000, 30_000), True)

    # One file under two names: it has two links here and two separate copies in the mirror.
    content = tree.random.randbytes(25_000)
    tree.file(f"{CONTAINER}/Projects/linked one.bin", content, 100)
    tree.hard_link(f"{CONTAINER}/Projects/linked two.bin", f"{CONTAINER}/Projects/linked one.bin", 100)
    for name in ("linked one.bin", "linked two.bin"):
        tree.file(f"{MIRROR}/Projects/{name}", content, 100)

    for root in (CONTAINER, MIRROR):
        tree.folder(f"{root}/Empty folder", 100)
    tree.link(f"{CONTAINER}/Projects/link to photos", "../Photos 2023", 100)
    tree.link(f"{CONTAINER}/Shortcut to letters", "Letters", 100)
    tree.link(f"{CONTAINER}/Way out", "../../../Documents", 100)
    tree.folder(MIRROR, mode=0o700)


def _file(tree, path, size, local):
    content = tree.random.randbytes(size)
    age = tree.random.uniform(30, 700)
    tree.file(f"{MIRROR}/{path}", content, age)
    if local:
        tree.file(f"{CONTAINER}/{path}", content, age)
    else:
        tree.sparse(f"{CONTAINER}/{path}", size, age)
