#include "CleanCore/CloudDrive/ICloudEvictor.h"
#include "CleanCore/CloudDrive/SyncClient/ClientMessage.h"
#include "CleanCore/CloudDrive/SyncClient/SyncClientDrive.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/ScriptedSyncClient.h"
#include "tests/Support/Table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;
using namespace std::chrono_literals;

TEST(ClientMessage, IsSplitAtTheFirstColonAndPathsThatItWouldChangeAreNotSent)
{
    EXPECT_EQ(parseClientMessage("Status:OK:/a:b\r"), (ClientMessage{"STATUS", "OK:/a:b"}));
    EXPECT_EQ(parseClientMessage("x"), (ClientMessage{"X", ""}));
    for (const auto& [path, isFine] : std::map<std::string, bool>{{"/a b:c", true},
                                                                  {"/\u00e9", true},
                                                                  {"/e\u0301", false},
                                                                  {"/a ", false},
                                                                  {"/a\u00a0", false},
                                                                  {"/a\nb", false},
                                                                  {"/a\x1e"
                                                                   "b",
                                                                   false},
                                                                  {"/\xff", false},
                                                                  {"", false}}) {
        EXPECT_EQ(isSpeakable(path), isFine) << path;
    }
    EXPECT_FALSE(parseFileStatus("OK"));
}

struct SyncClientDriveTests : testing::Test
{
    void SetUp() override
    {
        home.make(
            "run/ sync/a/one:5k sync/a/two:5k sync/top:9k 'sync/a/e\u0301':5k sync/.sync_1.db:9k "
            "sync/a/gone.nextcloud:1 sync/a/empty:0 sync/a/link->~/sync/top outside:5k");
    }
    SyncClientDrive drive(const std::string& confinement = "") const
    {
        return SyncClientDrive({"Nextcloud", home.path("run"), ".nextcloud",
                                confinement.empty() ? home.path() : confinement},
                               {200ms, 300ms, 1ms});
    }
    ICloudEvictor evictor() const
    {
        return {home.path("sync"), fileManager,
                std::make_shared<SyncClientDrive>(
                    SyncClientDrive::Client{"Nextcloud", home.path("run"), ".nextcloud"},
                    SyncClientDrive::Limits{200ms, 300ms, 1ms})};
    }
    /// Releases or fetches an entry and waits. The refusals, each as its name and reason.
    std::string refusals(const std::string& entry, bool isFetch = false,
                         const std::stop_token& stop = {}) const
    {
        const std::string path = home.path("sync/" + entry);
        const ICloudItem item = {path, 1, 1, {}};
        const auto refused = isFetch ? evictor().fetch(std::span(&path, 1), nullptr, stop).refused
                                     : evictor().evict(std::span(&item, 1), nullptr, stop).refused;
        std::map<std::string, int> names;
        for (const CloudRefusal& refusal : refused) {
            names[refusal.path.substr(home.path("sync/").size())] =
                static_cast<int>(refusal.failure.reason) -
                static_cast<int>(CloudRefusalReason::noPlaceholders);
        }
        std::string text;
        for (const auto& [name, reason] : names) {
            text += name + ' ' + std::to_string(reason) + ' ';
        }
        return text;
    }

    TemporaryFolder home;
    ScriptedSyncClient client{home.path("run"), home.path("sync")};
    std::shared_ptr<const FileManager> fileManager = std::make_shared<LinuxFileManager>(
        UserFolders::confinedTo(home.path()), home.path(), std::make_shared<TaskPool>(1));
};

TEST_F(SyncClientDriveTests, ReleasesAndFetchesAndFollowsTheNewName)
{
    client.start();
    EXPECT_THAT(drive().containers({}), testing::ElementsAre(CloudContainer{home.path("sync")}));
    EXPECT_TRUE(drive(home.path("sync")).containers({}).empty());
    const auto figures = [&](const std::string& name) {
        const ICloudItem item = evictor().measureChild(home.path("sync/" + name)).item;
        return std::to_string(item.localBytes / 1024) + '/' + std::to_string(item.fileCount);
    };
    EXPECT_EQ(figures("a") + ' ' + figures("top") + ' ' + figures(".sync_1.db"), "24/5 12/1 0/0");
    const ICloudItem top = {home.path("sync/top"), 1, 1, {}};
    const auto report = evictor().evict(std::span(&top, 1));
    EXPECT_EQ(report.renamed.at(top.path), top.path + ".nextcloud");
    // The decomposed name would reach another file.
    EXPECT_EQ(refusals("a"), "a/e\u0301 3 ");
    EXPECT_TRUE(home.has("sync/a/one.nextcloud") && !home.has("sync/a/one"));
    EXPECT_EQ(figures("a"), "8/5");
    EXPECT_EQ(refusals("top", true), "");
    EXPECT_EQ(refusals("a", true), "");
    EXPECT_TRUE(home.has("sync/top") && home.has("sync/a/two") && home.has("sync/a/gone"));
    EXPECT_THAT(
        client.asked(),
        testing::ElementsAre(
            "MAKE_ONLINE_ONLY top", "MAKE_ONLINE_ONLY a/one", "MAKE_ONLINE_ONLY a/two",
            "MAKE_AVAILABLE_LOCALLY top.nextcloud", "MAKE_AVAILABLE_LOCALLY a/gone.nextcloud",
            "MAKE_AVAILABLE_LOCALLY a/one.nextcloud", "MAKE_AVAILABLE_LOCALLY a/two.nextcloud"));
    EXPECT_EQ(refusals("../outside"), "");
}

