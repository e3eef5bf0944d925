#include "CleanCore/CloudDrive/GitAnnex/AnnexRecord.h"
#include "CleanCore/CloudDrive/GitAnnex/AnnexRepository.h"
#include "CleanCore/CloudDrive/GitAnnex/GitAnnexDrive.h"
#include "CleanCore/CloudDrive/GitAnnex/GitConfig.h"
#include "CleanCore/CloudDrive/GitAnnex/RepositorySearch.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/Table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

TEST(GitConfig, IsReadAsGitReadsIt)
{
    std::string text;
    for (const GitSetting& setting : parseGitConfig("[Annex] UUID = \" a#b \" ; no\n# [x]\n[remote "
                                                    "\"U\\\"s.b\"]\r\n\turl=a\\\n b\\tc # d\n"
                                                    "[old.Sub]x\n[half \"open\nkey = v")) {
        text += setting.section + '/' + setting.subsection + '/' + setting.name + '=' +
                setting.value + '|';
    }
    EXPECT_EQ(text, "annex//uuid= a#b |remote/U\"s.b/url=a b\tc|old/sub/x=true|half/open/key=v|");
}

TEST(AnnexRecord, TellsWhyWithoutTheAdviceToForce)
{
    const auto record = parseAnnexRecord(
        R"({"file":"a","bytesize":"7","success":false,"note":"unsafe\n(Use --force)\nno",)"
        R"("error-messages":["x",1]})");
    EXPECT_EQ(record->reason, "unsafe\nno\nx");
    EXPECT_EQ(std::pair(record->bytes, record->success), std::pair(7L, std::optional(false)));
    const auto progress = parseAnnexRecord(
        R"({"action":{"file":"b"},"byte-progress":3,"total-size":18446744073709551615})");
    EXPECT_EQ(std::tuple(progress->file, *progress->arrived, progress->bytes),
              std::tuple("b", 3, 0));
    EXPECT_FALSE(parseAnnexRecord("[1]") || parseAnnexRecord("{"));
    EXPECT_EQ(parseAnnexRecord(R"({"file":1,"bytesize":"-1","success":"no"})")->bytes, 0);
}

TEST(AnnexSearch, FindsRepositoriesOfItsOwnAndEntersNeitherCachesNorLinks)
{
    const TemporaryFolder home;
    std::ofstream(home.path("annex-config")) << "[annex]\n\tuuid = 1\n";
    std::ofstream(home.path("plain-config")) << "[core]\n\tbare = false\n";
    for (const std::string& row :
         words("found a/b/found found/inner .hidden/no node_modules/no cache/no out/no marked/no "
               "1/2/3/4/5/found 1/2/3/4/5/6/no")) {
        home.make(row + "/.git/annex/");
        std::filesystem::copy_file(home.path("annex-config"), home.path(row + "/.git/config"));
    }
    home.make("plain/.git/annex/ unset/.git/ marked/CACHEDIR.TAG| link->~/out/no "
              "worktree/.git->~/found/.git");
    std::filesystem::copy_file(home.path("plain-config"), home.path("plain/.git/config"));
    std::filesystem::copy_file(home.path("annex-config"), home.path("unset/.git/config"));
    const std::vector<std::string> excluded = {home.path("cache"), home.path("out")};
    EXPECT_THAT(findAnnexRepositories(home.path(), excluded, {}),
                testing::ElementsAre(home.path("1/2/3/4/5/found"), home.path("a/b/found"),
                                     home.path("found")));
    EXPECT_THAT(findAnnexRepositories(home.path(), excluded, {}, {.depth = 1}),
                testing::ElementsAre(home.path("found")));
    EXPECT_TRUE(findAnnexRepositories(home.path(), excluded, {}, {.folders = 1}).empty());
}

TEST(AnnexRepository, LeadsOutsideByWhateverCanNameAnotherPlace)
{
    const TemporaryFolder home;
    home.make("home/repo/.git/annex/objects/ home/usb/ away/ home/out->~/away");
    for (const auto& row : table(R"(
url = ../usb |
url = ../../away | remote.u.url
url = ../out | remote.u.url
url = host:../usb | remote.u.url
pushurl = /tmp | remote.u.pushurl
annex-rsyncurl = x | remote.u.annex-rsyncurl
fetch = x |
[core] sshCommand = x | core.sshcommand
[annex] secure-erase-command = x | annex.secure-erase-command
[filter "annex"] clean = git-annex smudge --clean -- %f |
[filter "annex"] clean = evil | filter.annex.clean
[include] path = ../x | include.path
)")) {
        std::ofstream(home.path("home/repo/.git/config")) << "[remote \"u\"]\n" << row[0] << '\n';
        const auto failure = leadsOutside(home.path("home/repo"), home.path("home"));
        EXPECT_EQ(failure ? failure->detail : "", row[1]) << row[0];
    }
    std::ofstream(home.path("home/repo/.git/config")) << '\n';
    std::ofstream(home.path("home/.gitconfig")) << "[url \"/away\"]\ninsteadOf = ../usb\n";
    EXPECT_TRUE(leadsOutside(home.path("home/repo"), home.path("home")));
    std::filesystem::remove(home.path("home/.gitconfig"));
    EXPECT_FALSE(leadsOutside(home.path("home/repo"), home.path("home")));
    home.make("home/repo/.git/objects/info/alternates|");
    EXPECT_TRUE(leadsOutside(home.path("home/repo"), home.path("home")));
}

