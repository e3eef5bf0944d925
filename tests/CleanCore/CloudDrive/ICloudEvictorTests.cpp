#include "CleanCore/CloudDrive/ICloudEvictor.h"
#include "CleanCore/CloudDrive/TreeCount.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/CloudFolders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace CleanCoreTests {
namespace {

using CleanCore::ICloudEvictor;
using CleanCore::ICloudItem;
using testing::ElementsAre;

/// The real disk with a free space, and a cloud drive that runs a shell command for each request.
class ScriptedDrive : public CleanCore::LinuxFileManager, public CleanCore::CloudDrive
{
public:
    explicit ScriptedDrive(const CloudFolders& folders)
        : LinuxFileManager(CleanCore::UserFolders::confinedTo(folders.home.path()),
                           folders.home.path(), nullptr),
          m_folders(folders)
    {
    }

    std::vector<CleanCore::CloudRefusal> release(const std::string& path) const override
    {
        log.push_back("release " + path);
        free = free ? std::optional(*free + growth) : std::nullopt;
        m_folders.run(command);
        return {{path, {}}};
    }
    std::vector<CleanCore::CloudRefusal> fetch(const std::string&) const override { return {}; }
    std::optional<std::int64_t> availableCapacity(const std::string&) const override
    {
        return free;
    }

    mutable std::vector<std::string> log;
    mutable std::optional<std::int64_t> free = 1'000'000;
    std::int64_t growth = 0;
    std::string command = "true";

private:
    const CloudFolders& m_folders;
};

class ICloudEvictorTests : public testing::Test
{
protected:
    ICloudEvictor evictor(ICloudEvictor::Clock clock = nullptr,
                          std::shared_ptr<CleanCore::TaskPool> pool = nullptr) const
    {
        return {folders.container, drive, drive, std::move(pool), std::move(clock)};
    }
    ICloudItem measured(const std::string& name) const
    {
        return evictor().measureChild(folders.local(name)).item;
    }
    /// Makes files of 5,000 bytes in the container.
    void make(const std::vector<std::string>& names) const
    {
        for (const std::string& name : names) {
            folders.home.makeFile("drive/" + name, bytes(5000));
        }
    }

