#include "CleanCore/FileSystem/UserFolders.h"

#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using CleanCore::UserFolders;
using CleanCoreTests::TemporaryFolder;

UserFolders foldersOf(const std::string& home, const std::map<std::string, std::string>& values)
{
    return UserFolders::ofAccount(home, [&](const char* name) {
        const auto found = values.find(name);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    });
}

bool isProtected(const UserFolders& folders, const std::string& path)
{
    const auto& all = folders.protectedFolders;
    return std::find(all.begin(), all.end(), path) != all.end();
}

TEST(UserFolders, TakesAVariableOnlyForAFolderThatHoldsNothingElse)
{
    const TemporaryFolder world;
    for (const char* const folder :
         {"me/caches", "me/.cache", "me/Documents/x", "me/Bilder/x", "me/.config/x",
          "me/.local/state/x", "me/.ssh", "me/Library/Mobile Documents", "scratch", "sticky",
          "target/scratch", "me/.config-2"}) {
        world.makeFolder(folder);
    }
    world.makeFile("me/.config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    world.makeFile("me/file");
    world.makeLink("me/to-scratch", world.path("scratch"));
    world.makeLink("to-home", world.path("me"));
    world.makeLink("to-documents", world.path("me/Documents/x"));
    world.makeLink("target-link", world.path("target/scratch"));
    world.setMode("sticky", 01777);

    const auto isTaken = [&](const char* variable, const std::string& value) {
        const UserFolders folders = foldersOf(world.path("me"), {{variable, value}});
        return variable == std::string("TMPDIR") ? folders.temporaryFolder == value
                                                 : folders.cacheFolder != world.path("me/.cache");
    };
    const auto expectTaken = [&](const std::string& value, bool isCache, bool isTemporary) {
        EXPECT_EQ(isTaken("XDG_CACHE_HOME", value), isCache) << value;
        EXPECT_EQ(isTaken("TMPDIR", value), isTemporary) << value;
    };
    for (const char* const folder :
         {"scratch", "sticky", "me/caches", "me/to-scratch", "me/.config-2"}) {
        expectTaken(world.path(folder), true, true);
    }
    // Somebody else's: usable for temporary files if sticky, never for caches.
    expectTaken("/tmp", false, true);
    for (const char* const value : {"", "scratch", "~/caches", "/usr", "/", "/run", "/run/lock"}) {
        expectTaken(value, false, false);
    }
    for (const char* const folder :
         {"missing", "me/file", "me", "me/caches/..", "", "to-home", "me/Documents",
          "me/Documents/x", "to-documents", "me/Bilder", "me/Library", "me/.ssh", "me/.config",
          "me/.config/x", "me/.local", "me/.local/state/x"}) {
        expectTaken(world.path(folder), false, false);
    }

    const auto cacheFolder = [&](const std::string& value) {
        return foldersOf(world.path("me"), {{"XDG_CACHE_HOME", value}}).cacheFolder;
    };
    EXPECT_EQ(cacheFolder(world.path("scratch") + "/./"), world.path("scratch"));
    EXPECT_EQ(cacheFolder(world.path("me/to-scratch")), world.path("me/to-scratch"));
    // Behind a link ".." is another folder than the text says; what was judged is what is used.
    EXPECT_EQ(cacheFolder(world.path("target-link/../scratch")), world.path("target/scratch"));

    const UserFolders defaults = foldersOf(world.path("me"), {});
    EXPECT_EQ(defaults.cacheFolder, world.path("me/.cache"));
    EXPECT_EQ(defaults.temporaryFolder, "/tmp");
}

TEST(UserFolders, FollowsLinksOfConfigurationAndDataToWhatTheyHold)
{
    const TemporaryFolder world;
    for (const char* const folder : {"dotfiles/config/app", "local/state/app", "data/app", "linked",
                                     "free", "me/.cache", "you/.local"}) {
        world.makeFolder(folder);
    }
    world.makeLink("me/.config", world.path("dotfiles/config"));
    world.makeLink("me/.local", world.path("local"));
    world.makeLink("local/app", world.path("linked"));
    world.makeLink("you/.local/share", world.path("data"));

    const auto expectTaken = [&](const char* home, const char* value, bool isTaken) {
        const UserFolders folders =
            foldersOf(world.path(home),
                      {{"XDG_CACHE_HOME", world.path(value)}, {"TMPDIR", world.path(value)}});
        EXPECT_EQ(folders.cacheFolder != world.path(home) + "/.cache", isTaken) << value;
        EXPECT_EQ(folders.temporaryFolder != "/tmp", isTaken) << value;
    };
    for (const char* const folder :
         {"me/.config", "me/.config/app", "dotfiles/config", "dotfiles/config/app", "dotfiles",
          "me/.local", "me/.local/state", "local", "local/state/app", "me/.local/app"}) {
        expectTaken("me", folder, false);
    }
    expectTaken("me", "free", true);
    expectTaken("me", "local/../free", true);
    expectTaken("you", "data", false);
    expectTaken("you", "data/app", false);
    expectTaken("you", "local", true);
    expectTaken("you", "dotfiles/config", true);
}

TEST(UserFolders, ProtectsWhateverTheUserDirectoriesFileNames)
{
    const TemporaryFolder world;
    world.makeFolder("me");
    world.makeLink("me/link-to-home", world.path("me"));
    world.makeFile("me/.config/user-dirs.dirs", R"(# XDG_COMMENT_DIR="$HOME/comment"
XDG_PICTURES_DIR="$HOME/Bilder"
  XDG_VIDEOS_DIR = "$HOME/Filme//2020/"
XDG_MUSIC_DIR="/media/music"
XDG_DESKTOP_DIR="$HOME/"
XDG_TEMPLATES_DIR="$HOME"
XDG_PUBLICSHARE_DIR="/"
XDG_DISABLED_DIR="$HOME/link-to-home"
XDG_RELATIVE_DIR="relative"
XDG_UNQUOTED_DIR=$HOME/unquoted
XDG_DOCUMENTS_DIR="$HOME/a \"quoted\" name"
XDG_UNFINISHED_DIR="$HOME/unfinished
nonsense
)"
                                                "\xFF\xFE=\n"
                                                "XDG_BYTES_DIR=\"$HOME/b\xFF\"");
    world.makeFile("config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Elsewhere\"\n");

    const std::string home = world.path("me");
    const UserFolders folders = foldersOf(home, {{"XDG_CONFIG_HOME", world.path("config")}});
    for (const char* const name :
         {"/Bilder", "/Filme/2020", "/a \"quoted\" name", "/b\xFF", "/Elsewhere", "/Videos",
          "/Templates", "/Public", "/.ssh", "/.gnupg", "/.password-store", "/.pki",
          "/.local/share/keyrings"}) {
        EXPECT_TRUE(isProtected(folders, home + name)) << name;
    }
    EXPECT_TRUE(isProtected(folders, "/media/music"));
    for (const std::string& path :
         {home, home + "/", std::string("/"), home + "/link-to-home", home + "/relative",
          home + "/comment", std::string("relative"), home + "/unquoted"}) {
        EXPECT_FALSE(isProtected(folders, path)) << path;
    }
    EXPECT_TRUE(isProtected(UserFolders::confinedTo(home), home + "/Bilder"));
    EXPECT_FALSE(isProtected(UserFolders::confinedTo(home), home + "/Elsewhere"));
}

TEST(UserFolders, ReadsOnlyASmallRegularUserDirectoriesFile)
{
    const TemporaryFolder home;
    const auto protectsPictures = [&] {
        return isProtected(UserFolders::confinedTo(home.path()), home.path("Bilder"));
    };
    const std::string file =
        home.makeFile(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    EXPECT_TRUE(protectsPictures());
    ASSERT_EQ(::truncate(file.c_str(), off_t{1} << 40), 0);
    EXPECT_FALSE(protectsPictures());
    // Nobody ever writes into these.
    ASSERT_EQ(::unlink(file.c_str()), 0);
    ASSERT_EQ(::mkfifo(file.c_str(), S_IRUSR | S_IWUSR), 0);
    EXPECT_FALSE(protectsPictures());
    ASSERT_EQ(::unlink(file.c_str()), 0);
    home.makeLink(".config/user-dirs.dirs", "/dev/zero");
    EXPECT_FALSE(protectsPictures());
}

} // namespace