/// Two real repositories: "src" with one content in two files, one of another name, one unlocked
/// one, and one that is in no repository; and "usb", which has the others.
struct GitAnnexDriveTests : testing::Test
{
    void SetUp() override
    {
        run("mkdir src; cd src; " + setUp("laptop") +
            "mkdir 'a b' $(printf 'x\\377'); head -c 40000 /dev/urandom > 'a b/one'; "
            "cp 'a b/one' twin; head -c 9000 /dev/urandom > $(printf 'x\\377/\\376'); "
            "head -c 9000 /dev/urandom > loose; git annex add -q . 2>&1; git annex unlock -q "
            "loose; "
            "git commit -qm 1 2>&1; cd ..; git clone -q src usb 2>&1; cd usb; " +
            setUp("disk") +
            "git annex get -q .; cd ../src; git remote add usb ../usb; git fetch -q usb 2>&1; "
            "git annex merge -q; head -c 9000 /dev/urandom > only; git annex add -q only");
    }
    void run(const std::string& command) const
    {
        folders.run("export HOME=$PWD LC_ALL=C.UTF-8; " + command + " >/dev/null");
    }
    static std::string setUp(const std::string& name)
    {
        return "git init -q 2>&1; git config user.name a; git config user.email b; "
               "git annex init -q " +
               name + "; ";
    }
    GitAnnexDrive drive(const std::string& program = "/usr/bin/git-annex") const
    {
        return {{folders.home.path(), true, {}}, {"/none", program}};
    }
    std::string entry(const std::string& name) const { return folders.home.path("src/" + name); }
    /// The bytes and files of each entry.
    std::string measured() const
    {
        const std::vector<std::string> paths = {entry("a b"), entry("twin"), entry("x\xff"),
                                                entry("loose"), entry("only")};
        std::string text;
        for (const auto& [item, isLate] : drive().measure(entry(""), paths, std::nullopt, {})) {
            text += std::to_string(item.localBytes) + '/' + std::to_string(item.fileCount) +
                    (isLate ? " late " : " ");
        }
        return text;
    }

    CloudFolders folders;
};

TEST_F(GitAnnexDriveTests, ReleasesWhatHasACopyAndBringsItBack)
{
    EXPECT_THAT(drive().containers({}),
                testing::ElementsAre(CloudContainer{entry("").substr(0, entry("").size() - 1)},
                                     CloudContainer{folders.home.path("usb")}));
    EXPECT_EQ(measured(), "40960/1 0/1 12288/1 12288/1 12288/1 ");
    for (const char* const name : {"a b", "x\xff", "loose"}) {
        EXPECT_TRUE(drive().release(entry(name), {}).refused.empty()) << name;
    }
    const auto refused = drive().release(entry("only"), {}).refused;
    ASSERT_EQ(refused.size(), 1U);
    EXPECT_EQ(refused[0].path, entry("only"));
    EXPECT_EQ(refused[0].failure.reason, CloudRefusalReason::refusedByProgram);
    EXPECT_THAT(refused[0].failure.detail, testing::HasSubstr("0 out of 1 necessary copy"));
    EXPECT_EQ(measured(), "0/0 0/0 0/0 0/0 12288/1 ");

    // Where git-annex cannot name the file, the entry is refused.
    run("mv usb gone");
    const auto missing = drive().fetch(entry("x\xff"), {}).refused;
    ASSERT_EQ(missing.size(), 1U);
    EXPECT_EQ(missing[0].path, entry("x\xff"));
    run("mv gone usb");
    std::int64_t arrived = 0;
    const CloudWatch watch = {
        {}, [&](const CloudProgress& progress) { arrived = std::max(arrived, progress.bytes); }};
    for (const char* const name : {"a b", "x\xff", "loose"}) {
        EXPECT_TRUE(drive().fetch(entry(name), watch).refused.empty()) << name;
    }
    EXPECT_GT(arrived, 0);
    EXPECT_EQ(measured(), "40960/1 0/1 12288/1 12288/1 12288/1 ");
    run("cd src && git annex fsck -q");
}

TEST_F(GitAnnexDriveTests, RefusesWithItsReasonAndRunsNothingElsewhere)
{
    using enum CloudRefusalReason;
    run("git init -q plain 2>&1; touch plain/file src/untracked; echo 'touch ~/ran' >hook; "
        "chmod +x hook; cp hook src/.git/hooks/reference-transaction");
    const auto reason = [](const CloudReply& reply) {
        return reply.refused.empty() ? systemError : reply.refused.front().failure.reason;
    };
    EXPECT_EQ(reason(drive().release(folders.home.path("plain/file"), {})), outsideContainer);
    EXPECT_FALSE(folders.home.has("plain/.git/annex"));
    EXPECT_EQ(reason(drive().release(entry("untracked"), {})), programFailed);
    EXPECT_EQ(reason(drive("/nowhere").release(entry("twin"), {})), programMissing);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(reason(drive().release(entry("twin"), {stop.get_token()})), stopped);
    EXPECT_TRUE(drive().release(entry("twin"), {}).refused.empty());
    EXPECT_FALSE(folders.home.has("ran"));
    const std::string late = entry("only");
    EXPECT_TRUE(
        drive().measure(entry(""), std::span(&late, 1), CloudDrive::Deadline(), {}).at(0).timedOut);
}

} // namespace
} // namespace CleanCoreTests
