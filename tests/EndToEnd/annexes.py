"""Two repositories of git-annex in a test's home: "src", and "usb", hidden, which keeps a copy of all."""

import subprocess


class Annexes:
    """Makes them with files of different contents, `files` in each of `folders` folders."""

    def __init__(self, home, environment, folders, files):
        self.home, self.environment = home, {**environment, "HOME": str(home)}
        self.src, self.usb = home / "Files/src", home / ".usb"
        self.src.mkdir(parents=True)
        for name, value in (("user.name", "a"), ("user.email", "a@b"), ("gc.auto", "0")):
            self.git(home, "config", "--global", name, value)
        self.git(self.src, "init", "-q")
        self.git(self.src, "annex", "init", "-q", "laptop")
        self.contents = {f"d{folder}/f{file}": (f"{folder}.{file} " * 600).encode()
                         for folder in range(folders) for file in range(files)}
        for name, content in self.contents.items():
            (self.src / name).parent.mkdir(exist_ok=True)
            (self.src / name).write_bytes(content)
        self.git(self.src, "annex", "add", "-q", ".")
        self.git(self.src, "commit", "-qm", "all")
        self.git(home, "clone", "-q", self.src, self.usb)
        self.git(self.usb, "annex", "init", "-q", "disk")
        self.git(self.usb, "annex", "get", "-q", ".")
        self.entries = sorted(self.src.glob("d*"))

    def git(self, folder, *arguments):
        """Runs git in a folder; returns what it prints."""
        return subprocess.run(["git", *arguments], cwd=folder, env=self.environment, check=True,
                              capture_output=True, text=True).stdout

    def connect(self):
        """The first repository learns of the second, and can drop what that keeps."""
        self.git(self.src, "remote", "add", "usb", self.usb)
        self.git(self.src, "fetch", "-q", "usb")
        self.git(self.src, "annex", "merge", "-q")

    def here(self):
        """How many contents are on this disk."""
        return sum((self.src / name).exists() for name in self.contents)

    def check(self):
        """git-annex itself checks the contents of both repositories, with their checksums."""
        for repository in (self.src, self.usb):
            self.git(repository, "annex", "fsck", "-q")

    def correct(self):
        """After a kill one content may be gone that the log still has; git-annex corrects that."""
        subprocess.run(["git", "annex", "fsck", "-q", "--fast"], cwd=self.src, check=False,
                       env=self.environment, capture_output=True)
