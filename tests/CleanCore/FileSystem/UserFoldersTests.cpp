#include "CleanCore/FileSystem/UserFolders.h"

#include "tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <map>
#include <sstream>
#include <unistd.h>

namespace CleanCoreTests {

using CleanCore::UserFolders;
using testing::Contains;
using testing::Not;

namespace {

UserFolders foldersOf(const std::string& home, const std::map<std::string, std::string>& values)
{
    return UserFolders::ofAccount(home, [&](const char* name) {
        const auto found = values.find(name);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    });
}

} // namespace

TEST(UserFolders, TakesAVariableOnlyForAFolderThatHoldsNothingElse)
{
    const TemporaryFolder world;
    world.make("me/caches/ me/.cache/ me/Documents/x/ me/Bilder/x/ me/.config/x/ me/.ssh/ "
               "me/.local/state/x/ 'me/Library/Mobile Documents/' me/.config-2/ me/file scratch/ "
               "sticky/=01777 target/scratch/ me/to-scratch->~/scratch to-home->~/me "
               "to-documents->~/me/Documents/x target-link->~/target/scratch "
               "linked/.config->~/dotfiles dotfiles/app/ linked/.local->~/local linked/.cache/ "
               "local/state/app/ local/app->~/held held/ free/ "
               "part/.local/share->~/data data/app/ part/.cache/");
    world.makeFile("me/.config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    enum Taken { never, asTemporary, always };
    const struct
    {
        const char* home;
        Taken taken;
        /// Separated by blanks; relative to the world without a slash before them.
        std::string values;
    } rows[] = {
        {"me", always, "scratch sticky me/caches me/to-scratch me/.config-2"},
        // Somebody else's: usable for temporary files if sticky, never for caches.
        {"me", asTemporary, "/tmp"},
        {"me", never,
         "/usr / /run /run/lock . to-home to-documents missing me/file me me/caches/.. "
         "me/Documents me/Documents/x me/Bilder me/Library me/.ssh me/.config "
         "me/.config/x me/.local me/.local/state/x"},
        {"linked", never,
         "linked/.config linked/.config/app dotfiles dotfiles/app linked/.local "
         "linked/.local/state local local/state/app linked/.local/app"},
        {"linked", always, "free local/../free"},
        {"part", never, "data data/app"},
        {"part", always, "local dotfiles"},
    };
    const auto expectTaken = [&](const std::string& home, const std::string& value, Taken taken) {
        const UserFolders folders = foldersOf(home, {{"XDG_CACHE_HOME", value}, {"TMPDIR", value}});
        EXPECT_EQ(folders.cacheFolder != home + "/.cache", taken == always) << value;
        EXPECT_EQ(folders.temporaryFolder == value || folders.temporaryFolder != "/tmp",
                  taken != never)
            << value;
    };
    for (const auto& [home, taken, values] : rows) {
        std::istringstream words(values);
        for (std::string value; words >> value;) {
            expectTaken(world.path(home), value.front() == '/' ? value : world.path(value), taken);
        }
    }
    for (const char* const value : {"", "scratch", "~/caches"}) {
        expectTaken(world.path("me"), value, never);
    }
    const auto cacheFolder = [&](const std::string& value) {
        return foldersOf(world.path("me"), {{"XDG_CACHE_HOME", value}}).cacheFolder;
    };
    EXPECT_EQ(cacheFolder(world.path("scratch") + "/./"), world.path("scratch"));
    EXPECT_EQ(cacheFolder(world.path("me/to-scratch")), world.path("me/to-scratch"));
    // Behind a link ".." is another folder than the text says; what was judged is what is used.
    EXPECT_EQ(cacheFolder(world.path("target-link/../scratch")), world.path("target/scratch"));
}

TEST(UserFolders, ProtectsWhateverTheUserDirectoriesFileNames)
{
    const TemporaryFolder world;
    world.make("me/link-to-home->~/me");
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
    const auto folders = foldersOf(home, {{"XDG_CONFIG_HOME", world.path("config")}});
    for (const char* const name :
         {"/Bilder", "/Filme/2020", "/a \"quoted\" name", "/b\xFF", "/Elsewhere", "/Videos",
          "/Templates", "/Public", "/.ssh", "/.gnupg", "/.password-store", "/.pki",
          "/.local/share/keyrings"}) {
        EXPECT_THAT(folders.protectedFolders, Contains(home + name));
    }
    EXPECT_THAT(folders.protectedFolders, Contains("/media/music"));
    for (const std::string& path :
         {home, home + "/", std::string("/"), home + "/link-to-home", home + "/relative",
          home + "/comment", std::string("relative"), home + "/unquoted"}) {
        EXPECT_THAT(folders.protectedFolders, Not(Contains(path)));
    }
    const auto confined = UserFolders::confinedTo(home).protectedFolders;
    EXPECT_THAT(confined, Contains(home + "/Bilder"));
    EXPECT_THAT(confined, Not(Contains(home + "/Elsewhere")));
}

TEST(UserFolders, ReadsOnlyASmallRegularUserDirectoriesFile)
{
    const TemporaryFolder home;
    const std::string file =
        home.makeFile(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    const auto folders = [&] { return UserFolders::confinedTo(home.path()).protectedFolders; };
    EXPECT_THAT(folders(), Contains(home.path("Bilder")));
    ASSERT_EQ(::truncate(file.c_str(), off_t{1} << 40), 0);
    EXPECT_THAT(folders(), Not(Contains(home.path("Bilder"))));
    // Nobody ever writes into these.
    for (const char* const endless : {"user-dirs.dirs|", "user-dirs.dirs->/dev/zero"}) {
        home.remove(".config/user-dirs.dirs");
        home.make(".config/" + std::string(endless));
        EXPECT_THAT(folders(), Not(Contains(home.path("Bilder"))));
    }
}

} // namespace CleanCoreTests
