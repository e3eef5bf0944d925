#include "CleanCore/Rules/SafetyGuard.h"

#include "tests/Support/CleanableHome.h"
#include "tests/Support/LinkedPaths.h"
#include "tests/Support/VerdictText.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using CleanCore::SafetyGuard;
using CleanCore::UserFolders;

namespace {

/// A candidate and the base that it is said to lie in.
using Question = std::pair<std::string, std::string>;

void expectVerdict(const SafetyGuard& guard, const char* verdict,
                   const std::vector<Question>& questions, const std::string& root = {})
{
    for (const auto& [candidate, base] : questions) {
        EXPECT_EQ(textOf(guard.validate(root + candidate, root + base)), verdict)
            << candidate << " from " << base;
    }
}

} // namespace

TEST(SafetyGuard, JudgesPathsOfAnyPlatform)
{
    const LinkedPaths files;
    const SafetyGuard guard("/Users/alice", files);
    expectVerdict(guard, "critical",
                  {{"/", "/"},
                   {"/", "/Users/alice/Library"},
                   {"", "/"},
                   {"/Users/", "/Users/alice"},
                   {"/Users/alice/", "/Users"},
                   {"/Users/alice/x/..", "/Users"},
                   {"/System/Volumes/Data/Users/alice", "/Users"},
                   {"/System/Volumes/Data/Users", "/"},
                   {"/private/tmp", "/private"}});
    expectVerdict(guard, "protected",
                  {{"/Users/alice/Documents/a.txt", "/Users/alice"},
                   {"/Users/alice/Documents", "/Users/alice"},
                   {"/Users/alice/Documents/in/a.txt", "/Users/alice/Documents/in"},
                   {"/System/Volumes/Data/Users/alice/Music/x", "/Users/alice/Music"},
                   {"/Users/alice/Library/Mobile Documents/x", "/Users/alice/Library"}});
    expectVerdict(guard, "outside",
                  {{"/System/Volumes/Database/x/y", "/x"},
                   {"/Users/alice/Library/Caches/", "/Users/alice/Library/Caches"},
                   {"/Users/alice/Library", "/Users/alice/Library/Caches"},
                   {"/Users/alice/Library/CachesOld/x", "/Users/alice/Library/Caches"},
                   {"/Users/alice/Library/Caches/../Logs/x", "/Users/alice/Library/Caches"},
                   {"/private/tmpfile/x", "/tmpfile"}});
    expectVerdict(guard, "allowed",
                  {{"/System/Volumes/Data/", "/System/Volumes"},
                   {"/Users/alice/Library", "/Users/alice"},
                   {"/Users/alice/Documents2/x", "/Users/alice"},
                   {"/Users/alice/documents/x", "/Users/alice"},
                   {"/Users/bob/Documents/x", "/Users/bob"},
                   {"/Users/alice/Library/Caches/x", "/Users/alice/Library/Caches/"},
                   {"/Users/alice/Library/Caches/x/y", "/Users/alice/Music/../Library//./Caches"},
                   {"/Users/alice/x", "/"},
                   {"/private/var/folders/ab/T/x", "/var/folders/ab/T"},
                   {"/var/folders/ab/T/x", "/private/var/folders/ab/T"},
                   {"/System/Volumes/Data/private/var/x/y", "/var/x"},
                   {"/private/etc/x", "/etc"},
                   {"/private/Users/alice/Documents", "/private"}});
}

TEST(SafetyGuard, TakesAHomeThatIsALinkOrAnAlias)
{
    const LinkedPaths files(LinkedPaths::Links{{"/home", "/System/Volumes/Data/Users"}});
    const SafetyGuard guard("/home/alice/", files);
    expectVerdict(guard, "critical", {{"/Users/alice", "/"}, {"/home/alice", "/"}});
    expectVerdict(guard, "protected",
                  {{"/home/alice/Movies/x", "/"}, {"/Users/alice/Movies/x", "/home/alice"}});
    expectVerdict(guard, "allowed", {{"/home/alice/x", "/Users/alice"}});
    EXPECT_EQ(guard.protectedFolders().front(), "/Users/alice/Documents");
    EXPECT_EQ(guard.protectedFolders()[6], "/Users/alice/Library/Mobile Documents");
}

TEST(SafetyGuard, ProtectsWhatAProtectedFolderLeadsTo)
{
    const CleanableHome home;
    home.folder.makeFolder("disk/papers");
    home.folder.makeLink("Documents", "disk/papers");
    home.folder.makeLink("Desktop", home.folder.path(".cache/desktop"));
    // These are the owner's way to have no such folder.
    home.folder.makeLink("Music", ".");
    home.folder.makeLink("Movies", "/");
    home.folder.makeFile(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n"
                                                   "XDG_MUSIC_DIR=\"$HOME/M\u00fcsik/\"\n");
    home.folder.makeLink("Bilder", "Photos");
    const std::string root = home.folder.path() + '/';
    const SafetyGuard guard(home.folder.path(), *home.files,
                            UserFolders::confinedTo(home.folder.path()).protectedFolders);
    expectVerdict(guard, "protected",
                  {{"disk/papers", "disk"},
                   {"disk/papers/x", "disk"},
                   {".cache/desktop/x", ".cache"},
                   {"Documents", ""},
                   {"Bilder", ""},
                   {"Photos/x", ""},
                   {"Mu\u0308sik/x", ""},
                   {"Pictures/x", ""},
                   {".ssh/id", ".ssh"},
                   {".local/share/keyrings/x", ".local"}},
                  root);
    expectVerdict(guard, "allowed",
                  {{"disk/papers2", "disk"},
                   {".cache/x", ".cache"},
                   {"Music/.cache/x", ".cache"},
                   {".local/share/Trash/x", ".local"},
                   {".sshd/x", ""}},
                  root);
}

} // namespace CleanCoreTests
