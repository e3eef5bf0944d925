"""Leftovers of developer tools: package caches, build caches, read-only module folders."""

READ_ONLY_FOLDER = 0o555
READ_ONLY_FILE = 0o444


def build(tree):
    _npm_and_pip(tree)
    _cargo(tree)
    _go(tree)
    _gradle_and_maven(tree)


def _npm_and_pip(tree):
    tree.many(".npm/_cacache/content-v2/sha512", 330, (200, 7000), (1, 200), levels=2)
    tree.many(".npm/_cacache/index-v5", 150, (150, 900), (1, 200), levels=2)
    tree.many(".npm/_logs", 12, (500, 5000), (1, 90), "-debug-0.log", levels=0)
    tree.many(".npm/_npx", 20, (300, 4000), (20, 90), ".js")
    tree.file(".npm/_update-notifier-last-checked", b"", 2)
    tree.many(".cache/pip/http-v2", 100, (500, 9000), (5, 200), levels=2)
    tree.many(".cache/pip/wheels", 12, (20_000, 90_000), (5, 200), ".whl", levels=2)
    tree.many(".cache/pip/selfcheck", 2, (100, 200), (1, 5), levels=0)


def _cargo(tree):
    index = "index.crates.io-6f17d22bba15001f"
    tree.many(f".cargo/registry/cache/{index}", 50, (4000, 40_000), (30, 300), ".crate", levels=0)
    for number in range(tree.scaled(20)):
        tree.many(f".cargo/registry/src/{index}/crate-{number}-1.0.{number}/src",
                  8, (300, 4000), (30, 300), ".rs", levels=0)
    tree.many(f".cargo/registry/index/{index}/.cache", 60, (200, 2000), (1, 100), levels=2)
    tree.file(".cargo/registry/CACHEDIR.TAG", "Signature: 8a477f597d28d172789f06886806bc55\n", 300)
    tree.many(".cargo/git/db/library-0f3a", 15, (300, 5000), (60, 200))
    tree.file(".cargo/bin/installed-tool", "#!/bin/sh\n", 60, 0o755)
    tree.file(".cargo/credentials.toml", "not a real token\n", 60, 0o600)


def _go(tree):
    tree.many(".cache/go-build", 330, (200, 5000), (1, 40), "-d", levels=2)
    tree.file(".cache/go-build/trim.txt", "1700000000\n", 1)

    # One child of the module cache is old, one holds a module of yesterday.
    for host, modules, ages in (("github.com", 12, (45, 300)), ("golang.org", 4, (1, 2))):
        for number in range(tree.scaled(modules)):
            module = f"go/pkg/mod/{host}/example/tool{number}@v1.{number}.0"
            for part in ("", "/internal", "/internal/deep", "/testdata"):
                tree.folder(module + part, mode=READ_ONLY_FOLDER)
                for name in ("doc.go", "main.go", "main_test.go"):
                    tree.file(f"{module}{part}/{name}", tree.random.randint(200, 5000),
                              tree.random.uniform(*ages), READ_ONLY_FILE)
    tree.many("go/pkg/mod/cache/download/github.com/example/@v", 30, (300, 9000), (45, 300), ".zip",
              levels=0)
    tree.file("go/src/mine/main.go", "package main\n", 100)


def _gradle_and_maven(tree):
    tree.many(".gradle/caches/modules-2/files-2.1", 110, (500, 12_000), (45, 300), ".jar", levels=2)
    tree.many(".gradle/caches/8.5", 30, (500, 6000), (45, 100), ".bin")
    tree.many(".gradle/caches/8.7", 30, (500, 6000), (1, 20), ".bin")
    tree.file(".gradle/caches/CACHEDIR.TAG", "Signature: 8a477f597d28d172789f06886806bc55\n", 300)
    tree.file(".gradle/wrapper/dists/gradle-8.5-bin/5t9hu/gradle-8.5-bin.zip", 2_500_000, 90)
    tree.file(".gradle/gradle.properties", "signing.password=not a real one\n", 60, 0o600)
    tree.many(".m2/repository/org/example", 90, (500, 9000), (45, 300), ".jar", levels=2)
    tree.many(".m2/repository/com/sample", 40, (500, 9000), (45, 300), ".jar", levels=2)
    tree.many(".m2/repository/io/recent", 10, (500, 9000), (1, 5), ".jar")
    tree.file(".m2/settings.xml", "<settings/>\n", 60, 0o600)
