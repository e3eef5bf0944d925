#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/CloudDrive/ICloudEvictor.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/Table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using testing::ElementsAre;

struct RefusingDrive : CloudDrive
{
    std::string name() const override { return {}; }
    std::vector<CloudContainer> containers(const std::stop_token&) const override { return {}; }
    CloudReply release(const std::string& path, const CloudWatch&) const override
    {
        return {{{path, {}}}};
    }
    CloudReply fetch(const std::string&, const CloudWatch&) const override { return {}; }
};

/// From the paths of folders, and of files as "path:bytes".
ScriptedDisk::Entries entries(const std::string& text)
{
    ScriptedDisk::Entries all;
    for (const std::string& word : words(text)) {
        const auto end = word.find(':');
        all.push_back({word.substr(0, end), {EntryKind::folder, 0}});
        if (end != std::string::npos) {
            all.back().second = {EntryKind::file, std::stoll(word.substr(end + 1))};
        }
    }
    return all;
}

struct ICloudEvictorTests : testing::Test
{
    ICloudEvictor evictor(ICloudEvictor::Clock clock = nullptr,
                          std::shared_ptr<TaskPool> pool = nullptr) const
    {
        return {"/drive", disk, std::make_shared<RefusingDrive>(), std::move(pool),
                std::move(clock)};
    }

    std::shared_ptr<ScriptedDisk> disk = std::make_shared<ScriptedDisk>();
};

TEST_F(ICloudEvictorTests, listsAndMeasuresEntriesLargestFirst)
{
    disk->folders["/drive"].names = {".hidden", "a", "b", "c", "cloud", "link", "sealed", "none"};
    disk->trees["/drive"] = entries(".hidden:7 a:5 c:5 cloud:0 sealed");
    disk->trees["/drive/b"] = entries(".hidden:5 two:5");
    for (const char* const folder : {"/drive", "/drive/b"}) {
        disk->trees[folder].push_back({"link", {EntryKind::symbolicLink, 9}});
    }
    const std::vector<ICloudItem> items = {
        {"/drive/b", 10, 2, {}}, {"/drive/a", 5, 1, {}}, {"/drive/c", 5, 1, {}}};
    EXPECT_EQ(evictor().listLocalCopies(), items);
    EXPECT_EQ(evictor(nullptr, std::make_shared<TaskPool>(4)).listLocalCopies(), items);
    disk->folders["/drive"].error = EACCES;
    EXPECT_TRUE(evictor().topLevelChildren().empty());
}

TEST_F(ICloudEvictorTests, findsTheOutermostDownloadedBundlesAndStaysAtTheLargestNumber)
{
    disk->trees["/x"] = entries("A.app A.app/none:0 A.app/one:4 A.app/In.app A.app/In.app/two:4 "
                                "A.appendix A.appendix/file:1 Gone.app Gone.app/file:0 N.APP "
                                "N.APP/file:1 .app .app/file:1 B.app B.app/one:2 file.app:1");
    ICloudItem item = evictor().measureChild("/x").item;
    EXPECT_THAT(item.apps, ElementsAre(ICloudAppBundle{"/x/A.app", 8, 3, "/x/A.app/one"},
                                       ICloudAppBundle{"/x/B.app", 2, 1, "/x/B.app/one"}));
    EXPECT_EQ(std::pair(item.localBytes, item.releasableBytes()), std::pair(14L, 4L));
    EXPECT_EQ(std::pair(item.fileCount, item.releasableFileCount()), std::pair(9L, 5L));

    disk->trees["/x"] = entries("A.app A.app/a:9223372036854775807 A.app/b:1 B.app B.app/c:1");
    item = evictor().measureChild("/x").item;
    EXPECT_EQ(std::pair(item.localBytes, item.appBytes()), std::pair(INT64_MAX, INT64_MAX));
}

TEST_F(ICloudEvictorTests, aFolderIsCheckedAgainstTheDeadlineAtOnceAndEvery256Files)
{
    disk->trees["/drive"] = entries("file:0");
    disk->trees["/drive/folder"].assign(2000, {"file", {EntryKind::file, 0}});
    for (const auto& row : table(R"(
/drive/folder | 0 | 0 late
/drive/folder | 1 | 256 late
/drive/folder | 2 | 512 late
/drive/folder | 8 | 2000 told:2000 told:2000
/drive/file | 0 | 1)")) {
        int readingsInTime = std::stoi(row[1]);
        const ICloudEvictor::Deadline deadline{};
        const auto clock = [&] {
            return deadline + std::chrono::nanoseconds(readingsInTime-- > 0 ? 0 : 1);
        };
        std::string told;
        const auto tell = [&](auto files, auto) { told += " told:" + std::to_string(files); };
        const auto [item, timedOut] = evictor(clock).measureChild(row[0], deadline, tell);
        EXPECT_EQ(std::to_string(item.fileCount) + (timedOut ? " late" : "") + told, row[2]);
    }
}

TEST_F(ICloudEvictorTests, asksForItemsInsideTheContainerUntilItIsStoppedAndReportsWhatCameOfIt)
{
    // Gone has been released by then, Removed is not there any more.
    disk->trees["/drive"] = entries("Gone:0 Kept:8 Larger:9");
    disk->links = {{"/drive", "/real"},
                   {"/drive/c", "/real/c"},
                   {"/drive/in", "/real/a"},
                   {"/drive/out", "/elsewhere"},
                   {"/drive/beside", "/real too"}};
    const ICloudAppBundle kept = {"Kept.app", 8, 1, "/drive/Kept"};
    const ICloudAppBundle larger = {"Larger.app", 9, 1, "/drive/Larger"};
    const std::vector<ICloudItem> items = {
        {"/drive/c", 1, 1, {{"Gone.app", 9, 1, "/drive/Gone"}, kept}},
        {"/drive/out", 1, 1, {kept}},
        {"/drive/in", 1, 1, {{"Removed.app", 9, 1, "/drive/Removed"}, larger}},
        {"/drive/beside", 1, 1, {kept}},
        {"/real/last", 1, 1, {}}};
    disk->capacities = {1000, 1300, 1300, 1000};
    std::stop_source stop;
    std::string told;
    const auto progress = [&](auto index, auto total, const auto& path) {
        told += std::to_string(index) + "/" + std::to_string(total) + " " + path + " ";
        static_cast<void>(index == 4 && stop.request_stop());
    };
    const auto report = evictor().evict(items, progress, stop.get_token());
    EXPECT_EQ(told, "1/5 /drive/c 2/5 /drive/out 3/5 /drive/in 4/5 /drive/beside ");
    EXPECT_THAT(report.released, ElementsAre("/drive/c", "/drive/in"));
    EXPECT_THAT(report.refused,
                ElementsAre(CloudRefusal{"/drive/c", {}}, CloudRefusal{"/drive/in", {}}));
    EXPECT_THAT(report.blocked, ElementsAre("/drive/out", "/drive/beside"));
    EXPECT_THAT(report.appsStillDownloaded, ElementsAre(larger, kept));
    EXPECT_EQ(report.appsStillBytes(), 17);
    EXPECT_EQ(report.freedBytes, 300);
    EXPECT_EQ(evictor().evict(items).freedBytes, 0);
}

} // namespace
} // namespace CleanCoreTests
