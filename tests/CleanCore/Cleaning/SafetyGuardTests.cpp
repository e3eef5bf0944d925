#include "CleanCore/Rules/SafetyGuard.h"

#include "tests/Support/CleanableHome.h"
#include "tests/Support/ScriptedDisk.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using CleanCore::SafetyGuard;

namespace {

/// A candidate, the base that it is said to lie in, and the beginning of the verdict.
using Rows = std::vector<std::tuple<std::string, std::string, const char*>>;

void expectVerdicts(const SafetyGuard& guard, const Rows& rows, const std::string& root = {})
{
    for (const auto& [candidate, base, verdict] : rows) {
        const auto found = guard.validate(root + candidate, root + base);
        EXPECT_THAT(std::string(found.isAllowed() ? "allowed" : name(found.reason())),
                    testing::StartsWith(verdict))
            << candidate << " from " << base;
    }
}

} // namespace

TEST(SafetyGuard, JudgesPathsOfAnyPlatform)
{
    const ScriptedDisk files;
    const std::string home = "/Users/alice";
    const std::string caches = "/Users/alice/Library/Caches";
    expectVerdicts(SafetyGuard(home, files),
                   {{"/", "/", "critical"},
                    {"/", home, "critical"},
                    {"", "/", "critical"},
                    {"/Users/", home, "critical"},
                    {"/Users/alice/", "/Users", "critical"},
                    {"/Users/alice/x/..", "/Users", "critical"},
                    {"/System/Volumes/Data/Users/alice", "/Users", "critical"},
                    {"/System/Volumes/Data/Users", "/", "critical"},
                    {"/private/tmp", "/private", "critical"},
                    {"/Users/alice/Documents/a.txt", home, "protected"},
                    {"/Users/alice/Documents", home, "protected"},
                    {"/Users/alice/Documents/in/a.txt", home + "/Documents/in", "protected"},
                    {"/System/Volumes/Data/Users/alice/Music/x", home + "/Music", "protected"},
                    {"/Users/alice/Library/Mobile Documents/x", home + "/Library", "protected"},
                    {"/System/Volumes/Database/x/y", "/x", "outside"},
                    {caches + "/", caches, "outside"},
                    {home + "/Library", caches, "outside"},
                    {caches + "Old/x", caches, "outside"},
                    {caches + "/../Logs/x", caches, "outside"},
                    {"/private/tmpfile/x", "/tmpfile", "outside"},
                    {"/System/Volumes/Data/", "/System/Volumes", "allowed"},
                    {home + "/Library", home, "allowed"},
                    {home + "/Documents2/x", home, "allowed"},
                    {home + "/documents/x", home, "allowed"},
                    {"/Users/bob/Documents/x", "/Users/bob", "allowed"},
                    {caches + "/x", caches + "/", "allowed"},
                    {caches + "/x/y", home + "/Music/../Library//./Caches", "allowed"},
                    {home + "/x", "/", "allowed"},
                    {"/private/var/folders/ab/T/x", "/var/folders/ab/T", "allowed"},
                    {"/var/folders/ab/T/x", "/private/var/folders/ab/T", "allowed"},
                    {"/System/Volumes/Data/private/var/x/y", "/var/x", "allowed"},
                    {"/private/etc/x", "/etc", "allowed"},
                    {"/private/Users/alice/Documents", "/private", "allowed"}});
}

TEST(SafetyGuard, TakesAHomeThatIsALinkOrAnAlias)
{
    ScriptedDisk files;
    for (const char* const path : {"", "/", "/x", "/Movies/x"}) {
        files.links["/home/alice" + std::string(path)] =
            "/System/Volumes/Data/Users/alice" + std::string(path);
    }
    const SafetyGuard guard("/home/alice/", files);
    expectVerdicts(guard, {{"/Users/alice", "/", "critical"},
                           {"/home/alice", "/", "critical"},
                           {"/home/alice/Movies/x", "/", "protected"},
                           {"/Users/alice/Movies/x", "/home/alice", "protected"},
                           {"/home/alice/x", "/Users/alice", "allowed"}});
    EXPECT_EQ(guard.protectedFolders().front(), "/Users/alice/Documents");
    EXPECT_EQ(guard.protectedFolders()[6], "/Users/alice/Library/Mobile Documents");
}

TEST(SafetyGuard, FollowsLinksAsFarAsTheyLead)
{
    // Music and Movies are their owner's way to have no such folder.
    const CleanableHome home(
        "disk/papers/ Documents->disk/papers Desktop->~/.cache/desktop Music->. Movies->/ "
        "Bilder->Photos .cache/dangling->../Documents/missing/x .cache/out->../disk/missing/.. "
        "circle->.cache/circle .cache/circle->../circle .cache/odd->'../\xff\n/../disk/papers'");
    home.makeFile(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n"
                                            "XDG_MUSIC_DIR=\"$HOME/M\u00fcsik/\"\n");
    const auto further = CleanCore::UserFolders::confinedTo(home.path()).protectedFolders;
    expectVerdicts(SafetyGuard(home.path(), *home.files, further),
                   {{"disk/papers", "disk", "protected"},
                    {"disk/papers/x", "disk", "protected"},
                    {".cache/desktop/x", ".cache", "protected"},
                    {".cache/dangling", ".cache", "protected"},
                    {".cache/odd/x", ".cache", "protected"},
                    {"Documents", "", "protected"},
                    {"Bilder", "", "protected"},
                    {"Photos/x", "", "protected"},
                    {"Mu\u0308sik/x", "", "protected"},
                    {"Pictures/x", "", "protected"},
                    {".ssh/id", ".ssh", "protected"},
                    {".local/share/keyrings/x", ".local", "protected"},
                    {".cache/out/x", ".cache", "outside"},
                    {"disk/papers2", "disk", "allowed"},
                    {".cache/x", ".cache", "allowed"},
                    {"Music/.cache/x", ".cache", "allowed"},
                    {"circle/x", "", "allowed"},
                    {".local/share/Trash/x", ".local", "allowed"},
                    {".sshd/x", "", "allowed"}},
                   home.path() + '/');
}

} // namespace CleanCoreTests
