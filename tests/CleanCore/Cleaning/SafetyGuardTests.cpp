#include "CleanCore/Rules/SafetyGuard.h"

#include "tests/CleanCore/Support/CleanableHome.h"
#include "tests/CleanCore/Support/LinkedPaths.h"
#include "tests/CleanCore/Support/VerdictText.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using CleanCore::SafetyGuard;
using CleanCore::UserFolders;

namespace {

struct Case
{
    std::string candidate;
    std::string base;
    std::string verdict;
};

void expect(const SafetyGuard& guard, const std::vector<Case>& cases)
{
    for (const Case& each : cases) {
        EXPECT_EQ(textOf(guard.validate(each.candidate, each.base)), each.verdict)
            << each.candidate << " from " << each.base;
    }
}

/// A guard over a real home, with paths relative to it.
struct GuardedHome : CleanableHome
{
    [[nodiscard]] SafetyGuard guard() const
    {
        return {folder.path(), *files, UserFolders::confinedTo(folder.path()).protectedFolders};
    }
    void expect(const std::vector<Case>& cases) const
    {
        const SafetyGuard judge = guard();
        for (const Case& each : cases) {
            EXPECT_EQ(textOf(judge.validate(folder.path(each.candidate), folder.path(each.base))),
                      each.verdict)
                << each.candidate << " from " << each.base;
        }
    }
};

} // namespace

TEST(SafetyGuard, JudgesPathsOfAnyPlatform)
{
    const LinkedPaths files;
    expect(
        SafetyGuard("/Users/alice", files),
        {
            {"/", "/", "critical"},
            {"/", "/Users/alice/Library", "critical"},
            {"", "/", "critical"},
            {"/Users", "/", "critical"},
            {"/Users/", "/Users/alice", "critical"},
            {"/Users/alice", "/Users", "critical"},
            {"/Users/alice/", "/Users", "critical"},
            {"/Users/alice/x/..", "/Users", "critical"},
            {"/System/Volumes/Data/Users/alice", "/Users", "critical"},
            {"/System/Volumes/Data/Users", "/", "critical"},
            {"/System/Volumes/Data", "/System", "allowed"},
            {"/System/Volumes/Data/", "/System/Volumes", "allowed"},
            {"/System/Volumes/Database/x/y", "/x", "outside"},
            {"/Users/alice/Documents/a.txt", "/Users/alice", "protected"},
            {"/Users/alice/Documents", "/Users/alice", "protected"},
            {"/Users/alice/Documents/in/a.txt", "/Users/alice/Documents/in", "protected"},
            {"/System/Volumes/Data/Users/alice/Music/x", "/Users/alice/Music", "protected"},
            {"/Users/alice/Library/Mobile Documents/x", "/Users/alice/Library", "protected"},
            {"/Users/alice/Library", "/Users/alice", "allowed"},
            {"/Users/alice/Documents2/x", "/Users/alice", "allowed"},
            {"/Users/alice/documents/x", "/Users/alice", "allowed"},
            {"/Users/bob/Documents/x", "/Users/bob", "allowed"},
            {"/Users/alice/Library/Caches", "/Users/alice/Library/Caches", "outside"},
            {"/Users/alice/Library/Caches/", "/Users/alice/Library/Caches", "outside"},
            {"/Users/alice/Library", "/Users/alice/Library/Caches", "outside"},
            {"/Users/alice/Library/CachesOld/x", "/Users/alice/Library/Caches", "outside"},
            {"/Users/alice/Library/Caches/x", "/Users/alice/Library/Caches/", "allowed"},
            {"/Users/alice/Library/Caches/x", "/Users/alice/Music/../Library//./Caches", "allowed"},
            {"/Users/alice/Library/Caches/../Logs/x", "/Users/alice/Library/Caches", "outside"},
            {"/Users/alice/Library/Caches/x/y/z", "/Users/alice/Library/Caches", "allowed"},
            {"/Users/alice/x", "/", "allowed"},
            {"/private/var/folders/ab/T/x", "/var/folders/ab/T", "allowed"},
            {"/var/folders/ab/T/x", "/private/var/folders/ab/T", "allowed"},
            {"/System/Volumes/Data/private/var/x/y", "/var/x", "allowed"},
            {"/private/tmp/x", "/tmp", "allowed"},
            {"/private/etc/x", "/etc", "allowed"},
            {"/private/tmp", "/private", "critical"},
            {"/private/tmpfile/x", "/tmpfile", "outside"},
            {"/private/Users/alice/Documents", "/private", "allowed"},
        });
}

TEST(SafetyGuard, ComparesNamesInAnyUnicodeFormButNotInAnyCase)
{
    const LinkedPaths files;
    expect(SafetyGuard("/Users/Ren\u00e9", files),
           {
               {"/Users/Rene\u0301", "/Users", "critical"},
               {"/Users/Rene\u0301/Documents/x", "/Users/Rene\u0301", "protected"},
               {"/Users/ren\u00e9/Documents/x", "/Users", "allowed"},
               {"/Users/Rene\u0301/caf\u00e9/x", "/Users/Ren\u00e9/cafe\u0301", "allowed"},
               {"/Users/Rene\u0301/caf\u00e9", "/Users/Ren\u00e9/cafe\u0301", "outside"},
               {"/Users/Ren\u00e9/\xff/x", "/Users/Ren\u00e9/\xff", "allowed"},
               {"/Users/Ren\u00e9/\xff/x", "/Users/Ren\u00e9/\xfe", "outside"},
           });
}

