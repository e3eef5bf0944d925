"""Links, hard links, holes, hard names and folders without permission among the caches."""

from .names import HARD_NAMES, longest
from .tree import join

DEPTH = 120

# Name and target, once as entries directly in the cache folder and once inside one entry.
LINKS = (
    ("link-to-sibling", "fontconfig"),
    ("link-to-documents", "../Documents"),
    ("link-dangling", "nowhere/at/all"),
    ("link-to-root", "/"),
    ("link-to-itself", "link-to-itself"),
)


def build(tree):
    for name, target in LINKS:
        tree.link(f".cache/{name}", target, 60)
        inside = target if target in ("/", name) else f"../{target}"
        tree.link(f".cache/link-farm/{name}", inside, 60)
    tree.file(".cache/link-farm/plain.bin", 5000, 60)

    _hard_links_and_holes(tree)
    _permissions(tree)

    for name in (*HARD_NAMES, longest()):
        tree.file(join(join(".cache", name), "content.bin"), 700, 70)
    tree.file(join(".cache/thumbnails/fail", b"invalid \xff\xfe utf-8"), 700, 70)
    tree.file("/".join([".cache/deep", *["d"] * DEPTH, "bottom.bin"]), 3000, 70)


def _hard_links_and_holes(tree):
    links = ".cache/hard-links"
    tree.file(f"{links}/first.bin", 60_000, 60)
    tree.hard_link(f"{links}/second.bin", f"{links}/first.bin", 60)
    tree.file("Documents/kept-hardlink", 60_000, 60)
    tree.hard_link(f"{links}/also-in-documents.bin", "Documents/kept-hardlink", 60)

    images = ".cache/disk-images"
    tree.sparse(f"{images}/debian.img", 64_000_000, 80, [(1_048_576, 131_072), (48_000_000, 65_536)])
    tree.sparse(f"{images}/only-a-hole.img", 16_000_000, 80)


def _permissions(tree):
    """Root can read all of these."""
    tree.many(".cache/locked-inside/open", 6, (500, 4000), (40, 80), levels=0)
    tree.file(".cache/locked-inside/sealed/inner/secret.bin", 9000, 60)
    tree.folder(".cache/locked-inside/sealed", 60, 0o000)

    tree.many(".cache/ccache", 10, (500, 4000), (40, 80))
    tree.folder(".cache/ccache", 40, 0o000)

    tree.file(".cache/read-only/inside.bin", 2000, 60)
    tree.folder(".cache/read-only", 60, 0o500)
    tree.file(".cache/read-only-inside/open.bin", 2000, 60)
    tree.file(".cache/read-only-inside/frozen/inside.bin", 2000, 60)
    tree.folder(".cache/read-only-inside/frozen", 60, 0o500)