    CloudFolders folders;
    std::shared_ptr<ScriptedDrive> drive = std::make_shared<ScriptedDrive>(folders);
};

TEST_F(ICloudEvictorTests, listsAndMeasuresEntriesLargestFirst)
{
    EXPECT_TRUE(evictor().topLevelChildren().empty());
    make({".hidden", "a", "b/.hidden", "b/two", "c", "sealed/file", "listed/sealed/file"});
    folders.makeCloudOnly("cloud/one", bytes(5000));
    folders.run("ln -s b drive/link && ln -s ../a drive/b/link && chmod 0 drive/sealed "
                "drive/listed/sealed");
    std::string text;
    for (const std::string& path : evictor().topLevelChildren()) {
        const ICloudItem item = evictor().measureChild(path).item;
        text += path.substr(folders.container.size() + 1) + ' ' + std::to_string(item.localBytes) +
                ' ' + std::to_string(item.fileCount) + ", ";
    }
    EXPECT_EQ(text, "a 8192 1, b 16384 2, c 8192 1, cloud 0 1, link 0 0, listed 0 0, sealed 0 0, ");
    EXPECT_EQ(measured("none"), (ICloudItem{folders.local("none"), 0, 0, {}}));

    const auto items = evictor().listLocalCopies();
    EXPECT_EQ(items, (std::vector{measured("b"), measured("a"), measured("c")}));
    EXPECT_EQ(evictor(nullptr, std::make_shared<CleanCore::TaskPool>(4)).listLocalCopies(), items);
    folders.run("chmod 0 drive");
    EXPECT_TRUE(evictor().topLevelChildren().empty());
    EXPECT_TRUE(evictor().listLocalCopies().empty());
}

TEST_F(ICloudEvictorTests, findsTheOutermostDownloadedBundles)
{
    make({"Tools/Outer.app/Contents/binary", "Tools/Outer.app/Inner.app/helper",
          "Tools/Report.app.old/data", "Tools/Notes.APP/data", "Tools/.app/data",
          "Tools/Outer.app too/data", "Tools/file.app", "Tools/sub/\xff.app/binary"});
    folders.makeCloudOnly("Tools/Outer.app/Contents/manual", bytes(5000));
    folders.makeCloudOnly("Tools/Absent.app/binary", bytes(5000));
    ICloudItem item = measured("Tools");
    EXPECT_EQ(item.fileCount, 10);
    EXPECT_EQ(item.releasableBytes(), item.localBytes - 3 * 8192);
    EXPECT_EQ(item.releasableFileCount(), 6);
    std::ranges::sort(item.apps, {}, &CleanCore::ICloudAppBundle::fileCount);
    ASSERT_EQ(item.apps.size(), 2U);
    const std::string other = folders.local("Tools/sub/\xff.app");
    EXPECT_EQ(item.apps[0], (CleanCore::ICloudAppBundle{other, 8192, 1, other + "/binary"}));
    EXPECT_EQ(item.apps[1].path, folders.local("Tools/Outer.app"));
    EXPECT_EQ(item.apps[1].localBytes, 2 * 8192);
    EXPECT_EQ(item.apps[1].fileCount, 3);
    EXPECT_GT(statusOf(item.apps[1].probePath).st_blocks, 0);
}

TEST(TreeCountTest, aBundleEndsWithItsFolderAndFiguresStayAtTheLargestNumber)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t half = most / 2 + 1;
    constexpr std::int64_t folder = -1;
    CleanCore::TreeCount count;
    for (const auto& [path, size] : {std::pair("/x/A.app", folder),
                                     {"/x/A.app/none", std::int64_t{0}},
                                     {"/x/A.app/one", half},
                                     {"/x/A.app/two", half},
                                     {"/x/A.app too", folder},
                                     {"/x/A.app too/file", half},
                                     {"/x/B.app", folder},
                                     {"/x/B.app/one", half}}) {
        count.add(
            {path,
             {size == folder ? CleanCore::EntryKind::folder : CleanCore::EntryKind::file, size}});
    }
    count.closeBundle();
    const ICloudItem item{"/x", count.bytes, count.files, count.apps};
    EXPECT_THAT(item.apps,
                ElementsAre(CleanCore::ICloudAppBundle{"/x/A.app", most, 3, "/x/A.app/one"},
                            CleanCore::ICloudAppBundle{"/x/B.app", half, 1, "/x/B.app/one"}));
    EXPECT_EQ(item.localBytes, most);
    EXPECT_EQ(item.appBytes(), most);
    EXPECT_EQ(item.releasableBytes(), 0);
}

TEST_F(ICloudEvictorTests, aFolderIsCheckedAgainstTheDeadlineAtOnceAndEvery256Files)
{
    folders.run("mkdir drive/folder drive/empty && touch drive/folder/$(seq -s ' drive/folder/' "
                "2000) drive/file");
    const ICloudEvictor::Deadline deadline{};
    struct Case
    {
        const char* name;
        int readingsInTime;
        std::int64_t files;
        bool timedOut;
        std::vector<std::int64_t> reports;
    };
    for (const Case& c :
         {Case{"folder", 0, 0, true, {}}, Case{"folder", 1, 256, true, {}},
          Case{"folder", 2, 512, true, {}}, Case{"folder", 8, 2000, false, {2000, 2000}},
          Case{"empty", 1, 0, false, {0}}, Case{"file", 0, 1, false, {}}}) {
        SCOPED_TRACE(c.readingsInTime);
        int readings = 0;
        std::vector<std::int64_t> reports;
        const auto clock = [&] {
            return deadline + std::chrono::nanoseconds(readings++ < c.readingsInTime ? 0 : 1);
        };
        const auto result = evictor(clock).measureChild(
            folders.local(c.name), deadline,
            [&](std::int64_t files, std::int64_t) { reports.push_back(files); });
        EXPECT_EQ(result.item.fileCount, c.files);
        EXPECT_EQ(result.timedOut, c.timedOut);
        EXPECT_EQ(reports, c.reports);
    }
}