TEST(SafetyGuard, TakesAHomeThatIsALinkOrAnAlias)
{
    const LinkedPaths files(LinkedPaths::Links{{"/home", "/System/Volumes/Data/Users"}});
    const SafetyGuard guard("/home/alice/", files);
    expect(guard, {
                      {"/Users/alice", "/", "critical"},
                      {"/home/alice", "/", "critical"},
                      {"/home/alice/Movies/x", "/", "protected"},
                      {"/Users/alice/Movies/x", "/home/alice", "protected"},
                      {"/home/alice/x", "/Users/alice", "allowed"},
                  });
    EXPECT_EQ(guard.protectedFolders().front(), "/Users/alice/Documents");
    EXPECT_EQ(guard.protectedFolders()[6], "/Users/alice/Library/Mobile Documents");
}

TEST(SafetyGuard, JudgesALinkByWhereItLeads)
{
    const GuardedHome home;
    const TemporaryFolder elsewhere;
    home.folder.makeFile("Documents/a.txt");
    home.folder.makeFolder("base/real");
    home.folder.makeLink("base/to-documents", "../Documents");
    home.folder.makeLink("base/to-a-document", home.folder.path("Documents/a.txt"));
    home.folder.makeLink("base/to-elsewhere", elsewhere.path());
    home.folder.makeLink("base/to-root", "/");
    home.folder.makeLink("base/to-home", "..");
    home.folder.makeLink("base/to-base", ".");
    home.folder.makeLink("base/to-itself", "to-itself");
    home.folder.makeLink("base/to-real", "real");
    home.folder.makeLink("base/dangling-inside", "nothing/here");
    home.folder.makeLink("base/dangling-outside", "../nothing");
    home.folder.makeLink("base/dangling-documents", "../Documents/nothing");
    home.folder.makeLink("base/chain", "to-documents");
    home.folder.makeLink("link-to-base", "base");
    home.expect({
        {"base/to-documents", "base", "protected"},
        {"base/to-a-document", "base", "protected"},
        {"base/to-documents/a.txt", "base", "protected"},
        {"base/dangling-documents", "base", "protected"},
        {"base/chain", "base", "protected"},
        {"base/to-elsewhere", "base", "outside"},
        {"base/to-elsewhere/x", "base", "outside"},
        {"base/to-root", "base", "critical"},
        {"base/to-home", "base", "critical"},
        {"base/to-base", "base", "outside"},
        {"base/dangling-outside", "base", "outside"},
        {"base/to-real/../../Documents/x", "base", "protected"},
        // ".." is taken where the link leads, not where it is.
        {"base/to-documents/../base/x", "base", "allowed"},
        {"base/to-itself", "base", "allowed"},
        {"base/to-real", "base", "allowed"},
        {"base/dangling-inside", "base", "allowed"},
        {"base/real", "link-to-base", "allowed"},
        {"link-to-base/real", "base", "allowed"},
        {"link-to-base", "base", "outside"},
    });
}

TEST(SafetyGuard, ProtectsWhatAProtectedFolderLeadsTo)
{
    const GuardedHome home;
    home.folder.makeFolder("disk/papers");
    home.folder.makeLink("Documents", "disk/papers");
    home.folder.makeLink("Desktop", home.folder.path(".cache/desktop"));
    // These are the owner's way to have no such folder.
    home.folder.makeLink("Music", ".");
    home.folder.makeLink("Movies", "/");
    home.expect({
        {"disk/papers", "disk", "protected"},
        {"disk/papers/x", "disk", "protected"},
        {"disk/papers2", "disk", "allowed"},
        {".cache/desktop/x", ".cache", "protected"},
        {".cache/x", ".cache", "allowed"},
        {"Music/.cache/x", ".cache", "allowed"},
        {"Documents", "", "protected"},
    });
}

TEST(SafetyGuard, ProtectsFoldersInTheLanguageOfTheUser)
{
    const GuardedHome home;
    const TemporaryFolder elsewhere;
    home.folder.makeFile(".config/user-dirs.dirs",
                         "# comment\n"
                         "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n"
                         "  XDG_MUSIC_DIR=\"$HOME/M\u00fcsik/\"\n"
                         "XDG_DOCUMENTS_DIR=\"" +
                             elsewhere.path() +
                             "\"\n"
                             "XDG_TEMPLATES_DIR=\"$HOME/\"\n"
                             "XDG_PUBLICSHARE_DIR=\"$HOME/..\"\n"
                             "XDG_DOWNLOAD_DIR=\"$HOME/with \\\"quotes\\\"\"\n"
                             "XDG_DESKTOP_DIR=\"relative\"\n");
    home.folder.makeFolder("Photos");
    home.folder.makeLink("Bilder", "Photos");
    home.expect({
        {"Bilder", "", "protected"},
        {"Bilder/x", "", "protected"},
        {"Photos/x", "", "protected"},
        {"Mu\u0308sik/x", "", "protected"},
        {"with \"quotes\"/x", "", "protected"},
        {"relative/x", "", "allowed"},
        // The seven stay, whatever the file says, and so do the platform's own.
        {"Pictures/x", "", "protected"},
        {"Videos/x", "", "protected"},
        {"Templates/x", "", "protected"},
        {"Public/x", "", "protected"},
        {".ssh/id", ".ssh", "protected"},
        {".gnupg", "", "protected"},
        {".password-store/x", "", "protected"},
        {".pki", "", "protected"},
        {".local/share/keyrings/x", ".local", "protected"},
        {".local/share/Trash/x", ".local", "allowed"},
        {".sshd/x", "", "allowed"},
    });
    EXPECT_EQ(textOf(home.guard().validate(elsewhere.path("x"), elsewhere.path())), "protected");
}

} // namespace CleanCoreTests