TEST_F(SyncClientDriveTests, PlaceholdersMayKeepTheirNames)
{
    client.keepsNames = true;
    client.start();
    EXPECT_EQ(refusals("top"), "");
    EXPECT_EQ(evictor().measureChild(home.path("sync/top")).item.localBytes, 0);
    EXPECT_EQ(refusals("top", true), "");
    EXPECT_GT(evictor().measureChild(home.path("sync/top")).item.localBytes, 0);
}

TEST_F(SyncClientDriveTests, RefusesWithTheReasonAndNeverWaitsForLong)
{
    // Reasons count from "virtual files are off" (0) over still synchronizing (1), not synchronized
    // (2), unspeakable (3), unreachable (4) and foreign (5) to not done in time (6) and stopped
    // (7).
    const auto row = [&](const std::string& text, const std::string& expected,
                         bool isFetch = false) {
        EXPECT_EQ(refusals("top", isFetch), expected) << text;
        EXPECT_TRUE(home.has("sync/top"));
    };
    row("no client", "top 4 ");
    for (const auto& [word, expected] : {std::pair("SYNC", "top 1 "),
                                         {"SYNC+SWM", "top 1 "},
                                         {"ERROR", "top 2 "},
                                         {"NOP", "top 2 "}}) {
        ScriptedSyncClient other(home.path("run"), home.path("sync"));
        std::filesystem::remove(home.path("run/socket"));
        other.statuses["top"] = word;
        other.start();
        row(word, expected);
        EXPECT_TRUE(other.asked().empty());
    }
    struct Row
    {
        std::string text;
        std::string expected;
        void (*change)(ScriptedSyncClient&);
    };
    for (const Row& kind :
         {Row{"off", "top 0 ", [](auto& c) { c.hasPlaceholders = false; }},
          Row{"silent", "top 4 ", [](auto& c) { c.isSilent = true; }},
          Row{"talks", "top 4 ", [](auto& c) { c.onlyTalks = true; }},
          Row{"idle", "top 6 ", [](auto& c) { c.isIdle = true; }},
          Row{"dies first", "top 4 ", [](auto& c) { c.diesAt = "VERSION"; }},
          Row{"dies asked", "top 4 ", [](auto& c) { c.diesAt = "RETRIEVE_FILE_STATUS"; }},
          Row{"dies told", "top 4 ", [](auto& c) { c.diesAt = "MAKE_ONLINE_ONLY"; }}}) {
        ScriptedSyncClient other(home.path("run"), home.path("sync"));
        std::filesystem::remove(home.path("run/socket"));
        kind.change(other);
        other.start();
        row(kind.text, kind.expected);
    }
    std::filesystem::remove(home.path("run/socket"));
    client.isIdle = true;
    client.start();
    std::ofstream writing(home.path("sync/top"), std::ios::app);
    const int inUse = static_cast<int>(CloudRefusalReason::inUse) -
                      static_cast<int>(CloudRefusalReason::noPlaceholders);
    EXPECT_EQ(refusals("top"), "top " + std::to_string(inUse) + " ");
    EXPECT_TRUE(client.asked().empty());
    std::stop_source stop;
    const std::vector<CloudPending> pending = {{home.path("sync/a/one"), CloudRequestKind::release,
                                                std::chrono::steady_clock::now() + 1h}};
    stop.request_stop();
    const CloudReply reply = drive().await(pending, {stop.get_token()});
    EXPECT_EQ(reply.refused.at(0).failure.reason, CloudRefusalReason::stopped);
}

} // namespace
} // namespace CleanCoreTests