TEST_F(ICloudEvictorTests, asksForEachItemInOrderAndReportsWhatCameOfIt)
{
    make({"c/Gone.app/x", "c/Kept.app/x", "a", "b/Larger.app/x", "b/Larger.app/y",
          "b/Removed.app/x"});
    const std::vector items = {measured("c"), measured("a"), measured("b")};
    drive->command = "rm -rf drive/b/Removed.app && truncate -s 0 drive/c/Gone.app/x";
    drive->growth = 100;
    const auto report = evictor().evict(items, [&](auto index, auto total, const auto& path) {
        drive->log.push_back(std::to_string(index) + "/" + std::to_string(total) + " " + path);
    });
    const auto& [c, a, b] = std::tie(items[0].path, items[1].path, items[2].path);
    EXPECT_THAT(drive->log, ElementsAre("1/3 " + c, "release " + c, "2/3 " + a, "release " + a,
                                        "3/3 " + b, "release " + b));
    EXPECT_THAT(report.released, ElementsAre(c, a, b)) << "refused ones included";
    EXPECT_EQ(report.refused.size(), 3U);
    EXPECT_EQ(report.freedBytes, 300);
    ASSERT_EQ(report.appsStillDownloaded.size(), 2U);
    EXPECT_EQ(report.appsStillDownloaded[0].path, b + "/Larger.app");
    EXPECT_EQ(report.appsStillDownloaded[1].path, c + "/Kept.app");
    EXPECT_EQ(report.appsStillBytes(), 3 * 8192);

    drive->growth = -100;
    EXPECT_EQ(evictor().evict(items).freedBytes, 0);
    drive->free.reset();
    EXPECT_EQ(evictor().evict(items).freedBytes, 0);
    EXPECT_EQ(evictor().evict({}), ICloudEvictor::EvictReport());
}

TEST_F(ICloudEvictorTests, leavesAnItemOutsideTheContainerAloneAndStopsBetweenItems)
{
    make({"inside", "last"});
    folders.run("mkdir elsewhere 'drive too' && touch 'drive too/file' mirror/file && cd drive &&"
                " ln -s inside in && ln -s ../elsewhere out && ln -s '../drive too' beside");
    std::vector<ICloudItem> items;
    for (const char* path : {"drive/inside", "drive/in", "drive/none", "drive/out", "drive/beside",
                             "drive too/file", "drive/../mirror/file", "drive/last"}) {
        items.push_back(
            {folders.home.path(path), 1, 1, {{"A.app", 1, 1, folders.local("inside")}}});
    }
    std::stop_source stop;
    const auto report = evictor().evict(
        items,
        [&](auto index, auto, const auto&) {
            if (index == 7) {
                stop.request_stop();
            }
        },
        stop.get_token());
    EXPECT_THAT(report.released, ElementsAre(items[0].path, items[1].path, items[2].path));
    EXPECT_THAT(report.blocked,
                ElementsAre(items[3].path, items[4].path, items[5].path, items[6].path));
    EXPECT_EQ(drive->log.size(), 3U);
    EXPECT_EQ(report.appsStillDownloaded.size(), 3U) << "no bundle of a blocked item";

    folders.run("ln -s drive way");
    const ICloudEvictor linked(folders.home.path("way"), drive, drive);
    EXPECT_EQ(linked.evict(linked.listLocalCopies()).released.size(), 2U);
}

} // namespace
} // namespace CleanCoreTests
