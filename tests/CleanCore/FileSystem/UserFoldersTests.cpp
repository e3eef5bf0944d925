#include "CleanCore/FileSystem/UserFolders.h"

#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "tests/Support/Table.h"
#include "tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <map>

namespace CleanCoreTests {
namespace {

using CleanCore::UserFolders;
using testing::Contains;
using testing::Not;

UserFolders foldersOf(const std::string& home, const std::map<std::string, std::string>& values)
{
    return UserFolders::ofAccount(home, [&](const char* name) {
        const auto found = values.find(name);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    });
}

TEST(UserFolders, TakesAVariableOnlyForAFolderThatHoldsNothingElse)
{
    const TemporaryFolder world;
    world.make("me/caches/ me/.cache/ me/Documents/x/ me/Bilder/x/ me/.config/x/ me/.ssh/ "
               "me/.local/state/x/ 'me/Library/Mobile Documents/' me/.config-2/ me/file scratch/ "
               "target/scratch/ me/to-scratch->~/scratch to-home->~/me to-Bilder->~/me/Bilder/x "
               "target-link->~/target/scratch linked/.config->~/dotfiles dotfiles/app/ free/");
    world.makeFile("me/.config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    // A home, whether its caches and its temporary files may be in a folder, and such folders,
    // relative to the world unless they begin with a slash or "$". Those of somebody else do for
    // temporary files if they are sticky, never for caches.
    for (const std::vector<std::string>& row : table(R"(
me | yes | yes | scratch me/caches me/to-scratch me/.config-2
me | no | yes | /tmp
me | no | no | / /usr /run/lock $relative . to-home to-Bilder missing me/file me me/Documents/x
    me/Bilder me/Library me/.ssh me/.config/x me/.local/state
linked | no | no | linked/.config dotfiles/app linked/.local/state
linked | yes | yes | free
)")) {
        const std::string home = world.path(row[0]);
        for (const std::string& word : words(row[3])) {
            const std::string value = word.find_first_of("/$") == 0 ? word : world.path(word);
            const auto folders = foldersOf(home, {{"XDG_CACHE_HOME", value}, {"TMPDIR", value}});
            EXPECT_EQ(folders.cacheFolder != home + "/.cache", row[1] == "yes") << value;
            EXPECT_EQ(folders.temporaryFolder == value || folders.temporaryFolder != "/tmp",
                      row[2] == "yes")
                << value;
        }
    }
    // Behind a link ".." is another folder than the text says; what was judged is what is used.
    const auto behindLink =
        foldersOf(world.path("me"), {{"XDG_CACHE_HOME", world.path("target-link/../scratch")}});
    EXPECT_EQ(behindLink.cacheFolder, world.path("target/scratch"));
}

TEST(UserFolders, JudgesDefaultFoldersAsVariables)
{
    const std::pair<const char*, bool> rows[] = {
        {"me/", true},
        {"me/.cache/ me/Desktop->.", true},
        {"me/.cache->~/scratch scratch/", true},
        {"me/.cache->~/", false},
        {"me/.cache->.config/app me/.config/app/", false},
        {"me/.cache->Documents me/Documents/", false},
        {"me/.cache->/dev/shm", false},
    };
    for (const auto& [tree, isTrusted] : rows) {
        const TemporaryFolder world;
        world.make(tree);
        const std::string cache = world.path("me/.cache");
        const UserFolders folders = foldersOf(world.path("me"), {});
        EXPECT_EQ(testing::Value(folders.distrustedFolders, Contains(cache)), !isTrusted) << tree;
        EXPECT_EQ(UserFolders::confinedTo(world.path("me")).distrustedFolders.empty(), isTrusted);
        const CleanCore::LinuxFileManager files(folders, std::nullopt, nullptr);
        EXPECT_EQ(files.exists(cache), isTrusted && std::filesystem::exists(cache)) << tree;
    }
}

TEST(UserFolders, ProtectsWhateverASmallRegularUserDirectoriesFileNames)
{
    const TemporaryFolder world;
    world.make("me/link-to-home->~/me");
    const std::string file = world.makeFile("me/.config/user-dirs.dirs", R"(
# XDG_COMMENT_DIR="$HOME/comment"
XDG_PICTURES_DIR="$HOME/Bilder"
  XDG_VIDEOS_DIR = "$HOME/Filme//2020/"
XDG_TEMPLATES_DIR="$HOME"
XDG_PUBLICSHARE_DIR="/"
XDG_DISABLED_DIR="$HOME/link-to-home"
XDG_DOCUMENTS_DIR="$HOME/a \"quoted\" name"
nonsense
)");
    world.makeFile("config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Elsewhere\"\n");
    const std::string home = world.path("me");
    const auto folders = foldersOf(home, {{"XDG_CONFIG_HOME", world.path("config")}});
    for (const char* const name :
         {"/Bilder", "/Filme/2020", "/a \"quoted\" name", "/Elsewhere", "/Videos", "/.ssh"}) {
        EXPECT_THAT(folders.protectedFolders, Contains(home + name));
    }
    for (const std::string path : {"", "/link-to-home", "/comment"}) {
        EXPECT_THAT(folders.protectedFolders, Not(Contains(home + path)));
    }
    EXPECT_THAT(folders.protectedFolders, Not(Contains("/")));
    const auto confined = [&] { return UserFolders::confinedTo(home).protectedFolders; };
    EXPECT_THAT(confined(), Contains(home + "/Bilder"));
    EXPECT_THAT(confined(), Not(Contains(home + "/Elsewhere")));
    std::filesystem::resize_file(file, std::uintmax_t{1} << 40);
    EXPECT_THAT(confined(), Not(Contains(home + "/Bilder")));
    // Nobody ever writes into these.
    for (const std::string endless : {"user-dirs.dirs|", "user-dirs.dirs->/dev/zero"}) {
        std::filesystem::remove(file);
        world.make("me/.config/" + endless);
        EXPECT_THAT(confined(), Not(Contains(home + "/Bilder")));
    }
}

} // namespace
} // namespace CleanCoreTests
