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
               "target/scratch/ me/to-scratch->~/scratch to-home->~/me "
               "to-documents->~/me/Documents/x target-link->~/target/scratch "
               "linked/.config->~/dotfiles dotfiles/app/ linked/.local->~/local "
               "local/state/app/ local/app->~/held held/ free/");
    world.makeFile("me/.config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    enum Taken { never, asTemporary, always };
    const struct
    {
        const char* home;
        Taken taken;
        /// Separated by blanks; relative to the world unless they begin with a slash or "$".
        std::string values;
    } rows[] = {
        {"me", always, "scratch me/caches me/to-scratch me/.config-2"},
        // Somebody else's: usable for temporary files if sticky, never for caches.
        {"me", asTemporary, "/tmp"},
        {"me", never,
         "/usr / /run $relative . to-home to-documents missing me/file me "
         "me/Documents me/Documents/x me/Bilder me/Library me/.ssh me/.config/x me/.local/state"},
        {"linked", never,
         "linked/.config dotfiles dotfiles/app linked/.local/state local local/state/app "
         "linked/.local/app"},
        {"linked", always, "free"},
    };
    for (const auto& [name, taken, values] : rows) {
        const std::string home = world.path(name);
        for (const std::string& word : words(values)) {
            const std::string value = word.find_first_of("/$") == 0 ? word : world.path(word);
            const auto folders = foldersOf(home, {{"XDG_CACHE_HOME", value}, {"TMPDIR", value}});
            EXPECT_EQ(folders.cacheFolder != home + "/.cache", taken == always) << value;
            EXPECT_EQ(folders.temporaryFolder == value || folders.temporaryFolder != "/tmp",
                      taken != never)
                << value;
        }
    }
    // Behind a link ".." is another folder than the text says; what was judged is what is used.
    const std::map<std::string, std::string> behindLink = {
        {"XDG_CACHE_HOME", world.path("target-link/../scratch")}};
    EXPECT_EQ(foldersOf(world.path("me"), behindLink).cacheFolder, world.path("target/scratch"));
}

TEST(UserFolders, JudgesDefaultFoldersAsVariables)
{
    const std::pair<const char*, bool> rows[] = {
        {"me/", true},
        {"me/.cache/ me/Desktop->.", true},
        {"me/.cache->~/scratch scratch/", true},
        {"me/.cache->.", false},
        {"me/.cache->~/", false},
        {"me/.cache->.config me/.config/", false},
        {"me/.cache->.config/app me/.config/app/", false},
        {"me/.cache->Documents me/Documents/", false},
        {"me/.cache->/dev/shm", false},
    };
    for (const auto& [tree, isTrusted] : rows) {
        const TemporaryFolder world;
        world.make(tree);
        const std::string cache = world.path("me/.cache");
        const UserFolders folders = foldersOf(world.path("me"), {});
        const UserFolders confined = UserFolders::confinedTo(world.path("me"));
        EXPECT_EQ(testing::Value(folders.distrustedFolders, Contains(cache)), !isTrusted) << tree;
        EXPECT_EQ(confined.distrustedFolders.empty(), isTrusted) << tree;
        const CleanCore::LinuxFileManager files(folders, std::nullopt, nullptr);
        EXPECT_EQ(files.exists(cache), isTrusted && std::filesystem::exists(cache)) << tree;
        EXPECT_FALSE(files.exists(cache + "/app"));
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
XDG_RELATIVE_DIR="relative"
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
    for (const std::string& path :
         {home, std::string("/"), home + "/link-to-home", home + "/comment"}) {
        EXPECT_THAT(folders.protectedFolders, Not(Contains(path)));
    }
    const auto isRead = [&] {
        return testing::Value(UserFolders::confinedTo(home).protectedFolders,
                              Contains(home + "/Bilder"));
    };
    EXPECT_TRUE(isRead());
    EXPECT_THAT(UserFolders::confinedTo(home).protectedFolders, Not(Contains(home + "/Elsewhere")));
    std::filesystem::resize_file(file, std::uintmax_t{1} << 40);
    EXPECT_FALSE(isRead());
    // Nobody ever writes into these.
    for (const std::string endless : {"user-dirs.dirs|", "user-dirs.dirs->/dev/zero"}) {
        std::filesystem::remove(file);
        world.make("me/.config/" + endless);
        EXPECT_FALSE(isRead());
    }
}

} // namespace
} // namespace CleanCoreTests
